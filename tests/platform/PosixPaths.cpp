#include "platform/posix/PosixPaths.h"

#include <gtest/gtest.h>
#include <string>

#include "PlatformVocabulary.h"
#include "support/NoHostNetwork.h"

namespace {

/// The native name of a path as spelled, "(nothing)" if it names nothing.
std::string Native(char const *path)
{
    Platform::Posix::PathName name;
    return Platform::Posix::ParsePath(path, name) ? name.Native() : "(nothing)";
}

/// Takes its rows away again.
class PosixPaths : public testing::Test {
protected:
    ~PosixPaths() override
    {
        for (char letter : std::string("CQZ")) Platform::SetDrive(letter, "");
        Platform::SetNetworkShare("server", "share", "");
        Platform::ClearShares();
    }

    TempFolder folder;

private:
    NoHostNetwork const noNetwork;
};

} // namespace

TEST_F(PosixPaths, BecomeNativeNames)
{
    struct Row {
        char const *path;
        char const *native;
    } const rows[] = {
        {"Z:\\data\\Run1", "/data/Run1"},
        {"z:\\data", "/data"},
        {"C:\\data", "/data"},
        {"Z:\\", "/"},
        {"Z:", "/"},
        {"Z:data", "/data"},
        {"\\data\\Run1", "/data/Run1"},
        {"\\", "/"},
        {"/data/Run1", "/data/Run1"},
        {"data\\Run1", "data/Run1"},
        {"data", "data"},
        {".", "."},
        {"..\\x", "../x"},
        {"a\\..\\..\\x", "../x"},
        {"Z:\\..\\..\\x", "/x"},
        {"Z:\\a\\.\\b\\..\\c", "/a/c"},
        {"Z:\\a\\\\b\\", "/a/b"},
        {"Q:\\data", "(nothing)"},
        {"1:\\data", "(nothing)"},
        {":", ":"},
        {"", "(nothing)"},
        {nullptr, "(nothing)"},
        {"\\\\", "(nothing)"},
        {"\\\\server", "(nothing)"},
        {"\\\\server\\share", "(nothing)"},
        {"\\\\server\\share\\x", "(nothing)"},
        {"//server/share/x", "(nothing)"},
        {"\\\\\\share\\x", "(nothing)"},
    };
    for (Row const &row : rows) EXPECT_EQ(row.native, Native(row.path)) << (row.path ? row.path : "null");
}

TEST_F(PosixPaths, DriveTableSaysWhereALetterLeads)
{
    Platform::SetDrive('q', "/srv/data/");
    EXPECT_EQ("/srv/data/x", Native("Q:\\x"));
    EXPECT_EQ("/srv/data/", Native("q:"));
    Platform::SetDrive('Q', "/srv/other");
    EXPECT_EQ("/srv/other/x", Native("q:\\x"));
    EXPECT_EQ("/srv/other/x", Native("q:\\..\\..\\x")) << "no way out of a drive";
    Platform::SetDrive('Q', "");
    EXPECT_EQ("(nothing)", Native("Q:\\x"));
}

TEST_F(PosixPaths, DriveTableComesBeforeTheRoot)
{
    Platform::SetDrive('C', "/srv/c");
    EXPECT_EQ("/srv/c/x", Native("C:\\x"));
    EXPECT_EQ("/x", Native("Z:\\x"));
    Platform::SetDrive('C', "");
    EXPECT_EQ("/x", Native("C:\\x"));
}

TEST_F(PosixPaths, ShareTableIgnoresCase)
{
    Platform::SetNetworkShare("Server", "Share", "/srv/data");
    EXPECT_EQ("/srv/data/x", Native("\\\\SERVER\\share\\x"));
    EXPECT_EQ("/srv/data/", Native("\\\\server\\share"));
    EXPECT_EQ("/srv/data/x", Native("\\\\server\\share\\..\\x"));
    EXPECT_EQ("(nothing)", Native("\\\\server\\share2\\x"));
    Platform::SetNetworkShare("SERVER", "SHARE", "");
    EXPECT_EQ("(nothing)", Native("\\\\server\\share\\x"));
}

