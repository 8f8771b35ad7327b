/// Lists of shots that stand in a file: which lines are shots, and in which group.
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "support/ShotListTest.h"
#include "support/Stopwatch.h"

namespace {

class ShotLists : public ShotListTest {
protected:
    /// A7 in the groups 0 and 1, B1 in group 2 alone.
    void MakeSomeShots()
    {
        MakeShot(0, "A7");
        MakeShot(1, "A7");
        MakeShot(2, "B1");
    }
};

TEST_F(ShotLists, AnEmptySelectionEmptiesTheNamesAlone)
{
    Logging = true;
    EXPECT_EQ("0 2 1", Counts(""));
    EXPECT_EQ("7 8", std::to_string(result.gnums[0]) + " " + std::to_string(result.gnums[1]));
    EXPECT_EQ("9", result.Dates());
    EXPECT_FALSE(Has("X/E/ShotLists"));
    EXPECT_EQ("(missing)", system.Log());
}

TEST_F(ShotLists, GiveTheirShotsInTheirOrder)
{
    MakeSomeShots();
    WriteList("L.txt", "B1;..\\Data\\RunB\r\nA7;.\\Shots\r\nA7;..\\Data\\RunA");
    EXPECT_EQ("B1/2 A7/0 A7/1", Shots("L"));
}

TEST_F(ShotLists, AreFoundWithAndWithoutTheirExtension)
{
    MakeSomeShots();
    WriteList("L.txt", "A7");
    WriteList("Bare", "A7");
    WriteList("M.dat", "A7");
    WriteList("M.dat.txt", "A7;..\\Data\\RunA");
    WriteList("T.txt.txt", "A7");
    WriteList("sub/S.txt", "A7");
    struct {
        char const *spec;
        char const *shots;
    } const rows[] = {{"L", "A7/0"},     {"l", "A7/0"},      {"L.txt", "A7/0"},      {"L.TXT", "A7/0"},
                      {"L.Txt", "A7/0"}, {"L.tx", ""},       {"L.txt.txt", ""},      {"Bare", ""},
                      {"M", ""},         {"M.dat", "A7/1"},  {"T.txt", ""},          {"T.txt.txt", "A7/0"},
                      {"S", ""},         {"sub\\S", "A7/0"}, {"sub\\s.txt", "A7/0"}, {"..\\ShotLists\\L", "A7/0"}};
    for (auto const &row : rows) EXPECT_EQ(row.shots, Shots(row.spec)) << row.spec;
}

TEST_F(ShotLists, AMissingListIsEmptyAndItsFolderMade)
{
    EXPECT_EQ("0 0 0", Counts("L"));
    EXPECT_EQ("Macros Query ShotLists Shots", system.Names("X/E").substr(6));
    EXPECT_EQ("", system.Names("X/E/ShotLists"));
    WriteList("L.txt", "");
    EXPECT_EQ("0 0 0", Counts("L"));
}

TEST_F(ShotLists, ALineIsANameAndAPath)
{
    MakeSomeShots();
    struct {
        std::string line;
        char const *shots;
    } const rows[] = {
        {"A7", "A7/0"},
        {"A7;.\\Shots", "A7/0"},
        {"A7;..\\Data\\RunA", "A7/1"},
        {"a7;..\\DATA\\runa", "a7/1"},
        {"A7;" + path("X\\Data\\RunA"), "A7/1"},
        {"A7;" + path("X\\E\\Shots"), "A7/0"},
        {"A7;../Data/RunA", ""},
        {"A7;..\\Data/RunA", "A7/1"}, // slashes behind the dots are translated
        {"A7;", ""},
        {"A7;;..\\Data\\RunA", ""},
        {"A7;..\\Data\\RunA;", ""},
        {"A7; ..\\Data\\RunA", ""},
        {"A7;..\\Data\\RunA ", ""},
        {"A7;..\\Data\\RunA\\", ""},
        {"A7;..\\Data\\RunC", ""},
        {"A7;..\\Data\\Run*", ""},
        {"A7;..\\Data", ""},
        {"A7;RunA", ""},
        {"A7;1", ""},
#if !defined _WIN32 // where a blank at the end of a name doesn't count
        {"A7 ;..\\Data\\RunA", ""},
#endif
        {" A7", ""},
        {"Gone", ""},
        {"Gone;..\\Data\\RunA", ""},
        {";.\\Shots", ""}
    };
    for (auto const &row : rows) EXPECT_EQ(row.shots, Line(row.line)) << row.line;
}

TEST_F(ShotLists, ALineLosesOneQuoteAtEachEnd)
{
    MakeSomeShots();
#if !defined _WIN32 // where no name holds a quote
    MakeShot(0, "Q\"");
#endif
    struct {
        char const *line;
        char const *shots;
    } const rows[] = {
        {"\"A7\"", "A7/0"},
        {"\"A7;..\\Data\\RunA\"", "A7/1"},
        {"\"A7;..\\Data\\RunA", "A7/1"},
        {"A7;..\\Data\\RunA\"", "A7/1"},
        {"\"\"A7\"\"", ""},
        {"A7;\"..\\Data\\RunA\"", ""},
        {"\"A7\";.\\Shots", ""},
#if !defined _WIN32
        {"\"Q\";.\\Shots", "Q\"/0"}, // only the ends of the whole line count
        {"Q\"\"", "Q\"/0"},
#endif
        {"'A7'", ""},
        {" \"A7\"", ""}
    };
    for (auto const &row : rows) EXPECT_EQ(row.shots, Line(row.line)) << row.line;
}

TEST_F(ShotLists, AnEmptyLineIsTheShotOfAnEmptyName)
{
    char const *const lines[] = {"\r\n\r\n", "\"", "\"\"", ";.\\Shots", "\n"};
    for (char const *line : lines) EXPECT_EQ("", Line(line)) << line;
    MakeShot(0, "");
    char const *const shots[] = {"/0 /0", "/0", "/0", "/0", "/0"};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(shots[i], Line(lines[i])) << lines[i];
}

TEST_F(ShotLists, LinesEndInEitherWay)
{
    MakeShots(0, {"A1", "A2", "A3"});
    EXPECT_EQ("A1/0 A2/0 A3/0", Line("A1\nA2\nA3"));
    EXPECT_EQ("A1/0 A2/0 A3/0", Line("A1\r\nA2\nA3\r\n"));
    EXPECT_EQ("A2/0 A3/0", Line("A1\r\r\nA2\nA1\rA2\nA3\n")); // one return goes, and only before the feed
}

TEST_F(ShotLists, AShotMustLieInTheGroupOfItsLine)
{
    MakeSomeShots();
    Write("X/E/Shots/ShotFile", "no folder");
    EXPECT_EQ("", Line("B1"));
    EXPECT_EQ("", Line("B1;..\\Data\\RunA"));
    EXPECT_EQ("", Line("File"));
    EXPECT_EQ("B1/2", Line("B1;..\\Data\\RunB"));
}

TEST_F(ShotLists, ALineThatGoesLeavesTheOthersTheirGroups)
{
    MakeSomeShots();
    EXPECT_EQ("A7/1 B1/2 A7/0",
              Line("x;..\\Data\\RunB\nA7;..\\Data\\RunA\nA7;nowhere\nGone\nB1;..\\Data\\RunB\nA7\nx"));
}

TEST_F(ShotLists, AShotMayStandInAListSeveralTimes)
{
    MakeSomeShots();
    EXPECT_EQ("A7/0 a7/0 A7/0 A7/1", Line("A7\na7\nA7;.\\Shots\nA7;..\\Data\\RunA"));
}

TEST_F(ShotLists, TheGroupThatIsGivenIsNotUsed)
{
    MakeSomeShots();
    for (int const gnum : {-2147483647 - 1, -2, -1, 0, 1, 2, 3, 2147483647})
        EXPECT_EQ("A7/0", Line("A7\nB1", gnum)) << gnum;
}

TEST_F(ShotLists, TheCurrentShotDoesNotMatter)
{
    MakeSomeShots();
    Set("B1", 2);
    EXPECT_EQ("A7/0", Line("A7\nB1"));
    EXPECT_EQ("B1 | " + path("X\\Data\\RunB\\ShotB1") + " | 2", State());
}

TEST_F(ShotLists, AGroupElsewhereGoesByItsWholePath)
{
    Ini("[Groups]\r\n" + path("Far\\Run") + "\r\n");
    system.folder.MakeFolder("Far/Run/ShotA1");
    Open();
    EXPECT_EQ("A1/1", Line("A1;" + path("far\\RUN")));
    EXPECT_EQ("", Line("A1;..\\..\\Far\\Run"));
}

TEST_F(ShotLists, AGroupMayBeNamedByItsShare)
{
    MakeSomeShots();
    ComputerName = "PC";
    Platform::SetShares({{"Runs", std::string("Path=") + path("X\\Data") + std::string(1, '\0')}});
    EXPECT_EQ("A7/1", Line("A7;\\\\PC\\Runs\\RunA"));
    EXPECT_EQ("A7/1", Line("A7;\\\\pc\\runs\\runa"));
    EXPECT_EQ("", Line("A7;\\\\Other\\Runs\\RunA"));
    ComputerName = DString();
}

TEST_F(ShotLists, DatesAreThoseOfTheFolders)
{
    MakeSomeShots();
    Write(ShotIn(0, "A7") + "/Scalars.ini", "[Fields]\r\n");
    SetDate(ShotIn(0, "A7"), 1700000000);
    SetDate(ShotIn(1, "A7"), 1600000001);
    WriteList("L.txt", "A7;..\\Data\\RunA\nGone\nA7");
    EXPECT_EQ("2 2 2", Counts("L"));
    EXPECT_EQ("1600000001 1700000000", result.Dates());
}

TEST_F(ShotLists, TellTheLogWhenTheyWereChecked)
{
    MakeSomeShots();
    Line("A7");
    EXPECT_EQ("(missing)", system.Log());
    Logging = true;
    Line("A7");
    Shots("Gone");
    std::string const line = LogLine("Got shot list and checked for existance");
    EXPECT_EQ(line + line, system.Log());
}

TEST_F(ShotLists, AWildcardStandsForAnyShot)
{
    MakeShots(1, {"A7", "A8"});
    EXPECT_EQ("A?/1", Line("A?;..\\Data\\RunA\nB?;..\\Data\\RunA"));
}

TEST_F(ShotLists, WithoutAnExperimentThereAreNone)
{
    system.folder.MakeFolder("here");
    system.GoTo("here");
    Experiment fresh;
    result.Fill();
    fresh.GetShotList("L", -1, result.names, result.gnums, &result.dates);
    EXPECT_EQ("0 0 0", result.Counts());
    EXPECT_EQ("", system.Names("here"));
}

// ---- Any bytes ----

TEST_F(ShotLists, OddBytesHarmNoOtherLine)
{
    MakeShots(0, {"A1", "A2", "\xFF\xFE"});
    std::string const longLine(1 << 20, 'x');
    EXPECT_EQ("A1/0 \xFF\xFE/0 A2/0", Line("A1\n\xFF\xFE\n\x01\x02\t\n\xC8\xC9;\xFF\nA2"));
    EXPECT_EQ("A1/0 A2/0", Line("A1\n" + longLine + "\n" + longLine + ";.\\Shots\nA1;" + longLine + "\nA2"));
}

TEST_F(ShotLists, ShotsBeforeANulAreThere)
{
    MakeShots(0, {"A1", "A2"});
    std::string const shots = Line("A1\r\nA2\r\n" + std::string("x\0y\r\nA1\0\r\n", 11));
    EXPECT_EQ("A1/0 A2/0", shots);
    EXPECT_EQ("", Line(std::string(100000, '\0')));
}

TEST_F(ShotLists, ThirtyThousandLinesAreReadAtOnce)
{
    MakeShot(0, "A1");
    std::string lines;
    for (int i = 0; i < 30000; ++i) lines += i % 3000 == 0 ? "A1\n" : "no;path\n";
    std::string shots;
    EXPECT_GT(farTooLong, secondsOf([&] { shots = Line(lines); }));
    EXPECT_EQ(49u, shots.size()); // ten times "A1/0"
}

TEST_F(ShotLists, RandomBytesGiveOnlyShotsThatAreThere)
{
    MakeShots(0, {"A1", "A2", "\xFF"});
    MakeShots(1, {"A1"});
    char const *const pieces[] = {"A1",       "A2", "\xFF", ";", "\"", "\r", "\n", "..\\Data\\RunA",
                                  ".\\Shots", "\\", "\0",   "*"};
    std::mt19937 random(20240610);
    for (int run = 0; run < 300; ++run) {
        std::string bytes;
        for (auto i = random() % 60; i > 0; --i) {
            char const *const piece = pieces[random() % 12];
            bytes += *piece ? std::string(piece) : std::string(1, '\0');
        }
        Line(bytes);
        for (int i = 0; i < result.names.Count(); ++i) {
            ASSERT_TRUE(result.gnums[i] == 0 || result.gnums[i] == 1) << run;
            DString folder = expt.GetShotGroupPath(result.gnums[i]) + "\\Shot" + result.names[i];
            EXPECT_TRUE(FolderExists(folder)) << run << " " << bytes;
        }
    }
}

} // namespace
