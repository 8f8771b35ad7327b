/// Bytes written out by hand: a row of hexadecimal pairs, with blanks wherever they help the reader.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

inline std::string FromHex(std::string const &text)
{
    auto const digit = [](char c) { return static_cast<unsigned>(c <= '9' ? c - '0' : c - 'A' + 10); };
    std::string bytes;
    for (std::size_t i = 0; i + 1 < text.size();) {
        if (text[i] == ' ') {
            i++;
            continue;
        }
        bytes += static_cast<char>(digit(text[i]) << 4 | digit(text[i + 1]));
        i += 2;
    }
    return bytes;
}

/// A text with its length in two bytes in front.
inline std::string WithLength(std::string const &text)
{
    return std::string(1, static_cast<char>(text.size() & 0xFF)) + static_cast<char>(text.size() >> 8) + text;
}

inline std::uint32_t BitsOf(float value)
{
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

inline float FromBits(std::uint32_t bits)
{
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}
