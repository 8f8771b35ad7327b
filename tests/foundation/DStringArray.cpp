// DStringArray: splitting in its three modes, tables, joining, searching and sorting.
#include "foundation/DStringArray.h"

#include <climits>
#include <cstring>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/DStringInspector.h"
#include "support/Stopwatch.h"

using namespace std::string_literals;

namespace {

using Texts = std::vector<std::string>;

char const *const noText = nullptr;

#if defined __SANITIZE_ADDRESS__
int const manyLines = 20000; // each search is followed by a look at all the rest, for errors
#else
int const manyLines = 1000000;
#endif

/// The two characters of LDelim at another place.
char const pair[] = {'\r', '\n', '\0'};

Texts textsOf(DArray<DString, 1> const &a)
{
    Texts texts;
    for (int i = 0; i < a.Count(); i++) texts.push_back(bytesOf(a[i]));
    return texts;
}

DStringArray listOf(Texts const &texts)
{
    DStringArray list;
    for (auto const &text : texts) list << fromBytes(text);
    return list;
}

Texts split(std::string const &text, char const *delim, int minCount = -1)
{
    DStringArray list;
    list.Split(fromBytes(text), delim, minCount);
    EXPECT_GE(list.Capacity(), list.Count());
    return textsOf(list);
}

/// Length of a run and number of runs, as "3 x 2".
std::string shapeOf(DArray<DString, 1> const &a)
{
    return std::to_string(a.RCount()) + " x " + std::to_string(a.CCount());
}

struct SplitRow {
    std::string text;
    Texts pieces;
};

template <std::size_t n>
void expectSplits(char const *delim, SplitRow const (&rows)[n])
{
    for (auto const &row : rows) EXPECT_EQ(split(row.text, delim), row.pieces) << testing::PrintToString(row.text);
}

} // namespace

static_assert(sizeof(DStringArray) == sizeof(DArray<DString, 1>), "no field of its own");
static_assert(std::is_base_of_v<DArray<DString, 1>, DStringArray>);
static_assert(std::has_virtual_destructor_v<DStringArray>);

// ---- Splitting --------------------------------------------------------------------------------

TEST(DStringArraySplit, AtATextGivesAnEmptyFirstButNoEmptyLast)
{
    SplitRow const rows[] = {{"a,b", {"a", "b"}},
                             {"a,b,", {"a", "b"}},
                             {",a,b", {"", "a", "b"}},
                             {"a,,b", {"a", "", "b"}},
                             {",", {""}},
                             {",,", {"", ""}},
                             {",,a", {"", "", "a"}},
                             {"a,,", {"a", ""}},
                             {"a", {"a"}},
                             {"", {}},
                             {" a , b ", {" a ", " b "}},
                             {"\xC9,\xFF", {"\xC9", "\xFF"}},
                             {"a;b", {"a;b"}}};
    expectSplits(",", rows);
}

TEST(DStringArraySplit, AtALongerTextMatchesItExactly)
{
    SplitRow const rows[] = {{"1--2--3", {"1", "2", "3"}}, {"1-2--3", {"1-2", "3"}}, {"--1", {"", "1"}}, {"1--", {"1"}},
                             {"---1", {"", "-1"}},         {"----", {"", ""}},       {"-", {"-"}},       {"--", {""}}};
    expectSplits("--", rows);
}

TEST(DStringArraySplit, AtATextRegardsCase)
{
    EXPECT_EQ(split("1x2X3", "x"), (Texts{"1", "2X3"}));
    EXPECT_EQ(split("1AB2ab3", "ab"), (Texts{"1AB2", "3"}));
    EXPECT_EQ(split("1\xC9"
                    "2",
                    "\xC9"),
              (Texts{"1", "2"}));
}

TEST(DStringArraySplit, AtASpaceTakesRunsAsOneAndGivesNoEmptyPiece)
{
    SplitRow const rows[] = {{"  a   b ", {"a", "b"}},
                             {"a b", {"a", "b"}},
                             {"a", {"a"}},
                             {" a", {"a"}},
                             {"a ", {"a"}},
                             {"   ", {}},
                             {" ", {}},
                             {"", {}},
                             {"a\tb c", {"a\tb", "c"}},
                             {"a\r\nb c", {"a\r\nb", "c"}},
                             {"  \xA0 ", {"\xA0"}}};
    expectSplits(" ", rows);
}

