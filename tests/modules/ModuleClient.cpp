// A library that uses VodrelCore and is itself loaded by a program which has neither. When the program lets go of it,
// all of VodrelCore goes too.

#include "core/Modules.h"

#if defined _WIN32
#define MODULE_ENTRY extern "C" __declspec(dllexport)
#else
#define MODULE_ENTRY extern "C" __attribute__((visibility("default")))
#endif

MODULE_ENTRY void *FindInModule(char const *folder, char const *module, char const *symbol);
MODULE_ENTRY void *FindInModule(char const *folder, char const *module, char const *symbol)
{
    bool ok = true;
    return GetProc(folder, module, symbol, ok, 0);
}

MODULE_ENTRY void FreeAll();
MODULE_ENTRY void FreeAll()
{
    UnloadModules();
}
