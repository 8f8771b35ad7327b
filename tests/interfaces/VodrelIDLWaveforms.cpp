// The functions for IDL that read and store waveforms.
#include "interfaces/VodrelIDL.h"

#include <climits>
#include <limits>
#include <string>
#include <vector>

#include "support/Faults.h"
#include "support/IDLTest.h"

namespace {

std::string NotRead(std::string const &name)
{
    return "Error reading waveform info for " + name + " (most likely it does not exist)\n";
}

class VodrelIDLWaveforms : public IDLTest {
protected:
    /// A shot with the waveform "W" of `StoredRows`.
    void OpenWithWave()
    {
        OpenWithShot();
        WriteShotFile("W.wvf", StoredRows().Bytes());
    }
};

float const nan = std::numeric_limits<float>::quiet_NaN();
float const infinity = std::numeric_limits<float>::infinity();

// ---- Storing ----

TEST_F(VodrelIDLWaveforms, AWaveformIsStoredInTheShot)
{
    OpenWithShot();
    std::vector<float> const given = Samples;
    EXPECT_EQ("", Printed([&] { EXPECT_EQ(0, SetWave("W", 1.5f, 0.5f, 3, given.data())); }));
    EXPECT_EQ(BytesHex(StoredRows().Bytes()), BytesHex(ShotFile("W.wvf")));
    EXPECT_EQ("Scalars.ini W.wvf", system.Names("X/E/Shots/ShotA1"));
    EXPECT_EQ(BitsOfAll(Samples), BitsOfAll(given));
}

TEST_F(VodrelIDLWaveforms, AStoredWaveformReplacesTheOldOne)
{
    OpenWithShot();
    WriteShotFile("W.wvf", SampleRows().Bytes() + std::string(1000, 'x'));
    EXPECT_EQ(0, SetWave("w", 1.5f, 0.5f, 3, Samples.data()));
    EXPECT_EQ(BytesHex(StoredRows().Bytes()), BytesHex(ShotFile("W.wvf")));
}

TEST_F(VodrelIDLWaveforms, AWaveformOfAnotherShotIsStoredThere)
{
    OpenWithShot();
    EXPECT_EQ(0, Create("B1"));
    EXPECT_EQ(0, SetWave("A1\\W", 1.5f, 0.5f, 3, Samples.data()));
    EXPECT_EQ(BytesHex(StoredRows().Bytes()), BytesHex(ShotFile("W.wvf")));
    EXPECT_EQ(BitsOfAll(Samples), Wave("A1\\W", 1.5f, 0.5f, 3));
}

TEST_F(VodrelIDLWaveforms, AnInvalidSampleIsStoredAsABadOne)
{
    OpenWithShot();
    std::vector<float> const given = {1, nan, 2, -0.5f, infinity};
    EXPECT_EQ(0, SetWave("W", 1.5f, 0.5f, 5, given.data()));
    EXPECT_EQ(BitsOfAll({1, -3.3e38f, 2, -0.5f, -3.3e38f}), Wave("W", 1.5f, 0.5f, 5));
    EXPECT_EQ(BitsOfAll(given), BitsOfAll({1, nan, 2, -0.5f, infinity}));
}

// The extremes of no samples are -3.3e38 and 3.3e38, at no position, and the tick is that of 3.3e38.
TEST_F(VodrelIDLWaveforms, ACountBelow1StoresNoSamples)
{
    OpenWithShot();
    WvfRows rows = StoredRows().Set("fileCount", "00 00 00 00").Set("count again", "00 00 00 00").Set("samples", "");
    rows.Set("maxValue", "B0 43 78 FF").Set("minValue", "B0 43 78 7F").Set("scaleUnit", "99 76 16 7E");
    rows.Set("pointOfMax", "00 00 00 00").Set("pointOfMin", "00 00 00 00");
    for (int n : {0, -1, INT_MIN}) {
        std::string const name = "W" + std::to_string(n);
        EXPECT_EQ(0, SetWave(name.c_str(), 1.5f, 0.5f, n, Samples.data()));
        EXPECT_EQ(BytesHex(rows.Bytes()), BytesHex(ShotFile(name + ".wvf"))) << n;
    }
}

TEST_F(VodrelIDLWaveforms, AStepIsStoredAsItIs)
{
    OpenWithShot();
    for (float step : {-0.5f, infinity, 1e-38f}) {
        EXPECT_EQ(0, SetWave("W", 1.5f, step, 3, Samples.data()));
        EXPECT_EQ(BytesHex(StoredRows().Set("timeStep", HexOf(FloatBits(step))).Bytes()), BytesHex(ShotFile("W.wvf")));
        EXPECT_EQ((Info{0, 1.5f, step, 3}), WaveInfo("W"));
    }
    EXPECT_EQ(0, SetWave("W", 1.5f, 0, 3, Samples.data()));
    EXPECT_EQ(BytesHex(StoredRows().Set("timeStep", "00 00 00 00").Bytes()), BytesHex(ShotFile("W.wvf")));
    EXPECT_EQ((Info{0, 1.5f, 1, 3}), WaveInfo("W")); // 0 never comes out of a file
}

TEST_F(VodrelIDLWaveforms, AWriteThatFailsIsNotTold)
{
    OpenWithShot();
    EXPECT_EQ("", Printed([this] {
                  Faults const faults(1, INT_MAX, "OpenFile");
                  EXPECT_EQ(0, SetWave("W", 1.5f, 0.5f, 3, Samples.data()));
                  EXPECT_LT(0u, Faults::asked.size());
              }));
    EXPECT_EQ("Scalars.ini", system.Names("X/E/Shots/ShotA1"));
    EXPECT_EQ(LogStart(), system.Log());
}

TEST_F(VodrelIDLWaveforms, ANameThatLeadsNowhereIsNotTold)
{
    OpenWithShot();
    system.folder.MakeFolder("here");
    system.GoTo("here");
    EXPECT_EQ("", Printed([] {
                  for (char const *name : {"NoShot\\W", "Z:\\W", "", static_cast<char const *>(nullptr)})
                      EXPECT_EQ(0, SetWave(name, 1.5f, 0.5f, 3, Samples.data()));
              }));
    EXPECT_EQ("Scalars.ini", system.Names("X/E/Shots/ShotA1"));
    EXPECT_EQ("", system.Names("here"));
}

TEST_F(VodrelIDLWaveforms, ALockedWaveformIsReadAndNotOverwritten)
{
    OpenWithShot();
    std::string const locked = StoredRows().Set("version", "FC FF").Bytes();
    WriteShotFile("W.wvf", locked);
    EXPECT_EQ(BitsOfAll(Samples), Wave("W", 1.5f, 0.5f, 3));
    EXPECT_EQ("Could not write to " + path("X\\E\\Shots\\ShotA1\\W.wvf") + " because it is locked\n",
              Printed([] { EXPECT_EQ(0, SetWave("W", 0, 1, 3, Samples.data())); }));
    EXPECT_EQ(locked, ShotFile("W.wvf"));
}

// ---- Reading ----

TEST_F(VodrelIDLWaveforms, AWaveformIsReadOnTheGridThatIsAsked)
{
    OpenWithWave();
    struct {
        float start;
        float step;
        std::vector<float> values;
    } const rows[] = {{1.5f, 0.5f, {1, 2, -0.5f}},
                      {1.5f, 0.5f, {1, 2}},
                      {1.5f, 0.5f, {1, 2, -0.5f, 0, 0}},
                      {1.75f, 0.5f, {1.5f, 0.75f, 0, 0}},
                      {1.0f, 0.5f, {0, 1, 2, -0.5f, 0}},
                      {1.5f, 0.25f, {1, 1.5f, 2, 0.75f, -0.5f, 0}},
                      {1.5f, 1.0f, {1, -0.5f, 0}},
                      {9.0f, 0.5f, {0, 0}},
                      {-9.0f, 0.5f, {0, 0}},
                      {nan, 0.5f, {0, 0, 0}},
                      {-infinity, 0.5f, {0, 0, 0}},
                      {1.5f, infinity, {1, 0, 0}}};
    for (auto const &row : rows)
        EXPECT_EQ(BitsOfAll(row.values), Wave("W", row.start, row.step, static_cast<int>(row.values.size())))
            << row.start << " " << row.step;
    EXPECT_EQ(StoredRows().Bytes(), ShotFile("W.wvf"));
}

TEST_F(VodrelIDLWaveforms, WithoutAPositiveStepTheSamplesComeAsTheyAre)
{
    OpenWithWave();
    for (float step : {0.0f, -0.0f, -0.5f, -infinity}) {
        EXPECT_EQ(BitsOfAll(Samples), Wave("W", 9.0f, step, 3)) << step;
        EXPECT_EQ(BitsOfAll({1, 2}), Wave("W", 9.0f, step, 2)) << step;
        EXPECT_EQ(BitsOfAll({1, 2, -0.5f, 0, 0}), Wave("W", 9.0f, step, 5)) << step;
    }
    Bits expected = BitsOfAll(Samples);
    expected.resize(1000);
    EXPECT_EQ(expected, Wave("W", 9.0f, 0, 1000));
}

TEST_F(VodrelIDLWaveforms, ACountBelow1ReadsNothing)
{
    OpenWithWave();
    for (int n : {0, -1, INT_MIN}) {
        for (float step : {0.5f, 0.25f, 0.0f, -1.0f}) EXPECT_EQ(Bits(), Wave("W", 1.5f, step, n)) << n << " " << step;
    }
}

TEST_F(VodrelIDLWaveforms, AMissingWaveformLeavesTheArrayAlone)
{
    OpenWithWave();
    WriteShotFile("Short.wvf", "\4");
    WriteShotFile("Empty.wvf", StoredRows().Set("fileCount", "00 00 00 00").Bytes());
    system.folder.MakeFolder("X/E/Shots/ShotA1/Folder.wvf");
    for (char const *name :
         {"None", "Short", "Empty", "Folder", "NoShot\\W", "A1\\None", "", static_cast<char const *>(nullptr)}) {
        Floats out({5, 6, 7});
        EXPECT_EQ(NotRead(name ? name : ""), Printed([&] { EXPECT_EQ(-1, Wave(name, 0, 1, 3, out.values.data())); }));
        EXPECT_EQ(BitsOfAll({5, 6, 7}), out.Get());
    }
}

TEST_F(VodrelIDLWaveforms, WithoutAShotNamesAreFilesOfTheCurrentFolder)
{
    Open();
    system.folder.MakeFolder("here");
    system.GoTo("here");
    EXPECT_EQ(NotRead("W"), Printed([] { EXPECT_EQ(-1, WaveInfo("W").status); }));
    EXPECT_EQ(0, SetWave("W", 1.5f, 0.5f, 3, Samples.data()));
    EXPECT_EQ(StoredRows().Bytes(), system.folder.Read("here/W.wvf"));
    EXPECT_EQ((Info{0, 1.5f, 0.5f, 3}), WaveInfo("W"));
}

// ---- Information ----

TEST_F(VodrelIDLWaveforms, TheInfoComesFromTheHeaderAlone)
{
    OpenWithShot();
    WriteShotFile("W.wvf", SampleRows().Set("samples", "").Bytes());
    EXPECT_EQ("", Printed([] { EXPECT_EQ((Info{0, 7.5f, 0.25f, 3}), WaveInfo("W")); }));
    WriteShotFile("W.wvf", SampleRows().Set("fileCount", "FF FF FF 7F").Bytes());
    EXPECT_EQ((Info{0, 7.5f, 0.25f, INT_MAX}), WaveInfo("W"));
}

TEST_F(VodrelIDLWaveforms, TheInfoOfAMissingWaveformIsThatOfANewOne)
{
    OpenWithWave();
    for (char const *name : {"None", "NoShot\\W", "A1\\None", ""})
        EXPECT_EQ(NotRead(name), Printed([&] { EXPECT_EQ((Info{-1, 0, 1, 0}), WaveInfo(name)); })) << name;
    EXPECT_EQ(NotRead(""), Printed([&] { EXPECT_EQ((Info{-1, 0, 1, 0}), WaveInfo(nullptr)); }));
}

TEST_F(VodrelIDLWaveforms, AWaveformWithoutSamplesCountsAsMissingButHasItsTimes)
{
    OpenWithShot();
    EXPECT_EQ(0, SetWave("W", 1.5f, 0.5f, 0, Samples.data()));
    EXPECT_EQ(NotRead("W"), Printed([] { EXPECT_EQ((Info{-1, 1.5f, 0.5f, 0}), WaveInfo("W")); }));
}

TEST_F(VodrelIDLWaveforms, ANegativeCountInAFileIsHandedOn)
{
    OpenWithShot();
    WriteShotFile("W.wvf", StoredRows().Set("fileCount", "FD FF FF FF").Bytes());
    EXPECT_EQ("", Printed([] { EXPECT_EQ((Info{0, 1.5f, 0.5f, -3}), WaveInfo("W")); }));
    Floats out({5, 6, 7});
    EXPECT_EQ(NotRead("W"), Printed([&] { EXPECT_EQ(-1, Wave("W", 1.5f, 0.5f, 3, out.values.data())); }));
    EXPECT_EQ(BitsOfAll({5, 6, 7}), out.Get());
}

} // namespace
