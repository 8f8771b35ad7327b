/// Bare names as users of Windows disks know them: compared and sorted without regard to ASCII case, and
/// matched by patterns. Private to the platform layer.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Platform {

/// Below zero, zero or above as `a` sorts before, like or behind `b` apart from case. Letters count as capitals, as on
/// Windows disks, so that `_` stands behind them; other bytes count as unsigned.
int CompareFolded(std::string_view a, std::string_view b);

inline bool SameFolded(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && CompareFolded(a, b) == 0;
}

/// The order of listings: apart from case, names that differ by case alone bytewise.
bool SortsBefore(std::string_view a, std::string_view b);

bool HasWildcards(std::string_view text);

/// The last element of a path, made ready to be compared with many names.
///
///     *       any run of characters, none too
///     ?       one character, but no dot; at a dot or at the end of the name none at all
///     .       before a wildcard: a dot, or nothing at the end of the name, so that `*.*` matches every
///             name and `name.*` also `name`
///     *.      at the end: any run of characters that aren't dots
class Pattern {
public:
    explicit Pattern(std::string_view text);

    bool Matches(std::string_view name) const;

private:
    bool dotMayBeMissing(std::size_t i) const;
    bool step(std::string_view name, std::size_t &p, std::size_t &n) const;
    bool fitsRest(std::string_view name, std::size_t p, std::size_t n) const;

    std::string text;
    bool noDotInLastRun = false;
};

} // namespace Platform
