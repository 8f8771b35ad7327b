/// What the host itself knows of the network: the folders that it has mounted from other computers, and those that it
/// shares by Samba's user shares. Private to the Linux half of the platform layer.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Platform.h"

namespace Platform::Posix {

/// A network name and the native folder that it leads to.
struct NetworkRow {
    std::vector<std::string> name; ///< server, share, folders below it; none if the folder isn't on the network
    std::string folder;            ///< ends in a slash
    bool fromSettings = false;
};

/// The elements of a path, without the empty ones and `.`, between slashes or backslashes.
std::vector<std::string> SplitElements(std::string_view path);

/// A folder's name with one slash at its end.
std::string WithSlash(std::string folder);

/// All that is mounted, by a table in the form of /proc/self/mounts; nothing if there is no such file. Of rows for one
/// folder only the last is left, which covers the others.
std::vector<NetworkRow> ReadMounts(std::string const &table);

/// The shares that stand in a folder as text files of Samba, by name. False if the folder can't be read.
bool ReadUserShares(std::string const &folder, std::vector<Share> &shares);

} // namespace Platform::Posix