TEST(DStringArraySplit, SpaceModeGoesByTheTextNotThePointer)
{
    char const space[] = {' ', '\0'};
    EXPECT_EQ(split("  a   b ", space), (Texts{"a", "b"}));
    EXPECT_EQ(split("a  b   c", "  "), (Texts{"a", "b", " c"})); // two spaces are a text like any other
}

TEST(DStringArraySplit, IntoLinesWhateverTheirEnds)
{
    SplitRow const rows[] = {{"a\nb\r\nc", {"a", "b", "c"}},
                             {"a\nb\r\n", {"a", "b"}},
                             {"a\nb\n", {"a", "b"}},
                             {"a\r\n\r\nb", {"a", "", "b"}},
                             {"a\n\nb", {"a", "", "b"}},
                             {"\na", {"", "a"}},
                             {"\r\na", {"", "a"}},
                             {"\n\n", {"", ""}},
                             {"\r\n", {""}},
                             {"\n", {""}},
                             {"a\r", {"a"}},
                             {"\r", {""}},
                             {"a\r\r\nb", {"a\r", "b"}}, // one carriage return goes
                             {"a\rb\nc", {"a\rb", "c"}},
                             {"\ra\n", {"\ra"}},
                             {"", {}},
                             {"one line", {"one line"}}};
    expectSplits(LDelim, rows);
}

TEST(DStringArraySplit, AnotherPointerToTheSameCharactersIsAPlainText)
{
    SplitRow const rows[] = {
        {"a\nb\r\nc", {"a\nb", "c"}}, {"a\r", {"a\r"}}, {"\r\na", {"", "a"}}, {"a\r\r\nb", {"a\r", "b"}}};
    expectSplits(pair, rows);
}

TEST(DStringArraySplit, ALineFeedAsATextKeepsCarriageReturns)
{
    EXPECT_EQ(split("a\r\nb\n", "\n"), (Texts{"a\r", "b"}));
}

TEST(DStringArraySplit, MinimumCountPadsAndNeverLimits)
{
    EXPECT_EQ(split("a,b", ",", 5), (Texts{"a", "b", "", "", ""}));
    EXPECT_EQ(split("a,b", ",", 2), (Texts{"a", "b"}));
    EXPECT_EQ(split("a,b,c", ",", 2), (Texts{"a", "b", "c"}));
    EXPECT_EQ(split("a,b,c", ",", 1), (Texts{"a", "b", "c"}));
    EXPECT_EQ(split(" a  b ", " ", 3), (Texts{"a", "b", ""}));
    EXPECT_EQ(split("a\r\nb", LDelim, 3), (Texts{"a", "b", ""}));
    EXPECT_EQ(split("   ", " ", 2), (Texts{"", ""}));
}

TEST(DStringArraySplit, OfNothingGivesTheMinimum)
{
    for (char const *delim : {",", " ", LDelim, static_cast<char const *>(pair)}) {
        EXPECT_EQ(split("", delim, 3), (Texts{"", "", ""}));
        EXPECT_EQ(split("", delim, -1), Texts());
        EXPECT_EQ(split("", delim, 0), Texts());
        EXPECT_EQ(split("", delim, INT_MIN), Texts());
    }
    DStringArray fromNull, fromConstant;
    fromNull.Split(nullString(), ",", 2);
    fromConstant.Split(DString(), ",", 2);
    EXPECT_EQ(textsOf(fromNull), (Texts{"", ""}));
    EXPECT_EQ(textsOf(fromConstant), (Texts{"", ""}));
    fromNull.Split(nullString(), ",", -1);
    EXPECT_EQ(fromNull.Count(), 0);
}

