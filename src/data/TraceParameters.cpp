/// The two-letter parameters of a trace, and of a pair of traces.
///
/// Each code is a row of a table with the function that answers it. Sums run from the first to the last sample in
/// single precision, nothing reassociated; where a double steps in, the cast says so. What users have plotted and
/// fitted over the years rests on the exact bits.

#include "data/Waveform.h"

#include <cmath>

#include "data/SampleSearch.h"

struct Waveform::TraceCode {
    char const *code;
    float (*value)(Waveform &w, float arg);
};

struct Waveform::XYTraceCode {
    char const *code;
    float (*value)(Waveform &y, Waveform &x, float arg);
};

Waveform::TraceCode const Waveform::traceCodes[] = {
    // Fields
    {"t1", [](Waveform &w, float) { return w.t1; }},
    {"t2", [](Waveform &w, float) { return w.t2; }},
    {"t3", [](Waveform &w, float) { return w.t3; }},
    {"t4", [](Waveform &w, float) { return w.t4; }},
    {"t5", [](Waveform &w, float) { return w.t5; }},
    {"ts", [](Waveform &w, float) { return w.timeShift; }},
    {"is", [](Waveform &w, float) { return w.startTime; }},
    {"pt", [](Waveform &w, float) { return w.scopeDelay; }},
    {"su", [](Waveform &w, float) { return w.scaleUnit; }},
    {"mx", [](Waveform &w, float) { return w.maxValue; }},
    {"mn", [](Waveform &w, float) { return w.minValue; }},
    {"cl", [](Waveform &w, float) { return w.calibration; }},
    {"at", [](Waveform &w, float) { return w.attenuation; }},
    {"tp", [](Waveform &w, float) { return w.timeStep; }},
    {"bl", [](Waveform &w, float) { return w.offset; }},
    {"sv", [](Waveform &w, float) { return w.scopeValue; }},
    // Times. Those of the extremes lie one step behind the sample, since the positions count from 1.
    {"st", [](Waveform &w, float) { return w.Start(); }},
    {"ft", [](Waveform &w, float) { return w.End(); }},
    {"it", [](Waveform &w, float) { return w.scopeDelay + w.startTime + w.scopeDelay2; }},
    {"tm", [](Waveform &w, float) { return w.Start() + static_cast<float>(w.pointOfMax) * w.timeStep; }},
    {"tn", [](Waveform &w, float) { return w.Start() + static_cast<float>(w.pointOfMin) * w.timeStep; }},
    {"19",
     [](Waveform &w, float) {
         float const late = w.timeAtPart(0.9);
         return late - w.timeAtPart(0.1);
     }},
    {"28",
     [](Waveform &w, float) {
         float const late = w.timeAtPart(0.8);
         return late - w.timeAtPart(0.2);
     }},
    {"fh", [](Waveform &w, float) { return w.widthAtHalf(); }},
    {"wa", [](Waveform &w, float) { return w.weightedTime(); }},
    // Means and integrals
    {"av", [](Waveform &w, float) { return w.Avg(w.Start(), w.End()); }},
    {"in", [](Waveform &w, float) { return w.integral(); }},
    {"ri", [](Waveform &w, float) { return w.radialIntegral(); }},
    {"pi", [](Waveform &w, float) { return w.peakOfIntegral(); }},
    {"sd", [](Waveform &w, float) { return w.standardDeviation(); }},
    // With an argument
    {"vt", [](Waveform &w, float time) { return w.ValAtTime(time); }},
    {"tv", [](Waveform &w, float value) { return w.TimeAtVal(value); }},
    {"t%", [](Waveform &w, float percent) { return w.TimeAtVal(percent * w.maxValue / 100.0f); }},
    {"bv", [](Waveform &w, float value) { return w.TimeAtValR(value); }},
    {"b%", [](Waveform &w, float percent) { return w.TimeAtValR(percent * w.maxValue / 100.0f); }},
    {"la", [](Waveform &w, float time) { return w.Avg(w.Start(), time); }},
    {"ta", [](Waveform &w, float time) { return w.Avg(time, w.End()); }},
    {"lt",
     [](Waveform &w, float time) {
         return std::floor((time - w.Start()) / w.timeStep) * w.timeStep + w.Start();
     }},
};

Waveform::XYTraceCode const Waveform::xyTraceCodes[] = {
    {"st", [](Waveform &, Waveform &x, float) { return x.sample(0); }},
    {"ft", [](Waveform &, Waveform &x, float) { return x.sample(x.npnts() - 1); }},
    // The position counts from 1 and is used as an index all the same.
    {"tm", [](Waveform &y, Waveform &x, float) { return x.sample(y.pointOfMax); }},
    {"tn", [](Waveform &y, Waveform &x, float) { return x.sample(y.pointOfMin); }},
    {"19",
     [](Waveform &y, Waveform &x, float) {
         float const late = y.xyTimeAtPart(0.9, x);
         return late - y.xyTimeAtPart(0.1, x);
     }},
    {"28",
     [](Waveform &y, Waveform &x, float) {
         float const late = y.xyTimeAtPart(0.8, x);
         return late - y.xyTimeAtPart(0.2, x);
     }},
    {"vt", [](Waveform &y, Waveform &x, float at) { return y.ValAtTime(x.TimeAtVal(at)); }},
    {"tv", [](Waveform &y, Waveform &x, float value) { return y.XYTimeAtVal(value, x); }},
    {"t%", [](Waveform &y, Waveform &x, float part) { return y.XYTimeAtVal(part * 100.0f / y.maxValue, x); }},
    {"bv", [](Waveform &y, Waveform &x, float value) { return y.XYTimeAtValR(value, x); }},
    {"b%", [](Waveform &y, Waveform &x, float part) { return y.XYTimeAtValR(part * 100.0f / y.maxValue, x); }},
    {"la", [](Waveform &y, Waveform &x, float at) { return y.Avg(y.Start(), x.TimeAtVal(at)); }},
    {"ta", [](Waveform &y, Waveform &x, float at) { return y.Avg(x.TimeAtVal(at), y.End()); }},
};

