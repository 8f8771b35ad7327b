// Matrix files that are cut, damaged or absurd: a defined result with which every operation can live, no harm done, and
// what the file does hold is taken.

#include <climits>
#include <cmath>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/Matrix.h"
#include "support/Damage.h"
#include "support/MatrixFixture.h"
#include "support/PeakMemory.h"

namespace {

int const wild[] = {INT_MIN, -1, 0, 1, 2, 3, 4, INT_MAX};

char const *const codes[] = {"t1", "t2", "t3", "t4", "t5", "su", "mx", "mn", "rc", "rs", "rb", "r1",
                             "re", "cc", "cs", "cb", "c1", "ce", "lc", "ls", "lb", "l1", "le", "xx"};

/// Every operation that answers, with arguments in and out of range.
void AskEverything(OpenMatrix &m)
{
    for (char const *const code : codes) m.GetMatrixParam(code);
    for (int const d : wild) {
        m.GetSize(d);
        m.GetOrigSize(d);
        m.GetStep(d);
        m.PointAtCoord(d, 11);
        m.GetPartialCoords(d, 10, 30);
        m.GetAllCoords(d);
        for (int const i : wild) m.GetCoord(d, i);
    }
    if (m.Count() > 0) m(0, 0) = m[m.Count() - 1];
}

/// Every operation that changes the axes.
void ChangeAxes(OpenMatrix m)
{
    for (int const d : wild) {
        for (int const i : wild) m.SetCoord(d, i, 1);
        for (int const e : wild) m.SwapCoords(d, e);
        m.SetAllCoords(d, m.GetAllCoords(d));
        m.SetStep(d, 0.5f, 1);
        m.SetStep(d, -1, 1);
    }
    for (int d = 1; d <= 3; ++d) m.CopyCoords(d, 4 - d, m);
    m.Collapse();
    AskEverything(m);
}

/// Every operation that changes the values or the sizes.
void ChangeValues(OpenMatrix m)
{
    OpenMatrix other;
    other.InitFrom(m, true);
    other.CopyHeader(m);
    static_cast<Matrix &>(other) = m;
    m.Scale();
    m.SetCalibration(2);
    m.Zero();
    m.SwapData(other);
    DArray<float, 0> list(3);
    m.SwapData(list);
    m.Reserve(3, 4, 5);
    m.ReSize(2, 5, 2);
    EXPECT_EQ(20, m.Count());
    m.Size(2, 3, 1);
    EXPECT_EQ(6, m.Count());
    AskEverything(m);
}

/// Leaves a pattern in memory that is free, so that what is never set shows.
void DirtyHeap(char pattern)
{
    std::vector<std::string> blocks;
    for (std::size_t const size : {24u, 32u, 64u, 128u, 512u, 1024u, 1100u, 4096u})
        for (int i = 0; i < 4; ++i) blocks.emplace_back(size, pattern);
}

/// The number of values is the product of the axes, whatever a file says.
void ExpectWhole(OpenMatrix const &m)
{
    long long const product = 1LL * m.GetSize(1) * m.GetSize(2) * m.GetSize(3);
    EXPECT_EQ(product, m.Count());
    EXPECT_EQ(1, m.RCount());
    for (int d = 1; d <= 3; ++d) EXPECT_GE(m.GetSize(d), 0);
}

class DamagedMatrixFile : public MatrixFile {
protected:
    /// Reads the bytes twice, with other rubbish in free memory: the result is the same. With `use`, everything is
    /// done with it then that can be done with a matrix. Gives the fields after the read.
    Fields Defined(std::string const &bytes, int count = -1, int first = 0, bool use = true)
    {
        DirtyHeap('\x5A');
        OtherMatrix m;
        Fields const fields = FieldsReadInto(m, bytes, count, first);
        ExpectWhole(m);
        if (m.Count() + m.GetSize(1) + m.GetSize(2) + m.GetSize(3) > 5000) return fields; // once is enough
        DirtyHeap('\xA5');
        OtherMatrix again;
        EXPECT_TRUE(again.Read(Name("read"), count, first));
        EXPECT_EQ("", Differences(fields, again));
        if (use) {
            AskEverything(m);
            ChangeAxes(m);
            ChangeValues(m);
        }
        return fields;
    }

