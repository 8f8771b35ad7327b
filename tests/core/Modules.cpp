/// The module loader, on copies of a module that tells when it is freed. VODREL_PLAIN_MODULE is its file. How a service
/// module talks with its host is tested with the shared library, as hosts have it.
#include "core/Modules.h"

#include <climits>
#include <filesystem>
#include <string>
#include <vector>

#include "files/PathUtils.h"
#include "support/FilesFixture.h"
#include "support/FreshSystem.h"

namespace {

/// The extension of the system's modules, with its dot.
std::string Extension()
{
    return std::filesystem::path(VODREL_PLAIN_MODULE).extension().string();
}

/// A system whose installation folder is "install".
class Modules : public testing::Test {
protected:
    Modules()
    {
        freed.clear();
        before = ModuleTable.Count();
    }
    ~Modules() override { UnloadModules(); }

    /// Puts a module there, a file of its own each time. `name` has slashes, and no extension.
    void Place(std::string const &name) const { PlaceAs(name + Extension()); }
    void PlaceAs(std::string const &name) const
    {
        std::filesystem::path const file = system.folder.native(name);
        std::filesystem::create_directories(file.parent_path());
        std::filesystem::copy_file(VODREL_PLAIN_MODULE, file);
    }

    void *Get(std::string const &folder, std::string const &module, char const *symbol = "Answer", int flags = 0)
    {
        ok = true;
        void *const address = GetProc(Dstr(folder), Dstr(module), symbol, ok, flags);
        EXPECT_EQ(ok, address != nullptr);
        return address;
    }

    static int Asked(void *answer) { return answer ? reinterpret_cast<int (*)()>(answer)() : -1; }

    /// Loads a module that then says its name when it is freed.
    void Load(std::string const &name)
    {
        using Tell = void(void (*)(char const *), char const *);
        void *const tell = Get(system.path("m"), name, "TellWhenFreed");
        ASSERT_NE(nullptr, tell);
        reinterpret_cast<Tell *>(tell)([](char const *module) { freed += module; }, name.c_str());
    }

    /// How many handles the table got since the test began.
    int Entered() const { return ModuleTable.Count() - before; }

    /// What was told to the user and to the log since the last question.
    std::string Told()
    {
        std::string const all = system.Heard() + system.Log();
        std::filesystem::remove(system.folder.native("user/Vodrel/Log.txt"));
        return all;
    }
    static std::string NoModule(std::string const &module, std::string const &file)
    {
        return "2:Could not load module: " + module + "\n" + LogLine("Could not load module: " + file);
    }
    static std::string NoSymbol(std::string const &symbol)
    {
        return "2:Could not load symbol: " + symbol + "\n" + LogLine("Could not load symbol: " + symbol);
    }

    static bool Connect(std::string const &module)
    {
        Listener own;
        DNotify *result = &own;
        bool const connected = DLLConnect(Dstr(module), 1, nullptr, result);
        EXPECT_EQ(&own, result);
        return connected;
    }

