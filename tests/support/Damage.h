/// What tests of damaged files change a byte to.
#pragma once

#include <algorithm>
#include <vector>

/// Each bit of the byte turned, its neighbours, and the ends and middles of the range of bytes; never the byte itself.
inline std::vector<char> DamagesOf(char byte)
{
    std::vector<char> damages = {'\x00', '\x01', '\x3F', '\x7F', '\x80', '\xBF', '\xFE', '\xFF'};
    for (int bit = 0; bit < 8; ++bit) damages.push_back(static_cast<char>(byte ^ static_cast<char>(1 << bit)));
    for (int step : {-1, 1}) damages.push_back(static_cast<char>(byte + step));
    std::sort(damages.begin(), damages.end());
    damages.erase(std::unique(damages.begin(), damages.end()), damages.end());
    damages.erase(std::remove(damages.begin(), damages.end(), byte), damages.end());
    return damages;
}
