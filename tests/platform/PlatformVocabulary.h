/// The few words that the tests of the platform layer on Linux share.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "platform/Platform.h"
#include "support/TempFolder.h"

/// The names that a search finds, in its order; a folder's name ends in a slash.
inline std::vector<std::string> Found(std::string const &pattern, Platform::Detail detail = Platform::Detail::Names)
{
    std::vector<std::string> names;
    Platform::Search search(pattern.c_str(), detail);
    for (Platform::Entry entry; search.Next(entry);) names.push_back(entry.name + (entry.isFolder ? "/" : ""));
    return names;
}

using Names = std::vector<std::string>;

/// What a file holds that is opened through the platform layer, "(closed)" if it doesn't open.
inline std::string Opened(std::string const &path, char const *mode = "rb")
{
    std::FILE *const file = Platform::OpenFile(path.c_str(), mode);
    if (!file) return "(closed)";
    char text[100];
    std::size_t const n = std::fread(text, 1, sizeof text, file);
    Platform::CloseFile(file);
    return std::string(text, n);
}

/// Writes a file through the platform layer.
inline bool Written(std::string const &path, std::string const &bytes, char const *mode = "wb")
{
    std::FILE *const file = Platform::OpenFile(path.c_str(), mode);
    if (!file) return false;
    std::size_t const n = std::fwrite(bytes.data(), 1, bytes.size(), file);
    Platform::CloseFile(file);
    return n == bytes.size();
}

/// Waits until changes in a folder are old enough for its listing to be kept.
inline void Settle()
{
    usleep(150000);
}

inline std::string LinkTarget(std::string const &native)
{
    char text[4096];
    ssize_t const n = readlink(native.c_str(), text, sizeof text);
    return n < 0 ? "(no link)" : std::string(text, static_cast<std::size_t>(n));
}

inline bool Link(std::string const &target, std::string const &native)
{
    return symlink(target.c_str(), native.c_str()) == 0;
}

inline bool IsFolder(std::string const &native)
{
    struct stat info;
    return stat(native.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}
