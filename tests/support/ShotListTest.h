/// The words in which the tests of shot lists speak: what a selection gives, as "A1/0 A2/1", the shots with their
/// group numbers. The experiment is that of `ExperimentTest`, with the groups 0, 1 and 2.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/ExperimentTest.h"
#include "support/FileTimes.h"

/// One set of the three arrays in which shots are given.
struct ShotArrays {
    DStringArray names;
    DArray<int, 0> gnums;
    DArray<long long, 0> dates;

    /// Arrays that hold something already, to see what is emptied and what isn't touched.
    void Fill()
    {
        *this = ShotArrays();
        names.Add("old");
        gnums.Add(7);
        gnums.Add(8);
        dates.Add(9);
    }
    void Add(std::string const &name, int gnum)
    {
        names.Add(Dstr(name));
        gnums.Add(gnum);
    }
    std::string Shots() const
    {
        std::string all;
        for (int i = 0; i < names.Count() && i < gnums.Count(); ++i)
            all += (i == 0 ? "" : " ") + Plain(names[i]) + "/" + std::to_string(gnums[i]);
        if (names.Count() != gnums.Count())
            all += " (" + std::to_string(names.Count()) + " names, " + std::to_string(gnums.Count()) + " groups)";
        return all;
    }
    std::string Dates() const
    {
        std::string all;
        for (int i = 0; i < dates.Count(); ++i) all += (i == 0 ? "" : " ") + std::to_string(dates[i]);
        return all;
    }
    /// How many entries each array has.
    std::string Counts() const
    {
        return std::to_string(names.Count()) + " " + std::to_string(gnums.Count()) + " " +
               std::to_string(dates.Count());
    }
};

class ShotListTest : public ExperimentTest {
protected:
    ShotListTest() { OpenWithRuns(); }

    void MakeShots(int group, std::vector<std::string> const &shots) const
    {
        for (std::string const &shot : shots) MakeShot(group, shot);
    }
    /// Writes a list of the experiment.
    void WriteList(std::string const &file, std::string const &bytes) const { Write("X/E/ShotLists/" + file, bytes); }
    std::string ReadList(std::string const &file) const { return Read("X/E/ShotLists/" + file); }

    /// The shots of a list or range, asked for without dates.
    std::string Shots(std::string const &spec, int gnum = -1)
    {
        result.Fill();
        expt.GetShotList(Dstr(spec), gnum, result.names, result.gnums, nullptr);
        EXPECT_EQ("9", result.Dates());
        return result.Shots();
    }
    /// How many entries the three arrays have after a question that begins with arrays of 1, 2 and 1.
    std::string Counts(std::string const &spec)
    {
        result.Fill();
        expt.GetShotList(Dstr(spec), -1, result.names, result.gnums, &result.dates);
        return result.Counts();
    }
    /// The shots of a list of one line.
    std::string Line(std::string const &line, int gnum = -1)
    {
        WriteList("line.txt", line);
        return Shots("line", gnum);
    }

    /// The shots of a set, asked for with dates.
    std::string Set(std::string const &group, std::string const &shots, std::string const &file = std::string())
    {
        result.Fill();
        expt.GetShotSet(Dstr(group), Dstr(shots), Dstr(file), result.names, result.gnums, &result.dates);
        EXPECT_EQ(result.names.Count(), result.dates.Count());
        return result.Shots();
    }
    using ExperimentTest::Set;

    /// Sets the last-write time of a file or folder, in seconds since 1970.
    void SetDate(std::string const &relative, long long date) const
    {
        SetModified(system.folder.native(relative), date);
    }

    ShotArrays result;
};
