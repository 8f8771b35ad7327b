// The flat functions for numbers of a shot and formulas over them, and the one for the list of nodes.

#include <climits>
#include <cstddef>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "files/PathUtils.h"
#include "support/FlatClient.h"
#include "support/Hex.h"
#include "support/WaveformBytes.h"

namespace {

class VodrelCScalars : public FlatClient {
protected:
    /// A shot with the numbers x = -2 and y = 0.1, and a trace W of 1, -1.5 and 3.
    VodrelCScalars()
    {
        OpenWithShot();
        SetStringDataC("x", "-2");
        SetStringDataC("y", "0.1");
        PutShotFile("W.wvf", SampleRows().Bytes());
    }

    /// The answer for a text, in a buffer of exactly `room` characters.
    static std::string Safe(char const *text, int room)
    {
        std::size_t const size = room < 0 ? 0 : static_cast<std::size_t>(room);
        std::unique_ptr<char[]> const exact(new char[size]);
        int length = room;
        GetScalarDataSafeC(text, &length, exact.get());
        EXPECT_TRUE(length >= 0 && length <= static_cast<int>(size)) << length;
        std::string guarded(size + 20, '^');
        int again = room;
        GetScalarDataSafeC(text, &again, &guarded[10]);
        std::string const answer(exact.get(), static_cast<std::size_t>(length));
        std::string const behind(size - answer.size() + 10, '^');
        EXPECT_EQ(std::string(10, '^') + answer + behind, guarded);
        return answer;
    }
    static std::string Text(char const *text) { return Safe(text, 1000); }
    static std::string Value(char const *formula) { return Safe(formula, 59); }

