/// The section of a settings file that says which shot was in use.
#include <string>

#include "support/ExperimentTest.h"
#include "support/Faults.h"

namespace {

class Stamps : public ExperimentTest {
protected:
    Stamps() { OpenWithRuns(); }
};

TEST_F(Stamps, HoldShotAndPathAndTime)
{
    Write("c.ini", "[A]\r\nx=1\r\n[LastRun]\r\nold=1\r\nShot=old\r\n;note\r\n[B]\r\ny=2");
    DIni ini(Dstr(path("c.ini")));
    Set("A1", 1);
    expt.StampConfigFile(ini);
    EXPECT_EQ("[A]\r\nx=1\r\n[B]\r\ny=2\r\n[LastRun]\r\nShot=A1\r\nShotPath=" + path("X\\Data\\RunA") +
                  "\r\nStarted=" + FreshSystem::Date,
              Read("c.ini"));
}

TEST_F(Stamps, MakeTheirSection)
{
    DIni ini(Dstr(path("c.ini")));
    Set(" A 1", 0);
    expt.StampConfigFile(ini);
    std::string const stamp =
        "[LastRun]\r\nShot= A 1\r\nShotPath=" + path("X\\E\\Shots") + "\r\nStarted=" + FreshSystem::Date;
    EXPECT_EQ(stamp, Read("c.ini"));
    expt.StampConfigFile(ini);
    EXPECT_EQ(stamp, Read("c.ini"));
}

TEST_F(Stamps, WithoutAShotNameNone)
{
    DIni ini(Dstr(path("c.ini")));
    expt.StampConfigFile(ini);
    std::string const end = std::string("\r\nStarted=") + FreshSystem::Date;
    EXPECT_EQ("[LastRun]\r\nShot=\r\nShotPath=" + path("X\\E\\Shots") + end, Read("c.ini"));
    expt.SetExperimentFolder("");
    expt.StampConfigFile(ini);
    EXPECT_EQ("[LastRun]\r\nShot=\r\nShotPath=" + end, Read("c.ini"));
}

TEST_F(Stamps, AreWrittenOnceAndEndAHold)
{
    for (bool const isHeld : {false, true}) {
        Write("c.ini", "[A]\r\nx=1\r\n[LastRun]\r\nold=1");
        DIni ini(Dstr(path("c.ini")));
        ini.HoldWrite(isHeld);
        Set("A1", 0);
        {
            Faults const none(INT_MAX, 1, "OpenFile");
            expt.StampConfigFile(ini);
            EXPECT_EQ(1u, Faults::asked.size());
        }
        EXPECT_EQ("[A]\r\nx=1\r\n[LastRun]\r\nShot=A1", Read("c.ini").substr(0, 28));
        ini.SetKeyValue("y", "3"); // the stamp is the current section, and writes go through
        EXPECT_EQ("\r\ny=3", Read("c.ini").substr(Read("c.ini").size() - 5));
    }
}

TEST_F(Stamps, OfSettingsWithoutAFileStayInMemory)
{
    system.folder.MakeFolder("here");
    system.GoTo("here");
    DIni ini;
    Set("A1", 0);
    expt.StampConfigFile(ini);
    EXPECT_EQ("A1", Plain(ini.GetSectionKeyValue("LastRun", "Shot", "none")));
    EXPECT_EQ("", system.Names("here"));
}

TEST_F(Stamps, TellTheTimeOfTheirWriting)
{
    DIni ini(Dstr(path("c.ini")));
    StandingClock::now = 1718057000; // soon after the next midnight
    expt.StampConfigFile(ini);
    EXPECT_EQ("06/11/2024 00:03:20", Plain(ini.GetSectionKeyValue("LastRun", "Started", "")));
}

} // namespace
