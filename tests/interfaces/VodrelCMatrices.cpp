// The flat functions for matrices: what they write, by bytes, what they hand out, and which memory they leave alone.

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "support/FlatClient.h"
#include "support/Hex.h"
#include "support/MatrixBytes.h"
#include "support/NumberText.h"

namespace {

struct Axis {
    int n;
    float start;
    float step;
};

class VodrelCMatrices : public FlatClient {
protected:
    static void Set(char const *name, Axis a, Axis b, Axis c, float const *data)
    {
        SetMatrixC(name, a.n, a.start, a.step, b.n, b.start, b.step, c.n, c.start, c.step, data);
    }
    static void Set(char const *name, Axis a, Axis b, Axis c, Floats const &data)
    {
        ExactArray const array(data);
        Set(name, a, b, c, array.get());
    }

    /// The values that a matrix of these sizes gives, into an array of `room` values.
    static Floats Get(char const *name, int n1, int n2, int n3, std::size_t room)
    {
        return Received(room, [=](float *out) { GetMatrixC(name, n1, 0, 0, n2, 0, 0, n3, 0, 0, out); });
    }

    /// Sizes, starts and steps as a row of words.
    static std::string Info(char const *name)
    {
        int n[] = {-77, -77, -77};
        float start[] = {-77, -77, -77};
        float step[] = {-77, -77, -77};
        GetMatrixInfoC(name, &n[0], &start[0], &step[0], &n[1], &start[1], &step[1], &n[2], &start[2], &step[2]);
        std::string row;
        for (int d = 0; d < 3; ++d)
            row += (d == 0 ? "" : " | ") + std::to_string(n[d]) + " " + Word(start[d]) + " " + Word(step[d]);
        return row;
    }

