// Making, copying, deleting and renaming. Patterns are resolved here before they reach the shell, which would match
// short names as well; and what the shell would ask its user about is found out before, since there may be none.

#include <cstdio>
#include <string>

#include "platform/windows/WindowsServices.h"

#include <shellapi.h>

#include "platform/Platform.h"
#include "platform/Replacements.h"
#include "platform/Wildcards.h"
#include "platform/windows/WindowsPaths.h"

namespace Platform {

using namespace Windows;

// ---- The shell's operation
// ---------------------------------------------------------------------------------------------

static unsigned short const quiet = FOF_SILENT | FOF_NOCONFIRMATION;
static unsigned short const filesOnly = quiet | FOF_FILESONLY | FOF_NOERRORUI | FOF_NORECURSION;

static bool operate(unsigned int function, NameList const &from, NameList const &to, unsigned short options)
{
    SHFILEOPSTRUCTA operation = {};
    operation.wFunc = function;
    operation.pFrom = from.Text();
    operation.pTo = to.IsEmpty() ? nullptr : to.Text();
    operation.fFlags = options;
    return SHFileOperationA(&operation) == 0 && !operation.fAnyOperationsAborted;
}

static NameList namesIn(std::string const &folder, std::vector<WIN32_FIND_DATAA> const &found, bool withFolders)
{
    NameList names;
    for (WIN32_FIND_DATAA const &entry : found)
        if (withFolders || !IsFolder(entry.dwFileAttributes)) names.Add(folder + entry.cFileName);
    return names;
}

// ---- Folders
// -------------------------------------------------------------------------------------------------------------

bool MakeFolder(char const *path)
{
    return Allowed("MakeFolder") && IsFileName(path) && CreateDirectoryA(path, nullptr);
}

static bool isThere(std::string const &folder)
{
    return IsFolder(GetFileAttributesA(folder.c_str()));
}

/// Makes a folder and those on the way to it.
static bool needFolder(std::string const &folder)
{
    std::vector<std::size_t> missing; // the lengths of their names
    for (std::string name = folder; !name.empty() && !isThere(name);) {
        missing.push_back(name.size());
        std::size_t const separator = name.find_last_of("\\/");
        name.resize(separator == std::string::npos ? 0 : separator);
    }
    for (auto length = missing.rbegin(); length != missing.rend(); ++length) {
        std::string const name = folder.substr(0, *length);
        if (!IsFileName(name.c_str()) || !CreateDirectoryA(name.c_str(), nullptr)) return false;
    }
    return true;
}

// ---- Copying
// -------------------------------------------------------------------------------------------------------------

/// The copy is made beside the target, and takes its name in one step.
bool CopyOneFile(char const *from, char const *to)
{
    CutPath cut;
    if (!Allowed("CopyOneFile") || !IsFileName(from) || !IsFileName(to) || !CutPattern(to, cut)) return false;
    if (IsFolder(GetFileAttributesA(from)) || IsFolder(GetFileAttributesA(to)) || IsSame(from, to)) return false;
    std::string const copy = cut.folder + ".vodrel-copy-" + std::to_string(GetCurrentProcessId());
    if (copy.size() >= MAX_PATH) return CopyFileA(from, to, FALSE); // in a folder that has no room for the name
    bool const copied =
        CopyFileA(from, copy.c_str(), FALSE) && MoveFileExA(copy.c_str(), to, MOVEFILE_REPLACE_EXISTING);
    if (!copied && SetFileAttributesA(copy.c_str(), FILE_ATTRIBUTE_NORMAL)) DeleteFileA(copy.c_str());
    return copied;
}

/// Whether a folder stands in another, or is it, by their full names.
static bool standsIn(std::string const &path, std::string const &root)
{
    bool const isPrefix = path.size() >= root.size() && SameFolded(path.substr(0, root.size()), root);
    return isPrefix && (path.size() == root.size() || path[root.size()] == '\\');
}

static std::string join(std::string const &folder, std::string const &name)
{
    return folder.back() == '\\' ? folder + name : folder + '\\' + name;
}

/// Whether something can be copied to a name: the shell would ask its user where a file has the name of a folder, or a
/// folder that of a file, be it somewhere inside.
static bool canGo(std::string const &from, unsigned long attributes, std::string const &to)
{
    unsigned long const there = GetFileAttributesA(to.c_str());
    if (there == INVALID_FILE_ATTRIBUTES) return true;
    if (!IsFolder(attributes) || !IsFolder(there)) return IsFolder(attributes) == IsFolder(there);
    Matches matches;
    if (!FindMatches(join(from, "*").c_str(), matches)) return false;
    for (WIN32_FIND_DATAA const &entry : matches.found)
        if (!canGo(join(from, entry.cFileName), entry.dwFileAttributes, join(to, entry.cFileName))) return false;
    return matches.isComplete;
}

/// A target folder as the shell takes it.
static std::string withoutEnd(std::string folder)
{
    while (folder.size() > 1 && (folder.back() == '\\' || folder.back() == '/') && folder[folder.size() - 2] != ':')
        folder.pop_back();
    return folder;
}

bool CopyMatching(char const *pattern, char const *to, bool wholeTrees)
{
    Matches matches;
    if (!Allowed("CopyMatching") || !FindMatches(pattern, matches) || !to || !*to || HasWildcards(to)) return false;
    std::string const target = withoutEnd(to);
    std::string const fullTarget = FullName(target.c_str());
    std::string const fullSource = FullName(matches.folder.empty() ? "." : matches.folder.c_str());
    if (fullTarget.empty() || fullSource.empty() || IsSame(fullTarget.c_str(), fullSource.c_str())) return false;
    std::vector<WIN32_FIND_DATAA> sources;
    bool const isNew = !isThere(target); // nothing is in the way there
    bool isComplete = matches.isComplete;
    for (WIN32_FIND_DATAA const &entry : matches.found) {
        bool const isFolder = IsFolder(entry.dwFileAttributes);
        std::string const name = join(fullSource, entry.cFileName);
        // The target itself may stand inside of what is copied; it stays out of the copy.
        bool const holdsTarget = isFolder && standsIn(fullTarget, name);
        if (isFolder && !wholeTrees && !matches.hadWildcards) return false;
        if (holdsTarget && !matches.hadWildcards) return false;
        if (holdsTarget || (isFolder && !wholeTrees)) continue;
        if (isNew || canGo(name, entry.dwFileAttributes, join(fullTarget, entry.cFileName))) sources.push_back(entry);
        else isComplete = false;
    }
    if (!needFolder(target)) return false;
    NameList const names = namesIn(matches.folder, sources, wholeTrees);
    NameList targets;
    targets.Add(target);
    return (names.IsEmpty() || operate(FO_COPY, names, targets, wholeTrees ? quiet : filesOnly)) && isComplete;
}

// ---- Deleting and renaming
// -------------------------------------------------------------------------------------------------

bool DeleteMatching(char const *pattern)
{
    Matches matches;
    if (!Allowed("DeleteMatching") || !FindMatches(pattern, matches)) return false;
    NameList const names = namesIn(matches.folder, matches.found, true);
    return (names.IsEmpty() || operate(FO_DELETE, names, NameList(), quiet)) && matches.isComplete;
}

static bool isSpelled(char const *path)
{
    CutPath cut;
    Matches matches;
    return CutPattern(path, cut) && FindMatches(path, matches) && matches.found[0].cFileName == cut.name;
}

/// The shell refuses a change of case alone, since the new name is there. Where a rename by itself does nothing, it
/// goes by way of a third name.
static bool changeCase(char const *from, char const *to)
{
    if (std::rename(from, to) != 0) return false;
    if (isSpelled(to)) return true;
    std::string const between = std::string(to) + ".vodrel-rename-" + std::to_string(GetCurrentProcessId());
    if (std::rename(to, between.c_str()) != 0) return false;
    return std::rename(between.c_str(), to) == 0 || (std::rename(between.c_str(), from), false);
}

bool Rename(char const *from, char const *to)
{
    if (!Allowed("Rename") || !IsFileName(from) || !IsFileName(to)) return false;
    unsigned long const source = GetFileAttributesA(from);
    if (source == INVALID_FILE_ATTRIBUTES) return false;
    bool const isTaken = GetFileAttributesA(to) != INVALID_FILE_ATTRIBUTES;
    if (isTaken && !IsSame(from, to)) return false;
    if (isTaken) return changeCase(from, to);
    if (!IsFolder(source)) return std::rename(from, to) == 0;
    NameList names, target;
    names.Add(from);
    target.Add(to);
    return operate(FO_RENAME, names, target, quiet);
}

bool IsSameFile(char const *a, char const *b)
{
    return IsSame(a, b);
}

} // namespace Platform
