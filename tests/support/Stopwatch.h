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

/// Seconds that work on a long text stays far below on any machine, unless its time grows with the square of the
/// length.
inline constexpr double farTooLong = 20;

template <typename Work>
double secondsOf(Work const &work)
{
    double const start = secondsSpent();
    work();
    return secondsSpent() - start;
}
