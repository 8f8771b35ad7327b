// Whether a disk ignores case is found by trying: it does if the name that was found is also found with capitals and
// small letters exchanged. What it is doesn't tell: a network share regards case if its server does, and so do some
// drivers for disks of Windows. Nearly every disk is the same all over; on some a single folder may ignore case, for
// these the folders are tried one by one. Nearly always the answer is that the name is right as it is, so answers are
// kept. They are kept for some seconds only, as the number of a disk may be given to another one, and a folder be
// replaced.
//
// Where case is ignored the spelling stands in the folder's listing. Most names are spelled as on the disk, and of
// these a listing that is some seconds old is proof enough, as they are known to exist; so a few listings are kept too.

#include "platform/posix/PosixSpelling.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <ctime>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <sys/vfs.h>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/posix/FolderListings.h"
#include "platform/posix/PosixPaths.h"

namespace Platform::Posix {

namespace {

enum class Case { Regarded, Ignored, DependsOnFolder };

struct Disk {
    dev_t device;
    Case rule;
};

/// What has been found out, folders by their absolute native names.
struct Answers {
    time_t begun = 0;
    std::vector<Disk> disks;
    std::unordered_map<std::string, bool> folders; ///< whether they ignore case
    std::vector<std::pair<std::string, std::shared_ptr<Listing const>>> listings;
};

} // namespace

static time_t const keptSeconds = 10;
static std::size_t const maxFolders = 1000;
static std::size_t const maxListings = 8;

// Made when first needed, so that loading the library runs nothing, and freed behind the library's last global object.
static Answers *kept = nullptr;

__attribute__((destructor)) static void forgetanswers()
{
    delete kept;
    kept = nullptr;
}

/// The answers that are young enough.
static Answers &answers()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    if (!kept) kept = new Answers;
    if (now.tv_sec - kept->begun < keptSeconds && kept->folders.size() < maxFolders) return *kept;
    *kept = Answers();
    kept->begun = now.tv_sec;
    return *kept;
}

// ---- Trying ----------------------------------------------------------------------------------------------

static std::string withothercase(std::string name)
{
    for (char &c : name) {
        bool const isSmall = c >= 'a' && c <= 'z', isCapital = c >= 'A' && c <= 'Z';
        if (isSmall || isCapital) c = static_cast<char>(c ^ ('a' ^ 'A'));
    }
    return name;
}

/// Whether a file is also found under this name. `isSure` is false if the system didn't say, or if it may be a second
/// name of the file.
static bool isunder(std::string const &native, dev_t device, ino_t inode, bool &isSure)
{
    struct stat info;
    bool const exists = lstat(native.c_str(), &info) == 0;
    bool const same = exists && info.st_dev == device && info.st_ino == inode;
    isSure = same ? S_ISDIR(info.st_mode) || info.st_nlink == 1 : exists || errno == ENOENT;
    return same;
}

/// What holds for all of a disk; `ignoresCase` is what has been found in the folder.
static Case ruleof(std::string const &folder, bool ignoresCase)
{
    static unsigned const types[] = {
        0xEF53,     // ext4
        0xF2F52010, // f2fs
        0x01021994, // tmpfs
        0xCA451A4E, // bcachefs
        0x794C7630, // overlayfs, which shows folders of the others
    };
    struct statfs info;
    if (statfs(folder.c_str(), &info) != 0) return Case::DependsOnFolder;
    bool const depends =
        std::find(std::begin(types), std::end(types), static_cast<unsigned>(info.f_type)) != std::end(types);
    if (depends) return Case::DependsOnFolder;
    return ignoresCase ? Case::Ignored : Case::Regarded;
}

static Disk const *finddisk(Answers const &known, dev_t device)
{
    for (Disk const &disk : known.disks)
        if (disk.device == device) return &disk;
    return nullptr;
}

/// Keeps what has been found in a folder. What was found there may be the root of another disk.
static void keep(Answers &known, std::string const &folder, bool ignoresCase)
{
    struct stat info;
    if (stat(folder.c_str(), &info) != 0) return;
    if (!finddisk(known, info.st_dev)) known.disks.push_back({info.st_dev, ruleof(folder, ignoresCase)});
}

static bool ignorescase(std::string const &folder, std::string const &name, dev_t device, ino_t inode)
{
    std::string const other = withothercase(name);
    if (other == name) return false;
    Answers &known = answers();
    Disk const *const disk = finddisk(known, device);
    if (disk && disk->rule != Case::DependsOnFolder) return disk->rule == Case::Ignored;
    bool const isAbsolute = folder[0] == '/';
    auto const found = known.folders.find(folder);
    if (found != known.folders.end()) return found->second;

    bool isSure = false, isStillThere = true;
    bool const ignored = isunder(Join(folder, other), device, inode, isSure);
    // What is to hold for a whole disk isn't told by a file that went away meanwhile.
    if (!disk && isSure && !ignored) isStillThere = isunder(Join(folder, name), device, inode, isSure) || !isSure;
    if (!isSure || !isStillThere) return ignored;
    if (!disk) keep(known, folder, ignored);
    if (isAbsolute) known.folders[folder] = ignored;
    return ignored;
}

// ---- Spelling ----------------------------------------------------------------------------------------------

/// A name of a folder that ignores case, as its listing has it; empty if that doesn't.
static std::string storedspelling(std::string const &folder, std::string const &name)
{
    auto &listings = answers().listings;
    auto const isOf = [&folder](auto const &row) { return row.first == folder; };
    auto const old = std::find_if(listings.begin(), listings.end(), isOf);
    if (old != listings.end()) {
        if (old->second->Find(name) == name) return name;
        listings.erase(old);
    }
    auto const names = ListFolder(folder);
    if (listings.size() == maxListings) listings.erase(listings.begin());
    if (folder[0] == '/') listings.emplace_back(folder, names);
    return names->Find(name);
}

bool IsKnownToIgnoreCase(dev_t device)
{
    Disk const *const disk = finddisk(answers(), device);
    return disk && disk->rule == Case::Ignored;
}

void ForgetSpellings()
{
    if (kept) kept->listings.clear();
}

std::string StoredName(std::string const &given, dev_t device, ino_t inode)
{
    std::string const folder = FolderOf(given), name = BareName(given);
    if (!ignorescase(folder, name, device, inode)) return given;
    std::string const stored = storedspelling(folder, name);
    return stored.empty() ? given : Join(folder, stored);
}

} // namespace Platform::Posix
