// A question for a name in another case, or for a missing one, needs the listing of its folder. In a folder of
// 100,000 entries that takes tens of milliseconds, and a program asks thousands of such questions in a row, so a few
// listings are kept.
//
// A kept listing is used only while the folder is the same one and bears the same times, to the nanosecond, as
// before the reading began. That alone isn't proof: the kernel's clock for such times advances in steps of some
// milliseconds, so a change just behind the reading may leave the times as they were. So a listing is kept only if
// the times were already older than such a step, amply counted, when the reading began: any later change then brings a
// later time. Network file systems bear times of another clock, and may show a folder as it was a while ago; nothing is
// kept of them.

#include "platform/posix/FolderListings.h"

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <list>
#include <sys/vfs.h>

#include "platform/Wildcards.h"
#include "platform/posix/Descriptor.h"

namespace Platform::Posix {

// ---- One listing ----------------------------------------------------------------------------------

void Listing::Add(std::string_view name, Kind kind)
{
    if (name.find('\\') != std::string_view::npos) {
        leftOut = true;
        return;
    }
    items.push_back({text.size(), static_cast<unsigned short>(name.size()), kind});
    text.append(name);
}

void Listing::Finish(bool readToTheEnd)
{
    complete = readToTheEnd;
    auto const name = [this](Item const &item) { return std::string_view(text.data() + item.offset, item.length); };
    std::sort(items.begin(), items.end(), [&](Item const &a, Item const &b) { return SortsBefore(name(a), name(b)); });
}

std::string Listing::Find(std::string_view name) const
{
    auto const before = [this](Item const &item, std::string_view wanted) {
        return CompareFolded(std::string_view(text.data() + item.offset, item.length), wanted) < 0;
    };
    auto const found = std::lower_bound(items.begin(), items.end(), name, before);
    std::size_t const first = static_cast<std::size_t>(found - items.begin());
    for (std::size_t i = first; i < items.size() && SameFolded(Name(i), name); i++)
        if (Name(i) == name) return std::string(name);
    bool const otherCase = first < items.size() && SameFolded(Name(first), name);
    return std::string(otherCase ? Name(first) : std::string_view());
}

// ---- Reading ----------------------------------------------------------------------------------------

static long long listingsTaken = 0;

long long ListingsTaken()
{
    return listingsTaken;
}

static Listing::Kind kindof(unsigned char type)
{
    switch (type) {
    case DT_DIR:
        return Listing::Kind::Folder;
    case DT_LNK:
    case DT_UNKNOWN:
        return Listing::Kind::Unknown;
    default:
        return Listing::Kind::File;
    }
}

/// Reads the folder and closes it.
static void readfolder(Descriptor folder, Listing &listing)
{
    struct Closer {
        void operator()(DIR *stream) const { closedir(stream); }
    };
    std::unique_ptr<DIR, Closer> const stream(fdopendir(folder.Get()));
    if (!stream) return;
    folder.Release();
    listingsTaken++;
    errno = 0;
    while (dirent const *const entry = readdir(stream.get())) {
        std::string_view const name = entry->d_name;
        if (name != "." && name != "..") listing.Add(name, kindof(entry->d_type));
        errno = 0;
    }
    listing.Finish(errno == 0);
}

// ---- Proof that nothing has changed -------------------------------------------------------------------

/// File systems whose times come from this machine's own clock with each change.
static bool islocal(int folder)
{
    static unsigned const types[] = {
        0xEF53,     // ext2, ext3, ext4
        0x58465342, // xfs
        0x9123683E, // btrfs
        0x01021994, // tmpfs
        0x858458F6, // ramfs
        0xF2F52010, // f2fs
        0x794C7630, // overlayfs
        0x2FC12FC1, // zfs
        0xCA451A4E, // bcachefs
    };
    struct statfs info;
    if (fstatfs(folder, &info) != 0) return false;
    return std::find(std::begin(types), std::end(types), static_cast<unsigned>(info.f_type)) != std::end(types);
}

/// Whether any later change must bring a later time than this one.
static bool settled(timespec const &time, timespec const &now)
{
    long long const second = 1000000000;
    long long const age = (static_cast<long long>(now.tv_sec) - time.tv_sec) * second + (now.tv_nsec - time.tv_nsec);
    // A round time may come from a file system that keeps whole seconds.
    return age > (time.tv_nsec == 0 ? 3 * second : second / 10);
}

static bool sametime(timespec const &a, timespec const &b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

static bool unchanged(struct stat const &a, struct stat const &b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino && sametime(a.st_mtim, b.st_mtim) &&
           sametime(a.st_ctim, b.st_ctim);
}

// ---- Kept listings -----------------------------------------------------------------------------------

namespace {

struct Kept {
    struct stat info; ///< of the folder, before the reading began
    std::shared_ptr<Listing const> listing;
};

/// The listings of the last few folders, the latest in front.
class KeptListings {
public:
    std::shared_ptr<Listing const> Find(struct stat const &info);
    void Keep(struct stat const &info, std::shared_ptr<Listing const> const &listing);

private:
    static constexpr std::size_t maxFolders = 8;
    static constexpr std::size_t maxBytes = std::size_t(64) << 20;

    std::list<Kept> folders;
    std::size_t bytes = 0;
};

std::shared_ptr<Listing const> KeptListings::Find(struct stat const &info)
{
    for (auto i = folders.begin(); i != folders.end(); ++i) {
        if (!unchanged(i->info, info)) continue;
        folders.splice(folders.begin(), folders, i);
        return i->listing;
    }
    return nullptr;
}

void KeptListings::Keep(struct stat const &info, std::shared_ptr<Listing const> const &listing)
{
    auto const drop = [this](std::list<Kept>::iterator i) {
        bytes -= i->listing->Bytes();
        return folders.erase(i);
    };
    for (auto i = folders.begin(); i != folders.end();)
        i = i->info.st_dev == info.st_dev && i->info.st_ino == info.st_ino ? drop(i) : std::next(i);
    folders.push_front({info, listing});
    bytes += listing->Bytes();
    while (!folders.empty() && (folders.size() > maxFolders || bytes > maxBytes)) drop(std::prev(folders.end()));
}

} // namespace

// Made when first asked for, so that loading the library runs nothing, and freed behind the library's last
// global object, which may still write a file when it goes.
static KeptListings *keptListings = nullptr;

__attribute__((destructor)) static void forgetlistings()
{
    delete keptListings;
    keptListings = nullptr;
}

std::shared_ptr<Listing const> ListFolder(std::string const &folder, struct stat const *info)
{
    if (!keptListings) keptListings = new KeptListings;
    struct stat looked;
    if (!info && stat(folder.c_str(), &looked) == 0) info = &looked;
    if (info)
        if (auto kept = keptListings->Find(*info)) return kept;

    std::shared_ptr<Listing> listing(new Listing);
    Descriptor opened(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NONBLOCK | O_CLOEXEC));
    timespec now;
    struct stat before;
    if (!opened || clock_gettime(CLOCK_REALTIME, &now) != 0 || fstat(opened.Get(), &before) != 0) return listing;
    bool const provable = settled(before.st_mtim, now) && settled(before.st_ctim, now) && islocal(opened.Get());
    readfolder(std::move(opened), *listing);
    if (provable && listing->IsComplete()) keptListings->Keep(before, listing);
    return listing;
}

} // namespace Platform::Posix
