// The two-letter parameters of a trace and of a pair: each against the table that was worked out step by step; how a
// text is read; and by hand the turns of the rules that users rely on.

#include <cctype>
#include <climits>
#include <cmath>
#include <limits>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/TraceParameterValues.h"
#include "data/Waveform.h"
#include "support/CommaLocale.h"
#include "support/WaveformFixture.h"
#include "support/WaveformTraces.h"

namespace {

using namespace trace_parameter_values;
using namespace std::string_literals;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

std::string const failed = Exactly(0xFF7843B0u); // -DFMax

/// Every code, those with an argument with one.
std::vector<std::string> const parameters = {
    "t1", "t2", "t3", "t4", "t5",      "st",      "it",     "ts",      "is",     "pt",      "ft",      "su",     "mx",
    "mn", "cl", "at", "tp", "bl",      "sv",      "tm",     "tn",      "19",     "28",      "av",      "in",     "ri",
    "pi", "sd", "wa", "fh", "vt[1.5]", "tv[2.5]", "t%[50]", "bv[2.5]", "b%[50]", "la[1.5]", "ta[1.5]", "lt[1.5]"};
/// Those that mean something else on a pair.
std::set<std::string> const ofPairs = {"st", "ft", "tm", "tn", "19", "28", "vt", "tv", "t%", "bv", "b%", "la", "ta"};

OpenWaveform Built(Trace const &row)
{
    OpenWaveform w;
    w.SetSamples(FloatsOf(row.samples));
    w.timeStep = BitsFloat(row.timeStep);
    w.timeShift = BitsFloat(row.timeShift);
    w.startTime = BitsFloat(row.startTime);
    w.scopeDelay = BitsFloat(row.scopeDelay);
    w.scopeDelay2 = BitsFloat(row.scopeDelay2);
    w.maxValue = BitsFloat(row.maxValue);
    w.minValue = BitsFloat(row.minValue);
    w.pointOfMax = row.pointOfMax;
    w.pointOfMin = row.pointOfMin;
    return w;
}

OpenWaveform Named(std::string const &name)
{
    for (Trace const &row : Traces())
        if (row.name == name) return Built(row);
    throw std::logic_error("no trace " + name);
}

/// Samples a unit of time apart from 0 on, with the extremes that they have.
OpenWaveform Samples(std::vector<float> const &values)
{
    OpenWaveform w;
    w.SetSamples(values);
    w.Scale();
    return w;
}

/// As many samples as a block has room for.
OpenWaveform FullBlock(int period)
{
    OpenWaveform w;
    for (int i = 0; i < 256; ++i) w.Add(static_cast<float>(i % period));
    w.Scale();
    return w;
}

std::string Of(Waveform &w, std::string const &text)
{
    return Exactly(w.GetTraceParam(Dstr(text)));
}

std::string OfPair(Waveform &y, Waveform &x, std::string const &text)
{
    return Exactly(y.GetXYTraceParam(Dstr(text), x));
}

/// What every parameter of the trace is, and of the pair.
std::string All(Waveform &y, Waveform &x)
{
    std::string all;
    for (std::string const &text : parameters) all += text + " " + Of(y, text) + " " + OfPair(y, x, text) + "\n";
    return all;
}

std::string InCapitals(std::string text)
{
    for (std::size_t i = 0; i < 2 && i < text.size(); ++i)
        text[i] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[i])));
    return text;
}

// ---- The table ---------------------------------------------------------------------------------------------------

TEST(TraceParameters, AreRightToTheLastBit)
{
    for (Row const &row : Rows()) {
        OpenWaveform w = Named(row.trace);
        for (Answer const &answer : row.answers)
            EXPECT_EQ(Exactly(answer.value), Of(w, answer.text)) << answer.text << " of " << row.trace;
    }
}

TEST(TraceParameters, TakeCodesInEitherCase)
{
    for (Row const &row : Rows()) {
        OpenWaveform w = Named(row.trace);
        for (Answer const &answer : row.answers)
            EXPECT_EQ(Exactly(answer.value), Of(w, InCapitals(answer.text))) << answer.text << " of " << row.trace;
    }
}

