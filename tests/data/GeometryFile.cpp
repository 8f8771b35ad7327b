// The .dgm file: bytes in both directions, and files that are cut or that lie.

#include <climits>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/Geometry.h"
#include "support/Damage.h"
#include "support/FreshSystem.h"
#include "support/Hex.h"
#include "support/LittleEndian.h"

namespace {

std::string const oneHeader = "01 00 00 00  00 00 00 00  02 00 00 00"; // version, skip length, two shapes

/// Name "ab", numbers 1 to 18, two params.
std::string const firstShape = "02 00 00 00  61 62  01 00 00 00  02 00 00 00  03 00 00 00  04 00 00 00"
                               "00 00 A0 40  00 00 C0 40  00 00 E0 40"              // position 5, 6, 7
                               "00 00 00 41  00 00 10 41  00 00 20 41  00 00 30 41" // radii 8, 9, angles 10, 11
                               "02 00 00 00  00 00 40 41  00 00 50 41"              // params 12, 13
                               "00 00 60 41  0F 00 00 00  10 00 00 00  11 00 00 00" // attr1 14 to attr4 17
                               "12 00 00 00  00 00 98 41  14 00 00 00";             // attr5 18, attr6 19.0, attr7 20

/// No name, negative numbers, no params.
std::string const secondShape = "00 00 00 00  FF FF FF FF  FE FF FF FF  FD FF FF FF  FC FF FF FF"
                                "00 00 80 BF  00 00 00 C0  00 00 40 C0"
                                "00 00 80 C0  00 00 A0 C0  00 00 C0 C0  00 00 E0 C0"
                                "00 00 00 00"
                                "00 00 00 C1  FB FF FF FF  FA FF FF FF  F9 FF FF FF"
                                "F8 FF FF FF  00 00 10 C1  F7 FF FF FF";

std::string const bounds = "00 00 80 3F  00 00 00 40  00 00 40 40" // 1, 2, 3
                           "00 00 80 BF  00 00 00 C0  00 00 40 C0";

std::string const unitsAndNote = "02 00 00 00  6D 6D  03 00 00 00  67 61 73"; // mm, gas

std::string GoldenBytes()
{
    return FromHex(oneHeader + firstShape + secondShape + bounds + unitsAndNote + "04 00 00 00  74 68 65 6E"); // then
}

std::size_t const firstOffset = 12, firstLength = 90, secondLength = 80;
std::size_t const boundsOffset = firstOffset + firstLength + secondLength;
std::size_t const textsOffset = boundsOffset + 24;

/// The shape as it would stand in a file.
std::string ShapeBytes(Object const &shape)
{
    return TextBytes(Plain(shape.name)) + IntBytes(shape.type) + IntBytes(shape.style1) + IntBytes(shape.style2) +
           IntBytes(shape.style3) + BytesOf(shape.position, 3) +
           FloatsBytes({shape.innerRadius, shape.outerRadius, shape.startAngle, shape.endAngle}) +
           IntBytes(shape.params.Count()) + BytesOf(shape.params.Data(), shape.params.Count()) +
           FloatBytes(shape.attr1) + IntBytes(shape.attr2) + IntBytes(shape.attr3) + IntBytes(shape.attr4) +
           IntBytes(shape.attr5) + FloatBytes(shape.attr6) + IntBytes(shape.attr7);
}

std::string BoundsBytes(Geometry const &list)
{
    return BytesOf(list.maxCoords, 3) + BytesOf(list.minCoords, 3);
}

std::string Texts(Geometry const &list)
{
    return Plain(list.units) + "|" + Plain(list.note) + "|" + Plain(list.stamp);
}

/// Other values everywhere than those of the file.
Geometry OtherList()
{
    Geometry list;
    list.AddBlank(3);
    for (int i = 0; i < 3; ++i) {
        list[i].name = "old";
        list[i].params.Size(5);
    }
    for (int axis = 0; axis < 3; ++axis) list.maxCoords[axis] = 99, list.minCoords[axis] = 98;
    list.units = "old units";
    list.note = "old note";
    list.stamp = "old stamp";
    return list;
}

class GeometryFile : public testing::Test {
protected:
    GeometryFile() : system(false) { SetNotify(&system.listener); }

    DString Name(std::string const &stem) const { return Dstr(system.path(stem)); }
    std::string Disk(std::string const &stem) const { return system.folder.Read(stem + ".dgm"); }

    Geometry ReadBytes(std::string const &bytes, Geometry const &into = Geometry()) const
    {
        std::filesystem::remove(system.folder.native("read.dgm"));
        system.folder.Write("read.dgm", bytes);
        Geometry list = into;
        EXPECT_TRUE(list.Read(Name("read")));
        return list;
    }

