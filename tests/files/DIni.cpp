/// The settings store: loading and sections. Keys stand in DIniKeys.cpp, what it writes and how it compares in
/// DIniWriting.cpp.
#include "files/DIni.h"

#include <climits>

#include "support/Faults.h"
#include "support/Ini.h"

namespace {

using namespace std::string_literals;

// ---- Loading ---------------------------------------------------------------------------------

class IniLoading : public IniTest {};

TEST_F(IniLoading, NewStoreHasNothing)
{
    EXPECT_EQ("", bytesOf(ini.FileName()));
    EXPECT_EQ(0, ini.nSections());
    EXPECT_EQ(0, ini.nKeys());
    EXPECT_EQ("def", Value("x"));
}

TEST_F(IniLoading, FileBecomesSectionsOfLines)
{
    struct Row {
        std::string file;
        Strings names;
        std::vector<Strings> lines;
    } const rows[] = {
        {"[A]\r\nx=1\r\ny=2\r\n[B]\r\nz=3", {"A", "B"}, {{"x=1", "y=2"}, {"z=3"}}},
        {"[A]\nx=1\n[B]\r\ny=2\n", {"A", "B"}, {{"x=1"}, {"y=2"}}},
        {"[A]", {"A"}, {{}}},
        {"[A", {"A"}, {{}}},
        {"[", {""}, {{}}},
        {"[]", {""}, {{}}},
        {"[A]b]c\nx=1", {"A]b"}, {{"x=1"}}},
        {"[A]]", {"A]"}, {{}}},
        {"[[A]]", {"[A]"}, {{}}},
        {"[A] ; note", {"A"}, {{}}},
        {"[ a B ]", {" a B "}, {{}}},
        {"[A]\n [B]\nx=1", {"A"}, {{" [B]", "x=1"}}},
        {"x=1\n;c\n\n[A]\ny=2", {"A"}, {{"y=2"}}},
        {"x=1\ny=2", {}, {}},
        {" [A]\nx=1", {}, {}},
        {"[A]\n\n   \r\nx=1\n \n", {"A"}, {{"x=1"}}},
        {"[A]\n\t\n", {"A"}, {{"\t"}}},
        {"[A]\n;c\nx=1\n;d=2", {"A"}, {{";c", "x=1", ";d=2"}}},
        {"[A]\n  x = 1  \njust text\n=\n", {"A"}, {{"  x = 1  ", "just text", "="}}},
        {"[\xC4]\n\xFF=\x80\n", {"\xC4"}, {{"\xFF=\x80"}}},
    };
    for (Row const &row : rows) {
        SCOPED_TRACE(row.file);
        Load(row.file);
        EXPECT_EQ(row.names, Names());
        ASSERT_EQ(static_cast<int>(row.lines.size()), ini.nSections());
        for (std::size_t i = 0; i < row.names.size(); ++i) EXPECT_EQ(row.lines[i], Lines(row.names[i]));
    }
}

TEST_F(IniLoading, SectionsOfOneNameStayApartAndTheFirstIsFound)
{
    Load("[A]\nx=1\n[B]\n[a]\nx=2");
    EXPECT_EQ(3, ini.nSections());
    EXPECT_EQ("1", bytesOf(ini.GetSectionKeyValue("a", "x", "def")));
    EXPECT_EQ("[A]\r\nx=1\r\n[B]\r\n[a]\r\nx=2", Image());
}

TEST_F(IniLoading, RewritingDropsWhatStoodBeforeTheFirstSection)
{
    Load("title\r\nx=0\r\n[A]\r\nx=1\r\n");
    ini.WriteFile(DString(), false);
    EXPECT_EQ("[A]\r\nx=1", File());
}

TEST_F(IniLoading, ConstructorLoads)
{
    folder.Write("s.ini", "[A]\nx=1");
    DIni const loaded(Path("s.ini"));
    EXPECT_EQ(bytesOf(Path("s.ini")), bytesOf(loaded.FileName()));
    EXPECT_EQ(1, loaded.nSections());
}

TEST_F(IniLoading, EmptyNameClearsAndAnswersFalse)
{
    for (DString const &name : {DString(), nullString()}) {
        LoadA("x=1");
        EXPECT_FALSE(ini.SetFileName(name));
        EXPECT_EQ("", bytesOf(ini.FileName()));
        EXPECT_EQ(0, ini.nSections());
        EXPECT_EQ(0, ini.nKeys());
        ini.SetKeyValue("x", "2");
        EXPECT_EQ("[A]\r\nx=1", File());
    }
}

TEST_F(IniLoading, MissingFileIsMadeEmpty)
{
    LoadA("x=1");
    EXPECT_TRUE(ini.SetFileName(Path("new.ini")));
    EXPECT_EQ("", folder.Read("new.ini"));
    EXPECT_EQ(bytesOf(Path("new.ini")), bytesOf(ini.FileName()));
    EXPECT_EQ(0, ini.nSections());
    EXPECT_TRUE(clock.sleeps.empty());
    ini.RestoreFile(); // nothing of the file before is left to go back to
    EXPECT_EQ("", folder.Read("new.ini"));
}

TEST_F(IniLoading, FileThatCannotBeMadeLeavesTheStoreWithoutOne)
{
    folder.MakeFolder("sub");
    for (char const *name : {"missing\\s.ini", "sub", "a?b.ini"}) {
        LoadA("x=1");
        EXPECT_FALSE(ini.SetFileName(Path(name))) << name;
        EXPECT_EQ("", bytesOf(ini.FileName()));
        EXPECT_EQ(0, ini.nSections());
        EXPECT_EQ(0, ini.nKeys());
    }
    EXPECT_FALSE(ini.SetFileName("\\\\no-such-server\\share\\s.ini"));
    EXPECT_FALSE(folder.Has("missing"));
}

TEST_F(IniLoading, TakesTheSpellingOfTheDisk)
{
    folder.Write("Set.ini", "[A]");
    EXPECT_TRUE(ini.SetFileName(Path("sET.INI")));
    EXPECT_EQ(bytesOf(Path("Set.ini")), bytesOf(ini.FileName()));
}

TEST_F(IniLoading, EmptyFileCostsTenSleeps)
{
    Load("");
    EXPECT_EQ(std::vector<int>(10, 50), clock.sleeps);
    EXPECT_EQ(0, ini.nSections());
    EXPECT_EQ(bytesOf(Path("s.ini")), bytesOf(ini.FileName()));
    ini.Refresh();
    EXPECT_EQ(20u, clock.sleeps.size());
}

TEST_F(IniLoading, FileWithContentCostsNone)
{
    for (char const *text : {" ", "\n", "x", "[A]\nx=1"}) Load(text);
    EXPECT_TRUE(clock.sleeps.empty());
}

TEST_F(IniLoading, FileThatIsBeingRewrittenIsWaitedFor)
{
    for (std::size_t n : {1u, 2u, 9u, 10u}) {
        clock.sleeps.clear();
        clock.AtSleep(n, [&] { folder.Write("s.ini", "[A]\nx=1"); });
        Load("");
        EXPECT_EQ(std::vector<int>(n, 50), clock.sleeps);
        EXPECT_EQ((Strings{"x=1"}), Lines("A")) << n;
    }
}

TEST_F(IniLoading, FileThatComesAfterTenSleepsIsTooLate)
{
    clock.AtSleep(11, [&] { folder.Write("s.ini", "[A]\nx=1"); });
    Load("");
    EXPECT_EQ(0, ini.nSections());
    EXPECT_EQ("", File());
}

TEST_F(IniLoading, LogsTriesFromTheSecondOn)
{
    Logging = true;
    for (std::size_t n : {1u, 2u, 10u}) {
        clock.sleeps.clear();
        clock.AtSleep(n, [&] { folder.Write("s.ini", "[A]"); });
        folder.Write("user/Log.txt");
        Load("");
        std::string const log = std::to_string(n) + " tries needed to read from " + bytesOf(Path("s.ini")) + " by ";
        EXPECT_EQ(n < 2 ? "" : log, LogText().substr(0, log.size()));
    }
}

TEST_F(IniLoading, LogsNoTriesUnlessAskedTo)
{
    Load("");
    EXPECT_EQ("(missing)", LogText());
}

TEST_F(IniLoading, UnreadableFileCountsAsEmpty)
{
    folder.Write("s.ini", "[A]\nx=1");
    {
        Faults const faults(1, INT_MAX, "OpenFile");
        EXPECT_TRUE(ini.SetFileName(Path("s.ini")));
    }
    EXPECT_EQ(10u, clock.sleeps.size());
    EXPECT_EQ(0, ini.nSections());
    EXPECT_EQ("[A]\nx=1", File());
}

TEST_F(IniLoading, RefreshReadsTheFileAgainAndForgetsTheSection)
{
    LoadA("x=1");
    folder.Write("s.ini", "[A]\nx=2\n[B]");
    EXPECT_TRUE(ini.Refresh());
    EXPECT_EQ((Strings{"x=2"}), Lines("A"));
    EXPECT_EQ(0, ini.nKeys());
    EXPECT_EQ("def", Value("x"));
}

TEST_F(IniLoading, RefreshWithoutAFileAnswersFalse)
{
    EXPECT_FALSE(ini.Refresh());
}

TEST_F(IniLoading, CopiesAreApartAndComplete)
{
    LoadA("x=1");
    ini.HoldWrite(true);
    DIni copy(ini), assigned;
    assigned = ini;
    for (DIni *const other : {&copy, &assigned}) {
        other->SetKeyValue("x", "2"); // current section and hold came along
        EXPECT_EQ("2", bytesOf(other->GetKeyValue("x", "")));
        EXPECT_EQ("1", Value("x"));
        EXPECT_EQ("[A]\r\nx=1", File());
        other->RestoreFile(); // the snapshot, too
        EXPECT_EQ((Strings{"x=1"}), Items(other->GetFullSection("A")));
        EXPECT_EQ(bytesOf(ini.FileName()), bytesOf(other->FileName()));
    }
}

TEST_F(IniLoading, EveryPrefixOfAFileGivesAStore)
{
    std::string const whole = ";c\r\n[A]\r\nx=1\r\n\r\n[B]z]\r\n=\r\n;d\n[";
    for (std::size_t n = 1; n <= whole.size(); ++n) {
        Load(whole.substr(0, n));
        int const nSections = n < 5 ? 0 : n < 17 ? 1 : n < whole.size() ? 2 : 3;
        EXPECT_EQ(nSections, ini.nSections()) << n;
    }
}

TEST_F(IniLoading, RandomBytesGiveAStoreThatComesBack)
{
    unsigned int seed = 3;
    for (int round = 1; round < 60; ++round) {
        std::string bytes(static_cast<std::size_t>(round * 3), '.');
        for (char &c : bytes) c = "[]=; \r\n\nx\0\xFF"[(seed = seed * 1664525 + 1013904223) % 11];
        Load(bytes);
        ini.SetSection("x");
        ini.SetKeyValue("x", "1");
        EXPECT_EQ("1", Value("x"));
        ini.Changed();
        ini.RestoreFile();
    }
}

TEST_F(IniLoading, LoadstringLeavesTheCurrentSection)
{
    Load("[A]\nx=1\n[B]\ny=2");
    ini.SetSection("B");
    ini.loadstring();
    EXPECT_EQ("2", Value("y"));
}

// ---- Sections --------------------------------------------------------------------------------

class IniSections : public IniTest {};

TEST_F(IniSections, SetSectionFindsItInAnyCase)
{
    Load("[Alpha]\nx=1\n[B]");
    ini.SetSection("aLPHA");
    EXPECT_EQ("1", Value("x"));
    EXPECT_EQ(2, ini.nSections());
}

TEST_F(IniSections, SetSectionMakesAMissingOneAtTheEndWithoutWriting)
{
    Load("[A]\nx=1");
    ini.SetSection("New");
    EXPECT_EQ((Strings{"A", "New"}), Names());
    EXPECT_EQ(0, ini.nKeys());
    EXPECT_EQ("[A]\nx=1", File());
    ini.SetKeyValue("y", "2");
    EXPECT_EQ("[A]\r\nx=1\r\n[New]\r\ny=2", File());
}

TEST_F(IniSections, SetSectionOfAPrefixIsAnotherSection)
{
    LoadA("x=1");
    ini.SetSection("AB");
    ini.SetSection("A ");
    EXPECT_EQ((Strings{"A", "AB", "A "}), Names());
}

TEST_F(IniSections, EmptyNameIsAName)
{
    LoadA("x=1");
    ini.SetSection(DString());
    ini.SetSection("");
    ini.SetKeyValue("y", "2");
    EXPECT_EQ("[A]\r\nx=1\r\n[]\r\ny=2", File());
}

TEST_F(IniSections, NullNameIsAnEmptyOne)
{
    LoadA("x=1");
    ini.SetSection(nullString());
    ini.SetKeyValue("y", "2");
    EXPECT_EQ("[A]\r\nx=1\r\n[]\r\ny=2", File());
    ini.RenameSection(nullString(), nullString());
    ini.SetFullSection("A", List({"p=1"}));
    ini.DeleteSection("A");
    EXPECT_EQ("[]\r\ny=2", File());
}

TEST_F(IniSections, SecondOfOneNameStaysCurrentWhenItIsSetAgain)
{
    Load("[A]\nx=1\n[B]\n[B2]");
    ini.SetSection("B2");
    ini.RenameSection("B2", "A");
    ini.SetSection("a"); // already there, so the first of that name isn't looked for
    EXPECT_EQ("def", Value("x"));
}

TEST_F(IniSections, ExistApartFromCase)
{
    Load("[Alpha]");
    EXPECT_TRUE(ini.SectionExists("ALPHA"));
    EXPECT_FALSE(ini.SectionExists("Alph"));
    EXPECT_FALSE(ini.SectionExists("Alpha "));
    EXPECT_FALSE(ini.SectionExists(DString()));
    EXPECT_FALSE(ini.SectionExists(nullString()));
}

TEST_F(IniSections, ListsAreCopies)
{
    Load("[A]\nx=1");
    DStringArray names = ini.GetSectionNames(), lines = ini.GetFullSection("a");
    names[0] = "changed";
    lines.Clear();
    EXPECT_EQ((Strings{"A"}), Names());
    EXPECT_EQ((Strings{"x=1"}), Lines("A"));
    EXPECT_EQ((Strings{}), Lines("missing"));
}

TEST_F(IniSections, SetFullSectionReplacesTheLines)
{
    Load("[A]\nx=1\ny=2\n[B]\nz=3");
    ini.SetFullSection("a", List({"p=1", ";q"}));
    EXPECT_EQ("[A]\r\np=1\r\n;q\r\n[B]\r\nz=3", File());
    ini.SetFullSection("A", DStringArray());
    EXPECT_EQ("[A]\r\n[B]\r\nz=3", File());
}

TEST_F(IniSections, SetFullSectionAddsAMissingOneAtTheEnd)
{
    LoadA("x=1");
    ini.SetFullSection("New", List({"p=1"}));
    EXPECT_EQ("[A]\r\nx=1\r\n[New]\r\np=1", File());
    EXPECT_EQ("1", Value("x")); // the current section stays
}

TEST_F(IniSections, AddSectionReplacesToo)
{
    Load("[A]\nx=1");
    ini.AddSection("a", List({"y=2"}));
    EXPECT_EQ("[A]\r\ny=2", File());
    ini.AddSection("New", List({"p=1"}));
    EXPECT_EQ("[A]\r\ny=2\r\n[New]\r\np=1", File());
}

TEST_F(IniSections, RenameKeepsTheLines)
{
    Load("[A]\nx=1\n[B]");
    ini.SetSection("A");
    ini.RenameSection("a", "Alpha");
    EXPECT_EQ("[Alpha]\r\nx=1\r\n[B]\r\n", File());
    EXPECT_EQ("1", Value("x"));
}

TEST_F(IniSections, RenameOfAMissingOneDoesNotEvenWrite)
{
    Load("[A]\nx=1\n");
    ini.RenameSection("missing", "New");
    EXPECT_EQ("[A]\nx=1\n", File());
    EXPECT_EQ((Strings{"A"}), Names());
}

TEST_F(IniSections, DeleteTakesTheFirstOfItsName)
{
    Load("[A]\nx=1\n[B]\ny=2\n[a]\nx=3");
    ini.DeleteSection("A");
    EXPECT_EQ("[B]\r\ny=2\r\n[a]\r\nx=3", File());
    ini.DeleteSection("A");
    EXPECT_EQ("[B]\r\ny=2", File());
}

TEST_F(IniSections, DeleteForgetsTheCurrentOneInAnyCase)
{
    for (char const *name : {"B", "missing"}) {
        Load("[A]\nx=1\n[B]\ny=2");
        ini.SetSection("A");
        ini.DeleteSection(name);
        EXPECT_EQ(0, ini.nKeys()) << name;
        EXPECT_EQ("def", Value("x")) << name;
    }
}

TEST_F(IniSections, DeleteOfAMissingOneWritesAllTheSame)
{
    Load("[A]\nx=1\n");
    ini.DeleteSection("missing");
    EXPECT_EQ("[A]\r\nx=1", File());
}

} // namespace
