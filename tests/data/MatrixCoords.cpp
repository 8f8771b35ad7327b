// The axes of a matrix, and the two-letter parameters.

#include <climits>
#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/Matrix.h"
#include "foundation/Numbers.h"
#include "support/MatrixFixture.h"

namespace {

float const nan = std::nanf("");
float const wrong[] = {3.3e38f, -3.3e38f, 9.91e34f, -9.91e34f, INFINITY, -INFINITY, nan}; // not usable as limits
int const noDimension[] = {INT_MIN, -1, 0, 4, 5, INT_MAX};

/// A matrix of rank 2 whose first axis is explicit with these coordinates.
class Axis : public OpenMatrix {
public:
    explicit Axis(std::vector<float> const &coords) : OpenMatrix(static_cast<int>(coords.size()), 1, 1)
    {
        Zero();
        SetAllCoords(1, FloatArray(coords));
    }
    std::string Coords() const { return ArrayHex(dims[0]); }
};

std::string Coords(OpenMatrix const &m, int d)
{
    return ArrayHex(m.GetAllCoords(d));
}

// ---- Sizes and the coordinates that come with them -----------------------------------------------------------------

struct {
    int n1, n2, n3, rank;
    char const *sizes;
    int total;
} const sizes[] = {
    {4, 3, 1, 2, "4 3 1", 12},  {4, 3, 2, 3, "4 3 2", 24}, {0, 0, 0, 2, "1 1 1", 1},
    {-5, 3, -1, 2, "1 3 1", 3}, {4, 0, 2, 3, "4 1 2", 8},  {INT_MIN, INT_MIN, INT_MIN, 2, "1 1 1", 1},
    {1, 1, 2, 3, "1 1 2", 2},   {1, 1, 1, 2, "1 1 1", 1},  {300, 2, 2, 3, "300 2 2", 1200},
};

TEST(MatrixSizes, AreRaisedTo1AndGiveTheRank)
{
    for (auto const &row : sizes) {
        SCOPED_TRACE(row.sizes);
        OpenMatrix m(7, 7, 7);
        int n1 = row.n1, n2 = row.n2, n3 = row.n3;
        EXPECT_EQ(row.total, m.setcoords(n1, n2, n3));
        EXPECT_EQ(row.sizes, std::to_string(n1) + " " + std::to_string(n2) + " " + std::to_string(n3));
        EXPECT_EQ("", Differences({{"rank", std::to_string(row.rank)},
                                   {"sizes", row.sizes},
                                   {"origSizes", row.sizes},
                                   {"count", "343"}}, // the values aren't its business
                                  FieldsOf(m)));
    }
}

TEST(MatrixSizes, DimensionBeyondTheRankIsOneZeroAndKeepsItsStep)
{
    CubeMatrix m;
    m.ReSize(2, 3, 1);
    EXPECT_EQ("", Differences({{"rank", "2"},
                               {"sizes", "2 3 1"},
                               {"origSizes", "2 3 1"},
                               {"step3", "00 00 80 3E"},
                               {"coords3", "00 00 00 00"}},
                              FieldsOf(m)));
}

TEST(MatrixSizes, OldCoordinatesAreKept)
{
    CubeMatrix m;
    m.Size(1, 9, 2);
    EXPECT_EQ(FloatsHex({10}), Coords(m, 1));
    EXPECT_EQ(FloatsHex({1, 2, 4}), FloatsHex(m.dims[1].Data(), 3));
    EXPECT_EQ(CubeFields()["coords3"], Coords(m, 3));
    EXPECT_EQ(0.5f, m.GetStep(1));
    EXPECT_EQ(0.0f, m.GetStep(2));
}

struct {
    float step;
    float base; // the first of the new coordinates, which stays what it is
    std::vector<float> grown;
} const growth[] = {
    {0.25f, 30, {10, 20, 30, 30.25f, 30.5f, 30.75f}},
    {0, 30, {10, 20, 30, 31, 32, 33}},
    {-4, 30, {10, 20, 30, 31, 32, 33}},
    {1e-3f, 16777216, {10, 20, 16777216, 16777216, 16777216, 16777216}},
    {nan, 30, {10, 20, 30, 31, 32, 33}},
};

TEST(MatrixSizes, FirstNewCoordinateIsTheBaseOfThoseBehindIt)
{
    for (auto const &row : growth) {
        SCOPED_TRACE(row.step);
        Axis m({10, 20, row.base, 99, 99, 99, 99, 99});
        m.ReSize(2, 1, 1); // the block stays
        m.dims[0].step = row.step;
        m.ReSize(6, 1, 1);
        EXPECT_EQ(FloatsHex(row.grown), Coords(m, 1));
        EXPECT_EQ(6, m.GetOrigSize(1));
    }
}

TEST(MatrixSizes, NewCoordinatesOfAFreshMatrixRiseFromTheFirstNewOne)
{
    OpenMatrix m(5, 300, 4);
    for (int d = 1; d <= 3; ++d) {
        SCOPED_TRACE(d);
        for (int k = 1; 1 + k < m.GetSize(d); ++k)
            ASSERT_EQ(static_cast<float>(k) + m.GetCoord(d, 1), m.GetCoord(d, 1 + k)) << k;
    }
}

TEST(MatrixSizes, OneMoreCoordinateIsLeftAsItIs)
{
    Axis m({10, 20, 30, 99});
    m.ReSize(2, 1, 1);
    m.ReSize(3, 1, 1);
    EXPECT_EQ(FloatsHex({10, 20, 30}), Coords(m, 1));
}

// ---- Coordinates and steps ---------------------------------------------------------------------------------------

TEST(MatrixCoords, OutOfRangeGivesMinus1)
{
    CubeMatrix m;
    for (int const d : noDimension) {
        EXPECT_EQ(-1.0f, m.GetStep(d)) << d;
        EXPECT_EQ(-1.0f, m.GetCoord(d, 0)) << d;
        EXPECT_EQ(-1, m.GetSize(d)) << d;
        EXPECT_EQ(-1, m.GetOrigSize(d)) << d;
    }
    for (int const i : {INT_MIN, -1, 3, 4, INT_MAX}) EXPECT_EQ(-1.0f, m.GetCoord(2, i)) << i;
    EXPECT_EQ(4.0f, m.GetCoord(2, 2));
    EXPECT_EQ(0.25f, m.GetStep(3));
}

TEST(MatrixCoords, DimensionBeyondTheRankAnswersToo)
{
    OtherMatrix m;
    EXPECT_EQ(16.0f, m.GetStep(3));
    EXPECT_EQ(0.0f, m.GetCoord(3, 0));
    EXPECT_EQ(-1.0f, m.GetCoord(3, 1));
}

TEST(MatrixCoords, StepAboveZeroSetsAllCoordinates)
{
    OpenMatrix m(4, 1, 1);
    m.SetStep(1, 0.5f, 10);
    EXPECT_EQ(FloatsHex({10, 10.5f, 11, 11.5f}), Coords(m, 1));
    EXPECT_EQ(0.5f, m.GetStep(1));
    m.SetStep(1, 0.1f, 0.1f); // in single precision
    EXPECT_EQ("CD CC CC 3D CD CC 4C 3E 9A 99 99 3E CD CC CC 3E", Coords(m, 1));
}

TEST(MatrixCoords, ProductIsRoundedBeforeTheSum)
{
    OpenMatrix m(4, 1, 1);
    m.SetStep(1, 0.1f, -0.3f); // 3 * 0.1 is 0.3 in single precision, below it otherwise
    EXPECT_EQ("00 00 00 00", HexOf(m.GetCoord(1, 3)));
}

TEST(MatrixCoords, StepOfZeroOrLessLeavesTheCoordinates)
{
    for (float const step : {0.0f, -0.0f, -1.0f, -INFINITY, nan}) {
        SCOPED_TRACE(step);
        CubeMatrix m;
        m.SetStep(1, step, 99);
        EXPECT_EQ(HexOf(step), HexOf(m.GetStep(1)));
        EXPECT_EQ(CubeFields()["coords1"], Coords(m, 1));
        m.SetCoord(1, 1, 77); // which works from then on
        EXPECT_EQ(77.0f, m.GetCoord(1, 1));
    }
}

TEST(MatrixCoords, StepOfNoDimensionDoesNothing)
{
    CubeMatrix m;
    for (int const d : noDimension) m.SetStep(d, 2, 3);
    EXPECT_EQ("", Differences(CubeFields(), m));
}

TEST(MatrixCoords, SingleCoordinatesOfAUniformAxisStay)
{
    OpenMatrix m(4, 1, 1);
    m.SetStep(1, 0.5f, 10);
    m.SetCoord(1, 2, 99);
    m.SetCoord(1, 0, 99);
    EXPECT_EQ(FloatsHex({10, 10.5f, 11, 11.5f}), Coords(m, 1));
}

TEST(MatrixCoords, CoordinateIsRaisedToTheOneBefore)
{
    Axis m({1, 2, 3});
    m.SetCoord(1, 1, 0);
    EXPECT_EQ(FloatsHex({1, 1, 3}), m.Coords());
    m.SetCoord(1, 1, -INFINITY);
    EXPECT_EQ(FloatsHex({1, 1, 3}), m.Coords());
    m.SetCoord(1, 2, 1.5f);
    EXPECT_EQ(FloatsHex({1, 1, 1.5f}), m.Coords());
    m.SetCoord(1, 0, 99); // nothing is before the first
    EXPECT_EQ(FloatsHex({99, 1, 1.5f}), m.Coords());
}

TEST(MatrixCoords, CoordinateBehindZeroIsRaisedBy1em30)
{
    Axis m({0, 5, 5});
    m.SetCoord(1, 1, 0);
    EXPECT_EQ("60 42 A2 0D", HexOf(m.GetCoord(1, 1)));
    m.SetCoord(1, 2, -1);
    EXPECT_EQ("60 42 22 0E", HexOf(m.GetCoord(1, 2))); // twice that
}

TEST(MatrixCoords, CoordinateOutOfRangeIsNotSet)
{
    CubeMatrix m;
    for (int const d : noDimension) m.SetCoord(d, 0, 99);
    for (int const i : {INT_MIN, -1, 3, INT_MAX}) m.SetCoord(2, i, 99);
    EXPECT_EQ("", Differences(CubeFields(), m));
}

TEST(MatrixCoords, AllCoordinatesAreACopy)
{
    CubeMatrix m;
    DArray<float, 0> coords = m.GetAllCoords(2);
    EXPECT_EQ(FloatsHex({1, 2, 4}), ArrayHex(coords));
    EXPECT_EQ(1, coords.RCount());
    coords[0] = 99;
    EXPECT_EQ(1.0f, m.GetCoord(2, 0));
    for (int const d : noDimension) EXPECT_EQ(CubeFields()["coords1"], Coords(m, d)) << d;
}

TEST(MatrixCoords, SettingAllMakesTheAxisExplicit)
{
    CubeMatrix m;
    m.SetAllCoords(1, FloatArray({7, -7})); // as they are, falling too
    EXPECT_EQ("", Differences(With(CubeFields(), {{"step1", "00 00 00 00"}, {"coords1", FloatsHex({7, -7})}}), m));
    m.SetAllCoords(1, m.dims[0]); // its own
    EXPECT_EQ(FloatsHex({7, -7}), Coords(m, 1));
}

TEST(MatrixCoords, SettingAllByTheWrongNumberDoesNothing)
{
    CubeMatrix m;
    for (std::vector<float> const &coords : {std::vector<float>(), {1}, {1, 2, 3}})
        m.SetAllCoords(1, FloatArray(coords));
    for (int const d : noDimension) m.SetAllCoords(d, FloatArray({7, 8}));
    EXPECT_EQ("", Differences(CubeFields(), m));
}

// ---- A stretch of an axis ------------------------------------------------------------------------------------------

struct {
    float low, high;
    std::vector<float> coords;
} const stretches[] = {
    {1.5f, 2.5f, {2}},       {9, 10, {4}},        {-5, -4, {1}},     {2, 3, {2, 3}},     {1, 4, {1, 2, 3, 4}},
    {-99, 99, {1, 2, 3, 4}}, {3, 2, {3}},         {2.1f, 2.9f, {3}}, {4, 4, {4}},        {1, 1, {1}},
    {2.5f, 99, {3, 4}},      {-99, 2.5f, {1, 2}}, {99, -99, {4}},    {9.8e34f, 99, {4}}, {-99, -9.8e34f, {1}},
};

TEST(MatrixStretch, HoldsTheCoordinatesWithinTheRange)
{
    Axis const m({1, 2, 3, 4});
    for (auto const &row : stretches) {
        SCOPED_TRACE(std::to_string(row.low) + " to " + std::to_string(row.high));
        DArray<float, 0> const stretch = m.GetPartialCoords(1, row.low, row.high);
        EXPECT_EQ(FloatsHex(row.coords), ArrayHex(stretch));
        EXPECT_EQ(1, stretch.RCount());
    }
}

TEST(MatrixStretch, InvalidLimitIsOpen)
{
    Axis const m({1, 2, 3, 4});
    for (float const open : wrong) {
        SCOPED_TRACE(open);
        EXPECT_EQ(FloatsHex({1, 2, 3, 4}), ArrayHex(m.GetPartialCoords(1, open, open)));
        EXPECT_EQ(FloatsHex({3, 4}), ArrayHex(m.GetPartialCoords(1, 2.5f, open)));
        EXPECT_EQ(FloatsHex({1, 2}), ArrayHex(m.GetPartialCoords(1, open, 2.5f)));
    }
}

TEST(MatrixStretch, StopsAtTheFirstCoordinateThatIsReached)
{
    Axis const m({5, 1, 5, 1}); // an axis that falls
    EXPECT_EQ(FloatsHex({5, 1, 5, 1}), ArrayHex(m.GetPartialCoords(1, 3, 4)));
    EXPECT_EQ(FloatsHex({5, 1}), ArrayHex(Axis({1, 5, 1, 5}).GetPartialCoords(1, 3, 4)));
}

TEST(MatrixStretch, OfNoDimensionOrAnEmptyOneIsEmpty)
{
    OpenMatrix m(5, 1, 4);
    for (int const d : noDimension) EXPECT_EQ(0, m.GetPartialCoords(d, 0, 1).Count()) << d;
    m.Collapse();
    EXPECT_EQ(0, m.GetPartialCoords(3, 0, 1).Count());
}

// ---- Axes that are copied, exchanged, removed ----------------------------------------------------------------------

TEST(MatrixAxes, CopyTakesCoordinatesStepAndOriginalSize)
{
    CubeMatrix const cube;
    OtherMatrix m;
    Fields const before = FieldsOf(m);
    m.CopyCoords(3, 2, cube);
    m.dims[1].origSize = 77;
    m.CopyCoords(1, 2, m);
    EXPECT_EQ("", Differences(With(before, {{"sizes", "2 2 3"}, // the rank and the values stay
                                            {"origSizes", "77 77 3"},
                                            {"step1", before.at("step2")},
                                            {"coords1", before.at("coords2")},
                                            {"step3", "00 00 00 00"},
                                            {"coords3", FloatsHex({1, 2, 4})}}),
                              m));
}

TEST(MatrixAxes, CopyOntoItselfChangesNothing)
{
    CubeMatrix m;
    for (int d = 1; d <= 3; ++d) m.CopyCoords(d, d, m);
    EXPECT_EQ("", Differences(CubeFields(), m));
}

TEST(MatrixAxes, SwapExchangesStepsAndCoordinatesAlone)
{
    CubeMatrix m;
    m.SwapCoords(1, 2);
    EXPECT_EQ("", Differences(With(CubeFields(), {{"sizes", "3 2 2"}, // the original sizes and the values stay
                                                  {"step1", CubeFields()["step2"]},
                                                  {"step2", CubeFields()["step1"]},
                                                  {"coords1", CubeFields()["coords2"]},
                                                  {"coords2", CubeFields()["coords1"]}}),
                              m));
}

struct {
    int rank, d1, d2;
    bool swaps;
} const swaps[] = {
    {2, 1, 2, true},        {2, 2, 1, false},  {2, 1, 3, false},
    {2, 3, 1, false},       {2, 2, 3, false},  {2, 0, 1, false},
    {2, 1, 0, false},       {2, 1, 1, false},  {2, 2, 2, false},
    {3, 1, 2, true},        {3, 2, 1, true},   {3, 1, 3, true},
    {3, 2, 3, true},        {3, 3, 1, false},  {3, 3, 2, false},
    {3, 3, 3, false},       {3, 1, 4, false},  {3, 4, 1, false},
    {3, -1, 2, false},      {3, 1, -1, false}, {3, INT_MIN, INT_MAX, false},
    {3, 1, INT_MAX, false}, {3, 2, 2, false},
};

TEST(MatrixAxes, FirstOfASwapCannotBeTheLastDimension)
{
    for (auto const &row : swaps) {
        SCOPED_TRACE("rank " + std::to_string(row.rank) + ": " + std::to_string(row.d1) + ", " +
                     std::to_string(row.d2));
        OpenMatrix m(2, 3, row.rank == 3 ? 4 : 1);
        int expected[] = {2, 3, row.rank == 3 ? 4 : 1};
        if (row.swaps) std::swap(expected[row.d1 - 1], expected[row.d2 - 1]);
        m.SwapCoords(row.d1, row.d2);
        for (int d = 1; d <= 3; ++d) EXPECT_EQ(expected[d - 1], m.GetSize(d)) << d;
    }
}

TEST(MatrixAxes, PointIsTheFirstCoordinateThatIsReached)
{
    Axis const m({1, 2, 3, 3, 2});
    struct {
        float value;
        int point;
    } const rows[] = {{2.5f, 2}, {9, 4},   {-9, 0},       {1, 0},        {1.00001f, 1},
                      {3, 2},    {nan, 4}, {INFINITY, 4}, {-INFINITY, 0}};
    for (auto const &row : rows) EXPECT_EQ(row.point, m.PointAtCoord(1, row.value)) << row.value;
    EXPECT_EQ(2, Axis({1, 2, 3}).PointAtCoord(1, 9));
}

TEST(MatrixAxes, PointIsLookedForInUsedDimensionsAlone)
{
    OpenMatrix m(2, 3, 1);
    m.CopyCoords(3, 2, m);
    m.SetStep(3, 1, 0);
    for (int const d : {INT_MIN, -1, 0, 3, 4, INT_MAX}) EXPECT_EQ(0, m.PointAtCoord(d, 2)) << d;
    CubeMatrix const cube;
    EXPECT_EQ(1, cube.PointAtCoord(3, -0.9f));
    for (int const d : {0, 4}) EXPECT_EQ(0, cube.PointAtCoord(d, 99)) << d;
}

TEST(MatrixAxes, PointOnAnEmptyAxisIsMinus1)
{
    OpenMatrix m(2, 3, 1);
    m.dims[1].Clear();
    EXPECT_EQ(-1, m.PointAtCoord(2, 0));
}

struct {
    int n1, n2, n3;
    bool collapses;
    char const *sizes;
} const collapses[] = {
    {5, 1, 4, true, "5 4 0"},  {1, 5, 4, true, "5 4 0"},  {5, 4, 3, false, "5 4 3"}, {1, 1, 4, true, "1 4 0"},
    {5, 1, 1, false, "5 1 1"}, {5, 4, 1, false, "5 4 1"}, {1, 4, 2, true, "4 2 0"},
};

TEST(MatrixCollapse, TakesADimensionOfSize1OutOfThree)
{
    for (auto const &row : collapses) {
        SCOPED_TRACE(std::to_string(row.n1) + " " + std::to_string(row.n2) + " " + std::to_string(row.n3));
        OpenMatrix m(row.n1, row.n2, row.n3);
        m.Fill(1);
        Fields const before = FieldsOf(m);
        m.Collapse();
        Fields const after = FieldsOf(m);
        EXPECT_EQ(row.sizes, after.at("sizes"));
        EXPECT_EQ(row.collapses ? "2" : before.at("rank"), after.at("rank"));
        for (char const *const same : {"values", "count", "origSizes"}) EXPECT_EQ(before.at(same), after.at(same));
    }
}

TEST(MatrixCollapse, KeepsTheOrderAndTheStepsOfTheOthers)
{
    CubeMatrix m;
    m.Size(1, 3, 2);
    m.SetStep(1, 64, 0);
    m.Collapse();
    EXPECT_EQ("", Differences({{"rank", "2"},
                               {"sizes", "3 2 0"},
                               {"origSizes", "1 3 2"}, // these keep their places
                               {"step1", "00 00 00 00"},
                               {"step2", "00 00 80 3E"},
                               {"step3", "00 00 80 42"},
                               {"coords1", FloatsHex({1, 2, 4})},
                               {"coords2", CubeFields()["coords3"]},
                               {"coords3", ""}},
                              FieldsOf(m)));
}

TEST(MatrixCollapse, OfDimensionsOfSize1TakesTheLast)
{
    OpenMatrix m(1, 1, 4);
    m.SetStep(1, 2, 0);
    m.SetStep(2, 3, 0);
    m.SetStep(3, 4, 0);
    m.Collapse();
    EXPECT_EQ(2.0f, m.GetStep(1));
    EXPECT_EQ(4.0f, m.GetStep(2));
    EXPECT_EQ(3.0f, m.GetStep(3));
}

TEST(MatrixCollapse, TakesAnEmptyDimensionAndALastOneOfSize1)
{
    OpenMatrix empty(2, 3, 4);
    empty.dims[0].Clear();
    empty.Collapse();
    EXPECT_EQ("3 4 0", FieldsOf(empty)["sizes"]);
    CubeMatrix last; // as a reading of one slice leaves it
    last.dims[2].ReSize(1);
    last.Collapse();
    EXPECT_EQ("", Differences(With(CubeFields(), {{"rank", "2"}, {"sizes", "2 3 0"}, {"coords3", ""}}), last));
}

TEST(MatrixCollapse, OnceIsEnough)
{
    OpenMatrix m(1, 1, 4);
    m.Collapse();
    Fields const once = FieldsOf(m);
    m.Collapse();
    EXPECT_EQ("", Differences(once, m));
}

TEST(MatrixCollapse, SizingAfterItGivesAWholeMatrixAgain)
{
    OpenMatrix m(5, 1, 4);
    m.Collapse();
    m.Size(2, 2, 1);
    EXPECT_EQ("", Differences({{"sizes", "2 2 1"}, {"coords3", "00 00 00 00"}, {"count", "4"}}, FieldsOf(m)));
    m.Collapse();
    m.ReSize(2, 2, 2);
    EXPECT_EQ("", Differences({{"rank", "3"}, {"sizes", "2 2 2"}, {"count", "8"}}, FieldsOf(m)));
}

// ---- Parameters --------------------------------------------------------------------------------------------------

struct Parameter {
    char const *code;
    float value;
};

void ExpectParameters(OpenMatrix const &m, std::vector<Parameter> const &rows)
{
    for (Parameter const &row : rows) EXPECT_EQ(HexOf(row.value), HexOf(m.GetMatrixParam(row.code))) << row.code;
}

std::vector<Parameter> const cubeParameters = {
    {"t1", 1.5f}, {"t2", 2.5f}, {"t3", 3.5f}, {"t4", 4.5f},  {"t5", 5.5f},  {"su", 5},     {"mx", 12},     {"mn", 1},
    {"rc", 2},    {"rs", 0.5f}, {"rb", 10},   {"r1", 0.5f},  {"re", 10.5f}, {"cc", 3},     {"cs", 0},      {"cb", 1},
    {"c1", 1},    {"ce", 4},    {"lc", 2},    {"ls", 0.25f}, {"lb", -1},    {"l1", 0.25f}, {"le", -0.75f},
};

TEST(MatrixParameters, EveryCodeHasItsNumber)
{
    ExpectParameters(CubeMatrix(), cubeParameters);
}

TEST(MatrixParameters, CaseDoesNotCount)
{
    CubeMatrix const m;
    for (Parameter const &row : cubeParameters) {
        DString const upper = DString(row.code).ToUpper();
        EXPECT_EQ(HexOf(row.value), HexOf(m.GetMatrixParam(upper))) << upper.c_str();
    }
    EXPECT_EQ(5.0f, m.GetMatrixParam("Su"));
    EXPECT_EQ(2.0f, m.GetMatrixParam("rC"));
}

TEST(MatrixParameters, AnythingElseIsMinusTheLargestNumber)
{
    CubeMatrix const m;
    std::vector<DString> codes = {DString(),
                                  "",
                                  "xx",
                                  "t",
                                  "t0",
                                  "t6",
                                  "rcc",
                                  " rc",
                                  "rc ",
                                  "r",
                                  "rx",
                                  "1r",
                                  "\xF2"
                                  "c"};
    codes.push_back(Dstr(std::string(100000, 'r')));
    for (DString const &code : codes) EXPECT_EQ("B0 43 78 FF", HexOf(m.GetMatrixParam(code))) << code.Len();
}

TEST(MatrixParameters, CodeStaysAsItWas)
{
    DString const code = "RC";
    CubeMatrix().GetMatrixParam(code);
    EXPECT_EQ("RC", Plain(code));
}

TEST(MatrixParameters, IntervalNeedsTwoPoints)
{
    OpenMatrix m(1, 1, 1);
    for (int d = 1; d <= 3; ++d) m.SetStep(d, 2, 5);
    ExpectParameters(m, {{"r1", 0}, {"c1", 0}, {"l1", 0}, {"rb", 5}, {"re", 5}, {"ce", 5}, {"le", 5}, {"lc", 1}});
}

TEST(MatrixParameters, IntervalIsThatOfTheCoordinatesNotTheStep)
{
    OpenMatrix m(2, 2, 2);
    for (int d = 1; d <= 3; ++d) {
        m.SetAllCoords(d, FloatArray({1, static_cast<float>(d)}));
        m.dims[d - 1].step = 64;
    }
    ExpectParameters(m, {{"r1", 0}, {"c1", 1}, {"l1", 2}, {"rs", 64}, {"cs", 64}, {"ls", 64}});
}

TEST(MatrixParameters, LastDimensionNotInUseIsOnePoint)
{
    ExpectParameters(OtherMatrix(), {{"lc", 1}, {"ls", 16}, {"lb", 0}, {"l1", 0}, {"le", 0}});
}

TEST(MatrixParameters, EmptyAxisAnswers)
{
    OpenMatrix m(5, 1, 4);
    m.Collapse(); // its third size is 0, and the original one stays
    EXPECT_EQ(4.0f, m.GetMatrixParam("lc"));
    EXPECT_EQ(1.0f, m.GetMatrixParam("cc"));
    for (char const *const code : {"lb", "l1", "le"}) EXPECT_EQ(0.0f, m.GetMatrixParam(code)) << code;
}

class MatrixParametersOfAFile : public MatrixFile {};

TEST_F(MatrixParametersOfAFile, TellTheWholeSizeAndTheLastCoordinateThatWasKept)
{
    OpenMatrix sheet;
    FieldsReadInto(sheet, SheetRows().Bytes(), 3, 0);
    ExpectParameters(sheet, {{"cc", 5}, {"cb", 10}, {"c1", 10}, {"ce", 30}, {"rc", 2}, {"re", 4}, {"lc", 1}});
    OpenMatrix cube;
    FieldsReadInto(cube, CubeRows().Bytes(), 1, 0);
    ExpectParameters(cube, {{"lc", 2}, {"ls", 0.25f}, {"lb", -1}, {"le", -1}});
    OpenMatrix row; // of rank 1: "rc" is the size in memory
    DmtRows rows = SheetRows().Set("rank", "01 00 00 00").Set("size1", "05 00 00 00");
    rows.Set("size2", "").Set("step2", "").Set("coords2", "");
    FieldsReadInto(row, rows.Bytes(), 3, 0);
    ExpectParameters(row, {{"rc", 3}, {"re", 5}});
    FieldsReadInto(row, rows.Bytes(), 0, 0);
    ExpectParameters(row, {{"rc", 1}, {"r1", 0}, {"re", 3}});
}

TEST_F(MatrixParametersOfAFile, TellTheFirstIntervalAfterOneSliceToo)
{
    OpenMatrix sheet;
    FieldsReadInto(sheet, SheetRows().Bytes(), 0, 0);
    ExpectParameters(sheet, {{"cc", 5}, {"c1", 10}, {"cb", 10}, {"ce", 10}});
    OpenMatrix cube;
    FieldsReadInto(cube, CubeRows().Bytes(), 2, 1);
    ExpectParameters(cube, {{"lc", 2}, {"l1", 0.25f}, {"lb", -1}, {"le", -1}});
}

TEST_F(MatrixParametersOfAFile, TellTheSizeThatAFileAnnounces)
{
    OpenMatrix m;
    FieldsReadInto(m, SheetRows().Set("size2", "FE FF FF FF").Set("coords2", "").Bytes());
    ExpectParameters(m, {{"cc", -2}, {"c1", 0}});
    EXPECT_EQ(0, m.GetSize(2));
}

} // namespace