TEST(TraceParameters, ArentSpoiltByWhatLiesBehindTheSamples)
{
    for (Row const &row : Rows()) {
        OpenWaveform w = Named(row.trace);
        int const n = w.npnts();
        w.ReSize(n + 40);
        for (int i = n; i < n + 40; ++i) w[i] = 1e20f;
        w.ReSize(n);
        for (Answer const &answer : row.answers)
            EXPECT_EQ(Exactly(answer.value), Of(w, answer.text)) << answer.text << " of " << row.trace;
    }
}

TEST(TraceParametersOfPairs, AreRightToTheLastBit)
{
    for (PairRow const &row : PairRows()) {
        OpenWaveform y = Named(row.trace), x = Named(row.curve);
        for (Answer const &answer : row.answers) {
            SCOPED_TRACE(std::string(answer.text) + " of " + row.trace + " on " + row.curve);
            EXPECT_EQ(Exactly(answer.value), OfPair(y, x, answer.text));
            EXPECT_EQ(Exactly(answer.value), OfPair(y, x, InCapitals(answer.text)));
        }
    }
}

TEST(TraceParametersOfPairs, AreThoseOfTheTraceWherePairsMeanNothingElse)
{
    for (Row const &row : Rows()) {
        OpenWaveform y = Named(row.trace), x;
        x.SetSamples(std::vector<float>(static_cast<std::size_t>(y.npnts()), 7.7f));
        for (Answer const &answer : row.answers) {
            if (ofPairs.count(std::string(answer.text, 2)) > 0) continue;
            EXPECT_EQ(Exactly(answer.value), OfPair(y, x, answer.text)) << answer.text << " of " << row.trace;
        }
    }
}

TEST(TraceParametersOfPairs, TakeATraceAsItsOwnPositions)
{
    OpenWaveform w = Named("peak last"), same = w;
    for (std::string const &text : parameters) EXPECT_EQ(OfPair(w, same, text), OfPair(w, w, text)) << text;
}

TEST(TraceParameters, ChangeNothing)
{
    for (Trace const &row : Traces()) {
        OpenWaveform y = Built(row), x = Built(row);
        x.timeShift = 3;
        Fields const ofY = FieldsOf(y), ofX = FieldsOf(x);
        EXPECT_EQ(All(y, x), All(y, x)) << row.name;
        EXPECT_EQ("", Differences(ofY, y)) << row.name;
        EXPECT_EQ("", Differences(ofX, x)) << row.name;
    }
}

// ---- Fields ------------------------------------------------------------------------------------------------------

TEST(TraceParameters, GiveFieldsAsTheyStand)
{
    OpenWaveform w = SampleTrace();
    struct {
        char const *text;
        float value;
    } const rows[] = {{"t1", 1.5f}, {"t2", 2.5f},  {"t3", 3.5f}, {"t4", 4.5f},   {"t5", 5.5f},  {"ts", 0.5f},
                      {"is", 2},    {"pt", 1},     {"su", 0.2f}, {"mx", 3},      {"mn", -1.5f}, {"cl", 2},
                      {"at", 10},   {"tp", 0.25f}, {"sv", 6},    {"bl", -0.75f}, {"st", 7.5f},  {"it", 7},
                      {"ft", 8},    {"tm", 8.25f}, {"tn", 8}};
    for (auto const &row : rows) EXPECT_EQ(Exactly(row.value), Of(w, row.text)) << row.text;
}

TEST(TraceParameters, AreThoseThatTheSlotsHold)
{
    char const *const codes[] = {"su", "t1", "t2", "t3", "t4", "t5", "pt", "sv"};
    OpenWaveform w = SampleTrace();
    float value = 100;
    for (int i = 0; i < 8; ++i) {
        *w.Slot(i) = ++value;
        EXPECT_EQ(Exactly(value), Of(w, codes[i])) << i;
    }
    *w.Slot(8) = 200;
    *w.Slot(9) = 300;
    EXPECT_TRUE(w.scopeValue2 == 200 && w.scopeValue3 == 300);
    for (int const i : {-1, 10, INT_MIN, INT_MAX}) EXPECT_EQ(nullptr, w.Slot(i)) << i;
}

