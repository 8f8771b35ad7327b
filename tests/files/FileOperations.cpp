/// Making, copying, deleting and renaming files and folders; the machine's folders, names and time.
#include <algorithm>
#include <chrono>
#include <climits>
#include <csignal>

#if !defined _WIN32
#include <sys/resource.h>
#endif

#include "files/PathUtils.h"
#include "support/Faults.h"
#include "support/FilesFixture.h"

namespace {

using namespace std::string_literals;

// ---- Making folders --------------------------------------------------------------------------

class FolderMaking : public FilesTest {};

TEST_F(FolderMaking, MakesTheChain)
{
    EXPECT_TRUE(CreateFolder(Path("a\\b\\c")));
    EXPECT_TRUE(std::filesystem::is_directory(folder.native("a/b/c")));
    EXPECT_TRUE(CreateFolder(Path("a\\b\\c")));
    EXPECT_TRUE(CreateFolder(Path("A\\B\\d")));
    EXPECT_TRUE(std::filesystem::is_directory(folder.native("a/b/d")));
    EXPECT_FALSE(folder.Has("A"));
}

TEST_F(FolderMaking, TrailingBackslashMakesNothing)
{
    folder.MakeFolder("old");
    EXPECT_FALSE(CreateFolder(Path("a\\")));
    EXPECT_FALSE(CreateFolder(Path("a\\b\\")));
    EXPECT_FALSE(CreateFolder(Path("old\\")));
    EXPECT_FALSE(CreateFolder("\\"));
    EXPECT_FALSE(folder.Has("a"));
}

TEST_F(FolderMaking, NameWithoutABackslashIsFalseUnlessItIsThere)
{
    folder.MakeFolder("Old");
    GoTo(".");
    EXPECT_FALSE(CreateFolder("new"));
    EXPECT_FALSE(folder.Has("new"));
    EXPECT_TRUE(CreateFolder("OLD"));
    for (DString const &path : {DString(), nullString(), DString("Z:")}) EXPECT_FALSE(CreateFolder(path));
}

TEST_F(FolderMaking, RelativeChainNeedsItsFirstFolder)
{
    folder.MakeFolder("there");
    GoTo(".");
    EXPECT_TRUE(CreateFolder("there\\a\\b"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.native("there/a/b")));
    EXPECT_TRUE(CreateFolder("missing\\a"));
    EXPECT_FALSE(folder.Has("missing")); // it begins with the first two elements together
}

TEST_F(FolderMaking, AnswersTrueWhateverComesOfIt)
{
    folder.Write("file", "abc");
    EXPECT_TRUE(CreateFolder(Path("file")));
    EXPECT_TRUE(CreateFolder(Path("file\\sub")));
    EXPECT_TRUE(CreateFolder(Path("a*b")));
    EXPECT_TRUE(CreateFolder(Path(std::string(5000, 'x'))));
    EXPECT_TRUE(CreateFolder("Y:\\x"));
    Faults const faults(1, INT_MAX);
    EXPECT_TRUE(CreateFolder(Path("new")));
    EXPECT_EQ("abc", folder.Read("file"));
    EXPECT_FALSE(folder.Has("a*b"));
    EXPECT_FALSE(folder.Has("new"));
}

TEST_F(FolderMaking, NetworkNameThatIsNotThereMakesNothing)
{
    GoTo(".");
    EXPECT_TRUE(CreateFolder("\\\\vodrel-no-such-server\\vodrel-share\\vodrel-a\\b"));
    for (char const *name : {"vodrel-no-such-server", "vodrel-share", "vodrel-a", "\\\\vodrel-no-such-server"}) {
        EXPECT_FALSE(folder.Has(name)) << name;
        EXPECT_FALSE(std::filesystem::exists("/"s + name)) << name;
    }
}

#if !defined _WIN32
TEST_F(FolderMaking, MakesTheChainOnAShareAndADrive)
{
    Platform::SetNetworkShare("server", "share", folder.native());
    Platform::SetDrive('Q', folder.native());
    EXPECT_TRUE(CreateFolder("\\\\SERVER\\Share\\a\\b"));
    EXPECT_TRUE(CreateFolder("q:\\c\\d"));
    EXPECT_TRUE(std::filesystem::is_directory(folder.native("a/b")));
    EXPECT_TRUE(std::filesystem::is_directory(folder.native("c/d")));
    Platform::SetNetworkShare("server", "share", "");
    Platform::SetDrive('Q', "");
}
#endif

// ---- Copying ---------------------------------------------------------------------------------

class Copies : public FilesTest {
protected:
    bool File(char const *from, char const *to) { return CopyFileD(Path(from), Path(to)); }
    bool Folder(char const *from, char const *to) { return CopyFolder(Path(from), Path(to)); }
    Strings All(char const *relative)
    {
        Strings names;
        for (auto const &entry : std::filesystem::recursive_directory_iterator(folder.native(relative)))
            names.push_back(std::filesystem::relative(entry.path(), folder.native(relative)).generic_string());
        std::sort(names.begin(), names.end());
        return names;
    }
};

TEST_F(Copies, FileReplacesAnExistingOne)
{
    folder.Write("From", "new");
    folder.Write("to", "an old and longer text");
    EXPECT_TRUE(File("FROM", "TO"));
    EXPECT_EQ("new", folder.Read("to"));
    EXPECT_EQ("new", folder.Read("From"));
    EXPECT_FALSE(folder.Has("TO"));
}

TEST_F(Copies, FileMakesTheFolderOfTheTarget)
{
    folder.Write("from", "abc");
    EXPECT_TRUE(File("from", "a\\b\\to"));
    EXPECT_EQ("abc", folder.Read("a/b/to"));
    EXPECT_FALSE(File("missing", "c\\to"));
    EXPECT_TRUE(folder.Has("c")); // even where nothing comes to be copied
    EXPECT_EQ((Strings{}), All("c"));
}

TEST_F(Copies, FileGoesToABareName)
{
    folder.Write("from", "abc");
    GoTo(".");
    EXPECT_TRUE(CopyFileD("from", "to"));
    EXPECT_EQ("abc", folder.Read("to"));
}

TEST_F(Copies, FileHasAllBytesAndItsDate)
{
    std::string bytes(3000000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i % 251);
    folder.Write("from", bytes);
    std::filesystem::last_write_time(folder.native("from"),
                                     std::filesystem::file_time_type::clock::now() - std::chrono::hours(1000));
    EXPECT_TRUE(File("from", "to"));
    EXPECT_TRUE(bytes == folder.Read("to"));
    EXPECT_EQ(FileDate(Path("from")), FileDate(Path("to")));
}

TEST_F(Copies, FileFailsWhereThereIsNoFileToCopyOrNoPlace)
{
    folder.Write("from", "abc");
    folder.Write("sub/in", "abc");
    EXPECT_FALSE(File("missing", "to"));
    EXPECT_FALSE(File("sub", "to"));
    EXPECT_FALSE(File("from", "sub"));
    EXPECT_FALSE(File("from", "from\\to"));
    EXPECT_FALSE(File("fro?", "to"));
    EXPECT_FALSE(File("from", "to?"));
    EXPECT_FALSE(CopyFileD(DString(), Path("to")));
    EXPECT_FALSE(CopyFileD(nullString(), nullString()));
    EXPECT_FALSE(CopyFileD(Path("from"), DString()));
    EXPECT_FALSE(CopyFileD(Path("from"), "\\\\no-such-server\\share\\to"));
    EXPECT_EQ((Strings{"from", "sub", "sub/in", "user"}), All("."));
}

TEST_F(Copies, FileOntoItselfFailsAndKeepsIt)
{
    folder.Write("from", "abc");
    EXPECT_FALSE(File("from", "from"));
    EXPECT_FALSE(File("from", "FROM"));
    EXPECT_EQ("abc", folder.Read("from"));
}

TEST_F(Copies, WildcardTakesTheFilesAndNoFolders)
{
    folder.Write("from/a.dat", "1");
    folder.Write("from/B.DAT", "2");
    folder.Write("from/c.txt", "3");
    folder.Write("from/sub.dat/in", "4");
    folder.Write("to/a.dat", "old");
    folder.Write("to/other", "5");
    EXPECT_TRUE(File("from\\*.dat", "to"));
    EXPECT_EQ((Strings{"B.DAT", "a.dat", "other"}), All("to"));
    EXPECT_EQ("1", folder.Read("to/a.dat"));
    EXPECT_TRUE(File("from\\*", "new"));
    EXPECT_EQ((Strings{"B.DAT", "a.dat", "c.txt"}), All("new"));
}

TEST_F(Copies, WildcardThatMatchesNothingIsNoFailureInAFolderThatIsThere)
{
    folder.MakeFolder("from");
    EXPECT_TRUE(File("from\\*.dat", "to"));
    EXPECT_FALSE(File("missing\\*.dat", "to"));
}

TEST_F(Copies, FolderTakesTheWholeTree)
{
    folder.Write("from/a", "1");
    folder.Write("from/.hidden", "2");
    folder.Write("from/sub/deep/b", "3");
    folder.MakeFolder("from/empty");
    EXPECT_TRUE(Folder("FROM", "x\\to"));
    EXPECT_EQ((Strings{".hidden", "a", "empty", "sub", "sub/deep", "sub/deep/b"}), All("x/to"));
    EXPECT_EQ("3", folder.Read("x/to/sub/deep/b"));
}

TEST_F(Copies, FolderGoesOverWhatIsThere)
{
    folder.Write("from/sub/a", "new");
    folder.Write("to/SUB/a", "an old and longer text");
    folder.Write("to/other", "kept");
    EXPECT_TRUE(Folder("from", "to"));
    EXPECT_EQ("new", folder.Read("to/SUB/a"));
    EXPECT_EQ((Strings{"SUB", "SUB/a", "other"}), All("to"));
}

TEST_F(Copies, FolderFailsWithoutASource)
{
    folder.Write("file", "abc");
    folder.Write("to/file", "old");
    EXPECT_FALSE(Folder("missing", "to"));
    EXPECT_FALSE(CopyFolder("\\\\no-such-server\\share\\from", Path("to")));
    EXPECT_FALSE(Folder("file", "to"));
    EXPECT_FALSE(Folder("file", "file"));
    EXPECT_EQ((Strings{"file"}), All("to"));
    EXPECT_EQ("old", folder.Read("to/file"));
    EXPECT_EQ("abc", folder.Read("file"));
}

TEST_F(Copies, FolderOfTheTargetIsMadeFirst)
{
    EXPECT_FALSE(Folder("missing", "a\\to"));
    EXPECT_TRUE(folder.Has("a/to")); // even where nothing comes to be copied
}

TEST_F(Copies, EmptyFolderIsMade)
{
    folder.MakeFolder("from");
    EXPECT_TRUE(Folder("from", "to"));
    EXPECT_EQ((Strings{}), All("to"));
}

TEST_F(Copies, FolderIntoItselfEnds)
{
    folder.Write("from/a", "1");
    folder.Write("from/sub/b", "2");
    Folder("from", "from\\sub\\copy");
    EXPECT_EQ("1", folder.Read("from/sub/copy/a"));
    EXPECT_LT(All("from").size(), 20u);
    Folder("from", "from");
    EXPECT_EQ("1", folder.Read("from/a"));
    EXPECT_EQ("2", folder.Read("from/sub/b"));
}

#if !defined _WIN32
TEST_F(Copies, FullDiskLeavesTheOldFileAndNothingElse)
{
    folder.Write("from", std::string(100000, 'x'));
    folder.Write("to", "old");
    rlimit before{};
    ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &before));
    auto const oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit const small{50000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    bool const copied = File("from", "to");
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_FALSE(copied);
    EXPECT_EQ("old", folder.Read("to"));
    EXPECT_EQ((Strings{"from", "to", "user"}), All("."));
}
#endif

