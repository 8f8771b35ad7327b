// Slices of DString, edits in place, replacement and line ends.
#include "foundation/DString.h"

#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/DStringInspector.h"

using namespace std::string_literals;

namespace {

int const farOff = 0x7FFFFFFF;
char const *const noText = nullptr;

} // namespace

// ---- Slices -----------------------------------------------------------------------------------

TEST(DStringSlices, LeftOfMoreThanAllGivesAll)
{
    DString s("abc");
    EXPECT_EQ(bytesOf(s.Left(10)), "abc");
    EXPECT_EQ(bytesOf(s.Left(3)), "abc");
    EXPECT_EQ(bytesOf(s.Left(2)), "ab");
    EXPECT_EQ(bytesOf(s.Left(farOff)), "abc");
    EXPECT_TRUE(isNewEmptyBlock(s.Left(0)));
    EXPECT_EQ(s.Left(-1).Len(), 0);
    EXPECT_FALSE(shareBlock(s.Left(10), s));
}

TEST(DStringSlices, RightOfMoreThanAllGivesAll)
{
    DString s("abc");
    EXPECT_EQ(bytesOf(s.Right(10)), "abc");
    EXPECT_EQ(bytesOf(s.Right(3)), "abc");
    EXPECT_EQ(bytesOf(s.Right(2)), "bc");
    EXPECT_EQ(bytesOf(s.Right(farOff)), "abc");
    EXPECT_TRUE(isNewEmptyBlock(s.Right(0)));
    EXPECT_EQ(s.Right(-1).Len(), 0);
    EXPECT_EQ(s.Right(INT_MIN).Len(), 0);
}

TEST(DStringSlices, MidTakesTheRestByDefault)
{
    DString s("abcdef");
    EXPECT_EQ(bytesOf(s.Mid(2)), "cdef");
    EXPECT_EQ(bytesOf(s.Mid(2, 3)), "cde");
    EXPECT_EQ(bytesOf(s.Mid(4, 9)), "ef");
    EXPECT_TRUE(isNewEmptyBlock(s.Mid(6, 5)));
    EXPECT_TRUE(isNewEmptyBlock(s.Mid(100)));
    EXPECT_EQ(s.Mid(1, -1).Len(), 0);
}

TEST(DStringSlices, OfNullAreEmpty)
{
    DString null = nullString();
    EXPECT_TRUE(isEmptyConstant(null.Left(3)) && isEmptyConstant(null.Mid(0)) && isEmptyConstant(null.Right(3)));
    for (bool const whole : {false, true}) {
        EXPECT_EQ(null.BeforeFirst('a', whole).Len(), 0);
        EXPECT_EQ(null.AfterFirst('a', whole).Len(), 0);
        EXPECT_EQ(null.BeforeLast('a', whole).Len(), 0);
        EXPECT_EQ(null.AfterLast('a', whole).Len(), 0);
    }
}

namespace {

struct CutRow {
    std::string text, beforeFirst, afterFirst, beforeLast, afterLast;
};

CutRow const cutRows[] = {{"a.b.c", "a", "b.c", "a.b", "c"},
                          {"a.b", "a", "b", "a", "b"},
                          {".a", "", "a", "", "a"},
                          {"a.", "a", "", "a", ""},
                          {".", "", "", "", ""},
                          {"a..b", "a", ".b", "a.", "b"},
                          {"..", "", ".", ".", ""},
                          {"\xC9.x", "\xC9", "x", "\xC9", "x"}};

} // namespace

TEST(DStringSlices, CutAtACharacter)
{
    for (auto const &row : cutRows)
        for (bool const whole : {false, true}) {
            DString s(row.text.c_str());
            EXPECT_EQ(bytesOf(s.BeforeFirst('.', whole)), row.beforeFirst) << row.text;
            EXPECT_EQ(bytesOf(s.AfterFirst('.', whole)), row.afterFirst) << row.text;
            EXPECT_EQ(bytesOf(s.BeforeLast('.', whole)), row.beforeLast) << row.text;
            EXPECT_EQ(bytesOf(s.AfterLast('.', whole)), row.afterLast) << row.text;
        }
}

