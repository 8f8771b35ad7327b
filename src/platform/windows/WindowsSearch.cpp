#include <cstddef>
#include <memory>

#include "platform/Platform.h"
#include "platform/Replacements.h"
#include "platform/windows/WindowsPaths.h"

namespace Platform {

struct Search::State {
    Windows::Matches matches;
    std::size_t next = 0;
};

static long long joined(unsigned long high, unsigned long low)
{
    return static_cast<long long>(static_cast<unsigned long long>(high) << 32 | low);
}

static void fill(WIN32_FIND_DATAA const &found, Entry &entry)
{
    entry = Entry();
    entry.name = found.cFileName;
    entry.isFolder = Windows::IsFolder(found.dwFileAttributes);
    entry.size = entry.isFolder ? 0 : joined(found.nFileSizeHigh, found.nFileSizeLow);
    entry.created = joined(found.ftCreationTime.dwHighDateTime, found.ftCreationTime.dwLowDateTime);
    entry.modified = joined(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime);
}

/// The listing brings all details along.
Search::Search(char const *pattern, Detail) : state(new State)
{
    if (Allowed("Search")) Windows::FindMatches(pattern, state->matches);
}

Search::~Search() = default;

bool Search::Next(Entry &entry)
{
    if (state->next >= state->matches.found.size()) return false;
    fill(state->matches.found[state->next++], entry);
    return true;
}

} // namespace Platform
