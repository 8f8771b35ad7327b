// Blocks, references, construction, assignment, appending and access of DString.
#include "foundation/DString.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <ostream>
#include <random>
#include <string>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "support/DStringInspector.h"
#include "support/Stopwatch.h"

using namespace std::string_literals;
using Inspector = DStringInspector;

namespace {

int const farOff = 0x7FFFFFFF;
char const *const noText = nullptr;

struct Block {
    int refs, len, allocLen;
};

/// The words in front of the characters, taken from memory.
Block headerOf(char const *chars)
{
    Block block;
    std::memcpy(&block, chars - sizeof block, sizeof block);
    return block;
}

int allocOf(DString const &s)
{
    return Inspector::AllocLength(s);
}
int refsOf(DString const &s)
{
    return Inspector::Refs(s);
}

} // namespace

// ---- Constants --------------------------------------------------------------------------------

static_assert(std::is_same_v<decltype(npos), unsigned int const>);
static_assert(std::is_same_v<decltype(DEmptyString), char const *const>);
static_assert(std::is_same_v<decltype(LDelim), char const *const>);
static_assert(std::is_same_v<decltype(LenLD), int const>);
static_assert(std::is_same_v<decltype(dStrlen("")), int>);

TEST(DStringConstants, NposIsTheLargestInt)
{
    EXPECT_EQ(npos, 0x7FFFFFFFu);
}

TEST(DStringConstants, LDelimIsCarriageReturnAndLineFeed)
{
    EXPECT_EQ(std::memcmp(LDelim, "\r\n", 3), 0);
    EXPECT_EQ(LenLD, 2);
}

TEST(DStringConstants, EmptyStringIsOneNulBehindAHeaderOfMinusOneAndZeros)
{
    Block const block = headerOf(DEmptyString);
    EXPECT_EQ(DEmptyString[0], '\0');
    EXPECT_EQ(block.refs, -1);
    EXPECT_EQ(block.len, 0);
    EXPECT_EQ(block.allocLen, 0);
}

TEST(DStringConstantsDeathTest, EmptyStringCantBeWritten)
{
    char volatile *const target = const_cast<char *>(DEmptyString);
    EXPECT_DEATH(*target = 'x', "");
}

TEST(DStringConstants, LengthOfNullTextIsZero)
{
    EXPECT_EQ(dStrlen(noText), 0);
    EXPECT_EQ(dStrlen(""), 0);
    EXPECT_EQ(dStrlen("abc"), 3);
    EXPECT_EQ(dStrlen("ab\0c"), 2);
    EXPECT_EQ(dStrlen("\xC9\xFF"), 2);
}

// ---- Blocks -----------------------------------------------------------------------------------

static_assert(sizeof(DString) == sizeof(char *), "the object is its pointer");

namespace {

struct BlockRow {
    int length, block;
};
BlockRow const blockRows[] = {{0, 32},     {1, 32},     {6, 32},      {7, 64},      {38, 64},
                              {39, 96},    {70, 96},    {71, 128},    {102, 128},   {103, 160},
                              {998, 1024}, {999, 1056}, {1000, 1056}, {1030, 1056}, {1031, 1088}};

struct WayToMake {
    char const *name;
    DString (*make)(std::string const &text, int length);
};

DString filledBuffer(std::string const &text, DString s)
{
    std::memcpy(s.GetBuffer(static_cast<int>(text.size())), text.data(), text.size());
    return s;
}

WayToMake const waysToMake[] = {
    {"copies of a character", [](std::string const &, int n) { return DString('x', n); }},
    {"text", [](std::string const &text, int) { return DString(text.c_str()); }},
    {"cut text", [](std::string const &text, int n) { return DString((text + "yy").c_str(), n); }},
    {"slice", [](std::string const &, int n) { return DString(DString('x', n + 5), 2, n); }},
    {"buffer", [](std::string const &text, int) { return filledBuffer(text, DString()); }},
    {"buffer on null", [](std::string const &text, int) { return filledBuffer(text, nullString()); }},
    {"assignment", [](std::string const &text, int) { return DString() = text.c_str(); }},
    {"deep copy", [](std::string const &, int n) { return DString().Copy(DString('x', n)); }},
    {"left", [](std::string const &text, int n) { return DString((text + "y").c_str()).Left(n); }}};

} // namespace

