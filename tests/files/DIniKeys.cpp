/// The settings store: looking keys up, the forms of their values, setting and deleting them.
#include <climits>
#include <cstring>

#include "support/Ini.h"

namespace {

using namespace std::string_literals;

// ---- Keys ------------------------------------------------------------------------------------

class IniKeys : public IniTest {};

TEST_F(IniKeys, AreFoundByNameApartFromCase)
{
    LoadA("first=1\nFIRST=2\nab=3\nx = 4\n  lead=5\n;c=6\nempty=\nplain\n=nameless\n\xC4=7\ndouble=a=b");
    struct Row {
        char const *key;
        char const *value;
    } const rows[] = {
        {"first", "1"},  {"First", "1"},  {"FIRST", "1"},    {"a", "def"},      {"ab", "3"},
        {"abc", "def"},  {"x", "def"},    {"x ", " 4"},      {" x", "def"},     {"lead", "def"},
        {"  lead", "5"}, {";c", "def"},   {"empty", "def"},  {"plain", "def"},  {"", "nameless"},
        {"\xC4", "7"},   {"\xE4", "def"}, {"double", "a=b"}, {"double=a", "b"}, {"missing", "def"},
    };
    for (Row const &row : rows) EXPECT_EQ(row.value, Value(row.key)) << row.key;
}

TEST_F(IniKeys, ValueRunsToTheEndOfTheLine)
{
    LoadA("x= a b  ;c \r\ny=\t\r\n");
    EXPECT_EQ(" a b  ;c ", Value("x"));
    EXPECT_EQ("\t", Value("y"));
}

TEST_F(IniKeys, KeyIndexTellsLineAndValue)
{
    LoadA(";c\nAlpha=1\nalpha=2\n=3\n;k=4");
    int at = 99;
    EXPECT_EQ(1, ini.keyindex("ALPHA", at));
    EXPECT_EQ(6, at);
    EXPECT_EQ(3, ini.keyindex(DString(), at));
    EXPECT_EQ(1, at);
    EXPECT_EQ(3, ini.keyindex(nullString(), at));
    EXPECT_EQ(-1, ini.keyindex("missing", at));
    EXPECT_EQ(-1, ini.keyindex(";k", at));
    EXPECT_EQ(-1, ini.keyindex(";c", at));
    ini.DeleteSection("none");
    EXPECT_EQ(-1, ini.keyindex("Alpha", at));
}

TEST_F(IniKeys, CountIncludesComments)
{
    LoadA(";c\nx=1\nplain\n\n");
    EXPECT_EQ(3, ini.nKeys());
}

TEST_F(IniKeys, GetKeyValueGivesTheDefaultForAnEmptyValueAndGetSectionKeyValueDoesNot)
{
    LoadA("x=\ny= ");
    EXPECT_EQ("def", Value("x"));
    EXPECT_EQ(" ", Value("y"));
    EXPECT_EQ("", bytesOf(ini.GetSectionKeyValue("A", "x", "def")));
    EXPECT_EQ("", Value("x", nullptr));
    EXPECT_EQ("", bytesOf(ini.GetKeyValue(nullString(), nullptr)));
}

TEST_F(IniKeys, GetSectionKeyValueChangesTheCurrentSection)
{
    Load("[A]\nx=1\n[B]\nx=2");
    ini.SetSection("A");
    EXPECT_EQ("2", bytesOf(ini.GetSectionKeyValue("b", "x", "def")));
    EXPECT_EQ("2", Value("x"));
    EXPECT_EQ("def", bytesOf(ini.GetSectionKeyValue("A", "missing", "def")));
    EXPECT_EQ("1", Value("x"));
    EXPECT_EQ("def", bytesOf(ini.GetSectionKeyValue("missing", "x", "def")));
    EXPECT_EQ("def", Value("x"));
    EXPECT_EQ(0, ini.nKeys());
    EXPECT_EQ((Strings{"A", "B"}), Names());
    EXPECT_EQ("", bytesOf(ini.GetSectionKeyValue(nullString(), nullString(), nullptr)));
}

TEST_F(IniKeys, BooleanIsTrueForTrueAndOne)
{
    struct Row {
        char const *value;
        bool result;
    } const rows[] = {
        {"True", true}, {"true", true},   {"TRUE", true},   {"1", true},   {"2", false},     {"Yes", false},
        {"", false},    {"False", false}, {"0", false},     {"01", false}, {"1.0", false},   {" 1", false},
        {"1 ", false},  {" True", false}, {"True ", false}, {"T", false},  {"TrueX", false}, {"-1", false},
    };
    for (Row const &row : rows) {
        LoadA("k="s + row.value);
        EXPECT_EQ(row.result, ini.GetKeyBoolValue("K", true)) << row.value;
        EXPECT_EQ(row.result, ini.GetKeyBoolValue("K", false)) << row.value;
    }
}

TEST_F(IniKeys, IntegerMayHaveAnExponent)
{
    int const def = -77;
    struct Row {
        char const *value;
        int result;
    } const rows[] = {
        {"1e3", 1000},
        {"1E3", 1000},
        {"12abc", 12},
        {"1e3abc", def},
        {"12", 12},
        {"-7", -7},
        {"+7", 7},
        {" 12", 12},
        {"12 ", 12},
        {"2.7", 2},
        {"-2.7", -2},
        {"2.79e1", 27},
        {"-2.79e1", -27},
        {"9e-1", 0},
        {"-9e-1", 0},
        {"0x10", 0},
        {"abc", def},
        {"hello", def},
        {"", def},
        {" ", def},
        {"-", def},
        {"12 e", def},
        {"1e3 ", def},
        {" 1e3", 1000},
        {"e3", def},
        {"1e", def},
        {"three", def},
        {"99999999999", INT_MAX},
        {"-99999999999", INT_MIN},
        {"2147483647e0", INT_MAX},
        {"2147483648e0", INT_MIN},
        {"1e10", INT_MIN},
        {"-1e10", INT_MIN},
        {"1e400", INT_MIN},
        {"12,5", 12},
        {"1d3", 1},
    };
    for (Row const &row : rows) {
        LoadA("k="s + row.value);
        EXPECT_EQ(row.result, ini.GetKeyIntValue("K", def)) << row.value;
    }
}

TEST_F(IniKeys, FloatMustBeTheWholeValue)
{
    unsigned int const def = 0xC2F60000; // -123
    struct Row {
        char const *value;
        unsigned int bits;
    } const rows[] = {
        {"1.5", 0x3FC00000},
        {"0.1", 0x3DCCCCCD},
        {"1e3", 0x447A0000},
        {"-2", 0xC0000000},
        {" 1.5", 0x3FC00000},
        {"1.5 ", def},
        {"1.5x", def},
        {"abc", def},
        {"", def},
        {"1,5", def},
        {"0", 0x00000000},
        {"-0", 0x80000000},
        {"1e39", 0x7F800000},
        {"16777217", 0x4B800000},
        {"1e-45", 0x00000001},
        {"1e-60", 0},
        {"3.3e38", 0x7F7843B0},
        {"0.30000001", 0x3E99999A},
        {".5", 0x3F000000},
        {"5.", 0x40A00000},
    };
    for (Row const &row : rows) {
        LoadA("k="s + row.value);
        float const value = ini.GetKeyFloatValue("K", -123.0f);
        unsigned int bits;
        std::memcpy(&bits, &value, sizeof bits);
        EXPECT_EQ(row.bits, bits) << row.value;
    }
}

TEST_F(IniKeys, NumbersAndBooleansOfAMissingKeyOrSectionAreTheDefault)
{
    LoadA("x=1");
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(ini.GetKeyBoolValue("missing", true));
        EXPECT_FALSE(ini.GetKeyBoolValue("missing", false));
        EXPECT_EQ(5, ini.GetKeyIntValue("missing", 5));
        EXPECT_EQ(2.5f, ini.GetKeyFloatValue("missing", 2.5f));
        ini.DeleteSection("none"); // no current section from here on
    }
    EXPECT_FALSE(ini.GetKeyBoolValue("x", false));
    EXPECT_EQ(5, ini.GetKeyIntValue("x", 5));
    EXPECT_EQ(2.5f, ini.GetKeyFloatValue("x", 2.5f));
}

