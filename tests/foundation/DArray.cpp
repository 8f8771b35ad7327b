// DArray: shape, growth, editing in whole runs, and the life of its elements.
#include "foundation/DArray.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/DString.h"
#include "foundation/DStringArray.h"
#include "support/DStringInspector.h"
#include "support/Stopwatch.h"

namespace {

int const farOff = 0x7FFFFFFF;

/// Opens the protected members.
template <typename T, int flag>
struct Probe : DArray<T, flag> {
    using DArray<T, flag>::DArray;
    using DArray<T, flag>::alloc;
    using DArray<T, flag>::realloc;
    using DArray<T, flag>::resize;
    using DArray<T, flag>::clear;
    using DArray<T, flag>::alloccopy;
    using DArray<T, flag>::sizefor;
};

/// Elements of one character each, so that contents read as a text.
using Letters = Probe<char, 0>;

Letters letters(char const *text, int run = 1)
{
    int const n = static_cast<int>(std::strlen(text));
    Letters a;
    a.ReSize(run, n / run);
    std::memcpy(a.Data(), text, static_cast<std::size_t>(a.Count()));
    return a;
}

/// 256 letters that fill their block.
Letters fullBlock()
{
    Letters a;
    a.Reserve(255);
    a.AddBlank(256);
    std::memset(a.Data(), 'a', 256);
    return a;
}

std::string textOf(DArray<char, 0> const &a)
{
    return std::string(a.Data(), static_cast<std::size_t>(a.Count()));
}

/// Count, length of a run, number of runs and capacity, as "6 = 3 x 2 in 256".
template <typename T, int flag>
std::string shapeOf(DArray<T, flag> const &a)
{
    return std::to_string(a.Count()) + " = " + std::to_string(a.RCount()) + " x " + std::to_string(a.CCount()) +
           " in " + std::to_string(a.Capacity());
}

/// An element that counts its beginnings and ends.
struct Counted {
    static inline int made = 0, ended = 0;
    int value = -1;

    Counted() { made++; }
    explicit Counted(int v) : value(v) { made++; }
    Counted(Counted const &other) : value(other.value) { made++; }
    Counted &operator=(Counted const &) = default;
    ~Counted() { ended++; }
};

/// What happened to elements in a piece of work, as "+made -ended".
template <typename Work>
std::string lifeIn(Work const &work)
{
    int const made = Counted::made, ended = Counted::ended;
    work();
    return "+" + std::to_string(Counted::made - made) + " -" + std::to_string(Counted::ended - ended);
}

using CountedArray = Probe<Counted, 1>;

/// A list of elements with the values 0, 1, 2 ...
CountedArray counted(int n)
{
    CountedArray a(n);
    for (int i = 0; i < n; i++) a[i].value = i;
    return a;
}

template <int flag>
std::vector<int> valuesOf(DArray<Counted, flag> const &a)
{
    std::vector<int> values;
    for (int i = 0; i < a.Count(); i++) values.push_back(a[i].value);
    return values;
}

using Values = std::vector<int>;

} // namespace

// ---- The object -------------------------------------------------------------------------------

static_assert(std::has_virtual_destructor_v<DArray<float, 0>>);
static_assert(std::has_virtual_destructor_v<DArray<DString, 1>>);

TEST(DArray, FieldsStandInTheirOrderBehindTheVirtualTable)
{
    Letters a = letters("abcdef", 3);
    a.zeroFill = true;
    a.growBy = 77;
    struct {
        void *table;
        bool zeroFill;
        int growBy, capacity, count, cCount, rCount;
        char *data;
    } fields;
    ASSERT_EQ(sizeof fields, sizeof(DArray<char, 0>));
    std::memcpy(&fields, static_cast<void const *>(&a), sizeof fields);
    EXPECT_TRUE(fields.zeroFill);
    EXPECT_EQ(fields.growBy, 77);
    EXPECT_EQ(fields.capacity, 256);
    EXPECT_EQ(fields.count, 6);
    EXPECT_EQ(fields.cCount, 2);
    EXPECT_EQ(fields.rCount, 3);
    EXPECT_EQ(static_cast<void *>(fields.data), a.Data());
}

TEST(DArray, ANewOneIsEmptyAndHasNoBlock)
{
    DArray<float, 0> const a;
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 0");
    EXPECT_EQ(a.Data(), nullptr);
    EXPECT_FALSE(a.zeroFill);
    EXPECT_EQ(a.growBy, 256);
}

TEST(DArray, ConstructorsSetTheShape)
{
    EXPECT_EQ(shapeOf(DArray<int, 0>(5)), "5 = 1 x 5 in 256");
    EXPECT_EQ(shapeOf(DArray<int, 0>(0)), "0 = 1 x 0 in 256");
    EXPECT_EQ(shapeOf(DArray<int, 0>(-3)), "0 = 1 x 0 in 256");
    EXPECT_EQ(shapeOf(DArray<int, 0>(256)), "256 = 1 x 256 in 512");
    EXPECT_EQ(shapeOf(DArray<int, 0>(3, 2)), "6 = 3 x 2 in 256");
    EXPECT_EQ(shapeOf(DArray<int, 0>(0, 2)), "2 = 1 x 2 in 256");
    EXPECT_EQ(shapeOf(DArray<int, 0>(-7, 2)), "2 = 1 x 2 in 256");
    EXPECT_EQ(shapeOf(DArray<int, 0>(3, -1)), "0 = 3 x 0 in 256");
    EXPECT_EQ(shapeOf(DArray<DString, 1>(3, 100)), "300 = 3 x 100 in 512");
}

namespace {

template <typename T>
class DArrayOfPlainData : public testing::Test {
};

using PlainTypes = testing::Types<float, int, short, unsigned char, double, long long, bool, void *>;

} // namespace

TYPED_TEST_SUITE(DArrayOfPlainData, PlainTypes);