TEST(DStringBlocks, TakeTheMultipleOf32StrictlyAboveLengthPlus25HoweverMade)
{
    for (auto const &way : waysToMake)
        for (auto const &row : blockRows) {
            std::string const text(static_cast<std::size_t>(row.length), 'x');
            DString const s = way.make(text, row.length);
            EXPECT_EQ(allocOf(s), row.block) << way.name << ", length " << row.length;
            EXPECT_EQ(bytesOf(s), text) << way.name << ", length " << row.length;
            EXPECT_EQ(s.c_str()[row.length], '\0') << way.name << ", length " << row.length;
            EXPECT_EQ(refsOf(s), 1) << way.name << ", length " << row.length;
        }
}

TEST(DStringBlocks, HeaderWordsStandInFrontOfTheCharacters)
{
    DString const s("seven77");
    DString const sharer(s);
    Block const block = headerOf(s.c_str());
    EXPECT_EQ(block.refs, 2);
    EXPECT_EQ(block.len, 7);
    EXPECT_EQ(block.allocLen, 64);
}

TEST(DStringBlocks, PointerOfTheObjectIsItsText)
{
    DString const s("abc");
    char const *stored;
    std::memcpy(&stored, static_cast<void const *>(&s), sizeof stored);
    EXPECT_EQ(stored, s.c_str());
}

TEST(DStringBlocks, ReleasedShortBlocksAreTakenAgainLastFirst)
{
    DString a("a"), b("b");
    char const *const blockOfA = a.c_str(), *const blockOfB = b.c_str();
    Inspector::Release(a);
    Inspector::Release(b);
    DString const first("first"), second('x', 6);
    EXPECT_EQ(static_cast<void const *>(first.c_str()), blockOfB);
    EXPECT_EQ(static_cast<void const *>(second.c_str()), blockOfA);
    EXPECT_EQ(bytesOf(first), "first");
    EXPECT_EQ(refsOf(first), 1);
    EXPECT_EQ(allocOf(first), 32);
}

TEST(DStringBlocks, FreeShortBlockHoldsThePointerToTheNext)
{
    DString a("a"), b("b");
    char const *const blockOfA = a.c_str(), *const blockOfB = b.c_str();
    Inspector::Release(a);
    Inspector::Release(b);
    char const *next;
    std::memcpy(&next, blockOfB, sizeof next);
    EXPECT_EQ(static_cast<void const *>(next), blockOfA);
}

TEST(DStringBlocks, LongerBlocksDontGoOnTheFreeList)
{
    DString shortOne("s"), longOne("seven77");
    char const *const block = shortOne.c_str();
    Inspector::Release(shortOne);
    Inspector::Release(longOne);
    EXPECT_EQ(static_cast<void const *>(DString("t").c_str()), block);
}

TEST(DStringBlocks, AShortTextInALongBlockIsNoShortBlock)
{
    DString shortOne("s"), cut("seven77");
    char const *const block = shortOne.c_str();
    cut.Truncate(1);
    ASSERT_EQ(allocOf(cut), 64);
    Inspector::Release(shortOne);
    Inspector::Release(cut);
    EXPECT_EQ(static_cast<void const *>(DString("t").c_str()), block);
}

TEST(DStringBlocks, ReallocationTakesFromTheFreeListToo)
{
    DString released("a"), shared("abc");
    DString const sharer(shared);
    char const *const block = released.c_str();
    Inspector::Release(released);
    Inspector::ReAlloc(shared, 3);
    EXPECT_EQ(static_cast<void const *>(shared.c_str()), block);
    EXPECT_EQ(bytesOf(shared), "abc");
}

TEST(DStringBlocks, AnUnreachableLengthRaisesBadAllocAndKeepsTheText)
{
    DString s("abc");
    EXPECT_THROW(s.GetBuffer(farOff), std::bad_alloc);
    EXPECT_THROW(s.Truncate(farOff - 25), std::bad_alloc);
    EXPECT_THROW(DString('x', farOff), std::bad_alloc);
    EXPECT_THROW(Inspector::AllocCopy(s, farOff, "x"), std::bad_alloc);
    EXPECT_THROW(Inspector::ConcatSelf(s, farOff, "x"), std::bad_alloc);
    EXPECT_EQ(bytesOf(s), "abc");
}

