/// Seconds of the processor's time that a piece of work took, for tests that tell linear from quadratic. The
/// processor's, so that a busy machine doesn't count.
#pragma once

#include <ctime>

template <typename Work>
double secondsOf(Work const &work)
{
    std::clock_t const start = std::clock();
    work();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}
