// What reading a waveform's header costs in calls of the operating system, which over a network share are what takes
// the time. VODREL_READ_HEADER_PROGRAM is the path of the small program that reads headers.

#include <cstdlib>
#include <map>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "support/Hex.h"
#include "support/TempFolder.h"

namespace {

class SystemCalls : public testing::Test {
protected:
    using Counts = std::map<std::string, int>;

    /// The header of a waveform of three samples, with a text longer than usual, and its samples.
    void WriteWave() const
    {
        folder.Write("Data/W.wvf", FromHex("0400 0000 03000000") + std::string(86, '\0') + WithLength("V") +
                                       WithLength("06/10/2024 08:13:20") + WithLength(std::string(300, 'n')) +
                                       FromHex("0000 0100 03000000 01000000") + std::string(12, '\0'));
    }

    /// The calls that the program makes in all, by name, "total" too, when it reads the header so many times.
    Counts Count(int times) const
    {
        std::string const report = folder.native("report");
        std::string const command = "ASAN_OPTIONS=detect_leaks=0 strace -c -f -o '" + report +
                                    "' '" VODREL_READ_HEADER_PROGRAM "' '" + folder.path("Data") + "' W " +
                                    std::to_string(times) + " > '" + folder.native("out") + "' 2> '" +
                                    folder.native("errors") + "'";
        Counts counts;
        if (std::system(command.c_str()) != 0) return counts;
        std::istringstream lines(folder.Read("report"));
        for (std::string line; std::getline(lines, line);) addRow(line, counts);
        return counts;
    }

    static bool CanTrace() { return std::system("strace -c -f -o /dev/null true > /dev/null 2>&1") == 0; }

    TempFolder const folder;

private:
    /// A row is per cent, seconds, microseconds a call, calls, errors if there were any, and the name.
    static void addRow(std::string const &line, Counts &counts)
    {
        std::istringstream words(line);
        std::string percent, seconds, each, name, word;
        int calls = 0;
        if (!(words >> percent >> seconds >> each >> calls)) return;
        while (words >> word) name = word;
        counts[name] = calls;
    }
};

TEST_F(SystemCalls, ReadingAHeaderOpensReadsAndClosesAndNothingElse)
{
    if (!CanTrace()) GTEST_SKIP() << "strace can't run here";
    WriteWave();
    Counts const without = Count(0);
    EXPECT_EQ("0\n", folder.Read("out"));
    Counts with = Count(100);
    ASSERT_EQ("3\n", folder.Read("out")) << folder.Read("errors");
    for (auto const &row : without) with[row.first] -= row.second;
    for (char const *memory : {"brk", "mmap", "munmap", "mprotect", "madvise"}) with["total"] -= with[memory];
    std::ostringstream all;
    for (auto const &row : with) all << row.first << " " << row.second << "\n";
    EXPECT_EQ(100, with["openat"]) << all.str();
    EXPECT_EQ(100, with["read"] + with["pread64"]) << all.str();
    EXPECT_EQ(100, with["close"]) << all.str();
    EXPECT_EQ(0, with["getdents64"]) << all.str();
    EXPECT_LE(with["total"], 500) << all.str(); // one look at what was opened, and one that making a stream costs
}

} // namespace