// ---- References -------------------------------------------------------------------------------

TEST(DStringReferences, CopiesShareAndCount)
{
    DString a("abc");
    {
        DString const b(a);
        DString c;
        c = b;
        EXPECT_TRUE(shareBlock(a, b) && shareBlock(a, c));
        EXPECT_EQ(refsOf(a), 3);
    }
    EXPECT_EQ(refsOf(a), 1);
}

TEST(DStringReferences, DefaultStringsHoldTheUncountedConstant)
{
    DString const a;
    DString const b(a);
    DString c("x");
    c = a;
    EXPECT_TRUE(isEmptyConstant(a) && isEmptyConstant(b) && isEmptyConstant(c));
    EXPECT_EQ(refsOf(a), -1);
    EXPECT_EQ(allocOf(a), 0);
    EXPECT_EQ(a.Len(), 0);
}

TEST(DStringReferences, NullIsCopiedAsNull)
{
    DString const a = nullString();
    DString const b(a);
    DString c("x");
    c = a;
    EXPECT_EQ(b.c_str(), nullptr);
    EXPECT_EQ(c.c_str(), nullptr);
}

TEST(DStringReferences, SelfAssignmentDoesNothing)
{
    DString a("abc");
    DString const &same = a;
    char const *const block = a.c_str();
    a = same;
    EXPECT_EQ(static_cast<void const *>(a.c_str()), block);
    EXPECT_EQ(refsOf(a), 1);
    EXPECT_EQ(bytesOf(a), "abc");
}

TEST(DStringReferences, AssigningASharerOfTheSameBlockKeepsTheCount)
{
    DString a("abc");
    DString const b(a);
    a = b;
    EXPECT_TRUE(shareBlock(a, b));
    EXPECT_EQ(refsOf(a), 2);
}

TEST(DStringReferences, ReleaseOfASharedBlockKeepsThePointer)
{
    DString a("abc"), b(a);
    Inspector::Release(b);
    EXPECT_TRUE(shareBlock(a, b));
    EXPECT_EQ(refsOf(a), 1);
    Inspector::Forget(b);
}

TEST(DStringReferences, ReleaseOfTheLastReferenceLeavesNull)
{
    DString shortOne("abc"), longOne('x', 100), empty;
    Inspector::Release(shortOne);
    Inspector::Release(longOne);
    Inspector::Release(empty);
    EXPECT_EQ(shortOne.c_str(), nullptr);
    EXPECT_EQ(longOne.c_str(), nullptr);
    EXPECT_TRUE(isEmptyConstant(empty));
    Inspector::Release(shortOne);
    EXPECT_EQ(shortOne.c_str(), nullptr);
}

TEST(DStringReferences, NullHasNoLengthNoReferencesNoBlock)
{
    DString const s = nullString();
    EXPECT_EQ(s.Len(), 0);
    EXPECT_EQ(refsOf(s), 0);
    EXPECT_EQ(allocOf(s), 0);
    EXPECT_EQ(s.c_str(), nullptr);
    EXPECT_EQ(s[0], '\0');
}

// ---- Reallocation -----------------------------------------------------------------------------

TEST(DStringReAlloc, KeepsThePrivateBlockWhileItSuffices)
{
    DString s('x', 38);
    char const *const block = s.c_str();
    for (int const n : {0, 7, 38}) {
        Inspector::ReAlloc(s, n);
        EXPECT_EQ(static_cast<void const *>(s.c_str()), block) << n;
        EXPECT_EQ(allocOf(s), 64) << n;
        EXPECT_EQ(s.Len(), n);
        EXPECT_EQ(s.c_str()[n], '\0') << n;
    }
}

TEST(DStringReAlloc, TakesABlockForExactlyTheNewLengthAndKeepsTheText)
{
    DString s("abcdef");
    Inspector::ReAlloc(s, 39);
    EXPECT_EQ(allocOf(s), 96);
    EXPECT_EQ(s.Len(), 39);
    EXPECT_EQ(bytesOf(s).substr(0, 6), "abcdef");
    EXPECT_EQ(s.c_str()[39], '\0');
}