TYPED_TEST(DArrayOfPlainData, GrowsAndShrinksWholeElements)
{
    TypeParam one, two;
    std::memset(static_cast<void *>(&one), 1, sizeof one);
    std::memset(static_cast<void *>(&two), 0, sizeof two);
    DArray<TypeParam, 0> a;
    for (int i = 0; i < 600; i++) a.Add(i % 3 == 0 ? one : two);
    a.Remove(0, 300);
    a.Insert(&two, 0, 1);
    ASSERT_EQ(shapeOf(a), "301 = 1 x 301 in 768");
    EXPECT_EQ(std::memcmp(&a[0], &two, sizeof two), 0);
    for (int i = 0; i < 300; i++) ASSERT_EQ(std::memcmp(&a[i + 1], i % 3 == 0 ? &one : &two, sizeof one), 0) << i;
}

// ---- Capacity ---------------------------------------------------------------------------------

TEST(DArrayCapacity, IsTheNextMultipleOf256StrictlyAbove)
{
    struct {
        int wanted, capacity;
    } const rows[] = {{1, 256},   {255, 256}, {256, 512},  {257, 512}, {511, 512}, {512, 768},
                      {513, 768}, {767, 768}, {768, 1024}, {0, 0},     {-1, 0},    {INT_MIN, 0}};
    for (auto const &row : rows) {
        DArray<short, 0> a;
        a.Reserve(row.wanted);
        EXPECT_EQ(a.Capacity(), row.capacity) << row.wanted;
        EXPECT_EQ(a.Count(), 0) << row.wanted;
    }
}

TEST(DArrayCapacity, NeverShrinksAndIsFilledBeforeItGrows)
{
    Letters a = letters("abc");
    a.Reserve(700);
    EXPECT_EQ(a.Capacity(), 768);
    char const *const block = a.Data();
    for (int const n : {1, 0, -5, 767, 768}) a.Reserve(n);
    EXPECT_EQ(a.Capacity(), 768);
    EXPECT_EQ(static_cast<void const *>(a.Data()), block);
    a.Reserve(769);
    EXPECT_EQ(a.Capacity(), 1024);
    EXPECT_EQ(textOf(a), "abc");
}

TEST(DArrayCapacity, FollowsTheStep)
{
    Letters a;
    a.growBy = 10;
    a.Reserve(9);
    EXPECT_EQ(a.Capacity(), 10);
    a.Reserve(25);
    EXPECT_EQ(a.Capacity(), 30);
    a.Size(30);
    EXPECT_EQ(a.Capacity(), 40);
}

TEST(DArrayCapacity, GrowthByOneGoesInStepsNotFactors)
{
    DArray<int, 0> a;
    int changes = 0, last = 0;
    for (int i = 0; i < 10000; i++) {
        a.Add(i);
        if (a.Capacity() != last) {
            EXPECT_EQ(a.Capacity(), last + 256);
            changes++;
        }
        last = a.Capacity();
    }
    EXPECT_EQ(changes, 40);
    for (int i = 0; i < 10000; i++) ASSERT_EQ(a[i], i);
}

TEST(DArrayCapacity, ALargeArrayGrowsByOneAtATimeInNoTime)
{
    DArray<float, 0> a;
    EXPECT_LT(secondsOf([&] {
                  for (int i = 0; i < 300000; i++) a.Add(static_cast<float>(i));
              }),
              5.0);
    ASSERT_EQ(a.Count(), 300000);
    EXPECT_EQ(a.Capacity(), 300032);
    for (int i = 0; i < 300000; i++) ASSERT_EQ(a[i], static_cast<float>(i));
}

TEST(DArrayCapacity, AVeryLargeArrayTakesOneMore)
{
    int const n = 10000128; // fills its block to the last element but 256
    DArray<float, 0> a(n);
    for (int i = 0; i < n; i++) a[i] = static_cast<float>(i % 1000);
    a.AddBlank(256);
    ASSERT_EQ(a.Capacity(), n + 256);
    a.Add(0.5f);
    EXPECT_EQ(a.Capacity(), n + 512);
    EXPECT_EQ(a.Last(), 0.5f);
    for (int i = 0; i < n; i++) ASSERT_EQ(a[i], static_cast<float>(i % 1000));
}

TEST(DArrayCapacity, ABlockThatCantBeHadRaisesBadAllocAndKeepsTheContents)
{
    Letters a = letters("abc");
    EXPECT_THROW(a.Reserve(farOff), std::bad_alloc);
    EXPECT_THROW(a.ReSize(farOff), std::bad_alloc);
    EXPECT_THROW(a.ReSize(65536, 65536), std::bad_alloc);
    EXPECT_THROW(a.ReSize(65536, 32768), std::bad_alloc);
    EXPECT_THROW(a.AddBlank(farOff), std::bad_alloc);
    EXPECT_THROW(a.InsertBlank(0, farOff), std::bad_alloc);
    EXPECT_THROW(a.Insert("x", 0, farOff), std::bad_alloc);
    EXPECT_EQ(shapeOf(a), "3 = 1 x 3 in 256");
    EXPECT_EQ(textOf(a), "abc");
}

TEST(DArrayCapacity, AfterASizeThatCantBeHadTheArrayIsEmptyAndUsable)
{
    Letters a = letters("abc");
    EXPECT_THROW(a.Size(65536, 65536), std::bad_alloc);
    EXPECT_EQ(a.Count(), 0);
    EXPECT_THROW(a.Size(farOff), std::bad_alloc);
    EXPECT_EQ(a.Count(), 0);
    EXPECT_THROW(Letters(65536, 65536), std::bad_alloc);
    EXPECT_THROW(Letters{farOff}, std::bad_alloc);
    a.Size(2);
    EXPECT_EQ(a.Count(), 2);
}

