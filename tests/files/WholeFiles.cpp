/// What DFile does with whole files: texts, lists, tables and copies.
#include "files/DFile.h"

#include <algorithm>

#include "support/Faults.h"
#include "support/FilesFixture.h"
#include "support/StreamCalls.h"

namespace {

using namespace std::string_literals;

/// A file of this size that takes no room.
void MakeSparse(std::string const &file, unsigned long long size)
{
    std::filesystem::resize_file(file, size);
}

/// Bytes that don't repeat in any power of two.
std::string Pattern(std::size_t size)
{
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i % 251);
    return bytes;
}

// ---- Reading ---------------------------------------------------------------------------------

class WholeFileReading : public FilesTest {
protected:
    Strings Lines(std::string const &bytes)
    {
        folder.Write("data", bytes);
        DStringArray lines = List({"old"});
        DFile::GetLines(Path("data"), lines);
        return Items(lines);
    }
    DStringArray Table(std::string const &bytes, char const *delim)
    {
        folder.Write("data", bytes);
        DStringArray table = List({"old"});
        DFile::GetArray(Path("data"), table, delim);
        return table;
    }
    std::vector<Strings> Ragged(std::string const &bytes, char const *delim)
    {
        folder.Write("data", bytes);
        DArray<DStringArray, 1> table(3);
        DFile::GetStringTable(Path("data"), table, delim);
        std::vector<Strings> lines;
        for (int i = 0; i < table.Count(); ++i) lines.push_back(Items(table[i]));
        return lines;
    }
};

TEST_F(WholeFileReading, TextHasAllBytesUnchanged)
{
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
    for (std::string const &bytes : {""s, "x"s, "a\r\nb\n\r\n"s, "\0\0"s, all, Pattern(300000)}) {
        folder.Write("data", bytes);
        EXPECT_TRUE(bytes == bytesOf(DFile::GetText(Path("data")))) << bytes.size();
    }
}

TEST_F(WholeFileReading, TextOfWhatIsNoFileIsEmpty)
{
    folder.MakeFolder("sub");
    folder.Write("sub/file", "abc");
    for (char const *name : {"missing", "missing\\file", "sub", "sub\\", "sub\\f*", "sub\\fil?"})
        EXPECT_EQ("", bytesOf(DFile::GetText(Path(name)))) << name;
    EXPECT_EQ("", bytesOf(DFile::GetText(DString())));
    EXPECT_EQ("", bytesOf(DFile::GetText(nullString())));
    EXPECT_EQ("", bytesOf(DFile::GetText("\\\\no-such-server\\share\\file")));
    EXPECT_EQ("", bytesOf(DFile::GetText("Z:\\dev\\null")));
}

TEST_F(WholeFileReading, TextIsFoundInAnyCase)
{
    folder.Write("Sub/Data", "abc");
    EXPECT_EQ("abc", bytesOf(DFile::GetText(Path("SUB\\dATA"))));
}

TEST_F(WholeFileReading, TextHasTheLow32BitsOfTheSizeAsItsLength)
{
    struct Row {
        unsigned long long size;
        int length;
    } const rows[] = {{0x80000000, 0}, {0xFFFFFFFF, 0}, {0x100000000, 0}, {0x100000005, 5}, {0x180000000, 0}};
    folder.Write("data");
    for (Row const &row : rows) {
        MakeSparse(folder.native("data"), row.size);
        EXPECT_EQ(std::string(static_cast<std::size_t>(row.length), '\0'), bytesOf(DFile::GetText(Path("data"))))
            << row.size;
    }
}

TEST_F(WholeFileReading, TextThatCannotBeReadIsEmpty)
{
    folder.Write("data", "abc");
    for (char const *service : {"OpenFile", "Search"}) {
        Faults const faults(1, INT_MAX, service);
        EXPECT_EQ("", bytesOf(DFile::GetText(Path("data")))) << service;
    }
}

