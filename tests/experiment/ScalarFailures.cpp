// Formulas without a value: what is said of them and what isn't, and texts that no user writes: bytes that are reserved
// inside the evaluator, nests and chains of a hundred thousand, and a megabyte of one character.

#include "support/MatrixBytes.h"
#include "support/ScalarTest.h"
#include "support/Stopwatch.h"

namespace {

std::string const noBracket = "2:Expression cannot be evaluated because of unmatched bracket\n";
std::string const noParenthesis = "2:Expression cannot be evaluated because of unmatched parenthesis\n";

class ScalarFailures : public ScalarTest {
protected:
    ScalarFailures()
    {
        Shot("b=5\r\nx=-2\r\nHi=high\r\nYes=True");
        Write(ShotIn(0, "S1") + "/W.wvf", SampleRows().Bytes());
    }

    /// Values and messages of formulas.
    struct Complaint {
        std::string text;
        float value;
        std::string heard;
    };
    void CheckHeard(std::vector<Complaint> const &rows)
    {
        for (Complaint const &row : rows) {
            EXPECT_EQ(Shown(row.value), Shown(Of(row.text))) << row.text;
            EXPECT_EQ(row.heard, system.Heard()) << row.text;
        }
    }
    /// Formulas that have no value, of which nothing is said.
    void HaveNone(std::vector<std::string> const &texts)
    {
        for (std::string const &text : texts) CheckHeard({{text, none, ""}});
    }
    /// Like `Check`, for texts that are too long to be printed; each takes less than a second.
    void CheckLong(std::vector<Formula> const &rows)
    {
        for (Formula const &row : rows) {
            float value = 0;
            EXPECT_LT(secondsOf([&] { value = Of(row.text); }), farTooLong) << row.text.substr(0, 20) << "...";
            EXPECT_EQ(Shown(row.value), Shown(value)) << row.text.substr(0, 20) << "...";
        }
    }
};

// ---- What is said ----

TEST_F(ScalarFailures, AnOpeningBracketWithoutAClosingOneIsTold)
{
    CheckHeard({{"[", none, noBracket},
                {"[b", none, noBracket},
                {"b[", none, noBracket},
                {"[b][", none, noBracket},
                {"[b]+[b", none, noBracket},
                {"[[b]", none, noBracket},
                {"]b[", none, noBracket},
                {"5::[b", none, noBracket},
                {"[b::5", none, noBracket},
                {"1?2?[b", none, noBracket},
                {"W\\t%[50", none, noBracket}});
}

TEST_F(ScalarFailures, AnOpeningParenthesisWithoutAClosingOneIsTold)
{
    CheckHeard({{"(", none, noParenthesis},
                {"(b", none, noParenthesis},
                {"b(", none, noParenthesis},
                {"(1)(", none, noParenthesis},
                {"((1)", none, noParenthesis},
                {")b(", none, noParenthesis},
                {"5::(b", none, noParenthesis},
                {"(b::5", none, noParenthesis},
                {"sin(", none, noParenthesis},
                {"bol(Yes", none, noParenthesis},
                {"W\\t%(50", none, noParenthesis}});
}

TEST_F(ScalarFailures, BracketsAreLookedAtFirst)
{
    CheckHeard({{"([b", none, noBracket},
                {"[b(", none, noBracket},
                {"(1+[b)", none, noBracket},
                {"[none]+(", none, ""},
                {"(none)+(1)+(", none, noParenthesis},
                {"(+(none)", none, ""}});
}

TEST_F(ScalarFailures, AnArgumentTellsForItselfAndTheFormulaGoesOn)
{
    CheckHeard({{"W\\tv[(5]", 8.25f, noParenthesis},
                {"W\\tv[(5]-W\\tv[(6]", 0, noParenthesis + noParenthesis},
                {"W\\mx[(5]", 3, noParenthesis},
                {"W\\mx[(5]+(", none, noParenthesis + noParenthesis},
                {"W\\xx[(5]::4", 4, noParenthesis},
                {"([W\\tv[(5]])", 8.25f, noParenthesis}});
}

TEST_F(ScalarFailures, AReferenceMayLackItsBracket)
{
    CheckHeard({{"![b", 5, ""},
                {"![none", none, ""},
                {"1+![b", 6, ""},
                {"![", none, ""},
                {"![b][", none, noBracket},
                {"![b](", none, noParenthesis}});
}

// ---- What isn't said ----

TEST_F(ScalarFailures, AnEmptyTextHasNoValue)
{
    HaveNone({"", "![none]", "![none]5", "5+![none]", "![]", "()", "[]"});
}

TEST_F(ScalarFailures, AClosingMarkAloneStaysInTheName)
{
    HaveNone({"]", ")", "b]", "b)", "]b", ")b", "[b]]", "(b))", "1+2]", "1+2)", "b]+[b]", "(b)+b)"});
    CheckHeard({{"b)::5", 5, ""}, {"b]::5", 5, ""}, {"b)^0", 1, ""}});
}

TEST_F(ScalarFailures, UnknownThingsHaveNoValue)
{
    HaveNone({"none", "none+1", "[none]", "(none)", "W\\xx", "W\\xx[1]", "none\\mx", "Zz\\W\\mx", ">\\W\\mx", "@W\\mx",
              "\\mx", "W\\", "Hi", "Yes", "sin(none)"});
}

TEST_F(ScalarFailures, WithoutACurrentShotNothingIsKnown)
{
    Open();
    HaveNone({"b", "[b]", "(b)", "W\\mx", "![b]", "Shot", "b+1", "sin(b)"});
}

TEST_F(ScalarFailures, WithoutAnExperimentNothingIsKnown)
{
    expt.SetExperimentFolder(DString());
    HaveNone({"b", "[b]", "W\\mx", "![b]", "Shot"});
    Experiment fresh;
    EXPECT_EQ(Shown(none), Shown(fresh.GetScalarData("b", nullptr)));
    EXPECT_EQ(Shown(14), Shown(fresh.GetScalarData("2+3*4", nullptr)));
}

TEST_F(ScalarFailures, ResultsThatAreNoUsableNumbersAreNone)
{
    HaveNone({"1/0", "-1/0", "0/0", "1/b/0", "(1/0)", "log(0)", "log(0-1)", "(0-1)^0.5", "exp(100)", "10^35",
              "9e34+9e34", "-9e34-9e34", "1e34*10", "0^-1", "1e34^2", "inf", "nan", "1e35"});
}

TEST_F(ScalarFailures, NothingIsLogged)
{
    Logging = true;
    for (char const *text : {"[", "(", "none", "1/0", ""}) Of(text);
    EXPECT_EQ("(missing)", system.Log());
}

// ---- Reserved bytes from outside ----

TEST_F(ScalarFailures, ReservedBytesHaveADefinedResult)
{
    for (char const *frame :
         {"?",      "?1",       "1?",  "5?2", "b+?",      "b*?",    "2^?", "?^2", "?2",  "b?+1", "b-?-1",
          "W\\tv?", "W\\tv?-1", "[?]", "(?)", "W\\tv[?]", "sin(?)", "??",  "?1?", "b ?", "1e?",  "?::5"})
        for (char const *byte :
             {"\xC9", "\xCA", "\xCB", "\xCC", "\xC9\xCA", "\xCA\xC9", "\xCB\xCC", "\xCC\xCB", "\xC9\xCC"}) {
            std::string text = frame;
            for (std::size_t at = 0; (at = text.find('?', at)) != std::string::npos; at += std::strlen(byte))
                text.replace(at, 1, byte);
            float const value = Of(text);
            EXPECT_TRUE(IsVF(value) || Shown(value) == "none") << BytesHex(text);
            EXPECT_EQ("", system.Heard()) << BytesHex(text);
        }
}

TEST_F(ScalarFailures, ReservedBytesAreNoNumbers)
{
    for (char const *text : {"\xC9", "\xCA", "\xCB", "\xCC",
                             "\xC9"
                             "5",
                             "5\xC9", "5\xCC", "5\xCA", "b\xC9",
                             "\xC9"
                             "b",
                             "\xC9"
                             "5\xCA",
                             "\xCA"
                             "5\xC9"})
        EXPECT_EQ("none", Shown(Of(text))) << BytesHex(text);
}

TEST_F(ScalarFailures, OtherBytesAreLettersOfNames)
{
    Fields("S2", "\xE9t\xE9=7\r\n\xC8=8\r\n\xCD=9\r\na\x01=10");
    Set("S2", 0);
    Check({{"\xE9t\xE9+1", 8}, {"\xC8*\xCD", 72}, {"\xFF", none}, {"\x01", none}, {"a\x01/2", 5}});
}

// ---- Nests and chains ----

TEST_F(ScalarFailures, DeepParenthesesAreNoLimit)
{
    CheckLong({{Times(many, "(") + "5" + Times(many, ")"), 5},
               {Times(many, "(") + "b" + Times(many, ")"), 5},
               {Times(many, "(") + "0-5" + Times(many, ")"), -5},
               {Times(many, "(") + "5" + Times(many - 1, ")"), none},
               {Times(many, "(") + "5", none},
               {Times(many, "(") + Times(many, ")"), none}});
}

TEST_F(ScalarFailures, DeepBracketsAreNoLimit)
{
    CheckLong({{Times(many, "[") + "b" + Times(many, "]"), 5},
               {Times(many, "[") + "5" + Times(many, "]"), 5},
               {Times(many, "[") + "none" + Times(many, "]"), none},
               {Times(many, "[") + "5" + Times(many - 1, "]"), none},
               {Times(many, "[") + "5", none},
               {Times(many, "[") + Times(many, "]"), none}});
}

TEST_F(ScalarFailures, DeepFunctionsAreNoLimit)
{
    CheckLong({{Times(many, "bol(") + "b" + Times(many, ")"), 5},
               {Times(many, "sin(") + "0" + Times(many, ")"), 0},
               {Times(many / 10, "x\\mx[") + "5" + Times(many / 10, "]"), none}});
}

TEST_F(ScalarFailures, LongRowsOfParenthesesAreNoLimit)
{
    CheckLong({{Times(many, "(1)+") + "1", many + 1},
               {Times(many, "[1]+") + "1", many + 1},
               {Times(many, "(1)*") + "7", 7},
               {Times(many, "([1])-") + "1", 1 - many}});
}

TEST_F(ScalarFailures, LongChainsOfAlternativesAreNoLimit)
{
    expt.SetPauseIO(true);
    CheckLong({{Times(many, "0?1?") + "7", 7},
               {Times(many, "0?1?") + "none", none},
               {Times(many, "1?2?") + "7", 2},
               {Times(many, "b-5?1?") + "b", 5},
               {Times(many, "?"), none},
               {Times(many, "??") + "7", 7}});
}

TEST_F(ScalarFailures, LongChainsOfFallbacksAreNoLimit)
{
    expt.SetPauseIO(true);
    CheckLong({{Times(many, "none::") + "7", 7},
               {Times(many, "none::") + "b", 5},
               {Times(many, "none::"), none},
               {Times(many, "::") + "7", 7},
               {"b" + Times(many, "::none"), 5},
               {Times(many, ":"), none}});
}

TEST_F(ScalarFailures, LongChainsOfOperatorsAreNoLimit)
{
    CheckLong({{Times(many, "1+") + "1", many + 1},
               {"0" + Times(many, "-1"), -many},
               {Times(many, "1*") + "3", 3},
               {"3" + Times(many, "/1"), 3},
               {"3" + Times(many, "^1"), 3},
               {"1" + Times(many, "--1"), many + 1},
               {"5" + Times(many, "+"), none},
               {Times(many, "2*-"), none}});
}

// ---- A megabyte of one character ----

TEST_F(ScalarFailures, AMegabyteOfACharacterHasNoValue)
{
    expt.SetPauseIO(true); // half a million questions for a value
    for (char const *c : {"a", "1", "9",  ".", "e", "+", "-", "*",    "/",    "^",    " ",    "%",   "!",
                          ":", "?", "\\", "@", ">", "]", ")", "\xC9", "\xCA", "\xCB", "\xCC", "\xFF"}) {
        CheckLong({{Times(megabyte, c), none}});
        EXPECT_EQ("", system.Heard()) << c;
    }
    CheckLong({{Times(megabyte, "0"), 0}, {std::string(megabyte, '\0'), none}});
}

TEST_F(ScalarFailures, AMegabyteOfOpenersIsToldOnce)
{
    CheckLong({{Times(megabyte, "["), none}});
    EXPECT_EQ(noBracket, system.Heard());
    CheckLong({{Times(megabyte, "("), none}});
    EXPECT_EQ(noParenthesis, system.Heard());
}

TEST_F(ScalarFailures, AMegabyteOfReferencesIsBlank)
{
    CheckLong(
        {{Times(megabyte / 2, "!["), none}, {Times(megabyte / 2, "[]"), none}, {Times(megabyte / 2, "()"), none}});
    EXPECT_EQ("", system.Heard());
}

} // namespace
