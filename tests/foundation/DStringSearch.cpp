// Comparison and search of DString.
#include "foundation/DString.h"

#include <climits>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "support/DStringInspector.h"

using namespace std::string_literals;

namespace {

unsigned int const none = 0x7FFFFFFF;
int const farOff = 0x7FFFFFFF;
char const *const noText = nullptr;

bool isNpos(unsigned int found)
{
    return found == none;
}

} // namespace

// ---- Comparison -------------------------------------------------------------------------------

namespace {

struct ComparisonRow {
    std::string a, b;
    bool same, foldedSame; ///< as strings, which regards the lengths
};

ComparisonRow const comparisonRows[] = {
    {"", "", true, true},
    {"abc", "abc", true, true},
    {"abc", "ABC", false, true},
    {"abc", "abd", false, false},
    {"abc", "ab", false, false},
    {"ab", "abc", false, false},
    {"", "a", false, false},
    {"a_b", "A_B", false, true},
    {"a@", "a`", false, false}, // 0x40 and 0x60, just outside the letters
    {"a[", "a{", false, false},
    {"\xC9", "\xE9", false, false}, // folding is ASCII only
    {"\xC9", "\xC9", true, true},
    {"ab\0c"s, "ab\0d"s, true, true}, // what follows a NUL isn't looked at
    {"ab\0c"s, "AB\0d"s, false, true},
    {"ab\0c"s, "ab\0cd"s, false, false}, // but it counts for the length
};

} // namespace

TEST(DStringComparison, OfStringsRegardsTheLengthAndStopsAtANul)
{
    for (auto const &row : comparisonRows) {
        DString const a = fromBytes(row.a), b = fromBytes(row.b);
        std::string const shown = testing::PrintToString(row.a) + " and " + testing::PrintToString(row.b);
        EXPECT_EQ(a == b, row.same) << shown;
        EXPECT_EQ(a != b, !row.same) << shown;
        EXPECT_EQ(a %= b, row.foldedSame) << shown;
        EXPECT_EQ(a /= b, !row.foldedSame) << shown;
    }
}

TEST(DStringComparison, WithTextsStopsAtANul)
{
    for (auto const &row : comparisonRows) {
        DString const a(row.a.c_str());
        char const *const b = row.b.c_str();
        bool const same = row.same || row.a.c_str() == std::string(b);
        bool const foldedSame = row.foldedSame || same;
        std::string const shown = testing::PrintToString(row.a) + " and " + b;
        EXPECT_EQ(a == b, same) << shown;
        EXPECT_EQ(a != b, !same) << shown;
        EXPECT_EQ(a %= b, foldedSame) << shown;
        EXPECT_EQ(a /= b, !foldedSame) << shown;
    }
}

TEST(DStringComparison, WithATextDoesntRegardTheLength)
{
    DString const s = fromBytes("ab\0c"s);
    EXPECT_TRUE(s == "ab");
    EXPECT_FALSE(s != "ab");
    EXPECT_TRUE(s %= "AB");
    EXPECT_FALSE(s /= "AB");
}

TEST(DStringComparison, NullIsEqualToNothing)
{
    DString const null = nullString(), other = nullString(), empty;
    EXPECT_FALSE((null == other) || (null == empty) || (null == "") || (null == noText));
    EXPECT_TRUE((null != other) && (null != empty) && (null != "") && (null != noText));
    EXPECT_FALSE((null %= other) || (null %= empty) || (null %= "") || (null %= noText));
    EXPECT_TRUE((null /= other) && (null /= empty) && (null /= "") && (null /= noText));
}

TEST(DStringComparison, NullArgumentIsEqualToNoText)
{
    DString const s("a"), empty, null = nullString();
    EXPECT_FALSE((s == noText) || (empty == noText) || (s == null) || (s %= null) || (s %= noText));
    EXPECT_TRUE((s != noText) && (empty != noText) && (s != null) && (s /= null) && (s /= noText));
    EXPECT_NE(empty == null, empty != null);
    EXPECT_NE(empty %= null, empty /= null);
    EXPECT_NE(empty %= noText, empty /= noText);
}

TEST(DStringComparison, DefaultStringsAreEqual)
{
    DString const a, b;
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a %= b);
    EXPECT_FALSE(a /= b);
    EXPECT_FALSE(a != b);
}

