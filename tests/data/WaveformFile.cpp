// The file of a trace: every field against bytes written out by hand, in both directions, and what becomes of
// files that are locked or not there.

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "WaveformValues.h"
#include "data/Waveform.h"
#include "files/DFile.h"
#include "support/DStringInspector.h"
#include "support/Faults.h"
#include "support/WaveformFixture.h"

namespace {

// ---- Reading ---------------------------------------------------------------------------------------------------

TEST_F(WaveformFile, ReadTakesEveryFieldFromItsPlace)
{
    EXPECT_EQ("", Differences(SampleFields(), FieldsRead(SampleRows().Bytes(), -1)));
    EXPECT_EQ("", system.Heard());
}

TEST_F(WaveformFile, ReadReplacesAllThatAnObjectHeld)
{
    EXPECT_EQ("", Differences(SampleFields(), FieldsRead(SampleRows().Bytes(), -1, OtherTrace())));
}

constexpr Version versions[] = {
    {"01 00", false, false}, {"02 00", false, false}, {"03 00", false, false}, {"04 00", false, true},
    {"05 00", false, true},  {"FF FF", true, false},  {"FE FF", true, false},  {"FD FF", true, false},
    {"FC FF", true, true},   {"FB FF", true, true},   {"00 00", false, false}, {"06 00", false, true},
    {"64 00", false, true},  {"FF 7F", false, true},  {"01 80", true, true},   {"00 80", true, true},
};

TEST_F(WaveformFile, EveryVersionIsReadWithAndWithoutASkipLength)
{
    struct {
        char const *length, *bytes;
    } const skips[] = {{"00 00", ""}, {"01 00", "99"}, {"05 00", "FF FF FF FF FF"}, {"04 01", nullptr}};
    for (Version const &version : versions) {
        for (auto const &skip : skips) {
            SCOPED_TRACE(std::string(version.hex) + ", skip " + skip.length);
            std::string const skipped = skip.bytes ? skip.bytes : BytesHex(std::string(260, '\xEE'));
            WvfRows const rows =
                SampleRows().Set("version", version.hex).Set("skip", skip.length).Set("skipped", skipped);
            EXPECT_EQ("", Differences(FieldsOfVersion(version), FieldsRead(rows.Bytes(), -1, OtherTrace())));
        }
    }
}

TEST_F(WaveformFile, EveryVersionIsWrittenBackAsVersion4WithoutSkipLength)
{
    for (Version const &version : versions) {
        SCOPED_TRACE(version.hex);
        WvfRows const old = SampleRows().Set("version", version.hex).Set("skip", "03 00").Set("skipped", "11 22 33");
        Put("old", old.Bytes());
        Waveform w;
        ASSERT_TRUE(w.Read(Name("old"), -1));
        WvfRows expected = SampleRows();
        if (!version.hasSecondDelay) expected.Set("scopeDelay2", "00 00 00 00");
        EXPECT_EQ(BytesHex(expected.Bytes()), BytesHex(BytesWritten(w)));
    }
}

TEST_F(WaveformFile, SecondDelayBeforeVersion4IsZeroWhateverItsBytesHold)
{
    for (char const *const junk : {"00 00 C0 7F", "FF FF FF FF", "00 00 80 FF"}) {
        SCOPED_TRACE(junk);
        OpenWaveform w = OtherTrace();
        Put("a", SampleRows().Set("version", "03 00").Set("scopeDelay2", junk).Bytes());
        ASSERT_TRUE(w.Read(Name("a"), -1));
        EXPECT_EQ(0u, FloatBits(w.scopeDelay2));
        EXPECT_EQ(7.5f, w.Start()); // as stored, and the shift
        EXPECT_EQ("00 00 00 41", HexOf(w.scopeValue2));
    }
}

struct CountRow {
    int n, npnts;
    char const *samples;
};

TEST_F(WaveformFile, NumberOfSamplesIsTheCallersOrThatOfTheHeader)
{
    char const *const all = "00 00 80 3F 00 00 C0 BF 00 00 40 40";
    std::string const padded = all + std::string(" 00 00 00 00 00 00 00 00");
    CountRow const rows[] = {
        {-1, 3, all}, {-2147483647 - 1, 3, all}, {0, 0, ""}, {1, 1, "00 00 80 3F"}, {2, 2, "00 00 80 3F 00 00 C0 BF"},
        {3, 3, all},  {5, 5, padded.c_str()},
    };
    for (CountRow const &row : rows) {
        SCOPED_TRACE(row.n);
        Fields const expected = With(SampleFields(), {{"npnts", std::to_string(row.npnts)},
                                                      {"shape", "1 x " + std::to_string(row.npnts)},
                                                      {"samples", row.samples}});
        EXPECT_EQ("", Differences(expected, FieldsRead(SampleRows().Bytes(), row.n, OtherTrace())));
    }
}

TEST_F(WaveformFile, NumberOfSamplesIsNotComparedWithTheHeader)
{
    Fields const longer = FieldsRead(SampleRows().Set("fileCount", "01 00 00 00").Bytes(), 3);
    EXPECT_EQ("", Differences(With(SampleFields(), {{"fileCount", "01 00 00 00"}}), longer));
}

TEST_F(WaveformFile, CountAtTheEndOfTheHeaderIsNotLookedAt)
{
    WvfRows const rows =
        SampleRows().Set("one", "FF FF").Set("count again", "FF FF FF 7F").Set("another one", "00 00 00 00");
    EXPECT_EQ("", Differences(SampleFields(), FieldsRead(rows.Bytes(), -1)));
}

TEST_F(WaveformFile, AnnouncedCountBelowZeroGivesNoSamples)
{
    for (char const *const count : {"FF FF FF FF", "00 00 00 80", "00 FF FF FF"}) {
        SCOPED_TRACE(count);
        Fields const expected =
            With(SampleFields(), {{"fileCount", count}, {"npnts", "0"}, {"shape", "1 x 0"}, {"samples", ""}});
        EXPECT_EQ("", Differences(expected, FieldsRead(SampleRows().Set("fileCount", count).Bytes(), -1)));
    }
}

TEST_F(WaveformFile, ReadMakesAListOfATable)
{
    OpenWaveform table;
    table.Size(3, 2);
    EXPECT_EQ("", Differences(SampleFields(), FieldsRead(SampleRows().Bytes(), -1, table)));
}

TEST_F(WaveformFile, StepsOfZeroInTheFileBecomeOne)
{
    for (char const *const zero : {"00 00 00 00", "00 00 00 80"}) {
        SCOPED_TRACE(zero);
        WvfRows const rows = SampleRows().Set("timeStep", zero).Set("scaleUnit", zero);
        Fields const expected = With(SampleFields(), {{"timeStep", "00 00 80 3F"}, {"scaleUnit", "00 00 80 3F"}});
        EXPECT_EQ("", Differences(expected, FieldsRead(rows.Bytes(), -1)));
    }
}

TEST_F(WaveformFile, StepsOfOddValuesInTheFileStay)
{
    for (char const *const odd : {"00 00 80 BF", "01 00 00 00", "00 00 80 7F", "01 00 C0 7F"}) {
        SCOPED_TRACE(odd);
        WvfRows const rows = SampleRows().Set("timeStep", odd).Set("scaleUnit", odd);
        Fields const expected = With(SampleFields(), {{"timeStep", odd}, {"scaleUnit", odd}});
        EXPECT_EQ("", Differences(expected, FieldsRead(rows.Bytes(), -1)));
    }
}

struct TextRow {
    char const *length, *text, *result;
};

TEST_F(WaveformFile, EmptyTextsInTheFileLeaveTheOldOnes)
{
    for (TextRow const &row : {TextRow{"00 00", "", ""}, TextRow{"FF FF", "", ""}, TextRow{"00 80", "", ""}}) {
        SCOPED_TRACE(row.length);
        WvfRows rows = SampleRows();
        for (char const *const text : {"units", "stamp", "note"}) {
            rows.Set(text, row.text);
            rows.Set(std::string(text) + " length", row.length);
        }
        rows.Set("old unit length", row.length);
        Fields const kept =
            With(SampleFields(), {{"units", "old units"}, {"stamp", "old stamp"}, {"note", "old note"}});
        EXPECT_EQ("", Differences(kept, FieldsRead(rows.Bytes(), -1, OtherTrace())));
        Fields const fresh = With(SampleFields(), {{"units", ""}, {"stamp", ""}, {"note", ""}});
        EXPECT_EQ("", Differences(fresh, FieldsRead(rows.Bytes(), -1)));
    }
}

TEST_F(WaveformFile, OldUnitNameIsAppendedToTheUnits)
{
    TextRow const rows[] = {
        {"00 00", "", "units of volts"}, {"01 00", "'V'", "Vunits of volts"}, {"03 00", "'mV '", "mV units of volts"}};
    for (TextRow const &row : rows) {
        SCOPED_TRACE(row.result);
        WvfRows file = SampleRows().Set("units length", row.length).Set("units", row.text);
        file.Set("old unit length", "05 00").Set("old unit", "'volts'");
        EXPECT_EQ("", Differences(With(SampleFields(), {{"units", row.result}}), FieldsRead(file.Bytes(), -1)));
    }
    WvfRows file = SampleRows().Set("units length", "00 00").Set("units", "");
    file.Set("old unit length", "05 00").Set("old unit", "'volts'");
    EXPECT_EQ("old unitsunits of volts", FieldsRead(file.Bytes(), -1, OtherTrace())["units"]);
}

TEST_F(WaveformFile, TextsMayHoldAnyBytes)
{
    WvfRows rows = SampleRows().Set("units length", "05 00").Set("units", "00 FF 0A 0D 80");
    rows.Set("old unit length", "02 00").Set("old unit", "C9 00");
    std::string const units = HexBytes("00 FF 0A 0D 80") + "units of " + HexBytes("C9 00");
    EXPECT_EQ("", Differences(With(SampleFields(), {{"units", units}}), FieldsRead(rows.Bytes(), -1)));
}

TEST_F(WaveformFile, SamplesAreTakenBitByBit)
{
    std::string const odd = "01 00 A0 7F FF FF FF FF 00 00 80 FF 00 00 00 80 01 00 00 00 B0 43 78 FF";
    WvfRows const rows = SampleRows().Set("fileCount", "06 00 00 00").Set("samples", odd);
    EXPECT_EQ(odd, FieldsRead(rows.Bytes(), -1)["samples"]);
    OpenWaveform w;
    ASSERT_TRUE(w.Read(Name("read"), -1));
    EXPECT_EQ(HexBytes(odd), BytesWritten(w).substr(rows.Offset("samples")));
}

TEST_F(WaveformFile, ReadBeginsAtThePositionAndEndsBehindTheLastSampleTaken)
{
    std::string const bytes = SampleRows().Bytes();
    Put("two", "junk" + bytes + bytes);
    DFile f;
    ASSERT_TRUE(f.Open(FileName("two"), 5));
    f.SeekAbs(4);
    OpenWaveform first, second;
    first.Read(f, -1);
    EXPECT_EQ(4 + static_cast<long long>(bytes.size()), f.Tell());
    second.Read(f, 2);
    EXPECT_EQ(4 + 2 * static_cast<long long>(bytes.size()) - 4, f.Tell());
    EXPECT_EQ("", Differences(SampleFields(), first));
    EXPECT_EQ(SampleFields()["note"], FieldsOf(second)["note"]);
    EXPECT_EQ("00 00 80 3F 00 00 C0 BF", FieldsOf(second)["samples"]);
}

TEST_F(WaveformFile, ReadOfAHeaderEndsBeforeTheSamples)
{
    Put("a", SampleRows().Bytes());
    DFile f;
    ASSERT_TRUE(f.Open(FileName("a"), 5));
    OpenWaveform w;
    w.Read(f, 0);
    EXPECT_EQ(static_cast<long long>(SampleRows().Offset("samples")), f.Tell());
}

TEST_F(WaveformFile, ReadOfWhatIsntAFileEmptiesTheArrayAlone)
{
    system.folder.MakeFolder("folder.wvf");
    std::string const names[] = {system.path("missing"),
                                 system.path("folder"),
                                 system.path("no\\such"),
                                 "",
                                 std::string(5000, 'n'),
                                 system.path("wild*"),
                                 system.path("nul") + '\0' + "x",
                                 "\\\\nowhere\\share\\a",
                                 "Q:\\a"};
    for (std::string const &name : names) {
        SCOPED_TRACE(name);
        OpenWaveform w = OtherTrace();
        EXPECT_FALSE(w.Read(Dstr(name), -1));
        Fields const expected = With(FieldsOf(OtherTrace()), {{"npnts", "0"}, {"shape", "1 x 0"}, {"samples", ""}});
        EXPECT_EQ("", Differences(expected, w));
    }
    EXPECT_EQ("", system.Heard());
    EXPECT_EQ("folder.wvf", system.Names(""));
}

TEST_F(WaveformFile, ReadOfAFailureMakesAListOfATable)
{
    OpenWaveform w;
    w.Size(3, 2);
    EXPECT_FALSE(w.Read(Name("missing"), 0));
    EXPECT_EQ("1 x 0", FieldsOf(w)["shape"]);
    w.Zero();
    w.Scale();
}

TEST_F(WaveformFile, ReadCostsOneLookAtTheDisk)
{
    Put("a", SampleRows().Bytes());
    Faults const faults;
    Waveform w;
    EXPECT_TRUE(w.Read(Name("a"), -1));
    EXPECT_EQ(std::vector<std::string>{"OpenFile"}, Faults::asked);
}

TEST_F(WaveformFile, ReadAndWriteOfAClosedFileDoNoHarm)
{
    DFile closed;
    OpenWaveform w = OtherTrace();
    w.Read(closed, -1);
    Fields expected = FieldsOf(OtherTrace());
    for (char const *const open : {"npnts", "shape", "samples"}) expected.erase(open);
    EXPECT_EQ("", Differences(expected, w));
    w.Write(closed);
}

// ---- Writing ---------------------------------------------------------------------------------------------------

TEST_F(WaveformFile, WritePutsEveryFieldIntoItsPlace)
{
    OpenWaveform w = SampleTrace();
    EXPECT_EQ(BytesHex(SampleRows().Bytes()), BytesHex(BytesWritten(w)));
    EXPECT_EQ("", system.Heard());
}

TEST_F(WaveformFile, WriteOfANewObject)
{
    Waveform w;
    EXPECT_EQ(HexBytes("04 00 00 00 00 00 00 00"                 // version, skip length, count
                       "00 00 00 00 00 00 80 3F"                 // t4, timeStep
                       "00 00 00 00 00 00 80 3F"                 // t5, calibration
                       "00 00 80 3F 00 00 00 00"                 // attenuation, start
                       "00 00 00 00 00 00 00 00"                 // timeShift, maxValue
                       "00 00 00 00 00 00 00 00"                 // minValue, pointOfMax
                       "00 00 00 00 00 00 80 3F"                 // pointOfMin, scaleUnit
                       "00 00 00 00 00 00"                       // reserved, scopeValue
                       "00 00 00 00 00 00 00 00"                 // t1, t2
                       "00 00 00 00 00 00 00 00"                 // t3, offset
                       "00 00 00 00 00 00 00 00"                 // scopeDelay, scopeDelay2
                       "00 00 00 00 00 00 00 00"                 // scopeValue2, scopeValue3
                       "00 00 13 00 '06/10/2024 08:13:20' 00 00" // units, stamp, note
                       "00 00 01 00 00 00 00 00 01 00 00 00"),   // old unit name, and the ten bytes
              BytesWritten(w));
}

TEST_F(WaveformFile, WriteCountsTheSamplesThatAreThereAndLeavesTheCountOfTheHeader)
{
    OpenWaveform w = SampleTrace();
    w.fileCount = 77;
    EXPECT_EQ(SampleRows().Bytes(), BytesWritten(w));
    EXPECT_EQ(77, w.fileCount);
}

TEST_F(WaveformFile, WriteStampsTheObjectWithTheLocalTime)
{
    OpenWaveform w = OtherTrace();
    EXPECT_TRUE(w.Write(Name("a")));
    EXPECT_EQ("", Differences(With(FieldsOf(OtherTrace()), {{"stamp", FreshSystem::Date}}), w));
    StandingClock::now += 86400;
    DFile f;
    ASSERT_TRUE(f.Open(FileName("b"), 6));
    w.Write(f);
    EXPECT_EQ("06/11/2024 08:13:20", Plain(w.stamp));
}

TEST_F(WaveformFile, WriteOfAHeaderAloneHasNoSamples)
{
    OpenWaveform w;
    Put("a", SampleRows().Bytes());
    ASSERT_TRUE(w.Read(Name("a"), 0));
    WvfRows const expected =
        SampleRows().Set("fileCount", "00 00 00 00").Set("count again", "00 00 00 00").Set("samples", "");
    EXPECT_EQ(BytesHex(expected.Bytes()), BytesHex(BytesWritten(w)));
}

TEST_F(WaveformFile, WriteGoesToThePositionAndStaysBehindTheSamples)
{
    std::string const bytes = SampleRows().Bytes();
    OpenWaveform w = SampleTrace();
    DFile f;
    ASSERT_TRUE(f.Open(FileName("two"), 6));
    f.BWrite("junk", 4);
    w.Write(f);
    EXPECT_EQ(4 + static_cast<long long>(bytes.size()), f.Tell());
    w.Write(f);
    f.Close();
    EXPECT_EQ("junk" + bytes + bytes, Disk("two"));
}

TEST_F(WaveformFile, UnitsOfAnOldNameAreWrittenAsPartOfTheUnits)
{
    OpenWaveform w;
    Put("a", SampleRows().Set("old unit length", "01 00").Set("old unit", "'V'").Bytes());
    ASSERT_TRUE(w.Read(Name("a"), -1));
    WvfRows const expected = SampleRows().Set("units length", "0C 00").Set("units", "'mVunits of V'");
    EXPECT_EQ(BytesHex(expected.Bytes()), BytesHex(BytesWritten(w)));
}

TEST_F(WaveformFile, StartIsWrittenWithTheDelaysAndReadBackWithoutThem)
{
    for (auto const &row : waveform_values::TimeBaseRows()) {
        SCOPED_TRACE(row.what);
        OpenWaveform w;
        w.timeStep = BitsFloat(row.timeStep);
        w.timeShift = BitsFloat(row.timeShift);
        w.startTime = BitsFloat(row.startTime);
        w.scopeDelay = BitsFloat(row.scopeDelay);
        w.scopeDelay2 = BitsFloat(row.scopeDelay2);
        EXPECT_EQ(HexOf(row.folded), BytesHex(BytesWritten(w).substr(28, 4)));
        OpenWaveform back = OtherTrace();
        ASSERT_TRUE(back.Read(Name("written"), -1));
        EXPECT_EQ(HexOf(row.readBack), FieldsOf(back)["startTime"]);
        EXPECT_EQ(HexOf(row.timeShift), FieldsOf(back)["timeShift"]);
    }
}

TEST_F(WaveformFile, TextsWithoutABlockAreEmpty)
{
    OpenWaveform w = SampleTrace();
    for (DString *const text : {&w.units, &w.stamp, &w.note}) DStringInspector::MakeNull(*text);
    WvfRows rows = SampleRows().Set("units length", "00 00").Set("units", "");
    rows.Set("note length", "00 00").Set("note", "");
    EXPECT_EQ(BytesHex(rows.Bytes()), BytesHex(BytesWritten(w)));
    DStringInspector::MakeNull(w.stamp);
    Put("a", SampleRows().Set("old unit length", "01 00").Set("old unit", "'V'").Bytes());
    ASSERT_TRUE(w.Read(Name("a"), -1));
    EXPECT_EQ("", Differences(With(SampleFields(), {{"units", "mVunits of V"}}), w));
    EXPECT_FALSE(w.Read(nullString(), -1));
}

TEST_F(WaveformFile, LongTextKeepsTheLowWordOfItsLengthAndAllItsCharacters)
{
    OpenWaveform w = SampleTrace();
    w.units = Dstr(std::string(65536 + 3, 'u'));
    WvfRows const rows = SampleRows().Set("units length", "03 00").Set("units", "'" + std::string(65539, 'u') + "'");
    EXPECT_TRUE(rows.Bytes() == BytesWritten(w));
    w.units = Dstr(std::string(40000, 'u'));
    WvfRows const signedRows =
        SampleRows().Set("units length", "40 9C").Set("units", "'" + std::string(40000, 'u') + "'");
    EXPECT_TRUE(signedRows.Bytes() == BytesWritten(w));
}

TEST_F(WaveformFile, TextOf32768CharactersReadsAsNoneAndItsCharactersAreTakenForTheRest)
{
    // "AB" is the length 0x4241 of the next text, which reaches over the others.
    OpenWaveform w = SampleTrace();
    w.units = Dstr("AB" + std::string(32766, 'u'));
    BytesWritten(w);
    OpenWaveform back = OtherTrace();
    ASSERT_TRUE(back.Read(Name("written"), 0));
    EXPECT_EQ("old units", Plain(back.units).substr(0, 9));
    EXPECT_EQ(std::string(0x4241, 'u'), Plain(back.stamp));
}

TEST_F(WaveformFile, LongestTextThatReadsBack)
{
    OpenWaveform w = SampleTrace();
    w.note = Dstr(std::string(32767, 'n'));
    BytesWritten(w);
    OpenWaveform back;
    ASSERT_TRUE(back.Read(Name("written"), -1));
    EXPECT_EQ("", Differences(With(SampleFields(), {{"note", std::string(32767, 'n')}}), back));
}

TEST_F(WaveformFile, MoreSamplesThanOnePieceOfTheFileSurvive)
{
    int const n = 15000001; // one sample more than 60,000,000 bytes
    Waveform w(n), back;
    for (int i = 0; i < n; ++i) w[i] = static_cast<float>(i);
    ASSERT_TRUE(w.Write(Name("large")));
    EXPECT_EQ(60000004u + SampleRows().Offset("samples") - 6,
              std::filesystem::file_size(system.folder.native("large.wvf")));
    ASSERT_TRUE(back.Read(Name("large"), -1));
    ASSERT_EQ(n, back.npnts());
    EXPECT_EQ(0, std::memcmp(w.Data(), back.Data(), sizeof(float) * static_cast<std::size_t>(n)));
}

// ---- In place, locks, failures -----------------------------------------------------------------------------------

TEST_F(WaveformFile, WriteIsInPlace)
{
    Put("a", std::string(1000, '\1'));
    std::filesystem::create_hard_link(system.folder.native("a.wvf"), system.folder.native("same file"));
    OpenWaveform w = SampleTrace();
    EXPECT_TRUE(w.Write(Name("a")));
    EXPECT_EQ(BytesHex(SampleRows().Bytes()), BytesHex(system.folder.Read("same file")));
    EXPECT_EQ("a.wvf same file", system.Names(""));
}

TEST_F(WaveformFile, ExtensionIsAppendedWhateverTheNameHas)
{
    OpenWaveform w = SampleTrace(), back;
    EXPECT_TRUE(w.Write(Name("a.wvf")));
    EXPECT_TRUE(w.Write(Name("b.")));
    EXPECT_EQ("a.wvf.wvf b..wvf", system.Names(""));
    EXPECT_TRUE(back.Read(Name("a.wvf"), 0));
    EXPECT_FALSE(back.Read(Name("a"), 0));
}

struct LockRow {
    int lockState;
    bool overLock;
    char const *version; // of what is written
};

constexpr LockRow lockRows[] = {
    {0, false, "04 00"},  {1, false, "04 00"},         {2, false, "FC FF"},
    {3, false, "FC FF"},  {4, true, "04 00"},          {5, true, "04 00"},
    {6, true, "FC FF"},   {7, true, "FC FF"},          {8, true, "04 00"},
    {10, true, "FC FF"},  {2147483647, true, "FC FF"}, {-1, false, "FC FF"},
    {-2, false, "FC FF"}, {-3, false, "04 00"},        {-2147483647 - 1, false, "04 00"},
};

TEST_F(WaveformFile, LockStateSaysWhatIsWrittenWhereNothingIsLocked)
{
    for (LockRow const &row : lockRows) {
        SCOPED_TRACE(row.lockState);
        OpenWaveform w = SampleTrace();
        w.lockState = row.lockState;
        EXPECT_EQ(BytesHex(SampleRows().Set("version", row.version).Bytes()), BytesHex(BytesWritten(w)));
        EXPECT_EQ(row.lockState, w.lockState);
    }
    EXPECT_EQ("", system.Heard());
}

TEST_F(WaveformFile, LockStateSaysWhetherALockIsRespected)
{
    std::string const locked = SampleRows().Set("version", "FC FF").Set("note", "'mine'").Bytes();
    std::string const message = "2:Could not write to " + system.path("a.wvf") + " because it is locked\n";
    for (LockRow const &row : lockRows) {
        SCOPED_TRACE(row.lockState);
        Put("a", locked);
        OpenWaveform w = SampleTrace();
        w.stamp = "before";
        w.lockState = row.lockState;
        EXPECT_EQ(row.overLock, w.Write(Name("a")));
        EXPECT_EQ(row.overLock ? "" : message, system.Heard());
        EXPECT_EQ(row.overLock ? FreshSystem::Date : "before", Plain(w.stamp));
        std::string const written = SampleRows().Set("version", row.version).Bytes();
        EXPECT_EQ(BytesHex(row.overLock ? written : locked), DiskHex("a"));
    }
}

TEST_F(WaveformFile, LockIsTheSignOfTheFirst16Bits)
{
    struct {
        char const *bytes;
        bool locked;
    } const rows[] = {{"FF FF", true},        {"00 80", true},  {"00 80 00", true},
                      {"FD FF 00 00", true},  {"FF 7F", false}, {"80 00", false},
                      {"00 00 FF FF", false}, {"", false},      {"04 00", false}};
    for (auto const &row : rows) {
        SCOPED_TRACE(row.bytes);
        Put("a", HexBytes(row.bytes));
        OpenWaveform w = SampleTrace();
        EXPECT_EQ(!row.locked, w.Write(Name("a")));
        EXPECT_EQ(row.locked ? row.bytes : BytesHex(SampleRows().Bytes()), DiskHex("a"));
    }
}

TEST_F(WaveformFile, ReadOfALockedFileSetsTheLockStateAndAnotherLeavesIt)
{
    for (int const before : {0, 1, 2, 3, 4, 6, -1}) {
        SCOPED_TRACE(before);
        OpenWaveform w;
        w.lockState = before;
        Put("locked", SampleRows().Set("version", "FC FF").Bytes());
        Put("open", SampleRows().Bytes());
        ASSERT_TRUE(w.Read(Name("open"), -1));
        EXPECT_EQ(before, w.lockState);
        ASSERT_TRUE(w.Read(Name("locked"), 0));
        EXPECT_EQ(1, w.lockState);
        ASSERT_TRUE(w.Read(Name("open"), -1));
        EXPECT_EQ(1, w.lockState);
    }
}

TEST_F(WaveformFile, ReadOfALockedFileAndAForcedWriteUnlockIt)
{
    Put("a", SampleRows().Set("version", "FC FF").Bytes());
    Waveform w;
    ASSERT_TRUE(w.Read(Name("a"), -1));
    EXPECT_FALSE(w.Write(Name("a")));
    w.lockState |= 4;
    EXPECT_TRUE(w.Write(Name("a")));
    EXPECT_EQ(BytesHex(SampleRows().Bytes()), DiskHex("a"));
}

TEST_F(WaveformFile, WriteToWhereNoFileCanBeIsFalseWithoutAWord)
{
    system.folder.MakeFolder("folder.wvf");
    std::string const names[] = {
        system.path("folder"), system.path("no\\such"), system.path("wild?"), "\\\\nowhere\\share\\a", "Q:\\a",
        std::string(5000, 'n')};
    for (std::string const &name : names) {
        for (int const lockState : {0, 2, 4}) {
            SCOPED_TRACE(name + ", " + std::to_string(lockState));
            OpenWaveform w = SampleTrace();
            w.stamp = "before";
            w.lockState = lockState;
            EXPECT_FALSE(w.Write(Dstr(name)));
            EXPECT_EQ("before", Plain(w.stamp));
        }
    }
    EXPECT_EQ("", system.Heard());
    EXPECT_EQ("folder.wvf", system.Names(""));
}

TEST_F(WaveformFile, PublicWriteHasNoSay)
{
    for (bool const allowed : {true, false}) {
        PublicWrite = allowed;
        OpenWaveform w = SampleTrace();
        EXPECT_EQ(SampleRows().Bytes(), BytesWritten(w));
    }
}

TEST_F(WaveformFile, FileThatCantBeLookedAtCountsAsNotLocked)
{
    Put("a", SampleRows().Set("version", "FC FF").Bytes());
    OpenWaveform w = SampleTrace();
    Faults const faults(1);
    EXPECT_TRUE(w.Write(Name("a")));
    EXPECT_EQ(BytesHex(SampleRows().Bytes()), DiskHex("a"));
    EXPECT_EQ((std::vector<std::string>{"OpenFile", "OpenFile"}), Faults::asked);
}

TEST_F(WaveformFile, FailureToCreateLeavesTheOldFile)
{
    std::string const old = SampleRows().Set("note", "'mine'").Bytes();
    for (int const lockState : {0, 4}) {
        SCOPED_TRACE(lockState);
        Put("a", old);
        OpenWaveform w = SampleTrace();
        w.lockState = lockState;
        Faults const faults(lockState < 4 ? 2 : 1, 1000);
        EXPECT_FALSE(w.Write(Name("a")));
        EXPECT_EQ(lockState < 4 ? 2u : 1u, Faults::asked.size());
        EXPECT_EQ(BytesHex(old), DiskHex("a"));
    }
    EXPECT_EQ("", system.Heard());
}

TEST_F(WaveformFile, FailureToOpenForReadEmptiesTheArray)
{
    Put("a", SampleRows().Bytes());
    OpenWaveform w = OtherTrace();
    Faults const faults(1);
    EXPECT_FALSE(w.Read(Name("a"), -1));
    EXPECT_EQ(0, w.npnts());
}

} // namespace
