#include "platform/windows/WindowsPaths.h"

#include <algorithm>
#include <cstring>

#include "platform/Wildcards.h"

namespace Platform::Windows {

static bool isSeparator(char c)
{
    return c == '\\' || c == '/';
}

/// Where the part of a path begins in which names stand: behind a drive, or behind server and share.
static std::size_t endOfRoot(std::string const &path)
{
    if (path.size() >= 2 && path[1] == ':') return 2;
    if (path.size() < 2 || !isSeparator(path[0]) || !isSeparator(path[1])) return 0;
    std::size_t const share = path.find_first_of("\\/", 2);
    std::size_t const end = share == std::string::npos ? share : path.find_first_of("\\/", share + 1);
    return end == std::string::npos ? path.size() : end;
}

bool CutPattern(char const *path, CutPath &cut)
{
    std::string const text = path ? path : "";
    std::size_t const root = endOfRoot(text);
    std::size_t const separator = text.find_last_of("\\/");
    bool const inFolder = separator != std::string::npos && separator >= root;
    std::size_t const begin = inFolder ? separator + 1 : root;
    cut.folder = text.substr(0, begin);
    cut.name = text.substr(begin);
    bool const isName = !cut.name.empty() && cut.name != "." && cut.name != "..";
    return isName && !HasWildcards(cut.folder);
}

bool IsFileName(char const *path)
{
    CutPath cut;
    return CutPattern(path, cut) && !HasWildcards(cut.name);
}

std::string FullName(char const *path)
{
    std::size_t const longest = 32767; // of all names on Windows
    if (std::strlen(path) > longest) return std::string();
    return AnswerOf([path](unsigned long room, char *text) { return GetFullPathNameA(path, room, text, nullptr); });
}

void NameList::Add(std::string const &name)
{
    for (char const c : name) text += c == '/' ? '\\' : c;
    text += '\0';
}

/// The system's listing also matches by short names, and has the entries "." and "..": neither counts.
bool FindMatches(char const *pattern, Matches &matches)
{
    CutPath cut;
    if (!CutPattern(pattern, cut)) return false;
    matches.folder = cut.folder;
    matches.hadWildcards = HasWildcards(cut.name);
    // To the system these are wildcards of another kind, which stand in no name.
    if (!matches.hadWildcards && cut.name.find_first_of("<>\"") != std::string::npos) return false;
    // A pattern with a dot at its end, or with "?" behind all else, has a sense of its own that is ours to give.
    std::string const asked = matches.hadWildcards ? cut.folder + "*" : cut.folder + cut.name;
    Pattern const wanted(cut.name);
    WIN32_FIND_DATAA found;
    HANDLE const listing =
        FindFirstFileExA(asked.c_str(), FindExInfoStandard, &found, FindExSearchNameMatch, nullptr, 0);
    if (listing == INVALID_HANDLE_VALUE) {
        unsigned long const failure = GetLastError();
        return matches.hadWildcards && (failure == ERROR_FILE_NOT_FOUND || failure == ERROR_NO_MORE_FILES);
    }
    do {
        std::string const name = found.cFileName;
        bool const isEntry = name != "." && name != "..";
        if (isEntry && (!matches.hadWildcards || wanted.Matches(name))) matches.found.push_back(found);
    } while (FindNextFileA(listing, &found));
    matches.isComplete = GetLastError() == ERROR_NO_MORE_FILES;
    FindClose(listing);
    std::sort(matches.found.begin(), matches.found.end(), [](WIN32_FIND_DATAA const &a, WIN32_FIND_DATAA const &b) {
        return SortsBefore(a.cFileName, b.cFileName);
    });
    return matches.hadWildcards || !matches.found.empty();
}

static bool identify(char const *path, BY_HANDLE_FILE_INFORMATION &info)
{
    HANDLE const file = CreateFileA(path, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return false;
    bool const known = GetFileInformationByHandle(file, &info) != 0;
    CloseHandle(file);
    return known;
}

bool IsSame(char const *a, char const *b)
{
    BY_HANDLE_FILE_INFORMATION infoA, infoB;
    return a && b && identify(a, infoA) && identify(b, infoB) &&
           infoA.dwVolumeSerialNumber == infoB.dwVolumeSerialNumber && infoA.nFileIndexHigh == infoB.nFileIndexHigh &&
           infoA.nFileIndexLow == infoB.nFileIndexLow;
}

} // namespace Platform::Windows
