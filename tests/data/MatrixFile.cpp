// The file of a matrix: every field against bytes written out by hand, in both directions, slices read alone, and what
// becomes of files that are odd or not there.

#include <climits>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/Matrix.h"
#include "files/DFile.h"
#include "support/Faults.h"
#include "support/MatrixFixture.h"

namespace {

std::string const noise(260, '\xEE');

/// The file without the dimensions above `rank`.
DmtRows WithRank(DmtRows rows, int rank, int of)
{
    rows.Set("rank", HexOf(rank));
    for (int d = of; d > (rank < 0 ? 0 : rank); --d)
        for (char const *const part : {"size", "step", "coords"}) rows.Set(part + std::to_string(d), "");
    return rows;
}

// ---- Reading ---------------------------------------------------------------------------------------------------

TEST_F(MatrixFile, ReadTakesEveryFieldFromItsPlace)
{
    EXPECT_EQ("", Differences(CubeFields(), FieldsRead(CubeRows().Bytes())));
    EXPECT_EQ("", system.Heard());
}

TEST_F(MatrixFile, ReadReplacesAllThatAnObjectHeld)
{
    OtherMatrix other;
    EXPECT_EQ("", Differences(CubeFields(), FieldsReadInto(other, CubeRows().Bytes())));
    CubeMatrix cube;
    cube.Size(1, 9, 2);
    EXPECT_EQ("", Differences(CubeFields(), FieldsReadInto(cube, CubeRows().Bytes())));
}

TEST_F(MatrixFile, TwoDimensionsReadAsTwo)
{
    Fields const fields = FieldsRead(SheetRows().Bytes());
    EXPECT_EQ("", Differences({{"rank", "2"},
                               {"sizes", "2 5 1"},
                               {"origSizes", "2 5 1"},
                               {"coords1", FloatsHex({3, 4})},
                               {"coords2", FloatsHex({10, 20, 30, 40, 50})},
                               {"coords3", FloatsHex({0})},
                               {"count", "10"},
                               {"values", FloatsHex({0, 1, 2, 3, 4, 5, 6, 7, 8, 9})}},
                              fields));
}

struct {
    int number;
    bool hasCalibration;
} const versions[] = {{3, false},  {4, true},   {5, true},        {2, false},  {1, false},      {0, false},
                      {-1, false}, {-4, false}, {INT_MIN, false}, {100, true}, {0x10000, true}, {INT_MAX, true}};

struct {
    int length;
    std::string bytes;
} const skips[] = {{0, ""}, {1, "x"}, {4, std::string(4, '\0')}, {260, noise}};

TEST_F(MatrixFile, EveryVersionIsReadWithAndWithoutASkipLength)
{
    for (auto const &version : versions) {
        for (auto const &skip : skips) {
            SCOPED_TRACE(std::to_string(version.number) + ", skip " + std::to_string(skip.length));
            DmtRows rows = CubeRows().Set("version", HexOf(version.number));
            rows.Set("skip", HexOf(skip.length)).Set("skipped", BytesHex(skip.bytes));
            Fields expected = CubeFields();
            if (!version.hasCalibration) rows.Set("calibration", "");
            if (!version.hasCalibration) expected["calibration"] = "00 00 80 3F";
            OtherMatrix m;
            EXPECT_EQ("", Differences(expected, FieldsReadInto(m, rows.Bytes())));
        }
    }
}

TEST_F(MatrixFile, EveryVersionIsWrittenBackAsVersion4WithoutSkipLength)
{
    for (auto const &version : versions) {
        SCOPED_TRACE(version.number);
        DmtRows old = CubeRows().Set("version", HexOf(version.number)).Set("skip", "03 00 00 00");
        old.Set("skipped", "11 22 33");
        if (!version.hasCalibration) old.Set("calibration", "");
        OpenMatrix m;
        FieldsReadInto(m, old.Bytes());
        DmtRows expected = CubeRows();
        if (!version.hasCalibration) expected.Set("calibration", "00 00 80 3F");
        EXPECT_EQ(BytesHex(expected.Bytes()), BytesHex(BytesWritten(m)));
    }
}

TEST_F(MatrixFile, SkipLengthMayLeadBackwards)
{
    OtherMatrix m; // to the version, which then is a rank of 4
    Fields expected = FieldsOf(m);
    expected["rank"] = "4";
    EXPECT_EQ("", Differences(expected, FieldsReadInto(m, CubeRows().Set("skip", "F8 FF FF FF").Bytes())));
}

TEST_F(MatrixFile, RankAbove3StopsTheReader)
{
    for (int const rank : {4, 5, 1000, INT_MAX}) {
        SCOPED_TRACE(rank);
        OtherMatrix m;
        Fields expected = FieldsOf(m);
        expected["rank"] = std::to_string(rank);
        EXPECT_EQ("", Differences(expected, FieldsReadInto(m, CubeRows().Set("rank", HexOf(rank)).Bytes(), 1, 1)));
    }
}

TEST_F(MatrixFile, RankBelow1HasNoDimensionsInTheFile)
{
    for (int const rank : {0, -1, -3, INT_MIN}) {
        SCOPED_TRACE(rank);
        Fields expected = CubeFields();
        expected["rank"] = std::to_string(rank);
        for (char const *const d : {"1", "2", "3"}) expected.erase(std::string("step") + d);
        for (char const *const d : {"1", "2", "3"}) expected.erase(std::string("coords") + d);
        expected["sizes"] = expected["origSizes"] = "1 1 1";
        expected["count"] = "1";
        expected["values"] = FloatsHex({1});
        EXPECT_EQ("", Differences(expected, FieldsRead(WithRank(CubeRows(), rank, 3).Bytes())));
    }
}

TEST_F(MatrixFile, RankOf1HasOneDimension)
{
    DmtRows const rows = WithRank(SheetRows(), 1, 2).Set("size1", "05 00 00 00");
    Fields expected = {{"rank", "1"}, {"sizes", "5 1 1"}, {"origSizes", "5 1 1"}, {"count", "5"}};
    expected["values"] = FloatsHex({0, 1, 2, 3, 4});
    EXPECT_EQ("", Differences(expected, FieldsRead(rows.Bytes())));
    expected["sizes"] = "2 1 1"; // slices 2 and 3
    expected["count"] = "2";
    expected["values"] = FloatsHex({2, 3});
    expected["coords1"] = FloatsHex({3, 4});
    EXPECT_EQ("", Differences(expected, FieldsRead(rows.Bytes(), 4, 2)));
}

TEST_F(MatrixFile, SizeBelow1GivesAnEmptyAxis)
{
    for (int const size : {0, -1, -5, INT_MIN}) {
        for (char const *const d : {"1", "2"}) {
            SCOPED_TRACE(std::string("dimension ") + d + ", size " + std::to_string(size));
            DmtRows rows = SheetRows().Set(std::string("size") + d, HexOf(size)).Set("t5", "11 22 33 44");
            if (d[0] == '2') rows.Set("coords2", "");
            Fields const expected = {
                {"sizes", d[0] == '1' ? "0 5 1" : "2 0 1"},
                {"origSizes", d[0] == '1' ? std::to_string(size) + " 5 1" : "2 " + std::to_string(size) + " 1"},
                {std::string("coords") + d, ""},
                {"t5", "11 22 33 44"},
                {"stamp", "06/10/2024 08:13:20"},
                {"count", "0"}};
            EXPECT_EQ("", Differences(expected, FieldsRead(rows.Bytes())));
        }
    }
}

TEST_F(MatrixFile, FirstSliceOfAnEmptyLastDimensionIsASliceAllTheSame)
{
    Fields const fields = FieldsRead(SheetRows().Set("size2", "00 00 00 00").Set("coords2", "").Bytes(), 0, 0);
    Fields const expected = {{"sizes", "2 1 1"}, {"origSizes", "2 0 1"}, {"count", "2"}, {"values", FloatsHex({0, 1})}};
    EXPECT_EQ("", Differences(expected, fields));
}

struct {
    char const *step, *first, *coords;
} const uniform[] = {
    {"00 00 00 BF", "00 00 20 41", "00 00 20 41 00 00 18 41 00 00 10 41"}, // 10 falling by 0.5
    {"CD CC CC 3D", "00 00 80 4B", "00 00 80 4B 00 00 80 4B 00 00 80 4B"}, // 2^24 and 0.1: lost in rounding
    {"CD CC CC 3D", "CD CC CC 3D", "CD CC CC 3D CD CC 4C 3E 9A 99 99 3E"}, // 0.1 0.2 0.3 by single precision
    {"00 00 80 3F", "00 00 80 7F", "00 00 80 7F 00 00 80 7F 00 00 80 7F"}, // from infinity
    {"01 00 00 00", "00 00 00 00", "00 00 00 00 01 00 00 00 02 00 00 00"}, // the smallest step of all
};

TEST_F(MatrixFile, UniformAxisIsComputedInSinglePrecision)
{
    for (auto const &row : uniform) {
        SCOPED_TRACE(std::string(row.step) + " from " + row.first);
        DmtRows const rows = CubeRows().Set("step2", row.step).Set("coords2", row.first);
        OpenMatrix m;
        EXPECT_EQ(row.coords, FieldsReadInto(m, rows.Bytes())["coords2"]);
        EXPECT_EQ(BytesHex(rows.Bytes()), BytesHex(BytesWritten(m))); // by step and first coordinate alone
    }
}

TEST_F(MatrixFile, StepOfMinusZeroIsAnExplicitAxis)
{
    DmtRows const rows = CubeRows().Set("step2", "00 00 00 80");
    OpenMatrix m;
    EXPECT_EQ(CubeFields()["coords2"], FieldsReadInto(m, rows.Bytes())["coords2"]);
    EXPECT_EQ(BytesHex(rows.Bytes()), BytesHex(BytesWritten(m)));
}

TEST_F(MatrixFile, ExplicitCoordinatesAndValuesKeepEveryBit)
{
    std::string const odd = "01 00 80 7F 34 12 C0 FF 00 00 00 80 01 00 00 00"; // NaNs, minus zero, the smallest
    DmtRows const rows = SheetRows()
                             .Set("size2", "04 00 00 00")
                             .Set("coords2", odd)
                             .Set("maxValue", "01 00 80 7F")
                             .Set("t3", "FF FF FF FF")
                             .Set("values", odd + " " + odd);
    OpenMatrix m;
    Fields const fields = FieldsReadInto(m, rows.Bytes());
    EXPECT_EQ(odd, fields.at("coords2"));
    EXPECT_EQ(odd + " " + odd, fields.at("values"));
    EXPECT_EQ(BytesHex(rows.Bytes()), BytesHex(BytesWritten(m)));
}

TEST_F(MatrixFile, TextOfLengthBelow1LeavesTheOldOne)
{
    for (char const *const length : {"00 00 00 00", "FF FF FF FF", "00 00 00 80"}) {
        SCOPED_TRACE(length);
        DmtRows rows = CubeRows().Set("units", "").Set("note", "").Set("stamp", "");
        for (char const *const text : {"units length", "note length", "stamp length"}) rows.Set(text, length);
        OtherMatrix m;
        Fields const expected =
            With(CubeFields(), {{"units", "old units"}, {"note", "old note"}, {"stamp", "old stamp"}});
        EXPECT_EQ("", Differences(expected, FieldsReadInto(m, rows.Bytes())));
    }
}

TEST_F(MatrixFile, TextsHoldAnyBytes)
{
    DmtRows const rows = CubeRows()
                             .Set("units length", "03 00 00 00")
                             .Set("units", "00 FF 00")
                             .Set("note length", "04 01 00 00")
                             .Set("note", BytesHex(noise));
    OpenMatrix m;
    Fields const fields = FieldsReadInto(m, rows.Bytes());
    EXPECT_EQ(std::string("\0\xFF\0", 3), fields.at("units"));
    EXPECT_EQ(noise, fields.at("note"));
    EXPECT_EQ(BytesHex(rows.Bytes()), BytesHex(BytesWritten(m)));
}

// ---- Slices ----------------------------------------------------------------------------------------------------

/// Slices `from` .. `from` + `n` - 1 are delivered.
struct Slices {
    int count, first, from, n;
};

Slices const slices[] = {
    {-1, 0, 0, 5},      {-1, -1, 0, 5},      {INT_MIN, INT_MIN, 0, 5}, // all
    {0, 0, 0, 1},       {1, 0, 0, 1},        {3, 0, 0, 3},
    {5, 0, 0, 5},       {6, 0, 0, 5},        {INT_MAX, 0, 0, 5},
    {-1, 1, 0, 1},      {-1, INT_MAX, 0, 1}, {INT_MIN, 3, 0, 1}, // the first alone
    {5, 2, 2, 3},       {3, 1, 1, 2},        {3, 2, 2, 1},
    {5, 4, 4, 1}, // the count is an end
    {3, 3, 2, 1},       {3, 99, 2, 1},       {5, INT_MAX, 4, 1},
    {INT_MAX, 4, 4, 1}, {0, 4, 0, 1},        {1, 4, 0, 1},
};

/// The fields of a sheet of which these slices were read.
Fields FieldsOfSlices(int from, int n)
{
    std::vector<float> coords, values;
    for (int i = 0; i < n; ++i) coords.push_back(10 * static_cast<float>(i + 1)); // the leading ones
    for (int i = 0; i < 2 * n; ++i) values.push_back(static_cast<float>(2 * from + i));
    return {{"rank", "2"},
            {"sizes", "2 " + std::to_string(n) + " 1"},
            {"origSizes", "2 5 1"},
            {"coords1", FloatsHex({3, 4})},
            {"coords2", FloatsHex(coords)},
            {"count", std::to_string(2 * n)},
            {"values", FloatsHex(values)}};
}

TEST_F(MatrixFile, CountIsAnEndAndFirstABeginning)
{
    for (Slices const &row : slices) {
        SCOPED_TRACE(std::to_string(row.count) + ", " + std::to_string(row.first));
        EXPECT_EQ("",
                  Differences(FieldsOfSlices(row.from, row.n), FieldsRead(SheetRows().Bytes(), row.count, row.first)));
    }
}

TEST_F(MatrixFile, SlicesOfThreeDimensionsAreThoseOfTheLast)
{
    Fields const expected = With(
        CubeFields(),
        {{"sizes", "2 3 1"}, {"coords3", "00 00 80 BF"}, {"count", "6"}, {"values", FloatsHex({7, 8, 9, 10, 11, 12})}});
    EXPECT_EQ("", Differences(expected, FieldsRead(CubeRows().Bytes(), 2, 1)));
}

TEST_F(MatrixFile, NoSliceLiesBeforeTheFirst)
{
    EXPECT_EQ("", Differences(FieldsOfSlices(0, 2), FieldsRead(SheetRows().Bytes(), 2, -1)));
}

TEST_F(MatrixFile, DistanceToASliceIsTakenIn32Bits)
{
    // Slice 1024 of slices of 4 MiB begins where the first one does.
    DmtRows const rows = SheetRows()
                             .Set("size1", "00 00 10 00")
                             .Set("size2", "01 04 00 00")
                             .Set("step2", "00 00 80 3F")
                             .Set("coords2", "00 00 00 00");
    Put("a", rows.Bytes());
    OpenMatrix m;
    ASSERT_TRUE(m.Read(Name("a"), 1025, 1024));
    ASSERT_EQ(1 << 20, m.Count());
    EXPECT_EQ(FloatsHex({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0}), FloatsHex(m.Data(), 11));
}

TEST_F(MatrixFile, ThirdSizeOfTheObjectCountsWhenTheFileHasTwoDimensions)
{
    OpenMatrix whole(1, 1, 2);
    Fields expected = FieldsOfSlices(0, 5);
    expected["sizes"] = expected["origSizes"] = "2 5 2";
    expected["count"] = "20";
    expected["values"] += " " + FloatsHex(std::vector<float>(10, 0.0f));
    EXPECT_EQ("", Differences(expected, FieldsReadInto(whole, SheetRows().Bytes())));

    OpenMatrix part(1, 1, 2); // slices of four values each
    expected = FieldsOfSlices(1, 2);
    expected["sizes"] = "2 2 2";
    expected["origSizes"] = "2 5 2";
    expected["count"] = "8";
    expected["values"] = FloatsHex({4, 5, 6, 7, 8, 9, 0, 0});
    EXPECT_EQ("", Differences(expected, FieldsReadInto(part, SheetRows().Bytes(), 3, 1)));
}

TEST_F(MatrixFile, CollapsedObjectReadsNoValuesOfTwoDimensions)
{
    OpenMatrix m(5, 1, 4);
    m.Collapse();
    Fields const expected = {{"rank", "2"}, {"sizes", "2 5 0"}, {"count", "0"}, {"stamp", "06/10/2024 08:13:20"}};
    EXPECT_EQ("", Differences(expected, FieldsReadInto(m, SheetRows().Bytes())));
    EXPECT_EQ("", Differences({{"count", "0"}, {"sizes", "2 2 0"}}, FieldsReadInto(m, SheetRows().Bytes(), 3, 1)));
    EXPECT_EQ("", Differences(CubeFields(), FieldsReadInto(m, CubeRows().Bytes())));
}

TEST_F(MatrixFile, SliceThatWasReadIsWrittenAsAWhole)
{
    OpenMatrix m;
    FieldsReadInto(m, SheetRows().Bytes(), 3, 1);
    DmtRows const expected = SheetRows()
                                 .Set("size2", "02 00 00 00")
                                 .Set("coords2", "00 00 20 41 00 00 A0 41")
                                 .Set("values", "00 00 00 40 00 00 40 40 00 00 80 40 00 00 A0 40");
    EXPECT_EQ(BytesHex(expected.Bytes()), BytesHex(BytesWritten(m)));
}

// ---- Selections in the name --------------------------------------------------------------------------------------

/// What stands behind the name, and the slices that it gives of five.
struct Selection {
    char const *text;
    int from, n;
};

Selection const selections[] = {
    {"[2,5]", 2, 3},
    {"[2, 5]", 2, 3},
    {"[ \t2 , 5\t ]", 2, 3},
    {"[1,3]", 1, 2},
    {"[0,0]", 0, 1},
    {"[0,-1]", 0, 5},
    {"[x, y]", 0, 5},
    {"[,]", 0, 5},
    {"[]", 0, 5},
    {"[", 0, 5},
    {"[,3]", 0, 3},
    {"[x,3]", 0, 3},
    {"[2,]", 0, 1}, // no count: the first slice alone
    {"[2,x]", 0, 1},
    {"[2,5", 2, 3},
    {"[2,5]more", 2, 3},
    {"[2,5].dmt", 2, 3},
    {"[2,5][0,1]", 2, 3},
    {"[1,3,5]", 1, 2},
    {"[1a,3b]", 1, 2},
    {"[1.9,3.9]", 1, 2},
    {"[+1,+3]", 1, 2},
    {"[01,03]", 1, 2},
    {"[0x2,5]", 0, 5},
    {"[[2,5]", 0, 5},
    {"[99999999999,3]", 2, 1},
    {"[1,99999999999]", 1, 4},
    {"[2,-99999999999]", 0, 1},
    {"[2,\x80]", 0, 1},
};

TEST_F(MatrixFile, SelectionInTheNameReplacesTheArguments)
{
    Put("img", SheetRows().Bytes());
    for (Selection const &row : selections) {
        for (Slices const &arguments : {Slices{-1, 0, 0, 0}, Slices{1, 0, 0, 0}, Slices{5, 4, 0, 0}}) {
            SCOPED_TRACE(std::string(row.text) + " with " + std::to_string(arguments.count));
            OpenMatrix m;
            ASSERT_TRUE(m.Read(Name("img") + row.text, arguments.count, arguments.first));
            EXPECT_EQ("", Differences(FieldsOfSlices(row.from, row.n), m));
        }
    }
}

TEST_F(MatrixFile, SelectionWithoutACommaGivesOneSlice)
{
    Put("img", SheetRows().Bytes());
    for (char const *const text : {"[5]", "[5"}) {
        SCOPED_TRACE(text);
        OpenMatrix m;
        ASSERT_TRUE(m.Read(Name("img") + text, -1, 0));
        EXPECT_EQ(1, m.GetSize(2));
    }
    for (int const slice : {1, 2, 4}) { // the number counts for both: up to it, and at least one
        OpenMatrix m;
        ASSERT_TRUE(m.Read(Name("img") + ("[" + std::to_string(slice) + "]").c_str(), -1, 0));
        EXPECT_EQ(static_cast<float>(2 * (slice - 1)), m[0]);
    }
}

TEST_F(MatrixFile, SelectionIsCutOffAtTheFirstBracket)
{
    Put("", SheetRows().Bytes());
    OpenMatrix m;
    EXPECT_TRUE(m.Read(Name("[2,5]"), -1, 0));
    EXPECT_EQ(3, m.GetSize(2));
    Put("a]b", SheetRows().Bytes());
    EXPECT_TRUE(m.Read(Name("a]b[1,3]"), -1, 0));
    EXPECT_EQ(2, m.GetSize(2));
    Put("c[1,3]", SheetRows().Bytes()); // can be written but not be read
    EXPECT_FALSE(m.Read(Name("c[1,3]"), -1, 0));
}

TEST_F(MatrixFile, WriteAndAppendKnowNoSelection)
{
    CubeMatrix m;
    EXPECT_TRUE(m.Write(Name("a[0,1]")));
    EXPECT_TRUE(m.Append(Name("b[0,1]")));
    EXPECT_EQ(BytesHex(CubeRows().Bytes()), BytesHex(Disk("a[0,1]")));
    EXPECT_EQ(BytesHex(CubeRows().Bytes()), BytesHex(Disk("b[0,1]")));
}

// ---- Writing ---------------------------------------------------------------------------------------------------

TEST_F(MatrixFile, WritePutsEveryFieldInItsPlace)
{
    CubeMatrix m;
    EXPECT_EQ(BytesHex(CubeRows().Bytes()), BytesHex(BytesWritten(m)));
    EXPECT_EQ("", system.Heard());
}

TEST_F(MatrixFile, WriteStampsTheObjectToo)
{
    OtherMatrix m;
    Fields const before = FieldsOf(m);
    BytesWritten(m);
    EXPECT_EQ("", Differences(With(before, {{"stamp", "06/10/2024 08:13:20"}}), m));
}

TEST_F(MatrixFile, EveryRankIsWrittenBackAsItWasRead)
{
    for (int const rank : {0, 1, 2, 3}) {
        SCOPED_TRACE(rank);
        DmtRows rows = WithRank(CubeRows(), rank, 3);
        std::size_t const values[] = {1, 2, 6, 12};
        rows.Set("values", BytesHex(rows.Bytes("values").substr(0, 4 * values[rank])));
        OpenMatrix m;
        FieldsReadInto(m, rows.Bytes());
        EXPECT_EQ(BytesHex(rows.Bytes()), BytesHex(BytesWritten(m)));
    }
}

TEST_F(MatrixFile, CollapsedMatrixIsWrittenWithTheTwoDimensionsThatAreLeft)
{
    OpenMatrix m(2, 1, 5);
    m.Fill(0);
    m.SetStep(1, 1, 3);
    m.SetAllCoords(3, FloatArray({10, 20, 30, 40, 50}));
    m.Collapse();
    m.maxValue = 9;
    EXPECT_EQ(BytesHex(SheetRows().Bytes()), BytesHex(BytesWritten(m)));
}

TEST_F(MatrixFile, WriteReplacesALongerFile)
{
    system.folder.Write("a.dmt", std::string(5000, 'x'));
    CubeMatrix m;
    EXPECT_TRUE(m.Write(Name("a")));
    EXPECT_EQ(BytesHex(CubeRows().Bytes()), BytesHex(Disk("a")));
}

TEST_F(MatrixFile, ProtectedFormsWorkWhereTheFileStands)
{
    CubeMatrix m;
    DFile f;
    ASSERT_TRUE(f.Open(FileName("a"), 6));
    f.BWrite("front", 5);
    m.Write(f);
    m.Append(f); // adds nothing
    m.Write(f);
    f.Close();
    std::string const bytes = CubeRows().Bytes();
    EXPECT_EQ(BytesHex("front" + bytes + bytes), BytesHex(Disk("a")));

    ASSERT_TRUE(f.Open(FileName("a"), 5));
    f.SeekAbs(static_cast<long long>(5 + bytes.size()));
    OpenMatrix read;
    read.Read(f, 2, 1);
    EXPECT_EQ(FloatsHex({7, 8, 9, 10, 11, 12}), FieldsOf(read)["values"]);
    EXPECT_EQ(static_cast<long long>(5 + 2 * bytes.size()), f.Tell());
}

TEST_F(MatrixFile, ValuesBeyondOnePieceOfTheFileGoThereAndBack)
{
    OpenMatrix m(4096, 3700, 1); // above 60,000,000 bytes
    m.Zero();
    m.SetStep(1, 1, 0);
    m.SetStep(2, 1, 0);
    int const places[] = {0, 4096 * 3699 - 1, 14999999, 15000000, 15000001, 4096 * 3699, m.Count() - 1};
    for (int const i : places) m[i] = static_cast<float>(i);
    ASSERT_TRUE(m.Write(Name("a")));
    OpenMatrix read;
    ASSERT_TRUE(read.Read(Name("a"), -1, 0));
    ASSERT_EQ(m.Count(), read.Count());
    EXPECT_EQ(0, std::memcmp(m.Data(), read.Data(), sizeof(float) * static_cast<std::size_t>(m.Count())));
    ASSERT_TRUE(read.Read(Name("a"), 3700, 3699));
    ASSERT_EQ(4096, read.Count());
    EXPECT_EQ(static_cast<float>(places[5]), read[0]);
    EXPECT_EQ(static_cast<float>(places[6]), read[4095]);
}

// ---- Append ----------------------------------------------------------------------------------------------------

TEST_F(MatrixFile, AppendWritesAFileThatIsMissing)
{
    CubeMatrix m;
    m.stamp = "before";
    EXPECT_TRUE(m.Append(Name("a")));
    EXPECT_EQ(BytesHex(CubeRows().Bytes()), BytesHex(Disk("a")));
    EXPECT_EQ("06/10/2024 08:13:20", Plain(m.stamp));
}

TEST_F(MatrixFile, AppendLeavesAFileThatExists)
{
    for (std::string const &bytes : {SheetRows().Bytes(), std::string("x"), std::string()}) {
        Put("a", bytes);
        OtherMatrix m;
        Fields const before = FieldsOf(m);
        EXPECT_TRUE(m.Append(Name("a")));
        EXPECT_EQ(BytesHex(bytes), BytesHex(Disk("a")));
        EXPECT_EQ("", Differences(before, m)); // no stamp either
    }
}

TEST_F(MatrixFile, AppendTellsOfAFileThatDoesNotOpen)
{
    Put("a", SheetRows().Bytes());
    OtherMatrix m;
    {
        Faults const dead(1, INT_MAX, "OpenFile");
        EXPECT_FALSE(m.Append(Name("a")));
    }
    EXPECT_EQ(BytesHex(SheetRows().Bytes()), BytesHex(Disk("a")));
}

// ---- Files that aren't there -------------------------------------------------------------------------------------

TEST_F(MatrixFile, ReadOfWhatIsNoFileLeavesTheObject)
{
    system.folder.MakeFolder("folder.dmt");
    OtherMatrix m;
    Fields const before = FieldsOf(m);
    for (char const *const name : {"missing", "missing[1,2]", "no\\such\\folder", "folder", "", "a*", "a?"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(m.Read(Name(name), 1, 0));
        EXPECT_EQ("", Differences(before, m));
    }
    EXPECT_FALSE(m.Read(DString(), 1, 0));
    EXPECT_EQ("", Differences(before, m));
    EXPECT_EQ("", system.Heard());
}

TEST_F(MatrixFile, WriteWhereNoFileCanBeLeavesTheObject)
{
    system.folder.MakeFolder("folder.dmt");
    OtherMatrix m;
    Fields const before = FieldsOf(m);
    for (char const *const name : {"folder", "no\\such\\folder"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(m.Write(Name(name)));
        EXPECT_FALSE(m.Append(Name(name)));
        EXPECT_EQ("", Differences(before, m));
    }
    EXPECT_EQ("", system.Heard());
}

} // namespace