#if !defined _WIN32
TEST_F(WholeFileReading, TextBehindALinkIsTheText)
{
    folder.Write("data", "a longer text than the name of the link's target");
    std::filesystem::create_symlink("data", folder.native("link"));
    EXPECT_EQ(folder.Read("data"), bytesOf(DFile::GetText(Path("link"))));
}
#endif

TEST_F(WholeFileReading, LinesEndAtALineFeedWithOrWithoutACarriageReturn)
{
    EXPECT_EQ((Strings{"a", "b", "c"}), Lines("a\r\nb\nc"));
    EXPECT_EQ((Strings{"a", "", " ", "b\rc", "d\r"}), Lines("a\r\n\n \r\nb\rc\nd\r\r\n"));
    EXPECT_EQ((Strings{"", "a"}), Lines("\na\n"));
    EXPECT_EQ((Strings{"a", ""}), Lines("a\n\n"));
    EXPECT_EQ((Strings{}), Lines(""));
    std::string const long1(70000, 'x');
    EXPECT_EQ((Strings{long1, "y"}), Lines(long1 + "\r\ny\r\n"));
}

TEST_F(WholeFileReading, LinesOfAMissingFileAreNone)
{
    DStringArray lines = List({"old"});
    DFile::GetLines(Path("missing"), lines);
    EXPECT_EQ(0, lines.Count());
}

TEST_F(WholeFileReading, ArrayHasOneRunForEachLine)
{
    DStringArray const table = Table("a,b,c\r\nd\r\n,e\n", ",");
    EXPECT_EQ(3, table.RCount());
    EXPECT_EQ(3, table.CCount());
    EXPECT_EQ((Strings{"a", "b", "c", "d", "", "", "", "e", ""}), Items(table));
}

TEST_F(WholeFileReading, ArrayIsAsWideAsTheWidestOfTheFirst100Lines)
{
    std::string bytes;
    for (int i = 1; i <= 101; ++i) bytes += i == 100 ? "1 2 3\n" : i == 101 ? "1 2 3 4\n" : "1\n";
    DStringArray const table = Table(bytes, " ");
    EXPECT_EQ(3, table.RCount());
    ASSERT_EQ(101, table.CCount());
    EXPECT_EQ("3", bytesOf(table(2, 99)));
    EXPECT_EQ("3", bytesOf(table(2, 100)));
    EXPECT_EQ("", bytesOf(table(1, 0)));
}

TEST_F(WholeFileReading, ArrayOfAnEmptyOrMissingFileIsEmpty)
{
    DStringArray table = Table("", ",");
    EXPECT_EQ(0, table.Count());
    EXPECT_EQ(0, table.CCount());
    table = Table("a,b", ",");
    DFile::GetArray(Path("missing"), table, ",");
    EXPECT_EQ(0, table.Count());
    EXPECT_EQ(1, table.RCount());
}

TEST_F(WholeFileReading, StringTableIsRagged)
{
    EXPECT_EQ((std::vector<Strings>{{"a", "b", "c"}, {}, {"d"}, {"", "e"}}), Ragged("a,b,c\r\n\r\nd,\n,e\n", ","));
    EXPECT_EQ((std::vector<Strings>{{"a", "b"}, {}}), Ragged("  a  b \n  ", " "));
    EXPECT_EQ((std::vector<Strings>{}), Ragged("", ","));
}

TEST_F(WholeFileReading, StringTableKeepsLongLinesBehindTheHundredth)
{
    std::string bytes;
    for (int i = 1; i <= 150; ++i) bytes += i == 150 ? "1,2,3\n" : "1\n";
    std::vector<Strings> const table = Ragged(bytes, ",");
    ASSERT_EQ(150u, table.size());
    EXPECT_EQ((Strings{"1", "2", "3"}), table[149]);
}

TEST_F(WholeFileReading, StringTableOfAMissingFileIsEmpty)
{
    DArray<DStringArray, 1> table(3);
    DFile::GetStringTable(Path("missing"), table, ",");
    EXPECT_EQ(0, table.Count());
}

