#include "platform/posix/PosixSearch.h"

#include <algorithm>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <utility>

#include "platform/Platform.h"
#include "platform/Replacements.h"
#include "platform/Wildcards.h"
#include "platform/posix/FolderListings.h"
#include "platform/posix/PosixPaths.h"
#include "platform/posix/PosixSpelling.h"

namespace Platform {

using namespace Posix;

// ---- What the system says of one entry ----------------------------------------------------------------

/// 100 ns units since 1601, as far as these go: some file systems take times millions of years away.
static long long filetime(statx_timestamp const &time)
{
    long long const farthest = 900000000000; // seconds
    long long const seconds = std::clamp(static_cast<long long>(time.tv_sec), -farthest, farthest);
    return (seconds + 11644473600) * 10000000 + time.tv_nsec / 100;
}

static void fill(struct statx const &info, Entry &entry)
{
    entry.isFolder = S_ISDIR(info.stx_mode);
    entry.size = entry.isFolder ? 0 : static_cast<long long>(info.stx_size);
    entry.modified = filetime(info.stx_mtime);
    entry.created =
        info.stx_mask & STATX_BTIME ? filetime(info.stx_btime) : std::min(entry.modified, filetime(info.stx_ctime));
}

/// Looks at an entry, and through a link at what it leads to; false if there is nothing. A link that leads nowhere
/// tells of itself. `info` is what the system says of the name itself.
static bool look(std::string const &native, Entry &entry, struct statx &info)
{
    unsigned const wanted = STATX_BASIC_STATS | STATX_BTIME;
    if (statx(AT_FDCWD, native.c_str(), AT_SYMLINK_NOFOLLOW, wanted, &info) != 0) return false;
    struct statx target;
    bool const leads = S_ISLNK(info.stx_mode) && statx(AT_FDCWD, native.c_str(), 0, wanted, &target) == 0;
    fill(leads ? target : info, entry);
    return true;
}

// ---- Search ---------------------------------------------------------------------------------------------

struct Search::State {
    std::string folder;
    std::shared_ptr<Listing const> listing;
    std::size_t next = 0;
    Pattern pattern{std::string_view()};
    Detail detail = Detail::Names;
    std::unique_ptr<Entry> only; ///< what a name without wildcards has found

    bool Matches(std::size_t i, Entry &entry) const;
};

bool Search::State::Matches(std::size_t i, Entry &entry) const
{
    std::string_view const name = listing->Name(i);
    if (!pattern.Matches(name)) return false;
    entry = Entry();
    entry.name = name;
    entry.isFolder = listing->KindOf(i) == Listing::Kind::Folder;
    if (detail == Detail::Names && listing->KindOf(i) != Listing::Kind::Unknown) return true;
    struct statx info;
    return look(Join(folder, name), entry, info);
}

/// Finds a name without wildcards, at one look if it is spelled as on a disk that regards case.
static std::unique_ptr<Entry> findentry(PathName const &name)
{
    std::unique_ptr<Entry> entry(new Entry);
    struct statx info;
    std::string native = name.Native();
    if (look(native, *entry, info)) {
        native = StoredName(native, makedev(info.stx_dev_major, info.stx_dev_minor), info.stx_ino);
    } else {
        FoundName found;
        if (!FindName(name, found, true) || !found.exists || !look(found.native, *entry, info)) return nullptr;
        native = found.native;
    }
    entry->name = BareName(native);
    return entry;
}

Search::Search(char const *pattern, Detail detail) : state(new State)
{
    PathName name;
    if (!Allowed("Search") || !ParsePath(pattern, name) || !name.endsInName) return;
    std::size_t const last = name.elements.size() - 1;
    if (name.HasWildcardsIn(last)) return;
    if (!HasWildcards(name.Last())) {
        state->only = findentry(name);
        return;
    }
    FoundFolder folder;
    if (!FindFolder(name, last, folder)) return;
    state->folder = folder.native;
    state->listing = ListFolder(folder.native, &folder.info);
    state->pattern = Pattern(name.Last());
    state->detail = detail;
}

Search::~Search() = default;

bool Search::Next(Entry &entry)
{
    if (state->only) {
        entry = std::move(*state->only);
        state->only.reset();
        return true;
    }
    if (!state->listing) return false;
    while (state->next < state->listing->Count())
        if (state->Matches(state->next++, entry)) return true;
    return false;
}

bool Posix::FindMatches(char const *pattern, Posix::Matches &matches)
{
    PathName name;
    if (!ParsePath(pattern, name) || !name.endsInName) return false;
    std::size_t const last = name.elements.size() - 1;
    matches.hadWildcards = HasWildcards(name.Last());
    if (name.HasWildcardsIn(last)) return false;
    if (!matches.hadWildcards) {
        FoundName found;
        if (!FindName(name, found) || !found.exists) return false;
        matches.folder = FolderOf(found.native);
        matches.names = {BareName(found.native)};
        return true;
    }
    FoundFolder folder;
    if (!FindFolder(name, last, folder)) return false;
    matches.folder = folder.native;
    auto const listing = ListFolder(folder.native, &folder.info);
    Pattern const wanted(name.Last());
    for (std::size_t i = 0; i < listing->Count(); i++)
        if (wanted.Matches(listing->Name(i))) matches.names.emplace_back(listing->Name(i));
    return listing->IsComplete();
}

} // namespace Platform
