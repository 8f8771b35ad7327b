/// Selections of 10,000 shots: a list file, a range, a wildcard, with dates and with a file that the shots must hold,
/// beside the questions to the disk that they can't do without.

#include <cstdio>
#include <string>
#include <vector>

#include <dirent.h>
#include <sys/stat.h>

#include "Beside.h"

namespace {

int const nShots = 10000;
int const firstNumber = 100000;

char const *const shots = "Lists/Shots";
char const *const listFile = "Lists/ShotLists/All.txt";

Experiment experiment;
std::size_t listSize = 0;

/// What is asked for, by its native name.
std::vector<std::string> folders, valueFiles, traces;

std::string shotName(int i)
{
    return 'A' + std::to_string(firstNumber + i);
}

/// All shots have values and a trace.
void makeShot(int i)
{
    std::string const folder = std::string(shots) + "/Shot" + shotName(i);
    Beside::MakeFolder(folder);
    Beside::MakeFile(folder + "/Scalars.ini", "[Fields]\r\nComment=one of many\r\n");
    Beside::MakeFile(folder + "/W.wvf", "W");
    folders.push_back(Beside::Native(folder));
    valueFiles.push_back(folders.back() + "/Scalars.ini");
    traces.push_back(folders.back() + "/W.wvf");
}

void prepare()
{
    for (char const *folder : {"Lists", shots, "Lists/ShotLists"}) Beside::MakeFolder(folder);
    Beside::MakeFile("Lists/Lists.ini", "[General]\r\n");
    std::string list;
    for (int i = 0; i < nShots; ++i) {
        makeShot(i);
        list += shotName(i) + ";.\\Shots\r\n";
    }
    listSize = list.size();
    Beside::MakeFile(listFile, list);
    experiment.SetExperimentFolder(Beside::Path("Lists"));
}

// ---- The bare operations ----

void askDisk(std::vector<std::string> const &names)
{
    for (std::string const &name : names) {
        struct stat info;
        Beside::Require(stat(name.c_str(), &info) == 0);
    }
}

/// Once through a folder; the number of its entries.
int walk(std::string const &name)
{
    DIR *const folder = opendir(name.c_str());
    Beside::Require(folder != nullptr);
    int n = -2; // the folder itself and the one that it is in
    while (readdir(folder)) ++n;
    closedir(folder);
    return n;
}

void walkFolder()
{
    static std::string const name = Beside::Native(shots);
    Beside::Require(walk(name) == nShots);
}

/// What it takes to know that a shot doesn't have a file, in whatever case it is written.
void walkShots()
{
    for (std::string const &name : folders) Beside::Require(walk(name) == 2);
}

// ---- Ours ----

struct Selection {
    DStringArray names;
    DArray<int, 0> groups;
    DArray<long long, 0> dates;
};

Beside::Work listing(std::string const &spec, bool dated)
{
    return Beside::Work([spec = DString(spec.c_str()), dated] {
        Selection found;
        experiment.GetShotList(spec, 0, found.names, found.groups, dated ? &found.dates : nullptr);
        Beside::Require(found.names.Count() == nShots);
    });
}

Beside::Work choosing(char const *file, int nExpected, bool dated)
{
    return Beside::Work([=] {
        Selection found;
        experiment.GetShotSet(".\\Shots", "A*", file, found.names, found.groups, dated ? &found.dates : nullptr);
        Beside::Require(found.names.Count() == nExpected);
    });
}

// ---- Rows ----

/// As for a single question whether a folder is there.
double const likeOneQuestion = 3;

void declareRow(std::string const &what, double atMost, Beside::Work ours, std::function<void()> bare)
{
    Beside::Measure(what, "shot", atMost, ours.Per(nShots), Beside::Work(std::move(bare)).Per(nShots));
}

void declareLists()
{
    auto const reading = [] {
        Beside::ReadBare(listFile, listSize);
        askDisk(folders);
    };
    std::string const beside = "beside reading it and a stat per shot";
    declareRow("GetShotList of a list file, " + beside, likeOneQuestion, listing("All", false), reading);
    declareRow("GetShotList of a list file, with dates, " + beside, Beside::Unbounded, listing("All", true), reading);
}

void declareRanges()
{
    auto const asking = [] { askDisk(folders); };
    auto const walkAndAsk = [] {
        walkFolder();
        askDisk(folders);
    };
    std::string const range = shotName(0) + ':' + shotName(nShots - 1);
    std::string const wide = shotName(0) + ":2000000000";
    declareRow("GetShotList of a range, beside a stat per shot", likeOneQuestion, listing(range, false), asking);
    declareRow("GetShotList of a range, with dates, beside a stat per shot", Beside::Unbounded, listing(range, true),
               asking);
    declareRow("GetShotList of a range of two thousand million numbers, beside readdir and a stat per shot",
               likeOneQuestion, listing(wide, false), walkAndAsk);
}

void declareSets()
{
    auto const walkAndAsk = [](std::vector<std::string> const &names) {
        return [&names] {
            walkFolder();
            askDisk(names);
        };
    };
    auto const walkAll = [] {
        walkFolder();
        walkShots();
    };
    std::string const what = "GetShotSet of a wildcard, ";
    declareRow(what + "beside readdir", likeOneQuestion, choosing("*", nShots, false), walkFolder);
    declareRow(what + "with dates, beside readdir and a stat per shot", likeOneQuestion, choosing("*", nShots, true),
               walkAndAsk(valueFiles));
    declareRow(what + "of shots with a file, beside readdir and a stat per shot", likeOneQuestion,
               choosing("W", nShots, false), walkAndAsk(traces));
    declareRow(what + "of shots with a file that none has, beside readdir in each", Beside::Unbounded,
               choosing("V", 0, false), walkAll);
}

void declare()
{
    declareLists();
    declareRanges();
    declareSets();
}

} // namespace

int main(int argc, char **argv)
{
    return Beside::Run(argc, argv, "Selections of shots", prepare, declare);
}
