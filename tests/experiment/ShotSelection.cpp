#include <climits>

#include "support/ExperimentTest.h"

namespace {

class ShotSelection : public ExperimentTest {
protected:
    void WriteScalars(std::string const &shot, std::string const &lines) const
    {
        Write(ShotIn(0, shot) + "/Scalars.ini", lines.empty() ? lines : "[Fields]\r\n" + lines);
    }

    /// A shot in group 0 that is current, with these lines in its file.
    void Current(std::string const &shot, std::string const &lines = std::string())
    {
        MakeShot(0, shot);
        if (!lines.empty()) WriteScalars(shot, lines);
        Set(shot, 0);
    }

    std::string Stepped(std::string const &shot, int offset)
    {
        Set("*" + shot, 0);
        return Plain(expt.GetOffsetShotName(offset));
    }

    int Guess(std::string const &shot)
    {
        name = Dstr(shot);
        return expt.GuessPathFromShot(name);
    }
};

// ---- SetShot ----

TEST_F(ShotSelection, AShotIsSetInItsGroup)
{
    OpenWithRuns();
    EXPECT_TRUE(Set("A1", 0));
    EXPECT_EQ("A1 | " + path("X\\E\\Shots\\ShotA1") + " | 0", State());
    EXPECT_TRUE(Set("A1", 2));
    EXPECT_EQ("A1 | " + path("X\\Data\\RunB\\ShotA1") + " | 2", State());
}

TEST_F(ShotSelection, WithAGroupNumberTheDiskIsNotLookedAt)
{
    OpenWithRuns();
    int asked = 0;
    static int *counter;
    counter = &asked;
    Platform::SetFaultHook([](char const *) { return ++*counter > 0; });
    EXPECT_TRUE(Set("Ghost", 1));
    EXPECT_EQ(0, asked);
    EXPECT_EQ("", system.Names("X/Data/RunA"));
}

TEST_F(ShotSelection, AStarInFrontIsNotPartOfTheName)
{
    OpenWithRuns();
    EXPECT_TRUE(Set("*A1", 0));
    EXPECT_EQ("A1", CurrentShot());
    EXPECT_TRUE(Set("**A1", 0));
    EXPECT_EQ("*A1", CurrentShot());
    EXPECT_TRUE(Set("*", 0));
    EXPECT_EQ(" | " + path("X\\E\\Shots\\Shot") + " | 0", State());
}

TEST_F(ShotSelection, ANegativeGroupIsLookedFor)
{
    OpenWithRuns();
    MakeShot(2, "A1");
    for (int gnum : {-1, -2, INT_MIN}) {
        Set("", 0);
        EXPECT_TRUE(Set("*A1", gnum)) << gnum;
        EXPECT_EQ("A1 | " + path("X\\Data\\RunB\\ShotA1") + " | 2", State());
    }
}

TEST_F(ShotSelection, ABadGroupChangesNothing)
{
    OpenWithRuns();
    Set("A1", 1);
    std::string const state = State();
    for (int gnum : {-1, 3, 256, INT_MAX, INT_MIN}) EXPECT_FALSE(Set("B1", gnum)) << gnum;
    EXPECT_EQ(state, State());
}

TEST_F(ShotSelection, ABadGroupIsLoggedByItsNumber)
{
    OpenWithRuns();
    Logging = true;
    Set("B1", -1);
    Set("B1", 3);
    Set("B1", -7);
    EXPECT_EQ(LogLine("gnum is -1") + LogLine("gnum is 3") + LogLine("gnum is -1"), system.Log());
}

TEST_F(ShotSelection, SettingAShotIsLogged)
{
    OpenWithRuns();
    Logging = true;
    Set("A1", 0);
    EXPECT_EQ(LogLine("setting ini's in SetShot") + LogLine("Finished setting shot"), system.Log());
}

TEST_F(ShotSelection, WithoutLoggingNothingIsLogged)
{
    OpenWithRuns();
    Set("A1", 0);
    Set("B1", 9);
    Experiment().SetShot("A1", 0);
    EXPECT_EQ("(missing)", system.Log());
    EXPECT_EQ("", system.Heard());
}

TEST_F(ShotSelection, TheCurrentShotAgainIsNoChange)
{
    OpenWithRuns();
    Set("A1", 1);
    Logging = true;
    EXPECT_TRUE(Set("A1", 1));
    EXPECT_TRUE(Set("*A1", 1));
    EXPECT_EQ("(missing)", system.Log());
}

TEST_F(ShotSelection, AnotherCaseIsAChange)
{
    OpenWithRuns();
    Set("A1", 1);
    Logging = true;
    EXPECT_TRUE(Set("a1", 1));
    EXPECT_EQ("a1 | " + path("X\\Data\\RunA\\Shota1") + " | 1", State());
    EXPECT_EQ(LogLine("setting ini's in SetShot") + LogLine("Finished setting shot"), system.Log());
}

TEST_F(ShotSelection, WithoutAnExperimentSettingFails)
{
    EXPECT_FALSE(Set("A1", 0));
    EXPECT_EQ(" |  | -1", State());
    Logging = true;
    EXPECT_FALSE(Set("A1", -1));
    EXPECT_EQ(LogLine("experiment name not defined"), system.Log());
}

TEST_F(ShotSelection, WithoutAnExperimentNameTheFolderIsTheExperiments)
{
    OpenWithRuns();
    Set("A1", 2);
    expt.SetExperimentFolder(Dstr(path("X\\E\\")));
    EXPECT_FALSE(Set("B1", 0));
    EXPECT_EQ("A1 | " + path("X\\E\\") + " | -1", State());
}

TEST_F(ShotSelection, AnOpenExperimentHasNoShot)
{
    OpenWithRuns();
    EXPECT_EQ(" |  | 0", State());
    EXPECT_EQ("", Value("Shot"));
}

TEST_F(ShotSelection, OddNamesAreTakenAsTheyAre)
{
    OpenWithRuns();
    std::string const names[] = {"A\\B", "A/B", "..", "\xC9\xFF", "A*", "a b ", "[x]", std::string(3000, 'n')};
    for (std::string const &shot : names) {
        EXPECT_TRUE(Set(shot, 0)) << shot;
        EXPECT_EQ(shot + " | " + path("X\\E\\Shots\\Shot" + shot) + " | 0", State());
        EXPECT_EQ("", Value("Key")) << shot;
    }
}

// ---- The saved shot ----

TEST_F(ShotSelection, ATemporaryShotCanBeLeft)
{
    OpenWithRuns();
    Set("A1", 2);
    expt.SetTempShot("B1", 1);
    EXPECT_EQ("B1 | " + path("X\\Data\\RunA\\ShotB1") + " | 1", State());
    expt.ResetShot();
    EXPECT_EQ("A1 | " + path("X\\Data\\RunB\\ShotA1") + " | 2", State());
    expt.ResetShot();
    EXPECT_EQ("A1", CurrentShot());
}

TEST_F(ShotSelection, ThereIsOnePlaceForTheSavedShot)
{
    OpenWithRuns();
    Set("A1", 2);
    expt.SetTempShot("B1", 1);
    expt.SetTempShot("C1", 0);
    expt.ResetShot();
    EXPECT_EQ("B1 | " + path("X\\Data\\RunA\\ShotB1") + " | 1", State());
    expt.ResetShot();
    EXPECT_EQ("B1", CurrentShot());
}

TEST_F(ShotSelection, ATemporaryShotThatFailsHasSavedTheCurrentOne)
{
    OpenWithRuns();
    Set("A1", 2);
    expt.SetTempShot("None", -1);
    EXPECT_EQ("A1", CurrentShot());
    Set("C1", 0);
    expt.ResetShot();
    EXPECT_EQ("A1 | " + path("X\\Data\\RunB\\ShotA1") + " | 2", State());
}

TEST_F(ShotSelection, ResettingWithoutASavedShotSetsTheBareWord)
{
    OpenWithRuns();
    Set("A1", 2);
    expt.ResetShot();
    EXPECT_EQ(" | " + path("X\\E\\Shots\\Shot") + " | 0", State());
}

TEST_F(ShotSelection, ResettingAFreshExperimentIsNoChangeAtAll)
{
    OpenWithRuns();
    Logging = true;
    expt.ResetShot();
    EXPECT_EQ(" |  | 0", State());
    EXPECT_EQ("(missing)", system.Log());
}

// ---- Reading values ----

TEST_F(ShotSelection, AValueComesFromTheFieldsOfTheShot)
{
    OpenWithRuns();
    Current("A1", "Run=7\r\nEmpty=\r\nBlank= \r\n Lead=1\r\nSpaced =2\r\n;c=3\r\nTail=a b  \r\n[Other]\r\nFar=4");
    struct {
        char const *key;
        char const *value;
    } const rows[] = {{"Run", "7"},   {"rUN", "7"},     {"Empty", ""},    {"Blank", " "}, {"Lead", ""},
                      {" Lead", "1"}, {"Spaced ", "2"}, {"Spaced", ""},   {";c", ""},     {"Far", ""},
                      {"Ru", ""},     {"Run ", ""},     {"Tail", "a b  "}};
    for (auto const &row : rows) EXPECT_EQ(row.value, Value(row.key)) << row.key;
}

TEST_F(ShotSelection, TheKeyShotIsTheNameWhateverTheFileHolds)
{
    OpenWithRuns();
    Current("A1", "Shot=other\r\nSHOT=third");
    for (char const *key : {"Shot", "SHOT", "shot", "sHoT"}) EXPECT_EQ("A1", Value(key)) << key;
    EXPECT_EQ("", Value("Shots"));
}

TEST_F(ShotSelection, TheKeyShotReadsNoFile)
{
    OpenWithRuns();
    Current("A1");
    EXPECT_EQ("A1", Value("Shot"));
    EXPECT_EQ("", system.Names(ShotIn(0, "A1")));
}

TEST_F(ShotSelection, APairOfKeysFallsBackToTheSecond)
{
    OpenWithRuns();
    Current("A1", "A=1\r\nB=2\r\nEmpty=\r\nBlank= \r\nB::C=3\r\nX::Y=4\r\n:B=5\r\n");
    struct {
        char const *key;
        char const *value;
    } const rows[] = {{"A::B", "1"},         {"None::B", "2"},    {"Empty::B", "2"}, {"Blank::B", " "},
                      {"None::Neither", ""}, {"None::B::C", "3"}, {"A::B::C", "1"},  {"X::Y", ""},
                      {"::B", "2"},          {"A::", "1"},        {"None::", ""},    {"None:::B", "5"},
                      {"A:B", ""},           {"::", ""},          {"a::b", "1"}};
    for (auto const &row : rows) EXPECT_EQ(row.value, Value(row.key)) << row.key;
}

TEST_F(ShotSelection, WithoutAShotThereIsNoValue)
{
    OpenWithRuns();
    for (char const *key : {"Shot", "Run", "", "A::B"}) EXPECT_EQ("", Value(key)) << key;
    EXPECT_EQ("", system.Names("X/E/Shots"));
}

TEST_F(ShotSelection, ReadingMakesAMissingFileAndNotTheCache)
{
    OpenWithRuns();
    Current("A1");
    EXPECT_EQ("", Value("Run"));
    EXPECT_EQ("Scalars.ini", system.Names(ShotIn(0, "A1")));
    EXPECT_EQ("", Scalars(0, "A1"));
    EXPECT_EQ("(missing)", Cache(0));
}

TEST_F(ShotSelection, ReadingMakesNoFolder)
{
    OpenWithRuns();
    Set("Ghost", 0);
    EXPECT_EQ("", Value("Run"));
    EXPECT_FALSE(Has(ShotIn(0, "Ghost")));
}

TEST_F(ShotSelection, AnEmptyFileCostsTheTenRetriesAtEachLoad)
{
    OpenWithRuns();
    Current("A1");
    Write(ShotIn(0, "A1") + "/Scalars.ini", "");
    Value("Run");
    Value("Run");
    EXPECT_EQ(std::vector<int>(20, 50), system.Sleeps());
}

TEST_F(ShotSelection, TheCacheIsNeverRead)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    Write("X/E/Shots/ScalarCache.ini", "[ShotA1]\r\nRun=8\r\nOther=9");
    EXPECT_EQ("7", Value("Run"));
    EXPECT_EQ("", Value("Other"));
}

