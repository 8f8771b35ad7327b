/// Services that a test has put something of its own in the place of. Private to the platform layer.
#pragma once

#include <string>

namespace Platform {

/// The question that every operation on the disk asks first: false if a test wants this service to fail.
bool Allowed(char const *service);

/// What each system answers where nothing has been put in its place.
namespace Host {

long long Counter();
long long CounterFrequency();
void SleepFor(int milliseconds); ///< above 0
std::string UserDataFolder();

} // namespace Host

} // namespace Platform
