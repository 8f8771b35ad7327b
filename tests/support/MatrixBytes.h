/// A .dmt file written out by hand, row by row of its layout, and the fields of a matrix in the same form. Bytes are
/// hex texts in the order of the file.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "data/Matrix.h"
#include "support/WaveformBytes.h"

/// Rows of a layout are the same for every format.
using DmtRows = WvfRows;

/// Three dimensions of sizes 2, 3, 2, the second of which is explicit, and a different value in every field.
inline DmtRows CubeRows()
{
    return DmtRows({
        {"version", "04 00 00 00"},
        {"skip", "00 00 00 00"},
        {"skipped", ""},
        {"rank", "03 00 00 00"},
        {"size1", "02 00 00 00"},
        {"step1", "00 00 00 3F"},   // 0.5
        {"coords1", "00 00 20 41"}, // 10
        {"size2", "03 00 00 00"},
        {"step2", "00 00 00 00"},
        {"coords2", "00 00 80 3F 00 00 00 40 00 00 80 40"}, // 1 2 4
        {"size3", "02 00 00 00"},
        {"step3", "00 00 80 3E"},       // 0.25
        {"coords3", "00 00 80 BF"},     // -1
        {"maxValue", "00 00 40 41"},    // 12
        {"minValue", "00 00 80 3F"},    // 1
        {"calibration", "00 00 40 40"}, // 3
        {"scaleUnit", "00 00 A0 40"},   // 5
        {"t1", "00 00 C0 3F"},          // 1.5
        {"t2", "00 00 20 40"},          // 2.5
        {"t3", "00 00 60 40"},          // 3.5
        {"t4", "00 00 90 40"},          // 4.5
        {"t5", "00 00 B0 40"},          // 5.5
        {"units length", "02 00 00 00"},
        {"units", "'mV'"},
        {"note length", "04 00 00 00"},
        {"note", "'poor'"},
        {"stamp length", "13 00 00 00"},
        {"stamp", "'06/10/2024 08:13:20'"},
        {"values", "00 00 80 3F 00 00 00 40 00 00 40 40 00 00 80 40 00 00 A0 40 00 00 C0 40 "  // 1 to 6
                   "00 00 E0 40 00 00 00 41 00 00 10 41 00 00 20 41 00 00 30 41 00 00 40 41"}, // 7 to 12
    });
}

inline Fields CubeFields()
{
    return {
        {"rank", "3"},
        {"sizes", "2 3 2"},
        {"origSizes", "2 3 2"},
        {"step1", "00 00 00 3F"},
        {"step2", "00 00 00 00"},
        {"step3", "00 00 80 3E"},
        {"coords1", "00 00 20 41 00 00 28 41"}, // 10 10.5
        {"coords2", "00 00 80 3F 00 00 00 40 00 00 80 40"},
        {"coords3", "00 00 80 BF 00 00 40 BF"}, // -1 -0.75
        {"maxValue", "00 00 40 41"},
        {"minValue", "00 00 80 3F"},
        {"calibration", "00 00 40 40"},
        {"scaleUnit", "00 00 A0 40"},
        {"t1", "00 00 C0 3F"},
        {"t2", "00 00 20 40"},
        {"t3", "00 00 60 40"},
        {"t4", "00 00 90 40"},
        {"t5", "00 00 B0 40"},
        {"units", "mV"},
        {"note", "poor"},
        {"stamp", "06/10/2024 08:13:20"},
        {"count", "12"},
        {"values", BytesHex(CubeRows().Bytes("values"))},
    };
}

/// Two dimensions of sizes 2 and 5, the second explicit: 10 20 30 40 50. Slice k holds 2k and 2k + 1.
inline DmtRows SheetRows()
{
    return DmtRows({
        {"version", "04 00 00 00"},
        {"skip", "00 00 00 00"},
        {"skipped", ""},
        {"rank", "02 00 00 00"},
        {"size1", "02 00 00 00"},
        {"step1", "00 00 80 3F"},   // 1
        {"coords1", "00 00 40 40"}, // 3
        {"size2", "05 00 00 00"},
        {"step2", "00 00 00 00"},
        {"coords2", "00 00 20 41 00 00 A0 41 00 00 F0 41 00 00 20 42 00 00 48 42"},
        {"maxValue", "00 00 10 41"},    // 9
        {"minValue", "00 00 00 00"},    // 0
        {"calibration", "00 00 80 3F"}, // 1
        {"scaleUnit", "00 00 80 3F"},   // 1
        {"t1", "00 00 00 00"},
        {"t2", "00 00 00 00"},
        {"t3", "00 00 00 00"},
        {"t4", "00 00 00 00"},
        {"t5", "00 00 00 00"},
        {"units length", "00 00 00 00"},
        {"units", ""},
        {"note length", "00 00 00 00"},
        {"note", ""},
        {"stamp length", "13 00 00 00"},
        {"stamp", "'06/10/2024 08:13:20'"},
        {"values", "00 00 00 00 00 00 80 3F 00 00 00 40 00 00 40 40 00 00 80 40 "  // 0 to 4
                   "00 00 A0 40 00 00 C0 40 00 00 E0 40 00 00 00 41 00 00 10 41"}, // 5 to 9
    });
}