TEST(TraceParameters, TakeTheStoredExtremes)
{
    OpenWaveform w = Samples({0, 2, 8, 4, 0});
    w[3] = 99;
    w[4] = nan;
    EXPECT_EQ(Exactly(8.0f), Of(w, "mx"));
    EXPECT_EQ(Exactly(3.0f), Of(w, "tm"));
    EXPECT_EQ(Exactly(5.0f), Of(w, "tv[50]")); // beyond the extremes that are known
    EXPECT_EQ(Exactly(1 + 2.0f / 6), Of(w, "t%[50]"));
    EXPECT_EQ("nan", Exactly(w[4])); // isn't marked as bad
    w.Scale();
    EXPECT_EQ(Exactly(99.0f), Of(w, "mx"));
    EXPECT_EQ(Exactly(4.0f), Of(w, "tm"));
}

// ---- Texts -------------------------------------------------------------------------------------------------------

TEST(TraceParameterTexts, AnyCodeThatIsNotInTheTableFails)
{
    std::set<std::string> known;
    for (std::string const &text : parameters) known.insert(text.substr(0, 2));
    OpenWaveform y = SampleTrace(), x = SampleTrace();
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            std::string const code = {static_cast<char>(first), static_cast<char>(second)};
            std::string lower = code;
            for (char &c : lower)
                if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
            bool const fails = known.count(lower) == 0;
            ASSERT_EQ(fails, Of(y, code) == failed) << BytesHex(code);
            ASSERT_EQ(fails, OfPair(y, x, code) == failed) << BytesHex(code);
        }
    }
}

TEST(TraceParameterTexts, FailWhereThereIsNoCode)
{
    OpenWaveform y = SampleTrace(), x = SampleTrace();
    std::string const texts[] = {"",      "s",   "t",   "%",     " ",    "\0"s,
                                 "s\0t"s, " st", "s t", "\0st"s, "[st]", "x" + std::string(1000000, 't')};
    for (std::string const &text : texts) {
        EXPECT_EQ(failed, Of(y, text)) << text.substr(0, 9);
        EXPECT_EQ(failed, OfPair(y, x, text)) << text.substr(0, 9);
    }
    EXPECT_EQ(failed, Exactly(y.GetTraceParam(DString())));
    EXPECT_EQ(failed, Exactly(y.GetXYTraceParam(DString(), x)));
}

TEST(TraceParameterTexts, AreNamedByTheirFirstTwoCharacters)
{
    OpenWaveform y = SampleTrace(), x = SampleTrace();
    x[0] = 77;
    std::string const texts[] = {
        "st",  "St",    "sT",  "ST",    "stuff",     "STUFF",       "st[",
        "st]", "st[5]", "st5", "st\0"s, "st\0junk"s, "st\3115\312", "st" + std::string(1000000, 't')};
    for (std::string const &text : texts) {
        EXPECT_EQ(Exactly(7.5f), Of(y, text)) << text.substr(0, 9);
        EXPECT_EQ(Exactly(77.0f), OfPair(y, x, text)) << text.substr(0, 9);
    }
}

/// A text and the percentage it comes to.
struct ArgumentRow {
    std::string text;
    float argument;
};

// clang-format off
std::vector<ArgumentRow> const argumentRows = {
    // whatever stands at the third and the last place
    {"[50]", 50}, {"(50)", 50}, {"x50x", 50}, {" 50 ", 50}, {"550", 5}, {"\31150\312", 50}, {"[50", 5}, {"50", 0},
    {"500", 0}, {"5700", 70}, {"", 0}, {"[", 0}, {"5", 0}, {"[]", 0},
    // numbers, and texts that aren't numbers as a whole
    {"[ 50]", 50}, {"[\t\n50]", 50}, {"[+50]", 50}, {"[-50]", -50}, {"[5e1]", 50}, {"[.5E+2]", 50}, {"[500e-1]", 50},
    {"[50.]", 50}, {"[0x32]", 50}, {"[inf]", infinity}, {"[infinity]", infinity}, {"[nan]", nan}, {"[1e39]", infinity},
    {"[1e999]", infinity}, {"[-1e999]", -infinity},
    {"[abc]", 0}, {"[50abc]", 0}, {"[50 ]", 0}, {"[5 0]", 0}, {"[--50]", 0}, {"[5e]", 0}, {"[5,0]", 0}, {"[50]]", 0},
    {"[[50]]", 0}, {"[50][70]", 0}, {"[10+40]", 0}, {"[nano]", 0}, {"[50\0]"s, 0}, {"[\351]", 0},
    // long ones
    {"[" + std::string(100000, '0') + "50]", 50}, {"[" + std::string(100000, ' ') + "50]", 50},
    {"[50." + std::string(100000, '0') + "]", 50}, {"[" + std::string(100000, '9') + "]", infinity},
    {"[" + std::string(1000000, 'x') + "]", 0},
};
// clang-format on