TEST(DStringReAlloc, MakesASharedStringPrivate)
{
    DString a("abcdefg");
    DString const b(a);
    Inspector::ReAlloc(a, 3);
    EXPECT_FALSE(shareBlock(a, b));
    EXPECT_EQ(bytesOf(a), "abc");
    EXPECT_EQ(allocOf(a), 32);
    EXPECT_EQ(bytesOf(b), "abcdefg");
    EXPECT_EQ(refsOf(a), 1);
    EXPECT_EQ(refsOf(b), 1);
}

TEST(DStringReAlloc, NegativeLengthCountsAsZero)
{
    for (int const n : {-1, -100, INT_MIN}) {
        DString s("abc");
        Inspector::ReAlloc(s, n);
        EXPECT_EQ(s.Len(), 0) << n;
        EXPECT_EQ(s.c_str()[0], '\0') << n;
    }
}

TEST(DStringReAlloc, NeverReusesTheEmptyConstant)
{
    DString s;
    Inspector::ReAlloc(s, 0);
    EXPECT_TRUE(isNewEmptyBlock(s));
    EXPECT_EQ(headerOf(DEmptyString).len, 0);
}

TEST(DStringReAlloc, GivesNullABlock)
{
    DString s = nullString();
    Inspector::ReAlloc(s, 0);
    EXPECT_TRUE(isNewEmptyBlock(s));
}

TEST(DStringReAlloc, GrowthByOneTakesANewBlockEvery32Characters)
{
    DString s;
    int blocks = 0, last = 0;
    for (int i = 1; i <= 326; i++) {
        s += 'x';
        if (allocOf(s) != last) blocks++;
        last = allocOf(s);
    }
    EXPECT_EQ(blocks, 11); // at lengths 1, 7, 39, ... 295
    EXPECT_EQ(last, 352);
}

// ---- Construction -----------------------------------------------------------------------------

TEST(DStringConstruction, CopiesOfACharacterBelowOneGiveNone)
{
    for (int const n : {0, -1, INT_MIN}) EXPECT_TRUE(isNewEmptyBlock(DString('x', n))) << n;
    EXPECT_EQ(bytesOf(DString('x')), "x");
    EXPECT_EQ(bytesOf(DString('\0', 3)), "\0\0\0"s);
    EXPECT_EQ(bytesOf(DString('\xC9', 2)), "\xC9\xC9");
}

TEST(DStringConstruction, TextIsCutAtTheSmallerOfCountAndLength)
{
    EXPECT_EQ(bytesOf(DString("abc", 2)), "ab");
    EXPECT_EQ(bytesOf(DString("abc", 3)), "abc");
    EXPECT_EQ(bytesOf(DString("abc", 9)), "abc");
    EXPECT_EQ(bytesOf(DString("ab\0c", 4)), "ab");
    EXPECT_EQ(bytesOf(DString("abc", farOff)), "abc");
}

TEST(DStringConstruction, EmptyTextsTakeANewBlock)
{
    EXPECT_TRUE(isNewEmptyBlock(DString("")));
    EXPECT_TRUE(isNewEmptyBlock(DString("abc", 0)));
    EXPECT_TRUE(isNewEmptyBlock(DString(noText)));
    EXPECT_TRUE(isNewEmptyBlock(DString(noText, 5)));
}

TEST(DStringConstruction, NegativeCountOfATextGivesNoCharacters)
{
    EXPECT_EQ(DString("abc", -1).Len(), 0);
    EXPECT_EQ(DString("abc", INT_MIN).Len(), 0);
    EXPECT_EQ(DString(noText, -1).Len(), 0);
}

namespace {

struct SliceRow {
    int start, count;
    std::string expected;
};

void PrintTo(SliceRow const &row, std::ostream *out)
{
    *out << "start " << row.start << ", count " << row.count;
}

} // namespace

TEST(DStringConstruction, SlicesAreCutAtTheEnd)
{
    DString const source("abcdef");
    SliceRow const rows[] = {
        {0, 0, ""},           {0, 3, "abc"},   {0, 6, "abcdef"}, {0, 7, "abcdef"},    {0, farOff, "abcdef"},
        {2, 2, "cd"},         {2, 4, "cdef"},  {2, 5, "cdef"},   {2, farOff, "cdef"}, {2, farOff - 1, "cdef"},
        {6, 0, ""},           {6, 1, ""},      {6, farOff, ""},  {7, 1, ""},          {farOff, 1, ""},
        {farOff, farOff, ""}, {farOff, 0, ""}, {5, 1, "f"}};
    for (auto const &row : rows) {
        DString const slice(source, row.start, row.count);
        EXPECT_EQ(bytesOf(slice), row.expected) << testing::PrintToString(row);
        EXPECT_EQ(refsOf(slice), 1) << testing::PrintToString(row);
        EXPECT_FALSE(isEmptyConstant(slice)) << testing::PrintToString(row);
    }
}

