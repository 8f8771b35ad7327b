// The passes that rewrite a formula, what they do with brackets, parentheses and functions, and its alternatives.
// Values were worked out by hand, or by a script that rounds each step to single precision.

#include <cmath>
#include <cstdlib>

#include "support/NumberText.h"
#include "support/ScalarTest.h"

namespace {

class ScalarPasses : public ScalarTest {
protected:
    ScalarPasses() { Shot(ManyValues); }
};

// ---- Brackets ----

TEST_F(ScalarPasses, BracketsHoldANameAndNoFormula)
{
    Check({{"[a+b]", 21},
           {"(a+b)", 15},
           {"[a-b]", 31},
           {"a-b", 5},
           {"[a - b]", 32},
           {"[2]", 2},
           {"[-2]", -2},
           {"[1+2]", none},
           {"[(1)]", 96},
           {"[2*3]", none},
           {"[]", none},
           {"[my key]*2", 82},
           {"1+[a+b]", 22},
           {"[a+b]*[a-b]", 651},
           {"[Yes?1?2]", none},
           {"[none::b]", 5},
           {"[Hi::b]", none},
           {"Hi::b", 5},
           {"[-b]", 71}});
}

TEST_F(ScalarPasses, BracketsNestByBuildingNames)
{
    Check({{"[a[b]]", 11},
           {"a[b]", 11},
           {"a[b]+1", 12},
           {"[a[b]]+[a[b]]", 22},
           {"[[b]]", 5},
           {"[[[b]]]", 5},
           {"3[2]", 32},
           {"[b][b]", 55},
           {"a[none]", none},
           {"abc[2]", 81},
           {"[a[b]", none}});
}

TEST_F(ScalarPasses, AnUnknownNameInBracketsEndsAll)
{
    Check({{"[none]", none},
           {"[none]+1", none},
           {"[none]::5", none},
           {"[none]^0", none},
           {"none^0", 1},
           {"1?2?[none]", none},
           {"1?2?none", 2},
           {"5::[none]", none},
           {"5::none", 5},
           {"bol[Yes]", none},
           {"[3e38]+0", none}});
}

TEST_F(ScalarPasses, TheBracketPassDoesNotMarkNegatives)
{
    Check({{"[x]^2", -4},
           {"(x)^2", 4},
           {"x^2", 4},
           {"3+[x]^2", 7},
           {"3-[x]^2", -1},
           {"3*[x]^2", 12},
           {"([x])^2", 4},
           {"[x]*[x]", 4}});
}

TEST_F(ScalarPasses, OnlyABracketedNameAloneKeepsAllDigits)
{
    Check({{"k", 1000.00006f},
           {"[k]", 1000.00006f},
           {"k+0", 1000.00006f},
           {"k*2", 2000.00012f},
           {"[k]+0", 1000.00012f},
           {"[k]*2", 2000.00024f},
           {"(k)", 1000.00012f},
           {"[[k]]", 1000.00012f},
           {"(1000.00006)*1", 1000.00012f}});
}

// What stands between an operator and a bracket tells an argument from a name.
TEST_F(ScalarPasses, ABracketBehindAnOperatorIsNoArgument)
{
    Host::values = {{"w\\x", 7}, {"w\\x5", 70}, {"w\\x 5", 71}, {"5", 72}};
    Check({{"w\\x+[b]", 12},
           {"w\\x-[b]", 2},
           {"w\\x*[b]", 35},
           {"w\\x/[b]", 1.4f},
           {"w\\x^[b]", 16807},
           {"w\\x [b]", 71},
           {"w\\x([b])", 70},
           {"\\x[b]", none},
           {"w\\[b]", none}},
          Host::Lookup);
}

// ---- Parentheses ----

TEST_F(ScalarPasses, ParenthesesArePutIntoTheTextAsNumbers)
{
    Check({{"3(2)", 32},        {"(3)2", 32},        {"(3)(2)", 32},
           {"abc(2)", 81},      {"((2))", 2},        {"2*(3)", 6},
           {"-(5)", -5},        {"1(0.5)", 10.5f},   {"1e(3)", 1000},
           {"1e(0-3)", 0.001f}, {"a(b)", 11},        {"2(1e10)", 2.1e11f},
           {"(1e10)+1", 1e10f}, {"5*(0-2)", -10},    {"5-(0-2)", 7},
           {"5+(0-2)", 3},      {"(0-2)*3", -6},     {"3(2)^2", 1024},
           {"3(0-2)^2", none},  {"(0-2)3^2", -529},  {"(0-2) ^2", none},
           {"(-0)^2", 0},       {"(-0)", -0.0f},     {"+(5)", 5},
           {"+(5)+1", none},    {"(2+3)*(4-1)", 15}, {"((1+1)*(2+2))^2", 64},
           {"(  5)", 5},        {"(5 )", none},      {"(5) ", none}});
}

TEST_F(ScalarPasses, AParenthesisedValueHasEightDigits)
{
    Check({{"1/3", 0.333333343f},
           {"(1/3)", 0.333333343f},
           {"3/26", 0.115384616f},
           {"(3/26)", 0.115384623f},
           {"4/39", 0.102564104f},
           {"(4/39)", 0.102564096f},
           {"3/26*1", 0.115384616f},
           {"(3/26)*1", 0.115384623f},
           {"1(1/3)", 10.3333333f}, // 0.33333334 behind the 1
           {"1(2/3)", 10.6666667f}});
}

TEST_F(ScalarPasses, AParenthesisWithoutAValueEndsAll)
{
    Check({{"()", none},
           {"(none)", none},
           {"(none)::5", none},
           {"(none)^0", none},
           {"(none)?1?2", none},
           {"1?2?(none)", none},
           {"5::(none)", none},
           {"(1/0)", none},
           {"1/(1/0)", none},
           {"(9e34*2)/2", none},
           {"sin(none)", none},
           {"sin()", none},
           {"(Yes)", none},
           {"ol(Yes)", none},
           {"bl(Yes)", none},
           {"bol((Yes))", none},
           {"boll(Yes)", none},
           {"bo(Yes)", none}});
}

// ---- Functions ----

TEST_F(ScalarPasses, FunctionsAreTakenInDoubleOfTheRoundedValue)
{
    Check({{"sin(1)", 0.841470957f},
           {"cos(1)", 0.540302277f},
           {"tan(1)", 1.55740774f},
           {"log(10)", 2.30258512f},
           {"exp(1)", 2.71828175f},
           {"sin(0)", 0},
           {"cos(0)", 1},
           {"exp(0)", 1},
           {"log(1)", 0},
           {"tan(1.5707963)", 13245402},
           {"exp(80)", 5.5406225e34f},
           {"sin(0.095)", 0.0948571637f},
           {"cos(0.821)", 0.681489706f},
           {"tan(0.349)", 0.363895684f},
           {"log(0.824)", -0.193584755f},
           {"exp(6.2)", 492.748932f},
           {"atn(0)", 0},
           {"sin(0-1)", -0.841470957f}});
}

TEST_F(ScalarPasses, TheArcTangentIsTheNearestSingle)
{
    for (char const *number : {"0.171", "0.203", "0.303", "0.366", "0.411", "0.472", "1", "-0.5", "1000"}) {
        char text[40];
        std::snprintf(text, sizeof text, "%.8g",
                      static_cast<double>(static_cast<float>(std::atan(static_cast<double>(FloatOf(number))))));
        EXPECT_EQ(Shown(std::strtof(text, nullptr)), Shown(Of("atn(" + std::string(number) + ")"))) << number;
    }
}

TEST_F(ScalarPasses, FunctionsMayBeWrittenInAnyCase)
{
    Check({{"SIN(1)", 0.841470957f},
           {"sIn(1)", 0.841470957f},
           {"COS(1)", 0.540302277f},
           {"Tan(1)", 1.55740774f},
           {"LOG(10)", 2.30258512f},
           {"eXp(1)", 2.71828175f},
           {"ATN(0)", 0},
           {"BOL(Yes)", 1}});
}

TEST_F(ScalarPasses, FunctionsStandInFormulas)
{
    Check({{"2*sin(0)", 0},
           {"1+cos(0)", 2},
           {"cos(0)+1", 2},
           {"cos(0)^2", 1},
           {"sin(1)+1", 1.84147096f},
           {"-cos(0)", -1},
           {"2^cos(0)", 2},
           {"sin(1)^2", 0.708073378f},
           {"sin(0-1)^2", 0.708073378f},
           {"cos(sin(1))", 0.666366756f},
           {"cos(k)", 0.562328577f},
           {"cos((k))", 0.562278152f},
           {"sin(0)cos(0)", 1},
           {"log(exp(1))", 0.99999994f},
           {"sin(cos(0)-1)", 0},
           {"2cos(0)", 21},
           {"exp(log(1))*3", 3}});
}

TEST_F(ScalarPasses, OtherLettersBeforeAParenthesisAreAName)
{
    Check({{"asin(0)", 92},
           {"atan(1)", 91},
           {"sqrt(4)", 93},
           {"ln(2)", 95},
           {"sin (1)", none},
           {"in(1)", none},
           {"sinh(1)", none},
           {"abs(1)", none},
           {"si(1)", none}});
}

TEST_F(ScalarPasses, AFunctionWithoutAValueLeavesTextBehind)
{
    Check({{"log(0)", none},     {"log(0)::5", 5},   {"log(0-1)", none},  {"log(0-1)::5", 5},
           {"exp(100)", none},   {"exp(100)::5", 5}, {"exp(100)?1?2", 2}, {"exp(81)", none},
           {"exp(81)/10", none}, {"exp(81)::5", 5},  {"log(0)+1", none},  {"1/exp(100)", none},
           {"0*exp(100)", none}, {"log(0)^2", none}, {"log(0)^-2", 0},    {"log(0)^0", 1},
           {"2^log(0)", none},   {"1?2?log(0)", 2},  {"5::log(0)", 5},    {"(log(0))::5", none}});
}

TEST_F(ScalarPasses, BolTellsAStoredTrueFromAnyOtherText)
{
    Check({{"bol(Yes)", 1},   {"bol(Loud)", 1},      {"bol(Soft)", 1},   {"bol(No)", 0},     {"bol(Nearly)", 0},
           {"bol(Hi)", 0},    {"bol(none)", 0},      {"bol()", 0},       {"bol(b)", 5},      {"bol(x)", -2},
           {"bol(2+3)", 5},   {"bol(0)", 0},         {"bol(x)^2", 4},    {"bol(Yes)+1", 2},  {"bol(Yes)*b", 5},
           {"1-bol(Yes)", 0}, {"bol(none::Yes)", 1}, {"2bol(Yes)", 21},  {"bol(True)", 0},   {"bol(yes)", 1},
           {"bol(1/0)", 0},   {"bol(Yes)?3?4", 3},   {"bol(No)?3?4", 4}, {"abol(Yes)", none}});
}

// ---- Alternatives and fallbacks ----

TEST_F(ScalarPasses, AnAlternativeTakesTheFirstAboveZero)
{
    Check({{"1?2?3", 2},    {"0?2?3", 3},   {"-1?2?3", 3},    {"1e-30?2?3", 2}, {"-0?2?3", 3},
           {"none?2?3", 3}, {"Hi?2?3", 3},  {"1?2", 2},       {"0?2", none},    {"1?", none},
           {"1??3", none},  {"0??3", 3},    {"?2?3", 3},      {"?", none},      {"a?b?x", 5},
           {"x?b?a", 10},   {"b-5?1?2", 2}, {"b-4?1?2", 1},   {"3e38?1?2", 2},  {"1?none?3", none},
           {"1?2+3?4", 5},  {"0?2?3+4", 7}, {"(0?2?3)+4", 7}, {"1?-2^2?3", -4}, {"inf?1?2", 2}});
}

TEST_F(ScalarPasses, AStoredTrueCountsAsAboveZero)
{
    Check({{"Yes?1?2", 1},
           {"Loud?1?2", 1},
           {"soft?1?2", 1},
           {"No?1?2", 2},
           {"Nearly?1?2", 2},
           {"True?1?2", 2},
           {"Yes+0?1?2", 2},
           {"Yes", none},
           {"Yes+1", none},
           {"none::Yes?1?2", 1},
           {"[Yes]?1?2", none},
           {"Yes ?1?2", 2},
           {"Yes?1", 1},
           {"No?1", none}});
}

TEST_F(ScalarPasses, WhatStandsBehindTheSecondMarkIsTheOther)
{
    Check({{"0?1?0?2?3", 3},
           {"0?1?1?2?3", 2},
           {"1?2?3?4", 2},
           {"0?2?3?4", 4},
           {"0?1?0?2?0?3?4", 4},
           {"1?0?1?2?3", 0},
           {"0?1?Yes?2?3", 2}});
}

TEST_F(ScalarPasses, AFallbackTakesTheFirstThatHasAValue)
{
    Check({{"a::5", 10},     {"none::5", 5},      {"none::none", none}, {"::5", 5},         {"5::", 5},
           {"::", none},     {"none::Hi::7", 7},  {"1::none::7", 1},    {"none::7::8", 7},  {"a::::5", 10},
           {"none::::5", 5}, {"none:::5", none},  {"a:5", none},        {"1+none::7", 7},   {"1::2+5", 1},
           {"none::2+5", 7}, {"none+1::a*b", 50}, {"3e38::4", 4},       {"(none::2)+5", 7}, {"0::5", 0},
           {"1/0::5", 5},    {"Yes::5", 5}});
}

TEST_F(ScalarPasses, AlternativesComeBeforeFallbacks)
{
    Check({{"none::1?5?6", 5},
           {"none::0?5?6", 6},
           {"0?1?none::3", 3},
           {"1?none::4?5", 4},
           {"0?1::2?3", 3},
           {"none::(0?1?2)", 2}});
}

// ---- The whole ----

TEST_F(ScalarPasses, TextOfTheShotIsPutInBeforeAllElse)
{
    Check({{"![b]", 5},
           {"![b]+1", 6},
           {"2*![sum]", 4},
           {"![sum]*2", 5},
           {"![sum]", 3},
           {"1![b]", 15},
           {"![ref]", 5},
           {"![ref]*2", 10},
           {"![mark]", none},
           {"![neg]^2", -9},
           {"(![neg])^2", 9},
           {"![b", 5},
           {"![Yes]?1?2", 2},
           {"a![b]", 11},
           {"![none::b]", 5},
           {"[a![b]]", 11},
           {"![x]-![x]", 0}});
    for (char const *text : {"![none]", "5+![none]", "![none]::5", "![none]?1?2", "![]", "5!["})
        EXPECT_EQ("none", Shown(Of(text))) << text;
}

TEST_F(ScalarPasses, PassesRunFromRightToLeftAndOperatorsFromLeftToRight)
{
    Host::values = {{"p", 1}, {"q", 2}, {"r", 3}};
    EXPECT_EQ(Shown(6) + ": <p> <q> <r>", Asked("p+q+r"));
    EXPECT_EQ(Shown(6) + ": <p> <q> <r>", Asked("p*q*r"));
    EXPECT_EQ(Shown(1) + ": <p> <q> <r>", Asked("p^q^r"));
    EXPECT_EQ(Shown(6) + ": <r> <q> <p>", Asked("(p)+(q)+(r)"));
    EXPECT_EQ(Shown(6) + ": <r> <q> <p>", Asked("[p]+[q]+[r]"));
    EXPECT_EQ(Shown(6) + ": <q> <p> <r>", Asked("(p)+[q]+r"));
    EXPECT_EQ(Shown(8) + ": <p> <q> <r> <p>", Asked("p+q*r+p"));
}

TEST_F(ScalarPasses, OnlyTheChosenPartIsEvaluated)
{
    Host::values = {{"p", 1}, {"q", 2}, {"r", 3}, {"zero", 0}};
    EXPECT_EQ(Shown(2) + ": <p> <q>", Asked("p?q?r"));
    EXPECT_EQ(Shown(3) + ": <zero> <r>", Asked("zero?q?r"));
    EXPECT_EQ(Shown(1) + ": <p>", Asked("p::q"));
    EXPECT_EQ(Shown(2) + ": <nobody> <q>", Asked("nobody::q"));
    EXPECT_EQ("none: <nobody>", Asked("nobody+q"));
    EXPECT_EQ("none: <nobody>", Asked("nobody*q"));
    EXPECT_EQ("none: <nobody>", Asked("p+[q]+[nobody]"));
    EXPECT_EQ(Shown(1) + ": <nobody> <zero>", Asked("nobody^zero"));
    EXPECT_EQ(Shown(2) + ": <q>", Asked("Yes?q?r"));
}

TEST_F(ScalarPasses, EachCallReadsTheShotAnew)
{
    Check({{"b*2", 10}});
    Fields("S1", "b=6");
    Check({{"b*2", 12}, {"a", none}});
}

} // namespace
