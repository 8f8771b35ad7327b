// What the flat functions do in a process that has only loaded the library. Nothing here may start it: the flag that
// tells a stand-alone client from a host, and the empty installation path, don't come back.

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "data/Waveform.h"
#include "experiment/Experiment.h"
#include "files/PathUtils.h"
#include "interfaces/VodrelC.h"
#include "support/FreshSystem.h"
#include "support/Hex.h"

namespace {

class FreshLoad : public testing::Test {
protected:
    FreshLoad() : system(false)
    {
        system.folder.MakeFolder("here");
        system.GoTo("here");
        StandingClock::counts = 12500;
    }

    static std::string Text(int code)
    {
        std::string buffer(1000, '^');
        int length = 1000;
        GetStringC(code, &length, buffer.data());
        return buffer.substr(0, static_cast<std::size_t>(length));
    }

    template <typename Action>
    static std::string Printed(Action action)
    {
        testing::internal::CaptureStdout();
        action();
        return testing::internal::GetCapturedStdout();
    }

    FreshSystem system;
};

TEST_F(FreshLoad, TheGlobalsAreAsTheyComeUp)
{
    EXPECT_EQ(nullptr, QNot);
    EXPECT_EQ(nullptr, InstalledNotifier);
    EXPECT_FALSE(Logging || Silent || PublicWrite);
    EXPECT_EQ("", Plain(GetVodrelPath() + GetUserPath() + GetWorkingPath() + GetComputerNameD()));
    EXPECT_EQ("", Plain(VoIni.FileName()));
    EXPECT_EQ(0, SheetData.Count());
    EXPECT_EQ(0.0, StartTime);
    EXPECT_EQ("", Plain(Expt.GetExperimentFolder() + Expt.GetShotName() + Expt.GetShotFolder()));
    EXPECT_EQ(0, Expt.GetCurrentGroup());
}

TEST_F(FreshLoad, TheConstantsHaveTheirValues)
{
    EXPECT_EQ(0x7FFFFFFFu, npos);
    EXPECT_EQ(0x7F7843B0u, BitsOf(DFMax));
    EXPECT_EQ(0x40490FDBu, BitsOf(pi));
    EXPECT_EQ("\r\n", std::string(LDelim, 2));
    EXPECT_EQ(2, LenLD);
    EXPECT_STREQ("", DEmptyString);
    EXPECT_EQ(DEmptyString, DString().c_str());
    EXPECT_EQ(19, Experiment::CurDataVersion);
    EXPECT_EQ(316, TestFuncC());
}

TEST_F(FreshLoad, SettingAnExperimentDoesNothingAndSaysNothing)
{
    EXPECT_EQ("", Printed([this] {
                  SetExperimentC(system.path("X\\E").c_str());
                  SetExperimentC(system.folder.native("X/E").c_str());
                  SetExperimentC(nullptr);
              }));
    EXPECT_EQ("here", system.Names(""));
    EXPECT_EQ("", system.Names("here"));
    EXPECT_EQ("", Plain(Expt.GetExperimentFolder()));
    EXPECT_EQ(0, Expt.GetCurrentGroup());
}

// The installation path is still empty, so that an empty one counts as the same again.
TEST_F(FreshLoad, StartingWithAnEmptyPathOnlyWritesALine)
{
    for (char const *none : {"", static_cast<char const *>(nullptr), "$L"}) InitializeVodrelC(none);
    std::string const line = "InitializeVodrelC called again by 1.25e+01\r\n";
    EXPECT_EQ(line + line + line, system.folder.Read("here/Log.txt"));
    EXPECT_EQ("here", system.Names(""));
    EXPECT_FALSE(Logging);
    EXPECT_EQ(nullptr, InstalledNotifier);
    EXPECT_EQ("", Text(0));
    SetExperimentC(system.path("X\\E").c_str());
    EXPECT_EQ("", Plain(Expt.GetExperimentFolder()));
}

TEST_F(FreshLoad, TextsOfTheFrameAndOfTheUserAreThere)
{
    EXPECT_EQ("Test string from Vodrel", Text(99));
    EXPECT_EQ(system.path("user\\Vodrel"), Text(4));
    EXPECT_EQ(system.path("user\\Vodrel\\MPIHosts.txt"), Text(5));
    for (int code : {0, 1, 2, 3, 6, 7, -1}) EXPECT_EQ("", Text(code)) << code;
}

TEST_F(FreshLoad, ShotsFailAndAreReportedOnStandardOutput)
{
    EXPECT_EQ("Error creating shot *A1 (most likely it already exists and name did not have *) expt is \n",
              Printed([] { EXPECT_EQ(0, CreateShotC("*A1")); }));
    EXPECT_EQ("Error setting shot (most likely it does not exist)\n", Printed([] { EXPECT_EQ(0, SetShotC("A1")); }));
    EXPECT_EQ("", system.Names("here"));
    Expt = Experiment();
}

TEST_F(FreshLoad, AStarAloneIsReportedAsItWasGiven)
{
    EXPECT_EQ("Error creating shot * (most likely it already exists and name did not have *) expt is \n",
              Printed([] { EXPECT_EQ(0, CreateShotC("*")); }));
}

TEST_F(FreshLoad, NotificationsArePrinted)
{
    EXPECT_EQ("a\nb\n\n", Printed([] {
                  NotifyC(2, 0, "a");
                  NotifyC(99, 0, "b");
                  NotifyC(5, 0, nullptr);
              }));
    EXPECT_EQ("", system.Names("here"));
}

TEST_F(FreshLoad, StringsAreEmptyAndGoNowhere)
{
    char buffer[] = "^^^";
    int length = 3;
    SetStringDataC("Run", "7");
    GetStringDataC("Run", &length, buffer);
    EXPECT_EQ(0, length);
    EXPECT_STREQ("^^^", buffer);
    EXPECT_EQ("", system.Names("here"));
}

TEST_F(FreshLoad, WaveformsWorkInTheCurrentDirectory)
{
    float const values[] = {1, 2};
    float read[3] = {9, 9, 9};
    SetWaveformC("W", 2, 0, 1, values);
    EXPECT_EQ("W.wvf", system.Names("here"));
    GetWaveformC("W", 3, 0, 1, read);
    EXPECT_EQ(1.0f, read[0]);
    EXPECT_EQ(2.0f, read[1]);
    EXPECT_EQ(0.0f, read[2]);
}

TEST_F(FreshLoad, ALineOfTheLogHasTheTimeOfTheRawCounter)
{
    Log("hello");
    EXPECT_EQ("hello by 1.25e+01\r\n", system.folder.Read("here/Log.txt"));
}

} // namespace