TEST(DStringConstruction, ASliceOfAllIsStillABlockOfItsOwn)
{
    DString const source("abc");
    DString const slice(source, 0, farOff);
    EXPECT_FALSE(shareBlock(source, slice));
    EXPECT_EQ(refsOf(source), 1);
}

TEST(DStringConstruction, SlicesOfNullAndEmptyAreTheEmptyConstant)
{
    EXPECT_TRUE(isEmptyConstant(DString(nullString(), 0, 3)));
    EXPECT_TRUE(isEmptyConstant(DString(DString(), 0, 3)));
    EXPECT_TRUE(isEmptyConstant(DString(DString(""), 0, 3)));
}

TEST(DStringConstruction, SlicesKeepNuls)
{
    EXPECT_EQ(bytesOf(DString(fromBytes("a\0b\0c"s), 1, 3)), "\0b\0"s);
}

TEST(DStringConstruction, NegativeCountOfASliceGivesAnEmptyText)
{
    for (int const count : {-1, -2, INT_MIN}) {
        DString const slice(DString("abc"), 0, count);
        EXPECT_EQ(slice.Len(), 0) << count;
        EXPECT_EQ(slice.c_str()[0], '\0') << count;
    }
}

TEST(DStringConstruction, NegativeStartOfASliceStaysInsideTheText)
{
    for (int const start : {-1, -100, INT_MIN})
        for (int const count : {0, 1, 2, farOff}) {
            std::string const slice = bytesOf(DString(DString("abc"), start, count));
            EXPECT_NE("abc"s.find(slice), std::string::npos) << start << ", " << count;
        }
}

// ---- Assignment -------------------------------------------------------------------------------

TEST(DStringAssignment, ReusesAPrivateBlockThatSuffices)
{
    DString s('x', 38);
    char const *const block = s.c_str();
    s = "abc";
    EXPECT_EQ(static_cast<void const *>(s.c_str()), block);
    EXPECT_EQ(bytesOf(s), "abc");
    EXPECT_EQ(s.c_str()[3], '\0');
    EXPECT_EQ(allocOf(s), 64);
}

TEST(DStringAssignment, TakesANewBlockForALongerText)
{
    DString s("abc");
    s = "abcdefg";
    EXPECT_EQ(bytesOf(s), "abcdefg");
    EXPECT_EQ(allocOf(s), 64);
}

TEST(DStringAssignment, LeavesSharersAlone)
{
    DString a("abc");
    DString const b(a);
    a = "x";
    EXPECT_EQ(bytesOf(a), "x");
    EXPECT_EQ(bytesOf(b), "abc");
    EXPECT_EQ(refsOf(b), 1);
}

TEST(DStringAssignment, NullTextGivesNoCharacters)
{
    DString s("abc"), empty;
    s = noText;
    empty = noText;
    EXPECT_EQ(s.Len(), 0);
    EXPECT_TRUE(isNewEmptyBlock(empty));
}

TEST(DStringAssignment, OwnTextDoesNothing)
{
    DString s("abc"), null = nullString();
    DString const sharer(s);
    s = s.c_str();
    null = noText;
    EXPECT_TRUE(shareBlock(s, sharer));
    EXPECT_EQ(bytesOf(s), "abc");
    EXPECT_EQ(null.c_str(), nullptr);
}

TEST(DStringAssignment, OneCharacterMayBeNul)
{
    DString s("abc");
    s = 'x';
    EXPECT_EQ(bytesOf(s), "x");
    s = '\0';
    EXPECT_EQ(bytesOf(s), "\0"s);
}

TEST(DStringAssignment, GivesNullATextAgain)
{
    DString s = nullString();
    s = "abc";
    EXPECT_EQ(bytesOf(s), "abc");
    EXPECT_EQ(refsOf(s), 1);
}