TEST(DArrayCapacity, SizeOnAClearedBlockDoesntAskForZeroFill)
{
    Letters a = fullBlock();
    a.sizefor(300, true);
    EXPECT_EQ(shapeOf(a), "300 = 1 x 300 in 512");
    EXPECT_EQ(textOf(a), std::string(300, '\0'));
    EXPECT_FALSE(a.zeroFill);
    a.sizefor(-1, true);
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 256");
    EXPECT_THROW(a.sizefor(farOff, true), std::bad_alloc);
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 0");
}

// ---- Size and shape ---------------------------------------------------------------------------

TEST(DArrayShape, SizeThrowsTheContentsAndTheBlockAway)
{
    Letters a(1000);
    a.Size(5);
    EXPECT_EQ(shapeOf(a), "5 = 1 x 5 in 256");
    a.Size(300, 2);
    EXPECT_EQ(shapeOf(a), "600 = 300 x 2 in 768");
    a.Size(-1, 7);
    EXPECT_EQ(shapeOf(a), "7 = 1 x 7 in 256");
    a.Size(4, -7);
    EXPECT_EQ(shapeOf(a), "0 = 4 x 0 in 256");
    a.Size(-4);
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 256");
}

TEST(DArrayShape, ReSizeKeepsTheContentsAsAFlatList)
{
    Letters a = letters("abcdef", 3);
    a.ReSize(2, 3);
    EXPECT_EQ(shapeOf(a), "6 = 2 x 3 in 256");
    EXPECT_EQ(textOf(a), "abcdef");
    a.ReSize(4);
    EXPECT_EQ(shapeOf(a), "4 = 1 x 4 in 256");
    EXPECT_EQ(textOf(a), "abcd");
    a.ReSize(300);
    EXPECT_EQ(shapeOf(a), "300 = 1 x 300 in 512");
    EXPECT_EQ(textOf(a).substr(0, 6), "abcdef"); // the rest holds what the block held
}

TEST(DArrayShape, ReSizeTakesShapesOutOfRangeAsTheNearest)
{
    Letters a = letters("abcdef");
    a.ReSize(0, 4);
    EXPECT_EQ(shapeOf(a), "4 = 1 x 4 in 256");
    a.ReSize(3, -4);
    EXPECT_EQ(shapeOf(a), "0 = 3 x 0 in 256");
    a.ReSize(-4);
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 256");
}

TEST(DArrayShape, ReSizeToNothingKeepsTheBlock)
{
    DArray<DString, 1> a(300);
    DString const *const block = a.Data();
    a.ReSize(0);
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 512");
    EXPECT_EQ(a.Data(), block);
}

TEST(DArrayShape, ClearFreesTheBlock)
{
    Letters a = letters("abcdef", 3);
    a.Clear();
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 0");
    EXPECT_EQ(a.Data(), nullptr);
    a.Clear();
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 0");
}

TEST(DArrayShape, ProtectedClearLeavesTheShape)
{
    Letters a = letters("abcdef", 3);
    a.clear();
    EXPECT_EQ(shapeOf(a), "0 = 3 x 2 in 0");
    EXPECT_EQ(a.Data(), nullptr);
}

TEST(DArrayShape, ProtectedResizeLeavesTheShape)
{
    Letters a = letters("abcdef", 3);
    a.resize(5);
    EXPECT_EQ(shapeOf(a), "5 = 3 x 2 in 256");
    a.resize(-1);
    EXPECT_EQ(shapeOf(a), "0 = 3 x 2 in 256");
}

TEST(DArrayShape, AllocGivesABlockAndItsCapacity)
{
    Probe<int, 0> a;
    a.zeroFill = true;
    int *const block = a.alloc(300);
    EXPECT_EQ(a.Capacity(), 512);
    EXPECT_EQ(a.Data(), nullptr);
    for (int i = 0; i < 512; i++) ASSERT_EQ(block[i], 0) << i;
    std::free(block);
}

TEST(DArrayShape, AddBlankAddsWholeRunsOnly)
{
    struct {
        int run, count, added;
        char const *shape;
    } const rows[] = {
        {1, 0, 5, "5 = 1 x 5 in 256"},       {1, 5, 2, "7 = 1 x 7 in 256"},       {1, 5, 0, "5 = 1 x 5 in 256"},
        {3, 6, 4, "9 = 3 x 3 in 256"},       {3, 6, 2, "6 = 3 x 2 in 256"},       {3, 6, 3, "9 = 3 x 3 in 256"},
        {3, 7, 1, "6 = 3 x 2 in 256"},       {3, 7, 2, "9 = 3 x 3 in 256"},       {3, 0, 2, "0 = 3 x 0 in 256"},
        {1, 5, -2, "3 = 1 x 3 in 256"},      {1, 5, -9, "0 = 1 x 0 in 256"},      {3, 6, -1, "3 = 3 x 1 in 256"},
        {1, 255, 1, "256 = 1 x 256 in 256"}, {1, 256, 1, "257 = 1 x 257 in 512"}, {1, 5, INT_MIN, "0 = 1 x 0 in 256"}};
    for (auto const &row : rows) {
        Letters a;
        Probe<DString, 1> b;
        a.ReSize(row.run, 0);
        b.ReSize(row.run, 0);
        a.realloc(1);
        b.realloc(1);
        a.resize(row.count);
        b.resize(row.count);
        a.AddBlank(row.added);
        b.AddBlank(row.added);
        EXPECT_EQ(shapeOf(a), row.shape) << row.run << ", " << row.count << " + " << row.added;
        EXPECT_EQ(shapeOf(b), row.shape) << row.run << ", " << row.count << " + " << row.added;
    }
}

