/// The vocabulary of the tests in which the disk fails at each operation in turn: an experiment `X\E` that holds
/// something of everything, the state of all its files before and after, and what may have become of them. All
/// interfaces work on it, through `Expt`.
///
///     RunAll([] { Expt.SetShotData("x", "1"); }, {"X/E/Shots/ScalarCache.ini", "X/E/Shots/ShotA1/Scalars.ini"});
#pragma once

#include <algorithm>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "experiment/Experiment.h"
#include "interfaces/VodrelC.h"
#include "support/Faults.h"
#include "support/FreshSystem.h"

/// All files, and folders with a slash behind their names, by their names in the fresh folder.
using Disk = std::map<std::string, std::string>;

/// One run of an operation on a disk that failed.
struct FaultyRun {
    Disk before; ///< what was there
    Disk after;  ///< what is there after the fault
    Disk again;  ///< and after the operation was done once more, on a sound disk
    Disk once;   ///< what is there if no fault happens
    Disk twice;  ///< and if no fault happens in two
};

class FaultTest : public testing::Test {
protected:
    FaultTest()
    {
        InitializeVodrelC(path("vodrel").c_str());
        SetNotify(&system.listener);
        makedisk();
    }
    ~FaultTest() override { Expt = Experiment(); }

    std::string path(std::string const &relative) const { return system.path(relative); }

    /// Everything below the experiment's parent, and the per-user folder without the log.
    Disk Now() const
    {
        Disk disk = below("X");
        disk.merge(below("user"));
        disk.erase("user/Vodrel/Log.txt");
        return disk;
    }
    /// The disk as it was made, the experiment opened, the shot A1 current.
    void Begin() const
    {
        restore();
        system.folder.Write("user/Vodrel/MPIHosts.txt", "old");
        system.folder.Write("user/Vodrel/Log.txt", "old\r\n");
        Expt = Experiment();
        Expt.SetExperimentFolder(Dstr(path("X\\E")));
        Expt.SetShot("A1", 0);
    }

    using Action = std::function<void()>;
    using Check = std::function<void(FaultyRun const &)>;

    /// Runs an operation with a fault of either kind at each of its disk operations, at least `nFaults` of them, and
    /// looks at each run. Before each the disk is made anew, and `prepare` done.
    void ForEveryRun(
        Action const &act, Check const &check, int nFaults = 1, Action const &prepare = [] {})
    {
        FaultyRun run;
        Begin(), prepare(), act();
        run.once = Now();
        act();
        run.twice = Now();
        for (FaultKind const kind : {FaultKind::Once, FaultKind::ForGood}) {
            SCOPED_TRACE(kind == FaultKind::Once ? "once" : "for good");
            int const n = ForEveryFault(
                kind, [&] { Begin(), prepare(), run.before = Now(); }, act,
                [&] {
                    run.after = Now();
                    act();
                    run.again = Now();
                    check(run);
                });
            EXPECT_LE(nFaults, n);
        }
    }

    /// An operation that writes some files, and does the same if it is done twice: each of them is as it was or as it
    /// is to become, or empty if it is new; nothing else has changed; and the operation can be done again.
    void RunAll(
        Action const &act, std::set<std::string> const &written, int nFaults = 1, Action const &prepare = [] {})
    {
        ForEveryRun(
            act,
            [&](FaultyRun const &run) {
                ExpectNothingElse(run.before, run.after, written);
                for (std::string const &file : written) ExpectOldOrNew(run, file);
                ExpectSame(run.twice, run.again);
            },
            nFaults, prepare);
        Begin(), prepare();
        Disk const before = Now();
        act();
        for (std::string const &file : written) EXPECT_NE(Bytes(before, file), Bytes(Now(), file)) << file;
    }

