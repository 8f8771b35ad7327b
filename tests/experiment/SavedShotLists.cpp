/// Lists of shots that are written: byte for byte, and joined with one that there is.
#include <filesystem>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "support/ShotListTest.h"

namespace {

struct Shot {
    char const *name;
    int gnum;
};

class SavedShotLists : public ShotListTest {
protected:
    SavedShotLists() { system.folder.MakeFolder("X/E/ShotLists"); }

    static ShotArrays Of(std::vector<Shot> const &shots)
    {
        ShotArrays arrays;
        for (Shot const &shot : shots) arrays.Add(shot.name, shot.gnum);
        return arrays;
    }
    /// The bytes of the list that is saved as "L.txt".
    std::string Saved(std::vector<Shot> const &shots)
    {
        ShotArrays arrays = Of(shots);
        expt.SaveShotList("L.txt", arrays.names, arrays.gnums);
        EXPECT_EQ(Of(shots).Shots(), arrays.Shots());
        return ReadList("L.txt");
    }
    /// The bytes of the list that comes of a file and more shots. `result` is what becomes of the caller's arrays.
    std::string Merged(std::string const &bytes, std::vector<Shot> const &shots)
    {
        Write("lists/old.txt", bytes);
        result = Of(shots);
        expt.MergeShotList(Dstr(path("lists\\old")), "L.txt", result.names, result.gnums);
        EXPECT_EQ(bytes, Read("lists/old.txt"));
        return ReadList("L.txt");
    }
};

// ---- SaveShotList ----

TEST_F(SavedShotLists, HaveALineForEachShotAndNoLastLineEnd)
{
    EXPECT_EQ("A1;.\\Shots\r\nA1;..\\Data\\RunA\r\nb 2;..\\Data\\RunB", Saved({{"A1", 0}, {"A1", 1}, {"b 2", 2}}));
    EXPECT_EQ("A1;.\\Shots", Saved({{"A1", 0}}));
    EXPECT_EQ("", Saved({}));
}

TEST_F(SavedShotLists, HaveNoPathForAGroupThatThereIsNot)
{
    EXPECT_EQ("A1;\r\nA2;\r\nA3;\r\nA4;\r\nA5;\r\nA6;.\\Shots",
              Saved({{"A1", -1}, {"A2", 3}, {"A3", 5}, {"A4", -2147483647 - 1}, {"A5", 2147483647}, {"A6", 0}}));
}

TEST_F(SavedShotLists, AreWrittenWhetherTheShotsAreThereOrNot)
{
    EXPECT_EQ("Gone;..\\Data\\RunA\r\n;.\\Shots\r\nA;B;.\\Shots\r\n\"Q\";.\\Shots",
              Saved({{"Gone", 1}, {"", 0}, {"A;B", 0}, {"\"Q\"", 0}}));
    EXPECT_EQ("", system.Names("X/E/Shots"));
}

TEST_F(SavedShotLists, ReplaceAListWhole)
{
    WriteList("L.txt", std::string(1000, 'x'));
    EXPECT_EQ("A1;.\\Shots", Saved({{"A1", 0}}));
    EXPECT_EQ("L.txt", system.Names("X/E/ShotLists"));
}

TEST_F(SavedShotLists, AreReadAgain)
{
    MakeShots(0, {"A1", "A2"});
    MakeShots(1, {"A1"});
    Saved({{"A1", 1}, {"A2", 0}, {"A1", 0}, {"Gone", 0}, {"A1", 7}});
    EXPECT_EQ("A1/1 A2/0 A1/0", Shots("L"));
}

TEST_F(SavedShotLists, HaveTheNameThatIsGiven)
{
    MakeShots(0, {"A1"});
    ShotArrays shots = Of({{"A1", 0}});
    system.folder.MakeFolder("X/E/ShotLists/sub");
    for (char const *list : {"Bare", "M.dat", "sub\\S.txt"}) expt.SaveShotList(list, shots.names, shots.gnums);
    EXPECT_EQ("Bare M.dat sub", system.Names("X/E/ShotLists"));
    EXPECT_EQ("S.txt", system.Names("X/E/ShotLists/sub"));
    EXPECT_EQ("", Shots("Bare"));
    EXPECT_EQ("", Shots("M.dat"));
    EXPECT_EQ("A1/0", Shots("sub\\S"));
}

TEST_F(SavedShotLists, DoNotMakeTheirFolder)
{
    std::filesystem::remove(system.folder.native("X/E/ShotLists"));
    ShotArrays shots = Of({{"A1", 0}});
    expt.SaveShotList("L.txt", shots.names, shots.gnums);
    EXPECT_FALSE(Has("X/E/ShotLists"));
    system.folder.MakeFolder("X/E/ShotLists");
    expt.SaveShotList("sub\\L.txt", shots.names, shots.gnums);
    expt.SaveShotList("", shots.names, shots.gnums);
    EXPECT_EQ("", system.Names("X/E/ShotLists"));
}

TEST_F(SavedShotLists, NameAGroupElsewhereByItsShareOrItsPath)
{
    Ini("[Groups]\r\n" + path("Far\\Run") + "\r\n");
    system.folder.MakeFolder("Far/Run/ShotA1");
    Open();
    EXPECT_EQ("A1;" + path("Far\\Run"), Saved({{"A1", 1}}));
    EXPECT_EQ("A1/1", Shots("L"));
    ComputerName = "PC";
    Platform::SetShares({{"Runs", std::string("Path=") + path("Far") + std::string(1, '\0')}});
    EXPECT_EQ("A1;\\\\PC\\Runs\\Run", Saved({{"A1", 1}}));
    EXPECT_EQ("A1/1", Shots("L"));
    ComputerName = DString();
}

TEST_F(SavedShotLists, BearArraysOfUnequalLength)
{
    ShotArrays shots = Of({{"A1", 0}, {"A2", 0}});
    shots.gnums.ReSize(1);
    expt.SaveShotList("L.txt", shots.names, shots.gnums);
    EXPECT_EQ("A1;.\\Shots\r\nA2;", ReadList("L.txt"));
    shots.gnums.ReSize(0);
    expt.SaveShotList("L.txt", shots.names, shots.gnums);
    EXPECT_EQ("A1;\r\nA2;", ReadList("L.txt"));
    shots.gnums.Add(1);
    shots.gnums.Add(1);
    shots.gnums.Add(1);
    expt.SaveShotList("L.txt", shots.names, shots.gnums);
    EXPECT_EQ("A1;..\\Data\\RunA\r\nA2;..\\Data\\RunA", ReadList("L.txt"));
}

// ---- MergeShotList ----

TEST_F(SavedShotLists, AMergeIsTheOldListAndTheNewShots)
{
    EXPECT_EQ("A1;.\\Shots\r\nB1;..\\Data\\RunA\r\nC1;.\\Shots\r\nC2;..\\Data\\RunB",
              Merged("A1\r\nB1;..\\Data\\RunA\r\n", {{"C1", 0}, {"C2", 2}}));
    EXPECT_EQ("C1/0 C2/2", result.Shots());
}

TEST_F(SavedShotLists, AShotThatIsInTheFileIsMarkedAndNotAdded)
{
    EXPECT_EQ("A1;.\\Shots\r\nB1;..\\Data\\RunA\r\nB1;.\\Shots",
              Merged("A1\r\nB1;..\\Data\\RunA", {{"a1", 0}, {"B1", 0}, {"b1", 1}}));
    EXPECT_EQ("a1/-1 B1/0 b1/-1", result.Shots());
    EXPECT_EQ("A1;.\\Shots", Merged("A1", {{"A1", 0}}));
    EXPECT_EQ("A1/-1", result.Shots());
}

TEST_F(SavedShotLists, AShotThatIsTwiceInTheFileStaysTwice)
{
    EXPECT_EQ("A1;.\\Shots\r\nA1;.\\Shots", Merged("A1\nA1", {{"A1", 0}, {"A1", 0}}));
    EXPECT_EQ("A1/-1 A1/-1", result.Shots());
}

TEST_F(SavedShotLists, NewShotsAreComparedWithTheFileAlone)
{
    EXPECT_EQ("A1;.\\Shots\r\nB1;.\\Shots\r\nB1;.\\Shots", Merged("A1", {{"B1", 0}, {"B1", 0}}));
    EXPECT_EQ("B1/0 B1/0", result.Shots());
}

TEST_F(SavedShotLists, NamesMustHaveTheSameLengthAndLetters)
{
    EXPECT_EQ("A1;.\\Shots\r\nA10;.\\Shots\r\nA;.\\Shots\r\nA2;.\\Shots",
              Merged("A1", {{"A10", 0}, {"A", 0}, {"A2", 0}}));
}

TEST_F(SavedShotLists, AShotOfNoGroupIsNotAdded)
{
    EXPECT_EQ("A1;.\\Shots\r\nB3;", Merged("A1", {{"B1", -1}, {"B2", -7}, {"B3", 9}}));
    EXPECT_EQ("B1/-1 B2/-7 B3/9", result.Shots());
}

TEST_F(SavedShotLists, LinesOfUnknownGroupsStayWithoutTheirPath)
{
    EXPECT_EQ("A1;\r\nA2;\r\nA3;.\\Shots\r\nA1;.\\Shots",
              Merged("A1;..\\Gone\nA2;\nA3", {{"A1", 0}, {"A2", -1}, {"A1", -1}}));
    EXPECT_EQ("A1/0 A2/-1 A1/-1", result.Shots());
}

TEST_F(SavedShotLists, LinesLoseTheirQuotesAndEmptyOnesStay)
{
    EXPECT_EQ("A1;..\\Data\\RunA\r\n;.\\Shots\r\nA2;.\\Shots\r\n\"A3\";.\\Shots",
              Merged("\"A1;..\\Data\\RunA\"\r\n\r\nA2\"\r\n\"\"A3\"\"\r\n", {{"a1", 1}, {"", 0}}));
    EXPECT_EQ("a1/-1 /-1", result.Shots());
}

TEST_F(SavedShotLists, ShotsNeedNotBeOnTheDisk)
{
    MakeShots(1, {"A1"});
    EXPECT_EQ("Gone;.\\Shots\r\nA1;..\\Data\\RunA\r\nA1;.\\Shots", Merged("Gone\nA1;..\\Data\\RunA", {{"A1", 0}}));
}

TEST_F(SavedShotLists, AMissingOrEmptyFileAddsNothing)
{
    EXPECT_EQ("A1;.\\Shots", Merged("", {{"A1", 0}}));
    ShotArrays shots = Of({{"A2", 2}});
    expt.MergeShotList(Dstr(path("lists\\none")), "L.txt", shots.names, shots.gnums);
    EXPECT_EQ("A2;..\\Data\\RunB", ReadList("L.txt"));
    EXPECT_EQ("old.txt", system.Names("lists"));
    expt.MergeShotList("", "L.txt", shots.names, shots.gnums);
    EXPECT_EQ("A2;..\\Data\\RunB", ReadList("L.txt"));
}

TEST_F(SavedShotLists, TheFileIsAPathOfItsOwnWithOrWithoutExtension)
{
    WriteList("L.txt", "Wrong");
    Write("lists/M.txt", "A1");
    Write("lists/N.dat.TXT", "A2");
    Write("lists/N.dat", "Wrong");
    struct {
        char const *file;
        char const *bytes;
    } const rows[] = {{"lists\\M", "A1;.\\Shots"},
                      {"lists\\M.txt", "A1;.\\Shots"},
                      {"lists\\m.TXT", "A1;.\\Shots"},
                      {"lists\\N.dat", "A2;.\\Shots"},
                      {"L", ""},
                      {"lists\\M.txt.txt", ""}};
    for (auto const &row : rows) {
        ShotArrays none;
        expt.MergeShotList(Dstr(path(row.file)), "R.txt", none.names, none.gnums);
        EXPECT_EQ(row.bytes, ReadList("R.txt")) << row.file;
    }
}

TEST_F(SavedShotLists, ARelativeFileIsSoughtInTheCurrentFolder)
{
    Write("here/M.txt", "A1");
    WriteList("M.txt", "Wrong");
    system.GoTo("here");
    ShotArrays none;
    expt.MergeShotList("M", "R.txt", none.names, none.gnums);
    EXPECT_EQ("A1;.\\Shots", ReadList("R.txt"));
}

TEST_F(SavedShotLists, AMergeMayReplaceItsOwnFile)
{
    WriteList("L.txt", "A1\r\nB1;nowhere\r\n");
    for (int i = 0; i < 2; ++i) {
        ShotArrays shots = Of({{"C1", 1}});
        expt.MergeShotList(Dstr(path("X\\E\\ShotLists\\L")), "L.txt", shots.names, shots.gnums);
        EXPECT_EQ("A1;.\\Shots\r\nB1;\r\nC1;..\\Data\\RunA", ReadList("L.txt"));
        EXPECT_EQ(i == 0 ? "C1/1" : "C1/-1", shots.Shots());
    }
}

TEST_F(SavedShotLists, AMergeDoesNotMakeTheFolder)
{
    std::filesystem::remove(system.folder.native("X/E/ShotLists"));
    EXPECT_EQ("(missing)", Merged("A1", {{"A1", 0}, {"B1", 0}}));
    EXPECT_EQ("A1/-1 B1/0", result.Shots());
    EXPECT_FALSE(Has("X/E/ShotLists"));
}

TEST_F(SavedShotLists, AMergeKeepsAnyBytes)
{
    std::string const longLine(1 << 20, 'x');
    EXPECT_EQ("\xFF\x01;.\\Shots\r\n" + longLine + ";.\\Shots\r\n\xFF;",
              Merged("\xFF\x01\n" + longLine + "\n\xFF;\xFE", {}));
    Merged(std::string("A\0B\nC", 5), {{"C", 0}, {"A", 0}});
}

} // namespace
