// DString to and from numbers, truth values, pointers and dates, and its formatted output.
#include "foundation/DString.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "platform/Platform.h"
#include "support/CommaLocale.h"
#include "support/DStringInspector.h"
#include "support/LocalZone.h"
#include "support/Stopwatch.h"

using namespace std::string_literals;
using Inspector = DStringInspector;

namespace {

unsigned int const none = 0x7FFFFFFF;
char const *const noText = nullptr;
char const *const utc = "UTC0";
char const *const centralEurope = "CET-1CEST,M3.5.0,M10.5.0/3";
long long const day = 86400;

float const infinityF = std::numeric_limits<float>::infinity();
double const infinity = std::numeric_limits<double>::infinity();

std::uint32_t bitsOf(float value)
{
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

std::uint64_t bitsOf(double value)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

/// What the host's print routine makes of a value.
template <typename Value>
std::string hostPrint(char const *format, Value value)
{
    char text[100];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

template <typename Value>
std::string streamed(Value value)
{
    DString s("<");
    EXPECT_EQ(&(s << value), &s);
    return bytesOf(s);
}

} // namespace

// ---- Streaming --------------------------------------------------------------------------------

TEST(DStringStreaming, Integers)
{
    EXPECT_EQ(streamed(0), "<0");
    EXPECT_EQ(streamed(-1), "<-1");
    EXPECT_EQ(streamed(INT_MAX), "<2147483647");
    EXPECT_EQ(streamed(INT_MIN), "<-2147483648");
    EXPECT_EQ(streamed(0u), "<0");
    EXPECT_EQ(streamed(4294967295u), "<4294967295");
}

TEST(DStringStreaming, FloatsHaveEightDigits)
{
    struct {
        float value;
        char const *text;
    } const rows[] = {{1.5f, "1.5"},
                      {0.1f, "0.1"},
                      {-0.0f, "-0"},
                      {100000.0f, "100000"},
                      {16777216.0f, "16777216"},
                      {123456789.0f, "1.2345679e+08"},
                      {1e20f, "1e+20"},
                      {2.5e-7f, "2.5e-07"},
                      {DFMax, "3.3e+38"},
                      {-DFMax, "-3.3e+38"},
                      {-1.2345678e-38f, "-1.2345678e-38"},
                      {1.401298464e-45f, "1.4012985e-45"}};
    for (auto const &row : rows) {
        EXPECT_EQ(streamed(row.value), "<"s + row.text);
        EXPECT_EQ(bytesOf(DString(row.value)), row.text);
    }
}

TEST(DStringStreaming, DoublesHaveSixteenDigits)
{
    struct {
        double value;
        char const *text;
    } const rows[] = {{1.5, "1.5"},
                      {0.1, "0.1"},
                      {-0.0, "-0"},
                      {1.0 / 3, "0.3333333333333333"},
                      {1e15, "1000000000000000"},
                      {1e16, "1e+16"},
                      {1e20, "1e+20"},
                      {123456789012345678.0, "1.234567890123457e+17"},
                      {5e-324, "4.940656458412465e-324"},
                      {-1.7976931348623157e308, "-1.797693134862316e+308"},
                      {-2.2250738585072014e-308, "-2.225073858507201e-308"}};
    for (auto const &row : rows) {
        EXPECT_EQ(streamed(row.value), "<"s + row.text);
        EXPECT_EQ(bytesOf(DString(row.value)), row.text);
    }
}

TEST(DStringStreaming, NonFiniteValuesAreThePrintRoutines)
{
    for (double const value : {infinity, -infinity, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(bytesOf(DString(value)), hostPrint("%.16g", value));
        EXPECT_EQ(bytesOf(DString(static_cast<float>(value))), hostPrint("%.8g", value));
    }
}

TEST(DStringStreaming, Pointers)
{
    int something = 0;
    for (void *const pointer : {static_cast<void *>(&something), static_cast<void *>(nullptr)}) {
        EXPECT_EQ(streamed(pointer), "<" + hostPrint("%p", pointer));
        EXPECT_EQ(bytesOf(DString(pointer)), hostPrint("%p", pointer));
    }
}

TEST(DStringStreaming, TruthValuesJoinWithoutASpace)
{
    DString s;
    s << true << false;
    EXPECT_EQ(bytesOf(s), "TrueFalse");
    EXPECT_EQ(bytesOf(DString(true)), "True");
    EXPECT_EQ(bytesOf(DString(false)), "False");
}

TEST(DStringStreaming, ConstructorsGiveTheTextOfTheValue)
{
    EXPECT_EQ(bytesOf(DString(-12)), "-12");
    EXPECT_EQ(bytesOf(DString(12u)), "12");
    EXPECT_EQ(bytesOf(DString(1.5f)), "1.5");
    EXPECT_EQ(bytesOf(DString(1.5)), "1.5");
    EXPECT_EQ(DString(0).Len(), 1);
}

TEST(DStringStreaming, LeavesSharersAlone)
{
    DString a("n=");
    DString const b(a);
    a << 5 << 'x' << 1.5f << 2.5 << 7u << true;
    EXPECT_EQ(bytesOf(a), "n=5x1.52.57True");
    EXPECT_EQ(bytesOf(b), "n=");
}

TEST(DStringStreaming, GivesNullAText)
{
    DString number = nullString(), truth = nullString();
    number << 5;
    truth << true;
    EXPECT_EQ(bytesOf(number), "5");
    EXPECT_EQ(bytesOf(truth), "True");
}

namespace {

/// The block that a string of `length` characters has after a value was streamed into it.
template <typename Value>
int blockAfter(int length, Value value)
{
    DString s('x', length);
    s << value;
    return Inspector::AllocLength(s);
}

/// A block of 64 bytes ends at 38 characters: the text and the room reserved behind it.
template <typename Value>
void expectRoom(int room, Value value)
{
    EXPECT_EQ(blockAfter(38 - room, value), 64) << value;
    EXPECT_EQ(blockAfter(39 - room, value), 96) << value;
}

} // namespace

TEST(DStringStreaming, ReservesTheRoomOfTheType)
{
    expectRoom(12, 5);
    expectRoom(12, 5u);
    expectRoom(15, 5.0f);
    expectRoom(25, 5.0);
    expectRoom(25, static_cast<void *>(nullptr));
    expectRoom(25, 0LL);
    expectRoom(4, true);
    expectRoom(5, false);
}

TEST(DStringStreaming, CallsOfNearTypesFindTheirForm)
{
    EXPECT_EQ(bytesOf(DString("x")), "x"); // not "True"
    EXPECT_EQ(bytesOf(DString('x')), "x");
    EXPECT_EQ(streamed('x'), "<x");
    EXPECT_EQ(streamed("x"), "<x");
}

// ---- Dates as text ----------------------------------------------------------------------------

namespace {

struct DateRow {
    long long time;
    char const *text;
};

} // namespace

TEST(DStringDates, LongLongIsATimeInTheLocalZone)
{
    DateRow const rows[] = {{0, "01/01/1970 00:00:00"},
                            {1578997230, "01/14/2020 10:20:30"},
                            {1709251198, "02/29/2024 23:59:58"},
                            {1593604800, "07/01/2020 12:00:00"},
                            {253402300799, "12/31/9999 23:59:59"}};
    LocalZone const zone(utc);
    for (auto const &row : rows) {
        EXPECT_EQ(bytesOf(DString(row.time)), row.text);
        EXPECT_EQ(streamed(row.time), "<"s + row.text);
    }
}

TEST(DStringDates, SummerTimeCounts)
{
    LocalZone const zone(centralEurope);
    if (!zone.KnowsSummerTime()) GTEST_SKIP() << "this C runtime doesn't go by such zones";
    EXPECT_EQ(bytesOf(DString(1577880000LL)), "01/01/2020 13:00:00");
    EXPECT_EQ(bytesOf(DString(1593604800LL)), "07/01/2020 14:00:00");
}

TEST(DStringDates, ATimeBeyondTheCalendarAppendsNothing)
{
    LocalZone const zone(utc);
    for (long long const time : {LLONG_MAX, LLONG_MIN}) {
        EXPECT_EQ(streamed(time), "<") << time;
        EXPECT_EQ(DString(time).Len(), 0) << time;
    }
}

TEST(DStringDates, TheLastYearsOfTheCalendarComeWholeOrNotAtAll)
{
    LocalZone const zone(utc);
    std::string const last = streamed(67768036191676799LL);
    EXPECT_TRUE(last == "<" || last == "<12/31/2147485547 23:59:59") << last;
}

TEST(DStringDates, NowIsTheTimeOfTheClock)
{
    LocalZone const zone(utc);
    Platform::Clock clock;
    clock.unixTime = [] { return 1578997230LL; };
    Platform::SetClock(&clock);
    EXPECT_EQ(bytesOf(Now()), "01/14/2020 10:20:30");
    Platform::SetClock(nullptr);
}

// ---- Formatted output -------------------------------------------------------------------------

TEST(DStringFormat, OfEachType)
{
    EXPECT_EQ(bytesOf(Format(5, "%03i")), "005");
    EXPECT_EQ(bytesOf(Format(8, "%.03i")), "008");
    EXPECT_EQ(bytesOf(Format(-1, "n=%d.")), "n=-1.");
    EXPECT_EQ(bytesOf(Format(4294967295u, "%u")), "4294967295");
    EXPECT_EQ(bytesOf(Format(255u, "%X")), "FF");
    EXPECT_EQ(bytesOf(Format(1.25f, "%5.2f")), " 1.25");
    EXPECT_EQ(bytesOf(Format(1.25, "%-6.1f|")), "1.2   |");
    EXPECT_EQ(bytesOf(Format(0.1f, "%.10g")), "0.1000000015");
    EXPECT_EQ(bytesOf(Format(50.0, "%.0f%%")), "50%");
}

TEST(DStringFormat, ExponentsLoseTheirPlusAndOneZero)
{
    struct {
        double value;
        char const *format, *text;
    } const rows[] = {{100000.0, "%g", "100000"}, {1e6, "%g", "1e6"},          {1e5, "%.0e", "1e5"},
                      {2.5e-7, "%g", "2.5e-7"},   {1e10, "%g", "1e10"},        {1e100, "%g", "1e100"},
                      {1e-10, "%g", "1e-10"},     {1e-100, "%g", "1e-100"},    {1e20, "%g", "1e20"},
                      {1.0, "%.2e", "1.00e0"},    {-1e5, "%e", "-1.000000e5"}, {1e5, "%E", "1.000000E+05"},
                      {1e6, "%G", "1E+06"},       {1e6, "%g V", "1e6 V"},      {1e6, "at %g", "at 1e6"}};
    for (auto const &row : rows) {
        EXPECT_EQ(bytesOf(Format(row.value, row.format)), row.text) << row.format;
        if (std::abs(std::log10(std::abs(row.value))) > 38) continue; // no float
        EXPECT_EQ(bytesOf(Format(static_cast<float>(row.value), row.format)), row.text) << row.format;
    }
}

TEST(DStringFormat, StreamingLeavesTheExponent)
{
    EXPECT_EQ(bytesOf(DString(1e20)), "1e+20");
    EXPECT_EQ(bytesOf(Format(1e20, "%g")), "1e20");
    EXPECT_EQ(bytesOf(DString(1e20f)), "1e+20");
    EXPECT_EQ(bytesOf(Format(1e20f, "%g")), "1e20");
}

TEST(DStringFormat, TwentyCharactersFit)
{
    EXPECT_EQ(bytesOf(Format(5, "%20d")), std::string(19, ' ') + "5");
    EXPECT_EQ(bytesOf(Format(5u, "%020u")), std::string(19, '0') + "5");
    EXPECT_EQ(bytesOf(Format(5.0f, "%20.0f")), std::string(19, ' ') + "5");
    EXPECT_EQ(bytesOf(Format(5.0, "%20.0f")), std::string(19, ' ') + "5");
}

TEST(DStringFormat, AMisfitFallsBackToTheDefaultOfTheType)
{
    for (char const *format : {"%21.1f", "%s", "%n", "%f%f", "%", "%%", "%*f", "", "no value", "%d", "%100000f",
                               "a text of more than 20: %g", "%.2000000000f", noText}) {
        EXPECT_EQ(bytesOf(Format(0.1f, format)), "0.1") << (format ? format : "null");
        EXPECT_EQ(bytesOf(Format(1.0 / 3, format)), "0.3333333333333333") << (format ? format : "null");
    }
    for (char const *format : {"%21d", "%s", "%n", "%d%d", "%", "%%", "%*d", "", "no value", "%f", "%ld", "%100000d",
                               "a text of more than 20: %i", "%.2000000000d", noText}) {
        EXPECT_EQ(bytesOf(Format(-5, format)), "-5") << (format ? format : "null");
        EXPECT_EQ(bytesOf(Format(4294967295u, format)), "4294967295") << (format ? format : "null");
    }
}

TEST(DStringFormat, TheDefaultKeepsItsExponent)
{
    EXPECT_EQ(bytesOf(Format(1e20, "%50f")), "1e+20");
    EXPECT_EQ(bytesOf(Format(1e20f, "%50f")), "1e+20");
    EXPECT_EQ(bytesOf(Format(2.5e-7f, "%s")), "2.5e-07");
}

TEST(DStringFormat, TheLongestDefaultsFit)
{
    EXPECT_EQ(bytesOf(Format(INT_MIN, "%50d")), "-2147483648");
    EXPECT_EQ(bytesOf(Format(-1.2345678e-38f, "%50f")), "-1.2345678e-38");
    EXPECT_EQ(bytesOf(Format(-1.7976931348623157e308, "%f")), "-1.797693134862316e+308");
}

TEST(DStringFormat, AppendingReturnsTheString)
{
    DString s("n=");
    EXPECT_EQ(&s.AddFormatted(5, "%02d"), &s);
    EXPECT_EQ(&s.AddFormatted(6u, "/%u"), &s);
    EXPECT_EQ(&s.AddFormatted(1.5f, "/%.1f"), &s);
    EXPECT_EQ(&s.AddFormatted(2.5, "/%.2f"), &s);
    EXPECT_EQ(bytesOf(s), "n=05/6/1.5/2.50");
}

TEST(DStringFormat, AppendingAMisfitTakesTheLastCharacterInstead)
{
    for (char const *format : {"%30d", "%s", "%"}) {
        DString one("a"), several("abc"), unsignedOne("abc");
        EXPECT_EQ(bytesOf(one.AddFormatted(5, format)), "") << format;
        EXPECT_EQ(bytesOf(several.AddFormatted(5, format)), "ab") << format;
        EXPECT_EQ(bytesOf(unsignedOne.AddFormatted(5u, format)), "ab") << format;
    }
    DString single("abc"), wide("abc"), longOne('x', 50);
    EXPECT_EQ(bytesOf(single.AddFormatted(5.0f, "%30f")), "ab");
    EXPECT_EQ(bytesOf(wide.AddFormatted(5.0, "%s")), "ab");
    EXPECT_EQ(longOne.AddFormatted(5, "%30d").Len(), 49);
}

TEST(DStringFormat, AfterAMisfitTheExponentIsStillTidied)
{
    DString s("1e+05x");
    EXPECT_EQ(bytesOf(s.AddFormatted(5.0, "%30f")), "1e5");
}

TEST(DStringFormat, TidyingReachesTheLastEOfTheWholeText)
{
    struct {
        char const *before, *after;
    } const rows[] = {{"Re+0x ", "Rex 3"}, {"e10 ", "e1 3"},    {"e+5 ", "e5 3"},        {"1e+05 ", "1e5 3"},
                      {"e ", "e 3"},       {"E+05 ", "E+05 3"}, {"e+05 e ", "e+05 e 3"}, {"e00", "e03"},
                      {"e", "e3"},         {"e+", "e3"},        {"ex", "ex3"},           {"e++0", "e+03"}};
    for (auto const &row : rows) {
        DString single(row.before), wide(row.before), integer(row.before);
        EXPECT_EQ(bytesOf(single.AddFormatted(3.0f, "%g")), row.after) << row.before;
        EXPECT_EQ(bytesOf(wide.AddFormatted(3.0, "%g")), row.after) << row.before;
        EXPECT_EQ(bytesOf(integer.AddFormatted(3, "%d")), row.before + "3"s) << row.before;
    }
}

TEST(DStringFormat, WhatLiesBehindTheTerminatorIsNoExponent)
{
    DString s('0', 30), t('+', 30);
    s.Truncate(0);
    t.Truncate(0);
    EXPECT_EQ(bytesOf(s.AddFormatted(1.0, "%ge")), "1e");
    EXPECT_EQ(bytesOf(t.AddFormatted(1.0, "%ge")), "1e");
}

TEST(DStringFormat, AppendingLeavesSharersAlone)
{
    DString a("1e+05 ");
    DString const b(a);
    a.AddFormatted(3.0, "%g");
    EXPECT_EQ(bytesOf(a), "1e5 3");
    EXPECT_EQ(bytesOf(b), "1e+05 ");
}

TEST(DStringFormat, GivesNullAText)
{
    DString fits = nullString(), misfit = nullString(), exponent = nullString();
    EXPECT_EQ(bytesOf(fits.AddFormatted(5, "%02d")), "05");
    EXPECT_EQ(bytesOf(misfit.AddFormatted(5u, "%s")), "5");
    EXPECT_EQ(bytesOf(exponent.AddFormatted(1e6f, "%g")), "1e6");
}

TEST(DStringFormat, MisfitOnAnEmptyStringThatOnceWasLongStaysShort)
{
    DString s('x', 100);
    s.Truncate(0);
    EXPECT_EQ(bytesOf(s.AddFormatted(5, "%s")), "5");
    EXPECT_EQ(s.c_str()[1], '\0');
}

// ---- Integers ---------------------------------------------------------------------------------

namespace {

struct IntRow {
    char const *text;
    bool ok;
    int value;
};

struct UintRow {
    char const *text;
    bool ok;
    unsigned int value;
};

struct DoubleRow {
    char const *text;
    bool ok;
    double value;
};

} // namespace

TEST(DStringParsing, IntegersMayBeFollowedByAnything)
{
    IntRow const rows[] = {{"12abc", true, 12},
                           {"12", true, 12},
                           {" \t-7 ", true, -7},
                           {"+3", true, 3},
                           {"1.9", true, 1},
                           {"0x10", true, 0},
                           {"abc", false, 0},
                           {"-", false, 0},
                           {"", false, 0},
                           {" ", false, 0},
                           {"2147483647", true, INT_MAX},
                           {"2147483648", true, INT_MAX},
                           {"-2147483648", true, INT_MIN},
                           {"-2147483649", true, INT_MIN},
                           {"99999999999999999999", true, INT_MAX},
                           {"-99999999999999999999", true, INT_MIN}};
    for (auto const &row : rows) {
        int value = 77;
        EXPECT_EQ(DString(row.text).ToInt(value), row.ok) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST(DStringParsing, UnsignedIntegersClampTo32Bits)
{
    UintRow const rows[] = {{"12abc", true, 12},
                            {"4294967295", true, 4294967295u},
                            {"4294967296", true, 4294967295u},
                            {"18446744073709551616", true, 4294967295u},
                            {"-1", true, 4294967295u},
                            {"-4294967295", true, 1},
                            {"abc", false, 0},
                            {"", false, 0},
                            {" 5", true, 5}};
    for (auto const &row : rows) {
        unsigned int value = 77;
        EXPECT_EQ(DString(row.text).ToUint(value), row.ok) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST(DStringParsing, DoublesMustTakeTheWholeRestButStoreInAnyCase)
{
    DoubleRow const rows[] = {{"1.5", true, 1.5},
                              {"12abc", false, 12},
                              {" \t1.5", true, 1.5},
                              {"1.5 ", false, 1.5},
                              {"", false, 0},
                              {"abc", false, 0},
                              {"1e5", true, 1e5},
                              {"1e", false, 1},
                              {"-.5", true, -0.5},
                              {"5.", true, 5},
                              {".", false, 0},
                              {"1,5", false, 1},
                              {"+1", true, 1},
                              {"0.1", true, 0.1},
                              {"1e999", true, infinity},
                              {"-1e999", true, -infinity},
                              {"1e-999", true, 0},
                              {"inf", true, infinity},
                              {"0x10", true, 16},
                              {"-0", true, -0.0},
                              {"4.9406564584124654e-324", true, 5e-324},
                              {"17976931348623157e292", true, 1.7976931348623157e308}};
    for (auto const &row : rows) {
        double value = 77;
        EXPECT_EQ(DString(row.text).ToDouble(value), row.ok) << row.text;
        EXPECT_EQ(bitsOf(value), bitsOf(row.value)) << row.text << " gives " << value;
    }
}

TEST(DStringParsing, FloatsAreNarrowedDoubles)
{
    struct {
        char const *text;
        bool ok;
        std::uint32_t bits;
    } const rows[] = {{"1.5", true, 0x3FC00000},
                      {"12abc", false, 0x41400000},
                      {"1.5 ", false, 0x3FC00000},
                      {"abc", false, 0},
                      {"", false, 0},
                      {"0.1", true, 0x3DCCCCCD},
                      {"-0", true, 0x80000000},
                      {"1e39", true, 0x7F800000},
                      {"-1e39", true, 0xFF800000},
                      {"1e-50", true, 0},
                      {"3.3e38", true, 0x7F7843B0},
                      // rounded once it would be the next one, 0x3F800001
                      {"1.000000059604644775390625000001", true, 0x3F800000}};
    for (auto const &row : rows) {
        float value = 77;
        EXPECT_EQ(DString(row.text).ToFloat(value), row.ok) << row.text;
        EXPECT_EQ(bitsOf(value), row.bits) << row.text << " gives " << value;
    }
}

TEST(DStringParsing, NotANumberIsRead)
{
    double wide = 77;
    float narrow = 77;
    EXPECT_TRUE(DString("nan").ToDouble(wide));
    EXPECT_TRUE(DString("NAN").ToFloat(narrow));
    EXPECT_TRUE(std::isnan(wide) && std::isnan(narrow));
}

TEST(DStringParsing, NullAndTheEmptyConstantLeaveTheValueAlone)
{
    for (auto const &s : {DString(), nullString()}) {
        int integer = 77;
        unsigned int unsignedInteger = 77;
        float narrow = 77;
        double wide = 77;
        EXPECT_FALSE(s.ToInt(integer) || s.ToUint(unsignedInteger) || s.ToFloat(narrow) || s.ToDouble(wide));
        EXPECT_TRUE(integer == 77 && unsignedInteger == 77 && narrow == 77 && wide == 77);
    }
}

TEST(DStringParsing, AnEmptyBlockStoresZero)
{
    DString const s("");
    int integer = 77;
    unsigned int unsignedInteger = 77;
    float narrow = 77;
    double wide = 77;
    EXPECT_FALSE(s.ToInt(integer) || s.ToUint(unsignedInteger) || s.ToFloat(narrow) || s.ToDouble(wide));
    EXPECT_TRUE(integer == 0 && unsignedInteger == 0 && narrow == 0 && wide == 0);
}

TEST(DStringParsing, BeginsAtTheStart)
{
    DString const s("ab12.5");
    int integer = 77;
    unsigned int unsignedInteger = 77;
    float narrow = 77;
    double wide = 77;
    EXPECT_TRUE(s.ToInt(integer, 2) && s.ToUint(unsignedInteger, 3) && s.ToFloat(narrow, 2) && s.ToDouble(wide, 4));
    EXPECT_EQ(integer, 12);
    EXPECT_EQ(unsignedInteger, 2u);
    EXPECT_EQ(narrow, 12.5f);
    EXPECT_EQ(wide, 0.5);
}

TEST(DStringParsing, AStartOutsideReadsNothingOutside)
{
    DString const s("12");
    for (int const start : {2, 3, 1000, INT_MAX}) {
        int integer = 77;
        unsigned int unsignedInteger = 77;
        float narrow = 77;
        double wide = 77;
        EXPECT_FALSE(s.ToInt(integer, start) || s.ToUint(unsignedInteger, start)) << start;
        EXPECT_FALSE(s.ToFloat(narrow, start) || s.ToDouble(wide, start)) << start;
    }
    for (int const start : {-1, -1000, INT_MIN}) {
        int integer = 77;
        s.ToInt(integer, start);
        EXPECT_TRUE(integer == 0 || integer == 12 || integer == 77) << start << " gives " << integer;
    }
}

TEST(DStringParsing, AHostsLocaleChangesNothing)
{
    CommaLocale const locale;
    if (!locale.available()) GTEST_SKIP() << "no locale with a decimal comma can be had";
    double wide = 0;
    float narrow = 0;
    EXPECT_TRUE(DString("1.5").ToDouble(wide) && wide == 1.5);
    EXPECT_TRUE(DString("1.5").ToFloat(narrow) && narrow == 1.5f);
    EXPECT_FALSE(DString("1,5").ToDouble(wide) || DString("1,5").ToFloat(narrow));
    EXPECT_TRUE(DString("1.5").IsNumeric() && DString("1.5").IsSemiNumeric());
    EXPECT_FALSE(DString("1,5").IsNumeric() || DString("1,5").IsSemiNumeric());
}

TEST(DStringStreaming, AHostsLocaleChangesNothing)
{
    CommaLocale const locale;
    if (!locale.available()) GTEST_SKIP() << "no locale with a decimal comma can be had";
    EXPECT_EQ(bytesOf(DString(1.5)), "1.5");
    EXPECT_EQ(bytesOf(DString(-2.5e-7f)), "-2.5e-07");
    EXPECT_EQ(bytesOf(Format(1234.5f, "%.2f")), "1234.50");
    EXPECT_EQ(bytesOf(Format(1.5, "%s")), "1.5");
}

// ---- Classification ---------------------------------------------------------------------------

TEST(DStringClassification, NumericAndSemiNumeric)
{
    struct {
        char const *text;
        bool numeric, semiNumeric;
    } const rows[] = {{"1", true, true},
                      {"-1.5e3", true, true},
                      {" \t1", true, true},
                      {"1 ", false, false},
                      {"", false, true},
                      {" ", false, false},
                      {"abc", false, false},
                      {"12abc", false, false},
                      {"1,5", false, false},
                      {"inf", true, true},
                      {"nan", true, true},
                      {"0x1F", true, true},
                      {"1.#", false, true},
                      {"1.#INF", false, true},
                      {"-1.#IND", false, true},
                      {"-1.#", false, true},
                      {"1.#whatever", false, true},
                      {"+1.#INF", false, false},
                      {" 1.#INF", false, false},
                      {"1#", false, false},
                      {"-1.x", false, false},
                      {"--1.#", false, false},
                      {".", false, false},
                      {"1e", false, false}};
    for (auto const &row : rows) {
        EXPECT_EQ(DString(row.text).IsNumeric(), row.numeric) << row.text;
        EXPECT_EQ(DString(row.text).IsSemiNumeric(), row.semiNumeric) << row.text;
    }
}

TEST(DStringClassification, NothingIsSemiNumericButNotNumeric)
{
    for (auto const &s : {DString(), nullString(), DString("")}) {
        EXPECT_FALSE(s.IsNumeric());
        EXPECT_TRUE(s.IsSemiNumeric());
    }
}

// ---- Case -------------------------------------------------------------------------------------

TEST(DStringCase, ChangesInPlaceUpToTheFirstNul)
{
    DString lower = fromBytes("aBC1_\xC9\0D"s), upper = fromBytes("Abc1_\xE9\0d"s);
    EXPECT_EQ(&lower.ToLower(), &lower);
    EXPECT_EQ(&upper.ToUpper(), &upper);
    EXPECT_EQ(bytesOf(lower), "abc1_\xC9\0D"s);
    EXPECT_EQ(bytesOf(upper), "ABC1_\xE9\0d"s);
}

TEST(DStringCase, KnowsTheAsciiLettersOnly)
{
    for (int c = 1; c < 256; c++) {
        char const byte = static_cast<char>(c);
        bool const isUpper = c >= 'A' && c <= 'Z', isLower = c >= 'a' && c <= 'z';
        EXPECT_EQ(DString(byte).ToLower()[0], isUpper ? static_cast<char>(c + 32) : byte) << c;
        EXPECT_EQ(DString(byte).ToUpper()[0], isLower ? static_cast<char>(c - 32) : byte) << c;
    }
}

TEST(DStringCase, AHostsLocaleChangesNothing)
{
    CommaLocale const locale;
    if (!locale.available()) GTEST_SKIP() << "no locale with a decimal comma can be had";
    EXPECT_EQ(bytesOf(DString("a\xE9").ToUpper()), "A\xE9");
    EXPECT_EQ(bytesOf(DString("A\xC9").ToLower()), "a\xC9");
    EXPECT_FALSE(DString("\xC9") %= "\xE9");
    EXPECT_EQ(DString("\xC9").FindI("\xE9"), none);
    EXPECT_FALSE(DString("\xC9").StartsWith("\xE9") || DString("\xC9").EndsWith("\xE9"));
}

TEST(DStringCase, MakesASharedStringPrivate)
{
    DString a("abc");
    DString const b(a);
    a.ToUpper();
    EXPECT_EQ(bytesOf(a), "ABC");
    EXPECT_EQ(bytesOf(b), "abc");
}

TEST(DStringCase, OfNothingIsNothing)
{
    DString empty, null = nullString();
    EXPECT_EQ(empty.ToLower().Len() + empty.ToUpper().Len(), 0);
    EXPECT_EQ(null.ToLower().Len() + null.ToUpper().Len(), 0);
}

// ---- The number at the end --------------------------------------------------------------------

namespace {

struct EndRow {
    std::string text;
    unsigned int index;
    int value;
};

} // namespace

TEST(DStringEndNumber, BeginsWhereTheParseStillTakesTheTail)
{
    EndRow const rows[] = {{"Shot12", 4, 12},
                           {"12", 0, 12},
                           {"007", 0, 7},
                           {"abc", none, 0},
                           {"", none, 0},
                           {"12 ", none, 0},
                           {"12a", none, 0},
                           {"Shot-12", 4, -12},
                           {"Shot+12", 4, 12},
                           {"Shot 12", 4, 12},
                           {"Shot \t\n12", 4, 12},
                           {"Shot -12", 4, -12},
                           {"Shot- 12", 5, 12},
                           {"a--5", 2, -5},
                           {"1-2", 0, 1},
                           {"Shot 1 2", 4, 1},
                           {"1 2", 0, 1},
                           {"-", none, 0},
                           {"a1b2", 3, 2},
                           {"Shot4294967295", 4, -1},
                           {"Shot3000000000", 4, -1294967296},
                           {"Shot-3000000000", 4, 1294967296},
                           {"Shot4294967296", 4, -1},
                           {"Shot99999999999999999999", 4, -1},
                           {"Shot-99999999999999999999", 4, -1},
                           {"\xC9"
                            "5",
                            1, 5},
                           {"12\0"s, none, 0},
                           {"ab\0"
                            "12"s,
                            3, 12}};
    for (auto const &row : rows) {
        int value = 77;
        EXPECT_EQ(fromBytes(row.text).EndNumber(value), row.index) << testing::PrintToString(row.text);
        EXPECT_EQ(value, row.value) << testing::PrintToString(row.text);
    }
}

TEST(DStringEndNumber, OfNothingIsNone)
{
    for (auto const &s : {DString(), nullString()}) {
        int value = 77;
        EXPECT_EQ(s.EndNumber(value), none);
        EXPECT_EQ(value, 0);
    }
}

TEST(DStringEndNumber, LongTailsTakeNoTime)
{
    std::size_t const million = 1000000;
    EndRow const rows[] = {{std::string(million, '9'), 0, -1},
                           {"a" + std::string(million, '0') + "12", 1, 12},
                           {"a" + std::string(million, ' ') + "5", 1, 5},
                           {"a" + std::string(million, ' ') + "-5", 1, -5},
                           {std::string(million, '-') + "5", 999999, -5},
                           {"7" + std::string(million, ' ') + "5", 0, 7},
                           {std::string(million, ' '), none, 0}};
    for (auto const &row : rows) {
        DString const s = fromBytes(row.text);
        int value = 77;
        EXPECT_LT(secondsOf([&] { EXPECT_EQ(s.EndNumber(value), row.index); }), 1.0) << row.text.substr(0, 9);
        EXPECT_EQ(value, row.value) << row.text.substr(0, 9);
    }
}

// ---- Dates from text --------------------------------------------------------------------------

namespace {

/// All times are those of the zone that is set.
void expectDates(std::initializer_list<DateRow> rows)
{
    for (auto const &row : rows) {
        long long time = 77;
        EXPECT_TRUE(DString(row.text).ToDate(time)) << row.text;
        EXPECT_EQ(time, row.time) << row.text;
    }
}

} // namespace

TEST(DStringToDate, IsOneDayBeforeTheText)
{
    LocalZone const zone(utc);
    expectDates({{1578997230, "01/15/2020 10:20:30"},
                 {1577750400, "01/01/2020 00:00:00"}, // the last day of the month before
                 {1582934400, "03/01/2020 00:00:00"},
                 {1582848000, "02/29/2020 00:00:00"}});
}

TEST(DStringToDate, OfAWrittenTimeIsADayEarlier)
{
    for (char const *name : {utc, centralEurope}) {
        LocalZone const zone(name);
        for (long long const written : {1578997230LL, 1593604800LL, 1709251198LL}) {
            long long read = 0;
            EXPECT_TRUE(DString(written).ToDate(read));
            EXPECT_EQ(read, written - day) << name;
        }
    }
}

TEST(DStringToDate, FindsOutAboutSummerTime)
{
    LocalZone const zone(centralEurope);
    if (!zone.KnowsSummerTime()) GTEST_SKIP() << "this C runtime doesn't go by such zones";
    expectDates({{1594728000, "07/15/2020 14:00:00"}, {1579006800 - 3600, "01/15/2020 13:00:00"}});
}

TEST(DStringToDate, KnowsTheTwelveHourClock)
{
    LocalZone const zone(utc);
    expectDates({{1579014000, "01/15/2020 03:00:00 PM"},
                 {1579014000, "01/15/2020 03:00:00 pm"},
                 {1579014000, "01/15/2020 03:00:00PM"},
                 {1579014000, "01/15/2020 3:00 pM"},
                 {1579003200, "01/15/2020 12:00:00 PM"},
                 {1579003200, "01/15/2020 12:00:00 AM"}, // an AM mark changes nothing
                 {1578970800, "01/15/2020 03:00:00 AM"},
                 {1578970800, "01/15/2020 03:00:00 XM"},
                 {1579006800, "01/15/2020 13:00:00 PM"},
                 {1578960000, "01/15/2020 00:00:00 AM"},
                 {1579003200, "01/15/2020 00:00:00 PM"},
                 {1178366400, "5/6/2007 PM"}});
}

TEST(DStringToDate, TheLastCapitalMIsTheMark)
{
    LocalZone const zone(utc);
    expectDates({{1579014000, "01/15/2020 03:00 PM trailing"},
                 {1579014000, "01/15/2020 03:00:00 PM am"},
                 {1578970800, "01/15/2020 03:00:00 PM AM"}});
}

TEST(DStringToDate, SeparatorsAreSpaceMinusSlashAndColon)
{
    LocalZone const zone(utc);
    expectDates({{1578997230, "01-15-2020-10-20-30"},
                 {1578997230, "01 15 2020 10 20 30"},
                 {1578997230, "01:15:2020/10/20/30"},
                 {1578960000, "01.15.2020/15/2020"}}); // no others
}

TEST(DStringToDate, MissingFieldsHaveTheirDefaults)
{
    LocalZone const zone(utc);
    expectDates({{1578960000, "01/15/2020"},
                 {1578996000, "01/15/2020 10"},
                 {1577750400, "01//2020"},
                 {1577750400, "01/x/2020"},
                 {1578960000, "xx/15/2020"},
                 {1578960000, "01/15/2020 xx:yy:zz"},
                 {1578960620, "01/15/2020  10:20:30"}}); // two spaces hold an empty hour
}

TEST(DStringToDate, TheFirstByteIsNeverASeparator)
{
    LocalZone const zone(utc);
    expectDates({{1578960000, "/05/15/2020"}, {1563062400, "-5/15/2020"}, {1578960000, " 1/15/2020"}});
}

TEST(DStringToDate, WhatFollowsTheSixthFieldIsIgnored)
{
    LocalZone const zone(utc);
    expectDates({{1578997230, "01/15/2020 10:20:30.75"},
                 {1578997230, "01/15/2020 10:20:30:40:50"},
                 {1578997230, "01/15/2020 10:20:30 and more"}});
}

TEST(DStringToDate, FieldsOutOfRangeCarryOver)
{
    LocalZone const zone(utc);
    expectDates({{1612836121, "13/40/2020 25:61:61"}});
}

TEST(DStringToDate, YearsUpTo1900CountFrom1900)
{
    LocalZone const zone(utc);
    expectDates({{916272000, "01/15/99"}, {4103568000, "01/15/200"}, {947808000, "01/15/100"}});
    long long time = 77;
    EXPECT_TRUE(DString("01/15/20").ToDate(time));
    EXPECT_LT(time, 0); // 1920, not 2020
    EXPECT_TRUE(DString("01/02/1900").ToDate(time));
    EXPECT_TRUE(time == 57749241600 || time == -1) << time; // 3800, if the calendar goes so far
}

TEST(DStringToDate, RefusesShortTextsAndAMarkAtTheBeginning)
{
    for (auto const &s :
         {DString(), nullString(), DString(""), DString("1"), DString("M1/15/2020"), DString("1M/15/2020"),
          DString("PM"), DString("am"), DString("m1/15/2020"), DString("Mar 5")}) {
        long long time = 77;
        EXPECT_FALSE(s.ToDate(time)) << testing::PrintToString(bytesOf(s));
    }
}

TEST(DStringToDate, AMarkAtIndexTwoIsNoFailure)
{
    LocalZone const zone(utc);
    long long time = 77;
    EXPECT_TRUE(DString("1PM").ToDate(time));
    EXPECT_TRUE(DString("12").ToDate(time));
    EXPECT_TRUE(DString("zz").ToDate(time));
}

TEST(DStringToDate, AnswersTrueForWhatIsNoTime)
{
    LocalZone const zone(utc);
    long long time = 77;
    EXPECT_TRUE(DString("2147483647/1/2147483647").ToDate(time));
    EXPECT_EQ(time, -1);
    for (char const *text :
         {"-99999999999/1/2020", "99999999999/99999999999/99999999999 99999999999:99999999999:99999999999",
          "1/1/2020 2147483647:00:00 PM", "-2147483648/2147483647/2020"})
        EXPECT_TRUE(DString(text).ToDate(time)) << text;
}

TEST(DStringToDate, TheSecondArgumentHasNoEffect)
{
    LocalZone const zone(utc);
    long long time = 77;
    for (int const n : {0, 5, -1, INT_MAX}) {
        EXPECT_TRUE(DString("01/15/2020 10:20:30").ToDate(time, n));
        EXPECT_EQ(time, 1578997230) << n;
    }
}
