// Network folders that the host has mounted, and the shares that it gives, by a table and share files of the tests.

#include <gtest/gtest.h>
#include <string>

#include "PlatformVocabulary.h"
#include "platform/posix/PosixMounts.h"
#include "platform/posix/PosixPaths.h"
#include "support/NoHostNetwork.h"

namespace {

/// The native name of a path as spelled, "(nothing)" if it names nothing.
std::string Native(std::string const &path)
{
    Platform::Posix::PathName name;
    return Platform::Posix::ParsePath(path.c_str(), name) ? name.Native() : "(nothing)";
}

/// The path with its beginning replaced by the network name, "(local)" if it has none.
std::string OnNetwork(std::string const &path)
{
    std::string name;
    int length = 0;
    if (!Platform::NetworkPrefix(path.c_str(), name, length)) return "(local)";
    return name + path.substr(static_cast<std::size_t>(length));
}

class PosixMounts : public testing::Test {
protected:
    ~PosixMounts() override
    {
        for (char letter : std::string("CDQ")) Platform::SetDrive(letter, "");
        Platform::SetNetworkShare("server", "set", "");
        Platform::ClearShares();
    }

    /// Makes these rows the table of what is mounted.
    void Mount(std::string const &rows)
    {
        folder.Write("mounts", rows);
        Platform::SetMountTable(table.c_str());
    }

    /// Puts a share's file into the folder of the user shares.
    void ShareFile(std::string const &file, std::string const &text)
    {
        folder.Write("usershares/" + file, text);
        Platform::SetUserShareFolder(shareFolder.c_str());
    }

    static std::string Own(std::string const &rest) { return "\\\\" + Platform::ComputerName() + rest; }

    TempFolder folder;

private:
    std::string const table = folder.native("mounts"), shareFolder = folder.native("usershares");
    NoHostNetwork const noNetwork;
};

char const *const usualTable = "/dev/sda1 / ext4 rw,relatime 0 0\n"
                               "proc /proc proc rw 0 0\n"
                               "//srv/data /mnt/data cifs rw,vers=3.0,username=u 0 0\n"
                               "//srv/data/Runs/2024 /mnt/runs smb3 rw 0 0\n"
                               "//srv/my\\040files /mnt/with\\040blank/a\\134b\\011c cifs rw 0 0\n"
                               "tmpfs /mnt/data/scratch tmpfs rw 0 0\n"
                               "nas:/export /mnt/nfs nfs4 rw 0 0\n"
                               "//fuse/data /mnt/fuse fuse.smb rw 0 0\n";

} // namespace

// ---- The table ----

TEST_F(PosixMounts, NetworkNamesLeadToWhereTheyAreMounted)
{
    Mount(usualTable);
    struct Row {
        char const *path, *native;
    } const rows[] = {
        {"\\\\srv\\data\\x\\y", "/mnt/data/x/y"},
        {"\\\\SRV\\Data\\X", "/mnt/data/X"},
        {"\\\\srv\\data", "/mnt/data/"},
        {"\\\\srv\\data\\..\\x", "/mnt/data/x"},
        {"\\\\srv\\data2\\x", "(nothing)"},
        {"\\\\srv2\\data\\x", "(nothing)"},
        {"\\\\srv\\my files\\x", "/mnt/with blank/a\\b\tc/x"},
        {"\\\\nas\\export\\x", "(nothing)"},
        {"\\\\fuse\\data\\x", "(nothing)"},
        // of the rows that begin a name the longest counts
        {"\\\\srv\\data\\runs\\2024\\x", "/mnt/runs/x"},
        {"\\\\srv\\data\\Runs\\2024", "/mnt/runs/"},
        {"\\\\srv\\data\\Runs\\20245\\x", "/mnt/data/Runs/20245/x"},
        {"\\\\srv\\data\\Runs\\x", "/mnt/data/Runs/x"},
        {"\\\\srv\\data\\Runs\\2024\\..\\x", "/mnt/data/Runs/x"},
        {"\\\\srv\\data\\a\\..\\Runs\\.\\2024\\x", "/mnt/runs/x"},
    };
    for (Row const &row : rows) EXPECT_EQ(row.native, Native(row.path)) << row.path;
}