TEST(DStringComparison, FoldedOperatorsChangeNothing)
{
    DString const a("ABC"), sharer(a);
    EXPECT_TRUE(a %= "abc");
    EXPECT_FALSE(a /= "abc");
    EXPECT_EQ(bytesOf(a), "ABC");
    EXPECT_TRUE(shareBlock(a, sharer));
}

namespace {

struct OrderRow {
    std::string a, b;
    int order;
};

OrderRow const orderRows[] = {{"", "", 0},       {"abc", "abc", 0},       {"a", "z", -1},      {"z", "a", 1},
                              {"ab", "abc", -1}, {"abc", "ab", 1},        {"", "a", -1},       {"B", "a", -1},
                              {"a", "B", 1},     {"a", "\xC9", -1},       {"\xFF", "\x7F", 1}, {"\x80", "\xFF", -1},
                              {"a_", "aB", 1},   {"ab\0c"s, "ab\0d"s, 0}, {"ab\0x"s, "ab", 0}};

} // namespace

TEST(DStringComparison, OrderIsThatOfUnsignedBytesUpToANul)
{
    for (auto const &row : orderRows) {
        DString const a = fromBytes(row.a), b = fromBytes(row.b);
        std::string const shown = testing::PrintToString(row.a) + " and " + testing::PrintToString(row.b);
        EXPECT_EQ(a.Compare(b), row.order) << shown;
        EXPECT_EQ(a.Compare(row.b.c_str()), row.order) << shown;
        EXPECT_EQ(a < b, row.order < 0) << shown;
        EXPECT_EQ(a > b, row.order > 0) << shown;
    }
}

TEST(DStringComparison, InOrderNullCountsAsEmpty)
{
    DString const null = nullString(), a("a"), empty;
    EXPECT_TRUE(null < a);
    EXPECT_FALSE(null > a);
    EXPECT_FALSE((null < empty) || (null > empty) || (empty < null) || (empty > null));
    EXPECT_EQ(null.Compare(a), -1);
    EXPECT_EQ(a.Compare(null), 1);
    EXPECT_EQ(a.Compare(noText), 1);
    EXPECT_EQ(null.Compare(noText), 0);
}

TEST(DStringComparison, EmptinessTests)
{
    DString const empty, emptyBlock(""), null = nullString(), nul = fromBytes("\0"s), a("a");
    EXPECT_TRUE(!empty && !emptyBlock && !null);
    EXPECT_FALSE(~empty || ~emptyBlock || ~null);
    EXPECT_TRUE(~nul && ~a);
    EXPECT_FALSE(!nul || !a);
}

namespace {

struct EdgeRow {
    std::string text, part;
    bool starts, ends;
};

EdgeRow const edgeRows[] = {{"abcdef", "abc", true, false},    {"abcdef", "DEF", false, true},
                            {"abcdef", "ABCDEF", true, true},  {"abcdef", "bcd", false, false},
                            {"abc", "abcd", false, false},     {"abc", "zabc", false, false},
                            {"", "a", false, false},           {"\xC9x\xC9", "\xE9", false, false},
                            {"\xC9x\xC9", "\xC9", true, true}, {"aXa", "A", true, true},
                            {"a@", "`", false, false}};

} // namespace

TEST(DStringComparison, StartAndEndIgnoreCaseInBothForms)
{
    for (auto const &row : edgeRows) {
        DString const s = fromBytes(row.text);
        std::string const shown = row.text + " and " + row.part;
        EXPECT_EQ(s.StartsWith(row.part.c_str()), row.starts) << shown;
        EXPECT_EQ(s.StartsWith(fromBytes(row.part)), row.starts) << shown;
        EXPECT_EQ(s.EndsWith(row.part.c_str()), row.ends) << shown;
        EXPECT_EQ(s.EndsWith(fromBytes(row.part)), row.ends) << shown;
    }
}

TEST(DStringComparison, EverythingStartsWithAnEmptyText)
{
    for (auto const &s : {DString("abc"), DString(), DString("")}) {
        EXPECT_TRUE(s.StartsWith(""));
        EXPECT_TRUE(s.StartsWith(DString()));
        EXPECT_TRUE(s.StartsWith(DString("")));
        EXPECT_TRUE(s.StartsWith(nullString()));
    }
}

