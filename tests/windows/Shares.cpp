// The table of shares in the registry, and a drive that is mapped to a share of another machine: both are real, as far
// as the machine that runs the tests has them. `scripts/wine.sh --start` maps the drive V: to \\VODREL-FAR\Data.
#include <cstdlib>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "experiment/Experiment.h"
#include "files/DFile.h"
#include "files/PathUtils.h"
#include "platform/windows/WindowsServices.h"
#include "support/FreshSystem.h"
#include "windows/WindowsVocabulary.h"

using namespace std::string_literals;

namespace {

/// The computer's table of shares, with shares of the test's own for its life. What stood there before stays.
class ShareTable {
public:
    ShareTable()
    {
        RegCreateKeyExA(HKEY_LOCAL_MACHINE, place, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, &disposition);
    }
    ShareTable(ShareTable const &) = delete;
    ShareTable &operator=(ShareTable const &) = delete;
    ~ShareTable()
    {
        for (std::string const &name : names) RegDeleteValueA(key, name.c_str());
        RegCloseKey(key);
        if (disposition == REG_CREATED_NEW_KEY) RegDeleteKeyA(HKEY_LOCAL_MACHINE, place);
    }

    bool Add(std::string const &name, std::string const &folder)
    {
        std::string const value =
            "CSCFlags=0\0MaxUses=4294967295\0Path="s + folder + "\0Permissions=0\0ShareName="s + name + "\0Type=0\0\0"s;
        names.push_back(name);
        return RegSetValueExA(key, name.c_str(), 0, REG_MULTI_SZ, reinterpret_cast<unsigned char const *>(value.data()),
                              static_cast<unsigned long>(value.size())) == ERROR_SUCCESS;
    }

private:
    static constexpr char const *place = "SYSTEM\\CurrentControlSet\\Services\\LanmanServer\\Shares";
    HKEY key = nullptr;
    unsigned long disposition = 0;
    std::vector<std::string> names;
};

class WindowsShares : public testing::Test {
protected:
    WindowsShares()
    {
        SetComputerNameD();
        own = "\\\\" + Platform::ComputerName();
    }
    static std::string Network(std::string const &name) { return Plain(GetUNCFileName(Dstr(name))); }
    static std::string Local(std::string const &name) { return Plain(GetLocalFileName(Dstr(name))); }

    FreshSystem system;
    ShareTable table;
    std::string own; ///< "\\" and the computer's name
};

/// A folder on the mapped drive, for the life of the test.
class MappedDrive : public testing::Test {
protected:
    MappedDrive() { Platform::MakeFolder(drive.c_str()); }
    ~MappedDrive() override { Platform::DeleteMatching(drive.c_str()); }

    FreshSystem system;
    std::string const own = "test-" + std::to_string(GetCurrentProcessId());
    std::string const drive = "V:\\" + own, network = "\\\\VODREL-FAR\\Data\\" + own;
};

} // namespace

// ---- Shares of this computer

TEST_F(WindowsShares, AreReadFromTheRegistry)
{
    ASSERT_TRUE(table.Add("VodrelTest", "C:\\Some where"));
    std::vector<Platform::Share> shares;
    ASSERT_TRUE(Platform::Shares(shares));
    std::string found;
    for (Platform::Share const &share : shares)
        if (share.name == "VodrelTest") found = share.value;
    EXPECT_EQ(0u, found.find("CSCFlags=0\0MaxUses=4294967295\0Path=C:\\Some where\0Permissions=0\0"s));
}

TEST_F(WindowsShares, NameTheirFilesForTheNetworkAndBack)
{
    ASSERT_TRUE(table.Add("VodrelTest", system.path("Data")) && table.Add("VodrelDeep", system.path("Data\\Deep")));
    EXPECT_EQ(own + "\\VodrelTest\\x\\y", Network(system.path("Data\\x\\y")));
    EXPECT_EQ(own + "\\VodrelDeep\\y", Network(system.path("data\\DEEP\\y")));
    EXPECT_EQ(system.path("Other\\x"), Network(system.path("Other\\x")));
    EXPECT_EQ(system.path("Data\\x\\y"), Local(own + "\\vodreltest\\x\\y"));
    EXPECT_EQ("none\\x\\", Local(own + "\\none\\x"));
    EXPECT_EQ("\\\\elsewhere\\VodrelTest\\x", Local("\\\\elsewhere\\VodrelTest\\x"));
}

