/// The sections "Drives" and "Shares" of "Vodrel.ini", by which paths of Windows machines name files of this host.
#include "core/StartUp.h"
#include "files/DFile.h"
#include "support/FilesFixture.h"

namespace {

class MappedFolders : public FilesTest {
protected:
    /// Starts the core with these settings.
    void Start(std::string const &settings)
    {
        folder.Write("host-user/Vodrel/Vodrel.ini", settings);
        CoreInit("C:\\sys");
    }
    static std::string Text(char const *path) { return bytesOf(DFile::GetText(path)); }
};

#if defined _WIN32

TEST_F(MappedFolders, HaveNoEffectHere)
{
    Platform::SetShares({});
    folder.Write("Data/x", "abc");
    std::string const unused = "\\\\vodrel-no-server\\data";
    Start("[Shares]\r\n" + unused + "=" + folder.path("Data") + "\r\n[Drives]\r\nQ:=" + folder.path("Data"));
    EXPECT_EQ("Q:\\x", bytesOf(GetUNCFileName("Q:\\x")));
    EXPECT_EQ(folder.path("Data\\x"), bytesOf(GetUNCFileName(Path("Data\\x"))));
}

#else

TEST_F(MappedFolders, MakeDrivesAndNetworkNamesLeadToFoldersOfTheHost)
{
    folder.Write("Data/Sub/x", "abc");
    Start("[Drives]\r\nD:=" + folder.native("Data") + "\r\ne: = " + folder.path("Data\\Sub") +
          " \r\n[Shares]\r\n\\\\Srv\\data=" + folder.native("Data") + "\r\n");
    EXPECT_EQ("abc", Text("D:\\SUB\\X"));
    EXPECT_EQ("abc", Text("E:\\x"));
    EXPECT_EQ("abc", Text("\\\\SRV\\Data\\Sub\\x"));
    EXPECT_EQ("\\\\Srv\\data\\Sub\\x", bytesOf(GetUNCFileName("D:\\Sub\\x")));
    EXPECT_EQ("\\\\Srv\\data\\Sub\\x", bytesOf(GetUNCFileName("E:\\x")));
    EXPECT_EQ("\\\\Srv\\data\\Sub\\x", bytesOf(GetUNCFileName(Path("Data\\Sub\\x"))));
}

TEST_F(MappedFolders, OfALaterOpeningReplaceThoseOfAnEarlierOne)
{
    folder.Write("Data/x", "abc");
    Start("[Drives]\nD:=" + folder.native("Data") + "\n[Shares]\n\\\\srv\\data=" + folder.native("Data"));
    EXPECT_EQ("abc", Text("D:\\x"));
    Start("[Drives]\nE:=" + folder.native("Data"));
    EXPECT_EQ("", Text("D:\\x"));
    EXPECT_EQ("", Text("\\\\srv\\data\\x"));
    EXPECT_EQ("abc", Text("E:\\x"));
    folder.Write("host-user/Vodrel/Vodrel.ini", "[Other]\nx=1");
    SetUserPath();
    EXPECT_EQ("", Text("E:\\x"));
}

TEST_F(MappedFolders, LeadWhereTheWorkingPathSays)
{
    Start("[Preferences]\nWorkingPath=D:\\Work\n[Drives]\nD:=" + folder.native("Data"));
    EXPECT_EQ("D:\\Work", bytesOf(GetWorkingPath()));
    EXPECT_FALSE(folder.Has("Data")) << "the folder of a drive isn't made";
    folder.MakeFolder("Data");
    SetUserPath();
    EXPECT_TRUE(folder.Has("Data/Work"));
}

TEST_F(MappedFolders, LinesThatSayNothingAreIgnored)
{
    folder.Write("Data/x", "abc");
    std::string const data = folder.native("Data");
    Start("[Drives]\n;D:=" + data + "\nD\nD:\nD:=\nD:=Data\n1:=" + data + "\nZ:=" + data + "\n=" + data +
          "\n\\\\srv\\data=" + data + "\n[Shares]\nD:=" + data + "\n\\\\srv=" + data + "\nsrv\\data=" + data + "\n");
    for (char const *path : {"D:\\x", "1:\\x", "Z:\\x", "\\\\srv\\data\\x"}) EXPECT_EQ("", Text(path)) << path;
    EXPECT_EQ("abc", Text(folder.path("Data\\x").c_str()));
}

TEST_F(MappedFolders, StayWhenTheStartIsSilent)
{
    folder.Write("Data/x", "abc");
    Start("[Drives]\nD:=" + folder.native("Data"));
    Silent = true;
    CoreInit("C:\\sys");
    EXPECT_EQ("abc", Text("D:\\x"));
}

TEST_F(MappedFolders, LeaveTheSettingsAtPreferences)
{
    Start("[Preferences]\nUseLocalSettings=True\n[Drives]\nD:=/nowhere");
    EXPECT_EQ("True", bytesOf(VoIni.GetKeyValue("UseLocalSettings", "")));
}

#endif

} // namespace
