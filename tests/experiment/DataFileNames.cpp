#include <climits>

#include "support/ExperimentTest.h"

namespace {

class DataFileNames : public ExperimentTest {
protected:
    std::string File(std::string const &text) { return Plain(expt.GetDataFileName(Dstr(text))); }
    std::string Clean(std::string const &text) { return Plain(expt.CleanDataFileName(Dstr(text))); }

    /// The names that match, added to those that are there, with blanks between.
    std::string Matches(std::string const &pattern, bool clear = true)
    {
        expt.GetDataFileNames(Dstr(pattern), names, clear);
        return Plain(names.Join(" "));
    }

    /// The shot A1 in group 0 is current and has the values Run, Dot and Net.
    void OpenWithShot()
    {
        OpenWithRuns();
        Write(ShotIn(0, "A1") + "/Scalars.ini",
              "[Fields]\r\nRun=7\r\nDot=.\\Q\r\nNet=\\\\nosuchserver\\s\r\nOther=B1\\W");
        Set("A1", 0);
    }

    DStringArray names;
};

// ---- GetDataFileName ----

TEST_F(DataFileNames, AFileOfTheCurrentShot)
{
    OpenWithShot();
    EXPECT_EQ(path("X\\E\\Shots\\ShotA1\\W"), File("W"));
    EXPECT_EQ(path("X\\E\\Shots\\ShotA1\\W.wvf"), File("W.wvf"));
    EXPECT_EQ(path("X\\E\\Shots\\ShotA1\\a/b"), File("a/b"));
}

TEST_F(DataFileNames, AnEmptyNameGivesNothing)
{
    OpenWithShot();
    EXPECT_EQ("", File(""));
}

TEST_F(DataFileNames, WithoutAShotTheNameComesBack)
{
    OpenWithRuns();
    EXPECT_EQ("W", File("W"));
    EXPECT_EQ("W", Plain(Experiment().GetDataFileName("W")));
}

TEST_F(DataFileNames, AFileOfAnotherShotInWhicheverGroup)
{
    OpenWithShot();
    MakeShot(2, "A123");
    EXPECT_EQ(path("X\\Data\\RunB\\ShotA123\\W"), File("A123\\W"));
    EXPECT_EQ(path("X\\Data\\RunB\\Shota123\\W"), File("a123\\W"));
    EXPECT_EQ("", File("A124\\W"));
}

TEST_F(DataFileNames, TheCurrentGroupIsTriedFirst)
{
    OpenWithShot();
    MakeShot(0, "A123");
    MakeShot(2, "A123");
    EXPECT_EQ(path("X\\E\\Shots\\ShotA123\\W"), File("A123\\W"));
    Set("A1", 2);
    EXPECT_EQ(path("X\\Data\\RunB\\ShotA123\\W"), File("A123\\W"));
}

TEST_F(DataFileNames, EachFormOfAName)
{
    OpenWithShot();
    system.folder.MakeFolder(ShotIn(1, "B1") + "/sub");
    struct {
        std::string text;
        std::string file;
    } const rows[] = {{".\\Shots\\ShotA1\\W", path("X\\E\\Shots\\ShotA1\\W")},
                      {".\\Shots/W", path("X\\E\\Shots\\W")},
                      {"..\\W", path("X\\W")},
                      {".W", ".W"},
                      {"..W", "..W"},
                      {".\\", path("X\\E")},
                      {"\\\\nosuchserver\\share\\W", "\\\\nosuchserver\\share\\W"},
                      {"B1\\W", path("X\\Data\\RunA\\ShotB1\\W")},
                      {"B1\\sub\\W", path("X\\Data\\RunA\\ShotB1\\sub\\W")},
                      {"B1\\", path("X\\Data\\RunA\\ShotB1")},
                      {"B1\\none\\W", ""},
                      {"\\W", path("X\\E\\Shots\\ShotA1\\W")},
                      {"\\", path("X\\E\\Shots\\ShotA1")},
                      {"@object", path("X\\E\\Shots\\ShotA1\\@object")},
                      {">1\\W", ""},
                      {"C:\\data\\W", ""},
                      {path("X\\E\\Shots\\ShotA1\\W"), ""},
                      {" ", path("X\\E\\Shots\\ShotA1\\ ")},
                      {"\xC9\xFF", path("X\\E\\Shots\\ShotA1\\\xC9\xFF")}};
    for (auto const &row : rows) EXPECT_EQ(row.file, File(row.text)) << row.text;
}

TEST_F(DataFileNames, ReferencesAreExpandedInBothForms)
{
    OpenWithShot();
    MakeShot(1, "B1");
    MakeShot(2, "R7");
    struct {
        std::string text;
        std::string file;
    } const rows[] = {{"W[Run]", path("X\\E\\Shots\\ShotA1\\W7")},     {"W![Run]", path("X\\E\\Shots\\ShotA1\\W7")},
                      {"W[Run", path("X\\E\\Shots\\ShotA1\\W7")},      {"[Shot]", path("X\\E\\Shots\\ShotA1\\A1")},
                      {"[None::Run]", path("X\\E\\Shots\\ShotA1\\7")}, {"R[Run]\\W", path("X\\Data\\RunB\\ShotR7\\W")},
                      {"[Other]", path("X\\Data\\RunA\\ShotB1\\W")},   {"[Dot]", path("X\\E\\Q")},
                      {"[Net]\\W", "\\\\nosuchserver\\s\\W"}};
    for (auto const &row : rows) EXPECT_EQ(row.file, File(row.text)) << row.text;
}

TEST_F(DataFileNames, AReferenceWithoutAValueGivesTheShotsFolder)
{
    OpenWithShot();
    for (char const *text : {"W[None]", "![None]", "B1\\[None]", ".\\[None]"})
        EXPECT_EQ(path("X\\E\\Shots\\ShotA1"), File(text)) << text;
}

TEST_F(DataFileNames, ThisComputersNetworkNamesBecomeLocal)
{
    OpenWithShot();
    std::string value = "Path=" + path("X");
    value += '\0';
    Platform::SetShares({{"data", value}});
    EXPECT_EQ(path("X\\W"), File("\\\\" + Plain(GetComputerNameD()) + "\\data\\W"));
}

TEST_F(DataFileNames, NamesTouchNeitherDiskNorLog)
{
    OpenWithShot();
    MakeShot(1, "B1");
    Logging = true;
    File("W");
    File("B1\\W");
    File("None\\W");
    Matches("None\\*");
    Clean(">1\\W");
    EXPECT_EQ("(missing)", system.Log());
    EXPECT_EQ("", system.Heard());
    EXPECT_EQ("Scalars.ini", system.Names(ShotIn(0, "A1")));
    EXPECT_EQ("", system.Names(ShotIn(1, "B1")));
}

// ---- GetDataFileNames ----

TEST_F(DataFileNames, NamesThatMatchComeSortedWithoutExtension)
{
    OpenWithShot();
    for (char const *file : {"b.wvf", "A.wvf", "c.d.dmt", "plain", ".hidden.wvf", "C.DPT"})
        Write(ShotIn(0, "A1") + "/" + file, "");
    system.folder.MakeFolder(ShotIn(0, "A1") + "/folder.wvf");
    EXPECT_EQ("A b c.d C plain Scalars", Matches("*"));
    EXPECT_EQ("A b", Matches("*.wvf"));
    EXPECT_EQ("A", Matches("a.*"));
    EXPECT_EQ("b", Matches("B.WVF"));
    EXPECT_EQ("", Matches("none*"));
}

TEST_F(DataFileNames, NamesOfAnotherShotBearItsName)
{
    OpenWithShot();
    for (char const *file : {"W.wvf", "V.dmt"}) Write(ShotIn(2, "B1") + "/" + file, "");
    EXPECT_EQ("B1\\V B1\\W", Matches("B1\\*"));
    EXPECT_EQ("b1\\W", Matches("b1\\w*"));
    Write(ShotIn(2, "B1") + "/sub/S.wvf", "");
    EXPECT_EQ("B1\\sub\\S", Matches("B1\\sub\\*"));
}

TEST_F(DataFileNames, NamesThatWereFoundLeadToTheirFiles)
{
    OpenWithShot();
    Write(ShotIn(2, "B1") + "/W.wvf", "");
    Matches("B1\\*");
    EXPECT_EQ(path("X\\Data\\RunB\\ShotB1\\W"), Plain(expt.GetDataFileName(names[0])));
}

TEST_F(DataFileNames, AMissingShotLeavesTheListAsItWas)
{
    OpenWithShot();
    names << "old.x";
    EXPECT_EQ("old.x", Matches("None\\*", true));
    EXPECT_EQ("old.x", Matches("None\\*", false));
    EXPECT_EQ("old.x", Matches("C:\\data\\*", true));
}

TEST_F(DataFileNames, WithClearTheOldNamesGo)
{
    OpenWithShot();
    names << "old.x";
    EXPECT_EQ("", Matches("none*", true));
}

TEST_F(DataFileNames, WithoutClearTheOldNamesAreTreatedAgain)
{
    OpenWithShot();
    Write(ShotIn(0, "A1") + "/W.wvf", "");
    names << "z.b.c"
          << "A";
    EXPECT_EQ("A W z.b", Matches("W*", false));
    EXPECT_EQ("A W W z", Matches("W*", false));
}

TEST_F(DataFileNames, WithoutClearTheOldNamesGainTheShotAgain)
{
    OpenWithShot();
    Write(ShotIn(2, "B1") + "/W.wvf", "");
    names << "A.5\\W";
    EXPECT_EQ("B1\\A B1\\W", Matches("B1\\*", false));
    EXPECT_EQ("B1\\B1\\A B1\\B1\\W B1\\W", Matches("B1\\*", false));
}

TEST_F(DataFileNames, PatternsAreExpanded)
{
    OpenWithShot();
    Write(ShotIn(0, "A1") + "/W7a.wvf", "");
    Write(ShotIn(1, "R7") + "/V.wvf", "");
    EXPECT_EQ("W7a", Matches("W[Run]*"));
    EXPECT_EQ("W7a", Matches("W![Run]*"));
    EXPECT_EQ("R7\\V", Matches("R[Run]\\*"));
    EXPECT_EQ("", Matches("W[None]*"));
}

TEST_F(DataFileNames, WithoutAShotThePatternIsRelativeToTheCurrentDirectory)
{
    OpenWithRuns();
    Write("here/W.wvf", "");
    system.GoTo("here");
    EXPECT_EQ("W", Matches("*"));
}

// Only a shot in front leads elsewhere: relative and network forms are no patterns.
TEST_F(DataFileNames, APatternWithAPathLooksForAShotOfThatName)
{
    OpenWithShot();
    Write("X/E/Shots/W.wvf", "");
    EXPECT_EQ("", Matches(".\\Shots\\*"));
    EXPECT_EQ("", Matches("\\\\nosuchserver\\share\\*"));
}

// ---- CleanDataFileName ----

TEST_F(DataFileNames, ShotOffsetsAreResolved)
{
    OpenWithRuns();
    Set("A008", 0);
    struct {
        char const *text;
        char const *clean;
    } const rows[] = {{">2\\W", "A010\\W"},
                      {">\\W", "A009\\W"},
                      {"<\\W", "A009\\W"}, // a bare "<" steps forward
                      {"<1\\W", "A007\\W"},
                      {"<2\\W", "A006\\W"},
                      {"<9\\W", "A-001\\W"},
                      {">0\\W", "A008\\W"},
                      {"<0\\W", "A008\\W"},
                      {">-1\\W", "A007\\W"},
                      {"<-2\\W", "A010\\W"},
                      {">+2\\W", "A010\\W"},
                      {"> 2\\W", "A010\\W"},
                      {">2x\\W", "A010\\W"},
                      {">2.9\\W", "A010\\W"},
                      {">1\\a\\W", "A009\\W"},
                      {">2\\", "A010\\"},
                      {">x\\W", "W"},
                      {">>1\\W", "W"},
                      {"<x2\\W", "W"},
                      {"> \\W", "W"},
                      {">\\", "A009\\"},
                      {"W", "W"},
                      {">2", ">2"},
                      {">", ">"},
                      {"A1\\W", "A1\\W"},
                      {"A>1\\W", "A>1\\W"},
                      {" >1\\W", " >1\\W"},
                      {"\\W", "\\W"},
                      {"\\>1\\W", "\\>1\\W"},
                      {"[Run]\\W", "[Run]\\W"},
                      {"", ""}};
    for (auto const &row : rows) EXPECT_EQ(row.clean, Clean(row.text)) << row.text;
}

TEST_F(DataFileNames, OffsetsOfAShotWithoutNumberKeepItsName)
{
    OpenWithRuns();
    Set("ABC", 0);
    EXPECT_EQ("ABC\\W", Clean(">1\\W"));
    EXPECT_EQ("ABC\\W", Clean("<5\\W"));
}

TEST_F(DataFileNames, OffsetsWithoutAShotHaveAnEmptyName)
{
    OpenWithRuns();
    EXPECT_EQ("\\W", Clean(">1\\W"));
}

TEST_F(DataFileNames, EnormousOffsetsAreDefined)
{
    OpenWithRuns();
    Set("A008", 0);
    for (char const *text : {">99999999999\\W", "<99999999999\\W", "<-99999999999\\W", ">2147483647\\W",
                             "<2147483648\\W", "<-2147483648\\W"})
        EXPECT_EQ("\\W", Clean(text).substr(Clean(text).size() - 2)) << text;
}

TEST_F(DataFileNames, OffsetsAreResolvedOnlyHere)
{
    OpenWithRuns();
    MakeShot(1, "A009");
    Set("A008", 1);
    EXPECT_EQ("", File(">1\\W"));
    EXPECT_EQ(path("X\\Data\\RunA\\ShotA009\\W"), Plain(expt.GetDataFileName(expt.CleanDataFileName(">1\\W"))));
}

} // namespace
