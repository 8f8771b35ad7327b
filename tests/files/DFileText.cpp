/// The file handle: strings with their prefixes, lines, scanned values, and what a closed file does.
#include <climits>

#include "support/FileTest.h"

namespace {

using namespace std::string_literals;

// ---- Strings ---------------------------------------------------------------------------------

class FileStrings : public FileTest {
protected:
    /// What `DSRead` makes of "old".
    std::string Read(bool shortPrefix)
    {
        DString text("old");
        file.DSRead(text, shortPrefix);
        return bytesOf(text);
    }
};

TEST_F(FileStrings, AreALengthAndTheCharacters)
{
    struct Row {
        std::string text;
        int prefixWidth;
        std::string bytes;
    } const rows[] = {
        {"abc", 4, "\x03\0\0\0abc"s},
        {"abc", 2, "\x03\0abc"s},
        {"abc", 0, "abc"},
        {"abc", 1, "abc"},
        {"abc", 3, "abc"},
        {"abc", 8, "abc"},
        {"abc", -1, "abc"},
        {"abc", INT_MIN, "abc"},
        {"", 4, "\0\0\0\0"s},
        {"", 2, "\0\0"s},
        {"", 0, ""},
        {"a\0b\r\n\xC9\xFF"s, 4, "\x07\0\0\0a\0b\r\n\xC9\xFF"s},
        {"a\0b"s, 2, "\x03\0a\0b"s},
        {std::string(300, 'x'), 4, "\x2C\x01\0\0"s + std::string(300, 'x')},
        {std::string(300, 'x'), 2, "\x2C\x01"s + std::string(300, 'x')},
        {std::string(32767, 'x'), 2, "\xFF\x7F"s + std::string(32767, 'x')},
        {std::string(32768, 'x'), 2, "\0\x80"s + std::string(32768, 'x')},
        {std::string(65539, 'x'), 2, "\x03\0"s + std::string(65539, 'x')},
        {std::string(65539, 'x'), 4, "\x03\0\x01\0"s + std::string(65539, 'x')},
    };
    for (Row const &row : rows) {
        Begin("", 6);
        file.DSWrite(fromBytes(row.text), row.prefixWidth);
        EXPECT_TRUE(row.bytes == End()) << row.text.size() << " characters, prefix of " << row.prefixWidth;
    }
}

TEST_F(FileStrings, NullIsEmpty)
{
    Begin("", 6);
    file.DSWrite(nullString(), 4);
    file.DSWrite(nullString(), 2);
    file.DSWrite(nullString(), 0);
    EXPECT_EQ("\0\0\0\0\0\0"s, End());
}

TEST_F(FileStrings, ComeBack)
{
    struct Row {
        std::string bytes;
        bool shortPrefix;
        std::string text;
        long long tell;
    } const rows[] = {
        {"\x03\0\0\0abcd"s, false, "abc", 7},
        {"\x03\0abcd"s, true, "abc", 5},
        {"\x03\0\0\0a\0b"s, false, "a\0b"s, 7},
        {"\0\x01"s + std::string(256, 'x') + "y", true, std::string(256, 'x'), 258},
        {"\x01\0\x01\0"s + std::string(65537, 'x'), false, std::string(65537, 'x'), 65541},
        {"\xFF\x7F"s + std::string(32767, 'x'), true, std::string(32767, 'x'), 32769},
    };
    for (Row const &row : rows) {
        Begin(row.bytes);
        EXPECT_TRUE(row.text == Read(row.shortPrefix)) << row.bytes.size() << " bytes";
        EXPECT_EQ(row.tell, file.Tell());
    }
}

TEST_F(FileStrings, LengthBelowOneLeavesTheOldText)
{
    struct Row {
        std::string bytes;
        bool shortPrefix;
    } const rows[] = {
        {"\0\0abc"s, true},
        {"\xFF\xFF"s
         "abc",
         true},
        {"\0\x80"s
         "abc",
         true},
        {"\0\0\0\0abc"s, false},
        {"\xFF\xFF\xFF\xFF"s
         "abc",
         false},
        {"\0\0\0\x80"s
         "abc",
         false},
    };
    for (Row const &row : rows) {
        Begin(row.bytes);
        EXPECT_EQ("old", Read(row.shortPrefix));
        EXPECT_EQ(row.shortPrefix ? 2 : 4, file.Tell());
    }
}

TEST_F(FileStrings, ReaderFallsOutOfStepBehindALongOneWithAShortPrefix)
{
    Begin("", 6);
    file.DSWrite(fromBytes(std::string(32768, 'A')), 2);
    file.DSWrite("next", 2);
    ASSERT_TRUE(file.Open(Path("data"), 5));
    EXPECT_EQ("old", Read(true));
    EXPECT_EQ(2, file.Tell());
    EXPECT_EQ(std::string(0x4141, 'A'), Read(true)); // two of its characters pass for a length
}

TEST_F(FileStrings, CharactersThatTheFileLacksAreNuls)
{
    Begin("\x06\0\0\0abc"s);
    EXPECT_EQ("abc\0\0\0"s, Read(false));
    Begin("\x06\0abc"s);
    EXPECT_EQ("abc\0\0\0"s, Read(true));
}

TEST_F(FileStrings, HugeLengthIsBelievedOnlyAsFarAsTheFileGoes)
{
    Begin("\xFF\xFF\xFF\x7F"s
          "abc");
    std::string const text = Read(false);
    EXPECT_LT(text.size(), 1000000u);
    EXPECT_EQ("abc" + std::string(text.size() - 3, '\0'), text);
}

TEST_F(FileStrings, EveryPrefixOfAFileGivesSomething)
{
    std::string const whole = "\x03\0abc\x02\0\0\0de\x01\0f"s;
    for (std::size_t n = 0; n <= whole.size(); ++n) {
        Begin(whole.substr(0, n));
        std::string const a = Read(true), b = Read(false), c = Read(true);
        EXPECT_TRUE(a.size() <= 3 && b.size() <= 3 && c.size() <= 3) << n;
        EXPECT_EQ(n == whole.size(), a == "abc" && b == "de" && c == "f") << n;
    }
}

TEST_F(FileStrings, AtTheEndOfTheFileTheOldTextStays)
{
    Begin("");
    EXPECT_EQ("old", Read(true));
    EXPECT_EQ("old", Read(false));
}

TEST_F(FileStrings, ThatShareABlockAreReadApart)
{
    Begin("\x02\0XY"s);
    DString text("old"), other(text);
    file.DSRead(text, true);
    EXPECT_EQ("XY", bytesOf(text));
    EXPECT_EQ("old", bytesOf(other));
}

// ---- Lines and scanned values ----------------------------------------------------------------

class FileLines : public FileTest {};

TEST_F(FileLines, ComeWithoutTheirEnds)
{
    struct Row {
        std::string bytes;
        int maxLength;
        Strings lines;
    } const rows[] = {
        {"one\ntwo\r\nthree", 100, {"one", "two", "three"}},
        {"\n\r\nx\n", 100, {"", "", "x"}},
        {"a\r\r\n", 100, {"a\r"}},
        {"a\rb\n", 100, {"a\rb"}},
        {" a \t\n", 100, {" a \t"}},
        {"ab\0cd\nnext\n"s, 100, {"ab", "next"}},
        {"\0abc\nnext\n"s, 100, {"", "next"}},
        {"\xC9\xFF\x80\n", 100, {"\xC9\xFF\x80"}},
        {"12345678901234567890\nx\n", 10, {"12345678", "90123456", "7890", "x"}},
        {"12345678\nx\n", 10, {"12345678", "", "x"}},
        {"1234567\nx\n", 10, {"1234567", "x"}},
        {"ab\n", 3, {"a", "b", ""}},
    };
    for (Row const &row : rows) {
        Begin(row.bytes);
        for (std::string const &line : row.lines) EXPECT_EQ(line, Line(row.maxLength)) << row.bytes;
        EXPECT_EQ("", Line(row.maxLength)) << row.bytes;
        EXPECT_TRUE(file.IsEOF()) << row.bytes;
    }
}

TEST_F(FileLines, EmptyOneIsToldFromTheEndByIsEOF)
{
    Begin("\r\n");
    EXPECT_EQ("", Line(100));
    EXPECT_FALSE(file.IsEOF());
    EXPECT_EQ("", Line(100));
    EXPECT_TRUE(file.IsEOF());
}

TEST_F(FileLines, AreEmptyWithoutRoomForACharacter)
{
    for (int maxLength : {2, 1, 0, -1, -100, INT_MIN}) {
        Begin("abc\n");
        EXPECT_EQ("", Line(maxLength)) << maxLength;
    }
}

TEST_F(FileLines, MayBeLong)
{
    Begin(std::string(200000, 'x') + "\r\ny");
    EXPECT_EQ(std::string(200000, 'x'), Line(50000000));
    EXPECT_EQ("y", Line(50000000));
}

TEST_F(FileLines, OfAFileOfWritingAreEmpty)
{
    Begin("", 6);
    EXPECT_EQ("", Line(100));
}

TEST_F(FileLines, AreCutIntoFields)
{
    struct Row {
        char const *line;
        char const *delim;
        Strings fields;
    } const rows[] = {
        {"a,b,,c,\r\n", ",", {"a", "b", "", "c"}},
        {",a\n", ",", {"", "a"}},
        {"  a   b \n", " ", {"a", "b"}},
        {"a\tb", "\t", {"a", "b"}},
        {"a::b:c\n", "::", {"a", "b:c"}},
        {"\n", ",", {}},
        {"", ",", {}},
    };
    for (Row const &row : rows) {
        Begin(row.line);
        DStringArray fields = List({"old"});
        file.ReadLineArray(fields, 100, row.delim);
        EXPECT_EQ(row.fields, Items(fields)) << row.line;
    }
}

TEST_F(FileLines, CutIntoFieldsHaveALimitToo)
{
    Begin("a,b,cdefgh\n");
    DStringArray fields;
    file.ReadLineArray(fields, 10, ",");
    EXPECT_EQ((Strings{"a", "b", "cdef"}), Items(fields));
    file.ReadLineArray(fields, 10, ",");
    EXPECT_EQ((Strings{"gh"}), Items(fields));
}

TEST_F(FileLines, RandomBytesGiveLinesUntilTheEnd)
{
    unsigned int seed = 1;
    std::string bytes(20000, '.');
    for (char &c : bytes) c = static_cast<char>((seed = seed * 1664525 + 1013904223) >> 24);
    Begin(bytes);
    int nLines = 0;
    for (; !file.IsEOF() && nLines < 30000; ++nLines) EXPECT_LE(Line(20).size(), 18u);
    EXPECT_GT(nLines, 20000 / 18);
    EXPECT_TRUE(file.IsEOF());
}

class ScannedValues : public FileTest {};

TEST_F(ScannedValues, FollowTheFormat)
{
    Begin(" 12 -3.5 x7\n1.5e3");
    int number = 0, behindX = 0;
    float single = 0;
    double wide = 0;
    file.ARead("%d", &number);
    file.ARead("%f", &single);
    file.ARead(" x%d", &behindX);
    file.ARead("%lf", &wide);
    EXPECT_EQ(12, number);
    EXPECT_EQ(-3.5f, single);
    EXPECT_EQ(7, behindX);
    EXPECT_EQ(1500.0, wide);
}

TEST_F(ScannedValues, ThatDoNotMatchStayAsTheyWere)
{
    Begin("abc");
    int number = 42;
    file.ARead("%d", &number);
    EXPECT_EQ(42, number);
    EXPECT_EQ(0, file.Tell());
}

TEST_F(ScannedValues, FormatWithoutExactlyOneConversionReadsNothing)
{
    for (char const *format : {"", "12", "%%", "%", "%*d", "%d%d", "%d %f", "%d %s", "%n%d", "%q", "%d%"}) {
        SCOPED_TRACE(format);
        Begin("12 34 56");
        int numbers[] = {1, 2, 3, 4};
        file.ARead(format, numbers);
        EXPECT_EQ(1, numbers[0]);
        EXPECT_EQ(2, numbers[1]);
    }
    Begin("12");
    int number = 1;
    file.ARead(nullString(), &number);
    EXPECT_EQ(1, number);
}

// ---- A closed file ---------------------------------------------------------------------------

class ClosedFile : public FileTest {
protected:
    void SetUp() override
    {
        Begin("12,34\n", 7);
        file.Close();
    }
};

TEST_F(ClosedFile, ReadsNothing)
{
    int number = 1;
    DString line("old");
    DStringArray fields = List({"old"});
    file.ARead("%d", &number);
    file.ReadLine(line, 100);
    file.ReadLineArray(fields, 100, ",");
    EXPECT_EQ("....", Read4(4));
    EXPECT_EQ(1, number);
    EXPECT_EQ("old", bytesOf(line));
    EXPECT_EQ((Strings{"old"}), Items(fields));
}

TEST_F(ClosedFile, WritesNothing)
{
    file.BWrite("XY", 2);
    file.DSWrite("XY", 4);
    file.DSWrite("XY", 2);
    file.DSWrite("XY", 0);
    EXPECT_EQ("12,34\n", folder.Read("data"));
}

TEST_F(ClosedFile, HasNoPosition)
{
    DString text("old");
    file.SeekAbs(3);
    file.SeekRel(1);
    file.DSRead(text, true);
    file.DSRead(text, false);
    file.IsEOF();
    EXPECT_EQ(-1, file.Tell());
    EXPECT_EQ("old", bytesOf(text));
    EXPECT_FALSE(file.IsOpen());
}

} // namespace