TEST(DStringArraySplit, PaddingSetsTheShapeOfAList)
{
    DStringArray list(3, 2);
    list.Split("a,b", ",", 5);
    EXPECT_EQ(list.Count(), 5);
    EXPECT_EQ(shapeOf(list), "1 x 5");
    EXPECT_EQ(list[4].c_str(), DEmptyString);
}

TEST(DStringArraySplit, ReplacesWhatTheArrayHeld)
{
    DStringArray list(3, 2);
    list.Split("a,b", ",", -1);
    EXPECT_EQ(textsOf(list), (Texts{"a", "b"}));
    EXPECT_EQ(list.RCount(), 1);
    list.Split("", ",", -1);
    EXPECT_EQ(list.Count(), 0);
}

TEST(DStringArraySplit, PiecesAreBlocksOfTheirOwn)
{
    DString const text("whole");
    DStringArray list;
    for (char const *delim : {",", " ", LDelim}) {
        list.Split(text, delim, -1);
        EXPECT_EQ(textsOf(list), Texts{"whole"});
        list[0].SetChar(0, 'W');
        EXPECT_EQ(bytesOf(text), "whole");
    }
}

TEST(DStringArraySplit, LeavesTheTextAlone)
{
    DString const text("a\r\nb\r");
    DString const sharer(text);
    DStringArray const list(text, LDelim, -1);
    EXPECT_EQ(textsOf(list), (Texts{"a", "b"}));
    EXPECT_EQ(bytesOf(text), "a\r\nb\r");
    EXPECT_TRUE(shareBlock(text, sharer));
}

TEST(DStringArraySplit, TheConstructorSplits)
{
    EXPECT_EQ(textsOf(DStringArray("a,b", ",", -1)), (Texts{"a", "b"}));
    EXPECT_EQ(textsOf(DStringArray("a,b", ",", 3)), (Texts{"a", "b", ""}));
    EXPECT_EQ(textsOf(DStringArray("a\nb\r\n", LDelim, -1)), (Texts{"a", "b"}));
}

TEST(DStringArraySplit, ReservesTheMinimum)
{
    DStringArray list;
    list.Split("a", ",", 1000);
    EXPECT_EQ(list.Count(), 1000);
    EXPECT_EQ(list.Capacity(), 1024);
}

TEST(DStringArraySplit, OddDelimitersEnd)
{
    for (char const *delim : {"", noText}) {
        DStringArray list;
        list.Split("abc", delim, -1);
        EXPECT_LE(list.Count(), 4);
        std::string together;
        for (auto const &text : textsOf(list)) together += text;
        EXPECT_EQ(together, "abc");
    }
}

TEST(DStringArraySplit, AMillionLinesTakeNoTime)
{
    std::string text;
    for (int i = 0; i < manyLines; i++) text += std::to_string(i) + (i % 2 ? "\r\n" : "\n");
    DString const lines = fromBytes(text);
    DStringArray list;
    EXPECT_LT(secondsOf([&] { list.Split(lines, LDelim, -1); }), 10.0);
    ASSERT_EQ(list.Count(), manyLines);
    for (int i = 0; i < manyLines; i++) ASSERT_EQ(bytesOf(list[i]), std::to_string(i));
}

TEST(DStringArraySplit, AMillionSpacesAreNoPiece)
{
    std::string const text = "a" + std::string(1000000, ' ') + "b";
    Texts pieces;
    EXPECT_LT(secondsOf([&] { pieces = split(text, " "); }), 1.0);
    EXPECT_EQ(pieces, (Texts{"a", "b"}));
}

// ---- Tables -----------------------------------------------------------------------------------

TEST(DStringArrayTable, HasOneRunPerLine)
{
    DStringArray table;
    table.Split2D("a,b,c\r\nd,e,f\n", ",", 3);
    EXPECT_EQ(shapeOf(table), "3 x 2");
    EXPECT_EQ(textsOf(table), (Texts{"a", "b", "c", "d", "e", "f"}));
    EXPECT_EQ(bytesOf(table(1, 0)), "b");
    EXPECT_EQ(bytesOf(table(0, 1)), "d");
}

