/// What the four binary formats have in common: values as they stand in memory, arrays in pieces that a file takes,
/// and how far a count that a file announces is believed.
#pragma once

#include <initializer_list>

#include "files/DFile.h"

namespace FileValues {

int const binaryRead = 5;
int const binaryWrite = 6;
int const binaryUpdate = 7;

/// Widths of the length in front of a text, for `DSWrite`.
int const shortPrefixWidth = 2;
int const longPrefixWidth = 4;

/// For `DSRead`.
bool const shortPrefix = true;
bool const longPrefix = false;

int const floatWidth = sizeof(float);

/// Bytes of an array that go to the file in one call; a multiple of every width.
int const bytesPerCall = 1 << 30;

template <typename Value>
void read(DFile &f, Value &value)
{
    f.BRead(&value, sizeof value);
}

template <typename Value>
void write(DFile &f, Value value)
{
    f.BWrite(&value, sizeof value);
}

/// Reads a skip length and moves forward by it.
template <typename Length>
Length readSkip(DFile &f)
{
    Length skip = 0;
    read(f, skip);
    if (skip != 0) f.SeekRel(skip);
    return skip;
}

/// The fields of one type that follow each other in a file.
template <typename Value>
void readAll(DFile &f, std::initializer_list<Value *> fields)
{
    for (Value *field : fields) read(f, *field);
}

template <typename Value>
void writeAll(DFile &f, std::initializer_list<Value> fields)
{
    for (Value const &field : fields) write(f, field);
}

/// Calls `transfer(first, bytes)` for `n` floats, piece by piece.
template <typename Transfer>
void inPieces(long long n, Transfer transfer)
{
    for (long long first = 0; first < n;) {
        long long const left = (n - first) * floatWidth;
        int const bytes = left < bytesPerCall ? static_cast<int>(left) : bytesPerCall;
        transfer(first, bytes);
        first += bytes / floatWidth;
    }
}

inline void readFloats(DFile &f, float *target, long long n)
{
    inPieces(n, [&](long long first, int bytes) { f.BRead(target + first, bytes); });
}

inline void writeFloats(DFile &f, float const *source, long long n)
{
    inPieces(n, [&](long long first, int bytes) { f.BWrite(source + first, bytes); });
}

/// A count up to this is taken as it stands, even from a file that breaks off.
int const trustedCount = 1 << 20;

/// More than this no array holds.
int const largestCount = 0x7FFFFF00;

/// How many of `announced` elements, of at least `width` bytes each, are taken from where the file stands; below 0
/// none. A large count is taken as it stands if half of it is there, and otherwise only as far as the file goes, so
/// that no few bytes make us fill memory.
inline int believed(DFile const &f, long long announced, int width, int trusted = trustedCount)
{
    if (announced <= trusted) return announced < 0 ? 0 : static_cast<int>(announced);
    long long const present = f.Remaining() / width;
    long long const taken = announced / 2 <= present ? announced : present < trusted ? trusted : present;
    return taken < largestCount ? static_cast<int>(taken) : largestCount;
}

} // namespace FileValues
