/// Modules: shared libraries with which a host extends itself, found by a path and a name. The handles of what was
/// loaded are kept and freed on request or when the library is unloaded. Failures are told to the user and the log.
#pragma once

#include "core/Log.h"
#include "foundation/DArray.h"
#include "foundation/DString.h"

/// Loads a module and gives the address of a symbol; null, with `ok` false, if there is no such module or symbol. `ok`
/// isn't touched on success. Without the bit of value 8 in `flags` the extension of the system's modules (".dll", on
/// Linux ".so") goes behind the name; the other bits mean nothing. Each call loads anew: a module counts as often as it
/// was asked. One that lacks the symbol stays loaded, and `UnloadModules` doesn't free it.
VODREL_API void *GetProc(DString const &path, DString const &module, char const *symbol, bool &ok, int flags);

/// Frees all modules, in the order of loading. The addresses from `GetProc` are invalid afterwards.
VODREL_API void UnloadModules();

/// Connects to a service module, named relative to the installation folder and without its extension: calls its entry
///
///     extern "C" bool SvInit(int arg, DNotify *notifier, DNotify *&result);
///
/// which takes the notifier of the host and may give one of its own. False if there is no such module or entry, or if
/// the entry answers false. `arg` is handed on as it is.
VODREL_API bool DLLConnect(DString const &module, int arg, DNotify *notifier, DNotify *&result);

/// The handles in the order of loading; freed at the end.
class ModuleHandles : public DArray<void *, 0> {
public:
    ~ModuleHandles() override;
};

extern ModuleHandles ModuleTable;
