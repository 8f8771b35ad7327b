/// The pieces of which binary files are written out by hand: numbers of four bytes, low byte first, and texts with
/// their length in four bytes in front.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

inline std::string LongBytes(std::uint32_t value)
{
    std::string bytes;
    for (unsigned shift = 0; shift < 32; shift += 8) bytes += static_cast<char>(value >> shift & 0xFF);
    return bytes;
}

inline std::string IntBytes(int value)
{
    return LongBytes(static_cast<std::uint32_t>(value));
}

inline std::string FloatBytes(float value)
{
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return LongBytes(bits);
}

inline std::string FloatsBytes(std::vector<float> const &values)
{
    std::string bytes;
    for (float value : values) bytes += FloatBytes(value);
    return bytes;
}

/// With its length in four bytes in front.
inline std::string TextBytes(std::string const &text)
{
    return LongBytes(static_cast<std::uint32_t>(text.size())) + text;
}

/// The floats of a block, as bytes.
inline std::string BytesOf(float const *values, int n)
{
    return FloatsBytes(n < 1 ? std::vector<float>() : std::vector<float>(values, values + n));
}
