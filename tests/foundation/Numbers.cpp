// The constants, the test for a usable value, and text <-> number in the C locale.
#include "foundation/Numbers.h"

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/CommaLocale.h"
#include "support/Stopwatch.h"

namespace {

float const infinityF = std::numeric_limits<float>::infinity();
double const infinity = std::numeric_limits<double>::infinity();
double const notANumber = std::numeric_limits<double>::quiet_NaN();
char const *const noText = nullptr;

std::uint32_t bitsOf(float value)
{
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

float fromBits(std::uint32_t bits)
{
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

/// What a bounded print leaves: the text, or "(-1)", or what it broke.
template <typename Value>
std::string printed(int limit, char const *format, Value value)
{
    char target[64];
    std::memset(target, '#', sizeof target);
    int const n = PrintBounded(target, limit, format, value);
    for (int i = limit < 0 ? 0 : limit; i < 64; i++)
        if (target[i] != '#') return "(wrote behind the limit)";
    return n == -1 ? "(-1)" : n < 0 || n > limit ? "(count)" : std::string(target, static_cast<std::size_t>(n));
}

} // namespace

static_assert(std::is_same_v<decltype(DFMax), float const>);
static_assert(std::is_same_v<decltype(pi), float const>);

TEST(Numbers, ConstantsHaveTheirBits)
{
    EXPECT_EQ(bitsOf(DFMax), 0x7F7843B0u);
    EXPECT_EQ(bitsOf(pi), 0x40490FDBu);
}

TEST(Numbers, UsableValuesLieBetweenTheBounds)
{
    struct {
        std::uint32_t bits;
        bool usable;
    } const rows[] = {{0x00000000, true},  {0x80000000, true},  // zeros
                      {0x3F800000, true},  {0xBF800000, true},  // 1, -1
                      {0x00000001, true},  {0x80000001, true},  // the smallest
                      {0x7998889D, true},  {0xF998889D, true},  // the last float inside 9.9e34
                      {0x7998889E, false}, {0xF998889E, false}, // the first outside
                      {0x7F7843B0, false}, {0xFF7843B0, false}, // DFMax
                      {0x7F7FFFFF, false}, {0xFF7FFFFF, false}, // the largest
                      {0x7F800000, false}, {0xFF800000, false}, // infinities
                      {0x7FC00000, false}, {0xFFC00000, false},
                      {0x7F800001, false}, {0xFFFFFFFF, false}}; // not numbers
    for (auto const &row : rows) {
        EXPECT_EQ(IsVF(fromBits(row.bits)), row.usable) << std::hex << row.bits;
        EXPECT_EQ(IsUsable(fromBits(row.bits)), row.usable) << std::hex << row.bits;
    }
    EXPECT_FALSE(IsVF(infinityF));
}

TEST(Numbers, ConversionToIntIsDefinedForEveryValue)
{
    struct {
        double value;
        int truncated, floored;
    } const rows[] = {{0.0, 0, 0},
                      {-0.0, 0, 0},
                      {0.9, 0, 0},
                      {-0.9, 0, -1},
                      {1.9, 1, 1},
                      {-1.0, -1, -1},
                      {-1.1, -1, -2},
                      {5e-324, 0, 0},
                      {-5e-324, 0, -1},
                      {2147483646.5, 2147483646, 2147483646},
                      {2147483647.0, INT_MAX, INT_MAX},
                      {2147483647.9, INT_MAX, INT_MAX},
                      {2147483648.0, INT_MIN, INT_MIN},
                      {-2147483647.5, -2147483647, INT_MIN},
                      {-2147483648.0, INT_MIN, INT_MIN},
                      {-2147483648.5, INT_MIN, INT_MIN},
                      {-2147483649.0, INT_MIN, INT_MIN},
                      {1e300, INT_MIN, INT_MIN},
                      {-1e300, INT_MIN, INT_MIN},
                      {infinity, INT_MIN, INT_MIN},
                      {-infinity, INT_MIN, INT_MIN},
                      {notANumber, INT_MIN, INT_MIN}};
    for (auto const &row : rows) {
        EXPECT_EQ(TruncateToInt(row.value), row.truncated) << row.value;
        EXPECT_EQ(FloorToInt(row.value), row.floored) << row.value;
    }
}

TEST(Numbers, ParseIntClampsTo32Bits)
{
    struct {
        char const *text;
        int value, consumed;
    } const rows[] = {{"12abc", 12, 2},
                      {"-5", -5, 2},
                      {"+7", 7, 2},
                      {"007", 7, 3},
                      {" \t\n\v\f\r5 ", 5, 7},
                      {"0x10", 0, 1},
                      {"1e5", 1, 1},
                      {"", 0, 0},
                      {"abc", 0, 0},
                      {"-", 0, 0},
                      {"+-3", 0, 0},
                      {"- 3", 0, 0},
                      {"   ", 0, 0},
                      {"\xB2", 0, 0},
                      {"2147483647", INT_MAX, 10},
                      {"2147483648", INT_MAX, 10},
                      {"-2147483648", INT_MIN, 11},
                      {"-2147483649", INT_MIN, 11},
                      {"4294967297", INT_MAX, 10},
                      {"30000000000", INT_MAX, 11},
                      {"9223372036854775808", INT_MAX, 19},
                      {"18446744073709551617", INT_MAX, 20},
                      {"-99999999999999999999999x", INT_MIN, 24}};
    for (auto const &row : rows) {
        int value = 77;
        EXPECT_EQ(ParseInt(row.text, value) - row.text, row.consumed) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST(Numbers, ParseUintNegatesModulo32BitsAndClamps)
{
    struct {
        char const *text;
        unsigned int value;
        int consumed;
    } const rows[] = {{"12abc", 12, 2},
                      {"+7", 7, 2},
                      {" \t7", 7, 3},
                      {"-1", 4294967295u, 2},
                      {"-0", 0, 2},
                      {"-2147483648", 2147483648u, 11},
                      {"-4294967295", 1, 11},
                      {"4294967295", 4294967295u, 10},
                      {"4294967296", 4294967295u, 10},
                      {"-4294967296", 4294967295u, 11},
                      {"30000000000", 4294967295u, 11},
                      {"18446744073709551617", 4294967295u, 20},
                      {"", 0, 0},
                      {"abc", 0, 0},
                      {"--1", 0, 0},
                      {" ", 0, 0}};
    for (auto const &row : rows) {
        unsigned int value = 77;
        EXPECT_EQ(ParseUint(row.text, value) - row.text, row.consumed) << row.text;
        EXPECT_EQ(value, row.value) << row.text;
    }
}

TEST(Numbers, ParsingAMillionDigitsIsLinear)
{
    std::string const text = std::string(1000000, '0') + std::string(1000000, '9');
    int value = 0;
    unsigned int unsignedValue = 0;
    EXPECT_LT(secondsOf([&] { EXPECT_EQ(ParseInt(text.c_str(), value), text.c_str() + text.size()); }), 1.0);
    EXPECT_LT(secondsOf([&] { EXPECT_EQ(ParseUint(text.c_str(), unsignedValue), text.c_str() + text.size()); }), 1.0);
    EXPECT_EQ(value, INT_MAX);
    EXPECT_EQ(unsignedValue, UINT_MAX);
}

// ---- Formats from outside ---------------------------------------------------------------------

namespace {

struct FormatRow {
    char const *format;
    bool integer, floating;
};

FormatRow const formatRows[] = {
    {"%d", true, false},         {"%i", true, false},        {"%u", true, false},       {"%x", true, false},
    {"%X", true, false},         {"%o", true, false},        {"%5d", true, false},      {"%-5d", true, false},
    {"%+d", true, false},        {"% d", true, false},       {"%05d", true, false},     {"%.3d", true, false},
    {"%.03i", true, false},      {"%8.3i", true, false},     {"%#x", true, false},      {"%.i", true, false},
    {"%000005d", true, false},   {"%.000003d", true, false}, {"%.00002f", false, true}, {"%f", false, true},
    {"%F", false, true},         {"%e", false, true},        {"%E", false, true},       {"%g", false, true},
    {"%G", false, true},         {"%5.2f", false, true},     {"%.8g", false, true},     {"%+.2e", false, true},
    {"%#g", false, true},        {"%.f", false, true},       {"%-8.3f", false, true},   {"a %d b", true, false},
    {"100%% %d", true, false},   {"%d%%", true, false},      {"%%%d", true, false},     {"%% %f %%", false, true},
    {"\xC9%d\xFF", true, false}, {"%.2f%%", false, true},    {"", false, false},        {"abc", false, false},
    {"%", false, false},         {"%%", false, false},       {"%d%", false, false},     {"%%%", false, false},
    {"%5", false, false},        {"%5.", false, false},      {"%-", false, false},      {"%s", false, false},
    {"%c%s", false, false},      {"%n", false, false},       {"%d%n", false, false},    {"%p", false, false},
    {"%d%d", false, false},      {"%f%f", false, false},     {"%d%f", false, false},    {"%d %s", false, false},
    {"%*d", false, false},       {"%.*d", false, false},     {"%*.*f", false, false},   {"%.*f", false, false},
    {"%ld", false, false},       {"%lld", false, false},     {"%zd", false, false},     {"%jd", false, false},
    {"%td", false, false},       {"%Lf", false, false},      {"%Lg", false, false},     {"%ls", false, false},
    {"%S", false, false},        {"%q", false, false},       {"%k", false, false},      {"%\xC9", false, false},
    {"%m", false, false},        {"%2$d", false, false},     {"%5 %d", false, false},   {"%% %", false, false},
    {"%-5", false, false},       {"%.", false, false},       {"%#", false, false}};

} // namespace

TEST(NumbersFormat, FitsWithLiteralTextAndExactlyOneConversionOfTheKind)
{
    for (auto const &row : formatRows) {
        EXPECT_EQ(IsPrintFormat(row.format, FormatValue::Integer), row.integer) << row.format;
        EXPECT_EQ(IsPrintFormat(row.format, FormatValue::Floating), row.floating) << row.format;
    }
    EXPECT_FALSE(IsPrintFormat(noText, FormatValue::Integer));
    EXPECT_FALSE(IsPrintFormat(noText, FormatValue::Floating));
}

TEST(NumbersFormat, OneThatDoesntFitPrintsNothing)
{
    for (auto const &row : formatRows) {
        if (!row.integer) {
            EXPECT_EQ(printed(40, row.format, 5), "(-1)") << row.format;
            EXPECT_EQ(printed(40, row.format, 5u), "(-1)") << row.format;
        }
        if (!row.floating) {
            EXPECT_EQ(printed(40, row.format, 5.0), "(-1)") << row.format;
        }
    }
    EXPECT_EQ(printed(40, noText, 5), "(-1)");
    EXPECT_EQ(printed(40, noText, 5.0), "(-1)");
}

TEST(NumbersFormat, EveryByteBehindThePercentSignIsJudged)
{
    for (int c = 1; c < 256; c++) {
        char const format[] = {'%', static_cast<char>(c), '\0'};
        bool const integer = std::strchr("diuoxX", c), floating = std::strchr("eEfFgG", c);
        if (std::strchr("caA", c)) continue; // a character, and hexadecimal floating text, may be let through
        EXPECT_EQ(IsPrintFormat(format, FormatValue::Integer), integer) << c;
        EXPECT_EQ(IsPrintFormat(format, FormatValue::Floating), floating) << c;
    }
}

TEST(NumbersFormat, ScanFormatsStoreAtMostOneValue)
{
    for (char const *format : {"%d", "%f", "%g", " %d", "a%d", "%5d", "%%%d", "%lf", "%*d%d", "%*s %f", "%*s"})
        EXPECT_TRUE(IsScanFormat(format)) << format;
    for (char const *format : {"%", "%d%d", "%d %f", "%5", "%d%", "%*", "%l", "%*d%d%d", "%%%"})
        EXPECT_FALSE(IsScanFormat(format)) << format;
    EXPECT_FALSE(IsScanFormat(noText));
}

// ---- The bounded print ------------------------------------------------------------------------

TEST(BoundedPrint, ATextOfExactlyTheLimitFits)
{
    EXPECT_EQ(printed(5, "%d", 12345), "12345");
    EXPECT_EQ(printed(4, "%d", 12345), "(-1)");
    EXPECT_EQ(printed(5, "%u", 12345u), "12345");
    EXPECT_EQ(printed(4, "%u", 12345u), "(-1)");
    EXPECT_EQ(printed(5, "%.3f", 1.25), "1.250");
    EXPECT_EQ(printed(4, "%.3f", 1.25), "(-1)");
    EXPECT_EQ(printed(20, "%20d", 5), "                   5");
    EXPECT_EQ(printed(20, "%21d", 5), "(-1)");
}

TEST(BoundedPrint, NoRoomIsNoRoom)
{
    EXPECT_EQ(printed(0, "%d", 5), "(-1)");
    EXPECT_EQ(printed(-1, "%d", 5), "(-1)");
    EXPECT_EQ(printed(INT_MIN, "%f", 5.0), "(-1)");
}

TEST(BoundedPrint, PrintsWhatTheFormatSays)
{
    EXPECT_EQ(printed(20, "%i", INT_MIN), "-2147483648");
    EXPECT_EQ(printed(20, "%u", UINT_MAX), "4294967295");
    EXPECT_EQ(printed(20, "%x", -1), "ffffffff");
    EXPECT_EQ(printed(20, "a%03db%%", 7), "a007b%");
    EXPECT_EQ(printed(25, "%.16g", 0.1), "0.1");
    EXPECT_EQ(printed(25, "%.16g", -std::numeric_limits<double>::max()), "-1.797693134862316e+308");
    EXPECT_EQ(printed(20, "%.0i", 0), "");
    EXPECT_EQ(printed(20, "%.1000g", 0.5), "0.5");
}

TEST(BoundedPrint, VeryWideFormatsDontFitAndTakeNoTime)
{
    double const seconds = secondsOf([] {
        for (char const *format : {"%100000d", "%2000000000d", "%.2000000000d", "%2147483647d", "%2147483648d",
                                   "%99999999999999999999d", "%.99999999999999999999d", "%-2000000000d"}) {
            EXPECT_EQ(printed(20, format, 5), "(-1)") << format;
            EXPECT_EQ(printed(20, format, 5u), "(-1)") << format;
        }
        for (char const *format : {"%100000f", "%2000000000f", "%.2000000000f", "%.2000000000e", "%2147483648g",
                                   "%.99999999999999999999f", "%99999999999999999999f"})
            EXPECT_EQ(printed(20, format, 1.0), "(-1)") << format;
    });
    EXPECT_LT(seconds, 1.0);
}

TEST(BoundedPrint, AHostsLocaleChangesNothing)
{
    CommaLocale const locale;
    if (!locale.available()) GTEST_SKIP() << "no locale with a decimal comma can be had";
    EXPECT_EQ(printed(20, "%.2f", 1.25), "1.25");
    EXPECT_EQ(printed(20, "%.8g", 1234567.5), "1234567.5");
    int value = 0;
    EXPECT_EQ(*ParseInt("1.234", value), '.');
    EXPECT_EQ(value, 1);
}
