/// What tests need of a DString beyond its public side: the words of its header, its memory operations,
/// the null state that a program meets only between a release and the next assignment, and texts that
/// hold NULs.
#pragma once

#include <cstddef>
#include <cstring>
#include <string>

#include "foundation/DString.h"

struct DStringInspector {
    static int Refs(DString const &s) { return s.GetRefs(); }
    static int AllocLength(DString const &s) { return s.GetAllocLength(); }
    static void Release(DString &s) { s.Release(); }
    static void ReAlloc(DString &s, int n) { s.ReAlloc(n); }
    static void AllocCopy(DString &s, int n, char const *source) { s.AllocCopy(n, source); }
    static void ConcatSelf(DString &s, int n, char const *source) { s.ConcatSelf(n, source); }

    /// Drops the pointer without touching the block.
    static void Forget(DString &s) { s.chars = nullptr; }

    static void MakeNull(DString &s)
    {
        s.Release();
        Forget(s);
    }
};

inline DString nullString()
{
    DString s;
    DStringInspector::MakeNull(s);
    return s;
}

/// All `Len()` characters, NULs included.
inline std::string bytesOf(DString const &s)
{
    return s.c_str() ? std::string(s.c_str(), static_cast<std::size_t>(s.Len())) : std::string();
}

/// A string in a block of its own that holds these bytes, NULs included.
inline DString fromBytes(std::string const &bytes)
{
    DString s;
    std::memcpy(s.GetBuffer(static_cast<int>(bytes.size())), bytes.data(), bytes.size());
    return s;
}

/// True if both hold the very same characters.
inline bool shareBlock(DString const &a, DString const &b)
{
    return a.c_str() == b.c_str();
}

inline bool isEmptyConstant(DString const &s)
{
    return s.c_str() == DEmptyString;
}

/// An empty text in the smallest block, not the shared empty string.
inline bool isNewEmptyBlock(DString const &s)
{
    return s.c_str() && !isEmptyConstant(s) && s.Len() == 0 && s.c_str()[0] == '\0' &&
           DStringInspector::AllocLength(s) == 32;
}
