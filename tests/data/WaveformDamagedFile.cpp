// Trace files that are cut, damaged or absurd: a defined result, no harm done, and what the file does hold is taken.

#include <cstdint>
#include <fstream>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/Waveform.h"
#include "support/Damage.h"
#include "support/WaveformFixture.h"

namespace {

/// The sound file that is cut and damaged here.
WvfRows const &Sound()
{
    static WvfRows const rows = SampleRows();
    return rows;
}

/// Leaves a pattern in memory that is free, so that what is never set shows.
void DirtyHeap(char pattern)
{
    std::vector<std::string> blocks;
    for (std::size_t const size : {24u, 32u, 64u, 128u, 512u, 1024u, 1100u, 4096u})
        for (int i = 0; i < 4; ++i) blocks.emplace_back(size, pattern);
}

class DamagedWaveformFile : public WaveformFile {
protected:
    /// Reads the bytes twice, each time into an object as in `OtherTrace`, with other rubbish in free memory: the
    /// result is the same. Gives it.
    Fields Defined(std::string const &bytes, int n) const
    {
        DirtyHeap('\x5A');
        Fields const first = FieldsRead(bytes, n, OtherTrace());
        DirtyHeap('\xA5');
        OpenWaveform w = OtherTrace();
        EXPECT_TRUE(w.Read(Name("read"), n));
        EXPECT_EQ("", Differences(first, w));
        EXPECT_TRUE(w.timeStep != 0 && w.scaleUnit != 0);
        EXPECT_LE(w.units.Len(), 9 + 9 + 2 * 32767);
        EXPECT_TRUE(w.npnts() <= 100 || FloatBits(w.Last()) == 0); // none of the files here is as long
        return first;
    }
};

/// The first bytes of `file`, as far as `available` goes, and the rest of `old`: what a read of a field gives that
/// begins `available` bytes before the end of the file. `old` is hex, as the result is.
std::string Merged(std::string const &file, std::string const &old, long long available)
{
    std::string bytes = HexBytes(old);
    for (std::size_t i = 0; i < bytes.size() && static_cast<long long>(i) < available; ++i) bytes[i] = file[i];
    return BytesHex(bytes);
}

bool IsNumber(WvfRows::Row const &row)
{
    return row.bytes.size() == 4 && row.name != "note" && SampleFields().count(row.name) == 1;
}

/// `startTime` of a file that has this as its start, and the delays of `fields`.
std::string StartTime(std::string const &start, Fields const &fields)
{
    float const value = HexFloat(BytesHex(start));
    return HexOf(value - HexFloat(fields.at("scopeDelay")) - HexFloat(fields.at("scopeDelay2")));
}

/// What the first `length` bytes of the file make of `OtherTrace`. Fields in the midst of which the file ends are
/// left out where no byte order says what they are.
Fields CutFields(std::size_t length)
{
    Fields expected = FieldsOf(OtherTrace());
    auto const available = [length](std::string const &row) {
        return static_cast<long long>(length) - static_cast<long long>(Sound().Offset(row));
    };
    for (WvfRows::Row const &row : Sound().All())
        if (IsNumber(row)) expected[row.name] = Merged(row.bytes, expected[row.name], available(row.name));
    if (available("start") >= 4) expected["startTime"] = StartTime(Sound().Bytes("start"), expected);
    else if (available("start") > 0) expected.erase("startTime");
    for (std::string const text : {"units", "stamp", "note"}) {
        if (length >= Sound().End(text)) expected[text] = Sound().Bytes(text);
        else if (length > Sound().Offset(text + " length")) expected.erase(text);
    }
    int const n = HexInt(expected["fileCount"]);
    std::string const zeros(4 * static_cast<std::size_t>(n), '\0');
    expected["npnts"] = std::to_string(n);
    expected["shape"] = "1 x " + std::to_string(n);
    expected["samples"] = Merged(Sound().Bytes("samples"), BytesHex(zeros), available("samples"));
    if (available("samples") % 4 > 0) expected.erase("samples");
    return expected;
}

TEST_F(DamagedWaveformFile, EveryPrefixGivesWhatItHoldsAndLeavesTheRest)
{
    std::string const bytes = SampleRows().Bytes();
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        SCOPED_TRACE("the first " + std::to_string(length) + " bytes");
        EXPECT_EQ("", Differences(CutFields(length), Defined(bytes.substr(0, length), -1)));
    }
    EXPECT_EQ("", system.Heard());
}

