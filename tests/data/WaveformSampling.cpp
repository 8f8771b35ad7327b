// Between sample position, time and value: every lookup against the table that was worked out step by step, and
// the turns of the rules that callers rely on, by hand.

#include <climits>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/Waveform.h"
#include "support/WaveformTraces.h"

namespace {

using namespace waveform_values;

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr float nan = std::numeric_limits<float>::quiet_NaN();

/// Samples a unit of time apart from 0 on, with the extremes that they have.
OpenWaveform Samples(std::vector<float> const &values)
{
    OpenWaveform w;
    w.SetSamples(values);
    w.Scale();
    return w;
}

std::string Said(char const *trace, Bits at)
{
    return std::string(trace) + " at " + Exactly(at);
}

// ---- The table ---------------------------------------------------------------------------------------------------

TEST(WaveformLookups, PositionsAndValuesAtTimes)
{
    for (TimeRow const &row : TimeRows()) {
        SCOPED_TRACE(Said(row.trace, row.time));
        OpenWaveform w = TraceOf(row.trace);
        float const t = BitsFloat(row.time);
        EXPECT_EQ(row.index, w.Index(t));
        EXPECT_EQ(row.point, w.PointAtTime(t));
        EXPECT_EQ(Exactly(row.value), Exactly(w.ValAtTime(t)));
    }
}

TEST(WaveformLookups, TimesAndCurveValuesAtCrossings)
{
    for (ValueRow const &row : ValueRows()) {
        SCOPED_TRACE(Said(row.trace, row.value) + " on " + row.curve);
        OpenWaveform w = TraceOf(row.trace), x = TraceOf(row.curve);
        float const v = BitsFloat(row.value);
        EXPECT_EQ(Exactly(row.forward), Exactly(w.TimeAtVal(v)));
        EXPECT_EQ(Exactly(row.backward), Exactly(w.TimeAtValR(v)));
        EXPECT_EQ(Exactly(row.curveForward), Exactly(w.XYTimeAtVal(v, x)));
        EXPECT_EQ(Exactly(row.curveBackward), Exactly(w.XYTimeAtValR(v, x)));
    }
}

TEST(WaveformLookups, TraceCanBeItsOwnCurve)
{
    for (ValueRow const &row : ValueRows()) {
        if (std::string(row.trace) != row.curve) continue;
        SCOPED_TRACE(Said(row.trace, row.value));
        OpenWaveform w = TraceOf(row.trace);
        EXPECT_EQ(Exactly(row.curveForward), Exactly(w.XYTimeAtVal(BitsFloat(row.value), w)));
        EXPECT_EQ(Exactly(row.curveBackward), Exactly(w.XYTimeAtValR(BitsFloat(row.value), w)));
    }
}

TEST(WaveformLookups, MeansOverTimes)
{
    for (AverageRow const &row : AverageRows()) {
        SCOPED_TRACE(Said(row.trace, row.from) + " up to " + Exactly(row.to));
        EXPECT_EQ(Exactly(row.mean), Exactly(TraceOf(row.trace).Avg(BitsFloat(row.from), BitsFloat(row.to))));
    }
}

TEST(WaveformLookups, ChangeNothing)
{
    for (Trace const &row : Traces()) {
        SCOPED_TRACE(row.name);
        OpenWaveform w = TraceOf(row.name), x = TraceOf("noisy");
        Fields const before = FieldsOf(w), curve = FieldsOf(x);
        for (float const at : {-1.0f, 0.0f, 0.3f, 1e30f, nan}) {
            w.Index(at), w.PointAtTime(at), w.ValAtTime(at), w.Avg(at, 2);
            w.TimeAtVal(at), w.TimeAtValR(at), w.XYTimeAtVal(at, x), w.XYTimeAtValR(at, x);
        }
        EXPECT_EQ("", Differences(before, w));
        EXPECT_EQ("", Differences(curve, x));
    }
}

TEST(WaveformLookups, ArentSpoiltByWhatLiesBehindTheSamples)
{
    for (Trace const &row : Traces()) {
        OpenWaveform w = TraceOf(row.name);
        int const n = w.npnts();
        w.ReSize(n + 40);
        for (int i = n; i < n + 40; ++i) w[i] = 1e20f;
        w.ReSize(n);
        for (TimeRow const &at : TimeRows()) {
            if (std::string(at.trace) != row.name) continue;
            SCOPED_TRACE(Said(at.trace, at.time));
            EXPECT_EQ(Exactly(at.value), Exactly(w.ValAtTime(BitsFloat(at.time))));
        }
    }
}

TEST(WaveformLookups, StayInABlockThatIsFull)
{
    OpenWaveform w, x;
    for (int i = 0; i < 256; ++i) w.Add(static_cast<float>(i % 7)), x.Add(1);
    w.Scale();
    EXPECT_EQ(3.0f, w.ValAtTime(255)); // 255 % 7
    EXPECT_EQ(1.5f, w.ValAtTime(255.5f));
    EXPECT_EQ(0.0f, w.ValAtTime(256));
    EXPECT_EQ(0.0f, w.ValAtTime(256.5f));
    EXPECT_EQ(0.0f, w.ValAtTime(257));
    for (float const v : {0.0f, 3.0f, 5.5f, 6.0f, nan})
        w.TimeAtVal(v), w.TimeAtValR(v), w.XYTimeAtVal(v, x), w.XYTimeAtValR(v, x);
    EXPECT_EQ(3.0f, w.Avg(255, 300));
}

// ---- Index, PointAtTime, ValAtTime
// -----------------------------------------------------------------------------------

TEST(WaveformIndex, IsRoundedDownAndNotLimited)
{
    OpenWaveform w = Samples({5, 6, 7});
    struct {
        float t;
        int index;
    } const rows[] = {{-0.5f, -1}, {-1, -1},  {-1.5f, -2}, {0, 0},        {0.99f, 0},
                      {2, 2},      {2.5f, 2}, {3, 3},      {100.5f, 100}, {-7, -7}};
    for (auto const &row : rows) EXPECT_EQ(row.index, w.Index(row.t)) << row.t;
}

TEST(WaveformIndex, IsTheLowestIntForWhatIsNone)
{
    OpenWaveform w = Samples({5, 6, 7});
    for (float const t : {nan, infinity, -infinity, 3e9f, -3e9f, 2147483648.0f}) EXPECT_EQ(INT_MIN, w.Index(t)) << t;
    EXPECT_EQ(2147483520, w.Index(2147483520.0f));
    EXPECT_EQ(INT_MIN, w.Index(-2147483648.0f));
    w.timeStep = 0;
    for (float const t : {0.0f, 1.0f, -1.0f}) EXPECT_EQ(INT_MIN, w.Index(t)) << t;
}

TEST(WaveformPointAtTime, IsLimitedToTheTraceWhereIndexIsNot)
{
    OpenWaveform w = Samples({5, 6, 7});
    struct {
        float t;
        int point, index;
    } const rows[] = {{-3, 0, -3}, {-0.1f, 0, -1}, {0, 0, 0}, {1.9f, 1, 1}, {2, 2, 2}, {3, 2, 3}, {1e30f, 2, INT_MIN}};
    for (auto const &row : rows) {
        EXPECT_EQ(row.point, w.PointAtTime(row.t)) << row.t;
        EXPECT_EQ(row.index, w.Index(row.t)) << row.t;
    }
    EXPECT_EQ(2, w.PointAtTime(w.End()));
    EXPECT_EQ(2, w.PointAtTime(w.End() + w.timeStep));
    EXPECT_EQ(3, w.Index(w.End() + w.timeStep));
}

TEST(WaveformValAtTime, InterpolatesBetweenSamplesAndIntoZeroBehindTheLast)
{
    OpenWaveform w = Samples({8, 16, 4});
    struct {
        float t, value;
    } const rows[] = {{-0.001f, 0}, {-5, 0},   {0, 8}, {0.5f, 12}, {1, 16},     {1.75f, 7}, {2, 4},
                      {2.25f, 3},   {2.5f, 2}, {3, 0}, {3.5f, 0},  {3.999f, 0}, {4, 0},     {50, 0}};
    for (auto const &row : rows) EXPECT_EQ(Exactly(row.value), Exactly(w.ValAtTime(row.t))) << row.t;
    EXPECT_EQ(4.0f, w.ValAtTime(w.End()));
}

// ---- Crossings
// ---------------------------------------------------------------------------------------------------------

TEST(WaveformTimeAtVal, InterpolatesBetweenTheSamplesThatEncloseTheCrossing)
{
    OpenWaveform w = Samples({0, 2, 8, 4, 0});
    EXPECT_EQ(0.5f, w.TimeAtVal(1));
    EXPECT_EQ(1.5f, w.TimeAtVal(5));
    EXPECT_EQ(3.75f, w.TimeAtValR(1));
    EXPECT_EQ(2.75f, w.TimeAtValR(5));
}

TEST(WaveformTimeAtVal, MaximumIsExtrapolatedFromTheLastTwoSamples)
{
    // No sample is greater, so the search ends at the last: 3.5 at time 4 and 3 at time 5 lead back to 9 at -7.
    OpenWaveform w = Samples({0, 9, 1, 2, 3.5f, 3});
    EXPECT_EQ(-7.0f, w.TimeAtVal(w.Max()));
    OpenWaveform rising = Samples({0, 1, 5});
    EXPECT_EQ(2.0f, rising.TimeAtVal(rising.Max()));
}

TEST(WaveformTimeAtVal, SampleEqualToTheValueDoesntEndTheSearch)
{
    OpenWaveform w = Samples({0, 4, 4, 8, 9});
    EXPECT_EQ(2.0f, w.TimeAtVal(4)); // between the second 4 and 8
    OpenWaveform falling = Samples({9, 4, 4, 2, 1});
    EXPECT_EQ(2.0f, falling.TimeAtVal(4));
}

TEST(WaveformTimeAtVal, FirstSamplesOwnValueIsAtTheStart)
{
    OpenWaveform w = Samples({3, 1, 5, 3, 9, 3});
    w.timeShift = 10;
    EXPECT_EQ(10.0f, w.TimeAtVal(3));
    EXPECT_EQ(15.0f, w.TimeAtValR(3));
}

TEST(WaveformTimeAtVal, ValuesBeyondTheStoredExtremesLieOutsideTheTrace)
{
    OpenWaveform w = Samples({1, 3, 2});
    w.startTime = 100;
    w.timeStep = 0.5f;
    for (float const v : {3.5f, 0.5f, infinity, -infinity}) {
        EXPECT_EQ(101.5f, w.TimeAtVal(v)) << v;
        EXPECT_EQ(99.5f, w.TimeAtValR(v)) << v;
    }
}

TEST(WaveformTimeAtVal, StaleExtremesHideValuesThatTheTraceHolds)
{
    OpenWaveform w = Samples({1, 3, 2});
    w[1] = 9;
    EXPECT_EQ(3.0f, w.TimeAtVal(5));
    EXPECT_EQ(-1.0f, w.TimeAtValR(5));
    w.Scale();
    EXPECT_EQ(0.5f, w.TimeAtVal(5));
    w.maxValue = 0.5f; // below every sample, the first included
    EXPECT_EQ(3.0f, w.TimeAtVal(1));
    EXPECT_EQ(-1.0f, w.TimeAtValR(2));
}

TEST(WaveformTimeAtVal, FlatBracketGivesNoNumber)
{
    OpenWaveform w = Samples({0, 5, 2, 2});
    EXPECT_EQ(infinity, w.TimeAtVal(5));
    OpenWaveform end = Samples({0, 5, 1, 1});
    EXPECT_TRUE(std::isinf(end.TimeAtVal(5)));
    OpenWaveform flat = Samples({0, 2, 2, 2, 2});
    EXPECT_TRUE(std::isnan(flat.TimeAtVal(2)));
}

TEST(WaveformTimeAtValR, NeverTestsSampleOneWhereTheCurveFormDoes)
{
    // With sample 1 above 5 both end there. With sample 1 below, the curve form goes on to 0.
    OpenWaveform w = Samples({9, 8, 1, 0}), x = Samples({10, 20, 30, 40});
    EXPECT_EQ(Exactly(1 + 3.0f / 7), Exactly(w.TimeAtValR(5)));
    EXPECT_EQ(Exactly((1 - 3.0f / 7) * 30 + 3.0f / 7 * 20), Exactly(w.XYTimeAtValR(5, x)));
    OpenWaveform low = Samples({9, 4, 1, 0});
    EXPECT_EQ(Exactly((5.0f - 4) / (1 - 4) + 1), Exactly(low.TimeAtValR(5)));         // extrapolated from 1 and 2
    EXPECT_EQ(Exactly((1 - 0.8f) * 20 + 0.8f * 10), Exactly(low.XYTimeAtValR(5, x))); // between 0 and 1
}

TEST(WaveformXYTimeAtVal, WeightsAreSwapped)
{
    OpenWaveform w = Samples({0, 4, 8, 12}), x = Samples({10, 20, 30, 40});
    struct {
        float v, forward, backward;
    } const rows[] = {{1, 17.5f, 17.5f}, {3, 12.5f, 12.5f}, {4, 30, 10},  {5, 27.5f, 27.5f},
                      {0, 10, 20},       {12, 30, 40},      {13, 40, 10}, {-1, 40, 10}};
    for (auto const &row : rows) {
        EXPECT_EQ(Exactly(row.forward), Exactly(w.XYTimeAtVal(row.v, x))) << row.v;
        EXPECT_EQ(Exactly(row.backward), Exactly(w.XYTimeAtValR(row.v, x))) << row.v;
    }
}

TEST(WaveformXYTimeAtVal, LengthsArentCompared)
{
    OpenWaveform w = Samples({0, 4, 8, 12}), shorter = Samples({10, 20}), none = Samples({}),
                 longer = Samples({1, 2, 3, 4, 5, 6});
    EXPECT_EQ(0.0f, w.XYTimeAtVal(9, shorter));  // samples 2 and 3 count as 0
    EXPECT_EQ(10.0f, w.XYTimeAtVal(6, shorter)); // half of 0 and half of 20
    EXPECT_EQ(20.0f, w.XYTimeAtVal(99, shorter));
    EXPECT_EQ(10.0f, w.XYTimeAtValR(99, shorter));
    EXPECT_EQ(20.0f, w.XYTimeAtValR(12, shorter));
    EXPECT_EQ(6.0f, w.XYTimeAtVal(99, longer));
    for (float const v : {-1.0f, 0.0f, 6.0f, 12.0f, 99.0f}) {
        EXPECT_EQ(0.0f, w.XYTimeAtVal(v, none)) << v;
        EXPECT_EQ(0.0f, w.XYTimeAtValR(v, none)) << v;
    }
}

// ---- Avg
// ---------------------------------------------------------------------------------------------------------------

TEST(WaveformAvg, LeavesOutTheSampleAtTheEnd)
{
    OpenWaveform w = Samples({1, 2, 6, 100});
    EXPECT_EQ(3.0f, w.Avg(w.Start(), w.End()));
    EXPECT_EQ(4.0f, w.Avg(1, 3));
    EXPECT_EQ(4.0f, w.Avg(1.5f, 3.9f));
    EXPECT_EQ(3.0f, w.Avg(-50, 50));
}

TEST(WaveformAvg, WithinOneStepIsTheSample)
{
    OpenWaveform w = Samples({1, 2, 6, 100});
    EXPECT_EQ(2.0f, w.Avg(1.1f, 1.9f));
    EXPECT_EQ(2.0f, w.Avg(1.9f, 1.1f));
    EXPECT_EQ(100.0f, w.Avg(3, 70));
    OpenWaveform one = Samples({7});
    for (float const t : {-3.0f, 0.0f}) EXPECT_EQ(7.0f, one.Avg(t, 5)) << t;
}

TEST(WaveformAvg, BackwardIsMinusZero)
{
    OpenWaveform w = Samples({1, 2, 6, 100});
    EXPECT_EQ(0x80000000u, FloatBits(w.Avg(2, 1)));
    EXPECT_EQ(0x80000000u, FloatBits(w.Avg(3, -5)));
    EXPECT_EQ(0x80000000u, FloatBits(w.Avg(-5, -2)));
    EXPECT_EQ(0x80000000u, FloatBits(w.Avg(100, 200)));
    EXPECT_EQ(0x80000000u, FloatBits(w.Avg(1000000, -1e30f))); // the positions are more than an int apart
    EXPECT_EQ(0x80000000u, FloatBits(w.Avg(2147483520.0f, -2147483648.0f)));
}

TEST(WaveformAvg, AddsOneAfterTheOtherInSinglePrecision)
{
    OpenWaveform w = Samples({16777216, 1, 1, 1, 1, 0});
    EXPECT_EQ(16777216.0f / 5, w.Avg(0, 5)); // each 1 is lost
}

} // namespace
