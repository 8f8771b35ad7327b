/// Numbers: the constants of the system, the test for a usable value, and text <-> number
/// in the C locale, whatever the host has set with `setlocale`. The first block is exported;
/// the second serves the library itself.
#pragma once

#include "foundation/Export.h"

/// 3.3e38 (bits 0x7F7843B0). Its negative marks a bad sample and the failure of a numeric query.
extern VODREL_API float const DFMax;

/// Single-precision pi (bits 0x40490FDB).
extern VODREL_API float const pi;

/// True for a usable value: above -9.9e34, below 9.9e34 and not a NaN.
VODREL_API bool IsVF(float value);

/// `IsVF` for the loops over samples, where a call per sample would cost more than the test.
inline bool IsUsable(float value)
{
    double const wide = value;
    return wide > -9.9e34 && wide < 9.9e34;
}

/// Truncates toward zero. What doesn't fit, and a NaN, gives the most negative `int`, as the usual
/// processors do, so that no input is undefined.
inline int TruncateToInt(double value)
{
    if (value > -2147483649.0 && value < 2147483648.0) return static_cast<int>(value);
    return -2147483647 - 1;
}

/// Rounds down, with the same result for what doesn't fit.
int FloorToInt(double value);

/// Reads a decimal integer as a 32-bit `strtol` does: leading white space, a sign, digits; a value
/// that doesn't fit is clamped. Gives the end of what was consumed, `text` itself for nothing.
char const *ParseInt(char const *text, int &value);

/// The same as a 32-bit `strtoul`: a minus sign negates modulo 2^32, overflow gives the largest value.
char const *ParseUint(char const *text, unsigned int &value);

/// What kind of value a print format is asked to take.
enum class FormatValue { Integer, Floating };

/// True if `format` is literal text, `%%` and exactly one conversion that takes such a value.
/// A format from outside reaches the printing routine only after this test.
bool IsPrintFormat(char const *format, FormatValue value);

/// True if `format` is a scan format with at most one conversion that stores a value.
bool IsScanFormat(char const *format);

/// Prints into at most `limit` bytes, without a terminator. Gives the number of bytes written, or -1
/// when the text doesn't fit or the format doesn't take the value.
int PrintBounded(char *target, int limit, char const *format, int value);
int PrintBounded(char *target, int limit, char const *format, unsigned int value);
int PrintBounded(char *target, int limit, char const *format, double value);