// ---- Deleting --------------------------------------------------------------------------------

class Deletion : public FilesTest {};

TEST_F(Deletion, AnswersFalseOnSuccessAndTrueOnFailure)
{
    folder.Write("File");
    folder.Write("Sub/deep/file");
    EXPECT_FALSE(DeleteFileD(Path("FILE")));
    EXPECT_FALSE(folder.Has("File"));
    EXPECT_TRUE(DeleteFileD(Path("FILE")));
    EXPECT_FALSE(DeleteFolder(Path("SUB")));
    EXPECT_FALSE(folder.Has("Sub"));
    EXPECT_TRUE(DeleteFolder(Path("SUB")));
}

TEST_F(Deletion, TakesFilesAndFoldersAlike)
{
    folder.Write("file");
    folder.Write("sub/file");
    EXPECT_FALSE(DeleteFolder(Path("file")));
    EXPECT_FALSE(DeleteFileD(Path("sub")));
    EXPECT_FALSE(folder.Has("file"));
    EXPECT_FALSE(folder.Has("sub"));
}

TEST_F(Deletion, OfAPatternTakesAllMatches)
{
    for (char const *name : {"d/a.dat", "d/B.DAT", "d/c.txt", "d/sub.dat/in"}) folder.Write(name);
    EXPECT_FALSE(DeleteFileD(Path("d\\*.dat")));
    EXPECT_FALSE(folder.Has("d/a.dat"));
    EXPECT_FALSE(folder.Has("d/B.DAT"));
    EXPECT_FALSE(folder.Has("d/sub.dat"));
    EXPECT_TRUE(folder.Has("d/c.txt"));
}

