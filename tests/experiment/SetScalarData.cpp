// Numbers that are stored: as values of the shot, and as free parameters of its traces and matrices, whose files are
// compared byte by byte with ones written out by hand.

#include "support/CommaLocale.h"
#include "support/MatrixBytes.h"
#include "support/ParticleBytes.h"
#include "support/ScalarTest.h"

namespace {

char const *const oldStamp = "'12/31/1999 23:59:59'";
char const *const newStamp = "'06/10/2024 08:13:20'"; // of the standing clock

class SetScalarData : public ScalarTest {
protected:
    SetScalarData() { Shot("b=5"); }

    void Put(std::string const &scalar, float value) { expt.SetScalarData(Dstr(scalar), value); }

    /// A trace and a matrix as they stand before they are changed.
    static WvfRows Trace() { return SampleRows().Set("stamp", oldStamp); }
    static DmtRows Cube() { return CubeRows().Set("stamp", oldStamp); }
    static DmtRows OneValue()
    {
        return SheetRows()
            .Set("stamp", oldStamp)
            .Set("size1", "01 00 00 00")
            .Set("size2", "01 00 00 00")
            .Set("coords2", "00 00 20 41")
            .Set("values", "00 00 80 3F");
    }
    /// Puts a file in the folder of the shot. A new one each time: some file systems flush one that is overwritten.
    void Stand(std::string const &file, WvfRows const &rows) const
    {
        std::filesystem::remove(system.folder.native(ShotIn(0, "S1") + "/" + file));
        Write(ShotIn(0, "S1") + "/" + file, rows.Bytes());
    }
    std::string Disk(std::string const &file) const { return BytesHex(Read(ShotIn(0, "S1") + "/" + file)); }

