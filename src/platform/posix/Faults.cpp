#include "platform/posix/Faults.h"

#include "platform/Platform.h"

static bool (*hook)(char const *operation) = nullptr;

void Platform::SetFaultHook(bool (*allow)(char const *operation))
{
    hook = allow;
}

bool Platform::Posix::Allowed(char const *service)
{
    return !hook || hook(service);
}