    /// The result can be written, and the same comes back.
    void ExpectWritable(OpenMatrix &m)
    {
        if (m.Rank() < 1 || m.Rank() > 3) return;
        BytesWritten(m);
        OpenMatrix back;
        EXPECT_TRUE(back.Read(Name("written"), -1, 0));
        for (int d = 1; d <= m.Rank(); ++d) EXPECT_EQ(m.GetSize(d), back.GetSize(d)) << d;
        EXPECT_EQ(FieldsOf(m)["t5"], FieldsOf(back)["t5"]);
    }
};

bool IsNumber(WvfRows::Row const &row)
{
    static std::vector<std::string> const numbers = {"maxValue", "minValue", "calibration", "scaleUnit", "t1",
                                                     "t2",       "t3",       "t4",          "t5"};
    for (std::string const &name : numbers)
        if (row.name == name) return true;
    return false;
}

bool IsText(WvfRows::Row const &row)
{
    return row.name == "units" || row.name == "note" || row.name == "stamp";
}

/// Checks a read of the first `length` bytes: rows that are whole have their values, rows that haven't begun leave
/// those of `OtherMatrix`.
void ExpectPrefix(DmtRows const &rows, Fields const &whole, std::size_t length, Fields const &fields)
{
    Fields const before = FieldsOf(OtherMatrix());
    for (WvfRows::Row const &row : rows.All()) {
        if (!IsNumber(row) && !IsText(row)) continue;
        std::string const start = IsText(row) ? row.name + " length" : row.name;
        if (length >= rows.End(row.name)) {
            EXPECT_EQ(whole.at(row.name), fields.at(row.name)) << row.name;
        } else if (length <= rows.Offset(start)) {
            EXPECT_EQ(before.at(row.name), fields.at(row.name)) << row.name;
        }
    }
    if (length < rows.End("stamp")) return;
    std::size_t const present = length - rows.Offset("values");
    std::string values = rows.Bytes("values");
    values.replace(present, std::string::npos, std::string(values.size() - present, '\0'));
    if (present % 4 == 0) {
        EXPECT_EQ(BytesHex(values), fields.at("values"));
    }
    for (char const *const name : {"rank", "sizes", "origSizes", "count", "coords1", "coords2", "coords3"})
        EXPECT_EQ(whole.at(name), fields.at(name)) << name;
}

TEST_F(DamagedMatrixFile, EveryPrefixGivesWhatItHoldsAndLeavesTheRest)
{
    for (DmtRows const &rows : {CubeRows(), SheetRows()}) {
        std::string const bytes = rows.Bytes();
        OtherMatrix m;
        Fields const whole = FieldsReadInto(m, bytes);
        for (std::size_t length = 0; length <= bytes.size(); ++length) {
            SCOPED_TRACE("the first " + std::to_string(length) + " bytes");
            ExpectPrefix(rows, whole, length, Defined(bytes.substr(0, length)));
        }
    }
    EXPECT_EQ("", system.Heard());
}

TEST_F(DamagedMatrixFile, EveryPrefixReadsInSlices)
{
    std::string const bytes = SheetRows().Bytes();
    for (std::size_t length = 0; length <= bytes.size(); length += 3) {
        for (int const count : {0, 3, INT_MAX}) {
            SCOPED_TRACE(std::to_string(length) + " bytes, " + std::to_string(count));
            Defined(bytes.substr(0, length), count, 2);
        }
    }
}

TEST_F(DamagedMatrixFile, EveryPrefixOfVersion3ReadsToo)
{
    std::string const bytes = CubeRows().Set("version", "03 00 00 00").Set("calibration", "").Bytes();
    for (std::size_t length = 4; length <= bytes.size(); ++length) {
        SCOPED_TRACE(length);
        EXPECT_EQ("00 00 80 3F", Defined(bytes.substr(0, length))["calibration"]);
    }
}

bool IsCount(WvfRows::Row const &row)
{
    return row.name == "version" || row.name == "skip" || row.name == "rank" || row.name.compare(0, 4, "size") == 0 ||
           row.name.find("length") != std::string::npos;
}

/// What a changed row alone must come to, where the rest of the file stays in its place.
void ExpectChange(WvfRows::Row const &row, std::string const &bytes, Fields const &fields)
{
    if (IsNumber(row)) {
        EXPECT_EQ(BytesHex(bytes), fields.at(row.name));
    } else if (IsText(row)) {
        EXPECT_EQ(bytes, fields.at(row.name));
    } else if (row.name == "rank") {
        EXPECT_EQ(std::to_string(HexInt(BytesHex(bytes))), fields.at("rank"));
    } else if (row.name == "size2") {
        std::string const size = " " + std::to_string(HexInt(BytesHex(bytes))) + " ";
        EXPECT_NE(std::string::npos, fields.at("origSizes").find(size)) << fields.at("origSizes");
    }
}

class ChangedMatrixFile : public DamagedMatrixFile {
protected:
    /// Damages each byte of a row.
    void Change(DmtRows const &rows, WvfRows::Row const &row)
    {
        std::string const bytes = rows.Bytes();
        for (std::size_t i = 0; i < row.bytes.size(); ++i) {
            for (char const value : DamagesOf(row.bytes[i])) {
                SCOPED_TRACE(row.name + ", byte " + std::to_string(i) + " is " + BytesHex(std::string(1, value)));
                std::string changed = bytes;
                changed[rows.Offset(row.name) + i] = value;
                std::string part = row.bytes;
                part[i] = value;
                bool const shapes = row.name == "rank" || row.name.compare(0, 4, "size") == 0;
                ExpectChange(row, part, Defined(changed, -1, 0, shapes || (value & 15) == 15));
            }
        }
    }
};

TEST_F(ChangedMatrixFile, EveryByteOfACountSizeOrLengthMayBeChanged)
{
    DmtRows const rows = SheetRows().Set("units length", "02 00 00 00").Set("units", "'mV'");
    for (WvfRows::Row const &row : rows.All())
        if (IsCount(row)) Change(rows, row);
    EXPECT_EQ("", system.Heard());
}

TEST_F(ChangedMatrixFile, EveryOtherByteOfTheHeaderMayBeChanged)
{
    DmtRows const rows = CubeRows();
    for (WvfRows::Row const &row : rows.All())
        if (!IsCount(row) && row.name != "values") Change(rows, row);
    EXPECT_EQ("", system.Heard());
}

TEST_F(ChangedMatrixFile, SizeOfTheThirdDimensionMayBeAnything)
{
    for (char const *const size : {"00 00 00 00", "01 00 00 00", "FF 00 00 00", "00 01 00 00", "FF FF FF FF",
                                   "00 00 00 80", "00 00 01 00", "FF FF FF 7F", "00 00 00 40"}) {
        SCOPED_TRACE(size);
        for (int const count : {-1, 0, 2, INT_MAX})
            for (int const first : {0, 1, INT_MAX}) Defined(CubeRows().Set("size3", size).Bytes(), count, first);
    }
}

TEST_F(DamagedMatrixFile, RankMayBeAnything)
{
    for (int const rank : {INT_MIN, -4, -3, -1, 0, 1, 2, 3, 4, 5, INT_MAX}) {
        SCOPED_TRACE(rank);
        for (int const first : {0, 1}) {
            Fields const fields = Defined(CubeRows().Set("rank", HexOf(rank)).Bytes(), first - 1, first);
            EXPECT_EQ(std::to_string(rank), fields.at("rank"));
        }
    }
}

TEST_F(DamagedMatrixFile, SkipLengthMayLeadAnywhere)
{
    for (int const skip :
         {1, 3, 8, 100, 1000000, INT_MAX, -1, -2, -3, -4, -5, -7, -8, -9, -100, INT_MIN, INT_MIN + 1}) {
        for (char const *const version : {"04 00 00 00", "03 00 00 00", "02 00 00 00", "01 00 00 00"}) {
            SCOPED_TRACE(std::to_string(skip) + ", version " + version);
            Defined(SheetRows().Set("version", version).Set("skip", HexOf(skip)).Bytes());
        }
    }
}

TEST_F(DamagedMatrixFile, SkipLengthBehindTheEndLeavesTheRest)
{
    OtherMatrix m;
    Fields expected = FieldsOf(m);
    for (char const *const gone : {"sizes", "origSizes", "coords1", "coords2", "count", "values"}) expected.erase(gone);
    EXPECT_EQ("", Differences(expected, FieldsReadInto(m, CubeRows().Set("skip", "FF FF FF 7F").Bytes())));
}

TEST_F(DamagedMatrixFile, AnyBytesReadInADefinedWay)
{
    std::mt19937 random(20240610);
    for (int i = 0; i < 200; ++i) {
        std::string bytes(random() % 300, '\0');
        for (char &c : bytes) c = static_cast<char>(random());
        for (std::size_t k = 4; k < 12 && k < bytes.size(); ++k)
            bytes[k] = k == 8 ? static_cast<char>(random() % 5) : '\0';
        for (std::size_t const size : {12u, 24u, 36u}) // let most go on
            for (std::size_t k = size + 1; k < size + 4 && k < bytes.size(); ++k) bytes[k] = '\0';
        SCOPED_TRACE(BytesHex(bytes));
        Defined(bytes, i % 3 - 1, i % 2);
    }
}

TEST_F(DamagedMatrixFile, WhatWasReadCanBeWritten)
{
    for (char const *const size : {"00 00 00 00", "FF FF FF FF", "01 00 00 00", "07 00 00 00", "00 10 00 00"}) {
        for (char const *const row : {"size1", "size2"}) {
            SCOPED_TRACE(std::string(row) + " " + size);
            OpenMatrix m;
            FieldsReadInto(m, SheetRows().Set(row, size).Bytes());
            ExpectWritable(m);
        }
    }
}

TEST_F(DamagedMatrixFile, LargeAnnouncedSizesOfATinyFileAreZeros)
{
    DmtRows const rows = CubeRows().Set("size1", "E8 03 00 00").Set("size3", "64 00 00 00"); // 1000 and 100
    OpenMatrix m;
    Put("a", rows.Bytes());
    ASSERT_TRUE(m.Read(Name("a"), -1, 0));
    ASSERT_EQ(300000, m.Count());
    EXPECT_EQ(12.0f, m[11]);
    for (int i = 12; i < m.Count(); ++i) ASSERT_EQ(0u, FloatBits(m[i])) << i;
}

struct {
    char const *size1, *size2, *size3;
} const absurd[] = {
    {"FF FF FF 7F", "FF FF FF 7F", "FF FF FF 7F"}, {"00 00 01 00", "00 00 01 00", "01 00 00 00"}, // 2^32 values
    {"01 00 01 00", "00 00 01 00", "01 00 00 00"},                                                // 2^16 in 32 bits
    {"00 00 01 00", "00 80 00 00", "01 00 00 00"},                                                // 2^31
    {"05 B5 00 00", "05 B5 00 00", "01 00 00 00"},                                                // just above
    {"00 04 00 00", "00 04 00 00", "00 04 00 00"},                                                // 2^30
    {"00 00 10 00", "00 00 10 00", "00 00 10 00"},                                                // 2^60
    {"00 00 01 00", "00 00 01 00", "00 00 00 00"},                                                // nothing of much
    {"00 00 01 00", "00 00 01 00", "FF FF FF FF"}, {"01 00 00 00", "01 00 00 00", "FF FF FF 7F"},
    {"FF FF FF 7F", "01 00 00 00", "01 00 00 00"}, {"01 00 00 00", "FF FF FF 7F", "02 00 00 00"},
};

TEST_F(DamagedMatrixFile, AbsurdSizesCostNoMemory)
{
    for (auto const &row : absurd) {
        DmtRows rows = CubeRows().Set("size1", row.size1).Set("size2", row.size2).Set("size3", row.size3);
        rows.Set("step2", "00 00 80 3F").Set("coords2", "00 00 80 3F");
        SCOPED_TRACE(std::string(row.size1) + ", " + row.size2 + ", " + row.size3);
        Put("a", rows.Bytes());
        for (int const count : {-1, 0, INT_MAX}) {
            SCOPED_TRACE(count);
            OtherMatrix m;
            long long const before = PeakMemory(true);
            ASSERT_NO_THROW(EXPECT_TRUE(m.Read(Name("a"), count, count == INT_MAX ? 2 : 0)));
            EXPECT_LT(PeakMemory(false) - before, 100000000);
            ExpectWhole(m);
            EXPECT_EQ(HexInt(row.size1), m.GetOrigSize(1));
            EXPECT_EQ(HexInt(row.size3), m.GetOrigSize(3));
            EXPECT_EQ(5.5f, m.t5);
        }
    }
}

} // namespace
