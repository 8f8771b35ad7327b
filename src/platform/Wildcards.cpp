// A pattern is compared in one pass that remembers the last `*` and where in the name it began to stand for
// something. When what follows the `*` doesn't fit, the `*` takes one character more. Going back to an earlier
// `*` can't help: what the later one may reach, it may reach from the earliest place, too, since every element but `*`
// takes one character or none, decided by the next character alone. So the time is at most the product of both lengths.

#include "platform/Wildcards.h"

#include <algorithm>

namespace Platform {

static unsigned char folded(char c)
{
    return static_cast<unsigned char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
}

int CompareFolded(std::string_view a, std::string_view b)
{
    std::size_t const n = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < n; i++)
        if (a[i] != b[i] && folded(a[i]) != folded(b[i])) return folded(a[i]) < folded(b[i]) ? -1 : 1;
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

bool SortsBefore(std::string_view a, std::string_view b)
{
    int const order = CompareFolded(a, b);
    return order != 0 ? order < 0 : a < b;
}

bool HasWildcards(std::string_view text)
{
    return text.find_first_of("*?") != std::string_view::npos;
}

Pattern::Pattern(std::string_view given) : text(given)
{
    while (!text.empty() && text.back() == '.') text.pop_back();
    noDotInLastRun = text.size() < given.size() && !text.empty() && text.back() == '*';
}

bool Pattern::dotMayBeMissing(std::size_t i) const
{
    return text[i] == '.' && i + 1 < text.size() && (text[i + 1] == '*' || text[i + 1] == '?');
}

bool Pattern::step(std::string_view name, std::size_t &p, std::size_t &n) const
{
    bool const atEnd = n == name.size();
    if (text[p] == '?') {
        n += !atEnd && name[n] != '.';
    } else if (!atEnd && folded(text[p]) == folded(name[n])) {
        n++;
    } else if (!atEnd || !dotMayBeMissing(p)) {
        return false;
    }
    p++;
    return true;
}

bool Pattern::fitsRest(std::string_view name, std::size_t p, std::size_t n) const
{
    if (p == text.size()) return n == name.size();
    if (p + 1 < text.size() || text[p] != '*') return false;
    return !noDotInLastRun || name.find('.', n) == std::string_view::npos;
}

bool Pattern::Matches(std::string_view name) const
{
    std::size_t const none = std::string::npos;
    std::size_t p = 0, n = 0, star = none, starAt = 0;
    for (;;) {
        if (fitsRest(name, p, n)) return true;
        bool const more = p < text.size();
        if (more && text[p] == '*' && p + 1 < text.size()) {
            star = p++;
            starAt = n;
        } else if (!more || text[p] == '*' || !step(name, p, n)) {
            if (star == none || starAt == name.size()) return false;
            p = star + 1;
            n = ++starAt;
        }
    }
}

} // namespace Platform
