/// The file handle: opening, positions, bytes. Strings and lines stand in DFileText.cpp, what it does with
/// whole files in WholeFiles.cpp.
#include "files/DFile.h"

#include <climits>
#include <cstring>
#include <new>

#include "support/Faults.h"
#include "support/FileTest.h"
#include "support/StreamCalls.h"

namespace {

using namespace std::string_literals;

// ---- Opening and closing ---------------------------------------------------------------------

class FileOpening : public FileTest {};

static_assert(sizeof(DFile) == sizeof(std::FILE *), "the stream is its one field");

TEST_F(FileOpening, NewFileIsClosed)
{
    EXPECT_FALSE(file.IsOpen());
}

TEST_F(FileOpening, EachModeDoesItsOwn)
{
    struct Row {
        int mode;
        bool opensExisting, opensMissing;
        char const *read;  // four bytes read from "abcdef"
        char const *after; // the file after writing "XY" at the start
    } const rows[] = {
        {1, true, false, "abcd", "abcdef"},
        {2, true, true, "....", "XY"},
        {3, true, false, "abcd", "XYcdef"},
        {5, true, false, "abcd", "abcdef"},
        {6, true, true, "....", "XY"},
        {7, true, false, "abcd", "XYcdef"},
        {0, false, false, "....", "abcdef"},
        {4, false, false, "....", "abcdef"},
        {8, false, false, "....", "abcdef"},
        {12, false, false, "....", "abcdef"},
        {-8, false, false, "....", "abcdef"},
        {INT_MIN, false, false, "....", "abcdef"},
        {INT_MAX - 3, false, false, "....", "abcdef"},
    };
    for (Row const &row : rows) {
        SCOPED_TRACE("mode " + std::to_string(row.mode));
        folder.Write("data", "abcdef");
        EXPECT_EQ(row.opensExisting, file.Open(Path("data"), row.mode));
        EXPECT_EQ(row.opensExisting, file.IsOpen());
        EXPECT_EQ(row.opensExisting ? 0 : -1, file.Tell());
        EXPECT_EQ(row.read, Read4(4));
        file.SeekAbs(0);
        file.BWrite("XY", 2);
        EXPECT_EQ(row.after, End());
        EXPECT_EQ(row.opensMissing, file.Open(Path("missing" + std::to_string(row.mode)), row.mode));
        file.Close();
        EXPECT_EQ(row.opensMissing, folder.Has("missing" + std::to_string(row.mode)));
    }
}

TEST_F(FileOpening, FailedOpenLeavesItClosed)
{
    EXPECT_FALSE(file.Open(Path("missing"), 5));
    EXPECT_FALSE(file.IsOpen());
}

TEST_F(FileOpening, SecondOpenClosesTheFirst)
{
    Begin("", 6);
    file.BWrite("first", 5);
    EXPECT_TRUE(file.Open(Path("second"), 6));
    EXPECT_EQ("first", folder.Read("data"));
    file.BWrite("2", 1);
    file.Close();
    EXPECT_EQ("2", folder.Read("second"));
    EXPECT_EQ("first", folder.Read("data"));
}

TEST_F(FileOpening, SecondOpenClosesTheFirstEvenIfItFails)
{
    for (int mode : {0, 4, 5, 7}) {
        SCOPED_TRACE(mode);
        Begin("", 6);
        file.BWrite("first", 5);
        EXPECT_FALSE(file.Open(Path("missing"), mode));
        EXPECT_FALSE(file.IsOpen());
        EXPECT_EQ("first", folder.Read("data"));
    }
}

TEST_F(FileOpening, OpensItsOwnFileAgain)
{
    Begin("", 6);
    file.BWrite("abc", 3);
    EXPECT_TRUE(file.Open(Path("data"), 5));
    EXPECT_EQ("abc.", Read4(4));
}

TEST_F(FileOpening, ClosesTwice)
{
    Begin("abc");
    file.Close();
    EXPECT_FALSE(file.IsOpen());
    file.Close();
    EXPECT_FALSE(file.IsOpen());
}

TEST_F(FileOpening, DestructionClosesAndFlushes)
{
    {
        DFile brief;
        ASSERT_TRUE(brief.Open(Path("data"), 6));
        brief.BWrite("abc", 3);
    }
    EXPECT_EQ("abc", folder.Read("data"));
}

TEST_F(FileOpening, CopiesShareTheStream)
{
    Begin("abcdef");
    // Only one of the objects may close the stream, so these are never destroyed.
    alignas(DFile) unsigned char places[2][sizeof(DFile)];
    auto *const copy = new (places[0]) DFile(file);
    auto *const assigned = new (places[1]) DFile;
    *assigned = file;
    copy->SeekAbs(2);
    assigned->SeekRel(1);
    EXPECT_EQ(3, file.Tell());
    EXPECT_TRUE(copy->IsOpen());
    EXPECT_TRUE(assigned->IsOpen());
}

TEST_F(FileOpening, OpensOnlyFiles)
{
    folder.MakeFolder("data");
    for (int mode : {1, 2, 3, 5, 6, 7}) {
        SCOPED_TRACE(mode);
        EXPECT_FALSE(file.Open(Path("data"), mode));
        EXPECT_FALSE(file.Open(Path("data\\"), mode));
        EXPECT_FALSE(file.Open(Path("missing\\file"), mode));
        EXPECT_FALSE(file.Open(Path("star*"), mode));
        EXPECT_FALSE(file.Open(Path(std::string(5000, 'x')), mode));
        EXPECT_FALSE(file.Open(DString(), mode));
        EXPECT_FALSE(file.Open(nullString(), mode));
        EXPECT_FALSE(file.Open("\\\\no-such-server\\share\\file", mode));
    }
    EXPECT_FALSE(folder.Has("star*"));
}

TEST_F(FileOpening, DeviceDoesNotOpen)
{
    for (int mode : {1, 2, 3, 5, 6, 7}) EXPECT_FALSE(file.Open("Z:\\dev\\null", mode)) << mode;
}

TEST_F(FileOpening, NameMayBeSpelledInAnyCase)
{
    folder.Write("Sub/Data", "abc");
    EXPECT_TRUE(file.Open(Path("sUB\\dATA"), 5));
    EXPECT_EQ("abc.", Read4(4));
}

TEST_F(FileOpening, FailsWhereTheDiskFails)
{
    folder.Write("data", "abc");
    Faults const faults(1, INT_MAX, "OpenFile");
    for (int mode : {1, 2, 3, 5, 6, 7}) EXPECT_FALSE(file.Open(Path("data"), mode)) << mode;
    EXPECT_EQ("abc", folder.Read("data"));
}

// ---- Positions -------------------------------------------------------------------------------

class FilePosition : public FileTest {};

TEST_F(FilePosition, SeeksFromTheStartAndFromThePosition)
{
    Begin("abcdef");
    file.SeekAbs(4);
    EXPECT_EQ(4, file.Tell());
    file.SeekRel(-3);
    EXPECT_EQ(1, file.Tell());
    EXPECT_EQ("b...", Read4(1));
    file.SeekRel(2);
    EXPECT_EQ("ef..", Read4(4));
}

TEST_F(FilePosition, BeforeTheStartChangesNothing)
{
    Begin("abcdef");
    file.SeekAbs(2);
    file.SeekAbs(-1);
    file.SeekRel(-3);
    file.SeekAbs(LLONG_MIN);
    EXPECT_EQ(2, file.Tell());
}

TEST_F(FilePosition, HasMoreThan32Bits)
{
    Begin("", 6);
    file.SeekAbs(5000000000);
    EXPECT_EQ(5000000000, file.Tell());
    file.SeekRel(-1000000000);
    file.SeekRel(4000000000);
    file.BWrite("x", 1);
    EXPECT_EQ(8000000001, file.Tell());
    file.Close();
    EXPECT_EQ(8000000001u, std::filesystem::file_size(folder.native("data")));
}

TEST_F(FilePosition, RemainingCountsToTheEnd)
{
    Begin("abcdef");
    EXPECT_EQ(6, file.Remaining());
    file.SeekAbs(4);
    EXPECT_EQ(2, file.Remaining());
    Read4(1);
    EXPECT_EQ(1, file.Remaining());
    EXPECT_EQ(5, file.Tell());
}

TEST_F(FilePosition, RemainingNeverCountsBackwards)
{
    Begin("abcdef");
    file.SeekAbs(100);
    EXPECT_LE(file.Remaining(), 0);
    file.Close();
    EXPECT_LE(file.Remaining(), 0);
}

TEST_F(FilePosition, RemainingCountsWhatWasJustWritten)
{
    Begin("", 6);
    file.BWrite("abcdef", 6);
    file.SeekAbs(1);
    EXPECT_EQ(5, file.Remaining());
}

TEST_F(FilePosition, EndIsMetByTheReadBehindIt)
{
    Begin("abcd");
    EXPECT_FALSE(file.IsEOF());
    Read4(4);
    EXPECT_FALSE(file.IsEOF());
    Read4(1);
    EXPECT_TRUE(file.IsEOF());
    file.SeekAbs(0);
    EXPECT_FALSE(file.IsEOF());
}

TEST_F(FilePosition, FileIsGoodWhileReadsFindWhatTheyAskFor)
{
    EXPECT_FALSE(file.IsGood());
    Begin("abcd");
    EXPECT_TRUE(file.IsGood());
    Read4(4);
    EXPECT_TRUE(file.IsGood());
    Read4(1);
    EXPECT_FALSE(file.IsGood());
    Begin("abcd");
    Read4(0);
    EXPECT_TRUE(file.IsGood());
    file.Close();
    EXPECT_FALSE(file.IsGood());
}

// ---- Bytes -----------------------------------------------------------------------------------

class FileBytes : public FileTest {};

TEST_F(FileBytes, MoveAsTheyStandInMemory)
{
    Begin("", 6);
    short const two = -2;
    int const four = 0x01020304;
    long long const eight = 0x1122334455667788;
    float const single = 1.0f;
    double const wide = -2.5;
    file.BWrite(&two, 2);
    file.BWrite(&four, 4);
    file.BWrite(&eight, 8);
    file.BWrite(&single, 4);
    file.BWrite(&wide, 8);
    EXPECT_EQ("\xFE\xFF"
              "\x04\x03\x02\x01"
              "\x88\x77\x66\x55\x44\x33\x22\x11"
              "\0\0\x80\x3F"
              "\0\0\0\0\0\0\x04\xC0"s,
              End());
}

TEST_F(FileBytes, NoByteIsChangedInBinary)
{
    std::string all;
    for (int i = 0; i < 256; ++i) all += static_cast<char>(i);
    all += "\r\n\n\r\x1A";
    Begin("", 6);
    file.BWrite(all.data(), static_cast<int>(all.size()));
    EXPECT_EQ(all, End());
    Begin(all);
    std::string back(all.size(), '.');
    file.BRead(&back[0], static_cast<int>(back.size()));
    EXPECT_EQ(all, back);
}

TEST_F(FileBytes, NoneMoveForASizeBelowOne)
{
    Begin("abcd", 7);
    for (int size : {0, -1, INT_MIN}) {
        EXPECT_EQ("....", Read4(size));
        file.BRead(nullptr, size);
        file.BWrite("XY", size);
        file.BWrite(nullptr, size);
        EXPECT_EQ(0, file.Tell());
    }
    EXPECT_EQ("abcd", End());
}

TEST_F(FileBytes, ThatTheFileLacksStayAsTheyWere)
{
    Begin("ab");
    EXPECT_EQ("ab..", Read4(4));
    EXPECT_EQ("....", Read4(4));
    EXPECT_TRUE(file.IsEOF());
}

TEST_F(FileBytes, OfAReadOnlyFileStay)
{
    Begin("abcd");
    file.BWrite("XY", 2);
    EXPECT_EQ("abcd", End());
}

TEST_F(FileBytes, ReadAndWriteOneFileInTurn)
{
    Begin("abcdef", 7);
    EXPECT_EQ("ab..", Read4(2));
    file.SeekAbs(1);
    file.BWrite("XY", 2);
    file.SeekRel(0);
    EXPECT_EQ("def.", Read4(3));
    EXPECT_EQ("aXYdef", End());
}

#if defined __linux__
TEST_F(FileBytes, MoveInPiecesOfAtMost60Million)
{
    std::vector<int> numbers(30000001);
    for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<int>(i * 2654435761u);
    int const size = static_cast<int>(numbers.size() * sizeof(int)) - 3;
    std::vector<std::size_t> const pieces = {60000000, 60000000, 1};
    Begin("", 6);
    StreamCalls const writing;
    file.BWrite(numbers.data(), size);
    EXPECT_EQ(pieces, writing.Sizes());
    ASSERT_TRUE(file.Open(Path("data"), 5));
    std::vector<int> back(numbers.size());
    StreamCalls const reading;
    file.BRead(back.data(), size);
    EXPECT_EQ(pieces, reading.Sizes());
    EXPECT_EQ(0, std::memcmp(numbers.data(), back.data(), static_cast<std::size_t>(size)));
}
#endif

} // namespace
