#include "platform/Replacements.h"

#include <ctime>
#include <string>

#include "platform/Platform.h"

namespace Platform {

// ---- Faults --------------------------------------------------------------------------------------------------------

static bool (*faultHook)(char const *operation) = nullptr;

void SetFaultHook(bool (*allow)(char const *operation))
{
    faultHook = allow;
}

bool Allowed(char const *service)
{
    return !faultHook || faultHook(service);
}

// ---- Clock ---------------------------------------------------------------------------------------------------------

static Clock const *clockInPlace = nullptr;

void SetClock(Clock const *clock)
{
    clockInPlace = clock;
}

long long UnixTime()
{
    return clockInPlace && clockInPlace->unixTime ? clockInPlace->unixTime() : std::time(nullptr);
}

long long Counter()
{
    return clockInPlace && clockInPlace->counter ? clockInPlace->counter() : Host::Counter();
}

long long CounterFrequency()
{
    return clockInPlace && clockInPlace->counterFrequency ? clockInPlace->counterFrequency() : Host::CounterFrequency();
}

void SleepFor(int milliseconds)
{
    if (clockInPlace && clockInPlace->sleepFor) clockInPlace->sleepFor(milliseconds);
    else if (milliseconds > 0) Host::SleepFor(milliseconds);
}

// ---- The user's folder
// ------------------------------------------------------------------------------------------------

static char const *userFolderInPlace = nullptr;

void SetUserDataFolder(char const *folder)
{
    userFolderInPlace = folder;
}

std::string UserDataFolder()
{
    return userFolderInPlace ? userFolderInPlace : Host::UserDataFolder();
}

} // namespace Platform
