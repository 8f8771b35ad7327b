#include <cstring>

#include "support/ExperimentTest.h"

namespace {

class ShotLifeCycle : public ExperimentTest {
protected:
    /// What `CreateShot` writes into a new shot's file.
    static std::string Stamped(std::string const &before = std::string())
    {
        return "[Fields]\r\n" + before + "Date=" + FreshSystem::Date;
    }
    std::string Name() const { return Plain(name); }
    bool Rename(std::string const &to) { return expt.RenameShot(Dstr(to)); }

    /// Opens with the cues "#" to group 1, "B" to group 2 and "*" to group 0.
    void OpenWithCues() { OpenWithRuns("[ShotCreation]\r\n#=..\\Data\\RunA\r\nB=..\\Data\\RunB\r\n*=.\\Shots\r\n"); }

    /// The shots A1 and x in a fresh experiment; what lies there and beside them.
    void OpenWithNeighbours()
    {
        std::filesystem::remove_all(system.folder.native("X"));
        OpenWithRuns();
        for (char const *shot : {"A1", "x"}) Create(shot);
    }
    std::string AllNames() const { return system.Names("X/E") + " / " + system.Names("X/E/Shots"); }
    static std::string Neighbours() { return "E.ini Macros Query Shots / ScalarCache.ini ShotA1 Shotx"; }

