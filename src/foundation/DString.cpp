/// Memory, assignment, comparison, search, slices and edits. Conversions are in DStringConversions.cpp.
///
/// A block is a header of three words with the characters right behind it. Writing happens only after `ReAlloc` or
/// `AllocCopy`, which hand out a block with a single owner; the marking step of `LFtoCRLF` is the one exception. The
/// characters begin 12 bytes into the block, so the link of the free list, which lies there, is copied by bytes.

#include "foundation/DString.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

namespace {

/// Blocks of this size are recycled and never go back to the heap.
int const shortBlock = 32;

/// Characters of the first free block of that size.
char *freeList = nullptr;

/// The mark that `LFtoCRLF` leaves in place of a bare line feed.
char const lineFeedMark = '\xC9';

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

int dStrlen(char const *text)
{
    if (!text) return 0;
    std::size_t const n = std::strlen(text);
    if (n > INT_MAX) throw std::bad_alloc();
    return static_cast<int>(n);
}

// ---- Memory ----

/// The smallest multiple of 32 strictly above n + 25.
int DString::blockSize(long long n)
{
    long long const size = (n + 25) / 32 * 32 + 32;
    if (size > INT_MAX) throw std::bad_alloc();
    return static_cast<int>(size);
}

char *DString::AllocBuffer(int size)
{
    if (size == shortBlock && freeList) {
        char *const block = freeList;
        std::memcpy(&freeList, block, sizeof freeList);
        (reinterpret_cast<Header *>(block) - 1)->refs = 1;
        return block;
    }
    auto *const header = static_cast<Header *>(std::malloc(bytes(size)));
    if (!header) throw std::bad_alloc();
    header->refs = 1;
    header->allocLen = size;
    return reinterpret_cast<char *>(header + 1);
}

void DString::freeBuffer(char *block)
{
    Header *const header = reinterpret_cast<Header *>(block) - 1;
    if (header->allocLen != shortBlock) {
        std::free(header);
        return;
    }
    std::memcpy(block, &freeList, sizeof freeList);
    freeList = block;
}

void DString::Release()
{
    if (!counted()) return;
    if (--header()->refs != 0) return;
    freeBuffer(chars);
    chars = nullptr;
}

bool DString::reusable(int size) const
{
    return chars && header()->allocLen >= size && header()->refs < 2;
}

void DString::setLength(int n)
{
    header()->len = n;
    chars[n] = '\0';
}

void DString::ReAlloc(int n)
{
    if (n < 0) n = 0;
    int const size = blockSize(n);
    if (reusable(size)) {
        setLength(n);
        return;
    }
    int const old = Len();
    if (counted() && header()->refs == 1 && header()->allocLen != shortBlock) {
        // The same as a new block, a copy and a release, but the heap may grow a large text where it is.
        void *const block = std::realloc(header(), bytes(size));
        if (!block) throw std::bad_alloc();
        static_cast<Header *>(block)->allocLen = size;
        chars = reinterpret_cast<char *>(static_cast<Header *>(block) + 1);
    } else {
        char *const block = AllocBuffer(size);
        if (chars) std::memcpy(block, chars, bytes(n < old ? n : old));
        Release();
        chars = block;
    }
    setLength(n);
}

void DString::AllocCopy(int n, char const *source)
{
    if (source && source == chars) return;
    if (!source || n < 0) n = 0;
    int const size = blockSize(n);
    if (reusable(size)) {
        if (n > 0) std::memmove(chars, source, bytes(n));
    } else {
        char *const block = AllocBuffer(size);
        if (n > 0) std::memcpy(block, source, bytes(n));
        Release(); // only now: the source may lie in the old block
        chars = block;
    }
    setLength(n);
}

void DString::ConcatSelf(long long n, char const *source)
{
    if (n < 1 || !source) return;
    int const old = Len();
    if (old + n > INT_MAX) throw std::bad_alloc();
    std::less_equal<> const notAbove;
    DString const kept(notAbove(chars, source) && notAbove(source, chars + old) ? *this : DString()); // s += s
    ReAlloc(static_cast<int>(old + n));
    std::memcpy(chars + old, source, static_cast<std::size_t>(n));
}

// ---- Construction and assignment ----

DString::DString(DString const &other) : chars(other.chars)
{
    if (counted()) ++header()->refs;
}

DString::DString(DString const &source, int start, int count) : DString()
{
    int const length = source.Len();
    if (length == 0) return;
    int const first = start < 0 ? 0 : start < length ? start : length;
    if (count > length - first) count = length - first;
    if (count < 0) count = 0;
    chars = AllocBuffer(blockSize(count));
    std::memcpy(chars, source.chars + first, bytes(count));
    setLength(count);
}

DString::DString(char c, int n) : DString()
{
    ReAlloc(n);
    std::memset(chars, c, bytes(Len()));
}

DString::DString(char const *text, int n) : DString()
{
    int length = 0;
    if (text && n > 0) {
        // No further than asked: the text need not be terminated behind it.
        void const *const end = std::memchr(text, '\0', bytes(n));
        length = end ? static_cast<int>(static_cast<char const *>(end) - text) : n;
    }
    ReAlloc(length);
    if (length > 0) std::memcpy(chars, text, bytes(length));
}

DString::~DString()
{
    Release();
}

DString &DString::operator=(DString const &other)
{
    if (this == &other) return *this;
    Release();
    chars = other.chars;
    if (counted()) ++header()->refs;
    return *this;
}

DString &DString::operator=(char const *text)
{
    AllocCopy(dStrlen(text), text);
    return *this;
}

DString &DString::operator=(char c)
{
    AllocCopy(1, &c);
    return *this;
}

DString &DString::Copy(DString const &other)
{
    AllocCopy(other.Len(), other.chars);
    return *this;
}

// ---- Appending ----

void DString::operator+=(DString const &other)
{
    ConcatSelf(other.Len(), other.chars);
}

void DString::operator+=(char const *text)
{
    ConcatSelf(dStrlen(text), text);
}

void DString::operator+=(char c)
{
    ConcatSelf(1, &c);
}

DString &DString::operator<<(DString const &other)
{
    *this += other;
    return *this;
}

DString &DString::operator<<(char const *text)
{
    *this += text;
    return *this;
}

DString &DString::operator<<(char c)
{
    *this += c;
    return *this;
}

DString operator+(DString const &a, DString const &b)
{
    DString result(a);
    result += b;
    return result;
}

DString operator+(DString const &a, char const *b)
{
    DString result(a);
    result += b;
    return result;
}

DString operator+(DString const &a, char b)
{
    DString result(a);
    result += b;
    return result;
}

DString operator+(char a, DString const &b)
{
    DString result(a, 1);
    result += b;
    return result;
}

DString operator+(char const *a, DString const &b)
{
    DString result(a);
    result += b;
    return result;
}

// ---- Access ----

void DString::SetChar(int i, char c)
{
    if (GetRefs() > 1) ReAlloc(Len());
    if (i >= 0 && i < Len()) chars[i] = c;
}

char *DString::GetBuffer(int n)
{
    ReAlloc(n);
    return chars;
}

DString &DString::Truncate(int n)
{
    int const old = Len();
    ReAlloc(n);
    if (Len() > old) std::memset(chars + old, 0, bytes(Len() - old));
    return *this;
}

DString &DString::TruncateBy(int n)
{
    if (n > Len()) return *this;
    long long const length = static_cast<long long>(Len()) - n;
    return Truncate(length > INT_MAX ? INT_MAX : static_cast<int>(length));
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
    DString const here(DString(chars).ToLower()); // each up to its first NUL
    DString const wanted(DString(text).ToLower());
    if (start > here.Len()) return npos;
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
    if (Len() == 0) return *this;
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
    for (char *p = chars; *p; ++p) *p = static_cast<char>(fold(*p));
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