TEST_F(ShotSelection, EveryReadSeesWhatAnotherProcessHasWritten)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    EXPECT_EQ("7", Value("Run"));
    WriteScalars("A1", "Run=8");
    EXPECT_EQ("8", Value("Run"));
    WriteScalars("A1", "Other=9");
    EXPECT_EQ("", Value("Run"));
}

TEST_F(ShotSelection, UnreadableFilesGiveNoValue)
{
    OpenWithRuns();
    system.folder.MakeFolder(ShotIn(0, "A1") + "/Scalars.ini");
    Set("A1", 0);
    EXPECT_EQ("", Value("Run"));
    WriteScalars("B1", "Run=1");
    Set("B1", 0);
    Platform::SetFaultHook([](char const *) { return false; });
    EXPECT_EQ("", Value("Run"));
    Platform::SetFaultHook(nullptr);
    EXPECT_EQ("[Fields]\r\nRun=1", Scalars(0, "B1"));
}

TEST_F(ShotSelection, AFileOfAnyTextTakesValues)
{
    OpenWithRuns();
    std::string every;
    for (int i = 1; i < 256; i++) every += static_cast<char>(i);
    Current("A1");
    for (std::string const &file : {every, std::string("["), std::string("]"), std::string("[Fields"),
                                    std::string("[Fields]x"), std::string("Run=1"), std::string("\n\n\n"),
                                    std::string("="), std::string("[Fields]\n="), std::string("[]\nRun=1")}) {
        Write(ShotIn(0, "A1") + "/Scalars.ini", file);
        Store("Key", "1");
        EXPECT_EQ("1", Value("Key")) << file;
    }
}

