#include <string>

#include "platform/Platform.h"
#include "platform/windows/WindowsPaths.h"
#include "platform/windows/WindowsServices.h"

namespace Platform {

namespace {

/// A module that lacks another one is a failure like any other, not something to ask about in a window.
class NoQuestions {
public:
    NoQuestions() { SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &before); }
    ~NoQuestions() { SetThreadErrorMode(before, nullptr); }
    NoQuestions(NoQuestions const &) = delete;
    NoQuestions &operator=(NoQuestions const &) = delete;

private:
    unsigned long before = 0;
};

} // namespace

char const *ModuleExtension()
{
    return ".dll";
}

/// By full name: a bare one would be sought among the libraries of the system. A name without any dot would get ".dll",
/// unless it ends in one.
void *LoadModule(char const *path)
{
    NoQuestions const during;
    std::string const name = Windows::IsFileName(path) ? Windows::FullName(path) : std::string();
    if (name.empty()) return nullptr;
    bool const hasDot = name.find('.', name.find_last_of('\\') + 1) != std::string::npos;
    return LoadLibraryA((hasDot ? name : name + '.').c_str());
}

void *ModuleSymbol(void *module, char const *name)
{
    if (!module || !name) return nullptr;
    return reinterpret_cast<void *>(GetProcAddress(static_cast<HMODULE>(module), name));
}

void FreeModule(void *module)
{
    if (module) FreeLibrary(static_cast<HMODULE>(module));
}

} // namespace Platform
