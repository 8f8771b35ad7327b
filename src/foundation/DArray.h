/// The growable array in which samples, names, tables and settings are kept: one contiguous block, seen either as a
/// list or as a table of runs.
///
/// Element (r, c) stands at `c * RCount() + r`: the first index moves fastest, and `RCount()` is the length of a run.
/// A list has `RCount()` 1. A table from a text file has one run per line.
///
/// `flag` 0 is for plain data, which is never constructed or destroyed; `flag` 1 for classes, each constructed and
/// destroyed in place. Growth, insertion and removal move raw bytes in both, so every element type must bear being
/// moved by `memcpy`; all of the system's do.
///
/// Capacity grows by 256 elements, never by a factor. A block that can't be had raises std::bad_alloc.
#pragma once

#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

#include "foundation/Export.h"

template <typename T, int flag>
class VODREL_API DArray {
public:
    DArray() = default;
    DArray(DArray const &other) { alloccopy(other); }
    /// A list of `n` elements, new ones undefined for `flag` 0. A negative `n` counts as 0.
    explicit DArray(int n) { Size(n); }
    DArray(int r, int c) { Size(r, c); }
    virtual ~DArray() { clear(); }
    DArray &operator=(DArray const &other);

    int Count() const { return nUsed; }
    int Capacity() const { return capacity; }
    int RCount() const { return rCount; }
    int CCount() const { return cCount; }
    T *Data() { return data; }
    T const *Data() const { return data; }

    /// Room for `n` elements in all; never less than there is.
    void Reserve(int n) { realloc(n); }

    /// Throws contents and block away and makes a new one.
    void Size(int n) { Size(1, n); }
    void Size(int r, int c);

    /// Keeps the contents as they lie; nothing is rearranged when the length of a run changes.
    void ReSize(int n) { ReSize(1, n); }
    void ReSize(int r, int c);

    /// Adds `n` elements, cut down to whole runs: a count that wasn't whole runs is cut down too.
    void AddBlank(int n);

    /// Empties the array and frees the block.
    void Clear();

    // Access isn't checked.
    T &operator[](int i) { return data[i]; }
    T const &operator[](int i) const { return data[i]; }
    T &operator()(int r, int c) { return data[static_cast<std::ptrdiff_t>(c) * rCount + r]; }
    T const &operator()(int r, int c) const { return data[static_cast<std::ptrdiff_t>(c) * rCount + r]; }
    T &Last() { return data[nUsed - 1]; }
    T const &Last() const { return data[nUsed - 1]; }

    // Editing works on whole runs: a number of elements is cut down to them, and nothing happens if none is left.
    // Positions are limited to the array; `npos` is the end.

    /// `n` elements, read from the address of `v` on.
    void Add(T const &v, int n = 1) { Insert(&v, INT_MAX, n); }
    void Insert(T const *source, int at, int n);
    void InsertBlank(int at, int n);
    /// Keeps the block. A position behind the end removes the last element.
    void Remove(int at, int n);
    /// Overwrites, never changes the count.
    void Replace(T const *source, int at, int n);
    /// Moves `n` elements, at least one, so that they begin at `to`.
    void Reorder(int from, int to, int n);
    /// `qsort` of all elements whatever the shape.
    void Sort(int (*compare)(void const *, void const *));

    /// Exchanges the contents; false for the array itself. Both arrays end with the run length of `other`: this one's
    /// own is lost. `growBy` and `zeroFill` stay where they are.
    bool SwapData(DArray &other);

    bool zeroFill = false; ///< clear new blocks, and blanks that are inserted
    int growBy = 256;      ///< the step of growth, in elements

protected:
    /// A new block for `n` elements; stores its capacity.
    T *alloc(int n);
    /// Room for `n` elements, the count unchanged.
    void realloc(int n);
    void resize(int n);
    /// Destroys the elements and frees the block; the shape stays.
    void clear();
    void alloccopy(DArray const &source);
    /// The place behind the last element, for one more to be constructed in; it counts from `countplace` on. The shape
    /// isn't told.
    void *rawplace();
    void countplace() { ++nUsed; }
    /// `Size(n)`, on a cleared block if `cleared`, whatever `zeroFill` says.
    void sizefor(int n, bool cleared);

private:
    static int atLeast0(long long n);
    static int product(int r, int c);
    static int limit(int at, int low, int high) { return at < low ? low : at > high ? high : at; }
    static void *bytes(T *p) { return p; } // says that elements are meant to be moved as bytes
    static std::size_t width(int n) { return static_cast<std::size_t>(n) * sizeof(T); }

    int wholeRuns(int n) const { return n - n % rCount; }
    long long capacityFor(int n) const;
    T *take(int n, bool cleared);
    bool limitRange(int &at, int &n) const;
    void insert(T const *source, int at, int n);
    void makeRoom(int n);
    void openGap(int at, int n);
    void countIn(int at, int n);
    void moveBlock(int from, int to, int n);
    void construct(int from, int to);
    void destroy(int from, int to);
    bool owns(T const *p) const { return data && p >= data && p < data + nUsed; }