TEST_F(PosixPaths, OwnComputersSharesLeadToTheirFolders)
{
    using namespace std::string_literals;
    Platform::SetShares(
        {{"Data", "CSCFlags=0\0Path=Z:\\srv\\data\0Type=0\0"s}, {"None", "Type=0\0"s}, {"Tail", "Path=Z:\\t"}});
    std::string const own = "\\\\" + Platform::ComputerName();
    EXPECT_EQ("/srv/data/x", Native((own + "\\DATA\\x").c_str()));
    EXPECT_EQ("/srv/data", Native((own + "\\data").c_str()));
    EXPECT_EQ("/srv/data/x", Native((own + "\\data\\..\\..\\x").c_str())) << "no way out of a share";
    EXPECT_EQ("/t/x", Native((own + "\\tail\\x").c_str()));
    EXPECT_EQ("(nothing)", Native((own + "\\none\\x").c_str()));
    EXPECT_EQ("(nothing)", Native((own + "\\other\\x").c_str()));
    EXPECT_EQ("(nothing)", Native("\\\\another\\Data\\x"));
    Platform::ClearShares();
    EXPECT_EQ("(nothing)", Native((own + "\\data\\x").c_str()));
}

TEST_F(PosixPaths, NetworkTableComesBeforeOwnShares)
{
    std::string const own = Platform::ComputerName();
    Platform::SetShares({{"Data", "Path=Z:\\own"}});
    Platform::SetNetworkShare(own, "Data", "/network");
    EXPECT_EQ("/network/x", Native(("\\\\" + own + "\\data\\x").c_str()));
    Platform::SetNetworkShare(own, "Data", "");
}

TEST_F(PosixPaths, ASharesThatLeadsIntoItselfNamesNothing)
{
    std::string const own = "\\\\" + Platform::ComputerName();
    Platform::SetShares({{"A", "Path=" + own + "\\B\\b"},
                         {"B", "Path=" + own + "\\A\\a"},
                         {"C", "Path=" + own + "\\D\\c"},
                         {"D", "Path=Z:\\d"}});
    EXPECT_EQ("(nothing)", Native((own + "\\A\\x").c_str()));
    EXPECT_EQ("/d/c/x", Native((own + "\\C\\x").c_str())) << "a share may lead into another";
}

TEST_F(PosixPaths, ABareRootDoesntEndInAName)
{
    using namespace std::string_literals;
    Platform::SetShares({{"Data", "Path=Z:\\data\0"s}});
    std::string const own = "\\\\" + Platform::ComputerName() + "\\Data";
    for (std::string const &path : {"Z:"s, "Z:\\"s, "\\"s, own, own + "\\", "x\\"s, "x\\."s, "x\\.."s, "."s}) {
        Platform::Posix::PathName name;
        ASSERT_TRUE(Platform::Posix::ParsePath(path.c_str(), name)) << path;
        EXPECT_FALSE(name.endsInName) << path;
    }
    EXPECT_FALSE(Platform::MakeFolder((own).c_str()));
}

TEST_F(PosixPaths, ExactNameWinsOverOtherCase)
{
    folder.Write("data", "lower");
    folder.Write("Data", "mixed");
    folder.Write("DATA", "upper");
    EXPECT_EQ("lower", Opened(folder.path("data")));
    EXPECT_EQ("mixed", Opened(folder.path("Data")));
    EXPECT_EQ("upper", Opened(folder.path("DATA")));
}

TEST_F(PosixPaths, FirstOtherCaseInSortedOrderIsMeant)
{
    folder.Write("data", "lower");
    folder.Write("dATA", "second");
    folder.Write("dATa", "third");
    EXPECT_EQ("second", Opened(folder.path("DATA")));
}

