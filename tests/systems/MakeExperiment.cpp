// Makes the tree: settings, groups, shots, values, data of all formats, lists, copies, and the log of all of it.

#include "core/Log.h"
#include "core/Nodes.h"
#include "core/StartUp.h"
#include "experiment/Experiment.h"
#include "files/DFile.h"
#include "files/PathUtils.h"
#include "systems/Tree.h"

namespace {

void makeUserSettings(Tree const &tree)
{
    ClearLog();
    VoIni.SetFullSection("Nodes", DStringArray("node1=1\nnode2=\n; no node\n blank =4", "\n", 0));
    VoIni.SetFullSection("Servers", DStringArray("server1=\nserver2=", "\n", 0));
    VoIni.SetSection("Preferences");
    VoIni.SetKeyValue("PublicWriteAccess", "True");
    SetDefaultPath("Data", tree.Path("X\\Data"));
    DStringArray nodes;
    GetNodes(nodes, 7);
}

void makeExperiment(Tree const &tree)
{
    for (char const *folder : {"X\\Data\\RunA", "X\\Data\\RunB", "X\\Data\\runC_", "X\\Data\\Other"})
        CreateFolder(tree.Path(folder));
    tree.Open();
    DIni settings(Expt.AppendExptPathElts("E.ini"));
    settings.SetSection("General");
    settings.SetKeyValue("Description", "of two systems " + AllBytes());
    settings.SetFullSection(
        "Groups", DStringArray("..\\Data\\Run*;;Runs=1\n" + tree.Path("X\\Data\\Other") + ";;Other", "\n", 0));
    settings.SetFullSection("ShotCreation", DStringArray("R=..\\Data\\RunA\n#=..\\DATA\\RUNB\nTrue=.\\Shots", "\n", 0));
    settings.SetSection("Limits");
    settings.SetKeyValue("; a comment", "kept");
    settings.SetKeyValue("MaxCurrent", DString(1.0f / 3.0f));
    settings.RenameSection("Limits", "Bounds");
    tree.Open();
}

void makeShots()
{
    for (char const *name : {"A001", "A002", "a003", "A004", "A010", "B_1", "B^1", "Bz1", "Gone", "R001", "R002",
                             "R003", "17", "18", "Two words.1", "*Z~1", "Sch\xC3\xBCsse \xCE\xA9"}) {
        DString shot = name;
        Expt.CreateShot(shot, "shot " + shot, true);
        PassTime(86400LL * 29 + 3661); // through the seasons
    }
}

/// Values of one shot, of all magnitudes and with all bytes.
void setValues(char const *shot, int count)
{
    Expt.SetShot(shot, -1);
    Numbers numbers(static_cast<std::uint32_t>(count));
    for (int i = 0; i < count; ++i) {
        Expt.SetScalarData("Bits" + DString(i), numbers.AnyBits());
        Expt.SetScalarData("Signal" + DString(i), numbers.Signal());
    }
    Expt.SetScalarData("Voltage", 4.5f);
    Expt.SetScalarData("Small", 1.25e-7f);
    Expt.SetScalarData("two words", -3.0f);
    Expt.SetShotData("Ready", "True");
    Expt.SetShotData("Mode", "high");
    Expt.SetShotData("Text", AllBytes());
    Expt.SetShotData("Lines", "one\r\ntwo\nthree\rfour\r\n\r\n  \r\n[Fields]\r\nShadow=5");
    Expt.SetShotData(AllBytes(), "under all bytes");
    Expt.SetShotData("Removed", "for a moment");
    Expt.SetShotData("REMOVED", "");
    Expt.SetShotCacheData();
}

void writeWaveforms(char const *shot, std::uint32_t kind)
{
    Expt.SetShot(shot, -1);
    SomeWaveform(200, kind).Write(Expt.GetDataFileName("W"));
    BadWaveform(kind + 4).Write(Expt.GetDataFileName("Bad"));
    SomeWaveform(1, kind + 1).Write(Expt.GetDataFileName("Single"));
    SomeWaveform(0, kind + 2).Write(Expt.GetDataFileName("Empty"));
    PassTime(61);
    Waveform locked = SomeWaveform(17, kind + 3);
    locked.lockState = 2;
    locked.Write(Expt.GetDataFileName("Locked"));
    locked.lockState = 0;
    locked.Zero();
    locked.Write(Expt.GetDataFileName("Locked")); // which is refused
    Waveform quiet(20);
    quiet.Zero();
    quiet.Scale();
    quiet.Write(Expt.GetDataFileName("Quiet"));
    Expt.SetScalarData("W\\T2", 1.0e-38f);
    Expt.SetScalarData("Quiet\\T9", 77.0f);
    void *borrowed = Expt.GetDataPtr("W", DataWaveform);
    static_cast<Waveform *>(borrowed)->Align(50, 0.0f, 0.0625f);
    Expt.ReleaseDataPtr("Aligned", DataWaveform, borrowed);
}

void writeOtherData(char const *shot, std::uint32_t kind)
{
    Expt.SetShot(shot, -1);
    SomeMatrix(5, 4, 1, kind).Write(Expt.GetDataFileName("M"));
    SomeMatrix(3, 4, 5, kind + 1).Write(Expt.GetDataFileName("C"));
    Matrix explicitAxes = SomeMatrix(4, 4, 4, kind + 2);
    for (int d = 1; d <= 3; ++d) explicitAxes.CopyCoords(d, 2, explicitAxes);
    explicitAxes.Write(Expt.GetDataFileName("Explicit"));
    SomeParticles(20, kind).Write(Expt.GetDataFileName("P"));
    for (int i = 1; i < 4; ++i)
        SomeParticles(i * 5, kind + static_cast<std::uint32_t>(i)).Append(Expt.GetDataFileName("P"));
    ParticleGroup polar = SomeParticles(200, kind + 4);
    polar.SetGeometry(1);
    polar.Scale();
    polar.Write(Expt.GetDataFileName("Polar"));
    polar.SetGeometry(0);
    polar.Scale();
    polar.Append(Expt.GetDataFileName("Rectangular"));
    SomeGeometry(kind).Write(Expt.GetDataFileName("G"));
}

void saveLists()
{
    CreateFolder(Expt.AppendExptPathElts("ShotLists"));
    DStringArray names;
    DArray<int, 0> gnums;
    Expt.GetShotList("A001:A020", -1, names, gnums, nullptr);
    Expt.SaveShotList("Range.txt", names, gnums);
    Expt.GetShotSet("..\\Data\\RunA", "*", "", names, gnums, nullptr);
    Expt.MergeShotList(Expt.AppendExptPathElts("ShotLists", "Range"), "Merged.txt", names, gnums);
    Expt.GetShotSet(".\\Shots", "*1", "W", names, gnums, nullptr);
    Expt.MergeShotList(Expt.AppendExptPathElts("ShotLists", "Merged.txt"), "Merged.txt", names, gnums);
}

void makeBackups(Tree const &tree)
{
    Expt.SetShot("A002", -1);
    Expt.BackupShot();
    Expt.SetShotData("Mode", "after the backup");
    Expt.BackupShot();
    Expt.BackupShot();
    Expt.SetBackupPath(tree.Path("X\\Copies"));
    Expt.SetShot("R001", -1);
    Expt.BackupShot();
    DIni config(tree.Path("X\\Config.ini"));
    config.SetSection("Own");
    config.SetKeyValue("Key", "value");
    Expt.StampConfigFile(config);
    PassTime(3600);
    Expt.StampConfigFile(config);
}

void renameAndDelete()
{
    Expt.SetShot("A004", -1);
    Expt.RenameShot("A005");
    Expt.SetShot("A003", -1);
    Expt.RenameShot("A003"); // a change of case alone
    Expt.RenameShot("A010"); // which is taken
    Expt.SetShot("Gone", -1);
    Expt.DeleteShot();
    Expt.SetShot("18", -1);
    Expt.RenameShot("018");
}

void writeResults(Tree const &tree)
{
    Expt.SetShot("A001", -1);
    DStringArray lines;
    for (int i = 0; i < nFormulas; ++i)
        lines.Add(formulas[i] + DString(" = ") + DString(Expt.GetScalarData(formulas[i], nullptr)));
    for (int i = 0; i < nLabels; ++i) lines.Add(Expt.GetExpandedLabel(labels[i]));
    DFile::WriteLines(tree.Path("X\\Results.txt"), lines);
    DStringArray table(3, 200);
    Numbers numbers(9);
    for (int i = 0; i < table.CCount(); ++i) {
        table(0, i) = DString(numbers.AnyBits());
        table(1, i) = DString(numbers.AnyDouble());
        table(2, i) = DString(static_cast<long long>(numbers.Next()));
    }
    DFile::WriteArray(tree.Path("X\\Table.txt"), table, "\t");
}

/// What the formats don't reach: whole files, copies by patterns, names apart from case.
void shuffleFiles(Tree const &tree)
{
    CreateFolder(tree.Path("X\\Files"));
    for (char const *name : {"one.dat", "TWO.DAT", "three.data", "four", "_five.dat", "[six].dat", "seven..dat",
                             "a name with blanks.dat", "long name of more than eight.dat", "long name of more too.dat"})
        DFile::WriteText(tree.Path("X\\Files\\") + name, AllBytes() + "\r\n\n\x1A" + name);
    for (int i = 0; i < 3; ++i) DFile::WriteLine(tree.Path("X\\Files\\lines.txt"), "line " + DString(i));
    DFile::MakeFile(tree.Path("X\\Files\\empty"));
    DFile::WriteText(tree.Path("X\\Files\\ONE.dat"), "another case, the same file");
    CopyFileD(tree.Path("X\\Files\\*.dat"), tree.Path("X\\Dat"));
    CopyFileD(tree.Path("X\\Files\\l*.*"), tree.Path("X\\Dat"));
    DeleteFileD(tree.Path("X\\Dat\\?o*"));
    RenameFile(tree.Path("X\\Dat\\two.dat"), tree.Path("X\\Dat\\Two.dat"));
    RenameFile(tree.Path("X\\Dat\\_five.dat"), tree.Path("X\\Dat\\five_.dat"));
    CopyFolder(tree.Path("X\\Data"), tree.Path("X\\Data copied"));
    DFile::CopyLargeFile(tree.Path("X\\Files\\four"), tree.Path("X\\Dat\\Four"));
}

} // namespace

void MakeTree(Tree const &tree)
{
    tree.Start(true);
    makeUserSettings(tree);
    makeExperiment(tree);
    makeShots();
    setValues("A001", 150);
    setValues("R001", 3);
    std::uint32_t kind = 2;
    for (char const *shot : {"A001", "A002", "R001", "17", "Sch\xC3\xBCsse \xCE\xA9"}) {
        writeWaveforms(shot, kind);
        writeOtherData(shot, kind);
        kind += 100;
    }
    saveLists();
    makeBackups(tree);
    renameAndDelete();
    writeResults(tree);
    shuffleFiles(tree);
    Log("made " + Now());
}
