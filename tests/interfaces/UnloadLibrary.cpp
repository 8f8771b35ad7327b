// Loads the shared library, uses it and unloads it again a hundred times in one process. A client does so when it lives
// in a module of another program. Nothing of the library is linked here; VODREL_LIBRARY is its path.

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

#if defined __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>

// Not every compiler comes with the header that declares it.
extern "C" int __sanitizer_install_malloc_and_free_hooks(void (*taken)(void const volatile *, std::size_t),
                                                         void (*freed)(void const volatile *));
#endif

#include "support/HostUserFolder.h"
#include "support/HostVariable.h"
#include "support/SharedLibrary.h"
#include "support/TempFolder.h"

// Short blocks of strings are kept for the next string and never go back to the heap, so that each unloading leaves
// those behind. Everything else that is lost is a leak.
extern "C" char const *__lsan_default_suppressions();
extern "C" char const *__lsan_default_suppressions()
{
    return "leak:DString::AllocBuffer\n";
}

namespace {

class UnloadLibrary : public testing::Test {
protected:
    /// The experiment's settings aren't empty, since an empty file is tried again for half a second.
    UnloadLibrary() : user(folder.native("user")), zone("TZ", "UTC0")
    {
        folder.Write("X/E/E.ini", "[General]\r\nDescription=x\r\n");
    }

    void Load()
    {
        ignoreLeaks(true);
        library = SharedLibrary(VODREL_LIBRARY);
    }
    void Unload()
    {
        EXPECT_TRUE(library.Close()) << SharedLibrary::Problem();
        ignoreLeaks(false);
    }
    static bool IsLoaded() { return SharedLibrary::IsLoaded(VODREL_LIBRARY); }

    /// Starts the library, takes a shot and stores and reads a waveform.
    void Use();

    TempFolder const folder;
    HostUserFolder const user;
    HostVariable const zone; ///< which the C library then needn't look up, and keep, each time
    SharedLibrary library;

private:
    /// The blocks that unloading leaves behind by design can't be told apart by name any more once the library is
    /// gone, so that the search for leaks leaves out what is taken meanwhile. A test of its own looks at that.
    static void ignoreLeaks([[maybe_unused]] bool ignore)
    {
#if defined __SANITIZE_ADDRESS__
        if (ignore) __lsan_disable();
        else __lsan_enable();
#endif
    }
};

using Name = void(char const *);
using Shot = int(char const *);
using Store = void(char const *, char const *);
using Set = void(char const *, int, float, float, float const *);
using Read = void(char const *, int, float, float, float *);

void UnloadLibrary::Use()
{
    float const samples[] = {1, 2, -0.5f};
    float values[] = {9, 9, 9};
    library.Get<Name>("InitializeVodrelC")((folder.native("vodrel") + "$L").c_str());
    library.Get<Name>("SetExperimentC")(folder.native("X/E").c_str());
    EXPECT_EQ(1, library.Get<Shot>("CreateShotC")("*A1"));
    library.Get<Store>("SetStringDataC")("Run", "a text that is longer than a short block");
    library.Get<Set>("SetWaveformC")("W", 3, 0, 1, samples);
    library.Get<Read>("GetWaveformC")("W", 3, 0, 1, values);
    EXPECT_EQ(-0.5f, values[2]);
}

TEST_F(UnloadLibrary, ALibraryThatWasOnlyLoadedIsReallyUnloaded)
{
    for (int i = 0; i < 100; i++) {
        Load();
        ASSERT_TRUE(library.IsThere()) << SharedLibrary::Problem();
        EXPECT_TRUE(IsLoaded());
        Unload();
        ASSERT_FALSE(IsLoaded()) << i;
    }
}

TEST_F(UnloadLibrary, ALibraryInUseIsReallyUnloadedAHundredTimes)
{
    for (int i = 0; i < 100; i++) {
        Load();
        ASSERT_TRUE(library.IsThere()) << SharedLibrary::Problem();
        Use();
        Unload();
        ASSERT_FALSE(IsLoaded()) << i;
    }
}

TEST_F(UnloadLibrary, EachLoadBeginsAfresh)
{
    for (int i = 0; i < 3; i++) {
        Load();
        ASSERT_TRUE(library.IsThere()) << SharedLibrary::Problem();
        library.Get<Name>("SetExperimentC")(folder.native("Y/E").c_str());
        EXPECT_FALSE(folder.Has("Y"));
        Use();
        Unload();
        ASSERT_FALSE(IsLoaded());
    }
}

#if defined __SANITIZE_ADDRESS__

/// The blocks of the heap that were taken since `Begin` and not given back. It takes no memory itself, since it hears
/// of every block.
struct Blocks {
    static void Begin()
    {
        count = 0;
        counting = true;
    }
    static void End() { counting = false; }

    /// How many there are that aren't of this size.
    static int OtherThan(std::size_t size)
    {
        int others = 0;
        for (int i = 0; i < count; i++) others += sizes[i] != size;
        return others;
    }

    static void Taken(void const volatile *block, std::size_t size)
    {
        if (!counting || count == most) return;
        blocks[count] = block;
        sizes[count++] = size;
    }
    static void Freed(void const volatile *block)
    {
        for (int i = counting ? count - 1 : -1; i >= 0; i--) {
            if (blocks[i] != block) continue;
            blocks[i] = blocks[--count];
            sizes[i] = sizes[count];
            return;
        }
    }

    static constexpr int most = 10000;
    static inline bool counting = false;
    static inline int count = 0;
    static inline void const volatile *blocks[most];
    static inline std::size_t sizes[most];
};

// Short blocks of strings are kept for the next string and never go back to the heap, so that unloading leaves those.
// What the C library takes for itself now and then doesn't come with each round.
TEST_F(UnloadLibrary, UnloadingLeavesNothingButTheShortBlocksOfStrings)
{
    ASSERT_LT(0, __sanitizer_install_malloc_and_free_hooks(Blocks::Taken, Blocks::Freed));
    int others = Blocks::most;
    for (int i = 0; i < 10; i++) {
        Blocks::Begin();
        Load();
        ASSERT_TRUE(library.IsThere()) << SharedLibrary::Problem();
        Use();
        Unload();
        Blocks::End();
        EXPECT_LT(Blocks::count, Blocks::most);
        others = std::min(others, Blocks::OtherThan(32));
    }
    EXPECT_EQ(0, others);
}

#endif

} // namespace