TEST_F(WholeFileReading, NullDelimiterDoesNotCutFields)
{
    EXPECT_EQ((Strings{"a,b"}), Items(Table("a,b", nullptr)));
    EXPECT_EQ((std::vector<Strings>{{"a,b"}, {"c"}}), Ragged("a,b\nc", nullptr));
}

TEST_F(WholeFileReading, RandomBytesGiveSomething)
{
    unsigned int seed = 7;
    for (int round = 0; round < 50; ++round) {
        std::string bytes(static_cast<std::size_t>(round * 7), '.');
        for (char &c : bytes) c = "ab,; \r\n\0\xC9\xFF"[(seed = seed * 1664525 + 1013904223) % 10];
        auto const nLineFeeds = std::count(bytes.begin(), bytes.end(), '\n');
        EXPECT_LE(static_cast<long>(Lines(bytes).size()), nLineFeeds + 1);
        DStringArray const table = Table(bytes, ",");
        EXPECT_EQ(table.Count(), table.RCount() * table.CCount());
        Ragged(bytes, " ");
    }
}

// ---- Writing ---------------------------------------------------------------------------------

class WholeFileWriting : public FilesTest {
protected:
    std::string Data() const { return folder.Read("data"); }
    /// The bytes of a table of these fields.
    std::string Written(int nFields, int nLines, Strings const &fields, char const *delim)
    {
        DStringArray table = List(fields);
        table.ReSize(nFields, nLines);
        EXPECT_TRUE(DFile::WriteArray(Path("data"), table, delim));
        return Data();
    }
};

TEST_F(WholeFileWriting, TextIsWrittenAsItStands)
{
    for (std::string const &text : {"abc"s, ""s, "a\0b\n\r\n\xC9\xFF"s, Pattern(100000)}) {
        folder.Write("data", "an old and longer text");
        EXPECT_TRUE(DFile::WriteText(Path("data"), fromBytes(text)));
        EXPECT_TRUE(text == Data()) << text.size();
    }
    EXPECT_TRUE(DFile::WriteText(Path("data"), nullString()));
    EXPECT_EQ("", Data());
}

TEST_F(WholeFileWriting, LineIsAppended)
{
    EXPECT_TRUE(DFile::WriteLine(Path("data"), "one"));
    EXPECT_EQ("one\r\n", Data());
    EXPECT_TRUE(DFile::WriteLine(Path("data"), DString()));
    EXPECT_TRUE(DFile::WriteLine(Path("data"), fromBytes("a\0\xFF"s)));
    EXPECT_TRUE(DFile::WriteLine(Path("data"), nullString()));
    EXPECT_EQ("one\r\n\r\na\0\xFF\r\n\r\n"s, Data());
}

TEST_F(WholeFileWriting, LineGoesBehindWhateverTheFileEndsWith)
{
    folder.Write("data", "no line end");
    EXPECT_TRUE(DFile::WriteLine(Path("DATA"), "one"));
    EXPECT_EQ("no line endone\r\n", Data());
}

TEST_F(WholeFileWriting, LinesHaveTheirEndsBetweenThem)
{
    struct Row {
        Strings lines;
        std::string bytes;
    } const rows[] = {
        {{}, ""},
        {{"a"}, "a"},
        {{"a", "b"}, "a\r\nb"},
        {{""}, ""},
        {{"", ""}, "\r\n"},
        {{"a", ""}, "a\r\n"},
        {{"a\0"s, "\xFF"}, "a\0\r\n\xFF"s},
    };
    for (Row const &row : rows) {
        folder.Write("data", "an old and longer text");
        EXPECT_TRUE(DFile::WriteLines(Path("data"), List(row.lines)));
        EXPECT_EQ(row.bytes, Data());
    }
}