TEST_F(DamagedWaveformFile, EveryPrefixOfALockedFileLocksOnceItsVersionIsThere)
{
    std::string const bytes = SampleRows().Set("version", "FD FF").Bytes();
    for (std::size_t length = 0; length <= bytes.size(); ++length) {
        if (length == 1) continue;
        SCOPED_TRACE(length);
        EXPECT_EQ(length < 2 ? "0" : "1", Defined(bytes.substr(0, length), -1)["lockState"]);
    }
}

TEST_F(DamagedWaveformFile, EveryPrefixReadsWithAnyNumberOfSamples)
{
    std::string const bytes = SampleRows().Bytes();
    for (std::size_t length = 0; length <= bytes.size(); length += 3) {
        for (int const n : {0, 1, 3, 1000}) {
            SCOPED_TRACE(std::to_string(length) + " bytes, " + std::to_string(n) + " samples");
            EXPECT_EQ(std::to_string(n), Defined(bytes.substr(0, length), n)["npnts"]);
        }
    }
}

TEST_F(DamagedWaveformFile, StepsAreNeverZeroAfterARead)
{
    OpenWaveform w;
    w.timeStep = w.scaleUnit = 0;
    Fields const fields = FieldsRead("", -1, w);
    EXPECT_EQ("00 00 80 3F", fields.at("timeStep"));
    EXPECT_EQ("00 00 80 3F", fields.at("scaleUnit"));
}

WvfRows::Row const &RowAt(std::size_t at)
{
    for (WvfRows::Row const &row : Sound().All())
        if (at >= Sound().Offset(row.name) && at < Sound().End(row.name)) return row;
    throw std::logic_error("behind the file");
}

bool IsLength(WvfRows::Row const &row)
{
    return row.name == "skip" || row.name.find(" length") != std::string::npos;
}

/// The fields after byte `at` of the file has become `value`, as far as the layout alone tells.
Fields FieldsOfChange(std::size_t at, char value)
{
    WvfRows::Row const &row = RowAt(at);
    std::string bytes = row.bytes;
    bytes[at - Sound().Offset(row.name)] = value;
    if (IsLength(row)) return {}; // all that follows moves
    if (row.name == "version") {
        int const number = static_cast<unsigned char>(bytes[0]) + 256 * bytes[1];
        return FieldsOfVersion({"", number < 0, number >= 4 || number <= -4});
    }
    Fields expected = SampleFields();
    if (IsNumber(row)) expected[row.name] = BytesHex(bytes);
    else if (expected.count(row.name) == 1) expected[row.name] = bytes;
    expected["startTime"] = StartTime(row.name == "start" ? bytes : Sound().Bytes("start"), expected);
    int const n = HexInt(expected["fileCount"]);
    if (n == 3) return expected;
    for (char const *const name : {"npnts", "shape", "samples"}) expected.erase(name);
    if (n < 1 << 20) expected["npnts"] = std::to_string(n < 0 ? 0 : n); // more is not believed
    return expected;
}

TEST_F(DamagedWaveformFile, EverySingleByteOfTheHeaderChangesItsOwnFieldAlone)
{
    std::string const bytes = SampleRows().Bytes();
    for (std::size_t at = 0; at < Sound().Offset("samples"); ++at) {
        for (char const value : DamagesOf(bytes[at])) {
            SCOPED_TRACE("byte " + std::to_string(at) + " is " + BytesHex(std::string(1, value)));
            std::string changed = bytes;
            changed[at] = value;
            EXPECT_EQ("", Differences(FieldsOfChange(at, value), Defined(changed, -1)));
        }
    }
    EXPECT_EQ("", system.Heard());
}

