/// Sets of shots: a group, a selection in it, and the files that a shot must hold.
#include <filesystem>
#include <string>
#include <vector>

#include "support/ShotListTest.h"

namespace {

char const *const RunA = "..\\Data\\RunA";

class ShotSets : public ShotListTest {
protected:
    void Touch(int group, std::string const &shot, std::string const &file) const
    {
        Write(ShotIn(group, shot) + "/" + file, "x");
    }
    /// The shots A1, A2 and A3 in group 1, of which the first and the last hold W.wvf.
    void MakeWaves() const
    {
        MakeShots(1, {"A1", "A2", "A3"});
        Touch(1, "A1", "W.wvf");
        Touch(1, "A2", "V.wvf");
        Touch(1, "A3", "W.wvf");
    }
    std::string All(std::string const &file) { return Set(RunA, "*", file); }
};

// ---- Which group ----

TEST_F(ShotSets, AreThoseOfOneShotPath)
{
    MakeShots(0, {"A1"});
    MakeShots(1, {"A2", "B1"});
    MakeShots(2, {"A3"});
    struct {
        std::string group;
        char const *shots;
    } const rows[] = {{".\\Shots", "A1/0"},
                      {RunA, "A2/1 B1/1"},
                      {"..\\data\\RUNA", "A2/1 B1/1"},
                      {path("X\\Data\\RunB"), "A3/2"},
                      {path("x\\e\\shots"), "A1/0"},
                      {"..\\E\\Shots", "A1/0"},
                      {"../Data/RunA", ""},
                      {"..\\Data/RunA", "A2/1 B1/1"}};
    for (auto const &row : rows) EXPECT_EQ(row.shots, Set(row.group, "*")) << row.group;
}

TEST_F(ShotSets, OfAnythingElseAreEmpty)
{
    MakeShots(1, {"A1"});
    system.folder.MakeFolder("X/Data/Other/ShotA1");
    for (char const *group : {"..\\Data\\Other", "..\\Data\\RunA\\", "..\\Data\\Run*", "..\\Data\\RunA;", "RunA", "",
                              "1", "Shot list", "(Shot lists)", " (Shot list)"})
        for (char const *file : {"", "W"})
            for (char const *shots : {"*", "A1:A3", ""}) {
                EXPECT_EQ("", Set(group, shots, file)) << group;
                EXPECT_EQ("0 0 0", result.Counts());
            }
    EXPECT_FALSE(Has("X/E/ShotLists"));
}

TEST_F(ShotSets, MayDoWithoutDates)
{
    MakeWaves();
    for (char const *shots : {"*", "A1:A3"}) {
        result.Fill();
        expt.GetShotSet(RunA, shots, "W", result.names, result.gnums, nullptr);
        EXPECT_EQ("A1/1 A3/1", result.Shots());
        EXPECT_EQ("9", result.Dates());
    }
}

// ---- A list or a range ----

TEST_F(ShotSets, OfAListAreItsShots)
{
    MakeShots(0, {"A1"});
    MakeShots(1, {"A2"});
    WriteList("L.txt", "A2;..\\Data\\RunA\r\nA1\r\nGone");
    SetDate(ShotIn(0, "A1"), 1500000000);
    SetDate(ShotIn(1, "A2"), 1400000000);
    for (char const *group : {"(Shot list)", "(SHOT LIST)", "(shot list)"}) {
        EXPECT_EQ("A2/1 A1/0", Set(group, "L"));
        EXPECT_EQ("1400000000 1500000000", result.Dates());
    }
    EXPECT_EQ("", Set("(Shot list)", "Other"));
}

TEST_F(ShotSets, OfAnEmptySelectionOfAListAreEmptyThroughout)
{
    EXPECT_EQ("", Set("(Shot list)", ""));
    EXPECT_EQ("0 0 0", result.Counts());
    EXPECT_EQ("", Set("(Shot list)", "A:B"));
    EXPECT_EQ("0 0 0", result.Counts());
    EXPECT_EQ("", Set(RunA, "A:B"));
    EXPECT_EQ("0 0 0", result.Counts());
}

TEST_F(ShotSets, OfAListMayBeARangeWhoseGroupIsGuessed)
{
    MakeShots(1, {"A1", "A2"});
    MakeShots(2, {"A1", "A2", "A3"});
    EXPECT_EQ("A1/1 A2/1", Set("(Shot list)", "A1:A2"));
    EXPECT_EQ("A1/2 A2/2 A3/2", Set("(Shot list)", "A1:A3"));
    MakeShots(0, {"A2"});
    EXPECT_EQ("A1/1 A2/1", Set("(Shot list)", "A1:A2"));
    EXPECT_EQ("A1/1 A2/0", Set(".\\Shots", "A1:A2"));
}

TEST_F(ShotSets, OfARangeAreLookedForInTheirGroupFirst)
{
    MakeShots(1, {"A1", "A2", "A4"});
    MakeShots(2, {"A1", "A2", "A3"});
    EXPECT_EQ("A1/1 A2/1", Set(RunA, "A1:A2"));
    EXPECT_EQ("A1/2 A2/2", Set("..\\Data\\RunB", "A1:A2"));
    EXPECT_EQ("A1/2 A2/2 A3/2 A4/1", Set("..\\Data\\RunB", "A1:A4"));
    EXPECT_EQ("A1/1 A2/1", Set(".\\Shots", "A1:A2"));
}

TEST_F(ShotSets, OfARangeHaveTheDatesOfTheFolders)
{
    MakeShots(1, {"A1"});
    Touch(1, "A1", "Scalars.ini");
    SetDate(ShotIn(1, "A1") + "/Scalars.ini", 1300000000);
    SetDate(ShotIn(1, "A1"), 1500000000);
    EXPECT_EQ("A1/1", Set(RunA, "A1:A2"));
    EXPECT_EQ("1500000000", result.Dates());
}

// ---- A wildcard ----

TEST_F(ShotSets, OfAWildcardAreTheFoldersThatMatch)
{
    MakeShots(1, {"A1", "A2", "A10", "ab", "B1", ""});
    Write("X/Data/RunA/ShotA3", "a file");
    system.folder.MakeFolder("X/Data/RunA/A4");
    struct {
        char const *shots;
        char const *names;
    } const rows[] = {{"A*", "A1/1 A10/1 A2/1 ab/1"},
                      {"A?", "A1/1 A2/1 ab/1"},
                      {"a1*", "A1/1 A10/1"},
                      {"A1", "A1/1"},
                      {"a1", "A1/1"},
                      {"*1", "A1/1 B1/1"},
                      {"C*", ""},
                      {"C1", ""},
                      {"", "/1"},
                      {"*", "/1 A1/1 A10/1 A2/1 ab/1 B1/1"}};
    for (auto const &row : rows) EXPECT_EQ(row.names, Set(RunA, row.shots)) << row.shots;
}

TEST_F(ShotSets, OfAWildcardLieInOneGroupAlone)
{
    MakeShots(0, {"A1"});
    MakeShots(1, {"A2"});
    Set("A1", 0);
    EXPECT_EQ("A2/1", Set(RunA, "A*"));
    EXPECT_EQ("A1 | " + path("X\\E\\Shots\\ShotA1") + " | 0", State());
}

TEST_F(ShotSets, NamesLoseTheirFirstFourCharacters)
{
    for (char const *folder : {"SHOTA1", "shotb", "ShOt"})
        system.folder.MakeFolder(std::string("X/Data/RunA/") + folder);
    EXPECT_EQ("/1 A1/1 b/1", Set(RunA, "*"));
}

TEST_F(ShotSets, ComeInTheOrderOfThePlatform)
{
    MakeShots(1, {"b", "B10", "B9", "a", "_", "-1", "Z", "A1"});
    DStringArray folders;
    GetFolders(expt.GetShotGroupPath(1) + "\\Shot*", folders, true);
    Set(RunA, "*");
    ASSERT_EQ(8, folders.Count());
    ASSERT_EQ(8, result.names.Count());
    for (int i = 0; i < 8; ++i) EXPECT_EQ(Plain(folders[i]), "Shot" + Plain(result.names[i]));
}

TEST_F(ShotSets, OfAWildcardHaveTheDatesOfTheirScalars)
{
    MakeShots(1, {"A1", "A2", "A3"});
    for (char const *shot : {"A1", "A3"}) Touch(1, shot, "Scalars.ini");
    SetDate(ShotIn(1, "A1") + "/Scalars.ini", 1300000000);
    SetDate(ShotIn(1, "A3") + "/Scalars.ini", 1200000000);
    for (char const *shot : {"A1", "A2", "A3"}) SetDate(ShotIn(1, shot), 1600000000);
    EXPECT_EQ("A1/1 A2/1 A3/1", Set(RunA, "*"));
    EXPECT_EQ("1300000000 0 1200000000", result.Dates());
}

#if !defined _WIN32 // where no two folders differ in case alone
TEST_F(ShotSets, OfFoldersThatDifferInCaseHaveTheDateAndTheFilesOfEach)
{
    MakeShots(1, {"A1"});
    std::string const other = "X/Data/RunA/SHOTA1";
    system.folder.Write(other + "/Scalars.ini");
    Touch(1, "A1", "Scalars.ini");
    Touch(1, "A1", "W.wvf");
    SetDate(other + "/Scalars.ini", 1200000000);
    SetDate(ShotIn(1, "A1") + "/Scalars.ini", 1300000000);
    EXPECT_EQ("A1/1 A1/1", Set(RunA, "*"));
    EXPECT_EQ("1200000000 1300000000", result.Dates());
    EXPECT_EQ("A1/1", Set(RunA, "*", "W"));
    EXPECT_EQ("1300000000", result.Dates());
}
#endif

TEST_F(ShotSets, ReadAndMakeNoFiles)
{
    MakeWaves();
    All("W");
    EXPECT_EQ("W.wvf", system.Names(ShotIn(1, "A1")));
    EXPECT_EQ("ShotA1 ShotA2 ShotA3", system.Names("X/Data/RunA"));
    EXPECT_FALSE(Has("X/E/ShotLists"));
}

TEST_F(ShotSets, TellTheLogNothingAboutAWildcard)
{
    MakeWaves();
    Logging = true;
    All("W");
    EXPECT_EQ("(missing)", system.Log());
    Set(RunA, "A1:A3");
    EXPECT_EQ(LogLine("Got names of shots in range") + LogLine("Got shot list and checked for existance"),
              system.Log());
}

// ---- The files ----

TEST_F(ShotSets, OfAFileAreTheShotsThatHoldIt)
{
    MakeWaves();
    EXPECT_EQ("A1/1 A3/1", All("W"));
    EXPECT_EQ("A2/1", All("V"));
    EXPECT_EQ("", All("U"));
    EXPECT_EQ("0 0 0", result.Counts());
}

TEST_F(ShotSets, AFileWithoutADotIsAWaveform)
{
    MakeShots(1, {"A1", "A2", "A3"});
    for (char const *file : {"W.wvf", "W.dmt", "X", "dot.d.wvf"}) Touch(1, "A1", file);
    for (char const *file : {"W.dmt", "Y.wvf"}) Touch(1, "A2", file);
    struct {
        char const *file;
        char const *shots;
    } const rows[] = {
        {"W", "A1/1"},
        {"w", "A1/1"},
        {"W.wvf", "A1/1"},
        {"W.WVF", "A1/1"},
        {"W.dmt", "A1/1 A2/1"},
        {"X", ""},
        {"Y", "A2/1"},
        {"W.", ""},
        {"dot.d", ""},
        {"dot.d.wvf", "A1/1"},
#if !defined _WIN32 // where a dot at the end of a name doesn't count
        {"X.", ""},
#endif
    };
    for (auto const &row : rows) EXPECT_EQ(row.shots, All(row.file)) << row.file;
}

TEST_F(ShotSets, NoFileAndTheBareStarAskForNone)
{
    MakeShots(1, {"A1", "A2", "A3"});
    Touch(1, "A1", "W.wvf");
    Touch(1, "A2", "W.dmt");
    EXPECT_EQ("A1/1 A2/1 A3/1", All(""));
    EXPECT_EQ("A1/1 A2/1 A3/1", All("*"));
    EXPECT_EQ("A1/1", All("**"));
    EXPECT_EQ("A1/1 A2/1", All("*.*"));
}

TEST_F(ShotSets, AFileMayHoldWildcards)
{
    MakeShots(1, {"A1", "A2", "A3", "A4"});
    Touch(1, "A1", "W1.wvf");
    Touch(1, "A2", "W22.wvf");
    Touch(1, "A3", "W1.dmt");
    struct {
        char const *file;
        char const *shots;
    } const rows[] = {{"W*", "A1/1 A2/1"},   {"W?", "A1/1"},          {"*2", "A2/1"}, {"*.dmt", "A3/1"},
                      {"W1.*", "A1/1 A3/1"}, {"W?.???", "A1/1 A3/1"}, {"?", ""},      {"W*.wvf", "A1/1 A2/1"}};
    for (auto const &row : rows) EXPECT_EQ(row.shots, All(row.file)) << row.file;
}

TEST_F(ShotSets, AFolderIsNoFile)
{
    MakeShots(1, {"A1", "A2"});
    system.folder.MakeFolder(ShotIn(1, "A1") + "/W.wvf");
    system.folder.MakeFolder(ShotIn(1, "A2") + "/W1.wvf");
    Touch(1, "A2", "W2.wvf");
    EXPECT_EQ("", All("W"));
    EXPECT_EQ("A2/1", All("W*")); // of two matches the second is looked at too
}

TEST_F(ShotSets, AFileMayLieInAFolderOfTheShot)
{
    MakeShots(1, {"A1", "A2"});
    Touch(1, "A2", "sub/W.wvf");
    EXPECT_EQ("A2/1", All("sub\\W"));
    EXPECT_EQ("", All("..\\ShotA2\\sub\\W")); // it holds a dot, so that it is looked for as it is
    EXPECT_EQ("A1/1 A2/1", All("..\\ShotA2\\sub\\W.wvf"));
}

TEST_F(ShotSets, TheFilesOfAListAreLookedForInTheGroupOfEachShot)
{
    MakeShots(0, {"A1", "A2"});
    MakeShots(1, {"A1", "A3"});
    Touch(0, "A1", "W.wvf");
    Touch(1, "A3", "W.wvf");
    WriteList("L.txt", "A1;..\\Data\\RunA\nA1\nA2\nA3;..\\Data\\RunA\nA1");
    SetDate(ShotIn(0, "A1"), 1500000000);
    SetDate(ShotIn(1, "A3"), 1400000000);
    EXPECT_EQ("A1/0 A3/1 A1/0", Set("(Shot list)", "L", "W"));
    EXPECT_EQ("1500000000 1400000000 1500000000", result.Dates());
}

TEST_F(ShotSets, TheFilesOfARangeAreLookedForInTheGroupOfEachShot)
{
    MakeShots(0, {"A1", "A2", "A4"});
    MakeShots(2, {"A3", "A5"});
    for (char const *shot : {"A2", "A4"}) Touch(0, shot, "W.wvf");
    Touch(2, "A3", "W.wvf");
    EXPECT_EQ("A2/0 A3/2 A4/0", Set(".\\Shots", "A1:A2000000000", "W"));
}

TEST_F(ShotSets, DatesStayWithTheirShots)
{
    MakeWaves();
    for (int i = 1; i <= 3; ++i) {
        std::string const scalars = ShotIn(1, "A" + std::to_string(i)) + "/Scalars.ini";
        Write(scalars, "x");
        SetDate(scalars, 1000000000 + i);
    }
    EXPECT_EQ("A1/1 A3/1", All("W"));
    EXPECT_EQ("1000000001 1000000003", result.Dates());
    EXPECT_EQ("A2/1", All("V"));
    EXPECT_EQ("1000000002", result.Dates());
}

TEST_F(ShotSets, WithoutAnExperimentAreEmpty)
{
    Experiment fresh;
    for (char const *group : {"", "(Shot list)", ".\\Shots", "Shots"}) {
        result.Fill();
        fresh.GetShotSet(group, "A1:A3", "W", result.names, result.gnums, &result.dates);
        EXPECT_EQ("0 0 0", result.Counts()) << group;
    }
}

} // namespace