TEST(DStringSlices, CutAtAnAbsentCharacterSharesAllOrGivesNothing)
{
    for (auto &s : std::vector<DString>{DString("abc"), DString(""), DString()}) {
        EXPECT_TRUE(shareBlock(s.BeforeFirst('.', true), s) && shareBlock(s.AfterFirst('.', true), s));
        EXPECT_TRUE(shareBlock(s.BeforeLast('.', true), s) && shareBlock(s.AfterLast('.', true), s));
        EXPECT_EQ(s.BeforeFirst('.', false).Len() + s.AfterFirst('.', false).Len(), 0);
        EXPECT_EQ(s.BeforeLast('.', false).Len() + s.AfterLast('.', false).Len(), 0);
    }
}

TEST(DStringSlices, AfterTheLastCharacterIsANewEmptyBlock)
{
    DString s("path\\");
    EXPECT_TRUE(isNewEmptyBlock(s.AfterLast('\\', true)));
    EXPECT_TRUE(isNewEmptyBlock(s.AfterFirst('\\', true)));
}

TEST(DStringSlices, FileNameAndFolderOfAPath)
{
    DString path("Z:\\data\\run.1\\shot"), bare("shot");
    EXPECT_EQ(bytesOf(path.AfterLast('\\', true)), "shot");
    EXPECT_EQ(bytesOf(path.BeforeLast('\\', false)), "Z:\\data\\run.1");
    EXPECT_EQ(bytesOf(bare.AfterLast('\\', true)), "shot");
    EXPECT_EQ(bytesOf(bare.BeforeLast('\\', false)), "");
}

TEST(DStringSlices, CutsKeepWhatFollowsANul)
{
    DString s = fromBytes("a.b\0c"s);
    EXPECT_EQ(bytesOf(s.AfterFirst('.', false)), "b\0c"s);
    EXPECT_EQ(bytesOf(s.AfterLast('.', false)), "b\0c"s);
}

TEST(DStringSlices, TrimTakesSpacesOnlyAndGivesANewString)
{
    struct {
        std::string text, expected;
    } const rows[] = {{"  a b  ", "a b"}, {"a", "a"},         {"\t a \t", "\t a \t"}, {"  a", "a"},
                      {"a  ", "a"},       {" \xA0 ", "\xA0"}, {" a\0 b "s, "a\0 b"s}, {" \0 "s, "\0"s}};
    for (auto const &row : rows) {
        DString s = fromBytes(row.text);
        EXPECT_EQ(bytesOf(s.Trim()), row.expected) << testing::PrintToString(row.text);
        EXPECT_FALSE(shareBlock(s.Trim(), s));
        EXPECT_EQ(bytesOf(s), row.text);
    }
}

TEST(DStringSlices, TrimOfNothingButSpacesIsANewEmptyBlock)
{
    for (auto &s : std::vector<DString>{DString("   "), DString(" "), DString(""), DString(), nullString()})
        EXPECT_TRUE(isNewEmptyBlock(s.Trim())) << testing::PrintToString(bytesOf(s));
}

TEST(DStringSlices, DespaceTakesEverySpace)
{
    DString s("  a b\t c "), nuls = fromBytes(" a\0 b"s), spaces("   "), empty(""), null = nullString();
    EXPECT_EQ(bytesOf(s.Despace()), "ab\tc");
    EXPECT_EQ(bytesOf(nuls.Despace()), "a\0b"s);
    EXPECT_TRUE(isEmptyConstant(spaces.Despace()) && isEmptyConstant(empty.Despace()));
    EXPECT_EQ(null.Despace().Len(), 0);
    EXPECT_EQ(bytesOf(s), "  a b\t c ");
}

// ---- Edits in place ---------------------------------------------------------------------------

