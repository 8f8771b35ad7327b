// One experiment, made, extended or printed.
//
//     make_tree make|extend|list FOLDER
//     make_tree results
//
// FOLDER is fully qualified, `Z:\...`. compare_systems.py runs this program as each system builds it.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>

#include "core/Log.h"
#include "core/StartUp.h"
#include "experiment/Experiment.h"
#include "platform/Platform.h"
#include "systems/Tree.h"

namespace {

long long unixSeconds = 1718000000;
long long counts = 5000; // at 1000 a second

Platform::Clock standingClock()
{
    Platform::Clock clock;
    clock.unixTime = [] { return unixSeconds; };
    clock.counter = [] { return counts; };
    clock.counterFrequency = [] { return 1000LL; };
    clock.sleepFor = [](int) {};
    return clock;
}

/// Hears everything, so that no message gets between the lines of a list.
class Silence : public DNotify {
public:
    void Notify(int, int, DString const &) override {}
};

struct Mode {
    char const *name;
    void (*run)(Tree const &);
};

Mode const modes[] = {{"make", MakeTree}, {"extend", ExtendTree}, {"list", ListTree}};

} // namespace

void PassTime(long long seconds)
{
    unixSeconds += seconds;
    counts += seconds * 7;
}

void Tree::Start(bool logging) const
{
    static std::string userFolder;
    static Silence silence;
    userFolder = Path("User").c_str();
    Platform::SetUserDataFolder(userFolder.c_str());
    CoreInit("");
    SetNotify(&silence);
    Logging = logging;
}

void Tree::Open() const
{
    Expt.SetExperimentFolder(Experiment());
}

int main(int argc, char **argv)
{
#if defined _WIN32
    _putenv_s("TZ", ""); // the runtime goes by the system's zone, which knows summer time
    _tzset();
#endif
    static Platform::Clock const clock = standingClock();
    Platform::SetClock(&clock);
    if (argc == 2 && std::strcmp(argv[1], "results") == 0) {
        ListResults();
        return 0;
    }
    for (Mode const &mode : modes) {
        if (argc != 3 || std::strcmp(argv[1], mode.name) != 0) continue;
        mode.run(Tree(argv[2]));
        return 0;
    }
    std::fputs("usage: make_tree make|extend|list FOLDER, or make_tree results\n", stderr);
    return 2;
}
