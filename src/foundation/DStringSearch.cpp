/// Comparison and search.

#include <cstring>

#include "foundation/DString.h"

namespace {

unsigned char fold(char c)
{
    auto const byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte - 'A' + 'a') : byte;
}

int sign(int difference)
{
    return difference < 0 ? -1 : difference > 0;
}

std::size_t bytes(int n)
{
    return static_cast<std::size_t>(n);
}

unsigned int position(char const *begin, char const *found)
{
    return found ? static_cast<unsigned int>(found - begin) : npos;
}

} // namespace

int CompareFolded(char const *a, char const *b, int n)
{
    for (int i = 0; i < n; ++i) {
        int const difference = fold(a[i]) - fold(b[i]);
        if (difference != 0 || a[i] == '\0') return difference;
    }
    return 0;
}

// ---- Comparison ----

bool DString::operator==(DString const &other) const
{
    return chars && other.chars && Len() == other.Len() && std::strcmp(chars, other.chars) == 0;
}

bool DString::operator==(char const *text) const
{
    return chars && text && std::strcmp(chars, text) == 0;
}

bool DString::operator!=(DString const &other) const
{
    return !(*this == other);
}

bool DString::operator!=(char const *text) const
{
    return !(*this == text);
}

bool DString::operator%=(DString const &other) const
{
    return chars && other.chars && Len() == other.Len() && CompareFolded(chars, other.chars) == 0;
}

bool DString::operator%=(char const *text) const
{
    return chars && text && CompareFolded(chars, text) == 0;
}

bool DString::operator/=(DString const &other) const
{
    return !(*this %= other);
}

bool DString::operator/=(char const *text) const
{
    return !(*this %= text);
}

bool DString::operator<(DString const &other) const
{
    return Compare(other) < 0;
}

bool DString::operator>(DString const &other) const
{
    return Compare(other) > 0;
}

int DString::Compare(DString const &other) const
{
    return Compare(other.chars);
}

int DString::Compare(char const *text) const
{
    return sign(std::strcmp(chars ? chars : DEmptyString, text ? text : DEmptyString));
}

bool DString::StartsWith(DString const &text) const
{
    return chars && CompareFolded(chars, text.chars ? text.chars : DEmptyString, text.Len()) == 0;
}

bool DString::StartsWith(char const *text) const
{
    return chars && CompareFolded(chars, text ? text : DEmptyString, dStrlen(text)) == 0;
}

bool DString::EndsWith(DString const &text) const
{
    int const n = text.Len();
    return n > 0 && chars && n <= Len() && CompareFolded(chars + Len() - n, text.chars, n) == 0;
}

bool DString::EndsWith(char const *text) const
{
    int const n = dStrlen(text);
    return text && chars && n <= Len() && CompareFolded(chars + Len() - n, text, n) == 0;
}

// ---- Search ----

unsigned int DString::Find(char c, int start) const
{
    if (start < 0) start = 0;
    if (start >= Len()) return npos;
    return position(chars, std::strchr(chars + start, c));
}

unsigned int DString::Find(char const *text, int start) const
{
    if (start < 0) start = 0;
    if (start >= Len() || !text) return npos;
    return position(chars, std::strstr(chars + start, text));
}

unsigned int DString::Find(DString const &text, int start) const
{
    return Find(text.chars, start);
}

unsigned int DString::FindI(char const *text, int start) const
{
    if (start < 0) start = 0;
    if (start >= Len() || !text) return npos;
    DString const here(DString(*this).ToLower());
    DString const wanted(DString(text).ToLower());
    return position(here.chars, std::strstr(here.chars + start, wanted.chars));
}

unsigned int DString::FindI(DString const &text, int start) const
{
    return FindI(text.chars, start);
}

unsigned int DString::FindFirstOf(char const *set, int start) const
{
    if (start < 0) start = 0;
    if (start >= Len() || !set) return npos;
    return position(chars, std::strpbrk(chars + start, set));
}

unsigned int DString::FindFirstOf(DString const &set, int start) const
{
    return FindFirstOf(set.chars, start);
}

unsigned int DString::FindFirstNotOf(char const *set, int start) const
{
    if (start < 0) start = 0;
    if (start >= Len()) return npos;
    int const found = start + static_cast<int>(std::strspn(chars + start, set ? set : DEmptyString));
    return found < Len() ? static_cast<unsigned int>(found) : npos;
}

unsigned int DString::FindFirstNotOf(DString const &set, int start) const
{
    return FindFirstNotOf(set.chars, start);
}

unsigned int DString::RFind(char c, int start) const
{
    if (!chars) return npos;
    if (start == static_cast<int>(npos)) return position(chars, std::strrchr(chars, c));
    if (Len() == 0) return npos;
    int i = start < Len() - 1 ? start : Len() - 1;
    while (i >= 1 && chars[i] != c) --i;
    if (i >= 1) return static_cast<unsigned int>(i);
    return chars[0] == c ? 0 : npos;
}

unsigned int DString::RFind(char const *text, int start) const
{
    if (!chars) return npos;
    int const n = dStrlen(text);
    int const last = Len() - n;
    for (int i = start < last ? start : last; i >= 0; --i) {
        if (n == 0 || std::strncmp(chars + i, text, bytes(n)) == 0) return static_cast<unsigned int>(i);
    }
    return npos;
}

unsigned int DString::RFind(DString const &text, int start) const
{
    return RFind(text.chars, start);
}