TEST(DArrayShape, PlainElementsThatComeBackHoldWhatTheBlockHeld)
{
    for (bool const zeroFill : {false, true}) {
        Letters a = letters("abcdef");
        a.zeroFill = zeroFill;
        a.ReSize(2);
        a.AddBlank(2);
        EXPECT_EQ(textOf(a), "abcd");
        a.ReSize(6);
        EXPECT_EQ(textOf(a), "abcdef");
    }
}

// ---- Access -----------------------------------------------------------------------------------

TEST(DArrayAccess, TheFirstIndexMovesFastest)
{
    Letters a = letters("abcdef", 3);
    Letters const &fixed = a;
    EXPECT_EQ(a(0, 0), 'a');
    EXPECT_EQ(a(2, 0), 'c');
    EXPECT_EQ(a(0, 1), 'd');
    EXPECT_EQ(fixed(1, 1), 'e');
    EXPECT_EQ(fixed[5], 'f');
    EXPECT_EQ(&a(2, 1), a.Data() + 5);
    EXPECT_EQ(fixed.Data(), a.Data());
}

TEST(DArrayAccess, ReferencesWrite)
{
    Letters a = letters("abcdef", 3);
    a[0] = 'A';
    a(1, 1) = 'E';
    a.Last() = 'F';
    a.Data()[1] = 'B';
    EXPECT_EQ(textOf(a), "ABcdEF");
}

TEST(DArrayAccess, LastIsThatOfTheCountNotOfTheBlock)
{
    Letters a = letters("abc");
    Letters const &fixed = a;
    EXPECT_EQ(a.Last(), 'c');
    a.Remove(2, 1);
    EXPECT_EQ(fixed.Last(), 'b');
}

// ---- Insertion --------------------------------------------------------------------------------

TEST(DArrayInsert, AtEachPlaceAndBeyond)
{
    struct {
        int at, n;
        char const *text;
    } const rows[] = {{0, 3, "xyz0123"},      {2, 3, "01xyz23"},  {4, 3, "0123xyz"},     {5, 3, "0123xyz"},
                      {farOff, 3, "0123xyz"}, {-1, 3, "xyz0123"}, {INT_MIN, 1, "x0123"}, {2, 1, "01x23"},
                      {2, 0, "0123"},         {2, -1, "0123"},    {2, INT_MIN, "0123"}};
    for (auto const &row : rows) {
        Letters a = letters("0123");
        a.Insert("xyz", row.at, row.n);
        EXPECT_EQ(textOf(a), row.text) << row.at << ", " << row.n;
        EXPECT_EQ(a.CCount(), a.Count()) << row.at << ", " << row.n;
    }
}

TEST(DArrayInsert, OfATableTakesWholeRuns)
{
    struct {
        int at, n;
        char const *text, *shape;
    } const rows[] = {{3, 7, "012uvwxyz345678", "15 = 3 x 5 in 256"}, {3, 2, "012345678", "9 = 3 x 3 in 256"},
                      {0, 3, "uvw012345678", "12 = 3 x 4 in 256"},    {farOff, 5, "012345678uvw", "12 = 3 x 4 in 256"},
                      {4, 3, "0123uvw45678", "12 = 3 x 4 in 256"},    {3, -4, "012345678", "9 = 3 x 3 in 256"}};
    for (auto const &row : rows) {
        Letters a = letters("012345678", 3);
        a.Insert("uvwxyz!", row.at, row.n);
        EXPECT_EQ(textOf(a), row.text) << row.at << ", " << row.n;
        EXPECT_EQ(shapeOf(a), row.shape) << row.at << ", " << row.n;
    }
}

TEST(DArrayInsert, IntoANewArrayMakesTheBlock)
{
    Letters a;
    a.Insert("abc", farOff, 3);
    EXPECT_EQ(shapeOf(a), "3 = 1 x 3 in 256");
    EXPECT_EQ(textOf(a), "abc");
}

TEST(DArrayInsert, GrowsTheBlock)
{
    Letters a = fullBlock();
    ASSERT_EQ(a.Capacity(), 256);
    a.Insert("xyz", 100, 3);
    EXPECT_EQ(textOf(a), std::string(100, 'a') + "xyz" + std::string(156, 'a'));
    EXPECT_EQ(a.Capacity(), 512);
}

TEST(DArrayInsert, AddReadsFromTheAddressOfTheElement)
{
    char const source[] = {'x', 'y', 'z'};
    Letters a = letters("ab");
    a.Add(source[0]);
    a.Add(source[1], 2);
    a.Add(source[0], 0);
    a.Add(source[0], -1);
    EXPECT_EQ(textOf(a), "abxyz");
}

TEST(DArrayInsert, AddToATableNeedsAWholeRun)
{
    char const source[] = {'x', 'y', 'z'};
    Letters a = letters("abcdef", 3);
    a.Add(source[0]);
    EXPECT_EQ(shapeOf(a), "6 = 3 x 2 in 256");
    a.Add(source[0], 3);
    EXPECT_EQ(shapeOf(a), "9 = 3 x 3 in 256");
    EXPECT_EQ(textOf(a), "abcdefxyz");
}

TEST(DArrayInsert, AnElementOfItsOwnIsReadBeforeTheBlockMoves)
{
    Letters a = fullBlock();
    a[0] = 'x';
    a.Add(a[0]);
    EXPECT_EQ(a.Last(), 'x');
    EXPECT_EQ(shapeOf(a), "257 = 1 x 257 in 512");
    DArray<DString, 1> strings(255);
    strings.AddBlank(1);
    ASSERT_EQ(strings.Capacity(), 256);
    strings[0] = "first";
    strings.Add(strings[0]);
    EXPECT_EQ(bytesOf(strings.Last()), "first");
}

TEST(DArrayInsert, BlanksHoldWhatTheBlockHeldUnlessZeroFillIsSet)
{
    Letters kept = letters("abcd"), cleared = letters("abcd");
    cleared.zeroFill = true;
    kept.InsertBlank(1, 2);
    cleared.InsertBlank(1, 2);
    EXPECT_EQ(textOf(kept), "abcbcd");
    EXPECT_EQ(textOf(cleared), std::string("a\0\0bcd", 6));
}