TEST(DStringAssignment, CopyIsDeepAndKeepsNuls)
{
    DString const source = fromBytes("a\0b"s);
    DString s("before");
    EXPECT_EQ(&s.Copy(source), &s);
    EXPECT_FALSE(shareBlock(s, source));
    EXPECT_EQ(bytesOf(s), "a\0b"s);
    EXPECT_EQ(refsOf(source), 1);
}

TEST(DStringAssignment, CopyOfASharerStaysShared)
{
    DString const source("abc");
    DString s(source);
    s.Copy(source);
    EXPECT_TRUE(shareBlock(s, source));
    EXPECT_EQ(refsOf(s), 2);
}

TEST(DStringAssignment, CopyOfNullGivesNoCharacters)
{
    DString s("abc");
    s.Copy(nullString());
    EXPECT_EQ(s.Len(), 0);
    EXPECT_NE(s.c_str(), nullptr);
}

// ---- Appending --------------------------------------------------------------------------------

static_assert(std::is_void_v<decltype(std::declval<DString &>() += DString())>);
static_assert(std::is_void_v<decltype(std::declval<DString &>() += "")>);
static_assert(std::is_void_v<decltype(std::declval<DString &>() += 'c')>);

TEST(DStringAppending, AddsStringsTextsAndCharacters)
{
    DString s;
    s += DString("ab");
    s += "cd";
    s += 'e';
    s += '\xC9';
    EXPECT_EQ(bytesOf(s), "abcde\xC9");
}

TEST(DStringAppending, StreamingChains)
{
    DString s;
    EXPECT_EQ(&(s << DString("ab") << "cd" << 'e'), &s);
    EXPECT_EQ(bytesOf(s), "abcde");
}

TEST(DStringAppending, KeepsNuls)
{
    DString s("a");
    s << '\0' << fromBytes("b\0c"s) << "d\0e";
    EXPECT_EQ(bytesOf(s), "a\0b\0cd"s);
}

TEST(DStringAppending, NothingAppendedDoesNothing)
{
    DString s("abc"), empty;
    DString const sharer(s);
    s << "" << noText << DString() << nullString();
    s += noText;
    Inspector::ConcatSelf(s, -1, "x");
    Inspector::ConcatSelf(s, 3, nullptr);
    empty << "" << DString("");
    EXPECT_TRUE(shareBlock(s, sharer));
    EXPECT_TRUE(isEmptyConstant(empty));
}

TEST(DStringAppending, LeavesSharersAlone)
{
    DString a("abc");
    DString const b(a);
    a += 'd';
    EXPECT_EQ(bytesOf(a), "abcd");
    EXPECT_EQ(bytesOf(b), "abc");
    EXPECT_EQ(refsOf(b), 1);
}

TEST(DStringAppending, GivesNullAText)
{
    DString s = nullString();
    s << "ab" << 'c';
    EXPECT_EQ(bytesOf(s), "abc");
}

TEST(DStringAppending, SumsAreNewStrings)
{
    DString const s("ab"), t("cd");
    EXPECT_EQ(bytesOf(s + t), "abcd");
    EXPECT_EQ(bytesOf(s + "xy"), "abxy");
    EXPECT_EQ(bytesOf(s + '\0'), "ab\0"s);
    EXPECT_EQ(bytesOf('x' + s), "xab");
    EXPECT_EQ(bytesOf("xy" + s), "xyab");
    EXPECT_EQ(bytesOf(s), "ab");
    EXPECT_EQ(bytesOf(t), "cd");
}

TEST(DStringAppending, SumWithNothingSharesTheLeftOperand)
{
    DString const s("ab");
    EXPECT_TRUE(shareBlock(s + DString(), s));
    EXPECT_TRUE(shareBlock(s + "", s));
    EXPECT_TRUE(shareBlock(s + noText, s));
    EXPECT_FALSE(shareBlock(DString() + s, s));
}

TEST(DStringAppending, SumWithANullTextOnTheLeftIsTheRight)
{
    EXPECT_EQ(bytesOf(noText + DString("ab")), "ab");
    EXPECT_EQ(bytesOf(nullString() + DString("ab")), "ab");
    EXPECT_TRUE(isNewEmptyBlock("" + DString()));
}