    FreshSystem system;
};

// ---- Reading ----

TEST_F(GeometryFile, ReadsBytesWrittenByHand)
{
    Geometry const list = ReadBytes(GoldenBytes(), OtherList());
    ASSERT_EQ(2, list.nObjects());
    EXPECT_EQ(BoundsBytes(list), FromHex(bounds));
    EXPECT_EQ("mm|gas|then", Texts(list));
    Object const &first = list[0];
    EXPECT_EQ("ab", Plain(first.name));
    EXPECT_EQ((std::vector<int>{1, 2, 3, 4}), (std::vector<int>{first.type, first.style1, first.style2, first.style3}));
    EXPECT_EQ(FloatsBytes({5, 6, 7}), BytesOf(first.position, 3));
    EXPECT_EQ(FloatsBytes({8, 9, 10, 11}),
              FloatsBytes({first.innerRadius, first.outerRadius, first.startAngle, first.endAngle}));
    EXPECT_EQ(FloatsBytes({12, 13}), BytesOf(first.params.Data(), first.params.Count()));
    EXPECT_EQ(FloatsBytes({14, 19}), FloatsBytes({first.attr1, first.attr6}));
    EXPECT_EQ((std::vector<int>{15, 16, 17, 18, 20}),
              (std::vector<int>{first.attr2, first.attr3, first.attr4, first.attr5, first.attr7}));
    EXPECT_EQ(FromHex(secondShape), ShapeBytes(list[1]));
}

TEST_F(GeometryFile, TheReaderDoesntActOnTheVersion)
{
    for (int version : {0, 2, 255, -1, INT_MAX, INT_MIN}) {
        Geometry const list = ReadBytes(IntBytes(version) + GoldenBytes().substr(4));
        ASSERT_EQ(2, list.nObjects()) << version;
        EXPECT_EQ(FromHex(secondShape), ShapeBytes(list[1])) << version;
    }
}

TEST_F(GeometryFile, TheSkipLengthIsPassedOver)
{
    for (int skip : {1, 4, 5000}) {
        std::string const skipped(static_cast<std::size_t>(skip), '\xC9');
        Geometry const list = ReadBytes(IntBytes(1) + IntBytes(skip) + skipped + GoldenBytes().substr(8));
        ASSERT_EQ(2, list.nObjects()) << skip;
        EXPECT_EQ(FromHex(firstShape), ShapeBytes(list[0])) << skip;
        EXPECT_EQ("mm|gas|then", Texts(list)) << skip;
    }
}

TEST_F(GeometryFile, AnEmptyTextOfTheFileLeavesTheOldOneOfTheList)
{
    std::string const bytes =
        IntBytes(1) + IntBytes(0) + IntBytes(0) + FromHex(bounds) + TextBytes("") + TextBytes("new") + TextBytes("");
    Geometry const list = ReadBytes(bytes, OtherList());
    EXPECT_EQ("old units|new|old stamp", Texts(list));
    EXPECT_EQ(0, list.nObjects());
}

TEST_F(GeometryFile, AShapeHasNothingOfTheOneBeforeTheRead)
{
    Geometry const list = ReadBytes(IntBytes(1) + IntBytes(0) + IntBytes(1) + FromHex(secondShape), OtherList());
    ASSERT_EQ(1, list.nObjects());
    EXPECT_EQ(FromHex(secondShape), ShapeBytes(list[0])); // no old name, no old params
}

TEST_F(GeometryFile, AFileThatCantBeOpenedLeavesTheList)
{
    system.folder.MakeFolder("folder.dgm");
    Geometry list = OtherList();
    for (char const *stem : {"missing", "folder", "no\\where", ""}) {
        EXPECT_FALSE(list.Read(Name(stem))) << stem;
        EXPECT_EQ(3, list.nObjects());
        EXPECT_EQ("old", Plain(list[2].name));
        EXPECT_EQ("old units|old note|old stamp", Texts(list));
        EXPECT_EQ(99.0f, list.Max(0));
    }
}

// ---- Writing ----

TEST_F(GeometryFile, WritesTheFieldsInTheirOrder)
{
    Geometry list = ReadBytes(GoldenBytes());
    EXPECT_TRUE(list.Write(Name("written")));
    EXPECT_EQ(GoldenBytes().substr(0, textsOffset) + FromHex(unitsAndNote) + TextBytes(FreshSystem::Date),
              Disk("written"));
    EXPECT_EQ(FreshSystem::Date, Plain(list.stamp));
}

TEST_F(GeometryFile, AListFilledByHandIsWrittenLikewise)
{
    Geometry list;
    list.AddBlank(1);
    Object &shape = list[0];
    shape.name = "x";
    for (float value : {1.0f, 2.0f, 3.0f}) shape.params.Add(value);
    for (int axis = 0; axis < 3; ++axis) shape.position[axis] = 4;
    shape.attr2 = shape.attr4 = 5;
    list.Scale(); // a shape of type 0 has no box
    EXPECT_TRUE(list.Write(Name("written")));
    EXPECT_EQ(FromHex("01 00 00 00  00 00 00 00  01 00 00 00  01 00 00 00  78"
                      "00 00 00 00  03 00 00 00  00 00 00 00  00 00 00 00"
                      "00 00 80 40  00 00 80 40  00 00 80 40"
                      "00 00 00 00  00 00 00 00  00 00 00 00  00 00 B4 43" // to 360
                      "03 00 00 00  00 00 80 3F  00 00 00 40  00 00 40 40"
                      "CD CC CC 3D  05 00 00 00  01 00 00 00  05 00 00 00"
                      "00 00 00 00  00 00 80 3F  00 00 00 00"
                      "B0 43 78 FF  B0 43 78 FF  B0 43 78 FF  B0 43 78 7F  B0 43 78 7F  B0 43 78 7F"
                      "00 00 00 00  00 00 00 00") +
                  TextBytes(FreshSystem::Date),
              Disk("written"));
}

TEST_F(GeometryFile, WhatIsWrittenIsReadAgain)
{
    Geometry list = OtherList(), back;
    for (int i = 0; i < 3; ++i) {
        for (int k = 0; k < 5; ++k) list[i].params[k] = static_cast<float>(k);
        list[i].type = 9 + i;
    }
    list[1].name = Dstr(std::string("\0\xFF", 2));
    list.Scale();
    EXPECT_TRUE(list.Write(Name("written")));
    EXPECT_TRUE(back.Read(Name("written")));
    ASSERT_EQ(3, back.nObjects());
    for (int i = 0; i < 3; ++i) EXPECT_EQ(ShapeBytes(list[i]), ShapeBytes(back[i])) << i;
    EXPECT_EQ(BoundsBytes(list), BoundsBytes(back));
    EXPECT_EQ(Texts(list), Texts(back));
}

TEST_F(GeometryFile, WriteReplacesALongerFile)
{
    system.folder.Write("written.dgm", std::string(1000, 'x'));
    Geometry list = ReadBytes(GoldenBytes());
    EXPECT_TRUE(list.Write(Name("written")));
    EXPECT_EQ(GoldenBytes().size() + 15, Disk("written").size()); // the stamp has 19 characters, not 4
}

TEST_F(GeometryFile, AFileThatCantBeCreatedIsToldAndTheStampStays)
{
    system.folder.MakeFolder("folder.dgm");
    Geometry list = OtherList();
    for (char const *stem : {"folder", "no\\where"}) {
        EXPECT_FALSE(list.Write(Name(stem))) << stem;
        EXPECT_EQ("old stamp", Plain(list.stamp)) << stem;
    }
}

// ---- Files that are cut, damaged or absurd ----

TEST_F(GeometryFile, ANegativeCountIsNoShape)
{
    for (int count : {-1, -1000, INT_MIN}) {
        std::string const bytes = IntBytes(1) + IntBytes(0) + IntBytes(count) + FromHex(bounds + unitsAndNote);
        Geometry const list = ReadBytes(bytes, OtherList());
        EXPECT_EQ(0, list.nObjects()) << count;
        EXPECT_EQ(FromHex(bounds), BoundsBytes(list)) << count;
        EXPECT_EQ("mm|gas|old stamp", Texts(list)) << count;
    }
}

TEST_F(GeometryFile, ACountBeyondTheFileGivesNewShapes)
{
    std::string const bytes = IntBytes(1) + IntBytes(0) + IntBytes(5) + FromHex(secondShape);
    Geometry const list = ReadBytes(bytes, OtherList());
    ASSERT_EQ(5, list.nObjects());
    EXPECT_EQ(FromHex(secondShape), ShapeBytes(list[0]));
    Object fresh;
    for (int axis = 0; axis < 3; ++axis) fresh.position[axis] = list[4].position[axis];
    EXPECT_EQ(ShapeBytes(fresh), ShapeBytes(list[4]));
    EXPECT_EQ(99.0f, list.Max(0)); // bounds and texts as they were
    EXPECT_EQ("old units|old note|old stamp", Texts(list));
}

TEST_F(GeometryFile, CountsThatLieTakeNoGigabytes)
{
    for (int count : {1 << 21, 2000000000, INT_MAX}) {
        Geometry const list = ReadBytes(IntBytes(1) + IntBytes(0) + IntBytes(count) + FromHex(firstShape));
        EXPECT_LE(list.nObjects(), 1 << 20) << count;
        ASSERT_GE(list.nObjects(), 1) << count;
        EXPECT_EQ(FromHex(firstShape), ShapeBytes(list[0])) << count;
    }
}

TEST_F(GeometryFile, CountsOfParamsThatLieTakeNoGigabytes)
{
    std::string const golden = GoldenBytes();
    std::size_t const at = firstOffset + 50;
    for (int count : {-1, INT_MIN, 3, 1 << 21, 2000000000, INT_MAX}) {
        Geometry const list = ReadBytes(std::string(golden).replace(at, 4, IntBytes(count)));
        ASSERT_EQ(2, list.nObjects()) << count;
        int const n = list[0].params.Count();
        EXPECT_LE(n, 1 << 20) << count;
        EXPECT_TRUE(count < 0 ? n == 0 : n >= 3) << count;
        if (n < 1000) continue;
        EXPECT_EQ(12.0f, list[0].params[0]);
        EXPECT_EQ(0u, BitsOf(list[0].params[n - 1])) << count; // what the file lacks
        EXPECT_EQ(0, list[1].params.Count());
    }
}

TEST_F(GeometryFile, EveryPrefixGivesWhatItHolds)
{
    std::string const golden = GoldenBytes();
    Object const fresh;
    for (std::size_t length = 0; length < golden.size(); ++length) {
        Geometry const list = ReadBytes(golden.substr(0, length), OtherList());
        ASSERT_EQ(length > 8 ? 2 : 0, list.nObjects()) << length;
        EXPECT_TRUE(length < firstOffset + firstLength || ShapeBytes(list[0]) == FromHex(firstShape)) << length;
        EXPECT_TRUE(length < boundsOffset || ShapeBytes(list[1]) == FromHex(secondShape)) << length;
        EXPECT_TRUE(length <= 8 || length > firstOffset || list[1].attr1 == fresh.attr1) << length;
        std::string expected = FloatsBytes({99, 99, 99, 98, 98, 98});
        for (std::size_t i = 0; i < 24 && boundsOffset + i < length; ++i) expected[i] = golden[boundsOffset + i];
        EXPECT_EQ(expected, BoundsBytes(list)) << length;
        EXPECT_EQ(length > textsOffset, list.units.Len() == 2) << length;
        EXPECT_EQ(length > textsOffset + 6, list.note.Len() == 3) << length;
        EXPECT_EQ(length > textsOffset + 13, list.stamp.Len() == 4) << length;
    }
}

/// Bytes that are part of a count, a size or a length.
bool IsCount(std::size_t at)
{
    std::size_t const second = firstOffset + firstLength;
    for (std::size_t begin : {std::size_t{4}, std::size_t{8}, firstOffset, firstOffset + 50, second, second + 48,
                              textsOffset, textsOffset + 6, textsOffset + 13})
        if (at >= begin && at < begin + 4) return true;
    return false;
}

TEST_F(GeometryFile, EveryChangedByteIsReadSafely)
{
    std::string const golden = GoldenBytes();
    for (std::size_t at = 0; at < golden.size(); ++at) {
        for (char const byte : DamagesOf(golden[at])) {
            SCOPED_TRACE("byte " + std::to_string(at) + " is " + std::to_string(byte));
            std::string bytes = golden;
            bytes[at] = byte;
            Geometry const list = ReadBytes(bytes);
            EXPECT_LE(list.nObjects(), 1 << 20);
            for (int i = 0; i < list.nObjects() && i < 3; ++i) EXPECT_LE(list[i].params.Count(), 1 << 20);
            EXPECT_LE(list.units.Len() + list.note.Len() + list.stamp.Len(), 3 * 32767);
            EXPECT_TRUE(IsCount(at) || list.nObjects() == 2);
        }
    }
}

TEST_F(GeometryFile, SkipLengthsThatLeadOutOfTheFile)
{
    for (int skip : {-1, -8, -100, INT_MIN, 1000, INT_MAX}) {
        Geometry const list = ReadBytes(IntBytes(1) + IntBytes(skip) + GoldenBytes().substr(8));
        EXPECT_LE(list.nObjects(), 1 << 20) << skip;
        EXPECT_TRUE(skip < 0 || list.nObjects() == 0) << skip;
    }
}

TEST_F(GeometryFile, RubbishDoesNoHarm)
{
    std::uint32_t random = 1;
    for (int round = 0; round < 30; ++round) {
        std::string bytes = round % 2 ? GoldenBytes().substr(0, 12) : std::string();
        for (int i = 0; i < 300; ++i) {
            random = random * 1664525u + 1013904223u;
            bytes += static_cast<char>(random >> 24);
        }
        Geometry list = ReadBytes(bytes);
        list.Scale();
        EXPECT_LE(list.nObjects(), 1 << 20) << round;
    }
}

} // namespace