TEST(DStringArrayTable, DropsFurtherFieldsAndPadsMissingOnes)
{
    DStringArray table;
    table.Split1Dto2D(listOf({"a,b,c", "d", "", ",e"}), ",", 2);
    EXPECT_EQ(shapeOf(table), "2 x 4");
    EXPECT_EQ(textsOf(table), (Texts{"a", "b", "d", "", "", "", "", "e"}));
}

TEST(DStringArrayTable, TakesTheWidthOfTheWidestLine)
{
    DStringArray table;
    table.Split1Dto2D(listOf({"a", "b c  d", "e f"}), " ", -1);
    EXPECT_EQ(shapeOf(table), "3 x 3");
    EXPECT_EQ(textsOf(table), (Texts{"a", "", "", "b", "c", "d", "e", "f", ""}));
}

TEST(DStringArrayTable, LooksAtTheFirstHundredLinesForTheWidth)
{
    for (int const wideLine : {99, 100}) {
        DStringArray lines;
        for (int i = 0; i < 102; i++) lines << DString(i == wideLine ? "a,b,c" : "a,b");
        DStringArray table;
        table.Split1Dto2D(lines, ",", -1);
        EXPECT_EQ(table.RCount(), wideLine == 99 ? 3 : 2) << wideLine;
        EXPECT_EQ(table.CCount(), 102) << wideLine;
        EXPECT_EQ(bytesOf(table(table.RCount() - 1, wideLine)), wideLine == 99 ? "c" : "b");
    }
}

TEST(DStringArrayTable, OfNothingIsEmptyWithRunsOfOne)
{
    DStringArray table(3, 2);
    table.Split1Dto2D(DStringArray(), ",", -1);
    EXPECT_EQ(shapeOf(table), "1 x 0");
    EXPECT_EQ(table.Count(), 0);
    table.Split2D("", ",", 4);
    EXPECT_EQ(shapeOf(table), "4 x 0");
    EXPECT_EQ(table.Count(), 0);
}

TEST(DStringArrayTable, OfEmptyLinesHasRunsOfOne)
{
    DStringArray table;
    table.Split1Dto2D(listOf({"", ""}), ",", -1);
    EXPECT_EQ(shapeOf(table), "1 x 2");
    EXPECT_EQ(textsOf(table), (Texts{"", ""}));
}

TEST(DStringArrayTable, WithoutColumnsHasRunsOfOne)
{
    DStringArray table;
    table.Split1Dto2D(listOf({"a,b", "c"}), ",", 0);
    EXPECT_EQ(shapeOf(table), "1 x 2");
    EXPECT_EQ(table.Count(), 2);
}

TEST(DStringArrayTable, ReplacesWhatTheArrayHeld)
{
    DStringArray table = listOf({"x", "y", "z"});
    table.Split2D("a b\nc d", " ", 2);
    EXPECT_EQ(textsOf(table), (Texts{"a", "b", "c", "d"}));
    EXPECT_EQ(shapeOf(table), "2 x 2");
}

TEST(DStringArrayTable, LeavesTheLinesAlone)
{
    DStringArray const lines = listOf({"a,b", "c"});
    DStringArray table;
    table.Split1Dto2D(lines, ",", 2);
    EXPECT_EQ(textsOf(lines), (Texts{"a,b", "c"}));
}

TEST(DStringArrayTable, RaggedTablesKeepTheirOwnLengths)
{
    DArray<DStringArray, 1> out(2, 3);
    out[0] << DString("before");
    listOf({"a,b,c", "", "d"}).MakeTable(out, ",", -1);
    ASSERT_EQ(out.Count(), 3);
    EXPECT_EQ(out.RCount(), 1);
    EXPECT_EQ(out.CCount(), 3);
    EXPECT_EQ(textsOf(out[0]), (Texts{"a", "b", "c"}));
    EXPECT_EQ(textsOf(out[1]), Texts());
    EXPECT_EQ(textsOf(out[2]), Texts{"d"});
}

