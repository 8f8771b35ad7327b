// Numbers as in the C locale, whatever the host has set: the thread takes that locale for the length of one call.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <locale.h>

#include "platform/Platform.h"

namespace Platform {

namespace {

class CLocale {
public:
    CLocale() : own(newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr))), before(uselocale(own)) {}
    ~CLocale()
    {
        uselocale(before);
        if (own) freelocale(own);
    }
    CLocale(CLocale const &) = delete;
    CLocale &operator=(CLocale const &) = delete;

private:
    locale_t const own;
    locale_t const before;
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

double Sin(double radians)
{
    return std::sin(radians);
}

double Cos(double radians)
{
    return std::cos(radians);
}

} // namespace Platform
