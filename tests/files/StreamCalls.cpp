/// `fread` and `fwrite` of this program: they tell StreamCalls, and do what the C library's do.
#include "support/StreamCalls.h"

#if defined __linux__

#include <cstdio>
#include <dlfcn.h>

extern "C" {

size_t fread(void *target, size_t size, size_t n, FILE *stream)
{
    static auto const original = reinterpret_cast<decltype(&fread)>(dlsym(RTLD_NEXT, "fread"));
    StreamCalls::Note(size * n);
    return original(target, size, n, stream);
}

size_t fwrite(void const *source, size_t size, size_t n, FILE *stream)
{
    static auto const original = reinterpret_cast<decltype(&fwrite)>(dlsym(RTLD_NEXT, "fwrite"));
    StreamCalls::Note(size * n);
    return original(source, size, n, stream);
}
}

#endif
