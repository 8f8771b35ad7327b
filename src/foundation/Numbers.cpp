#include "foundation/Numbers.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "platform/Platform.h"

namespace {

bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// The digits of a number, with what may stand in front of them.
struct Decimal {
    bool negative = false;
    unsigned long long magnitude = 0; // stays at some value above 32 bits once it is there
    char const *end = nullptr;        // null if there are no digits
};

Decimal scanDecimal(char const *text)
{
    Decimal result;
    while (isSpace(*text)) ++text;
    if (*text == '-' || *text == '+') result.negative = *text++ == '-';
    if (!isDigit(*text)) return result;
    for (; isDigit(*text); ++text) {
        if (result.magnitude <= UINT_MAX) result.magnitude = result.magnitude * 10 + static_cast<unsigned>(*text - '0');
    }
    result.end = text;
    return result;
}

/// One conversion of a print or scan format.
struct Conversion {
    bool valid = true;
    bool suppress = false; // "%*d" of a scan format
    char length = '\0';    // '\0', 'h' (also "hh"), 'l', or '?' for any other
    char type = '\0';
    char const *end = nullptr;
};

/// No value of interest has more digits than this in its width or precision, and the printing routine
/// would fill memory for one that has.
int const maxFormatDigits = 4;

bool skipDigits(char const *&p)
{
    while (*p == '0') ++p;
    char const *const begin = p;
    while (isDigit(*p)) ++p;
    return p - begin <= maxFormatDigits;
}

void readLength(char const *&p, Conversion &result)
{
    if (*p == 'h') {
        result.length = 'h';
        p += p[1] == 'h' ? 2 : 1;
    } else if (*p == 'l') {
        result.length = p[1] == 'l' ? '?' : 'l';
        p += p[1] == 'l' ? 2 : 1;
    } else if (*p && std::strchr("LjztqI", *p)) {
        result.length = '?';
        ++p;
    }
}

/// Reads flags, width, precision, length and type behind a '%'.
Conversion readPrintConversion(char const *p)
{
    Conversion result;
    while (*p && std::strchr("-+ #0", *p)) ++p;
    result.valid = skipDigits(p);
    if (*p == '.') {
        ++p;
        if (!skipDigits(p)) result.valid = false;
    }
    readLength(p, result);
    result.type = *p;
    result.end = *p ? p + 1 : p;
    return result;
}

bool takes(Conversion const &conversion, FormatValue value)
{
    char const *const types = value == FormatValue::Integer ? "diouxXc" : "eEfFgGaA";
    char const length = value == FormatValue::Integer ? 'h' : 'l';
    if (conversion.length != '\0' && conversion.length != length) return false;
    if (conversion.type == 'c' && conversion.length != '\0') return false;
    return conversion.valid && conversion.type && std::strchr(types, conversion.type);
}

/// Reads what may stand behind a '%' of a scan format; a set "[...]" is skipped to its end.
Conversion readScanConversion(char const *p)
{
    Conversion result;
    if (*p == '*') {
        result.suppress = true;
        ++p;
    }
    while (isDigit(*p)) ++p;
    while (*p && std::strchr("hlLjztq", *p)) ++p;
    result.type = *p;
    result.valid = *p && std::strchr("diouxXaAeEfFgGcsSCpn[", *p);
    if (*p == '[') {
        ++p;
        if (*p == '^') ++p;
        if (*p == ']') ++p;
        while (*p && *p != ']') ++p;
        if (!*p) result.valid = false;
    }
    result.end = *p ? p + 1 : p;
    return result;
}

/// Copies what was printed into `local` to `target` if it fits.
int deliver(char *target, int limit, char const *local, int length)
{
    if (length < 0 || length > limit) return -1;
    std::memcpy(target, local, static_cast<std::size_t>(length));
    return length;
}

/// Larger than any limit that is in use, with room for the terminator that the routine writes.
int const printRoom = 64;

template <typename Value>
int printInteger(char *target, int limit, char const *format, Value value)
{
    if (!IsPrintFormat(format, FormatValue::Integer)) return -1;
    char local[printRoom];
    return deliver(target, limit, local, std::snprintf(local, sizeof local, format, value));
}

} // namespace

bool IsVF(float value)
{
    return IsUsable(value);
}

int FloorToInt(double value)
{
    return TruncateToInt(std::floor(value));
}

char const *ParseInt(char const *text, int &value)
{
    Decimal const number = scanDecimal(text);
    if (!number.end) {
        value = 0;
        return text;
    }
    unsigned long long const limit = number.negative ? 1ULL + INT_MAX : 0ULL + INT_MAX;
    auto const magnitude = static_cast<long long>(number.magnitude > limit ? limit : number.magnitude);
    value = static_cast<int>(number.negative ? -magnitude : magnitude);
    return number.end;
}

char const *ParseUint(char const *text, unsigned int &value)
{
    Decimal const number = scanDecimal(text);
    if (!number.end) {
        value = 0;
        return text;
    }
    auto const magnitude = static_cast<unsigned int>(number.magnitude);
    value = number.magnitude > UINT_MAX ? UINT_MAX : number.negative ? 0u - magnitude : magnitude;
    return number.end;
}

bool IsPrintFormat(char const *format, FormatValue value)
{
    if (!format) return false;
    int conversions = 0;
    for (char const *p = format; *p;) {
        if (*p++ != '%') continue;
        if (*p == '%') {
            ++p;
            continue;
        }
        Conversion const conversion = readPrintConversion(p);
        if (!takes(conversion, value) || ++conversions > 1) return false;
        p = conversion.end;
    }
    return conversions == 1;
}

bool IsScanFormat(char const *format)
{
    if (!format) return false;
    int stores = 0;
    for (char const *p = format; *p;) {
        if (*p++ != '%') continue;
        if (*p == '%') {
            ++p;
            continue;
        }
        Conversion const conversion = readScanConversion(p);
        if (!conversion.valid) return false;
        if (!conversion.suppress) ++stores;
        p = conversion.end;
    }
    return stores <= 1;
}

int PrintBounded(char *target, int limit, char const *format, int value)
{
    return printInteger(target, limit, format, value);
}

int PrintBounded(char *target, int limit, char const *format, unsigned int value)
{
    return printInteger(target, limit, format, value);
}

int PrintBounded(char *target, int limit, char const *format, double value)
{
    if (!IsPrintFormat(format, FormatValue::Floating)) return -1;
    char local[printRoom];
    return deliver(target, limit, local, Platform::PrintNumber(local, sizeof local, format, value));
}