/// The roots lead to an inner folder here, so that nothing outside the fresh folder is ever named.
TEST_F(Deletion, NeverTakesARootOrTheCurrentFolder)
{
    folder.Write("a/b/file", "abc");
    folder.Write("a/side", "abc");
    Platform::SetDrive('Q', folder.native("a/b"));
    Platform::SetNetworkShare("server", "share", folder.native("a/b"));
    GoTo("a/b");
    for (char const *name : {"", "Q:", "Q:\\", "Q:\\.", "Q:\\..", ".", "..", ".\\", "\\\\server\\share",
                             "\\\\server\\share\\", "\\\\server", "\\\\server\\", "Q:\\missing\\"}) {
        EXPECT_TRUE(DeleteFileD(name)) << name;
        EXPECT_TRUE(DeleteFolder(name)) << name;
        EXPECT_EQ("abc", folder.Read("a/b/file")) << name;
        EXPECT_EQ("abc", folder.Read("a/side")) << name;
    }
    EXPECT_TRUE(DeleteFileD(nullString()));
    EXPECT_TRUE(DeleteFolder(nullString()));
    EXPECT_EQ("abc", folder.Read("a/b/file"));
    Platform::SetDrive('Q', "");
    Platform::SetNetworkShare("server", "share", "");
}

