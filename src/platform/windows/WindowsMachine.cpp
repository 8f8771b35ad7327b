// Folders and names of the machine, and the clock.

#include <ctime>
#include <string>
#include <vector>

#include "platform/windows/WindowsServices.h"

#include <shlobj.h>

#include "platform/Platform.h"
#include "platform/Replacements.h"

namespace Platform {

// ---- Folders and names ----------------------------------------------------------------------------------------------------

/// Windows takes slashes for backslashes, the system doesn't.
std::string SystemPath(char const *hostName)
{
    std::string path = hostName ? hostName : "";
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
    std::vector<char> text(MAX_PATH);
    unsigned long const needed = GetCurrentDirectoryA(static_cast<unsigned long>(text.size()), text.data());
    if (needed >= text.size()) {
        text.resize(needed + 1);
        if (GetCurrentDirectoryA(static_cast<unsigned long>(text.size()), text.data()) >= text.size()) return "";
    }
    return needed > 0 ? text.data() : "";
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

// ---- Clock -----------------------------------------------------------------------------------------------------------------

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

bool LocalTime(long long time, std::tm &out)
{
    __time64_t const seconds = time;
    return _localtime64_s(&out, &seconds) == 0;
}

long long TimeFromLocal(std::tm &local)
{
    return _mktime64(&local);
}

} // namespace Platform