TEST(DStringAppending, AHundredThousandSingleCharactersTakeNoTime)
{
    DString s;
    EXPECT_LT(secondsOf([&] {
                  for (int i = 0; i < 100000; i++) s += static_cast<char>('a' + i % 26);
              }),
              3.0);
    ASSERT_EQ(s.Len(), 100000);
    for (int i = 0; i < 100000; i++) ASSERT_EQ(s[i], static_cast<char>('a' + i % 26)) << i;
}

// ---- Access -----------------------------------------------------------------------------------

static_assert(std::is_same_v<decltype(std::declval<DString const &>()[0]), char>);

TEST(DStringAccess, IndexGivesTheCharacterOrTheTerminator)
{
    DString const s("a\xC9");
    EXPECT_EQ(s[0], 'a');
    EXPECT_EQ(s[1], '\xC9');
    EXPECT_EQ(s[2], '\0');
}

TEST(DStringAccess, SetCharWritesAPrivateStringInPlace)
{
    DString s("abc");
    char const *const block = s.c_str();
    s.SetChar(1, 'X');
    s.SetChar(2, '\0');
    EXPECT_EQ(bytesOf(s), "aX\0"s);
    EXPECT_EQ(static_cast<void const *>(s.c_str()), block);
}

TEST(DStringAccess, SetCharLeavesSharersAlone)
{
    DString const a("abc");
    DString b;
    b = a;
    b.SetChar(0, 'X');
    EXPECT_EQ(bytesOf(a), "abc");
    EXPECT_EQ(refsOf(a), 1);
    EXPECT_EQ(bytesOf(b), "Xbc");
    EXPECT_EQ(refsOf(b), 1);
}

TEST(DStringAccess, SetCharOutsideIsIgnored)
{
    DString s("abc"), empty, null = nullString();
    for (int const i : {3, 4, 100, farOff, -1, -13, INT_MIN}) {
        s.SetChar(i, 'X');
        empty.SetChar(i, 'X');
        null.SetChar(i, 'X');
        EXPECT_EQ(bytesOf(s), "abc") << i;
        EXPECT_EQ(s.c_str()[3], '\0') << i;
        EXPECT_EQ(allocOf(s), 32) << i;
        EXPECT_EQ(empty.Len() + null.Len(), 0) << i;
    }
}

TEST(DStringAccess, SetCharBehindTheEndStillMakesASharedStringPrivate)
{
    DString const a("abc");
    DString b(a);
    b.SetChar(3, 'X');
    EXPECT_FALSE(shareBlock(a, b));
    EXPECT_EQ(bytesOf(b), "abc");
}

TEST(DStringAccess, BufferIsPrivateAndOfTheAskedLengthAtOnce)
{
    DString s("abc");
    DString const sharer(s);
    char *const buffer = s.GetBuffer(10);
    EXPECT_EQ(static_cast<void const *>(buffer), s.c_str());
    EXPECT_EQ(s.Len(), 10);
    EXPECT_EQ(std::memcmp(buffer, "abc", 3), 0);
    EXPECT_EQ(buffer[10], '\0');
    std::memset(buffer, 'y', 10);
    EXPECT_EQ(bytesOf(s), "yyyyyyyyyy");
    EXPECT_EQ(bytesOf(sharer), "abc");
}

TEST(DStringAccess, NegativeBufferIsEmpty)
{
    DString s("abc");
    s.GetBuffer(-1);
    EXPECT_EQ(s.Len(), 0);
}

TEST(DStringAccess, TruncateCutsAndReturnsTheString)
{
    DString s("abcdef");
    EXPECT_EQ(&s.Truncate(2), &s);
    EXPECT_EQ(bytesOf(s), "ab");
    EXPECT_EQ(s.Truncate(0).Len(), 0);
    EXPECT_EQ(s.Truncate(-5).Len(), 0);
}

TEST(DStringAccess, TruncateBeyondTheEndFillsWithNuls)
{
    DString inPlace("abcdef"), moved("abcdef"), fromNothing;
    EXPECT_EQ(bytesOf(inPlace.Truncate(2).Truncate(6)), "ab\0\0\0\0"s);
    EXPECT_EQ(bytesOf(moved.Truncate(2).Truncate(40)), "ab"s + std::string(38, '\0'));
    EXPECT_EQ(bytesOf(fromNothing.Truncate(3)), "\0\0\0"s);
}

