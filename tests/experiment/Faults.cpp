/// Operations on experiments and shots on a disk that fails once, or for good, at each of its operations in turn. What
/// is being written is as it was or as it is to become; all else is as it was, byte for byte; and on a sound disk
/// the same operation does its work.
#include "support/FaultTest.h"

namespace {

class ExperimentFaults : public FaultTest {
protected:
    static std::set<std::string> Values() { return {Cache(), In("A1", "Scalars.ini")}; }
    static DArray<int, 0> Groups(std::vector<int> const &numbers)
    {
        DArray<int, 0> groups;
        for (int const number : numbers) groups.Add(number);
        return groups;
    }
    static DStringArray Names(std::vector<std::string> const &names)
    {
        DStringArray list;
        for (std::string const &name : names) list.Add(Dstr(name));
        return list;
    }
    /// Every line of a file that isn't of the key "Date" or "Comment" is in another.
    static void ExpectLinesKept(std::string const &before, std::string const &after)
    {
        std::size_t at = 0;
        for (std::size_t end = 0; end != std::string::npos; at = end + 2) {
            end = before.find("\r\n", at);
            std::string const line = before.substr(at, end == std::string::npos ? end : end - at);
            if (line.compare(0, 5, "Date=") != 0) {
                EXPECT_NE(std::string::npos, after.find(line)) << line;
            }
            if (end == std::string::npos) break;
        }
    }
};

// ---- The experiment ----

TEST_F(ExperimentFaults, OpeningChangesNoFileThatIsThere)
{
    RunAll([this] { EXPECT_TRUE(Expt.SetExperimentFolder(Dstr(path("X\\E")))); }, {}, 4);
}

TEST_F(ExperimentFaults, OpeningMakesWhatIsMissing)
{
    RunAll([this] { EXPECT_TRUE(Expt.SetExperimentFolder(Dstr(path("X\\New")))); },
           {"X/New/", "X/New/Shots/", "X/New/Query/", "X/New/Macros/", "X/New/New.ini"}, 8);
}

TEST_F(ExperimentFaults, TheSettingsKeepAllButTheBackupPath)
{
    RunAll([this] { Expt.SetBackupPath(Dstr(path("X\\Other"))); }, {"X/E/E.ini"}, 2);
}

TEST_F(ExperimentFaults, AskingForTheBackupPathChangesNoFile)
{
    RunAll([] { Expt.GetBackupPath(); }, {}, 4);
}

TEST_F(ExperimentFaults, TheBackupPathIsMade)
{
    RunAll([] { Expt.GetBackupPath(); }, {"X/New/", "X/New/Bak/"}, 4,
           [this] { system.folder.Write("X/E/E.ini", "[Backup]\r\nPath=..\\New\\Bak\r\n"); });
}

TEST_F(ExperimentFaults, AStampIsThereOrNot)
{
    DIni ini;
    RunAll([&ini] { Expt.StampConfigFile(ini); }, {"X/c.ini"}, 1, [&] { ini = DIni(Dstr(path("X\\c.ini"))); });
}

// ---- Values ----

TEST_F(ExperimentFaults, AValueIsOldOrNewInEachOfItsFiles)
{
    RunAll([] { Expt.SetShotData("x", "new"); }, Values(), 4);
    RunAll([] { Expt.SetShotData("added", "new"); }, Values(), 4);
    RunAll([] { Expt.SetShotData("x", ""); }, Values(), 4);
    RunAll([] { Expt.SetScalarData("y", 2.5f); }, Values(), 4);
}

TEST_F(ExperimentFaults, AValueInAPauseIsOldOrNewInEachOfItsFiles)
{
    RunAll(
        [] {
            Expt.SetPauseIO(true);
            Expt.SetShotData("x", "new");
            Expt.SetPauseIO(false);
        },
        Values(), 4);
}

TEST_F(ExperimentFaults, TheFirstValueOfAShotMakesItsFiles)
{
    RunAll([] { Expt.SetShotData("x", "new"); }, {"X/Data/RunA/ScalarCache.ini", "X/Data/RunA/ShotC1/Scalars.ini"}, 4,
           [this] {
               system.folder.MakeFolder("X/Data/RunA/ShotC1");
               Expt.SetShot("C1", 1);
           });
}

TEST_F(ExperimentFaults, TheCacheOfAShotIsOldOrNew)
{
    RunAll([] { Expt.SetShotCacheData(); }, {Cache()}, 3,
           [this] { system.folder.Write(In("A1", "Scalars.ini"), "[Fields]\r\nx=fresh"); });
}

TEST_F(ExperimentFaults, ReadingChangesNoFile)
{
    RunAll(
        [] {
            Expt.GetShotData("x");
            Expt.GetScalarData("x+U\\mx+M\\mx", nullptr);
            Expt.SetShot("B1", -1);
            Expt.GetShotData("b");
            Expt.SetShot("A1", 0);
        },
        {}, 6);
}

// ---- Shots ----

TEST_F(ExperimentFaults, ANewShotIsMadeAsFarAsTheDiskGoes)
{
    RunAll(
        [] {
            DString name("*C1");
            EXPECT_EQ(0, Expt.CreateShot(name, "", true));
            EXPECT_EQ("C1", Plain(name));
        },
        {In("C1"), In("C1", "Scalars.ini"), Cache()}, 8);
}

TEST_F(ExperimentFaults, ANewShotWithACommentHasEachOfItsValuesOrNot)
{
    std::string const comment = "Comment=a comment", date = std::string("Date=") + FreshSystem::Date, end = "\r\n";
    ForEveryRun(
        [] {
            DString name("*C1");
            EXPECT_EQ(0, Expt.CreateShot(name, "a comment", true));
        },
        [&](FaultyRun const &run) {
            ExpectNothingElse(run.before, run.after, {In("C1"), Cache()});
            std::string const old = Bytes(run.before, Cache()), head = "[Fields]\r\n", shot = old + "\r\n[ShotC1]\r\n";
            EXPECT_THAT(Bytes(run.after, In("C1", "Scalars.ini")),
                        testing::AnyOf("(missing)", "", head + comment, head + date, head + comment + end + date));
            EXPECT_THAT(Bytes(run.after, Cache()),
                        testing::AnyOf(old, shot + comment, shot + date, shot + comment + end + date));
            EXPECT_THAT(Bytes(run.again, In("C1", "Scalars.ini")),
                        testing::AnyOf(head + comment + end + date, head + date + end + comment));
            EXPECT_THAT(Bytes(run.again, Cache()),
                        testing::AnyOf(shot + comment + end + date, shot + date + end + comment));
        },
        12);
}

TEST_F(ExperimentFaults, AnExistingShotKeepsItsValues)
{
    for (char const *shot : {"A1", "*A1", "A1\\W"})
        ForEveryRun(
            [shot] {
                DString name(shot);
                Expt.CreateShot(name, "", false);
            },
            [](FaultyRun const &run) {
                ExpectNothingElse(run.before, run.after, {In("A1", "Scalars.ini"), Cache()});
                for (std::string const &file : {In("A1", "Scalars.ini"), Cache()})
                    ExpectLinesKept(Bytes(run.before, file), Bytes(run.after, file));
            });
}

TEST_F(ExperimentFaults, AnExistingShotOfAnotherGroupKeepsItsFiles)
{
    ForEveryRun(
        [] {
            DString name("B1");
            Expt.CreateShot(name, "", false);
        },
        [](FaultyRun const &run) {
            ExpectNothingElse(run.before, run.after, {In("B1"), Cache()});
            ExpectLinesKept(Bytes(run.before, Cache()), Bytes(run.after, Cache()));
        },
        2);
}

TEST_F(ExperimentFaults, ARenamedShotIsWholeUnderOneOfItsNames)
{
    ForEveryRun([] { EXPECT_TRUE(Expt.RenameShot("C1")); },
                [](FaultyRun const &run) {
                    ExpectNothingElse(run.before, run.after, {In("A1"), In("C1"), Cache()});
                    std::string const there = run.after.count(In("C1")) ? "C1" : "A1";
                    EXPECT_EQ(there == "A1", run.after.count(In("A1")) == 1);
                    for (char const *file : {"Scalars.ini", "U.wvf", "M.dmt", "P.dpt"})
                        EXPECT_EQ(Bytes(run.before, In("A1", file)), Bytes(run.after, In(there, file)));
                    ExpectOldOrNew(run, Cache());
                },
                4);
}

TEST_F(ExperimentFaults, AShotIsNotRenamedOverAnother)
{
    ForEveryRun([] { Expt.RenameShot("A2"); }, [](FaultyRun const &run) { ExpectSame(run.before, run.after); });
}

TEST_F(ExperimentFaults, ADeletedShotTakesNoneAlong)
{
    RunAll([] { EXPECT_TRUE(Expt.DeleteShot()); },
           {In("A1"), In("A1", "Scalars.ini"), In("A1", "U.wvf"), In("A1", "M.dmt"), In("A1", "P.dpt"), Cache()}, 4);
}

// ---- Lists ----

TEST_F(ExperimentFaults, AListIsOldOrNew)
{
    DStringArray names = Names({"A1", "A2", "B1"});
    DArray<int, 0> groups = Groups({0, 0, 1});
    for (char const *file : {"L.txt", "New.txt"})
        RunAll([&, file] { Expt.SaveShotList(file, names, groups); }, {std::string("X/E/ShotLists/") + file});
}

TEST_F(ExperimentFaults, AMergeLeavesTheListThatItReads)
{
    DString const file = Dstr(path("X\\E\\ShotLists\\M"));
    ForEveryRun(
        [&] {
            DStringArray names = Names({"A1", "C1"});
            DArray<int, 0> groups = Groups({0, 1});
            Expt.MergeShotList(file, "L.txt", names, groups);
        },
        [](FaultyRun const &run) {
            ExpectNothingElse(run.before, run.after, {"X/E/ShotLists/L.txt"});
            ExpectSame(run.once, run.again);
        },
        3);
    EXPECT_EQ("A1;.\\Shots\r\nGone;\r\nA2;.\\Shots\r\nC1;..\\Data\\RunA", system.folder.Read("X/E/ShotLists/L.txt"));
}

TEST_F(ExperimentFaults, AMergeIntoItsOwnListNeverLosesWhatItHeld)
{
    DString const file = Dstr(path("X\\E\\ShotLists\\L"));
    std::string const list = "X/E/ShotLists/L.txt";
    auto const merge = [&] {
        DStringArray names = Names({"A1", "C1"});
        DArray<int, 0> groups = Groups({0, 1});
        Expt.MergeShotList(file, "L.txt", names, groups);
    };
    RunAll(merge, {list}, 3);
    EXPECT_EQ("A1;.\\Shots\r\nB1;..\\Data\\RunA\r\nC1;..\\Data\\RunA", system.folder.Read(list));
}

TEST_F(ExperimentFaults, ASelectionGivesOnlyShotsThatAreThere)
{
    std::string const there = " A1/0 A2/0 B1/1 ";
    for (char const *spec : {"L", "A1:A9", "A1:A2000000000", "B1:B3"})
        ForEveryRun(
            [&, spec] {
                DStringArray names;
                DArray<int, 0> groups;
                DArray<long long, 0> dates;
                Expt.GetShotSet("(Shot list)", spec, "", names, groups, &dates);
                ASSERT_EQ(names.Count(), groups.Count());
                EXPECT_EQ(names.Count(), dates.Count());
                for (int i = 0; i < names.Count(); ++i) {
                    std::string const shot = Plain(names[i]) + "/" + std::to_string(groups[i]);
                    EXPECT_NE(std::string::npos, there.find(" " + shot + " ")) << shot;
                }
            },
            [](FaultyRun const &run) { ExpectSame(run.before, run.after); });
}

TEST_F(ExperimentFaults, TheFolderOfListsIsMade)
{
    RunAll(
        [] {
            DStringArray names;
            DArray<int, 0> groups;
            Expt.GetShotList("L", -1, names, groups, nullptr);
            EXPECT_EQ(0, names.Count());
        },
        {"X/E/ShotLists/"}, 2, [this] { std::filesystem::remove_all(system.folder.native("X/E/ShotLists")); });
}

// ---- Backups ----

TEST_F(ExperimentFaults, ABackupLeavesTheShotAndOlderBackups)
{
    std::set<std::string> const written = {"X/Safe/E/Shots/ShotA1_1/", "X/Safe/E/Shots/ShotA1_2/",
                                           // where a backup goes if the settings can't be read:
                                           "X/Backup/"};
    ForEveryRun([] { Expt.BackupShot(); },
                [&](FaultyRun const &run) {
                    ExpectNothingElse(run.before, run.after, written);
                    for (auto const &file : run.after) {
                        std::size_t const name = file.first.rfind('/') + 1;
                        if (run.before.count(file.first) || name == file.first.size()) continue;
                        EXPECT_EQ(Bytes(run.before, In("A1", file.first.substr(name))), file.second) << file.first;
                    }
                    bool const isWhole = Bytes(run.again, "X/Safe/E/Shots/ShotA1_2/U.wvf") != "(missing)" ||
                                         Bytes(run.again, "X/Safe/E/Shots/ShotA1_1/U.wvf") != "(missing)";
                    EXPECT_TRUE(isWhole);
                },
                6);
}

} // namespace
