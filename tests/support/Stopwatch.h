/// Seconds of the processor's time that a piece of work took, for tests that tell linear from quadratic. The
/// processor's, so that a busy machine doesn't count.
#pragma once

#include <ctime>

#if defined _WIN32
#include "platform/windows/WindowsServices.h"

/// There `std::clock` tells the time of day.
inline double secondsSpent()
{
    FILETIME ignored, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &ignored, &ignored, &kernel, &user);
    auto const seconds = [](FILETIME const &t) { return t.dwHighDateTime * 429.4967296 + t.dwLowDateTime * 1e-7; };
    return seconds(kernel) + seconds(user);
}
#else
inline double secondsSpent()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}
#endif

/// How much longer work may take that lets a text grow to a megabyte: there the heap moves a large block each time it
/// grows.
#if defined _WIN32
inline constexpr double growthFactor = 20;
#else
inline constexpr double growthFactor = 1;
#endif

template <typename Work>
double secondsOf(Work const &work)
{
    double const start = secondsSpent();
    work();
    return secondsSpent() - start;
}