TEST(DArrayInsert, BlanksGoTheSameWay)
{
    struct {
        int run, at, n;
        std::string text;
    } const rows[] = {{1, -1, 1, std::string("\0abcdef", 7)},
                      {1, farOff, 2, std::string("abcdef\0\0", 8)},
                      {3, 3, 5, std::string("abc\0\0\0def", 9)},
                      {3, 0, 2, "abcdef"},
                      {1, 2, 0, "abcdef"},
                      {1, 2, -5, "abcdef"}};
    for (auto const &row : rows) {
        Letters a = letters("abcdefXXXXXX", row.run);
        a.ReSize(row.run, 6 / row.run);
        a.zeroFill = true;
        a.InsertBlank(row.at, row.n);
        EXPECT_EQ(textOf(a), row.text) << row.run << ", " << row.at << ", " << row.n;
        EXPECT_EQ(a.CCount() * a.RCount(), a.Count()) << row.run << ", " << row.at << ", " << row.n;
    }
}

// ---- Removal ----------------------------------------------------------------------------------

TEST(DArrayRemove, AtEachPlaceAndBeyond)
{
    struct {
        int at, n;
        char const *text;
    } const rows[] = {{0, 1, "123456789"},
                      {3, 4, "012789"},
                      {8, 2, "01234567"},
                      {8, 9, "01234567"},
                      {2, farOff, "01"},
                      {9, 1, "012345678"},
                      {10, 1, "012345678"},
                      {99, 5, "012345678"},
                      {farOff, farOff, "012345678"},
                      {0, farOff, ""},
                      {0, 10, ""},
                      {3, 0, "0123456789"},
                      {3, -1, "0123456789"},
                      {3, INT_MIN, "0123456789"},
                      {-5, 2, "23456789"},
                      {INT_MIN, 1, "123456789"}};
    for (auto const &row : rows) {
        Letters a = letters("0123456789");
        char const *const block = a.Data();
        a.Remove(row.at, row.n);
        EXPECT_EQ(textOf(a), row.text) << row.at << ", " << row.n;
        EXPECT_EQ(a.CCount(), a.Count()) << row.at << ", " << row.n;
        EXPECT_EQ(a.Capacity(), 256) << row.at << ", " << row.n;
        EXPECT_EQ(static_cast<void const *>(a.Data()), block) << row.at << ", " << row.n;
    }
}

TEST(DArrayRemove, OfATableTakesWholeRuns)
{
    struct {
        int at, n;
        char const *text, *shape;
    } const rows[] = {
        {3, 3, "012678", "6 = 3 x 2 in 256"},    {3, 5, "012678", "6 = 3 x 2 in 256"},
        {3, 2, "012345678", "9 = 3 x 3 in 256"}, {0, 7, "678", "3 = 3 x 1 in 256"},
        {3, farOff, "012", "3 = 3 x 1 in 256"},  {99, 6, "01234567", "8 = 3 x 3 in 256"}}; // the last element only
    for (auto const &row : rows) {
        Letters a = letters("012345678", 3);
        a.Remove(row.at, row.n);
        EXPECT_EQ(textOf(a), row.text) << row.at << ", " << row.n;
        EXPECT_EQ(shapeOf(a), row.shape) << row.at << ", " << row.n;
    }
}

TEST(DArrayRemove, OfAllLeavesTheBlock)
{
    DArray<DString, 1> a(300);
    DString const *const block = a.Data();
    a.Remove(0, 300);
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 512");
    EXPECT_EQ(a.Data(), block);
}

TEST(DArrayRemove, FromNothingDoesNothing)
{
    Letters fresh, emptied = letters("abc");
    emptied.Remove(0, 3);
    fresh.Remove(0, 1);
    emptied.Remove(0, 1);
    EXPECT_EQ(shapeOf(fresh), "0 = 1 x 0 in 0");
    EXPECT_EQ(shapeOf(emptied), "0 = 1 x 0 in 256");
}

// ---- Replacement ------------------------------------------------------------------------------

TEST(DArrayReplace, OverwritesAndNeverChangesTheCount)
{
    struct {
        int run, at, n;
        char const *text;
    } const rows[] = {{1, 0, 3, "uvw345678"},  {1, 7, 2, "0123456uv"},  {1, 7, 6, "0123456uv"},
                      {1, 99, 6, "01234567u"}, {1, 4, 0, "012345678"},  {1, 4, -2, "012345678"},
                      {1, -3, 2, "uv2345678"}, {3, 3, 5, "012uvw678"},  {3, 3, 2, "012345678"},
                      {3, 3, 6, "012uvwxyz"},  {3, 99, 3, "01234567u"}, {1, farOff, 1, "01234567u"}};
    for (auto const &row : rows) {
        Letters a = letters("012345678", row.run);
        a.Replace("uvwxyz", row.at, row.n);
        EXPECT_EQ(textOf(a), row.text) << row.run << ", " << row.at << ", " << row.n;
        EXPECT_EQ(a.CCount() * a.RCount(), 9) << row.run << ", " << row.at << ", " << row.n;
    }
}

TEST(DArrayReplace, InNothingDoesNothing)
{
    Letters a;
    a.Replace("xyz", 0, 3);
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 0");
}

TEST(DArrayReplace, ReleasesTheOldElementsAndSharesTheNew)
{
    DString const before("before"), after("after");
    DArray<DString, 1> a(3);
    a[1] = before;
    a.Replace(&after, 1, 1);
    EXPECT_TRUE(shareBlock(a[1], after));
    EXPECT_EQ(DStringInspector::Refs(before), 1);
    EXPECT_EQ(DStringInspector::Refs(after), 2);
    EXPECT_EQ(a.Count(), 3);
}

