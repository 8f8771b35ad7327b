// A library that uses VodrelCore and is itself loaded by a program which has neither. When the program lets go of it,
// all of VodrelCore goes too.

#include "core/Modules.h"

extern "C" VODREL_API void *FindInModule(char const *folder, char const *module, char const *symbol);
extern "C" VODREL_API void *FindInModule(char const *folder, char const *module, char const *symbol)
{
    bool ok = true;
    return GetProc(folder, module, symbol, ok, 0);
}

extern "C" VODREL_API void FreeAll();
extern "C" VODREL_API void FreeAll()
{
    UnloadModules();
}
