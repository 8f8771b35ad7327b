// The flat functions inside a host that has started the library itself: changes of the current shot are told to it.
// Nothing here may call InitializeVodrelC, which makes the process that of a stand-alone client for good.

#include <string>

#include <gtest/gtest.h>

#include "experiment/Experiment.h"
#include "interfaces/VodrelC.h"
#include "support/FreshSystem.h"

namespace {

/// Remembers which shots it was told of, and changes the text that it was given, which is its own.
class Host : public QNotify {
public:
    void ShotChanged(DString name, int gnum, long long word, bool flag) override
    {
        heard +=
            Plain(name) + " " + std::to_string(gnum) + " " + std::to_string(word) + (flag ? " true\n" : " false\n");
        current += Plain(Expt.GetShotName()) + "\n";
        name.SetChar(0, '?');
    }
    void Reserved() override { heard += "reserved\n"; }
    std::string heard;
    std::string current;
};

class FreshHost : public testing::Test {
protected:
    FreshHost()
    {
        Expt = Experiment();
        Expt.SetExperimentFolder(Dstr(system.path("X\\E")));
        SetQNotify(&host);
    }
    ~FreshHost() override { Expt = Experiment(); }

    FreshSystem system;
    Host host;
};

TEST_F(FreshHost, ACreatedShotIsTold)
{
    EXPECT_EQ(1, CreateShotC("A1"));
    EXPECT_EQ("A1 -1 0 false\n", host.heard);
    EXPECT_EQ("A1\n", host.current);
    EXPECT_EQ("(missing)", system.Log());
}

TEST_F(FreshHost, ATakenShotIsToldWithoutTheStar)
{
    CreateShotC("A1");
    CreateShotC("B1");
    host.heard.clear();
    EXPECT_EQ(1, CreateShotC("*A1"));
    EXPECT_EQ("A1 -1 0 false\n", host.heard);
}

TEST_F(FreshHost, AShotIsToldWithTheFileBehindItsName)
{
    EXPECT_EQ(1, CreateShotC("*A1\\W"));
    EXPECT_EQ("A1\\W -1 0 false\n", host.heard);
    EXPECT_EQ("A1\n", host.current);
}

TEST_F(FreshHost, TheShotOfTheCurrentFolderIsTold)
{
    system.folder.MakeFolder("Shot123");
    system.GoTo("Shot123");
    EXPECT_EQ(1, CreateShotC("*"));
    EXPECT_EQ("123 -1 0 false\n", host.heard);
}

TEST_F(FreshHost, AShotThatIsSetIsToldAsTheCallerNamedIt)
{
    CreateShotC("A1");
    CreateShotC("B1");
    host.heard.clear();
    EXPECT_EQ(1, SetShotC("*A1"));
    EXPECT_EQ("*A1 -1 0 false\n", host.heard);
    EXPECT_EQ("A1", Plain(Expt.GetShotName()));
}

TEST_F(FreshHost, SettingAShotWritesTheLineHere)
{
    CreateShotC("A1");
    EXPECT_EQ("(missing)", system.Log());
    EXPECT_EQ(1, SetShotC("A1"));
    EXPECT_EQ(LogLine("here"), system.Log());
}

TEST_F(FreshHost, FailuresAreReportedAndNotTold)
{
    CreateShotC("A1");
    host.heard.clear();
    EXPECT_EQ(0, CreateShotC("A1"));
    EXPECT_EQ(0, SetShotC("None"));
    EXPECT_EQ("", host.heard);
    EXPECT_EQ("2:Error creating shot A1 (most likely it already exists and name did not have *) expt is " +
                  system.path("X") + "\n2:Error setting shot (most likely it does not exist)\n",
              system.Heard());
    EXPECT_EQ("(missing)", system.Log());
}

TEST_F(FreshHost, WithoutAListenerNothingIsToldOrLogged)
{
    SetQNotify(nullptr);
    EXPECT_EQ(1, CreateShotC("A1"));
    EXPECT_EQ(1, SetShotC("A1"));
    EXPECT_EQ("", host.heard);
    EXPECT_EQ("(missing)", system.Log());
}

TEST_F(FreshHost, SettingAnExperimentStillDoesNothing)
{
    SetExperimentC(system.path("X\\Other").c_str());
    EXPECT_EQ("E", Plain(Expt.GetExperimentName()));
    EXPECT_EQ("E", system.Names("X"));
    EXPECT_EQ("", system.Heard());
}

TEST_F(FreshHost, OtherFunctionsNeedNoStart)
{
    CreateShotC("A1");
    host.heard.clear();
    SetStringDataC("Run", "7");
    char buffer[] = "^^";
    int length = 2;
    GetStringDataC("Run", &length, buffer);
    EXPECT_STREQ("7^", buffer);
    EXPECT_EQ("", host.heard);
}

} // namespace