TEST(TraceParameterTexts, ArgumentIsAllFromTheFourthToTheLastButOne)
{
    OpenWaveform w = Samples({1, 2, 8, 4, 0}), x = Samples({10, 20, 30, 40, 70});
    w.startTime = 10;
    for (ArgumentRow const &row : argumentRows) {
        SCOPED_TRACE(row.text.substr(0, 12));
        EXPECT_EQ(Exactly(w.TimeAtVal(row.argument * 8 / 100)), Of(w, "t%" + row.text));
        EXPECT_EQ(Exactly(w.TimeAtVal(row.argument)), Of(w, "tv" + row.text));
        EXPECT_EQ(Exactly(w.XYTimeAtVal(row.argument * 100 / 8, x)), OfPair(w, x, "T%" + row.text));
        EXPECT_EQ(Exactly(w.XYTimeAtVal(row.argument, x)), OfPair(w, x, "tV" + row.text));
    }
}

TEST(TraceParameterTexts, NumbersHaveAPointWhateverTheHostsLocale)
{
    CommaLocale const locale;
    if (!locale.available()) GTEST_SKIP() << "no locale with a decimal comma can be had";
    OpenWaveform w = Samples({0, 2, 8, 4, 0});
    EXPECT_EQ(Exactly(0.75f), Of(w, "tv[1.5]"));
    EXPECT_EQ(Exactly(0.0f), Of(w, "tv[1,5]"));
}

TEST(TraceParameterTexts, FailForEveryCodeOnATraceWithoutSamples)
{
    OpenWaveform w = SampleTrace(), x = SampleTrace();
    w.SetSamples({});
    x.SetSamples({});
    for (std::string const &text : parameters) {
        EXPECT_EQ(failed, Of(w, text)) << text;
        EXPECT_EQ(failed, OfPair(w, x, text)) << text;
    }
    EXPECT_EQ(failed, Of(w, "xx"));
    EXPECT_EQ(failed, Of(w, ""));
}

TEST(TraceParameterTexts, FailForEveryCodeOnAPairOfDifferentLengths)
{
    OpenWaveform y = SampleTrace(), x = SampleTrace(), none;
    for (int const n : {0, 1, 2, 4, 300}) {
        x.ReSize(n);
        for (std::string const &text : parameters) {
            EXPECT_EQ(failed, OfPair(y, x, text)) << text << n;
            EXPECT_EQ(failed, OfPair(none, y, text)) << text;
        }
    }
}

// ---- Parameters of a trace -----------------------------------------------------------------------------------------

TEST(TraceTimes, OfExtremesLieOneStepBehindTheSample)
{
    OpenWaveform w = Samples({9, 1, 4});
    w.startTime = 10;
    w.timeStep = 0.5f;
    EXPECT_EQ(Exactly(w.Start() + w.timeStep), Of(w, "tm"));
    EXPECT_EQ(Exactly(11.0f), Of(w, "tn"));
    OpenWaveform last = Samples({1, 9});
    EXPECT_EQ(Exactly(last.End() + last.timeStep), Of(last, "tm"));
}

TEST(TraceTimes, StartCountsEveryDelayAndItsShapesLeaveSomeOut)
{
    OpenWaveform w = Samples({1, 2, 3});
    w.startTime = 1, w.timeShift = 20, w.scopeDelay = 300, w.scopeDelay2 = 4000, w.timeStep = 0.5f;
    struct {
        char const *text;
        float value;
    } const rows[] = {{"st", 4321}, {"it", 4301}, {"is", 1}, {"ts", 20}, {"pt", 300}, {"ft", 4322}};
    for (auto const &row : rows) EXPECT_EQ(Exactly(row.value), Of(w, row.text)) << row.text;
}