TEST_F(WindowsShares, NameAnExperiment)
{
    ASSERT_TRUE(table.Add("VodrelTest", system.path("Data")));
    Experiment experiment;
    ASSERT_TRUE(experiment.SetExperimentFolder(Dstr(system.path("Data\\X\\E"))));
    EXPECT_EQ(own + "\\VodrelTest\\X\\E", Plain(experiment.GetExperimentUNCFolder()));
    EXPECT_EQ(system.path("Data\\Y"), Plain(experiment.FullPath(Dstr(own + "\\VodrelTest\\Y"))));
    EXPECT_EQ(own + "\\VodrelTest\\Y", Plain(experiment.RelativePath(Dstr(system.path("Data\\Y")))));
}

// ---- The mapped drive

TEST_F(MappedDrive, IsMapped)
{
    std::string prefix = "none";
    int length = 0;
    ASSERT_TRUE(Platform::NetworkPrefix("v:\\x", prefix, length)) << "scripts/wine.sh --start maps it";
    EXPECT_EQ("\\\\VODREL-FAR\\Data", prefix);
    EXPECT_EQ(2, length);
    EXPECT_FALSE(Platform::NetworkPrefix("C:\\x", prefix, length));
    EXPECT_FALSE(Platform::NetworkPrefix("\\x", prefix, length));
}

TEST_F(MappedDrive, IsTheShareUnderBothNames)
{
    EXPECT_EQ(network + "\\x", Plain(GetUNCFileName(Dstr(drive + "\\x"))));
    ASSERT_TRUE(DFile::WriteText(Dstr(network + "\\File"), "abc"));
    EXPECT_EQ("abc", Plain(DFile::GetText(Dstr(drive + "\\FILE"))));
    EXPECT_EQ(Names{"File"}, Found(network + "\\*"));
    EXPECT_EQ(Names{"File"}, Found(network + "\\file"));
    DString name = Dstr(drive + "\\FILE");
    EXPECT_TRUE(FileExists(name));
    EXPECT_EQ(drive + "\\File", Plain(name));
}

TEST_F(MappedDrive, HoldsAnExperimentThatIsNamedForTheNetwork)
{
    Experiment experiment;
    ASSERT_TRUE(experiment.SetExperimentFolder(Dstr(drive + "\\E")));
    EXPECT_EQ(network + "\\E", Plain(experiment.GetExperimentUNCFolder()));
    EXPECT_EQ((Names{"E.ini", "Macros/", "Query/", "Shots/"}), Found(network + "\\E\\*"));
    DString shot = "A1";
    EXPECT_EQ(0, experiment.CreateShot(shot, "", true));
    EXPECT_EQ(Names{"ShotA1/"}, Found(drive + "\\E\\Shots\\Shot*"));
}

TEST_F(MappedDrive, ItsPathsAreMadeFullAndRelative)
{
    Experiment experiment;
    ASSERT_TRUE(experiment.SetExperimentFolder(Dstr(drive + "\\E")));
    EXPECT_EQ(drive + "\\E\\Shots", Plain(experiment.FullPath(".\\Shots")));
    EXPECT_EQ(drive + "\\Archive", Plain(experiment.FullPath("..\\Archive")));
    EXPECT_EQ(".\\Shots", Plain(experiment.RelativePath(Dstr(drive + "\\E\\Shots"))));
    EXPECT_EQ("..\\Archive", Plain(experiment.RelativePath(Dstr(drive + "\\Archive"))));
    EXPECT_EQ("\\\\VODREL-FAR\\Data\\other\\x", Plain(experiment.RelativePath("V:\\other\\x")));
}

TEST_F(MappedDrive, OtherNamesOfTheNetworkLeadNowhere)
{
    for (char const *other : {"\\\\VODREL-NONE\\Data\\x", "\\\\VODREL-FAR\\None\\x", "Y:\\x"}) {
        EXPECT_EQ(Names{}, Found(other)) << other;
        EXPECT_FALSE(Opens(other, "wb")) << other;
    }
}
