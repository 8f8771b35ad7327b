#include "support/ExperimentTest.h"

namespace {

class ExpandedStrings : public ExperimentTest {
protected:
    /// A current shot `S1` with these values.
    void OpenWithValues()
    {
        OpenWithRuns();
        Write(ShotIn(0, "S1") + "/Scalars.ini",
              "[Fields]\r\nRun=7\r\nEmpty=\r\nBlank= \r\nRef=[Run]\r\nMarked=![Run]\r\nBang=hi!\r\nClose=a]b\r\n");
        Set("S1", 0);
    }
    std::string Marked(std::string const &text) { return Plain(expt.GetExpandedString(Dstr(text), true)); }
    std::string Text(std::string const &text) { return Plain(expt.GetExpandedString(Dstr(text), false)); }
};

TEST_F(ExpandedStrings, TextWithoutReferencesComesBackInBothModes)
{
    OpenWithValues();
    for (char const *text : {"", "D7x", "!", "a!b", "]", "a]b", "\xC9\xFF", "Run"}) {
        EXPECT_EQ(text, Text(text));
        EXPECT_EQ(text, Marked(text));
    }
}

TEST_F(ExpandedStrings, PlainModeTakesEveryBracket)
{
    OpenWithValues();
    struct {
        char const *text;
        char const *expanded;
    } const rows[] = {{"D[Run]x", "D7x"},
                      {"D![Run]x", "D7x"},
                      {"[Run]", "7"},
                      {"![Run]", "7"},
                      {"D!![Run]x", "D!7x"},
                      {"[Run][Run]", "77"},
                      {"[Run]![Run]", "77"},
                      {"a[Run]b[Run]c", "a7b7c"},
                      {"[rUN]", "7"},
                      {"a[Run", "a7"},
                      {"a![Run", "a7"},
                      {"[Run]]", "7]"},
                      {"]a[Run]", "]a7"},
                      {"[Run]!", "7!"},
                      {"[Run]!x", "7!x"},
                      {"! [Run]", "! 7"},
                      {"[Shot]", "S1"},
                      {"[SHOT]x", "S1x"},
                      {"[None::Run]", "7"},
                      {"[Empty::Run]", "7"},
                      {"[Run::None]", "7"},
                      {"a[Blank]b", "a b"},
                      // Values aren't expanded again.
                      {"[Ref]", "[Run]"},
                      {"[Marked]", "![Run]"},
                      {"[Ref][Run]", "[Run]7"},
                      {"[Close]", "a]b"},
                      // An exclamation mark at the end of a value goes as well.
                      {"[Bang][Run]", "hi7"},
                      {"[Bang]![Run]", "hi!7"},
                      {"[Bang]x", "hi!x"},
                      {"[Bang]", "hi!"}};
    for (auto const &row : rows) EXPECT_EQ(row.expanded, Text(row.text)) << row.text;
}

TEST_F(ExpandedStrings, MarkedModeTakesMarkedBracketsOnly)
{
    OpenWithValues();
    struct {
        char const *text;
        char const *expanded;
    } const rows[] = {{"D[Run]x", "D[Run]x"},      {"D![Run]x", "D7x"},       {"![Run]", "7"},
                      {"D!![Run]x", "D!7x"},       {"![Run][Run]", "7[Run]"}, {"[Run]![Run]", "[Run]7"},
                      {"[None]![Run]", "[None]7"}, {"![Run]![Run]", "77"},    {"a![Run", "a7"},
                      {"a[Run", "a[Run"},          {"! [Run]", "! [Run]"},    {"![Run]]", "7]"},
                      {"![Shot]", "S1"},           {"![None::Run]", "7"},     {"![Ref]", "[Run]"},
                      {"![Marked]", "![Run]"},     {"![Bang]![Run]", "hi!7"}, {"![Bang][Run]", "hi![Run]"},
                      {"a![Blank]b", "a b"}};
    for (auto const &row : rows) EXPECT_EQ(row.expanded, Marked(row.text)) << row.text;
}

TEST_F(ExpandedStrings, OneKeyWithoutAValueEmptiesAll)
{
    OpenWithValues();
    for (char const *text : {"![None]", "a![None]b", "![Run]![None]", "![None]![Run]", "x![Empty]", "![]", "a![",
                             "![![Run]", "![ Run]", "![Run ]"}) {
        EXPECT_EQ("", Text(text)) << text;
        EXPECT_EQ("", Marked(text)) << text;
    }
    for (char const *text : {"[None]", "a[None]b", "[Run][None]", "[]", "a[", "[[Run]", "[[Run]]", "[Empty]"}) {
        EXPECT_EQ("", Text(text)) << text;
        EXPECT_EQ(text, Marked(text));
    }
}

TEST_F(ExpandedStrings, WithoutAShotEveryReferenceIsEmpty)
{
    OpenWithRuns();
    EXPECT_EQ("", Text("a[Run]b"));
    EXPECT_EQ("", Text("[Shot]"));
    EXPECT_EQ("", Marked("a![Shot]b"));
    EXPECT_EQ("a[Run]b", Marked("a[Run]b"));
    EXPECT_EQ("ab", Text("ab"));
    EXPECT_EQ("", Plain(Experiment().GetExpandedString("a[Run]b", false)));
}

TEST_F(ExpandedStrings, ManyReferencesInALongTextAreExpanded)
{
    OpenWithValues();
    expt.SetPauseIO(true);
    std::string text;
    std::string expanded;
    for (int i = 0; i < 2000; i++) {
        text += "abc![Run]";
        expanded += "abc7";
    }
    EXPECT_EQ(expanded, Text(text));
    EXPECT_EQ(expanded, Marked(text));
}

TEST_F(ExpandedStrings, NothingIsReported)
{
    OpenWithValues();
    Logging = true;
    Text("[None]");
    Marked("![None]![Run]");
    EXPECT_EQ("(missing)", system.Log());
    EXPECT_EQ("", system.Heard());
}

} // namespace
