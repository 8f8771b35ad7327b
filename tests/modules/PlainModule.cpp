// A module without the entry of a service, and without a need of the library. It tells when it is freed.

#include <cstdio>

#if defined _WIN32
#define MODULE_ENTRY extern "C" __declspec(dllexport)
#else
#define MODULE_ENTRY extern "C" __attribute__((visibility("default")))
#endif

namespace {

/// Says the module's name to whoever asked for it, when the module goes.
struct Farewell {
    ~Farewell()
    {
        if (tell) tell(name);
    }
    void (*tell)(char const *name) = nullptr;
    char name[64] = "";
} farewell;

} // namespace

MODULE_ENTRY int Answer();
MODULE_ENTRY int Answer()
{
    return 42;
}

MODULE_ENTRY void TellWhenFreed(void (*tell)(char const *name), char const *name);
MODULE_ENTRY void TellWhenFreed(void (*tell)(char const *name), char const *name)
{
    farewell.tell = tell;
    std::snprintf(farewell.name, sizeof farewell.name, "%s", name);
}
