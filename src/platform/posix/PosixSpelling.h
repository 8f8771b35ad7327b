/// How a name is spelled that was found as given: on a disk that itself ignores case, not always as it was given.
/// Private to the Linux half of the platform layer.
#pragma once

#include <string>
#include <sys/stat.h>

namespace Platform::Posix {

/// The native name of what was just found under `given`, in the spelling of the disk. `device` and `inode` are its own,
/// links not followed. On a disk that regards case this is `given`, and costs nothing, but for the first question
/// to the disk or, where a single folder may ignore case, to the folder.
std::string StoredName(std::string const &given, dev_t device, ino_t inode);

/// Whether all of a disk is known to ignore case, so that a name which isn't found there is in no folder of it in any
/// spelling. Asks nothing.
bool IsKnownToIgnoreCase(dev_t device);

/// To be called when a name goes, after which it may come back in another spelling.
void ForgetSpellings();

} // namespace Platform::Posix
