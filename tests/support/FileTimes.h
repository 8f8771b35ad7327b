/// Sets the last-write time of a file or folder, a millisecond behind a second counted from 1970.
#pragma once

#include <string>

#if defined _WIN32

#include "platform/windows/WindowsServices.h"
#include <stdexcept>

/// The library of the language doesn't do that for folders here.
inline void SetModified(std::string const &native, long long date)
{
    HANDLE const file = CreateFileA(native.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    auto const count = static_cast<unsigned long long>((date + 11644473600) * 10000000 + 10000);
    FILETIME const time = {static_cast<unsigned long>(count), static_cast<unsigned long>(count >> 32)};
    bool const done = file != INVALID_HANDLE_VALUE && SetFileTime(file, nullptr, nullptr, &time);
    CloseHandle(file);
    if (!done) throw std::runtime_error("can't set the time of " + native);
}

#else

#include <chrono>
#include <filesystem>

/// The clock of the file system may count from another day, so its present is moved by the distance in time.
inline void SetModified(std::string const &native, long long date)
{
    using namespace std::chrono;
    using file_clock = std::filesystem::file_time_type::clock;
    auto const now = system_clock::now().time_since_epoch();
    auto const there = file_clock::now() + (seconds(date) - duration_cast<file_clock::duration>(now));
    std::filesystem::last_write_time(native, there + milliseconds(1));
}

#endif