TEST(TraceTimes, RiseIsMeasuredOnTheMaximumItself)
{
    OpenWaveform w = Samples({-10, 0, 10, 20}); // not on the height above -10
    EXPECT_EQ(Exactly((0.8f + 2) - 1.2f), Of(w, "19"));
    EXPECT_EQ(Exactly((0.6f + 2) - 1.4f), Of(w, "28"));
}

TEST(TraceTimes, RiseCanBeNegative)
{
    OpenWaveform w = Samples({3, 5, 10, 6, 1}); // begins above a tenth, which is thus sought on the way down
    EXPECT_EQ(Exactly((0.8f + 1) - 4), Of(w, "19"));
}

TEST(TraceTimes, WeightedMean)
{
    OpenWaveform w = Samples({1, 0, 3});
    w.startTime = 10;
    EXPECT_EQ(Exactly(11.5f), Of(w, "wa"));
    OpenWaveform zero = Samples({1, -3, 2});
    EXPECT_EQ(Exactly(0.0f), Of(zero, "wa"));
}

TEST(TraceTimes, OfTheSampleAtOrBefore)
{
    OpenWaveform w = Samples({1, 2, 3});
    w.startTime = 10;
    w.timeStep = 0.5f;
    struct {
        char const *text;
        float value;
    } const rows[] = {{"lt[10.7]", 10.5f}, {"lt[10.5]", 10.5f}, {"lt[9.9]", 9.5f}, {"lt[99.3]", 99}, {"lt", 0}};
    for (auto const &row : rows) EXPECT_EQ(Exactly(row.value), Of(w, row.text)) << row.text;
}

TEST(TraceTimes, CrossingsOfAPercentageMayLieOutside)
{
    OpenWaveform w = Samples({1, 2, 8, 4, 0});
    EXPECT_EQ(Exactly(1 + 2.0f / 6), Of(w, "t%[50]"));
    EXPECT_EQ(Exactly(3.0f), Of(w, "b%[50]"));
    EXPECT_EQ(Exactly(5.0f), Of(w, "t%[101]"));
    EXPECT_EQ(Exactly(-1.0f), Of(w, "b%[101]"));
}

TEST(TraceValues, BehindTheEndInterpolateIntoZero)
{
    OpenWaveform w = Samples({8, 16, 4});
    struct {
        char const *text;
        float value;
    } const rows[] = {{"vt[0.5]", 12}, {"vt[2]", 4},  {"vt[2.5]", 2}, {"vt[3]", 0},
                      {"vt[4]", 0},    {"vt[99]", 0}, {"vt[-1]", 0}};
    for (auto const &row : rows) EXPECT_EQ(Exactly(row.value), Of(w, row.text)) << row.text;
}

TEST(TraceMeans, LeaveOutTheLastSample)
{
    OpenWaveform w = Samples({1, 2, 6, 100});
    struct {
        char const *text;
        float value;
    } const rows[] = {{"av", 3},     {"la[2]", 1.5f}, {"la[99]", 3}, {"ta[1]", 4},
                      {"ta[-9]", 3}, {"ta[3]", 100},  {"la", 1}};
    for (auto const &row : rows) EXPECT_EQ(Exactly(row.value), Of(w, row.text)) << row.text;
}

TEST(TraceIntegrals, LeaveOutTheFirstSample)
{
    OpenWaveform w = Samples({100, 1, 5, -2});
    w.timeStep = 0.5f;
    EXPECT_EQ(Exactly(2.0f), Of(w, "in"));
    EXPECT_EQ(Exactly(3.0f), Of(w, "pi"));
    OpenWaveform down = Samples({100, -1, -5, 2});
    EXPECT_EQ(Exactly(0.0f), Of(down, "pi"));
}

