// Making, renaming and comparing of single names, and the current directory.

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Platform.h"
#include "platform/Replacements.h"
#include "platform/Wildcards.h"
#include "platform/posix/PosixPaths.h"
#include "platform/posix/PosixSpelling.h"

namespace Platform {

using namespace Posix;

bool MakeFolder(char const *path)
{
    PathName name;
    FoundName found;
    if (!Allowed("MakeFolder") || !ParsePath(path, name) || name.IsRoot()) return false;
    if (name.HasWildcardsIn(name.elements.size()) || !FindName(name, found) || found.exists) return false;
    return mkdir(found.native.c_str(), 0777) == 0;
}

// ---- Renaming -----------------------------------------------------------------------------------------------

/// Renames to a name that nothing has. Some file systems can't promise that in one step.
static bool movename(std::string const &from, std::string const &to)
{
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return true;
    if (errno != EINVAL && errno != ENOSYS) return false;
    struct stat info;
    return lstat(to.c_str(), &info) != 0 && errno == ENOENT && rename(from.c_str(), to.c_str()) == 0;
}

/// Whether two names are one entry of one folder. A second name of the same file looks alike, but then the file has
/// several.
static bool sameentry(FoundName const &a, FoundName const &b)
{
    struct stat folderA, folderB;
    if (!IsSame(a.info, b.info) || stat(FolderOf(a.native).c_str(), &folderA) != 0 ||
        stat(FolderOf(b.native).c_str(), &folderB) != 0 || !IsSame(folderA, folderB))
        return false;
    std::string const nameA = BareName(a.native), nameB = BareName(b.native);
    bool const oneName = S_ISDIR(a.info.st_mode) || a.info.st_nlink == 1;
    return nameA == nameB || (oneName && SameFolded(nameA, nameB));
}

/// Renames by way of a name that nothing has. What can't have its new name gets the old one back.
static bool renameintwosteps(std::string const &from, std::string const &to)
{
    for (int i = 0; i < 100; i++) {
        std::string const between = Join(FolderOf(from), ".vodrel-rename-" + std::to_string(getpid() + i));
        if (movename(from, between)) {
            bool const renamed = movename(between, to);
            if (!renamed) movename(between, from);
            return renamed;
        }
        if (errno != EEXIST) return false;
    }
    return false;
}

/// Gives an entry another spelling. Disks that ignore case take the two for one name, and some then say that all is
/// done and change nothing.
static bool respell(FoundName const &entry, std::string const &to)
{
    if (rename(entry.native.c_str(), to.c_str()) != 0) return false;
    ForgetSpellings();
    return StoredName(to, entry.info.st_dev, entry.info.st_ino) == to || renameintwosteps(entry.native, to);
}

bool Rename(char const *from, char const *to)
{
    PathName fromName, toName;
    FoundName source, target;
    if (!Allowed("Rename") || !ParseFileName(from, fromName) || !ParseFileName(to, toName)) return false;
    if (!FindName(fromName, source) || !source.exists || !FindName(toName, target)) return false;
    ForgetSpellings();
    if (!target.exists) return movename(source.native, target.native);
    return sameentry(source, target) && respell(source, Join(FolderOf(target.native), toName.Last()));
}

bool IsSameFile(char const *a, char const *b)
{
    FoundName foundA, foundB;
    return FindExisting(a, foundA) && FindExisting(b, foundB) && IsSame(foundA.info, foundB.info);
}

// ---- The current directory --------------------------------------------------------------------------------------

std::string CurrentDirectory()
{
    char *const native = getcwd(nullptr, 0);
    std::string const path = SystemPath(native);
    std::free(native);
    return path;
}

bool SetCurrentDirectory(char const *path)
{
    PathName name;
    FoundFolder folder;
    return ParsePath(path, name) && FindFolder(name, name.elements.size(), folder) && chdir(folder.native.c_str()) == 0;
}

} // namespace Platform
