#include <climits>
#include <type_traits>
#include <utility>

#include "support/ExperimentTest.h"

namespace {

class ExperimentFolder : public ExperimentTest {
protected:
    /// All shot paths, in their order, as lines.
    std::string ShotPaths() const
    {
        std::string all;
        for (int i = 0; ~expt.GetShotGroupPath(i); i++) all += Plain(expt.GetShotGroupPath(i)) + "\n";
        return all;
    }

    /// All group names as "Path|Name" lines.
    std::string GroupNames() const
    {
        std::string all;
        DArray<GroupName, 1> const &names = expt.GetGroupNames();
        for (int i = 0; i < names.Count(); i++) all += Plain(names[i].Path) + "|" + Plain(names[i].Name) + "\n";
        return all;
    }

    std::string Full(std::string const &text) const { return Plain(expt.FullPath(Dstr(text))); }
    std::string Relative(std::string const &text) const { return Plain(expt.RelativePath(Dstr(text))); }
    int Number(std::string const &text) const { return expt.GetShotGroupNumber(Dstr(text)); }

    /// Makes the computer share a folder of the fresh folder.
    void ShareFolder(std::string const &share, std::string const &folder) const
    {
        std::string const local = folder.empty() ? system.folder.path() : path(folder);
        std::string value = "CSCFlags=0";
        value += '\0';
        value += "Path=" + local;
        value += '\0';
        value += "Permissions=0";
        value += '\0';
        Platform::SetShares({{share, value}});
    }
    static std::string Computer() { return Plain(GetComputerNameD()); }
};

// ---- Opening ----

TEST_F(ExperimentFolder, OpeningTakesThePathApart)
{
    EXPECT_TRUE(Open());
    EXPECT_EQ(path("X\\E"), Plain(expt.GetExperimentFolder()));
    EXPECT_EQ(path("X"), Plain(expt.GetExperimentPath()));
    EXPECT_EQ("E", Plain(expt.GetExperimentName()));
    EXPECT_EQ(path("X\\E"), Plain(expt.GetExperimentUNCFolder()));
}

TEST_F(ExperimentFolder, OpeningLeavesNoCurrentShotAndGroup0)
{
    Open();
    EXPECT_EQ(" |  | 0", State());
    EXPECT_EQ(path("X\\E\\Shots"), Plain(expt.GetCurPath()));
}

TEST_F(ExperimentFolder, AFreshExperimentHasNothing)
{
    EXPECT_EQ(" |  | 0", State());
    EXPECT_EQ("", Plain(expt.GetExperimentFolder()));
    EXPECT_EQ("", Plain(expt.GetExperimentName()));
    EXPECT_EQ("", Plain(expt.GetExperimentPath()));
    EXPECT_EQ("", Plain(expt.GetExperimentUNCFolder()));
    EXPECT_EQ(0, expt.GetGroupNames().Count());
    EXPECT_EQ("", Plain(expt.GetShotGroupPath(0)));
}

TEST_F(ExperimentFolder, OpeningMakesShotsQueryAndMacrosAndAnEmptyIni)
{
    Open();
    EXPECT_EQ("E.ini Macros Query Shots", system.Names("X/E"));
    EXPECT_EQ("", Read("X/E/E.ini"));
    EXPECT_EQ("", system.Names("X/E/Shots") + system.Names("X/E/Query") + system.Names("X/E/Macros"));
}

TEST_F(ExperimentFolder, OpeningMakesTheWholeChainOfFolders)
{
    EXPECT_TRUE(Open("New\\Deep\\E"));
    EXPECT_EQ("E.ini Macros Query Shots", system.Names("New/Deep/E"));
}

TEST_F(ExperimentFolder, OpeningWritesNothingIntoAnExistingIni)
{
    std::string const ini = "lost?\n\n[Groups]\n ;x\n[ShotCreation]\nB=1\n\n";
    Ini(ini);
    Open();
    EXPECT_EQ(ini, Read("X/E/E.ini"));
}

TEST_F(ExperimentFolder, OpeningAgainWithAnEmptyIniCostsTheTenRetries)
{
    Open();
    system.Sleeps();
    Open();
    EXPECT_EQ(std::vector<int>(10, 50), system.Sleeps());
}

TEST_F(ExperimentFolder, OpeningIsTrueWhateverTheFolder)
{
    Write("file", "kept");
    Write("Held/E", "kept");
    std::string const folders[] = {"",
                                   path("file"),
                                   path("file\\E"),
                                   path("Held\\E"),
                                   path("Wild*\\E?"),
                                   path("Trailing\\"),
                                   "Q:\\no\\drive",
                                   "\\\\nosuchserver\\share\\E",
                                   "\\\\",
                                   "\\",
                                   path(std::string("nul\0nul", 7)),
                                   path("\xC9\xFF\x80"),
                                   path("a/b"),
                                   path(std::string(5000, 'x'))};
    for (std::string const &folder : folders) EXPECT_TRUE(expt.SetExperimentFolder(Dstr(folder))) << folder;
    EXPECT_EQ("kept", Read("file"));
    EXPECT_EQ("kept", Read("Held/E"));
}

TEST_F(ExperimentFolder, AFileInPlaceOfTheFolderStaysAndGivesOneGroup)
{
    Write("X/E", "kept");
    EXPECT_TRUE(Open());
    EXPECT_EQ("kept", Read("X/E"));
    EXPECT_EQ(path("X\\E\\Shots") + "\n", ShotPaths());
    EXPECT_EQ("", GroupNames());
}

TEST_F(ExperimentFolder, AFolderInPlaceOfTheIniReadsAsEmpty)
{
    system.folder.MakeFolder("X/E/E.ini");
    EXPECT_TRUE(Open());
    EXPECT_EQ(path("X\\E\\Shots") + "\n", ShotPaths());
    EXPECT_EQ(0, Create("B1"));
}

TEST_F(ExperimentFolder, AnUnknownNetworkNameMakesNoFolder)
{
    system.GoTo("");
    EXPECT_TRUE(expt.SetExperimentFolder("\\\\nosuchserver\\share\\E"));
    EXPECT_EQ("\\\\nosuchserver\\share\\E", Plain(expt.GetExperimentUNCFolder()));
    EXPECT_EQ("user", system.Names(""));
}

TEST_F(ExperimentFolder, ExistingFoldersAreFoundWhateverTheirCase)
{
    system.folder.MakeFolder("X/E/SHOTS");
    system.folder.MakeFolder("X/E/query");
    Open();
    EXPECT_EQ("E.ini Macros SHOTS query", system.Names("X/E"));
    EXPECT_EQ(path("X\\E\\Shots") + "\n", ShotPaths());
}

// ---- An empty folder closes ----

TEST_F(ExperimentFolder, AnEmptyFolderClosesTheExperiment)
{
    OpenWithRuns();
    Set("A1", 2);
    EXPECT_TRUE(expt.SetExperimentFolder(""));
    EXPECT_EQ(" |  | -1", State());
    EXPECT_EQ("", Plain(expt.GetExperimentFolder()));
    EXPECT_EQ("", Plain(expt.GetExperimentPath()));
    EXPECT_EQ("", Plain(expt.GetExperimentName()));
}

TEST_F(ExperimentFolder, AfterClosingEverySetShotFails)
{
    OpenWithRuns();
    MakeShot(0, "A1");
    expt.SetExperimentFolder("");
    for (int gnum : {-1, 0, 1, 2, 3}) EXPECT_FALSE(Set("A1", gnum)) << gnum;
    EXPECT_EQ(" |  | -1", State());
}

TEST_F(ExperimentFolder, ClosingKeepsGroupsAndNetworkName)
{
    OpenWithRuns();
    expt.SetExperimentFolder("");
    EXPECT_EQ(path("X\\E"), Plain(expt.GetExperimentUNCFolder()));
    EXPECT_EQ(path("X\\E\\Shots") + "\n" + path("X\\Data\\RunA") + "\n" + path("X\\Data\\RunB") + "\n", ShotPaths());
    EXPECT_EQ("..\\Data\\Run*|Runs\n", GroupNames());
}

// ---- Forms of the folder ----

TEST_F(ExperimentFolder, ATrailingBackslashSetsThePathsAndNothingElse)
{
    OpenWithRuns();
    Set("A1", 2);
    std::string const state = State();
    std::string const groups = ShotPaths() + GroupNames();
    EXPECT_TRUE(expt.SetExperimentFolder(Dstr(path("Data\\Run1\\"))));
    EXPECT_EQ(path("Data\\Run1\\"), Plain(expt.GetExperimentFolder()));
    EXPECT_EQ(path("Data\\Run1"), Plain(expt.GetExperimentPath()));
    EXPECT_EQ("", Plain(expt.GetExperimentName()));
    EXPECT_EQ(path("Data\\Run1\\"), Plain(expt.GetExperimentUNCFolder()));
    EXPECT_EQ(state, State());
    EXPECT_EQ(groups, ShotPaths() + GroupNames());
    EXPECT_FALSE(Has("Data"));
}

TEST_F(ExperimentFolder, AFolderWithoutBackslashHasNoPath)
{
    system.folder.MakeFolder("E");
    system.GoTo("");
    EXPECT_TRUE(expt.SetExperimentFolder("E"));
    EXPECT_EQ("", Plain(expt.GetExperimentPath()));
    EXPECT_EQ("E", Plain(expt.GetExperimentName()));
    EXPECT_EQ("E\\Shots\n", ShotPaths());
    EXPECT_EQ("E.ini Macros Query Shots", system.Names("E"));
}

// The folders are made from the second element on, so that a missing relative experiment stays missing.
TEST_F(ExperimentFolder, AMissingFolderWithoutBackslashIsNotMade)
{
    system.folder.MakeFolder("here");
    system.GoTo("here");
    EXPECT_TRUE(expt.SetExperimentFolder("E"));
    EXPECT_EQ("", system.Names("here"));
    EXPECT_EQ("E", Plain(expt.GetExperimentName()));
}

TEST_F(ExperimentFolder, TheFolderIsKeptExactlyAsGiven)
{
    system.folder.MakeFolder("X/E");
    expt.SetExperimentFolder(Dstr(path("x\\\\e")));
    EXPECT_EQ(path("x\\\\e"), Plain(expt.GetExperimentFolder()));
    EXPECT_EQ(path("x\\"), Plain(expt.GetExperimentPath()));
    EXPECT_EQ("e", Plain(expt.GetExperimentName()));
}

TEST_F(ExperimentFolder, ASharedFolderHasANetworkName)
{
    ShareFolder("data", "X");
    Open();
    EXPECT_EQ("\\\\" + Computer() + "\\data\\E", Plain(expt.GetExperimentUNCFolder()));
    EXPECT_EQ(path("X\\E"), Plain(expt.GetExperimentFolder()));
}

#if !defined _WIN32 // there drives and network names lead where the system says

TEST_F(ExperimentFolder, AMappedDriveHasANetworkName)
{
    system.folder.MakeFolder("Mapped");
    Platform::SetDrive('Q', system.folder.native("Mapped"), "\\\\srv\\data");
    EXPECT_TRUE(expt.SetExperimentFolder("Q:\\E"));
    Platform::SetDrive('Q', "");
    EXPECT_EQ("\\\\srv\\data\\E", Plain(expt.GetExperimentUNCFolder()));
    EXPECT_EQ("Q:", Plain(expt.GetExperimentPath()));
    EXPECT_EQ("E.ini Macros Query Shots", system.Names("Mapped/E"));
}

TEST_F(ExperimentFolder, AnExperimentOnANetworkShareIsMadeThere)
{
    system.folder.MakeFolder("Far");
    Platform::SetNetworkShare("srv", "data", system.folder.native("Far"));
    EXPECT_TRUE(expt.SetExperimentFolder("\\\\SRV\\data\\E"));
    Platform::SetNetworkShare("srv", "data", "");
    EXPECT_EQ("\\\\SRV\\data\\E", Plain(expt.GetExperimentUNCFolder()));
    EXPECT_EQ("\\\\SRV\\data", Plain(expt.GetExperimentPath()));
    EXPECT_EQ("E.ini Macros Query Shots", system.Names("Far/E"));
}

#endif

// ---- Groups ----

TEST_F(ExperimentFolder, AnIniWithoutSectionsGivesOneShotPathAndOneCue)
{
    Ini("no section\r\n");
    Open();
    EXPECT_EQ(path("X\\E\\Shots") + "\n", ShotPaths());
    EXPECT_EQ("", GroupNames());
    EXPECT_EQ(0, Create("A1"));
    EXPECT_EQ(0, Create("7"));
}

TEST_F(ExperimentFolder, EachFolderThatMatchesAGroupIsAShotPath)
{
    for (char const *folder : {"Data/Run2", "Data/run10", "Data/RUN1"}) system.folder.MakeFolder(folder);
    Write("Data/RunFile", "");
    system.folder.MakeFolder("Data/.Run3");
    system.folder.MakeFolder("Data/Other");
    Write("E/E.ini", "[Groups]\r\n..\\Data\\Run*;x;Runs=1");
    Open("E");
    EXPECT_EQ(path("E\\Shots") + "\n" + path("Data\\RUN1") + "\n" + path("Data\\run10") + "\n" + path("Data\\Run2") +
                  "\n",
              ShotPaths());
    EXPECT_EQ("..\\Data\\Run*|Runs\n", GroupNames());
}

TEST_F(ExperimentFolder, AGroupLineIsCutAtTheEqualsSignAndAtSemicolons)
{
    struct {
        char const *line;
        char const *group;
    } const rows[] = {{"..\\Data\\Run*;x;Runs=1", "..\\Data\\Run*|Runs\n"},
                      {"P;x;N=1", "P|N\n"},
                      {"P=1", "P|\n"},
                      {"P", "P|\n"},
                      {"P;x;N", "P|N\n"},
                      {"P;x=1", "P|\n"},
                      {"P;x", "P|\n"},
                      {"P;=1", "P|\n"},
                      {"P;x;=1", "P|\n"},
                      {"P;x;N;more=1", "P|N\n"},
                      {"P;;N=1", "P|N\n"},
                      {";x;N=1", "|N\n"},
                      {"=1", "|\n"},
                      {";", "|\n"},
                      {"P;x;N=1=2", "P|N\n"},
                      {"P=1;x;N", "P|\n"},
                      {" P ; x ; N =1", " P | N \n"},
                      {"P\xE9;x;\xFF=1", "P\xE9|\xFF\n"}};
    for (auto const &row : rows) {
        Ini(std::string("[Groups]\r\n") + row.line + "\r\n");
        Open();
        EXPECT_EQ(row.group, GroupNames()) << row.line;
    }
}

TEST_F(ExperimentFolder, AGroupPathTakesEveryForm)
{
    system.folder.MakeFolder("X/Data/Run1");
    system.folder.MakeFolder("X/E/Own");
    struct {
        std::string line;
        std::string shotPath;
    } const rows[] = {{"..\\Data\\Run1", path("X\\Data\\Run1\n")},
                      {"..\\Data/Run1", path("X\\Data\\Run1\n")},
                      {"..\\DATA\\RUN1", path("X\\DATA\\Run1\n")},
                      {".\\Own", path("X\\E\\Own\n")},
                      {".\\O?n", path("X\\E\\Own\n")},
                      {path("X\\Data\\R*"), path("X\\Data\\Run1\n")},
                      {"..\\Data\\Run1\\", ""},
                      {"..\\Data\\None*", ""},
                      {"..\\None\\*", ""},
                      {"Q:\\*", ""},
                      {"\\\\nosuchserver\\share\\*", ""},
                      {"", ""}};
    for (auto const &row : rows) {
        Ini("[Groups]\r\n" + row.line + ";;N=1\r\n");
        Open();
        EXPECT_EQ(path("X\\E\\Shots") + "\n" + row.shotPath, ShotPaths()) << row.line;
        EXPECT_EQ(row.line + "|N\n", GroupNames()) << row.line;
    }
}

TEST_F(ExperimentFolder, AGroupPathInNetworkFormBecomesLocal)
{
    system.folder.MakeFolder("X/Data/Run1");
    ShareFolder("data", "X\\Data");
    Ini("[Groups]\r\n\\\\" + Computer() + "\\DATA\\Run*;;N=1");
    Open();
    EXPECT_EQ(path("X\\E\\Shots") + "\n" + path("X\\Data\\Run1") + "\n", ShotPaths());
}

TEST_F(ExperimentFolder, ALineWithoutMatchKeepsItsNameAndAddsNoPath)
{
    system.folder.MakeFolder("X/Data/A1");
    system.folder.MakeFolder("X/Data/A2");
    system.folder.MakeFolder("X/Data/B1");
    Ini("[Groups]\r\n..\\Data\\None*;;None=\r\n..\\Data\\A*;;As=\r\n..\\Data\\B*;;Bs=\r\n");
    Open();
    EXPECT_EQ(path("X\\E\\Shots") + "\n" + path("X\\Data\\A1") + "\n" + path("X\\Data\\A2") + "\n" +
                  path("X\\Data\\B1") + "\n",
              ShotPaths());
    EXPECT_EQ("..\\Data\\None*|None\n..\\Data\\A*|As\n..\\Data\\B*|Bs\n", GroupNames());
}

TEST_F(ExperimentFolder, AFolderThatTwoLinesMatchIsTwoGroups)
{
    system.folder.MakeFolder("X/Data/A1");
    Ini("[Groups]\r\n..\\Data\\A*\r\n..\\Data\\*1\r\n");
    Open();
    EXPECT_EQ(path("X\\E\\Shots") + "\n" + path("X\\Data\\A1") + "\n" + path("X\\Data\\A1") + "\n", ShotPaths());
    EXPECT_EQ(1, Number("..\\Data\\A1"));
}

// The groups are listed before "Query" and "Macros" are made.
TEST_F(ExperimentFolder, GroupsSeeTheFoldersThatStoodBeforeOpening)
{
    Ini("[Groups]\r\n.\\*\r\n");
    Open();
    EXPECT_EQ(path("X\\E\\Shots") + "\n" + path("X\\E\\Shots") + "\n", ShotPaths());
    Open();
    EXPECT_EQ(path("X\\E\\Shots") + "\n" + path("X\\E\\Macros") + "\n" + path("X\\E\\Query") + "\n" +
                  path("X\\E\\Shots") + "\n",
              ShotPaths());
}

TEST_F(ExperimentFolder, SectionNamesIgnoreCaseAndTheFirstOfTwoCounts)
{
    system.folder.MakeFolder("X/Data/A1");
    Ini("[gROUPS]\n..\\Data\\A1;;first=\n[Groups]\n..\\Data\\A1;;second=\n");
    Open();
    EXPECT_EQ("..\\Data\\A1|first\n", GroupNames());
}

TEST_F(ExperimentFolder, ManyGroupsGrowTheListOfShotPaths)
{
    for (int i = 0; i < 300; i++) system.folder.MakeFolder("X/Data/G" + std::to_string(1000 + i));
    Ini("[Groups]\r\n..\\Data\\G*\r\n");
    Open();
    EXPECT_EQ(path("X\\Data\\G1299"), Plain(expt.GetShotGroupPath(300)));
    EXPECT_EQ("", Plain(expt.GetShotGroupPath(301)));
    EXPECT_EQ(300, Number("..\\Data\\G1299"));
}

TEST_F(ExperimentFolder, OpeningAgainRebuildsAllAndDropsTheShot)
{
    OpenWithRuns();
    Set("A1", 2);
    std::filesystem::remove(system.folder.native("X/Data/RunA"));
    Ini("[Groups]\r\n..\\Data\\Run*;;Other=1\r\n");
    EXPECT_TRUE(Open());
    EXPECT_EQ(path("X\\E\\Shots") + "\n" + path("X\\Data\\RunB") + "\n", ShotPaths());
    EXPECT_EQ("..\\Data\\Run*|Other\n", GroupNames());
    EXPECT_EQ(" |  | 0", State());
}

TEST_F(ExperimentFolder, OpeningKeepsTheSavedShot)
{
    OpenWithRuns();
    Set("A1", 2);
    expt.SetTempShot("B1", 0);
    Open();
    expt.ResetShot();
    EXPECT_EQ("A1 | " + path("X\\Data\\RunB\\ShotA1") + " | 2", State());
}

TEST_F(ExperimentFolder, OpeningEndsAPause)
{
    OpenWithRuns();
    Create("A1");
    expt.SetPauseIO(true);
    Open();
    Set("A1", 0);
    Write(ShotIn(0, "A1") + "/Scalars.ini", "[Fields]\nKey=1\n");
    EXPECT_EQ("1", Value("Key"));
    Write(ShotIn(0, "A1") + "/Scalars.ini", "[Fields]\nKey=2\n");
    EXPECT_EQ("2", Value("Key"));
}

// ---- Cues, which show in the group where a new shot is made ----

TEST_F(ExperimentFolder, ACueNamesItsGroupByAPathInAnyForm)
{
    ShareFolder("data", "X\\Data");
    struct {
        std::string cue;
        int group;
    } const rows[] = {{"B=..\\Data\\RunB", 2},
                      {"B=..\\Data/RunB", 2},
                      {"B=..\\data\\RUNB", 2},
                      {"B=" + path("X\\Data\\RunA"), 1},
                      {"B=\\\\" + Computer() + "\\data\\RunB", 2},
                      {"=..\\Data\\RunB", 2},
                      {"B=..\\Data\\RunB\\", 0},
                      {"B=..\\Data\\Run", 0},
                      {"B=..\\Data\\RunB2", 0},
                      {"B=..\\Data\\Run*", 0},
                      {"B= ..\\Data\\RunB", 0},
                      {"B=..\\Data\\RunB ", 0},
                      {"B=", 0},
                      {"B", 0}};
    int shot = 0;
    for (auto const &row : rows) {
        OpenWithRuns("[ShotCreation]\r\n" + row.cue + "\r\n*=..\\Data\\RunA\r\n");
        EXPECT_EQ(row.group, Create("B" + std::to_string(shot++))) << row.cue;
    }
}

TEST_F(ExperimentFolder, TheCueEndsAtTheFirstEqualsSign)
{
    system.folder.MakeFolder("X/Data/Run=x");
    OpenWithRuns("[ShotCreation]\r\nB=..\\Data\\Run=x\r\n");
    EXPECT_EQ(path("X\\Data\\Run=x"), Plain(expt.GetShotGroupPath(1)));
    EXPECT_EQ(1, Create("B1"));
}

TEST_F(ExperimentFolder, ACueWithoutEqualsSignIsItsOwnPath)
{
    system.folder.MakeFolder("B1");
    system.GoTo("");
    Ini("[Groups]\r\nB?\r\n[ShotCreation]\r\nb1\r\n");
    Open();
    EXPECT_EQ("B1", Plain(expt.GetShotGroupPath(1)));
    EXPECT_EQ(1, Create("B12"));
    EXPECT_TRUE(Has("B1/ShotB12"));
}

TEST_F(ExperimentFolder, ACueTakesTheFirstOfTwoEqualShotPaths)
{
    system.folder.MakeFolder("X/Data/A1");
    Ini("[Groups]\r\n..\\Data\\A*\r\n..\\Data\\*1\r\n[ShotCreation]\r\n*=..\\Data\\A1\r\n");
    Open();
    EXPECT_EQ(1, Create("x"));
}

// ---- Group paths and numbers ----

TEST_F(ExperimentFolder, AShotPathOutOfRangeIsEmpty)
{
    OpenWithRuns();
    EXPECT_EQ(path("X\\E\\Shots"), Plain(expt.GetShotGroupPath(0)));
    EXPECT_EQ(path("X\\Data\\RunB"), Plain(expt.GetShotGroupPath(2)));
    for (int gnum : {-1, 3, 256, INT_MAX, INT_MIN}) EXPECT_EQ("", Plain(expt.GetShotGroupPath(gnum))) << gnum;
}

TEST_F(ExperimentFolder, TheCurrentPathIsThatOfTheCurrentGroup)
{
    OpenWithRuns();
    Set("A1", 2);
    EXPECT_EQ(path("X\\Data\\RunB"), Plain(expt.GetCurPath()));
    expt.SetExperimentFolder("");
    EXPECT_EQ("", Plain(expt.GetCurPath()));
}

TEST_F(ExperimentFolder, AGroupIsFoundByItsPath)
{
    OpenWithRuns();
    ShareFolder("data", "X\\Data");
    struct {
        std::string text;
        int number;
    } const rows[] = {{path("X\\E\\Shots"), 0},
                      {".\\Shots", 0},
                      {".\\shots", 0},
                      {"..\\E\\Shots", 0},
                      {"..\\Data\\RunB", 2},
                      {"..\\Data/RunB", 2},
                      {path("x\\DATA\\runb"), 2},
                      {"\\\\" + Computer() + "\\Data\\RunA", 1},
                      {"..\\Data\\RunB\\", -1},
                      {"..\\Data\\Run", -1},
                      {"..\\Data\\RunBB", -1},
                      {"..\\Data\\..\\Data\\RunB", -1},
                      {"RunB", -1},
                      {".\\", -1},
                      {"", -1}};
    for (auto const &row : rows) EXPECT_EQ(row.number, Number(row.text)) << row.text;
}

// The path asked for becomes local, the shot paths are as the experiment was opened.
TEST_F(ExperimentFolder, AnExperimentOpenedByItsNetworkNameFindsNoGroupByPath)
{
    ShareFolder("data", "X");
    system.folder.MakeFolder("X/E");
    std::string const folder = "\\\\" + Computer() + "\\data\\E";
    expt.SetExperimentFolder(Dstr(folder));
    EXPECT_EQ(folder + "\\Shots", Plain(expt.GetShotGroupPath(0)));
    EXPECT_EQ(-1, Number(".\\Shots"));
    EXPECT_EQ(-1, Number(folder + "\\Shots"));
}

// ---- Path forms ----

TEST_F(ExperimentFolder, FullPathsOfEachForm)
{
    Open();
    struct {
        std::string text;
        std::string full;
    } const rows[] = {{".\\a/b", path("X\\E\\a\\b")},
                      {".\\a\\b", path("X\\E\\a\\b")},
                      {".\\", path("X\\E")},
                      {".\\.\\a", path("X\\E\\.\\a")},
                      {"..\\a/b", path("X\\a\\b")},
                      {"..\\", path("X")},
                      {"..\\..\\a", path("X\\..\\a")},
                      {".\\..\\a", path("X\\E\\..\\a")},
                      {"./a", "./a"},
                      {"../a", "../a"},
                      {".a", ".a"},
                      {"..a", "..a"},
                      {".", "."},
                      {"..", ".."},
                      {"a/b", "a/b"},
                      {"C:\\a/b", "C:\\a/b"},
                      {"\\\\nosuchserver\\share\\a", "\\\\nosuchserver\\share\\a"},
                      {".\\\\a", path("X\\E\\\\a")},
                      {"", ""}};
    for (auto const &row : rows) EXPECT_EQ(row.full, Full(row.text)) << row.text;
}

TEST_F(ExperimentFolder, AFullPathOfThisComputersShareIsLocal)
{
    Open();
    ShareFolder("data", "X\\Data");
    EXPECT_EQ(path("X\\Data\\f"), Full("\\\\" + Computer() + "\\data\\f"));
    EXPECT_EQ("other\\f\\", Full("\\\\" + Computer() + "\\other\\f"));
}

TEST_F(ExperimentFolder, RelativePathsOfEachForm)
{
    Open();
    struct {
        std::string text;
        std::string relative;
    } const rows[] = {{path("X\\E\\a\\b"), ".\\a\\b"},
                      {path("x\\e\\A\\b"), ".\\A\\b"},
                      {path("X\\E"), ".\\"},
                      {path("X\\E\\"), ".\\"},
                      {path("X\\Else\\f"), ".\\se\\f"},
                      {path("X\\E2"), ".\\"},
                      {path("X\\D\\f"), "..\\D\\f"},
                      {path("x\\D"), "..\\D"},
                      {path("X"), "..\\"},
                      {path("X\\"), "..\\"},
                      {path("XY\\f"), "..\\\\f"},
                      {path("Y\\f"), path("Y\\f")},
                      {".\\a", ".\\a"},
                      {"a", "a"},
                      {"\\\\srv\\share\\f", "\\\\srv\\share\\f"},
                      {"", ""}};
    for (auto const &row : rows) EXPECT_EQ(row.relative, Relative(row.text)) << row.text;
}

TEST_F(ExperimentFolder, APathUnderNeitherFolderBecomesANetworkName)
{
    Open();
    ShareFolder("all", "");
    EXPECT_EQ("\\\\" + Computer() + "\\all\\Y\\f", Relative(path("Y\\f")));
    EXPECT_EQ("..\\D", Relative(path("X\\D")));
}

TEST_F(ExperimentFolder, WithoutAParentFolderEveryPathCountsAsInside)
{
    system.folder.MakeFolder("E");
    system.GoTo("");
    expt.SetExperimentFolder("E");
    EXPECT_EQ(".\\Shots", Relative("E\\Shots"));
    EXPECT_EQ("..\\ther", Relative("Other"));
    EXPECT_EQ("Other", Full("..\\Other"));
}

TEST_F(ExperimentFolder, PathElementsAreJoinedToTheFolder)
{
    Open();
    EXPECT_EQ(path("X\\E\\a"), Plain(expt.AppendExptPathElts("a")));
    EXPECT_EQ(path("X\\E\\a\\b"), Plain(expt.AppendExptPathElts("a", "b")));
    EXPECT_EQ(path("X\\E"), Plain(expt.AppendExptPathElts("")));
    EXPECT_EQ(path("X\\E\\b"), Plain(expt.AppendExptPathElts("", "b")));
    EXPECT_EQ(path("X\\E\\a"), Plain(expt.AppendExptPathElts("a", "")));
    EXPECT_EQ("a\\b", Plain(Experiment().AppendExptPathElts("a", "b")));
}

// ---- Log ----

TEST_F(ExperimentFolder, ProgressIsLoggedWhenLogging)
{
    Ini("[General]\r\nDescription=x\r\n");
    Logging = true;
    Open();
    EXPECT_EQ(LogLine("Parsing out shot groups...") + LogLine("Getting cues..."), system.Log());
}

TEST_F(ExperimentFolder, WithoutLoggingNothingIsLogged)
{
    OpenWithRuns("[ShotCreation]\r\nB=..\\Data\\RunB");
    expt.SetExperimentFolder("");
    EXPECT_EQ("(missing)", system.Log());
    EXPECT_EQ("", system.Heard());
}

TEST_F(ExperimentFolder, ClosingAndATrailingBackslashLogNothing)
{
    Logging = true;
    expt.SetExperimentFolder("");
    expt.SetExperimentFolder(Dstr(path("X\\E\\")));
    EXPECT_EQ("(missing)", system.Log());
}

// ---- Copies and the small records ----

TEST_F(ExperimentFolder, ACopyHasEveryMember)
{
    OpenWithRuns("[ShotCreation]\r\nB=..\\Data\\RunB");
    Set("A1", 2);
    expt.SetTempShot("C1", 1);
    std::string const all = State() + ShotPaths() + GroupNames();
    Experiment const original = expt;
    expt = Experiment();
    EXPECT_EQ(" |  | 0", State() + ShotPaths() + GroupNames());
    expt = original;
    EXPECT_EQ(all, State() + ShotPaths() + GroupNames());
    EXPECT_EQ(path("X\\E"), Plain(expt.GetExperimentFolder()));
    EXPECT_EQ(path("X\\E"), Plain(expt.GetExperimentUNCFolder()));
    EXPECT_EQ(path("X") + "E", Plain(expt.GetExperimentPath() + expt.GetExperimentName()));
    EXPECT_EQ(2, Create("B7"));
    expt.ResetShot();
    EXPECT_EQ("A1 | " + path("X\\Data\\RunB\\ShotA1") + " | 2", State());
}

TEST_F(ExperimentFolder, ACopyHasAPauseAndStoresOfItsOwn)
{
    OpenWithRuns();
    Create("A1");
    Store("Key", "1");
    expt.SetPauseIO(true);
    Experiment copy(expt);
    copy.SetShot("B1", 0);
    Write(ShotIn(0, "A1") + "/Scalars.ini", "[Fields]\nKey=2\n");
    EXPECT_EQ("1", Value("Key"));
    copy.SetShot("A1", 0);
    EXPECT_EQ("2", Plain(copy.GetShotData("Key")));
}

TEST_F(ExperimentFolder, SelfAssignmentLeavesAllAsItWas)
{
    OpenWithRuns();
    Set("A1", 2);
    std::string const all = State() + ShotPaths() + GroupNames();
    Experiment const &same = expt;
    expt = same;
    EXPECT_EQ(all, State() + ShotPaths() + GroupNames());
}

TEST(Experiment, DataVersionIs19)
{
    EXPECT_EQ(19, Experiment::CurDataVersion);
    EXPECT_FALSE(std::is_polymorphic<Experiment>::value);
}

TEST(Experiment, GroupNamesAndCuesAreCopiedAndMovedMemberByMember)
{
    GroupName name{"p", "n"};
    GroupName other(name);
    GroupName moved(std::move(name));
    other = moved;
    EXPECT_EQ("pn", Plain(other.Path + other.Name));
    EXPECT_EQ("", Plain(GroupName().Path + GroupName().Name));
    GroupCue cue;
    cue.Cue = "B";
    cue.Group = 2;
    GroupCue second(cue);
    GroupCue third;
    third = std::move(second);
    EXPECT_EQ("B", Plain(third.Cue));
    EXPECT_EQ(2, third.Group);
    EXPECT_EQ("", Plain(GroupCue().Cue));
}

} // namespace
