// The .dpt file: bytes in both directions, stretches of rows, rows added in place, and files that are cut or that lie.

#include <algorithm>
#include <climits>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/ParticleGroup.h"
#include "files/DFile.h"
#include "support/Damage.h"
#include "support/FreshSystem.h"
#include "support/Hex.h"
#include "support/LittleEndian.h"
#include "support/ParticleBytes.h"
#include "support/PeakMemory.h"
#include "support/SpaceOnDisk.h"

namespace {

/// The file of `ParticleBytes`, written out by hand.
std::string GoldenBytes()
{
    return FromHex("02 00 00 00  00 00 00 00  03 00 00 00  02 00 00 00  08 00 00 00" // version to columns
                   "00 00 C0 3F  00 00 20 40"                                        // 1.5, 2.5
                   "00 00 80 3F  00 00 00 40  00 00 40 40  00 00 80 40  00 00 A0 40" // t1 to t5
                   "00 00 10 41  00 00 20 41  00 00 30 41  00 00 40 41"              // 9 to 16
                   "00 00 50 41  00 00 60 41  00 00 70 41  00 00 80 41"
                   "00 00 10 C1  00 00 20 C1  00 00 30 C1  00 00 40 C1" // -9 to -16
                   "00 00 50 C1  00 00 60 C1  00 00 70 C1  00 00 80 C1"
                   "02 00 00 00  6D 6D  03 00 00 00  67 61 73  04 00 00 00  74 68 65 6E" // mm, gas, then
                   "00 00 80 3F  00 00 00 40  00 00 40 40  00 00 80 40"                  // 1 to 8
                   "00 00 A0 40  00 00 C0 40  00 00 E0 40  00 00 00 41"
                   "00 00 80 BF  00 00 00 C0  00 00 40 C0  00 00 80 C0" // -1 to -8
                   "00 00 A0 C0  00 00 C0 C0  00 00 E0 C0  00 00 00 C1");
}

std::size_t const textsOffset = 112;
std::size_t const rowsOffset = 112 + 6 + 7 + 8;

char const *const goldenHeader = "1.5 2.5 1 2 3 4 5 | 9 10 11 12 13 14 15 16 | -9 -10 -11 -12 -13 -14 -15 -16 "
                                 "| mm gas then | 3 3 2 2 ";

ParticleRow Row(float first)
{
    ParticleRow row;
    for (int i = 0; i < 8; ++i) row.push_back(first + static_cast<float>(i));
    return row;
}

/// Rows that begin with 0, 10, 20 ...
std::vector<ParticleRow> Rows(int n)
{
    std::vector<ParticleRow> rows;
    for (int i = 0; i < n; ++i) rows.push_back(Row(static_cast<float>(10 * i)));
    return rows;
}

/// Other values in every field than those of the file.
OpenParticles OtherGroup()
{
    OpenParticles g({Row(100), Row(200), Row(300)});
    g.header1 = g.header2 = g.t1 = g.t2 = g.t3 = g.t4 = g.t5 = 77;
    g.units = "old units";
    g.note = "old note";
    g.stamp = "old stamp";
    g.geometry = g.origGeometry = 9;
    for (int i = 0; i < 8; ++i) g.maxValues[i] = g.minValues[i] = 99;
    return g;
}

char const *const otherHeader = "77 77 77 77 77 77 77 | 99 99 99 99 99 99 99 99 | 99 99 99 99 99 99 99 99 "
                                "| old units old note old stamp | 9 9 3 3 ";

/// Calls `check(offset, byte)` for each damage of each byte of the golden file's header.
template <typename Check>
void ForEachChange(Check check)
{
    std::string const golden = GoldenBytes();
    for (std::size_t at = 0; at < rowsOffset; ++at)
        for (char const byte : DamagesOf(golden[at])) check(at, byte);
}

std::string Changed(std::size_t at, char byte)
{
    std::string bytes = GoldenBytes();
    bytes[at] = byte;
    return bytes;
}

class ParticleFile : public testing::Test {
protected:
    ParticleFile() : system(false) { SetNotify(&system.listener); }

    DString Name(std::string const &stem) const { return Dstr(system.path(stem)); }
    void Put(std::string const &stem, std::string const &bytes) const
    {
        std::filesystem::remove(system.folder.native(stem + ".dpt"));
        system.folder.Write(stem + ".dpt", bytes);
    }
    std::string Disk(std::string const &stem) const { return system.folder.Read(stem + ".dpt"); }
    /// Whether a file takes little of the disk, as far as that can be told.
    bool IsSmallOnDisk([[maybe_unused]] std::string const &stem) const
    {
#if defined _WIN32
        return true;
#else
        return SpaceOnDisk(system.folder.native(stem + ".dpt")) < 1000000;
#endif
    }