TEST_F(WholeFileWriting, LinesOfAnEmptyListMakeAnEmptyFile)
{
    EXPECT_TRUE(DFile::WriteLines(Path("data"), DStringArray()));
    EXPECT_EQ("", Data());
}

TEST_F(WholeFileWriting, LinesThatWereSplitAreAllWritten)
{
    DStringArray lines;
    lines.Split("a,b,c", ",", -1);
    EXPECT_TRUE(DFile::WriteLines(Path("data"), lines));
    EXPECT_EQ("a\r\nb\r\nc", Data());
}

TEST_F(WholeFileWriting, ArrayHasOneLineForEachRun)
{
    EXPECT_EQ("a,b,c\r\nd,e,f", Written(3, 2, {"a", "b", "c", "d", "e", "f"}, ","));
    EXPECT_EQ("a,b,c", Written(3, 1, {"a", "b", "c"}, ","));
    EXPECT_EQ("a\r\nb\r\nc", Written(1, 3, {"a", "b", "c"}, ","));
    EXPECT_EQ(",\r\n,", Written(2, 2, {"", "", "", ""}, ","));
    EXPECT_EQ("a; b\r\nc; d", Written(2, 2, {"a", "b", "c", "d"}, "; "));
    EXPECT_EQ("ab\r\ncd", Written(2, 2, {"a", "b", "c", "d"}, ""));
    EXPECT_EQ("ab\r\ncd", Written(2, 2, {"a", "b", "c", "d"}, nullptr));
    EXPECT_EQ("a\0,\xFF"s, Written(2, 1, {"a\0"s, "\xFF"}, ","));
    EXPECT_EQ("", Written(1, 0, {}, ","));
}

TEST_F(WholeFileWriting, ArrayComesBack)
{
    DStringArray table;
    folder.Write("table", "a\t\tc\r\nd\te\tf");
    DFile::GetArray(Path("table"), table, "\t");
    EXPECT_TRUE(DFile::WriteArray(Path("data"), table, "\t"));
    EXPECT_EQ("a\t\tc\r\nd\te\tf", Data());
}

TEST_F(WholeFileWriting, FailsWhereNoFileCanBeOpened)
{
    folder.MakeFolder("sub");
    DStringArray const lines = List({"a"});
    for (DString const &name : {Path("sub"), Path("missing\\file"), Path("a*"), Path(std::string(5000, 'x')), DString(),
                                nullString(), DString("\\\\no-such-server\\share\\file")}) {
        SCOPED_TRACE(bytesOf(name));
        EXPECT_FALSE(DFile::WriteText(name, "x"));
        EXPECT_FALSE(DFile::WriteLine(name, "x"));
        EXPECT_FALSE(DFile::WriteLines(name, lines));
        EXPECT_FALSE(DFile::WriteArray(name, lines, ","));
    }
    EXPECT_FALSE(folder.Has("missing"));
    EXPECT_FALSE(folder.Has("a*"));
}

TEST_F(WholeFileWriting, FailedOpenLeavesTheOldFile)
{
    folder.Write("data", "old");
    Faults const faults(1, INT_MAX, "OpenFile");
    EXPECT_FALSE(DFile::WriteText(Path("data"), "x"));
    EXPECT_FALSE(DFile::WriteLine(Path("data"), "x"));
    EXPECT_FALSE(DFile::WriteLines(Path("data"), List({"x"})));
    EXPECT_FALSE(DFile::WriteArray(Path("data"), List({"x"}), ","));
    EXPECT_EQ("old", Data());
}

// ---- Copying ---------------------------------------------------------------------------------

class LargeFileCopy : public FilesTest {
protected:
    bool Copy(char const *from, char const *to) { return DFile::CopyLargeFile(Path(from), Path(to)); }
};