TEST_F(Deletion, OfAFolderNeedsNoTrailingBackslash)
{
    folder.Write("sub/file");
    EXPECT_TRUE(DeleteFolder(Path("sub\\")));
    EXPECT_TRUE(folder.Has("sub/file"));
}

#if !defined _WIN32
TEST_F(Deletion, DoesNotFollowLinks)
{
    folder.Write("kept/file", "abc");
    folder.MakeFolder("d");
    std::filesystem::create_directory_symlink("../kept", folder.native("d/link"));
    std::filesystem::create_symlink("kept/file", folder.native("filelink"));
    EXPECT_FALSE(DeleteFolder(Path("d")));
    EXPECT_FALSE(DeleteFileD(Path("filelink")));
    EXPECT_FALSE(folder.Has("d"));
    EXPECT_FALSE(folder.Has("filelink"));
    EXPECT_EQ("abc", folder.Read("kept/file"));
}
#endif

TEST_F(Deletion, FailsWhereTheDiskFails)
{
    folder.Write("file");
    Faults const faults(1, INT_MAX);
    EXPECT_TRUE(DeleteFileD(Path("file")));
    EXPECT_TRUE(DeleteFolder(Path("file")));
    EXPECT_TRUE(folder.Has("file"));
}

// ---- Renaming --------------------------------------------------------------------------------

