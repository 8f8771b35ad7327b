// The functions for IDL that start the library, handle shots and scalars; those for waveforms are tested beside.
#include "interfaces/VodrelIDL.h"

#include <climits>
#include <filesystem>
#include <string>
#include <vector>

#include "core/Log.h"
#include "files/PathUtils.h"
#include "foundation/Numbers.h"
#include "interfaces/VodrelC.h"
#include "support/IDLTest.h"

namespace {

using VodrelIDL = IDLTest;

/// Remembers which shots it was told of.
class ShotListener : public QNotify {
public:
    void ShotChanged(DString name, int, long long, bool) override { heard += Plain(name) + "\n"; }
    std::string heard;
};

std::string const NotCreated = "Error creating shot (most likely it already exists and name did not have *)\n";
std::string const NotSet = "Error setting shot (most likely it does not exist)\n";

// ---- The number of arguments ----

struct Arity {
    char const *name;
    int (*function)(int, void *[]);
    int count;
};

Arity const Arities[] = {{"InitializeVodrelIDL", InitializeVodrelIDL, 2},
                         {"CreateShotIDL", CreateShotIDL, 1},
                         {"SetShotIDL", SetShotIDL, 1},
                         {"GetScalarIDL", GetScalarIDL, 2},
                         {"SetScalarIDL", SetScalarIDL, 2},
                         {"GetWaveformIDL", GetWaveformIDL, 5},
                         {"GetWaveformInfoIDL", GetWaveformInfoIDL, 4},
                         {"SetWaveformIDL", SetWaveformIDL, 5}};

TEST_F(VodrelIDL, AWrongNumberOfArgumentsFailsWithoutAWord)
{
    OpenWithShot();
    EXPECT_EQ("", Printed([] {
                  for (Arity const &row : Arities)
                      for (int argc : {-1, 0, 1, 2, 3, 4, 5, 6, 255, INT_MAX, INT_MIN}) {
                          if (argc == row.count) continue;
                          EXPECT_EQ(-1, row.function(argc, nullptr)) << row.name << " " << argc;
                      }
              }));
    EXPECT_EQ(LogStart(), system.Log());
}

TEST_F(VodrelIDL, AWrongNumberOfArgumentsHasNoEffect)
{
    OpenWithShot();
    WriteShotFile("W.wvf", StoredRows().Bytes());
    std::string const before = system.Names("X/E/Shots/ShotA1") + ShotFile("Scalars.ini") + ShotFile("W.wvf");
    float number = 7;
    int n = 1;
    std::string name = "W";
    void *argv[] = {name.data(), &number, &number, &n, &number, &number, &number};
    for (Arity const &row : Arities)
        for (int argc = 0; argc <= 7; argc++) {
            if (argc == row.count) continue;
            EXPECT_EQ(-1, row.function(argc, argv)) << row.name << " " << argc;
        }
    EXPECT_EQ(before, system.Names("X/E/Shots/ShotA1") + ShotFile("Scalars.ini") + ShotFile("W.wvf"));
    EXPECT_EQ("7 1 W A1", std::to_string(int(number)) + " " + std::to_string(n) + " " + name + " " + ShotName());
    EXPECT_EQ(path("vodrel"), Plain(GetVodrelPath()));
    EXPECT_EQ("ScalarCache.ini ShotA1", system.Names("X/E/Shots"));
}

TEST_F(VodrelIDL, ANullVectorFailsWithoutAWord)
{
    EXPECT_EQ("", Printed([] {
                  for (Arity const &row : Arities) EXPECT_EQ(-1, row.function(row.count, nullptr)) << row.name;
              }));
    EXPECT_EQ("", system.Names(""));
}

// Only a text may be null, which is an empty one.
TEST_F(VodrelIDL, ANullNumberOrArrayFailsWithoutAWord)
{
    OpenWithShot();
    WriteShotFile("W.wvf", StoredRows().Bytes());
    float number = 7;
    int n = 1;
    void *const whole[] = {const_cast<char *>("W"), &number, &number, &n, &number};
    for (Arity const &row : Arities) {
        for (int i = 1; row.function != InitializeVodrelIDL && i < row.count; i++) {
            std::vector<void *> argv(whole, whole + row.count);
            argv[static_cast<std::size_t>(i)] = nullptr;
            EXPECT_EQ("",
                      Printed([&] { EXPECT_EQ(-1, row.function(row.count, argv.data())) << row.name << " " << i; }));
        }
    }
    EXPECT_EQ(7.0f, number);
    EXPECT_EQ("Scalars.ini W.wvf", system.Names("X/E/Shots/ShotA1"));
    EXPECT_EQ(StoredRows().Bytes(), ShotFile("W.wvf"));
}

// ---- Start ----

TEST_F(VodrelIDL, StartingBeginsALogAndOpensTheExperiment)
{
    EXPECT_EQ("", Printed([this] { Open(); }));
    EXPECT_EQ(LogStart(), system.Log());
    EXPECT_EQ(path("vodrel"), Plain(GetVodrelPath()));
    EXPECT_EQ(path("X\\E"), Plain(Expt.GetExperimentFolder()));
    EXPECT_EQ("E.ini Macros Query Shots", system.Names("X/E"));
    EXPECT_EQ("Log.txt Vodrel.ini", system.Names("user/Vodrel"));
}

TEST_F(VodrelIDL, StartingAgainStartsAgain)
{
    OpenWithShot();
    ShotListener listener;
    SetQNotify(&listener);
    SetNotify(&system.listener);
    Logging = true;
    StandingClock::counts += 12500;
    Log("to be lost");
    Open();
    EXPECT_EQ(LogStart(), system.Log());
    EXPECT_EQ(nullptr, QNot);
    EXPECT_EQ(&IDLNotifier, InstalledNotifier);
    EXPECT_FALSE(Logging);
    EXPECT_EQ("", ShotName());
    EXPECT_EQ("", system.Heard());
}

TEST_F(VodrelIDL, StartingAgainTakesOtherFolders)
{
    OpenWithShot();
    EXPECT_EQ(0, Initialize(path("other"), path("Y\\F")));
    EXPECT_EQ(LogStart("other"), system.Log());
    EXPECT_EQ(path("Y\\F"), Plain(Expt.GetExperimentFolder()));
    EXPECT_EQ("F.ini Macros Query Shots", system.Names("Y/F"));
}

TEST_F(VodrelIDL, ASuffixOfThePathIsAPartOfIt)
{
    EXPECT_EQ(0, Initialize(path("vodrel$L"), path("X\\E")));
    EXPECT_FALSE(Logging);
    EXPECT_EQ(path("vodrel$L"), Plain(GetVodrelPath()));
    EXPECT_EQ(LogStart("vodrel$L"), system.Log());
}

TEST_F(VodrelIDL, TheProcessIsNotThatOfACClient)
{
    OpenWithShot();
    EXPECT_FALSE(ExternalInit);
    SetExperimentC(path("Y\\F").c_str());
    EXPECT_EQ(path("X\\E"), Plain(Expt.GetExperimentFolder()));
    EXPECT_FALSE(system.folder.Has("Y"));
}

TEST_F(VodrelIDL, TheFunctionsForCTellAListenerAndThoseForIDLDont)
{
    OpenWithShot();
    EXPECT_EQ(1, SetShotC("A1"));
    EXPECT_EQ(LogStart(), system.Log());
    ShotListener listener;
    SetQNotify(&listener);
    EXPECT_EQ(0, Create("B1") + Set("A1"));
    EXPECT_EQ("", listener.heard);
    EXPECT_EQ(1, SetShotC("B1"));
    EXPECT_EQ("B1\n", listener.heard);
    EXPECT_EQ(LogStart() + LogLine("here"), system.Log());
}

TEST_F(VodrelIDL, NativeAbsoluteFoldersAreTaken)
{
    EXPECT_EQ(0, Initialize(system.folder.native("vodrel"), system.folder.native("X/E")));
    EXPECT_EQ(path("vodrel"), Plain(GetVodrelPath()));
    EXPECT_EQ(path("X\\E"), Plain(Expt.GetExperimentFolder()));
    EXPECT_EQ("E.ini Macros Query Shots", system.Names("X/E"));
}

TEST_F(VodrelIDL, AnEmptyInstallationFolderIsThatOfTheProgram)
{
    std::string program = Platform::ProgramFile();
    program.erase(program.rfind('\\'));
    for (char const *empty : {"", static_cast<char const *>(nullptr)}) {
        VodrelPath = "before";
        EXPECT_EQ(0, Call(InitializeVodrelIDL, {empty, path("X\\E").c_str()}));
        EXPECT_EQ(program, Plain(GetVodrelPath()));
        EXPECT_EQ("E", Plain(Expt.GetExperimentName()));
    }
}

TEST_F(VodrelIDL, AnEmptyExperimentFolderClosesTheExperiment)
{
    for (char const *empty : {"", static_cast<char const *>(nullptr)}) {
        OpenWithShot("*A1");
        EXPECT_EQ(0, Call(InitializeVodrelIDL, {path("vodrel").c_str(), empty}));
        EXPECT_EQ("", Plain(Expt.GetExperimentFolder() + Expt.GetShotName()));
        EXPECT_EQ(-1, Expt.GetCurrentGroup());
    }
}

TEST_F(VodrelIDL, AnExperimentThatCannotBeMadeIsNoFailure)
{
    system.folder.Write("file");
    EXPECT_EQ("", Printed([this] { EXPECT_EQ(0, Initialize(path("vodrel"), path("file\\E"))); }));
    EXPECT_EQ("E", Plain(Expt.GetExperimentName()));
    EXPECT_EQ(LogStart(), system.Log());
}

// ---- Shots ----

TEST_F(VodrelIDL, AShotIsCreatedWithItsDate)
{
    Open();
    EXPECT_EQ("", Printed([] { EXPECT_EQ(0, Create("A1")); }));
    EXPECT_EQ("A1", ShotName());
    EXPECT_EQ("[Fields]\r\nDate=06/10/2024 08:13:20", ShotFile("Scalars.ini"));
    EXPECT_EQ(LogStart(), system.Log());
}

TEST_F(VodrelIDL, AnExistingShotIsNotCreated)
{
    OpenWithShot();
    EXPECT_EQ(0, Create("B1"));
    EXPECT_EQ(NotCreated, Printed([] { EXPECT_EQ(-1, Create("A1")); }));
    EXPECT_EQ("B1", ShotName());
}

TEST_F(VodrelIDL, AStarTakesAnExistingShotAndDatesIt)
{
    OpenWithShot();
    EXPECT_EQ(0, Create("B1"));
    StandingClock::now += 60;
    char name[] = "*A1";
    EXPECT_EQ("", Printed([&] { EXPECT_EQ(0, Create(name)); }));
    EXPECT_STREQ("*A1", name);
    EXPECT_EQ("A1", ShotName());
    EXPECT_EQ("[Fields]\r\nDate=06/10/2024 08:14:20", ShotFile("Scalars.ini"));
}

TEST_F(VodrelIDL, AShotIsReusedForAFileThatIsntThereYet)
{
    OpenWithShot();
    EXPECT_EQ(0, Create("A1\\W"));
    WriteShotFile("W.wvf", StoredRows().Bytes());
    EXPECT_EQ(NotCreated, Printed([] { EXPECT_EQ(-1, Create("A1\\W")); }));
    EXPECT_EQ(0, Create("*A1\\W"));
}

TEST_F(VodrelIDL, AStarAloneHasNothingToDoWithTheCurrentFolder)
{
    OpenWithShot();
    system.folder.MakeFolder("Shot123");
    system.GoTo("Shot123");
    EXPECT_EQ(0, Create("*"));
    EXPECT_EQ("", ShotName());
    EXPECT_EQ("ScalarCache.ini Shot ShotA1", system.Names("X/E/Shots"));
}

TEST_F(VodrelIDL, AnEmptyNameCreatesTheBareWord)
{
    for (char const *empty : {"", static_cast<char const *>(nullptr)}) {
        OpenWithShot("*A1");
        EXPECT_EQ(0, Create(empty));
        EXPECT_EQ("ScalarCache.ini Shot ShotA1", system.Names("X/E/Shots"));
        EXPECT_EQ(NotCreated, Printed([&] { EXPECT_EQ(-1, Create(empty)); }));
        std::filesystem::remove(system.folder.native("X/E/Shots/Shot/Scalars.ini"));
        std::filesystem::remove(system.folder.native("X/E/Shots/Shot"));
    }
}

TEST_F(VodrelIDL, AnExistingShotIsSet)
{
    OpenWithShot();
    EXPECT_EQ(0, Create("B1"));
    EXPECT_EQ("", Printed([] { EXPECT_EQ(0, Set("A1")); }));
    EXPECT_EQ("A1", ShotName());
    EXPECT_EQ(0, Set("*B1"));
    EXPECT_EQ("B1", ShotName());
    EXPECT_EQ(LogStart(), system.Log());
}

TEST_F(VodrelIDL, AMissingShotIsNotSet)
{
    OpenWithShot();
    for (char const *missing : {"None", "", "A1\\W", static_cast<char const *>(nullptr)}) {
        EXPECT_EQ(NotSet, Printed([&] { EXPECT_EQ(-1, Set(missing)); }));
        EXPECT_EQ("A1", ShotName());
    }
}

TEST_F(VodrelIDL, WithoutAnExperimentShotsFail)
{
    EXPECT_EQ(0, Initialize(path("vodrel"), ""));
    EXPECT_EQ(NotCreated, Printed([] { EXPECT_EQ(-1, Create("*A1")); }));
    EXPECT_EQ(NotSet, Printed([] { EXPECT_EQ(-1, Set("A1")); }));
}

TEST_F(VodrelIDL, MessagesGoToTheNotifierThatIsInstalled)
{
    Open();
    SetNotify(&system.listener);
    EXPECT_EQ("", Printed([] {
                  EXPECT_EQ(-1, Set("None"));
                  EXPECT_EQ(-1, WaveInfo("None").status);
              }));
    EXPECT_EQ("2:Error setting shot (most likely it does not exist)\n"
              "2:Error reading waveform info for None (most likely it does not exist)\n",
              system.Heard());
}

// ---- Scalars ----

TEST_F(VodrelIDL, FormulasAreEvaluated)
{
    OpenWithShot();
    WriteShotFile("W.wvf", StoredRows().Bytes());
    EXPECT_EQ(0, SetScalar("ChargeVoltage", 2.5f));
    struct {
        char const *formula;
        float value;
    } const rows[] = {{"2+3*4", 14},  {"ChargeVoltage", 2.5f}, {"chargevoltage*1000", 2500},
                      {"W\\mx", 2},   {"W\\tp*2", 1},          {"None::7", 7},
                      {"1e-5", 1e-5f}};
    for (auto const &row : rows) EXPECT_EQ(FloatBits(row.value), FloatBits(Scalar(row.formula))) << row.formula;
}

// -3.3e38, which no measurement has.
TEST_F(VodrelIDL, WhatHasNoValueIsNoFailure)
{
    OpenWithShot();
    std::string const printed = Printed([] {
        for (char const *formula : {"None", "None\\mx", "1/0", "2 * 3", "", static_cast<char const *>(nullptr)})
            EXPECT_EQ(0xFF7843B0u, FloatBits(Scalar(formula)));
    });
    EXPECT_EQ("", printed);
    EXPECT_FALSE(IsVF(Scalar("None")));
    EXPECT_EQ("Expression cannot be evaluated because of unmatched bracket\n",
              Printed([] { EXPECT_EQ(0xFF7843B0u, FloatBits(Scalar("[W"))); }));
}

TEST_F(VodrelIDL, WithoutAShotNumbersAreStillComputed)
{
    Open();
    EXPECT_EQ(0, SetScalar("x", 1));
    EXPECT_EQ(FloatBits(0.5f), FloatBits(Scalar("2^-1")));
    EXPECT_EQ(0xFF7843B0u, FloatBits(Scalar("x")));
    EXPECT_EQ("", system.Names("X/E/Shots"));
}

TEST_F(VodrelIDL, ScalarsAreStoredWithEightDigits)
{
    OpenWithShot();
    struct {
        float value;
        char const *text;
    } const rows[] = {{2.5f, "2.5"}, {0.1f, "0.1"}, {1.0f / 3, "0.33333334"}, {-1e10f, "-1e+10"}, {0, "0"}};
    for (auto const &row : rows) {
        EXPECT_EQ(0, SetScalar("x", row.value));
        EXPECT_EQ(std::string("[Fields]\r\nDate=06/10/2024 08:13:20\r\nx=") + row.text, ShotFile("Scalars.ini"));
    }
    EXPECT_EQ(0, SetScalar("", 1) + SetScalar(nullptr, 1));
    EXPECT_EQ("[Fields]\r\nDate=06/10/2024 08:13:20\r\nx=0", ShotFile("Scalars.ini"));
}

TEST_F(VodrelIDL, FreeParametersOfAWaveformAreStored)
{
    OpenWithShot();
    WriteShotFile("W.wvf", StoredRows().Bytes());
    EXPECT_EQ("", Printed([] {
                  for (char const *ignored : {"W\\T12", "W\\X2", "None\\T2", "A1\\W\\T2"})
                      EXPECT_EQ(0, SetScalar(ignored, 9)) << ignored;
              }));
    EXPECT_EQ(StoredRows().Bytes(), ShotFile("W.wvf"));
    EXPECT_EQ(0, SetScalar("W\\T2", 0.5f));
    EXPECT_EQ(StoredRows().Set("t2", "00 00 00 3F").Bytes(), ShotFile("W.wvf"));
}

} // namespace