TEST(TraceIntegrals, RadiusIsTheTimeAndNeverNegative)
{
    OpenWaveform w = Samples({7, 1, 2, 3});
    w.startTime = -4;
    w.timeStep = 0.5f;
    EXPECT_FLOAT_EQ(2 * pi * 0.25f * 11, w.GetTraceParam("ri")); // 1 * 0.5 + 2 * 1.5 + 3 * 2.5
    w.startTime = 0;
    EXPECT_FLOAT_EQ(2 * pi * 0.25f * 11, w.GetTraceParam("ri"));
    w.startTime = nan;
    EXPECT_FLOAT_EQ(2 * pi * 0.25f * 11, w.GetTraceParam("ri"));
}

TEST(TraceIntegrals, StartCountsAsANumberOfStepsInTheRadialSum)
{
    OpenWaveform w = Samples({1, 1});
    w.startTime = 2;
    w.timeStep = 0.5f;
    EXPECT_FLOAT_EQ(4 * pi + 2 * pi * 0.25f * 2.5f, w.GetTraceParam("ri")); // 0.5 + 2, not 0.5 + 4
}

TEST(TraceDeviation, IsThatOfASample)
{
    OpenWaveform w = Samples({2, 4, 4, 4, 5, 5, 7, 9});
    EXPECT_EQ(Exactly(std::sqrt(32.0f / 7)), Of(w, "sd"));
    OpenWaveform flat = Samples({3, 3, 3});
    EXPECT_EQ(Exactly(0.0f), Of(flat, "sd"));
}

TEST(TraceParameters, OfASingleSample)
{
    OpenWaveform w = Samples({3});
    w.startTime = 2;
    w.timeStep = 0.5f;
    for (char const *const text : {"in", "pi", "sd"}) EXPECT_EQ(Exactly(0.0f), Of(w, text)) << text;
    EXPECT_EQ(Exactly(pi * 3 * 2 * 2), Of(w, "ri"));
    EXPECT_EQ(Exactly(3.0f), Of(w, "av"));
    EXPECT_EQ(Exactly(2.0f), Of(w, "wa"));
    EXPECT_EQ(Exactly(0.0f), Of(w, "fh"));
    w[0] = 0;
    EXPECT_EQ(Exactly(0.0f), Of(w, "wa"));
}

// ---- Full width at half maximum
// --------------------------------------------------------------------------------------

TEST(TraceWidth, IsInterpolatedOnBothSides)
{
    OpenWaveform w = Samples({0, 2, 8, 3, 1});
    w.timeStep = 0.5f;
    EXPECT_EQ(Exactly(((4.0f - 8) / (3 - 8) + 2 - (1 + 2.0f / 6)) * 0.5f), Of(w, "fh"));
}

TEST(TraceWidth, EndsOfTheTraceStandWhereItDoesntFallBelowHalf)
{
    struct {
        std::vector<float> samples;
        float width;
    } const rows[] = {
        {{6, 7, 9, 8, 5}, 4}, {{1, 8, 8, 8}, 3 - 3.0f / 7}, {{8, 8, 8, 0}, 2.5f}, {{2, 2}, 1}, {{0, 0, 0}, 2}};
    for (auto const &row : rows) {
        OpenWaveform w = Samples(row.samples);
        EXPECT_EQ(Exactly(row.width), Of(w, "fh")) << row.width;
    }
}

TEST(TraceWidth, FirstOfEqualPeaksIsThePeak)
{
    OpenWaveform w = Samples({0, 8, 0, 8, 8, 8, 0});
    EXPECT_EQ(Exactly(1.0f), Of(w, "fh")); // 0.5 to 1.5, not 2.5 to 5.5
}

TEST(TraceWidth, SampleAtHalfDoesntEndTheWalk)
{
    OpenWaveform w = Samples({0, 4, 4, 8, 4, 4, 0});
    EXPECT_EQ(Exactly(4.0f), Of(w, "fh")); // 1 to 5
}

TEST(TraceWidth, WithoutAPeakIsSoughtFromTheFirstSampleOn)
{
    OpenWaveform w = Samples({8, 8, 2, 8});
    w.pointOfMax = 0;
    EXPECT_EQ(Exactly(1 + 4.0f / 6), Of(w, "fh"));
    OpenWaveform low = Samples({1, 8, 8}); // begins below half: the sample before the first counts as 0
    low.pointOfMax = 0;
    EXPECT_EQ(Exactly(3.0f), Of(low, "fh"));
    OpenWaveform tiny = Samples({4e-31f, 5e-31f, 3e-31f});
    EXPECT_EQ(0, tiny.pMax());
    EXPECT_EQ(Exactly(2.0f), Of(tiny, "fh"));
}

