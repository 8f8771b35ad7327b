// The table of particles in memory: sizes, copies, extremes, rows with a NaN, changes of geometry, parameters.

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/ParticleGroup.h"
#include "support/Hex.h"
#include "support/LittleEndian.h"
#include "support/ParticleBytes.h"

namespace {

float const nan = std::numeric_limits<float>::quiet_NaN();
float const infinity = std::numeric_limits<float>::infinity();

OpenParticles Group(std::vector<ParticleRow> const &rows)
{
    return OpenParticles(rows);
}

/// Eight times the same, which is how a row is told from another.
ParticleRow Same(float value)
{
    return ParticleRow(8, value);
}

ParticleRow SameBut(float value, int column, float other)
{
    ParticleRow row = Same(value);
    row[static_cast<std::size_t>(column)] = other;
    return row;
}

/// The first column of each row.
std::vector<float> Firsts(OpenParticles const &g)
{
    std::vector<float> firsts;
    for (int i = 0; i < g.nParticles(); ++i) firsts.push_back(g.Data()[8 * i]);
    return firsts;
}

// ---- Sizes ----

TEST(ParticleGroupRecord, TheConstants)
{
    EXPECT_EQ(8, ParticleGroup::nParticleCols);
    EXPECT_EQ(10000000, MaxParticleBatch);
    EXPECT_EQ(32u, sizeof(PGParticle));
}

TEST(ParticleGroupRecord, ANewGroupHasItsRowsAndZerosInTheHeader)
{
    OpenParticles const g(3);
    EXPECT_EQ("0 0 0 0 0 0 0 | 0 0 0 0 0 0 0 0 | 0 0 0 0 0 0 0 0 |    | 0 0 3 3 ", g.Header());
    EXPECT_EQ(24, g.Count());
    EXPECT_EQ(1, g.RCount());
}

TEST(ParticleGroupRecord, ANegativeNumberOfRowsIsNone)
{
    for (int n : {-5, -1, 0, std::numeric_limits<int>::min()}) {
        OpenParticles g(n);
        EXPECT_EQ(0, g.nParticles()) << n;
        EXPECT_EQ(0, g.nOrigParticles()) << n;
        EXPECT_EQ(0, g.Count()) << n;
    }
}

TEST(ParticleGroupRecord, MoreRowsThanAnArrayHoldsAreABadAllocation)
{
    EXPECT_THROW(ParticleGroup(300000000), std::bad_alloc);
    ParticleGroup g(1);
    EXPECT_THROW(g.ReSize(std::numeric_limits<int>::max()), std::bad_alloc);
    EXPECT_THROW(g.Reserve(600000000), std::bad_alloc);
    EXPECT_EQ(1, g.nParticles());
    EXPECT_EQ(8, g.Count());
}

TEST(ParticleGroupRecord, PDataIsTheSameMemoryRowByRow)
{
    OpenParticles g = Group({Same(1), Same(2)});
    g.PData()[1].column[7] = 5;
    EXPECT_EQ(5.0f, g.Data()[15]);
    EXPECT_EQ(static_cast<void *>(g.Data()), static_cast<void *>(g.PData()));
}

TEST(ParticleGroupRecord, SizeGivesTheNumberOfRowsAndLeavesThatOfTheFile)
{
    OpenParticles g(3);
    g.Size(5);
    EXPECT_EQ(5, g.nParticles());
    EXPECT_EQ(40, g.Count());
    EXPECT_EQ(3, g.nOrigParticles());
    g.Size(-1);
    EXPECT_EQ(0, g.nParticles());
    EXPECT_EQ(0, g.Count());
}

TEST(ParticleGroupRecord, ReSizeKeepsRows)
{
    OpenParticles g = Group({Same(1), Same(2), Same(3)});
    g.ReSize(2);
    EXPECT_EQ((std::vector<float>{1, 2}), Firsts(g));
    g.ReSize(1000);
    EXPECT_EQ(1000, g.nParticles());
    EXPECT_EQ(8000, g.Count());
    EXPECT_EQ(FloatsBytes(Same(1)) + FloatsBytes(Same(2)), g.RowBytes().substr(0, 64));
    g.ReSize(-7);
    EXPECT_EQ(0, g.nParticles());
}

TEST(ParticleGroupRecord, ReserveMakesRoomAndChangesNoCount)
{
    OpenParticles g = Group({Same(1)});
    g.Reserve(1000);
    EXPECT_GE(g.Capacity(), 8000);
    EXPECT_EQ((std::vector<float>{1}), Firsts(g));
    float const *const place = g.Data();
    g.ReSize(1000);
    EXPECT_EQ(place, g.Data());
}

// ---- Copies ----

/// A group with something in every field.
OpenParticles Full()
{
    OpenParticles g = Group({Same(1), Same(2)});
    g.header1 = 1;
    g.header2 = 2;
    g.t1 = 3;
    g.t2 = 4;
    g.t3 = 5;
    g.t4 = 6;
    g.t5 = 7;
    g.units = "u";
    g.note = "n";
    g.stamp = "s";
    g.geometry = 8;
    g.origGeometry = 9;
    for (int i = 0; i < 8; ++i) g.maxValues[i] = 10, g.minValues[i] = 11;
    g.ReSize(1); // two in the file
    return g;
}

/// Reaches what a group alone has to copy.
class CopiedParticles : public OpenParticles {
public:
    explicit CopiedParticles(OpenParticles const &other) { ParticleGroup::operator=(other); }
};

TEST(ParticleGroupRecord, ACopyHasRowsAndHeaderWithoutTheExtremes)
{
    OpenParticles const source = Full();
    ParticleGroup const copy(static_cast<ParticleGroup const &>(source));
    EXPECT_EQ(1, copy.nParticles());
    EXPECT_EQ(1, copy.nOrigParticles());
    EXPECT_EQ(8, copy.Geometry());
    EXPECT_EQ(8, copy.origGeometry);
    EXPECT_EQ(0.0f, copy.Max(0));
    EXPECT_EQ(0.0f, copy.Min(7));
    EXPECT_EQ(source.RowBytes(), BytesOf(copy.Data(), copy.Count()));
    EXPECT_NE(source.Data(), copy.Data());
}

TEST(ParticleGroupRecord, AssignmentReplacesAllButTheExtremes)
{
    CopiedParticles const copy(Full());
    EXPECT_EQ("1 2 3 4 5 6 7 | 0 0 0 0 0 0 0 0 | 0 0 0 0 0 0 0 0 | u n s | 8 8 1 1 ", copy.Header());
    EXPECT_EQ((std::vector<float>{1}), Firsts(copy));
}

TEST(ParticleGroupRecord, AssignmentToItselfDoesNothing)
{
    OpenParticles g = Full();
    std::string const before = g.Header();
    ParticleGroup const &same = g;
    g.ParticleGroup::operator=(same);
    EXPECT_EQ(before, g.Header()); // two in the file, still
    EXPECT_EQ((std::vector<float>{1}), Firsts(g));
}

TEST(ParticleGroupRecord, CopyHeaderTakesTheNumberInMemoryAsBoth)
{
    OpenParticles g = Group({Same(1), Same(2), Same(3)});
    g.maxValues[0] = 50;
    g.CopyHeader(Full());
    EXPECT_EQ("1 2 3 4 5 6 7 | 50 0 0 0 0 0 0 0 | 0 0 0 0 0 0 0 0 | u n s | 8 8 1 1 ", g.Header());
    EXPECT_EQ(24, g.Count());
}

// ---- Extremes ----

TEST(ParticleGroupRecord, ScaleFindsTheExtremesOfEachColumn)
{
    OpenParticles g = Group({{1, -2, 3, -4, 5, -6, 7, 0}, {-1, 2, -3, 4, -5, 6, -7, 0}, {0, 0, 9, 0, 0, 0, 0, 0}});
    g.Scale();
    EXPECT_EQ(FloatsBytes({1, 2, 9, 4, 5, 6, 7, 0}), BytesOf(g.maxValues, 8));
    EXPECT_EQ(FloatsBytes({-1, -2, -3, -4, -5, -6, -7, 0}), BytesOf(g.minValues, 8));
}

TEST(ParticleGroupRecord, WithoutRowsTheExtremesAreTheStartingValues)
{
    OpenParticles g = Full();
    g.ReSize(0);
    g.Scale();
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(0xFF7843B0u, BitsOf(g.Max(i)));
        EXPECT_EQ(0x7F7843B0u, BitsOf(g.Min(i)));
    }
}