TEST_F(IniKeys, RowIsTheValueCut)
{
    LoadA("x=a,b,,c\ny=  a  b \nempty=");
    EXPECT_EQ((Strings{"a", "b", "", "c"}), Items(ini.GetKeyRow("X", -1, ",", "d")));
    EXPECT_EQ((Strings{"a", "b", "", "c"}), Items(ini.GetKeyRow("x", 2, ",", "d")));
    EXPECT_EQ((Strings{"a", "b", "", "c", "", ""}), Items(ini.GetKeyRow("x", 6, ",", "d")));
    EXPECT_EQ((Strings{"a", "b"}), Items(ini.GetKeyRow("y", -1, " ", "d")));
    EXPECT_EQ((Strings{"d", "e"}), Items(ini.GetKeyRow("empty", -1, ",", "d,e")));
    EXPECT_EQ((Strings{"d", "e", ""}), Items(ini.GetKeyRow("missing", 3, ",", "d,e")));
    EXPECT_EQ((Strings{}), Items(ini.GetKeyRow("missing", -1, ",", nullptr)));
    EXPECT_EQ((Strings{"", ""}), Items(ini.GetKeyRow("missing", 2, ",", nullptr)));
    ini.DeleteSection("none");
    EXPECT_EQ((Strings{"d"}), Items(ini.GetKeyRow("x", 1, ",", "d")));
}

