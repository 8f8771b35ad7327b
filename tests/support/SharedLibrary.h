/// A shared library that a test loads by itself, by the services of the host, as a program that was never linked with
/// it does. What is in it isn't freed with the object: the test says when.
///
///     SharedLibrary library(path);
///     ASSERT_TRUE(library.IsThere()) << SharedLibrary::Problem();
///     auto *const answer = library.Get<int()>("Answer");
///     EXPECT_TRUE(library.Close());
///     EXPECT_FALSE(SharedLibrary::IsLoaded(path));
#pragma once

#include <string>

#include <gtest/gtest.h>

#if defined _WIN32
#include "platform/windows/WindowsServices.h"
#else
#include <dlfcn.h>
#endif

class SharedLibrary {
public:
    SharedLibrary() = default;
    explicit SharedLibrary(std::string const &file) : handle(open(file)) {}

    bool IsThere() const { return handle != nullptr; }

    /// Lets go of it; true if the host was content.
    bool Close()
    {
#if defined _WIN32
        return FreeLibrary(static_cast<HMODULE>(handle)) != 0;
#else
        return dlclose(handle) == 0;
#endif
    }

    /// One of its functions by its plain name.
    template <typename Function>
    Function *Get(char const *name) const
    {
        void *const symbol = find(name);
        EXPECT_NE(nullptr, symbol) << name;
        return reinterpret_cast<Function *>(symbol);
    }

    /// Whether the process holds the file, by whoever's doing.
    static bool IsLoaded(std::string const &file)
    {
#if defined _WIN32
        return GetModuleHandleA(backslashed(file).c_str()) != nullptr;
#else
        void *const loaded = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
        if (loaded) dlclose(loaded);
        return loaded != nullptr;
#endif
    }

    /// What the host had against the last of these.
    static std::string Problem()
    {
#if defined _WIN32
        return "error " + std::to_string(GetLastError());
#else
        char const *const text = dlerror();
        return text ? text : "";
#endif
    }

private:
#if defined _WIN32
    static std::string backslashed(std::string file)
    {
        for (char &c : file)
            if (c == '/') c = '\\';
        return file;
    }
    static void *open(std::string const &file)
    {
        return LoadLibraryA(backslashed(file).c_str());
    }
    void *find(char const *name) const
    {
        return reinterpret_cast<void *>(GetProcAddress(static_cast<HMODULE>(handle), name));
    }
#else
    static void *open(std::string const &file)
    {
        return dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
    }
    void *find(char const *name) const
    {
        return dlsym(handle, name);
    }
#endif

    void *handle = nullptr;
};