    int capacity = 0;
    int nUsed = 0;
    int cCount = 0;
    int rCount = 1;
    T *data = nullptr;
};

template <typename T, int flag>
DArray<T, flag> &DArray<T, flag>::operator=(DArray const &other)
{
    if (this == &other) return *this;
    Clear();
    alloccopy(other);
    return *this;
}

template <typename T, int flag>
int DArray<T, flag>::atLeast0(long long n)
{
    if (n > INT_MAX) throw std::bad_alloc();
    return n < 0 ? 0 : static_cast<int>(n);
}

template <typename T, int flag>
int DArray<T, flag>::product(int r, int c)
{
    return atLeast0(static_cast<long long>(r) * c);
}

template <typename T, int flag>
void DArray<T, flag>::Size(int r, int c)
{
    clear();
    rCount = r < 1 ? 1 : r;
    cCount = 0;
    int const columns = c < 0 ? 0 : c;
    int const n = product(rCount, columns);
    data = alloc(n);
    if constexpr (flag == 1) construct(0, n);
    nUsed = n;
    cCount = columns;
}

template <typename T, int flag>
void DArray<T, flag>::sizefor(int n, bool cleared)
{
    Clear();
    int const size = n < 0 ? 0 : n;
    data = take(size, cleared || zeroFill);
    if constexpr (flag == 1) construct(0, size);
    nUsed = cCount = size;
}

template <typename T, int flag>
void DArray<T, flag>::ReSize(int r, int c)
{
    int const run = r < 1 ? 1 : r;
    int const columns = c < 0 ? 0 : c;
    resize(product(run, columns));
    rCount = run;
    cCount = columns;
}

template <typename T, int flag>
void DArray<T, flag>::AddBlank(int n)
{
    int const columns = atLeast0((static_cast<long long>(nUsed) + n) / rCount);
    resize(product(rCount, columns));
    cCount = columns;
}

template <typename T, int flag>
void DArray<T, flag>::Clear()
{
    rCount = 1;
    cCount = 0;
    clear();
}

template <typename T, int flag>
void DArray<T, flag>::Insert(T const *source, int at, int n)
{
    n = wholeRuns(n);
    if (n < 1 || !source) return;
    if (owns(source)) { // the block may move from under it
        DArray kept;
        kept.insert(source, 0, limit(n, 0, nUsed - static_cast<int>(source - data)));
        insert(kept.data, at, wholeRuns(kept.nUsed));
        return;
    }
    insert(source, at, n);
}

/// From outside the own block. Elements with constructors are made behind the end and counted in only then, so that one
/// that can't be made leaves the array as it was.
template <typename T, int flag>
void DArray<T, flag>::insert(T const *source, int at, int n)
{
    makeRoom(n);
    at = limit(at, 0, nUsed);
    if constexpr (flag == 1) {
        for (int i = 0; i < n; ++i) ::new (bytes(data + nUsed + i)) T(source[i]);
        countIn(at, n);
    } else {
        openGap(at, n);
        std::memcpy(bytes(data + at), source, width(n));
    }
}

template <typename T, int flag>
void DArray<T, flag>::InsertBlank(int at, int n)
{
    n = wholeRuns(n);
    if (n < 1) return;
    makeRoom(n);
    at = limit(at, 0, nUsed);
    if constexpr (flag == 1) {
        if (zeroFill) std::memset(bytes(data + nUsed), 0, width(n));
        construct(nUsed, nUsed + n);
        countIn(at, n);
    } else {
        openGap(at, n);
        if (zeroFill) std::memset(bytes(data + at), 0, width(n));
    }
}

template <typename T, int flag>
void DArray<T, flag>::makeRoom(int n)
{
    realloc(atLeast0(static_cast<long long>(nUsed) + n));
}

/// Counts `n` elements in at `at`, which hold what the block held there.
template <typename T, int flag>
void DArray<T, flag>::openGap(int at, int n)
{
    std::memmove(bytes(data + at + n), bytes(data + at), width(nUsed - at));
    nUsed += n;
    cCount += n / rCount;
}

/// Counts `n` elements in that stand behind the end, and moves them to `at`.
template <typename T, int flag>
void DArray<T, flag>::countIn(int at, int n)
{
    int const from = nUsed;
    nUsed += n;
    cCount += n / rCount;
    if (at < from) moveBlock(from, at, n);
}

/// Moves `n` elements from one place to another; those between make way.
template <typename T, int flag>
void DArray<T, flag>::moveBlock(int from, int to, int n)
{
    void *const block = std::malloc(width(n));
    if (!block) throw std::bad_alloc();
    std::memcpy(block, bytes(data + from), width(n));
    if (to < from) std::memmove(bytes(data + to + n), bytes(data + to), width(from - to));
    else std::memmove(bytes(data + from), bytes(data + from + n), width(to - from));
    std::memcpy(bytes(data + to), block, width(n));
    std::free(block);
}

