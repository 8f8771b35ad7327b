/// Nodes, paths and servers out of the settings of a user, and the file of the nodes, byte by byte.
#include "core/Nodes.h"

#include <climits>
#include <string>
#include <vector>

#include "files/PathUtils.h"
#include "interfaces/VodrelC.h"
#include "support/Faults.h"
#include "support/FilesFixture.h"
#include "support/FreshSystem.h"

namespace {

using namespace std::string_literals;

/// A system on the machine "MyPC" whose user has these settings.
class MachineLists : public testing::Test {
protected:
    MachineLists() : system(false) {}
    ~MachineLists() override { ComputerName = UserPath = WorkingPath = VodrelPath = DString(); }

    void Start(std::string const &settings)
    {
        system.folder.Write("user/Vodrel/Vodrel.ini", settings);
        CoreInit(Dstr(system.path("install")));
        SetNotify(&system.listener);
        ComputerName = "MyPC";
    }
    void StartWithNodes(std::string const &lines) { Start("[Nodes]\r\n" + lines); }

    /// The list that a call gives to one that held something else.
    static Strings Nodes(int n)
    {
        DStringArray list = List({"old", "older"});
        GetNodes(list, n);
        return Items(list);
    }
    static Strings Filled(void (*get)(DStringArray &))
    {
        DStringArray list = List({"old", "older"});
        get(list);
        return Items(list);
    }
    static Strings Paths() { return Filled(GetPaths); }
    static Strings Servers() { return Filled(GetServers); }

    std::string Hosts() const { return system.folder.Read("user/Vodrel/MPIHosts.txt"); }