TEST(DStringComparison, EverythingEndsWithAnEmptyTextButNotWithAnEmptyString)
{
    for (auto const &s : {DString("abc"), DString(), DString("")}) {
        EXPECT_TRUE(s.EndsWith(""));
        EXPECT_FALSE(s.EndsWith(noText));
        EXPECT_FALSE(s.EndsWith(DString()));
        EXPECT_FALSE(s.EndsWith(DString("")));
        EXPECT_FALSE(s.EndsWith(nullString()));
    }
}

TEST(DStringComparison, NullStartsAndEndsWithNothing)
{
    DString const null = nullString();
    EXPECT_FALSE(null.StartsWith("") || null.StartsWith(DString()) || null.StartsWith("a"));
    EXPECT_FALSE(null.EndsWith("") || null.EndsWith(DString()) || null.EndsWith("a"));
}

// ---- Searches ---------------------------------------------------------------------------------

namespace {

struct CharSearch {
    std::string text;
    char what;
    int start;
    unsigned int expected;
};

void PrintTo(CharSearch const &row, std::ostream *out)
{
    *out << testing::PrintToString(row.text) << " for " << testing::PrintToString(row.what) << " from " << row.start;
}

struct TextSearch {
    std::string text, what;
    int start;
    unsigned int expected;
};

void PrintTo(TextSearch const &row, std::ostream *out)
{
    *out << testing::PrintToString(row.text) << " for " << testing::PrintToString(row.what) << " from " << row.start;
}

} // namespace

TEST(DStringSearch, FindsACharacter)
{
    CharSearch const rows[] = {
        {"abcabc", 'b', 0, 1},      {"abcabc", 'b', 1, 1}, {"abcabc", 'b', 2, 4},   {"abcabc", 'b', 5, none},
        {"abcabc", 'B', 0, none},   {"abcabc", 'c', 5, 5}, {"abc", 'c', 3, none},   {"abc", 'c', 4, none},
        {"abc", 'a', farOff, none}, {"", 'a', 0, none},    {"a\xC9", '\xC9', 0, 1}, {"ab\0c"s, 'c', 0, none},
        {"ab\0c"s, 'c', 3, 3},      {"abc", '\0', 0, 3},   {"ab\0c"s, '\0', 0, 2},  {"", '\0', 0, none}};
    for (auto const &row : rows)
        EXPECT_EQ(fromBytes(row.text).Find(row.what, row.start), row.expected) << testing::PrintToString(row);
    EXPECT_EQ(DString("abc").Find('a'), 0u);
}

TEST(DStringSearch, FindsAText)
{
    TextSearch const rows[] = {{"abcabc", "bc", 0, 1},    {"abcabc", "bc", 2, 4},     {"abcabc", "bc", 5, none},
                               {"abcabc", "BC", 0, none}, {"abc", "abcd", 0, none},   {"abc", "abc", 0, 0},
                               {"abc", "c", 2, 2},        {"abc", "c", 3, none},      {"abc", "c", farOff, none},
                               {"", "a", 0, none},        {"abc", "", 0, 0},          {"abc", "", 2, 2},
                               {"abc", "", 3, none},      {"", "", 0, none},          {"aab", "ab", 0, 1},
                               {"x\xC9y", "\xC9y", 0, 1}, {"ab\0cd"s, "cd", 0, none}, {"ab\0cd"s, "cd", 3, 3}};
    for (auto const &row : rows) {
        DString const s = fromBytes(row.text);
        EXPECT_EQ(s.Find(row.what.c_str(), row.start), row.expected) << testing::PrintToString(row);
        EXPECT_EQ(s.Find(fromBytes(row.what), row.start), row.expected) << testing::PrintToString(row);
    }
    EXPECT_EQ(DString("abc").Find("bc"), 1u);
}