// Lines are found up to a NUL, so that what stands behind one can't be told to be a line of its own.
TEST_F(ShotSelection, AFileWithNulsDoesNoHarm)
{
    OpenWithRuns();
    Current("A1");
    for (std::string const &file : {std::string("[Fields]\nRun=1\0", 15), std::string("\0[Fields]\nRun=1", 15),
                                    std::string("[Fi\0elds]\nRun=1", 15), std::string(100, '\0')}) {
        Write(ShotIn(0, "A1") + "/Scalars.ini", file);
        Value("Run");
        Store("Key", "1");
        Value("Key");
        expt.SetShotCacheData();
    }
    Write(ShotIn(0, "A1") + "/Scalars.ini", "[Fields]\nRun=1\n");
    EXPECT_EQ("1", Value("Run"));
}

// ---- Writing values ----

TEST_F(ShotSelection, AValueGoesToTheShotAndToTheCacheAtOnce)
{
    OpenWithRuns();
    Current("A1");
    Store("Run", "7");
    EXPECT_EQ("[Fields]\r\nRun=7", Scalars(0, "A1"));
    EXPECT_EQ("[ShotA1]\r\nRun=7", Cache(0));
    Store("Key", "x=y");
    EXPECT_EQ("[Fields]\r\nRun=7\r\nKey=x=y", Scalars(0, "A1"));
    EXPECT_EQ("[ShotA1]\r\nRun=7\r\nKey=x=y", Cache(0));
}

