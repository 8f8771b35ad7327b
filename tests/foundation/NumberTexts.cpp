// Numbers look the same on every system: some thousand of them, printed and read, against a table that is made by
// generate_number_texts.py when the tests are built.
#include "foundation/Numbers.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "foundation/DString.h"

namespace {

char const *const formats[] = {"%.8g", "%.16g", "%.17g", "%.3e"};

struct Row {
    std::uint64_t bits;
    char const *texts[4];
} const rows[] = {
#include "NumberTexts.inc"
};

double numberOf(Row const &row)
{
    double value;
    std::memcpy(&value, &row.bits, sizeof value);
    return value;
}

std::uint64_t bitsOf(double value)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

std::string printed(char const *format, double value)
{
    char target[64];
    int const n = PrintBounded(target, sizeof target, format, value);
    return std::string(target, n < 0 ? 0 : static_cast<std::size_t>(n));
}

} // namespace

TEST(NumberTexts, AreSomeThousand)
{
    EXPECT_LT(3000u, sizeof rows / sizeof *rows);
}

TEST(NumberTexts, AreTheSameOnEverySystem)
{
    for (Row const &row : rows)
        for (std::size_t i = 0; i < 4; i++) EXPECT_EQ(row.texts[i], printed(formats[i], numberOf(row))) << formats[i];
}

TEST(NumberTexts, GiveTheNumberBackAfterSeventeenDigits)
{
    for (Row const &row : rows) {
        if (std::isinf(numberOf(row))) continue;
        double value = 5;
        DString(row.texts[2]).ToDouble(value);
        EXPECT_EQ(row.bits, bitsOf(value)) << row.texts[2];
    }
}

TEST(NumberTexts, OfSinglePrecisionHaveEightDigits)
{
    for (Row const &row : rows) {
        float const value = static_cast<float>(numberOf(row));
        if (static_cast<double>(value) != numberOf(row)) continue;
        EXPECT_STREQ(row.texts[0], (DString() << value).c_str());
    }
}
