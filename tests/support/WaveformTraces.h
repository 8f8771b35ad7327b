/// Traces from rows of bit patterns, and comparison by bits, for the tests of what a trace computes.
#pragma once

#include <cmath>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "data/WaveformValues.h"
#include "support/NumberText.h"
#include "support/WaveformBytes.h"

inline std::vector<float> FloatsOf(std::vector<waveform_values::Bits> const &bits)
{
    std::vector<float> values;
    for (waveform_values::Bits const b : bits) values.push_back(BitsFloat(b));
    return values;
}

/// The words of a list.
inline std::vector<waveform_values::Bits> WordsOf(waveform_values::List list)
{
    std::vector<waveform_values::Bits> words;
    std::istringstream in{std::string(list)};
    for (waveform_values::Bits word = 0; in >> std::hex >> word;) words.push_back(word);
    return words;
}

inline std::vector<float> FloatsOf(waveform_values::List list)
{
    return FloatsOf(WordsOf(list));
}

/// A float as a failing test prints it, by its bits. Every NaN is the same: its payload isn't promised.
inline std::string Exactly(float value)
{
    if (std::isnan(value)) return "nan";
    return FixedText(value) + " (" + HexOf(FloatBits(value)) + ")";
}

inline std::string Exactly(waveform_values::Bits bits)
{
    return Exactly(BitsFloat(bits));
}

inline std::string Exactly(std::vector<waveform_values::Bits> const &bits)
{
    std::string all;
    for (waveform_values::Bits const b : bits) all += Exactly(b) + "\n";
    return all;
}

inline std::string Exactly(waveform_values::List list)
{
    return Exactly(WordsOf(list));
}

inline std::string Exactly(DArray<float, 0> const &values)
{
    std::string all;
    for (int i = 0; i < values.Count(); ++i) all += Exactly(values[i]) + "\n";
    return all;
}

/// A trace of the table, by its name.
inline OpenWaveform TraceOf(std::string const &name)
{
    OpenWaveform w;
    for (waveform_values::Trace const &row : waveform_values::Traces()) {
        if (row.name != name) continue;
        w.SetSamples(FloatsOf(row.samples));
        w.timeStep = BitsFloat(row.timeStep);
        w.timeShift = BitsFloat(row.timeShift);
        w.startTime = BitsFloat(row.startTime);
        w.scopeDelay = BitsFloat(row.scopeDelay);
        w.scopeDelay2 = BitsFloat(row.scopeDelay2);
        w.maxValue = BitsFloat(row.maxValue);
        w.minValue = BitsFloat(row.minValue);
        w.pointOfMax = row.pointOfMax;
        w.pointOfMin = row.pointOfMin;
        return w;
    }
    throw std::logic_error("no trace " + name);
}
