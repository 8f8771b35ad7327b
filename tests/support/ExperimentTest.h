/// The words in which the tests of experiments speak: an experiment `X\E` in a fresh system, with the two
/// shot paths `X\Data\RunA` and `X\Data\RunB` beside its own if a test asks for them. Names on the host have slashes.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "experiment/Experiment.h"
#include "files/PathUtils.h"
#include "support/FreshSystem.h"

class ExperimentTest : public testing::Test {
protected:
    std::string path(std::string const &relative) const { return system.path(relative); }
    std::string Read(std::string const &relative) const { return system.folder.Read(relative); }
    void Write(std::string const &relative, std::string const &bytes) const { system.folder.Write(relative, bytes); }
    bool Has(std::string const &relative) const { return system.folder.Has(relative); }

    /// The experiment's ini, line by line.
    void Ini(std::string const &bytes) const { Write("X/E/E.ini", bytes); }

    bool Open(std::string const &folder = "X\\E") { return expt.SetExperimentFolder(Dstr(path(folder))); }

    /// An experiment with the groups 0 `X\E\Shots`, 1 `X\Data\RunA` and 2 `X\Data\RunB`.
    void OpenWithRuns(std::string const &more = std::string())
    {
        system.folder.MakeFolder("X/Data/RunA");
        system.folder.MakeFolder("X/Data/RunB");
        Ini("[Groups]\r\n..\\Data\\Run*;;Runs=1\r\n" + more);
        Open();
    }

    /// The folder of a shot in group 0, 1 or 2, on the host.
    static std::string ShotIn(int group, std::string const &shot)
    {
        char const *const groups[] = {"X/E/Shots", "X/Data/RunA", "X/Data/RunB"};
        return std::string(groups[group]) + "/Shot" + shot;
    }
    void MakeShot(int group, std::string const &shot) const { system.folder.MakeFolder(ShotIn(group, shot)); }

    bool Set(std::string const &shot, int group) { return expt.SetShot(Dstr(shot), group); }
    int Create(std::string const &shot, std::string const &comment = std::string(), bool stamp = false)
    {
        name = Dstr(shot);
        return expt.CreateShot(name, Dstr(comment), stamp);
    }
    std::string Value(std::string const &key) { return Plain(expt.GetShotData(Dstr(key))); }
    void Store(std::string const &key, std::string const &value) { expt.SetShotData(Dstr(key), Dstr(value)); }

    std::string Scalars(int group, std::string const &shot) const { return Read(ShotIn(group, shot) + "/Scalars.ini"); }
    std::string Cache(int group) const
    {
        return Read(std::filesystem::path(ShotIn(group, "")).parent_path().string() + "/ScalarCache.ini");
    }

    std::string CurrentShot() const { return Plain(expt.GetShotName()); }

    /// Name, folder and group of the current shot.
    std::string State() const
    {
        return CurrentShot() + " | " + Plain(expt.GetShotFolder()) + " | " + std::to_string(expt.GetCurrentGroup());
    }

    FreshSystem system;
    Experiment expt;
    DString name; ///< as the last `CreateShot` left it
};
