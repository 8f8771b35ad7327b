// Modules that are still loaded when the library is unloaded go with it. Nothing of the library is linked here;
// VODREL_MODULE_CLIENT is a library that uses it, VODREL_PLAIN_MODULE a module that tells when it is freed.

#include <cstdlib>
#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#if defined __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

#include "support/HostUserFolder.h"
#include "support/SharedLibrary.h"
#include "support/TempFolder.h"

namespace {

// In full, since the tests leave the folder in which the program began.
std::string const libraryFile = std::filesystem::absolute(VODREL_LIBRARY).string();
std::string const clientFile = std::filesystem::absolute(VODREL_MODULE_CLIENT).string();
std::filesystem::path const moduleFile = std::filesystem::absolute(VODREL_PLAIN_MODULE);

class UnloadModules : public testing::Test {
protected:
    UnloadModules() : user(folder.native("user"))
    {
        for (char const *name : {"A", "B"}) std::filesystem::copy_file(moduleFile, File(name));
        std::filesystem::current_path(folder.native());
        freed.clear();
        ignoreLeaks(true);
        client = SharedLibrary(clientFile);
    }
    ~UnloadModules() override { ignoreLeaks(false); }

    /// The file of a module, under the extension of the host's modules.
    std::string File(std::string const &module) const
    {
        return folder.native(module) + moduleFile.extension().string();
    }

    void *Find(std::string const &module, char const *symbol)
    {
        auto *const find = client.Get<void *(char const *, char const *, char const *)>("FindInModule");
        return find(folder.path().c_str(), module.c_str(), symbol);
    }

    /// Loads a module that then says its name when it is freed.
    void Load(std::string const &module)
    {
        void *const tell = Find(module, "TellWhenFreed");
        ASSERT_NE(nullptr, tell);
        reinterpret_cast<void (*)(void (*)(char const *), char const *)>(tell)([](char const *name) { freed += name; },
                                                                               module.c_str());
    }

    bool IsLoaded(std::string const &module) const { return SharedLibrary::IsLoaded(File(module)); }

    void UnloadLibrary()
    {
        EXPECT_TRUE(SharedLibrary::IsLoaded(libraryFile));
        EXPECT_TRUE(client.Close()) << SharedLibrary::Problem();
        EXPECT_FALSE(SharedLibrary::IsLoaded(libraryFile));
    }

    TempFolder const folder;
    HostUserFolder const user;
    SharedLibrary client;
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
    ASSERT_TRUE(client.IsThere()) << SharedLibrary::Problem();
    Load("B");
    Load("A");
    EXPECT_EQ(42, reinterpret_cast<int (*)()>(Find("A", "Answer"))()); // which counts once more
    EXPECT_TRUE(IsLoaded("A") && IsLoaded("B"));
    EXPECT_EQ("", freed);
    UnloadLibrary();
#if defined _WIN32 // where the loader lets go of all of them together, the last one first
    EXPECT_EQ("AB", freed);
#else
    EXPECT_EQ("BA", freed);
#endif
    EXPECT_FALSE(IsLoaded("A") || IsLoaded("B"));
}

TEST_F(UnloadModules, WhatWasFreedBeforeIsNotFreedAgain)
{
    ASSERT_TRUE(client.IsThere()) << SharedLibrary::Problem();
    Load("A");
    client.Get<void()>("FreeAll")();
    EXPECT_EQ("A", freed);
    Load("B");
    UnloadLibrary();
    EXPECT_EQ("AB", freed);
}

TEST_F(UnloadModules, AModuleWithoutTheSymbolOutlivesTheLibrary)
{
    ASSERT_TRUE(client.IsThere()) << SharedLibrary::Problem();
    EXPECT_EQ(nullptr, Find("A", "None"));
    UnloadLibrary();
    EXPECT_TRUE(IsLoaded("A"));
}

} // namespace
