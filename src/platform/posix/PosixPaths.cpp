// A name that is spelled as on the disk is found by a single look. Only if that fails are its elements sought
// one by one, from the back: the folder as spelled is likely to exist, and then two looks and the folder's
// listing tell everything. On a disk that itself ignores case a single look finds any spelling; which one the disk has
// is another question.

#include "platform/posix/PosixPaths.h"

#include <algorithm>
#include <cerrno>

#include "platform/Wildcards.h"
#include "platform/posix/FolderListings.h"
#include "platform/posix/PosixSpelling.h"
#include "platform/posix/PosixTables.h"

namespace Platform::Posix {

// ---- Text --------------------------------------------------------------------------------------------

/// The text up to the next separator, which is taken away with it.
static std::string_view takeelement(std::string_view &rest)
{
    std::size_t end = 0;
    while (end < rest.size() && !IsSeparator(rest[end])) end++;
    std::string_view const element = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return element;
}

static void addelement(PathName &name, std::string_view element)
{
    if (element.empty() || element == ".") return;
    if (element != "..") {
        name.elements.emplace_back(element);
    } else if (!name.IsRoot() && name.Last() != "..") {
        name.elements.pop_back();
    } else if (name.root.empty()) {
        name.elements.emplace_back(element);
    }
}

/// How often one of this computer's shares may lead into another: enough for any use, and an end to those that lead
/// into themselves.
static int const maxShareSteps = 8;

static bool parse(std::string_view text, PathName &name, int stepsLeft);

static void addelements(std::string_view text, PathName &name)
{
    while (!text.empty()) {
        bool const last = text.find_first_of("\\/") == std::string_view::npos;
        std::string_view const element = takeelement(text);
        addelement(name, element);
        name.endsInName = last && element != "." && element != "..";
    }
}

/// Finds the place on the host of a path whose elements below the share are known. A row of the tables may have some of
/// these in its name; what it leads to is a root like that of a share.
static bool findshare(std::string_view server, std::string_view share, PathName &name, int stepsLeft)
{
    std::size_t used = 0;
    if (NetworkFolder(server, share, name.elements, used, name.root)) {
        name.elements.erase(name.elements.begin(), name.elements.begin() + static_cast<std::ptrdiff_t>(used));
        name.endsInName = name.endsInName && !name.elements.empty();
        return true;
    }
    std::string local;
    PathName own;
    if (!OwnShareFolder(server, share, local) || stepsLeft == 0 || !parse(local, own, stepsLeft - 1)) return false;
    name.root = own.root;
    name.rootElements = own.elements.size();
    name.elements.insert(name.elements.begin(), own.elements.begin(), own.elements.end());
    return true;
}

static bool parsenetworkname(std::string_view text, PathName &name, int stepsLeft)
{
    text.remove_prefix(2);
    std::string_view const server = takeelement(text);
    std::string_view const share = takeelement(text);
    if (server.empty() || share.empty()) return false;
    name.root = "/"; // so that `..` is worked out as in an absolute path
    addelements(text, name);
    return findshare(server, share, name, stepsLeft);
}

static bool parse(std::string_view text, PathName &name, int stepsLeft)
{
    if (text.empty()) return false;
    if (text.size() >= 2 && IsSeparator(text[0]) && IsSeparator(text[1]))
        return parsenetworkname(text, name, stepsLeft);
    if (text.size() >= 2 && text[1] == ':') {
        if (!DriveFolder(text[0], name.root)) return false;
        text.remove_prefix(2);
    } else if (IsSeparator(text[0])) {
        name.root = "/";
    }
    addelements(text, name);
    return true;
}

bool ParsePath(char const *path, PathName &name)
{
    return path && parse(path, name, maxShareSteps);
}

bool ParseFileName(char const *path, PathName &name)
{
    return ParsePath(path, name) && name.endsInName && !name.HasWildcardsIn(name.elements.size());
}

std::string PathName::Native(std::size_t n) const
{
    std::string native = root;
    for (std::size_t i = 0; i < n; i++) {
        if (i) native += '/';
        native += elements[i];
    }
    return native.empty() ? "." : native;
}

bool PathName::HasWildcardsIn(std::size_t n) const
{
    for (std::size_t i = 0; i < n; i++)
        if (HasWildcards(elements[i])) return true;
    return false;
}

std::string Join(std::string_view folder, std::string_view name)
{
    std::string native(folder);
    if (!native.empty() && native.back() != '/') native += '/';
    return native.append(name);
}

std::string FolderOf(std::string const &native)
{
    std::size_t const slash = native.rfind('/');
    return slash == std::string::npos ? "." : native.substr(0, slash + 1);
}

std::string BareName(std::string const &native)
{
    return native.substr(native.rfind('/') + 1);
}

// ---- Spelling ------------------------------------------------------------------------------------------

/// Whether the last look failed because there is nothing under this very name.
static bool notthere()
{
    return errno == ENOENT || errno == ENOTDIR;
}

static bool look(FoundFolder &folder)
{
    return stat(folder.native.c_str(), &folder.info) == 0;
}

static bool look(FoundName &found)
{
    found.exists = lstat(found.native.c_str(), &found.info) == 0;
    return found.exists;
}

/// Looks for an element in a folder: under the name as given unless somebody has looked already, then as the listing
/// has it. The name as given stays where there is neither.
template <class Found>
static bool findelement(FoundFolder const &folder, std::string const &element, bool looked, Found &found)
{
    std::string const given = Join(folder.native, element);
    found.native = given;
    if (!looked && look(found)) return true;
    if (IsKnownToIgnoreCase(folder.info.st_dev)) return false;
    std::string const stored = ListFolder(folder.native, &folder.info)->Find(element);
    if (stored.empty()) return false;
    found.native = Join(folder.native, stored);
    if (look(found)) return true;
    found.native = given;
    return false;
}

bool FindFolder(PathName const &name, std::size_t n, FoundFolder &folder)
{
    folder.native = name.Native(n);
    if (look(folder)) return S_ISDIR(folder.info.st_mode);
    if (n == 0 || !notthere()) return false;
    FoundFolder parent;
    if (!FindFolder(name, n - 1, parent)) return false;
    bool const looked = parent.native == name.Native(n - 1);
    return findelement(parent, name.elements[n - 1], looked, folder) && S_ISDIR(folder.info.st_mode);
}

bool FindName(PathName const &name, FoundName &found, bool looked)
{
    found.native = name.Native();
    if (!looked && look(found)) {
        if (name.endsInName) found.native = StoredName(found.native, found.info.st_dev, found.info.st_ino);
        return true;
    }
    if (name.elements.empty() || !notthere()) return false;
    std::size_t const last = name.elements.size() - 1;
    FoundFolder parent;
    if (!FindFolder(name, last, parent)) return false;
    findelement(parent, name.Last(), parent.native == name.Native(last), found);
    if (found.exists && BareName(found.native) == name.Last())
        found.native = StoredName(found.native, found.info.st_dev, found.info.st_ino);
    return true;
}

bool FindExisting(char const *path, FoundName &found)
{
    PathName name;
    if (!ParsePath(path, name) || !FindName(name, found) || !found.exists) return false;
    return !S_ISLNK(found.info.st_mode) || stat(found.native.c_str(), &found.info) == 0;
}

} // namespace Platform::Posix
