#include "core/Modules.h"

#include "core/StartUp.h"
#include "files/PathUtils.h"
#include "platform/Platform.h"

namespace {

int const nameIsWhole = 8;

char const *const serviceEntry = "SvInit";
using ServiceEntry = bool (*)(int arg, DNotify *notifier, DNotify *&result);

void report(DString const &text, DString const &forLog)
{
    Message(text);
    Log(forLog);
}

} // namespace

void *GetProc(DString const &path, DString const &module, char const *symbol, bool &ok, int flags)
{
    DString const name = (flags & nameIsWhole) ? module : module + Platform::ModuleExtension();
    DString const file = AppendPathElts(path, name);
    void *const handle = Platform::LoadModule(file.c_str());
    if (!handle) {
        ok = false;
        report("Could not load module: " + module, "Could not load module: " + file);
        return nullptr;
    }
    void *const address = Platform::ModuleSymbol(handle, symbol);
    if (!address) {
        ok = false;
        DString const text = DString("Could not load symbol: ") + symbol;
        report(text, text);
        return nullptr;
    }
    ModuleTable.Add(handle);
    return address;
}

void UnloadModules()
{
    ModuleHandles going; // a module that goes may end up here once more
    going.SwapData(ModuleTable);
}

ModuleHandles::~ModuleHandles()
{
    for (int i = 0; i < Count(); ++i) Platform::FreeModule((*this)[i]);
}

bool DLLConnect(DString const &module, int arg, DNotify *notifier, DNotify *&result)
{
    bool ok = true;
    DString folder;
    DString file;
    SplitPathElts(module, folder, file);
    void *const entry = GetProc(AppendPathElts(GetVodrelPath(), folder), file, serviceEntry, ok, 0);
    return ok && reinterpret_cast<ServiceEntry>(entry)(arg, notifier, result);
}