TEST_F(PosixMounts, PathsBelowAMountHaveANetworkName)
{
    Mount(usualTable);
    struct Row {
        char const *path, *network;
    } const rows[] = {
        {"Z:\\mnt\\data\\x\\y", "\\\\srv\\data\\x\\y"},
        {"z:\\mnt\\data", "\\\\srv\\data"},
        {"C:\\mnt\\data\\x", "\\\\srv\\data\\x"},
        {"\\mnt\\data\\x", "\\\\srv\\data\\x"},
        {"Z:\\mnt\\data\\", "\\\\srv\\data\\"},
        {"Z:\\MNT\\Data\\X", "\\\\srv\\data\\X"},
        {"Z:\\mnt\\runs\\x", "\\\\srv\\data\\Runs\\2024\\x"},
        {"Z:\\mnt\\with blank\\a\\b", "(local)"},
        {"Z:\\mnt\\data2", "(local)"}, // a prefix ends at a separator
        {"Z:\\mnt\\dat", "(local)"},
        {"Z:\\mnt", "(local)"},
        {"Z:\\mnt\\nfs\\x", "(local)"},
        {"Z:\\mnt\\fuse\\x", "(local)"},
        {"Z:\\mnt\\data\\scratch\\x", "(local)"}, // mounted from elsewhere
        {"Z:\\mnt\\data\\scratch2\\x", "\\\\srv\\data\\scratch2\\x"},
        {"Z:\\mnt\\data\\..\\x", "(local)"},
        {"Z:\\mnt\\data\\..\\data\\x", "\\\\srv\\data\\x"},
        {"Z:\\mnt\\.\\data\\a\\..\\x", "\\\\srv\\data\\a\\..\\x"}, // behind the prefix all stays
        {"Z:\\mnt\\\\data\\\\x", "\\\\srv\\data\\\\x"},
        {"mnt\\data\\x", "(local)"},
        {"\\\\srv\\data\\x", "(local)"},
        {"Q:\\mnt\\data", "(local)"},
        {"Z:", "(local)"},
        {"\\", "(local)"},
        {":", "(local)"},
        {"", "(local)"},
    };
    for (Row const &row : rows) EXPECT_EQ(row.network, OnNetwork(row.path)) << row.path;
}

TEST_F(PosixMounts, ANullPathHasNoNetworkName)
{
    Mount(usualTable);
    std::string name = "before";
    int length = -1;
    EXPECT_FALSE(Platform::NetworkPrefix(nullptr, name, length));
    EXPECT_EQ("before", name);
    EXPECT_EQ(-1, length);
}

TEST_F(PosixMounts, TheLastRowOfAFolderCoversTheOthers)
{
    Mount("//srv/old /mnt/x cifs rw 0 0\nauto.x /mnt/y autofs rw 0 0\n"
          "//srv/y /mnt/y cifs rw 0 0\n//srv/new /mnt/x cifs rw 0 0\ntmpfs /mnt/z tmpfs rw 0 0\n");
    EXPECT_EQ("\\\\srv\\new\\f", OnNetwork("Z:\\mnt\\x\\f"));
    EXPECT_EQ("\\\\srv\\y\\f", OnNetwork("Z:\\mnt\\y\\f"));
    EXPECT_EQ("(nothing)", Native("\\\\srv\\old\\f"));
}

