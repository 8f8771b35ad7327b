// Copying and deleting of all that matches a path, whole trees too.

#include <climits>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <vector>

#include "platform/Platform.h"
#include "platform/Replacements.h"
#include "platform/Wildcards.h"
#include "platform/posix/FolderListings.h"
#include "platform/posix/PosixPaths.h"
#include "platform/posix/PosixSearch.h"
#include "platform/posix/PosixSpelling.h"
#include "platform/posix/PosixTrees.h"

namespace Platform {

using namespace Posix;

// ---- Copying --------------------------------------------------------------------------------------------------

/// The name without links, empty if there is nothing under it.
static std::string realname(std::string const &native)
{
    char *const name = realpath(native.c_str(), nullptr);
    std::string const text = name ? name : "";
    std::free(name);
    return text;
}

/// Whether `inner` is `outer` or stands somewhere in it; both without links.
static bool standsin(std::string const &inner, std::string const &outer)
{
    if (outer == "/") return true;
    return inner.compare(0, outer.size(), outer) == 0 && (inner.size() == outer.size() || inner[outer.size()] == '/');
}

namespace {

/// Copies entries into a folder, folders with all they hold. Goes on after a failure, and knows of it at the end.
class TreeCopy {
public:
    TreeCopy(FoundFolder const &to, bool withFolders)
        : target(to), realTarget(realname(to.native)), wholeTrees(withFolders)
    {
    }

    void CopyInto(std::string const &to, std::string const &folder, std::vector<std::string> const &names);
    bool HasFailed() const { return failed; }

private:
    void copyentry(std::string const &from, std::string const &to);
    void copyfolder(std::string const &from, bool isLink, std::string const &to);
    void copycontents(std::string const &from, std::string const &to);
    bool leadsback(std::string const &folder) const;

    FoundFolder const &target;
    std::string const realTarget;
    bool const wholeTrees;
    std::vector<std::string> roots; ///< what is being copied: a match, and each link followed on the way here
    bool failed = false;
};

} // namespace

static bool exists(std::string const &native)
{
    struct stat info;
    return lstat(native.c_str(), &info) == 0;
}

void TreeCopy::CopyInto(std::string const &to, std::string const &folder, std::vector<std::string> const &names)
{
    // Taken before the first copy, so that copying into a full folder doesn't list it again for each name.
    auto const old = ListFolder(to);
    std::string const *before = nullptr;
    for (std::string const &name : names) {
        std::string const stored = old->Find(name);
        std::string const copy = Join(to, stored.empty() ? name : stored);
        bool const isTwin = before && SameFolded(*before, name);
        if (isTwin && stored.empty() && exists(copy)) failed = true; // the disk takes the two names for one
        else copyentry(Join(folder, name), copy);
        before = &name;
    }
}

void TreeCopy::copyentry(std::string const &from, std::string const &to)
{
    struct stat info, self;
    if (lstat(from.c_str(), &self) != 0 || stat(from.c_str(), &info) != 0) {
        failed = true;
    } else if (!S_ISDIR(info.st_mode)) {
        failed |= !CopyNative(from, to);
    } else if (wholeTrees && !IsSame(info, target.info)) {
        // The target itself may stand inside of what is copied; it stays out of the copy.
        copyfolder(from, S_ISLNK(self.st_mode), to);
    }
}

void TreeCopy::copyfolder(std::string const &from, bool isLink, std::string const &to)
{
    bool const isRoot = isLink || roots.empty();
    if (isRoot) {
        std::string const root = realname(from);
        if (isLink && leadsback(root)) return;
        roots.push_back(root);
    }
    struct stat info;
    bool const there = stat(to.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
    if (there || mkdir(to.c_str(), 0777) == 0) copycontents(from, to);
    else failed = true;
    if (isRoot) roots.pop_back();
}

void TreeCopy::copycontents(std::string const &from, std::string const &to)
{
    auto const entries = ListFolder(from);
    failed |= !entries->IsComplete() || entries->HasLeftOut();
    std::vector<std::string> names;
    for (std::size_t i = 0; i < entries->Count(); i++) names.emplace_back(entries->Name(i));
    CopyInto(to, from, names);
}

/// A link into what is being copied, to a folder around it or into the copy would be followed without end.
bool TreeCopy::leadsback(std::string const &folder) const
{
    for (std::string const &root : roots)
        if (standsin(folder, root) || standsin(root, folder)) return true;
    return standsin(folder, realTarget);
}

/// Finds a folder, or makes it and those on the way to it; none of them if its name is too long. A share's own folder
/// isn't made.
static bool needfolder(PathName const &name, FoundFolder &folder)
{
    std::size_t const n = name.elements.size();
    if (name.Native(n).size() >= PATH_MAX) return false;
    if (FindFolder(name, n, folder)) return true;
    if (n <= name.rootElements || !FindFolder(name, name.rootElements, folder)) return false;
    for (std::size_t i = name.rootElements; i < n; i++) {
        FoundFolder const parent = folder;
        if (FindFolder(name, i + 1, folder)) continue;
        std::string const &element = name.elements[i];
        if (!ListFolder(parent.native, &parent.info)->Find(element).empty()) return false;
        if (mkdir(Join(parent.native, element).c_str(), 0777) != 0 || !FindFolder(name, i + 1, folder)) return false;
    }
    return true;
}

/// Whether a match that was named without wildcards can be copied at all.
static bool cancopy(std::string const &native, bool wholeTrees, struct stat &info)
{
    return stat(native.c_str(), &info) == 0 && (S_ISREG(info.st_mode) || (wholeTrees && S_ISDIR(info.st_mode)));
}

bool CopyMatching(char const *pattern, char const *to, bool wholeTrees)
{
    PathName toName;
    Matches matches;
    if (!Allowed("CopyMatching") || !FindMatches(pattern, matches) || !ParsePath(to, toName)) return false;
    if (toName.HasWildcardsIn(toName.elements.size())) return false;
    struct stat info;
    bool const named = !matches.hadWildcards;
    if (named && !cancopy(Join(matches.folder, matches.names[0]), wholeTrees, info)) return false;
    FoundFolder target;
    if (!needfolder(toName, target) || (named && IsSame(info, target.info))) return false;
    TreeCopy copy(target, wholeTrees);
    copy.CopyInto(target.native, matches.folder, matches.names);
    return !copy.HasFailed();
}

// ---- Deleting ---------------------------------------------------------------------------------------------------

bool DeleteMatching(char const *pattern)
{
    Matches matches;
    if (!Allowed("DeleteMatching") || !FindMatches(pattern, matches)) return false;
    ForgetSpellings();
    bool deleted = true;
    for (std::string const &name : matches.names) {
        // Takes links away without following them, even one that has come into a folder's place meanwhile.
        std::error_code error;
        std::filesystem::remove_all(Join(matches.folder, name), error);
        deleted &= !error;
    }
    return deleted;
}

} // namespace Platform