TEST(DStringArrayTable, RaggedTablesArePaddedToo)
{
    DArray<DStringArray, 1> out;
    listOf({"a b c", ""}).MakeTable(out, " ", 2);
    EXPECT_EQ(textsOf(out[0]), (Texts{"a", "b", "c"}));
    EXPECT_EQ(textsOf(out[1]), (Texts{"", ""}));
}

TEST(DStringArrayTable, ARaggedTableOfNothingIsEmpty)
{
    DArray<DStringArray, 1> out(2, 3);
    DStringArray().MakeTable(out, ",", 4);
    EXPECT_EQ(out.Count(), 0);
    EXPECT_EQ(out.RCount(), 1);
    EXPECT_EQ(out.CCount(), 0);
}

// ---- Life -------------------------------------------------------------------------------------

TEST(DStringArray, ConstructorsMakeEmptyStrings)
{
    DStringArray const none, list(3), table(3, 2);
    EXPECT_EQ(none.Count(), 0);
    EXPECT_EQ(none.Capacity(), 0);
    EXPECT_EQ(shapeOf(list), "1 x 3");
    EXPECT_EQ(shapeOf(table), "3 x 2");
    EXPECT_EQ(textsOf(table), Texts(6));
    EXPECT_EQ(table[5].c_str(), DEmptyString);
    EXPECT_EQ(DStringArray(-2).Count(), 0);
}

TEST(DStringArray, CopiesShareTheirStrings)
{
    DStringArray const list = listOf({"a", "b"});
    DStringArray const copy(list);
    DStringArray assigned = listOf({"x", "y", "z"});
    assigned = list;
    EXPECT_EQ(textsOf(assigned), (Texts{"a", "b"}));
    EXPECT_TRUE(shareBlock(list[0], copy[0]) && shareBlock(list[1], assigned[1]));
    EXPECT_EQ(DStringInspector::Refs(list[0]), 3);
}

TEST(DStringArray, MovingCopiesAndLeavesTheSource)
{
    DStringArray list = listOf({"a", "b"});
    DStringArray const moved(std::move(list));
    DStringArray assigned = listOf({"x", "y", "z"});
    assigned = std::move(list);
    EXPECT_EQ(textsOf(moved), (Texts{"a", "b"}));
    EXPECT_EQ(textsOf(assigned), (Texts{"a", "b"}));
    EXPECT_EQ(textsOf(list), (Texts{"a", "b"}));
    EXPECT_TRUE(shareBlock(list[0], moved[0]) && shareBlock(list[0], assigned[0]));
}

TEST(DStringArray, CopiesAndMovesKeepTheShape)
{
    DStringArray table(3, 2);
    EXPECT_EQ(shapeOf(DStringArray(table)), "3 x 2");
    EXPECT_EQ(shapeOf(DStringArray(std::move(table))), "3 x 2");
    DStringArray assigned;
    assigned = std::move(table);
    EXPECT_EQ(shapeOf(assigned), "3 x 2");
}

TEST(DStringArray, SelfAssignmentDoesNothing)
{
    DStringArray list = listOf({"a", "b"});
    DStringArray &same = list;
    DString const *const block = list.Data();
    list = same;
    list = std::move(same);
    EXPECT_EQ(list.Data(), block);
    EXPECT_EQ(textsOf(list), (Texts{"a", "b"}));
}

TEST(DStringArray, DestructionReleasesTheStrings)
{
    DString const s("abc");
    DArray<DString, 1> *const list = new DStringArray(listOf({"x"}));
    static_cast<DStringArray *>(list)->Add(s);
    EXPECT_EQ(DStringInspector::Refs(s), 2);
    delete list;
    EXPECT_EQ(DStringInspector::Refs(s), 1);
}

// ---- Adding -----------------------------------------------------------------------------------

TEST(DStringArrayAdding, AddsAtTheEndAndShares)
{
    DString const s("abc");
    DStringArray list;
    list.Add(s);
    EXPECT_EQ(&(list << s << DString("d")), &list);
    EXPECT_EQ(textsOf(list), (Texts{"abc", "abc", "d"}));
    EXPECT_EQ(shapeOf(list), "1 x 3");
    EXPECT_TRUE(shareBlock(list[0], s));
}

