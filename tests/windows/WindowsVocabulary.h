/// The few words that the tests of the platform layer on Windows share.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "support/TempFolder.h"

using Names = std::vector<std::string>;

/// The names that a search finds, in its order; a folder's name ends in a slash.
inline Names Found(std::string const &pattern)
{
    Names names;
    Platform::Search search(pattern.c_str(), Platform::Detail::Full);
    for (Platform::Entry entry; search.Next(entry);) names.push_back(entry.name + (entry.isFolder ? "/" : ""));
    return names;
}

/// Whether a path opens as a file.
inline bool Opens(std::string const &path, char const *mode = "rb")
{
    std::FILE *const file = Platform::OpenFile(path.c_str(), mode);
    Platform::CloseFile(file);
    return file != nullptr;
}
