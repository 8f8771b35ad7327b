#include <csignal>
#include <cstdlib>
#include <ctime>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/time.h>

#include "PlatformVocabulary.h"
#include "support/NoHostNetwork.h"

namespace {

/// Sets a variable of the environment for one test.
class Variable {
public:
    Variable(char const *variable, char const *value) : name(variable)
    {
        char const *const before = std::getenv(name);
        had = before != nullptr;
        old = before ? before : "";
        set(value);
    }
    ~Variable() { set(had ? old.c_str() : nullptr); }
    Variable(Variable const &) = delete;
    Variable &operator=(Variable const &) = delete;

private:
    void set(char const *value) const { value ? setenv(name, value, 1) : unsetenv(name); }

    char const *const name;
    bool had = false;
    std::string old;
};

} // namespace

TEST(SystemPath, TurnsAbsoluteNativeNamesOnly)
{
    struct Row {
        char const *native;
        char const *path;
    } const rows[] = {
        {"/data/Run1", "Z:\\data\\Run1"},
        {"/data/Run1/", "Z:\\data\\Run1"},
        {"/data//Run1///", "Z:\\data\\Run1"},
        {"/", "Z:"},
        {"//", "Z:"},
        {"data/Run1", "data/Run1"},
        {"Z:\\data\\", "Z:\\data\\"},
        {"\\\\server\\share", "\\\\server\\share"},
        {"", ""},
    };
    for (Row const &row : rows) EXPECT_EQ(row.path, Platform::SystemPath(row.native));
}

TEST(UserDataFolder, IsTheOneOfTheEnvironmentOrBelowHome)
{
    Variable const home("HOME", "/home/someone/");
    {
        Variable const data("XDG_DATA_HOME", "/srv/data/");
        EXPECT_EQ("Z:\\srv\\data", Platform::UserDataFolder());
    }
    for (char const *value : {"", "relative/data", static_cast<char const *>(nullptr)}) {
        Variable const data("XDG_DATA_HOME", value);
        EXPECT_EQ("Z:\\home\\someone\\.local\\share", Platform::UserDataFolder());
    }
}

TEST(UserDataFolder, AsksThePasswordDatabaseWithoutAHome)
{
    Variable const data("XDG_DATA_HOME", nullptr), home("HOME", nullptr);
    std::string const folder = Platform::UserDataFolder();
    EXPECT_EQ("Z:\\", folder.substr(0, 3));
    std::string const end = "\\.local\\share";
    ASSERT_GT(folder.size(), end.size());
    EXPECT_EQ(end, folder.substr(folder.size() - end.size()));
}

TEST(ProgramFile, IsTheRunningProgram)
{
    std::string const file = Platform::ProgramFile();
    EXPECT_EQ("Z:\\", file.substr(0, 3));
    EXPECT_TRUE(Platform::IsSameFile(file.c_str(), "Z:\\proc\\self\\exe"));
}

TEST(ComputerName, IsTheHostsName)
{
    char name[256] = "";
    ASSERT_EQ(0, gethostname(name, sizeof name));
    EXPECT_EQ(name, Platform::ComputerName());
}

TEST(Tables, SharesAreGivenAndTakenAway)
{
    NoHostNetwork const none;
    std::vector<Platform::Share> shares;
    EXPECT_FALSE(Platform::Shares(shares));
    Platform::SetShares({});
    EXPECT_TRUE(Platform::Shares(shares)) << "an empty table is one";
    Platform::SetShares({{"B", "1"}, {"A", "2"}});
    ASSERT_TRUE(Platform::Shares(shares));
    ASSERT_EQ(2u, shares.size());
    EXPECT_EQ("B", shares[0].name);
    EXPECT_EQ("2", shares[1].value);
    Platform::ClearShares();
    EXPECT_FALSE(Platform::Shares(shares));
}

TEST(Tables, MappedDriveHasItsNetworkName)
{
    NoHostNetwork const none;
    std::string name = "before";
    int length = -1;
    EXPECT_FALSE(Platform::NetworkPrefix("Q:\\x", name, length));
    Platform::SetDrive('Q', "/srv/data");
    EXPECT_FALSE(Platform::NetworkPrefix("Q:\\x", name, length)) << "a drive without a network name isn't mapped";
    EXPECT_EQ("before", name);
    EXPECT_EQ(-1, length);
    Platform::SetDrive('q', "/srv/data", "\\\\server\\share");
    EXPECT_TRUE(Platform::NetworkPrefix("Q:\\x", name, length));
    EXPECT_EQ("\\\\server\\share", name);
    EXPECT_EQ(2, length);
    EXPECT_TRUE(Platform::NetworkPrefix("q:", name, length));
    EXPECT_FALSE(Platform::NetworkPrefix("Z:\\x", name, length));
    Platform::SetDrive('Q', "");
    EXPECT_FALSE(Platform::NetworkPrefix("Q:\\x", name, length));
}