    FreshSystem system;
};

// ---- Nodes -----------------------------------------------------------------------------------

class NodeList : public MachineLists {};

TEST_F(NodeList, WithoutNodesIsThisMachine)
{
    for (char const *settings : {"[Preferences]\r\nx=y", "[Nodes]\r\n[Paths]\r\nP=x", "[Nodes]\r\n  \r\n\r\n[x]"}) {
        Start(settings);
        EXPECT_EQ((Strings{"MyPC"}), Nodes(0)) << settings;
        EXPECT_EQ("MyPC", Hosts());
        EXPECT_EQ((Strings{"MyPC", "MyPC", "MyPC"}), Nodes(3)) << settings;
        EXPECT_EQ("MyPC\r\nMyPC\r\nMyPC", Hosts());
    }
}

TEST_F(NodeList, IsRepeatedUpToTheNumberAndNeverCut)
{
    StartWithNodes("A=Node\r\nB=Node");
    struct Row {
        int n;
        Strings nodes;
    } const rows[] = {{0, {"A", "B"}},      {1, {"A", "B"}},           {2, {"A", "B"}},
                      {3, {"A", "B", "A"}}, {4, {"A", "B", "A", "B"}}, {5, {"A", "B", "A", "B", "A"}},
                      {-1, {"A", "B"}},     {-1000000, {"A", "B"}},    {INT_MIN, {"A", "B"}}};
    for (Row const &row : rows) EXPECT_EQ(row.nodes, Nodes(row.n)) << row.n;
}

TEST_F(NodeList, OfManyIsComplete)
{
    StartWithNodes("A=\r\nB=\r\nC=");
    Strings const nodes = Nodes(100000);
    ASSERT_EQ(100000u, nodes.size());
    for (std::size_t i = 0; i < nodes.size(); ++i) ASSERT_EQ(std::string(1, "ABC"[i % 3]), nodes[i]) << i;
    EXPECT_EQ(100000u + 2 * 99999u, Hosts().size());
}

TEST_F(NodeList, TakesTheTextBeforeTheFirstEqualsSign)
{
    struct Row {
        std::string lines;
        Strings nodes;
    } const rows[] = {
        {"A=Node", {"A"}},
        {"A", {"A"}},
        {"A=", {"A"}},
        {"A=B=C", {"A"}},
        {"A=Node\r\nB\r\nC=x", {"A", "B", "C"}},
        {"A=1\r\na=2\r\nA=3", {"A", "a", "A"}},
        {";A=Node", {";A"}}, // no comment here
        {" A =Node", {" A "}},
        {"A  \r\n  B=x", {"A  ", "  B"}},
        {"A B=x", {"A B"}},
        {"\tA\t=x", {"\tA\t"}},
        {"\xC9\xFF=x", {"\xC9\xFF"}},
        {"A=1\n\nB=2", {"A", "B"}},
        {"mypc=Node", {"mypc"}},
    };
    for (Row const &row : rows) {
        StartWithNodes(row.lines);
        EXPECT_EQ(row.nodes, Nodes(0)) << row.lines;
    }
}

TEST_F(NodeList, LeavesBlankNamesOut)
{
    StartWithNodes("=x\r\nA=1\r\n  =y\r\nB=2\r\n =\r\n=");
    EXPECT_EQ((Strings{"A", "B"}), Nodes(0));
    EXPECT_EQ((Strings{"A", "B", "A"}), Nodes(3));
    EXPECT_EQ("A\r\nB\r\nA", Hosts());
}

// There is nothing to repeat.
TEST_F(NodeList, OfBlankNamesOnlyIsEmptyWhateverTheNumber)
{
    StartWithNodes("=x\r\n   =y");
    for (int n : {0, 1, 2, 1000, -1, INT_MAX, INT_MIN}) {
        system.folder.Write("user/Vodrel/MPIHosts.txt", "old");
        EXPECT_EQ(Strings(), Nodes(n)) << n;
        EXPECT_EQ("", Hosts()) << n;
    }
}

TEST_F(NodeList, OfAMachineWithoutANameIsEmpty)
{
    Start("[Nodes]");
    for (char const *name : {"", "  "}) {
        ComputerName = name;
        for (int n : {0, 5}) EXPECT_EQ(Strings(), Nodes(n)) << n;
        EXPECT_EQ("", Hosts());
    }
}

TEST_F(NodeList, FindsItsSectionInAnyCaseAndTakesTheFirst)
{
    Start("[Paths]\r\nP=x\r\n[NODES]\r\nA=Node\r\n[Nodes]\r\nB=Node");
    EXPECT_EQ((Strings{"A"}), Nodes(0));
}

TEST_F(NodeList, FollowsTheSettingsInMemory)
{
    StartWithNodes("A=Node");
    VoIni.SetFullSection("Nodes", List({"C=Node", " ", "D"}));
    EXPECT_EQ((Strings{"C", "D"}), Nodes(0));
    VoIni.DeleteSection("Nodes");
    EXPECT_EQ((Strings{"MyPC"}), Nodes(0));
}

// ---- The file of the nodes -------------------------------------------------------------------

class HostsFile : public MachineLists {};

TEST_F(HostsFile, HasOneNameALineAndNoLineEndBehindTheLast)
{
    StartWithNodes(" A =Node\r\nB\r\n =x\r\nC=Node");
    Nodes(4);
    EXPECT_EQ(" A \r\nB\r\nC\r\n A ", Hosts());
    EXPECT_EQ("MPIHosts.txt Vodrel.ini", system.Names("user/Vodrel"));
}

TEST_F(HostsFile, IsReplacedWhole)
{
    StartWithNodes("A=Node");
    system.folder.Write("user/Vodrel/mpihosts.TXT", std::string(10000, 'x'));
    Nodes(2);
    EXPECT_EQ("A\r\nA", system.folder.Read("user/Vodrel/mpihosts.TXT"));
    Nodes(0);
    EXPECT_EQ("A", system.folder.Read("user/Vodrel/mpihosts.TXT"));
}

TEST_F(HostsFile, FollowsTheUserPath)
{
    StartWithNodes("A=Node");
    system.folder.MakeFolder("other");
    UserPath = Dstr(system.path("other"));
    Nodes(0);
    EXPECT_EQ("A", system.folder.Read("other/MPIHosts.txt"));
    EXPECT_EQ("(missing)", Hosts());
}

TEST_F(HostsFile, ThatCannotBeWrittenIsNotNoticed)
{
    StartWithNodes("A=Node");
    system.folder.Write("user/Vodrel/MPIHosts.txt", "old");
    int const nFaults = ForEveryFault(
        FaultKind::ForGood, [] {},
        [] {
            EXPECT_EQ((Strings{"A", "A"}), Nodes(2));
        },
        [this] {
            EXPECT_EQ("", system.Heard());
            EXPECT_EQ("(missing)", system.Log());
        });
    EXPECT_LT(0, nFaults);
    EXPECT_TRUE(system.Sleeps().empty());
}

TEST_F(HostsFile, StaysAsItWasIfItCannotBeOpened)
{
    StartWithNodes("A=Node");
    system.folder.Write("user/Vodrel/MPIHosts.txt", "old");
    Faults const faults(1, INT_MAX, "OpenFile");
    EXPECT_EQ((Strings{"A"}), Nodes(0));
    EXPECT_EQ(1u, Faults::asked.size());
    EXPECT_EQ("old", Hosts());
}

TEST_F(HostsFile, ThatIsAFolderIsNotNoticed)
{
    StartWithNodes("A=Node");
    system.folder.MakeFolder("user/Vodrel/MPIHosts.txt");
    EXPECT_EQ((Strings{"A"}), Nodes(0));
    EXPECT_EQ("", system.Heard());
}

TEST_F(HostsFile, OfASilentStartFindsNoFolder)
{
    Silent = true;
    CoreInit("Z:\\install");
    Silent = false;
    ComputerName = "MyPC";
    EXPECT_EQ((Strings{"MyPC", "MyPC"}), Nodes(2));
    EXPECT_EQ("", system.Names(""));
}

TEST_F(HostsFile, IsLeftAloneByPathsAndServers)
{
    Start("[Nodes]\r\nA=x\r\n[Paths]\r\nP=x\r\n[Servers]\r\nS=x");
    Paths();
    Servers();
    EXPECT_EQ("(missing)", Hosts());
}

// ---- Nodes for C -----------------------------------------------------------------------------

TEST_F(HostsFile, IsWrittenForCAndTheNumberComesBack)
{
    StartWithNodes("A=Node\r\nB=Node");
    struct Row {
        int n;
        char const *hosts;
    } const rows[] = {{4, "A\r\nB\r\nA\r\nB"}, {1, "A\r\nB"}, {0, "A\r\nB"},      {3, "A\r\nB\r\nA"},
                      {-7, "A\r\nB"},          {2, "A\r\nB"}, {INT_MIN, "A\r\nB"}};
    for (Row const &row : rows) {
        EXPECT_EQ(row.n, GetNodesC(row.n));
        EXPECT_EQ(row.hosts, Hosts()) << row.n;
    }
}

TEST_F(HostsFile, ThatCannotBeWrittenIsNotNoticedByC)
{
    StartWithNodes("A=Node");
    system.folder.MakeFolder("user/Vodrel/MPIHosts.txt");
    EXPECT_EQ(4, GetNodesC(4));
    EXPECT_EQ("", system.Heard());
}

TEST_F(HostsFile, OfBlankNamesIsEmptyForC)
{
    StartWithNodes(" =x");
    EXPECT_EQ(4, GetNodesC(4));
    EXPECT_EQ("", Hosts());
}

// ---- Paths and servers -----------------------------------------------------------------------

TEST_F(MachineLists, PathsAreAllKeysOfTheirSection)
{
    struct Row {
        std::string settings;
        Strings paths;
    } const rows[] = {
        {"[Nodes]\r\nA=x", {}},
        {"[Paths]", {}},
        {"[Paths]\r\n[Nodes]\r\nA=x", {}},
        {"[Paths]\r\nD:\\Data=x\r\n\\\\srv\\share", {"D:\\Data", "\\\\srv\\share"}},
        {"[Paths]\r\n=x\r\n  =y\r\n P =z", {"", "  ", " P "}},
        {"[paths]\r\nMyPC=x=y\r\nMyPC", {"MyPC", "MyPC"}},
    };
    for (Row const &row : rows) {
        Start(row.settings);
        EXPECT_EQ(row.paths, Paths()) << row.settings;
    }
}

TEST_F(MachineLists, ServersAreTheOtherMachines)
{
    struct Row {
        std::string settings;
        Strings servers;
    } const rows[] = {
        {"[Nodes]\r\nA=x", {}},
        {"[Servers]", {}},
        {"[Servers]\r\nS=x\r\nT", {"S", "T"}},
        {"[Servers]\r\nS=x\r\nMyPC=x\r\nMYPC\r\nmypc=\r\nT=x", {"S", "T"}},
        {"[Servers]\r\nMyPC =x\r\n MyPC=x", {"MyPC ", " MyPC"}}, // a blank makes another name of it
        {"[Servers]\r\nMyPC2=x\r\nMyP=x\r\nx=MyPC", {"MyPC2", "MyP", "x"}},
        {"[Servers]\r\n=x\r\n   =y\r\n S =z", {" S "}},
        {"[SERVERS]\r\nS=x=y", {"S"}},
    };
    for (Row const &row : rows) {
        Start(row.settings);
        EXPECT_EQ(row.servers, Servers()) << row.settings;
    }
}

TEST_F(MachineLists, OfAMachineWithoutANameHaveAllServers)
{
    Start("[Servers]\r\nS=x\r\n=y");
    ComputerName = DString();
    EXPECT_EQ((Strings{"S"}), Servers());
}

TEST_F(MachineLists, LeaveTheCurrentSectionOfTheSettingsAlone)
{
    Start("[Nodes]\r\nKey=n\r\n[Paths]\r\nKey=p\r\n[Other]\r\nKey=o");
    for (char const *section : {"Nodes", "Paths", "Other", "New"}) {
        VoIni.SetSection(section);
        std::string const before = bytesOf(VoIni.GetKeyValue("Key", "none"));
        Nodes(3);
        Paths();
        Servers();
        GetNodesC(2);
        EXPECT_EQ(before, bytesOf(VoIni.GetKeyValue("Key", "none"))) << section;
    }
    EXPECT_FALSE(VoIni.SectionExists("Servers"));
}

TEST_F(MachineLists, LeaveTheSettingsOnDiskAlone)
{
    Start("[Nodes]\r\n A \r\n=\r\n");
    Nodes(0);
    Paths();
    Servers();
    EXPECT_EQ("[Nodes]\r\n A \r\n=\r\n", system.folder.Read("user/Vodrel/Vodrel.ini"));
}

} // namespace
