/// The settings store: what reaches the disk and when, snapshots, and the comparison with the disk.
#include "files/DIni.h"

#include <climits>

#include "support/Faults.h"
#include "support/Ini.h"

namespace {

// ---- The written form ------------------------------------------------------------------------

class IniWriting : public IniTest {};

TEST_F(IniWriting, FormHasNoLineEndBehindTheLastLine)
{
    struct Row {
        char const *loaded, *written;
    } const rows[] = {
        {"[A]\nx=1\ny=2\n\n[B]\nz=3\n", "[A]\r\nx=1\r\ny=2\r\n[B]\r\nz=3"},
        {"[A]", "[A]\r\n"},
        {"[A]\n[B]\n[C]", "[A]\r\n[B]\r\n[C]\r\n"},
        {"[A]\nx=1\n[B]", "[A]\r\nx=1\r\n[B]\r\n"},
        {"[A]\n[B]\nx=1", "[A]\r\n[B]\r\nx=1"},
        {"[A]b]c\n;c\n x \n", "[A]b]\r\n;c\r\n x "},
        {"junk", ""},
    };
    for (Row const &row : rows) {
        Load(row.loaded);
        EXPECT_TRUE(ini.WriteFile(DString(), false));
        EXPECT_EQ(row.written, File());
    }
}

TEST_F(IniWriting, EmptyLinesOfMemory)
{
    struct Row {
        Strings lines;
        char const *middle, *last;
    } const rows[] = {
        {{}, "[A]\r\n[B]\r\n", "[A]\r\n"},
        {{""}, "[A]\r\n[B]\r\n", "[A]\r\n"},
        {{"", ""}, "[A]\r\n\r\n\r\n[B]\r\n", "[A]\r\n\r\n"},
        {{"x", ""}, "[A]\r\nx\r\n\r\n[B]\r\n", "[A]\r\nx\r\n"},
    };
    for (Row const &row : rows) {
        DIni memory;
        memory.SetFullSection("A", List(row.lines));
        memory.WriteFile(Path("last"), true);
        memory.SetFullSection("B", DStringArray());
        memory.WriteFile(Path("middle"), true);
        EXPECT_EQ(row.last, folder.Read("last"));
        EXPECT_EQ(row.middle, folder.Read("middle"));
    }
}

TEST_F(IniWriting, WithoutAnyNameIsTrueAndWritesNothing)
{
    ini.SetSection("A");
    ini.SetKeyValue("x", "1");
    EXPECT_TRUE(ini.WriteFile(DString(), false));
    EXPECT_TRUE(ini.WriteFile(nullString(), true));
    EXPECT_EQ("1", Value("x"));
    EXPECT_EQ("(missing)", LogText());
}

TEST_F(IniWriting, KeepNameDecidesWhoseFileItIs)
{
    LoadA("x=1");
    EXPECT_TRUE(ini.WriteFile(Path("copy.ini"), true));
    EXPECT_EQ("[A]\r\nx=1", folder.Read("copy.ini"));
    EXPECT_EQ(bytesOf(Path("s.ini")), bytesOf(ini.FileName()));
    EXPECT_TRUE(ini.WriteFile(Path("moved.ini"), false));
    EXPECT_EQ(bytesOf(Path("moved.ini")), bytesOf(ini.FileName()));
    ini.SetKeyValue("x", "2");
    EXPECT_EQ("[A]\r\nx=2", folder.Read("moved.ini"));
    EXPECT_EQ("[A]\r\nx=1", folder.Read("copy.ini"));
    EXPECT_EQ("[A]\r\nx=1", File());
}

TEST_F(IniWriting, StoreWithoutAFileGetsOne)
{
    ini.SetSection("A");
    ini.SetKeyValue("x", "1");
    EXPECT_TRUE(ini.WriteFile(Path("s.ini"), false));
    ini.SetKeyValue("x", "2");
    EXPECT_EQ("[A]\r\nx=2", File());
}

TEST_F(IniWriting, FailureIsLoggedAndChangesNothing)
{
    folder.MakeFolder("sub");
    LoadA("x=1");
    for (char const *name : {"sub", "missing\\s.ini", "a*"}) {
        folder.Write("user/Log.txt");
        EXPECT_FALSE(ini.WriteFile(Path(name), false));
        EXPECT_EQ("error opening for write by 0.00e+00\r\n", LogText()) << name;
        EXPECT_EQ(bytesOf(Path("s.ini")), bytesOf(ini.FileName()));
    }
}

TEST_F(IniWriting, FailedWriteThroughLeavesMemoryAhead)
{
    LoadA("x=1");
    {
        Faults const faults(1, 1, "OpenFile");
        ini.SetKeyValue("x", "2");
    }
    EXPECT_EQ("2", Value("x"));
    EXPECT_EQ("[A]\r\nx=1", File());
    EXPECT_EQ("error opening for write by 0.00e+00\r\n", LogText());
    ini.SetKeyValue("y", "3");
    EXPECT_EQ("[A]\r\nx=2\r\ny=3", File());
}

TEST_F(IniWriting, IsInPlace)
{
    LoadA("x=1");
    std::filesystem::create_hard_link(folder.native("s.ini"), folder.native("other name"));
    ini.SetKeyValue("x", "2");
    EXPECT_EQ("[A]\r\nx=2", folder.Read("other name"));
}

TEST_F(IniWriting, CommentAtTheStartOfASectionStaysThere)
{
    LoadA(";comment\nx=1");
    ini.SetKeyValue("x", "2");
    EXPECT_EQ("[A]\r\n;comment\r\nx=2", File());
}

// ---- Write-through and hold ------------------------------------------------------------------

class IniHold : public IniTest {};

/// Every operation that ends with a write, in order.
void ChangeAll(DIni &ini, int step)
{
    switch (step) {
    case 0:
        ini.SetKeyValue("x", "2");
        break;
    case 1:
        ini.DeleteKey("A", "x");
        break;
    case 2:
        ini.DeleteSection("B");
        break;
    case 3:
        ini.DeleteSection("missing");
        break;
    case 4:
        ini.RenameSection("B", "C");
        break;
    case 5:
        ini.SetFullSection("B", List({"z=1"}));
        break;
    case 6:
        ini.AddSection("N", List({"z=1"}));
        break;
    }
}

char const *const changed[] = {
    "[A]\r\nx=2\r\n[B]\r\ny=2",
    "[A]\r\n[B]\r\ny=2",
    "[A]\r\nx=1",
    "[A]\r\nx=1\r\n[B]\r\ny=2",
    "[A]\r\nx=1\r\n[C]\r\ny=2",
    "[A]\r\nx=1\r\n[B]\r\nz=1",
    "[A]\r\nx=1\r\n[B]\r\ny=2\r\n[N]\r\nz=1",
};

TEST_F(IniHold, WithoutItEveryChangeIsWrittenThrough)
{
    for (int step = 0; step < 7; ++step) {
        LoadA("x=1\n[B]\ny=2\n");
        ChangeAll(ini, step);
        EXPECT_EQ(changed[step], File()) << step;
    }
}

TEST_F(IniHold, KeepsEveryChangeInMemoryAndItsEndWrites)
{
    for (int step = 0; step < 7; ++step) {
        LoadA("x=1\n[B]\ny=2\n");
        ini.HoldWrite(true);
        ini.HoldWrite(true);
        ChangeAll(ini, step);
        EXPECT_EQ("[A]\r\nx=1\n[B]\ny=2\n", File()) << step;
        ini.HoldWrite(false);
        EXPECT_EQ(changed[step], File()) << step;
    }
}

TEST_F(IniHold, EndWritesWithoutAChangeToo)
{
    Load("[A]\nx=1\n");
    ini.HoldWrite(true);
    ini.HoldWrite(false);
    EXPECT_EQ("[A]\r\nx=1", File());
}

TEST_F(IniHold, EndWithoutABeginningWritesNothing)
{
    Load("[A]\nx=1\n");
    ini.HoldWrite(false);
    EXPECT_EQ("[A]\nx=1\n", File());
}

TEST_F(IniHold, IsClearedByALoad)
{
    LoadA("x=1");
    ini.HoldWrite(true);
    ini.Refresh();
    ini.SetSection("A");
    ini.SetKeyValue("x", "2");
    EXPECT_EQ("[A]\r\nx=2", File());
}

TEST_F(IniHold, OutlivesAFailedLoad)
{
    for (DString const &name : {DString(), Path("missing\\s.ini")}) {
        LoadA("x=1");
        ini.HoldWrite(true);
        EXPECT_FALSE(ini.SetFileName(name));
        ini.WriteFile(Path("s.ini"), false);
        EXPECT_EQ("", File());
        ini.SetFullSection("A", List({"x=1"}));
        EXPECT_EQ("", File());
    }
}

TEST_F(IniHold, DoesNotHoldBackWriteFileCommitAndRestore)
{
    LoadA("x=1");
    ini.HoldWrite(true);
    ini.SetKeyValue("x", "2");
    EXPECT_TRUE(ini.WriteFile(DString(), false));
    EXPECT_EQ("[A]\r\nx=2", File());
    ini.SetKeyValue("x", "3");
    ini.CommitFile();
    EXPECT_EQ("[A]\r\nx=3", File());
    ini.SetKeyValue("x", "4");
    EXPECT_EQ("[A]\r\nx=3", File()); // still held
    folder.Write("s.ini", "changed by somebody else");
    ini.RestoreFile();
    EXPECT_EQ("[A]\r\nx=3", File());
    ini.SetSection("A");
    ini.SetKeyValue("x", "5");
    EXPECT_EQ("[A]\r\nx=3", File()); // still
}

TEST_F(IniHold, IsOffInANewStore)
{
    DIni fresh;
    fresh.WriteFile(Path("s.ini"), false);
    fresh.SetSection("A");
    fresh.SetKeyValue("x", "1");
    EXPECT_EQ("[A]\r\nx=1", File());
}

// ---- Snapshots -------------------------------------------------------------------------------

class IniSnapshot : public IniTest {};

TEST_F(IniSnapshot, RestoreGoesBackToTheLoadedText)
{
    Load("junk\n[A]\nx=1\n\n[B]\n");
    ini.SetSection("A");
    ini.SetKeyValue("x", "2");
    ini.DeleteSection("B");
    ini.RestoreFile();
    EXPECT_EQ((Strings{"A", "B"}), Names());
    EXPECT_EQ((Strings{"x=1"}), Lines("A"));
    EXPECT_EQ("[A]\r\nx=1\r\n[B]\r\n", File());
}

TEST_F(IniSnapshot, RestoreForgetsTheCurrentSection)
{
    LoadA("x=1");
    ini.RestoreFile();
    EXPECT_EQ(0, ini.nKeys());
    EXPECT_EQ("def", Value("x"));
}

TEST_F(IniSnapshot, WritingDoesNotMoveIt)
{
    LoadA("x=1");
    ini.SetKeyValue("x", "2");
    ini.WriteFile(DString(), false);
    ini.HoldWrite(true);
    ini.HoldWrite(false);
    ini.RestoreFile();
    EXPECT_EQ("[A]\r\nx=1", File());
}

TEST_F(IniSnapshot, CommitMovesIt)
{
    LoadA("x=1");
    ini.SetKeyValue("x", "2");
    ini.CommitFile();
    EXPECT_EQ("2", Value("x")); // the current section stays
    ini.SetKeyValue("x", "3");
    ini.RestoreFile();
    EXPECT_EQ("[A]\r\nx=2", File());
    EXPECT_EQ((Strings{"x=2"}), Lines("A"));
}

TEST_F(IniSnapshot, LoadMovesIt)
{
    LoadA("x=1");
    folder.Write("s.ini", "[A]\r\nx=2");
    ini.Refresh();
    ini.RestoreFile();
    EXPECT_EQ("[A]\r\nx=2", File());
}

TEST_F(IniSnapshot, StaysThroughALostFile)
{
    LoadA("x=1");
    std::filesystem::remove(folder.native("s.ini"));
    ini.RestoreFile();
    EXPECT_EQ("[A]\r\nx=1", File());
}

TEST_F(IniSnapshot, OfAStoreWithoutAFileIsEmpty)
{
    ini.SetSection("A");
    ini.SetKeyValue("x", "1");
    ini.RestoreFile();
    EXPECT_EQ(0, ini.nSections());
    ini.CommitFile();
}

// ---- Comparison with the disk ----------------------------------------------------------------

class IniChanged : public IniTest {};

TEST_F(IniChanged, ComparesSectionBySection)
{
    char const *const memory = "[A]\r\nx=1\r\ny=2\r\n;c\r\n[B]\r\nz=3\r\n[Empty]\r\n";
    struct Row {
        char const *disk;
        bool changed;
    } const rows[] = {
        {memory, false},
        {"[A]\nx=1\ny=2\n;c\n[B]\nz=3\n[Empty]", false},
        {"[A]\n;c\ny=2\nx=1\n[B]\nz=3\n[Empty]", false},
        {"[Empty]\n[B]\nz=3\n[A]\nx=1\ny=2\n;c", false},
        {"[a]\nX=1\nY=2\n;C\n[b]\nZ=3\n[EMPTY]", false},
        {"[A] note\nx=1\ny=2\n;c\n[B]\nz=3\n[Empty]", false},
        {"[A\nx=1\ny=2\n;c\n[B]\nz=3\n[Empty", false},
        {"[A]\nx=2\ny=2\n;c\n[B]\nz=3\n[Empty]", true},
        {"[A]\nx=1\ny=2\n[B]\nz=3\n[Empty]", true},
        {"[A]\nx=1\ny=2\n;c\n;d\n[B]\nz=3\n[Empty]", true},
        {"[A]\nx=1\nx=1\ny=2\n;c\n[B]\nz=3\n[Empty]", true},
        {"[A]\nx=1\ny=2\n;c\n[B]\n[Empty]\nz=3", true},
        {"[A]\nx=1\ny=2\n;c\n[Empty]\n[B]", true},
        {"[A]\nx=1\ny=2\n;c\n[B]\nz=3", true},
        {"[A]\nx=1\ny=2\n;c\n[B]\nz=3\n[Empty]\n[New]", true},
        {"[A]\nx=1\ny=2\n;c\n[B2]\nz=3\n[Empty]", true},
        {"[A]\nx=1\ny=2\n;c\n[B ]\nz=3\n[Empty]", true},
        {"[A]\n\nx=1\ny=2\n;c\n[B]\nz=3\n[Empty]", true},
        {"[A]\nx=1\ny=2\n;c\n[B]\nz=3\n[Empty]\n ", true},
        {"\n[A]\nx=1\ny=2\n;c\n[B]\nz=3\n[Empty]", true},
        {"x=1\n[A]\nx=1\ny=2\n;c\n[B]\nz=3\n[Empty]", true},
        {"", true},
        {"\n", true},
        {"xA]\nx=1\ny=2\n;c\n[B]\nz=3\n[Empty]", true},
    };
    for (Row const &row : rows) {
        Load(memory);
        folder.Write("s.ini", row.disk);
        EXPECT_EQ(row.changed, ini.Changed()) << row.disk;
    }
}

TEST_F(IniChanged, OuterSpacesCountAlthoughMemoryHasThemToo)
{
    for (char const *text : {"[A]\n x=1", "[A]\nx=1 ", "[A]\n\nx=1", "[A]\n \n", "junk\n[A]", " \n[A]"}) {
        Load(text);
        EXPECT_TRUE(ini.Changed()) << text;
    }
}

TEST_F(IniChanged, TabsAreNoSpaces)
{
    Load("[A]\n\tx=1\t");
    EXPECT_FALSE(ini.Changed());
}

TEST_F(IniChanged, IsFalseAfterAWriteAndTrueAfterAHeldChange)
{
    LoadA("x=1");
    ini.SetKeyValue("y", "2");
    EXPECT_FALSE(ini.Changed());
    ini.Refresh();
    EXPECT_FALSE(ini.Changed());
    ini.HoldWrite(true);
    ini.SetSection("A");
    EXPECT_FALSE(ini.Changed());
    ini.SetKeyValue("x", "3");
    EXPECT_TRUE(ini.Changed());
    ini.HoldWrite(false);
    EXPECT_FALSE(ini.Changed());
}

TEST_F(IniChanged, NewSectionInMemoryCounts)
{
    Load("[A]\nx=1");
    ini.SetSection("B");
    EXPECT_TRUE(ini.Changed());
}

TEST_F(IniChanged, MissingFileIsOneWithoutLines)
{
    EXPECT_FALSE(ini.Changed());
    ini.SetFileName(Path("s.ini"));
    EXPECT_FALSE(ini.Changed());
    std::filesystem::remove(folder.native("s.ini"));
    EXPECT_FALSE(ini.Changed());
    ini.SetSection("A");
    EXPECT_TRUE(ini.Changed());
}

TEST_F(IniChanged, LooksAtContentNotAtTimes)
{
    Load("[A]\r\nx=1");
    folder.Write("s.ini", "[A]\r\nx=1");
    std::filesystem::last_write_time(folder.native("s.ini"), std::filesystem::file_time_type());
    EXPECT_FALSE(ini.Changed());
}

TEST_F(IniChanged, LeavesTheStoreAsItIs)
{
    LoadA("x=1");
    folder.Write("s.ini", "[A]\nx=2");
    EXPECT_TRUE(ini.Changed());
    EXPECT_EQ("1", Value("x"));
    EXPECT_EQ("[A]\nx=2", File());
}

TEST_F(IniChanged, RepeatedSectionsAreSafe)
{
    Load("[A]\nx=1\n[A]\nx=1\n[a]\nx=1");
    ini.Changed();
    Load("[A]\nx=1");
    folder.Write("s.ini", "[A]\nx=1\n[A]\nx=1");
    ini.Changed();
}

} // namespace