namespace {

int const codeLength = 2;

struct Parameter {
    DString code;
    float argument = 0.0f;
};

Parameter parse(DString const &p)
{
    Parameter result;
    result.code = p;
    if (p.Len() > codeLength) {
        result.code = DString(p, 0, codeLength);
        float number = 0.0f;
        if (DString(p, codeLength + 1, p.Len() - codeLength - 2).ToFloat(number)) result.argument = number;
    }
    result.code.ToLower();
    return result;
}

} // namespace

float Waveform::GetTraceParam(DString const &p)
{
    if (npnts() == 0) return -DFMax;
    Parameter const parameter = parse(p);
    for (TraceCode const &row : traceCodes) {
        if (parameter.code == row.code) return row.value(*this, parameter.argument);
    }
    return -DFMax;
}

float Waveform::GetXYTraceParam(DString const &p, Waveform &x)
{
    if (x.npnts() != npnts() || npnts() == 0) return -DFMax;
    Parameter const parameter = parse(p);
    for (XYTraceCode const &row : xyTraceCodes) {
        if (parameter.code == row.code) return row.value(*this, x, parameter.argument);
    }
    return GetTraceParam(p);
}

/// `part` of the maximum itself, not of the height above a base line.
float Waveform::timeAtPart(double part)
{
    return TimeAtVal(static_cast<float>(part * static_cast<double>(maxValue)));
}

float Waveform::xyTimeAtPart(double part, Waveform &x)
{
    return XYTimeAtVal(static_cast<float>(part * static_cast<double>(maxValue)), x);
}

/// Sample 0 is no part of it.
float Waveform::integral() const
{
    float const *const y = Data();
    int const n = npnts();
    float sum = 0.0f;
    for (int i = 1; i < n; ++i) sum += y[i];
    return sum * timeStep;
}

/// The highest value that the running integral reaches, at least 0.
float Waveform::peakOfIntegral() const
{
    float const *const y = Data();
    int const n = npnts();
    float run = 0.0f;
    float best = 0.0f;
    for (int i = 1; i < n; ++i) {
        run += y[i];
        if (!(best > run)) best = run;
    }
    return best * timeStep;
}

/// The integral of a profile over a circular area, with time as the radius. A positive start counts as a number of
/// sample steps in the sum.
float Waveform::radialIntegral() const
{
    float const *const y = Data();
    int const n = npnts();
    float const dt = timeStep;
    float const radius = Start() > 0.0f ? Start() : 0.0f;
    float area = pi * y[0] * radius * radius;
    float const width = pi * 2.0f * dt;
    for (int i = 1; i < n; ++i) {
        float const term = width * y[i] * dt;
        double const r = (static_cast<double>(static_cast<float>(i)) - 0.5) + static_cast<double>(radius);
        area = static_cast<float>(static_cast<double>(area) + static_cast<double>(term) * r);
    }
    return area;
}

float Waveform::standardDeviation() const
{
    float const *const y = Data();
    int const n = npnts();
    float sum = 0.0f;
    for (int i = 0; i < n; ++i) sum += y[i];
    float const mean = sum / static_cast<float>(n);
    float squares = 0.0f;
    for (int i = 0; i < n; ++i) {
        float const difference = y[i] - mean;
        squares += difference * difference;
    }
    if (n > 1) squares /= static_cast<float>(n - 1);
    return squares < 0.0f ? 0.0f : std::sqrt(squares);
}

/// The mean time, weighted by the samples.
float Waveform::weightedTime() const
{
    float const *const y = Data();
    int const n = npnts();
    float const start = Start();
    float const dt = timeStep;
    float sum = 0.0f;
    float moment = 0.0f;
    for (int i = 0; i < n; ++i) {
        sum += y[i];
        moment += (static_cast<float>(i) * dt + start) * y[i];
    }
    return sum == 0.0f ? 0.0f : moment / sum;
}

/// Walks from the peak to both sides until the trace falls below half of it. The ends of the trace stand where it
/// doesn't.
float Waveform::widthAtHalf() const
{
    float const *const y = Data();
    int const n = npnts();
    float const half = maxValue * 0.5f;
    int const peak = pointOfMax < 0 ? 0 : pointOfMax > n ? n : pointOfMax; // a file may say anything
    float right = static_cast<float>(static_cast<double>(static_cast<float>(n)) - 1.0);
    float left = 0.0f;
    auto const crossing = [&](int i) { // between samples i - 1 and i
        float const before = sample(i - 1);
        float const fraction = (half - before) / (sample(i) - before);
        double const position = static_cast<double>(static_cast<float>(i)) - 1.0;
        return static_cast<float>(static_cast<double>(fraction) + position);
    };
    auto const below = [half](float value) { return half > value; };
    if (peak > 0) {
        float const *const found = findBackward(y + peak - 1, y, below);
        if (below(*found)) left = crossing(static_cast<int>(found - y) + 1);
    }
    float const *const found = findForward(y + peak, y + n, below);
    if (found < y + n) right = crossing(static_cast<int>(found - y));
    return (right - left) * timeStep;
}
