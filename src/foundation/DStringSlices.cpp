/// Slices, which return a new string, and edits in place.

#include <climits>
#include <cstring>
#include <new>

#include "foundation/DString.h"

namespace {

/// The mark that `LFtoCRLF` leaves in place of a bare line feed.
char const lineFeedMark = '\xC9';

std::size_t bytes(int n)
{
    return static_cast<std::size_t>(n);
}

} // namespace

// ---- Slices ----

DString DString::Left(int n)
{
    return DString(*this, 0, n);
}

DString DString::Mid(int start, int n)
{
    return DString(*this, start, n);
}

DString DString::Right(int n)
{
    return DString(*this, n < Len() ? Len() - (n < 0 ? 0 : n) : 0, n);
}

DString DString::BeforeFirst(char c, bool whole)
{
    unsigned int const found = Find(c, 0);
    if (found == npos) return whole && chars ? *this : DString();
    return Left(static_cast<int>(found));
}

DString DString::AfterFirst(char c, bool whole)
{
    unsigned int const found = Find(c, 0);
    if (found == npos) return whole && chars ? *this : DString();
    return Mid(static_cast<int>(found) + 1);
}

DString DString::BeforeLast(char c, bool whole)
{
    unsigned int const found = RFind(c);
    if (found == npos) return whole && chars ? *this : DString();
    return Left(static_cast<int>(found));
}

DString DString::AfterLast(char c, bool whole)
{
    unsigned int const found = RFind(c);
    if (found == npos) return whole && chars ? *this : DString();
    return Mid(static_cast<int>(found) + 1);
}

DString DString::Trim()
{
    int first = 0;
    int end = Len();
    while (first < end && chars[first] == ' ') ++first;
    while (end > first && chars[end - 1] == ' ') --end;
    if (first == end) return DString("", 0);
    return DString(*this, first, end - first);
}

DString DString::Despace()
{
    int const length = Len();
    int kept = 0;
    for (int i = 0; i < length; ++i) kept += chars[i] != ' ';
    DString result;
    if (kept == 0) return result;
    char *out = result.GetBuffer(kept);
    for (int i = 0; i < length; ++i) {
        if (chars[i] != ' ') *out++ = chars[i];
    }
    return result;
}

DString DString::Replace(DString const &find, DString const &put, bool all)
{
    return Replace(find.chars, put.chars, all);
}

DString DString::Replace(char const *find, DString const &put, bool all)
{
    return Replace(find, put.chars, all);
}

DString DString::Replace(char const *find, char const *put, bool all)
{
    if (!chars) return DString("", 0);
    if (Len() == 0) return DString();
    int const findLength = dStrlen(find);
    if (findLength == 0) return *this;
    int const putLength = dStrlen(put);

    long long times = 0;
    for (char const *p = std::strstr(chars, find); p; p = all ? std::strstr(p + findLength, find) : nullptr) ++times;
    if (times == 0) return *this;
    long long const length = Len() + times * (putLength - findLength);
    if (length > INT_MAX) throw std::bad_alloc();

    DString result;
    char *out = result.GetBuffer(static_cast<int>(length));
    char const *from = chars;
    for (; times > 0; --times) {
        char const *const found = std::strstr(from, find);
        auto const before = static_cast<std::size_t>(found - from);
        std::memcpy(out, from, before);
        out += before;
        if (putLength > 0) std::memcpy(out, put, bytes(putLength));
        out += putLength;
        from = found + findLength;
    }
    std::memcpy(out, from, static_cast<std::size_t>(chars + Len() - from));
    return result;
}

DString DString::LFtoCRLF()
{
    for (int i = 0; i < Len(); ++i) {
        if (chars[i] == '\n' && (i == 0 || chars[i - 1] != '\r')) chars[i] = lineFeedMark;
    }
    char const mark[] = {lineFeedMark, '\0'};
    return Replace(mark, LDelim, true);
}

// ---- Edits in place ----

DString &DString::RTrim()
{
    int last = dStrlen(chars) - 1;
    while (last > 0 && chars[last] == ' ') --last;
    ReAlloc(last + 1);
    return *this;
}

DString &DString::RemoveExt()
{
    int i = Len() - 1;
    while (i > 0 && chars[i] != '.') --i;
    if (i > 0) ReAlloc(i);
    return *this;
}

DString &DString::ToLower()
{
    ReAlloc(Len());
    for (char *p = chars; *p; ++p) {
        if (*p >= 'A' && *p <= 'Z') *p = static_cast<char>(*p - 'A' + 'a');
    }
    return *this;
}

DString &DString::ToUpper()
{
    ReAlloc(Len());
    for (char *p = chars; *p; ++p) {
        if (*p >= 'a' && *p <= 'z') *p = static_cast<char>(*p - 'a' + 'A');
    }
    return *this;
}
