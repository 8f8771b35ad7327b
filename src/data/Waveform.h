/// One sampled signal of a shot: equally spaced single-precision samples, with the header that says when they
/// start, how far apart they lie, how they were calibrated, and what their extremes are. On disk a .wvf file.
///
/// Sample i, from 0, lies at `Start() + i * timeStep` seconds. Samples are stored calibrated:
/// sample = (raw - offset) * calibration * attenuation. -DFMax marks a bad sample. All arithmetic is single
/// precision in the order of the terms, unless an operation says otherwise. The stored extremes are
/// those of the last `Scale()` or of the file: after samples change they are stale.
#pragma once

#include "foundation/DArray.h"
#include "foundation/DString.h"

class DFile;

class VODREL_API Waveform : public DArray<float, 0> {
public:
    /// `n` samples of undefined value, below 0 none.
    explicit Waveform(int n = 0);
    Waveform(Waveform const &other);
    Waveform &operator=(Waveform const &other);
    ~Waveform() override;

    /// Every field but the samples and `lockState`.
    void CopyHeader(Waveform const &other);

    /// Prepares this trace as the result of a computation on the time base of `other`: as many samples,
    /// undefined, the scope delays folded into `startTime`; `t1` to `t5` if `withT`, the factors if
    /// `withCalAtt`. Extremes, texts and `fileCount` stay as they were.
    Waveform &InitFrom(Waveform const &other, bool withT, bool withCalAtt);

    float Calibration() const { return calibration; }
    float Attenuation() const { return attenuation; }
    float Offset() const { return offset; } ///< raw units
    float Max() const { return maxValue; }
    float Min() const { return minValue; }
    int pMax() const { return pointOfMax; } ///< counted from 1, 0 for none
    int pMin() const { return pointOfMin; }
    int npnts() const { return Count(); }
    float Start() const { return startTime + timeShift + scopeDelay + scopeDelay2; }
    float End() const { return Start() + static_cast<float>(npnts() - 1) * timeStep; }

    /// All samples 0; the header stays.
    void Zero();

    /// Finds the extremes and the tick size of the value axis. Overwrites invalid samples with -DFMax. To be
    /// called before `Write` when samples have changed.
    void Scale();

    /// New factors and a new offset, the last in calibrated units; rewrites the samples accordingly. A
    /// factor of 0 or an invalid value leaves what there is. Extremes and tick size aren't updated.
    void SetCalAttOff(float cal, float att, float off);

    // ---- File. `name` comes without the extension ".wvf". ----

    /// Loads `n` samples; 0 the header alone, below 0 all that the header announces. False only if the file can't be
    /// opened: then there are no samples and the header is as before. A file that is too short isn't
    /// told: what it lacks stays as it was in the header and is 0 in the samples. Texts that the file has empty
    /// keep what they held.
    bool Read(DString name, int n);
    void Read(DFile &f, int n);

    /// Writes in place, stamping the object with the time. False, with a message, if the file on disk is
    /// locked and `lockState` is below 4; false if it can't be opened.
    bool Write(DString name);
    void Write(DFile &f);

    // ---- Sampling. Positions count samples from 0; times are in seconds. A sample that the trace doesn't have is 0.
    // ----

    /// Position at a time, rounded down, without limit.
    int Index(float t);
    /// Position at a time, limited to the trace.
    int PointAtTime(float t);
    /// Interpolated value; 0 outside the trace. Just behind the end it interpolates into 0.
    float ValAtTime(float t);
    /// When `v` is crossed, searched from the first sample on; `End() + timeStep` if it is beyond the extremes.
    float TimeAtVal(float v);
    /// The same from the last sample back; `Start() - timeStep` if beyond. Sample 1 is never tested.
    float TimeAtValR(float v);
    /// The value of `x` where this trace crosses `v`. The weights are those of the later sample for a crossing at
    /// the earlier one.
    float XYTimeAtVal(float v, Waveform &x);
    float XYTimeAtValR(float v, Waveform &x);
    /// Mean from one time up to another, without the sample at the second.
    float Avg(float from, float to);
    /// The times of samples `first` to the last.
    void TimeFill(DArray<float, 0> &times, int first);
    /// Folds the scope delays into `startTime` and clears the scope fields and `offset`; the samples stay.
    void ScopeZero();
    /// Resamples onto `n` samples from `start`, `step` apart, by linear interpolation; 0 where the trace isn't. A
    /// step of 0 or less changes nothing. Extremes aren't updated.
    void Align(int n, float start, float step);
    /// `Align` to the grid of `other`, whose `startTime` and `timeShift` are then taken without its delays.
    void AlignTo(Waveform const &other);

    float timeStep = 1.0f;  ///< seconds; never 0 after a read
    float timeShift = 0;    ///< of the whole trace; survives `ScopeZero`
    float startTime = 0;    ///< start time proper
    float scaleUnit = 1.0f; ///< tick size of the value axis; never 0 after a read
    float t1 = 0;           ///< free parameters of the trace
    float t2 = 0;
    float t3 = 0;
    float t4 = 0;
    float t5 = 0;
    float scopeDelay = 0; ///< counts in `Start()`
    float scopeValue = 0; ///< carried in the file, as the next two
    float scopeValue2 = 0;
    float scopeValue3 = 0;
    float scopeDelay2 = 0; ///< counts in `Start()`; in the file from version 4 on
    DString units;         ///< of the values
    DString stamp;         ///< date and time of the last write
    DString note;
    int fileCount = 0; ///< samples that the file's header announced
    /// 1: the file was locked when this was read. 2: lock the file that is written. 4 and above: `Write` ignores a
    /// lock on disk. Reading a locked file and forcing a write of it thus unlocks it.
    int lockState = 0;

protected:
    float attenuation = 1.0f;
    float calibration = 1.0f;
    float offset = 0;
    float maxValue = 0;
    float minValue = 0;
    int pointOfMax = 0;
    int pointOfMin = 0;

private:
    struct Crossing;

    float sample(int i) const { return i >= 0 && i < Count() ? Data()[i] : 0.0f; }
    bool beyondExtremes(float v) const { return v > maxValue || minValue > v; }
    Crossing crossForward(float v) const;
    Crossing crossBackward(float v, int last) const;
    void loadSamples(DFile &f, int n);
    void resample(int n, float start, float step);
    float tickSize(float magnitude) const;
};