    /// The row of a free parameter in a file, by its digit.
    static std::string RowOf(char digit)
    {
        std::string const rows[] = {"scaleUnit", "t1",         "t2",         "t3",          "t4",
                                    "t5",        "scopeDelay", "scopeValue", "scopeValue2", "scopeValue3"};
        return rows[digit - '0'];
    }
};

// ---- Values of the shot ----

TEST_F(SetScalarData, ANumberIsStoredInTheTextOfEightDigits)
{
    struct {
        float value;
        char const *text;
    } const rows[] = {{0, "0"},
                      {-0.0f, "-0"},
                      {7, "7"},
                      {-2.5f, "-2.5"},
                      {0.1f, "0.1"},
                      {0.333333343f, "0.33333334"},
                      {1e20f, "1e+20"},
                      {1e-7f, "1e-07"},
                      {123456789.0f, "1.2345679e+08"},
                      {16777216, "16777216"},
                      {1000.00006f, "1000.0001"},
                      {-none, "3.3e+38"},
                      {none, "-3.3e+38"}};
    for (auto const &row : rows) {
        Put("v", row.value);
        EXPECT_EQ(std::string("[Fields]\r\nb=5\r\nv=") + row.text, Scalars(0, "S1"));
        EXPECT_EQ(std::string("[ShotS1]\r\nv=") + row.text, Cache(0));
    }
}

TEST_F(SetScalarData, AStoredNumberIsReadBackWithEightDigits)
{
    Put("v", 1000.00006f);
    Put("third", 0.333333343f);
    Put("b", -6);
    Check({{"v", 1000.00012f}, {"third", 0.333333343f}, {"b", -6}});
}

TEST_F(SetScalarData, NamesAreThoseOfTheValuesOfTheShot)
{
    Put("T2", 1);
    Put("a b/T2", 2);
    EXPECT_EQ("[Fields]\r\nb=5\r\nT2=1\r\na b/T2=2", Scalars(0, "S1"));
    Put("", 3);
    EXPECT_EQ("[Fields]\r\nb=5\r\nT2=1\r\na b/T2=2", Scalars(0, "S1"));
}

TEST_F(SetScalarData, TheCommentIsNotTheNameOfTheShot)
{
    Fields("5", "b=5");
    Set("5", 0);
    Put("comment", 5);
    EXPECT_EQ("7:Attempt to write shot name to comment, in base\n", system.Heard());
    EXPECT_EQ("[Fields]\r\nb=5", Scalars(0, "5"));
    Put("Comment", 6);
    EXPECT_EQ("[Fields]\r\nb=5\r\nComment=6", Scalars(0, "5"));
}

TEST_F(SetScalarData, TheLocaleOfTheHostChangesNothing)
{
    std::string const file = "[Fields]\r\nb=5\r\nv=0.1";
    {
        CommaLocale const locale;
        if (!locale.available()) GTEST_SKIP() << "no locale with a decimal comma";
        Put("v", 0.1f);
    }
    EXPECT_EQ(file, Scalars(0, "S1"));
}

// ---- Traces ----

TEST_F(SetScalarData, ADigitNamesAFreeParameterOfATrace)
{
    for (char digit : std::string("12345")) {
        Stand("W.wvf", Trace());
        Put(std::string("W\\T") + digit, -0.1f);
        EXPECT_EQ(BytesHex(Trace().Set("stamp", newStamp).Set(RowOf(digit), "CD CC CC BD").Bytes()), Disk("W.wvf"))
            << digit;
    }
}

TEST_F(SetScalarData, OtherDigitsNameTheFieldsBesideThem)
{
    for (char digit : std::string("0789")) {
        Stand("W.wvf", Trace());
        Put(std::string("W\\T") + digit, -0.1f);
        EXPECT_EQ(BytesHex(Trace().Set("stamp", newStamp).Set(RowOf(digit), "CD CC CC BD").Bytes()), Disk("W.wvf"))
            << digit;
    }
    Stand("W.wvf", Trace());
    Put("W\\T6", 32); // which counts in the start, 7 before: 2 + 1 + 4
    EXPECT_EQ(
        BytesHex(Trace().Set("stamp", newStamp).Set("scopeDelay", "00 00 00 42").Set("start", "00 00 18 42").Bytes()),
        Disk("W.wvf"));
}

TEST_F(SetScalarData, TheLetterMayBeSmall)
{
    Stand("W.wvf", Trace());
    Put("W\\t2", 0.5f);
    EXPECT_EQ(BytesHex(Trace().Set("stamp", newStamp).Set("t2", "00 00 00 3F").Bytes()), Disk("W.wvf"));
    Check({{"W\\t2", 0.5f}, {"W\\mx", 3}});
    EXPECT_EQ("[Fields]\r\nb=5", Scalars(0, "S1"));
}

TEST_F(SetScalarData, AnyValueIsStored)
{
    for (std::uint32_t bits : {0x7F800000u, 0xFF800000u, 0x7FC00000u, 0xFF7843B0u, 0x80000000u, 0x00000001u}) {
        Stand("W.wvf", Trace());
        Put("W\\T3", BitsFloat(bits));
        EXPECT_EQ(BytesHex(Trace().Set("stamp", newStamp).Set("t3", HexOf(bits)).Bytes()), Disk("W.wvf"));
    }
}

TEST_F(SetScalarData, TheNameOfTheFileMayBeTextOfTheShot)
{
    Fields("S1", "File=W");
    Stand("W.wvf", Trace());
    Put("[File]\\T2", 0.5f);
    Put("![File]\\T1", 0.5f);
    EXPECT_EQ(BytesHex(Trace().Set("stamp", newStamp).Set("t2", "00 00 00 3F").Set("t1", "00 00 00 3F").Bytes()),
              Disk("W.wvf"));
}

TEST_F(SetScalarData, ALockedTraceStaysAsItIs)
{
    WvfRows const locked = Trace().Set("version", "FC FF");
    Stand("W.wvf", locked);
    Put("W\\T2", 0.5f);
    EXPECT_EQ(BytesHex(locked.Bytes()), Disk("W.wvf"));
    EXPECT_EQ("2:Could not write to " + Plain(expt.GetDataFileName("W")) + ".wvf because it is locked\n",
              system.Heard());
}

TEST_F(SetScalarData, OtherFormsOfANameDoNothing)
{
    Write(ShotIn(0, "A1") + "/W.wvf", Trace().Bytes());
    Write(ShotIn(0, "A1") + "/Scalars.ini", "[Fields]\r\nb=5");
    Stand("W.wvf", Trace());
    Stand("M.dmt", Cube());
    for (char const *scalar :
         {"W\\T12", "W\\X2",  "A1\\W\\T2", "S1\\W\\T2", "W\\T",      "W\\",    "W\\Tx", "W\\t-", "W\\T+",
          "W\\T ",  "W\\T\\", "W\\2T",     "W\\TT2",    "W\\ T2",    "W \\T2", "W\\U2", "W\\S2", "\\T2",
          "\\",     "\\\\T2", ".\\W\\T2",  ">\\T2",     "W.wvf\\T2", "M\\T",   "M\\X2", "M\\T02"})
        Put(scalar, 0.5f);
    EXPECT_EQ("M.dmt Scalars.ini W.wvf", system.Names(ShotIn(0, "S1")));
    EXPECT_EQ(BytesHex(Trace().Bytes() + Cube().Bytes()), Disk("W.wvf") + " " + Disk("M.dmt"));
    EXPECT_EQ(Trace().Bytes(), Read(ShotIn(0, "A1") + "/W.wvf"));
    EXPECT_EQ("[Fields]\r\nb=5(missing)", Scalars(0, "S1") + Cache(0));
    EXPECT_EQ("", system.Heard());
}

TEST_F(SetScalarData, AFileThatIsMissingIsNotMade)
{
    Write(ShotIn(0, "S1") + "/P.dpt", ParticleBytes().Bytes());
    Put("none\\T2", 0.5f);
    Put("P\\T2", 0.5f);
    EXPECT_EQ("P.dpt Scalars.ini", system.Names(ShotIn(0, "S1")));
    EXPECT_EQ(BytesHex(ParticleBytes().Bytes()), Disk("P.dpt"));
    EXPECT_EQ("", system.Heard());
}

TEST_F(SetScalarData, WithoutAShotNothingHappens)
{
    Stand("W.wvf", Trace());
    Open();
    for (char const *scalar : {"b", "W\\T2", "new"}) Put(scalar, 0.5f);
    EXPECT_EQ("[Fields]\r\nb=5(missing)", Scalars(0, "S1") + Cache(0));
    EXPECT_EQ(BytesHex(Trace().Bytes()), Disk("W.wvf"));
}

// ---- Matrices ----

TEST_F(SetScalarData, ADigitNamesAFreeParameterOfAMatrix)
{
    for (char digit : std::string("012345")) {
        Stand("M.dmt", Cube());
        Put(std::string("M\\T") + digit, -0.1f);
        EXPECT_EQ(BytesHex(Cube().Set("stamp", newStamp).Set(RowOf(digit), "CD CC CC BD").Bytes()), Disk("M.dmt"))
            << digit;
    }
    Stand("M.dmt", Cube());
    Put("m\\t4", 0.5f);
    EXPECT_EQ(BytesHex(Cube().Set("stamp", newStamp).Set("t4", "00 00 00 3F").Bytes()), Disk("M.dmt"));
}

TEST_F(SetScalarData, HigherDigitsDoNothingToAMatrix)
{
    Stand("M.dmt", Cube());
    for (char digit : std::string("6789")) Put(std::string("M\\T") + digit, 0.5f);
    EXPECT_EQ(BytesHex(Cube().Bytes()), Disk("M.dmt"));
}

TEST_F(SetScalarData, AMatrixOfOneValueStaysAsItIs)
{
    Stand("M.dmt", OneValue());
    Put("M\\T2", 0.5f);
    EXPECT_EQ(BytesHex(OneValue().Bytes()), Disk("M.dmt"));
    DmtRows const two = OneValue().Set("size1", "02 00 00 00").Set("values", "00 00 80 3F 00 00 00 40");
    Stand("M.dmt", two);
    Put("M\\T2", 0.5f);
    EXPECT_EQ(BytesHex(DmtRows(two).Set("stamp", newStamp).Set("t2", "00 00 00 3F").Bytes()), Disk("M.dmt"));
}

TEST_F(SetScalarData, ATraceGoesBeforeAMatrixUnlessItIsEmpty)
{
    Stand("D.wvf", Trace());
    Stand("D.dmt", Cube());
    Put("D\\T2", 0.5f);
    EXPECT_EQ(BytesHex(Trace().Set("stamp", newStamp).Set("t2", "00 00 00 3F").Bytes()), Disk("D.wvf"));
    EXPECT_EQ(BytesHex(Cube().Bytes()), Disk("D.dmt"));
    WvfRows const empty = Trace().Set("fileCount", "00 00 00 00").Set("samples", "");
    Stand("D.wvf", empty);
    Put("D\\T2", 0.5f);
    EXPECT_EQ(BytesHex(empty.Bytes()), Disk("D.wvf"));
    EXPECT_EQ(BytesHex(Cube().Set("stamp", newStamp).Set("t2", "00 00 00 3F").Bytes()), Disk("D.dmt"));
}

} // namespace
