#include "interfaces/VodrelC.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "experiment/Experiment.h"
#include "files/PathUtils.h"
#include "support/FreshSystem.h"
#include "support/Hex.h"

namespace {

/// A stand-alone client in a fresh system; its installation is the folder "vodrel" there, its experiment `X\E`.
class VodrelC : public testing::Test {
protected:
    VodrelC() : system(false) { Expt = Experiment(); }
    ~VodrelC() override { Expt = Experiment(); }

    std::string path(std::string const &relative) const { return system.path(relative); }
    std::string Read(std::string const &relative) const { return system.folder.Read(relative); }

    void Initialize(std::string const &suffix = std::string()) { InitializeVodrelC((path("vodrel") + suffix).c_str()); }
    void Open()
    {
        Initialize();
        SetExperimentC(path("X\\E").c_str());
    }
    void OpenWithShot()
    {
        Open();
        CreateShotC("A1");
    }

    /// The text of a code, with the room that it is given, and `^` for what lies untouched behind it.
    static std::string Text(int code, int room = 1000)
    {
        std::string buffer(1000, '^');
        int length = room;
        GetStringC(code, &length, buffer.data());
        EXPECT_EQ('^', buffer[static_cast<std::size_t>(length)]);
        return buffer.substr(0, static_cast<std::size_t>(length));
    }
    static std::string StringData(char const *name, int room = 1000)
    {
        std::string buffer(1000, '^');
        int length = room;
        GetStringDataC(name, &length, buffer.data());
        EXPECT_EQ('^', buffer[static_cast<std::size_t>(length)]);
        return buffer.substr(0, static_cast<std::size_t>(length));
    }

    /// What an action prints.
    template <typename Action>
    static std::string Printed(Action action)
    {
        testing::internal::CaptureStdout();
        action();
        return testing::internal::GetCapturedStdout();
    }

    using Bits = std::vector<std::uint32_t>;

    /// The bits of what `GetWaveformC` gives, after a look at the canary behind them.
    static Bits Values(char const *name, int n, float start, float step)
    {
        std::vector<float> values(n > 0 ? static_cast<std::size_t>(n) + 1 : 1, -77.0f);
        GetWaveformC(name, n, start, step, values.data());
        EXPECT_EQ(-77.0f, values.back());
        values.pop_back();
        return BitsOfAll(values);
    }
    static Bits BitsOfAll(std::vector<float> const &values)
    {
        Bits bits;
        for (float const value : values) bits.push_back(BitsOf(value));
        return bits;
    }

    std::string ShotFile(std::string const &file) const { return Read("X/E/Shots/ShotA1/" + file); }

    /// The first lines of a new log.
    std::string LogStart() const
    {
        std::string const date = FreshSystem::Date;
        return LogLine("Log initialized at " + date) + LogLine("Vodrel running on " + Plain(GetComputerNameD())) +
               LogLine("Vodrelpath is " + Plain(GetVodrelPath())) +
               LogLine("InitializeVodrelC called from external code at " + date);
    }

