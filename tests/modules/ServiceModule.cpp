// A service module: takes the notifier of the host, and gives one of its own that repeats to the host what it hears. It
// refuses to serve if the host's argument is 0.

#include <cstdio>

#include "core/Log.h"

#if defined _WIN32
#define MODULE_ENTRY extern "C" __declspec(dllexport)
#else
#define MODULE_ENTRY extern "C" __attribute__((visibility("default")))
#endif

namespace {

class Service : public DNotify {
public:
    void Notify(int code, int arg, DString const &text) override
    {
        if (host) host->Notify(code + 1000, arg + 1, "the service heard " + text);
    }
    bool Poll() override { return true; }

    DNotify *host = nullptr;
} service;

} // namespace

MODULE_ENTRY bool SvInit(int arg, DNotify *notifier, DNotify *&result);
MODULE_ENTRY bool SvInit(int arg, DNotify *notifier, DNotify *&result)
{
    if (notifier) notifier->Notify(5, arg, arg == 0 ? "refused" : "connected");
    if (arg == 0) return false;
    service.host = notifier;
    result = &service;
    return true;
}