TEST(ParticleGroupRecord, ANaNChangesNoExtreme)
{
    OpenParticles g = Group({Same(nan), SameBut(2, 3, nan), Same(1)});
    g.Scale();
    EXPECT_EQ(FloatsBytes({2, 2, 2, 1, 2, 2, 2, 2}), BytesOf(g.maxValues, 8));
    EXPECT_EQ(FloatsBytes(Same(1)), BytesOf(g.minValues, 8));
    OpenParticles none = Group({Same(nan)});
    none.Scale();
    EXPECT_EQ(0xFF7843B0u, BitsOf(none.Max(0)));
    EXPECT_EQ(0x7F7843B0u, BitsOf(none.Min(0)));
}

TEST(ParticleGroupRecord, InfinitiesAreExtremesAndValuesBeyondTheStartingOnesCount)
{
    OpenParticles g = Group({SameBut(3.4e38f, 0, infinity), SameBut(3.4e38f, 1, -infinity)});
    g.Scale();
    EXPECT_EQ(infinity, g.Max(0));
    EXPECT_EQ(-infinity, g.Min(1));
    EXPECT_EQ(3.4e38f, g.Max(2));
    EXPECT_EQ(0x7F7843B0u, BitsOf(g.Min(2))); // no value is below it
}

TEST(ParticleGroupRecord, ExtremesOfAColumnThatThereIsNotAreZero)
{
    OpenParticles const g = Full();
    for (int column : {-1, 8, 1000000000, std::numeric_limits<int>::min()}) {
        EXPECT_EQ(0.0f, g.Max(column)) << column;
        EXPECT_EQ(0.0f, g.Min(column)) << column;
    }
    EXPECT_EQ(10.0f, g.Max(7));
    EXPECT_EQ(11.0f, g.Min(0));
}