    FreshSystem system;
};

/// Remembers which shots it was told of.
class ShotListener : public QNotify {
public:
    void ShotChanged(DString name, int gnum, long long word, bool flag) override
    {
        heard +=
            Plain(name) + " " + std::to_string(gnum) + " " + std::to_string(word) + (flag ? " true\n" : " false\n");
    }
    std::string heard;
};

std::vector<float> const Wave = {1.0f, 2.0f, -0.5f};

// ---- The frame ----

TEST_F(VodrelC, TheTestFunctionAnswers316)
{
    EXPECT_EQ(316, TestFuncC());
}

TEST_F(VodrelC, TheTestTextIsCutToTheRoom)
{
    struct {
        int room;
        char const *text;
    } const rows[] = {{1000, "Test string from Vodrel"},
                      {24, "Test string from Vodrel"},
                      {23, "Test string from Vodrel"},
                      {22, "Test string from Vodre"},
                      {4, "Test"},
                      {1, "T"},
                      {0, ""},
                      {-1, ""},
                      {INT_MIN, ""}};
    for (auto const &row : rows) EXPECT_EQ(row.text, Text(99, row.room)) << row.room;
}

TEST_F(VodrelC, NoNulIsWrittenBehindAText)
{
    char buffer[] = "^^^^^^^^^^^^^^^^^^^^^^^^^^^^";
    int length = INT_MAX;
    GetStringC(99, &length, buffer);
    EXPECT_EQ(23, length);
    EXPECT_STREQ("Test string from Vodrel^^^^^", buffer);
}

TEST_F(VodrelC, UnknownCodesGiveNothing)
{
    for (int code : {7, 8, 98, 100, -1, -99, INT_MAX, INT_MIN, 99 + 65536}) {
        int length = 50;
        GetStringC(code, &length, nullptr);
        EXPECT_EQ(0, length) << code;
        EXPECT_EQ("", Text(code)) << code;
    }
}

TEST_F(VodrelC, ABufferWithoutRoomIsNotTouched)
{
    int length = 0;
    GetStringC(99, &length, nullptr);
    EXPECT_EQ(0, length);
    GetStringDataC("Run", &length, nullptr);
    EXPECT_EQ(0, length);
}

// ---- Start-up ----

TEST_F(VodrelC, StartingWritesANewLog)
{
    Initialize();
    EXPECT_EQ(LogStart(), system.Log());
    EXPECT_EQ(path("vodrel"), Plain(GetVodrelPath()));
    EXPECT_FALSE(Logging);
}

TEST_F(VodrelC, StartingMakesThePerUserFolderWithItsSettings)
{
    Initialize();
    EXPECT_EQ("Log.txt Vodrel.ini", system.Names("user/Vodrel"));
    EXPECT_FALSE(system.folder.Has("vodrel"));
}

TEST_F(VodrelC, ASuffixAsksForLinesAboutProgress)
{
    Initialize("$L");
    EXPECT_TRUE(Logging);
    EXPECT_EQ(path("vodrel"), Plain(GetVodrelPath()));
    EXPECT_EQ(LogStart(), system.Log());
}

TEST_F(VodrelC, TheSuffixCountsAtTheEndOnlyAndOnce)
{
    InitializeVodrelC(path("vod$Lrel").c_str());
    EXPECT_FALSE(Logging);
    EXPECT_EQ(path("vod$Lrel"), Plain(GetVodrelPath()));
    Initialize("$L$L");
    EXPECT_TRUE(Logging);
    EXPECT_EQ(path("vodrel$L"), Plain(GetVodrelPath()));
    Initialize("$");
    EXPECT_FALSE(Logging);
    EXPECT_EQ(path("vodrel$"), Plain(GetVodrelPath()));
}

TEST_F(VodrelC, TheSamePathAgainOnlyWritesALine)
{
    Initialize("$L");
    std::string const again = path("VODREL");
    ShotListener listener;
    SetQNotify(&listener);
    std::string const log = system.Log();
    InitializeVodrelC(again.c_str());
    EXPECT_EQ(log + LogLine("InitializeVodrelC called again"), system.Log());
    EXPECT_TRUE(Logging);
    EXPECT_EQ(&listener, QNot);
    EXPECT_EQ(path("vodrel"), Plain(GetVodrelPath()));
}

TEST_F(VodrelC, ARepeatDoesNotTurnOnLogging)
{
    Initialize();
    Initialize("$L");
    EXPECT_FALSE(Logging);
    EXPECT_EQ(LogStart() + LogLine("InitializeVodrelC called again"), system.Log());
}

TEST_F(VodrelC, AnotherPathStartsAgain)
{
    Initialize("$L");
    ShotListener listener;
    SetQNotify(&listener);
    Log("to be lost");
    StandingClock::counts += 500;
    InitializeVodrelC(path("other").c_str());
    EXPECT_EQ(path("other"), Plain(GetVodrelPath()));
    EXPECT_EQ(LogStart(), system.Log());
    EXPECT_FALSE(Logging);
    EXPECT_EQ(nullptr, QNot);
}

TEST_F(VodrelC, AnotherPathKeepsTheExperiment)
{
    OpenWithShot();
    InitializeVodrelC(path("other").c_str());
    EXPECT_EQ("A1", Text(1));
    EXPECT_EQ("E", Text(6));
}

TEST_F(VodrelC, TheTimeInTheLogBeginsWithTheStart)
{
    StandingClock::counts = 777000;
    Initialize();
    StandingClock::counts += 12500;
    Initialize();
    EXPECT_EQ(LogStart() + "InitializeVodrelC called again by 1.25e+01\r\n", system.Log());
}

TEST_F(VodrelC, ANativeAbsoluteInstallationFolderIsTaken)
{
    for (char const *suffix : {"", "$L"}) {
        InitializeVodrelC(path("between").c_str());
        InitializeVodrelC((system.folder.native("vodrel") + suffix).c_str());
        EXPECT_EQ(path("vodrel"), Plain(GetVodrelPath()));
        EXPECT_EQ(*suffix != '\0', Logging);
    }
    InitializeVodrelC(system.folder.native("VODREL").c_str());
    EXPECT_EQ(LogStart() + LogLine("InitializeVodrelC called again"), system.Log());
}

// The path as given is compared with the full one.
TEST_F(VodrelC, ARelativePathIsNeverARepeat)
{
    system.GoTo("");
    InitializeVodrelC("vodrel");
    EXPECT_EQ(path("vodrel"), Plain(GetVodrelPath()));
    InitializeVodrelC("vodrel");
    EXPECT_EQ(LogStart(), system.Log());
}

TEST_F(VodrelC, AnEmptyPathAfterTheFirstStartIsTheProgramsFolder)
{
    std::string program = Platform::ProgramFile();
    program.erase(program.rfind('\\'));
    for (char const *given : {"", static_cast<char const *>(nullptr), "$L"}) {
        Initialize();
        InitializeVodrelC(given);
        EXPECT_EQ(program, Plain(GetVodrelPath()));
    }
    EXPECT_TRUE(Logging);
}

TEST_F(VodrelC, OddInstallationPathsAreTakenAsTheyAre)
{
    for (std::string const &odd : {std::string("\\\\srv\\share\\x"), std::string("C:"), path("\xC9\xFF"), path("a*?"),
                                   path(std::string(5000, 'x'))}) {
        InitializeVodrelC(odd.c_str());
        EXPECT_EQ(odd, Plain(GetVodrelPath()));
    }
}

TEST_F(VodrelC, StartingInstallsTheConsoleNotifier)
{
    Initialize();
    std::string const log = system.Log();
    EXPECT_EQ("hello\n", Printed([] { NotifyC(2, 0, "hello"); }));
    EXPECT_EQ("hello\n", Printed([] { NotifyC(2, 5, "hello\n"); }));
    EXPECT_EQ("%s%n\n", Printed([] { NotifyC(2, 0, "%s%n"); }));
    EXPECT_EQ("", Printed([] { NotifyC(2, 0, ""); }));
    EXPECT_EQ("", Printed([] { NotifyC(2, 0, nullptr); }));
    EXPECT_EQ(log, system.Log());
}

TEST_F(VodrelC, OtherNotificationsAreLoggedOrDropped)
{
    Initialize();
    EXPECT_EQ("", Printed([] {
                  for (int code : {0, 1, 3, 4, 5, 6, 7, 10, -1, INT_MAX, INT_MIN}) NotifyC(code, 0, "text");
                  NotifyC(5, 0, "");
                  NotifyC(5, 0, nullptr);
              }));
    EXPECT_EQ(LogStart() + LogLine("text"), system.Log());
}

TEST_F(VodrelC, NotificationsGoToWhateverNotifierIsInstalled)
{
    Initialize();
    SetNotify(&system.listener);
    NotifyC(2, 0, "a");
    NotifyC(17, -3, "b");
    NotifyC(1, 0, nullptr);
    EXPECT_EQ("2:a\n17,-3:b\n1:\n", system.Heard());
    SetNotify(nullptr);
    EXPECT_EQ("c\n\n", Printed([] {
                  NotifyC(17, 0, "c");
                  NotifyC(2, 0, "");
              }));
}

TEST_F(VodrelC, SleepingIsForMilliseconds)
{
    CSleep(25);
    CSleep(0);
    EXPECT_EQ(25, system.Sleeps().at(0));
    Platform::SetClock(nullptr);
    double const before = Timer();
    CSleep(20);
    EXPECT_LE(0.0199, Timer() - before);
    CSleep(-1);
    CSleep(INT_MIN);
}

TEST_F(VodrelC, TheTextOfEachCode)
{
    OpenWithShot();
    std::string const user = path("user\\Vodrel");
    struct {
        int code;
        std::string text;
    } const rows[] = {
        {0, path("vodrel")},          {1, "A1"}, {2, path("X\\E\\Shots\\ShotA1")}, {3, path("X\\E")}, {4, user},
        {5, user + "\\MPIHosts.txt"}, {6, "E"},  {99, "Test string from Vodrel"}};
    for (auto const &row : rows) {
        EXPECT_EQ(row.text, Text(row.code)) << row.code;
        EXPECT_EQ(row.text.substr(0, 2), Text(row.code, 2)) << row.code;
        EXPECT_EQ("", Text(row.code, -5)) << row.code;
    }
}

TEST_F(VodrelC, WithoutExperimentAndShotTheirTextsAreEmpty)
{
    Initialize();
    for (int code : {1, 2, 3, 6}) EXPECT_EQ("", Text(code)) << code;
    Open();
    for (int code : {1, 2}) EXPECT_EQ("", Text(code)) << code;
}

// ---- Experiment ----

TEST_F(VodrelC, AnExperimentIsOpened)
{
    Initialize();
    EXPECT_EQ("", Printed([this] { SetExperimentC(path("X\\E").c_str()); }));
    EXPECT_EQ(path("X\\E"), Plain(Expt.GetExperimentFolder()));
    EXPECT_EQ("E.ini Macros Query Shots", system.Names("X/E"));
    EXPECT_EQ(LogStart(), system.Log());
}

TEST_F(VodrelC, ANativeAbsoluteExperimentFolderIsTaken)
{
    Initialize();
    SetExperimentC(system.folder.native("X/E").c_str());
    EXPECT_EQ(path("X\\E"), Text(3));
    EXPECT_EQ("E", Text(6));
    EXPECT_EQ("E.ini Macros Query Shots", system.Names("X/E"));
}

TEST_F(VodrelC, NoFolderClosesTheExperiment)
{
    for (char const *none : {static_cast<char const *>(nullptr), ""}) {
        OpenWithShot();
        SetExperimentC(none);
        EXPECT_EQ("", Text(1) + Text(2) + Text(3) + Text(6));
        EXPECT_EQ(-1, Expt.GetCurrentGroup());
        std::filesystem::remove_all(system.folder.native("X"));
    }
}

// ---- Shots ----

TEST_F(VodrelC, AShotIsCreatedWithItsDate)
{
    Open();
    EXPECT_EQ("", Printed([] { EXPECT_EQ(1, CreateShotC("A1")); }));
    EXPECT_EQ("[Fields]\r\nDate=06/10/2024 08:13:20", ShotFile("Scalars.ini"));
    EXPECT_EQ("A1", Text(1));
}

TEST_F(VodrelC, AnExistingShotIsReportedAndNotCreated)
{
    OpenWithShot();
    CreateShotC("B1");
    EXPECT_EQ("Error creating shot A1 (most likely it already exists and name did not have *) expt is " + path("X") +
                  "\n",
              Printed([] { EXPECT_EQ(0, CreateShotC("A1")); }));
    EXPECT_EQ("B1", Text(1));
}

TEST_F(VodrelC, TheReportHasTheTextAsTheCallerGaveIt)
{
    Initialize();
    SetNotify(&system.listener);
    EXPECT_EQ(0, CreateShotC("*A1\\W"));
    EXPECT_EQ(0, CreateShotC(nullptr));
    EXPECT_EQ("2:Error creating shot *A1\\W (most likely it already exists and name did not have *) expt is \n"
              "2:Error creating shot  (most likely it already exists and name did not have *) expt is \n",
              system.Heard());
}

TEST_F(VodrelC, AStarTakesAnExistingShotAndDatesIt)
{
    OpenWithShot();
    SetStringDataC("Run", "7");
    CreateShotC("B1");
    StandingClock::now += 60;
    EXPECT_EQ(1, CreateShotC("*A1"));
    EXPECT_EQ("A1", Text(1));
    EXPECT_EQ("[Fields]\r\nDate=06/10/2024 08:14:20\r\nRun=7", ShotFile("Scalars.ini"));
}

TEST_F(VodrelC, AStarAloneNamesTheShotOfTheCurrentFolder)
{
    struct {
        char const *folder;
        char const *shot;
    } const rows[] = {{"Shot123", "123"}, {"shotAbc", "Abc"}, {"SHOT9", "9"},       {"Other", "Other"},
                      {"Shot", ""},       {"Sho1", "Sho1"},   {"xShot1", "xShot1"}, {"ShotShot1", "Shot1"}};
    Open();
    for (auto const &row : rows) {
        system.folder.MakeFolder(std::string("run/") + row.folder);
        system.GoTo(std::string("run/") + row.folder);
        EXPECT_EQ(1, CreateShotC("*")) << row.folder;
        EXPECT_EQ(row.shot, Text(1));
        EXPECT_EQ(path(std::string("X\\E\\Shots\\Shot") + row.shot), Text(2));
    }
}

TEST_F(VodrelC, AStarAloneInAShotsOwnFolderTakesThatShot)
{
    OpenWithShot();
    CreateShotC("B1");
    system.GoTo("X/E/Shots/ShotA1");
    EXPECT_EQ(1, CreateShotC("*"));
    EXPECT_EQ("A1", Text(1));
    EXPECT_EQ("ScalarCache.ini ShotA1 ShotB1", system.Names("X/E/Shots"));
}

TEST_F(VodrelC, ANullNameCreatesTheBareWord)
{
    OpenWithShot();
    EXPECT_EQ(1, CreateShotC(nullptr));
    EXPECT_EQ("ScalarCache.ini Shot ShotA1", system.Names("X/E/Shots"));
    EXPECT_NE("", Printed([] { EXPECT_EQ(0, CreateShotC("")); }));
}

TEST_F(VodrelC, AnExistingShotIsSet)
{
    OpenWithShot();
    CreateShotC("B1");
    EXPECT_EQ("", Printed([] { EXPECT_EQ(1, SetShotC("A1")); }));
    EXPECT_EQ("A1", Text(1));
    EXPECT_EQ(1, SetShotC("*B1"));
    EXPECT_EQ("B1", Text(1));
}

TEST_F(VodrelC, AMissingShotIsReported)
{
    OpenWithShot();
    std::string const report = "Error setting shot (most likely it does not exist)\n";
    EXPECT_EQ(report, Printed([] { EXPECT_EQ(0, SetShotC("None")); }));
    EXPECT_EQ(report, Printed([] { EXPECT_EQ(0, SetShotC(nullptr)); }));
    EXPECT_EQ("A1", Text(1));
    SetExperimentC("");
    EXPECT_EQ(report, Printed([] { EXPECT_EQ(0, SetShotC("A1")); }));
}

TEST_F(VodrelC, AStandAloneClientTellsNoHost)
{
    Open();
    ShotListener listener;
    SetQNotify(&listener);
    EXPECT_EQ(1, CreateShotC("A1"));
    EXPECT_EQ(1, SetShotC("A1"));
    EXPECT_EQ("", listener.heard);
    EXPECT_EQ(LogStart(), system.Log());
}

// ---- Strings of a shot ----

TEST_F(VodrelC, StringsAreStoredAndRead)
{
    OpenWithShot();
    SetStringDataC("Run", "seven");
    EXPECT_EQ("[Fields]\r\nDate=06/10/2024 08:13:20\r\nRun=seven", ShotFile("Scalars.ini"));
    EXPECT_EQ("seven", StringData("Run"));
    EXPECT_EQ("seven", StringData("None::rUN"));
    EXPECT_EQ("A1", StringData("Shot"));
    EXPECT_EQ("", StringData("None"));
}

TEST_F(VodrelC, AStringIsCutToTheRoom)
{
    OpenWithShot();
    SetStringDataC("Run", "seven");
    struct {
        int room;
        char const *text;
    } const rows[] = {{5, "seven"}, {4, "seve"}, {1, "s"}, {0, ""}, {-1, ""}, {INT_MIN, ""}};
    for (auto const &row : rows) EXPECT_EQ(row.text, StringData("Run", row.room)) << row.room;
}

TEST_F(VodrelC, AnEmptyOrNullStringDeletesTheKey)
{
    OpenWithShot();
    for (char const *none : {"", static_cast<char const *>(nullptr)}) {
        SetStringDataC("Run", "seven");
        SetStringDataC("run", none);
        EXPECT_EQ("[Fields]\r\nDate=06/10/2024 08:13:20", ShotFile("Scalars.ini"));
    }
    SetStringDataC(nullptr, "seven");
    EXPECT_EQ("", StringData(nullptr));
}

TEST_F(VodrelC, StringsWithoutAShotAreNowhere)
{
    Open();
    SetStringDataC("Run", "seven");
    EXPECT_EQ("", StringData("Run"));
    EXPECT_EQ("", system.Names("X/E/Shots"));
}

TEST_F(VodrelC, TheShotsNameAsCommentPrintsNothing)
{
    OpenWithShot();
    EXPECT_EQ("", Printed([] { SetStringDataC("Comment", "A1"); }));
    EXPECT_EQ("", StringData("Comment"));
}

// ---- Waveforms ----

/// The file of three samples 1, 2, -0.5 from 1.5 s in steps of 0.5 s.
std::string WaveFile()
{
    return FromHex("0400 0000 03000000"           // version, skip length, count
                   "00000000 0000003F 00000000"   // t4, time step, t5
                   "0000803F 0000803F"            // calibration, attenuation
                   "0000C03F 00000000"            // start, shift
                   "00000040 000000BF"            // largest, smallest
                   "02000000 03000000"            // their positions
                   "0000003F 0000"                // tick size, reserved
                   "00000000"                     // scope value
                   "00000000 00000000 00000000"   // t1, t2, t3
                   "00000000"                     // offset
                   "00000000 00000000"            // scope delays
                   "00000000 00000000"            // scope values 2 and 3
                   "0000") +                      // units
           WithLength(FreshSystem::Date) +        // stamp
           FromHex("0000 0000"                    // note, old unit
                   "0100 03000000 01000000"       // 1, count, 1
                   "0000803F 00000040 000000BF"); // samples
}

TEST_F(VodrelC, AWaveformIsStoredInTheShot)
{
    OpenWithShot();
    SetWaveformC("W", 3, 1.5f, 0.5f, Wave.data());
    EXPECT_EQ(WaveFile(), ShotFile("W.wvf"));
    EXPECT_EQ("Scalars.ini W.wvf", system.Names("X/E/Shots/ShotA1"));
}

TEST_F(VodrelC, AWaveformOfAnotherShotIsStoredThere)
{
    OpenWithShot();
    CreateShotC("B1");
    SetWaveformC("A1\\W", 3, 1.5f, 0.5f, Wave.data());
    EXPECT_EQ(WaveFile(), ShotFile("W.wvf"));
    EXPECT_EQ(BitsOfAll(Wave), Values("A1\\W", 3, 1.5f, 0.5f));
}

TEST_F(VodrelC, ReferencesInAWaveformsNameAreExpanded)
{
    OpenWithShot();
    SetStringDataC("Run", "7");
    SetWaveformC("W[Run]", 3, 1.5f, 0.5f, Wave.data());
    EXPECT_EQ(WaveFile(), ShotFile("W7.wvf"));
}

TEST_F(VodrelC, AWaveformIsReadOnTheGridThatIsAsked)
{
    OpenWithShot();
    system.folder.Write("X/E/Shots/ShotA1/W.wvf", WaveFile());
    float const nan = std::numeric_limits<float>::quiet_NaN();
    float const infinity = std::numeric_limits<float>::infinity();
    struct {
        float start;
        float step;
        std::vector<float> values;
    } const rows[] = {{1.5f, 0.5f, {1, 2, -0.5f}},
                      {1.5f, 0.5f, {1, 2}},
                      {1.5f, 0.5f, {1, 2, -0.5f, 0, 0}},
                      {1.75f, 0.5f, {1.5f, 0.75f, 0, 0}},
                      {1.0f, 0.5f, {0, 1, 2, -0.5f, 0}},
                      {1.5f, 0.25f, {1, 1.5f, 2, 0.75f, -0.5f, 0}},
                      {1.5f, 1.0f, {1, -0.5f, 0}},
                      {9.0f, 0.5f, {0, 0}},
                      {-9.0f, 0.5f, {0, 0}},
                      {nan, 0.5f, {0, 0, 0}},
                      {infinity, 0.5f, {0, 0, 0}},
                      {-infinity, 0.5f, {0, 0, 0}},
                      {1.5f, infinity, {1, 0, 0}},
                      {1.5f, nan, {1, 0, 0}},
                      {1.5f, 0.5f, {}}};
    for (auto const &row : rows)
        EXPECT_EQ(BitsOfAll(row.values), Values("W", static_cast<int>(row.values.size()), row.start, row.step))
            << row.start << " " << row.step;
    EXPECT_EQ(WaveFile(), ShotFile("W.wvf"));
}

TEST_F(VodrelC, WithoutAPositiveStepTheSamplesComeAsTheyAre)
{
    OpenWithShot();
    system.folder.Write("X/E/Shots/ShotA1/W.wvf", WaveFile());
    for (float step : {0.0f, -0.0f, -1.0f, -std::numeric_limits<float>::infinity()}) {
        EXPECT_EQ(BitsOfAll(Wave), Values("W", 3, 9.0f, step)) << step;
        EXPECT_EQ(BitsOfAll({1, 2}), Values("W", 2, 9.0f, step)) << step;
    }
}

TEST_F(VodrelC, WithoutAPositiveStepWhatTheTraceDoesNotHaveIs0)
{
    OpenWithShot();
    system.folder.Write("X/E/Shots/ShotA1/W.wvf", WaveFile());
    Bits expected = BitsOfAll(Wave);
    expected.resize(1000);
    EXPECT_EQ(expected, Values("W", 1000, 9.0f, 0));
    EXPECT_EQ(Bits(1000), Values("None", 1000, 9.0f, 0));
}

TEST_F(VodrelC, AMissingWaveformReadsAsZeros)
{
    OpenWithShot();
    system.folder.Write("X/E/Shots/ShotA1/Short.wvf", "\4");
    system.folder.MakeFolder("X/E/Shots/ShotA1/Folder.wvf");
    system.GoTo("");
    for (char const *name : {"None", "Short", "Folder", "NoShot\\W", "", static_cast<char const *>(nullptr)})
        for (float step : {1.0f, 0.5f}) EXPECT_EQ(Bits(4), Values(name, 4, 0, step));
}

TEST_F(VodrelC, ANegativeCountReadsNothing)
{
    OpenWithShot();
    system.folder.Write("X/E/Shots/ShotA1/W.wvf", WaveFile());
    for (int n : {0, -1, INT_MIN}) {
        EXPECT_TRUE(Values("W", n, 1.5f, 0.5f).empty()) << n;
        EXPECT_TRUE(Values("W", n, 9.0f, 0.25f).empty()) << n;
        EXPECT_TRUE(Values("W", n, 9.0f, 0).empty()) << n;
        GetWaveformC("W", n, 1.5f, 0.5f, nullptr);
    }
}

TEST_F(VodrelC, ALockedWaveformIsReadAndNotOverwritten)
{
    OpenWithShot();
    std::string locked = WaveFile();
    locked.replace(0, 2, "\xFC\xFF");
    system.folder.Write("X/E/Shots/ShotA1/W.wvf", locked);
    EXPECT_EQ(BitsOfAll(Wave), Values("W", 3, 1.5f, 0.5f));
    EXPECT_EQ("Could not write to " + path("X\\E\\Shots\\ShotA1\\W.wvf") + " because it is locked\n",
              Printed([] { SetWaveformC("W", 3, 0, 1, Wave.data()); }));
    EXPECT_EQ(locked, ShotFile("W.wvf"));
}

TEST_F(VodrelC, TheInfoComesFromTheHeader)
{
    OpenWithShot();
    std::string file = WaveFile();
    file.replace(32, 4, FromHex("0000003F")); // shift 0.5
    file.replace(78, 4, FromHex("0000803E")); // delays 0.25 and 0.125
    file.replace(82, 4, FromHex("0000003E"));
    file.replace(4, 4, FromHex("39300000")); // 12345 samples, which aren't there
    system.folder.Write("X/E/Shots/ShotA1/W.wvf", file.substr(0, file.size() - 12));
    int n = -77;
    float start = -77;
    float step = -77;
    GetWaveformInfoC("W", &n, &start, &step);
    EXPECT_EQ(12345, n);
    EXPECT_EQ(2.0f, start);
    EXPECT_EQ(0.5f, step);
}

TEST_F(VodrelC, TheInfoOfAMissingWaveformIs0And0And1)
{
    OpenWithShot();
    system.GoTo("");
    for (char const *name : {"None", "NoShot\\W", "", static_cast<char const *>(nullptr)}) {
        int n = -77;
        float start = -77;
        float step = -77;
        GetWaveformInfoC(name, &n, &start, &step);
        EXPECT_EQ(0, n);
        EXPECT_EQ(BitsOf(0.0f), BitsOf(start));
        EXPECT_EQ(1.0f, step);
    }
}

TEST_F(VodrelC, AStepOf0InTheFileReadsAs1)
{
    OpenWithShot();
    SetWaveformC("W", 3, 1.5f, 0, Wave.data());
    EXPECT_EQ(FromHex("00000000"), ShotFile("W.wvf").substr(12, 4));
    int n = 0;
    float start = 0;
    float step = 0;
    GetWaveformInfoC("W", &n, &start, &step);
    EXPECT_EQ(1.0f, step);
    EXPECT_EQ(1.5f, start);
    EXPECT_EQ(3, n);
}

TEST_F(VodrelC, BadSamplesAreMarkedInTheFile)
{
    OpenWithShot();
    std::vector<float> const bad = {std::numeric_limits<float>::quiet_NaN(), 2, std::numeric_limits<float>::infinity(),
                                    -DFMax};
    SetWaveformC("W", 4, 0, 1, bad.data());
    std::string const file = ShotFile("W.wvf");
    EXPECT_EQ(FromHex("B04378FF 00000040 B04378FF B04378FF"), file.substr(file.size() - 16));
    EXPECT_EQ(FromHex("00000040 00000040 02000000 02000000"), file.substr(36, 16));
    EXPECT_TRUE(std::isnan(bad[0]));
}

TEST_F(VodrelC, AWaveformWithoutSamplesIsAHeader)
{
    OpenWithShot();
    for (int n : {0, -1, INT_MIN}) {
        SetWaveformC("W", n, 1.5f, 0.5f, nullptr);
        std::string const file = ShotFile("W.wvf");
        EXPECT_EQ(WaveFile().size() - 12, file.size()) << n;
        EXPECT_EQ(FromHex("00000000"), file.substr(4, 4));
        EXPECT_EQ(FromHex("B04378FF B043787F 00000000 00000000"), file.substr(36, 16));
        EXPECT_EQ(FromHex("0100 00000000 01000000"), file.substr(file.size() - 10));
    }
}

TEST_F(VodrelC, AFailedWriteIsDropped)
{
    OpenWithShot();
    system.folder.MakeFolder("X/E/Shots/ShotA1/W.wvf");
    EXPECT_EQ("", Printed([] {
                  SetWaveformC("W", 3, 0, 1, Wave.data());
                  SetWaveformC("a/b/c", 3, 0, 1, Wave.data());
                  SetWaveformC("*", 3, 0, 1, Wave.data());
                  SetWaveformC(std::string(5000, 'x').c_str(), 3, 0, 1, Wave.data());
              }));
    EXPECT_EQ("Scalars.ini W.wvf", system.Names("X/E/Shots/ShotA1"));
}

TEST_F(VodrelC, PairsBecomeAWaveformFromTheFirstToTheLastTime)
{
    OpenWithShot();
    float const pairs[] = {1.5f, 1.0f, 99.0f, 2.0f, 2.5f, -0.5f};
    SetWaveformXYC("W", 3, pairs);
    EXPECT_EQ(WaveFile(), ShotFile("W.wvf"));
}

TEST_F(VodrelC, TheStepOfPairsIsRoundedToSinglePrecisionTwice)
{
    OpenWithShot();
    // From 0.3 to 7.7 in three steps; rounded once, the last digit would be E.
    float const pairs[] = {FromBits(0x3E99999A), 0, 0, 1, 0, 2, FromBits(0x40F66666), 3};
    SetWaveformXYC("W", 4, pairs);
    EXPECT_EQ(FromHex("DDDD1D40"), ShotFile("W.wvf").substr(12, 4));
    EXPECT_EQ(FromHex("9A99993E"), ShotFile("W.wvf").substr(28, 4));
}

TEST_F(VodrelC, PairsAtOneTimeOrBackwardsAreStoredAsTheyAre)
{
    OpenWithShot();
    float const same[] = {1, 1, 1, 2};
    SetWaveformXYC("W", 2, same);
    EXPECT_EQ(FromHex("00000000"), ShotFile("W.wvf").substr(12, 4));
    float const backwards[] = {1.5f, 1, 1, 2};
    SetWaveformXYC("W", 2, backwards);
    EXPECT_EQ(FromHex("000000BF"), ShotFile("W.wvf").substr(12, 4));
}

TEST_F(VodrelC, FewerThanTwoPairsStoreNothing)
{
    OpenWithShot();
    float const pair[] = {1, 2};
    for (int n : {1, 0, -1, INT_MIN}) {
        SetWaveformXYC("W", n, pair);
        SetWaveformXYC("W", n, nullptr);
    }
    EXPECT_EQ("Scalars.ini", system.Names("X/E/Shots/ShotA1"));
    system.folder.Write("X/E/Shots/ShotA1/W.wvf", WaveFile());
    SetWaveformXYC("W", 1, pair);
    EXPECT_EQ(WaveFile(), ShotFile("W.wvf"));
}

TEST_F(VodrelC, ALongWaveformComesBackBitByBit)
{
    OpenWithShot();
    std::vector<float> samples(100000);
    for (std::size_t i = 0; i < samples.size(); i++) samples[i] = FromBits(static_cast<std::uint32_t>(i * 20011u));
    SetWaveformC("W", 100000, -5.0f, 1e-6f, samples.data());
    EXPECT_TRUE(BitsOfAll(samples) == Values("W", 100000, -5.0f, 1e-6f));
}

TEST_F(VodrelC, WaveformsWithoutAShotLieInTheCurrentDirectory)
{
    Open();
    system.folder.MakeFolder("here");
    system.GoTo("here");
    SetWaveformC("W", 3, 1.5f, 0.5f, Wave.data());
    EXPECT_EQ("W.wvf", system.Names("here"));
    EXPECT_EQ(WaveFile(), Read("here/W.wvf"));
    EXPECT_EQ(BitsOfAll(Wave), Values("W", 3, 1.5f, 0.5f));
}

TEST_F(VodrelC, AnyFaultOfTheDiskInAClientsRunEndsWell)
{
    static int left = -1;
    OpenWithShot();
    SetWaveformC("W", 3, 1.5f, 0.5f, Wave.data());
    Printed([this] {
        for (int n = 0; left < 0; n++) { // until the fault would come behind the last operation
            left = n;
            Platform::SetFaultHook([](char const *) { return left-- != 0; });
            InitializeVodrelC(path("other" + std::to_string(n)).c_str());
            SetExperimentC(path("X\\E").c_str());
            CreateShotC("*B1");
            SetStringDataC("Run", "7");
            StringData("Run");
            SetWaveformC("V", 3, 1.5f, 0.5f, Wave.data());
            Values("V", 3, 1.5f, 0.5f);
            SetShotC("A1");
            Values("W", 5, 1.0f, 0.5f);
            Platform::SetFaultHook(nullptr);
            EXPECT_EQ(WaveFile(), ShotFile("W.wvf")) << n;
            Open();
            EXPECT_EQ(1, SetShotC("A1")) << n;
            EXPECT_EQ(BitsOfAll(Wave), Values("W", 3, 1.5f, 0.5f)) << n;
        }
    });
}

} // namespace
