// Names, time, modules and numbers, as Windows has them.
#include <clocale>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "support/LocalZone.h"
#include "windows/WindowsVocabulary.h"

// ---- Names

TEST(WindowsMachine, NamesArePathsOfTheSystem)
{
    for (std::string const &name :
         {Platform::CurrentDirectory(), Platform::UserDataFolder(), Platform::ProgramFile()}) {
        EXPECT_EQ(":\\", name.substr(1, 2));
        EXPECT_EQ(std::string::npos, name.find('/')) << name;
    }
    EXPECT_NE("", Platform::ComputerName());
    EXPECT_EQ(std::string::npos, Platform::ComputerName().find('\\'));
}

TEST(WindowsMachine, AForeignClientMayUseSlashes)
{
    struct Row {
        char const *given, *path;
    } const rows[] = {{"C:/data/Run1", "C:\\data\\Run1"},
                      {"C:/data/Run1//", "C:\\data\\Run1"},
                      {"//server/share/x", "\\\\server\\share\\x"},
                      {"C:/", "C:\\"},
                      {"C:\\data\\Run1\\", "C:\\data\\Run1\\"}, // the system's own form already
                      {"\\\\server\\share\\x\\", "\\\\server\\share\\x\\"},
                      {"a/b", "a/b"},
                      {".\\Run1", ".\\Run1"},
                      {"C:a/b", "C:a/b"},
                      {"", ""}};
    for (Row const &row : rows) EXPECT_EQ(row.path, Platform::SystemPath(row.given)) << row.given;
}

// ---- Modules

namespace {

bool Loads(std::string const &path)
{
    void *const module = Platform::LoadModule(path.c_str());
    Platform::FreeModule(module);
    return module != nullptr;
}

} // namespace

TEST(WindowsModules, AreLoadedByTheirFullNames)
{
    TempFolder const folder;
    std::filesystem::copy_file(VODREL_PLAIN_MODULE, folder.native("Module.dll"));
    void *const module = Platform::LoadModule(folder.path("module.DLL").c_str());
    ASSERT_NE(nullptr, module);
    void *const answer = Platform::ModuleSymbol(module, "Answer");
    ASSERT_NE(nullptr, answer);
    EXPECT_EQ(42, reinterpret_cast<int (*)()>(answer)());
    EXPECT_EQ(nullptr, Platform::ModuleSymbol(module, "answer"));
    Platform::FreeModule(module);
}

TEST(WindowsModules, MayHaveLongNames)
{
    TempFolder const folder;
    std::string const deep = LongFolder(folder);
    if (deep.empty()) GTEST_SKIP() << "this system makes no such folder";
    std::string const file = folder.path(deep + "\\Module.dll");
    ASSERT_TRUE(Platform::CopyOneFile(VODREL_PLAIN_MODULE, file.c_str()));
    EXPECT_TRUE(Loads(file));
}

TEST(WindowsModules, AreNotSoughtAmongTheLibrariesOfTheSystem)
{
    EXPECT_FALSE(Loads("kernel32.dll"));
    EXPECT_FALSE(Loads("kernel32"));
    EXPECT_FALSE(Loads(""));
}

TEST(WindowsModules, GetNoExtension)
{
    TempFolder const folder;
    std::filesystem::copy_file(VODREL_PLAIN_MODULE, folder.native("Module.dll"));
    std::filesystem::copy_file(VODREL_PLAIN_MODULE, folder.native("Bare"));
    EXPECT_FALSE(Loads(folder.path("Module")));
    EXPECT_TRUE(Loads(folder.path("Bare")));
}

TEST(WindowsModules, ThatAreNoneAreRefusedWithoutAQuestion)
{
    TempFolder const folder;
    folder.Write("Text.dll", "no module");
    folder.MakeFolder("Folder.dll");
    for (char const *name : {"Text.dll", "Folder.dll", "None.dll"}) EXPECT_FALSE(Loads(folder.path(name))) << name;
}

// ---- Time

namespace {

std::string Spelled(std::tm const &local)
{
    return std::to_string(local.tm_year + 1900) + "-" + std::to_string(local.tm_mon + 1) + "-" +
           std::to_string(local.tm_mday) + " " + std::to_string(local.tm_hour) + ":" + std::to_string(local.tm_min) +
           ":" + std::to_string(local.tm_sec) + " " + std::to_string(local.tm_wday);
}

} // namespace

// Times and dates of the proleptic Gregorian calendar, worked out by its rules.
TEST(WindowsTime, ReachesBeyondTheCalendarOfTheRuntime)
{
    LocalZone const zone("EET-2");
    struct Row {
        long long time;
        char const *local;
    } const rows[] = {{1718000000, "2024-6-10 8:13:20 1"}, {0, "1970-1-1 2:0:0 4"},
                      {-1, "1970-1-1 1:59:59 4"},          {-11644473600, "1601-1-1 2:0:0 1"},
                      {-2208988800, "1900-1-1 2:0:0 1"},   {-62135596800, "1-1-1 2:0:0 1"},
                      {32503680000, "3000-1-1 2:0:0 3"},   {253402300799, "10000-1-1 1:59:59 6"},
                      {951782400, "2000-2-29 2:0:0 2"},    {4107542400, "2100-3-1 2:0:0 1"}};
    for (Row const &row : rows) {
        std::tm local = {};
        ASSERT_TRUE(Platform::LocalTime(row.time, local)) << row.local;
        EXPECT_EQ(row.local, Spelled(local)) << row.time;
        // -1 is the answer for what isn't a time, too.
        EXPECT_EQ(row.time, Platform::TimeFromLocal(local)) << row.local;
    }
}

TEST(WindowsTime, FieldsOutOfRangeCarryOver)
{
    LocalZone const zone("EET-2");
    std::tm local = {};
    local.tm_year = 124;
    local.tm_mon = 12 + 5;
    local.tm_mday = -355; // the 1st of June 2025 is day 1
    local.tm_hour = 8;
    local.tm_min = 13;
    local.tm_sec = 20;
    EXPECT_EQ(1718000000, Platform::TimeFromLocal(local));
    EXPECT_EQ("2024-6-10 8:13:20 1", Spelled(local));
}

TEST(WindowsTime, HasAnEnd)
{
    std::tm local = {};
    EXPECT_FALSE(Platform::LocalTime(0x7fffffffffffffff, local));
    EXPECT_FALSE(Platform::LocalTime(-0x7fffffffffffffff, local));
}

// ---- Numbers

TEST(WindowsNumbers, AreThoseOfTheCLocaleWhateverTheHostHasSet)
{
    std::string const before = std::setlocale(LC_ALL, nullptr);
    ASSERT_NE(nullptr, std::setlocale(LC_ALL, "German_Germany.1252"));
    ASSERT_STREQ(",", std::localeconv()->decimal_point);
    char text[40];
    Platform::PrintNumber(text, sizeof text, "%.3e", 1234.5);
    char const *end = nullptr;
    double const value = Platform::ParseNumber("1.5,", &end);
    std::string const kept = std::setlocale(LC_ALL, nullptr);
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_STREQ("1.234e+03", text);
    EXPECT_EQ(1.5, value);
    EXPECT_STREQ(",", end);
    EXPECT_EQ("German_Germany.1252", kept);
}