    /// The group in which a new shot is made with one cue that leads to group 2, and no other.
    int GroupByCue(std::string const &cue, std::string const &shot)
    {
        for (char const *folder : {"X/E/Shots", "X/Data/RunB"})
            std::filesystem::remove_all(system.folder.native(folder));
        OpenWithRuns("[ShotCreation]\r\n" + cue + "=..\\Data\\RunB\r\n");
        return Create(shot);
    }
};

// ---- CreateShot ----

TEST_F(ShotLifeCycle, ANewShotIsAFolderAndCurrent)
{
    OpenWithRuns();
    EXPECT_EQ(0, Create("A1"));
    EXPECT_EQ("A1", Name());
    EXPECT_EQ("A1 | " + path("X\\E\\Shots\\ShotA1") + " | 0", State());
    EXPECT_EQ("Scalars.ini", system.Names(ShotIn(0, "A1")));
    EXPECT_EQ(Stamped(), Scalars(0, "A1"));
    EXPECT_EQ("[ShotA1]\r\nDate=06/10/2024 08:13:20", Cache(0));
}

TEST_F(ShotLifeCycle, ANewShotHasItsCommentAndItsDateWhateverTheStamp)
{
    OpenWithRuns();
    for (bool stamp : {false, true}) {
        std::string const shot = stamp ? "A1" : "B1";
        EXPECT_EQ(0, Create(shot, " a comment", stamp));
        EXPECT_EQ(Stamped("Comment= a comment\r\n"), Scalars(0, shot));
    }
}

TEST_F(ShotLifeCycle, WithoutAnExperimentNothingIsCreated)
{
    EXPECT_EQ(-1, Create("*A1"));
    EXPECT_EQ("*A1", Name());
    EXPECT_EQ(" |  | 0", State());
    OpenWithRuns();
    expt.SetExperimentFolder(Dstr(path("X\\E\\")));
    EXPECT_EQ(-1, Create("A1"));
    EXPECT_EQ("", system.Names("X/E/Shots"));
}

TEST_F(ShotLifeCycle, AnExistingShotGivesTheComplementOfItsGroup)
{
    OpenWithRuns();
    Set("Cur", 0);
    for (int group : {0, 1, 2}) {
        std::string const shot = "A" + std::to_string(group);
        MakeShot(group, shot);
        EXPECT_EQ(~group, Create(shot, "comment", true));
        EXPECT_EQ(shot, Name());
        EXPECT_EQ("", system.Names(ShotIn(group, shot)));
        EXPECT_EQ("(missing)", Cache(group));
    }
    EXPECT_EQ("Cur | " + path("X\\E\\Shots\\ShotCur") + " | 0", State());
    EXPECT_EQ("", system.Heard());
}

TEST_F(ShotLifeCycle, AnExistingShotIsFoundWhateverItsCase)
{
    OpenWithRuns();
    MakeShot(1, "Ab");
    EXPECT_EQ(-2, Create("aB"));
    EXPECT_EQ(1, Create("*aB"));
    EXPECT_EQ("aB", CurrentShot());
    EXPECT_EQ("ShotAb", system.Names("X/Data/RunA"));
}

TEST_F(ShotLifeCycle, AStarTakesAnExistingShot)
{
    OpenWithRuns();
    MakeShot(1, "A1");
    Write(ShotIn(1, "A1") + "/Scalars.ini", "[Fields]\r\nDate=old\r\nRun=7");
    EXPECT_EQ(1, Create("*A1"));
    EXPECT_EQ("A1", Name());
    EXPECT_EQ("A1 | " + path("X\\Data\\RunA\\ShotA1") + " | 1", State());
    EXPECT_EQ("[Fields]\r\nDate=old\r\nRun=7", Scalars(1, "A1"));
    EXPECT_EQ("(missing)", Cache(1));
}

TEST_F(ShotLifeCycle, AStampDatesAnExistingShotToo)
{
    OpenWithRuns();
    MakeShot(1, "A1");
    Write(ShotIn(1, "A1") + "/Scalars.ini", "[Fields]\r\nDate=old\r\nRun=7");
    EXPECT_EQ(1, Create("*A1", "", true));
    EXPECT_EQ("[Fields]\r\nDate=06/10/2024 08:13:20\r\nRun=7", Scalars(1, "A1"));
    EXPECT_EQ("[ShotA1]\r\nDate=06/10/2024 08:13:20", Cache(1));
}

TEST_F(ShotLifeCycle, AnExistingShotGetsItsCommentWithoutADate)
{
    OpenWithRuns();
    MakeShot(1, "A1");
    EXPECT_EQ(1, Create("*A1", "hello"));
    EXPECT_EQ("[Fields]\r\nComment=hello", Scalars(1, "A1"));
    EXPECT_EQ("[ShotA1]\r\nComment=hello", Cache(1));
}

TEST_F(ShotLifeCycle, AStarMakesAMissingShot)
{
    OpenWithRuns();
    EXPECT_EQ(0, Create("*A1"));
    EXPECT_EQ("A1", Name());
    EXPECT_EQ(Stamped(), Scalars(0, "A1"));
}

TEST_F(ShotLifeCycle, TheNameAsCommentIsNotStoredButTheDateIs)
{
    OpenWithRuns();
    EXPECT_EQ(0, Create("A1", "a1"));
    EXPECT_EQ("7:Attempt to write shot name to comment, in base\n", system.Heard());
    EXPECT_EQ(Stamped(), Scalars(0, "A1"));
}

TEST_F(ShotLifeCycle, ADateIsInLocalTime)
{
    OpenWithRuns();
    StandingClock::now = 1704067199; // a second before the new year in UTC
    Create("A1");
    EXPECT_EQ("[Fields]\r\nDate=01/01/2024 01:59:59", Scalars(0, "A1"));
}

TEST_F(ShotLifeCycle, AFileBehindTheNameIsATestOnly)
{
    OpenWithRuns();
    EXPECT_EQ(0, Create("A1\\W"));
    EXPECT_EQ("A1\\W", Name());
    EXPECT_EQ("A1", CurrentShot());
    EXPECT_EQ("Scalars.ini", system.Names(ShotIn(0, "A1")));
    EXPECT_EQ("ScalarCache.ini ShotA1", system.Names("X/E/Shots"));
}

TEST_F(ShotLifeCycle, AnExistingShotIsReusedUnlessItHoldsTheFile)
{
    OpenWithRuns();
    struct {
        char const *file;
        char const *asked;
        int result;
    } const rows[] = {{"W.wvf", "A1\\W", -2},         {"fooW.wvf", "A1\\W", -2}, {"FOOw.WVF", "A1\\W", -2},
                      {"W.dmt", "A1\\W", 1},          {"W2.wvf", "A1\\W", 1},    {"W.wvf", "A1\\", -2},
                      {"W.wvf", "A1\\W.wvf", 1},      {"V.wvf", "A1\\W", 1},     {"V.wvf", "A1\\", -2},
                      {"V.wvf", "A1\\*", -2},         {"W.wvf", "*A1\\W", 1},    {"W.wvf", "*A1\\", 1},
                      {"sub/W.wvf", "A1\\sub\\W", 1}, {"sub/W.wvf", "A1\\W", 1}, {"W.wvf/x", "A1\\W", 1}};
    for (auto const &row : rows) {
        std::filesystem::remove_all(system.folder.native("X/Data/RunA/ShotA1"));
        Write(ShotIn(1, "A1") + "/" + row.file, "");
        Set("Cur", 0);
        EXPECT_EQ(row.result, Create(row.asked)) << row.asked << " " << row.file;
        EXPECT_EQ(row.result < 0 ? "Cur" : "A1", CurrentShot());
        EXPECT_EQ("(missing)", Scalars(1, "A1"));
    }
}

TEST_F(ShotLifeCycle, AReusedShotIsDatedOnlyIfStamped)
{
    OpenWithRuns();
    MakeShot(1, "A1");
    EXPECT_EQ(1, Create("A1\\W", "", false));
    EXPECT_EQ("(missing)", Scalars(1, "A1"));
    EXPECT_EQ(1, Create("A1\\W", "", true));
    EXPECT_EQ(Stamped(), Scalars(1, "A1"));
}

TEST_F(ShotLifeCycle, OnlyTheStarIsTakenFromTheCallersText)
{
    OpenWithRuns();
    Create("*A1\\W");
    EXPECT_EQ("A1\\W", Name());
    Create("**B1");
    EXPECT_EQ("*B1", Name());
}

TEST_F(ShotLifeCycle, AnEmptyNameMakesTheBareWord)
{
    OpenWithRuns();
    Set("Cur", 0);
    EXPECT_EQ(0, Create(""));
    EXPECT_EQ(" | " + path("X\\E\\Shots\\Shot") + " | 0", State());
    EXPECT_EQ(Stamped(), Scalars(0, ""));
    EXPECT_EQ(-1, Create(""));
    EXPECT_EQ(0, Create("*"));
}

// Without a shot the name is empty already, so that setting the nameless one in group 0 is no change.
TEST_F(ShotLifeCycle, TheNamelessShotIsMadeButNotEnteredRightAfterOpening)
{
    OpenWithRuns();
    EXPECT_EQ(0, Create("", "comment", true));
    EXPECT_EQ(" |  | 0", State());
    EXPECT_EQ("Shot", system.Names("X/E/Shots"));
    EXPECT_EQ("", system.Names("X/E/Shots/Shot"));
}

TEST_F(ShotLifeCycle, AFolderThatCannotBeMadeIsNotNoticed)
{
    OpenWithRuns();
    Write("X/E/Shots/ShotA1", "a file");
    EXPECT_EQ(0, Create("A1"));
    EXPECT_EQ("A1", CurrentShot());
    EXPECT_EQ("a file", Read("X/E/Shots/ShotA1"));
    EXPECT_EQ("[ShotA1]\r\nDate=06/10/2024 08:13:20", Cache(0));
}

TEST_F(ShotLifeCycle, NamesAreNotTested)
{
    OpenWithRuns();
    for (char const *shot : {"a b", "#", "a:b", "[x]", "\xC9\xFF", "a;b=c", "a.b"}) {
        EXPECT_EQ(0, Create(shot)) << shot;
        EXPECT_TRUE(Has(ShotIn(0, shot))) << shot;
    }
}

TEST_F(ShotLifeCycle, ANameThatIsNoFolderNameDoesNoHarm)
{
    OpenWithRuns();
    Create("Kept");
    for (std::string const &shot :
         {std::string("A*"), std::string("A?"), std::string("a/b"), std::string(5000, 'x'), std::string("a\0b", 3)}) {
        EXPECT_EQ(0, Create(shot)) << shot;
        EXPECT_EQ(shot, CurrentShot());
    }
    EXPECT_EQ(Stamped(), Scalars(0, "Kept"));
}

TEST_F(ShotLifeCycle, CreatingEndsAPause)
{
    OpenWithRuns();
    Create("A1");
    expt.SetPauseIO(true);
    EXPECT_EQ(0, Create("B1"));
    EXPECT_EQ(Stamped(), Scalars(0, "B1"));
    EXPECT_EQ("[ShotA1]\r\nDate=06/10/2024 08:13:20\r\n[ShotB1]\r\nDate=06/10/2024 08:13:20", Cache(0));
    Write(ShotIn(0, "B1") + "/Scalars.ini", "[Fields]\nRun=1");
    EXPECT_EQ("1", Value("Run"));
}

TEST_F(ShotLifeCycle, CreatingLogsOnlyItsProgress)
{
    OpenWithRuns();
    Create("A1");
    EXPECT_EQ("(missing)", system.Log());
    Logging = true;
    Create("B1");
    EXPECT_EQ(LogLine("setting ini's in SetShot") + LogLine("Finished setting shot"), system.Log());
}

// ---- Cues ----

TEST_F(ShotLifeCycle, TheFirstCueThatFitsSelectsTheGroup)
{
    OpenWithCues();
    struct {
        char const *shot;
        int group;
    } const rows[] = {{"123", 1}, {"b7", 2}, {"B7x", 2}, {"C7", 0}, {"1e5", 1},
                      {"-3", 1},  {" 4", 1}, {"12a", 0}, {"4 ", 0}, {".5", 1}};
    for (auto const &row : rows) EXPECT_EQ(row.group, Create(row.shot)) << row.shot;
}

TEST_F(ShotLifeCycle, ANewShotStandsInTheFolderOfItsGroup)
{
    OpenWithCues();
    Create("123");
    EXPECT_EQ("123 | " + path("X\\Data\\RunA\\Shot123") + " | 1", State());
    EXPECT_EQ(Stamped(), Scalars(1, "123"));
    EXPECT_EQ("[Shot123]\r\nDate=06/10/2024 08:13:20", Cache(1));
}

TEST_F(ShotLifeCycle, TheCueIsTestedWithoutTheFileBehindTheName)
{
    OpenWithCues();
    EXPECT_EQ(1, Create("123\\W"));
    EXPECT_EQ(0, Create("C\\123"));
}

TEST_F(ShotLifeCycle, AnEarlyStarHidesAllLaterCues)
{
    OpenWithRuns("[ShotCreation]\r\n*=..\\Data\\RunA\r\n#=..\\Data\\RunB\r\nB=..\\Data\\RunB\r\n");
    EXPECT_EQ(1, Create("123"));
    EXPECT_EQ(1, Create("B1"));
}

TEST_F(ShotLifeCycle, EachKindOfCue)
{
    struct {
        char const *cue;
        char const *shot;
        bool selects;
    } const rows[] = {
        {"*", "x", true},
        {"*", "", true},
        {"**", "x", false},
        {"#", "12", true},
        {"#", "", false},
        {"#", "x", false},
        {"##", "12", false},
        {"#", "#1", true}, // begins with the cue
        {"B", "B", true},
        {"B", "bcd", true},
        {"b", "Bcd", true},
        {"BC", "B", false},
        {"B", "AB", false},
        {" B", "B", false},
        {"Run1", "rUN12", true},
        {"", "anything", true},
        // "False" takes what begins with a capital A, "True" all the rest.
        {"False", "A1", true},
        {"FALSE", "Abc", true},
        {"false", "A", true},
        {"False", "a1", false},
        {"False", "B1", false},
        {"False", "1A", false},
        {"True", "A1", false},
        {"True", "a1", true},
        {"tRUE", "B1", true},
        {"True", "z", true},
        {"True", "12", true},
        {"True", "\xC9", true},
        {"True", "_A", true},
        // Both are beginnings of names as well.
        {"False", "falsehood", true},
        {"True1", "B1", false},
        {"True1", "true12", true},
    };
    for (auto const &row : rows)
        EXPECT_EQ(row.selects ? 2 : 0, GroupByCue(row.cue, row.shot)) << row.cue << " and " << row.shot;
}

TEST_F(ShotLifeCycle, ACueWithoutAGroupHidesLaterOnesAndGives0)
{
    OpenWithRuns("[ShotCreation]\r\nB=..\\None\r\nB=..\\Data\\RunB\r\n*=..\\Data\\RunA\r\n");
    EXPECT_EQ(0, Create("B1"));
    EXPECT_EQ(1, Create("C1"));
}

TEST_F(ShotLifeCycle, WithoutASelectedCueTheGroupIs0)
{
    OpenWithRuns("[ShotCreation]\r\nB=..\\Data\\RunB\r\n");
    Set("Cur", 2);
    EXPECT_EQ(0, Create("C1"));
}

TEST_F(ShotLifeCycle, TheSingleDefaultCueSendsAllToGroup0)
{
    OpenWithRuns();
    Set("Cur", 2);
    for (char const *shot : {"1", "A", "B1", "*x"}) EXPECT_EQ(0, Create(shot)) << shot;
}

// ---- RenameShot ----

TEST_F(ShotLifeCycle, RenamingMovesTheFolderAndTheCacheSection)
{
    OpenWithRuns();
    Create("B1");
    Create("A1");
    Store("Run", "7");
    EXPECT_TRUE(Rename("C1"));
    EXPECT_EQ("C1 | " + path("X\\E\\Shots\\ShotC1") + " | 0", State());
    EXPECT_EQ("ScalarCache.ini ShotB1 ShotC1", system.Names("X/E/Shots"));
    EXPECT_EQ("[ShotB1]\r\nDate=06/10/2024 08:13:20\r\n[ShotC1]\r\nDate=06/10/2024 08:13:20\r\nRun=7", Cache(0));
    EXPECT_EQ("7", Value("Run"));
    EXPECT_EQ("", system.Heard());
}

TEST_F(ShotLifeCycle, WithoutAShotNothingIsRenamed)
{
    EXPECT_FALSE(Rename("A1"));
    OpenWithRuns();
    EXPECT_FALSE(Rename("A1"));
    Set("A1", 0);
    expt.SetExperimentFolder(Dstr(path("X\\E\\")));
    Set("B1", 0);
    EXPECT_EQ(-1, expt.GetCurrentGroup());
    EXPECT_FALSE(Rename("B1"));
    EXPECT_EQ("", system.Heard());
}

TEST_F(ShotLifeCycle, AnotherShotIsNotRenamedOver)
{
    OpenWithRuns();
    Create("B1");
    Create("A1");
    std::string const before = State() + Cache(0);
    EXPECT_FALSE(Rename("B1"));
    EXPECT_EQ("2:Shot B1 already exists, rename aborted\n", system.Heard());
    EXPECT_FALSE(Rename("b1"));
    EXPECT_EQ("2:Shot b1 already exists, rename aborted\n", system.Heard());
    EXPECT_EQ(before, State() + Cache(0));
    EXPECT_EQ("ScalarCache.ini ShotA1 ShotB1", system.Names("X/E/Shots"));
}

TEST_F(ShotLifeCycle, AShotOfThatNameInAnotherGroupDoesNotMatter)
{
    OpenWithRuns();
    MakeShot(1, "B1");
    MakeShot(2, "B1");
    Create("A1");
    EXPECT_TRUE(Rename("B1"));
    EXPECT_EQ("B1 | " + path("X\\E\\Shots\\ShotB1") + " | 0", State());
    EXPECT_EQ("", system.Names(ShotIn(1, "B1")) + system.Names(ShotIn(2, "B1")));
}

TEST_F(ShotLifeCycle, AChangeOfCaseAloneGoesThrough)
{
    OpenWithRuns();
    Create("Ab");
    EXPECT_TRUE(Rename("aB"));
    EXPECT_EQ("aB", CurrentShot());
    EXPECT_EQ("ScalarCache.ini ShotaB", system.Names("X/E/Shots"));
    EXPECT_EQ("[ShotaB]\r\nDate=06/10/2024 08:13:20", Cache(0));
    EXPECT_EQ("", system.Heard());
}

TEST_F(ShotLifeCycle, ARenameToTheSameNameIsTrueAndKeepsAll)
{
    OpenWithRuns();
    Create("A1");
    std::string const before = State() + Cache(0) + Scalars(0, "A1");
    EXPECT_TRUE(Rename("A1"));
    EXPECT_EQ(before, State() + Cache(0) + Scalars(0, "A1"));
    EXPECT_EQ("", system.Heard());
}

// The folder's rename may fail; the new name is in force all the same.
TEST_F(ShotLifeCycle, ARenameThatFailsOnTheDiskIsTrueWithTheNewName)
{
    OpenWithRuns();
    Create("A1");
    Write("X/E/Shots/ShotC1", "a file");
    std::string const cache = Cache(0);
    EXPECT_TRUE(Rename("C1"));
    EXPECT_EQ("C1 | " + path("X\\E\\Shots\\ShotC1") + " | 0", State());
    EXPECT_EQ("a file", Read("X/E/Shots/ShotC1"));
    EXPECT_EQ(Stamped(), Scalars(0, "A1"));
    EXPECT_EQ(cache, Cache(0));
}

TEST_F(ShotLifeCycle, AMissingFolderIsRenamedInNameOnly)
{
    OpenWithRuns();
    Create("A1");
    std::string const cache = Cache(0);
    Set("Ghost", 0);
    EXPECT_TRUE(Rename("C1"));
    EXPECT_EQ("C1", CurrentShot());
    EXPECT_EQ("ScalarCache.ini ShotA1", system.Names("X/E/Shots"));
    EXPECT_EQ(cache, Cache(0));
}

TEST_F(ShotLifeCycle, AShotWithoutCacheSectionIsRenamed)
{
    OpenWithRuns();
    Create("B1");
    MakeShot(0, "A1");
    Set("A1", 0);
    EXPECT_TRUE(Rename("C1"));
    EXPECT_EQ("[ShotB1]\r\nDate=06/10/2024 08:13:20", Cache(0));
    EXPECT_TRUE(Has(ShotIn(0, "C1")));
}

TEST_F(ShotLifeCycle, ARenameEndsAPause)
{
    OpenWithRuns();
    Create("A1");
    expt.SetPauseIO(true);
    EXPECT_TRUE(Rename("B1"));
    Store("Run", "7");
    EXPECT_EQ(Stamped() + "\r\nRun=7", Scalars(0, "B1"));
    EXPECT_EQ("[ShotB1]\r\nDate=06/10/2024 08:13:20\r\nRun=7", Cache(0));
}

TEST_F(ShotLifeCycle, AWildcardInEitherNameRenamesNoFolder)
{
    OpenWithRuns();
    for (char const *shot : {"A1", "A2", "Ab"}) Create(shot);
    std::string const names = system.Names("X/E/Shots");
    struct {
        char const *from;
        char const *to;
    } const rows[] = {{"A*", "C1"}, {"A?", "C1"}, {"*", "C1"}, {"A1", "C*"}, {"A1", "C?"}, {"A*", "C*"}};
    for (auto const &row : rows) {
        Set("*" + std::string(row.from), 0);
        EXPECT_TRUE(Rename(row.to)) << row.from << " " << row.to;
        EXPECT_EQ(row.to, CurrentShot());
        EXPECT_EQ(names, system.Names("X/E/Shots")) << row.from << " " << row.to;
    }
}

// ---- DeleteShot ----

TEST_F(ShotLifeCycle, DeletingRemovesTheFolderAndTheCacheSection)
{
    OpenWithRuns();
    Create("B1");
    Create("A1");
    Write(ShotIn(0, "A1") + "/deep/er/W.wvf", "x");
    std::string const state = State();
    EXPECT_TRUE(expt.DeleteShot());
    EXPECT_EQ("ScalarCache.ini ShotB1", system.Names("X/E/Shots"));
    EXPECT_EQ("[ShotB1]\r\nDate=06/10/2024 08:13:20", Cache(0));
    EXPECT_EQ(state, State());
    EXPECT_EQ("", system.Heard());
}

TEST_F(ShotLifeCycle, WithoutAShotNothingIsDeleted)
{
    EXPECT_FALSE(expt.DeleteShot());
    OpenWithRuns();
    Create("");
    EXPECT_FALSE(expt.DeleteShot());
    EXPECT_TRUE(Has("X/E/Shots/Shot"));
    Create("A1");
    expt.SetExperimentFolder(Dstr(path("X\\E\\")));
    Set("B1", 0);
    EXPECT_EQ("A1", CurrentShot());
    EXPECT_FALSE(expt.DeleteShot());
    EXPECT_TRUE(Has("X/E/Shots/ShotA1"));
    EXPECT_EQ("E.ini Macros Query Shots", system.Names("X/E"));
}

TEST_F(ShotLifeCycle, ADeletedShotStaysCurrentAndHasNoValues)
{
    OpenWithRuns();
    Create("A1");
    expt.DeleteShot();
    EXPECT_EQ("A1", Value("Shot"));
    EXPECT_EQ("", Value("Date"));
    EXPECT_FALSE(Has("X/E/Shots/ShotA1"));
    EXPECT_TRUE(expt.DeleteShot());
}

TEST_F(ShotLifeCycle, ADeletedShotCanBeMadeAgain)
{
    OpenWithRuns();
    Create("A1", "old");
    expt.DeleteShot();
    EXPECT_EQ(0, Create("A1"));
    EXPECT_EQ(Stamped(), Scalars(0, "A1"));
    EXPECT_EQ("[ShotA1]\r\nDate=06/10/2024 08:13:20", Cache(0));
}

TEST_F(ShotLifeCycle, AMissingFolderStillLosesItsCacheSection)
{
    OpenWithRuns();
    Create("B1");
    Create("A1");
    std::filesystem::remove_all(system.folder.native("X/E/Shots/ShotA1"));
    EXPECT_TRUE(expt.DeleteShot());
    EXPECT_EQ("[ShotB1]\r\nDate=06/10/2024 08:13:20", Cache(0));
}

TEST_F(ShotLifeCycle, AFolderThatCannotBeDeletedStillLosesItsCacheSection)
{
    OpenWithRuns();
    Create("B1");
    Create("A1");
    Platform::SetFaultHook([](char const *operation) { return std::strcmp(operation, "DeleteMatching") != 0; });
    EXPECT_TRUE(expt.DeleteShot());
    Platform::SetFaultHook(nullptr);
    EXPECT_EQ("ScalarCache.ini ShotA1 ShotB1", system.Names("X/E/Shots"));
    EXPECT_EQ("[ShotB1]\r\nDate=06/10/2024 08:13:20", Cache(0));
}

TEST_F(ShotLifeCycle, OnlyTheShotOfTheCurrentGroupIsDeleted)
{
    OpenWithRuns();
    for (int group : {0, 1, 2}) MakeShot(group, "A1");
    Set("A1", 1);
    Store("Run", "7");
    EXPECT_TRUE(expt.DeleteShot());
    EXPECT_EQ("ScalarCache.ini", system.Names("X/Data/RunA"));
    EXPECT_EQ("", Cache(1));
    EXPECT_TRUE(Has(ShotIn(0, "A1")) && Has(ShotIn(2, "A1")));
}

TEST_F(ShotLifeCycle, AShotWhoseNameHoldsAWildcardKeepsItsFolderAndItsNeighbours)
{
    OpenWithRuns();
    for (char const *shot : {"A1", "A2", "B1"}) Create(shot);
    std::string const names = system.Names("X/E/Shots");
    for (char const *shot : {"A*", "A?", "*", "?1", "A1*", "x\\..\\*"}) {
        Set(std::string("*") + shot, 0);
        EXPECT_TRUE(expt.DeleteShot()) << shot;
        EXPECT_EQ(names, system.Names("X/E/Shots")) << shot;
        EXPECT_EQ(Stamped() + Stamped() + Stamped(), Scalars(0, "A1") + Scalars(0, "A2") + Scalars(0, "B1"));
    }
}

TEST_F(ShotLifeCycle, AShotWhoseNameLeadsOutOfTheShotPathIsNotDeleted)
{
    for (char const *shot : {"x\\..\\..", "x\\..\\..\\Query", "x\\..\\ShotA1", "x\\..", "x/../..", "x/../../Query",
                             "x/../ShotA1", "x/..", "x\\../../Query", "x/..\\..\\Query"}) {
        OpenWithNeighbours();
        Set(shot, 0);
        EXPECT_TRUE(expt.DeleteShot()) << shot;
        EXPECT_EQ(Neighbours(), AllNames()) << shot;
    }
}

TEST_F(ShotLifeCycle, AShotWhoseNameLeadsOutOfTheShotPathIsNotRenamed)
{
    for (char const *shot : {"x\\..\\..\\Query", "x\\..\\ShotA1", "x/../../Query", "x/../ShotA1"}) {
        OpenWithNeighbours();
        Set(shot, 0);
        EXPECT_TRUE(Rename("New")) << shot;
        EXPECT_EQ("New", CurrentShot());
        EXPECT_EQ(Neighbours(), AllNames()) << shot;
    }
}

TEST_F(ShotLifeCycle, NoShotIsRenamedOutOfTheShotPath)
{
    for (char const *target : {"x\\..\\..\\Out", "x\\..\\Out", "x/../../Out", "x/../Out"}) {
        OpenWithNeighbours();
        Set("A1", 0);
        EXPECT_TRUE(Rename(target)) << target;
        EXPECT_EQ(target, CurrentShot());
        EXPECT_EQ(Neighbours(), AllNames()) << target;
    }
}

TEST_F(ShotLifeCycle, AnyFaultOfTheDiskLeavesTheOtherShotsAlone)
{
    OpenWithRuns();
    static int left = -1;
    Create("Kept", "kept");
    Write(ShotIn(0, "Kept") + "/W.wvf", "wave");
    std::string const kept = Scalars(0, "Kept");
    for (int n = 0; left < 0; n++) { // until the fault would come behind the last operation
        left = n;
        Platform::SetFaultHook([](char const *) { return left-- != 0; });
        Create("*A1", "comment", true);
        Store("Run", "7");
        Rename("B1");
        Value("Run");
        expt.DeleteShot();
        Platform::SetFaultHook(nullptr);
        EXPECT_EQ(kept + "wave", Scalars(0, "Kept") + Read(ShotIn(0, "Kept") + "/W.wvf")) << n;
        for (char const *shot : {"A1", "B1"}) std::filesystem::remove_all(system.folder.native(ShotIn(0, shot)));
        EXPECT_EQ(0, Create("Next", "", true)) << n;
        EXPECT_EQ(Stamped(), Scalars(0, "Next")) << n;
        expt.DeleteShot();
    }
}

// ---- IsValidName ----

TEST_F(ShotLifeCycle, ANameIsValidWithoutForbiddenCharacters)
{
    std::string const forbidden[] = {"!\"#$*:;=?@\\{}~", "!\"#$&*,/:;<>?{|}~"};
    for (bool set : {false, true}) {
        for (int c = 0; c < 256; c++) {
            bool const valid = c == 0 || !std::strchr(forbidden[set].c_str(), c);
            std::string const letter(1, static_cast<char>(c));
            EXPECT_EQ(valid, expt.IsValidName(Dstr(letter), set)) << set << " " << c;
            EXPECT_EQ(valid, expt.IsValidName(Dstr("a" + letter), set)) << set << " " << c;
            EXPECT_EQ(valid, expt.IsValidName(Dstr(letter + "a"), set)) << set << " " << c;
        }
    }
}

TEST_F(ShotLifeCycle, WholeNamesAreTested)
{
    struct {
        char const *text;
        bool withTrue;
        bool withFalse;
    } const rows[] = {{"", true, true},         {"a/b", false, true},        {"a\\b", true, false},
                      {"a b", true, true},      {"A-1_(x)", true, true},     {" ", true, true},
                      {"\xC9\x80", true, true}, {"a=b@c", true, false},      {"a,b", false, true},
                      {"*", false, false},      {"%'()+-.[]^_`", true, true}};
    for (auto const &row : rows) {
        EXPECT_EQ(row.withTrue, expt.IsValidName(row.text, true)) << row.text;
        EXPECT_EQ(row.withFalse, expt.IsValidName(row.text, false)) << row.text;
    }
}

TEST_F(ShotLifeCycle, ACharacterBehindANulIsTestedToo)
{
    EXPECT_FALSE(expt.IsValidName(Dstr(std::string("a\0*", 3)), true));
    EXPECT_TRUE(expt.IsValidName(Dstr(std::string("a\0b", 3)), true));
}

} // namespace
