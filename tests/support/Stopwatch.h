/// Seconds that a piece of work took, for tests that tell linear from quadratic.
#pragma once

#include <chrono>

template <typename Work>
double secondsOf(Work const &work)
{
    auto const start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}