TEST(DStringEdits, RTrimNeverTakesTheFirstCharacter)
{
    struct {
        std::string text, expected;
    } const rows[] = {{"a  ", "a"},    {"   ", " "},    {" ", " "},        {"", ""},        {" a", " a"},
                      {"a\t ", "a\t"}, {"a b ", "a b"}, {"a \0b"s, "a"},   {"ab\0"s, "ab"}, {"\0abc"s, ""},
                      {"  \0 "s, " "}, {"a", "a"},      {"a\xA0", "a\xA0"}};
    for (auto const &row : rows) {
        DString s = fromBytes(row.text);
        EXPECT_EQ(&s.RTrim(), &s);
        EXPECT_EQ(bytesOf(s), row.expected) << testing::PrintToString(row.text);
        EXPECT_EQ(s.c_str()[s.Len()], '\0');
    }
}

TEST(DStringEdits, RTrimLeavesSharersAndTheEmptyConstantAlone)
{
    DString a("a  "), empty, null = nullString();
    DString const b(a);
    EXPECT_EQ(bytesOf(a.RTrim()), "a");
    EXPECT_EQ(bytesOf(b), "a  ");
    EXPECT_EQ(empty.RTrim().Len() + null.RTrim().Len(), 0);
    EXPECT_EQ(DString().Len(), 0);
}

TEST(DStringEdits, RemoveExtTakesTheLastDotAndAllBehind)
{
    struct {
        std::string text, expected;
    } const rows[] = {{"name.ext", "name"},
                      {"a.b.c", "a.b"},
                      {"name", "name"},
                      {".profile", ".profile"},
                      {"", ""},
                      {"name.", "name"},
                      {"..", "."},
                      {"dir.x\\name", "dir"},
                      {".", "."},
                      {".a.b", ".a"},
                      {"a.b\0c.d"s, "a.b\0c"s}};
    for (auto const &row : rows) {
        DString s = fromBytes(row.text);
        EXPECT_EQ(&s.RemoveExt(), &s);
        EXPECT_EQ(bytesOf(s), row.expected) << testing::PrintToString(row.text);
    }
}

TEST(DStringEdits, RemoveExtWithoutADotLeavesTheBlockShared)
{
    DString s("name"), null = nullString();
    DString const sharer(s);
    s.RemoveExt();
    EXPECT_TRUE(shareBlock(s, sharer));
    EXPECT_EQ(null.RemoveExt().Len(), 0);
}

TEST(DStringEdits, RemoveExtLeavesSharersAlone)
{
    DString a("a.b");
    DString const b(a);
    a.RemoveExt();
    EXPECT_EQ(bytesOf(a), "a");
    EXPECT_EQ(bytesOf(b), "a.b");
}

// ---- Replacement ------------------------------------------------------------------------------

namespace {

struct ReplaceRow {
    std::string text, find, put, once, all;
};

ReplaceRow const replaceRows[] = {{"a-b-c", "-", "+", "a+b-c", "a+b+c"},
                                  {"-a-", "-", "", "a-", "a"},
                                  {"aaa", "a", "aa", "aaaa", "aaaaaa"},
                                  {"abab", "ab", "x", "xab", "xx"},
                                  {"aaa", "aa", "b", "ba", "ba"},
                                  {"abc", "abc", "", "", ""},
                                  {"abc", "c", "--", "ab--", "ab--"},
                                  {"aXa", "X", "\xC9",
                                   "a\xC9"
                                   "a",
                                   "a\xC9"
                                   "a"},
                                  {"abAB", "AB", "x", "abx", "abx"},
                                  {"xx", "x", "yx", "yxx", "yxyx"},
                                  {"a\xC9"
                                   "b",
                                   "\xC9", "-", "a-b", "a-b"}};

} // namespace

TEST(DStringReplace, OneOrAllInEveryForm)
{
    for (auto const &row : replaceRows)
        for (bool const all : {false, true}) {
            DString s(row.text.c_str());
            DString const find(row.find.c_str()), put(row.put.c_str());
            std::string const &expected = all ? row.all : row.once;
            EXPECT_EQ(bytesOf(s.Replace(find, put, all)), expected) << row.text;
            EXPECT_EQ(bytesOf(s.Replace(find.c_str(), put, all)), expected) << row.text;
            EXPECT_EQ(bytesOf(s.Replace(find.c_str(), put.c_str(), all)), expected) << row.text;
            EXPECT_EQ(bytesOf(s), row.text);
        }
}