TEST(Clock, HostsClockRuns)
{
    EXPECT_NEAR(static_cast<double>(std::time(nullptr)), static_cast<double>(Platform::UnixTime()), 1.0);
    long long const before = Platform::Counter();
    Platform::SleepFor(20);
    double const passed =
        static_cast<double>(Platform::Counter() - before) / static_cast<double>(Platform::CounterFrequency());
    EXPECT_GE(passed, 0.020);
    EXPECT_LT(passed, 5.0);
    Platform::SleepFor(0);
    Platform::SleepFor(-1000000);
}

TEST(Clock, ATestsClockStandsInForTheMembersItHas)
{
    static int slept = 0;
    Platform::Clock clock;
    clock.unixTime = [] { return 42LL; };
    clock.sleepFor = [](int milliseconds) { slept += milliseconds; };
    Platform::SetClock(&clock);
    Platform::SleepFor(1000000);
    EXPECT_EQ(1000000, slept);
    EXPECT_EQ(42, Platform::UnixTime());
    EXPECT_EQ(1000000000, Platform::CounterFrequency());
    EXPECT_GT(Platform::Counter(), 0);
    clock.counter = [] { return 7LL; };
    clock.counterFrequency = [] { return 8LL; };
    EXPECT_EQ(7, Platform::Counter());
    EXPECT_EQ(8, Platform::CounterFrequency());
    Platform::SetClock(nullptr);
    EXPECT_NE(42, Platform::UnixTime());
}

TEST(Clock, ASignalDoesntCutASleepShort)
{
    struct sigaction action = {}, old;
    action.sa_handler = [](int) {};
    ASSERT_EQ(0, sigaction(SIGALRM, &action, &old));
    itimerval const soon = {{0, 5000}, {0, 5000}}, never = {};
    long long const before = Platform::Counter();
    ASSERT_EQ(0, setitimer(ITIMER_REAL, &soon, nullptr));
    Platform::SleepFor(60);
    ASSERT_EQ(0, setitimer(ITIMER_REAL, &never, nullptr));
    EXPECT_GE(Platform::Counter() - before, 60000000);
    sigaction(SIGALRM, &old, nullptr);
}

TEST(LocalTime, FollowsTheZoneAtEachCall)
{
    std::tm local = {};
    {
        Variable const zone("TZ", "EST5EDT,M3.2.0,M11.1.0");
        ASSERT_TRUE(Platform::LocalTime(1000000000, local));
        EXPECT_EQ(21, local.tm_hour);
        EXPECT_EQ(8, local.tm_mday);
        EXPECT_EQ(101, local.tm_year);
        EXPECT_EQ(1000000000, Platform::TimeFromLocal(local));
    }
    Variable const zone("TZ", "UTC0");
    ASSERT_TRUE(Platform::LocalTime(1000000000, local));
    EXPECT_EQ(1, local.tm_hour);
    EXPECT_EQ(9, local.tm_mday);
}

TEST(LocalTime, HasAnEnd)
{
    std::tm local = {};
    EXPECT_FALSE(Platform::LocalTime(0x7fffffffffffffff, local));
    EXPECT_FALSE(Platform::LocalTime(-0x7fffffffffffffff, local));
}

TEST(LocalTime, FieldsOutOfRangeCarryOver)
{
    Variable const zone("TZ", "UTC0");
    std::tm local = {};
    local.tm_year = 70;
    local.tm_mon = 12;
    local.tm_mday = 32;
    EXPECT_EQ((365 + 31) * 86400, Platform::TimeFromLocal(local));
    EXPECT_EQ(1, local.tm_mon);
    EXPECT_EQ(1, local.tm_mday);
}

TEST(Modules, AreLoadedByTheirFile)
{
    Dl_info info;
    ASSERT_NE(0, dladdr(reinterpret_cast<void *>(&gethostname), &info));
    void *const module = Platform::LoadModule(Platform::SystemPath(info.dli_fname).c_str());
    ASSERT_NE(nullptr, module);
    EXPECT_NE(nullptr, Platform::ModuleSymbol(module, "gethostname"));
    EXPECT_EQ(nullptr, Platform::ModuleSymbol(module, "no_such_function"));
    EXPECT_EQ(nullptr, Platform::ModuleSymbol(module, nullptr));
    Platform::FreeModule(module);
}

TEST(Modules, ThatArentThereAreNotSoughtElsewhere)
{
    TempFolder folder;
    ASSERT_EQ(0, chdir(folder.native().c_str()));
    EXPECT_EQ(nullptr, Platform::LoadModule("libm.so.6"));
    folder.Write("libm.so.6", "no module");
    EXPECT_EQ(nullptr, Platform::LoadModule("libm.so.6"));
    EXPECT_EQ(nullptr, Platform::LoadModule(folder.path().c_str()));
    EXPECT_EQ(nullptr, Platform::LoadModule(folder.path("lib*").c_str()));
    ASSERT_EQ(0, chdir("/"));
}
