/// How much memory the test program takes at most.
#pragma once

#include <fstream>
#include <string>

/// The largest memory in use, in bytes, since the last call with `forget`; 0 where the host doesn't tell.
inline long long PeakMemory(bool forget)
{
    if (forget) std::ofstream("/proc/self/clear_refs") << "5";
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        long long kilobytes = 0;
        if (word == "VmHWM:" && status >> kilobytes) return kilobytes * 1024;
    }
    return 0;
}
