// The flat functions for particle groups: what they write, by bytes, what they hand out, and which memory they leave
// alone.

#include <climits>
#include <filesystem>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "support/FlatClient.h"
#include "support/Hex.h"
#include "support/ParticleBytes.h"
#include "support/WaveformBytes.h"

namespace {

using SetFunction = void (*)(char const *, int, int, float, float, float const *);
SetFunction const SetFunctions[] = {SetPGroupC, AppendPGroupC};

Floats const TwoRows = {1, 2, 3, 4, 5, 6, 7, 8, -1, -2, -3, -4, -5, -6, -7, -8};

/// The values of some rows in one list.
Floats Flat(std::vector<ParticleRow> const &rows)
{
    Floats values;
    for (ParticleRow const &row : rows) values.insert(values.end(), row.begin(), row.end());
    return values;
}

/// A row in which each value tells its row and column.
ParticleRow Numbered(int row)
{
    ParticleRow values;
    for (int column = 0; column < 8; ++column) values.push_back(static_cast<float>(10 * row + column));
    return values;
}

std::vector<ParticleRow> Numbered(int first, int last)
{
    std::vector<ParticleRow> rows;
    for (int i = first; i <= last; ++i) rows.push_back(Numbered(i));
    return rows;
}

class VodrelCParticles : public FlatClient {
protected:
    /// What `GetPGroupC` gives into an array for `room` particles, if it is asked for `asked`: as many values as it
    /// tells, and nothing behind them.
    static Floats Get(char const *name, int asked, int first, int room)
    {
        int count = 0;
        Floats values = Received(static_cast<std::size_t>(room) * 8, [&](float *out) {
            count = asked;
            GetPGroupC(name, &count, first, out);
        });
        EXPECT_TRUE(count >= 0 && count <= room) << count;
        std::size_t const n = static_cast<std::size_t>(count < 0 ? 0 : count < room ? count : room) * 8;
        for (std::size_t i = n; i < values.size(); ++i) EXPECT_EQ(Untouched, values[i]) << i;
        values.resize(n);
        return values;
    }
    static Floats Get(char const *name, int asked, int first) { return Get(name, asked, first, asked); }

    static std::string Info(char const *name)
    {
        int n = -77;
        int geometry = -77;
        float header2 = -77;
        float header1 = -77;
        GetPGroupInfoC(name, &n, &geometry, &header2, &header1);
        return std::to_string(n) + " " + std::to_string(geometry) + " " + Plain(DString(header2)) + " " +
               Plain(DString(header1));
    }

