// Modules that are still loaded when the library is unloaded go with it. Nothing of the library is linked here;
// VODREL_MODULE_CLIENT is a library that uses it, VODREL_PLAIN_MODULE a module that tells when it is freed.

#include <dlfcn.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#if defined __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

#include "support/TempFolder.h"

namespace {

class UnloadModules : public testing::Test {
protected:
    UnloadModules()
    {
        setenv("XDG_DATA_HOME", folder.native("user").c_str(), 1);
        for (char const *name : {"A.so", "B.so"}) std::filesystem::copy_file(VODREL_PLAIN_MODULE, folder.native(name));
        std::filesystem::current_path(folder.native());
        freed.clear();
        ignoreLeaks(true);
        client = dlopen(VODREL_MODULE_CLIENT, RTLD_NOW | RTLD_LOCAL);
    }
    ~UnloadModules() override { ignoreLeaks(false); }

    template <typename Function>
    Function *Get(char const *name)
    {
        void *const symbol = dlsym(client, name);
        EXPECT_NE(nullptr, symbol) << name;
        return reinterpret_cast<Function *>(symbol);
    }

    void *Find(std::string const &module, char const *symbol)
    {
        return Get<void *(char const *, char const *, char const *)>("FindInModule")(folder.path().c_str(),
                                                                                     module.c_str(), symbol);
    }

    /// Loads a module that then says its name when it is freed.
    void Load(std::string const &module)
    {
        void *const tell = Find(module, "TellWhenFreed");
        ASSERT_NE(nullptr, tell);
        reinterpret_cast<void (*)(void (*)(char const *), char const *)>(tell)([](char const *name) { freed += name; },
                                                                               module.c_str());
    }

    bool IsLoaded(std::string const &file) const
    {
        void *const loaded = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
        if (loaded) dlclose(loaded);
        return loaded != nullptr;
    }

    void UnloadLibrary()
    {
        EXPECT_TRUE(IsLoaded(VODREL_LIBRARY));
        EXPECT_EQ(0, dlclose(client)) << dlerror();
        EXPECT_FALSE(IsLoaded(VODREL_LIBRARY));
    }

    TempFolder const folder;
    void *client = nullptr;
    static inline std::string freed; ///< the names of the modules that were freed

private:
    /// Short blocks of strings are kept for the next string, so that unloading leaves some behind by design.
    static void ignoreLeaks([[maybe_unused]] bool ignore)
    {
#if defined __SANITIZE_ADDRESS__
        if (ignore) __lsan_disable();
        else __lsan_enable();
#endif
    }
};

TEST_F(UnloadModules, TheLibraryFreesWhatItStillHolds)
{
    ASSERT_NE(nullptr, client) << dlerror();
    Load("B");
    Load("A");
    EXPECT_EQ(42, reinterpret_cast<int (*)()>(Find("A", "Answer"))()); // which counts once more
    EXPECT_TRUE(IsLoaded(folder.native("A.so")) && IsLoaded(folder.native("B.so")));
    EXPECT_EQ("", freed);
    UnloadLibrary();
    EXPECT_EQ("BA", freed);
    EXPECT_FALSE(IsLoaded(folder.native("A.so")) || IsLoaded(folder.native("B.so")));
}

TEST_F(UnloadModules, WhatWasFreedBeforeIsNotFreedAgain)
{
    ASSERT_NE(nullptr, client) << dlerror();
    Load("A");
    Get<void()>("FreeAll")();
    EXPECT_EQ("A", freed);
    Load("B");
    UnloadLibrary();
    EXPECT_EQ("AB", freed);
}

TEST_F(UnloadModules, AModuleWithoutTheSymbolOutlivesTheLibrary)
{
    ASSERT_NE(nullptr, client) << dlerror();
    EXPECT_EQ(nullptr, Find("A", "None"));
    UnloadLibrary();
    EXPECT_TRUE(IsLoaded(folder.native("A.so")));
}

} // namespace