    OpenParticles ReadBytes(std::string const &bytes, int count, int first, OpenParticles into = OpenParticles()) const
    {
        Put("read", bytes);
        EXPECT_TRUE(into.Read(Name("read"), count, first));
        return into;
    }

    /// The file that comes of adding these rows to one of these bytes.
    std::string Appended(std::string const &bytes, OpenParticles g) const
    {
        Put("append", bytes);
        EXPECT_TRUE(g.Append(Name("append")));
        return Disk("append");
    }

    FreshSystem system;
};

// ---- Reading ----

TEST_F(ParticleFile, ReadsBytesWrittenByHand)
{
    OpenParticles const g = ReadBytes(GoldenBytes(), -1, 0, OtherGroup());
    EXPECT_EQ(goldenHeader, g.Header());
    EXPECT_EQ(GoldenBytes().substr(rowsOffset), g.RowBytes());
    EXPECT_EQ(16, g.Count());
}

TEST_F(ParticleFile, TheFieldBuilderAgreesWithTheHand)
{
    EXPECT_EQ(GoldenBytes(), ParticleBytes().Bytes());
}

TEST_F(ParticleFile, EveryVersionFromTwoOnIsReadAlike)
{
    for (int version : {3, 4, 255, INT_MAX}) {
        ParticleBytes bytes;
        bytes.version = version;
        OpenParticles const g = ReadBytes(bytes.Bytes(), -1, 0);
        EXPECT_EQ(goldenHeader, g.Header()) << version;
        EXPECT_EQ(GoldenBytes().substr(rowsOffset), g.RowBytes()) << version;
    }
}

TEST_F(ParticleFile, TheSkipLengthIsPassedOver)
{
    for (int skip : {1, 4, 5000}) {
        for (int version : {1, 2}) {
            ParticleBytes bytes;
            bytes.version = version;
            bytes.skip = skip;
            bytes.skipped = std::string(static_cast<std::size_t>(skip), '\xC9');
            if (version == 1) bytes.rows = {Row(1), Row(11)};
            OpenParticles const g = ReadBytes(bytes.Bytes(), -1, 0);
            EXPECT_EQ(goldenHeader, g.Header()) << skip;
            EXPECT_EQ(version == 1 ? 11.0f : -1.0f, g.Data()[8]) << skip;
        }
    }
}

TEST_F(ParticleFile, RowsOfVersionOneHaveCColumnsAndZeroInColumnSeven)
{
    struct {
        int version, columns;
        ParticleRow row, expected;
    } const table[] = {
        {1, 7, {1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 7, 0}},
        {1, 8, {1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 3, 4, 5, 6, 7, 0}},
        {1, 3, {1, 2, 3}, {1, 2, 3, 0, 0, 0, 0, 0}},
        {1, 9, {1, 2, 3, 4, 5, 6, 7, 8, 9}, {1, 2, 3, 4, 5, 6, 7, 0}},
        {0, 7, {1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 7, 0}},
        {-1, 7, {1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 7, 0}},
        {2, 7, {1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 3, 4, 5, 6, 7, 8}}, // 32 bytes, whatever C says
        {2, 0, {1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 3, 4, 5, 6, 7, 8}},
        {2, 9, {1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 3, 4, 5, 6, 7, 8}},
    };
    for (auto const &line : table) {
        ParticleBytes bytes;
        bytes.version = line.version;
        bytes.columns = line.columns;
        bytes.maxima.assign(static_cast<std::size_t>(line.columns), 20.0f);
        bytes.minima.assign(static_cast<std::size_t>(line.columns), -20.0f);
        bytes.rows = {line.row, line.row};
        OpenParticles const g = ReadBytes(bytes.Bytes(), -1, 0);
        EXPECT_EQ(FloatsBytes(line.expected) + FloatsBytes(line.expected), g.RowBytes())
            << "version " << line.version << ", columns " << line.columns;
        EXPECT_EQ("then", Plain(g.stamp));
    }
}

TEST_F(ParticleFile, OnlyTheExtremesOfTheFilesColumnsAreReplaced)
{
    for (int columns : {0, 1, 7, 8, 9, 20}) {
        ParticleBytes bytes;
        bytes.columns = columns;
        bytes.maxima.assign(static_cast<std::size_t>(columns), 20.0f);
        bytes.minima.assign(static_cast<std::size_t>(columns), -20.0f);
        OpenParticles const g = ReadBytes(bytes.Bytes(), -1, 0, OtherGroup());
        for (int i = 0; i < 8; ++i) {
            EXPECT_EQ(i < columns ? 20.0f : 99.0f, g.Max(i)) << columns;
            EXPECT_EQ(i < columns ? -20.0f : 99.0f, g.Min(i)) << columns;
        }
        EXPECT_EQ("mm gas then", Plain(g.units + " " + g.note + " " + g.stamp)) << columns;
    }
}

TEST_F(ParticleFile, NegativeColumnsCountAsNone)
{
    for (int columns : {-1, -8, INT_MIN}) {
        for (int version : {1, 2}) {
            ParticleBytes bytes;
            bytes.version = version;
            bytes.columns = columns;
            bytes.maxima = bytes.minima = {};
            OpenParticles const g = ReadBytes(bytes.Bytes(), 2, 0);
            EXPECT_EQ(2, g.nParticles()) << columns;
            EXPECT_EQ("then", Plain(g.stamp)) << columns;
            EXPECT_EQ(version == 1 ? std::string(64, '\0') : bytes.Bytes().substr(rowsOffset - 64), g.RowBytes());
        }
    }
}

TEST_F(ParticleFile, HugeColumnsLeadBehindTheFile)
{
    for (int columns : {1000, 2000000000, INT_MAX}) {
        ParticleBytes bytes;
        bytes.columns = columns;
        OpenParticles const g = ReadBytes(bytes.Bytes(), 5, 1);
        EXPECT_EQ(1, g.nParticles()) << columns;
        EXPECT_EQ(std::string(32, '\0'), g.RowBytes()) << columns;
    }
}

TEST_F(ParticleFile, AnEmptyTextOfTheFileLeavesTheOldOne)
{
    ParticleBytes bytes;
    bytes.units = bytes.stamp = "";
    OpenParticles const g = ReadBytes(bytes.Bytes(), 0, 0, OtherGroup());
    EXPECT_EQ("old units", Plain(g.units));
    EXPECT_EQ("gas", Plain(g.note));
    EXPECT_EQ("old stamp", Plain(g.stamp));
}

TEST_F(ParticleFile, TextsHoldAnyByte)
{
    ParticleBytes bytes;
    bytes.units = std::string("\0\xC9\r\n", 4);
    bytes.note = std::string(70000, '\xFF');
    OpenParticles const g = ReadBytes(bytes.Bytes(), -1, 0);
    EXPECT_EQ(bytes.units, Plain(g.units));
    EXPECT_EQ(bytes.note, Plain(g.note));
    EXPECT_EQ(GoldenBytes().substr(rowsOffset), g.RowBytes());
}

TEST_F(ParticleFile, AStretchOfTheRows)
{
    struct {
        int count, first, n, begin; // `begin` as far as n isn't 0
    } const table[] = {
        {-1, 0, 100, 0},       {-1, 7, 100, 0},
        {-5, 99, 100, 0},      {INT_MIN, INT_MAX, 100, 0},
        {-1, -7, 100, 0},      {0, 0, 0, 0},
        {0, 7, 0, 0},          {10, 0, 10, 0},
        {10, 1, 10, 1},        {10, 90, 10, 90},
        {10, 95, 5, 95},       {10, 99, 1, 99},
        {10, 100, 0, 0},       {10, 200, 0, 0},
        {10, INT_MAX, 0, 0},   {100, 0, 100, 0},
        {101, 0, 100, 0},      {INT_MAX, 0, 100, 0},
        {INT_MAX, 60, 40, 60}, {2000000000, 99, 1, 99},
        {1, 50, 1, 50},        {INT_MAX, INT_MAX, 0, 0},
    };
    ParticleBytes bytes;
    bytes.particles = 100;
    bytes.rows = Rows(100);
    Put("hundred", bytes.Bytes());
    for (auto const &row : table) {
        OpenParticles g = OtherGroup();
        EXPECT_TRUE(g.Read(Name("hundred"), row.count, row.first));
        EXPECT_EQ(row.n, g.nParticles()) << row.count << ", " << row.first;
        EXPECT_EQ(8 * row.n, g.Count()) << row.count << ", " << row.first;
        EXPECT_EQ(100, g.nOrigParticles());
        auto const begin = static_cast<std::size_t>(row.begin), n = static_cast<std::size_t>(row.n);
        EXPECT_EQ(bytes.Bytes().substr(rowsOffset + 32 * begin, 32 * n), g.RowBytes())
            << row.count << ", " << row.first;
    }
}

TEST_F(ParticleFile, AStretchOfAFileOfVersionOne)
{
    ParticleBytes bytes;
    bytes.version = 1;
    bytes.columns = 7;
    bytes.maxima.pop_back();
    bytes.minima.pop_back();
    bytes.particles = 20;
    bytes.rows = Rows(20);
    for (ParticleRow &row : bytes.rows) row.pop_back();
    OpenParticles const g = ReadBytes(bytes.Bytes(), 2, 18);
    EXPECT_EQ(FloatsBytes({180, 181, 182, 183, 184, 185, 186, 0, 190, 191, 192, 193, 194, 195, 196, 0}), g.RowBytes());
}

TEST_F(ParticleFile, ASeekOverRowsCountsColumnsInEveryVersion)
{
    ParticleBytes bytes;
    bytes.columns = 7;
    bytes.maxima.pop_back();
    bytes.minima.pop_back();
    bytes.particles = 4;
    bytes.rows = Rows(4);
    // three rows of seven columns end within the third row
    EXPECT_EQ(FloatsBytes({25, 26, 27, 30, 31, 32, 33, 34}), ReadBytes(bytes.Bytes(), 1, 3).RowBytes());
}

TEST_F(ParticleFile, ANegativeFirstRowEnlargesTheCountAndSeeksNothing)
{
    OpenParticles const g = ReadBytes(GoldenBytes(), 10, -3);
    EXPECT_EQ(5, g.nParticles()); // 2 - (-3)
    EXPECT_EQ(GoldenBytes().substr(rowsOffset), g.RowBytes().substr(0, 64));
    EXPECT_EQ(1, ReadBytes(GoldenBytes(), 1, INT_MIN).nParticles());
}

TEST_F(ParticleFile, CountZeroReadsTheHeaderAlone)
{
    OpenParticles const g = ReadBytes(GoldenBytes().substr(0, rowsOffset), 0, 0, OtherGroup());
    EXPECT_EQ("1.5 2.5 1 2 3 4 5 | 9 10 11 12 13 14 15 16 | -9 -10 -11 -12 -13 -14 -15 -16 "
              "| mm gas then | 3 3 2 0 ",
              g.Header());
    EXPECT_EQ(0, g.Count());
}

TEST_F(ParticleFile, AFileThatCantBeOpenedLeavesTheObject)
{
    OpenParticles g = OtherGroup();
    std::string const rows = g.RowBytes();
    system.folder.MakeFolder("folder.dpt");
    for (char const *stem : {"missing", "folder", "no\\where", ""}) {
        EXPECT_FALSE(g.Read(Name(stem), -1, 0)) << stem;
        EXPECT_EQ(otherHeader, g.Header()) << stem;
        EXPECT_EQ(rows, g.RowBytes()) << stem;
    }
}

TEST_F(ParticleFile, TheNameIsTakenWholeWithoutASelection)
{
    system.folder.Write("a[1].b.dpt", GoldenBytes());
    OpenParticles g;
    EXPECT_TRUE(g.Read(Name("a[1].b"), -1, 0));
    EXPECT_FALSE(g.Read(Name("a[1].b.dpt"), -1, 0));
    EXPECT_EQ(2, g.nParticles());
}

TEST_F(ParticleFile, TheProtectedFormsWorkFromThePlaceOfTheFile)
{
    Put("f", "abc" + GoldenBytes());
    DFile f;
    ASSERT_TRUE(f.Open(Name("f.dpt"), 5));
    f.SeekAbs(3);
    OpenParticles g;
    g.Read(f, -1, 0);
    EXPECT_EQ(goldenHeader, g.Header());
    ASSERT_TRUE(f.Open(Name("g.dpt"), 6));
    f.BWrite("abc", 3);
    g.Write(f);
    f.Close();
    EXPECT_EQ("abc" + IntBytes(2), Disk("g").substr(0, 7));
}

// ---- Writing ----

TEST_F(ParticleFile, WritesTheFieldsInTheirOrder)
{
    OpenParticles g = ReadBytes(GoldenBytes(), -1, 0);
    EXPECT_TRUE(g.Write(Name("written")));
    ParticleBytes expected;
    expected.stamp = FreshSystem::Date;
    EXPECT_EQ(expected.Bytes(), Disk("written"));
    EXPECT_EQ(FreshSystem::Date, Plain(g.stamp));
}

TEST_F(ParticleFile, WritesTheRowsInMemoryNotTheCountOfTheFileTheyCameFrom)
{
    OpenParticles g = ReadBytes(GoldenBytes(), 1, 1);
    EXPECT_TRUE(g.Write(Name("written")));
    ParticleBytes expected;
    expected.stamp = FreshSystem::Date;
    expected.particles = 1;
    expected.rows = {expected.rows[1]};
    EXPECT_EQ(expected.Bytes(), Disk("written"));
    EXPECT_EQ(2, g.nOrigParticles());
}

TEST_F(ParticleFile, ANewGroupIsWrittenWithZeros)
{
    OpenParticles g;
    EXPECT_TRUE(g.Write(Name("written")));
    EXPECT_EQ(IntBytes(2) + std::string(12, '\0') + IntBytes(8) + std::string(28 + 64 + 8, '\0') +
                  TextBytes(FreshSystem::Date),
              Disk("written"));
}

TEST_F(ParticleFile, WriteReplacesALongerFile)
{
    Put("written", std::string(1000, 'x'));
    OpenParticles g = ReadBytes(GoldenBytes(), -1, 0);
    EXPECT_TRUE(g.Write(Name("written")));
    EXPECT_EQ(rowsOffset + 15 + 64, Disk("written").size()); // the stamp has 19 characters, not 4
}

TEST_F(ParticleFile, AFileThatCantBeCreatedIsToldAndTheStampStays)
{
    system.folder.MakeFolder("folder.dpt");
    OpenParticles g = OtherGroup();
    for (char const *stem : {"folder", "no\\where"}) {
        EXPECT_FALSE(g.Write(Name(stem))) << stem;
        EXPECT_FALSE(g.Append(Name(stem))) << stem;
        EXPECT_EQ(otherHeader, g.Header()) << stem;
    }
}

// ---- Adding rows in place ----

TEST_F(ParticleFile, AppendToAMissingFileIsAWrite)
{
    OpenParticles g = ReadBytes(GoldenBytes(), 1, 0);
    EXPECT_TRUE(g.Append(Name("appended")));
    ParticleBytes expected;
    expected.stamp = FreshSystem::Date;
    expected.particles = 1;
    expected.rows.pop_back();
    EXPECT_EQ(expected.Bytes(), Disk("appended"));
    EXPECT_EQ(2, g.nOrigParticles()); // no other than before
}

/// Three rows whose extremes go beyond those of the golden file in some columns only.
OpenParticles Three()
{
    OpenParticles g = OtherGroup();
    for (int i = 0; i < 8; ++i) {
        g.maxValues[i] = i % 2 ? 5.0f : 50.0f;
        g.minValues[i] = i < 4 ? -5.0f : -50.0f;
    }
    return g;
}

/// What the golden file and `Three` come to.
ParticleBytes WithThree(ParticleBytes bytes)
{
    bytes.version = 2;
    bytes.skip = 0;
    bytes.skipped = "";
    bytes.columns = 8;
    bytes.particles += 3;
    bytes.maxima = {50, 10, 50, 12, 50, 14, 50, 16};
    bytes.minima = {-9, -10, -11, -12, -50, -50, -50, -50};
    for (float first : {100.0f, 200.0f, 300.0f}) bytes.rows.push_back(Row(first));
    return bytes;
}

TEST_F(ParticleFile, AppendAddsRowsAndKeepsTheTextsOfTheFile)
{
    EXPECT_EQ(WithThree(ParticleBytes()).Bytes(), Appended(GoldenBytes(), Three()));
}

TEST_F(ParticleFile, OnlyTheRowsThatTheNumberSaysAreWritten)
{
    OpenParticles const three = ReadBytes(WithThree(ParticleBytes()).Bytes(), 3, 0);
    OpenParticles five = ReadBytes(WithThree(ParticleBytes()).Bytes(), 5, 0);
    five.CopyHeader(three);
    ASSERT_TRUE(five.Write(Name("written")));
    OpenParticles back;
    EXPECT_TRUE(back.Read(Name("written"), -1, 0));
    EXPECT_EQ(3, back.nParticles());
    EXPECT_EQ(five.RowBytes().substr(0, 96), back.RowBytes());
    std::size_t const size = Disk("written").size();
    ASSERT_TRUE(five.Append(Name("written")));
    EXPECT_EQ(6, five.nOrigParticles());
    EXPECT_EQ(size + 96, Disk("written").size());

    OpenParticles one = ReadBytes(GoldenBytes(), 1, 0);
    one.CopyHeader(three);
    ASSERT_TRUE(one.Write(Name("short"))); // two of the three are missing
    EXPECT_EQ(size - 64, Disk("short").size());
}

TEST_F(ParticleFile, AppendTakesWhatTheFileHolds)
{
    Put("append", GoldenBytes());
    OpenParticles g = Three();
    std::string const rows = g.RowBytes();
    EXPECT_TRUE(g.Append(Name("append")));
    EXPECT_EQ("1.5 2.5 1 2 3 4 5 | 50 10 50 12 50 14 50 16 | -9 -10 -11 -12 -50 -50 -50 -50 "
              "| old units old note old stamp | 3 9 5 3 ",
              g.Header());
    EXPECT_EQ(rows, g.RowBytes());
}

TEST_F(ParticleFile, ThreeRowsAddedToFiveGiveEight)
{
    ParticleBytes bytes;
    bytes.particles = 5;
    bytes.rows = Rows(5);
    Put("append", bytes.Bytes());
    OpenParticles g = Three();
    EXPECT_TRUE(g.Append(Name("append")));
    EXPECT_EQ(8, g.nOrigParticles());
    EXPECT_EQ(3, g.nParticles());
    EXPECT_EQ(WithThree(bytes).Bytes(), Disk("append"));
    EXPECT_TRUE(g.Append(Name("append")));
    EXPECT_EQ(11, g.nOrigParticles());
    EXPECT_EQ(WithThree(bytes).Bytes().size() + 96, Disk("append").size());
}

TEST_F(ParticleFile, AppendOfNoRowsRewritesTheHeaderAlone)
{
    ParticleBytes expected;
    expected.maxima[0] = 1000;
    OpenParticles g;
    g.maxValues[0] = 1000;
    EXPECT_EQ(expected.Bytes(), Appended(GoldenBytes(), g));
}

TEST_F(ParticleFile, AppendToAGroupOfNoRowsWithEmptyTexts)
{
    ParticleBytes bytes;
    bytes.units = bytes.note = bytes.stamp = "";
    bytes.particles = 0;
    bytes.rows = {};
    EXPECT_EQ(WithThree(bytes).Bytes(), Appended(bytes.Bytes(), Three()));
}

TEST_F(ParticleFile, AppendMakesVersionTwoOfALaterOne)
{
    ParticleBytes bytes;
    bytes.version = 3;
    EXPECT_EQ(WithThree(bytes).Bytes(), Appended(bytes.Bytes(), Three()));
}

TEST_F(ParticleFile, AppendUpgradesAFileOfVersionOne)
{
    for (int columns : {7, 8, 9}) {
        ParticleBytes old;
        old.version = 1;
        old.columns = columns;
        ParticleRow const nine = {1, 2, 3, 4, 5, 6, 7, 8, 9};
        for (ParticleRow *row : {&old.maxima, &old.minima, &old.rows[0], &old.rows[1]}) {
            if (columns == 9) row->push_back(17);
            row->resize(static_cast<std::size_t>(columns));
        }
        ParticleBytes expected = WithThree(ParticleBytes());
        expected.stamp = FreshSystem::Date; // a full write on the way
        expected.rows[0][7] = expected.rows[1][7] = 0;
        if (columns == 7) {
            expected.maxima[7] = 5; // the greater of 0 and 5
        }
        std::string const bytes = Appended(old.Bytes(), Three());
        EXPECT_EQ(expected.Bytes(), bytes) << columns;
    }
}

TEST_F(ParticleFile, AppendRewritesAFileWithASkipLength)
{
    for (int version : {1, 2}) {
        ParticleBytes old;
        old.version = version;
        old.skip = 5;
        old.skipped = "12345";
        ParticleBytes expected = WithThree(old);
        expected.stamp = FreshSystem::Date;
        if (version == 1) expected.rows[0][7] = expected.rows[1][7] = 0;
        EXPECT_EQ(expected.Bytes(), Appended(old.Bytes(), Three())) << version;
    }
}

TEST_F(ParticleFile, AppendRewritesAFileOfOtherColumns)
{
    for (int columns : {0, 7, 9}) {
        ParticleBytes old;
        old.columns = columns;
        for (ParticleRow *row : {&old.maxima, &old.minima}) row->resize(static_cast<std::size_t>(columns), 17);
        ParticleBytes expected = WithThree(old);
        expected.stamp = FreshSystem::Date;
        if (columns == 0) expected.maxima = {50, 5, 50, 5, 50, 5, 50, 5};
        if (columns == 0) expected.minima = {-5, -5, -5, -5, -50, -50, -50, -50};
        if (columns == 7) expected.maxima[7] = 5;
        EXPECT_EQ(expected.Bytes(), Appended(old.Bytes(), Three())) << columns;
    }
}

TEST_F(ParticleFile, RowsThatTheFileLacksBecomeZeros)
{
    ParticleBytes old;
    old.particles = 5;
    ParticleBytes expected = old;
    expected.rows.resize(5, ParticleRow(8, 0.0f));
    EXPECT_EQ(WithThree(expected).Bytes(), Appended(old.Bytes(), Three()));
}

TEST_F(ParticleFile, AppendPutsRowsBehindThoseThatTheFileAnnounces)
{
    ParticleBytes old;
    old.particles = 1; // of two
    ParticleBytes expected = old;
    expected.rows.pop_back();
    EXPECT_EQ(WithThree(expected).Bytes(), Appended(old.Bytes(), Three()));
}

TEST_F(ParticleFile, ACountThatLiesLeavesTheFileAlone)
{
    for (int particles : {20000000, 2000000000, INT_MAX - 2, INT_MAX}) {
        for (int length : {0, 4}) {
            ParticleBytes old;
            old.particles = particles;
            old.stamp.resize(static_cast<std::size_t>(length));
            EXPECT_EQ(old.Bytes(), Appended(old.Bytes(), Three())) << particles;
        }
    }
}

TEST_F(ParticleFile, ANegativeCountIsNone)
{
    for (int particles : {-1, INT_MIN}) {
        ParticleBytes old;
        old.particles = particles;
        Put("append", old.Bytes());
        OpenParticles g = Three();
        EXPECT_TRUE(g.Append(Name("append")));
        EXPECT_EQ(3, g.nOrigParticles()) << particles;
        OpenParticles back;
        EXPECT_TRUE(back.Read(Name("append"), -1, 0));
        EXPECT_EQ(g.RowBytes(), back.RowBytes()) << particles;
    }
}

TEST_F(ParticleFile, AnUpgradeOfALyingFileDoesntFillTheDisk)
{
    for (int columns : {-1, 0, 7, 8}) {
        ParticleBytes old;
        old.version = 1;
        old.columns = columns;
        old.particles = 3000000;
        Appended(old.Bytes(), Three());
        EXPECT_TRUE(IsSmallOnDisk("append")) << columns;
    }
}

TEST_F(ParticleFile, AFolderInPlaceOfTheFileCantBeAppendedTo)
{
    system.folder.MakeFolder("append.dpt");
    EXPECT_FALSE(Three().Append(Name("append")));
}

TEST_F(ParticleFile, AppendFindsTheFileUnderAnyCase)
{
    Put("APPEND", GoldenBytes());
    EXPECT_TRUE(Three().Append(Name("append")));
    EXPECT_FALSE(system.folder.Has("append.dpt"));
    EXPECT_EQ(WithThree(ParticleBytes()).Bytes(), Disk("APPEND"));
}

// ---- Files that are cut, damaged or absurd ----

/// The first bytes of the golden file, as far as `length` goes, and of `old` the rest.
std::string Merged(std::size_t at, std::string old, std::size_t length)
{
    std::string const golden = GoldenBytes();
    for (std::size_t i = 0; i < old.size() && at + i < length; ++i) old[i] = golden[at + i];
    return old;
}

TEST_F(ParticleFile, EveryPrefixGivesWhatItHolds)
{
    std::string const golden = GoldenBytes();
    std::string const old = FloatsBytes(std::vector<float>(7, 77)), extremes = FloatsBytes(ParticleRow(8, 99));
    for (std::size_t length = 0; length < golden.size(); ++length) {
        OpenParticles const g = ReadBytes(golden.substr(0, length), -1, 0, OtherGroup());
        EXPECT_EQ(length > 8 ? 3 : 0, g.Geometry()) << length;
        EXPECT_EQ(length > 12 ? 2 : 0, g.nOrigParticles()) << length;
        EXPECT_EQ(length > 12 ? 2 : 0, g.nParticles()) << length;
        EXPECT_EQ(length > 12 ? Merged(rowsOffset, std::string(64, '\0'), length) : "", g.RowBytes()) << length;
        EXPECT_EQ(Merged(20, old, length), FloatsBytes({g.header1, g.header2, g.t1, g.t2, g.t3, g.t4, g.t5})) << length;
        EXPECT_EQ(Merged(48, extremes, length), BytesOf(g.maxValues, 8)) << length;
        EXPECT_EQ(Merged(80, extremes, length), BytesOf(g.minValues, 8)) << length;
        EXPECT_EQ(length > 112 ? Merged(116, std::string(2, '\0'), length) : "old units", Plain(g.units)) << length;
        EXPECT_EQ(length > 118 ? Merged(122, std::string(3, '\0'), length) : "old note", Plain(g.note)) << length;
        EXPECT_EQ(length > 125 ? Merged(129, std::string(4, '\0'), length) : "old stamp", Plain(g.stamp)) << length;
    }
}

TEST_F(ParticleFile, EveryPrefixCanBeAppendedTo)
{
    for (std::size_t length = 0; length < GoldenBytes().size(); ++length) {
        int const old = length > 12 ? 2 : 0;
        Put("append", GoldenBytes().substr(0, length));
        OpenParticles g = Three(), back;
        EXPECT_TRUE(g.Append(Name("append")));
        EXPECT_EQ(old + 3, g.nOrigParticles()) << length;
        EXPECT_TRUE(back.Read(Name("append"), 3, old));
        EXPECT_EQ(old + 3, back.nOrigParticles()) << length;
        EXPECT_EQ(Three().RowBytes(), back.RowBytes()) << length;
    }
}

TEST_F(ParticleFile, EveryChangedByteOfTheHeaderIsReadSafely)
{
    std::string const rows = GoldenBytes().substr(rowsOffset);
    ForEachChange([&](std::size_t at, char byte) {
        int const count = at == 14 || at == 15 ? 1000 : -1; // no 500 batches of 320 MB
        OpenParticles const g = ReadBytes(Changed(at, byte), count, 0);
        int const n = g.nOrigParticles() < 0 ? 0 : std::min(g.nOrigParticles(), count < 0 ? MaxParticleBatch : count);
        EXPECT_EQ(n, g.nParticles()) << at << " " << int{byte};
        EXPECT_EQ(8 * n, g.Count());
        EXPECT_LE(g.units.Len() + g.note.Len() + g.stamp.Len(), 3 * 32767);
        for (int i = 8; i > 0 && n > 100; --i) EXPECT_EQ(0u, BitsOf(g.Data()[g.Count() - i])) << at << " " << int{byte};
        bool const isLayout = at < 8 || (at >= 12 && at < 20) || at >= textsOffset;
        if (isLayout) return;
        EXPECT_EQ(rows, g.RowBytes()) << at << " " << int{byte};
    });
}

TEST_F(ParticleFile, EveryChangedByteOfTheHeaderIsAppendedToSafely)
{
    ForEachChange([&](std::size_t at, char byte) {
        Put("append", Changed(at, byte));
        OpenParticles g = Three(), back;
        EXPECT_TRUE(g.Append(Name("append")));
        EXPECT_TRUE(IsSmallOnDisk("append")) << at << " " << int{byte};
        EXPECT_TRUE(back.Read(Name("append"), 0, 0));
        EXPECT_TRUE(back.nOrigParticles() == g.nOrigParticles() || Disk("append") == Changed(at, byte))
            << at << " " << int{byte};
    });
}

TEST_F(ParticleFile, ANegativeCountReadsNoMoreThanABatch)
{
    EXPECT_EQ(10000000, MaxParticleBatch);
    for (int particles : {10000000, 10000001, 2000000000, INT_MAX}) {
        ParticleBytes bytes;
        bytes.particles = particles;
        OpenParticles const g = ReadBytes(bytes.Bytes(), -1, 7);
        EXPECT_EQ(10000000, g.nParticles());
        EXPECT_EQ(particles, g.nOrigParticles());
        EXPECT_EQ(GoldenBytes().substr(rowsOffset), BytesOf(g.Data(), 16));
        EXPECT_EQ(0u, BitsOf(g.Last()));
    }
}

TEST_F(ParticleFile, MoreRowsThanMemoryCanHoldAreThoseOfTheFile)
{
    for (int version : {1, 2}) {
        ParticleBytes bytes;
        bytes.version = version;
        bytes.particles = 2000000000;
        OpenParticles const g = ReadBytes(bytes.Bytes(), 2000000000, 0);
        EXPECT_EQ(2, g.nParticles());
        EXPECT_EQ(FloatsBytes(Row(1)).substr(0, 28), g.RowBytes().substr(0, 28));
    }
}

TEST_F(ParticleFile, RowsOfNoColumnsFillNoMemory)
{
    long long const before = PeakMemory(true);
    ParticleBytes bytes;
    bytes.version = 1;
    bytes.columns = 0;
    bytes.maxima = bytes.minima = {};
    bytes.particles = 40000000; // 1.2 GiB
    EXPECT_EQ(40000000, ReadBytes(bytes.Bytes(), 40000000, 0).nOrigParticles());
    EXPECT_LT(PeakMemory(false) - before, 300LL << 20);
}

TEST_F(ParticleFile, SkipLengthsThatLeadOutOfTheFile)
{
    for (int skip : {-1, -8, -100, INT_MIN, 1000, INT_MAX}) {
        ParticleBytes bytes;
        bytes.skip = skip;
        OpenParticles const g = ReadBytes(bytes.Bytes(), -1, 0);
        EXPECT_LE(g.nParticles(), MaxParticleBatch) << skip;
        EXPECT_TRUE(skip < 0 || g.nParticles() == 0) << skip;
    }
}

TEST_F(ParticleFile, RubbishIsNoHarm)
{
    std::uint32_t random = 1;
    for (int round = 0; round < 60; ++round) {
        std::string bytes;
        for (int i = 0; i < 200; ++i) {
            random = random * 1664525u + 1013904223u;
            bytes += static_cast<char>(random >> 24);
        }
        if (round % 2) bytes.replace(0, 8, IntBytes(round % 3) + IntBytes(0));
        OpenParticles const g = ReadBytes(bytes, -1, 0);
        EXPECT_EQ(8 * g.nParticles(), g.Count()) << round;
        Appended(bytes, Three());
        EXPECT_TRUE(IsSmallOnDisk("append")) << round;
    }
}

} // namespace