TEST_F(PosixPaths, EveryElementMayHaveAnotherCase)
{
    folder.Write("Outer/Inner/File.dat", "x");
    EXPECT_EQ("x", Opened(folder.path("OUTER\\INNER\\FILE.DAT")));
    EXPECT_EQ("x", Opened(folder.path("Outer\\INNER\\File.dat")));
    EXPECT_EQ("x", Opened(folder.path("outer\\Inner\\file.dat")));
    EXPECT_EQ("(closed)", Opened(folder.path("OUTER\\INNER\\FILE.DAX")));
    EXPECT_EQ("(closed)", Opened(folder.path("OUTER\\INNER\\FILE.DAT\\x")));
}

TEST_F(PosixPaths, ExactFolderIsMeantEvenIfOnlyTheOtherHoldsTheFile)
{
    folder.MakeFolder("Data");
    folder.Write("data/x", "x");
    EXPECT_EQ("(closed)", Opened(folder.path("Data\\x")));
    EXPECT_EQ("x", Opened(folder.path("data\\X")));
}

TEST_F(PosixPaths, NewNameIsMadeAsGivenInTheFolderFound)
{
    folder.MakeFolder("Outer/Inner");
    EXPECT_TRUE(Written(folder.path("OUTER\\inner\\NewFile"), "x"));
    EXPECT_EQ("x", folder.Read("Outer/Inner/NewFile"));
    EXPECT_TRUE(Platform::MakeFolder(folder.path("outer\\INNER\\NewFolder").c_str()));
    EXPECT_TRUE(IsFolder(folder.native("Outer/Inner/NewFolder")));
    EXPECT_FALSE(folder.Has("OUTER"));
}

TEST_F(PosixPaths, ANameWrittenInAnotherCaseIsTheExistingFile)
{
    folder.Write("Data.txt", "old");
    EXPECT_TRUE(Written(folder.path("DATA.TXT"), "new"));
    EXPECT_EQ("new", folder.Read("Data.txt"));
    EXPECT_FALSE(folder.Has("DATA.TXT"));
}

TEST_F(PosixPaths, RelativePathsBeginAtTheCurrentDirectory)
{
    folder.Write("Outer/File", "x");
    ASSERT_EQ(0, chdir(folder.native("Outer").c_str()));
    EXPECT_EQ("x", Opened("File"));
    EXPECT_EQ("x", Opened("FILE"));
    EXPECT_EQ("x", Opened("..\\OUTER\\file"));
    EXPECT_TRUE(Written("new", "y"));
    EXPECT_EQ("y", folder.Read("Outer/new"));
    ASSERT_EQ(0, chdir("/"));
}

TEST_F(PosixPaths, UnreachableShareNamesNothingAndMakesNothing)
{
    ASSERT_EQ(0, chdir(folder.native().c_str()));
    for (std::string const path :
         {"\\\\vodrel-no-server", "\\\\vodrel-no-server\\share", "\\\\vodrel-no-server\\share\\x", "Q:\\x"}) {
        EXPECT_EQ("(closed)", Opened(path)) << path;
        EXPECT_FALSE(Written(path, "x")) << path;
        EXPECT_FALSE(Platform::MakeFolder(path.c_str())) << path;
        EXPECT_FALSE(Platform::SetCurrentDirectory(path.c_str())) << path;
        EXPECT_FALSE(Platform::DeleteMatching(path.c_str())) << path;
        EXPECT_TRUE(Found(path + "\\*").empty()) << path;
        folder.Write("file");
        EXPECT_FALSE(Platform::CopyOneFile(folder.path("file").c_str(), path.c_str())) << path;
        EXPECT_FALSE(Platform::CopyMatching(folder.path("*").c_str(), path.c_str(), true)) << path;
        EXPECT_FALSE(Platform::Rename(folder.path("file").c_str(), path.c_str())) << path;
    }
    EXPECT_NE(0, access("/vodrel-no-server", F_OK));
    EXPECT_EQ(Names{"file"}, Found(folder.path("*")));
    ASSERT_EQ(0, chdir("/"));
}

