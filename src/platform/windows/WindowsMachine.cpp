// Folders and names of the machine, and the clock.

#include <ctime>
#include <string>
#include <vector>

#include "platform/windows/WindowsServices.h"

#include <shlobj.h>

#include "platform/Platform.h"
#include "platform/Replacements.h"
#include "platform/windows/WindowsPaths.h"

namespace Platform {

// ---- Folders and names
// ----------------------------------------------------------------------------------------------------

/// Windows takes slashes for backslashes, the system doesn't. A path without any is the system's already.
std::string SystemPath(char const *hostName)
{
    std::string path = hostName ? hostName : "";
    if (path.find('/') == std::string::npos) return path;
    bool const hasDrive = path.size() > 2 && path[1] == ':' && (path[2] == '/' || path[2] == '\\');
    bool const isNetworkName = path.compare(0, 2, "//") == 0 || path.compare(0, 2, "\\\\") == 0;
    if (!hasDrive && !isNetworkName) return path;
    for (char &c : path)
        if (c == '/') c = '\\';
    while (path.size() > 3 && path.back() == '\\') path.pop_back();
    return path;
}

std::string CurrentDirectory()
{
    return Windows::AnswerOf([](unsigned long room, char *text) { return GetCurrentDirectoryA(room, text); });
}

bool SetCurrentDirectory(char const *path)
{
    return path && *path && SetCurrentDirectoryA(path);
}

std::string Host::UserDataFolder()
{
    char folder[MAX_PATH] = "";
    bool const known = SUCCEEDED(SHGetFolderPathA(nullptr, CSIDL_LOCAL_APPDATA, nullptr, SHGFP_TYPE_CURRENT, folder));
    return known ? folder : "";
}

std::string ProgramFile()
{
    std::vector<char> text(MAX_PATH);
    while (GetModuleFileNameA(nullptr, text.data(), static_cast<unsigned long>(text.size())) >= text.size())
        text.resize(text.size() * 2);
    return text.data();
}

std::string ComputerName()
{
    char name[256] = "";
    unsigned long size = sizeof name;
    return GetComputerNameA(name, &size) ? name : "";
}

// ---- Clock
// -----------------------------------------------------------------------------------------------------------------

long long Host::Counter()
{
    LARGE_INTEGER counter;
    return QueryPerformanceCounter(&counter) ? counter.QuadPart : 0;
}

long long Host::CounterFrequency()
{
    LARGE_INTEGER frequency;
    return QueryPerformanceFrequency(&frequency) ? frequency.QuadPart : 1;
}

void Host::SleepFor(int milliseconds)
{
    Sleep(static_cast<unsigned long>(milliseconds));
}

// The C runtime's calendar reaches from 1970 to 3000. The Gregorian calendar repeats itself after 400 years, so that
// other times are told by their like between 1972 and 2372.

static int const cycleYears = 400;
static long long const cycleSeconds = 12622780800;
static long long const secondsTo1972 = 63072000;
static int const yearsTo1972 = 72; // from 1900

static long long cyclesIn(long long n, long long cycle)
{
    return n / cycle - (n % cycle < 0 ? 1 : 0);
}

bool LocalTime(long long time, std::tm &out)
{
    long long const farthest = 60000000000000000; // the years of `tm` are numbers of 32 bits
    if (time < -farthest || time > farthest) return false;
    long long const cycles = cyclesIn(time - secondsTo1972, cycleSeconds);
    __time64_t const like = time - cycles * cycleSeconds;
    if (_localtime64_s(&out, &like) != 0) return false;
    out.tm_year += static_cast<int>(cycles) * cycleYears;
    return true;
}

long long TimeFromLocal(std::tm &local)
{
    int const cycles = static_cast<int>(cyclesIn(static_cast<long long>(local.tm_year) - yearsTo1972, cycleYears));
    local.tm_year -= cycles * cycleYears;
    long long const like = _mktime64(&local);
    local.tm_year += cycles * cycleYears;
    return like == -1 ? -1 : like + cycles * cycleSeconds;
}

} // namespace Platform
