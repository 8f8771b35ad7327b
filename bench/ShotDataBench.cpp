/// Values of a shot, which go to the shot's own file and to that of the group, in and out of a pause. Setting one moves
/// both files whole, so its figures are per byte of them.

#include <cstdio>
#include <string>

#include "Beside.h"

namespace {

int const valuesPerShot = 10;

std::string readWhole(std::string const &name)
{
    std::FILE *const file = std::fopen(name.c_str(), "rb");
    std::fseek(file, 0, SEEK_END);
    std::string text(static_cast<std::size_t>(std::ftell(file)), '\0');
    std::rewind(file);
    Beside::Require(std::fread(text.data(), 1, text.size(), file) == text.size());
    std::fclose(file);
    return text;
}

void writeWhole(std::string const &name, std::string const &text)
{
    std::FILE *const file = std::fopen(name.c_str(), "wb");
    Beside::Require(std::fwrite(text.data(), 1, text.size(), file) == text.size());
    std::fclose(file);
}

std::string sectionOf(std::string const &name)
{
    std::string text = '[' + name + "]\r\n";
    for (int i = 0; i < valuesPerShot; ++i) text += "Quantity" + std::to_string(i) + "=12.5 kV\r\n";
    return text;
}

/// A group of so many shots, and two experiments in which the middle one is current, one of them in a pause.
class Group {
public:
    void Make(std::string const &name, int nShots);

    double Bytes() const { return static_cast<double>(shotText.size() + cacheText.size()); }

    void Set(bool pause);
    void Get(bool pause);
    void MoveBare(bool reading);
    void ReadShotBare() const;

private:
    Experiment &in(bool pause) { return pause ? paused : running; }
    void open(Experiment &experiment, std::string const &name, std::string const &shot, bool pause);

    Experiment running, paused;
    std::string shotText, cacheText;
    std::string bareShotFile, bareCacheFile;
    bool other = false;
};

void Group::Make(std::string const &name, int nShots)
{
    std::string const shots = name + "/Shots";
    std::string const current = "A" + std::to_string(100000 + nShots / 2);
    for (std::string const &folder : {name, shots, shots + "/Shot" + current}) Beside::MakeFolder(folder);
    for (int i = 0; i < nShots; ++i) cacheText += sectionOf("ShotA" + std::to_string(100000 + i));
    shotText = sectionOf("Fields");
    Beside::MakeFile(name + '/' + name + ".ini", "[General]\r\n");
    Beside::MakeFile(shots + "/Shot" + current + "/Scalars.ini", shotText);
    Beside::MakeFile(shots + "/ScalarCache.ini", cacheText);
    bareShotFile = Beside::Native(name + "/Scalars.bare");
    bareCacheFile = Beside::Native(name + "/ScalarCache.bare");
    writeWhole(bareShotFile, shotText);
    writeWhole(bareCacheFile, cacheText);
    open(running, name, current, false);
    open(paused, name, current, true);
}

void Group::open(Experiment &experiment, std::string const &name, std::string const &shot, bool pause)
{
    experiment.SetExperimentFolder(Beside::Path(name));
    experiment.SetShot(shot.c_str(), 0);
    experiment.SetPauseIO(pause);
}

void Group::Set(bool pause)
{
    other = !other;
    in(pause).SetShotData("Quantity5", other ? "13.5 kV" : "12.5 kV");
}

void Group::Get(bool pause)
{
    Beside::Require(in(pause).GetShotData("Quantity5").Len() > 0);
}

void Group::MoveBare(bool reading)
{
    if (reading) {
        shotText = readWhole(bareShotFile);
        cacheText = readWhole(bareCacheFile);
    }
    writeWhole(bareShotFile, shotText);
    writeWhole(bareCacheFile, cacheText);
}

void Group::ReadShotBare() const
{
    benchmark::DoNotOptimize(readWhole(bareShotFile));
}

Group group10, group1000, group10000;

void prepare()
{
    group10.Make("Ten", 10);
    group1000.Make("Thousand", 1000);
    group10000.Make("TenThousand", 10000);
}

// ---- Rows ----

double const linear = 1.25;

Beside::Work setting(Group &group, bool pause)
{
    return Beside::Work([&group, pause] { group.Set(pause); }).Per(group.Bytes());
}

Beside::Work getting(Group &group, bool pause)
{
    return Beside::Work([&group, pause] { group.Get(pause); });
}

void declareFor(bool pause, std::string const &state)
{
    using namespace Beside;
    struct Row {
        std::string size;
        Group &group;
    };
    for (Row const &row : {Row{"10", group10}, Row{"1,000", group1000}, Row{"10,000", group10000}}) {
        Group &group = row.group;
        std::string const what = state + ", group of " + row.size + " shots, beside ";
        Measure("SetShotData " + what + (pause ? "writing the files" : "reading and writing the files"), "byte",
                Unbounded, setting(group, pause), Work([&group, pause] { group.MoveBare(!pause); }).Per(group.Bytes()));
        Measure("GetShotData " + what + "reading the shot's file", "", Unbounded, getting(group, pause),
                Work([&group] { group.ReadShotBare(); }));
    }
    Measure("SetShotData " + state + ", group of 10,000 beside 1,000", "byte", linear, setting(group10000, pause),
            setting(group1000, pause));
    Measure("GetShotData " + state + ", group of 10,000 beside 10", "", linear, getting(group10000, pause),
            getting(group10, pause));
}

void declare()
{
    declareFor(false, "out of a pause");
    declareFor(true, "in a pause");
}

} // namespace

int main(int argc, char **argv)
{
    return Beside::Run(argc, argv, "Values of a shot", prepare, declare);
}