TEST_F(PosixPaths, TablesLeadToRealFiles)
{
    folder.Write("Data/x", "x");
    Platform::SetDrive('Q', folder.native());
    Platform::SetNetworkShare("server", "share", folder.native("Data"));
    Platform::SetShares({{"Own", "Path=" + folder.path("DATA")}});
    EXPECT_EQ("x", Opened("q:\\data\\X"));
    EXPECT_EQ("x", Opened("\\\\SERVER\\SHARE\\x"));
    EXPECT_EQ("x", Opened("\\\\" + Platform::ComputerName() + "\\OWN\\x"));
    EXPECT_TRUE(Written("\\\\server\\share\\new", "y"));
    EXPECT_EQ("y", folder.Read("Data/new"));
}

TEST_F(PosixPaths, NamesThatAreTooLongJustFail)
{
    std::string const longName(300, 'a');
    std::string deep = folder.path();
    for (int i = 0; i < 3000; i++) deep += "\\aa";
    std::string deeper = deep;
    for (int i = 0; i < 100000; i++) deeper += "\\a";
    folder.Write("from/x", "x");
    for (std::string const &path : {folder.path(longName), folder.path(longName + "\\x"), deep, deeper}) {
        EXPECT_EQ("(closed)", Opened(path));
        EXPECT_FALSE(Written(path, "x"));
        EXPECT_FALSE(Platform::MakeFolder(path.c_str()));
        EXPECT_TRUE(Found(path).empty());
        EXPECT_FALSE(Platform::DeleteMatching(path.c_str()));
        EXPECT_FALSE(Platform::CopyMatching(folder.path("from\\*").c_str(), path.c_str(), true));
    }
    EXPECT_FALSE(folder.Has("aa")); // no part of the way either
    std::string const longest(255, 'a');
    EXPECT_TRUE(Written(folder.path(longest), "x"));
    EXPECT_EQ("x", Opened(folder.path(std::string(255, 'A'))));
}

TEST_F(PosixPaths, NamesMayHoldEveryByteButSeparatorsAndWildcards)
{
    for (int byte = 1; byte < 256; byte++) {
        char const c = static_cast<char>(byte);
        if (c == '\\' || c == '/' || c == '*' || c == '?') continue;
        std::string const name = std::string("ab") + c, path = folder.path(name);
        ASSERT_TRUE(Written(path, name)) << byte;
        ASSERT_EQ(name, folder.Read(name)) << byte;
        ASSERT_EQ(name, Opened(path)) << byte;
        ASSERT_EQ(Names{name}, Found(path)) << byte;
        ASSERT_TRUE(Platform::DeleteMatching(path.c_str())) << byte;
        ASSERT_FALSE(folder.Has(name)) << byte;
    }
}

TEST_F(PosixPaths, NullIsAnEmptyPath)
{
    EXPECT_EQ(nullptr, Platform::OpenFile(nullptr, "r"));
    EXPECT_EQ(nullptr, Platform::OpenFile(folder.path("x").c_str(), nullptr));
    EXPECT_FALSE(Platform::MakeFolder(nullptr));
    EXPECT_FALSE(Platform::CopyOneFile(nullptr, nullptr));
    EXPECT_FALSE(Platform::CopyMatching(nullptr, nullptr, true));
    EXPECT_FALSE(Platform::DeleteMatching(nullptr));
    EXPECT_FALSE(Platform::Rename(nullptr, nullptr));
    EXPECT_FALSE(Platform::IsSameFile(nullptr, nullptr));
    EXPECT_FALSE(Platform::SetCurrentDirectory(nullptr));
    EXPECT_EQ(nullptr, Platform::LoadModule(nullptr));
    EXPECT_EQ(nullptr, Platform::ModuleSymbol(nullptr, nullptr));
    EXPECT_EQ("", Platform::SystemPath(nullptr));
    Platform::Entry entry;
    EXPECT_FALSE(Platform::Search(nullptr, Platform::Detail::Full).Next(entry));
    Platform::CloseFile(nullptr);
    Platform::FreeModule(nullptr);
}