TEST_F(DamagedWaveformFile, AnyBytesReadInADefinedWay)
{
    std::mt19937 random(20240610);
    for (int i = 0; i < 300; ++i) {
        std::string bytes(random() % 300, '\0');
        for (char &c : bytes) c = static_cast<char>(random());
        if (bytes.size() >= 8)
            bytes[2] = bytes[3] = bytes[6] = bytes[7] = '\0'; // let most go on to the rest of the file
        SCOPED_TRACE(BytesHex(bytes));
        Defined(bytes, -1);
    }
}

/// The largest memory in use, in bytes, since the last call with `forget`; 0 where the host doesn't tell, and where it
/// tells of what a checking allocator notes about memory that isn't touched.
long long PeakMemory(bool forget)
{
#if defined __SANITIZE_ADDRESS__
    return 0;
#endif
    if (forget) std::ofstream("/proc/self/clear_refs") << "5";
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        long long kilobytes = 0;
        if (word == "VmHWM:" && status >> kilobytes) return kilobytes * 1024;
    }
    return 0;
}

TEST_F(DamagedWaveformFile, LargeAnnouncedCountOfATinyFileIsZeros)
{
    OpenWaveform w;
    Put("a", SampleRows().Set("fileCount", "40 42 0F 00").Bytes()); // 1,000,000
    ASSERT_TRUE(w.Read(Name("a"), -1));
    ASSERT_EQ(1000000, w.npnts());
    EXPECT_EQ(3.0f, w[2]);
    for (int i = 3; i < w.npnts(); ++i) ASSERT_EQ(0u, FloatBits(w[i])) << i;
}

TEST_F(DamagedWaveformFile, AbsurdAnnouncedCountCostsNoMemoryAlsoWhenTheTraceIsUsed)
{
    for (char const *const count : {"FF FF FF 7F", "00 FF FF 7F", "FF FE FF 7F", "00 00 00 40", "00 00 00 10"}) {
        SCOPED_TRACE(count);
        Put("a", SampleRows().Set("fileCount", count).Bytes());
        OpenWaveform w = OtherTrace();
        long long const before = PeakMemory(true);
        ASSERT_NO_THROW(EXPECT_TRUE(w.Read(Name("a"), -1)));
        Waveform const copy(w);
        EXPECT_LT(PeakMemory(false) - before, 100000000);
        EXPECT_EQ(count, FieldsOf(w)["fileCount"]);
        EXPECT_EQ("poor", FieldsOf(w)["note"]);
        ASSERT_GE(w.npnts(), 3);
        EXPECT_EQ("00 00 80 3F 00 00 C0 BF 00 00 40 40", FieldsOf(w)["samples"].substr(0, 35));
        for (int i = 3; i < w.npnts(); ++i) ASSERT_EQ(0u, FloatBits(w[i])) << i;
    }
}

TEST_F(DamagedWaveformFile, LargeCountIsTakenIfTheFileHasHalfOfIt)
{
    struct {
        int announced, present, npnts;
    } const rows[] = {{2000000, 1100000, 2000000}, {3000000, 1100000, 1100000}, {1100000, 1100000, 1100000}};
    for (auto const &row : rows) {
        SCOPED_TRACE(row.announced);
        std::string const ones = HexBytes("00 00 80 3F");
        std::string bytes = SampleRows().Set("fileCount", HexOf(row.announced)).Set("samples", "").Bytes();
        for (int i = 0; i < row.present; ++i) bytes += ones;
        Put("a", bytes);
        Waveform w;
        ASSERT_TRUE(w.Read(Name("a"), -1));
        ASSERT_EQ(row.npnts, w.npnts());
        EXPECT_EQ(row.announced, w.fileCount);
        for (int i = 0; i < w.npnts(); ++i) ASSERT_EQ(i < row.present ? 1 : 0, w[i]) << i;
    }
}

TEST_F(DamagedWaveformFile, AbsurdCountOfTheCallerIsRefusedOrAnswered)
{
    Put("a", SampleRows().Bytes());
    OpenWaveform w = OtherTrace();
    try {
        EXPECT_TRUE(w.Read(Name("a"), 2147483647));
    } catch (std::bad_alloc const &) {
    }
    EXPECT_TRUE(w.npnts() <= 3 || w.npnts() == 2147483647) << w.npnts();
    ASSERT_TRUE(w.Read(Name("a"), -1));
    EXPECT_EQ(3, w.npnts());
}

} // namespace
