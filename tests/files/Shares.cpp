/// Between local and network names, by tables of shares and drives that the tests set.
#include "files/DFile.h"
#include "files/PathUtils.h"
#include "support/FilesFixture.h"

namespace {

using namespace std::string_literals;

/// A share's value as the table of shares holds it.
std::string ValueFor(std::string const &localFolder)
{
    return "CSCFlags=0\0MaxUses=4294967295\0Path="s + localFolder + "\0Permissions=0\0ShareName=x\0Type=0\0"s;
}

class ShareTest : public FilesTest {
protected:
    ShareTest() { ComputerName = "MyPC"; }
    ~ShareTest() override
    {
        Platform::SetDrive('Q', "");
        Platform::SetNetworkShare("server", "share", "");
    }

    static void SetShares(std::vector<Platform::Share> const &shares) { Platform::SetShares(shares); }
    static std::string Local(std::string const &name) { return bytesOf(GetLocalFileName(fromBytes(name))); }
    static std::string Unc(std::string const &name) { return bytesOf(GetUNCFileName(fromBytes(name))); }
};

// ---- Network name to local name --------------------------------------------------------------

class LocalNames : public ShareTest {};

TEST_F(LocalNames, OfOtherComputersAndLocalOnesStay)
{
    SetShares({{"data", ValueFor("C:\\Data")}});
    for (char const *name : {"\\\\other\\data\\x", "\\\\MyP\\data", "C:\\x", "\\MyPC\\data", "MyPC\\data\\x", "",
                             "\\\\", "\\\\\\MyPC\\data", "//MyPC/data"})
        EXPECT_EQ(name, Local(name));
    EXPECT_EQ(nullptr, GetLocalFileName(nullString()).c_str());
}

TEST_F(LocalNames, ComeFromTheShareThatTheNameBeginsWith)
{
    SetShares({{"data", ValueFor("C:\\Data")},
               {"dat", ValueFor("C:\\Wrong")},
               {"Root", ValueFor("D:\\")},
               {"data", ValueFor("C:\\Second")},
               {"with space", ValueFor("C:\\a b")},
               {"deep", ValueFor("E:\\one\\two")}});
    struct Row {
        char const *name, *local;
    } const rows[] = {
        {"\\\\MyPC\\data\\x", "C:\\Data\\x"},
        {"\\\\mypc\\DATA\\X\\y.txt", "C:\\Data\\X\\y.txt"},
        {"\\\\MyPC\\data", "C:\\Data"},
        {"\\\\MyPC\\data\\", "C:\\Data\\"},
        {"\\\\MyPC\\dat\\x", "C:\\Wrong\\x"},
        {"\\\\MyPC\\root\\x", "D:\\x"}, // one backslash of the two is dropped
        {"\\\\MyPC\\root", "D:\\"},
        {"\\\\MyPC\\root\\\\x", "D:\\\\x"},
        {"\\\\MyPC\\with space\\x", "C:\\a b\\x"},
        {"\\\\MyPC\\deep\\three", "E:\\one\\two\\three"},
    };
    for (Row const &row : rows) EXPECT_EQ(row.local, Local(row.name)) << row.name;
}

TEST_F(LocalNames, OfAnUnknownShareAreRelativeWithABackslashBehind)
{
    SetShares({{"data", ValueFor("C:\\Data")}});
    EXPECT_EQ("other\\x\\", Local("\\\\MyPC\\other\\x"));
    EXPECT_EQ("data2\\x\\", Local("\\\\MyPC\\data2\\x"));
    EXPECT_EQ("dat\\", Local("\\\\MyPC\\dat"));
    EXPECT_EQ("\\", Local("\\\\MyPC\\"));
    EXPECT_EQ("\\", Local("\\\\MyPC"));
}

TEST_F(LocalNames, WithoutATableAreRelativeWithABackslashBehind)
{
    EXPECT_EQ("data\\x\\", Local("\\\\MyPC\\data\\x"));
    EXPECT_EQ("data\\", Local("\\\\mypc\\data"));
    SetShares({});
    EXPECT_EQ("data\\x\\", Local("\\\\MyPC\\data\\x"));
}

TEST_F(LocalNames, ComputerNameIsAPlainPrefixAndOneMoreCharacterGoes)
{
    SetShares({{"data", ValueFor("C:\\Data")}});
    EXPECT_EQ("\\data\\x\\", Local("\\\\MyPC2\\data\\x"));
}

TEST_F(LocalNames, FollowTheValueOfTheShare)
{
    struct Row {
        std::string value, local; // of \\MyPC\s\x
    } const rows[] = {
        {"Path=C:\\D\0"s, "C:\\D\\x"},
        {"Path=C:\\D\0Permissions=0\0"s, "C:\\D\\x"},
        {"MaxUses=1\0Path=C:\\D\0"s, "C:\\D\\x"},
        {"Path=C:\\a=b\0"s, "C:\\a=b\\x"},
        {"Path=C:\\D\\\0"s, "C:\\D\\x"},
        {"Path=\0"s, "\\x"},
        {"Path= C:\\D \0"s, " C:\\D \\x"},
        {"Path=C:\\\xC8oln\0"s, "C:\\x"},               // the byte that stands for the NULs ends it
        {"ShortPath=C:\\S\0Path=C:\\D\0"s, "C:\\S\\x"}, // the first "Path", wherever it stands
        {"Remark=My Path\0Path=C:\\D\0"s, "C:\\D\\x"},  // its `=` may come later
        {"Path2=C:\\2\0Path=C:\\D\0"s, "C:\\2\\x"},
        // what can't be read gives the name relative to the shares, without a backslash behind
        {"", "s\\x"},
        {"MaxUses=1\0"s, "s\\x"},
        {"path=C:\\D\0"s, "s\\x"},
        {"PATH=C:\\D\0"s, "s\\x"},
        {"Path=C:\\D", "s\\x"},   // no end
        {"PathC:\\D\0"s, "s\\x"}, // no `=`
        {"Path", "s\\x"},
        {"Path=", "s\\x"},
        {"Path\0"s, "s\\x"},
        {"\0\0\0"s, "s\\x"},
    };
    for (Row const &row : rows) {
        SetShares({{"s", row.value}});
        EXPECT_EQ(row.local, Local("\\\\MyPC\\s\\x")) << row.value;
    }
}

TEST_F(LocalNames, OfAShareWhoseValueIsNonsenseAreDefined)
{
    for (std::string const &value : {"PathX\0Y=Z\0"s, "Path\0=\0\0"s, std::string(900, '\xC8'), "=Path\0\0\0\0\0\0"s}) {
        SetShares({{"s", value}});
        EXPECT_LT(Local("\\\\MyPC\\s\\x").size(), 1000u);
        EXPECT_LT(Unc("C:\\D\\x").size(), 1000u);
    }
}

// ---- Local name to network name --------------------------------------------------------------

class NetworkNames : public ShareTest {};

TEST_F(NetworkNames, StayAsTheyAre)
{
    SetShares({{"data", ValueFor("\\\\s")}});
    EXPECT_EQ("\\\\server\\x", Unc("\\\\server\\x"));
    EXPECT_EQ("\\\\", Unc("\\\\"));
}

TEST_F(NetworkNames, OfAMappedDriveBeginWithWhatItIsMappedTo)
{
    Platform::SetDrive('Q', folder.native(), "\\\\SRV\\share");
    SetShares({{"q", ValueFor("Q:\\")}});
    EXPECT_EQ("\\\\SRV\\share\\a\\b", Unc("Q:\\a\\b"));
    EXPECT_EQ("\\\\SRV\\share\\a", Unc("q:\\a"));
    EXPECT_EQ("\\\\SRV\\share", Unc("Q:"));
    EXPECT_EQ("\\\\SRV\\sharerest", Unc("Q:rest"));
}

TEST_F(NetworkNames, OfADriveThatIsNotMappedComeFromTheShares)
{
    Platform::SetDrive('Q', folder.native());
    SetShares({{"q", ValueFor("Q:\\")}});
    EXPECT_EQ("\\\\MyPC\\q\\a", Unc("Q:\\a"));
}

TEST_F(NetworkNames, WithoutSharesAreTheName)
{
    for (char const *name : {"C:\\Data\\x", "x", "\\x", "", "C:"}) {
        Platform::ClearShares();
        EXPECT_EQ(name, Unc(name));
        SetShares({});
        EXPECT_EQ(name, Unc(name));
    }
    EXPECT_EQ("", bytesOf(GetUNCFileName(nullString())));
}

TEST_F(NetworkNames, ComeFromTheLongestLocalFolder)
{
    SetShares({{"c", ValueFor("C:\\")},
               {"Data", ValueFor("C:\\Data")},
               {"deep", ValueFor("c:\\data\\DEEP")},
               {"second", ValueFor("C:\\Data")},
               {"slash", ValueFor("D:\\x\\")},
               {"rel", ValueFor("rel")}});
    struct Row {
        char const *name, *network;
    } const rows[] = {
        {"C:\\x", "\\\\MyPC\\c\\x"},
        {"C:\\", "\\\\MyPC\\c\\"},
        {"C:\\Data\\x", "\\\\MyPC\\Data\\x"},
        {"c:\\DATA\\x", "\\\\MyPC\\Data\\x"},
        {"C:\\Data", "\\\\MyPC\\Data"},
        {"C:\\Data\\Deep\\x", "\\\\MyPC\\deep\\x"},
        {"C:\\Database\\x", "\\\\MyPC\\Database\\x"}, // a plain prefix: no backslash needs to follow
        {"C:\\Data2", "\\\\MyPC\\Data2"},
        {"D:\\x\\y", "\\\\MyPC\\slash\\y"},
        {"D:\\x", "D:\\x"},
        {"E:\\x", "E:\\x"},
        {"C:", "C:"},
        {"rel\\x", "\\\\MyPC\\rel\\x"},
        {"", ""},
    };
    for (Row const &row : rows) EXPECT_EQ(row.network, Unc(row.name)) << row.name;
}

TEST_F(NetworkNames, OfEqualFoldersComeFromTheFirstShare)
{
    SetShares({{"one", ValueFor("C:\\Data")}, {"two", ValueFor("C:\\DATA")}, {"short", ValueFor("C:\\Da")}});
    EXPECT_EQ("\\\\MyPC\\one\\x", Unc("C:\\Data\\x"));
}

TEST_F(NetworkNames, GiveUpAtTheFirstShareWithoutAFolder)
{
    Platform::Share const good = {"good", ValueFor("C:\\Data")}, bad = {"bad", "Remark=none\0"s};
    SetShares({good, bad});
    EXPECT_EQ("C:\\Data\\x", Unc("C:\\Data\\x"));
    SetShares({bad, good});
    EXPECT_EQ("C:\\Data\\x", Unc("C:\\Data\\x"));
}

TEST_F(NetworkNames, DoNotComeFromAShareOfAnEmptyFolder)
{
    SetShares({{"empty", ValueFor("")}});
    EXPECT_EQ("C:\\x", Unc("C:\\x"));
}

TEST_F(NetworkNames, LeadBack)
{
    SetShares({{"c", ValueFor("C:\\")}, {"Data", ValueFor("D:\\Data")}});
    for (char const *name : {"C:\\x\\y", "D:\\Data\\x", "D:\\Data"}) EXPECT_EQ(name, Local(Unc(name)));
}

// ---- Files behind shares and drives. On Windows these lead where the system says. ----

#if !defined _WIN32

class FilesOfTheNet : public ShareTest {
protected:
    FilesOfTheNet()
    {
        folder.Write("Data/File.txt", "abc");
        Platform::SetDrive('Q', folder.native("Data"), "\\\\server\\share");
        Platform::SetNetworkShare("server", "share", folder.native("Data"));
    }
};

TEST_F(FilesOfTheNet, AreFoundInTheSpellingOfTheDisk)
{
    DString onShare("\\\\SERVER\\Share\\FILE.TXT"), onDrive("q:\\FILE.TXT"), elsewhere("\\\\server\\other\\FILE.TXT");
    EXPECT_TRUE(FileExists(onShare));
    EXPECT_TRUE(FileExists(onDrive));
    EXPECT_FALSE(FileExists(elsewhere));
    EXPECT_EQ("\\\\SERVER\\Share\\File.txt", bytesOf(onShare));
    EXPECT_EQ("q:\\File.txt", bytesOf(onDrive));
    EXPECT_EQ("abc", bytesOf(DFile::GetText("Q:\\file.txt")));
}

TEST_F(FilesOfTheNet, AreReachedByEitherName)
{
    EXPECT_EQ("abc", bytesOf(DFile::GetText(GetUNCFileName("Q:\\file.txt"))));
    EXPECT_TRUE(DFile::WriteText("\\\\server\\share\\new", "x"));
    EXPECT_EQ(1, GetFileLen("Q:\\NEW"));
    DStringArray names;
    GetFiles("\\\\server\\share\\*", names, true);
    EXPECT_EQ((Strings{"File.txt", "new"}), Items(names));
}

TEST_F(FilesOfTheNet, OfThisComputerFollowItsTableOfShares)
{
    Platform::SetNetworkShare("server", "share", ""); // which would name the folder first
    SetComputerNameD();
    SetShares({{"mine", ValueFor(folder.path("Data"))}});
    DString const name = "\\\\" + GetComputerNameD() + "\\MINE\\file.TXT";
    EXPECT_EQ("abc", bytesOf(DFile::GetText(name)));
    EXPECT_EQ("abc", bytesOf(DFile::GetText(GetLocalFileName(name))));
    EXPECT_EQ("\\\\" + Platform::ComputerName() + "\\mine\\file.TXT", bytesOf(GetUNCFileName(GetLocalFileName(name))));
}

TEST_F(FilesOfTheNet, HaveTheNetworkNameOfTheFolderTheyLieIn)
{
    Platform::SetDrive('Q', folder.native());
    EXPECT_EQ("\\\\server\\share\\File.txt", Unc(folder.path("Data\\File.txt")));
    EXPECT_EQ("\\\\server\\share\\File.txt", Unc("Q:\\Data\\File.txt"));
    EXPECT_EQ("\\\\server\\share", Unc(folder.path("Data")));
    EXPECT_EQ(folder.path("Data2\\x"), Unc(folder.path("Data2\\x")));
    EXPECT_EQ("Q:\\x", Unc("Q:\\x"));
}

TEST_F(FilesOfTheNet, OnAMountAreReachedByTheirNetworkName)
{
    folder.MakeFolder("mnt/Sub");
    folder.Write("mounts", "//srv/My\\040Data " + folder.native("mnt") + " cifs rw 0 0\n");
    std::string const table = folder.native("mounts");
    Platform::SetMountTable(table.c_str());
    DString const network = GetUNCFileName(Path("mnt\\Sub\\File"));
    EXPECT_EQ("\\\\srv\\My Data\\Sub\\File", bytesOf(network));
    EXPECT_TRUE(DFile::WriteText(network, "x"));
    EXPECT_EQ("x", folder.Read("mnt/Sub/File"));
    EXPECT_EQ(bytesOf(network), bytesOf(GetLocalFileName(network))) << "of another computer it stays";
}

TEST_F(FilesOfTheNet, OfAUserShareHaveBothNames)
{
    SetComputerNameD();
    folder.MakeFolder("Far/Sub");
    folder.Write("shares/far", "#VERSION 2\npath=" + folder.native("Far") + "\ncomment=\nsharename=Far\n");
    std::string const shares = folder.native("shares"), own = "\\\\" + Platform::ComputerName();
    Platform::SetUserShareFolder(shares.c_str());
    EXPECT_EQ(folder.path("Far\\Sub\\x"), Local(own + "\\far\\Sub\\x"));
    EXPECT_EQ(own + "\\Far\\Sub\\x", Unc(folder.path("Far\\Sub\\x")));
    EXPECT_EQ("other\\x\\", Local(own + "\\other\\x"));
    EXPECT_TRUE(DFile::WriteText(fromBytes(own + "\\FAR\\sub\\x"), "y"));
    EXPECT_EQ("y", folder.Read("Far/Sub/x"));
}

TEST_F(FilesOfTheNet, AreGoneWithTheTables)
{
    Platform::SetDrive('Q', "");
    Platform::SetNetworkShare("SERVER", "SHARE", "");
    DString onShare("\\\\server\\share\\File.txt"), onDrive("Q:\\File.txt");
    EXPECT_FALSE(FileExists(onShare));
    EXPECT_FALSE(FileExists(onDrive));
    EXPECT_FALSE(DFile::WriteText("\\\\server\\share\\new", "x"));
    EXPECT_EQ("Q:\\x", Unc("Q:\\x"));
}

#endif

} // namespace
