// Data files beyond the reach of 32-bit positions, as files with holes, which take no room on a disk.
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <ios>
#include <string>
#include <vector>

#include "support/MatrixFixture.h"
#include "support/ParticleBytes.h"

namespace {

/// A large file in a fresh folder, and the bytes that count in it.
class LargeData : public testing::Test {
protected:
    LargeData() : system(false) { SetNotify(&system.listener); }

    /// A file that begins with these bytes, has this size, and zeros where nothing is put.
    void Make(std::string const &file, std::string const &begin, long long size)
    {
        large = system.folder.native(file);
        system.folder.Write(file, begin);
        std::filesystem::resize_file(large, static_cast<unsigned long long>(size));
    }
    void PutAt(long long position, std::string const &bytes) const
    {
        std::fstream out(large, std::ios::in | std::ios::out | std::ios::binary);
        out.seekp(position);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        ASSERT_TRUE(out.flush());
    }
    std::string At(long long position, std::size_t count) const
    {
        std::ifstream in(large, std::ios::binary);
        in.seekg(position);
        std::string bytes(count, '?');
        in.read(&bytes[0], static_cast<std::streamsize>(count));
        return in ? bytes : "(cut off)";
    }
    long long Size() const { return static_cast<long long>(std::filesystem::file_size(large)); }
    DString Name(std::string const &stem) const { return Dstr(system.path(stem)); }

    FreshSystem system;
    std::string large;
};

// ---- Particle groups

ParticleRow RowOf(float first)
{
    return {first, first + 1, first + 2, first + 3, first + 4, first + 5, first + 6, first + 7};
}

/// A group of this many rows of 32 bytes, of which only the last ones are put in.
class LargeParticles : public LargeData {
protected:
    void MakeGroup(int count, std::vector<ParticleRow> const &last)
    {
        ParticleBytes bytes;
        bytes.particles = count;
        bytes.rows.clear();
        std::string const header = bytes.Bytes();
        begin = static_cast<long long>(header.size());
        Make("P.dpt", header, begin + 32LL * count);
        std::string rows;
        for (ParticleRow const &row : last) rows += FloatsBytes(row);
        PutAt(Size() - static_cast<long long>(rows.size()), rows);
    }
    /// The count that the file's header tells.
    std::string Counted() const { return At(12, 4); }

    long long begin = 0; ///< of the rows
};

int const counts[] = {67108864, 67108870, 134217728, 134217735, 200000000}; // 2 and 4 GiB of rows, and more

} // namespace

TEST_F(LargeParticles, AreReadInStretchesNearTheirEnd)
{
    for (int const count : counts) {
        SCOPED_TRACE(count);
        MakeGroup(count, {RowOf(100), RowOf(200), RowOf(300)});
        OpenParticles stretch;
        ASSERT_TRUE(stretch.Read(Name("P"), 2, count - 3));
        EXPECT_EQ(count, stretch.nOrigParticles());
        EXPECT_EQ(FloatsBytes(RowOf(100)) + FloatsBytes(RowOf(200)), stretch.RowBytes());
        ASSERT_TRUE(stretch.Read(Name("P"), 10, count - 1));
        EXPECT_EQ(FloatsBytes(RowOf(300)), stretch.RowBytes());
        ASSERT_TRUE(stretch.Read(Name("P"), 10, count));
        EXPECT_EQ(0, stretch.nParticles());
    }
}

TEST_F(LargeParticles, GrowInPlace)
{
    for (int const count : counts) {
        SCOPED_TRACE(count);
        MakeGroup(count, {RowOf(100)});
        OpenParticles more({RowOf(400), RowOf(500)});
        ASSERT_TRUE(more.Append(Name("P")));
        EXPECT_EQ(count + 2, more.nOrigParticles());
        EXPECT_EQ(IntBytes(count + 2), Counted());
        EXPECT_EQ(begin + 32LL * (count + 2), Size());
        EXPECT_EQ(FloatsBytes(RowOf(100)) + FloatsBytes(RowOf(400)) + FloatsBytes(RowOf(500)),
                  At(begin + 32LL * (count - 1), 96));
        OpenParticles stretch;
        ASSERT_TRUE(stretch.Read(Name("P"), 5, count));
        EXPECT_EQ(FloatsBytes(RowOf(400)) + FloatsBytes(RowOf(500)), stretch.RowBytes());
    }
}

