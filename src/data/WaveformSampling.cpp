/// Lookups between position, time and value, and resampling.
///
/// The crossing searches walk the samples with plain indices; only the two samples of the bracket that they end in go
/// through `sample`, since for a trace of one or two samples these may lie outside.

#include "data/Waveform.h"

#include <cmath>

#include "data/SampleSearch.h"

/// The bracket of a crossing: samples `low` and `low + 1`, and the way from the first to the second.
struct Waveform::Crossing {
    int low;
    float fraction;
};

int Waveform::Index(float t)
{
    return FloorToInt(static_cast<double>((t - Start()) / timeStep));
}

int Waveform::PointAtTime(float t)
{
    int const last = npnts() - 1;
    if (Start() > t) return 0;
    if (t > static_cast<float>(last) * timeStep + Start()) return last;
    int const point = TruncateToInt(static_cast<double>((t - Start()) / timeStep));
    return point < 0 ? 0 : point > last ? last : point;
}

float Waveform::ValAtTime(float t)
{
    float const x = (t - Start()) / timeStep;
    int const i = FloorToInt(static_cast<double>(x));
    if (i < 0 || i >= npnts()) return 0.0f;
    float const f = x - static_cast<float>(i);
    return (1 - f) * sample(i) + f * sample(i + 1);
}

Waveform::Crossing Waveform::crossForward(float v) const
{
    auto const above = [v](float y) { return y > v; };
    auto const below = [v](float y) { return v > y; };
    int const last = npnts() - 1;
    int k = 1;
    if (last > 1) {
        float const *const y = Data();
        bool const rising = v > y[0];
        float const *const found = rising ? findForward(y + 1, y + last, above) : findForward(y + 1, y + last, below);
        k = static_cast<int>(found - y);
    }
    float const before = sample(k - 1);
    return {k - 1, (v - before) / (sample(k) - before)};
}

/// Tests samples down to `lowest`, where the search ends in any case.
Waveform::Crossing Waveform::crossBackward(float v, int lowest) const
{
    auto const above = [v](float y) { return y > v; };
    auto const below = [v](float y) { return v > y; };
    int k = npnts() - 2;
    if (k > lowest) {
        float const *const y = Data();
        bool const rising = v > y[k + 1];
        float const *const end = y + lowest;
        float const *const found = rising ? findBackward(y + k, end, above) : findBackward(y + k, end, below);
        k = static_cast<int>(found - y);
    }
    float const at = sample(k);
    return {k, (v - at) / (sample(k + 1) - at)};
}

float Waveform::TimeAtVal(float v)
{
    if (beyondExtremes(v)) return End() + timeStep;
    if (v == sample(0)) return Start();
    Crossing const crossing = crossForward(v);
    return (crossing.fraction + static_cast<float>(crossing.low)) * timeStep + Start();
}

float Waveform::TimeAtValR(float v)
{
    if (beyondExtremes(v)) return Start() - timeStep;
    if (v == sample(npnts() - 1)) return End();
    Crossing const crossing = crossBackward(v, 1);
    return (crossing.fraction + static_cast<float>(crossing.low)) * timeStep + Start();
}

float Waveform::XYTimeAtVal(float v, Waveform &x)
{
    if (beyondExtremes(v)) return x.sample(x.npnts() - 1);
    if (v == sample(0)) return x.sample(0);
    Crossing const crossing = crossForward(v);
    return (1 - crossing.fraction) * x.sample(crossing.low + 1) + crossing.fraction * x.sample(crossing.low);
}

float Waveform::XYTimeAtValR(float v, Waveform &x)
{
    if (beyondExtremes(v)) return x.sample(0);
    if (v == sample(npnts() - 1)) return x.sample(x.npnts() - 1);
    Crossing const crossing = crossBackward(v, 0);
    return (1 - crossing.fraction) * x.sample(crossing.low + 1) + crossing.fraction * x.sample(crossing.low);
}

float Waveform::Avg(float from, float to)
{
    float const start = Start();
    float const end = static_cast<float>(npnts() - 1) * timeStep + start;
    float const a = from > start ? from : start;
    float const b = end > to ? to : end;
    int first = FloorToInt(static_cast<double>((a - start) / timeStep));
    int last = FloorToInt(static_cast<double>((b - start) / timeStep));
    if (first < 0) first = 0;
    if (last > npnts()) last = npnts();
    if (first == last) return sample(first);
    float sum = 0.0f;
    for (int i = first; i < last; ++i) sum += Data()[i];
    return sum / static_cast<float>(static_cast<long long>(last) - first);
}

void Waveform::TimeFill(DArray<float, 0> &times, int first)
{
    if (first < 0) first = 0;
    int const n = npnts();
    if (first >= n) {
        times.Clear();
        return;
    }
    float const start = timeShift + startTime + scopeDelay + scopeDelay2;
    times.Size(n - first);
    for (int i = first; i < n; ++i) times[i - first] = start + static_cast<float>(i) * timeStep;
}

void Waveform::ScopeZero()
{
    startTime = startTime + scopeDelay + scopeDelay2;
    scopeDelay = scopeDelay2 = 0;
    scopeValue = scopeValue2 = scopeValue3 = 0;
    offset = 0;
}

void Waveform::Align(int n, float start, float step)
{
    if (step <= 0) return;
    if (n < 0) n = 0;
    if (start == Start() && step == timeStep && n == npnts()) return;
    float const folded = startTime + scopeDelay + scopeDelay2;
    if (start == timeShift + folded && step == timeStep) {
        int const old = npnts();
        ReSize(n);
        for (int i = old; i < n; ++i) Data()[i] = 0.0f;
        ScopeZero();
        return;
    }
    DArray<float, 0> out;
    if (n > 0) out.Size(n);
    ScopeZero(); // only now: what can't be allocated leaves the trace as it was
    resample(out, start, step);
    SwapData(out);
    startTime = start;
    timeStep = step;
    timeShift = 0;
}

/// The position on the old trace is advanced by repeated addition, not computed anew for each sample. On a trace whose
/// own step is negative it runs backward and may leave the trace at the front.
void Waveform::resample(DArray<float, 0> &out, float start, float step) const
{
    int const n = out.Count();
    float const *const y = Data();
    float const last = static_cast<float>(npnts() - 1);
    float const ratio = step / timeStep;
    float pos = (start - Start()) / timeStep;
    bool const forward = ratio > 0;
    int j = 0;
    for (; pos < 0 && j < n; ++j, pos += ratio) out[j] = 0.0f;
    for (; last > pos && j < n; ++j, pos += ratio) {
        int const i = forward ? static_cast<int>(pos) : FloorToInt(static_cast<double>(pos));
        float const f = pos - static_cast<float>(i);
        out[j] = forward ? (1 - f) * y[i] + f * y[i + 1] : (1 - f) * sample(i) + f * sample(i + 1);
    }
    if (pos == last && j < n) out[j++] = sample(npnts() - 1);
    for (; j < n; ++j) out[j] = 0.0f;
}

void Waveform::AlignTo(Waveform const &other)
{
    float const shift = other.timeShift;
    float const start = other.startTime;
    Align(other.npnts(), other.Start(), other.timeStep);
    timeShift = shift;
    startTime = start;
}