// ---- Rows with a NaN ----

TEST(ParticleGroupRecord, CleanUpPutsTheLastRowInPlaceOfABadOne)
{
    struct {
        std::vector<float> before, after;
    } const table[] = {
        {{1, nan, 3}, {1, 3}},
        {{nan, 2, 3, 4}, {4, 2, 3}},
        {{1, 2, nan}, {1, 2}},
        {{nan, 2, nan}, {2}},
        {{nan, nan, nan}, {}},
        {{1, 2, 3}, {1, 2, 3}},
        {{}, {}},
        {{nan}, {}},
        {{nan, 2, nan, 4, nan}, {4, 2}},
        {{1, nan, nan, 4, 5}, {1, 5, 4}},
    };
    for (auto const &row : table) {
        std::vector<ParticleRow> rows;
        for (float first : row.before) rows.push_back(SameBut(first, 0, first));
        OpenParticles g = Group(rows);
        g.CleanUp();
        EXPECT_EQ(row.after, Firsts(g)) << testing::PrintToString(row.before);
        EXPECT_EQ(8 * g.nParticles(), g.Count());
    }
}

TEST(ParticleGroupRecord, CleanUpLooksAtEveryColumnAndMovesWholeRows)
{
    for (int column = 0; column < 8; ++column) {
        OpenParticles g = Group({Same(1), SameBut(2, column, nan), Same(3), {4, 5, 6, 7, 8, 9, 10, 11}});
        g.CleanUp();
        EXPECT_EQ(FloatsBytes(Same(1)) + FloatsBytes({4, 5, 6, 7, 8, 9, 10, 11}) + FloatsBytes(Same(3)), g.RowBytes())
            << column;
    }
}

