// What the names of a formula stand for: values of the shot, parameters of its data files and of those of other shots,
// objects in memory, and names of the host. The files are written out by hand; the values of trace W were worked out by
// a script that rounds each step to single precision.

#include "data/Matrix.h"
#include "data/Waveform.h"
#include "support/MatrixBytes.h"
#include "support/ParticleBytes.h"
#include "support/ScalarTest.h"

namespace {

class ScalarNames : public ScalarTest {
protected:
    ScalarNames()
    {
        Shot("b=5\r\nHi=high\r\nk=1000.00006\r\nFile=W\r\nneg=-1e-10\r\nW\\zz=7\r\nhex=0x10\r\nlead= 6\r\ninf=inf\r\n"
             "huge=1e35\r\nblank= \r\nA::B=9");
        Put("S1", "W.wvf", SampleRows().Bytes());
    }

    void Put(std::string const &shot, std::string const &file, std::string const &bytes) const
    {
        Write(ShotIn(0, shot) + "/" + file, bytes);
    }
    /// A trace like W with this maximum.
    static std::string TraceOf(float maximum) { return SampleRows().Set("maxValue", HexOf(maximum)).Bytes(); }
};

// ---- Values of the shot ----

TEST_F(ScalarNames, AValueOfTheShotIsANumberInText)
{
    Check({{"b", 5},
           {"B", 5},
           {"Hi", none},
           {"hex", 16},
           {"inf", none},
           {"huge", none},
           {"none", none},
           {"neg", -1e-10f},
           {"neg+1", 1},
           {"blank", none},
           {"A", none},
           {"B::A", 5},
           {"k", 1000.00006f},
           {"Shot", none},
           {"[A::B]", 5},
           {"A::B", 5}});
}

TEST_F(ScalarNames, TheNameOfTheShotMayBeANumber)
{
    Fields("42", "Shot=7");
    Set("42", 0);
    Check({{"Shot", 42}, {"shot+1", 43}, {"[SHOT]", 42}, {"(Shot)*2", 84}});
}

// ---- Traces ----

TEST_F(ScalarNames, AParameterOfATraceStandsBehindABackslash)
{
    Check({{"W\\mx", 3},      {"W\\mn", -1.5f},   {"W\\st", 7.5f},
           {"W\\it", 7},      {"W\\ft", 8},       {"W\\ts", 0.5f},
           {"W\\is", 2},      {"W\\pt", 1},       {"W\\tp", 0.25f},
           {"W\\t1", 1.5f},   {"W\\t5", 5.5f},    {"W\\su", 0.2f},
           {"W\\cl", 2},      {"W\\at", 10},      {"W\\bl", -0.75f},
           {"W\\sv", 6},      {"W\\tm", 8.25f},   {"W\\tn", 8},
           {"W\\in", 0.375f}, {"W\\av", -0.25f},  {"W\\19", 0.413332939f},
           {"w\\MX", 3},      {"W\\stuff", 7.5f}, {"[W\\mx]", 3}});
}

TEST_F(ScalarNames, AParameterIsAValueLikeAnyOther)
{
    Check({{"W\\mx-1", 2},
           {"W\\t1+W\\t2", 4},
           {"W\\mx^2", 9},
           {"W\\mn^2", 2.25f},
           {"(W\\mn)^2", 2.25f},
           {"[W\\mn]^2", -2.25f},
           {"-W\\mx", -3},
           {"2*W\\mx", 6},
           {"W\\mx*W\\mn", -4.5f},
           {"none::W\\mx", 3},
           {"W\\mx?W\\t1?9", 1.5f},
           {"W\\mn?W\\t1?9", 9},
           {"sin(W\\mx-3)", 0},
           {"W\\mx *2", 6},
           {"W\\mx -1", 3},
           {"bol(W\\mx)", 3}});
}

TEST_F(ScalarNames, UnknownParametersAndFilesHaveNoValue)
{
    for (char const *text : {"W\\xx", "W\\", "W\\m", "W\\t", "\\mx", "none\\mx", "W\\zz", "W\\ mx", "W.wvf\\mx",
                             "W\\mx\\", "\\", "Zz\\W\\mx", "W\\rc", "W\\np", "W \\mx"})
        EXPECT_EQ("none", Shown(Of(text))) << text;
    Check({{"W\\xx::4", 4}, {"none\\mx::4", 4}, {"W\\xx^0", 1}});
}

TEST_F(ScalarNames, AnArgumentIsAFormula)
{
    Check({{"W\\t%[50]", 7.91666651f},
           {"W\\t%[10+40]", 7.91666651f},
           {"W\\T%[b*10]", 7.91666651f},
           {"W\\t%[[b]*10]", 7.91666651f},
           {"W\\t%[(2+3)*10]", 7.91666651f},
           {"W\\t%[none::50]", 7.91666651f},
           {"W\\t%[1?50?60]", 7.91666651f},
           {"[W\\t%[50]]", 7.91666651f},
           {"(W\\t%[50])", 7.9166665f},
           {"W\\vt[W\\st+0.125]", -0.25f},
           {"W\\vt[W\\tv[2]]", 2.00000381f},
           {"W\\tv[(0-2)^2-5]", 7.69999981f}});
}

TEST_F(ScalarNames, SignsInAnArgumentAreNoOperators)
{
    Check({{"W\\tv[0-1]", 7.69999981f},
           {"W\\tv[-1]", 7.69999981f},
           {"W\\tv[-1]-1", 6.69999981f},
           {"W\\mx-W\\tv[0-1]", -4.69999981f},
           {"W\\tv[0-1]*2", 15.3999996f},
           {"2*W\\tv[0-1]", 15.3999996f},
           {"W\\mx*W\\tv[0-1]", 23.0999985f},
           {"W\\mn*W\\tv[0-1]", -11.5499992f},
           {"W\\tv[0-1]^2", 59.2899971f},
           {"W\\tv[neg]", 7.5999999f},
           {"W\\t%[50]+W\\t%[80]", 15.8833332f}});
}

TEST_F(ScalarNames, AnArgumentHasEightDigits)
{
    WvfRows rows = SampleRows();
    rows.Set("start", HexOf(1000.0f)).Set("timeShift", HexOf(0.0f)).Set("timeStep", "00 00 80 38"); // 2^-14
    Put("S1", "Fine.wvf", rows.Bytes());
    Check({{"Fine\\st", 1000}, {"Fine\\lt[1000.00006]", 1000.00012f}, {"Fine\\lt[k]", 1000.00012f}});
}

TEST_F(ScalarNames, AnArgumentWithoutAValueIsBelowAllOthers)
{
    Check({{"W\\tv[none]", 8.25f},
           {"W\\tv[]", 8.25f},
           {"W\\tv[Hi]", 8.25f},
           {"W\\tv[1/0]", 8.25f},
           {"W\\vt[none]", 0},
           {"W\\mx[none]", 3},
           {"W\\tv[log(0)]", 8.25f},
           {"W\\tv", 7.5999999f},
           {"W\\tv[0]", 7.5999999f},
           {"W\\tv[none]-8", 0.25f}});
}

TEST_F(ScalarNames, OnlyABracketBehindTwoLettersIsAnArgument)
{
    Check({{"W\\t%50]", 7.5999999f},    // the argument is "0"
           {"W\\t%(50)", 7.5999999f},   // "t%50" has none
           {"W\\t%x[50]", 7.58500004f}, // "t%x50" has "5"
           {"W\\t%x50]", 7.91666651f},
           {"W\\st[b][b]", 7.5f},
           {"W\\[b]", none},
           {"W\\t[b]", 5.5f},
           {"W\\abc[5]", none}});
}

TEST_F(ScalarNames, ATraceIsOnlyRead)
{
    Check({{"W\\mx+W\\mx", 6}, {"W\\t%[50]", 7.91666651f}});
    EXPECT_EQ(BytesHex(SampleRows().Bytes()), BytesHex(Read(ShotIn(0, "S1") + "/W.wvf")));
    std::filesystem::remove(system.folder.native(ShotIn(0, "S1") + "/W.wvf"));
    Check({{"W\\mx", none}});
    Put("S1", "W.wvf", TraceOf(4));
    Check({{"W\\mx", 4}});
    EXPECT_EQ("", system.Heard());
}

// ---- Matrices and particle groups ----

TEST_F(ScalarNames, AParameterOfAMatrixComesFromItsFirstSlice)
{
    Put("S1", "M.dmt", CubeRows().Bytes());
    Put("S1", "Sheet.dmt", SheetRows().Bytes());
    Check({{"M\\mx", 12},    {"M\\mn", 1},    {"M\\su", 5},       {"M\\t1", 1.5f},  {"M\\t5", 5.5f},   {"M\\rc", 2},
           {"M\\rs", 0.5f},  {"M\\rb", 10},   {"M\\r1", 0.5f},    {"M\\re", 10.5f}, {"M\\cc", 3},      {"M\\cs", 0},
           {"M\\cb", 1},     {"M\\c1", 1},    {"M\\ce", 4},       {"M\\lc", 2},     {"M\\ls", 0.25f},  {"M\\lb", -1},
           {"M\\le", -1},    {"M\\MX", 12},   {"M\\mx/M\\cc", 4}, {"Sheet\\cc", 5}, {"Sheet\\ce", 10}, {"Sheet\\rc", 2},
           {"Sheet\\mx", 9}, {"Sheet\\lc", 1}});
}

TEST_F(ScalarNames, AParameterOfAMatrixMustMatchAsAWhole)
{
    Put("S1", "M.dmt", CubeRows().Bytes());
    for (char const *text : {"M\\mx[1]", "M\\mxx", "M\\m", "M\\", "M\\xx", "M\\np", "M\\st", "M\\mx "})
        EXPECT_EQ("none", Shown(Of(text))) << text;
}

TEST_F(ScalarNames, AParameterOfAParticleGroupComesFromItsHeader)
{
    ParticleBytes bytes;
    bytes.particles = 12345; // of which the file has two
    Put("S1", "P.dpt", bytes.Bytes());
    Check({{"P\\np", 12345},
           {"P\\t1", 1},
           {"P\\t2", 2},
           {"P\\t3", 3},
           {"P\\t4", 4},
           {"P\\t5", 5},
           {"P\\NP", 12345},
           {"P\\np-P\\t5", 12340},
           {"P\\np[1]", none},
           {"P\\mx", none},
           {"P\\t6", none},
           {"P\\", none}});
}

TEST_F(ScalarNames, ATraceGoesBeforeAMatrixAndThatBeforeAParticleGroup)
{
    Put("S1", "A.wvf", TraceOf(3));
    Put("S1", "B.wvf", SampleRows().Set("fileCount", "00 00 00 00").Bytes()); // no samples
    for (char const *file : {"A.dmt", "B.dmt", "C.dmt"}) Put("S1", file, CubeRows().Bytes());
    for (char const *file : {"A.dpt", "B.dpt", "C.dpt", "D.dpt"}) Put("S1", file, ParticleBytes().Bytes());
    Check({{"A\\mx", 3},
           {"A\\rc", none},
           {"A\\np", none},
           {"B\\mx", 12},
           {"B\\st", none},
           {"C\\t1", 1.5f},
           {"C\\np", none},
           {"D\\t1", 1}});
}

// ---- Other shots and folders ----

TEST_F(ScalarNames, DataOfOtherShotsAreNamedByShotOrOffset)
{
    Put("S0", "W.wvf", TraceOf(30));
    Put("S2", "W.wvf", TraceOf(20));
    Put("S3", "W.wvf", TraceOf(40));
    Put("S2", "M.dmt", CubeRows().Bytes());
    Put("S2", "P.dpt", ParticleBytes().Bytes());
    Check({{"S2\\W\\mx", 20},
           {"S1\\W\\mx", 3},
           {">\\W\\mx", 20},
           {">1\\W\\mx", 20},
           {">2\\W\\mx", 40},
           {"<1\\W\\mx", 30},
           {"<\\W\\mx", 20},
           {">0\\W\\mx", 3},
           {">x\\W\\mx", 3},
           {"<x\\W\\mx", 3},
           {">1x\\W\\mx", 20},
           {"[>-1\\W\\mx]", 30},
           {"[<-1\\W\\mx]", 20},
           {">9\\W\\mx", none},
           {">\\M\\mx", 12},
           {">\\P\\t3", 3},
           {"S2\\M\\rc", 2},
           {"S2\\P\\np", 2},
           {">\\W\\mx-<1\\W\\mx", -10},
           {">\\W\\tv[0-1]", 7.69999981f},
           {">\\W\\t%[7.5]", 7.91666651f}});
}

TEST_F(ScalarNames, DataOfOtherGroupsAndFolders)
{
    OpenWithRuns();
    Write(ShotIn(2, "B2") + "/W.wvf", TraceOf(50));
    Write("X/E/loose.wvf", TraceOf(60));
    Write("X/Data/free.dmt", CubeRows().Bytes());
    Set("S1", 0);
    Check({{"B2\\W\\mx", 50}, {".\\loose\\mx", 60}, {"..\\Data\\free\\mx", 12}, {".\\loose\\xx", none}, {"W\\mx", 3}});
}

TEST_F(ScalarNames, ADataNameMayBeTextOfTheShot)
{
    Put("S2", "W.wvf", TraceOf(20));
    Check({{"![File]\\mx", 3}, {"S2\\![File]\\mx", 20}, {"![Shot]\\W\\mx", 3}, {"![none]\\mx", none}});
}

// ---- Objects in memory ----

TEST_F(ScalarNames, ATraceInMemoryIsGoneAfterOneQuestion)
{
    for (char const *object : {"@W", "@V"}) {
        auto *w = static_cast<Waveform *>(expt.InitDataPtr(object, DataWaveform));
        w->Size(3);
        w->maxValue = 5;
    }
    Check({{"@W\\mx", 5}, {"@W\\mx", none}, {"(@V\\mx)*2", 10}, {"@V\\mx", none}, {"@none\\mx", none}});
}

TEST_F(ScalarNames, OnlyATraceIsLookedUpInMemory)
{
    static_cast<Matrix *>(expt.InitDataPtr("@M", DataMatrix))->maxValue = 5;
    Check({{"@M\\mx", none}});
    EXPECT_NE(nullptr, expt.GetDataPtr("@M", DataMatrix));
    Put("S1", "@M.dmt", CubeRows().Bytes());
    Put("S1", "@W.wvf", SampleRows().Bytes());
    Check({{"@M\\mx", 12}, {"@W\\mx", none}});
}

// ---- Names of the host ----

TEST_F(ScalarNames, TheHostIsAskedBeforeTheShot)
{
    Host::values = {{"b", 50}, {"W\\mx", 60}, {"@W\\mx", 70}, {"mine", 80}, {"", 90}, {"-b", 100}, {" b", 110}};
    Check({{"b", 50},
           {"W\\mx", 60},
           {"W\\mn", -1.5f},
           {"@W\\mx", 70},
           {"mine+b", 130},
           {"[b]", 50},
           {"[b]+[mine]", 130},
           {"5+", 95},
           {"+5+1", 96},
           {"mine*-b", 8000},
           {"1+ b", 111},
           {"bol(mine)", 80},
           {"sin(b-50)", 0},
           {"b^2", 2500},
           {"hex", 16},
           {"mine?b?1", 50},
           {"B", 5},
           {"none::mine", 80}},
          Host::Lookup);
    Check({{"b", 5}, {"mine", none}});
}

TEST_F(ScalarNames, TheHostIsAskedForEachNameAndForNoNumber)
{
    EXPECT_EQ(Shown(8) + ": <b>", Asked("b+3"));
    EXPECT_EQ(Shown(10) + ": <b> <b>", Asked("b+b"));
    EXPECT_EQ(Shown(8) + ": <b> <W\\mx>", Asked("b+W\\mx"));
    EXPECT_EQ(Shown(9) + ": <W\\mx>", Asked("W\\mx*3"));
    EXPECT_EQ(Shown(1e10f) + ":", Asked("(1e10)"));
    EXPECT_EQ(Shown(4) + ":", Asked("(0-2)^2"));
    EXPECT_EQ("none: <>", Asked("+1+1"));
    EXPECT_EQ("none:", Asked(""));
    EXPECT_EQ("none:", Asked("![none]"));
    EXPECT_EQ(Shown(5) + ": <b>", Asked("bol(b)"));
    EXPECT_EQ(Shown(0) + ": <Hi>", Asked("bol(Hi)"));
}

TEST_F(ScalarNames, TheHostSeesTheMarksOfAnArgument)
{
    EXPECT_EQ(Shown(7.69999981f) + ": <W\\tv\xC9-1\xCA>", Asked("W\\tv[0-1]"));
    EXPECT_EQ("none: <b> <\\tv\xC9"
              "5\xCA>",
              Asked("\\tv[b]"));
    Host::values = {{"W\\tv\xC9-1\xCA", 6}};
    Check({{"W\\tv[-1]*2", 12}}, Host::Lookup);
}

TEST_F(ScalarNames, AnInvalidValueOfTheHostEndsTheName)
{
    for (float const invalid :
         {BitsFloat(0x7998889E), none, -none, BitsFloat(0x7F800000), BitsFloat(0xFF800000), BitsFloat(0x7FC00000)}) {
        Host::values = {{"b", invalid}};
        EXPECT_EQ("none: <b>", Asked("b")) << invalid;
        EXPECT_EQ(Shown(7) + ": <b>", Asked("b::7")) << invalid;
        EXPECT_EQ("none: <b>", Asked("[b]::7")) << invalid;
        EXPECT_EQ(Shown(0) + ": <b>", Asked("b^-1")) << invalid; // of an infinity, whatever the host gave
    }
}

TEST_F(ScalarNames, WhatAHostStoresWithoutKnowingTheNameIsIgnored)
{
    auto const shy = [](DString const &, float &value) {
        value = 77;
        return false;
    };
    Check({{"b", 5}, {"none", none}, {"W\\mx", 3}}, shy);
}

TEST_F(ScalarNames, AStoredTrueIsSeenBeforeTheHostIsAsked)
{
    Fields("S4", "Yes=True");
    Set("S4", 0);
    Host::values = {{"Yes", -1}};
    EXPECT_EQ(Shown(1) + ":", Asked("Yes?1?2"));
    EXPECT_EQ(Shown(-1) + ": <Yes>", Asked("bol(Yes)"));
    EXPECT_EQ(Shown(-1) + ": <Yes>", Asked("Yes"));
}

// ---- No current shot ----

TEST_F(ScalarNames, WithoutAShotOnlyNumbersAndTheHostHaveValues)
{
    Open();
    Write("X/E/loose.wvf", TraceOf(60));
    static_cast<Waveform *>(expt.InitDataPtr("@W", DataWaveform))->Size(3);
    Check({{"2+3*4", 14},
           {"sin(0)", 0},
           {"1?2?3", 2},
           {"(0-2)^2", 4},
           {"none::5", 5},
           {"none^0", 1},
           {"bol(b)", 0},
           {"b", none},
           {"Shot", none},
           {"[b]", none},
           {"W\\mx", none},
           {".\\loose\\mx", none},
           {"@W\\mx", none},
           {"![b]", none},
           {"![Shot]", none},
           {"b?1?2", 2}});
    Host::values = {{"mine", 80}};
    Check({{"mine+1", 81}, {"[mine]", 80}, {"b", none}, {"b::mine", 80}}, Host::Lookup);
    EXPECT_EQ("", system.Heard());
}

} // namespace
