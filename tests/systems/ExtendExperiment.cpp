// Works on a tree that stands, made by whichever system: appends, adds, changes, renames and deletes.

#include "core/Log.h"
#include "core/StartUp.h"
#include "experiment/Experiment.h"
#include "files/DFile.h"
#include "files/PathUtils.h"
#include "systems/Tree.h"

namespace {

void extendData()
{
    Expt.SetShot("a001", -1); // in another case
    SomeParticles(33, 71).Append(Expt.GetDataFileName("p"));
    ParticleGroup group(0);
    group.Read(Expt.GetDataFileName("Polar"), -1, 0);
    group.Append(Expt.GetDataFileName("POLAR"));
    Matrix matrix(1, 1, 1);
    matrix.Read(Expt.GetDataFileName("C"), 3, 1);
    matrix.SetCalibration(1.75f);
    matrix.Write(Expt.GetDataFileName("Slices"));
    Waveform wave(0);
    wave.Read(Expt.GetDataFileName("w"), -1);
    wave.Align(333, -0.5f, 0.01f);
    wave.Scale();
    wave.Write(Expt.GetDataFileName("Finer"));
    wave.Read(Expt.GetDataFileName("Locked"), -1);
    wave.lockState = 4;
    wave.Write(Expt.GetDataFileName("Locked"));
    Geometry geometry;
    geometry.Read(Expt.GetDataFileName("G"));
    geometry.DeleteObject(5);
    geometry.Scale();
    geometry.Write(Expt.GetDataFileName("g"));
    Expt.SetScalarData("Single\\T3", 3.25f);
    Expt.SetScalarData("M\\T1", 1.0f / 7.0f);
}

void extendShots()
{
    DString name = "R004";
    Expt.CreateShot(name, "added", false);
    SomeWaveform(64, 400).Write(Expt.GetDataFileName("W"));
    name = "*a001";
    Expt.CreateShot(name, "used again", true);
    Expt.SetShotData("MODE", "low");
    Expt.SetShotData("Signal3", "");
    for (int i = 0; i < 20; ++i) Expt.SetScalarData("Bits" + DString(i), static_cast<float>(i) * 0.1f);
    Expt.SetShot("r002", -1);
    Expt.RenameShot("R0020");
    Expt.SetShotData("Comment", "renamed");
    Expt.SetShot("B^1", -1);
    Expt.RenameShot("b^1");
    Expt.SetShot("17", -1);
    Expt.BackupShot();
    Expt.DeleteShot();
    Expt.SetShot("Sch\xC3\xBCsse \xCE\xA9", -1);
    Expt.SetShotData("Mode", "\xC3\xBC");
    Expt.RenameShot("\xCE\xA9 Sch\xC3\xBCsse");
    Expt.BackupShot();
}

void extendLists()
{
    DStringArray names;
    DArray<int, 0> gnums;
    Expt.GetShotList("R001:R030", -1, names, gnums, nullptr);
    Expt.MergeShotList(Expt.AppendExptPathElts("shotlists", "MERGED"), "Merged.txt", names, gnums);
    Expt.GetShotList("Merged", -1, names, gnums, nullptr);
    Expt.SaveShotList("There.txt", names, gnums);
}

void extendFiles(Tree const &tree)
{
    DIni settings(Expt.AppendExptPathElts("e.ini"));
    settings.SetSection("bounds");
    settings.SetKeyValue("MAXCURRENT", settings.GetKeyValue("MaxCurrent") + " once more");
    settings.SetSection("Added");
    settings.SetKeyValue("Key", "\tvalue ");
    DIni config(tree.Path("X\\Config.ini"));
    Expt.StampConfigFile(config);
    DFile::WriteLine(tree.Path("X\\Results.txt"), "\r\none more");
    DeleteFolder(tree.Path("X\\data copied\\runa"));
    RenameFolder(tree.Path("X\\Data copied"), tree.Path("X\\Data moved"));
    RenameFolder(tree.Path("X\\Files"), tree.Path("X\\FILES"));
    CopyFileD(tree.Path("X\\Files\\*.data"), tree.Path("X\\Dat\\deeper"));
    SetDefaultPath("Last", Expt.GetShotFolder());
}

} // namespace

void ExtendTree(Tree const &tree)
{
    tree.Start(true);
    PassTime(86400LL * 365 * 3);
    tree.Open();
    extendData();
    extendShots();
    extendLists();
    extendFiles(tree);
    Log("extended " + Now());
}