TEST_F(PosixMounts, DamagedRowsAreLeftOut)
{
    Mount("\n \n//a/b\n//a/b /x\n//a/b x cifs\n//a /y cifs rw 0 0\n/a/b /z cifs rw 0 0\n/// /zz cifs\n"
          "//s/\\1 /v\\40\\ cifs rw\n//s/t /mnt/t cifs");
    for (char const *path : {"Z:\\x\\f", "Z:\\y\\f", "Z:\\z\\f", "Z:\\zz\\f"}) EXPECT_EQ("(local)", OnNetwork(path));
    EXPECT_EQ("\\\\s\\t\\f", OnNetwork("Z:\\mnt\\t\\f")); // without the rest and the end of its line
}

TEST_F(PosixMounts, EveryBeginningOfATableIsRead)
{
    std::string const text = usualTable;
    for (std::size_t n = 0; n < text.size(); n++) {
        Mount(text.substr(0, n));
        std::string const name = OnNetwork("Z:\\mnt\\data\\f");
        EXPECT_TRUE(name == "(local)" || name == "\\\\srv\\data\\f") << n << ": " << name;
    }
}

TEST_F(PosixMounts, AMissingTableIsAnEmptyOne)
{
    EXPECT_TRUE(Platform::Posix::ReadMounts(folder.native("missing")).empty());
    EXPECT_TRUE(Platform::Posix::ReadMounts(folder.native()).empty());
    EXPECT_EQ("(local)", OnNetwork("Z:\\mnt\\data\\f"));
}

TEST_F(PosixMounts, TheHostsOwnTableIsThere)
{
    bool hasRoot = false;
    for (auto const &row : Platform::Posix::ReadMounts("/proc/self/mounts")) hasRoot |= row.folder == "/";
    EXPECT_TRUE(hasRoot);
}

TEST_F(PosixMounts, TheTableIsReadOnceAndAgainAfterTheSettings)
{
    Mount("//srv/one /mnt/x cifs rw 0 0\n");
    EXPECT_EQ("\\\\srv\\one", OnNetwork("Z:\\mnt\\x"));
    folder.Write("mounts", "//srv/two /mnt/x cifs rw 0 0\n");
    EXPECT_EQ("\\\\srv\\one", OnNetwork("Z:\\mnt\\x"));
    Platform::SetMappedFolders({}, {});
    EXPECT_EQ("\\\\srv\\two", OnNetwork("Z:\\mnt\\x"));
}

TEST_F(PosixMounts, ReadingLeavesNoDescriptorOpen)
{
    Mount(usualTable);
    ShareFile("data", "#VERSION 2\npath=/srv\nsharename=Data\n");
    int const before = open("/dev/null", O_RDONLY);
    close(before);
    OnNetwork("Z:\\mnt\\x");
    Native(Own("\\data\\x"));
    int const after = open("/dev/null", O_RDONLY);
    close(after);
    EXPECT_EQ(before, after);
}

TEST_F(PosixMounts, AFolderInAnotherCaseIsItselfIfItExists)
{
    folder.MakeFolder("Data");
    folder.MakeFolder("data");
    Mount("//srv/data " + folder.native("data") + " cifs rw 0 0\n");
    EXPECT_EQ("\\\\srv\\data\\x", OnNetwork(folder.path("data\\x")));
    EXPECT_EQ("(local)", OnNetwork(folder.path("Data\\x")));
    EXPECT_EQ("\\\\srv\\data\\x", OnNetwork(folder.path("DATA\\x")));
}

TEST_F(PosixMounts, TheSpellingOfThePathWinsOverAnother)
{
    Mount("//srv/upper /mnt/X cifs rw 0 0\n//srv/lower /mnt/x cifs rw 0 0\n");
    EXPECT_EQ("\\\\srv\\lower", OnNetwork("Z:\\mnt\\x"));
    EXPECT_EQ("\\\\srv\\upper", OnNetwork("Z:\\mnt\\X"));
}