    std::string Scalars() const { return ShotFile("Scalars.ini"); }
};

std::string const NoValue = "-3.3e+38";
std::string const Failure = "Error evaluating scalar expression ";

// ---- One formula ----

TEST_F(VodrelCScalars, AFormulaGivesItsValue)
{
    struct {
        char const *formula;
        float value;
    } const rows[] = {{"2+3*4", 14},    {"x", -2},      {"2*x", -4},  {"[x]^2", -4},    {"(x)^2", 4},
                      {"3(2)", 32},     {"none::7", 7}, {"W\\mx", 3}, {"W\\MN", -1.5f}, {"W\\t2", 2.5f},
                      {"A1\\W\\mx", 3}, {"![x]+1", -1}, {"x?1?5", 5}, {"1e-5", 1e-5f},  {"(1/3)", 0.33333334f}};
    for (auto const &row : rows) EXPECT_EQ(BitsOf(row.value), BitsOf(GetScalarDataC(row.formula))) << row.formula;
}

TEST_F(VodrelCScalars, WithoutAValueItGivesTheMarkOfNoValue)
{
    for (char const *formula : {"none", "", "2 * 3", "1/0", "W\\zz", "None\\mx", "![none]", "log(0-1)", "5+", "x\\",
                                static_cast<char const *>(nullptr)})
        EXPECT_EQ(0xFF7843B0u, BitsOf(GetScalarDataC(formula))) << (formula ? formula : "(null)");
    SetExperimentC("");
    EXPECT_EQ(0xFF7843B0u, BitsOf(GetScalarDataC("x")));
    EXPECT_EQ(14.0f, GetScalarDataC("2+3*4"));
}

TEST_F(VodrelCScalars, AnUnmatchedBracketIsTold)
{
    EXPECT_EQ("Expression cannot be evaluated because of unmatched parenthesis\n",
              Printed([] { EXPECT_EQ(0xFF7843B0u, BitsOf(GetScalarDataC("(2+3"))); }));
    EXPECT_EQ("Expression cannot be evaluated because of unmatched bracket\n",
              Printed([] { EXPECT_EQ(0xFF7843B0u, BitsOf(GetScalarDataC("[x"))); }));
    EXPECT_EQ("Expression cannot be evaluated because of unmatched parenthesis\n", Printed([] {
                  int length = 1000;
                  std::string buffer(1000, '^');
                  GetScalarDataSafeC("a{(2}", &length, &buffer[0]);
                  EXPECT_EQ(Failure + "(2", buffer.substr(0, static_cast<std::size_t>(length)));
              }));
}

// ---- A formula as text: less room than for 60 characters ----

TEST_F(VodrelCScalars, WithLessRoomThan60TheTextIsOneFormula)
{
    for (int room : {59, 30, 8}) {
        EXPECT_EQ("14", Safe("2+3*4", room));
        EXPECT_EQ(NoValue, Safe("{2}", room));
        EXPECT_EQ(NoValue, Safe("a{2}b", room));
        EXPECT_EQ(NoValue, Safe("", room));
        EXPECT_EQ(NoValue, Safe(nullptr, room));
    }
}

TEST_F(VodrelCScalars, AValueHasEightDigits)
{
    struct {
        char const *formula, *text;
    } const rows[] = {{"y", "0.1"},
                      {"1/3", "0.33333334"},
                      {"-x", "2"},
                      {"0-x", "2"},
                      {"1e-20", "9.9999997e-21"},
                      {"123456789", "1.2345679e+08"},
                      {"16777217", "16777216"},
                      {"W\\mn", "-1.5"}};
    for (auto const &row : rows) EXPECT_EQ(row.text, Value(row.formula)) << row.formula;
}

TEST_F(VodrelCScalars, AValueIsCutToTheRoom)
{
    struct {
        int room;
        char const *text;
    } const rows[] = {{10, "0.33333334"}, {9, "0.3333333"}, {3, "0.3"}, {1, "0"}, {0, ""}, {-1, ""}, {INT_MIN, ""}};
    for (auto const &row : rows) EXPECT_EQ(row.text, Safe("1/3", row.room)) << row.room;
}

// ---- A text with formulas: room for 60 characters and more ----

TEST_F(VodrelCScalars, From60OnTheTextIsSearchedForBraces)
{
    EXPECT_EQ(NoValue, Safe("{2+3}", 59));
    EXPECT_EQ("5", Safe("{2+3}", 60));
    EXPECT_EQ("2+3*4", Safe("2+3*4", 60));
    EXPECT_EQ("14", Safe("2+3*4", 59));
}

TEST_F(VodrelCScalars, ATextWithoutAnOpeningBraceComesBack)
{
    for (char const *text : {"", "2+3", "no formula here", "a}b", "}}}", "100 % [x] ![x]"}) EXPECT_EQ(text, Text(text));
    EXPECT_EQ("", Text(nullptr));
    EXPECT_EQ("\xC9\xCA\xCB\xCC\x01", Text("\xC9\xCA\xCB\xCC\x01"));
    std::string const text(100, 'x');
    for (int room : {60, 61, 99, 100, 101})
        EXPECT_EQ(text.substr(0, static_cast<std::size_t>(room)), Safe(text.c_str(), room)) << room;
}

TEST_F(VodrelCScalars, OneFormulaIsReplacedByItsValue)
{
    struct {
        char const *text, *answer;
    } const rows[] = {{"{2+3}", "5"},
                      {"a{2+3}b", "a5b"},
                      {"x = {x} V", "x = -2 V"},
                      {"third: {1/3}", "third: 0.33333334"},
                      {"peak {W\\mx} kA", "peak 3 kA"},
                      {"{![x]}", "-2"},
                      {"}{2}", "}2"},
                      {"{2}{", "2{"},
                      {"{2}{x", "2{x"},
                      {"%s %n {2} %d", "%s %n 2 %d"}};
    for (auto const &row : rows) EXPECT_EQ(row.answer, Text(row.text)) << row.text;
}

// Behind the first formula a closing brace begins the next, and what stands before it comes along.
TEST_F(VodrelCScalars, BehindTheFirstFormulaAClosingBraceBeginsTheNext)
{
    struct {
        char const *text;
        std::string answer;
    } const rows[] = {{"a{x}b{y}c", Failure + "c"}, {"a{x}b{y}1+2", "a-2b{y3"},
                      {"a{1}b{2}3", "a1b{23"},      {"a{1}b{2}x}c", "a1b{2-2c"},
                      {"a{1}b{2}x}c}", Failure},    {"{1}x}2}y", "1x2y"},
                      {"{1}x}2}y}3}z", "1x2y3z"},   {"{1}{2}", Failure},
                      {"{1} and {2}", Failure},     {"{1}}", Failure},
                      {"{1}}}", Failure},           {"{1}a}x", "1a-2"},
                      {"{1}a}x}", "1a-2"},          {"{1}a}none", Failure + "none"},
                      {"{1}a}{2}", Failure + "{2"}};
    for (auto const &row : rows) EXPECT_EQ(row.answer, Text(row.text)) << row.text;
}

TEST_F(VodrelCScalars, WithoutAClosingBraceTheFormulaGoesToTheEnd)
{
    EXPECT_EQ("a5", Text("a{2+3"));
    EXPECT_EQ("-2", Text("{x"));
    EXPECT_EQ(Failure + "none", Text("a{none"));
    EXPECT_EQ(Failure, Text("a{"));
    EXPECT_EQ(Failure, Text("{"));
}

TEST_F(VodrelCScalars, TheFirstFormulaWithoutAValueIsTheAnswer)
{
    struct {
        char const *text;
        std::string answer;
    } const rows[] = {{"a{none}b", Failure + "none"},
                      {"{}", Failure},
                      {"a{}b", Failure},
                      {"{ }", Failure + " "},
                      {"{{1}}", Failure + "{1"},
                      {"{1/0}", Failure + "1/0"},
                      {"{2 * 3}", Failure + "2 * 3"},
                      {"{a}b{c}", Failure + "a"},
                      {"{%s%n}", Failure + "%s%n"}};
    for (auto const &row : rows) EXPECT_EQ(row.answer, Text(row.text)) << row.text;
}

TEST_F(VodrelCScalars, AnAnswerIsCutToTheRoom)
{
    std::string const name(100, 'n');
    std::string const failure = Failure + name;
    std::string const text = std::string(80, 'a') + "{x}" + std::string(80, 'b');
    std::string const answer = std::string(80, 'a') + "-2" + std::string(80, 'b');
    for (int room : {60, 61, 80, 81, 82, 83, 134, 135, 136, 161, 162, 163}) {
        std::size_t const n = static_cast<std::size_t>(room);
        EXPECT_EQ(failure.substr(0, n), Safe(("{" + name + "}").c_str(), room)) << room;
        EXPECT_EQ(answer.substr(0, n), Safe(text.c_str(), room)) << room;
    }
    EXPECT_EQ(Failure + std::string(60 - Failure.size(), 'n'), Safe(("{" + name).c_str(), 60));
}

TEST_F(VodrelCScalars, WithoutALengthOrABufferNothingIsWritten)
{
    char buffer[] = "^^^^";
    GetScalarDataSafeC("2+3", nullptr, buffer);
    EXPECT_STREQ("^^^^", buffer);
    GetScalarDataSafeC(nullptr, nullptr, nullptr);
    int length = 59;
    GetScalarDataSafeC("2+3*4", &length, nullptr);
    EXPECT_EQ(2, length);
    length = 60;
    GetScalarDataSafeC("a{2}", &length, nullptr);
    EXPECT_EQ(2, length);
}

TEST_F(VodrelCScalars, ALongTextIsAnsweredAsAWhole)
{
    std::string text = "{1}";
    std::string answer = "1";
    for (int i = 0; i < 5000; ++i) {
        text += "a}2}";
        answer += "a2";
    }
    std::string buffer(answer.size() + 100, '^');
    int length = static_cast<int>(buffer.size());
    GetScalarDataSafeC((text + "b").c_str(), &length, &buffer[0]);
    EXPECT_TRUE(answer + "b" == buffer.substr(0, static_cast<std::size_t>(length)));
}

// ---- Storing ----

TEST_F(VodrelCScalars, ANumberIsStoredAsAValueOfTheShot)
{
    std::string const before = Scalars();
    SetScalarDataC("Gain", 1.0f / 3.0f);
    EXPECT_EQ(before + "\r\nGain=0.33333334", Scalars());
    SetScalarDataC("gAIN", 2.5f);
    EXPECT_EQ(before + "\r\ngAIN=2.5", Scalars());
    EXPECT_EQ(2.5f, GetScalarDataC("Gain"));
    SetScalarDataC("gain", 1e20f);
    EXPECT_EQ(before + "\r\ngain=1e+20", Scalars());
}

TEST_F(VodrelCScalars, AParameterOfADataFileIsStoredThere)
{
    SetScalarDataC("W\\T2", 7.0f);
    EXPECT_EQ(7.0f, GetScalarDataC("W\\t2"));
    EXPECT_EQ(FromHex("0000E040"), ShotFile("W.wvf").substr(SampleRows().Offset("t2"), 4));
    SetScalarDataC("W\\t5", -1.0f);
    EXPECT_EQ(FromHex("000080BF"), ShotFile("W.wvf").substr(SampleRows().Offset("t5"), 4));
    float const values[] = {1, 2};
    SetMatrixC("M", 2, 0, 1, 1, 0, 1, 1, 0, 1, values);
    SetScalarDataC("M\\t1", 9.0f);
    EXPECT_EQ(9.0f, GetScalarDataC("M\\T1"));
}

TEST_F(VodrelCScalars, AnyOtherNameWithABackslashStoresNothing)
{
    std::string const scalars = Scalars();
    float const value = 3;
    SetMatrixC("One", 1, 0, 1, 1, 0, 1, 1, 0, 1, &value); // of a single value
    std::string const one = ShotFile("One.dmt");
    for (char const *name :
         {"W\\T12", "W\\X2", "W\\Tx", "W\\T", "A1\\W\\T2", "W\\", "\\T2", "None\\T2", "One\\T2", "NoShot\\W\\T1"})
        SetScalarDataC(name, 7.0f);
    EXPECT_EQ(BytesHex(SampleRows().Bytes()), BytesHex(ShotFile("W.wvf")));
    EXPECT_EQ(one, ShotFile("One.dmt"));
    EXPECT_EQ(scalars, Scalars());
    EXPECT_EQ("One.dmt Scalars.ini W.wvf", ShotFiles());
}

TEST_F(VodrelCScalars, WithoutANameOrAShotNothingIsStored)
{
    SetScalarDataC(nullptr, 7.0f);
    EXPECT_EQ(-3.3e38f, GetScalarDataC(nullptr));
    SetExperimentC("");
    SetScalarDataC("x", 7.0f);
    SetScalarDataC("W\\T2", 7.0f);
    EXPECT_EQ(BytesHex(SampleRows().Bytes()), BytesHex(ShotFile("W.wvf")));
    EXPECT_NE(std::string::npos, Scalars().find("x=-2"));
}

// ---- Nodes ----

class VodrelCNodes : public FlatClient {
protected:
    void Settings(std::string const &text)
    {
        system.folder.Write("user/Vodrel/Vodrel.ini", text);
        Initialize();
    }
    std::string Hosts() const { return system.folder.Read("user/Vodrel/MPIHosts.txt"); }
};

TEST_F(VodrelCNodes, TheHostListHasAtLeastSoManyNodes)
{
    Settings("[Nodes]\r\nA=Node\r\n B =x\r\n");
    struct {
        int n;
        char const *hosts;
    } const rows[] = {{0, "A\r\n B "},      {5, "A\r\n B \r\nA\r\n B \r\nA"},
                      {1, "A\r\n B "},      {2, "A\r\n B "},
                      {3, "A\r\n B \r\nA"}, {-1, "A\r\n B "},
                      {INT_MIN, "A\r\n B "}};
    for (auto const &row : rows) {
        EXPECT_EQ(row.n, GetNodesC(row.n));
        EXPECT_EQ(row.hosts, Hosts()) << row.n;
    }
}

TEST_F(VodrelCNodes, WithoutNodesThisMachineIsTheOnlyOne)
{
    Initialize();
    std::string const name = Plain(GetComputerNameD());
    EXPECT_EQ(4, GetNodesC(4));
    EXPECT_EQ(name + "\r\n" + name + "\r\n" + name + "\r\n" + name, Hosts());
    EXPECT_EQ(0, GetNodesC(0));
    EXPECT_EQ(name, Hosts());
}

TEST_F(VodrelCNodes, BlankNamesAloneMakeAnEmptyList)
{
    Settings("[Nodes]\r\n =Node\r\n   =x\r\n");
    for (int n : {4, 1, 0, -3}) {
        system.folder.Write("user/Vodrel/MPIHosts.txt", "old");
        EXPECT_EQ(n, GetNodesC(n));
        EXPECT_EQ("", Hosts());
    }
}

TEST_F(VodrelCNodes, AListThatCanNotBeWrittenIsNotTold)
{
    Initialize();
    system.folder.MakeFolder("user/Vodrel/MPIHosts.txt");
    EXPECT_EQ("", Printed([] { EXPECT_EQ(4, GetNodesC(4)); }));
}

} // namespace