TEST_F(ShotSelection, EachGroupHasItsCacheWithASectionForEachShot)
{
    OpenWithRuns();
    MakeShot(2, "A1");
    MakeShot(2, "B1");
    Set("A1", 2);
    Store("Run", "1");
    Set("B1", 2);
    Store("Run", "2");
    Set("A1", 2);
    Store("Run", "3");
    EXPECT_EQ("[ShotA1]\r\nRun=3\r\n[ShotB1]\r\nRun=2", Cache(2));
    EXPECT_EQ("(missing)(missing)", Cache(0) + Cache(1));
}

TEST_F(ShotSelection, WritingReplacesAKeyInAnyCaseAndKeepsTheRest)
{
    OpenWithRuns();
    Current("A1", "; note\r\nrun=1\r\nKey=2\r\n[Other]\r\nx=1");
    Store("Run", "7");
    EXPECT_EQ("[Fields]\r\n; note\r\nRun=7\r\nKey=2\r\n[Other]\r\nx=1", Scalars(0, "A1"));
    EXPECT_EQ("[ShotA1]\r\nRun=7", Cache(0));
}

TEST_F(ShotSelection, ValuesAreStoredAsGiven)
{
    OpenWithRuns();
    Current("A1");
    for (char const *value : {"x", " x", "x ", "  ", " ", "=", "[x]", "\t", "\xC9\xFF", "a::b", "![Run]"}) {
        Store("Key", value);
        EXPECT_EQ(std::string("[Fields]\r\nKey=") + value, Scalars(0, "A1"));
        EXPECT_EQ(std::string("[ShotA1]\r\nKey=") + value, Cache(0));
        EXPECT_EQ(value, Value("Key"));
    }
}

TEST_F(ShotSelection, AnEmptyValueDeletesTheKeyFromBothFiles)
{
    OpenWithRuns();
    Current("A1", "Run=7\r\nKey=1");
    Write("X/E/Shots/ScalarCache.ini", "[ShotB1]\r\nKey=1\r\n[ShotA1]\r\nKey=1\r\nRun=7");
    Store("kEY", "");
    EXPECT_EQ("[Fields]\r\nRun=7", Scalars(0, "A1"));
    EXPECT_EQ("[ShotB1]\r\nKey=1\r\n[ShotA1]\r\nRun=7", Cache(0));
}

TEST_F(ShotSelection, DeletingWhatIsNotThereLeavesEmptyFiles)
{
    OpenWithRuns();
    Current("A1");
    Store("Key", "");
    EXPECT_EQ("", Scalars(0, "A1"));
    EXPECT_EQ("", Cache(0));
}

TEST_F(ShotSelection, WithoutShotOrKeyNothingIsWritten)
{
    OpenWithRuns();
    Store("Key", "1");
    EXPECT_EQ("", system.Names("X/E/Shots"));
    Current("A1");
    Store("", "1");
    Store("", "");
    EXPECT_EQ("ShotA1", system.Names("X/E/Shots"));
    EXPECT_EQ("", system.Names(ShotIn(0, "A1")));
}