TEST(TraceWidth, PeakBeyondTheSamplesIsAtTheirEnd)
{
    for (std::vector<float> const &samples : {std::vector<float>{0, 1, 8, 7}, {8, 1, 0, 2}, {5}, {-2, -4, -3}}) {
        OpenWaveform w = Samples(samples);
        auto const widthWithPeakAt = [&](int p) {
            w.pointOfMax = p;
            return Of(w, "fh");
        };
        int const n = w.npnts();
        for (int const p : {n + 1, 1000, INT_MAX}) EXPECT_EQ(widthWithPeakAt(n), widthWithPeakAt(p)) << p;
        for (int const p : {-1, -1000, INT_MIN}) EXPECT_EQ(widthWithPeakAt(0), widthWithPeakAt(p)) << p;
    }
}

// ---- Parameters of a pair ------------------------------------------------------------------------------------------

class PairOfTraces : public testing::Test {
protected:
    std::string operator()(std::string const &text) { return OfPair(y, x, text); }

    OpenWaveform y = Samples({0, 4, 8, 3}), x = Samples({10, 20, 30, 40});
};

TEST_F(PairOfTraces, TakesPositionsForTimes)
{
    struct {
        char const *text;
        float value;
    } const rows[] = {{"st", 10}, {"ft", 40}, {"tm", 40}, {"tn", 20}, {"tv[1]", 17.5f}, {"bv[7]", 38}};
    for (auto const &row : rows) EXPECT_EQ(Exactly(row.value), (*this)(row.text)) << row.text;
}

TEST_F(PairOfTraces, PositionOfAPeakAtTheEndIsZero)
{
    y = Samples({1, 2, 3, 4}); // counted from 1 and used as an index, it points past the end
    EXPECT_EQ(Exactly(0.0f), (*this)("tm"));
    y = Samples({4, 3, 2, 1});
    EXPECT_EQ(Exactly(0.0f), (*this)("tn"));
}

TEST_F(PairOfTraces, PercentFormsMultiplyByAHundredAndDivideByTheMaximum)
{
    EXPECT_EQ((*this)("tv[2]"), (*this)("t%[0.16]"));
    EXPECT_EQ((*this)("bv[5]"), (*this)("b%[0.4]"));
    EXPECT_EQ(Exactly(40.0f), (*this)("t%[50]")); // 625 is beyond the maximum
    EXPECT_EQ(Exactly(10.0f), (*this)("b%[50]"));
}

TEST_F(PairOfTraces, RiseIsADifferenceOfPositions)
{
    EXPECT_EQ(Exactly(y.XYTimeAtVal(7.2f, x) - y.XYTimeAtVal(0.8f, x)), (*this)("19"));
    EXPECT_EQ(Exactly(y.XYTimeAtVal(6.4f, x) - y.XYTimeAtVal(1.6f, x)), (*this)("28"));
    x = Samples({40, 30, 20, 10});
    EXPECT_EQ(Exactly(y.XYTimeAtVal(7.2f, x) - y.XYTimeAtVal(0.8f, x)), (*this)("19"));
    EXPECT_LT(y.GetXYTraceParam("19", x), 0.0f);
}

TEST_F(PairOfTraces, ValueAndMeansAreTakenWhereThePositionIsFirstReached)
{
    EXPECT_EQ(Exactly(6.0f), (*this)("vt[25]"));
    EXPECT_EQ(Exactly(2.0f), (*this)("la[32]"));
    EXPECT_EQ(Exactly(6.0f), (*this)("ta[20.5]"));
    x.timeStep = 0.5f; // the time at which x reaches it, on the time base of x
    EXPECT_EQ(Exactly(3.0f), (*this)("vt[25]"));
}