    static std::string Bytes(Disk const &disk, std::string const &file)
    {
        auto const found = disk.find(file);
        return found == disk.end() ? "(missing)" : found->second;
    }
    static void ExpectOldOrNew(FaultyRun const &run, std::string const &file)
    {
        std::string const bytes = Bytes(run.after, file), old = Bytes(run.before, file);
        bool const isNewAndEmpty = old == "(missing)" && bytes.empty();
        EXPECT_TRUE(bytes == old || bytes == Bytes(run.once, file) || isNewAndEmpty) << file << " holds: " << bytes;
    }
    /// Whatever isn't among the names that may have changed, or below one that ends in a slash, is as it was.
    static void ExpectNothingElse(Disk const &before, Disk const &after, std::set<std::string> const &written)
    {
        std::set<std::string> names;
        for (auto const &file : before) names.insert(file.first);
        for (auto const &file : after) names.insert(file.first);
        for (std::string const &file : names)
            if (!IsAmong(file, written)) {
                EXPECT_EQ(Bytes(before, file), Bytes(after, file)) << file;
            }
    }
    static void ExpectSame(Disk const &expected, Disk const &disk) { ExpectNothingElse(expected, disk, {}); }

    static bool IsAmong(std::string const &file, std::set<std::string> const &written)
    {
        return std::any_of(written.begin(), written.end(), [&file](std::string const &one) {
            return one == file || (one.back() == '/' && file.compare(0, one.size(), one) == 0);
        });
    }

    static constexpr char const *Shots = "X/E/Shots/";
    static std::string In(std::string const &shot, std::string const &file = std::string())
    {
        return Shots + ("Shot" + shot) + "/" + file;
    }
    static std::string Cache() { return std::string(Shots) + "ScalarCache.ini"; }

    FreshSystem system;

private:
    Disk below(std::string const &part) const
    {
        Disk disk;
        std::string const root = system.folder.native() + "/";
        for (auto const &entry : std::filesystem::recursive_directory_iterator(root + part)) {
            std::string const relative = entry.path().generic_string().substr(root.size());
            if (entry.is_directory()) disk[relative + "/"];
            else disk[relative] = system.folder.Read(relative);
        }
        return disk;
    }
    /// Makes anew what isn't as it was made, and nothing else: there are thousands of runs.
    void restore() const
    {
        Disk const now = below("X");
        for (auto const &file : now)
            if (made.count(file.first) == 0) std::filesystem::remove_all(system.folder.native(file.first));
        for (auto const &file : made) {
            if (file.first.back() == '/') system.folder.MakeFolder(file.first);
            else if (Bytes(now, file.first) != file.second) system.folder.Write(file.first, file.second);
        }
    }
    /// Makes the experiment as each run finds it.
    void makedisk()
    {
        TempFolder const &folder = system.folder;
        folder.Write("X/E/E.ini", "[General]\r\nDescription=d\r\n[Groups]\r\n..\\Data\\Run*;;Runs=1\r\n"
                                  "[Backup]\r\nPath=..\\Safe\r\nother=1\r\n[Last]\r\nz=9");
        folder.Write("X/E/ShotLists/L.txt", "A1;.\\Shots\r\nB1;..\\Data\\RunA");
        folder.Write("X/E/ShotLists/M.txt", "A1;.\\Shots\r\nGone;nowhere\r\nA2");
        folder.Write("X/Data/RunA/ShotB1/Scalars.ini", "[Fields]\r\nb=1");
        folder.Write("X/Data/RunA/ScalarCache.ini", "[ShotB1]\r\nb=1");
        folder.Write("X/Safe/E/Shots/ShotA1/U.wvf", "an older backup");
        folder.Write("X/Safe/BackupLocation.ini", "[General]\r\nBackupLocation=" + path("X\\Safe") + "\r\nmore=1");
        folder.Write("X/c.ini", "[A]\r\nx=1\r\n[LastRun]\r\nShot=old\r\nOther=1\r\n[B]\r\ny=2");
        folder.Write(In("A1", "Scalars.ini"), "[Fields]\r\nDate=d1\r\nx=1\r\ny=2\r\n;note\r\n[More]\r\nm=1");
        folder.Write(In("A2", "Scalars.ini"), "[Fields]\r\nDate=d2");
        folder.Write(Cache(), "[ShotA1]\r\nDate=d1\r\nx=1\r\ny=2\r\n[ShotA2]\r\nDate=d2\r\n[Other]\r\no=1");
        Expt = Experiment();
        Expt.SetExperimentFolder(Dstr(path("X\\E")));
        Expt.SetShot("A1", 0);
        float const data[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
        SetWaveformC("U", 16, 0, 0.5f, data);
        SetMatrixC("M", 4, 0, 1, 4, 0, 1, 1, 0, 1, data);
        SetPGroupC("P", 2, 0, 1, 2, data);
        made = below("X");
    }

    Disk made;
};
