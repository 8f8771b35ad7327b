// Numbers as in the C locale, whatever the host has set, and printed as the other systems print them: exponents of two
// digits, correct rounding.

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/Platform.h"

#if defined __MINGW32__
/// The functions of the system's runtime. The compiler brings others of the same names, which leave the reduction of
/// large angles to the processor: its pi has 66 bits.
extern "C" double (*__imp_sin)(double);
extern "C" double (*__imp_cos)(double);
#else
#include <cmath>
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

} // namespace

int PrintNumber(char *target, std::size_t size, char const *format, double value)
{
    CLocale const during;
    return std::snprintf(target, size, format, value);
}

double ParseNumber(char const *text, char const **end)
{
    CLocale const during;
    char *stop = nullptr;
    double const value = text ? std::strtod(text, &stop) : 0;
    if (end) *end = stop;
    return value;
}

int ScanValue(std::FILE *file, char const *format, void *target)
{
    CLocale const during;
    return file && format ? std::fscanf(file, format, target) : EOF;
}

} // namespace Platform