TEST_F(PosixMounts, FilesOfAMountAreReachedByEitherName)
{
    folder.Write("mnt/Sub/File", "x");
    Mount("//srv/data " + folder.native("mnt") + " cifs rw 0 0\n");
    EXPECT_EQ("x", Opened("\\\\SRV\\data\\sub\\FILE"));
    EXPECT_TRUE(Written("\\\\srv\\data\\sub\\new", "y"));
    EXPECT_EQ("y", folder.Read("mnt/Sub/new"));
    EXPECT_EQ((Names{"Sub/"}), Found("\\\\srv\\data\\*"));
    EXPECT_TRUE(Found("\\\\srv\\data").empty()) << "a bare share";
    EXPECT_TRUE(Platform::IsSameFile("\\\\srv\\data\\Sub\\File", folder.path("mnt\\sub\\file").c_str()));
}

TEST_F(PosixMounts, AMountedFolderOfAShareIsARoot)
{
    folder.Write("mnt/File", "x");
    Mount("//srv/data/Runs " + folder.native("mnt") + " cifs rw 0 0\n");
    EXPECT_EQ("x", Opened("\\\\srv\\data\\RUNS\\file"));
    EXPECT_TRUE(Found("\\\\srv\\data\\Runs").empty());
    EXPECT_FALSE(Platform::MakeFolder("\\\\srv\\data\\Runs"));
    EXPECT_FALSE(Platform::MakeFolder("\\\\srv\\data\\Other"));
    EXPECT_FALSE(Platform::DeleteMatching("\\\\srv\\data\\Runs"));
    EXPECT_EQ("x", folder.Read("mnt/File"));
}

// ---- User shares ----

TEST_F(PosixMounts, UserSharesAreTheComputersShares)
{
    ShareFile("data", "#VERSION 2\npath=/srv/My Data\ncomment=Path of all\nusershare_acl=S-1-1-0:F\nguest_ok=n\n"
                      "sharename=Data\n");
    ShareFile("old", "#VERSION 1\npath=/srv/old\ncomment=\nusershare_acl=S-1-1-0:R\n");
    ShareFile("broken", "path=/srv/broken\n");
    ShareFile("relative", "#VERSION 2\npath=srv\nsharename=relative\n");
    ShareFile("nowhere", "#VERSION 2\nsharename=nowhere\n");
    ShareFile(":tmpAbCdEf", "#VERSION 2\npath=/srv/x\nsharename=unfinished\n");
    std::vector<Platform::Share> shares;
    ASSERT_TRUE(Platform::Shares(shares));
    ASSERT_EQ(2u, shares.size());
    EXPECT_EQ("Data", shares[0].name);
    EXPECT_NE(std::string::npos, shares[0].value.find(std::string("\0Path=Z:\\srv\\My Data\0", 21)));
    EXPECT_EQ("old", shares[1].name);
    EXPECT_EQ("/srv/My Data/x", Native(Own("\\DATA\\x")));
    EXPECT_EQ("/srv/old/x", Native(Own("\\Old\\x")));
    EXPECT_EQ("(nothing)", Native(Own("\\broken\\x")));
    EXPECT_EQ("(nothing)", Native("\\\\another\\data\\x"));
}

TEST_F(PosixMounts, WithoutAFolderOfUserSharesThereIsNoTable)
{
    std::vector<Platform::Share> shares;
    EXPECT_FALSE(Platform::Shares(shares));
    folder.MakeFolder("usershares");
    ShareFile("x", "");
    EXPECT_TRUE(Platform::Shares(shares));
    EXPECT_TRUE(shares.empty());
}

TEST_F(PosixMounts, ATableOfSharesThatHasBeenSetCountsInPlaceOfThem)
{
    ShareFile("data", "#VERSION 2\npath=/srv/data\nsharename=Data\n");
    Platform::SetShares({{"Other", "Path=Z:\\other"}});
    EXPECT_EQ("(nothing)", Native(Own("\\data\\x")));
    Platform::ClearShares();
    EXPECT_EQ("/srv/data/x", Native(Own("\\data\\x")));
}