    /// A file of rows 0 to `n` - 1, numbered.
    static ParticleBytes NumberedFile(int n)
    {
        ParticleBytes file;
        file.particles = n;
        file.rows = Numbered(0, n - 1);
        return file;
    }
    void PutGroup(std::string const &stem, ParticleBytes const &file) const
    {
        PutShotFile(stem + ".dpt", file.Bytes());
    }
};

/// The file of the two rows, as a client stores them.
ParticleBytes StoredRows()
{
    ParticleBytes file;
    file.t = {0, 0, 0, 0, 0};
    file.maxima = {1, 2, 3, 4, 5, 6, 7, 8};
    file.minima = {-1, -2, -3, -4, -5, -6, -7, -8};
    file.units = file.note = "";
    file.stamp = FreshSystem::Date;
    return file;
}

/// A file without rows, whose extremes are still where the search for them begins: 3.3e38.
ParticleBytes StoredNothing()
{
    ParticleBytes file = StoredRows();
    file.particles = 0;
    file.rows.clear();
    file.maxima.assign(8, FromBits(0xFF7843B0));
    file.minima.assign(8, FromBits(0x7F7843B0));
    return file;
}

// ---- Writing ----

TEST_F(VodrelCParticles, AGroupIsStoredInTheShotAsItIs)
{
    OpenWithShot();
    ExactArray const rows(TwoRows);
    for (int geometry : {3, 0, 1, -1, INT_MIN}) {
        ParticleBytes file = StoredRows();
        file.geometry = geometry;
        SetPGroupC("P", 2, geometry, 2.5f, 1.5f, rows.get());
        EXPECT_EQ(BytesHex(file.Bytes()), BytesHex(ShotFile("P.dpt"))) << geometry;
    }
    EXPECT_EQ("P.dpt Scalars.ini", ShotFiles());
}

TEST_F(VodrelCParticles, AppendingToAMissingFileStoresIt)
{
    OpenWithShot();
    ExactArray const rows(TwoRows);
    AppendPGroupC("P", 2, 3, 2.5f, 1.5f, rows.get());
    EXPECT_EQ(BytesHex(StoredRows().Bytes()), BytesHex(ShotFile("P.dpt")));
}

TEST_F(VodrelCParticles, AGroupOfAnotherShotIsStoredThere)
{
    OpenWithShot();
    CreateShotC("B1");
    SetStringDataC("To", "A1");
    for (SetFunction set : SetFunctions) {
        std::filesystem::remove(system.folder.native("X/E/Shots/ShotA1/P.dpt"));
        set("[To]\\P", 2, 3, 2.5f, 1.5f, TwoRows.data());
        EXPECT_EQ(BytesHex(StoredRows().Bytes()), BytesHex(ShotFile("P.dpt")));
        EXPECT_EQ("Scalars.ini", system.Names("X/E/Shots/ShotB1"));
    }
    EXPECT_EQ(TwoRows, Get("A1\\P", 2, 0));
}

TEST_F(VodrelCParticles, AStoredGroupReplacesTheOldFile)
{
    OpenWithShot();
    PutGroup("P", NumberedFile(50));
    SetPGroupC("P", 2, 3, 2.5f, 1.5f, TwoRows.data());
    EXPECT_EQ(BytesHex(StoredRows().Bytes()), BytesHex(ShotFile("P.dpt")));
}

TEST_F(VodrelCParticles, NaNsAreStoredAndNoExtremes)
{
    OpenWithShot();
    Floats rows = TwoRows;
    rows[0] = FromBits(0x7FC01234);
    rows[9] = -std::numeric_limits<float>::infinity();
    SetPGroupC("P", 2, 3, 2.5f, 1.5f, rows.data());
    ParticleBytes file = StoredRows();
    file.rows = {{rows.begin(), rows.begin() + 8}, {rows.begin() + 8, rows.end()}};
    file.maxima[0] = -1;
    file.minima[1] = rows[9];
    EXPECT_EQ(BytesHex(file.Bytes()), BytesHex(ShotFile("P.dpt")));
}

// 2^28 and more particles are 2^31 and more values, which 32 bits make negative, 0 or 8.
int const NoCounts[] = {0,
                        -1,
                        -2,
                        INT_MIN,
                        INT_MIN + 1,
                        1 << 28,
                        1 << 29,
                        (1 << 29) + 1,
                        (1 << 28) + 1,
                        INT_MAX,
                        -(1 << 28),
                        -(1 << 29) + 1};

TEST_F(VodrelCParticles, CountsThatNoArrayHoldsReadAndStoreNoParticle)
{
    OpenWithShot();
    for (int count : NoCounts) {
        SCOPED_TRACE(count);
        for (SetFunction set : SetFunctions) {
            ExactArray const none(0);
            set("P", count, 3, 2.5f, 1.5f, none.get());
            EXPECT_EQ(BytesHex(StoredNothing().Bytes()), BytesHex(ShotFile("P.dpt")));
            EXPECT_EQ("0 3 2.5 1.5", Info("P"));
        }
    }
}

TEST_F(VodrelCParticles, AppendingNoParticleLeavesTheFileAsItIs)
{
    OpenWithShot();
    PutGroup("P", NumberedFile(5));
    for (int count : NoCounts) {
        ExactArray const none(0);
        AppendPGroupC("P", count, 0, -1, -2, none.get());
        EXPECT_EQ(BytesHex(NumberedFile(5).Bytes()), BytesHex(ShotFile("P.dpt"))) << count;
    }
}

TEST_F(VodrelCParticles, AFileThatGrowsKeepsItsGeometryHeaderAndTexts)
{
    OpenWithShot();
    ParticleBytes file = NumberedFile(3);
    PutGroup("P", file);
    ExactArray const rows(Flat({{1, 20, 3, 4, 5, 6, 7, -80}, Numbered(4)}));
    AppendPGroupC("P", 2, 0, -1, -2, rows.get());
    file.particles = 5;
    file.rows.push_back({1, 20, 3, 4, 5, 6, 7, -80});
    file.rows.push_back(Numbered(4));
    file.maxima = {40, 41, 42, 43, 44, 45, 46, 47};
    file.minima[7] = -80;
    EXPECT_EQ(BytesHex(file.Bytes()), BytesHex(ShotFile("P.dpt")));
    EXPECT_EQ("5 3 2.5 1.5", Info("P"));
}

TEST_F(VodrelCParticles, GroupsGrowCallByCall)
{
    OpenWithShot();
    for (int i = 0; i < 5; ++i) {
        ExactArray const row(Numbered(i));
        AppendPGroupC("P", 1, 1, 2, 3, row.get());
    }
    EXPECT_EQ(Flat(Numbered(0, 4)), Get("P", 5, 0));
    EXPECT_EQ("5 1 2 3", Info("P"));
}

TEST_F(VodrelCParticles, AnOldFileThatGrowsBecomesANewOne)
{
    OpenWithShot();
    ParticleBytes old;
    old.version = 1;
    old.columns = 7;
    for (ParticleRow *row : {&old.rows[0], &old.rows[1], &old.maxima, &old.minima}) row->pop_back();
    PutGroup("P", old);
    AppendPGroupC("P", 1, 0, -1, -2, Numbered(3).data());
    ParticleBytes file;
    file.rows[0][7] = file.rows[1][7] = 0;
    file.rows.push_back(Numbered(3));
    file.particles = 3;
    file.stamp = FreshSystem::Date;
    file.maxima = {30, 31, 32, 33, 34, 35, 36, 37};
    file.minima[7] = 0; // which the old file doesn't have
    EXPECT_EQ(BytesHex(file.Bytes()), BytesHex(ShotFile("P.dpt")));
}

TEST_F(VodrelCParticles, NoArrayStoresZeros)
{
    OpenWithShot();
    SetPGroupC("P", 2, 3, 2.5f, 1.5f, nullptr);
    ParticleBytes file = StoredRows();
    file.rows = {ParticleRow(8, 0.0f), ParticleRow(8, 0.0f)};
    file.maxima = file.minima = ParticleRow(8, 0.0f);
    EXPECT_EQ(BytesHex(file.Bytes()), BytesHex(ShotFile("P.dpt")));
    EXPECT_EQ(Floats(16, 0.0f), Get("P", 2, 0));
}

TEST_F(VodrelCParticles, AFailedWriteIsDropped)
{
    OpenWithShot();
    system.folder.MakeFolder("X/E/Shots/ShotA1/P.dpt");
    system.GoTo("");
    EXPECT_EQ("", Printed([] {
                  for (SetFunction set : SetFunctions)
                      for (char const *name : {"P", "NoShot\\P", "a/b/c", "*", "", static_cast<char const *>(nullptr)})
                          set(name, 2, 0, 0, 0, TwoRows.data());
              }));
    EXPECT_EQ("P.dpt Scalars.ini", ShotFiles());
    EXPECT_EQ("X user", system.Names(""));
}

// ---- Reading ----

TEST_F(VodrelCParticles, AsManyParticlesComeAsAreAskedAndThere)
{
    OpenWithShot();
    PutGroup("P", NumberedFile(10));
    struct {
        int asked, first, from, to;
    } const rows[] = {{10, 0, 0, 9},   {3, 0, 0, 2},    {20, 0, 0, 9},  {3, 4, 4, 6},        {4, 8, 8, 9},
                      {1, 9, 9, 9},    {3, 10, 0, -1},  {3, 99, 0, -1}, {3, INT_MAX, 0, -1}, {0, 0, 0, -1},
                      {0, 5, 0, -1},   {0, -77, 0, -1}, {0, -3, 0, -1}, {3, -77, 0, 2},      {20, -77, 0, 9},
                      {10, 10, 0, -1}, {1, 0, 0, 0}};
    ParticleBytes rectangular = NumberedFile(10);
    rectangular.geometry = 0;
    PutGroup("R", rectangular);
    for (auto const &row : rows) {
        SCOPED_TRACE(std::to_string(row.asked) + " from " + std::to_string(row.first));
        EXPECT_EQ(Flat(Numbered(row.from, row.to)), Get("R", row.asked, row.first));
        if (row.first == -77) continue;
        EXPECT_EQ(Flat(Numbered(row.from, row.to)), Get("P", row.asked, row.first));
    }
}

TEST_F(VodrelCParticles, ANegativeCountMeansAllFromTheFirstOn)
{
    OpenWithShot();
    ParticleBytes file = NumberedFile(10);
    file.geometry = 0;
    PutGroup("P", file);
    for (int asked : {-1, -77, INT_MIN})
        for (int first : {0, 3, 10, -3, -77, INT_MIN, INT_MAX})
            EXPECT_EQ(Flat(Numbered(0, 9)), Get("P", asked, first, 10)) << asked << " from " << first;
}

TEST_F(VodrelCParticles, ANegativeCountIsBoundedByABatch)
{
    OpenWithShot();
    ParticleBytes file = NumberedFile(10);
    file.particles = 2000000000;
    PutGroup("P", file);
    int count = -1;
    GetPGroupC("P", &count, 0, nullptr);
    EXPECT_EQ(10000000, count);
    EXPECT_EQ("2000000000 3 2.5 1.5", Info("P"));
}

// So many rows before the first don't exist: they count, and the rows that are missing at the end are 0.
TEST_F(VodrelCParticles, ANegativeFirstAsksForRowsBehindTheEnd)
{
    OpenWithShot();
    PutGroup("P", NumberedFile(3));
    Floats five = Flat(Numbered(0, 2));
    five.resize(5 * 8);
    EXPECT_EQ(five, Get("P", 9, -2));
    EXPECT_EQ(five, Get("P", 5, -2));
    EXPECT_EQ(Flat(Numbered(0, 1)), Get("P", 2, -2));
    EXPECT_EQ(Flat(Numbered(0, 2)), Get("P", 3, INT_MIN));
    EXPECT_EQ(five, Get("P", 5, INT_MIN));
    EXPECT_EQ(five, Get("P", 5, -76));
    EXPECT_EQ(five, Get("P", 5, -78));
}

/// Polar rows and what they are in rectangular coordinates, by their bits. The sine and cosine were taken in double
/// precision and rounded, then the products in double precision.
ParticleBytes PolarFile()
{
    ParticleBytes file;
    file.geometry = 1;
    file.particles = 3;
    file.rows = {{2, 0.5f, 7, 1, -3, 8, 9, 10}, {1.5f, -2, 0.25f, 0.1f, 0.2f, 5, 6, 7}, {0, 3, 1, 2, 3, 4, 5, 6}};
    return file;
}

std::vector<std::uint32_t> const Rectangular = {0x3FE0A940, 0x3F757744, 0x40E00000, 0x4014370A, 0xC009D008, 0x41000000,
                                                0x41100000, 0x41200000, 0xBF1FCCE6, 0xBFAE95C9, 0x3E800000, 0x3E0F9C55,
                                                0xBE3256C4, 0x40A00000, 0x40C00000, 0x40E00000, 0x80000000, 0x00000000,
                                                0x3F800000, 0xC019D068, 0xC02C03E4, 0x40800000, 0x40A00000, 0x40C00000};

TEST_F(VodrelCParticles, FromMinus77OnTheyComeInRectangularCoordinates)
{
    OpenWithShot();
    for (int geometry : {1, 2, -1}) {
        ParticleBytes file = PolarFile();
        file.geometry = geometry;
        PutGroup("P", file);
        EXPECT_EQ(Rectangular, BitsOfAll(Get("P", 3, -77))) << geometry;
        EXPECT_EQ(Rectangular, BitsOfAll(Get("P", -1, -77, 3))) << geometry;
        EXPECT_EQ(BytesHex(file.Bytes()), BytesHex(ShotFile("P.dpt")));
    }
}

TEST_F(VodrelCParticles, FromAnywhereElseTheyComeAsTheyAre)
{
    OpenWithShot();
    PutGroup("P", PolarFile());
    for (int first : {0, -1, -76, -78}) EXPECT_EQ(Flat(PolarFile().rows), Get("P", 3, first)) << first;
    ParticleBytes file = PolarFile();
    file.geometry = 0;
    PutGroup("R", file);
    EXPECT_EQ(Flat(file.rows), Get("R", 3, -77));
}

TEST_F(VodrelCParticles, OldRowsAreFilledUpWithZeros)
{
    OpenWithShot();
    ParticleBytes old = NumberedFile(2);
    old.version = 1;
    old.columns = 7;
    old.geometry = 0;
    for (ParticleRow *row : {&old.rows[0], &old.rows[1], &old.maxima, &old.minima}) row->pop_back();
    PutGroup("P", old);
    Floats expected = Flat(Numbered(0, 1));
    expected[7] = expected[15] = 0;
    EXPECT_EQ(expected, Get("P", 2, 0));
    EXPECT_EQ(expected, Get("P", -1, -77, 2));
    EXPECT_EQ(Floats(expected.begin() + 8, expected.end()), Get("P", 2, 1));
}

TEST_F(VodrelCParticles, AMissingGroupHasNoParticles)
{
    OpenWithShot();
    system.folder.MakeFolder("X/E/Shots/ShotA1/Folder.dpt");
    PutShotFile("Short.dpt", FromHex("0200"));
    system.GoTo("");
    for (char const *name : {"None", "Folder", "Short", "NoShot\\P", "", static_cast<char const *>(nullptr)}) {
        SCOPED_TRACE(name ? name : "(null)");
        for (int first : {0, 5, -77}) {
            EXPECT_EQ(Floats(), Get(name, 4, first));
            EXPECT_EQ(Floats(), Get(name, -1, first, 4));
        }
        EXPECT_EQ("0 0 0 0", Info(name));
    }
}

// Groups know no selection: what a reference brings is part of the name.
TEST_F(VodrelCParticles, BracketsThatAReferenceBringsBelongToTheName)
{
    OpenWithShot();
    PutGroup("P", NumberedFile(10));
    PutGroup("P[1, 3]", NumberedFile(4));
    SetStringDataC("Part", "[1, 3]");
    EXPECT_EQ(Flat(Numbered(0, 3)), Get("P[Part]", 10, 0));
    EXPECT_EQ(Flat(Numbered(2, 3)), Get("A1\\P![Part]", 10, 2));
    EXPECT_EQ("4 3 2.5 1.5", Info("P[Part]"));
    EXPECT_EQ(Floats(), Get("P[1, 3]", 10, 0));
    SetStringDataC("Part", "[0, 2]");
    EXPECT_EQ(Floats(), Get("P[Part]", 10, 0));
}

TEST_F(VodrelCParticles, ANullCountOrArrayIsNotWritten)
{
    OpenWithShot();
    PutGroup("P", NumberedFile(10));
    EXPECT_EQ(Floats(16, Untouched), Received(16, [](float *out) { GetPGroupC("P", nullptr, 0, out); }));
    for (int first : {0, -77}) {
        int count = 4;
        GetPGroupC("P", &count, first, nullptr);
        EXPECT_EQ(4, count);
    }
    GetPGroupC(nullptr, nullptr, 0, nullptr);
}

TEST_F(VodrelCParticles, AnyDamagedFileWritesInsideTheArray)
{
    OpenWithShot();
    std::string const whole = PolarFile().Bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        PutShotFile("P.dpt", whole.substr(0, length));
        for (int first : {0, 1, -77, -2}) Get("P", 2, first);
        Info("P");
    }
}

