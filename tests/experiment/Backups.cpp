/// Backups of shots: where they go, under which names, and what the settings then say.
#include <filesystem>
#include <string>
#include <vector>

#include "platform/Platform.h"
#include "support/ExperimentTest.h"
#include "support/Faults.h"

namespace {

class Backups : public ExperimentTest {
protected:
    Backups() { OpenWithRuns(); }

    static std::string Groups() { return "[Groups]\r\n..\\Data\\Run*;;Runs=1"; }

    /// The path of the fresh folder as ".", for shorter rows.
    std::string Short(DString const &s) const
    {
        std::string text = Plain(s);
        for (std::string const root = path("X"); text.find(root) != std::string::npos;)
            text.replace(text.find(root), root.size(), "X");
        return text;
    }
    std::string BackupPath() { return Short(expt.GetBackupPath()); }
    std::string BackupFolder(std::string const &folder) { return Short(expt.GetBackupShotFolder(Dstr(folder))); }

    /// Writes the backup folder into the experiment's ini.
    void SetPath(std::string const &value) const { Ini(Groups() + "\r\n[Backup]\r\nPath=" + value); }
    /// Writes a file that leads from the folder "Backup" elsewhere.
    void Redirect(std::string const &to, std::string const &from = "X/Backup") const
    {
        Write(from + "/BackupLocation.ini", "[General]\r\nBackupLocation=" + to);
    }
    /// The line that `SetBackupPath` leaves in the experiment's ini.
    std::string Stored(std::string const &relative)
    {
        Ini(Groups());
        expt.SetBackupPath(Dstr(path(relative)));
        std::string const bytes = Read("X/E/E.ini"), head = Groups() + "\r\n[Backup]\r\nPath=";
        return bytes.substr(0, head.size()) == head ? bytes.substr(head.size()) : bytes;
    }
    /// Makes a shot current, with a file in it and one in a folder of it.
    void MakeCurrent(std::string const &shot, int group = 0)
    {
        Write(ShotIn(group, shot) + "/W.wvf", "bytes of " + shot);
        Write(ShotIn(group, shot) + "/sub/x", std::string("\0\r\n\xFF", 4));
        Set(shot, group);
    }
};

// ---- The backup path ----

TEST_F(Backups, GoBesideTheExperimentUnlessSomethingElseIsSaid)
{
    EXPECT_EQ("X\\Backup", BackupPath());
    EXPECT_TRUE(std::filesystem::is_directory(system.folder.native("X/Backup")));
    EXPECT_EQ("", system.Names("X/Backup"));
    EXPECT_EQ(Groups() + "\r\n", Read("X/E/E.ini"));
}

TEST_F(Backups, GoWhereTheSettingsSay)
{
    struct {
        std::string value;
        char const *folder;
        char const *made;
    } const rows[] = {{".\\Bak", "X\\E\\Bak", "X/E/Bak"},
                      {".\\a\\b\\c", "X\\E\\a\\b\\c", "X/E/a/b/c"},
                      {"..\\Far\\Bak", "X\\Far\\Bak", "X/Far/Bak"},
                      {"../none", "../none", ""},
                      {"..\\a/b", "X\\a\\b", "X/a/b"},
                      {path("X\\Abs"), "X\\Abs", "X/Abs"},
                      {"Bak", "Bak", ""},
                      {"..\\", "X", "X"},
                      {".\\", "X\\E", "X/E"},
                      {"", "X\\Backup", "X/Backup"},
                      {" ..\\B", " ..\\B", ""}};
    system.folder.MakeFolder("here");
    system.GoTo("here");
    for (auto const &row : rows) {
        SetPath(row.value);
        EXPECT_EQ(row.folder, BackupPath()) << row.value;
        if (*row.made) {
            EXPECT_TRUE(Has(row.made)) << row.value;
        }
    }
    EXPECT_FALSE(Has("here/Bak"));
}

TEST_F(Backups, TheSettingsAreReadAnewEachTime)
{
    EXPECT_EQ("X\\Backup", BackupPath());
    SetPath(".\\Bak");
    EXPECT_EQ("X\\E\\Bak", BackupPath());
    Ini("[Backup]\r\npath=.\\Low\r\n[Other]\r\nPath=.\\Wrong");
    EXPECT_EQ("X\\E\\Low", BackupPath());
    Ini("[Other]\r\nPath=.\\Wrong");
    EXPECT_EQ("X\\Backup", BackupPath());
}

TEST_F(Backups, WhatLiesInTheFolderStays)
{
    Write("X/Backup/E/old", "x");
    EXPECT_EQ("X\\Backup", BackupPath());
    EXPECT_EQ("x", Read("X/Backup/E/old"));
}

TEST_F(Backups, AFileInPlaceOfTheFolderStays)
{
    Write("X/Backup", "a file");
    EXPECT_EQ("X\\Backup", BackupPath());
    EXPECT_EQ("a file", Read("X/Backup"));
    MakeCurrent("A1");
    expt.BackupShot();
    EXPECT_EQ("a file", Read("X/Backup"));
}

TEST_F(Backups, APathInNetworkFormIsTurnedIntoAFolderHere)
{
    ComputerName = "PC";
    Platform::SetShares({{"Bak", std::string("Path=") + path("X\\Share") + std::string(1, '\0')}});
    SetPath("\\\\PC\\Bak\\Shots");
    EXPECT_EQ("X\\Share\\Shots", BackupPath());
    EXPECT_TRUE(Has("X/Share/Shots"));
    ComputerName = DString();
}

// ---- Redirection ----

TEST_F(Backups, AreLedElsewhereByAFile)
{
    for (std::string const &to : {path("X\\Far"), std::string(".\\Far"), std::string("..\\Far"), std::string("Far"),
                                  std::string(" blank "), std::string("\\\\PC\\Share")}) {
        Redirect(to);
        EXPECT_EQ(to, Plain(expt.GetBackupPath()));
    }
    EXPECT_EQ("Backup Data E", system.Names("X"));
    EXPECT_EQ("BackupLocation.ini", system.Names("X/Backup"));
}

TEST_F(Backups, ARedirectionIsFollowedOneStep)
{
    Redirect(path("X\\Far"));
    Redirect(path("X\\Farther"), "X/Far");
    EXPECT_EQ("X\\Far", BackupPath());
}

TEST_F(Backups, WithoutARedirectionStayWhereTheyAre)
{
    for (char const *bytes : {"", "[General]", "[General]\r\nBackupLocation=", "[General]\r\nOther=C:\\x",
                              "[Other]\r\nBackupLocation=C:\\x", "BackupLocation=C:\\x"}) {
        Write("X/Backup/BackupLocation.ini", bytes);
        EXPECT_EQ("X\\Backup", BackupPath()) << bytes;
        EXPECT_EQ(bytes, Read("X/Backup/BackupLocation.ini"));
    }
    std::filesystem::remove(system.folder.native("X/Backup/BackupLocation.ini"));
    system.folder.MakeFolder("X/Backup/BackupLocation.ini");
    EXPECT_EQ("X\\Backup", BackupPath());
}

TEST_F(Backups, ARedirectionIsFoundWhateverItsCase)
{
    Write("X/Backup/BACKUPLOCATION.INI", "[general]\r\nbackuplocation=" + path("X\\Far"));
    EXPECT_EQ("X\\Far", BackupPath());
    EXPECT_EQ("BACKUPLOCATION.INI", system.Names("X/Backup"));
}

TEST_F(Backups, ARedirectionIsSoughtInTheFolderOfTheSettings)
{
    SetPath(".\\Bak");
    Redirect(path("X\\Wrong"));
    EXPECT_EQ("X\\E\\Bak", BackupPath());
    Redirect(path("X\\Far"), "X/E/Bak");
    EXPECT_EQ("X\\Far", BackupPath());
}

// ---- Setting the path ----

TEST_F(Backups, APathIsStoredInRelativeForm)
{
    EXPECT_EQ("..\\Bak", Stored("X\\Bak"));
    EXPECT_EQ(".\\Bak", Stored("X\\E\\Bak"));
    EXPECT_EQ(".\\a\\b", Stored("X\\E\\a\\b"));
    EXPECT_EQ("..\\", Stored("X"));
    EXPECT_EQ(path("Far"), Stored("Far"));
    EXPECT_EQ(".\\bak", Stored("x\\e\\bak"));
}

TEST_F(Backups, AFolderNamedLikeTheExperimentMeansTheOneAbove)
{
    EXPECT_EQ("..\\Bak", Stored("X\\Bak\\E"));
    EXPECT_EQ("..\\Bak", Stored("X\\Bak\\e"));
    EXPECT_EQ("..\\Bak\\e", Stored("X\\Bak\\e\\E")); // one of them
    EXPECT_EQ("..\\", Stored("X\\E"));
    EXPECT_EQ("..\\Bak\\E2", Stored("X\\Bak\\E2"));
    EXPECT_EQ("..\\Bak\\F", Stored("X\\Bak\\F"));
    EXPECT_EQ("..\\Bak\\E\\", Stored("X\\Bak\\E\\"));
    EXPECT_EQ(path("Far"), Stored("Far\\E"));
}

TEST_F(Backups, APathElsewhereIsStoredInNetworkForm)
{
    ComputerName = "PC";
    Platform::SetShares({{"Bak", std::string("Path=") + path("Far") + std::string(1, '\0')}});
    EXPECT_EQ("\\\\PC\\Bak\\x", Stored("Far\\x"));
    EXPECT_EQ(path("Far\\x"), Plain(expt.GetBackupPath()));
    ComputerName = DString();
}

TEST_F(Backups, AnEmptyPathMeansTheUsualOne)
{
    Ini(Groups());
    expt.SetBackupPath("");
    EXPECT_EQ(Groups() + "\r\n[Backup]\r\nPath=", Read("X/E/E.ini"));
    EXPECT_EQ("X\\Backup", BackupPath());
    expt.SetBackupPath("e");
    EXPECT_EQ(Groups() + "\r\n[Backup]\r\nPath=", Read("X/E/E.ini"));
}

TEST_F(Backups, ThePathReplacesAnOldOneAndNothingElse)
{
    std::string const before = "[General]\r\nDescription= d \r\n;note\r\n[Backup]\r\nother=1\r\n",
                      after = "\r\nx=2\r\n[Groups]\r\n..\\Data\\Run*;;Runs=1";
    Ini(before + "PATH=..\\Old" + after);
    expt.SetBackupPath(Dstr(path("X\\New")));
    EXPECT_EQ(before + "Path=..\\New" + after, Read("X/E/E.ini"));
}

TEST_F(Backups, ThePathMakesMissingSettings)
{
    std::filesystem::remove(system.folder.native("X/E/E.ini"));
    expt.SetBackupPath(Dstr(path("X\\Bak")));
    EXPECT_EQ("[Backup]\r\nPath=..\\Bak", Read("X/E/E.ini"));
    EXPECT_FALSE(Has("X/Bak"));
    EXPECT_EQ("X\\Bak", BackupPath());
}

// ---- The name of a backup ----

TEST_F(Backups, OfAShotKeepItsPlaceBelowTheFolderOfTheExperiment)
{
    Set("A1", 0);
    EXPECT_EQ("X\\Backup\\E\\Shots\\ShotA1", BackupFolder(""));
    Set("B2", 2);
    EXPECT_EQ("X\\Backup\\Data\\RunB\\ShotB2", BackupFolder(""));
    EXPECT_EQ("", system.Names("X/Backup"));
    SetPath(".\\Bak");
    EXPECT_EQ("X\\E\\Bak\\Data\\RunB\\ShotB2", BackupFolder(""));
    EXPECT_EQ("", system.Names("X/E/Bak"));
}

TEST_F(Backups, OfAnyFolderGoByItWhicheverShotIsCurrent)
{
    Set("A1", 0);
    EXPECT_EQ("X\\Backup\\Data\\RunA\\ShotB7", BackupFolder(path("X\\Data\\RunA\\ShotB7")));
    EXPECT_EQ("X\\Backup\\E\\Query", BackupFolder(path("X\\E\\Query")));
    expt.SetExperimentFolder(Dstr(path("X\\E")));
    EXPECT_EQ("X\\Backup\\Data\\RunA\\ShotB7", BackupFolder(path("X\\Data\\RunA\\ShotB7")));
}

TEST_F(Backups, ThePlaceIsFoundWhateverItsCase)
{
    EXPECT_EQ("X\\Backup\\e\\shots\\shotA1", BackupFolder(path("x\\e\\shots\\shotA1")));
    std::string lower = path("X");
    lower[0] = static_cast<char>(lower[0] - 'A' + 'a');
    EXPECT_EQ("X\\Backup\\E\\Shots\\ShotA1", BackupFolder(lower + "\\E\\Shots\\ShotA1"));
}

TEST_F(Backups, EveryOccurrenceOfThePlaceIsReplaced)
{
    EXPECT_EQ("X\\Backup\\a\\X\\Backup\\b", BackupFolder(path("X\\a\\") + path("X\\b")));
    EXPECT_EQ("X\\Backup\\a\\X\\Backup\\b", BackupFolder(path("X\\a\\") + path("x\\b")));
    EXPECT_EQ("X\\Backup", BackupFolder(path("X")).substr(0, 8));
}

TEST_F(Backups, TheTestIsOneOfTheBeginningAlone)
{
    EXPECT_EQ("X\\Backup2\\ShotA1", BackupFolder(path("X2\\ShotA1")));
    Set("A1", 0);
    EXPECT_EQ("X\\Backup\\E\\Shots\\ShotA1", BackupFolder("\\" + path("X\\Data\\ShotB1")));
}

TEST_F(Backups, FollowTheRedirection)
{
    Redirect(path("Far"));
    Set("A1", 1);
    EXPECT_EQ(path("Far\\Data\\RunA\\ShotA1"), BackupFolder(""));
    Redirect(".\\Far");
    EXPECT_EQ(".\\Far\\Data\\RunA\\ShotA1", BackupFolder(""));
}

TEST_F(Backups, OfAFolderElsewhereGoToAFixedPlaceAsTheCurrentShot)
{
    SetPath(".\\Bak");
    Redirect(path("Far"), "X/E/Bak");
    Set("A1", 1);
    for (std::string const &folder : {path("Y\\ShotB7"), std::string("C:\\ShotB7"), std::string("ShotB7"),
                                      std::string(".\\ShotB7"), std::string("\\\\PC\\Data\\ShotB7")})
        EXPECT_EQ("X\\Backup\\E\\Shots\\ShotA1", BackupFolder(folder)) << folder;
    EXPECT_FALSE(Has("X/Backup"));
}

TEST_F(Backups, OfAFolderElsewhereMakeTheFolderOfTheSettingsAllTheSame)
{
    SetPath(".\\Bak");
    Set("A1", 1);
    EXPECT_EQ("X\\Backup\\E\\Shots\\ShotA1", BackupFolder("C:\\ShotB7"));
    EXPECT_TRUE(Has("X/E/Bak"));
}

TEST_F(Backups, ANameThatIsTakenGetsANumber)
{
    Set("A1", 0);
    std::string const first = "X\\Backup\\E\\Shots\\ShotA1";
    EXPECT_EQ(first, BackupFolder(""));
    system.folder.MakeFolder("X/Backup/E/Shots/ShotA1_2");
    EXPECT_EQ(first, BackupFolder(""));
    system.folder.MakeFolder("X/Backup/E/Shots/ShotA1");
    EXPECT_EQ(first + "_1", BackupFolder(""));
    system.folder.MakeFolder("X/Backup/E/Shots/shota1_1");
    EXPECT_EQ(first + "_3", BackupFolder(""));
    for (int i = 3; i < 120; ++i) system.folder.MakeFolder("X/Backup/E/Shots/ShotA1_" + std::to_string(i));
    EXPECT_EQ(first + "_120", BackupFolder(""));
}

TEST_F(Backups, ATakenNameKeepsItsOwnSpelling)
{
    Set("A1", 0);
    system.folder.MakeFolder("X/Backup/E/Shots/SHOTa1");
    std::string const folder = BackupFolder("");
    EXPECT_EQ("_1", folder.substr(folder.size() - 2));
    system.folder.MakeFolder("X/Backup/E/Shots/SHOTA1_1");
    EXPECT_EQ("_2", BackupFolder("").substr(folder.size() - 2));
}

TEST_F(Backups, AFileDoesNotTakeAName)
{
    Set("A1", 0);
    Write("X/Backup/E/Shots/ShotA1", "a file");
    EXPECT_EQ("X\\Backup\\E\\Shots\\ShotA1", BackupFolder(""));
}

TEST_F(Backups, NumbersAreGivenInTheFixedPlaceToo)
{
    Set("A1", 0);
    system.folder.MakeFolder("X/Backup/E/Shots/ShotA1");
    EXPECT_EQ("X\\Backup\\E\\Shots\\ShotA1_1", BackupFolder("C:\\elsewhere"));
}

// ---- A backup ----

TEST_F(Backups, CopyAllThatTheShotHolds)
{
    MakeCurrent("A1", 1);
    expt.BackupShot();
    EXPECT_EQ("Data", system.Names("X/Backup"));
    EXPECT_EQ("ShotA1", system.Names("X/Backup/Data/RunA"));
    EXPECT_EQ("W.wvf sub", system.Names("X/Backup/Data/RunA/ShotA1"));
    EXPECT_EQ("bytes of A1", Read("X/Backup/Data/RunA/ShotA1/W.wvf"));
    EXPECT_EQ(std::string("\0\r\n\xFF", 4), Read("X/Backup/Data/RunA/ShotA1/sub/x"));
    EXPECT_EQ("bytes of A1", Read(ShotIn(1, "A1") + "/W.wvf"));
    EXPECT_EQ("A1 | " + path("X\\Data\\RunA\\ShotA1") + " | 1", State());
}

TEST_F(Backups, EachGoesToAFolderOfItsOwn)
{
    MakeCurrent("A1");
    for (char const *bytes : {"first", "second", "third"}) {
        Write(ShotIn(0, "A1") + "/W.wvf", bytes);
        expt.BackupShot();
    }
    EXPECT_EQ("ShotA1 ShotA1_1 ShotA1_2", system.Names("X/Backup/E/Shots"));
    EXPECT_EQ("first", Read("X/Backup/E/Shots/ShotA1/W.wvf"));
    EXPECT_EQ("second", Read("X/Backup/E/Shots/ShotA1_1/W.wvf"));
    EXPECT_EQ("third", Read("X/Backup/E/Shots/ShotA1_2/W.wvf"));
}

TEST_F(Backups, MakeTheFoldersOfARedirection)
{
    Redirect(path("Far\\away"));
    MakeCurrent("A1");
    expt.BackupShot();
    EXPECT_EQ("bytes of A1", Read("Far/away/E/Shots/ShotA1/W.wvf"));
    EXPECT_EQ("BackupLocation.ini", system.Names("X/Backup"));
}

TEST_F(Backups, OfAShotElsewhereGoToTheFixedPlace)
{
    Ini("[Groups]\r\n" + path("Far\\Run") + "\r\n[Backup]\r\nPath=.\\Bak");
    Write("Far/Run/ShotA1/W.wvf", "far");
    Open();
    Set("A1", 1);
    expt.BackupShot();
    expt.BackupShot();
    EXPECT_EQ("ShotA1 ShotA1_1", system.Names("X/Backup/E/Shots"));
    EXPECT_EQ("far", Read("X/Backup/E/Shots/ShotA1_1/W.wvf"));
    EXPECT_EQ("", system.Names("X/E/Bak"));
}

TEST_F(Backups, OfAShotThatIsNotThereAreEmpty)
{
    Set("Gone", 0);
    expt.BackupShot();
    EXPECT_EQ("ShotGone", system.Names("X/Backup/E/Shots"));
    EXPECT_EQ("", system.Names("X/Backup/E/Shots/ShotGone"));
    EXPECT_FALSE(Has(ShotIn(0, "Gone")));
}

TEST_F(Backups, WithoutACurrentShotCopyNothing)
{
    Write("X/E/Shots/ShotA1/W.wvf", "x");
    Write("here/file", "x");
    system.GoTo("here");
    expt.BackupShot();
    EXPECT_EQ("", system.Names("X/Backup"));
    EXPECT_EQ("file", system.Names("here"));
    expt.SetExperimentFolder("");
    expt.BackupShot();
    EXPECT_EQ("file", system.Names("here"));
    EXPECT_EQ("", system.Names("X/Backup"));
}

TEST_F(Backups, WithoutAnExperimentTouchNoFile)
{
    system.folder.MakeFolder("here");
    system.GoTo("here");
    Experiment fresh;
    for (Experiment *const one : {&fresh, &expt}) {
        one->SetExperimentFolder("");
        Faults const none;
        one->SetBackupPath(Dstr(path("X\\Bak")));
        one->GetBackupPath();
        one->BackupShot();
        for (std::string const &asked : Faults::asked) EXPECT_EQ("Search", asked);
    }
    EXPECT_EQ("", system.Names("here"));
    EXPECT_EQ("Data E", system.Names("X"));
    EXPECT_EQ(Groups() + "\r\n", Read("X/E/E.ini"));
}

TEST_F(Backups, WithAFolderThatNamesNoExperimentTouchNoSettings)
{
    expt.SetExperimentFolder(Dstr(path("X\\E\\")));
    expt.SetBackupPath(Dstr(path("X\\Bak")));
    expt.GetBackupPath();
    EXPECT_FALSE(Has("X/E/.ini"));
    EXPECT_EQ(Groups() + "\r\n", Read("X/E/E.ini"));
}

TEST_F(Backups, OfAnExperimentInTheCurrentFolderHarmNothing)
{
    Write("here/E/Shots/ShotA1/W.wvf", "x");
    system.GoTo("here");
    expt.SetExperimentFolder("E");
    Set("A1", 0);
    expt.BackupShot();
    expt.BackupShot();
    EXPECT_EQ("x", Read("here/E/Shots/ShotA1/W.wvf"));
}

} // namespace