TEST_F(PosixMounts, EveryBeginningOfAShareFileIsRead)
{
    std::string const text = "#VERSION 2\npath=/srv/data\ncomment=c\nsharename=Data\n";
    for (std::size_t n = 0; n <= text.size(); n++) {
        ShareFile("data", text.substr(0, n));
        std::vector<Platform::Share> shares;
        ASSERT_TRUE(Platform::Shares(shares)) << n;
        EXPECT_LE(shares.size(), 1u) << n;
    }
    EXPECT_EQ("/srv/data/x", Native(Own("\\data\\x")));
}

// ---- Which of them counts ----

TEST_F(PosixMounts, WhatIsSetWinsOverMountsAndMountsOverUserShares)
{
    std::string const server = Platform::ComputerName();
    ShareFile("data", "#VERSION 2\npath=/own\nsharename=data\n");
    EXPECT_EQ("/own/x", Native(Own("\\data\\x")));
    Mount("//" + server + "/data /mounted cifs rw 0 0\n");
    EXPECT_EQ("/mounted/x", Native(Own("\\data\\x")));
    Platform::SetMappedFolders({}, {{Own("\\data"), "/settings"}});
    EXPECT_EQ("/settings/x", Native(Own("\\data\\x")));
    EXPECT_EQ(Own("\\data\\x"), OnNetwork("Z:\\settings\\x"));
    EXPECT_EQ(Own("\\data\\x"), OnNetwork("Z:\\mounted\\x"));
}

TEST_F(PosixMounts, OfSettingsAndMountsForOneFolderTheSettingsNameIt)
{
    Mount("//10.0.0.5/data /mnt/data cifs rw 0 0\n//10.0.0.5/deep /mnt/data/deep cifs rw 0 0\n");
    Platform::SetMappedFolders({}, {{"\\\\srv\\data", "/mnt/data"}});
    EXPECT_EQ("\\\\srv\\data\\x", OnNetwork("Z:\\mnt\\data\\x"));
    EXPECT_EQ("\\\\10.0.0.5\\deep\\x", OnNetwork("Z:\\mnt\\data\\deep\\x")) << "the longest wins";
    EXPECT_EQ("/mnt/data/x", Native("\\\\srv\\data\\x"));
    EXPECT_EQ("/mnt/data/x", Native("\\\\10.0.0.5\\data\\x"));
}

// ---- Settings ----

TEST_F(PosixMounts, SettingsSayWhereDrivesAndSharesLead)
{
    Platform::SetMappedFolders({{"D:", "/mnt/data"}, {"e:", "Z:\\mnt\\e\\"}, {"C:", "\\mnt\\c"}},
                               {{"\\\\srv\\data", "/mnt/data/"}, {"\\\\srv\\data\\sub", "/mnt/sub"}});
    struct Row {
        char const *path, *native, *network;
    } const rows[] = {
        {"D:\\x", "/mnt/data/x", "\\\\srv\\data\\x"},
        {"d:\\x", "/mnt/data/x", "\\\\srv\\data\\x"},
        {"D:", "/mnt/data/", "\\\\srv\\data"},
        {"E:\\x", "/mnt/e/x", "(local)"},
        {"C:\\x", "/mnt/c/x", "(local)"},
        {"Z:\\mnt\\data\\x", "/mnt/data/x", "\\\\srv\\data\\x"},
        {"Z:\\mnt\\sub\\x", "/mnt/sub/x", "\\\\srv\\data\\sub\\x"},
        {"\\\\SRV\\data\\x", "/mnt/data/x", "(local)"},
        {"\\\\srv\\DATA\\Sub\\x", "/mnt/sub/x", "(local)"},
    };
    for (Row const &row : rows) {
        EXPECT_EQ(row.native, Native(row.path)) << row.path;
        EXPECT_EQ(row.network, OnNetwork(row.path)) << row.path;
    }
}

