#include "data/AxisTicks.h"

#include <cmath>

#include "foundation/Numbers.h"

float TickSize(float magnitude)
{
    int exponent = TruncateToInt(std::log10(static_cast<double>(magnitude)));
    if (magnitude < 1.0f && exponent > -2147483647) --exponent;
    float const power = std::pow(10.0f, static_cast<float>(exponent));
    int const leading = TruncateToInt(static_cast<double>(magnitude / power));
    if (leading < 0 || leading > 4) return power;
    return static_cast<float>(static_cast<double>(power) * (leading < 2 ? 0.2 : 0.5));
}
