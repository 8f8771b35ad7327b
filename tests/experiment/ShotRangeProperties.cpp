/// Ranges over random shots, held against two other ways to the same answer: a model that knows the shots as a set of
/// names, and ranges of a single number, taken from the last to the first as a long range takes them.
#include <algorithm>
#include <cctype>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "support/ShotListTest.h"

namespace {

std::string Lower(std::string text)
{
    for (char &c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

/// A side of a range, taken apart as the strings of the system do it: the number reaches as far to the left as a
/// number can be read there.
struct Side {
    std::string prefix;
    long long number = 0;
    int nDigits = 0;
    bool hasNumber = false;

    explicit Side(std::string const &text)
    {
        std::size_t at = text.size();
        for (; at > 0; --at) {
            char *end = nullptr;
            long long const value = std::strtoll(text.c_str() + at - 1, &end, 10);
            if (end == text.c_str() + at - 1) break;
            number = value;
        }
        hasNumber = at < text.size();
        prefix = text.substr(0, at);
        for (char const c : text.substr(at)) nDigits += c >= '0' && c <= '9';
    }
    std::string Name(long long n) const
    {
        char digits[40];
        std::snprintf(digits, sizeof digits, "%.*lld", nDigits, n);
        return prefix + digits;
    }
};

class ShotRangeProperties : public ShotListTest {
protected:
    using Random = std::mt19937;
    static int Below(Random &random, int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }

    /// Makes random shots in the three groups, in place of those that were there.
    void MakeRandomShots(Random &random)
    {
        char const *const prefixes[] = {"A", "a", "B", "my shot ", "my shot", "A-", "", "x.y "};
        for (int group = 0; group < 3; ++group) {
            std::filesystem::remove_all(system.folder.native(Of(group)));
            system.folder.MakeFolder(Of(group));
            there[group].clear();
            for (int i = Below(random, 25); i > 0; --i) {
                Side shape(prefixes[Below(random, 8)] + std::string("0"));
                shape.nDigits = 1 + Below(random, 3);
                int const number = Below(random, 8) == 0 ? Below(random, 2000000000) : Below(random, 14);
                Add(group, shape.Name(Below(random, 6) == 0 ? -number : number));
            }
        }
    }
    void Add(int group, std::string const &shot)
    {
        if (!there[group].insert(Lower(shot)).second) return;
        MakeShot(group, shot);
    }
    static std::string Of(int group) { return std::filesystem::path(ShotIn(group, "")).parent_path().string(); }

    bool IsThere(int group, std::string const &shot) const
    {
        return group >= 0 && group < 3 && there[group].count(Lower(shot));
    }
    int Guess(std::string const &shot) const
    {
        int const current = expt.GetCurrentGroup();
        if (IsThere(current, shot)) return current;
        for (int group = 0; group < 3; ++group)
            if (IsThere(group, shot)) return group;
        return -1;
    }
    /// The numbers of a range that have a shot in any group, the last first.
    std::vector<long long> NumbersThere(Side const &left, long long last) const
    {
        std::set<long long, std::greater<>> numbers;
        for (auto const &shots : there)
            for (std::string const &shot : shots) {
                if (shot.compare(0, left.prefix.size(), Lower(left.prefix)) != 0) continue;
                long long const n = std::strtoll(shot.c_str() + std::min(left.prefix.size(), shot.size()), nullptr, 10);
                if (n >= left.number && n <= last && Lower(left.Name(n)) == shot) numbers.insert(n);
            }
        return {numbers.begin(), numbers.end()};
    }
    int FirstGroup(Side const &left, int gnum) const
    {
        if (gnum >= 0) return gnum;
        return std::max(0, Guess(left.Name(left.number)));
    }

    /// The answer by the model.
    std::string Expected(Side const &left, long long last, int gnum) const
    {
        std::string all;
        int group = FirstGroup(left, gnum);
        for (long long const n : NumbersThere(left, last)) {
            std::string const shot = left.Name(n);
            if (!IsThere(group, shot)) group = Guess(shot);
            all.insert(0, shot + "/" + std::to_string(group) + (all.empty() ? "" : " "));
        }
        return all;
    }
    /// The answer by one question for each number.
    std::string OneByOne(Side const &left, std::vector<long long> const &numbers, int gnum)
    {
        std::string all;
        int group = FirstGroup(left, gnum);
        for (long long const n : numbers) {
            std::string const shot = left.Name(n);
            std::string const one = Shots(shot + ":" + std::to_string(n), group);
            if (one.empty()) continue;
            group = result.gnums[0];
            all.insert(0, one + (all.empty() ? "" : " "));
        }
        return all;
    }

    static std::string RandomLeft(Random &random)
    {
        char const *const lefts[] = {"A1",    "A001",      "a01",      "A-5",         "A-05", "A--3", "B0",
                                     "B007",  "my shot 1", "my shot1", "MY SHOT 003", "7",    "001",  "-4",
                                     "x.y 2", "A10",       "A-1",      "A100",        "C1",   "A000", "B-12"};
        return lefts[Below(random, 21)];
    }

    std::set<std::string> there[3];
};

TEST_F(ShotRangeProperties, LongAndShortRangesGiveWhatEachNumberGives)
{
    Random random(1718000000);
    int nShots = 0;
    for (int disk = 0; disk < 12; ++disk) {
        MakeRandomShots(random);
        Set("x", Below(random, 3));
        for (int i = 0; i < 25; ++i) {
            Side const left(RandomLeft(random));
            long long const lasts[] = {left.number + Below(random, 12), Below(random, 2000), 2000000000, INT_MAX};
            long long const last = lasts[Below(random, 4)];
            int const gnum = Below(random, 6) - 2;
            std::string const spec = left.Name(left.number) + ":A" + std::to_string(last);
            SCOPED_TRACE("disk " + std::to_string(disk) + ", " + spec + " in " + std::to_string(gnum));
            std::string const shots = Shots(spec, gnum);
            nShots += result.names.Count();
            ASSERT_EQ(Expected(left, last, gnum), shots);
            if (!left.prefix.empty() && left.prefix.back() == '-') continue; // which would be a sign in OneByOne
            ASSERT_EQ(OneByOne(left, NumbersThere(left, last), gnum), shots);
        }
    }
    EXPECT_LT(300, nShots);
}

TEST_F(ShotRangeProperties, TheLengthOfARangeBeyondItsShotsDoesNotMatter)
{
    Random random(7);
    for (int disk = 0; disk < 5; ++disk) {
        MakeRandomShots(random);
        for (char const *left : {"A1", "a001", "B0", "my shot1", "0", "A-14"}) {
            long long const end = 2000000000;
            std::string const all = Shots(std::string(left) + ":" + std::to_string(end), 0);
            for (long long const last : {end + 1, end + 5000, end + 100000000, static_cast<long long>(INT_MAX)})
                EXPECT_EQ(all, Shots(std::string(left) + ":" + std::to_string(last), 0)) << left << " " << last;
        }
    }
}

#if !defined _WIN32 // where no name holds a question mark
TEST_F(ShotRangeProperties, HoldForPrefixesThatAreNoPlainNames)
{
    for (char const *shot : {"AB1", "AC2", "AB12", "Ab05", "sub", "A?3", "AB7"}) MakeShot(0, shot);
    for (char const *shot : {"AB3", "AD12", "AX30", "sub"}) MakeShot(1, shot);
    for (char const *folder : {"B1", "B3", "b5"}) system.folder.MakeFolder(ShotIn(0, "sub") + "/" + folder);
    for (char const *folder : {"B2", "B4"}) system.folder.MakeFolder(ShotIn(1, "sub") + "/" + folder);
    Write("X/E/Shots/ShotAA5", "a file, before the folders that match");
    struct {
        char const *left;
        int nShots;
    } const rows[] = {{"A?1", 6},     {"A*0", 8},     {"?B1", 4},
                      {"A?01", 3},    {"*1", 7},      {"sub\\B1", 5},
                      {"sub\\?1", 5}, {"su?\\B1", 0}, {"..\\Shots\\ShotAB1", 0},
                      {"none\\B1", 0}};
    for (auto const &row : rows) {
        Side const left(row.left);
        std::vector<long long> numbers;
        for (long long n = 60; n >= left.number; --n) numbers.push_back(n);
        std::string const shots = OneByOne(left, numbers, 0);
        EXPECT_EQ(shots, Shots(std::string(row.left) + ":60", 0)) << row.left;
        EXPECT_EQ(shots, Shots(std::string(row.left) + ":2000000000", 0)) << row.left;
        EXPECT_EQ(row.nShots, result.names.Count()) << row.left << ": " << shots;
    }
}
#endif

TEST_F(ShotRangeProperties, HoldForFoldersWhoseNamesBeginWithADot)
{
    MakeShot(0, "sub");
    for (char const *folder : {".h2", ".h40"}) system.folder.MakeFolder(ShotIn(0, "sub") + "/" + folder);
    EXPECT_EQ("sub\\.h2/0 sub\\.h40/0", Shots("sub\\.h1:40"));
    EXPECT_EQ("sub\\.h2/0 sub\\.h40/0", Shots("sub\\.h1:2000000000"));
}

} // namespace
