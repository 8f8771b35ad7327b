// A trace as a record: what it begins with, what copies take along, its extremes and tick size, and its
// calibration.

#include <climits>
#include <cstddef>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "data/Waveform.h"
#include "foundation/Numbers.h"
#include "support/WaveformTraces.h"

namespace {

using waveform_values::FactorRow;
using waveform_values::ScaleRow;

/// The names of the fields that aren't about the samples.
Fields HeaderOf(Waveform const &w)
{
    Fields fields = FieldsOf(w);
    for (char const *const name : {"npnts", "shape", "samples", "lockState"}) fields.erase(name);
    return fields;
}

// ---- Construction and copying ----------------------------------------------------------------------------------

TEST(WaveformRecord, BeginsWithItsDefaults)
{
    Fields const expected = {
        {"timeStep", "00 00 80 3F"},
        {"timeShift", "00 00 00 00"},
        {"startTime", "00 00 00 00"},
        {"scaleUnit", "00 00 80 3F"},
        {"t1", "00 00 00 00"},
        {"t2", "00 00 00 00"},
        {"t3", "00 00 00 00"},
        {"t4", "00 00 00 00"},
        {"t5", "00 00 00 00"},
        {"scopeDelay", "00 00 00 00"},
        {"scopeValue", "00 00 00 00"},
        {"scopeValue2", "00 00 00 00"},
        {"scopeValue3", "00 00 00 00"},
        {"scopeDelay2", "00 00 00 00"},
        {"units", ""},
        {"stamp", ""},
        {"note", ""},
        {"fileCount", "00 00 00 00"},
        {"lockState", "0"},
        {"attenuation", "00 00 80 3F"},
        {"calibration", "00 00 80 3F"},
        {"offset", "00 00 00 00"},
        {"maxValue", "00 00 00 00"},
        {"minValue", "00 00 00 00"},
        {"pointOfMax", "00 00 00 00"},
        {"pointOfMin", "00 00 00 00"},
        {"npnts", "0"},
        {"shape", "1 x 0"},
        {"samples", ""},
    };
    EXPECT_EQ(FieldsOf(Waveform()).size(), expected.size());
    EXPECT_EQ("", Differences(expected, Waveform()));
}

TEST(WaveformRecord, HasAsManySamplesAsAskedFor)
{
    struct {
        int asked, given;
    } const rows[] = {{0, 0}, {1, 1}, {3, 3}, {256, 256}, {1000, 1000}, {-1, 0}, {INT_MIN, 0}};
    for (auto const &row : rows) {
        SCOPED_TRACE(row.asked);
        Waveform const w(row.asked);
        EXPECT_EQ(row.given, w.npnts());
        EXPECT_EQ(row.given, w.Count());
        EXPECT_EQ(row.given, w.CCount());
        EXPECT_EQ(1, w.RCount());
        EXPECT_EQ(row.given, w.fileCount);
    }
}

TEST(WaveformRecord, SamplesThatCantBeHadRaiseBadAllocation)
{
    EXPECT_THROW(Waveform{INT_MAX}, std::bad_alloc);
}

TEST(WaveformRecord, DestructorIsVirtualSinceTheArraysIs)
{
    static_assert(std::has_virtual_destructor_v<Waveform>);
    static_assert(std::is_base_of_v<DArray<float, 0>, Waveform>);
    Waveform *const w = new Waveform(5);
    w->units = "long enough to have a block of its own on the heap";
    DArray<float, 0> *const base = w;
    delete base; // a leak checker sees the text if it stays
}

/// The fields that callers reach by a number.
constexpr float Waveform::*slots[] = {
    &Waveform::scaleUnit, &Waveform::t1,         &Waveform::t2,         &Waveform::t3,          &Waveform::t4,
    &Waveform::t5,        &Waveform::scopeDelay, &Waveform::scopeValue, &Waveform::scopeValue2, &Waveform::scopeValue3};

TEST(WaveformRecord, SlotsLieBehindTheTickSizeInTheirOrder)
{
    Waveform w;
    char const *const first = reinterpret_cast<char const *>(&w.scaleUnit);
    for (std::size_t n = 0; n < 10; ++n)
        EXPECT_EQ(first + n * sizeof(float), reinterpret_cast<char const *>(&(w.*slots[n]))) << n;
}

TEST(WaveformRecord, SlotsAreReachedByTheirNumberAndNoOther)
{
    Waveform w;
    for (int n = 0; n < 10; ++n) EXPECT_EQ(&(w.*slots[n]), w.Slot(n)) << n;
    for (int const n : {-1, 10, 11, INT_MAX, INT_MIN}) EXPECT_EQ(nullptr, w.Slot(n)) << n;
}

TEST(WaveformRecord, AccessorsGiveTheFields)
{
    OpenWaveform const w = SampleTrace();
    EXPECT_EQ(2.0f, w.Calibration());
    EXPECT_EQ(10.0f, w.Attenuation());
    EXPECT_EQ(-0.75f, w.Offset());
    EXPECT_EQ(3.0f, w.Max());
    EXPECT_EQ(-1.5f, w.Min());
    EXPECT_EQ(3, w.pMax());
    EXPECT_EQ(2, w.pMin());
    EXPECT_EQ(3, w.npnts());
    EXPECT_EQ(7.5f, w.Start());
    EXPECT_EQ(8.0f, w.End());
}

TEST(WaveformRecord, CopyHasAllButTheLockState)
{
    OpenWaveform original = SampleTrace();
    original.lockState = 6;
    Waveform const copy(original);
    EXPECT_EQ("", Differences(SampleFields(), copy));
    EXPECT_NE(original.Data(), copy.Data());
    EXPECT_EQ(256, copy.Capacity());
}

TEST(WaveformRecord, CopyOfAnEmptyOneHasTheArraysBlock)
{
    Waveform const copy((Waveform()));
    EXPECT_EQ(0, copy.npnts());
    EXPECT_EQ(256, copy.Capacity());
}

TEST(WaveformRecord, AssignmentTakesAllButTheLockState)
{
    OpenWaveform target = OtherTrace();
    target.lockState = 2;
    OpenWaveform const source = SampleTrace();
    Waveform &plain = target;
    EXPECT_EQ(&plain, &(plain = source));
    Fields expected = SampleFields();
    expected["lockState"] = "2";
    EXPECT_EQ("", Differences(expected, target));
}

TEST(WaveformRecord, AssignmentToItselfChangesNothing)
{
    OpenWaveform w = SampleTrace();
    w.lockState = 3;
    Waveform &same = w;
    float const *const block = w.Data();
    w.Waveform::operator=(same);
    Fields expected = SampleFields();
    expected["lockState"] = "3";
    EXPECT_EQ("", Differences(expected, w));
    EXPECT_EQ(block, w.Data());
}

TEST(WaveformRecord, CopiesAreIndependent)
{
    OpenWaveform original = SampleTrace();
    Waveform copy(original);
    copy[0] = 99;
    copy.units += "!";
    copy.t1 = 0;
    EXPECT_EQ("", Differences(SampleFields(), original));
    EXPECT_STREQ("mV!", copy.units.c_str());
}

TEST(WaveformRecord, CopyKeepsTheShapeOfATable)
{
    OpenWaveform table;
    table.Size(3, 2);
    table.Zero();
    EXPECT_EQ("3 x 2", FieldsOf(Waveform(table))["shape"]);
}

TEST(WaveformRecord, CopyHeaderTakesEveryFieldButTheLockStateAndNoSample)
{
    OpenWaveform target = OtherTrace(), source = SampleTrace();
    target.lockState = 2;
    source.lockState = 1;
    target.CopyHeader(source);
    EXPECT_EQ("", Differences(HeaderOf(source), target));
    EXPECT_EQ(2, target.lockState);
    for (char const *const name : {"npnts", "shape", "samples"})
        EXPECT_EQ(FieldsOf(OtherTrace())[name], FieldsOf(target)[name]);
}

TEST(WaveformRecord, CopyHeaderOfItselfChangesNothing)
{
    OpenWaveform w = SampleTrace();
    w.CopyHeader(w);
    EXPECT_EQ("", Differences(SampleFields(), w));
}

TEST(WaveformRecord, ListsOfTracesConstructCopyAndDestroyThem)
{
    DArray<Waveform, 1> list;
    Waveform const first(SampleTrace());
    for (int i = 0; i < 300; ++i) list.Add(SampleTrace());
    list.ReSize(302);
    list.Insert(&first, 0, 1);
    list.Remove(1, 200);
    ASSERT_EQ(103, list.Count());
    DArray<Waveform, 1> const copy(list);
    list.Clear();
    EXPECT_EQ("", Differences(SampleFields(), copy[0]));
    EXPECT_EQ("", Differences(SampleFields(), copy[100]));
    EXPECT_EQ("", Differences(FieldsOf(Waveform()), copy[101]));
    EXPECT_EQ("", Differences(FieldsOf(Waveform()), copy[102]));
}

TEST(WaveformRecord, ZeroClearsTheSamplesAlone)
{
    OpenWaveform w = SampleTrace();
    w[1] = BitsFloat(0x7FC00000);
    w.Zero();
    Fields expected = SampleFields();
    expected["samples"] = "00 00 00 00 00 00 00 00 00 00 00 00";
    EXPECT_EQ("", Differences(expected, w));
    Waveform none;
    none.Zero();
    EXPECT_EQ(0, none.npnts());
}

TEST(WaveformRecord, ZeroClearsAllSamplesOfALongTrace)
{
    Waveform w(100001);
    for (int i = 0; i < w.npnts(); ++i) w[i] = 1;
    w.Zero();
    for (int i = 0; i < w.npnts(); ++i) ASSERT_EQ(0u, FloatBits(w[i])) << i;
}

// ---- Which values count --------------------------------------------------------------------------------------------

TEST(WaveformRecord, MarkOfABadSample)
{
    EXPECT_EQ(0x7F7843B0u, FloatBits(DFMax));
}

TEST(WaveformRecord, UsableValuesLieBetweenTheLimits)
{
    // 0x7998889D is the last float below 9.9e34.
    struct {
        std::uint32_t bits;
        bool usable;
    } const rows[] = {
        {0x00000000, true},  {0x80000000, true},  {0x00000001, true},  {0x3F800000, true},  {0xBF800000, true},
        {0x7998889D, true},  {0x7998889E, false}, {0xF998889D, true},  {0xF998889E, false}, {0x7F7843B0, false},
        {0xFF7843B0, false}, {0x7F7FFFFF, false}, {0x7F800000, false}, {0xFF800000, false}, {0x7FC00000, false},
        {0xFFC00000, false}, {0x7F800001, false},
    };
    for (auto const &row : rows) EXPECT_EQ(row.usable, IsVF(BitsFloat(row.bits))) << std::hex << row.bits;
}

// ---- Scale ---------------------------------------------------------------------------------------------------------

TEST(WaveformScale, FindsExtremesAndTickSizeAndMarksBadSamples)
{
    for (ScaleRow const &row : waveform_values::ScaleRows()) {
        SCOPED_TRACE(row.what);
        OpenWaveform w;
        w.SetSamples(FloatsOf(row.before));
        w.Scale();
        EXPECT_EQ(Exactly(row.after), Exactly(w));
        EXPECT_EQ(Exactly(row.maxValue), Exactly(w.Max()));
        EXPECT_EQ(Exactly(row.minValue), Exactly(w.Min()));
        EXPECT_EQ(row.pointOfMax, w.pMax());
        EXPECT_EQ(row.pointOfMin, w.pMin());
        EXPECT_EQ(Exactly(row.scaleUnit), Exactly(w.scaleUnit));
    }
}

TEST(WaveformScale, ResultsDontDependOnEarlierOnes)
{
    for (ScaleRow const &row : waveform_values::ScaleRows()) {
        SCOPED_TRACE(row.what);
        OpenWaveform w = SampleTrace();
        w.SetSamples(FloatsOf(row.before));
        w.Scale();
        w.Scale();
        EXPECT_EQ(Exactly(row.maxValue), Exactly(w.Max()));
        EXPECT_EQ(Exactly(row.minValue), Exactly(w.Min()));
        EXPECT_EQ(row.pointOfMax, w.pMax());
        EXPECT_EQ(row.pointOfMin, w.pMin());
        EXPECT_EQ(Exactly(row.scaleUnit), Exactly(w.scaleUnit));
    }
}

TEST(WaveformScale, TicksAsWorkedOutByHand)
{
    struct {
        float magnitude, tick;
    } const rows[] = {{1, 0.2f}, {2, 0.5f},    {5, 1.0f},    {0.5f, 0.1f},
                      {3, 0.5f}, {4.5f, 0.5f}, {1.9f, 0.2f}, {70, 10.0f}};
    for (auto const &row : rows) {
        for (float const sign : {1.0f, -1.0f}) {
            OpenWaveform w;
            w.SetSamples({0, sign * row.magnitude});
            w.Scale();
            EXPECT_EQ(Exactly(row.tick), Exactly(w.scaleUnit)) << sign * row.magnitude;
        }
    }
}

TEST(WaveformScale, TraceOfBadSamplesAloneHasNoExtremes)
{
    OpenWaveform w;
    w.SetSamples({BitsFloat(0x7FC00000), BitsFloat(0x7F800000)});
    w.Scale();
    Fields const expected = {{"samples", "B0 43 78 FF B0 43 78 FF"},
                             {"maxValue", "B0 43 78 FF"},
                             {"minValue", "B0 43 78 7F"},
                             {"pointOfMax", "00 00 00 00"},
                             {"pointOfMin", "00 00 00 00"}};
    EXPECT_EQ("", Differences(expected, w));
}

TEST(WaveformScale, TraceOfZerosHasAMinimumAndNoMaximum)
{
    Waveform w(4);
    w.Zero();
    w.Scale();
    Fields const expected = {{"maxValue", "00 00 00 00"},
                             {"minValue", "00 00 00 00"},
                             {"pointOfMax", "00 00 00 00"},
                             {"pointOfMin", "01 00 00 00"}};
    EXPECT_EQ("", Differences(expected, w));
}

TEST(WaveformScale, LeavesAndIgnoresTheRestOfTheHeader)
{
    OpenWaveform w = OtherTrace();
    w.lockState = 2;
    w.Scale();
    Fields expected = FieldsOf(OtherTrace());
    expected["lockState"] = "2";
    expected["maxValue"] = "00 00 94 42"; // 74
    expected["minValue"] = "00 00 8C 42"; // 70
    expected["pointOfMax"] = "05 00 00 00";
    expected["pointOfMin"] = "01 00 00 00";
    expected["scaleUnit"] = "00 00 20 41"; // 10
    EXPECT_EQ("", Differences(expected, w));
}

TEST(WaveformScale, FindsExtremesAnywhereInALongTrace)
{
    Waveform w(10007);
    for (int const at : {0, 1, 7, 8, 4096, 10005, 10006}) {
        w.Zero();
        w[at] = 3;
        w[10006 - at] = -2;
        w.Scale();
        EXPECT_EQ(at + 1, w.pMax());
        EXPECT_EQ(10007 - at, w.pMin());
    }
}

TEST(WaveformScale, CountsAllElementsOfATable)
{
    OpenWaveform w;
    w.Size(2, 2);
    for (int i = 0; i < 4; ++i) w[i] = static_cast<float>(i + 1);
    w.Scale();
    EXPECT_EQ(4, w.pMax());
    EXPECT_EQ(1, w.pMin());
}

// ---- Calibration, attenuation, offset ------------------------------------------------------------------------------

OpenWaveform Calibrated(FactorRow const &row)
{
    OpenWaveform w;
    w.SetSamples(FloatsOf(row.before));
    w.calibration = BitsFloat(row.calibration);
    w.attenuation = BitsFloat(row.attenuation);
    w.offset = BitsFloat(row.offset);
    return w;
}

TEST(WaveformSetCalAttOff, RewritesTheSamples)
{
    for (FactorRow const &row : waveform_values::FactorRows()) {
        SCOPED_TRACE(row.what);
        OpenWaveform w = Calibrated(row);
        w.SetCalAttOff(BitsFloat(row.newCalibration), BitsFloat(row.newAttenuation), BitsFloat(row.newOffset));
        EXPECT_EQ(Exactly(row.calibrationAfter), Exactly(w.Calibration()));
        EXPECT_EQ(Exactly(row.attenuationAfter), Exactly(w.Attenuation()));
        EXPECT_EQ(Exactly(row.offsetAfter), Exactly(w.Offset()));
        EXPECT_EQ(Exactly(row.after), Exactly(w));
    }
}

TEST(WaveformSetCalAttOff, FactorsOfZeroKeepTheOldAndStillShiftByTheOffset)
{
    OpenWaveform w;
    w.SetSamples({10, 20});
    w.calibration = 2;
    w.attenuation = 4;
    w.offset = 1;
    w.SetCalAttOff(0, 0, 24); // 3 in raw units, so 2 raw units more
    EXPECT_EQ(2.0f, w.Calibration());
    EXPECT_EQ(4.0f, w.Attenuation());
    EXPECT_EQ(3.0f, w.Offset());
    EXPECT_EQ(-6.0f, w[0]);
    EXPECT_EQ(4.0f, w[1]);
}

TEST(WaveformSetCalAttOff, KeepsTheRelationToRawValues)
{
    OpenWaveform w;
    w.SetSamples({(5 - 1) * 2 * 4, (9 - 1) * 2 * 4}); // raw 5 and 9
    w.calibration = 2;
    w.attenuation = 4;
    w.offset = 1;
    w.SetCalAttOff(0.5f, 16, 16); // offset 2
    EXPECT_EQ((5 - 2) * 0.5f * 16, w[0]);
    EXPECT_EQ((9 - 2) * 0.5f * 16, w[1]);
}

TEST(WaveformSetCalAttOff, LeavesExtremesAndTheRestOfTheHeader)
{
    OpenWaveform w = SampleTrace();
    w.SetCalAttOff(4, 20, BitsFloat(0x7FC00000));
    Fields expected = SampleFields();
    expected["calibration"] = "00 00 80 40";
    expected["attenuation"] = "00 00 A0 41";
    expected["samples"] = "00 00 80 40 00 00 C0 C0 00 00 40 41"; // 4 -6 12
    EXPECT_EQ("", Differences(expected, w));
}

TEST(WaveformSetCalAttOff, ChangesAllSamplesOfALongTrace)
{
    Waveform w(10007);
    for (int i = 0; i < w.npnts(); ++i) w[i] = 1;
    w.SetCalAttOff(3, 0, 0);
    for (int i = 0; i < w.npnts(); ++i) ASSERT_EQ(3.0f, w[i]) << i;
}

} // namespace
