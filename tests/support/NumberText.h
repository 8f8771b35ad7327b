/// Numbers as text and back as in C, whatever locale the host has set: what the tests write and read themselves.
#pragma once

#include <locale>
#include <sstream>
#include <string>

/// With six decimals, as `std::to_string` would have it.
inline std::string FixedText(double value)
{
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text.precision(6);
    text << std::fixed << value;
    return text.str();
}

/// The number at the beginning of a text.
inline float FloatOf(std::string const &text)
{
    std::istringstream in(text);
    in.imbue(std::locale::classic());
    float value = 0;
    in >> value;
    return value;
}
