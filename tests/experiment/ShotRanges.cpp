/// Ranges of numbered shots: which names they span, and in which groups these are looked for.
#include <climits>
#include <filesystem>
#include <string>
#include <vector>

#include "support/PeakMemory.h"
#include "support/ShotListTest.h"
#include "support/Stopwatch.h"

namespace {

class ShotRanges : public ShotListTest {
protected:
    std::string Log(std::string const &spec)
    {
        std::filesystem::remove(system.folder.native("user/Vodrel/Log.txt"));
        Logging = true;
        Shots(spec);
        Logging = false;
        return system.Log();
    }
};

TEST_F(ShotRanges, GiveTheShotsThatAreThereInOrder)
{
    MakeShots(0, {"A1", "A3", "A4", "B2", "A", "A22"});
    EXPECT_EQ("A1/0 A3/0", Shots("A1:A3"));
    EXPECT_EQ("A3/0", Shots("A3:A3"));
    EXPECT_EQ("", Shots("A2:A2"));
    EXPECT_EQ("A22/0", Shots("A5:A99"));
}

TEST_F(ShotRanges, TheRightSideIsANumberAlone)
{
    MakeShots(0, {"A001", "A002", "A003", "A010"});
    std::string const three = "A001/0 A002/0 A003/0";
    struct {
        char const *spec;
        std::string shots;
    } const rows[] = {{"A001:A003", three},
                      {"A001:3", three},
                      {"A001:003", three},
                      {"A001:Z003", three},
                      {"A001:Z-and-B:3", three},
                      {"A001::3", three},
                      {"A001: 3", three},
                      {"A001:A+3", three},
                      {"A001:A9:A3", three},
                      {"a001:3", "a001/0 a002/0 a003/0"},
                      {"A001:A0000000010", three + " A010/0"},
                      {"A003:A003", "A003/0"}};
    for (auto const &row : rows) EXPECT_EQ(row.shots, Shots(row.spec)) << row.spec;
}

TEST_F(ShotRanges, WithoutTwoNumbersEmptyTheNamesAlone)
{
    MakeShots(0, {"A1", "A3", "A"});
    for (char const *spec : {"A1:B", "A:A3", "A1:", ":A3", ":", "A1 :3", "A1:3 ", "A1:A3x", "A1x:A3", "3:A", "Z:\\L",
                             "C:\\lists\\L.txt", "Z:L5"}) {
        EXPECT_EQ("0 2 1", Counts(spec)) << spec;
        EXPECT_EQ(7, result.gnums[0]);
        EXPECT_EQ("9", result.Dates());
        EXPECT_EQ("(missing)", Log(spec)) << spec;
    }
    EXPECT_FALSE(Has("X/E/ShotLists"));
}

TEST_F(ShotRanges, BackwardsAreEmpty)
{
    MakeShots(0, {"A001", "A002", "A003"});
    EXPECT_EQ("0 0 0", Counts("A003:A001"));
    EXPECT_EQ("0 0 0", Counts("A003:A002"));
    EXPECT_EQ("0 0 0", Counts("A3:A-2147483647"));
}

TEST_F(ShotRanges, NumbersHaveTheWidthOfTheLeftOne)
{
    MakeShots(0, {"A7", "A07", "A007", "A8", "A008", "A10", "A010", "A100", "A0100", "A1000"});
    struct {
        char const *spec;
        char const *shots;
    } const rows[] = {{"A007:A010", "A007/0 A008/0 A010/0"}, {"A7:A10", "A7/0 A8/0 A10/0"},
                      {"A7:A010", "A7/0 A8/0 A10/0"},        {"A07:A10", "A07/0 A10/0"},
                      {"A9:1000", "A10/0 A100/0 A1000/0"},   {"A099:1000", "A100/0 A1000/0"},
                      {"A0099:1000", "A0100/0 A1000/0"},     {"A00000:1000", ""}};
    for (auto const &row : rows) EXPECT_EQ(row.shots, Shots(row.spec)) << row.spec;
}

TEST_F(ShotRanges, AWidthOfMoreThanTwentyDigitsIsNone)
{
    std::string const eighteen(18, '0');
    MakeShots(0, {"A" + eighteen + "01", "A" + eighteen + "02", "A0" + eighteen + "01", "A1", "A3"});
    EXPECT_EQ("A" + eighteen + "01/0 A" + eighteen + "02/0", Shots("A" + eighteen + "01:3"));
    EXPECT_EQ("A1/0 A3/0", Shots("A0" + eighteen + "01:3"));
    EXPECT_EQ("A1/0 A3/0", Shots("A" + std::string(100000, '0') + "1:3"));
}

TEST_F(ShotRanges, ThePrefixMayBeAnything)
{
    MakeShots(0, {"my shot a1", "my shot a2", "2", "3", "100%d1", "%s%n2", "A.5", "A_5",
                  "\xFF"
                  "1",
                  "a;b1"});
    struct {
        char const *spec;
        char const *shots;
    } const rows[] = {{"my shot a1:3", "my shot a1/0 my shot a2/0"},
                      {"MY SHOT A1:3", "MY SHOT A1/0 MY SHOT A2/0"},
                      {"1:3", "2/0 3/0"},
                      {"100%d1:9", "100%d1/0"},
                      {"%s%n1:9", "%s%n2/0"},
                      {"A.5:6", "A.5/0"},
                      {"A_4:5", "A_5/0"},
                      {"\xFF"
                       "0:1",
                       "\xFF"
                       "1/0"},
                      {"a;b1:1", "a;b1/0"}};
    for (auto const &row : rows) EXPECT_EQ(row.shots, Shots(row.spec)) << row.spec;
}

#if !defined _WIN32 // where no name holds a quote
TEST_F(ShotRanges, ThePrefixMayHoldAQuote)
{
    MakeShots(0, {"x\"1"});
    EXPECT_EQ("x\"1/0", Shots("x\"1:1"));
}
#endif

TEST_F(ShotRanges, ABlankBeforeTheNumberBelongsToTheNumber)
{
    MakeShots(0, {"A 5", "A5", "A05"});
    std::string const shots = Shots("A 5:5");
    EXPECT_EQ(std::string::npos, shots.find(' ')) << shots;
    EXPECT_EQ("A5/0", Shots("A5:5"));
}

TEST_F(ShotRanges, NumbersMayBeNegative)
{
    MakeShots(0, {"A-5", "A-3", "A-1", "A0", "A-0", "A1", "A3", "A5"});
    EXPECT_EQ("A-5/0 A-3/0 A-1/0 A0/0 A1/0 A3/0", Shots("A-5:A3"));
    EXPECT_EQ("A-5/0 A-3/0", Shots("A-5:A-2"));
    EXPECT_EQ("A-5/0 A-3/0", Shots("A-7:-2"));
    EXPECT_EQ("", Shots("A-1:A-5"));
    EXPECT_EQ("", Shots("A1:A-5"));
}

TEST_F(ShotRanges, TwoSignsAreOneAndAPrefix)
{
    MakeShots(0, {"A--5", "A--4", "A-5"});
    EXPECT_EQ("A--5/0 A--4/0", Shots("A--5:A-3"));
}

// ---- Groups ----

TEST_F(ShotRanges, AGroupIsTriedBeforeTheOthers)
{
    MakeShots(0, {"A1", "A2", "A3"});
    MakeShots(2, {"A1", "A3"});
    EXPECT_EQ("A1/0 A2/0 A3/2", Shots("A1:A3", 2)); // A2 leads to group 0, where A1 is too
    EXPECT_EQ("A3/2", Shots("A3:A3", 2));
    EXPECT_EQ("A2/0", Shots("A2:A2", 2));
    EXPECT_EQ("A1/2", Shots("A1:A1", 2));
    EXPECT_EQ("A1/0 A2/0 A3/0", Shots("A1:A3", 0));
    EXPECT_EQ("A1/0 A2/0 A3/0", Shots("A1:A3", 1));
}

TEST_F(ShotRanges, AGroupThatWasFoundIsTriedFirstForAllShotsBefore)
{
    MakeShots(0, {"A1", "A2", "A4"});
    MakeShots(1, {"A1", "A3", "A4"});
    MakeShots(2, {"A1", "A2", "A5"});
    EXPECT_EQ("A1/0 A2/0 A3/1 A4/0 A5/2", Shots("A1:A5", 1));
    // A5 leads to group 2; A4 isn't there and leads to 0, A3 to 1, and A1 stays in 1 once A2 is gone ...
    std::filesystem::remove_all(system.folder.native(ShotIn(0, "A2")));
    std::filesystem::remove_all(system.folder.native(ShotIn(2, "A2")));
    EXPECT_EQ("A1/1 A3/1 A4/0 A5/2", Shots("A1:A5", 1));
    // ... and a shot that is in none doesn't turn it back.
    EXPECT_EQ("A3/1 A4/0 A5/2", Shots("A2:A6", 0));
}

TEST_F(ShotRanges, AGuessIsMadeFromTheFirstShotAlone)
{
    MakeShots(0, {"A2", "A3"});
    MakeShots(1, {"A1", "A2"});
    EXPECT_EQ("A1/1 A2/0 A3/0", Shots("A1:A3"));
    EXPECT_EQ("A1/1 A2/1", Shots("A1:A2"));
    EXPECT_EQ("A2/0 A3/0", Shots("A2:A3"));
    MakeShot(2, "A0");
    EXPECT_EQ("A0/2 A1/1 A2/0", Shots("A0:A2"));
}

TEST_F(ShotRanges, AFirstShotThatIsNowhereMeansGroup0)
{
    MakeShots(0, {"A2"});
    MakeShots(1, {"A2", "A3"});
    EXPECT_EQ("A2/0", Shots("A1:A2"));
    EXPECT_EQ("A2/1 A3/1", Shots("A1:A3"));
}

TEST_F(ShotRanges, TheGuessPrefersTheCurrentGroup)
{
    for (int group : {0, 1, 2}) MakeShots(group, {"A1", "A2"});
    EXPECT_EQ("A1/0 A2/0", Shots("A1:A2"));
    for (int group : {0, 1, 2}) {
        Set("x", group);
        std::string const there = "/" + std::to_string(group);
        EXPECT_EQ("A1" + there + " A2" + there, Shots("A1:A2"));
    }
    std::filesystem::remove_all(system.folder.native(ShotIn(1, "A1")));
    std::filesystem::remove_all(system.folder.native(ShotIn(1, "A2")));
    EXPECT_EQ("A1/2 A2/2", Shots("A1:A2", 1)); // the current group is 2: it is searched before 0
}

TEST_F(ShotRanges, TheFirstShotIsGuessedInTheWidthOfTheRange)
{
    MakeShot(1, "A7");
    MakeShot(2, "A007");
    for (int group : {0, 1, 2}) MakeShots(group, {"A8", "A008"});
    EXPECT_EQ("A7/1 A8/1", Shots("A7:A8"));
    EXPECT_EQ("A007/2 A008/2", Shots("A007:A8"));
}

TEST_F(ShotRanges, AnyGroupOutOfRangeIsToBeFound)
{
    MakeShots(0, {"A2"});
    MakeShots(1, {"A1", "A2", "A3"});
    for (int const gnum : {-1, -2, -77, INT_MIN}) EXPECT_EQ("A1/1 A2/1 A3/1", Shots("A1:A3", gnum)) << gnum;
    for (int const gnum : {3, 4, 5, 1000000, INT_MAX}) EXPECT_EQ("A1/1 A2/1 A3/1", Shots("A1:A3", gnum)) << gnum;
    for (int const gnum : {-1, -2, -77, INT_MIN}) EXPECT_EQ("A1/1 A2/1", Shots("A1:A2", gnum)) << gnum;
    for (int const gnum : {3, 5, INT_MAX}) EXPECT_EQ("A1/1 A2/0", Shots("A1:A2", gnum)) << gnum;
    for (int const gnum : {-1, -5, 3, 5, INT_MAX}) EXPECT_EQ("", Shots("B1:B9", gnum)) << gnum;
}

TEST_F(ShotRanges, TheSelectionMayBeOneOfTheNames)
{
    MakeShots(0, {"A1", "A3"});
    ShotArrays shots;
    shots.names.Add(Dstr("A1:A" + std::string(100, '0') + "3"));
    expt.GetShotList(shots.names[0], -1, shots.names, shots.gnums, nullptr);
    EXPECT_EQ("A1/0 A3/0", shots.Shots());
}

TEST_F(ShotRanges, NothingButFoldersCounts)
{
    Write("X/E/Shots/ShotA1", "a file");
    MakeShot(1, "A1");
    MakeShots(0, {"A2"});
    system.folder.MakeFolder("X/E/Shots/A3");
    EXPECT_EQ("A1/1 A2/0", Shots("A1:A3"));
}

TEST_F(ShotRanges, DoNotChangeTheCurrentShot)
{
    MakeShots(1, {"A1", "A2"});
    Set("B", 2);
    std::string const before = State();
    EXPECT_EQ("A1/1 A2/1", Shots("A1:A2"));
    EXPECT_EQ(before, State());
}

// ---- Dates and log ----

TEST_F(ShotRanges, DatesAreThoseOfTheFoldersWhereTheShotsAre)
{
    MakeShots(0, {"A1", "A3"});
    MakeShots(1, {"A2"});
    Write(ShotIn(1, "A2") + "/Scalars.ini", "[Fields]\r\n");
    SetDate(ShotIn(0, "A1"), 1500000000);
    SetDate(ShotIn(1, "A2"), 1400000000);
    SetDate(ShotIn(0, "A3"), 86400);
    EXPECT_EQ("3 3 3", Counts("A0:A9"));
    EXPECT_EQ("1500000000 1400000000 86400", result.Dates());
}

TEST_F(ShotRanges, TellTheLogWhenTheirNamesAreMadeAndWhenTheyWereChecked)
{
    MakeShots(0, {"A1"});
    std::string const lines =
        LogLine("Got names of shots in range") + LogLine("Got shot list and checked for existance");
    EXPECT_EQ(lines, Log("A1:A3"));
    EXPECT_EQ(lines, Log("A3:A1"));
    Shots("A1:A3");
    EXPECT_EQ(lines, system.Log());
}

// ---- Long ranges ----

TEST_F(ShotRanges, NumbersGoUpToTheLargestAndDownToTheSmallest)
{
    MakeShots(0, {"A2147483646", "A2147483647", "A-2147483648", "A-2147483647", "A0", "A0000000000"});
    EXPECT_EQ("A2147483646/0 A2147483647/0", Shots("A2147483646:A2147483647"));
    EXPECT_EQ("A2147483647/0", Shots("A2147483647:A2147483647"));
    EXPECT_EQ("A-2147483648/0 A-2147483647/0", Shots("A-2147483648:A-2147483647"));
    EXPECT_EQ("A0/0 A2147483646/0 A2147483647/0", Shots("A0:A2147483647"));
    EXPECT_EQ("A-2147483648/0 A-2147483647/0 A0000000000/0 A2147483646/0 A2147483647/0",
              Shots("A-2147483648:2147483647"));
}

TEST_F(ShotRanges, OfTwoThousandMillionNumbersTakeNoTimeAndNoMemory)
{
    MakeShots(0, {"A1", "A3", "A100", "A0100"});
    MakeShots(1, {"a2", "A1999999999"});
    MakeShots(2, {"A2000000000", "A2000000001", "A77"});
    std::string shots;
    PeakMemory(true);
    long long const before = PeakMemory(false);
    EXPECT_GT(farTooLong, secondsOf([&] { shots = Shots("A1:A2000000000"); }));
    EXPECT_GT(20000000, PeakMemory(false) - before);
    EXPECT_EQ("A1/0 A2/1 A3/0 A77/2 A100/0 A1999999999/1 A2000000000/2", shots);
}

TEST_F(ShotRanges, OfAnyPrefixTakeNoTimeAndNoMemory)
{
    MakeShots(0, {"A1", "A3", "sub", "Empty"});
    MakeShots(1, {"A20"});
    system.folder.MakeFolder(ShotIn(0, "sub") + "/B7");
    PeakMemory(true);
    long long const before = PeakMemory(false);
    for (char const *prefix : {"", "B", "sub\\B", "none\\B", "A*", "?", "..\\", "\\", "A/", ".", "A\"", "Z;"}) {
        std::string const spec = std::string(prefix) + "1:2000000000";
        EXPECT_GT(farTooLong, secondsOf([&] { Shots(spec); })) << spec;
    }
    EXPECT_GT(20000000, PeakMemory(false) - before);
}

} // namespace