TEST_F(ShotSelection, TheShotsNameIsNotTakenAsComment)
{
    OpenWithRuns();
    Current("Ab1");
    for (char const *key : {"Comment", "COMMENT", "comment"}) {
        for (char const *value : {"Ab1", "aB1"}) {
            Store(key, value);
            EXPECT_EQ("7:Attempt to write shot name to comment, in base\n", system.Heard()) << key << value;
        }
    }
    EXPECT_EQ("", system.Names(ShotIn(0, "Ab1")));
    EXPECT_EQ("(missing)", Cache(0));
}

TEST_F(ShotSelection, OtherCommentsAndTheNameUnderOtherKeysAreStored)
{
    OpenWithRuns();
    Current("Ab1");
    Store("Comment", "Ab1 ");
    Store("Title", "Ab1");
    Store("Comments", "ab1");
    EXPECT_EQ("[Fields]\r\nComment=Ab1 \r\nTitle=Ab1\r\nComments=ab1", Scalars(0, "Ab1"));
    EXPECT_EQ("", system.Heard());
}

TEST_F(ShotSelection, TheMessageAboutCommentsGoesToStandardOutputWithoutANotifier)
{
    OpenWithRuns();
    Current("A1");
    SetNotify(nullptr);
    testing::internal::CaptureStdout();
    Store("Comment", "a1");
    EXPECT_EQ("Attempt to write shot name to comment, in base\n", testing::internal::GetCapturedStdout());
}

// An empty value equals the name of the shot without a name, so that its comment can't be deleted.
TEST_F(ShotSelection, TheCommentOfTheNamelessShotCannotBeDeleted)
{
    OpenWithRuns();
    MakeShot(0, "");
    Set("A1", 0);
    Set("", 0);
    Store("Comment", "x");
    Store("Comment", "");
    EXPECT_EQ("7:Attempt to write shot name to comment, in base\n", system.Heard());
    EXPECT_EQ("[Fields]\r\nComment=x", Scalars(0, ""));
}

TEST_F(ShotSelection, TheKeyShotCanBeStoredThoughItIsNeverRead)
{
    OpenWithRuns();
    Current("A1");
    Store("Shot", "other");
    EXPECT_EQ("[Fields]\r\nShot=other", Scalars(0, "A1"));
    EXPECT_EQ("A1", Value("Shot"));
}

TEST_F(ShotSelection, AMissingShotFolderStillGetsItsCache)
{
    OpenWithRuns();
    Set("Ghost", 0);
    Store("Run", "7");
    EXPECT_FALSE(Has(ShotIn(0, "Ghost")));
    EXPECT_EQ("[ShotGhost]\r\nRun=7", Cache(0));
    EXPECT_EQ("", Value("Run"));
}

TEST_F(ShotSelection, ALineBreakInAValueMakesALineOfItsOwn)
{
    OpenWithRuns();
    Current("A1");
    Store("Run", "7\r\nKey=8");
    EXPECT_EQ("7", Value("Run"));
    EXPECT_EQ("8", Value("Key"));
}

TEST_F(ShotSelection, AnyFaultOfTheDiskWhileAValueIsWrittenEndsWell)
{
    OpenWithRuns();
    static int left = -1;
    for (int n = 0; left < 0; n++) { // until the fault would come behind the last operation
        MakeShot(0, "A1");
        Set("A1", 0);
        Store("Old", "1");
        left = n;
        Platform::SetFaultHook([](char const *) { return left-- != 0; });
        Store("Run", "7");
        Value("Run");
        Platform::SetFaultHook(nullptr);
        Store("Run", "8");
        EXPECT_EQ("8", Value("Run")) << n;
        std::filesystem::remove_all(system.folder.native("X/E/Shots/ShotA1"));
    }
}

// ---- The cache ----

TEST_F(ShotSelection, TheCacheEntryIsRebuiltFromTheShot)
{
    OpenWithRuns();
    Current("A1", "Run=7\r\n; note\r\nKey = 1 ");
    Write("X/E/Shots/ScalarCache.ini", "[ShotA1]\r\nGone=1\r\n[ShotB1]\r\nKey=1");
    expt.SetShotCacheData();
    EXPECT_EQ("[ShotA1]\r\nRun=7\r\n; note\r\nKey = 1 \r\n[ShotB1]\r\nKey=1", Cache(0));
    EXPECT_EQ("[Fields]\r\nRun=7\r\n; note\r\nKey = 1 ", Scalars(0, "A1"));
}