class Renaming : public FilesTest {
protected:
    Renaming()
    {
        folder.Write("File", "file");
        folder.Write("Sub/in", "sub");
        folder.Write("other", "other");
        folder.Write("taken/in", "taken");
    }
    bool File(char const *from, char const *to) { return RenameFile(Path(from), Path(to)); }
    bool Folder(char const *from, char const *to) { return RenameFolder(Path(from), Path(to)); }
    void ExpectAllInPlace()
    {
        EXPECT_EQ("file", folder.Read("File"));
        EXPECT_EQ("sub", folder.Read("Sub/in"));
        EXPECT_EQ("other", folder.Read("other"));
        EXPECT_EQ("taken", folder.Read("taken/in"));
    }
};

TEST_F(Renaming, AnswersTrueOnSuccess)
{
    EXPECT_TRUE(File("FILE", "new"));
    EXPECT_TRUE(Folder("SUB", "new sub"));
    EXPECT_EQ("file", folder.Read("new"));
    EXPECT_EQ("sub", folder.Read("new sub/in"));
    EXPECT_FALSE(folder.Has("File"));
    EXPECT_FALSE(folder.Has("Sub"));
}

TEST_F(Renaming, MovesToAnotherFolder)
{
    EXPECT_TRUE(File("File", "TAKEN\\file"));
    EXPECT_TRUE(Folder("Sub", "taken\\sub"));
    EXPECT_EQ("file", folder.Read("taken/file"));
    EXPECT_EQ("sub", folder.Read("taken/sub/in"));
}

TEST_F(Renaming, OfCaseAloneWorks)
{
    EXPECT_TRUE(File("file", "FILE"));
    EXPECT_TRUE(Folder("SUB", "sub"));
    EXPECT_EQ("file", folder.Read("FILE"));
    EXPECT_EQ("sub", folder.Read("sub/in"));
    EXPECT_FALSE(folder.Has("File"));
    EXPECT_FALSE(folder.Has("Sub"));
}

TEST_F(Renaming, OntoSomethingElseFails)
{
    for (char const *to : {"other", "OTHER", "taken", "Taken"}) {
        EXPECT_FALSE(File("File", to)) << to;
        EXPECT_FALSE(Folder("File", to)) << to;
        EXPECT_FALSE(File("Sub", to)) << to;
        EXPECT_FALSE(Folder("Sub", to)) << to;
        ExpectAllInPlace();
    }
}

TEST_F(Renaming, FailsForWhatIsNotThere)
{
    struct Row {
        DString from, to;
    } const rows[] = {
        {Path("missing"), Path("new")},
        {Path("File"), Path("missing\\new")},
        {Path("Sub"), Path("Sub\\in it")},
        {Path("Fil*"), Path("new")},
        {Path("File"), Path("ne*")},
        {Path("Fil?"), Path("new")},
        {DString(), Path("new")},
        {Path("File"), DString()},
        {nullString(), nullString()},
        {Path("File"), "\\\\no-such-server\\share\\new"},
        {Path("File"), Path(std::string(5000, 'x'))},
    };
    for (Row const &row : rows) {
        SCOPED_TRACE(bytesOf(row.from) + " to " + bytesOf(row.to));
        EXPECT_FALSE(RenameFile(row.from, row.to));
        EXPECT_FALSE(RenameFolder(row.from, row.to));
        ExpectAllInPlace();
        EXPECT_FALSE(folder.Has("new"));
    }
}

TEST_F(Renaming, FailsWhereTheDiskFails)
{
    Faults const faults(1, INT_MAX);
    EXPECT_FALSE(File("File", "new"));
    EXPECT_FALSE(Folder("Sub", "new"));
    ExpectAllInPlace();
}

