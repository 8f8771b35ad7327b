/// The start of the core: constants and globals, the three folders, "Vodrel.ini".
#include "core/StartUp.h"

#include <climits>
#include <cstring>

#include "data/ParticleGroup.h"
#include "experiment/Experiment.h"
#include "support/Faults.h"
#include "support/FilesFixture.h"

namespace {

using namespace std::string_literals;

unsigned int BitsOf(float value)
{
    unsigned int bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

// ---- Constants and globals -------------------------------------------------------------------

TEST(Constants, AreThePromisedOnes)
{
    EXPECT_EQ(0x7FFFFFFFu, npos);
    EXPECT_EQ(0x7F7843B0u, BitsOf(DFMax));
    EXPECT_EQ(0x40490FDBu, BitsOf(pi));
    EXPECT_STREQ("\r\n", LDelim);
    EXPECT_EQ(2, LenLD);
    EXPECT_STREQ("", DEmptyString);
    EXPECT_EQ(10000000, MaxParticleBatch);
    EXPECT_EQ(8, ParticleGroup::nParticleCols);
    EXPECT_EQ(19, Experiment::CurDataVersion);
}

/// What the globals were before any test ran.
class AtLoad : public testing::Environment {
public:
    void SetUp() override
    {
        texts = VodrelPath + UserPath + WorkingPath + ComputerName + VoIni.FileName();
        flags = Silent || PublicWrite || Logging;
        counts = SheetData.Count() + VoIni.nSections();
        pointers = QNot || InstalledNotifier;
        start = StartTime;
    }
    static inline DString texts = "not looked at yet";
    static inline bool flags = true, pointers = true;
    static inline int counts = -1;
    static inline double start = -1;
};

testing::Environment *const atLoad = testing::AddGlobalTestEnvironment(new AtLoad);

TEST(Globals, AreEmptyAtLoad)
{
    EXPECT_NE(nullptr, atLoad);
    EXPECT_EQ("", bytesOf(AtLoad::texts));
    EXPECT_FALSE(AtLoad::flags);
    EXPECT_FALSE(AtLoad::pointers);
    EXPECT_EQ(0, AtLoad::counts);
    EXPECT_EQ(0, AtLoad::start);
}

// ---- CoreInit and the installation folder ----------------------------------------------------

/// The per-user folder is below the fresh folder, at "host-user/Vodrel".
class StartTest : public FilesTest {
protected:
    DString UserFolder() const { return Path("host-user\\Vodrel"); }
    std::string Settings() const { return folder.Read("host-user/Vodrel/Vodrel.ini"); }
    void WriteSettings(std::string const &text) const { folder.Write("host-user/Vodrel/Vodrel.ini", text); }
};

char const *const firstSettings = "[Startup]\r\nPath=*\r\nExperiment=*\r\nQuery=*\r\nShot=*\r\nMacro=*\r\n"
                                  "[Preferences]\r\nUseLocalSettings=True";

class InstallationFolder : public StartTest {};

TEST_F(InstallationFolder, QualifiedPathStaysAndAnotherIsJoinedToTheCurrentDirectory)
{
    folder.MakeFolder("current");
    GoTo("current");
    std::string const current = folder.path("current");
    struct Row {
        std::string path, vodrelPath;
    } const rows[] = {
        {"\\\\server\\share\\sys", "\\\\server\\share\\sys"},
        {"C:\\sys", "C:\\sys"},
        {"c:sys", "c:sys"},
        {"1:x\\", "1:x\\"},
        {"\\\\", "\\\\"},
        {"sys\\bin", current + "\\sys\\bin"},
        {"sys", current + "\\sys"},
        {"sys\\", current + "\\sys\\"},
        {"\\sys", current + "\\\\sys"},
        {"/data/sys", current + "\\/data/sys"},
        {"..\\sys", current + "\\..\\sys"},
        {":", current + "\\:"},
    };
    for (Row const &row : rows) {
        CoreInit(fromBytes(row.path));
        EXPECT_EQ(row.vodrelPath, bytesOf(GetVodrelPath())) << row.path;
    }
}

TEST_F(InstallationFolder, EmptyPathIsTheFolderOfTheProgram)
{
    for (DString const &path : {DString(), nullString()}) {
        VodrelPath = "before";
        CoreInit(path);
        std::string program = Platform::ProgramFile();
        EXPECT_EQ(program.substr(0, program.rfind('\\')), bytesOf(GetVodrelPath()));
    }
#if defined __linux__
    std::string native = std::filesystem::read_symlink("/proc/self/exe").parent_path().string();
    for (char &c : native)
        if (c == '/') c = '\\';
    EXPECT_EQ("Z:" + native, bytesOf(GetVodrelPath()));
#endif
    EXPECT_FALSE(GetVodrelPath().EndsWith("\\"));
}

TEST_F(InstallationFolder, SettingItSetsThePerUserFolderToo)
{
    SetVodrelPath("C:\\sys");
    EXPECT_EQ("C:\\sys", bytesOf(GetVodrelPath()));
    EXPECT_EQ(bytesOf(UserFolder()), bytesOf(GetUserPath()));
    EXPECT_EQ(firstSettings, Settings());
}

class CoreStart : public StartTest {};

struct SilentNotifier : DNotify {
    void Notify(int, int, DString const &) override {}
};

struct SilentQNotifier : QNotify {
    void ShotChanged(DString, int, long long, bool) override {}
};

TEST_F(CoreStart, ClearsNotifiersAndLogging)
{
    SilentNotifier notifier;
    SilentQNotifier queries;
    for (int round = 0; round < 2; ++round) {
        SetNotify(&notifier);
        SetQNotify(&queries);
        Logging = true;
        CoreInit("C:\\sys");
        EXPECT_EQ(nullptr, InstalledNotifier);
        EXPECT_EQ(nullptr, QNot);
        EXPECT_FALSE(Logging);
    }
}

TEST_F(CoreStart, TakesTheTimeAndTheMachinesName)
{
    clock.counts = 1500000;
    CoreInit("C:\\sys");
    EXPECT_EQ(1.5, StartTime);
    EXPECT_EQ(Platform::ComputerName(), bytesOf(GetComputerNameD()));
    clock.counts = 2500000;
    CoreInit("C:\\sys");
    EXPECT_EQ(2.5, StartTime);
}

TEST_F(CoreStart, WritesNothingToTheLog)
{
    CoreInit("C:\\sys");
    EXPECT_FALSE(folder.Has("host-user/Vodrel/Log.txt"));
    EXPECT_FALSE(folder.Has("user/Log.txt"));
}

TEST_F(CoreStart, LeavesSilentAndSheetData)
{
    SheetData = List({"x"});
    Silent = true;
    CoreInit("C:\\sys");
    EXPECT_TRUE(Silent);
    EXPECT_EQ((Strings{"x"}), Items(SheetData));
    SheetData.Clear();
}

// ---- The per-user folder and its settings ----------------------------------------------------

class UserSettings : public StartTest {};

TEST_F(UserSettings, FirstStartMakesThem)
{
    CoreInit("C:\\sys");
    EXPECT_EQ(firstSettings, Settings());
    EXPECT_EQ(bytesOf(UserFolder()), bytesOf(GetUserPath()));
    EXPECT_EQ(bytesOf(UserFolder()), bytesOf(GetWorkingPath()));
    EXPECT_EQ(bytesOf(UserFolder()) + "\\Vodrel.ini", bytesOf(VoIni.FileName()));
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST_F(UserSettings, SecondStartAddsNothing)
{
    CoreInit("C:\\sys");
    CoreInit("C:\\sys");
    EXPECT_EQ(firstSettings, Settings());
}

TEST_F(UserSettings, ThatExistStayAsTheyAre)
{
    for (char const *text : {"[Other]\nx=1\n", "[preferences]\nx=1\n\n", "; nothing\n", "[Startup]\nPath=mine"}) {
        WriteSettings(text);
        CoreInit("C:\\sys");
        EXPECT_EQ(text, Settings());
        EXPECT_EQ("mine", bytesOf(VoIni.GetSectionKeyValue("Startup", "Path", "mine")));
    }
}

TEST_F(UserSettings, SectionsThatTheyLackReachTheFileWithTheNextWrite)
{
    WriteSettings("[Other]\r\nx=1");
    CoreInit("C:\\sys");
    SetDefaultPath("Plots", "C:\\plots");
    EXPECT_EQ("[Other]\r\nx=1\r\n[Startup]\r\n[Preferences]\r\n[DefaultPaths]\r\nPlots=C:\\plots", Settings());
}

TEST_F(UserSettings, EmptyFileIsThereAlready)
{
    WriteSettings("");
    CoreInit("C:\\sys");
    EXPECT_EQ("", Settings());
    EXPECT_EQ(10u, clock.sleeps.size());
}

TEST_F(UserSettings, AreFoundInAnyCase)
{
    folder.Write("host-user/vodrel/VODREL.INI", "[Preferences]\nPublicWriteAccess=True");
    CoreInit("C:\\sys");
    EXPECT_TRUE(PublicWrite);
    EXPECT_FALSE(folder.Has("host-user/Vodrel"));
}

TEST_F(UserSettings, AreLeftAtPreferences)
{
    CoreInit("C:\\sys");
    EXPECT_EQ("True", bytesOf(VoIni.GetKeyValue("UseLocalSettings", "")));
    VoIni.SetKeyValue("x", "1");
    EXPECT_EQ(firstSettings + "\r\nx=1"s, Settings());
}

TEST_F(UserSettings, WorkingPathIsTakenAndMade)
{
    std::string const work = folder.path("a\\work");
    WriteSettings("[Preferences]\r\nWorkingPath=" + work);
    CoreInit("C:\\sys");
    EXPECT_EQ(work, bytesOf(GetWorkingPath()));
    EXPECT_TRUE(std::filesystem::is_directory(folder.native("a/work")));
}

TEST_F(UserSettings, WorkingPathIsTheUserFolderByDefault)
{
    for (char const *text :
         {"[Preferences]\r\nx=1", "[Preferences]\r\nWorkingPath=", "[Startup]\r\nWorkingPath=C:\\x"}) {
        WriteSettings(text);
        WorkingPath = "before";
        CoreInit("C:\\sys");
        EXPECT_EQ(bytesOf(UserFolder()), bytesOf(GetWorkingPath())) << text;
    }
}

TEST_F(UserSettings, WorkingPathIsTakenAsItStands)
{
    WriteSettings("[Preferences]\r\nWorkingPath=Y:\\nowhere\\");
    CoreInit("C:\\sys");
    EXPECT_EQ("Y:\\nowhere\\", bytesOf(GetWorkingPath()));
}

TEST_F(UserSettings, PublicWriteAccessIsFalseByDefault)
{
    struct Row {
        char const *text;
        bool result;
    } const rows[] = {
        {"[Preferences]\r\nPublicWriteAccess=True", true},
        {"[Preferences]\r\npublicwriteaccess=1", true},
        {"[Preferences]\r\nPublicWriteAccess=False", false},
        {"[Preferences]\r\nPublicWriteAccess=", false},
        {"[Preferences]\r\nx=1", false},
        {"[Startup]\r\nPublicWriteAccess=True", false},
    };
    for (Row const &row : rows) {
        WriteSettings(row.text);
        PublicWrite = !row.result;
        CoreInit("C:\\sys");
        EXPECT_EQ(row.result, PublicWrite) << row.text;
    }
}

TEST_F(UserSettings, FolderThatCannotBeMadeStopsNothing)
{
    folder.Write("host-user", "a file where the folder should be");
    PublicWrite = true;
    CoreInit("C:\\sys");
    EXPECT_EQ("C:\\sys", bytesOf(GetVodrelPath()));
    EXPECT_EQ(bytesOf(UserFolder()), bytesOf(GetUserPath()));
    EXPECT_EQ(bytesOf(UserFolder()), bytesOf(GetWorkingPath()));
    EXPECT_FALSE(PublicWrite);
    EXPECT_EQ("", bytesOf(VoIni.FileName()));
    EXPECT_EQ("a file where the folder should be", folder.Read("host-user"));
}

TEST_F(UserSettings, SilentLeavesTheDiskAlone)
{
    Silent = PublicWrite = true;
    WorkingPath = "before";
    CoreInit("sys");
    EXPECT_EQ(bytesOf(UserFolder()), bytesOf(GetUserPath()));
    EXPECT_EQ("before", bytesOf(GetWorkingPath()));
    EXPECT_TRUE(PublicWrite);
    EXPECT_EQ("", bytesOf(VoIni.FileName()));
    EXPECT_EQ("", bytesOf(GetDefaultPath("x")));
    EXPECT_FALSE(folder.Has("host-user"));
}

TEST_F(UserSettings, SilentAtFirstLeavesNoWorkingPath)
{
    Silent = true;
    CoreInit("C:\\sys");
    EXPECT_EQ("", bytesOf(GetWorkingPath()));
    SetDefaultPath("x", "C:\\x");
    EXPECT_FALSE(folder.Has("host-user"));
}

TEST_F(UserSettings, SilentAsksNothingOfTheDisk)
{
    Silent = true;
    Faults const none;
    CoreInit("C:\\sys");
    EXPECT_TRUE(Faults::asked.empty());
}

TEST_F(UserSettings, SurviveAFaultOfTheDiskAtEveryOperation)
{
    std::string const text = "[Startup]\r\nPath=mine\r\n[Preferences]\r\nWorkingPath=" + folder.path("work");
    for (FaultKind kind : {FaultKind::Once, FaultKind::ForGood}) {
        int const nFaults = ForEveryFault(
            kind, [&] { WriteSettings(text); }, [] { CoreInit("C:\\sys"); },
            [&] {
                EXPECT_EQ(text, Settings());
                EXPECT_EQ(bytesOf(UserFolder()), bytesOf(GetUserPath()));
            });
        EXPECT_LE(4, nFaults);
    }
}

TEST_F(UserSettings, OfAFirstStartWithAFaultAreThereAsFarAsTheyCame)
{
    for (FaultKind kind : {FaultKind::Once, FaultKind::ForGood}) {
        int const nFaults = ForEveryFault(
            kind, [&] { std::filesystem::remove_all(folder.native("host-user")); }, [] { CoreInit("C:\\sys"); },
            [&] {
                std::string const settings = Settings();
                if (settings == "(missing)") return;
                EXPECT_EQ(std::string(firstSettings).substr(0, settings.size()), settings);
            });
        EXPECT_LE(10, nFaults);
    }
}

// ---- Default paths ---------------------------------------------------------------------------

class DefaultPaths : public StartTest {
protected:
    DefaultPaths() { CoreInit("C:\\sys"); }
};

TEST_F(DefaultPaths, AreEmptyUntilSet)
{
    EXPECT_EQ("", bytesOf(GetDefaultPath("Plots")));
    SetDefaultPath("Plots", "C:\\plots");
    SetDefaultPath("Empty", DString());
    EXPECT_EQ("C:\\plots", bytesOf(GetDefaultPath("PLOTS")));
    EXPECT_EQ("", bytesOf(GetDefaultPath("Empty")));
    EXPECT_EQ("", bytesOf(GetDefaultPath(nullString())));
    EXPECT_EQ(firstSettings + "\r\n[DefaultPaths]\r\nPlots=C:\\plots\r\nEmpty="s, Settings());
}

TEST_F(DefaultPaths, AskingMakesNoSection)
{
    GetDefaultPath("Plots");
    EXPECT_FALSE(VoIni.SectionExists("DefaultPaths"));
    VoIni.SetKeyValue("x", "1"); // no section is current now
    EXPECT_EQ(firstSettings, Settings());
}

TEST_F(DefaultPaths, LeaveTheirSectionAsTheCurrentOne)
{
    SetDefaultPath("Plots", "C:\\plots");
    VoIni.SetKeyValue("x", "1");
    VoIni.SetSection("Preferences");
    GetDefaultPath("Plots");
    VoIni.SetKeyValue("y", "2");
    EXPECT_EQ(firstSettings + "\r\n[DefaultPaths]\r\nPlots=C:\\plots\r\nx=1\r\ny=2"s, Settings());
}

} // namespace
