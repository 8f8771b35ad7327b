/// The question that every operation on the disk asks first. Private to the Linux half of the platform layer.
#pragma once

namespace Platform::Posix {

/// False if a test wants this service to fail.
bool Allowed(char const *service);

} // namespace Platform::Posix