TEST_F(ShotSelection, AMissingCacheIsMadeAndAShotWithoutValuesHasAnEmptySection)
{
    OpenWithRuns();
    Current("A1");
    expt.SetShotCacheData();
    EXPECT_EQ("[ShotA1]\r\n", Cache(0));
    EXPECT_EQ("", Scalars(0, "A1"));
}

TEST_F(ShotSelection, RebuildingTheCacheWithoutAShotWritesNothing)
{
    OpenWithRuns();
    std::string const names = system.Names("X/E");
    expt.SetShotCacheData();
    EXPECT_EQ("", system.Names("X/E/Shots"));
    EXPECT_EQ(names, system.Names("X/E"));
}

TEST_F(ShotSelection, RebuildingTheCacheInAPauseLeavesTheStoresWithoutASection)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    expt.SetPauseIO(true);
    EXPECT_EQ("7", Value("Run"));
    expt.SetShotCacheData();
    EXPECT_EQ("", Value("Run"));
    Store("Run", "8");
    EXPECT_EQ("[Fields]\r\nRun=7", Scalars(0, "A1"));
    EXPECT_EQ("[ShotA1]\r\nRun=7", Cache(0));
    expt.SetPauseIO(false);
    EXPECT_EQ("7", Value("Run"));
}

TEST_F(ShotSelection, RebuildingTheCacheInAPauseReadsTheShotAgain)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    expt.SetPauseIO(true);
    WriteScalars("A1", "Run=9");
    expt.SetShotCacheData();
    EXPECT_EQ("[ShotA1]\r\nRun=9", Cache(0));
}

// ---- Shots of data files, and where shots are ----

TEST_F(ShotSelection, TheShotAndGroupOfADataFileName)
{
    OpenWithRuns();
    Set("Cur", 1);
    MakeShot(2, "A1");
    system.folder.MakeFolder(ShotIn(0, "A1") + "/sub");
    struct {
        char const *file;
        char const *shot;
        int group;
    } const rows[] = {{"W", "Cur", 1},
                      {"", "Cur", 1},
                      {"\\W", "Cur", 1},
                      {"A1\\W", "A1", 0},
                      {"A1\\", "A1", 0},
                      {"a1\\W", "a1", 0},
                      {"A1\\sub\\W", "A1\\sub", 0},
                      {"None\\W", "None", -1},
                      {"A1\\x\\W", "A1\\x", -1}};
    for (auto const &row : rows) {
        DString shot = "before";
        EXPECT_EQ(row.group, expt.GetShotGNumFromFileName(row.file, shot)) << row.file;
        EXPECT_EQ(row.shot, Plain(shot)) << row.file;
    }
}

TEST_F(ShotSelection, TheCurrentGroupWinsOverALowerOne)
{
    OpenWithRuns();
    for (int group : {0, 1, 2}) MakeShot(group, "A1");
    for (int group : {2, 0, 1}) {
        Set("Cur", group);
        EXPECT_EQ(group, Guess("A1"));
    }
}

TEST_F(ShotSelection, OtherGroupsAreTriedInTheirOrder)
{
    OpenWithRuns();
    for (int group : {1, 2}) MakeShot(group, "A1");
    MakeShot(0, "B1");
    MakeShot(1, "B1");
    EXPECT_EQ(1, Guess("A1"));
    Set("Cur", 2);
    EXPECT_EQ(0, Guess("B1"));
    EXPECT_EQ(-1, Guess("None"));
}

TEST_F(ShotSelection, WithoutACurrentGroupAllAreTriedInTheirOrder)
{
    OpenWithRuns();
    for (int group : {1, 2}) MakeShot(group, "A1");
    Set("Cur", 2);
    expt.SetExperimentFolder("");
    EXPECT_EQ(1, Guess("A1"));
    EXPECT_EQ(-1, Experiment().GuessPathFromShot("A1"));
}

TEST_F(ShotSelection, AShotIsAFolderWhateverItsCaseAndNeverAFile)
{
    OpenWithRuns();
    system.folder.MakeFolder("X/Data/RunB/sHOTab");
    Write("X/E/Shots/ShotAB", "a file");
    EXPECT_EQ(2, Guess("AB"));
    EXPECT_EQ("AB", Plain(name));
    EXPECT_EQ(-1, Guess(""));
    system.folder.MakeFolder("X/Data/RunA/Shot");
    EXPECT_EQ(1, Guess(""));
}

TEST_F(ShotSelection, AGuessTestsAtMostOneFolderForEachGroup)
{
    OpenWithRuns();
    static int searches;
    searches = 0;
    Platform::SetFaultHook([](char const *operation) {
        if (std::string(operation) == "Search") searches++;
        return true;
    });
    EXPECT_EQ(-1, Guess("None"));
    EXPECT_LE(searches, 3);
}

