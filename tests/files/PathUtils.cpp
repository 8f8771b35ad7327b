/// Path text, existence, facts and listings. What is done to files and folders stands in FileOperations.cpp.
#include "files/PathUtils.h"

#include <algorithm>
#include <climits>
#include <cstring>

#if !defined _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#endif

#include "support/Faults.h"
#include "support/FilesFixture.h"

namespace {

using namespace std::string_literals;

// ---- Path text -------------------------------------------------------------------------------

TEST(PathText, AppendJoinsWhatIsNotEmpty)
{
    struct Row {
        char const *a, *b, *joined;
    } const rows[] = {
        {"a", "b", "a\\b"},
        {"", "b", "b"},
        {"a", "", "a"},
        {"", "", ""},
        {"a\\", "b", "a\\\\b"},
        {"a", "\\b", "a\\\\b"},
        {"a\\", "\\b", "a\\\\\\b"},
        {"a\\", "", "a\\"},
        {"", "\\b", "\\b"},
        {"Z:", "x", "Z:\\x"},
        {"a/", "b", "a/\\b"},
        {"\\\\s", "d", "\\\\s\\d"},
    };
    for (Row const &row : rows) EXPECT_EQ(row.joined, bytesOf(AppendPathElts(row.a, row.b))) << row.a << "+" << row.b;
}

TEST(PathText, AppendOfMoreGoesFromLeftToRight)
{
    EXPECT_EQ("a\\b\\c", bytesOf(AppendPathElts("a", "b", "c")));
    EXPECT_EQ("a\\c", bytesOf(AppendPathElts("a", "", "c")));
    EXPECT_EQ("c", bytesOf(AppendPathElts("", "", "c")));
    EXPECT_EQ("a\\b\\c\\d", bytesOf(AppendPathElts("a", "b", "c", "d")));
    EXPECT_EQ("b\\d", bytesOf(AppendPathElts("", "b", "", "d")));
    EXPECT_EQ("a\\b\\c\\d\\e", bytesOf(AppendPathElts("a", "b", "c", "d", "e")));
    EXPECT_EQ("a\\\\b\\e", bytesOf(AppendPathElts("a\\", "b", "", "", "e")));
    EXPECT_EQ("", bytesOf(AppendPathElts("", "", "", "", "")));
}

TEST(PathText, AppendTakesNullForEmpty)
{
    EXPECT_EQ("b", bytesOf(AppendPathElts(nullString(), "b")));
    EXPECT_EQ("a", bytesOf(AppendPathElts("a", nullString())));
    EXPECT_EQ("", bytesOf(AppendPathElts(nullString(), nullString())));
}

TEST(PathText, SplitCutsAtTheLastBackslash)
{
    struct Row {
        char const *path, *folder, *name;
    } const rows[] = {
        {"a\\b\\c", "a\\b", "c"},   {"name", "", "name"}, {"\\a", "", "a"},
        {"a\\", "a", ""},           {"", "", ""},         {"\\", "", ""},
        {"C:f", "", "C:f"},         {"C:\\f", "C:", "f"}, {"a\\\\b", "a\\", "b"},
        {"\\\\s\\d", "\\\\s", "d"}, {"a/b", "", "a/b"},   {"a/b\\c", "a/b", "c"},
    };
    for (Row const &row : rows) {
        DString folder("old"), name("old");
        SplitPathElts(row.path, folder, name);
        EXPECT_EQ(row.folder, bytesOf(folder)) << row.path;
        EXPECT_EQ(row.name, bytesOf(name)) << row.path;
    }
    DString folder("old"), name("old");
    SplitPathElts(nullString(), folder, name);
    EXPECT_EQ("", bytesOf(folder) + bytesOf(name));
}

TEST(PathText, TranslateTurnsSlashes)
{
    EXPECT_EQ("a\\b\\\\c\\d\\", bytesOf(TranslateFileName("a/b//c\\d/")));
    EXPECT_EQ("a\\b", bytesOf(TranslateFileName("a\\b")));
    EXPECT_EQ("", bytesOf(TranslateFileName("")));
    EXPECT_EQ("", bytesOf(TranslateFileName(nullString())));
    DString const original("a/b");
    TranslateFileName(original);
    EXPECT_EQ("a/b", bytesOf(original));
}

TEST(PathText, FullyQualifiedBeginsWithTwoBackslashesOrADrive)
{
    struct Row {
        char const *path;
        bool result;
    } const rows[] = {
        {"\\\\s\\d", true}, {"\\\\", true},  {"\\a", false},   {"\\", false},     {"C:", true},
        {"C:\\x", true},    {"c:x", true},   {"1:x", true},    {"::", true},      {":", false},
        {"ab:", false},     {"", false},     {"a", false},     {"//s/d", false},  {"/x", false},
        {"a\\b", false},    {".\\a", false}, {"..\\a", false}, {" \\\\s", false},
    };
    for (Row const &row : rows) EXPECT_EQ(row.result, IsFullQual(row.path)) << row.path;
    EXPECT_FALSE(IsFullQual(nullString()));
}

// ---- Existence -------------------------------------------------------------------------------

class Existence : public FilesTest {
protected:
    /// The answer and what the argument has become, without the fresh folder in front.
    std::string File(char const *relative)
    {
        DString path = Path(relative);
        bool const exists = FileExists(path);
        return (exists ? "yes " : "no ") + bytesOf(path).substr(folder.path().size() + 1);
    }
    std::string Folder(char const *relative)
    {
        DString path = Path(relative);
        bool const exists = FolderExists(path);
        return (exists ? "yes " : "no ") + bytesOf(path).substr(folder.path().size() + 1);
    }
};

TEST_F(Existence, FileTakesTheSpellingOfTheDiskInItsLastElement)
{
    folder.Write("Sub/File.txt");
    EXPECT_EQ("yes Sub\\File.txt", File("Sub\\File.txt"));
    EXPECT_EQ("yes SUB\\File.txt", File("SUB\\FILE.TXT"));
    EXPECT_EQ("no SUB\\FILE2.TXT", File("SUB\\FILE2.TXT"));
    EXPECT_EQ("no missing\\File.txt", File("missing\\File.txt"));
    EXPECT_EQ("no Sub\\FILE.txt\\", File("Sub\\FILE.txt\\"));
}

TEST_F(Existence, FolderTakesTheSpellingOfTheDiskInItsLastElement)
{
    folder.MakeFolder("Sub/Inner");
    EXPECT_EQ("yes SUB\\Inner", Folder("SUB\\INNER"));
    EXPECT_EQ("yes Sub", Folder("sub"));
    EXPECT_EQ("no SUB\\other", Folder("SUB\\other"));
    EXPECT_EQ("no sub\\", Folder("sub\\"));
    EXPECT_EQ("no SUB\\INNER\\", Folder("SUB\\INNER\\"));
}

TEST_F(Existence, FileIsNoFolderAndFolderNoFile)
{
    folder.Write("file");
    folder.MakeFolder("sub");
    EXPECT_EQ("no SUB", File("SUB"));
    EXPECT_EQ("no FILE", Folder("FILE"));
}

TEST_F(Existence, FileLooksAtTwoMatchesOfAPattern)
{
    folder.Write("file1/a");
    folder.Write("folder-file/x1/in");
    folder.Write("folder-file/x2");
    folder.Write("folder-folder-file/x1/in");
    folder.Write("folder-folder-file/x2/in");
    folder.Write("folder-folder-file/x3");
    folder.Write("file-folder/x1");
    folder.Write("file-folder/x2/in");
    EXPECT_EQ("yes file1\\a", File("file1\\*"));
    EXPECT_EQ("no file1\\b*", File("file1\\b*"));
    EXPECT_EQ("yes folder-file\\x2", File("folder-file\\X?"));
    EXPECT_EQ("no folder-folder-file\\x*", File("folder-folder-file\\x*"));
    EXPECT_EQ("yes file-folder\\x1", File("file-folder\\x*"));
}

TEST_F(Existence, FolderMayChangeItsArgumentAndAnswerFalse)
{
    folder.Write("file-file/x1");
    folder.Write("file-file/x2");
    folder.Write("file-folder/x1");
    folder.Write("file-folder/x2/in");
    folder.Write("folder-file/x1/in");
    folder.Write("folder-file/x2");
    folder.Write("file-file-folder/x1");
    folder.Write("file-file-folder/x2");
    folder.Write("file-file-folder/x3/in");
    folder.Write("file/x1");
    EXPECT_EQ("no file-file\\x2", Folder("file-file\\x*"));
    EXPECT_EQ("yes file-folder\\x2", Folder("file-folder\\x*"));
    EXPECT_EQ("yes folder-file\\x1", Folder("folder-file\\x*"));
    EXPECT_EQ("no file-file-folder\\x2", Folder("file-file-folder\\x*"));
    EXPECT_EQ("no file\\x*", Folder("file\\x*"));
    EXPECT_EQ("no file\\y*", Folder("file\\y*"));
}

TEST_F(Existence, SpecialEntriesAreNoMatches)
{
    folder.MakeFolder("sub");
    EXPECT_EQ("no sub\\*", Folder("sub\\*"));
    EXPECT_EQ("no sub\\.*", Folder("sub\\.*"));
    folder.Write("sub/file");
    EXPECT_EQ("yes sub\\file", File("sub\\*"));
}

TEST_F(Existence, RootsAreNoFolders)
{
    Platform::SetDrive('Q', folder.native());
    Platform::SetNetworkShare("server", "share", folder.native());
    for (char const *name : {"Z:", "Z:\\", "C:", "Q:", "Q:\\", "\\\\server\\share", "\\\\server\\share\\", "\\\\server",
                             "\\\\", "\\", ""}) {
        DString path(name), same(name);
        EXPECT_FALSE(FolderExists(path)) << name;
        EXPECT_FALSE(FileExists(same)) << name;
        EXPECT_EQ(name, bytesOf(path));
        EXPECT_EQ(name, bytesOf(same));
    }
    Platform::SetDrive('Q', "");
    Platform::SetNetworkShare("server", "share", "");
}

TEST_F(Existence, IsFalseForNamesThatCannotBe)
{
    GoTo("user");
    for (DString name : {nullString(), Path(std::string(5000, 'x')), Path("a\\b\\c\\d"), DString("Y:\\x"),
                         DString("\\\\no-such-server\\share\\x"), DString("?"), DString(":"), DString("Z:x:y")}) {
        std::string const before = bytesOf(name);
        EXPECT_FALSE(FileExists(name)) << before;
        EXPECT_FALSE(FolderExists(name)) << before;
        EXPECT_EQ(before, bytesOf(name));
    }
}

TEST_F(Existence, BareNameStaysBare)
{
    folder.Write("File.txt");
    folder.MakeFolder("Sub");
    GoTo(".");
    DString file("FILE.TXT"), sub("SUB");
    EXPECT_TRUE(FileExists(file));
    EXPECT_TRUE(FolderExists(sub));
    EXPECT_EQ("File.txt", bytesOf(file));
    EXPECT_EQ("Sub", bytesOf(sub));
}

TEST_F(Existence, SeesNamesThatBeginWithADot)
{
    folder.Write(".hidden");
    folder.MakeFolder(".sub");
    EXPECT_EQ("yes .hidden", File(".HIDDEN"));
    EXPECT_EQ("yes .sub", Folder(".SUB"));
}

#if !defined _WIN32
TEST_F(Existence, NameMayHoldAnyByte)
{
    std::string name;
    for (int c = 1; c < 256; ++c)
        if (!std::strchr("/\\*?", c)) name += static_cast<char>(c);
    folder.Write(name.substr(0, 200));
    folder.Write("\xC4");
    EXPECT_EQ("yes " + name.substr(0, 200), File(name.substr(0, 200).c_str()));
    EXPECT_EQ("yes \xC4", File("\xC4"));
    EXPECT_EQ("no \xE4", File("\xE4")); // only ASCII letters have a case
}
#endif

TEST_F(Existence, FileIsLookedForTwiceAndFolderOnce)
{
    folder.Write("file");
    folder.MakeFolder("sub");
    {
        Faults const faults(1, 1, "Search");
        EXPECT_EQ("yes file", File("FILE"));
    }
    {
        Faults const faults(1, INT_MAX, "Search");
        EXPECT_EQ("no FILE", File("FILE"));
    }
    Faults const faults(1, 1, "Search");
    EXPECT_EQ("no SUB", Folder("SUB"));
}

// ---- Dates and lengths -----------------------------------------------------------------------

class FileFacts : public FilesTest {
#if !defined _WIN32
protected:
    void SetTime(char const *relative, long long seconds, long nanoseconds)
    {
        timespec const times[2] = {{seconds, nanoseconds}, {seconds, nanoseconds}};
        ASSERT_EQ(0, utimensat(AT_FDCWD, folder.native(relative).c_str(), times, 0));
    }
#endif
};

#if !defined _WIN32
TEST_F(FileFacts, DateIsInSecondsSince1970InUTC)
{
    struct Row {
        long long seconds;
        long nanoseconds;
        long long date;
    } const rows[] = {
        {0, 0, 0},
        {1, 0, 1},
        {1, 999999900, 1},
        {1706702400, 0, 1706702400},
        {1720000000, 500000000, 1720000000},
        {4102444800, 0, 4102444800},
        {-1, 0, -1},
        {-2, 500000000, -1}, // half a second more than -2 is cut toward zero
        {-1, 500000000, 0},
        {-86400, 0, -86400},
    };
    HostVariable const zone("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    folder.Write("File");
    for (Row const &row : rows) {
        SetTime("File", row.seconds, row.nanoseconds);
        EXPECT_EQ(row.date, FileDate(Path("FILE"))) << row.seconds << " " << row.nanoseconds;
    }
}

TEST_F(FileFacts, DateIsThatOfTheFirstMatch)
{
    folder.Write("B.x");
    folder.Write("a.x");
    folder.MakeFolder("c");
    SetTime("B.x", 2000000, 0);
    SetTime("a.x", 1000000, 0);
    SetTime("c", 3000000, 0);
    EXPECT_EQ(1000000, FileDate(Path("*.X")));
    EXPECT_EQ(3000000, FileDate(Path("c"))); // a folder is a match like any other
}
#endif

TEST_F(FileFacts, OfNothingAreZero)
{
    folder.Write("sub/file", "abc");
    for (DString const &name : {Path("missing"), Path("x*"), Path("sub\\"), Path("sub\\x*"), DString(), nullString(),
                                DString("\\\\no-such-server\\share\\file"), DString("Z:"), DString("Z:\\")}) {
        EXPECT_EQ(0, FileDate(name)) << bytesOf(name);
        EXPECT_EQ(0, GetFileLen(name)) << bytesOf(name);
    }
}

TEST_F(FileFacts, LengthIsTheLow32BitsOfTheSize)
{
    struct Row {
        unsigned long long size;
        int length;
    } const rows[] = {
        {0, 0},
        {1, 1},
        {70000, 70000},
        {0x7FFFFFFF, INT_MAX},
        {0x80000000, INT_MIN},
        {0xC0000000, -0x40000000},
        {0xFFFFFFFF, -1},
        {0x100000000, 0},
        {0x100000007, 7},
        {5000000001, 705032705},
    };
    folder.Write("File");
    for (Row const &row : rows) {
        std::filesystem::resize_file(folder.native("File"), row.size);
        EXPECT_EQ(row.length, GetFileLen(Path("FILE"))) << row.size;
    }
}

TEST_F(FileFacts, LengthIsThatOfTheFirstMatch)
{
    folder.Write("B.x", "12345");
    folder.Write("a.x", "1");
    EXPECT_EQ(1, GetFileLen(Path("*.x")));
    EXPECT_EQ(5, GetFileLen(Path("b*")));
    EXPECT_EQ(1, GetFileLen(Path("?.x")));
}

// ---- Listings --------------------------------------------------------------------------------

class Listings : public FilesTest {
protected:
    Listings()
    {
        for (char const *name : {"C.txt", "b.txt", "a.dat", ".hidden", ".a.txt"}) folder.Write("d/"s + name);
        for (char const *name : {"Z", "y", "X.txt", ".sub"}) folder.MakeFolder("d/"s + name);
    }
    Strings Files(char const *pattern, Strings const &before = {}, bool clear = true)
    {
        DStringArray names = List(before);
        EXPECT_TRUE(GetFiles(Path(pattern), names, clear));
        return Items(names);
    }
    Strings Folders(char const *pattern, Strings const &before = {}, bool clear = true)
    {
        DStringArray names = List(before);
        EXPECT_TRUE(GetFolders(Path(pattern), names, clear));
        return Items(names);
    }
};

TEST_F(Listings, FilesComeSortedApartFromCase)
{
    EXPECT_EQ((Strings{"a.dat", "b.txt", "C.txt"}), Files("d\\*"));
    EXPECT_EQ((Strings{"b.txt", "C.txt"}), Files("D\\*.TXT"));
    EXPECT_EQ((Strings{"C.txt"}), Files("d\\c*"));
    EXPECT_EQ((Strings{"b.txt", "C.txt"}), Files("d\\?.txt"));
    EXPECT_EQ((Strings{"a.dat"}), Files("d\\A.DAT"));
    EXPECT_EQ((Strings{}), Files("d\\*.none"));
    EXPECT_EQ((Strings{}), Files("d\\y"));
    EXPECT_EQ((Strings{}), Files("d\\"));
    EXPECT_EQ((Strings{}), Files("d\\.hidden"));
}

TEST_F(Listings, FilesAreAddedAndTheWholeListIsSorted)
{
    EXPECT_EQ((Strings{"a.dat", "B", "b.txt", "C.txt", "z"}), Files("d\\*", {"z", "B"}, false));
    EXPECT_EQ((Strings{"B", "z"}), Files("d\\*.none", {"z", "B"}, false));
    EXPECT_EQ((Strings{"B", "z"}), Files("missing\\*", {"z", "B"}, false));
    EXPECT_EQ((Strings{"a.dat", "a.dat"}), Files("d\\a*", {"a.dat"}, false));
    EXPECT_EQ((Strings{"a.dat"}), Files("d\\a*", {"z", "B"}, true));
    EXPECT_EQ((Strings{}), Files("missing\\*", {"z", "B"}, true));
}

TEST_F(Listings, FoldersKeepTheOrderInWhichTheyCome)
{
    EXPECT_EQ((Strings{"X.txt", "y", "Z"}), Folders("d\\*"));
    EXPECT_EQ((Strings{"X.txt"}), Folders("d\\*.TXT"));
    EXPECT_EQ((Strings{"zz", "B", "X.txt", "y", "Z"}), Folders("d\\*", {"zz", "B"}, false));
    EXPECT_EQ((Strings{"zz", "B"}), Folders("missing\\*", {"zz", "B"}, false));
    EXPECT_EQ((Strings{"y"}), Folders("d\\Y", {"zz", "B"}, true));
    EXPECT_EQ((Strings{}), Folders("missing\\*", {"zz", "B"}, true));
    EXPECT_EQ((Strings{}), Folders("d\\.s*"));
}

TEST_F(Listings, OfWhatCannotBeAreEmpty)
{
    for (DString const &pattern : {DString(), nullString(), DString("Z:\\"), DString("Z:"),
                                   DString("\\\\srv\\share\\*"), Path(std::string(5000, 'x')), Path("d\\*\\*")}) {
        DStringArray files = List({"old"}), folders = List({"old"});
        EXPECT_TRUE(GetFiles(pattern, files, true));
        EXPECT_TRUE(GetFolders(pattern, folders, true));
        EXPECT_EQ(0, files.Count() + folders.Count()) << bytesOf(pattern);
    }
}

TEST_F(Listings, OfADeadDiskAreEmpty)
{
    Faults const faults(1, INT_MAX);
    EXPECT_EQ((Strings{}), Files("d\\*", {"old"}, true));
    EXPECT_EQ((Strings{"B", "z"}), Files("d\\*", {"z", "B"}, false));
    EXPECT_EQ((Strings{}), Folders("d\\*", {"old"}, true));
}

TEST_F(Listings, OfManyFilesAreComplete)
{
    for (int i = 0; i < 1000; ++i) folder.Write("many/" + std::to_string(i * 7919 % 100000));
    Strings const names = Files("many\\*");
    EXPECT_EQ(1000u, names.size());
    EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
}

#if !defined _WIN32
TEST_F(Listings, DatesComeWithTheNames)
{
    for (char const *name : {"a.dat", "b.txt", "C.txt"}) {
        timespec const times[2] = {{name[0] * 1000000, 0}, {name[0] * 1000000, 0}};
        ASSERT_EQ(0, utimensat(AT_FDCWD, folder.native("d/"s + name).c_str(), times, 0));
    }
    DStringArray names = List({"old"});
    DArray<long long, 0> created(5), modified(5);
    EXPECT_TRUE(GetFilesDates(Path("d\\*"), names, created, modified));
    EXPECT_EQ((Strings{"a.dat", "b.txt", "C.txt"}), Items(names));
    ASSERT_EQ(3, created.Count());
    ASSERT_EQ(3, modified.Count());
    for (int i = 0; i < 3; ++i) {
        struct statx facts {};
        ASSERT_EQ(
            0, statx(AT_FDCWD, folder.native("d/" + bytesOf(names[i])).c_str(), 0, STATX_BTIME | STATX_MTIME, &facts));
        EXPECT_EQ(facts.stx_mtime.tv_sec, modified[i]);
        if (facts.stx_mask & STATX_BTIME) EXPECT_EQ(facts.stx_btime.tv_sec, created[i]);
        else EXPECT_EQ(modified[i], created[i]);
    }
}
#endif

TEST_F(Listings, DatesOfNothingEmptyAllThree)
{
    DStringArray names = List({"old"});
    DArray<long long, 0> created(5), modified(5);
    EXPECT_TRUE(GetFilesDates(Path("missing\\*"), names, created, modified));
    EXPECT_EQ(0, names.Count() + created.Count() + modified.Count());
}

} // namespace