TEST(DStringSearch, FindIgnoringCase)
{
    TextSearch const rows[] = {{"abCABc", "Bc", 0, 1},     {"abCABc", "bC", 2, 4},    {"abc", "", 0, 0},
                               {"abc", "", 3, none},       {"", "", 0, none},         {"abc", "C", 3, none},
                               {"abc", "c", farOff, none}, {"\xC9", "\xE9", 0, none}, {"x\xC9Y", "\xC9y", 0, 1},
                               {"a@b", "`", 0, none},      {"abc", "abcd", 0, none},  {"ab\0CD"s, "cd", 0, none},
                               {"ab\0CD"s, "cd", 3, none}, {"abc", "BC", 1, 1},       {"abc", "BC", 2, none}};
    for (auto const &row : rows) {
        DString const s = fromBytes(row.text);
        EXPECT_EQ(s.FindI(row.what.c_str(), row.start), row.expected) << testing::PrintToString(row);
        EXPECT_EQ(s.FindI(fromBytes(row.what), row.start), row.expected) << testing::PrintToString(row);
    }
    EXPECT_EQ(DString("abc").FindI("BC"), 1u);
}

TEST(DStringSearch, FindIgnoringCaseChangesNeitherString)
{
    DString const s("ABC"), what("Bc"), sharer(s);
    EXPECT_EQ(s.FindI(what), 1u);
    EXPECT_EQ(bytesOf(s), "ABC");
    EXPECT_EQ(bytesOf(what), "Bc");
    EXPECT_TRUE(shareBlock(s, sharer));
}

TEST(DStringSearch, FindsTheFirstOfASet)
{
    TextSearch const rows[] = {{"abcabc", "cb", 0, 1},  {"abcabc", "cb", 3, 4},   {"abcabc", "x", 0, none},
                               {"abcabc", "c", 5, 5},   {"abcabc", "c", 6, none}, {"abc", "c", farOff, none},
                               {"abc", "", 0, none},    {"", "a", 0, none},       {"abc", "AB", 0, none},
                               {"a\xC9", "\xC9", 0, 1}, {"aa\0b"s, "b", 0, none}, {"aa\0b"s, "b", 3, 3}};
    for (auto const &row : rows) {
        DString const s = fromBytes(row.text);
        EXPECT_EQ(s.FindFirstOf(row.what.c_str(), row.start), row.expected) << testing::PrintToString(row);
        EXPECT_EQ(s.FindFirstOf(fromBytes(row.what), row.start), row.expected) << testing::PrintToString(row);
    }
    EXPECT_EQ(DString("abc").FindFirstOf("b"), 1u);
}

TEST(DStringSearch, FindsTheFirstOutsideASet)
{
    TextSearch const rows[] = {{"aabc", "a", 0, 2},
                               {"aabc", "ab", 0, 3},
                               {"aaa", "a", 0, none},
                               {"aab", "a", 2, 2},
                               {"aab", "ab", 2, none},
                               {"aab", "a", 3, none},
                               {"aab", "a", farOff, none},
                               {"abc", "", 1, 1},
                               {"", "a", 0, none},
                               {"aA", "a", 0, 1},
                               {"\xC9"
                                "b",
                                "\xC9", 0, 1},
                               {"aa\0b"s, "a", 0, 2}};
    for (auto const &row : rows) {
        DString const s = fromBytes(row.text);
        EXPECT_EQ(s.FindFirstNotOf(row.what.c_str(), row.start), row.expected) << testing::PrintToString(row);
        EXPECT_EQ(s.FindFirstNotOf(fromBytes(row.what), row.start), row.expected) << testing::PrintToString(row);
    }
    EXPECT_EQ(DString("aab").FindFirstNotOf("a"), 2u);
}

TEST(DStringSearch, FindsACharacterFromBehind)
{
    CharSearch const rows[] = {{"abcabc", 'b', farOff, 4},    {"abcabc", 'b', 100, 4},       {"abcabc", 'b', 5, 4},
                               {"abcabc", 'b', 4, 4},         {"abcabc", 'b', 3, 1},         {"abcabc", 'b', 1, 1},
                               {"abcabc", 'b', 0, none},      {"abcabc", 'a', 0, 0},         {"abcabc", 'a', 2, 0},
                               {"abcabc", 'B', farOff, none}, {"", 'a', farOff, none},       {"", 'a', 0, none},
                               {"", '\0', 0, none},           {"a", 'a', farOff, 0},         {"a", 'a', 5, 0},
                               {"\xC9", '\xC9', 5, 0},        {"ab\0c"s, 'c', farOff, none}, {"ab\0c"s, 'c', 3, 3},
                               {"abc", '\0', farOff, 3},      {"abc", '\0', 2, none},        {"ab", 'a', -5, 0},
                               {"ab", 'b', -5, none},         {"ab", 'a', INT_MIN, 0}};
    for (auto const &row : rows)
        EXPECT_EQ(fromBytes(row.text).RFind(row.what, row.start), row.expected) << testing::PrintToString(row);
    EXPECT_EQ(DString("abab").RFind('a'), 2u);
}

