#include <dlfcn.h>
#include <sys/stat.h>

#include "platform/Platform.h"
#include "platform/posix/PosixPaths.h"

namespace Platform {

char const *ModuleExtension()
{
    return ".so";
}

void *LoadModule(char const *path)
{
    Posix::PathName name;
    Posix::FoundName found;
    if (!Posix::ParseFileName(path, name) || !Posix::FindExisting(path, found) || !S_ISREG(found.info.st_mode))
        return nullptr;
    // A bare name would be sought among the host's libraries.
    bool const isBare = found.native.find('/') == std::string::npos;
    return dlopen((isBare ? "./" + found.native : found.native).c_str(), RTLD_NOW | RTLD_LOCAL);
}

void *ModuleSymbol(void *module, char const *name)
{
    return module && name ? dlsym(module, name) : nullptr;
}

void FreeModule(void *module)
{
    if (module) dlclose(module);
}

} // namespace Platform