TEST_F(PairOfTraces, ValueAndMeansNeedTheExtremesOfThePositions)
{
    x.maxValue = x.minValue = 0; // never scaled: everything is beyond them, at the end of x
    EXPECT_EQ(Exactly(0.0f), (*this)("vt[25]"));
    EXPECT_EQ(Exactly(4.0f), (*this)("la[15]"));
    EXPECT_EQ(Exactly(-0.0f), (*this)("ta[15]")); // begins behind the end
    EXPECT_EQ(Exactly(17.5f), (*this)("tv[1]"));
}

// ---- Traces that a file made up
// --------------------------------------------------------------------------------------

TEST(TraceParametersOfStrangeTraces, StayInABlockThatIsFull)
{
    OpenWaveform y = FullBlock(7), x = FullBlock(5);
    for (int const p : {INT_MIN, -1, 0, 1, 128, 255, 256, 257, INT_MAX}) {
        y.pointOfMax = y.pointOfMin = p;
        for (float const top : {6.0f, -6.0f, 1e30f, nan}) {
            y.maxValue = top;
            EXPECT_EQ(All(y, x), All(y, x)) << p;
        }
        float const position = p >= 0 && p < 256 ? static_cast<float>(p % 5) : 0.0f;
        EXPECT_EQ(Exactly(position), OfPair(y, x, "tm")) << p;
        EXPECT_EQ(Exactly(position), OfPair(y, x, "tn")) << p;
        EXPECT_EQ(Exactly(static_cast<float>(p)), Of(y, "tm")) << p;
        EXPECT_EQ(Exactly(static_cast<float>(p)), Of(y, "tn")) << p;
    }
}

TEST(TraceParametersOfStrangeTraces, ReachBeyondTheLastSampleOfAFullBlock)
{
    OpenWaveform y = FullBlock(7), x = FullBlock(5);
    EXPECT_EQ(Exactly(1.5f), Of(y, "vt[255.5]")); // half of sample 255 and half of the 0 behind it
    EXPECT_EQ(Exactly(0.0f), Of(y, "vt[256]"));
    EXPECT_EQ(Exactly(3.0f), Of(y, "ta[255]"));
    EXPECT_EQ(Exactly(0.0f), OfPair(y, x, "vt[9]")); // x doesn't reach it, so that is one step past the end
}

class FileOfAStrangeTrace : public WaveformFile {
protected:
    /// Every parameter of the trace of such a file, alone and on itself, twice the same and with no harm to the trace.
    void Ask(WvfRows const &rows) const
    {
        Put("strange", rows.Bytes());
        OpenWaveform w;
        ASSERT_TRUE(w.Read(Name("strange"), -1));
        Fields const before = FieldsOf(w);
        EXPECT_EQ(All(w, w), All(w, w));
        EXPECT_EQ("", Differences(before, w));
    }
};

TEST_F(FileOfAStrangeTrace, HasPositionsOfItsOwn)
{
    for (char const *const p :
         {"00 00 00 00", "04 00 00 00", "FF FF FF FF", "FF FF FF 7F", "00 00 00 80", "00 01 00 00"}) {
        SCOPED_TRACE(p);
        Ask(SampleRows().Set("pointOfMax", p).Set("pointOfMin", p));
        OpenWaveform w;
        ASSERT_TRUE(w.Read(Name("strange"), -1));
        EXPECT_EQ(Exactly(7.5f + static_cast<float>(HexInt(p)) * 0.25f), Of(w, "tm"));
        EXPECT_EQ(Exactly(HexInt(p) == 0 ? 1.0f : 0.0f), OfPair(w, w, "tm"));
    }
}

TEST_F(FileOfAStrangeTrace, HasNumbersThatAreNone)
{
    char const *const numbers[] = {"00 00 C0 7F", "00 00 80 7F", "00 00 80 FF", "FF FF 7F 7F",
                                   "FF FF 7F FF", "01 00 00 00", "00 00 00 80", "00 00 80 BF"};
    for (char const *const field : {"timeStep", "start", "timeShift", "scopeDelay", "maxValue", "minValue"}) {
        for (char const *const number : numbers) {
            SCOPED_TRACE(field + " "s + number);
            Ask(SampleRows().Set(field, number));
            Ask(SampleRows().Set(field, number).Set("samples", "00 00 C0 7F 00 00 80 7F 00 00 40 40"));
        }
    }
}

} // namespace