TEST_F(LargeFileCopy, HasAllBytes)
{
    for (std::size_t size : {0u, 1u, 0xFFFFFu, 0x100000u, 0x100001u, 0x200000u}) {
        std::string const bytes = Pattern(size);
        folder.Write("from", bytes);
        folder.Write("to", "an old text");
        EXPECT_TRUE(Copy("from", "to"));
        EXPECT_TRUE(bytes == folder.Read("to")) << size;
        EXPECT_TRUE(bytes == folder.Read("from")) << size;
    }
}

TEST_F(LargeFileCopy, MakesTheTarget)
{
    folder.Write("from", "abc");
    EXPECT_TRUE(Copy("FROM", "to"));
    EXPECT_EQ("abc", folder.Read("to"));
}

TEST_F(LargeFileCopy, AnswersTrueWhateverFails)
{
    folder.MakeFolder("sub");
    folder.Write("from", "abc");
    folder.Write("to", "old");
    EXPECT_TRUE(Copy("missing", "to"));
    EXPECT_TRUE(Copy("missing", "new"));
    EXPECT_TRUE(Copy("sub", "to"));
    EXPECT_TRUE(Copy("from", "sub"));
    EXPECT_TRUE(Copy("from", "missing\\new"));
    EXPECT_TRUE(DFile::CopyLargeFile(DString(), DString()));
    EXPECT_TRUE(DFile::CopyLargeFile(nullString(), nullString()));
    EXPECT_EQ("old", folder.Read("to"));
    EXPECT_FALSE(folder.Has("new"));
    EXPECT_FALSE(folder.Has("missing"));
}

TEST_F(LargeFileCopy, OntoItselfKeepsTheFile)
{
    folder.Write("from", "abc");
    EXPECT_TRUE(Copy("from", "from"));
    EXPECT_EQ("abc", folder.Read("from"));
    EXPECT_TRUE(Copy("from", "FROM"));
    EXPECT_EQ("abc", folder.Read("from"));
    std::filesystem::create_hard_link(folder.native("from"), folder.native("other name"));
    EXPECT_TRUE(Copy("from", "other name"));
    EXPECT_EQ("abc", folder.Read("from"));
}

#if !defined _WIN32
TEST_F(LargeFileCopy, OntoItselfThroughALinkKeepsTheFile)
{
    folder.Write("from", "abc");
    std::filesystem::create_symlink("from", folder.native("link"));
    EXPECT_TRUE(Copy("from", "link"));
    EXPECT_TRUE(Copy("link", "from"));
    EXPECT_EQ("abc", folder.Read("from"));
}
#endif

TEST_F(LargeFileCopy, MovesNothingWhereTheLengthReadsAsNegative)
{
    folder.Write("from", "abc");
    folder.Write("to", "old");
    MakeSparse(folder.native("from"), 0x80000000);
    EXPECT_TRUE(Copy("from", "to"));
    EXPECT_EQ("", folder.Read("to"));
}

TEST_F(LargeFileCopy, MovesTheLow32BitsOfTheLength)
{
    folder.Write("from", "abcdefgh");
    MakeSparse(folder.native("from"), 0x100000005);
    EXPECT_TRUE(Copy("from", "to"));
    EXPECT_EQ("abcde", folder.Read("to"));
}

#if defined __linux__
TEST_F(LargeFileCopy, MovesPiecesOfAtMostAMegabyte)
{
    folder.Write("from", Pattern(0x280000));
    StreamCalls const calls;
    EXPECT_TRUE(Copy("from", "to"));
    EXPECT_EQ((std::vector<std::size_t>{0x100000, 0x100000, 0x100000, 0x100000, 0x80000, 0x80000}), calls.Sizes());
}
#endif

TEST_F(LargeFileCopy, FailedOpenLeavesTheTarget)
{
    for (int n = 1; n <= 2; ++n) {
        folder.Write("from", "abc");
        folder.Write("to", "old");
        Faults const faults(n, 1, "OpenFile");
        EXPECT_TRUE(Copy("from", "to"));
        EXPECT_EQ("old", folder.Read("to")) << n;
    }
}

} // namespace
