/// Opening an experiment: its folders, groups and cues; and the relative form of paths.

#include "experiment/Experiment.h"

#include "core/Log.h"
#include "experiment/FolderNames.h"
#include "files/PathUtils.h"

namespace {

char const *const inExperiment = ".\\";
char const *const besideExperiment = "..\\";

/// Fields of a line of section "Groups": path, one that isn't used, name.
enum GroupField { PathField = 0, NameField = 2, nGroupFields = 3 };

} // namespace

template class DArray<GroupName, 1>;
template class DArray<GroupCue, 1>;

bool Experiment::SetExperimentFolder(DString const &folder)
{
    if (!folder) {
        ExperimentFolder = ExperimentPath = ExperimentName = DString();
        CurrentGroup = -1;
        ShotName = ShotFolder = DString();
        return true;
    }
    ExperimentFolder = folder;
    ExperimentUNCFolder = GetUNCFileName(ExperimentFolder);
    SplitPathElts(ExperimentFolder, ExperimentPath, ExperimentName);
    if (!ExperimentName) return true;

    DString const shots = AppendExptPathElts(shotsFolder);
    ShotPaths.Clear();
    CreateFolder(shots);
    ShotPaths.Add(shots);

    DIni ini(settingsFile());
    ini.SetSection("General");
    Description = ini.GetKeyValue("Description");
    LogProgress("Parsing out shot groups...");
    readGroups(ini.GetFullSection("Groups"));
    LogProgress("Getting cues...");
    readCues(ini.GetFullSection("ShotCreation"));

    CreateFolder(AppendExptPathElts("Query"));
    CreateFolder(AppendExptPathElts("Macros"));
    CurrentGroup = 0;
    ShotFolder = ShotName = DString();
    PauseIO = false;
    ScalarsFile = ScalarCacheFile = DString();
    return true;
}

/// Each folder that matches a line's path becomes a shot path.
void Experiment::readGroups(DStringArray const &lines)
{
    GroupNames = DArray<GroupName, 1>(lines.Count());
    for (int i = 0; i < lines.Count(); ++i) {
        DStringArray const fields(DString(lines[i]).BeforeFirst('=', true), ";", nGroupFields);
        GroupNames[i].Path = fields[PathField];
        GroupNames[i].Name = fields[NameField];
        DString const pattern = FullPath(fields[PathField]);
        DString parent;
        DString lastElement;
        SplitPathElts(pattern, parent, lastElement);
        DStringArray found;
        GetFolders(pattern, found, true);
        for (int k = 0; k < found.Count(); ++k) ShotPaths.Add(AppendPathElts(parent, found[k]));
    }
}

void Experiment::readCues(DStringArray const &lines)
{
    GroupCues.Clear();
    GroupCues.AddBlank(lines.Count() > 0 ? lines.Count() : 1);
    if (lines.Count() == 0) GroupCues[0].Cue = "*";
    for (int i = 0; i < lines.Count(); ++i) {
        GroupCues[i].Cue = DString(lines[i]).BeforeFirst('=', true);
        GroupCues[i].Group = GetShotGroupNumber(DString(lines[i]).AfterFirst('=', true));
    }
}

DString Experiment::settingsFile() const
{
    return AppendExptPathElts(ExperimentName + ".ini");
}

DString Experiment::AppendExptPathElts(DString const &a) const
{
    return AppendPathElts(ExperimentFolder, a);
}

DString Experiment::AppendExptPathElts(DString const &a, DString const &b) const
{
    return AppendPathElts(ExperimentFolder, a, b);
}

DString Experiment::GetCurPath() const
{
    return GetShotGroupPath(CurrentGroup);
}

DString Experiment::GetShotGroupPath(int gnum) const
{
    return isGroup(gnum) ? ShotPaths[gnum] : DString();
}

int Experiment::GetShotGroupNumber(DString const &path) const
{
    return ShotPaths.Index(GetLocalFileName(FullPath(path)));
}

DString Experiment::FullPath(DString const &path) const
{
    DString text(path);
    if (path.StartsWith(inExperiment)) return AppendPathElts(ExperimentFolder, TranslateFileName(text.Mid(2)));
    if (path.StartsWith(besideExperiment)) return AppendPathElts(ExperimentPath, TranslateFileName(text.Mid(3)));
    return GetLocalFileName(path);
}

DString Experiment::RelativePath(DString const &path) const
{
    DString text(path);
    if (!path || !path.StartsWith(ExperimentPath)) return GetUNCFileName(path);
    if (path.StartsWith(ExperimentFolder)) return inExperiment + text.Mid(ExperimentFolder.Len() + 1);
    return besideExperiment + text.Mid(ExperimentPath.Len() + 1);
}