TEST(DStringSearch, FindsATextFromBehind)
{
    TextSearch const rows[] = {{"abcabc", "bc", farOff, 4},
                               {"abcabc", "bc", 100, 4},
                               {"abcabc", "bc", 4, 4},
                               {"abcabc", "bc", 3, 1},
                               {"abcabc", "bc", 1, 1},
                               {"abcabc", "bc", 0, none},
                               {"abcabc", "ab", 0, 0},
                               {"abcabc", "BC", farOff, none},
                               {"abc", "abcd", farOff, none},
                               {"abc", "abc", farOff, 0},
                               {"abc", "abc", 2, 0},
                               {"abc", "a", -1, none},
                               {"abc", "a", INT_MIN, none},
                               {"abc", "", farOff, 3},
                               {"abc", "", 1, 1},
                               {"", "", farOff, 0},
                               {"", "a", farOff, none},
                               {"abc", "", -1, none},
                               {"aaa", "aa", farOff, 1},
                               {"x\xC9y\xC9", "\xC9", farOff, 3},
                               {"ab\0ab"s, "ab", farOff, 3}};
    for (auto const &row : rows) {
        DString const s = fromBytes(row.text);
        EXPECT_EQ(s.RFind(row.what.c_str(), row.start), row.expected) << testing::PrintToString(row);
        EXPECT_EQ(s.RFind(fromBytes(row.what), row.start), row.expected) << testing::PrintToString(row);
    }
    EXPECT_EQ(DString("abab").RFind("ab"), 2u);
}

TEST(DStringSearch, NullTextFromBehindHasNoLength)
{
    EXPECT_EQ(DString("abc").RFind(noText), 3u);
    EXPECT_EQ(DString("abc").RFind(nullString(), 1), 1u);
    EXPECT_EQ(DString().RFind(noText), 0u);
}

TEST(DStringSearch, NullTextIsFoundNowhereOrAtTheStart)
{
    DString const s("abc"), null = nullString();
    for (unsigned int const found : {s.Find(null, 1), s.Find(noText, 1), s.FindI(null, 1), s.FindI(noText, 1)})
        EXPECT_TRUE(found == none || found == 1) << found;
}

TEST(DStringSearch, NullSetIsEmpty)
{
    DString const s("abc"), null = nullString();
    EXPECT_EQ(s.FindFirstOf(null), none);
    EXPECT_EQ(s.FindFirstOf(noText), none);
    EXPECT_EQ(s.FindFirstNotOf(null, 1), 1u);
    EXPECT_EQ(s.FindFirstNotOf(noText, 1), 1u);
}

TEST(DStringSearch, NothingIsFoundInNull)
{
    DString const null = nullString();
    for (int const start : {0, 1, farOff, -1}) {
        EXPECT_TRUE(isNpos(null.Find('a', start)) && isNpos(null.Find('\0', start))) << start;
        EXPECT_TRUE(isNpos(null.Find("", start)) && isNpos(null.Find(DString("a"), start))) << start;
        EXPECT_TRUE(isNpos(null.FindI("", start)) && isNpos(null.FindI(DString("a"), start))) << start;
        EXPECT_TRUE(isNpos(null.FindFirstOf("a", start)) && isNpos(null.FindFirstNotOf("a", start))) << start;
        EXPECT_TRUE(isNpos(null.RFind('a', start)) && isNpos(null.RFind('\0', start))) << start;
        EXPECT_TRUE(isNpos(null.RFind("", start)) && isNpos(null.RFind(DString(), start))) << start;
    }
}

TEST(DStringSearch, ANegativeStartStaysInsideTheText)
{
    DString const s("ab");
    for (int const start : {-1, -1000, INT_MIN}) {
        for (unsigned int const found : {s.Find('b', start), s.Find("b", start), s.FindI("B", start),
                                         s.FindFirstOf("b", start), s.FindFirstNotOf("a", start)})
            EXPECT_TRUE(found == 1 || found == none) << start << " gives " << found;
    }
}
