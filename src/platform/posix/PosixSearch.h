/// Names that match a path whose last element may hold wildcards, for the operations that work on many
/// files. Private to the Linux half of the platform layer.
#pragma once

#include <string>
#include <vector>

namespace Platform::Posix {

struct Matches {
    std::string folder;             ///< native
    std::vector<std::string> names; ///< as stored, sorted
    bool hadWildcards = false;
};

/// Finds all matches at once. False if the folder, or a name without wildcards, isn't there, or the folder can't be
/// read.
bool FindMatches(char const *pattern, Matches &matches);

} // namespace Platform::Posix