// ---- The number in a name ----

TEST_F(ShotSelection, TheNumberInAShotNameIsSteppedInItsWidth)
{
    OpenWithRuns();
    struct {
        char const *shot;
        int offset;
        char const *stepped;
    } const rows[] = {{"A008", 0, "A008"},
                      {"A008", 2, "A010"},
                      {"A099", 1, "A100"},
                      {"A999", 1, "A1000"},
                      {"A1000", -1, "A0999"},
                      {"A000", -1, "A-001"},
                      {"A5", -8, "A-3"},
                      {"A05", -17, "A-12"},
                      {"7", 1, "8"},
                      {"007", -8, "-001"},
                      {"A1B02", 1, "A1B03"},
                      {"ABC", 1, "ABC"},
                      {"ABC", -1, "ABC"},
                      {"A1b", 1, "A1b"},
                      {"A1 ", 1, "A1 "},
                      {"", 1, ""},
                      {"A1.5", 1, "A1.6"},
                      // A sign and blanks in front of the digits belong to the number.
                      {"A-5", 1, "A-04"},
                      {"A+7", 1, "A08"},
                      {"A 7", 1, "A08"},
                      {"A1 2", 1, "A002"},
                      // Printed in twenty characters, or without a width.
                      {"A00000000000000000007", 1, "A00000000000000000008"},
                      {"A000000000000000000007", 1, "A8"},
                      {"A4294967295", 1, "A0000000000"}};
    for (auto const &row : rows) EXPECT_EQ(row.stepped, Stepped(row.shot, row.offset)) << row.shot << row.offset;
}

TEST_F(ShotSelection, SteppingBeyondAnIntIsDefined)
{
    OpenWithRuns();
    for (int offset : {INT_MAX, INT_MIN, 1, -1})
        for (char const *shot : {"A2147483647", "A-2147483648", "A99999999999999999999999", "A0"})
            EXPECT_EQ('A', Stepped(shot, offset)[0]) << shot << offset;
}

TEST_F(ShotSelection, SteppingDoesNotLookAtTheDisk)
{
    OpenWithRuns();
    Set("A1", 0);
    EXPECT_EQ("A2", Plain(expt.GetOffsetShotName(1)));
    EXPECT_EQ("", system.Names("X/E/Shots"));
    EXPECT_EQ("A1", CurrentShot());
}

// ---- Pauses ----

TEST_F(ShotSelection, APauseMakesBothFilesAndReadsThemOnce)
{
    OpenWithRuns();
    Current("A1");
    expt.SetPauseIO(true);
    EXPECT_EQ("", Scalars(0, "A1"));
    EXPECT_EQ("", Cache(0));
}

TEST_F(ShotSelection, InAPauseAReaderDoesNotSeeOthers)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    expt.SetPauseIO(true);
    WriteScalars("A1", "Run=8");
    EXPECT_EQ("7", Value("Run"));
    EXPECT_EQ("7", Value("None::Run"));
    expt.SetPauseIO(false);
    EXPECT_EQ("8", Value("Run"));
}

TEST_F(ShotSelection, APauseBeginsWithWhatIsOnTheDiskThen)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    EXPECT_EQ("7", Value("Run"));
    WriteScalars("A1", "Run=8");
    expt.SetPauseIO(true);
    EXPECT_EQ("8", Value("Run"));
}

// Loading the files for the pause ends the hold that the pause has just begun.
TEST_F(ShotSelection, InAPauseEachWriteIsOnDiskAtOnce)
{
    OpenWithRuns();
    Current("A1", "Key=1\r\nGone=2");
    expt.SetPauseIO(true);
    Store("Run", "7");
    EXPECT_EQ("[Fields]\r\nKey=1\r\nGone=2\r\nRun=7", Scalars(0, "A1"));
    EXPECT_EQ("[ShotA1]\r\nRun=7", Cache(0));
    Store("Gone", "");
    EXPECT_EQ("[Fields]\r\nKey=1\r\nRun=7", Scalars(0, "A1"));
    EXPECT_EQ("7", Value("Run"));
    EXPECT_EQ("", Value("Gone"));
}

TEST_F(ShotSelection, AWriteInAPausePutsTheMemoryOverWhatOthersWrote)
{
    OpenWithRuns();
    Current("A1", "Key=1");
    expt.SetPauseIO(true);
    WriteScalars("A1", "Other=1");
    Store("Run", "7");
    EXPECT_EQ("[Fields]\r\nKey=1\r\nRun=7", Scalars(0, "A1"));
}

