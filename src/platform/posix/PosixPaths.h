/// From a path of the system to a native name: what drive letters and network names stand for, and which
/// spelling a name has on the disk. Private to the Linux half of the platform layer.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace Platform::Posix {

/// What stands between the elements of a path: the system writes backslashes, hosts slashes.
inline bool IsSeparator(char c)
{
    return c == '\\' || c == '/';
}

/// A path taken apart. The elements `.` and `..` are worked out in the text, as users of Windows disks know it, so that
/// `..` never leads out of a drive or a share; at the front of a relative path `..` stays.
struct PathName {
    std::string root;                  ///< native, ends in a slash; empty for a relative path
    std::vector<std::string> elements; ///< those of a share's own folder first
    std::size_t rootElements = 0;      ///< how many belong to the share
    bool endsInName = false;           ///< the path doesn't end in a backslash, `.` or `..`, nor is it a bare root

    /// The native name of the first `n` elements as they are spelled.
    std::string Native(std::size_t n) const;
    std::string Native() const { return Native(elements.size()); }

    bool IsRoot() const { return elements.size() == rootElements; }
    std::string const &Last() const { return elements.back(); }

    /// Whether one of the first `n` elements holds a wildcard.
    bool HasWildcardsIn(std::size_t n) const;
};

/// Takes a path apart. False if it names nothing: an empty path, an unknown drive or share.
bool ParsePath(char const *path, PathName &name);

/// The same for a path that is to name a file or folder other than a root: ends in a name, and has no wildcards.
bool ParseFileName(char const *path, PathName &name);

/// A native name in a folder, which may be empty for the current one.
std::string Join(std::string_view folder, std::string_view name);

/// The folder that a native name stands in, and the bare name.
std::string FolderOf(std::string const &native);
std::string BareName(std::string const &native);

/// Whether two looks have met the same file or folder.
inline bool IsSame(struct stat const &a, struct stat const &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// A folder that exists: its native name and what the system says of it.
struct FoundFolder {
    std::string native;
    struct stat info = {};
};

/// Finds the folder of the first `n` elements. False if there is none.
bool FindFolder(PathName const &name, std::size_t n, FoundFolder &folder);

/// A file or folder that exists, or could be made.
struct FoundName {
    std::string native;    ///< as stored; where it doesn't exist, as given, in the folder found
    bool exists = false;   ///< a link that leads nowhere exists
    struct stat info = {}; ///< of the name itself, links not followed, if it exists
};

/// Finds a name. False if it couldn't even be made, as there is no folder for it. `looked`: the caller has just looked
/// for it as it is spelled, in vain, and errno says why.
bool FindName(PathName const &name, FoundName &found, bool looked = false);

/// Finds a file or folder that exists; `info` tells of what a link leads to.
bool FindExisting(char const *path, FoundName &found);

} // namespace Platform::Posix