TEST(ParticleGroupRecord, CleanUpKeepsInfinitiesAndTheNumberInTheFile)
{
    OpenParticles g = Group({Same(infinity), Same(nan), Same(-infinity)});
    g.CleanUp();
    EXPECT_EQ((std::vector<float>{infinity, -infinity}), Firsts(g));
    OpenParticles orig(4);
    for (int i = 0; i < 32; ++i) orig.Data()[i] = nan;
    orig.CleanUp();
    EXPECT_EQ(0, orig.nParticles());
    EXPECT_EQ(4, orig.nOrigParticles());
}

TEST(ParticleGroupRecord, CleanUpSeesEveryKindOfNaN)
{
    for (std::uint32_t bits : {0x7FC00000u, 0xFFC00000u, 0x7F800001u, 0xFFFFFFFFu}) {
        OpenParticles g = Group({Same(1), Same(2)});
        std::memcpy(g.Data() + 3, &bits, sizeof bits);
        g.CleanUp();
        EXPECT_EQ((std::vector<float>{2}), Firsts(g)) << std::hex << bits;
    }
}

// ---- Geometry ----

/// Columns 0, 1, 3 and 4 before and after; made by generate_particle_rows.py.
struct Turned {
    int geometry;
    std::uint32_t before[4], after[4];
};

Turned const turned[] = {
    {0, {0x3F800000, 0x00000000, 0x40000000, 0x40400000}, {0x3F800000, 0x00000000, 0x40000000, 0x40400000}},
    {0, {0x00000000, 0x00000000, 0x3F800000, 0x40000000}, {0x00000000, 0x00000000, 0x3F800000, 0x40000000}},
    {0, {0xC0000000, 0x00000000, 0x3F800000, 0x00000000}, {0xC0000000, 0x80000000, 0x3F800000, 0x00000000}},
    {0, {0xC0000000, 0x80000000, 0x3F800000, 0x3E800000}, {0xC0000000, 0x00000000, 0x3F800000, 0x3E800000}},
    {0, {0x00000000, 0xC0800000, 0x3F000000, 0x40E00000}, {0x80000000, 0x00000000, 0xC0B3FB68, 0xC0864EAD}},
    {0, {0x40400000, 0x40800000, 0x40A00000, 0x40C00000}, {0xBFFAFFC8, 0xC0114E5B, 0x3FA2E475, 0xC0F69685}},
    {0, {0x3DCCCCCD, 0xBE4CCCCD, 0x3E99999A, 0x3F333333}, {0x3DC8B7B7, 0xBCA2BFFB, 0x3EDDBDC7, 0x3F205EC1}},
    {0, {0xBFA00000, 0x40300000, 0xC0533333, 0x3FD9999A}, {0x3F93E36D, 0xBEF44356, 0x4019B01D, 0xC0352BC0}},
    {0, {0x3A83126F, 0x447A2000, 0x38D1B717, 0xC640E6B6}, {0x38CBA5E0, 0x3A8273DB, 0x463FFD53, 0xC495DB37}},
    {0, {0x47F1205A, 0x40C90FDB, 0x3A83126F, 0x42C7CCCD}, {0x47F1205A, 0x3CB0D4D2, 0x3A80C856, 0x42C7CCCD}},
    {0, {0x40200000, 0x49742400, 0x3F800000, 0xBF800000}, {0x4015E15E, 0xBF5FFEEF, 0x3F1635D0, 0xBFA4B415}},
    {0, {0x60AD78EC, 0x60AD78EC, 0x1E3CE508, 0x60AD78EC}, {0x6082D7D8, 0x6063CBBA, 0xE063CBBA, 0x6082D7D8}},
    {0, {0x0DA24260, 0x0E736390, 0x3F800000, 0x3F800000}, {0x0DA24260, 0x00000000, 0x3F800000, 0x3F800000}},
    {1, {0x3F800000, 0x00000000, 0x40000000, 0x40400000}, {0x3F800000, 0x00000000, 0x40000000, 0x40400000}},
    {1, {0x00000000, 0x00000000, 0x3F800000, 0x40000000}, {0x00000000, 0x00000000, 0x3F800000, 0x40000000}},
    {1, {0xC0000000, 0x00000000, 0x3F800000, 0x00000000}, {0x40000000, 0x40490FDB, 0xBF800000, 0x33BBBD2E}},
    {1, {0xC0000000, 0x80000000, 0x3F800000, 0x3E800000}, {0x40000000, 0xC0490FDB, 0xBF800000, 0xBE800003}},
    {1, {0x00000000, 0xC0800000, 0x3F000000, 0x40E00000}, {0x40800000, 0xBFC90FDB, 0xC0E00000, 0x3EFFFFF6}},
    {1, {0x40400000, 0x40800000, 0x40A00000, 0x40C00000}, {0x40A00000, 0x3F6D6338, 0x40F9999A, 0xBECCCCCA}},
    {1, {0x3DCCCCCD, 0xBE4CCCCD, 0x3E99999A, 0x3F333333}, {0x3E64F92E, 0xBF8DB70D, 0xBEFBDEE7, 0x3F14D52B}},
    {1, {0xBFA00000, 0x40300000, 0xC0533333, 0x3FD9999A}, {0x40415428, 0x3FFFAB95, 0x403A716B, 0x40133F65}},
    {1, {0x3A83126F, 0x447A2000, 0x38D1B717, 0xC640E6B6}, {0x447A2000, 0x3FC90FD2, 0xC640E6B6, 0xBC51CF8A}},
    {1, {0x47F1205A, 0x40C90FDB, 0x3A83126F, 0x42C7CCCD}, {0x47F1205A, 0x385576D8, 0x3BC75EC3, 0x42C7CCCD}},
    {1, {0x40200000, 0x49742400, 0x3F800000, 0xBF800000}, {0x49742400, 0x3FC90FC6, 0xBF7FFFD7, 0xBF800015}},
    {1, {0x60AD78EC, 0x60AD78EC, 0x1E3CE508, 0x60AD78EC}, {0x60F553B3, 0x3F490FDB, 0x607553B3, 0x607553B3}},
    {1, {0x0DA24260, 0x0E736390, 0x3F800000, 0x3F800000}, {0x0E8046F8, 0x3F9FE0BB, 0x3FA1E89B, 0xBF21E89A}},
};

