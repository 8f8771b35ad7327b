/// One sampled signal of a shot: equally spaced single-precision samples, with the header that says when they start,
/// how far apart they lie, how they were calibrated, and what their extremes are. On disk a .wvf file.
///
/// Sample i, from 0, lies at `Start() + i * timeStep` seconds. Samples are stored calibrated: sample =
/// (raw - offset) * calibration * attenuation. -DFMax marks a bad sample. All arithmetic is single precision in the
/// order of the terms, unless an operation says otherwise. The stored extremes are those of the last `Scale()` or of
/// the file: after samples change they are stale.
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

    /// Prepares this trace as the result of a computation on the time base of `other`: as many samples, undefined,
    /// the scope delays folded into `startTime`; `t1` to `t5` if `withT`, the factors if `withCalAtt`. Extremes,
    /// texts and `fileCount` stay as they were.
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

    /// Finds the extremes and the tick size of the value axis. Overwrites invalid samples with -DFMax. To be called
    /// before `Write` when samples have changed.
    void Scale();

    /// New factors and a new offset, the last in calibrated units; rewrites the samples accordingly. A factor of 0 or
    /// an invalid value leaves what there is. Extremes and tick size aren't updated.
    void SetCalAttOff(float cal, float att, float off);

    // ---- File. `name` comes without the extension ".wvf". ----

    /// Loads `n` samples; 0 the header alone, below 0 all that the header announces. False only if the file can't be
    /// opened: then there are no samples and the header is as before. A file that is too short isn't told: what it
    /// lacks stays as it was in the header and is 0 in the samples; but of more than a million samples of which the
    /// file lacks more than half only as many as it has are taken, a million at least. Texts that the file has empty
    /// keep what they held, and the unit name of an old file goes behind `units`, at each read. `lockState` becomes 1
    /// for a locked file and otherwise stays.
    bool Read(DString name, int n);
    void Read(DFile &f, int n);

    /// Writes in place, stamping the object with the time. False, with a message, if the file on disk is locked and
    /// `lockState` is below 4; false if it can't be opened.
    bool Write(DString name);
    void Write(DFile &f);

    // ---- Sampling. Positions count samples from 0, times are in seconds. A sample that isn't there is 0. ----

    /// Position at a time, rounded down, without limit.
    int Index(float t);
    /// Position at a time, limited to the trace.
    int PointAtTime(float t);
    /// Interpolated value; 0 outside the trace. Just behind the end it interpolates into 0.
    float ValAtTime(float t);
    /// When `v` is crossed, searched from the first sample on; `End() + timeStep` if it is beyond the extremes. A `v`
    /// that equals the sample searched first gives the time of that sample, even if the trace crosses it later, and a
    /// bracket of two equal samples an infinity or a NaN. The same holds for the next three.
    float TimeAtVal(float v);
    /// Searched from the last sample back; `Start() - timeStep` if beyond. Sample 1 is never tested.
    float TimeAtValR(float v);
    /// The value of `x` where this trace crosses `v`. The weights are swapped: a crossing at the earlier sample gives
    /// the later value of `x`. The backward one tests sample 1 too.
    float XYTimeAtVal(float v, Waveform &x);
    float XYTimeAtValR(float v, Waveform &x);
    /// Mean from one time up to another, without the sample at the second; within one step that sample. Times in
    /// reverse give -0.
    float Avg(float from, float to);
    /// The times of samples `first` to the last; without any, `times` loses its block too.
    void TimeFill(DArray<float, 0> &times, int first);
    /// Folds the scope delays into `startTime` and clears the scope fields and `offset`; the samples stay.
    void ScopeZero();
    /// Resamples onto `n` samples from `start`, `step` apart, by linear interpolation; 0 where the trace isn't. A
    /// step of 0 or less changes nothing. Extremes aren't updated.
    void Align(int n, float start, float step);
    /// `Align` to the grid of `other`, whose `startTime` and `timeShift` are then taken without its delays.
    void AlignTo(Waveform const &other);

    // ---- Parameters: two letters of code in any case, and for some an argument, as in "tm" and "t%[50]". ----

    // The first two characters are the code, and all from the fourth to the last but one is the argument, 0 if that
    // is no number.

    /// A number derived from the trace, with the extremes as they are stored; the codes are listed in
    /// docs/parameters.md. -DFMax for an unknown code, and for any code on a trace without samples.
    float GetTraceParam(DString const &p);

    /// The same on a pair of traces of which `x` gives the positions instead of time. -DFMax if they differ in
    /// length. A code that means nothing special for a pair is answered by `GetTraceParam`. "t%" and "b%" take the
    /// argument times 100 over the maximum here, the opposite of the single trace.
    float GetXYTraceParam(DString const &p, Waveform &x);

    /// The fields that follow the tick size, by number: 0 `scaleUnit`, 1 to 5 `t1` to `t5`, 6 `scopeDelay`, 7 to 9
    /// `scopeValue`, `scopeValue2`, `scopeValue3`. Null for any other number.
    float *Slot(int i);

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

    float maxValue = 0; ///< largest valid sample, from `Scale()` or the file
    float minValue = 0; ///< smallest valid sample
    int pointOfMax = 0; ///< position of the maximum, counted from 1; 0 for none
    int pointOfMin = 0; ///< position of the minimum

protected:
    float attenuation = 1.0f;
    float calibration = 1.0f;
    float offset = 0;

private:
    struct Crossing;
    struct TraceCode;
    struct XYTraceCode;
    static TraceCode const traceCodes[];
    static XYTraceCode const xyTraceCodes[];

    void copyparameters(Waveform const &other);
    float timeAtPart(double part);
    float xyTimeAtPart(double part, Waveform &x);
    float integral() const;
    float radialIntegral() const;
    float peakOfIntegral() const;
    float standardDeviation() const;
    float weightedTime() const;
    float widthAtHalf() const;

    float sample(int i) const { return i >= 0 && i < Count() ? Data()[i] : 0.0f; }
    bool beyondExtremes(float v) const { return v > maxValue || minValue > v; }
    Crossing crossForward(float v) const;
    Crossing crossBackward(float v, int lowest) const;
    void loadSamples(DFile &f, int n);
    void resample(DArray<float, 0> &out, float start, float step) const;
};
