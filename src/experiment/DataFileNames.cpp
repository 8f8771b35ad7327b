/// Short names of data files to paths.

#include "experiment/Experiment.h"

#include <climits>

#include "files/PathUtils.h"

DString Experiment::GetDataFileName(DString name)
{
    if (!name) return DString();
    name = GetExpandedString(name, false);
    if (name.StartsWith(".") || name.StartsWith("\\\\")) return FullPath(name);
    DString shot;
    DString file;
    SplitPathElts(name, shot, file);
    if (!shot) return AppendPathElts(ShotFolder, file);
    int const gnum = GuessPathFromShot(shot);
    return gnum < 0 ? DString() : AppendPathElts(shotFolder(gnum, shot), file);
}

void Experiment::GetDataFileNames(DString const &pattern, DStringArray &names, bool clear)
{
    DString const expanded = GetExpandedString(pattern, false);
    DString shot;
    DString file;
    SplitPathElts(expanded, shot, file);
    DString search = AppendPathElts(ShotFolder, expanded);
    if (~shot) {
        int const gnum = GuessPathFromShot(shot);
        if (gnum < 0) return;
        search = AppendPathElts(shotFolder(gnum, shot), file);
        shot << '\\';
    }
    GetFiles(search, names, clear);
    for (int i = 0; i < names.Count(); ++i) names[i] = shot + names[i].RemoveExt();
}

DString Experiment::CleanDataFileName(DString const &name) const
{
    DString shot;
    DString file;
    SplitPathElts(name, shot, file);
    bool const back = shot.StartsWith("<");
    if (!back && !shot.StartsWith(">")) return name;
    DString const number = shot.Mid(1);
    int offset = 1;
    if (~number) {
        if (!number.ToInt(offset)) return file;
        if (back) offset = offset == INT_MIN ? INT_MAX : -offset;
    }
    return GetOffsetShotName(offset) + '\\' + file;
}