TEST(DStringReplace, NullReplacementAppendsNothing)
{
    DString s("a-b-c");
    EXPECT_EQ(bytesOf(s.Replace("-", noText, true)), "abc");
    EXPECT_EQ(bytesOf(s.Replace("-", nullString(), false)), "ab-c");
}

TEST(DStringReplace, WithoutAnOccurrenceSharesTheBlock)
{
    DString s("abc");
    EXPECT_TRUE(shareBlock(s.Replace("x", "y", true), s));
    EXPECT_TRUE(shareBlock(s.Replace("x", "y", false), s));
    EXPECT_TRUE(shareBlock(s.Replace("abcd", "y", true), s));
    EXPECT_TRUE(shareBlock(s.Replace("B", "y", true), s));
}

TEST(DStringReplace, OfAnEmptyTextGivesTheTextBack)
{
    DString s("abc");
    for (bool const all : {false, true}) {
        EXPECT_TRUE(shareBlock(s.Replace("", "x", all), s));
        EXPECT_TRUE(shareBlock(s.Replace(DString(), DString("x"), all), s));
        EXPECT_EQ(bytesOf(s.Replace(noText, "x", all)), "abc");
        EXPECT_EQ(bytesOf(s.Replace(nullString(), DString("x"), all)), "abc");
    }
}

TEST(DStringReplace, InAnEmptyTextGivesTheEmptyConstantInNullANewBlock)
{
    DString empty, emptyBlock(""), null = nullString();
    EXPECT_TRUE(isEmptyConstant(empty.Replace("a", "b", true)));
    EXPECT_TRUE(isEmptyConstant(emptyBlock.Replace("a", "b", true)));
    EXPECT_TRUE(isNewEmptyBlock(null.Replace("a", "b", true)));
}

// ---- Line ends --------------------------------------------------------------------------------

TEST(DStringLineEnds, BareLineFeedsBecomePairsAndLeaveMarksInTheSource)
{
    struct {
        std::string text, result, left;
    } const rows[] = {{"a\nb", "a\r\nb",
                       "a\xC9"
                       "b"},
                      {"a\r\nb", "a\r\nb", "a\r\nb"},
                      {"\na", "\r\na",
                       "\xC9"
                       "a"},
                      {"a\n", "a\r\n", "a\xC9"},
                      {"a\n\nb", "a\r\n\r\nb",
                       "a\xC9\xC9"
                       "b"},
                      {"a\r\n\nb", "a\r\n\r\nb",
                       "a\r\n\xC9"
                       "b"},
                      {"a\xC9"
                       "b",
                       "a\r\nb",
                       "a\xC9"
                       "b"},
                      {"a\rb", "a\rb", "a\rb"},
                      {"\n", "\r\n", "\xC9"}};
    for (auto const &row : rows) {
        DString s(row.text.c_str());
        EXPECT_EQ(bytesOf(s.LFtoCRLF()), row.result) << testing::PrintToString(row.text);
        EXPECT_EQ(bytesOf(s), row.left) << testing::PrintToString(row.text);
    }
}

TEST(DStringLineEnds, SharersKeepTheMarksToo)
{
    DString s("a\nb");
    DString const sharer(s);
    s.LFtoCRLF();
    EXPECT_TRUE(shareBlock(s, sharer));
    EXPECT_EQ(bytesOf(sharer), "a\xC9"
                               "b");
}

TEST(DStringLineEnds, WithoutLineFeedsTheTextComesBackShared)
{
    DString s("abc"), pair("a\r\nb"), empty, null = nullString();
    EXPECT_TRUE(shareBlock(s.LFtoCRLF(), s));
    EXPECT_TRUE(shareBlock(pair.LFtoCRLF(), pair));
    EXPECT_TRUE(isEmptyConstant(empty.LFtoCRLF()));
    EXPECT_TRUE(isNewEmptyBlock(null.LFtoCRLF()));
}
