/// Where drive letters and network names lead. Private to the Linux half of the platform layer.
#pragma once

#include <string>
#include <string_view>

namespace Platform::Posix {

/// The native folder that a drive letter stands for, ending in a slash; false if it stands for none.
bool DriveFolder(char letter, std::string &folder);

/// The native folder that a network name stands for, ending in a slash; false if the table doesn't have it.
bool NetworkFolder(std::string_view server, std::string_view share, std::string &folder);

/// The local folder, as a path of the system, behind one of this computer's own shares; false if `server` is
/// another computer or shares nothing under this name.
bool OwnShareFolder(std::string_view server, std::string_view share, std::string &path);

} // namespace Platform::Posix
