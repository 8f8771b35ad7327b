/// How much of a disk a file really takes, which for a file with holes is less than its size. On Windows there are no
/// holes but where a program asks for them, so that nothing can be told from it there.
#pragma once

#if !defined _WIN32

#include <string>
#include <sys/stat.h>

inline long long SpaceOnDisk(std::string const &native)
{
    struct stat info = {};
    stat(native.c_str(), &info);
    return 512LL * info.st_blocks;
}

#endif