TEST_F(LargeParticles, GrowAcrossTheLimitsOf32Bits)
{
    for (int const count : {67108863, 134217727}) {
        SCOPED_TRACE(count);
        MakeGroup(count, {RowOf(100)});
        OpenParticles more({RowOf(400), RowOf(500), RowOf(600)});
        ASSERT_TRUE(more.Append(Name("P")));
        OpenParticles stretch;
        ASSERT_TRUE(stretch.Read(Name("P"), 5, count - 1));
        EXPECT_EQ(FloatsBytes(RowOf(100)) + FloatsBytes(RowOf(400)) + FloatsBytes(RowOf(500)) + FloatsBytes(RowOf(600)),
                  stretch.RowBytes());
    }
}

// ---- Matrices

namespace {

/// A matrix of slices of 1 MiB, with even axes. Each slice that is put in begins with its number.
class LargeMatrix : public LargeData {
protected:
    static long long const sliceBytes = 1 << 20;

    void MakeMatrix(int slices)
    {
        std::string const axes = IntBytes(1 << 18) + FloatsBytes({1, 0}) + IntBytes(slices) + FloatsBytes({1, 0});
        std::string const header = IntBytes(4) + IntBytes(0) + IntBytes(2) + axes +
                                   FloatsBytes({9, 0, 1, 1, 0, 0, 0, 0, 0}) + TextBytes("") + TextBytes("") +
                                   TextBytes("06/10/2024 08:13:20");
        begin = static_cast<long long>(header.size());
        Make("M.dmt", header, begin + sliceBytes * slices);
    }
    void PutSlice(int number) const { PutAt(begin + sliceBytes * number, FloatBytes(static_cast<float>(number))); }

    /// The first values of the slices from `first` to in front of `end`, with blanks between.
    std::string Slices(int end, int first) const
    {
        Matrix slices;
        EXPECT_TRUE(slices.Read(Name("M"), end, first));
        std::string values;
        for (int i = 0; i < slices.Count(); i += 1 << 18) values += std::to_string(static_cast<int>(slices[i])) + " ";
        return values;
    }

    long long begin = 0; ///< of the values
};

} // namespace

TEST_F(LargeMatrix, SlicesBelowTwoGibibytesAreTheirOwn)
{
    MakeMatrix(6000);
    for (int number : {0, 1, 1000, 2046, 2047}) PutSlice(number);
    EXPECT_EQ("0 1 ", Slices(2, 0));
    EXPECT_EQ("1000 ", Slices(1001, 1000));
    EXPECT_EQ("2046 2047 ", Slices(2048, 2046));
}

// The distance to the first slice is a number of 32 bits: from 2 GiB on it leads back, and from 4 GiB on it begins
// anew.
TEST_F(LargeMatrix, TheDistanceToASliceHas32Bits)
{
    MakeMatrix(6000);
    for (int number : {0, 1, 904, 1903, 5000, 5999}) PutSlice(number);
    EXPECT_EQ("0 ", Slices(4097, 4096));
    EXPECT_EQ("1 ", Slices(4098, 4097));
    EXPECT_EQ("904 ", Slices(5001, 5000));
    EXPECT_EQ("1903 ", Slices(6000, 5999));
}

TEST_F(LargeMatrix, ADistanceThatLeadsBackOutOfTheFileIsNone)
{
    MakeMatrix(3000);
    PutSlice(0);
    PutSlice(2500);
    EXPECT_EQ("0 ", Slices(2501, 2500));
}