// ---- Order ------------------------------------------------------------------------------------

namespace {

struct ReorderRow {
    int from, to, n;
    char const *text;
};

void expectReorders(int run, std::initializer_list<ReorderRow> rows)
{
    for (auto const &row : rows) {
        Letters a = letters("0123456789", run);
        std::string const shape = shapeOf(a);
        a.Reorder(row.from, row.to, row.n);
        EXPECT_EQ(textOf(a), row.text) << row.from << ", " << row.to << ", " << row.n;
        EXPECT_EQ(shapeOf(a), shape) << row.from << ", " << row.to << ", " << row.n;
    }
}

} // namespace

TEST(DArrayReorder, TheBlockThenBeginsAtTheNewPlace)
{
    expectReorders(1, {{0, 5, 1, "1234506789"},
                       {5, 0, 1, "5012346789"},
                       {1, 4, 3, "0456123789"},
                       {4, 1, 3, "0456123789"},
                       {0, 9, 1, "1234567890"},
                       {9, 0, 1, "9012345678"},
                       {4, 4, 2, "0123456789"}});
}

TEST(DArrayReorder, PlacesAndNumbersAreLimitedToTheArray)
{
    expectReorders(1, {{2, 7, 9, "0156789234"},
                       {7, 2, 9, "0178923456"},
                       {2, 3, farOff, "0192345678"},
                       {0, 99, 1, "1234567890"},
                       {farOff, 0, 1, "9012345678"},
                       {-5, 3, 1, "1230456789"},
                       {3, INT_MIN, 1, "3012456789"},
                       {99, 50, 1, "0123456789"},
                       {0, 5, 0, "1234506789"}, // at least one
                       {0, 5, -3, "1234506789"}});
}

TEST(DArrayReorder, OfATableMovesWholeRuns)
{
    expectReorders(2, {{0, 4, 2, "2345016789"},
                       {1, 5, 3, "2345016789"},
                       {5, 1, 3, "4501236789"},
                       {0, 1, 2, "0123456789"},
                       {-1, 4, 2, "2345016789"},
                       {2, 4, 4, "0167234589"}});
}

TEST(DArrayReorder, OfNothingDoesNothing)
{
    Letters fresh, one = letters("a");
    fresh.Reorder(0, 1, 1);
    one.Reorder(0, 1, 1);
    EXPECT_EQ(shapeOf(fresh), "0 = 1 x 0 in 0");
    EXPECT_EQ(textOf(one), "a");
}

namespace {

int byByte(void const *a, void const *b)
{
    return *static_cast<char const *>(a) - *static_cast<char const *>(b);
}

int byByteDown(void const *a, void const *b)
{
    return byByte(b, a);
}

} // namespace

TEST(DArraySort, TakesAllElementsWhateverTheShape)
{
    Letters a = letters("fbdace", 3);
    a.Sort(byByte);
    EXPECT_EQ(textOf(a), "abcdef");
    EXPECT_EQ(shapeOf(a), "6 = 3 x 2 in 256");
    a.Sort(byByteDown);
    EXPECT_EQ(textOf(a), "fedcba");
}

TEST(DArraySort, OfNothingDoesNothing)
{
    Letters a;
    a.Sort(byByte);
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 0");
}

TEST(DArraySort, LeavesWhatLiesBehindTheCount)
{
    Letters a = letters("cba0");
    a.ReSize(3);
    a.Sort(byByte);
    a.ReSize(4);
    EXPECT_EQ(textOf(a), "abc0");
}

// ---- Swapping ---------------------------------------------------------------------------------

TEST(DArraySwap, OfTwoListsIsATrueSwap)
{
    Letters a = letters("abc"), b(600);
    char const *const blockOfA = a.Data(), *const blockOfB = b.Data();
    EXPECT_TRUE(a.SwapData(b));
    EXPECT_EQ(shapeOf(a), "600 = 1 x 600 in 768");
    EXPECT_EQ(shapeOf(b), "3 = 1 x 3 in 256");
    EXPECT_EQ(static_cast<void const *>(a.Data()), blockOfB);
    EXPECT_EQ(static_cast<void const *>(b.Data()), blockOfA);
}

TEST(DArraySwap, WithItselfIsRefused)
{
    Letters a = letters("abcdef", 3);
    EXPECT_FALSE(a.SwapData(a));
    EXPECT_EQ(shapeOf(a), "6 = 3 x 2 in 256");
    EXPECT_EQ(textOf(a), "abcdef");
}

TEST(DArraySwap, BothEndWithTheRunLengthOfTheArgument)
{
    Letters table = letters("abcdef", 3), list = letters("xy");
    EXPECT_TRUE(table.SwapData(list));
    EXPECT_EQ(shapeOf(table), "2 = 1 x 2 in 256");
    EXPECT_EQ(shapeOf(list), "6 = 1 x 2 in 256");

    Letters otherTable = letters("abcdef", 3), otherList = letters("xy");
    EXPECT_TRUE(otherList.SwapData(otherTable));
    EXPECT_EQ(shapeOf(otherList), "6 = 3 x 2 in 256");
    EXPECT_EQ(shapeOf(otherTable), "2 = 3 x 2 in 256");
}

TEST(DArraySwap, LeavesTheStepAndTheFillWhereTheyWere)
{
    Letters a = letters("abc"), b = letters("xy");
    a.growBy = 10;
    a.zeroFill = true;
    a.SwapData(b);
    EXPECT_EQ(a.growBy, 10);
    EXPECT_TRUE(a.zeroFill);
    EXPECT_EQ(b.growBy, 256);
    EXPECT_FALSE(b.zeroFill);
}

