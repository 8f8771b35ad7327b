/// How much of a disk a file really takes, which for a file with holes is less than its size.
#pragma once

#include <string>

#if defined _WIN32
#include <windows.h>
#else
#include <sys/stat.h>
#endif

inline long long SpaceOnDisk(std::string const &native)
{
#if defined _WIN32
    unsigned long high = 0;
    unsigned long const low = GetCompressedFileSizeA(native.c_str(), &high);
    return static_cast<long long>(static_cast<unsigned long long>(high) << 32 | low);
#else
    struct stat info = {};
    stat(native.c_str(), &info);
    return 512LL * info.st_blocks;
#endif
}