/// Floats as they stand in a file; of more than a hundred the first hundred.
inline std::string FloatsHex(float const *values, int n)
{
    std::string hex;
    for (int i = 0; i < n && i < 100; ++i) hex += (i == 0 ? "" : " ") + HexOf(values[i]);
    return hex;
}

inline std::string FloatsHex(std::vector<float> const &values)
{
    return FloatsHex(values.data(), static_cast<int>(values.size()));
}

inline std::string ArrayHex(DArray<float, 0> const &values)
{
    return FloatsHex(values.Data(), values.Count());
}

inline DArray<float, 0> FloatArray(std::vector<float> const &values)
{
    DArray<float, 0> array;
    if (!values.empty()) array.Insert(values.data(), 0, static_cast<int>(values.size()));
    return array;
}

/// A matrix whose every field a test can set, with its inner operations.
class OpenMatrix : public Matrix {
public:
    using Matrix::Append;
    using Matrix::calibration;
    using Matrix::Matrix;
    using Matrix::rank;
    using Matrix::Read;
    using Matrix::setcoords;
    using Matrix::Write;

    /// The values `first`, `first` + 1 ...
    void Fill(float first)
    {
        for (int i = 0; i < Count(); ++i) Data()[i] = first + static_cast<float>(i);
    }
};

/// The matrix of `CubeRows`, set field by field.
class CubeMatrix : public OpenMatrix {
public:
    CubeMatrix() : OpenMatrix(2, 3, 2)
    {
        Fill(1);
        SetStep(1, 0.5f, 10);
        SetAllCoords(2, FloatArray({1, 2, 4}));
        SetStep(3, 0.25f, -1);
        maxValue = 12;
        minValue = 1;
        calibration = 3;
        scaleUnit = 5;
        t1 = 1.5f;
        t2 = 2.5f;
        t3 = 3.5f;
        t4 = 4.5f;
        t5 = 5.5f;
        units = "mV";
        note = "poor";
        stamp = "06/10/2024 08:13:20";
    }
};

/// A matrix of rank 2 with other values in every field, for what a read or a copy has to replace or to leave alone.
class OtherMatrix : public OpenMatrix {
public:
    OtherMatrix() : OpenMatrix(3, 2, 1)
    {
        Fill(70);
        SetAllCoords(1, FloatArray({-3, -2, -1}));
        SetStep(2, 8, 100);
        dims[2].step = 16;
        maxValue = -12;
        minValue = -13;
        calibration = -10;
        scaleUnit = 50;
        t1 = -1;
        t2 = -2;
        t3 = -3;
        t4 = -4;
        t5 = -5;
        units = "old units";
        note = "old note";
        stamp = "old stamp";
    }
};

/// What a matrix holds; of the values and coordinates the first hundred.
inline Fields FieldsOf(OpenMatrix const &m)
{
    auto const text = [](DString const &s) { return std::string(s.c_str(), static_cast<std::size_t>(s.Len())); };
    auto const three = [](int a, int b, int c) {
        return std::to_string(a) + " " + std::to_string(b) + " " + std::to_string(c);
    };
    return {
        {"rank", std::to_string(m.Rank())},
        {"sizes", three(m.GetSize(1), m.GetSize(2), m.GetSize(3))},
        {"origSizes", three(m.GetOrigSize(1), m.GetOrigSize(2), m.GetOrigSize(3))},
        {"step1", HexOf(m.GetStep(1))},
        {"step2", HexOf(m.GetStep(2))},
        {"step3", HexOf(m.GetStep(3))},
        {"coords1", ArrayHex(m.dims[0])},
        {"coords2", ArrayHex(m.dims[1])},
        {"coords3", ArrayHex(m.dims[2])},
        {"maxValue", HexOf(m.Max())},
        {"minValue", HexOf(m.Min())},
        {"calibration", HexOf(m.Calibration())},
        {"scaleUnit", HexOf(m.scaleUnit)},
        {"t1", HexOf(m.t1)},
        {"t2", HexOf(m.t2)},
        {"t3", HexOf(m.t3)},
        {"t4", HexOf(m.t4)},
        {"t5", HexOf(m.t5)},
        {"units", text(m.units)},
        {"note", text(m.note)},
        {"stamp", text(m.stamp)},
        {"count", std::to_string(m.Count())},
        {"values", FloatsHex(m.Data(), m.Count())},
    };
}

inline std::string Differences(Fields const &expected, OpenMatrix const &actual)
{
    return Differences(expected, FieldsOf(actual));
}