TEST_F(PosixMounts, ADriveBelowAShareHasItsNetworkName)
{
    Mount("//srv/data /mnt/data cifs rw 0 0\n//srv/deep /mnt/data/Runs/A/deep cifs rw 0 0\n");
    Platform::SetMappedFolders({{"D:", "/mnt/data/Runs"}}, {});
    EXPECT_EQ("\\\\srv\\data\\Runs\\x", OnNetwork("D:\\x"));
    EXPECT_EQ("\\\\srv\\data\\Runs", OnNetwork("D:"));
    EXPECT_EQ("\\\\srv\\data\\Runs\\..\\x", OnNetwork("D:\\..\\x")) << "no way out of a drive, and the text stays";
    EXPECT_EQ("\\\\srv\\deep\\x", OnNetwork("D:\\A\\deep\\x"));
    Platform::SetDrive('Q', "/mnt/data", "\\\\other\\name");
    EXPECT_EQ("\\\\other\\name\\x", OnNetwork("Q:\\x")) << "its own name wins";
}

TEST_F(PosixMounts, BadSettingsAreLeftOut)
{
    std::vector<Platform::Mapping> drives, shares;
    for (char const *name : {"", "D", ":", "1:", "DD:", "D:\\", "Z:", "z:"}) drives.push_back({name, "/mnt/x"});
    for (char const *place : {"", "mnt", "mnt\\x", ".", "Z:", "Z:mnt", "D:\\mnt", "\\\\srv\\data"}) {
        drives.push_back({"Q:", place});
        shares.push_back({"\\\\srv\\data", place});
    }
    for (char const *name : {"", "srv\\data", "\\srv\\data", "\\\\srv", "\\\\srv\\", "\\\\", "//srv/data"})
        shares.push_back({name, "/mnt/x"});
    Platform::SetMappedFolders(drives, shares);
    for (char const *path : {"Q:\\x", "D:\\x", "1:\\x", "\\\\srv\\data\\x"})
        EXPECT_EQ("(nothing)", Native(path)) << path;
    EXPECT_EQ("/x", Native("Z:\\x")) << "Z: is always the root";
}

TEST_F(PosixMounts, OfTwoSettingsForOneNameTheFirstCounts)
{
    Platform::SetMappedFolders({{"D:", "relative"}, {"d:", "/one"}, {"D:", "/two"}},
                               {{"\\\\srv\\data", "/one"}, {"\\\\SRV\\DATA", "/two"}});
    EXPECT_EQ("/one/x", Native("D:\\x"));
    EXPECT_EQ("/one/x", Native("\\\\srv\\data\\x"));
}

TEST_F(PosixMounts, OfTwoNamesOfOneFolderTheFirstIsItsName)
{
    Platform::SetMappedFolders({}, {{"\\\\srv\\data", "/mnt"}, {"\\\\srv.long.name\\data", "/mnt"}});
    EXPECT_EQ("\\\\srv\\data\\x", OnNetwork("Z:\\mnt\\x"));
    EXPECT_EQ("/mnt/x", Native("\\\\srv.long.name\\data\\x"));
}

TEST_F(PosixMounts, LaterSettingsReplaceEarlierOnesButNotWhatIsSetByHand)
{
    Platform::SetDrive('Q', "/by/hand");
    Platform::SetNetworkShare("server", "set", "/by/hand");
    Platform::SetMappedFolders({{"D:", "/one"}}, {{"\\\\srv\\one", "/one"}});
    Platform::SetMappedFolders({{"C:", "/two"}}, {{"\\\\srv\\two", "/two"}});
    EXPECT_EQ("(nothing)", Native("D:\\x"));
    EXPECT_EQ("(nothing)", Native("\\\\srv\\one\\x"));
    EXPECT_EQ("/two/x", Native("C:\\x"));
    EXPECT_EQ("/two/x", Native("\\\\srv\\two\\x"));
    Platform::SetMappedFolders({}, {});
    EXPECT_EQ("/x", Native("C:\\x"));
    EXPECT_EQ("/by/hand/x", Native("Q:\\x"));
    EXPECT_EQ("/by/hand/x", Native("\\\\server\\set\\x"));
}