TEST(DStringAccess, TruncateLeavesSharersAlone)
{
    DString a("abc");
    DString const b(a);
    a.Truncate(1);
    EXPECT_EQ(bytesOf(a), "a");
    EXPECT_EQ(bytesOf(b), "abc");
}

TEST(DStringAccess, TruncateByDropsFromTheEnd)
{
    DString s("abcdef"), null = nullString();
    EXPECT_EQ(&s.TruncateBy(2), &s);
    EXPECT_EQ(bytesOf(s), "abcd");
    EXPECT_EQ(bytesOf(s.TruncateBy(5)), "abcd");
    EXPECT_EQ(bytesOf(s.TruncateBy(farOff)), "abcd");
    EXPECT_EQ(s.TruncateBy(4).Len(), 0);
    EXPECT_EQ(null.TruncateBy(1).c_str(), nullptr);
}

TEST(DStringAccess, TruncateByMoreThanAllLeavesTheBlockShared)
{
    DString s("abc");
    DString const sharer(s);
    s.TruncateBy(4);
    EXPECT_TRUE(shareBlock(s, sharer));
}

TEST(DStringAccess, TruncateByLessThanNothingGrows)
{
    DString s("abc");
    s.TruncateBy(-2);
    EXPECT_EQ(s.Len(), 5);
    EXPECT_EQ(bytesOf(s).substr(0, 3), "abc");
    EXPECT_THROW(s.TruncateBy(INT_MIN), std::bad_alloc);
}

// ---- All together -----------------------------------------------------------------------------

namespace {

/// Some strings that share with each other at random, beside what they ought to hold.
class SharedPool {
public:
    void Step()
    {
        int const i = pick(size), j = pick(size);
        if (i != j) change(strings[i], expected[i], strings[j], expected[j]);
    }

    void Check() const
    {
        for (int i = 0; i < size; i++) {
            ASSERT_EQ(bytesOf(strings[i]), expected[i]) << i;
            if (strings[i].c_str() == DEmptyString) continue;
            ASSERT_EQ(strings[i].c_str()[strings[i].Len()], '\0');
            ASSERT_EQ(allocOf(strings[i]) % 32, 0);
            ASSERT_GT(allocOf(strings[i]), strings[i].Len() + 25);
            ASSERT_EQ(refsOf(strings[i]), sharersOf(strings[i]));
        }
    }

private:
    static int const size = 8;

    int pick(int n) { return static_cast<int>(random() % static_cast<unsigned int>(n)); }

    int sharersOf(DString const &s) const
    {
        int n = 0;
        for (auto const &other : strings) n += shareBlock(s, other);
        return n;
    }

    void change(DString &s, std::string &is, DString &other, std::string const &otherIs)
    {
        int const at = pick(s.Len() + 1), n = pick(60);
        char const c = static_cast<char>(pick(256));
        std::size_t const place = static_cast<std::size_t>(at);
        switch (pick(10)) {
        case 0:
            s = other, is = otherIs;
            break;
        case 1:
            s += c, is += c;
            break;
        case 2:
            s << other, is += otherIs;
            break;
        case 3:
            s.Copy(other), is = otherIs;
            break;
        case 4:
            s.Truncate(at), is.resize(place);
            break;
        case 5:
            s = other.Mid(at, n), is = otherIs.substr(std::min(place, otherIs.size()), static_cast<std::size_t>(n));
            break;
        case 6:
            s = other + c, is = otherIs + c;
            break;
        case 7:
            s = DString(c, n), is = std::string(static_cast<std::size_t>(n), c);
            break;
        case 8:
            s = "text", is = "text";
            break;
        default:
            s.SetChar(at, c);
            if (place < is.size()) is[place] = c;
        }
        if (s.Len() > 500) s = DString(), is.clear();
    }

    std::mt19937 random{20240229};
    DString strings[size];
    std::string expected[size];
};

} // namespace

TEST(DString, RandomChangesOfSharedStringsKeepTextsAndCounts)
{
    SharedPool pool;
    for (int step = 0; step < 20000; step++) {
        pool.Step();
        pool.Check();
        ASSERT_FALSE(testing::Test::HasFatalFailure()) << "step " << step;
    }
}
