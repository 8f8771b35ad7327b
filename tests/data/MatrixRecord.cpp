// The record of a matrix: sizes, copies, scaling, and its values as a plain list.

#include <climits>
#include <cmath>
#include <cstdint>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "data/Matrix.h"
#include "support/MatrixBytes.h"

namespace {

float const nan = std::nanf("");

// ---- Life and sizes ----------------------------------------------------------------------------------------------

TEST(MatrixRecord, FreshMatrixHasTheSetValues)
{
    OpenMatrix m(4, 3, 2);
    EXPECT_EQ("", Differences({{"rank", "3"},
                               {"sizes", "4 3 2"},
                               {"origSizes", "4 3 2"},
                               {"step1", "00 00 80 3F"},
                               {"step2", "00 00 80 3F"},
                               {"step3", "00 00 80 3F"},
                               {"maxValue", "00 00 00 00"},
                               {"minValue", "00 00 00 00"},
                               {"calibration", "00 00 80 3F"},
                               {"scaleUnit", "00 00 80 3F"},
                               {"t1", "00 00 00 00"},
                               {"t2", "00 00 00 00"},
                               {"t3", "00 00 00 00"},
                               {"t4", "00 00 00 00"},
                               {"t5", "00 00 00 00"},
                               {"units", ""},
                               {"note", ""},
                               {"stamp", ""},
                               {"count", "24"}},
                              FieldsOf(m)));
    EXPECT_EQ(1, m.RCount());
    EXPECT_EQ(24, m.CCount());
}

struct {
    int n1, n2, n3, rank;
    char const *sizes;
    int count;
} const shapes[] = {
    {0, 0, 0, 2, "1 1 1", 1},   {4, 3, 1, 2, "4 3 1", 12}, {4, 3, 2, 3, "4 3 2", 24},
    {4, 3, -2, 2, "4 3 1", 12}, {-4, 0, 5, 3, "1 1 5", 5}, {INT_MIN, 2, 0, 2, "1 2 1", 2},
};

TEST(MatrixRecord, ConstructorSizeAndReSizeGiveTheSameShape)
{
    for (auto const &row : shapes) {
        Fields const expected = {{"rank", std::to_string(row.rank)},
                                 {"sizes", row.sizes},
                                 {"origSizes", row.sizes},
                                 {"count", std::to_string(row.count)}};
        SCOPED_TRACE(row.sizes);
        EXPECT_EQ("", Differences(expected, OpenMatrix(row.n1, row.n2, row.n3)));
        CubeMatrix sized, resized;
        sized.Size(row.n1, row.n2, row.n3);
        resized.ReSize(row.n1, row.n2, row.n3);
        EXPECT_EQ("", Differences(expected, sized));
        EXPECT_EQ("", Differences(expected, resized));
    }
}

TEST(MatrixRecord, MDimBeginsWithOneCoordinateAndAStepOf1)
{
    Matrix::MDim const dim;
    EXPECT_EQ(1, dim.Count());
    EXPECT_EQ(1.0f, dim.step);
}

TEST(MatrixRecord, ReSizeKeepsTheValuesInTheirOldPositions)
{
    CubeMatrix m;
    m.ReSize(4, 4, 1);
    ASSERT_EQ(16, m.Count());
    for (int i = 0; i < 12; ++i) EXPECT_EQ(static_cast<float>(i + 1), m[i]);
    m.ReSize(2, 2, 1);
    EXPECT_EQ(FloatsHex({1, 2, 3, 4}), FloatsHex(m.Data(), m.Count()));
}

TEST(MatrixRecord, SizesLeaveTheRestOfTheHeader)
{
    for (int way = 0; way < 3; ++way) {
        SCOPED_TRACE(way);
        CubeMatrix m;
        if (way == 0) m.Size(2, 3, 2);
        if (way == 1) m.ReSize(2, 3, 2);
        if (way == 2) m.Reserve(2, 3, 2);
        Fields expected = CubeFields();
        if (way == 0) expected.erase("values");
        EXPECT_EQ("", Differences(expected, m));
    }
}

TEST(MatrixRecord, ReserveSetsSizesAndRankAndKeepsTheCount)
{
    CubeMatrix m;
    m.Reserve(300, 3, 1);
    EXPECT_EQ("", Differences({{"rank", "2"},
                               {"sizes", "300 3 1"},
                               {"origSizes", "300 3 1"},
                               {"count", "12"},
                               {"values", CubeFields()["values"]}},
                              FieldsOf(m)));
    EXPECT_GE(m.Capacity(), 900);
}

TEST(MatrixRecord, SizesBeyondAnyMemoryRaiseBadAlloc)
{
    struct {
        int n1, n2, n3;
    } const rows[] = {{65536, 65536, 1}, {65536, 32768, 1}, {46341, 46341, 1},         {1290, 1290, 1291},
                      {INT_MAX, 2, 1},   {65537, 65536, 1}, {1 << 16, 1 << 8, 1 << 8}, {INT_MAX, INT_MAX, INT_MAX}};
    for (auto const &row : rows) {
        SCOPED_TRACE(std::to_string(row.n1) + " " + std::to_string(row.n2) + " " + std::to_string(row.n3));
        EXPECT_THROW(OpenMatrix(row.n1, row.n2, row.n3), std::bad_alloc);
        CubeMatrix m;
        EXPECT_THROW(m.Size(row.n1, row.n2, row.n3), std::bad_alloc);
        EXPECT_THROW(m.ReSize(row.n1, row.n2, row.n3), std::bad_alloc);
        EXPECT_THROW(m.Reserve(row.n1, row.n2, row.n3), std::bad_alloc);
        m.Size(2, 2, 2);
        EXPECT_EQ(8, m.Count());
    }
}

TEST(MatrixRecord, FirstDimensionRunsFastest)
{
    CubeMatrix m;
    for (int k = 0; k < 2; ++k)
        for (int j = 0; j < 3; ++j)
            for (int i = 0; i < 2; ++i) EXPECT_EQ(static_cast<float>(1 + i + 2 * (j + 3 * k)), m(i, j + 3 * k));
    m(1, 2) = 66;
    EXPECT_EQ(66.0f, m[5]);
    m[0] = 11;
    EXPECT_EQ(11.0f, m.Data()[0]);
    EXPECT_EQ(m.Data(), static_cast<OpenMatrix const &>(m).Data());
}

TEST(MatrixRecord, ElementGoesByThePresentSizeOfTheFirstDimension)
{
    CubeMatrix m;
    m.SwapCoords(1, 2); // 3 by 2 now
    EXPECT_EQ(4.0f, m(0, 1));
    EXPECT_EQ(9.0f, m(2, 2));
}

TEST(MatrixRecord, ZeroLeavesTheHeader)
{
    CubeMatrix m;
    m.Zero();
    EXPECT_EQ("", Differences(With(CubeFields(), {{"values", FloatsHex(std::vector<float>(12, 0.0f))}}), m));
}

TEST(MatrixRecord, ExtremesAreThoseLastSet)
{
    CubeMatrix const m;
    EXPECT_EQ(12.0f, m.Max());
    EXPECT_EQ(1.0f, m.Min());
    EXPECT_EQ(3.0f, m.Calibration());
    EXPECT_TRUE(std::has_virtual_destructor<Matrix>::value);
}

// ---- Copies ------------------------------------------------------------------------------------------------------

/// All that a copy takes: everything but the calibration.
Fields Copied()
{
    Fields fields = CubeFields();
    fields.erase("calibration");
    return fields;
}

TEST(MatrixCopies, CopyTakesValuesAndHeader)
{
    CubeMatrix const cube;
    OpenMatrix copy(cube);
    EXPECT_EQ("", Differences(Copied(), copy));
    copy[0] = 99;
    copy.SetStep(1, 9, 9);
    EXPECT_EQ("", Differences(CubeFields(), cube));
}

TEST(MatrixCopies, AssignmentLeavesTheCalibration)
{
    CubeMatrix const cube;
    OtherMatrix m;
    Matrix &answer = static_cast<Matrix &>(m) = cube;
    EXPECT_EQ(&m, &answer);
    EXPECT_EQ("", Differences(With(CubeFields(), {{"calibration", "00 00 20 C1"}}), m)); // -10
}

TEST(MatrixCopies, AssignmentToItselfDoesNothing)
{
    CubeMatrix m;
    Matrix const &same = m;
    static_cast<Matrix &>(m) = same;
    m.CopyHeader(m);
    m.InitFrom(m, true);
    EXPECT_EQ("", Differences(CubeFields(), m));
}

TEST(MatrixCopies, HeaderComesWithoutValuesAndCalibration)
{
    CubeMatrix const cube;
    OtherMatrix m;
    Fields const before = FieldsOf(m);
    m.CopyHeader(cube);
    Fields expected = CubeFields();
    for (char const *const name : {"calibration", "count", "values"}) expected[name] = before.at(name);
    EXPECT_EQ("", Differences(expected, m));
}

TEST(MatrixCopies, InitFromTakesTheAxesAndNoTextsNorExtremes)
{
    CubeMatrix const cube;
    OtherMatrix m;
    Fields expected = FieldsOf(m);
    for (char const *const name :
         {"rank", "sizes", "origSizes", "step1", "step2", "step3", "coords1", "coords2", "coords3", "count"})
        expected[name] = CubeFields()[name];
    expected.erase("values");
    EXPECT_EQ(&m, &m.InitFrom(cube, false));
    EXPECT_EQ("", Differences(expected, m));
    for (char const *const name : {"t1", "t2", "t3", "t4", "t5", "calibration"}) expected[name] = CubeFields()[name];
    m.InitFrom(cube, true);
    EXPECT_EQ("", Differences(expected, m));
}

TEST(MatrixCopies, InitFromGoesByTheCountOfValuesNotBySizes)
{
    CubeMatrix cube;
    cube.Reserve(7, 7, 7);
    OpenMatrix m;
    m.InitFrom(cube, false);
    EXPECT_EQ("", Differences({{"count", "12"}, {"sizes", "7 7 7"}}, FieldsOf(m)));
}

TEST(MatrixCopies, OriginalSizesComeAlong)
{
    CubeMatrix cube;
    cube.dims[0].origSize = 77;
    OpenMatrix init, header;
    init.InitFrom(cube, false);
    header.CopyHeader(cube);
    EXPECT_EQ("77 3 2", FieldsOf(init)["origSizes"]);
    EXPECT_EQ("77 3 2", FieldsOf(header)["origSizes"]);
}

TEST(MatrixCopies, ArraysHoldMatrices)
{
    DArray<Matrix, 1> all(2);
    EXPECT_EQ(1, all[1].Count());
    CubeMatrix const cube;
    for (int i = 0; i < 300; ++i) all.Add(cube); // beyond one step of growth
    all.Remove(0, 2);
    DArray<Matrix, 1> const copies = all;
    all.Clear();
    ASSERT_EQ(300, copies.Count());
    OpenMatrix last;
    static_cast<Matrix &>(last) = copies[299];
    EXPECT_EQ("", Differences(Copied(), last));
}

TEST(MatrixCopies, SwapExchangesTheValuesAlone)
{
    CubeMatrix cube;
    OtherMatrix other;
    Fields const before = FieldsOf(other);
    float const *const values = cube.Data();
    cube.SwapData(other);
    EXPECT_EQ(values, other.Data());
    EXPECT_EQ("", Differences(With(CubeFields(), {{"count", "6"}, {"values", before.at("values")}}), cube));
    EXPECT_EQ("", Differences(With(before, {{"count", "12"}, {"values", CubeFields()["values"]}}), other));
}

TEST(MatrixCopies, SwapWithAnArrayExchangesTheValuesAlone)
{
    CubeMatrix cube;
    DArray<float, 0> list = FloatArray({7, 8});
    float const *const values = cube.Data();
    cube.SwapData(list);
    EXPECT_EQ(values, list.Data());
    EXPECT_EQ("", Differences(With(CubeFields(), {{"count", "2"}, {"values", FloatsHex({7, 8})}}), cube));
}

TEST(MatrixCopies, SwapWithItselfDoesNothing)
{
    CubeMatrix m;
    m.SwapData(m);
    m.SwapData(static_cast<DArray<float, 0> &>(m));
    EXPECT_EQ("", Differences(CubeFields(), m));
}

// ---- Scaling -----------------------------------------------------------------------------------------------------

/// With e the logarithm cut to an integer, less 1 below 1, p = 10^e in single precision, and m = big / p cut to an
/// integer: p above an m of 4, p * 0.5 from 2 to 4, p * 0.2 below.
struct {
    std::uint32_t magnitude, scaleUnit;
} const ticks[] = {
    {0x00000000, 0x0C81CEB3}, // 0, scaled as 1e-30: e -30, m 1, 2e-31
    {0x80000000, 0x0C81CEB3}, // -0
    {0x00000001, 0x0C81CEB3}, // the smallest number
    {0x0C01CEB3, 0x0C81CEB3}, // 1e-31
    {0x0DA24260, 0x0C81CEB3}, // 1e-30
    {0x0E736390, 0x0D224260}, // 3e-30: m 3
    {0x0F4AD2F8, 0x0E224260}, // 1e-29: e -29, m 1
    {0x2F5BE6FF, 0x2E5BE6FF}, // 2e-10: m 2
    {0x35210FB0, 0x33D6BF95}, // 6e-7: m 6
    {0x3C23D70A, 0x3A83126F}, // 0.01, a little less: e -3, 0.001
    {0x3DCCCCCD, 0x3CA3D70A}, // 0.1: e -1, m 1, 0.02
    {0x3E4CCCCD, 0x3D4CCCCD}, // 0.2: m 2, 0.05
    {0x3ECCCCCD, 0x3D4CCCCD}, // 0.4: m 4
    {0x3EFFFFFF, 0x3D4CCCCD}, // below 0.5: m 4
    {0x3F000000, 0x3DCCCCCD}, // 0.5: m 5, 0.1
    {0x3F7FFFFF, 0x3DCCCCCD}, // below 1: m 9
    {0x3F800000, 0x3E4CCCCD}, // 1: e 0, m 1, 0.2
    {0x3FFFFFFF, 0x3E4CCCCD}, // below 2
    {0x40000000, 0x3F000000}, // 2: m 2, 0.5
    {0x40800000, 0x3F000000}, // 4
    {0x409FFFFF, 0x3F000000}, // below 5: m 4
    {0x40A00000, 0x3F800000}, // 5: m 5, 1
    {0x411FFFFF, 0x3F800000}, // below 10
    {0x41200000, 0x40000000}, // 10: e 1, 2
    {0x42C80000, 0x41A00000}, // 100: e 2, m 1, 20
    {0x43960000, 0x42480000}, // 300: m 3, 50
    {0xC3960000, 0x42480000}, // -300
    {0x43F9FFFF, 0x42480000}, // below 500
    {0x43FA0000, 0x42C80000}, // 500: m 5, 100
    {0x4479C000, 0x42C80000}, // 999: m 9, 100
    {0x447A0000, 0x43480000}, // 1000: e 3, m 1, 200
    {0x4A742400, 0x48F42400}, // 4e6: m 4
    {0x4F9502F9, 0x4E6E6B28}, // 5e9: m 5
    {0x7F3C1440, 0x7E167699}, // 2.5e38: m 2
    {0x7F7FFFFF, 0x7E167699}, // the largest number: m 3
};

TEST(MatrixScale, TickSizeFollowsTheLargestMagnitude)
{
    for (auto const &row : ticks) {
        SCOPED_TRACE(BitsFloat(row.magnitude));
        OpenMatrix m(3, 1, 1);
        m.Zero();
        m[1] = BitsFloat(row.magnitude);
        m.Scale();
        EXPECT_EQ(HexOf(row.scaleUnit), HexOf(m.scaleUnit));
    }
}

struct {
    std::vector<float> values;
    float highest, lowest;
} const extremes[] = {
    {{1, -2, 3}, 3, -2},
    {{-5}, -5, -5},
    {{0, 0}, 0, 0},
    {{nan, 1, nan, 2}, 2, 1}, // a NaN is never greater nor less
    {{nan}, -3.3e38f, 3.3e38f},
    {{-3.3e38f, 1}, 1, -3.3e38f}, // a bad sample counts here
    {{3.4e38f}, 3.4e38f, 3.3e38f},
    {{-3.4e38f}, -3.3e38f, -3.4e38f},
    {{INFINITY, -INFINITY}, INFINITY, -INFINITY},
};

TEST(MatrixScale, ExtremesAreThoseOfAllValues)
{
    for (auto const &row : extremes) {
        SCOPED_TRACE(FloatsHex(row.values));
        CubeMatrix m;
        m.Size(static_cast<int>(row.values.size()), 1, 1);
        for (int i = 0; i < m.Count(); ++i) m[i] = row.values[static_cast<std::size_t>(i)];
        m.Scale();
        EXPECT_EQ(HexOf(row.highest), HexOf(m.Max()));
        EXPECT_EQ(HexOf(row.lowest), HexOf(m.Min()));
        EXPECT_EQ(FloatsHex(row.values), FloatsHex(m.Data(), m.Count()));
        EXPECT_EQ(3.0f, m.Calibration());
    }
}

TEST(MatrixScale, WithoutValuesTheExtremesStayWhereTheyStart)
{
    CubeMatrix m;
    m.Clear();
    m.Scale();
    EXPECT_EQ("B0 43 78 FF", HexOf(m.Max()));
    EXPECT_EQ("B0 43 78 7F", HexOf(m.Min()));
    EXPECT_EQ("99 76 16 7E", HexOf(m.scaleUnit)); // 5e37
}

TEST(MatrixCalibration, MultipliesTheValuesAndScales)
{
    CubeMatrix m;
    m.calibration = 1;
    m.SetCalibration(2);
    EXPECT_EQ("", Differences(With(CubeFields(), {{"values", FloatsHex({2, 4, 6, 8, 10, 12, 14, 16, 18, 20, 22, 24})},
                                                  {"calibration", "00 00 00 40"},
                                                  {"maxValue", FloatsHex({24})},
                                                  {"minValue", FloatsHex({2})},
                                                  {"scaleUnit", FloatsHex({5})}}),
                              m));
    m.SetCalibration(-1);
    EXPECT_EQ(FloatsHex({-1, -2}), FloatsHex(m.Data(), 2));
    EXPECT_EQ(-1.0f, m.Max());
    EXPECT_EQ(-12.0f, m.Min());
    EXPECT_EQ(-1.0f, m.Calibration());
}

TEST(MatrixCalibration, QuotientIsTakenOnceInSinglePrecision)
{
    OpenMatrix m(1, 1, 1);
    m[0] = 3;
    m.calibration = 3;
    m.SetCalibration(0.1f); // 0.1 / 3 is 0x3D088889, three times that 0x3DCCCCCE; in any other order 0x3DCCCCCD
    EXPECT_EQ("CE CC CC 3D", HexOf(m[0]));
    EXPECT_EQ("CD CC CC 3D", HexOf(m.Calibration()));
}

TEST(MatrixCalibration, NumbersThatServeForNothingDoNothing)
{
    for (float const c : {0.0f, -0.0f, nan, INFINITY, -INFINITY, 3.3e38f, -3.3e38f, 9.91e34f, -9.91e34f}) {
        SCOPED_TRACE(c);
        CubeMatrix m;
        m.SetCalibration(c);
        EXPECT_EQ("", Differences(CubeFields(), m));
    }
}

TEST(MatrixCalibration, SameNumberScalesAllTheSame)
{
    CubeMatrix m;
    m.maxValue = 99;
    m.SetCalibration(3);
    EXPECT_EQ("", Differences(With(CubeFields(), {{"scaleUnit", FloatsHex({2})}}), m));
}

} // namespace