TEST_F(VodrelCParticles, CountsThatAFileOnlyAnnouncesWriteInsideTheArray)
{
    OpenWithShot();
    for (int particles : {INT_MAX, INT_MIN, -1, 1 << 28, 1 << 29, 11}) {
        ParticleBytes file = NumberedFile(2);
        file.geometry = 0;
        file.particles = particles;
        PutGroup("P", file);
        SCOPED_TRACE(particles);
        int const expected = particles < 0 ? 0 : 3;
        for (int first : {0, -77}) EXPECT_EQ(static_cast<std::size_t>(expected) * 8, Get("P", 3, first).size());
        EXPECT_EQ(std::to_string(particles) + " 0 2.5 1.5", Info("P"));
        for (int columns : {0, -1, 9, INT_MAX, INT_MIN}) {
            file.columns = columns;
            PutGroup("P", file);
            Get("P", 3, 0);
            Get("P", 3, 1);
        }
    }
}

// ---- Information ----

TEST_F(VodrelCParticles, TheInfoComesFromTheHeader)
{
    OpenWithShot();
    ParticleBytes file;
    file.geometry = -5;
    file.particles = 12345;
    file.header1 = -0.125f;
    file.header2 = 1e10f;
    PutGroup("P", file);
    EXPECT_EQ("12345 -5 1e+10 -0.125", Info("P"));
    EXPECT_EQ("12345 -5 1e+10 -0.125", Info("A1\\P"));
}

TEST_F(VodrelCParticles, EachPartOfTheInfoMayBeLeftOut)
{
    OpenWithShot();
    PutGroup("P", ParticleBytes());
    int n = -77;
    float header1 = -77;
    GetPGroupInfoC("P", nullptr, nullptr, nullptr, nullptr);
    GetPGroupInfoC("P", &n, nullptr, nullptr, &header1);
    EXPECT_EQ(2, n);
    EXPECT_EQ(1.5f, header1);
    GetPGroupInfoC(nullptr, &n, nullptr, nullptr, nullptr);
    EXPECT_EQ(0, n);
}

TEST_F(VodrelCParticles, ManyParticlesComeBackBitByBit)
{
    OpenWithShot();
    Floats values(8 * 20000);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = FromBits(static_cast<std::uint32_t>(i * 20011u));
    SetPGroupC("P", 20000, 1, 0, 0, values.data());
    EXPECT_TRUE(BitsOfAll(values) == BitsOfAll(Get("P", 20000, 0)));
    EXPECT_TRUE(BitsOfAll(Floats(values.end() - 80, values.end())) == BitsOfAll(Get("P", 100, 19990)));
}

} // namespace