/// A row with the four bit patterns and marks in the other columns.
ParticleRow RowOf(std::uint32_t const (&bits)[4])
{
    return {FromBits(bits[0]), FromBits(bits[1]), 22, FromBits(bits[2]), FromBits(bits[3]), 55, 66, 77};
}

TEST(ParticleGroupRecord, SetGeometryTurnsPositionAndVectorAndCarriesTheRest)
{
    for (Turned const &row : turned) {
        OpenParticles g = Group({RowOf(row.before), RowOf(row.before)});
        g.geometry = row.geometry == 0 ? 1 : 0;
        EXPECT_TRUE(g.SetGeometry(row.geometry));
        EXPECT_EQ(row.geometry, g.Geometry());
        std::string const expected = FloatsBytes(RowOf(row.after));
        EXPECT_EQ(expected + expected, g.RowBytes()) << row.geometry << " " << std::hex << row.before[0];
    }
}

TEST(ParticleGroupRecord, AnyGeometryButZeroIsPolar)
{
    for (int geometry : {-1, 2, 1000, std::numeric_limits<int>::min()}) {
        OpenParticles g = Group({{3, 4, 0, 0, 0, 0, 0, 0}});
        EXPECT_TRUE(g.SetGeometry(geometry));
        EXPECT_EQ(geometry, g.Geometry());
        EXPECT_EQ(5.0f, g.Data()[0]) << geometry;
    }
}

