// An experiment on a server's share writes the paths that a Windows machine writes, which has the share on a drive, and
// follows those. Also one in a folder that this computer shares.

#include "support/ExperimentTest.h"

#if !defined _WIN32 // there the system itself knows the shares

namespace {

/// The share `\\\\srv\\data` is mounted in the folder "mnt", which holds the experiment "X\\E". On Windows machines it
/// is Q:.
class NetworkFolders : public ExperimentTest {
protected:
    NetworkFolders()
    {
        system.folder.MakeFolder("mnt/X/E");
        system.folder.MakeFolder("mnt/Far/Shots");
        Write("mounts", "//srv/data " + system.folder.native("mnt") + " cifs rw 0 0\n");
        Platform::SetMountTable(table.c_str());
    }

    std::string Relative(std::string const &text) const { return Plain(expt.RelativePath(Dstr(text))); }
    std::string Full(std::string const &text) const { return Plain(expt.FullPath(Dstr(text))); }

    /// Starts again with these lines for a drive and the share.
    void Settings(std::string const &text) const
    {
        Write("user/Vodrel/Vodrel.ini", text);
        SetUserPath();
    }

private:
    std::string const table = system.folder.native("mounts");
};

TEST_F(NetworkFolders, TheExperimentHasTheNetworkNameOfItsMount)
{
    Open("mnt\\X\\E");
    EXPECT_EQ(path("mnt\\X\\E"), Plain(expt.GetExperimentFolder()));
    EXPECT_EQ("\\\\srv\\data\\X\\E", Plain(expt.GetExperimentUNCFolder()));
}

TEST_F(NetworkFolders, RelativePathsAreThoseOfAWindowsMachine)
{
    Open("mnt\\X\\E");
    struct {
        char const *there, *relative; // below the share
    } const rows[] = {{"X\\E\\a\\b", ".\\a\\b"},
                      {"X\\E", ".\\"},
                      {"X\\D\\f", "..\\D\\f"},
                      {"Far\\Shots", "\\\\srv\\data\\Far\\Shots"},
                      {"f", "\\\\srv\\data\\f"}};
    for (auto const &row : rows) {
        EXPECT_EQ(row.relative, Relative(path(std::string("mnt\\") + row.there))) << row.there;
    }
    // On a Windows machine with the share on Q:, by the same rows.
    Settings("[Drives]\r\nQ:=" + system.folder.native("mnt"));
    expt.SetExperimentFolder("Q:\\X\\E");
    EXPECT_EQ("\\\\srv\\data\\X\\E", Plain(expt.GetExperimentUNCFolder()));
    for (auto const &row : rows) EXPECT_EQ(row.relative, Relative(std::string("Q:\\") + row.there)) << row.there;
}

TEST_F(NetworkFolders, PathsThatAWindowsMachineLeftNameTheSameFiles)
{
    Write("mnt/Far/Shots/ShotA1/Scalars.ini", "[Fields]\r\nMode=high\r\n");
    Write("mnt/X/E/E.ini", "[Groups]\r\n\\\\SRV\\data\\Far\\Sho*\r\nQ:\\Far\\Shots\r\n");
    Settings("[Drives]\r\nQ:=" + system.folder.native("mnt"));
    Open("mnt\\X\\E");
    EXPECT_EQ("\\\\SRV\\data\\Far\\Shots", Plain(expt.GetShotGroupPath(1)));
    EXPECT_EQ("Q:\\Far\\Shots", Plain(expt.GetShotGroupPath(2)));
    EXPECT_EQ(1, expt.GetShotGroupNumber("\\\\srv\\data\\far\\shots"));
    for (int group : {1, 2}) {
        EXPECT_TRUE(Set("A1", group));
        EXPECT_EQ("high", Value("Mode"));
    }
    EXPECT_EQ("\\\\srv\\data\\Far\\Shots", Full("\\\\srv\\data\\Far\\Shots")) << "as a Windows machine gives it";
}

TEST_F(NetworkFolders, AnExperimentIsOpenedByItsNetworkName)
{
    expt.SetExperimentFolder("\\\\SRV\\data\\X\\E");
    EXPECT_EQ(0, Create("A1", "from here"));
    EXPECT_TRUE(Has("mnt/X/E/Shots/ShotA1"));
    EXPECT_EQ("\\\\SRV\\data\\X\\E", Plain(expt.GetExperimentUNCFolder()));
    EXPECT_EQ(".\\Shots", Relative("\\\\srv\\data\\X\\E\\Shots"));
    EXPECT_EQ("\\\\srv\\data\\Far", Relative(path("mnt\\Far")));
}

TEST_F(NetworkFolders, OfThisComputersOwnShareFullPathsAreLocal)
{
    system.folder.MakeFolder("Own/X/E");
    system.folder.MakeFolder("Own/Far");
    Write("shares/own", "#VERSION 2\npath=" + system.folder.native("Own") + "\nsharename=Own\n");
    std::string const shares = system.folder.native("shares"), own = "\\\\" + Plain(GetComputerNameD());
    Platform::SetUserShareFolder(shares.c_str());
    Open("Own\\X\\E");
    EXPECT_EQ(own + "\\Own\\X\\E", Plain(expt.GetExperimentUNCFolder()));
    EXPECT_EQ(own + "\\Own\\Far\\f", Relative(path("Own\\Far\\f")));
    EXPECT_EQ(path("Own\\Far\\f"), Full(own + "\\Own\\Far\\f"));
    EXPECT_EQ(0, expt.GetShotGroupNumber(Dstr(own + "\\own\\X\\E\\Shots")));
}

} // namespace

#endif