TEST(DStringArrayAdding, AddsSeveralThatStandBehindEachOther)
{
    DString const texts[] = {"a", "b", "c"};
    DStringArray list;
    list.Add(texts[1], 2);
    list.Add(texts[0], 1);
    EXPECT_EQ(textsOf(list), (Texts{"b", "c", "a"}));
}

TEST(DStringArrayAdding, ToATableAddsNothing)
{
    DStringArray table(3, 2);
    table.Add("x");
    table << DString("y");
    EXPECT_EQ(table.Count(), 6);
    EXPECT_EQ(shapeOf(table), "3 x 2");
}

TEST(DStringArrayAdding, AppendTakesAllOfAnother)
{
    DStringArray list = listOf({"a"});
    DStringArray const other = listOf({"b", "c"});
    list.Append(other);
    list.Append(DStringArray());
    EXPECT_EQ(textsOf(list), (Texts{"a", "b", "c"}));
    EXPECT_TRUE(shareBlock(list[1], other[0]));
    EXPECT_EQ(textsOf(other), (Texts{"b", "c"}));
}

TEST(DStringArrayAdding, AppendToATableTakesWholeRuns)
{
    DStringArray table(2, 1);
    table.Append(listOf({"a", "b", "c"}));
    EXPECT_EQ(textsOf(table), (Texts{"", "", "a", "b"}));
    EXPECT_EQ(shapeOf(table), "2 x 2");
}

// ---- Searching and sorting --------------------------------------------------------------------

TEST(DStringArrayIndex, FindsTheFirstOfTheLengthApartFromCase)
{
    DStringArray const list = listOf({"alpha", "Beta", "BETA", "", "\xC9t\xE9", "ab\0x"s});
    struct {
        std::string text;
        int index;
    } const rows[] = {{"ALPHA", 0},  {"beta", 1},      {"bet", -1},       {"alphabet", -1}, {"", 3},
                      {"gamma", -1}, {"\xC9T\xE9", 4}, {"\xE9t\xE9", -1}, {"AB\0y"s, 5},    {"ab", -1}};
    for (auto const &row : rows)
        EXPECT_EQ(list.Index(fromBytes(row.text)), row.index) << testing::PrintToString(row.text);
}

TEST(DStringArrayIndex, OfNothingIsMinusOne)
{
    EXPECT_EQ(DStringArray().Index("a"), -1);
    EXPECT_EQ(listOf({"a"}).Index(DString()), -1);
    EXPECT_EQ(listOf({"a"}).Index(nullString()), -1);
}

TEST(DStringArrayIndex, SkipsNullElements)
{
    DStringArray list = listOf({"a", "b", ""});
    DStringInspector::MakeNull(list[0]);
    EXPECT_EQ(list.Index("b"), 1);
    EXPECT_EQ(list.Index("a"), -1);
    EXPECT_EQ(list.Index(""), 2);
}

namespace {

int byLength(void const *a, void const *b)
{
    return static_cast<DString const *>(a)->Len() - static_cast<DString const *>(b)->Len();
}

} // namespace

TEST(DStringArraySort, NullSortsApartFromCase)
{
    DStringArray list = listOf({"d", "C", "b", "A", "", "\xC9", "_", "aa", "Z"});
    list.Sort(nullptr);
    // the underscore stands before the letters, since these are folded to lower case
    EXPECT_EQ(textsOf(list), (Texts{"", "_", "A", "aa", "b", "C", "d", "Z", "\xC9"}));
}

TEST(DStringArraySort, TakesAComparison)
{
    DStringArray list = listOf({"ccc", "a", "bb"});
    list.Sort(byLength);
    EXPECT_EQ(textsOf(list), (Texts{"a", "bb", "ccc"}));
}

TEST(DStringArraySort, TakesAllCellsOfATable)
{
    DStringArray table;
    table.Split2D("d,c\nb,a", ",", 2);
    table.Sort(nullptr);
    EXPECT_EQ(textsOf(table), (Texts{"a", "b", "c", "d"}));
    EXPECT_EQ(shapeOf(table), "2 x 2");
}

