// The list of shapes in memory, and the box around them by the type of each.

#include <climits>
#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/Geometry.h"
#include "support/FreshSystem.h"
#include "support/Hex.h"
#include "support/LittleEndian.h"

namespace {

using Floats = std::vector<float>;

Object Shape(int type, Floats const &params, Floats const &position = {0, 0, 0})
{
    Object shape;
    shape.type = type;
    for (float value : params) shape.params.Add(value);
    for (std::size_t axis = 0; axis < 3; ++axis) shape.position[axis] = position[axis];
    return shape;
}

Geometry List(std::vector<Object> const &shapes)
{
    Geometry list;
    for (Object const &shape : shapes) list.Add(shape);
    return list;
}

/// The box after `Scale`, "x y z to x y z".
std::string Box(Geometry &list)
{
    list.Scale();
    std::string text;
    for (float value : {list.Min(0), list.Min(1), list.Min(2)}) text += testing::PrintToString(value) + " ";
    text += "to";
    for (float value : {list.Max(0), list.Max(1), list.Max(2)}) text += " " + testing::PrintToString(value);
    return text;
}

std::string BoxOf(std::vector<Object> const &shapes)
{
    Geometry list = List(shapes);
    return Box(list);
}

/// Inner and outer radius of the last shape after `Scale`, which were -1 and -2 before it.
std::string RadiiOf(std::vector<Object> shapes)
{
    shapes.back().innerRadius = -1;
    shapes.back().outerRadius = -2;
    Geometry list = List(shapes);
    list.Scale();
    return testing::PrintToString(list.Last().innerRadius) + " " + testing::PrintToString(list.Last().outerRadius);
}

std::string Names(Geometry const &list)
{
    std::string names;
    for (int i = 0; i < list.Count(); ++i) names += Plain(list[i].name);
    return names;
}

Geometry Named(std::string const &names)
{
    Geometry list;
    for (char name : names) {
        list.AddBlank(1);
        list.Last().name = DString(name);
    }
    return list;
}

// ---- The list ----

TEST(GeometryList, ANewShapeHasItsValues)
{
    Geometry list;
    list.AddBlank(1);
    Object const &shape = list.Last();
    EXPECT_EQ("", Plain(shape.name));
    EXPECT_EQ(0, shape.type);
    EXPECT_EQ(3, shape.style1);
    EXPECT_EQ(0, shape.style2);
    EXPECT_EQ(0, shape.style3);
    EXPECT_EQ(0, shape.params.Count());
    EXPECT_EQ(0.0f, shape.innerRadius);
    EXPECT_EQ(0.0f, shape.outerRadius);
    EXPECT_EQ(0.0f, shape.startAngle);
    EXPECT_EQ(360.0f, shape.endAngle);
    EXPECT_EQ(0x3DCCCCCDu, BitsOf(shape.attr1)); // 0.1
    EXPECT_EQ(1, shape.attr3);
    EXPECT_EQ(0, shape.attr5);
    EXPECT_EQ(1.0f, shape.attr6);
    EXPECT_EQ(0, shape.attr7);
}

TEST(GeometryList, ANewListIsEmpty)
{
    Geometry list;
    EXPECT_EQ(0, list.nObjects());
    EXPECT_EQ("", Plain(list.units + list.note + list.stamp));
}

TEST(GeometryList, CopiesHaveShapesTextsAndBounds)
{
    Geometry source = List({Shape(1, {2}, {1, 0, 0}), Shape(9, {1, 2, 3})});
    source.Scale();
    source.units = "u";
    source.note = "n";
    source.stamp = "s";
    Geometry assigned = Named("xyz");
    assigned = source;
    for (Geometry const &copy : {Geometry(source), assigned}) {
        EXPECT_EQ(2, copy.nObjects());
        EXPECT_EQ("u n s", Plain(copy.units + " " + copy.note + " " + copy.stamp));
        EXPECT_EQ(BytesOf(source.maxCoords, 3), BytesOf(copy.maxCoords, 3));
        EXPECT_EQ(BytesOf(source.minCoords, 3), BytesOf(copy.minCoords, 3));
        EXPECT_EQ(2.0f, copy[0].outerRadius);
        EXPECT_EQ(FloatsBytes({1, 2, 3}), BytesOf(copy[1].params.Data(), copy[1].params.Count()));
        EXPECT_NE(source[1].params.Data(), copy[1].params.Data());
    }
}

TEST(GeometryList, AssignmentToItselfKeepsAll)
{
    Geometry list = Named("abc");
    list.units = "u";
    Geometry const &same = list;
    list = same;
    EXPECT_EQ("abc", Names(list));
    EXPECT_EQ("u", Plain(list.units));
}

TEST(GeometryList, DeleteObjectMovesTheFollowingUp)
{
    struct {
        char const *before;
        int i;
        char const *after;
    } const table[] = {
        {"abc", 0, "bc"},  {"abc", 1, "ac"},       {"abc", 2, "ab"}, {"abc", 3, "ab"},
        {"abc", 99, "ab"}, {"abc", INT_MAX, "ab"}, {"a", 0, ""},     {"a", 5, ""},
        {"", 0, ""},       {"", 99, ""},           {"", -1, ""},
    };
    for (auto const &row : table) {
        Geometry list = Named(row.before);
        list.DeleteObject(row.i);
        EXPECT_EQ(row.after, Names(list)) << row.before << " " << row.i;
    }
}

TEST(GeometryList, ANegativeIndexDeletesNothing)
{
    Geometry list = Named("abc");
    list.DeleteObject(-1);
    list.DeleteObject(INT_MIN);
    EXPECT_EQ("abc", Names(list));
}

TEST(GeometryList, CleanupRemovesAll)
{
    struct Open : Geometry {
        using Geometry::Cleanup;
    } list;
    list.AddBlank(3);
    list.units = "u";
    list.Cleanup();
    EXPECT_EQ(0, list.nObjects());
    EXPECT_EQ("u", Plain(list.units));
}

TEST(GeometryList, AListGoesThroughAPointerToItsArray)
{
    auto *list = new Geometry(List({Shape(1, Floats(1000, 2.0f))}));
    list->units = std::string(1000, 'u').c_str(); // the leak checker would tell
    list->Last().name = std::string(1000, 'n').c_str();
    DArray<Object, 1> *const base = list;
    delete base;
}

TEST(GeometryList, BoundsOfAnAxisThatThereIsNotAreZero)
{
    Geometry list = List({Shape(1, {2}, {5, 5, 5})});
    list.Scale();
    for (int axis : {-1, 3, 4, INT_MAX, INT_MIN}) {
        EXPECT_EQ(0.0f, list.Max(axis)) << axis;
        EXPECT_EQ(0.0f, list.Min(axis)) << axis;
    }
    EXPECT_EQ(7.0f, list.Max(2));
    EXPECT_EQ(3.0f, list.Min(0));
}

// ---- The box ----

TEST(GeometryScale, WithoutShapesTheBoundsAreTheStartingValues)
{
    Geometry list;
    list.Scale();
    for (int axis = 0; axis < 3; ++axis) {
        EXPECT_EQ(0xFF7843B0u, BitsOf(list.Max(axis)));
        EXPECT_EQ(0x7F7843B0u, BitsOf(list.Min(axis)));
    }
}

TEST(GeometryScale, EachTypeHasItsExtentsAndRadii)
{
    // Radii that a type doesn't set stay -1 and -2. A sphere-like shape of radius 9 far off goes before it.
    struct {
        int type;
        Floats params;
        char const *box, *radii;
    } const table[] = {
        {1, {2}, "-2 -2 -2 to 2 2 2", "-1 2"},
        {1, {2, 7, 8}, "-2 -2 -2 to 2 2 2", "-1 2"},
        {2, {5, 1}, "-6 -6 -1 to 6 6 1", "4 6"},
        {2, {1, 5}, "-6 -6 -5 to 6 6 5", "-4 6"},
        {3, {1, 4}, "-1 -1 0 to 1 1 4", "-1 1"},
        {4, {1, 4, 7}, "-9 -9 -9 to 9 9 9", "-1 -2"},
        {5, {1, 4, 7}, "-9 -9 -9 to 9 9 9", "-1 -2"},
        {6, {1, 4, 3}, "-3 -3 0 to 3 3 4", "1 3"},
        {7, {1, 5, 3, -2, 2}, "-3 -3 -2 to 3 3 5", "2 3"},
        {8, {1, 5, 3, -2, 2}, "-3 -3 -2 to 3 3 5", "2 3"},
        {9, {1, 2, 3}, "-1 -2 0 to 1 2 3", "-1 -2"},
        {10, {1, 2, 3, -4, 5, 0}, "-4 2 0 to 1 5 3", "-1 -2"},
        {11, {1, 2, 3, -4, 5, 0}, "-4 2 0 to 1 5 3", "-1 -2"},
        {12, {1, 2, 3, -4, 5, 0}, "-4 2 0 to 1 5 3", "-1 -2"},
    };
    for (auto const &row : table) {
        Object const before = Shape(1, {9});
        EXPECT_EQ(row.radii, RadiiOf({before, Shape(row.type, row.params)})) << "type " << row.type;
        // what stands at the place of the sphere doesn't count: the shape is alone, 1000 behind it
        Geometry list = List({before, Shape(row.type, row.params, {1000, 1000, 1000})});
        std::string const both = Box(list);
        Floats expected;
        char *rest = const_cast<char *>(row.box);
        for (int i = 0; i < 6; ++i) {
            if (i == 3) rest += 3; // " to"
            expected.push_back(std::strtof(rest, &rest));
        }
        for (int axis = 0; axis < 3; ++axis) {
            EXPECT_EQ(-9.0f, list.Min(axis)) << "type " << row.type << ": " << both;
            EXPECT_EQ(1000 + expected[static_cast<std::size_t>(3 + axis)], list.Max(axis)) << "type " << row.type;
        }
        list = List({before, Shape(row.type, row.params, {-1000, -1000, -1000})});
        list.Scale();
        for (int axis = 0; axis < 3; ++axis)
            EXPECT_EQ(-1000 + expected[static_cast<std::size_t>(axis)], list.Min(axis)) << "type " << row.type;
    }
}

TEST(GeometryScale, TheExamplesOfEachType)
{
    EXPECT_EQ("-1 -2 -2 to 3 2 2", BoxOf({Shape(1, {2}, {1, 0, 0})}));
    EXPECT_EQ("-6 -6 -1 to 6 6 1", BoxOf({Shape(2, {5, 1})}));
    EXPECT_EQ("-1 -1 0 to 1 1 4", BoxOf({Shape(3, {1, 4})}));
    EXPECT_EQ("9 20 31 to 11 24 37", BoxOf({Shape(9, {1, 2, 6}, {10, 22, 31})}));
    EXPECT_EQ("11 22 33 to 11 22 33", BoxOf({Shape(10, {1, 2, 3}, {10, 20, 30})}));
}

TEST(GeometryScale, NegativeDimensionsTurnTheExtentsRound)
{
    EXPECT_EQ("2 2 2 to -2 -2 -2", BoxOf({Shape(1, {-2})}));
    EXPECT_EQ("-1 -1 0 to 1 1 -4", BoxOf({Shape(3, {1, -4})}));
}

TEST(GeometryScale, TheBoxCoversAllShapes)
{
    EXPECT_EQ("-12 -2 -2 to 2 2 104",
              BoxOf({Shape(1, {2}), Shape(3, {1, 4}, {0, 0, 100}), Shape(1, {2}, {-10, 0, 0})}));
}

TEST(GeometryScale, ShapesOfOtherTypesAreSkippedAndDisturbNothing)
{
    for (int type : {0, -1, 13, 14, INT_MAX, INT_MIN}) {
        Object const other = Shape(type, {100, 100, 100, 100, 100, 100}, {1000, 1000, 1000});
        EXPECT_EQ("-2 -2 -2 to 2 2 2", BoxOf({other, Shape(1, {2}), other})) << type;
        // what a type 4 takes over isn't that of the skipped one
        EXPECT_EQ("-2 -2 -2 to 12 2 2", BoxOf({Shape(1, {2}), other, Shape(4, {}, {10, 0, 0})})) << type;
        EXPECT_EQ("-1 -2", RadiiOf({other})) << type;
    }
}

TEST(GeometryScale, TypesFourAndFiveTakeTheExtentsOfTheShapeBefore)
{
    for (int type : {4, 5}) {
        Object const bare = Shape(type, {50, 50, 50}, {100, 200, 300});
        EXPECT_EQ("-2 -2 -2 to 102 202 302", BoxOf({Shape(1, {2}), bare})) << type;
        EXPECT_EQ("-6 -6 -1 to 106 206 301", BoxOf({Shape(2, {5, 1}), bare})) << type;
        EXPECT_EQ("-1 -2 0 to 101 202 303", BoxOf({Shape(9, {1, 2, 3}), bare})) << type;
        EXPECT_EQ("1 2 3 to 101 202 303", BoxOf({Shape(10, {1, 2, 3}), bare})) << type;
        EXPECT_EQ("-3 -3 -2 to 103 203 305", BoxOf({Shape(7, {1, 5, 3, -2, 2}), bare})) << type;
        EXPECT_EQ("-2 -2 -2 to 202 202 302", BoxOf({Shape(1, {2}), bare, Shape(type, {}, {200, 0, 0})})) << type;
    }
}

TEST(GeometryScale, TypesFourAndFiveComeFirstWithTheirPositionAlone)
{
    EXPECT_EQ("1 2 3 to 1 2 3", BoxOf({Shape(4, {9, 9, 9}, {1, 2, 3})})); // undefined; ours are 0
}

TEST(GeometryScale, AProfileBeginsItsInnerRadiusWithTheExtentInXOfTheShapeBefore)
{
    struct {
        Floats before; // radius of a sphere-like shape
        Floats profile;
        char const *radii;
    } const table[] = {
        {{2}, {1, 0, 3, 1, 4}, "2 4"}, // the smaller of 2, 3, 4
        {{9}, {1, 0, 3, 1, 4}, "3 4"}, // the first radius, 1, doesn't count
        {{9}, {7, 0, 3, 1, 4}, "3 7"}, // it does for the outer
        {{9}, {7}, "9 7"},             // no pair
        {{9}, {7, 1}, "9 7"},          // half a pair
        {{9}, {7, 1, 5, 2}, "5 7"},    // the last value isn't looked at
        {{9}, {-3, 0, -5, 1, -4}, "-5 -3"},
        {{-1}, {1, 0, 3}, "-1 3"},
    };
    for (auto const &row : table) {
        for (int type : {7, 8})
            EXPECT_EQ(row.radii, RadiiOf({Shape(1, row.before), Shape(type, row.profile)}))
                << testing::PrintToString(row.profile);
    }
}

TEST(GeometryScale, AProfileAfterAnotherBeginsWithThatOnesOuterRadius)
{
    EXPECT_EQ("4 8", RadiiOf({Shape(1, {9}), Shape(7, {1, 0, 4}), Shape(8, {8, 0, 6})}));
}

TEST(GeometryScale, AProfileReachesFromZeroInZ)
{
    EXPECT_EQ("-3 -3 0 to 3 3 7", BoxOf({Shape(7, {1, 5, 3, 7, 2})}));
    EXPECT_EQ("-3 -3 -7 to 3 3 0", BoxOf({Shape(7, {1, -5, 3, -7, 2})}));
    EXPECT_EQ("-3 -3 0 to 3 3 5", BoxOf({Shape(7, {1, 5, 3, 7})})); // half a pair
    EXPECT_EQ("-4 -4 0 to 4 4 0", BoxOf({Shape(7, {4})}));
}

TEST(GeometryScale, OnlyWholeTriplesArePoints)
{
    for (int type : {10, 11, 12}) {
        EXPECT_EQ("1 2 3 to 1 2 3", BoxOf({Shape(type, {1, 2, 3, 100})})) << type;
        EXPECT_EQ("1 2 3 to 1 2 3", BoxOf({Shape(type, {1, 2, 3, 100, -100})})) << type;
        EXPECT_EQ("-7 -8 -9 to -1 -2 -3", BoxOf({Shape(type, {-1, -2, -3, -7, -8, -9})})) << type; // 0 isn't one
    }
}

TEST(GeometryScale, PointsLeaveTheirExtentsToTheNextProfile)
{
    EXPECT_EQ("4 6", RadiiOf({Shape(10, {1, 2, 3, 4, 5, 6}), Shape(7, {1, 0, 5, 0, 6})}));
}

TEST(GeometryScale, EveryTypeBearsListsThatAreTooShort)
{
    for (int type = 1; type <= 12; ++type) {
        for (std::size_t n = 0; n < 8; ++n) {
            Geometry list = List({Shape(type, Floats(n, 0.0f), {1, 2, 3})});
            EXPECT_EQ("1 2 3 to 1 2 3", Box(list)) << type << " " << n; // a missing dimension is 0
        }
    }
    EXPECT_EQ("-5 -5 0 to 5 5 0", BoxOf({Shape(2, {5})}));
    EXPECT_EQ("-5 0 0 to 5 0 0", BoxOf({Shape(9, {5})}));
    EXPECT_EQ("0 0 0 to 0 0 4", BoxOf({Shape(6, {5, 4})}));
}

TEST(GeometryScale, SumsAreOfSinglePrecision)
{
    Geometry list = List({Shape(2, {16777216, 1}), Shape(1, {0.1f}, {16777216, 0, 0})});
    list.Scale();
    EXPECT_EQ(16777216.0f, list[0].outerRadius); // 2^24 + 1 is halfway, to even
    EXPECT_EQ(16777215.0f, list[0].innerRadius);
    EXPECT_EQ(16777216.0f, list.Max(0));
}

TEST(GeometryScale, ScaleAgainGivesTheSame)
{
    Geometry list = List({Shape(1, {2}, {1, 0, 0}), Shape(7, {1, 0, 3, 1, 4}), Shape(4, {}, {50, 0, 0})});
    std::string const once = Box(list);
    EXPECT_EQ(once, Box(list));
    EXPECT_EQ(2.0f, list[1].innerRadius);
}

TEST(GeometryScale, WhatIsNoNumberDoesNoHarm)
{
    float const nan = std::numeric_limits<float>::quiet_NaN(), infinity = std::numeric_limits<float>::infinity();
    for (int type = 1; type <= 12; ++type) {
        Geometry list = List({Shape(type, Floats(7, nan)), Shape(type, Floats(7, infinity)), Shape(1, {2})});
        list.Scale();
        EXPECT_LE(list.Min(0), -2) << type;
        EXPECT_GE(list.Max(2), 2) << type;
    }
}

} // namespace
