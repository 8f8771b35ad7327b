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

/// Makes a folder whose name has less than 260 characters but more bytes, in UTF-8, and gives its name in `folder`;
/// empty where the system makes none.
inline std::string LongFolder(TempFolder const &folder)
{
    std::string outer, inner;
    for (int i = 0; i < 100; ++i) outer += "\xC3\xA9";
    for (int i = 0; i < 60; ++i) inner += "\xC3\xA9";
    std::string const both = outer + "\\" + inner;
    bool const made =
        Platform::MakeFolder(folder.path(outer).c_str()) && Platform::MakeFolder(folder.path(both).c_str());
    return made ? both : "";
}