    void PutMatrix(std::string const &stem, DmtRows const &rows) const { PutShotFile(stem + ".dmt", rows.Bytes()); }

private:
    static std::string Word(float value)
    {
        std::string word = FixedText(value);
        word.erase(word.find_last_not_of('0') + 1);
        if (word.back() == '.') word.pop_back();
        return word;
    }
};

Floats const OneToTwelve = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
Axis const First = {2, 10.0f, 0.5f};
Axis const Second = {3, -1.0f, 2.0f};
Axis const Third = {2, 3.0f, 0.25f};

/// The file of 1 to 12 on the three axes.
DmtRows StoredCube()
{
    DmtRows rows = CubeRows();
    rows.Set("step2", "00 00 00 40").Set("coords2", "00 00 80 BF"); // 2, from -1
    rows.Set("coords3", "00 00 40 40");                             // from 3
    rows.Set("calibration", "00 00 80 3F").Set("scaleUnit", "00 00 00 40");
    for (char const *t : {"t1", "t2", "t3", "t4", "t5"}) rows.Set(t, "00 00 00 00");
    for (char const *text : {"units", "note"}) rows.Set(text + std::string(" length"), "00 00 00 00").Set(text, "");
    return rows;
}

/// A matrix of one size in all dimensions, with these values.
DmtRows StoredSheet(std::string const &n1, std::string const &n2, std::string const &values)
{
    DmtRows rows = SheetRows();
    for (char const *field : {"maxValue", "minValue", "coords1"}) rows.Set(field, "00 00 00 00");
    rows.Set("size1", n1).Set("size2", n2).Set("step1", "00 00 80 3F");
    rows.Set("step2", "00 00 80 3F").Set("coords2", "00 00 00 00");
    return rows.Set("scaleUnit", "B3 CE 81 0C").Set("values", values);
}

// ---- Writing ----

TEST_F(VodrelCMatrices, AMatrixIsStoredInTheShot)
{
    OpenWithShot();
    Set("M", First, Second, Third, OneToTwelve);
    EXPECT_EQ(BytesHex(StoredCube().Bytes()), BytesHex(ShotFile("M.dmt")));
    EXPECT_EQ("M.dmt Scalars.ini", ShotFiles());
}

TEST_F(VodrelCMatrices, AMatrixOfAnotherShotIsStoredThere)
{
    OpenWithShot();
    CreateShotC("B1");
    Set("A1\\M", First, Second, Third, OneToTwelve);
    EXPECT_EQ(BytesHex(StoredCube().Bytes()), BytesHex(ShotFile("M.dmt")));
    EXPECT_EQ("Scalars.ini", system.Names("X/E/Shots/ShotB1"));
    EXPECT_EQ(OneToTwelve, Get("A1\\M", 2, 3, 2, 12));
}

TEST_F(VodrelCMatrices, AThirdSizeOf1StoresTwoDimensions)
{
    OpenWithShot();
    Set("M", {2, 3, 1}, {5, 10, 10}, {1, 7, 8}, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
    DmtRows rows = SheetRows();
    rows.Set("step2", "00 00 20 41").Set("coords2", "00 00 20 41");
    EXPECT_EQ(BytesHex(rows.Bytes()), BytesHex(ShotFile("M.dmt")));
    EXPECT_EQ("2 3 1 | 5 10 10 | 1 0 1", Info("M"));
}

TEST_F(VodrelCMatrices, AStoredMatrixReplacesTheOldFile)
{
    OpenWithShot();
    PutShotFile("M.dmt", std::string(5000, 'x'));
    Set("M", First, Second, Third, OneToTwelve);
    EXPECT_EQ(BytesHex(StoredCube().Bytes()), BytesHex(ShotFile("M.dmt")));
}

TEST_F(VodrelCMatrices, ValuesAreStoredBitByBit)
{
    OpenWithShot();
    Floats const odd = {FromBits(0x7FC01234), FromBits(0xFF800000), -0.0f, FromBits(1)};
    Set("M", {4, 0, 1}, {1, 0, 1}, {1, 0, 1}, odd);
    std::string const file = ShotFile("M.dmt");
    EXPECT_EQ(FromHex("3412C07F 000080FF 00000080 01000000"), file.substr(file.size() - 16));
    EXPECT_EQ(BitsOfAll(odd), BitsOfAll(Get("M", 4, 1, 1, 4)));
}

// The first point of a new axis and the one that it grows from aren't set by anybody; what follows counts from there.
TEST_F(VodrelCMatrices, WithoutAPositiveStepTheStartIsNotUsed)
{
    OpenWithShot();
    float const nan = std::numeric_limits<float>::quiet_NaN();
    Set("Zero", {4, 10, 0}, {1, 0, 1}, {1, 0, 1}, {1, 2, 3, 4});
    EXPECT_EQ(FromHex("04000000 00000000 00000000 00000000 0000803F 00000040"), ShotFile("Zero.dmt").substr(12, 24));
    for (float step : {-0.5f, -0.0f, nan}) {
        Set("M", {2, 10, step}, {1, 0, 1}, {1, 0, 1}, {1, 2});
        EXPECT_EQ(FromHex("02000000") + HexBytes(HexOf(step)) + FromHex("00000000"), ShotFile("M.dmt").substr(12, 12));
    }
}

TEST_F(VodrelCMatrices, ASizeBelow1StoresASizeOf1AndReadsNoValue)
{
    OpenWithShot();
    ExactArray const none(0);
    struct {
        int n1, n2;
        char const *size1, *size2, *values;
    } const rows[] = {
        {0, 2, "01 00 00 00", "02 00 00 00", "00 00 00 00 00 00 00 00"},
        {2, 0, "02 00 00 00", "01 00 00 00", "00 00 00 00 00 00 00 00"},
        {-2, -2, "01 00 00 00", "01 00 00 00", "00 00 00 00"},
        {INT_MIN, 2, "01 00 00 00", "02 00 00 00", "00 00 00 00 00 00 00 00"},
        {INT_MIN, INT_MIN, "01 00 00 00", "01 00 00 00", "00 00 00 00"},
    };
    for (auto const &row : rows) {
        SCOPED_TRACE(std::to_string(row.n1) + " x " + std::to_string(row.n2));
        Set("M", {row.n1, 0, 1}, {row.n2, 0, 1}, {0, 0, 1}, none.get());
        EXPECT_EQ(BytesHex(StoredSheet(row.size1, row.size2, row.values).Bytes()), BytesHex(ShotFile("M.dmt")));
    }
}

TEST_F(VodrelCMatrices, NegativeSizesWithAPositiveProductReadNoValue)
{
    OpenWithShot();
    ExactArray const none(0);
    struct {
        int n1, n2, n3;
    } const rows[] = {{-2, -3, 1}, {-2, 3, -1}, {2, -3, -1}, {-1, -1, 0}, {INT_MIN, 2, -1}, {0, 0, 0}};
    for (auto const &row : rows) {
        Set("M", {row.n1, 0, 1}, {row.n2, 0, 1}, {row.n3, 0, 1}, none.get());
        std::string const file = ShotFile("M.dmt");
        std::size_t const values = static_cast<std::size_t>(std::max(row.n1, 1) * std::max(row.n2, 1));
        EXPECT_EQ(std::string(values * 4, '\0'), file.substr(file.size() - values * 4)) << row.n1;
    }
}

TEST_F(VodrelCMatrices, NoArrayStoresZeros)
{
    OpenWithShot();
    Set("M", {2, 0, 1}, {2, 0, 1}, {1, 0, 1}, static_cast<float const *>(nullptr));
    EXPECT_EQ(
        BytesHex(StoredSheet("02 00 00 00", "02 00 00 00", "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00").Bytes()),
        BytesHex(ShotFile("M.dmt")));
}

// 2^32, 2^31, 2^62 and 2^93, near enough, of which 32 bits leave 0, -2^31 and -1, and 64 bits leave 2^62 and -1.
TEST_F(VodrelCMatrices, MoreValuesThanAnArrayHoldsReadNothingAndStoreNothing)
{
    OpenWithShot();
    struct {
        int n1, n2, n3;
    } const rows[] = {{65536, 65536, 1},      {65536, 32768, 1},          {1, 65536, 65536},
                      {65536, 1, 65536},      {INT_MAX, INT_MAX, 1},      {INT_MAX, INT_MAX, INT_MAX},
                      {INT_MAX, 2, 1},        {65536, 65536, -1},         {2048, 1024, 1024},
                      {-5, INT_MAX, INT_MAX}, {1 << 22, 1 << 21, 1 << 21}};
    PutShotFile("Old.dmt", StoredCube().Bytes());
    for (auto const &row : rows) {
        SCOPED_TRACE(row.n1);
        ExactArray const none(0);
        for (char const *name : {"M", "Old"}) Set(name, {row.n1, 0, 1}, {row.n2, 0, 1}, {row.n3, 0, 1}, none.get());
        Set("M", {row.n1, 0, 1}, {row.n2, 0, 1}, {row.n3, 0, 1}, static_cast<float const *>(nullptr));
        EXPECT_EQ("Old.dmt Scalars.ini", ShotFiles());
    }
    EXPECT_EQ(BytesHex(StoredCube().Bytes()), BytesHex(ShotFile("Old.dmt")));
}

TEST_F(VodrelCMatrices, AFailedWriteIsDropped)
{
    OpenWithShot();
    system.folder.MakeFolder("X/E/Shots/ShotA1/M.dmt");
    system.GoTo("");
    EXPECT_EQ("", Printed([] {
                  for (char const *name : {"M", "NoShot\\M", "a/b/c", "*", "", static_cast<char const *>(nullptr)})
                      Set(name, First, Second, Third, OneToTwelve);
              }));
    EXPECT_EQ("M.dmt Scalars.ini", ShotFiles());
    EXPECT_EQ("X user", system.Names(""));
}

// ---- Reading ----

TEST_F(VodrelCMatrices, AMatrixIsReadWhole)
{
    OpenWithShot();
    PutMatrix("M", CubeRows());
    EXPECT_EQ(OneToTwelve, Get("M", 2, 3, 2, 12));
    PutMatrix("S", SheetRows());
    EXPECT_EQ((Floats{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}), Get("S", 2, 5, 1, 10));
}

TEST_F(VodrelCMatrices, StartsAndStepsOfTheCallAreNotUsed)
{
    OpenWithShot();
    PutMatrix("M", CubeRows());
    float const nan = std::numeric_limits<float>::quiet_NaN();
    for (float any : {0.0f, -1.0f, 1e30f, nan})
        EXPECT_EQ(OneToTwelve,
                  Received(12, [any](float *out) { GetMatrixC("M", 2, any, any, 3, any, any, 2, any, any, out); }));
}

TEST_F(VodrelCMatrices, AnyOtherSizeLeavesTheArrayAlone)
{
    OpenWithShot();
    PutMatrix("M", CubeRows());
    PutMatrix("S", SheetRows());
    struct {
        char const *name;
        int n1, n2, n3;
    } const rows[] = {{"M", 3, 2, 2},
                      {"M", 2, 2, 3},
                      {"M", 12, 1, 1},
                      {"M", 2, 3, 1},
                      {"M", 2, 3, 3},
                      {"M", 1, 3, 2},
                      {"M", 2, 6, 1},
                      {"M", 0, 3, 2},
                      {"M", -2, -3, 2},
                      {"M", 2, 3, 0},
                      {"M", 2, 3, -2},
                      {"S", 5, 2, 1},
                      {"S", 2, 5, 0},
                      {"S", 2, 5, 2},
                      {"S", 10, 1, 1},
                      {"M", 65536, 65536, 1},
                      {"M", INT_MAX, INT_MAX, INT_MAX},
                      {"M", INT_MIN, 3, 2}};
    for (auto const &row : rows) {
        SCOPED_TRACE(std::string(row.name) + " " + std::to_string(row.n1) + " " + std::to_string(row.n2));
        EXPECT_EQ(Floats(3, Untouched), Get(row.name, row.n1, row.n2, row.n3, 3));
        EXPECT_EQ(Floats(), Get(row.name, row.n1, row.n2, row.n3, 0));
    }
}

TEST_F(VodrelCMatrices, ANullArrayIsNotWritten)
{
    OpenWithShot();
    PutMatrix("M", CubeRows());
    GetMatrixC("M", 2, 0, 0, 3, 0, 0, 2, 0, 0, nullptr);
    GetMatrixC(nullptr, 1, 0, 0, 1, 0, 0, 1, 0, 0, nullptr);
}

TEST_F(VodrelCMatrices, AMissingMatrixIsOneValueOf0)
{
    OpenWithShot();
    PutShotFile("Short.dmt", FromHex("0400"));
    system.folder.MakeFolder("X/E/Shots/ShotA1/Folder.dmt");
    system.GoTo("");
    for (char const *name : {"None", "Folder", "NoShot\\M", "", static_cast<char const *>(nullptr)}) {
        SCOPED_TRACE(name ? name : "(null)");
        EXPECT_EQ(Floats{0}, Get(name, 1, 1, 1, 1));
        EXPECT_EQ(Floats(2, Untouched), Get(name, 2, 1, 1, 2));
        EXPECT_EQ(Floats(2, Untouched), Get(name, 0, 0, 0, 2));
        EXPECT_EQ("1 0 1 | 1 0 1 | 1 0 1", Info(name));
    }
    EXPECT_EQ(Floats(2, Untouched), Get("Short", 2, 1, 1, 2));
}

// A selection in a name comes through only as the value of a reference; brackets of the call itself are references.
TEST_F(VodrelCMatrices, ASelectionThatAReferenceBringsReadsSlices)
{
    OpenWithShot();
    PutMatrix("S", SheetRows());
    SetStringDataC("Part", "[1, 3]");
    SetStringDataC("Bad", "[x, y]");
    EXPECT_EQ((Floats{2, 3, 4, 5}), Get("S[Part]", 2, 2, 1, 4));
    EXPECT_EQ((Floats{2, 3, 4, 5}), Get("A1\\S![Part]", 2, 2, 1, 4));
    EXPECT_EQ(Floats(10, Untouched), Get("S[Part]", 2, 5, 1, 10));
    EXPECT_EQ((Floats{0, 1, 2, 3, 4, 5, 6, 7, 8, 9}), Get("S[Bad]", 2, 5, 1, 10));
    EXPECT_EQ(Floats(4, Untouched), Get("S[1, 3]", 2, 2, 1, 4));
    EXPECT_EQ("2 3 1 | 5 10 0 | 1 0 1", Info("S[Part]"));
}

TEST_F(VodrelCMatrices, AnyDamagedFileWritesInsideTheArray)
{
    OpenWithShot();
    std::string const whole = CubeRows().Bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        PutShotFile("M.dmt", whole.substr(0, length));
        for (int n3 : {1, 2}) Get("M", 2, 3, n3, static_cast<std::size_t>(6 * n3));
        Get("M", 1, 1, 1, 1);
        Info("M");
    }
}

TEST_F(VodrelCMatrices, SizesThatAFileOnlyAnnouncesMatchNoArray)
{
    OpenWithShot();
    for (char const *size : {"FF FF FF 7F", "00 00 00 01", "FE FF FF FF", "00 00 00 80"}) {
        SCOPED_TRACE(size);
        DmtRows const rows = SheetRows().Set("size1", size);
        PutMatrix("M", rows);
        EXPECT_EQ(Floats(3, Untouched), Get("M", HexInt(size), 5, 1, 3));
        EXPECT_EQ(0u, Info("M").find(std::to_string(HexInt(size)) + " "));
    }
}

TEST_F(VodrelCMatrices, ARankAbove3IsReadAsAMissingFile)
{
    OpenWithShot();
    PutMatrix("M", CubeRows().Set("rank", "04 00 00 00"));
    EXPECT_EQ(Floats{0}, Get("M", 1, 1, 1, 1));
    EXPECT_EQ(Floats(12, Untouched), Get("M", 2, 3, 2, 12));
    EXPECT_EQ("1 0 1 | 1 0 1 | 1 0 1", Info("M"));
}

// ---- Information ----

TEST_F(VodrelCMatrices, TheInfoComesFromTheHeader)
{
    OpenWithShot();
    PutMatrix("M", CubeRows());
    PutMatrix("S", SheetRows());
    EXPECT_EQ("2 10 0.5 | 3 1 0 | 2 -1 0.25", Info("M"));
    EXPECT_EQ("2 3 1 | 5 10 0 | 1 0 1", Info("S"));
    EXPECT_EQ("2 10 0.5 | 3 1 0 | 2 -1 0.25", Info("A1\\M"));
}

TEST_F(VodrelCMatrices, EachPartOfTheInfoMayBeLeftOut)
{
    OpenWithShot();
    PutMatrix("M", CubeRows());
    int n = -77;
    float value = -77;
    GetMatrixInfoC("M", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    GetMatrixInfoC("M", nullptr, nullptr, nullptr, &n, nullptr, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(3, n);
    GetMatrixInfoC("M", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &value);
    EXPECT_EQ(0.25f, value);
    GetMatrixInfoC(nullptr, &n, nullptr, nullptr, nullptr, &value, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(1, n);
}

TEST_F(VodrelCMatrices, ALargeMatrixComesBackBitByBit)
{
    OpenWithShot();
    Floats values(300 * 200 * 2);
    for (std::size_t i = 0; i < values.size(); ++i) values[i] = FromBits(static_cast<std::uint32_t>(i * 20011u));
    Set("M", {300, 0, 1}, {200, 0, 1}, {2, 0, 1}, values);
    EXPECT_TRUE(BitsOfAll(values) == BitsOfAll(Get("M", 300, 200, 2, values.size())));
}

} // namespace