TEST(DStringArraySort, OfNothingDoesNothing)
{
    DStringArray list;
    list.Sort(nullptr);
    EXPECT_EQ(list.Count(), 0);
}

TEST(DStringArraySort, ManyStringsStayWhole)
{
    DStringArray list;
    for (int i = 0; i < 5000; i++) list << DString((i * 7919) % 5000);
    list.Sort(nullptr);
    for (int i = 1; i < 5000; i++) ASSERT_LT(std::strcmp(list[i - 1].c_str(), list[i].c_str()), 0) << i;
    EXPECT_EQ(DStringInspector::Refs(list[0]), 1);
}

// ---- Joining ----------------------------------------------------------------------------------

TEST(DStringArrayJoin, PutsTheSeparatorBetween)
{
    EXPECT_EQ(bytesOf(listOf({"a", "b", "c"}).Join(", ")), "a, b, c");
    EXPECT_EQ(bytesOf(listOf({"a", "", "c"}).Join(",")), "a,,c");
    EXPECT_EQ(bytesOf(listOf({"", ""}).Join("-")), "-");
    EXPECT_EQ(bytesOf(listOf({"a", "b"}).Join(DString())), "ab");
    EXPECT_EQ(bytesOf(listOf({"a\0b"s, "c"}).Join(",")), "a\0b,c"s);
}

TEST(DStringArrayJoin, OfOneSharesItsBlock)
{
    DStringArray const list = listOf({"a"});
    EXPECT_TRUE(shareBlock(list.Join(","), list[0]));
}

TEST(DStringArrayJoin, LeavesTheElementsAlone)
{
    DStringArray const list = listOf({"a", "b"});
    list.Join(",");
    EXPECT_EQ(textsOf(list), (Texts{"a", "b"}));
}

TEST(DStringArrayJoin, OfNothingIsEmpty)
{
    EXPECT_EQ(DStringArray().Join(",").Len(), 0);
    EXPECT_NE(DStringArray().Join(",").c_str(), nullptr);
}

TEST(DStringArrayJoin, OfSplitLinesIsTheText)
{
    DString const text("a,,b,c");
    EXPECT_EQ(bytesOf(DStringArray(text, ",", -1).Join(",")), "a,,b,c");
}

TEST(DStringArrayJoin, IntoABufferAsFarAsTheLinesFit)
{
    struct {
        Texts lines;
        std::string buffer, expected;
    } const rows[] = {{{"a", "bc"}, "##########", "a\r\nbc\r\n###"},
                      {{"a", "bc"}, "#######", "a\r\nbc\r\n"},         // fits exactly
                      {{"a", "bc"}, "######", "a\r\n###"},             // one short
                      {{"a", "bcdef", "g"}, "########", "a\r\n#####"}, // stops, doesn't skip
                      {{"abc"}, "##", "##"},
                      {{"", ""}, "#####", "\r\n\r\n#"},
                      {{}, "###", "###"},
                      {{"a"}, "", ""},
                      {{""}, "##", "\r\n"},
                      {{""}, "#", "#"},
                      {{"a\0b"s}, "######", "a\0b\r\n#"s}};
    for (auto const &row : rows) {
        std::string buffer = row.buffer;
        listOf(row.lines).JoinInto(buffer.c_str());
        EXPECT_EQ(buffer, row.expected) << testing::PrintToString(row.lines);
        EXPECT_EQ(buffer.c_str()[buffer.size()], '\0');
    }
}

TEST(DStringArrayJoin, IntoABufferSkipsWhatLiesBehindItsText)
{
    char buffer[] = "###\0###";
    listOf({"a", "b"}).JoinInto(buffer);
    EXPECT_EQ(std::string(buffer, 7), "a\r\n\0###"s);
}

TEST(DStringArrayJoin, IntoNullWritesNothing)
{
    DStringArray const list = listOf({"a"});
    list.JoinInto(noText);
    EXPECT_EQ(textsOf(list), Texts{"a"});
}