TEST_F(ShotSelection, TheEndOfAPauseWritesNothing)
{
    OpenWithRuns();
    Current("A1", "Key=1");
    expt.SetPauseIO(true);
    Store("Run", "7");
    WriteScalars("A1", "Other=1");
    Write("X/E/Shots/ScalarCache.ini", "[Other]\r\n");
    expt.SetPauseIO(false);
    EXPECT_EQ("[Fields]\r\nOther=1", Scalars(0, "A1"));
    EXPECT_EQ("[Other]\r\n", Cache(0));
}

TEST_F(ShotSelection, APauseInAPauseReadsNothing)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    expt.SetPauseIO(false);
    expt.SetPauseIO(true);
    WriteScalars("A1", "Run=8");
    expt.SetPauseIO(true);
    EXPECT_EQ("7", Value("Run"));
}

TEST_F(ShotSelection, APauseSparesTheRetriesOfAnEmptyFile)
{
    OpenWithRuns();
    Current("A1");
    expt.SetPauseIO(true);
    system.Sleeps();
    for (int i = 0; i < 5; i++) Value("Run");
    EXPECT_EQ(std::vector<int>(), system.Sleeps());
}

TEST_F(ShotSelection, InAPauseTheShotsNameIsNotTakenAsCommentEither)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    expt.SetPauseIO(true);
    Store("Comment", "a1");
    EXPECT_EQ("7:Attempt to write shot name to comment, in base\n", system.Heard());
    EXPECT_EQ("[Fields]\r\nRun=7", Scalars(0, "A1"));
}

TEST_F(ShotSelection, AnotherShotEndsThePauseAndBeginsNone)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    MakeShot(0, "B1");
    WriteScalars("B1", "Run=1");
    expt.SetPauseIO(true);
    Set("B1", 0);
    EXPECT_EQ("1", Value("Run"));
    WriteScalars("B1", "Run=2");
    EXPECT_EQ("2", Value("Run"));
}

TEST_F(ShotSelection, TheEndOfAPauseByAnotherShotWritesNothing)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    expt.SetPauseIO(true);
    Store("Key", "1");
    WriteScalars("A1", "Other=1");
    Set("B1", 1);
    EXPECT_EQ("[Fields]\r\nOther=1", Scalars(0, "A1"));
    EXPECT_EQ("", system.Names("X/Data/RunA"));
}

TEST_F(ShotSelection, ThePauseGoesOnWhenTheShotDoesNotChange)
{
    OpenWithRuns();
    Current("A1", "Run=7");
    expt.SetPauseIO(true);
    WriteScalars("A1", "Run=8");
    EXPECT_TRUE(Set("A1", 0));
    EXPECT_TRUE(Set("*A1", -1));
    EXPECT_FALSE(Set("B1", 9));
    EXPECT_FALSE(Set("None", -1));
    EXPECT_EQ("7", Value("Run"));
}

TEST_F(ShotSelection, AnotherCaseOfTheNameEndsThePause)
{
    OpenWithRuns();
    Current("Ab", "Run=7");
    expt.SetPauseIO(true);
    WriteScalars("Ab", "Run=8");
    Set("aB", 0);
    EXPECT_EQ("8", Value("Run"));
}

// Where the shot's file can't be loaded the hold stays, and there is no name to write to afterwards.
TEST_F(ShotSelection, InAPauseWithoutAFolderValuesStayInMemoryAndAreLost)
{
    OpenWithRuns();
    Set("Ghost", 0);
    expt.SetPauseIO(true);
    Store("Run", "7");
    EXPECT_EQ("7", Value("Run"));
    EXPECT_EQ("[ShotGhost]\r\nRun=7", Cache(0));
    MakeShot(0, "Ghost");
    expt.SetPauseIO(false);
    EXPECT_EQ("", system.Names(ShotIn(0, "Ghost")));
    EXPECT_EQ("", Value("Run"));
}

TEST_F(ShotSelection, APauseWithoutAShotDoesNoHarm)
{
    OpenWithRuns();
    std::string const names = system.Names("X/E");
    expt.SetPauseIO(true);
    Store("Run", "7");
    EXPECT_EQ("", Value("Run"));
    expt.SetPauseIO(false);
    EXPECT_EQ(names, system.Names("X/E"));
    EXPECT_EQ("", system.Names("X/E/Shots"));
    Experiment fresh;
    fresh.SetPauseIO(true);
    fresh.SetPauseIO(false);
}

TEST_F(ShotSelection, AShotSetInAPauseWithoutAShotEndsIt)
{
    OpenWithRuns();
    expt.SetPauseIO(true);
    Current("A1", "Run=7");
    EXPECT_EQ("7", Value("Run"));
    WriteScalars("A1", "Run=8");
    EXPECT_EQ("8", Value("Run"));
}

} // namespace
