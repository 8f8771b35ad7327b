// Files beyond the reach of 32-bit positions, as files with holes, which take no room on a disk.
#include "files/DFile.h"

#include "support/FilesFixture.h"

namespace {

long long const GiB = 1LL << 30;

class LargeFile : public FilesTest {
protected:
    /// A file of this size whose last three bytes are "end".
    void Begin(long long size)
    {
        folder.Write("large");
        std::filesystem::resize_file(folder.native("large"), static_cast<unsigned long long>(size));
        ASSERT_TRUE(file.Open(Path("large"), 7));
        file.SeekAbs(size - 3);
        file.BWrite("end", 3);
    }
    std::string Read3()
    {
        char bytes[] = "...";
        file.BRead(bytes, 3);
        return bytes;
    }

    DFile file;
};

long long const sizes[] = {2 * GiB - 1, 2 * GiB, 2 * GiB + 2, 4 * GiB - 1, 4 * GiB, 4 * GiB + 2, 9 * GiB + 5};

} // namespace

TEST_F(LargeFile, IsReadAtItsEndByEitherSeek)
{
    for (long long const size : sizes) {
        SCOPED_TRACE(size);
        Begin(size);
        file.SeekAbs(size - 3);
        EXPECT_EQ(size - 3, file.Tell());
        EXPECT_EQ(3, file.Remaining());
        EXPECT_EQ("end", Read3());
        file.SeekAbs(1);
        EXPECT_EQ(size - 1, file.Remaining());
        file.SeekRel(size - 4);
        EXPECT_EQ("end", Read3());
        file.SeekRel(-size);
        EXPECT_EQ(0, file.Tell());
        file.Close();
    }
}

TEST_F(LargeFile, IsWrittenAcrossTheLimitsOf32Bits)
{
    for (long long const limit : {2 * GiB, 4 * GiB}) {
        SCOPED_TRACE(limit);
        Begin(limit + 10);
        file.SeekAbs(limit - 2);
        file.BWrite("over", 4);
        EXPECT_EQ(limit + 2, file.Tell());
        file.SeekAbs(limit - 1);
        EXPECT_EQ("ver", Read3());
        EXPECT_EQ(8, file.Remaining());
        file.Close();
    }
}

TEST_F(LargeFile, GrowsWhereItIsAppendedTo)
{
    Begin(4 * GiB + 2);
    file.SeekAbs(4 * GiB + 2);
    file.BWrite("more", 4);
    file.Close();
    EXPECT_EQ(4ull * GiB + 6, std::filesystem::file_size(folder.native("large")));
    ASSERT_TRUE(file.Open(Path("large"), 7));
    file.SeekAbs(4 * GiB + 3);
    EXPECT_EQ("ore", Read3());
    file.Close();
}

TEST_F(LargeFile, TellsTheLow32BitsOfItsLength)
{
    struct Row {
        long long size;
        unsigned int length;
    } const rows[] = {{2 * GiB - 1, 0x7FFFFFFF}, {2 * GiB, 0x80000000},    {4 * GiB - 1, 0xFFFFFFFF}, {4 * GiB, 0},
                      {4 * GiB + 17, 17},        {9 * GiB + 5, 0x40000005}};
    for (Row const &row : rows) {
        folder.Write("large");
        std::filesystem::resize_file(folder.native("large"), static_cast<unsigned long long>(row.size));
        EXPECT_EQ(row.length, static_cast<unsigned int>(GetFileLen(Path("large")))) << row.size;
    }
}

TEST_F(LargeFile, IsListedWithItsSize)
{
    Begin(9 * GiB + 5);
    file.Close();
    Platform::Entry entry;
    ASSERT_TRUE(Platform::Search(folder.path("large").c_str(), Platform::Detail::Full).Next(entry));
    EXPECT_EQ(9 * GiB + 5, entry.size);
}