template <typename T, int flag>
bool DArray<T, flag>::limitRange(int &at, int &n) const
{
    n = wholeRuns(n);
    if (nUsed == 0 || n < 1) return false;
    at = limit(at, 0, nUsed - 1);
    if (n > nUsed - at) n = nUsed - at;
    return true;
}

template <typename T, int flag>
void DArray<T, flag>::Remove(int at, int n)
{
    if (!limitRange(at, n)) return;
    if constexpr (flag == 1) destroy(at, at + n);
    std::memmove(bytes(data + at), bytes(data + at + n), width(nUsed - at - n));
    nUsed -= n;
    cCount -= n / rCount;
}

template <typename T, int flag>
void DArray<T, flag>::Replace(T const *source, int at, int n)
{
    if (!source || !limitRange(at, n)) return;
    if constexpr (flag == 1) {
        for (int i = 0; i < n; ++i) data[at + i] = source[i];
    } else {
        std::memmove(bytes(data + at), source, width(n));
    }
}

template <typename T, int flag>
void DArray<T, flag>::Reorder(int from, int to, int n)
{
    if (nUsed == 0) return;
    from = limit(wholeRuns(from), 0, nUsed - 1);
    to = limit(wholeRuns(to), 0, nUsed - 1);
    if (from == to) return;
    moveBlock(from, to, limit(wholeRuns(n), 1, nUsed - (from > to ? from : to)));
}

template <typename T, int flag>
void DArray<T, flag>::Sort(int (*compare)(void const *, void const *))
{
    if (nUsed > 1) std::qsort(bytes(data), static_cast<std::size_t>(nUsed), sizeof(T), compare);
}

template <typename T, int flag>
bool DArray<T, flag>::SwapData(DArray &other)
{
    if (&other == this) return false;
    auto const swap = [](auto &a, auto &b) {
        auto const kept = a;
        a = b;
        b = kept;
    };
    swap(data, other.data);
    swap(capacity, other.capacity);
    swap(nUsed, other.nUsed);
    swap(cCount, other.cCount);
    rCount = other.rCount;
    return true;
}

/// The next multiple of the step strictly above `n`.
template <typename T, int flag>
long long DArray<T, flag>::capacityFor(int n) const
{
    long long const step = growBy < 1 ? 1 : growBy;
    return n - n % step + step;
}

template <typename T, int flag>
T *DArray<T, flag>::take(int n, bool cleared)
{
    long long const room = capacityFor(n);
    if (room > INT_MAX) throw std::bad_alloc();
    auto const elements = static_cast<std::size_t>(room);
    void *const block = cleared ? std::calloc(elements, sizeof(T)) : std::malloc(elements * sizeof(T));
    if (!block) throw std::bad_alloc();
    capacity = static_cast<int>(room);
    return static_cast<T *>(block);
}

template <typename T, int flag>
T *DArray<T, flag>::alloc(int n)
{
    return take(n < 0 ? 0 : n, zeroFill);
}

template <typename T, int flag>
void DArray<T, flag>::realloc(int n)
{
    if (n <= capacity) return;
    long long const room = capacityFor(n);
    if (room > INT_MAX) throw std::bad_alloc();
    void *const block = std::realloc(bytes(data), width(static_cast<int>(room)));
    if (!block) throw std::bad_alloc();
    data = static_cast<T *>(block);
    capacity = static_cast<int>(room);
    if (zeroFill) std::memset(bytes(data + nUsed), 0, width(capacity - nUsed));
}

template <typename T, int flag>
void DArray<T, flag>::resize(int n)
{
    if (n < 0) n = 0;
    realloc(n);
    if constexpr (flag == 1) {
        destroy(n, nUsed);
        construct(nUsed, n);
    }
    nUsed = n;
}

template <typename T, int flag>
void DArray<T, flag>::clear()
{
    if constexpr (flag == 1) destroy(0, nUsed);
    std::free(bytes(data));
    data = nullptr;
    capacity = 0;
    nUsed = 0;
}

template <typename T, int flag>
void DArray<T, flag>::alloccopy(DArray const &source)
{
    growBy = source.growBy;
    zeroFill = source.zeroFill;
    data = alloc(source.nUsed);
    if constexpr (flag == 1) {
        for (int i = 0; i < source.nUsed; ++i) ::new (bytes(data + i)) T(source.data[i]);
    } else if (source.nUsed > 0) {
        std::memcpy(bytes(data), source.data, width(source.nUsed));
    }
    nUsed = source.nUsed;
    cCount = source.cCount;
    rCount = source.rCount;
}

template <typename T, int flag>
void *DArray<T, flag>::rawplace()
{
    realloc(atLeast0(nUsed + 1LL));
    return bytes(data + nUsed);
}

template <typename T, int flag>
void DArray<T, flag>::construct(int from, int to)
{
    for (int i = from; i < to; ++i) ::new (bytes(data + i)) T();
}

template <typename T, int flag>
void DArray<T, flag>::destroy(int from, int to)
{
    for (int i = from; i < to; ++i) data[i].~T();
}
