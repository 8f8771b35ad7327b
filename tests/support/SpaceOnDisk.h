/// How much of a disk a file really takes, which for a file with holes is less than its size.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

#if !defined _WIN32
#include <sys/stat.h>
#endif

inline long long SpaceOnDisk(std::string const &native)
{
#if defined _WIN32
    std::error_code ignored;
    return static_cast<long long>(std::filesystem::file_size(native, ignored));
#else
    struct stat info = {};
    stat(native.c_str(), &info);
    return 512LL * info.st_blocks;
#endif
}