TEST_F(IniKeys, SetReplacesTheFirstLineInTheNewSpelling)
{
    LoadA(";c\nalpha=1\nALPHA=2\nz=3");
    ini.SetKeyValue("Alpha", "new");
    EXPECT_EQ("[A]\r\n;c\r\nAlpha=new\r\nALPHA=2\r\nz=3", File());
}

TEST_F(IniKeys, SetAddsAtTheEndOfTheSection)
{
    Load("[A]\nx=1\n[B]\ny=2");
    ini.SetSection("A");
    ini.SetKeyValue("New", " a=b ");
    ini.SetKeyValue("Empty", DString());
    EXPECT_EQ("[A]\r\nx=1\r\nNew= a=b \r\nEmpty=\r\n[B]\r\ny=2", File());
}

TEST_F(IniKeys, SetOfACommentKeyAddsALineEachTime)
{
    LoadA("x=1");
    ini.SetKeyValue(";k", "1");
    ini.SetKeyValue(";k", "2");
    EXPECT_EQ("[A]\r\nx=1\r\n;k=1\r\n;k=2", File());
    EXPECT_EQ("def", Value(";k"));
}

TEST_F(IniKeys, SetWithoutASectionDoesNothing)
{
    Load("[A]\nx=1\n");
    ini.SetKeyValue("x", "2");
    EXPECT_EQ("[A]\nx=1\n", File());
    EXPECT_EQ((Strings{"x=1"}), Lines("A"));
}

TEST_F(IniKeys, SetOfNullTextsIsOfEmptyOnes)
{
    LoadA("x=1");
    ini.SetKeyValue(nullString(), nullString());
    EXPECT_EQ("[A]\r\nx=1\r\n=", File());
}

TEST_F(IniKeys, SetKeepsEveryByte)
{
    LoadA("x=1");
    ini.SetKeyValue("k", fromBytes("a\xC9\xFF\x80\t"));
    EXPECT_EQ("[A]\r\nx=1\r\nk=a\xC9\xFF\x80\t", File());
    ini.Refresh();
    EXPECT_EQ("a\xC9\xFF\x80\t", bytesOf(ini.GetSectionKeyValue("A", "k", "")));
}

TEST_F(IniKeys, DeleteRemovesTheFirstLine)
{
    Load("[A]\nx=1\nX=2\ny=3\n[B]\nx=4");
    ini.DeleteKey("a", "X");
    EXPECT_EQ("[A]\r\nX=2\r\ny=3\r\n[B]\r\nx=4", File());
    EXPECT_EQ("2", Value("x"));
}

TEST_F(IniKeys, DeleteThatRemovesNothingDoesNotWrite)
{
    Load("[A]\nx=1\n;k=2\n");
    ini.DeleteKey("A", "missing");
    EXPECT_EQ("1", Value("x")); // the section is the current one now
    ini.DeleteKey("A", ";k");
    ini.DeleteKey("missing", "x");
    EXPECT_EQ("def", Value("x"));
    ini.DeleteKey(nullptr, "x");
    EXPECT_EQ("[A]\nx=1\n;k=2\n", File());
    EXPECT_EQ((Strings{"A"}), Names());
}

} // namespace