    FreshSystem system;
    bool ok = true;
    int before = 0;
    static inline std::string freed; ///< the names of the modules that were freed
};

std::string const nothing = "(missing)";

// ---- Symbols of modules ----------------------------------------------------------------------

TEST_F(Modules, ASymbolIsFoundAndCanBeCalled)
{
    Place("m/A");
    EXPECT_EQ(42, Asked(Get(system.path("m"), "A")));
    EXPECT_EQ(nothing, Told());
    EXPECT_EQ(1, Entered());
}

TEST_F(Modules, OkIsNotTouchedOnSuccess)
{
    Place("m/A");
    ok = false;
    EXPECT_EQ(42, Asked(GetProc(Dstr(system.path("m")), "A", "Answer", ok, 0)));
    EXPECT_FALSE(ok);
    EXPECT_EQ(nothing, Told());
}

TEST_F(Modules, TheExtensionIsAppendedUnlessTheFlagOfValue8IsSet)
{
    std::string const a = "A" + Extension(), m = system.path("m");
    Place("m/A");
    PlaceAs("m/Bare");
    for (int flags : {0, 1, 2, 4, 7, 16, INT_MAX - 8, INT_MIN, ~8}) {
        SCOPED_TRACE(flags);
        EXPECT_EQ(42, Asked(Get(m, "A", "Answer", flags)));
        EXPECT_EQ(nothing, Told());
        EXPECT_EQ(nullptr, Get(m, a, "Answer", flags));
        EXPECT_EQ(NoModule(a, m + "\\" + a + Extension()), Told());
        EXPECT_EQ(nullptr, Get(m, "Bare", "Answer", flags));
        EXPECT_EQ(NoModule("Bare", m + "\\Bare" + Extension()), Told());
    }
    for (int flags : {8, 9, 15, 8 + 16, INT_MAX, -1}) {
        SCOPED_TRACE(flags);
        EXPECT_EQ(42, Asked(Get(m, a, "Answer", flags)));
        EXPECT_EQ(42, Asked(Get(m, "Bare", "Answer", flags)));
        EXPECT_EQ(nothing, Told());
        EXPECT_EQ(nullptr, Get(m, "A", "Answer", flags));
        EXPECT_EQ(NoModule("A", m + "\\A"), Told());
    }
}

TEST_F(Modules, AreFoundByTheSystemsPaths)
{
    Place("m/sub/A");
    struct Row {
        std::string folder, module;
    } const rows[] = {{system.path("m\\sub"), "A"},
                      {system.path("m"), "sub\\A"},
                      {"", system.path("m\\sub\\A")},
                      {"m", "sub\\A"},
                      {system.path("M\\SUB"), "a"}};
    system.GoTo("");
    for (Row const &row : rows) EXPECT_EQ(42, Asked(Get(row.folder, row.module))) << row.folder << " " << row.module;
    EXPECT_EQ(nothing, Told());
}

TEST_F(Modules, ABareNameIsAFileOfTheCurrentFolder)
{
    Place("here/A");
    system.GoTo("here");
    EXPECT_EQ(42, Asked(Get("", "A")));
    EXPECT_EQ(nullptr, Get("", "libm"));
    EXPECT_EQ(NoModule("libm", "libm" + Extension()), Told());
}

TEST_F(Modules, AMissingModuleIsToldByItsNameAndLoggedByItsFile)
{
    std::string const m = system.path("m");
    struct Row {
        std::string folder, module, file;
    } const rows[] = {{m, "None", m + "\\None" + Extension()},
                      {m, "sub\\None", m + "\\sub\\None" + Extension()},
                      {"\\\\srv\\share", "A", "\\\\srv\\share\\A" + Extension()},
                      {"", "None", "None" + Extension()},
                      {m, "", m + "\\" + Extension()},
                      {m, "A*", m + "\\A*" + Extension()},
                      {m, "%s%n", m + "\\%s%n" + Extension()}};
    Place("m/A");
    system.GoTo("");
    for (Row const &row : rows) {
        EXPECT_EQ(nullptr, Get(row.folder, row.module));
        EXPECT_EQ(NoModule(row.module, row.file), Told());
    }
    EXPECT_EQ(nullptr, Get("", "", "Answer", 8));
    EXPECT_EQ(NoModule("", ""), Told());
    EXPECT_EQ(0, Entered());
}

TEST_F(Modules, WhatIsNoModuleIsNotLoaded)
{
    std::string const m = system.path("m");
    system.folder.Write("m/Text" + Extension(), "not a module");
    system.folder.Write("m/Empty" + Extension());
    system.folder.MakeFolder("m/Folder" + Extension());
    for (std::string const name : {"Text", "Empty", "Folder"}) {
        EXPECT_EQ(nullptr, Get(m, name));
        EXPECT_EQ(NoModule(name, m + "\\" + name + Extension()), Told());
    }
    EXPECT_EQ(0, Entered());
}

TEST_F(Modules, AMissingSymbolIsToldAndLogged)
{
    Place("m/A");
    for (char const *symbol : {"None", "answer", "", "%s%n"}) {
        EXPECT_EQ(nullptr, Get(system.path("m"), "A", symbol));
        EXPECT_EQ(NoSymbol(symbol), Told());
    }
    EXPECT_EQ(nullptr, Get(system.path("m"), "A", nullptr));
    EXPECT_EQ(NoSymbol(""), Told());
    EXPECT_EQ(0, Entered());
}

TEST_F(Modules, TheUserIsToldBeforeTheLog)
{
    struct Witness : DNotify {
        explicit Witness(FreshSystem const &fresh) : system(fresh) {}
        void Notify(int, int, DString const &) override { seen += system.Log(); }
        FreshSystem const &system;
        std::string seen;
    } witness(system);
    Place("m/A");
    SetNotify(&witness);
    Get(system.path("m"), "None");
    EXPECT_EQ(nothing, witness.seen);
    Told();
    Get(system.path("m"), "A", "None");
    EXPECT_EQ(nothing + nothing, witness.seen);
}

// ---- Freeing ---------------------------------------------------------------------------------

TEST_F(Modules, AreFreedInTheOrderOfLoading)
{
    for (char const *name : {"B", "A", "C"}) {
        Place(std::string("m/") + name);
        Load(name);
    }
    EXPECT_EQ(3, Entered());
    EXPECT_EQ("", freed);
    UnloadModules();
    EXPECT_EQ("BAC", freed);
    EXPECT_EQ(0, ModuleTable.Count());
    EXPECT_EQ(nullptr, ModuleTable.Data());
    EXPECT_EQ(nothing, Told());
}

TEST_F(Modules, AModuleCountsAsOftenAsItWasAskedAndAllOfThatIsFreed)
{
    Place("m/A");
    Load("A");
    void *const first = Get(system.path("m"), "A");
    EXPECT_EQ(first, Get(system.path("m"), "A"));
    EXPECT_EQ(3, Entered());
    EXPECT_EQ(ModuleTable[before], ModuleTable[before + 2]);
    UnloadModules();
    EXPECT_EQ("A", freed);
}

TEST_F(Modules, CanBeLoadedAgainOnceTheyAreFreed)
{
    Place("m/A");
    for (int i = 0; i < 3; ++i) {
        Load("A");
        UnloadModules();
    }
    EXPECT_EQ("AAA", freed);
}

TEST_F(Modules, OfAnEmptyTableAreNone)
{
    UnloadModules();
    UnloadModules();
    EXPECT_EQ(0, ModuleTable.Count());
    EXPECT_EQ(nothing, Told());
}

TEST_F(Modules, OneThatLacksTheSymbolStaysLoaded)
{
    Place("m/A");
    Load("A");
    EXPECT_EQ(nullptr, Get(system.path("m"), "A", "None"));
    EXPECT_EQ(1, Entered());
    UnloadModules();
    EXPECT_EQ("", freed);
    void *const again = Platform::LoadModule(system.path("m\\A" + Extension()).c_str());
    Platform::FreeModule(again);
    EXPECT_EQ("", freed);
    Platform::FreeModule(again); // for the one that stayed
    EXPECT_EQ("A", freed);
}

TEST_F(Modules, StayLoadedThroughANewStart)
{
    Place("m/A");
    Load("A");
    CoreInit(Dstr(system.path("other")));
    EXPECT_EQ(1, Entered());
    EXPECT_EQ("", freed);
}

TEST_F(Modules, OfATableThatGoesAreFreed)
{
    Place("m/A");
    Place("m/B");
    {
        ModuleHandles table;
        for (char const *name : {"A", "B"}) {
            Load(name);
            table.Add(Platform::LoadModule(system.path(std::string("m\\") + name + Extension()).c_str()));
        }
        UnloadModules();
        EXPECT_EQ("", freed);
    }
    EXPECT_EQ("AB", freed);
}

// ---- Connecting, where it fails --------------------------------------------------------------

TEST_F(Modules, AreConnectedRelativeToTheInstallationFolder)
{
    std::string const install = system.path("install");
    struct Row {
        std::string module, name, file;
    } const rows[] = {{"None", "None", install + "\\None"},
                      {"sub\\None", "None", install + "\\sub\\None"},
                      {"a\\b\\None", "None", install + "\\a\\b\\None"},
                      {"\\None", "None", install + "\\None"},
                      {"sub\\", "", install + "\\sub\\"},
                      {"Z:\\x\\None", "None", install + "\\Z:\\x\\None"},
                      {"", "", install + "\\"}};
    for (Row const &row : rows) {
        EXPECT_FALSE(Connect(row.module)) << row.module;
        EXPECT_EQ(NoModule(row.name, row.file + Extension()), Told());
    }
    EXPECT_EQ(0, Entered());
}

TEST_F(Modules, AreNotConnectedOutsideOfTheInstallationFolder)
{
    Place("A");
    system.GoTo("");
    EXPECT_FALSE(Connect("A"));
    EXPECT_EQ(NoModule("A", system.path("install\\A" + Extension())), Told());
}

TEST_F(Modules, WithoutTheEntryOfAServiceAreNotConnected)
{
    Place("install/A");
    Place("install/sub/A");
    for (std::string const module : {"A", "sub\\A"}) {
        EXPECT_FALSE(Connect(module)) << module;
        EXPECT_EQ(NoSymbol("SvInit"), Told());
    }
    EXPECT_EQ(0, Entered());
}

TEST_F(Modules, AreNeverConnectedWithTheirExtension)
{
    Place("install/A");
    std::string const name = "A" + Extension();
    EXPECT_FALSE(Connect(name));
    EXPECT_EQ(NoModule(name, system.path("install\\" + name + Extension())), Told());
}

} // namespace
