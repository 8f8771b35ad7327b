// The network name of a local path. The path is taken apart as far as its text goes, with the place in the text where
// each element ends, so that what stands behind the mapped folder comes back as it was written. A `..` takes the
// element before it away: `Z:\mnt\share\..\x` isn't on the share that is mounted in `share`.
//
// Names of folders are compared without regard to case, as everywhere; but a folder that exists under the very name
// that was written is itself and no other.

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <vector>

#include "platform/Platform.h"
#include "platform/Wildcards.h"
#include "platform/posix/PosixPaths.h"
#include "platform/posix/PosixTables.h"

namespace Platform {

using namespace Posix;

namespace {

struct LocalPath {
    std::vector<std::string> elements; ///< of the native name, those of the drive's folder first
    std::vector<std::size_t> ends; ///< in the text, for each element; those of the drive's folder end with the letter
    std::size_t rootElements = 0;
    std::size_t rootEnd = 0;
    std::string driveName; ///< the network name of the drive itself
};

/// A folder above the path that has a network name.
struct Prefix {
    std::vector<std::string> name;
    std::size_t nElements = 0;
    bool isExact = false;

    /// Longer, or as long and in the spelling of the path.
    bool IsBetterThan(Prefix const &other) const
    {
        return nElements != other.nElements ? nElements > other.nElements : isExact && !other.isExact;
    }
};

} // namespace

static void addelements(std::string_view text, LocalPath &path)
{
    for (std::size_t at = path.rootEnd; at < text.size();) {
        std::size_t const end = std::min(text.find_first_of("\\/", at), text.size());
        std::string_view const element = text.substr(at, end - at);
        if (element == "..") {
            if (path.elements.size() > path.rootElements) {
                path.elements.pop_back();
                path.ends.pop_back();
            }
        } else if (!element.empty() && element != ".") {
            path.elements.emplace_back(element);
            path.ends.push_back(end);
        }
        at = end + 1;
    }
}

/// False for a network name, a relative path and an unknown drive.
static bool takeapart(std::string_view text, LocalPath &path)
{
    if (text.size() >= 2 && text[1] == ':') {
        std::string folder;
        if (!DriveFolder(text[0], folder)) return false;
        path.elements = SplitElements(folder);
        path.rootEnd = 2;
        path.driveName = DriveNetworkName(text[0]);
    } else if (text.empty() || !IsSeparator(text[0]) || (text.size() > 1 && IsSeparator(text[1]))) {
        return false;
    }
    path.rootElements = path.elements.size();
    path.ends.assign(path.rootElements, path.rootEnd);
    addelements(text, path);
    return true;
}

static std::string nativename(std::vector<std::string> const &elements, std::size_t n)
{
    std::string native;
    for (std::size_t i = 0; i < n; i++) native += '/' + elements[i];
    return native.empty() ? "/" : native;
}

/// Whether a folder exists that isn't `other`.
static bool isanother(std::string const &folder, std::string const &other)
{
    struct stat info, otherInfo;
    if (stat(folder.c_str(), &info) != 0) return false;
    return stat(other.c_str(), &otherInfo) != 0 || !IsSame(info, otherInfo);
}

/// Whether a row's folder is the path or stands above it.
static bool standsabove(NetworkRow const &row, LocalPath const &path, Prefix &prefix)
{
    std::vector<std::string> const folder = SplitElements(row.folder);
    if (folder.size() > path.elements.size()) return false;
    auto const same = [](std::string const &a, std::string const &b) { return SameFolded(a, b); };
    if (!std::equal(folder.begin(), folder.end(), path.elements.begin(), same)) return false;
    prefix = {row.name, folder.size(), std::equal(folder.begin(), folder.end(), path.elements.begin())};
    return prefix.isExact || !isanother(nativename(path.elements, prefix.nElements), row.folder);
}

/// The longest of the rows' folders that stand above the path, the first of several; false if there is none.
static bool longestabove(std::vector<NetworkRow> const &rows, LocalPath const &path, Prefix &best)
{
    bool found = false;
    for (NetworkRow const &row : rows) {
        Prefix prefix;
        if (!standsabove(row, path, prefix) || (found && !prefix.IsBetterThan(best))) continue;
        best = prefix;
        found = true;
    }
    return found;
}

static std::string joined(std::vector<std::string> const &name)
{
    std::string text = "\\";
    for (std::string const &element : name) text += '\\' + element;
    return text;
}

bool NetworkPrefix(char const *path, std::string &networkName, int &length)
{
    LocalPath local;
    if (!path || !takeapart(path, local)) return false;
    Prefix best, mounted;
    bool found = longestabove(GivenNetworkRows(), local, best);
    // What is mounted from elsewhere below a mounted share isn't on the share: its row has no network name.
    bool const onMount = longestabove(MountedRows(), local, mounted) && !mounted.name.empty();
    if (onMount && (!found || mounted.IsBetterThan(best))) best = mounted;
    found = found || onMount;
    bool const byDrive = !local.driveName.empty() && (!found || best.nElements <= local.rootElements);
    if (!found && !byDrive) return false;
    std::size_t const n = byDrive ? local.rootElements : best.nElements;
    networkName = byDrive ? local.driveName : joined(best.name);
    for (std::size_t i = n; i < local.rootElements; i++) networkName += '\\' + local.elements[i];
    length = static_cast<int>(n <= local.rootElements ? local.rootEnd : local.ends[n - 1]);
    return true;
}

} // namespace Platform
