// Numbers as in the C locale, whatever the host has set, and printed as the other systems print them: exponents of two
// digits, correct rounding.

#include <algorithm>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "platform/Platform.h"

#if defined __MINGW32__
/// The functions of the system's runtime. The compiler brings others of the same names, which leave the reduction of
/// large angles to the processor: its pi has 66 bits.
extern "C" double (*__imp_sin)(double);
extern "C" double (*__imp_cos)(double);
#else
static double (*const __imp_sin)(double) = std::sin;
static double (*const __imp_cos)(double) = std::cos;
#endif

namespace Platform {

double Sin(double radians)
{
    return __imp_sin(radians);
}

double Cos(double radians)
{
    return __imp_cos(radians);
}

namespace {

/// The thread takes the C locale for the length of one call. That costs more than most calls, so it is done only where
/// it makes a difference.
class CLocale {
public:
    CLocale()
    {
        if (isPlain()) return;
        threadMode = _configthreadlocale(_ENABLE_PER_THREAD_LOCALE);
        before = std::setlocale(LC_ALL, nullptr);
        std::setlocale(LC_ALL, "C");
    }
    ~CLocale()
    {
        if (before.empty()) return;
        std::setlocale(LC_ALL, before.c_str());
        _configthreadlocale(threadMode);
    }
    CLocale(CLocale const &) = delete;
    CLocale &operator=(CLocale const &) = delete;

private:
    static bool isPlain()
    {
        char const *const name = std::setlocale(LC_ALL, nullptr);
        return name && name[0] == 'C' && name[1] == '\0';
    }

    int threadMode = 0;
    std::string before;
};

/// The compiler's routines lose the sign of what is no number when they print it, and read the digits in "nan(...)"
/// in their own way. The other systems keep the sign, and take the digits for an integer.
bool isNegativeNaN(double value)
{
    return std::isnan(value) && std::signbit(value);
}

/// How many characters a format prints in front of its conversion.
std::size_t lengthBeforeConversion(char const *format)
{
    std::size_t n = 0;
    for (; *format && (*format != '%' || format[1] == '%'); ++format, ++n)
        if (*format == '%') ++format;
    return n;
}

/// Printed as an infinity, which takes sign and width alike, and then renamed.
int printNegativeNaN(char *target, std::size_t size, char const *format)
{
    int const n = std::snprintf(target, size, format, -std::numeric_limits<double>::infinity());
    if (n < 0 || static_cast<std::size_t>(n) >= size) return n;
    char *const number = target + std::min(lengthBeforeConversion(format), static_cast<std::size_t>(n));
    if (char *const small = std::strstr(number, "inf")) std::memcpy(small, "nan", 3);
    else if (char *const capital = std::strstr(number, "INF")) std::memcpy(capital, "NAN", 3);
    return n;
}

/// What "nan" and "-nan(12)" stand for.
double readNaN(char const *text, char const *end, bool isNegative)
{
    std::uint64_t const plain = 0x7FF8000000000000, mantissa = 0x7FFFFFFFFFFFF;
    std::uint64_t bits = plain;
    if (char const *const open = std::find(text, end, '('); open != end) {
        char *stop = nullptr;
        std::uint64_t const digits = std::strtoull(open + 1, &stop, 0);
        if (*stop == ')') bits |= digits & mantissa;
    }
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return isNegative ? -value : value;
}

} // namespace

int PrintNumber(char *target, std::size_t size, char const *format, double value)
{
    CLocale const during;
    if (isNegativeNaN(value)) return printNegativeNaN(target, size, format);
    return std::snprintf(target, size, format, value);
}

double ParseNumber(char const *text, char const **end)
{
    CLocale const during;
    char *stop = nullptr;
    double value = text ? std::strtod(text, &stop) : 0;
    if (stop == text) value = 0; // "--7" would leave a sign behind
    if (std::isnan(value)) value = readNaN(text, stop, std::signbit(value));
    if (end) *end = stop;
    return value;
}

int ScanValue(std::FILE *file, char const *format, void *target)
{
    CLocale const during;
    return file && format ? std::fscanf(file, format, target) : EOF;
}

} // namespace Platform
