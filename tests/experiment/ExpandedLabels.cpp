// Labels with references to values of the shot, and what becomes of formats that users write.

#include "support/CommaLocale.h"
#include "support/ScalarTest.h"
#include "support/Stopwatch.h"

namespace {

std::string const undefined = "(undefined)";

class ExpandedLabels : public ScalarTest {
protected:
    ExpandedLabels()
    {
        Shot("Run=7\r\nMode=high\r\nPart=50%\r\nOn=True\r\na=10\r\nb=4\r\na-b=3\r\na*b=high\r\n2=99\r\ny5c=11\r\nf="
             "5\r\ny[f]d=text\r\n"
             "Ref=![Run]\r\nPlain=[Run]\r\nthird=0.33333334\r\nk=1000.00006\r\nInf=inf\r\nhex=0x10\r\nmicro=2.5e-"
             "07\r\nhuge=1e20\r\n"
             "W\\mx=high\r\nempty=\r\nlong=123456789012345678901234567890");
        Write(ShotIn(0, "S1") + "/W.wvf", SampleRows().Bytes());
    }

    std::string Label(std::string const &text) { return Plain(expt.GetExpandedLabel(Dstr(text))); }

    struct Row {
        std::string label, expanded;
    };
    void CheckLabels(std::vector<Row> const &rows)
    {
        for (Row const &row : rows) EXPECT_EQ(row.expanded, Label(row.label)) << row.label;
    }
    void StayAsTheyAre(std::vector<std::string> const &labels)
    {
        for (std::string const &label : labels) EXPECT_EQ(label, Label(label));
    }
    /// What a format makes of 7 on its own.
    std::string Seven(std::string const &format) { return Label("![Run" + format + "]"); }
};

// ---- References ----

TEST_F(ExpandedLabels, TextWithoutReferencesStaysAsItIs)
{
    StayAsTheyAre(
        {"", "abc", "!", "[", "]", "[Run]", "a!b", "! [Run]", "50%", "%s%n", "e+05", "a]b[c", "\xC9\xCA\xCB\xCC"});
}

TEST_F(ExpandedLabels, ReferencesAreReplacedInTheirPlaces)
{
    CheckLabels({{"x![Shot]", "xS1"},
                 {"![Run]", "7"},
                 {"a![Run]b", "a7b"},
                 {"![Run]![Run]", "77"},
                 {"a![Run]b![Mode]c", "a7bhighc"},
                 {"!![Run]", "!7"},
                 {"![Run]]", "7]"},
                 {"[![Run]]", "[7]"},
                 {"![Run][Run]", "7[Run]"},
                 {"![Run]!", "7!"},
                 {"]![Run]", "]7"},
                 {"![rUN]", "7"},
                 {"[Run]![Run]", "[Run]7"},
                 {"![Run] [", "7 ["},
                 {"![a]b]", "10b]"}});
}

TEST_F(ExpandedLabels, UnbalancedBracketsLeaveTheLabelAsItWas)
{
    StayAsTheyAre({"abc![", "![", "a![b", "![Run", "![Run]![", "![Run]a![b", "![a[b]", "![[Run]", "x![Run]y![[a]",
                   "![Run%.2f", "!![", "![![Run]", "![Run%30f]!["});
}

TEST_F(ExpandedLabels, BracketsInsideAReferenceAreCounted)
{
    CheckLabels({{"![y[f]c]", "11"},
                 {"<![y[f]c]>", "<11>"},
                 {"![y[f]d]", "text"},
                 {"![[Run]]", "7"},
                 {"![[[Run]]]", "7"},
                 {"![[a]+[b]]", "14"},
                 {"![W\\tv[2]]", "7.9444447"},
                 {"![W\\tv[0-1]%.1f]x", "7.7x"},
                 {"![![Run]]", undefined},
                 {"![]", undefined},
                 {"a![]b", "a" + undefined + "b"}});
}

// ---- Values ----

TEST_F(ExpandedLabels, ATextValueIsShownAsItIs)
{
    CheckLabels({{"![Mode]", "high"},
                 {"![Mode%.2f]", "high"},
                 {"x![Mode%s]y", "xhighy"},
                 {"![Part]", "50%"},
                 {"![On]", "True"},
                 {"![Ref]", "![Run]"},
                 {"![Ref]![Run]", "![Run]7"},
                 {"![Plain]", "[Run]"},
                 {"![a*b]", "high"},
                 {"![none::Mode]", "high"},
                 {"![W\\mx]", "high"},
                 {"![Mode%", "![Mode%"}});
}

TEST_F(ExpandedLabels, ANumberIsEvaluated)
{
    CheckLabels({{"![Run]", "7"},
                 {"![Run%.2f]", "7.00"},
                 {"![third]", "0.33333334"},
                 {"![k]", "1000.0001"},
                 {"![hex]", "16"},
                 {"![micro]", "2.5e-07"},
                 {"![huge]", "1e+20"},
                 {"![long]", "1.2345679e+29"},
                 {"![none::Run]", "7"},
                 {"![a-b]", "6"}, // its own value is 3
                 {"![2]", "2"},   // and here 99
                 {"![Inf]", undefined}});
}

TEST_F(ExpandedLabels, AFormulaIsEvaluated)
{
    CheckLabels({{"![Run+1%.1f]", "8.0"},
                 {"![Run+1]", "8"},
                 {"![2+3*4]", "14"},
                 {"![1/3]", "0.33333334"},
                 {"![(a+b)*2]", "28"},
                 {"![0*-1]", "0"},
                 {"![-0]", "-0"},
                 {"![On?1?2]", "1"},
                 {"![bol(On)%.0f]", "1"},
                 {"![W\\mn]", "-1.5"},
                 {"![W\\mx+0]", "3"},
                 {"![1e20]", "1e+20"},
                 {"![16777216+1+1]", "16777216"},
                 {"![none::5]", "5"},
                 {"![2^0.5^2]", "1.9999999"},
                 {"![Mode::5]", "high"},
                 {"![ 7]", "7"}});
}

TEST_F(ExpandedLabels, WhatHasNoValueIsUndefined)
{
    CheckLabels({{"![none]", undefined},
                 {"![none%.2f]", undefined},
                 {"a![none%s]b", "a" + undefined + "b"},
                 {"![1/0]", undefined},
                 {"![2 * 3]", undefined},
                 {"![empty]", undefined},
                 {"![Mode+1]", undefined},
                 {"![%.2f]", undefined},
                 {"![1e35]", undefined},
                 {"![W\\xx]", undefined},
                 {"![none]![Run]![none]", undefined + "7" + undefined}});
    EXPECT_EQ("", system.Heard());
}

TEST_F(ExpandedLabels, AFormulaComplainsAsElsewhere)
{
    EXPECT_EQ(undefined + "7", Label("![(a]![Run]"));
    EXPECT_EQ("2:Expression cannot be evaluated because of unmatched parenthesis\n", system.Heard());
}

TEST_F(ExpandedLabels, ANameWithAPercentIsCutThere)
{
    CheckLabels(
        {{"![W\\t%[50]]", undefined}, {"![W\\t5%[50]]", "5.5"}, {"x![W\\t5%[50]]", ""}, {"![W\\t1%.1f%%]", "1.5%"}});
}

TEST_F(ExpandedLabels, TheNameOfTheShotTakesNoFormat)
{
    Fields("007", "Shot=5");
    Set("007", 0);
    CheckLabels({{"x![Shot]", "x007"},
                 {"![SHOT]", "007"},
                 {"![shot%.2f]", "007"},
                 {"x![Shot%s]y", "x007y"},
                 {"![Shot+1%.1f]", "8.0"},
                 {"![Shot ]", undefined}});
}

TEST_F(ExpandedLabels, WithoutAShotItsNameIsEmpty)
{
    Open();
    CheckLabels({{"x![Shot]y", "xy"},
                 {"![SHOT%.2f]", ""},
                 {"![Run]", undefined},
                 {"![1+1]", "2"},
                 {"![1+1%.1f]", "2.0"},
                 {"![Mode]", undefined}});
}

// ---- Formats ----

TEST_F(ExpandedLabels, AFormatShapesANumber)
{
    struct {
        char const *format, *text;
    } const rows[] = {{"%.2f", "7.00"},   {"%5.1f", "  7.0"},  {"%-5.1f|", "7.0  |"}, {"%05.1f", "007.0"},
                      {"%+.0f", "+7"},    {"% .0f", " 7"},     {"%#.0f", "7."},       {"%g", "7"},
                      {"%G", "7"},        {"%F", "7.000000"},  {"%.1f V", "7.0 V"},   {"%.1f%%", "7.0%"},
                      {"%%%.0f", "%7"},   {"%.0f[x]", "7[x]"}, {"%.0f![x]", "7![x]"}, {"%.0f]", "7]"},
                      {"%f", "7.000000"}, {"%.3g", "7"}};
    for (auto const &row : rows) EXPECT_EQ(row.text, Seven(row.format)) << row.format;
}

TEST_F(ExpandedLabels, ExponentsAreTidied)
{
    CheckLabels({{"![1e20%g]", "1e20"},
                 {"![1e-7%g]", "1e-7"},
                 {"![1e-20%g]", "1e-20"},
                 {"![Run%e]", "7.000000e0"},
                 {"![Run%.0e]", "7e0"},
                 {"![micro%g]", "2.5e-7"},
                 {"![Run%E]", "7.000000E+00"},
                 {"![1e20%G]", "1E+20"},
                 {"x![1e20%g]y", "x1e20y"},
                 {"![1e20%g V]", "1e20 V"},
                 {"![1e20]", "1e+20"},
                 {"![micro]", "2.5e-07"}});
}

// The exponent is looked for in all of the label so far, as of any string to which a number is added.
TEST_F(ExpandedLabels, TidyingReachesTheTextBeforeTheNumber)
{
    CheckLabels({{"e+5:![Run%.0f]", "e5:7"},
                 {"ex0 ![Run%.0f]", "ex 7"},
                 {"1e+05 ![Run%.0f]", "1e5 7"},
                 {"1e+05 ![Run%g]", "1e5 7"},
                 {"e+![Run%.0f]", "e7"},
                 {"e![Run%+.0f]", "e7"},
                 {"e![Run%03.0f]", "e07"},
                 {"e+5e-1 ![Run%.0f]", "e+5e-1 7"},
                 {"![1e20]![Run%.0f]", "1e207"},
                 {"![none]+0![Run%.0f]", undefined + "+07"},
                 // but not without a format, nor in the text behind
                 {"e+5:![Run]", "e+5:7"},
                 {"![Run%.0f]e+05", "7e+05"},
                 {"e+5:![Mode%.0f]", "e+5:high"}});
}

TEST_F(ExpandedLabels, TwentyCharactersFit)
{
    EXPECT_EQ(std::string(16, ' ') + "7.00", Seven("%20.2f"));
    EXPECT_EQ("7", Seven("%21.2f"));
    EXPECT_EQ("x" + std::string(16, ' ') + "7.00y", Label("x![Run%20.2f]y"));
    EXPECT_EQ("y", Label("x![Run%21.2f]y"));
    EXPECT_EQ("7.00 and 16 lettersx", Seven("%.2f and 16 lettersx"));
    EXPECT_EQ("7", Seven("%.2f and 17 lettersxx"));
    EXPECT_EQ("7.000000000000000000", Seven("%.18f"));
    EXPECT_EQ("7", Seven("%.19f"));
    EXPECT_EQ("7", Seven("%.500f"));
}

char const *const misfits[] = {"%s",
                               "%n",
                               "%d",
                               "%*d",
                               "%*f",
                               "%.*f",
                               "%99999f",
                               "%99999999999f",
                               "%.2147483648f",
                               "%f%f",
                               "%f %s",
                               "%",
                               "%%",
                               "%%%",
                               "%5",
                               "%.",
                               "%-",
                               "%c",
                               "%p",
                               "%i",
                               "%x",
                               "%u",
                               "%Lf",
                               "%ls",
                               "%n%f",
                               "%f%n",
                               "%f%",
                               "% ",
                               "%z",
                               "%\xC9",
                               "%21f",
                               "%100.2f"};

TEST_F(ExpandedLabels, AMisfitAloneGivesTheUsualForm)
{
    for (char const *format : misfits) {
        EXPECT_EQ("7", Seven(format)) << format;
        EXPECT_EQ("7y", Label(std::string("![Run") + format + "]y")) << format;
        EXPECT_EQ("1e+20", Label(std::string("![huge") + format + "]")) << format;
    }
}

TEST_F(ExpandedLabels, AMisfitBehindTextTakesItsLastCharacter)
{
    for (char const *format : misfits) {
        std::string const reference = std::string("![Run") + format + "]";
        EXPECT_EQ("", Label("x" + reference)) << format;
        EXPECT_EQ("ac", Label("ab" + reference + "c")) << format;
        EXPECT_EQ("", Label("![Run]" + reference)) << format;
        EXPECT_EQ("hig!", Label("![Mode]" + reference + "!")) << format;
        EXPECT_EQ("7y7", Label(reference + "y![Run]")) << format;
        EXPECT_EQ("a", Label("abc" + reference + reference)) << format;
        EXPECT_EQ("x" + undefined, Label("x![none" + std::string(format) + "]")) << format;
    }
    EXPECT_EQ("xe5y", Label("xe+05z![Run%s]y")); // and the rest is tidied
}

// ---- The host, and long labels ----

TEST_F(ExpandedLabels, TheLocaleOfTheHostChangesNothing)
{
    std::vector<Row> const rows = {{"![third]", "0.33333334"}, {"![Run%.2f]", "7.00"}, {"![1.5+2]", "3.5"},
                                   {"![1e20%.1e]", "1.0e20"},  {"![SHOT]", "S1"},      {"![1,5]", undefined}};
    CheckLabels(rows);
    CommaLocale const locale;
    if (!locale.available()) GTEST_SKIP() << "no locale with a decimal comma";
    CheckLabels(rows);
}

TEST_F(ExpandedLabels, NothingIsReported)
{
    Logging = true;
    for (char const *label : {"![Run%s]", "![none]", "a![b", "![Mode%n]", "![%]"}) Label(label);
    EXPECT_EQ("", system.Heard());
    EXPECT_EQ("(missing)", system.Log());
}

TEST_F(ExpandedLabels, LongLabelsAreNoLimit)
{
    Open(); // without a shot no file is read for each reference
    struct {
        std::string label, expanded;
    } const rows[] = {{Times(many, "![1]"), Times(many, "1")},
                      {Times(many, "a![1%.0f]"), Times(many, "a1")},
                      {Times(many, "a![1%s]"), ""},
                      {Times(many, "!["), Times(many, "![")},
                      {"!" + Times(many, "[") + "5" + Times(many, "]"), "5"},
                      {"![" + Times(many, "(") + "5" + Times(many, ")") + "%.1f]", "5.0"},
                      {"![1%" + Times(many, "x") + "]", "1"},
                      {Times(megabyte, "a"), Times(megabyte, "a")}};
    for (auto const &row : rows) {
        std::string expanded;
        EXPECT_LT(secondsOf([&] { expanded = Label(row.label); }), farTooLong) << row.label.substr(0, 20);
        EXPECT_TRUE(row.expanded == expanded) << row.label.substr(0, 20) << " gives " << expanded.substr(0, 20);
    }
}

TEST_F(ExpandedLabels, ReservedBytesHaveADefinedResult)
{
    for (char const *bytes : {"\xC9", "\xCA", "\xCB", "\xCC", "1\xC9",
                              "\xCB"
                              "1",
                              "\xCB\xCC", "1+\xC9-"}) {
        EXPECT_EQ(undefined + "7", Label(std::string("![") + bytes + "]![Run]")) << bytes;
        EXPECT_EQ(bytes, Label(bytes));
    }
}

} // namespace