TEST(DArraySwap, WithANewArray)
{
    Letters a = letters("abc"), fresh;
    EXPECT_TRUE(fresh.SwapData(a));
    EXPECT_EQ(textOf(fresh), "abc");
    EXPECT_EQ(a.Data(), nullptr);
    EXPECT_EQ(shapeOf(a), "0 = 1 x 0 in 0");
}

// ---- Copies -----------------------------------------------------------------------------------

TEST(DArrayCopy, TakesShapeContentsStepAndFill)
{
    Letters a = letters("abcdef", 3);
    a.growBy = 10;
    a.zeroFill = true;
    DArray<char, 0> const copy(a);
    EXPECT_EQ(shapeOf(copy), "6 = 3 x 2 in 10");
    EXPECT_EQ(textOf(copy), "abcdef");
    EXPECT_EQ(copy.growBy, 10);
    EXPECT_TRUE(copy.zeroFill);
    EXPECT_NE(static_cast<void const *>(copy.Data()), a.Data());
}

TEST(DArrayCopy, OfAnEmptyArrayHasABlock)
{
    Letters const empty;
    Letters const copy(empty);
    Letters assigned = letters("abc");
    assigned = empty;
    EXPECT_EQ(shapeOf(copy), "0 = 1 x 0 in 256");
    EXPECT_NE(copy.Data(), nullptr);
    EXPECT_EQ(shapeOf(assigned), "0 = 1 x 0 in 256");
}

TEST(DArrayCopy, HasTheCapacityOfTheCountNotOfTheSource)
{
    Letters a = letters("abc");
    a.Reserve(1000);
    EXPECT_EQ(shapeOf(Letters(a)), "3 = 1 x 3 in 256");
    EXPECT_EQ(shapeOf(Letters(Letters(256))), "256 = 1 x 256 in 512");
}

TEST(DArrayCopy, AssignmentReplacesEverything)
{
    Letters a(1000), b = letters("abcdef", 3);
    a = b;
    EXPECT_EQ(shapeOf(a), "6 = 3 x 2 in 256");
    EXPECT_EQ(textOf(a), "abcdef");
    b[0] = 'X';
    EXPECT_EQ(textOf(a), "abcdef");
}

TEST(DArrayCopy, SelfAssignmentDoesNothing)
{
    Letters a = letters("abcdef", 3);
    a.Reserve(1000);
    DArray<char, 0> const &same = a;
    char const *const block = a.Data();
    static_cast<DArray<char, 0> &>(a) = same;
    EXPECT_EQ(shapeOf(a), "6 = 3 x 2 in 1024");
    EXPECT_EQ(static_cast<void const *>(a.Data()), block);
}

TEST(DArrayCopy, StringsAreShared)
{
    DArray<DString, 1> a(2);
    a[0] = "abc";
    DArray<DString, 1> const copy(a);
    EXPECT_TRUE(shareBlock(a[0], copy[0]));
    EXPECT_EQ(DStringInspector::Refs(a[0]), 2);
    EXPECT_EQ(copy[1].c_str(), DEmptyString);
}

TEST(DArrayCopy, ListsOfStringsAreCopiedByTheirOwnRule)
{
    DArray<DStringArray, 1> a(1);
    a[0] << DString("abc");
    DArray<DStringArray, 1> const copy(a);
    EXPECT_NE(copy[0].Data(), a[0].Data());
    EXPECT_TRUE(shareBlock(copy[0][0], a[0][0]));
}

// ---- Zero fill --------------------------------------------------------------------------------

namespace {

bool isZeroFrom(Letters const &a, int from)
{
    for (int i = from; i < a.Capacity(); i++)
        if (a.Data()[i] != 0) return false;
    return true;
}

} // namespace

TEST(DArrayZeroFill, ClearsEveryNewBlock)
{
    Letters a;
    a.zeroFill = true;
    a.Size(300);
    EXPECT_TRUE(isZeroFrom(a, 0));
    std::memset(a.Data(), 'x', 300);
    a.Reserve(600);
    EXPECT_EQ(textOf(a), std::string(300, 'x'));
    EXPECT_TRUE(isZeroFrom(a, 300));
    a.Size(10);
    EXPECT_TRUE(isZeroFrom(a, 0));
}

TEST(DArrayZeroFill, ClearsTheRestOfAGrownBlockThatHeldRemovedElements)
{
    Letters a(256);
    a.zeroFill = true;
    std::memset(a.Data(), 'x', 256);
    a.Remove(10, 246);
    a.Reserve(600);
    EXPECT_EQ(textOf(a), std::string(10, 'x'));
    EXPECT_TRUE(isZeroFrom(a, 10));
}

TEST(DArrayZeroFill, ClearsTheBlockOfACopy)
{
    Letters a = letters("abc");
    a.zeroFill = true;
    Letters const copy(a);
    EXPECT_EQ(textOf(copy), "abc");
    EXPECT_TRUE(isZeroFrom(copy, 3));
}

TEST(DArrayZeroFill, OfClassesStillConstructsTheBlanks)
{
    DArray<Counted, 1> a(2);
    a.zeroFill = true;
    a.InsertBlank(1, 1);
    EXPECT_EQ(valuesOf(a), (Values{-1, -1, -1}));
}

// ---- The life of elements ---------------------------------------------------------------------

TEST(DArrayLife, PlainElementsAreNeverMadeOrEnded)
{
    Counted const source(7);
    EXPECT_EQ(lifeIn([&] {
                  DArray<Counted, 0> a(5);
                  a.Insert(&source, 2, 1);
                  a.InsertBlank(0, 300);
                  a.AddBlank(3);
                  a.ReSize(400);
                  a.ReSize(2);
                  a.Remove(0, 1);
                  DArray<Counted, 0> copy(a);
                  copy = a;
                  copy.Size(4);
              }),
              "+0 -0");
}

