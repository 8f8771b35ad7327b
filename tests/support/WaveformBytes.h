/// A .wvf file written out by hand, row by row of its layout, and the fields of a trace in the same form, so that a
/// test says which row it changes and which field that has to change. Bytes are hex texts in the order of
/// the file.
///
///     WvfRows rows = SampleRows();
///     rows.Set("timeStep", "00 00 00 00");
///     folder.Write("a.wvf", rows.Bytes());
#pragma once

#include <cstdint>
#include <cstring>
#include <map>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "data/Waveform.h"

/// The bit pattern of a float, and the float of a bit pattern.
inline std::uint32_t FloatBits(float value)
{
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

inline float BitsFloat(std::uint32_t bits)
{
    float value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

/// "0A ff" to two bytes. Text in single quotes stands for its characters.
inline std::string HexBytes(std::string const &hex)
{
    std::string bytes;
    for (std::size_t i = 0; i < hex.size();) {
        if (hex[i] == ' ') {
            ++i;
        } else if (hex[i] == '\'') {
            std::size_t const close = hex.find('\'', i + 1);
            bytes += hex.substr(i + 1, close - i - 1);
            i = close + 1;
        } else {
            bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
            i += 2;
        }
    }
    return bytes;
}

inline std::string BytesHex(std::string const &bytes)
{
    std::string hex;
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        if (!hex.empty()) hex += ' ';
        hex += "0123456789ABCDEF"[byte >> 4];
        hex += "0123456789ABCDEF"[byte & 15];
    }
    return hex;
}

/// Hex of a 4-byte value as it stands in a file.
template <typename Value>
std::string HexOf(Value value)
{
    static_assert(sizeof value == 4, "fields of four bytes");
    char bytes[sizeof value];
    std::memcpy(bytes, &value, sizeof value);
    return BytesHex(std::string(bytes, sizeof value));
}

inline float HexFloat(std::string const &hex)
{
    float value = 0;
    std::memcpy(&value, HexBytes(hex).data(), sizeof value);
    return value;
}

inline int HexInt(std::string const &hex)
{
    int value = 0;
    std::memcpy(&value, HexBytes(hex).data(), sizeof value);
    return value;
}

class WvfRows {
public:
    struct Row {
        Row(std::string row, std::string const &hex) : name(std::move(row)), bytes(HexBytes(hex)) {}
        std::string name, bytes;
    };

    explicit WvfRows(std::vector<Row> layout) : rows(std::move(layout)) {}

    WvfRows &Set(std::string const &name, std::string const &hex)
    {
        rows[find(name)].bytes = HexBytes(hex);
        return *this;
    }

    std::string Bytes() const
    {
        std::string bytes;
        for (Row const &row : rows) bytes += row.bytes;
        return bytes;
    }

    std::string const &Bytes(std::string const &name) const { return rows[find(name)].bytes; }

    std::size_t Offset(std::string const &name) const
    {
        std::size_t offset = 0;
        for (std::size_t i = 0; i < find(name); ++i) offset += rows[i].bytes.size();
        return offset;
    }

    std::size_t End(std::string const &name) const { return Offset(name) + Bytes(name).size(); }

    std::vector<Row> const &All() const { return rows; }

private:
    std::size_t find(std::string const &name) const
    {
        for (std::size_t i = 0; i < rows.size(); ++i)
            if (rows[i].name == name) return i;
        throw std::logic_error("no row " + name);
    }

    std::vector<Row> rows;
};

/// Three samples and a different value in every field.
inline WvfRows SampleRows()
{
    return WvfRows({
        {"version", "04 00"},
        {"skip", "00 00"},
        {"skipped", ""},
        {"fileCount", "03 00 00 00"},
        {"t4", "00 00 90 40"},          // 4.5
        {"timeStep", "00 00 80 3E"},    // 0.25
        {"t5", "00 00 B0 40"},          // 5.5
        {"calibration", "00 00 00 40"}, // 2
        {"attenuation", "00 00 20 41"}, // 10
        {"start", "00 00 E0 40"},       // 7 = 2 + 1 + 4
        {"timeShift", "00 00 00 3F"},   // 0.5
        {"maxValue", "00 00 40 40"},    // 3
        {"minValue", "00 00 C0 BF"},    // -1.5
        {"pointOfMax", "03 00 00 00"},
        {"pointOfMin", "02 00 00 00"},
        {"scaleUnit", "CD CC 4C 3E"}, // 0.2
        {"reserved", "00 00"},
        {"scopeValue", "00 00 C0 40"},  // 6
        {"t1", "00 00 C0 3F"},          // 1.5
        {"t2", "00 00 20 40"},          // 2.5
        {"t3", "00 00 60 40"},          // 3.5
        {"offset", "00 00 40 BF"},      // -0.75
        {"scopeDelay", "00 00 80 3F"},  // 1
        {"scopeDelay2", "00 00 80 40"}, // 4
        {"scopeValue2", "00 00 00 41"}, // 8
        {"scopeValue3", "00 00 10 41"}, // 9
        {"units length", "02 00"},
        {"units", "6D 56"}, // mV
        {"stamp length", "13 00"},
        {"stamp", "30 36 2F 31 30 2F 32 30 32 34 20 30 38 3A 31 33 3A 32 30"}, // 06/10/2024 08:13:20
        {"note length", "04 00"},
        {"note", "70 6F 6F 72"}, // poor
        {"old unit length", "00 00"},
        {"old unit", ""},
        {"one", "01 00"},
        {"count again", "03 00 00 00"},
        {"another one", "01 00 00 00"},
        {"samples", "00 00 80 3F 00 00 C0 BF 00 00 40 40"}, // 1 -1.5 3
    });
}

/// Each field of a trace by its name: numbers of four bytes as in a file, texts as they are, all else in decimal.
using Fields = std::map<std::string, std::string>;

/// The trace of `SampleRows`.
inline Fields SampleFields()
{
    return {
        {"timeStep", "00 00 80 3E"},
        {"timeShift", "00 00 00 3F"},
        {"startTime", "00 00 00 40"}, // 2
        {"scaleUnit", "CD CC 4C 3E"},
        {"t1", "00 00 C0 3F"},
        {"t2", "00 00 20 40"},
        {"t3", "00 00 60 40"},
        {"t4", "00 00 90 40"},
        {"t5", "00 00 B0 40"},
        {"scopeDelay", "00 00 80 3F"},
        {"scopeValue", "00 00 C0 40"},
        {"scopeValue2", "00 00 00 41"},
        {"scopeValue3", "00 00 10 41"},
        {"scopeDelay2", "00 00 80 40"},
        {"units", "mV"},
        {"stamp", "06/10/2024 08:13:20"},
        {"note", "poor"},
        {"fileCount", "03 00 00 00"},
        {"lockState", "0"},
        {"attenuation", "00 00 20 41"},
        {"calibration", "00 00 00 40"},
        {"offset", "00 00 40 BF"},
        {"maxValue", "00 00 40 40"},
        {"minValue", "00 00 C0 BF"},
        {"pointOfMax", "03 00 00 00"},
        {"pointOfMin", "02 00 00 00"},
        {"npnts", "3"},
        {"shape", "1 x 3"},
        {"samples", "00 00 80 3F 00 00 C0 BF 00 00 40 40"},
    };
}

/// What a trace holds; of the samples the first hundred.
inline Fields FieldsOf(Waveform const &w)
{
    auto const text = [](DString const &s) { return std::string(s.c_str(), static_cast<std::size_t>(s.Len())); };
    std::string samples;
    for (int i = 0; i < w.npnts() && i < 100; ++i) samples += (i == 0 ? "" : " ") + HexOf(FloatBits(w[i]));
    return {
        {"timeStep", HexOf(w.timeStep)},
        {"timeShift", HexOf(w.timeShift)},
        {"startTime", HexOf(w.startTime)},
        {"scaleUnit", HexOf(w.scaleUnit)},
        {"t1", HexOf(w.t1)},
        {"t2", HexOf(w.t2)},
        {"t3", HexOf(w.t3)},
        {"t4", HexOf(w.t4)},
        {"t5", HexOf(w.t5)},
        {"scopeDelay", HexOf(w.scopeDelay)},
        {"scopeValue", HexOf(w.scopeValue)},
        {"scopeValue2", HexOf(w.scopeValue2)},
        {"scopeValue3", HexOf(w.scopeValue3)},
        {"scopeDelay2", HexOf(w.scopeDelay2)},
        {"units", text(w.units)},
        {"stamp", text(w.stamp)},
        {"note", text(w.note)},
        {"fileCount", HexOf(w.fileCount)},
        {"lockState", std::to_string(w.lockState)},
        {"attenuation", HexOf(w.Attenuation())},
        {"calibration", HexOf(w.Calibration())},
        {"offset", HexOf(w.Offset())},
        {"maxValue", HexOf(w.Max())},
        {"minValue", HexOf(w.Min())},
        {"pointOfMax", HexOf(w.pMax())},
        {"pointOfMin", HexOf(w.pMin())},
        {"npnts", std::to_string(w.npnts())},
        {"shape", std::to_string(w.RCount()) + " x " + std::to_string(w.CCount())},
        {"samples", samples},
    };
}

/// `expected` with some fields changed.
inline Fields With(Fields expected, Fields const &changes)
{
    for (auto const &[name, value] : changes) expected[name] = value;
    return expected;
}

/// One line for each field of `expected` that is different in `actual`, so empty if there is none. Fields that
/// `expected` doesn't have are left out of the comparison.
inline std::string Differences(Fields const &expected, Fields const &actual)
{
    std::string lines;
    for (auto const &[name, value] : expected) {
        auto const found = actual.find(name);
        std::string const is = found == actual.end() ? "(no such field)" : found->second;
        if (is != value) lines += name + ": expected <" + value + ">, is <" + is + ">\n";
    }
    return lines;
}

inline std::string Differences(Fields const &expected, Waveform const &actual)
{
    return Differences(expected, FieldsOf(actual));
}

/// A trace whose every field a test can set.
class OpenWaveform : public Waveform {
public:
    using Waveform::attenuation;
    using Waveform::calibration;
    using Waveform::maxValue;
    using Waveform::minValue;
    using Waveform::offset;
    using Waveform::pointOfMax;
    using Waveform::pointOfMin;
    using Waveform::Waveform;

    void SetSamples(std::vector<float> const &values)
    {
        Size(static_cast<int>(values.size()));
        if (!values.empty()) std::memcpy(Data(), values.data(), values.size() * sizeof(float));
    }
};

/// The trace of `SampleFields`, set field by field.
inline OpenWaveform SampleTrace()
{
    OpenWaveform w;
    w.SetSamples({1, -1.5f, 3});
    w.timeStep = 0.25f;
    w.timeShift = 0.5f;
    w.startTime = 2;
    w.scaleUnit = 0.2f;
    w.t1 = 1.5f;
    w.t2 = 2.5f;
    w.t3 = 3.5f;
    w.t4 = 4.5f;
    w.t5 = 5.5f;
    w.scopeDelay = 1;
    w.scopeValue = 6;
    w.scopeValue2 = 8;
    w.scopeValue3 = 9;
    w.scopeDelay2 = 4;
    w.units = "mV";
    w.stamp = "06/10/2024 08:13:20";
    w.note = "poor";
    w.fileCount = 3;
    w.attenuation = 10;
    w.calibration = 2;
    w.offset = -0.75f;
    w.maxValue = 3;
    w.minValue = -1.5f;
    w.pointOfMax = 3;
    w.pointOfMin = 2;
    return w;
}

/// A trace with other values in every field, for what a read or a copy has to replace or to leave alone.
inline OpenWaveform OtherTrace()
{
    OpenWaveform w;
    w.SetSamples({70, 71, 72, 73, 74});
    w.timeStep = 0.125f;
    w.timeShift = -20;
    w.startTime = 100;
    w.scaleUnit = 50;
    w.t1 = -1;
    w.t2 = -2;
    w.t3 = -3;
    w.t4 = -4;
    w.t5 = -5;
    w.scopeDelay = 0.5f;
    w.scopeValue = -6;
    w.scopeValue2 = -7;
    w.scopeValue3 = -8;
    w.scopeDelay2 = 0.25f;
    w.units = "old units";
    w.stamp = "old stamp";
    w.note = "old note";
    w.fileCount = 2;
    w.attenuation = -9;
    w.calibration = -10;
    w.offset = -11;
    w.maxValue = -12;
    w.minValue = -13;
    w.pointOfMax = 14;
    w.pointOfMin = 15;
    return w;
}
