// Prints all that is found in a tree, number by number as bits. Nothing of it is changed.

#include "experiment/Experiment.h"
#include "files/DFile.h"
#include "files/PathUtils.h"
#include "systems/Tree.h"

namespace {

void bits(char const *what, float const *values, int n)
{
    DString text = DString("    ") + what;
    for (int i = 0; i < n; ++i) text << ' ' << Hex(values[i]);
    PrintLine(text);
}

/// A file or folder with its date and length; what a folder holds follows, in order.
void listFolder(DString const &path)
{
    PrintLine(path + " folder of " + DString(FileDate(path)));
    DStringArray names;
    GetFiles(AppendPathElts(path, "*"), names, true);
    for (int i = 0; i < names.Count(); ++i) {
        DString const file = AppendPathElts(path, names[i]);
        PrintLine("  " + names[i] + " " + DString(GetFileLen(file)) + " bytes of " + DString(FileDate(file)));
    }
    GetFolders(AppendPathElts(path, "*"), names, true);
    for (int i = 0; i < names.Count(); ++i) listFolder(AppendPathElts(path, names[i]));
}

/// What patterns match in a folder, files and folders.
void listPatterns(DString const &folder)
{
    for (char const *pattern : {"*", "*.*", "*.", "*.dat", "*.DAT", "?*.d?t", "*..*", "????", "*~1*", "[*", "_*",
                                "*o*.*a", "LONG*.DAT", "*.dat?", "<.dat", "shot*", "*1", "Shot?0*", ".*"}) {
        DStringArray names;
        GetFiles(AppendPathElts(folder, pattern), names, true);
        PrintLine(folder + ", files " + pattern + ": " + names.Join(" | "));
        GetFolders(AppendPathElts(folder, pattern), names, true);
        PrintLine(folder + ", folders " + pattern + ": " + names.Join(" | "));
    }
}

/// How a name is found in any case, and spelled then.
void listSpellings(Tree const &tree)
{
    for (char const *name :
         {"x\\e\\E.INI", "X\\files\\ONE.DAT", "X\\Files\\two.dat", "X\\FILES\\FOUR", "X\\Files\\*.data",
          "X\\e\\SHOTS\\shota001", "X\\E\\Shots\\", "X\\Nowhere", "X\\E\\Shots\\shot*", "X\\Dat\\*"}) {
        DString file = tree.Path(name);
        DString folder = tree.Path(name);
        bool const isFile = FileExists(file);
        bool const isFolder = FolderExists(folder);
        PrintLine(DString(name) + ": " + DString(isFile) + ' ' + file + ", " + DString(isFolder) + ' ' + folder);
    }
}

// ---- Settings

void listSettings(DString const &file)
{
    DIni const settings(file);
    DStringArray const sections = settings.GetSectionNames();
    for (int i = 0; i < sections.Count(); ++i) {
        PrintLine(file + " [" + sections[i] + ']');
        DStringArray const lines = settings.GetFullSection(sections[i]);
        for (int k = 0; k < lines.Count(); ++k) PrintLine("  " + lines[k]);
    }
}

// ---- Data

void listWaveform(DString const &name)
{
    Waveform w(0);
    if (!w.Read(name, -1)) return;
    PrintLine("  " + name + " waveform " + DString(w.npnts()) + ' ' + DString(w.lockState) + ' ' +
              DString(w.pointOfMax) + ' ' + DString(w.pointOfMin) + ' ' + w.units + ' ' + w.stamp + ' ' + w.note);
    float const header[] = {w.timeStep,
                            w.timeShift,
                            w.startTime,
                            w.scaleUnit,
                            w.t1,
                            w.t2,
                            w.t3,
                            w.t4,
                            w.t5,
                            w.scopeDelay,
                            w.scopeValue,
                            w.scopeDelay2,
                            w.scopeValue2,
                            w.scopeValue3,
                            w.maxValue,
                            w.minValue,
                            w.Offset(),
                            w.Calibration(),
                            w.Attenuation(),
                            w.Start()};
    bits("header", header, sizeof header / sizeof header[0]);
    bits("samples", w.Data(), w.npnts());
}

void listMatrix(DString const &name)
{
    Matrix m(1, 1, 1);
    if (!m.Read(name, -1, 0)) return;
    PrintLine("  " + name + " matrix " + DString(m.Rank()) + ' ' + m.units + ' ' + m.stamp + ' ' + m.note);
    float const header[] = {m.t1, m.t2, m.t3, m.t4, m.t5, m.scaleUnit, m.Calibration(), m.Max(), m.Min()};
    bits("header", header, sizeof header / sizeof header[0]);
    for (int d = 1; d <= m.Rank(); ++d) {
        float const step = m.GetStep(d);
        bits("step", &step, 1);
        DArray<float, 0> const coords = m.GetAllCoords(d);
        bits("coordinates", coords.Data(), coords.Count());
    }
    bits("values", m.Data(), m.Count());
}

void listParticles(DString const &name)
{
    ParticleGroup p(0);
    if (!p.Read(name, -1, 0)) return;
    PrintLine("  " + name + " particles " + DString(p.nParticles()) + ' ' + DString(p.Geometry()) + ' ' + p.units +
              ' ' + p.stamp + ' ' + p.note);
    float const header[] = {p.header1, p.header2, p.t1, p.t2, p.t3, p.t4, p.t5};
    bits("header", header, sizeof header / sizeof header[0]);
    bits("maxima", p.maxValues, ParticleGroup::nParticleCols);
    bits("minima", p.minValues, ParticleGroup::nParticleCols);
    bits("rows", p.Data(), p.Count());
    p.SetGeometry(p.Geometry() == 0 ? 1 : 0);
    bits("converted", p.Data(), p.Count());
}

void listObject(Object const &o)
{
    PrintLine("    " + o.name + ' ' + DString(o.type));
    for (int number : {o.style1, o.style2, o.style3, o.attr2, o.attr3, o.attr4, o.attr5, o.attr7})
        PrintLine("      " + DString(number));
    float const numbers[] = {o.innerRadius, o.outerRadius, o.startAngle, o.endAngle, o.attr1, o.attr6};
    bits("numbers", numbers, sizeof numbers / sizeof numbers[0]);
    bits("position", o.position, 3);
    bits("parameters", o.params.Data(), o.params.Count());
}

void listGeometry(DString const &name)
{
    Geometry g;
    if (!g.Read(name)) return;
    PrintLine("  " + name + " geometry " + DString(g.nObjects()) + ' ' + g.units + ' ' + g.stamp + ' ' + g.note);
    bits("maxima", g.maxCoords, 3);
    bits("minima", g.minCoords, 3);
    for (int i = 0; i < g.nObjects(); ++i) listObject(g[i]);
}

struct Format {
    char const *pattern;
    void (*list)(DString const &name);
};

Format const formats[] = {
    {"*.wvf", listWaveform}, {"*.dmt", listMatrix}, {"*.dpt", listParticles}, {"*.dgm", listGeometry}};

// ---- Shots

void listShot(DString const &shot, int gnum)
{
    Expt.SetShot(shot, gnum);
    PrintLine("Shot " + shot + " in " + Expt.GetCurPath());
    for (char const *key :
         {"Shot", "Date", "Comment", "mode", "Bits7", "Signal3", "Text", "Lines", "Shadow", "none::Mode"})
        PrintLine(DString("  ") + key + ": " + Expt.GetShotData(key));
    PrintLine("  all bytes: " + Expt.GetShotData(AllBytes()));
    for (Format const &format : formats) {
        DStringArray names;
        Expt.GetDataFileNames(format.pattern, names, true);
        for (int i = 0; i < names.Count(); ++i) format.list(Expt.GetDataFileName(names[i]));
    }
}

void listShots()
{
    for (int gnum = 0; ~Expt.GetShotGroupPath(gnum); ++gnum) {
        DString const path = Expt.GetShotGroupPath(gnum);
        PrintLine("Group " + path + ", " + Expt.RelativePath(path));
        DStringArray names;
        DArray<int, 0> gnums;
        DArray<long long, 0> dates;
        Expt.GetShotSet(Expt.RelativePath(path), "*", "", names, gnums, &dates);
        for (int i = 0; i < names.Count(); ++i) PrintLine("  " + names[i] + " of " + DString(dates[i]));
        for (int i = 0; i < names.Count(); ++i) listShot(names[i], gnum);
    }
}

void listSelections()
{
    for (char const *spec :
         {"A001:A020", "a1:10", "R001:R30", "17:18", "001:020", "Range", "merged", "There", "Missing"}) {
        DStringArray names;
        DArray<int, 0> gnums;
        DArray<long long, 0> dates;
        Expt.GetShotList(spec, -1, names, gnums, &dates);
        PrintLine(DString("Selection ") + spec);
        for (int i = 0; i < names.Count(); ++i)
            PrintLine("  " + names[i] + " in " + DString(gnums[i]) + " of " + DString(dates[i]));
    }
}

void listFormulas()
{
    Expt.SetShot("A001", -1);
    for (int i = 0; i < nFormulas; ++i)
        PrintLine(DString(formulas[i]) + " = " + Hex(Expt.GetScalarData(formulas[i], nullptr)));
    for (int i = 0; i < nLabels; ++i) PrintLine(Expt.GetExpandedLabel(labels[i]));
}

} // namespace

void ListTree(Tree const &tree)
{
    listFolder(tree.Root());
    tree.Start(false);
    tree.Open();
    listShots();
    listSelections();
    listFormulas();
    listSpellings(tree);
    for (char const *folder : {"X\\Files", "X\\Dat", "X\\E\\Shots", "X\\Data", "X\\Nowhere"})
        listPatterns(tree.Path(folder));
    for (char const *file :
         {"User\\Vodrel\\Vodrel.ini", "X\\E\\E.ini", "X\\Config.ini", "X\\E\\Shots\\ScalarCache.ini"})
        listSettings(tree.Path(file));
}
