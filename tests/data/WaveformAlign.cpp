// The time base of a trace: its start and end, the times of its samples, and its way onto another grid.

#include <climits>
#include <cmath>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/Waveform.h"
#include "support/WaveformTraces.h"

namespace {

using namespace waveform_values;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

OpenWaveform TraceOf(TimeBaseRow const &row)
{
    OpenWaveform w;
    w.timeStep = BitsFloat(row.timeStep);
    w.timeShift = BitsFloat(row.timeShift);
    w.startTime = BitsFloat(row.startTime);
    w.scopeDelay = BitsFloat(row.scopeDelay);
    w.scopeDelay2 = BitsFloat(row.scopeDelay2);
    return w;
}

// ---- Start and end
// -----------------------------------------------------------------------------------------------------

TEST(WaveformTimeBase, StartIsTheSumInItsOrderAndEndIsCountedFromIt)
{
    for (TimeBaseRow const &row : TimeBaseRows()) {
        SCOPED_TRACE(row.what);
        OpenWaveform w = TraceOf(row);
        w.Size(row.n);
        EXPECT_EQ(Exactly(row.start), Exactly(w.Start()));
        EXPECT_EQ(Exactly(row.end), Exactly(w.End()));
    }
}

TEST(WaveformTimeBase, EndOfNoSamplesIsAStepBeforeTheStart)
{
    Waveform w;
    EXPECT_EQ(-1.0f, w.End());
}

// ---- ScopeZero
// ---------------------------------------------------------------------------------------------------------

TEST(WaveformScopeZero, FoldsTheDelaysInTheirOrder)
{
    for (TimeBaseRow const &row : TimeBaseRows()) {
        SCOPED_TRACE(row.what);
        OpenWaveform w = TraceOf(row);
        w.ScopeZero();
        EXPECT_EQ(Exactly(row.folded), Exactly(w.startTime));
        EXPECT_EQ(Exactly(row.timeShift), Exactly(w.timeShift));
    }
}

TEST(WaveformScopeZero, ClearsTheScopeFieldsAndTheOffsetAndNothingElse)
{
    OpenWaveform w = SampleTrace();
    w.lockState = 3;
    w.ScopeZero();
    std::string const zero = "00 00 00 00";
    Fields const expected = With(SampleFields(), {{"startTime", "00 00 E0 40"}, // 7
                                                  {"scopeDelay", zero},
                                                  {"scopeDelay2", zero},
                                                  {"scopeValue", zero},
                                                  {"scopeValue2", zero},
                                                  {"scopeValue3", zero},
                                                  {"offset", zero},
                                                  {"lockState", "3"}});
    EXPECT_EQ("", Differences(expected, w));
    EXPECT_EQ(7.5f, w.Start());
}

// ---- InitFrom
// ----------------------------------------------------------------------------------------------------------

/// What `OtherTrace` becomes on the time base of `SampleTrace`.
Fields InitFields()
{
    std::string const zero = "00 00 00 00";
    Fields fields = With(FieldsOf(OtherTrace()), {{"timeStep", "00 00 80 3E"},
                                                  {"timeShift", "00 00 00 3F"},
                                                  {"startTime", "00 00 E0 40"}, // 7
                                                  {"scopeDelay", zero},
                                                  {"scopeDelay2", zero},
                                                  {"scopeValue", zero},
                                                  {"scopeValue2", zero},
                                                  {"scopeValue3", zero},
                                                  {"offset", zero},
                                                  {"npnts", "3"},
                                                  {"shape", "1 x 3"}});
    fields.erase("samples");
    return fields;
}

TEST(WaveformInitFrom, TakesTheTimeBaseAndWhatIsAskedFor)
{
    Fields const free = {{"t1", "00 00 C0 3F"},
                         {"t2", "00 00 20 40"},
                         {"t3", "00 00 60 40"},
                         {"t4", "00 00 90 40"},
                         {"t5", "00 00 B0 40"}};
    Fields const factors = {{"calibration", "00 00 00 40"}, {"attenuation", "00 00 20 41"}};
    for (bool const withT : {false, true}) {
        for (bool const withCalAtt : {false, true}) {
            SCOPED_TRACE(std::string(withT ? "free parameters " : "") + (withCalAtt ? "factors" : ""));
            OpenWaveform w = OtherTrace();
            OpenWaveform const source = SampleTrace();
            EXPECT_EQ(&w, &w.InitFrom(source, withT, withCalAtt));
            Fields expected = InitFields();
            if (withT) expected = With(expected, free);
            if (withCalAtt) expected = With(expected, factors);
            EXPECT_EQ("", Differences(expected, w));
            EXPECT_EQ("", Differences(SampleFields(), source));
        }
    }
}

TEST(WaveformInitFrom, FoldsTheDelaysInAnOrderOfItsOwn)
{
    for (TimeBaseRow const &row : TimeBaseRows()) {
        SCOPED_TRACE(row.what);
        OpenWaveform w = OtherTrace();
        w.InitFrom(TraceOf(row), false, false);
        EXPECT_EQ(Exactly(row.initFrom), Exactly(w.startTime));
        EXPECT_EQ(Exactly(row.timeShift), Exactly(w.timeShift));
        EXPECT_EQ(Exactly(row.timeStep), Exactly(w.timeStep));
    }
}

TEST(WaveformInitFrom, OfItselfChangesNothing)
{
    OpenWaveform w = SampleTrace();
    float const *const block = w.Data();
    EXPECT_EQ(&w, &w.InitFrom(w, true, true));
    EXPECT_EQ("", Differences(SampleFields(), w));
    EXPECT_EQ(block, w.Data());
}

TEST(WaveformInitFrom, LockStateStays)
{
    OpenWaveform w, source = SampleTrace();
    w.lockState = 2;
    source.lockState = 5;
    EXPECT_EQ(2, w.InitFrom(source, true, true).lockState);
}

TEST(WaveformInitFrom, SizesThePlainListThatIsNeeded)
{
    OpenWaveform table, source;
    table.Size(4, 5);
    source.Size(300);
    table.InitFrom(source, false, false);
    EXPECT_EQ("1 x 300", FieldsOf(table)["shape"]);
    EXPECT_EQ(512, table.Capacity());
    table.InitFrom(Waveform(), false, false);
    EXPECT_EQ(0, table.npnts());
}

// ---- TimeFill
// ----------------------------------------------------------------------------------------------------------

TEST(WaveformTimeFill, GivesTheTimesOfTheSamples)
{
    for (TimesRow const &row : TimesRows()) {
        SCOPED_TRACE(std::string(row.trace) + " from " + std::to_string(row.first));
        DArray<float, 0> times(7, 300);
        OpenWaveform w = ::TraceOf(row.trace);
        w.TimeFill(times, row.first);
        EXPECT_EQ(Exactly(row.times), Exactly(times));
        EXPECT_EQ(1, times.RCount());
        EXPECT_EQ(static_cast<int>(WordsOf(row.times).size()), times.CCount());
        EXPECT_EQ(WordsOf(row.times).empty() ? 0 : 256, times.Capacity());
    }
}

TEST(WaveformTimeFill, CountsTheShiftFirst)
{
    for (TimeBaseRow const &row : TimeBaseRows()) {
        if (row.n > 100) continue;
        SCOPED_TRACE(row.what);
        OpenWaveform w = TraceOf(row);
        w.Size(1);
        DArray<float, 0> times;
        w.TimeFill(times, 0);
        EXPECT_EQ(row.start & 0x7FFFFFFF, FloatBits(times[0]) & 0x7FFFFFFF); // 0 * timeStep may turn the sign of a zero
    }
}

TEST(WaveformTimeFill, FromBehindTheLastSampleLeavesNoStorage)
{
    OpenWaveform w = SampleTrace();
    for (int const first : {3, 4, INT_MAX}) {
        DArray<float, 0> times(100);
        w.TimeFill(times, first);
        EXPECT_EQ(0, times.Count());
        EXPECT_EQ(0, times.Capacity());
        EXPECT_EQ(nullptr, times.Data());
    }
}

TEST(WaveformTimeFill, TraceCanBeFilledWithItsOwnTimes)
{
    OpenWaveform w = SampleTrace();
    w.TimeFill(w, 1);
    EXPECT_EQ("00 00 F8 40 00 00 00 41", FieldsOf(w)["samples"]); // 7.75 8
}

// ---- Align
// -------------------------------------------------------------------------------------------------------------

TEST(WaveformAlign, GivesTheGridThatWasWorkedOut)
{
    for (AlignRow const &row : AlignRows()) {
        OpenWaveform w = ::TraceOf(row.trace);
        SCOPED_TRACE(std::string(row.trace) + " to " + std::to_string(row.n) + " from " + Exactly(row.start) + " by " +
                     Exactly(row.step));
        w.Align(row.n, BitsFloat(row.start), BitsFloat(row.step));
        EXPECT_EQ(Exactly(row.samples), Exactly(w));
        EXPECT_EQ(Exactly(row.startTime), Exactly(w.startTime));
        EXPECT_EQ(Exactly(row.timeStep), Exactly(w.timeStep));
        EXPECT_EQ(Exactly(row.timeShift), Exactly(w.timeShift));
        EXPECT_EQ(static_cast<int>(WordsOf(row.samples).size()), w.CCount());
        EXPECT_EQ(1, w.RCount());
    }
}

TEST(WaveformAlign, LeavesTheDelaysOnlyWhereItDoesNothing)
{
    for (AlignRow const &row : AlignRows()) {
        SCOPED_TRACE(std::string(row.trace) + " to " + std::to_string(row.n) + " from " + Exactly(row.start));
        OpenWaveform w = ::TraceOf(row.trace);
        float const delay = w.scopeDelay, delay2 = w.scopeDelay2;
        w.scopeValue = w.scopeValue2 = w.scopeValue3 = w.offset = 5;
        w.Align(row.n, BitsFloat(row.start), BitsFloat(row.step));
        bool const nothing = row.outcome == Outcome::Nothing;
        EXPECT_EQ(nothing ? delay : 0, w.scopeDelay);
        EXPECT_EQ(nothing ? delay2 : 0, w.scopeDelay2);
        for (float const field : {w.scopeValue, w.scopeValue2, w.scopeValue3, w.offset})
            EXPECT_EQ(nothing ? 5 : 0, field);
    }
}

/// The fields that a way to another grid doesn't touch.
Fields Untouched(Fields fields)
{
    for (char const *const name : {"timeStep", "timeShift", "startTime", "scopeDelay", "scopeValue", "scopeValue2",
                                   "scopeValue3", "scopeDelay2", "offset", "npnts", "shape", "samples"})
        fields.erase(name);
    return fields;
}

TEST(WaveformAlign, LeavesExtremesCountOfTheHeaderAndAllElse)
{
    struct {
        int n;
        float start, step;
    } const rows[] = {{3, 7.5f, 0.25f}, {9, 7.5f, 0.25f}, {2, 7.5f, 0.25f}, {4, 7.4f, 0.1f}, {0, 1, 1}, {5, 0, 0}};
    for (auto const &row : rows) {
        SCOPED_TRACE(row.n);
        OpenWaveform w = SampleTrace();
        w.lockState = 2;
        w.Align(row.n, row.start, row.step);
        EXPECT_EQ("", Differences(With(Untouched(SampleFields()), {{"lockState", "2"}}), w));
    }
}

TEST(WaveformAlign, SameGridOrAStepOfNothingChangesNothingAtAll)
{
    struct {
        int n;
        float start, step;
    } const rows[] = {{3, 7.5f, 0.25f}, {5, 1, 0}, {5, 1, -0.0f}, {5, 1, -1}, {5, 7.5f, -0.25f}, {0, nan, -infinity}};
    for (auto const &row : rows) {
        SCOPED_TRACE(row.step);
        OpenWaveform w = SampleTrace();
        float const *const block = w.Data();
        w.Align(row.n, row.start, row.step);
        EXPECT_EQ("", Differences(SampleFields(), w));
        EXPECT_EQ(block, w.Data());
    }
}

TEST(WaveformAlign, LongerOnTheSameGridIsFilledWithZeros)
{
    OpenWaveform w = SampleTrace();
    w.ReSize(6);
    for (int i = 3; i < 6; ++i) w[i] = 99; // stays in the block behind the samples
    w.ReSize(3);
    w.Align(5, 7.5f, 0.25f);
    Fields const expected = {{"samples", "00 00 80 3F 00 00 C0 BF 00 00 40 40 00 00 00 00 00 00 00 00"},
                             {"timeStep", "00 00 80 3E"},
                             {"timeShift", "00 00 00 3F"},
                             {"startTime", "00 00 E0 40"}};
    EXPECT_EQ("", Differences(expected, w));
    w.Align(1000, 7.5f, 0.25f);
    for (int i = 3; i < 1000; ++i) ASSERT_EQ(0u, FloatBits(w[i])) << i;
}

TEST(WaveformAlign, ShorterOnTheSameGridKeepsTheBlock)
{
    OpenWaveform w = SampleTrace();
    float const *const block = w.Data();
    w.Align(2, 7.5f, 0.25f);
    EXPECT_EQ("00 00 80 3F 00 00 C0 BF", FieldsOf(w)["samples"]);
    EXPECT_EQ(block, w.Data());
    w.Align(0, 7.5f, 0.25f);
    EXPECT_EQ(0, w.npnts());
    EXPECT_EQ(256, w.Capacity());
}

TEST(WaveformAlign, NewGridHasABlockOfItsOwn)
{
    struct {
        int n, capacity;
    } const rows[] = {{1, 256}, {255, 256}, {256, 512}, {257, 512}, {512, 768}, {1000, 1024}, {0, 0}, {-7, 0}};
    for (auto const &row : rows) {
        SCOPED_TRACE(row.n);
        OpenWaveform w = SampleTrace();
        w.Align(row.n, 7.4f, 0.1f);
        EXPECT_EQ(row.capacity, w.Capacity());
        EXPECT_EQ(row.capacity == 0, w.Data() == nullptr);
        EXPECT_EQ("1 x " + std::to_string(row.n < 0 ? 0 : row.n), FieldsOf(w)["shape"]);
    }
}

TEST(WaveformAlign, TableBecomesAList)
{
    for (float const start : {0.0f, 0.5f}) {
        OpenWaveform table;
        table.Size(2, 2);
        table.Zero();
        table.Align(3, start, 1);
        EXPECT_EQ("1 x 3", FieldsOf(table)["shape"]) << start;
    }
}

TEST(WaveformAlign, OutsideTheTraceIsZero)
{
    OpenWaveform w;
    w.SetSamples({4, 8, 2});
    OpenWaveform behind(w), before(w), around(w);
    behind.Align(3, 2.5f, 1);
    EXPECT_EQ("00 00 00 00 00 00 00 00 00 00 00 00", FieldsOf(behind)["samples"]);
    before.Align(2, -10, 1);
    EXPECT_EQ("00 00 00 00 00 00 00 00", FieldsOf(before)["samples"]);
    around.Align(8, -1, 0.5f);
    EXPECT_EQ("0 0 4 6 8 5 2 0 ", [&] {
        std::string all;
        for (int i = 0; i < around.npnts(); ++i) all += std::to_string(static_cast<int>(around[i])) + " ";
        return all;
    }());
}

TEST(WaveformAlign, PositionIsAdvancedByAddition)
{
    // 0.1f added up passes 100 samples elsewhere than 0.1f times their number.
    OpenWaveform w;
    w.SetSamples({0, 1000, 2000, 3000, 4000, 5000, 6000, 7000, 8000, 9000, 10000, 11000});
    w.Align(100, 0, 0.1f);
    float position = 0;
    int different = 0;
    for (int j = 0; j < 100; ++j, position += 0.1f) {
        ASSERT_NEAR(1000 * position, w[j], 0.01);
        if (std::abs(1000 * (0.1f * static_cast<float>(j)) - w[j]) > 0.001f) ++different;
    }
    EXPECT_GT(different, 10);
}

TEST(WaveformAlign, StepsOfNothingOrBackwardInTheOldTraceAreSafe)
{
    OpenWaveform backward;
    backward.SetSamples({4, 6, 2});
    backward.timeStep = -1;
    OpenWaveform between(backward), far(backward), standing(backward);
    between.Align(3, 0,
                  0.5f); // positions 0, -0.5, -1: the middle one lies between sample 0 and none, which counts as 0
    EXPECT_EQ("00 00 80 40 00 00 00 40 00 00 00 00", FieldsOf(between)["samples"]);
    backward.Align(4, 0, 2); // positions 0, -2, -4, -6
    EXPECT_EQ("00 00 80 40 00 00 00 00 00 00 00 00 00 00 00 00", FieldsOf(backward)["samples"]);
    far.Align(4, 0, 2e9f); // as far as no int counts
    EXPECT_EQ("00 00 80 40 00 00 00 00 00 00 00 00 00 00 00 00", FieldsOf(far)["samples"]);
    standing.timeStep = 0;
    standing.Align(3, 5, 1);
    EXPECT_EQ("00 00 00 00 00 00 00 00 00 00 00 00", FieldsOf(standing)["samples"]);
    EXPECT_EQ(1.0f, standing.timeStep);
    EXPECT_EQ(5.0f, standing.startTime);
}

TEST(WaveformAlign, BetweenTheSamplesOfABackwardTraceStaysInTheBlock)
{
    for (float const step : {0.3f, 0.5f, 1.7f, infinity}) {
        for (float const start : {0.0f, -0.5f, -1.9f, 3.0f, nan}) {
            OpenWaveform w;
            for (int i = 0; i < 256; ++i) w.Add(1);
            w.timeStep = -1;
            w.Align(300, start, step);
            EXPECT_EQ(300, w.npnts());
        }
    }
}

TEST(WaveformAlign, GridThatMemoryCantHoldLeavesTheSamples)
{
    for (float const start : {7.5f, 7.4f}) {
        OpenWaveform w = SampleTrace();
        EXPECT_THROW(w.Align(INT_MAX, start, 0.25f), std::bad_alloc);
        EXPECT_EQ(SampleFields()["samples"], FieldsOf(w)["samples"]);
    }
}

TEST(WaveformAlign, LongTraceOnAFinerGrid)
{
    int const n = 100000;
    Waveform w(n);
    for (int i = 0; i < n; ++i) w[i] = static_cast<float>(i % 1000);
    w.Align(2 * n - 1, 0, 0.5f);
    for (int i = 0; i < n; ++i) ASSERT_EQ(static_cast<float>(i % 1000), w[2 * i]) << i;
    for (int i = 0; i < n - 1; ++i) ASSERT_EQ((w[2 * i] + w[2 * i + 2]) / 2, w[2 * i + 1]) << i;
}

// ---- AlignTo
// -----------------------------------------------------------------------------------------------------------

TEST(WaveformAlignTo, TakesStartTimeAndShiftWithoutTheDelays)
{
    OpenWaveform w, grid = SampleTrace();
    w.SetSamples({0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100});
    w.AlignTo(grid);
    Fields const expected = {{"timeStep", "00 00 80 3E"},
                             {"timeShift", "00 00 00 3F"},
                             {"startTime", "00 00 00 40"},
                             {"scopeDelay", "00 00 00 00"},
                             {"samples", "00 00 96 42 00 00 9B 42 00 00 A0 42"}}; // 75 77.5 80, as from 7.5 on
    EXPECT_EQ("", Differences(expected, w));
    EXPECT_EQ(2.5f, w.Start()); // short of 7.5 by the delays
    EXPECT_EQ("", Differences(SampleFields(), grid));
}

TEST(WaveformAlignTo, TakesThemAlsoWhereTheSamplesStay)
{
    OpenWaveform w, grid;
    w.SetSamples({1, 2});
    w.scopeDelay = 3;
    grid.SetSamples({5, 6});
    grid.startTime = 1;
    grid.timeShift = 2;
    w.AlignTo(grid);
    Fields const expected = {{"timeShift", "00 00 00 40"},
                             {"startTime", "00 00 80 3F"},
                             {"scopeDelay", "00 00 40 40"}, // the grids were the same, so nothing else was done
                             {"samples", "00 00 80 3F 00 00 00 40"}};
    EXPECT_EQ("", Differences(expected, w));
}

TEST(WaveformAlignTo, TakesThemAlsoForAStepOfNothing)
{
    OpenWaveform w = SampleTrace(), grid;
    grid.timeStep = 0;
    grid.startTime = 11;
    grid.timeShift = 12;
    w.AlignTo(grid);
    EXPECT_EQ("", Differences(With(SampleFields(), {{"startTime", "00 00 30 41"}, {"timeShift", "00 00 40 41"}}), w));
}

TEST(WaveformAlignTo, LengthAlone)
{
    OpenWaveform w, grid;
    w.SetSamples({1, 2});
    grid.Size(3);
    w.AlignTo(grid);
    EXPECT_EQ("00 00 80 3F 00 00 00 40 00 00 00 00", FieldsOf(w)["samples"]);
}

TEST(WaveformAlignTo, ItselfChangesNothing)
{
    OpenWaveform w = SampleTrace();
    w.AlignTo(w);
    EXPECT_EQ("", Differences(SampleFields(), w));
}

} // namespace