TEST(ParticleGroupRecord, ThePresentGeometryChangesNothing)
{
    for (int geometry : {0, 1, 7}) {
        OpenParticles g = Group({{3, 4, 5, 6, 7, 8, 9, 10}});
        g.geometry = geometry;
        EXPECT_TRUE(g.SetGeometry(geometry));
        EXPECT_EQ(FloatsBytes({3, 4, 5, 6, 7, 8, 9, 10}), g.RowBytes()) << geometry;
    }
}

TEST(ParticleGroupRecord, AChangeFromOnePolarGeometryToAnotherConvertsAgain)
{
    OpenParticles g = Group({{3, 4, 0, 0, 0, 0, 0, 0}});
    g.SetGeometry(1);
    float const angle = g.Data()[1];
    g.SetGeometry(2);
    double const x = 5, y = static_cast<double>(angle);
    EXPECT_EQ(static_cast<float>(std::sqrt(y * y + x * x)), g.Data()[0]);
    EXPECT_EQ(static_cast<float>(std::atan2(y, x)), g.Data()[1]);
    EXPECT_EQ(2, g.Geometry());
}

TEST(ParticleGroupRecord, AnEmptyGroupRecordsTheGeometry)
{
    OpenParticles g;
    EXPECT_TRUE(g.SetGeometry(5));
    EXPECT_EQ(5, g.Geometry());
    EXPECT_EQ(0, g.origGeometry);
}

TEST(ParticleGroupRecord, ThereAndBackGivesTheRowsUpToRounding)
{
    OpenParticles g = Group({{3, -4, 5, 6, 7, 8, 9, 10}, {-0.5f, 0.25f, 1, -2, 3, 0, 0, 0}});
    OpenParticles const before = g;
    g.SetGeometry(1);
    EXPECT_NE(before.RowBytes(), g.RowBytes());
    g.SetGeometry(0);
    for (int i = 0; i < 16; ++i) EXPECT_NEAR(before.Data()[i], g.Data()[i], 2e-6) << i;
}

TEST(ParticleGroupRecord, SetGeometryBearsWhatIsNoNumber)
{
    for (int geometry : {0, 1}) {
        OpenParticles g = Group({Same(nan), Same(infinity), Same(-infinity), Same(3e38f)});
        g.geometry = 1 - geometry;
        EXPECT_TRUE(g.SetGeometry(geometry));
        EXPECT_TRUE(std::isnan(g.Data()[0]));
        EXPECT_EQ(infinity, g.Data()[10]); // carried
    }
    OpenParticles far = Group({{3e38f, 3e38f, 0, 0, 0, 0, 0, 0}});
    far.SetGeometry(1); // too far for single precision, not for double
    EXPECT_EQ(infinity, far.Data()[0]);
}

// ---- Parameters ----

TEST(ParticleGroupRecord, ParametersByTheirCodes)
{
    OpenParticles const g = Full();
    struct {
        char const *code;
        float value;
    } const table[] = {{"t1", 3}, {"t2", 4}, {"t3", 5}, {"t4", 6}, {"t5", 7},
                       {"np", 2}, {"T1", 3}, {"NP", 2}, {"nP", 2}};
    for (auto const &row : table) EXPECT_EQ(row.value, g.GetPGroupParam(row.code)) << row.code;
}

TEST(ParticleGroupRecord, AnUnknownCodeHasNoValue)
{
    OpenParticles const g = Full();
    for (std::string const &code :
         {std::string(), std::string("t"), std::string("t0"), std::string("t6"), std::string("t1 "), std::string(" t1"),
          std::string("t12"), std::string("n"), std::string("npx"), std::string("t1\0", 3), std::string("np\0x", 4),
          std::string("\xC9"), std::string(5000, 't')})
        EXPECT_EQ(0xFF7843B0u, BitsOf(g.GetPGroupParam(Dstr(code)))) << testing::PrintToString(code);
}

TEST(ParticleGroupRecord, AskingLeavesTheCodeAsItIs)
{
    DString const code("NP");
    Full().GetPGroupParam(code);
    EXPECT_EQ("NP", Plain(code));
}

} // namespace
