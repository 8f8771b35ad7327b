// The language of formulas, level by level. Values were worked out by hand, or by a script that rounds each step to
// single precision; the ones in single precision that a calculation in double would miss are marked.

#include "support/CommaLocale.h"
#include "support/ScalarTest.h"

namespace {

class ScalarExpressions : public ScalarTest {
protected:
    ScalarExpressions() { Shot(ManyValues); }
};

// ---- Numbers ----

TEST_F(ScalarExpressions, AWholeNumberIsItself)
{
    Check({{"0", 0},          {"7", 7},      {"-2.5", -2.5f}, {"+5", 5},      {".5", 0.5f},
           {"5.", 5},         {"1e3", 1000}, {"1E3", 1000},   {"1e+3", 1000}, {"1e-3", 0.001f},
           {"+1.5e+2", 150},  {"-0", -0.0f}, {"0.1", 0.1f},   {"007", 7},     {"16777217", 16777216},
           {" 7", 7},         {"\t7", 7},    {"\n -5", -5},   {"0x10", 16},   {"0x1p-1", 0.5f},
           {"1e-40", 1e-40f}, {"1e-50", 0},  {"1e34", 1e34f}, {"2", 2},       {"1000.00006", 1000.00006f}});
}

TEST_F(ScalarExpressions, WhatIsNearlyANumberIsNone)
{
    for (char const *text : {"7 ", "1e", "1,5", "1 2", "0x", "1.2.3", "12abc", "e9", "- ", "+", "-", ".", "1e5e5"})
        EXPECT_EQ("none", Shown(Of(text))) << text;
}

TEST_F(ScalarExpressions, ValuesThatAreTooLargeAreNone)
{
    float const largest = BitsFloat(0x7998889D);
    Check({{"9.9e34", largest},
           {"-9.9e34", -largest},
           {"9.9000006e34", none},
           {"-9.9000006e34", none},
           {"1e35", none},
           {"3.3e38", none},
           {"-3.3e38", none},
           {"1e999", none},
           {"inf", none},
           {"-inf", none},
           {"nan", none}});
}

// ---- Operators and their precedence ----

TEST_F(ScalarExpressions, OperatorsBindAsInMathematics)
{
    Check({{"2+3*4", 14},   {"2*3+4", 10},   {"2-6/3", 0},    {"2*3^2", 18},      {"-2^2", -4},      {"0-2^2", -4},
           {"2^3^2", 64},   {"2^-1", 0.5f},  {"2*-3", -6},    {"5--3", 8},        {"1-2-3", -4},     {"1-2+3", 2},
           {"8/4/2", 1},    {"8/4*2", 4},    {"8*2/4", 4},    {"6/-4", -1.5f},    {"2*+3", 6},       {"2^+3", 8},
           {"-2-3", -5},    {"-2*-3", 6},    {"-x", 2},       {"a-b", 5},         {"a*b", 50},       {"a/b", 2},
           {"b^2", 25},     {"a+b", 15},     {"(2+3)*4", 20}, {"2^(1+2)", 8},     {"1/4+1/4", 0.5f}, {"2*3*4", 24},
           {"a*b-b*b", 25}, {"2^2*2^3", 32}, {"10-2*3-1", 3}, {"1+2^2*3-4/2", 11}});
}

TEST_F(ScalarExpressions, SumsAreRoundedToSingleAtEachStep) // each differs in double
{
    Check({{"16777216+1+1", 16777216},
           {"1+1+16777216", 16777218},
           {"1e8+1-1e8", 0},
           {"0.1+0.1-10+7", -2.80000019f},
           {"0.2-1.1+2-1.1", -1.1920929e-07f},
           {"2.3+2-3-2", -0.699999809f},
           {"0.3+0.1+7-2.3", 5.10000038f},
           {"7-2.3-7-0.7", -3.00000024f}});
}

TEST_F(ScalarExpressions, ProductsAreRoundedToSingleAtEachStep) // each differs in double
{
    Check({{"1*3/0.7/9", 0.476190448f},
           {"0.7*0.3/7*1.1", 0.0330000035f},
           {"2*7/3*7", 32.6666641f},
           {"2.3/9*1*0.7", 0.178888872f},
           {"0.1/0.1/1.7/0.1", 5.88235235f},
           {"1/0.3*0.2*5", 3.33333349f},
           {"1e-30*1e-30*1e30*1e30", 0},
           {"1e20*1e20/1e20", none}});
}

TEST_F(ScalarExpressions, PowersAreTakenInDoubleAndRoundedAtEachStep)
{
    Check({{"2^0.5", 1.41421354f},
           {"10^0.1", 1.25892544f},    // of the rounded 0.1
           {"1.107^0.3", 1.03096581f}, // a power in single differs, as in the next
           {"5.376^0.3", 1.6562953f},
           {"2^0.5^2", 1.99999988f}, // a chain in double differs, as in the rest
           {"7^0.2^5", 7.00000143f},
           {"1.3^2^2", 2.85609937f}});
}

TEST_F(ScalarExpressions, SumsStartFromZeroAndProductsFromOne)
{
    Check({{"0*-1", 0}, {"-0*1", 0}, {"-1*0", 0}, {"0-0", 0}, {"-0", -0.0f}, {"(0*-1)", 0}});
}

TEST_F(ScalarExpressions, OnlyTermsFactorsAndResultsAreTestedForSize)
{
    Check({{"9e34+9e34", none},
           {"9e34+9e34-9e34", 9e34f},
           {"9e34*2", none},
           {"9e34*2/2", 9e34f},
           {"9e34*2/2+1", 9e34f},
           {"9e34*2-9e34", none},
           {"(9e34*2)/2", none},
           {"(9e34+9e34)-9e34", none},
           {"1e35*0", none},
           {"1e35-1e35", none},
           {"0/1e35", none},
           {"10^30^2^-1", 0},
           {"10^30^2^0", 1},
           {"0^-1^-1", 0}});
}

// ---- The walk over a sum ----

TEST_F(ScalarExpressions, ABlankPassesOverWhatFollows)
{
    Check({{"my key", 41},  {"my key+1", 42}, {"1+my key", 42}, {"a - b", 32},     {"a -b", 33},     {"10 - 3", none},
           {"10 -3", none}, {"10- 3", 7},     {"a- 3", 7},      {"a- b", none},    {"1+ 2", 3},      {"1 +2", none},
           {"1+ -2", -1},   {"1+  2", 3},     {"- 2", -2},      {" -5+1", -4},     {"  -5+1", none}, {"   -5+1", -4},
           {"2 * 3", none}, {"2* 3", 6},      {" 2*3", 6},      {"2 *3", none},    {"2*3 ", none},   {"2/ 4", 0.5f},
           {"2^ 3", 8},     {"2 ^3", none},   {"2 ^-3", none},  {"5+ (0-2)^-2", 5}});
}

TEST_F(ScalarExpressions, AnOperatorOfAFactorPassesOverWhatFollows)
{
    Check({{"2*-3-1", -7},
           {"2/-4-1", -1.5f},
           {"2^-1-1", -0.5f},
           {"2*--3", none},
           {"2*-+3", none},
           {"2* -3", none},
           {"2*  -3", -6},
           {"2**3", none},
           {"2^^3", none},
           {"2*/3", none},
           {"2*e-5", 11},
           {"2*", none}});
    Host::values = {{"a ", 3}};
    Check({{"a *5", 15}, {"a *-5", none}}, Host::Lookup); // the "-" behind the passed "*" ends a term
}

TEST_F(ScalarExpressions, AMarkedNegativeIsNotPassedOver)
{
    Check({{"(0-2)^2", 4},
           {"5*(0-2)^2", 20},
           {"5/(0-2)^2", 1.25f},
           {"2^(0-2)^2", 0.0625f},
           {"5-(0-2)^2", 1},
           {"5+(0-2)^3", -3},
           {"(0-2)^2-(0-3)^2", -5},
           {"-(0-2)^2", -4},
           {"(0-2)^2*(0-2)^3", -32},
           {"(0-2)^2/(0-2)^3", -0.5f},
           {"(0-2)^(0-2)", 0.25f},
           {"(0-2)^2^0.5", 2},
           {"(0-1e-10)^2", 1.00000005e-20f},
           {"1+(0-1e-10)^2*1e20", 2}});
}

TEST_F(ScalarExpressions, TheSignOfAnExponentIsNoOperator)
{
    Check({{"1e-5+1", 1.00001001f},
           {"1E-5+1", 1.00001001f},
           {"1e+3+1", 1001},
           {"1+1e+3", 1001},
           {"1.e-1+1", 1.10000002f},
           {"Ae-5", 95},
           {"AE-5", 95},
           {"e-5", 3},
           {"E-5", 3},
           {"2+e-5", 5},
           {"a1e-5", 51},
           {"a1e-6", none},
           {".e-5", 61},
           {"1ee-5", 4},
           {"1e5-2", 99998},
           {"1e--3", none},
           {"0x1e-3", none},
           {"1e-0+1", 2},
           {"b+1e-1-1e-1", 5}});
}

TEST_F(ScalarExpressions, AnExponentStandsBehindAnyDigit)
{
    Check({{"0e-1+1", 1},
           {"1e-1+1", 1.10000002f},
           {"2e-1+1", 1.20000005f},
           {"3e-1+1", 1.29999995f},
           {"4e-1+1", 1.39999998f},
           {"5e-1+1", 1.5f},
           {"6e-1+1", 1.60000002f},
           {"7e-1+1", 1.70000005f},
           {"8e-1+1", 1.79999995f},
           {"9e-1+1", 1.89999998f}});
    EXPECT_EQ("1234567890.", Plain(NumberChars));
    EXPECT_EQ(" +-*/^(", Plain(OperatorChars));
}

TEST_F(ScalarExpressions, APlusAlwaysEndsATerm)
{
    Check({{"5+", none},
           {"+b", none},
           {"+5", 5},
           {"+5+1", none},
           {"1++2", none},
           {"1-+2", none},
           {"-+2", none},
           {"+-2", none},
           {"1+-2", -1},
           {"1+-b", 72},
           {"+", none},
           {"1+2+", none},
           {"++5", none}});
}

TEST_F(ScalarExpressions, AMinusBehindASignIsPartOfTheTerm)
{
    Check({{"--2", 2},
           {"---2", none},
           {"5--3", 8},
           {"5---3", none},
           {"1+--2", none},
           {"a--b", -61},
           {"--b", -71},
           {"a*-b", 710},
           {"a*-x", none},
           {"a^-x", none},
           {"5-", none},
           {"5--", none},
           {"-", none},
           {"--", none},
           {"2--3-4", 1},
           {"2+-3-4", -5}});
}

// ---- Products and powers ----

TEST_F(ScalarExpressions, EachFactorMustHaveAValue)
{
    Check({{"*2", none},
           {"/2", none},
           {"2/", none},
           {"2//3", none},
           {"2*none*3", none},
           {"none*2", none},
           {"1/0", none},
           {"1/0*0", none},
           {"1/0*0+1", none},
           {"0/0", none},
           {"0/5", 0},
           {"1/1e-40", none},
           {"Hi*2", none},
           {"a*b*none", none}});
}

TEST_F(ScalarExpressions, TheFirstBaseIsNotTested)
{
    Check({{"none^2", none},
           {"none^3", none},
           {"none^-2", 0},
           {"none^-3", 0},
           {"none^-1", 0},
           {"none^0", 1},
           {"none^0^5", 1},
           {"none^-2^2", 0},
           {"none^-1+7", 7},
           {"^2", none},
           {"^-2", 0},
           {"^0", 1},
           {"2+^0", 3},
           {"Hi^0", 1},
           {"3e38^0", 1},
           {"none^1", none},
           {"none^-2*5", 0},
           {"5*none^0", 5}});
}

TEST_F(ScalarExpressions, EveryOtherPartOfAPowerIsTested)
{
    Check({{"2^none", none},
           {"2^none^0", none},
           {"2^3^none", none},
           {"2^", none},
           {"2^^0", none},
           {"1^Hi", none},
           {"1^1e35", none},
           {"1^1e35^0", none},
           {"0^0", 1},
           {"0^-1", none},
           {"2^0.5^0", 1},
           {"-8^0.5", -2.82842708f},
           {"(0-8)^0.5", none},
           {"(0-8)^(1/3)", none},
           {"(0-8)^3", -512}});
}

// ---- The host ----

TEST_F(ScalarExpressions, TheLocaleOfTheHostChangesNothing)
{
    std::vector<Formula> const rows = {{"1.5+2.25", 3.75f},    {"(1/3)", 0.333333343f}, {"1,5", none},
                                       {"[k]+0", 1000.00012f}, {"SIN(0)+.5", 0.5f},     {"k", 1000.00006f},
                                       {"bol(SOFT)", 1},       {"(0-1.5)^2", 2.25f}};
    Check(rows);
    CommaLocale const locale;
    if (!locale.available()) GTEST_SKIP() << "no locale with a decimal comma";
    Check(rows);
}

} // namespace