// ---- Folders, machine, time ------------------------------------------------------------------

class Machine : public FilesTest {};

TEST_F(Machine, CurrentDirectoryIsSetAndTold)
{
    folder.MakeFolder("Sub");
    EXPECT_TRUE(SetCurrentDirectoryD(Path("Sub")));
    EXPECT_EQ(folder.path("Sub"), bytesOf(GetCurrentDirectoryD()));
    folder.Write("Sub/file");
    DString bare("FILE");
    EXPECT_TRUE(FileExists(bare));
    EXPECT_TRUE(SetCurrentDirectoryD(".."));
    EXPECT_EQ(folder.path(), bytesOf(GetCurrentDirectoryD()));
}

TEST_F(Machine, CurrentDirectoryStaysWhereItCannotBeSet)
{
    folder.Write("file");
    GoTo(".");
    for (DString const &path : {Path("missing"), Path("file"), DString(), nullString(), DString("Y:\\"), Path("u*"),
                                DString("\\\\no-such-server\\share")}) {
        EXPECT_FALSE(SetCurrentDirectoryD(path)) << bytesOf(path);
        EXPECT_EQ(folder.path(), bytesOf(GetCurrentDirectoryD()));
    }
}

TEST_F(Machine, ComputerNameIsTakenOnceAndKept)
{
    EXPECT_EQ("", bytesOf(GetComputerNameD()));
    SetComputerNameD();
    EXPECT_EQ(Platform::ComputerName(), bytesOf(GetComputerNameD()));
    EXPECT_LT(0, GetComputerNameD().Len());
    ComputerName = "another";
    EXPECT_EQ("another", bytesOf(GetComputerNameD()));
}

TEST_F(Machine, LocalSettingsAreInTheUsersFolder)
{
    EXPECT_EQ(Platform::UserDataFolder() + "\\Vodrel", bytesOf(GetLocalSettingsPath()));
#if !defined _WIN32
    EXPECT_EQ(folder.path("host-user\\Vodrel"), bytesOf(GetLocalSettingsPath()));
#endif
    EXPECT_FALSE(folder.Has("host-user"));
}

TEST_F(Machine, PathsAreCopiesOfTheGlobals)
{
    VodrelPath = "v";
    UserPath = "u";
    WorkingPath = "w";
    DString const paths[] = {GetVodrelPath(), GetUserPath(), GetWorkingPath()};
    VodrelPath = UserPath = WorkingPath = DString("changed");
    EXPECT_EQ("v", bytesOf(paths[0]));
    EXPECT_EQ("u", bytesOf(paths[1]));
    EXPECT_EQ("w", bytesOf(paths[2]));
}

TEST_F(Machine, TimerDividesCounterByFrequencyReadAnew)
{
    clock.counts = 2500000;
    EXPECT_EQ(2.5, Timer());
    clock.countsPerSecond = 10000000;
    EXPECT_EQ(0.25, Timer());
    clock.counts = 1;
    clock.countsPerSecond = 3;
    EXPECT_EQ(1.0 / 3.0, Timer());
    clock.counts = 9007199254740993; // more than a double holds
    clock.countsPerSecond = 1000000000;
    EXPECT_EQ(9007199.254740992, Timer());
}

TEST_F(Machine, SleepHandsItsTimeOn)
{
    for (int milliseconds : {50, 1, 700}) DSleep(milliseconds);
    EXPECT_EQ((std::vector<int>{50, 1, 700}), clock.sleeps);
}

TEST_F(Machine, SleepAndTimerAgreeOnTheHostsClock)
{
    Platform::SetClock(nullptr);
    double const start = Timer();
    DSleep(20);
    EXPECT_LE(0.0199, Timer() - start);
    EXPECT_GE(5.0, Timer() - start);
    DSleep(-100);
    DSleep(INT_MIN);
    EXPECT_GE(5.0, Timer() - start);
}

} // namespace
