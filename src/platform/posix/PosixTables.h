/// Where drive letters and network names lead: what has been set, then the network folders that the host has
/// mounted, then the shares of this computer. Private to the Linux half of the platform layer.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/posix/PosixMounts.h"

namespace Platform::Posix {

/// The native folder that a drive letter stands for, ending in a slash; false if it stands for none.
bool DriveFolder(char letter, std::string &folder);

/// The network name that was given to a drive together with its folder; empty if there was none.
std::string DriveNetworkName(char letter);

/// The native folder, ending in a slash, of the row with the longest name that begins server, share and the elements
/// below them; `used` of these the name has taken up. False if no row has such a name.
bool NetworkFolder(std::string_view server, std::string_view share, std::vector<std::string> const &elements,
                   std::size_t &used, std::string &folder);

/// The local folder, as a path of the system, behind one of this computer's own shares; false if `server` is
/// another computer or shares nothing under this name.
bool OwnShareFolder(std::string_view server, std::string_view share, std::string &path);

/// The network names that have been set, and the mounted folders, those of other kinds among them.
std::vector<NetworkRow> const &GivenNetworkRows();
std::vector<NetworkRow> const &MountedRows();

} // namespace Platform::Posix
