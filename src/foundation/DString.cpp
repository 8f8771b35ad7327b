/// Memory, construction, appending and access. Comparison and search are in DStringSearch.cpp, slices and edits in
/// DStringSlices.cpp, conversions in DStringConversions.cpp.
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

/// Where the second copy of the link to the next free block stands, counted from the characters.
int const linkCopy = shortBlock - 3 * static_cast<int>(sizeof(int)) - static_cast<int>(sizeof(char *));

/// Characters of the first free block of that size.
char *freeList = nullptr;

std::size_t bytes(int n)
{
    return static_cast<std::size_t>(n);
}

} // namespace

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
    // Once more at the last aligned place of the block: leak checkers follow no other pointers.
    std::memcpy(block + linkCopy, &freeList, sizeof freeList);
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
    if (source == chars) return;
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
