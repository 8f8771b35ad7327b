/// Paths of the system are Windows's own. What is asked here is only which of them name a file, a folder or a pattern.
/// Private to the Windows half of the platform layer.
#pragma once

#include <string>
#include <vector>

#include "platform/windows/WindowsServices.h"

namespace Platform::Windows {

/// A path cut in front of its last element.
struct CutPath {
    std::string folder; ///< with the backslash, slash or colon behind it, empty for the current directory
    std::string name;
};

/// False for a path that doesn't end in a name: an empty one, a bare drive or share, "." and "..", a backslash at the
/// end; or with a wildcard in front of its last element.
bool CutPattern(char const *path, CutPath &cut);

/// The same for a path without any wildcard.
bool IsFileName(char const *path);

/// Names for the shell's operations, each ended by a NUL and all by another, with backslashes throughout.
class NameList {
public:
    void Add(std::string const &name);
    bool IsEmpty() const { return text.empty(); }
    char const *Text() const { return text.c_str(); }

private:
    std::string text;
};

/// The text of a service that takes room and a buffer, and answers with its length, or with the room that it needs. A
/// name of less than MAX_PATH characters may take more bytes in a code page such as UTF-8. Empty if it fails.
template <class Service>
std::string AnswerOf(Service service)
{
    std::vector<char> text(MAX_PATH);
    unsigned long length = service(static_cast<unsigned long>(text.size()), text.data());
    if (length >= text.size()) {
        text.resize(length + 1);
        length = service(static_cast<unsigned long>(text.size()), text.data());
    }
    return length < text.size() ? std::string(text.data(), length) : std::string();
}

/// With drive or share in front and nothing relative in it; empty for a path that has no such name.
std::string FullName(char const *path);

/// All that matches a path, filtered and sorted. `hadWildcards` tells whether it was a pattern, `isComplete` whether
/// the folder was read to its end.
struct Matches {
    std::string folder;
    std::vector<WIN32_FIND_DATAA> found;
    bool hadWildcards = false;
    bool isComplete = true;
};
bool FindMatches(char const *pattern, Matches &matches);

inline bool IsFolder(unsigned long attributes)
{
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// Whether both names are there and are one file, on whatever way.
bool IsSame(char const *a, char const *b);

} // namespace Platform::Windows
