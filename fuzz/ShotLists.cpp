/// Any bytes as a selection of shots. The first one chooses the kind: "l" for a list file, "m" for one that is merged
/// with the shots of another, "r" for a list's name or a range, "s" for a set, whose three lines are group, shots and
/// file. Behind any other letter the first of these that has its two lowest bits.

#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzExperiment.h"

namespace {

struct Selection {
    /// Each shot has a group, which there is, and a date.
    void Check(Experiment const &experiment) const
    {
        Require(names.Count() == groups.Count() && names.Count() == dates.Count());
        for (int i = 0; i < groups.Count(); ++i) Require(~experiment.GetShotGroupPath(groups[i]));
    }

    DStringArray names;
    DArray<int, 0> groups;
    DArray<long long, 0> dates;
};

Selection listed(Experiment &experiment, DString const &spec, int group)
{
    Selection shots;
    experiment.GetShotList(spec, group, shots.names, shots.groups, &shots.dates);
    shots.Check(experiment);
    return shots;
}

Selection setOf(Experiment &experiment, DString const &group, DString const &pattern, DString const &file)
{
    Selection shots;
    experiment.GetShotSet(group, pattern, file, shots.names, shots.groups, &shots.dates);
    shots.Check(experiment);
    return shots;
}

void askList(FuzzExperiment &fuzzed)
{
    Selection const shots = listed(fuzzed.experiment, "L", -1);
    Require(setOf(fuzzed.experiment, "(Shot list)", "L.txt", "").names.Count() == shots.names.Count());
    setOf(fuzzed.experiment, "(Shot list)", "L", "W");
}

/// What is saved has every shot of both, in groups that there are.
void askMerging(FuzzExperiment &fuzzed)
{
    Selection shots = setOf(fuzzed.experiment, ".\\Shots", "*", "");
    int const nBefore = listed(fuzzed.experiment, "L", -1).names.Count();
    fuzzed.experiment.MergeShotList(fuzzed.Path("ShotLists/L"), "Merged.txt", shots.names, shots.groups);
    Require(listed(fuzzed.experiment, "Merged", -1).names.Count() >= nBefore);
}

void askSet(Experiment &experiment, DString const &text)
{
    DStringArray const lines(text, "\n", 3);
    setOf(experiment, lines[0], lines[1], lines[2]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *bytes, std::size_t size)
{
    if (size == 0) return 0;
    FuzzExperiment &fuzzed = FuzzExperiment::The();
    DString const text = TextOf(bytes + 1, size - 1);
    int const kind = bytes[0] & 3;
    if (kind == ('l' & 3) || kind == ('m' & 3)) fuzzed.Write("ShotLists/L.txt", bytes + 1, size - 1);
    if (kind == ('l' & 3)) askList(fuzzed);
    if (kind == ('m' & 3)) askMerging(fuzzed);
    if (kind == ('r' & 3))
        for (int group : {-1, 0, 1}) listed(fuzzed.experiment, text, group);
    if (kind == ('s' & 3)) askSet(fuzzed.experiment, text);
    return 0;
}
