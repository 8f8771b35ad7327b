/// Copying of one file that is given by its native name. Private to the Linux half of the platform layer.
#pragma once

#include <string>

namespace Platform::Posix {

/// Copies a regular file over `to`, which need not exist and stays whole until the copy is complete. False, and nothing
/// changed, if `to` is anything but a regular file, or the same file.
bool CopyNative(std::string const &from, std::string const &to);

} // namespace Platform::Posix
