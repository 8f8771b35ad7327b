// Folders and names of the machine, and the clock.

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <ctime>
#include <pwd.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "platform/Platform.h"
#include "platform/Replacements.h"

namespace Platform {

// ---- Folders and names ----------------------------------------------------------------------------------------

std::string SystemPath(char const *hostName)
{
    std::string const native = hostName ? hostName : "";
    if (native.empty() || native[0] != '/') return native;
    std::string path = "Z:";
    for (char const c : native)
        if (c != '/' || path.back() != '\\') path += c == '/' ? '\\' : c;
    if (path.back() == '\\') path.pop_back();
    return path;
}

static bool isabsolute(char const *native)
{
    return native && native[0] == '/';
}

static std::string homefolder()
{
    char const *const home = std::getenv("HOME");
    if (isabsolute(home)) return home;
    std::vector<char> text(1024);
    passwd row;
    passwd *found = nullptr;
    while (getpwuid_r(getuid(), &row, text.data(), text.size(), &found) == ERANGE) text.resize(text.size() * 2);
    return found && isabsolute(found->pw_dir) ? found->pw_dir : std::string();
}

std::string Host::UserDataFolder()
{
    char const *const folder = std::getenv("XDG_DATA_HOME");
    if (isabsolute(folder)) return SystemPath(folder);
    std::string const home = homefolder();
    return home.empty() ? home : SystemPath((home + "/.local/share").c_str());
}

std::string ProgramFile()
{
    char native[PATH_MAX];
    ssize_t const n = readlink("/proc/self/exe", native, sizeof native - 1);
    if (n < 0) return std::string();
    native[n] = '\0';
    return SystemPath(native);
}

std::string ComputerName()
{
    char name[256] = "";
    if (gethostname(name, sizeof name - 1) != 0) return std::string();
    return name;
}

// ---- Clock --------------------------------------------------------------------------------------------------------

static long long const nanoseconds = 1000000000;

long long Host::Counter()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<long long>(now.tv_sec) * nanoseconds + now.tv_nsec;
}

long long Host::CounterFrequency()
{
    return nanoseconds;
}

void Host::SleepFor(int milliseconds)
{
    timespec left = {milliseconds / 1000, milliseconds % 1000 * 1000000L};
    while (clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) == EINTR) {
    }
}

bool LocalTime(long long time, std::tm &out)
{
    std::time_t const seconds = time;
    tzset(); // which localtime_r needn't do
    return localtime_r(&seconds, &out) != nullptr;
}

long long TimeFromLocal(std::tm &local)
{
    return std::mktime(&local);
}

} // namespace Platform