TEST(DArrayLife, SizeAndTheDestructorMakeAndEndEach)
{
    EXPECT_EQ(lifeIn([] { CountedArray const a(5); }), "+5 -5");
    EXPECT_EQ(lifeIn([] { CountedArray const a(3, 2); }), "+6 -6");
    CountedArray a(5);
    EXPECT_EQ(lifeIn([&] { a.Size(3); }), "+3 -5");
    EXPECT_EQ(lifeIn([&] { a.sizefor(2, true); }), "+2 -3");
    EXPECT_EQ(lifeIn([&] { a.Clear(); }), "+0 -2");
    EXPECT_EQ(lifeIn([&] { a.Clear(); }), "+0 -0");
}

TEST(DArrayLife, DeletionThroughTheBaseEndsEach)
{
    DArray<Counted, 1> *const a = new CountedArray(4);
    EXPECT_EQ(lifeIn([&] { delete a; }), "+0 -4");
}

TEST(DArrayLife, ReSizeMakesAndEndsTheDifference)
{
    CountedArray a = counted(5);
    EXPECT_EQ(lifeIn([&] { a.ReSize(3); }), "+0 -2");
    EXPECT_EQ(lifeIn([&] { a.ReSize(300); }), "+297 -0");
    EXPECT_EQ(lifeIn([&] { a.ReSize(2, 2); }), "+0 -296");
    EXPECT_EQ(valuesOf(a), (Values{0, 1, 2, -1}));
    EXPECT_EQ(lifeIn([&] { a.ReSize(0); }), "+0 -4");
    EXPECT_EQ(a.Capacity(), 512);
}

TEST(DArrayLife, AddBlankMakesWholeRunsAndEndsTheRest)
{
    CountedArray a = counted(7);
    a.ReSize(3, 2);
    a.resize(7);
    EXPECT_EQ(lifeIn([&] { a.AddBlank(2); }), "+2 -0");
    a.resize(7);
    EXPECT_EQ(lifeIn([&] { a.AddBlank(1); }), "+0 -1");
    EXPECT_EQ(a.Count(), 6);
}

TEST(DArrayLife, InsertionCopiesAndMovesRawBytes)
{
    Counted const source[] = {Counted(7), Counted(8)};
    CountedArray a = counted(255);
    EXPECT_EQ(lifeIn([&] { a.Insert(source, 1, 2); }), "+2 -0");
    EXPECT_EQ(lifeIn([&] { a.Add(source[0]); }), "+1 -0");
    EXPECT_EQ(lifeIn([&] { a.InsertBlank(0, 1); }), "+1 -0");
    EXPECT_EQ(lifeIn([&] { a.Reserve(2000); }), "+0 -0");
    Values const values = valuesOf(a);
    EXPECT_EQ(Values(values.begin(), values.begin() + 5), (Values{-1, 0, 7, 8, 1}));
    EXPECT_EQ(values.back(), 7);
}

TEST(DArrayLife, RemovalEndsTheRemoved)
{
    CountedArray a = counted(6);
    EXPECT_EQ(lifeIn([&] { a.Remove(1, 2); }), "+0 -2");
    EXPECT_EQ(valuesOf(a), (Values{0, 3, 4, 5}));
    EXPECT_EQ(lifeIn([&] { a.Remove(99, 5); }), "+0 -1");
    EXPECT_EQ(valuesOf(a), (Values{0, 3, 4}));
}

TEST(DArrayLife, ReplacementKeepsTheirNumber)
{
    Counted const source[] = {Counted(7), Counted(8)};
    CountedArray a = counted(4);
    int const alive = Counted::made - Counted::ended;
    a.Replace(source, 1, 2);
    EXPECT_EQ(Counted::made - Counted::ended, alive);
    EXPECT_EQ(valuesOf(a), (Values{0, 7, 8, 3}));
}

TEST(DArrayLife, MovingAboutMakesAndEndsNone)
{
    CountedArray a = counted(6), b = counted(2);
    auto const byValueDown = [](void const *x, void const *y) {
        return static_cast<Counted const *>(y)->value - static_cast<Counted const *>(x)->value;
    };
    EXPECT_EQ(lifeIn([&] { a.Reorder(0, 3, 2); }), "+0 -0");
    EXPECT_EQ(valuesOf(a), (Values{2, 3, 4, 0, 1, 5}));
    EXPECT_EQ(lifeIn([&] { a.Sort(byValueDown); }), "+0 -0");
    EXPECT_EQ(lifeIn([&] { a.SwapData(b); }), "+0 -0");
    EXPECT_EQ(valuesOf(a), (Values{0, 1}));
    EXPECT_EQ(valuesOf(b), (Values{5, 4, 3, 2, 1, 0}));
}

TEST(DArrayLife, CopiesAreMadeOneByOne)
{
    CountedArray a = counted(3), b = counted(5);
    EXPECT_EQ(lifeIn([&] { CountedArray const copy(a); }), "+3 -3");
    EXPECT_EQ(lifeIn([&] { b = a; }), "+3 -5");
    EXPECT_EQ(valuesOf(b), (Values{0, 1, 2}));
    CountedArray const &same = b;
    EXPECT_EQ(lifeIn([&] { b = same; }), "+0 -0");
}

TEST(DArrayLife, NewStringsHoldTheEmptyConstant)
{
    DArray<DString, 1> a(2);
    a.AddBlank(1);
    a.ReSize(5);
    a.InsertBlank(0, 1);
    for (int i = 0; i < 6; i++) EXPECT_EQ(a[i].c_str(), DEmptyString) << i;
}

TEST(DArrayLife, InsertedStringsAreShared)
{
    DString const s("abc");
    DArray<DString, 1> a;
    a.Add(s);
    EXPECT_TRUE(shareBlock(a[0], s));
    a.Remove(0, 1);
    EXPECT_EQ(DStringInspector::Refs(s), 1);
}
