/// Making, renaming and deleting the folders that are the shots.

#include "experiment/Experiment.h"

#include <cstring>

#include "core/Log.h"
#include "experiment/FolderNames.h"
#include "files/PathUtils.h"

namespace {

char const *const letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

/// Characters that a name may not hold, by the second argument of `IsValidName`.
char const *const forbiddenIfSet = "!\"#$&*,/:;<>?{|}~";
char const *const forbiddenIfNot = "!\"#$*:;=?@\\{}~";

/// Such a name, taken as a path, would reach other shots, or what lies beside them.
bool reachesOthers(DString const &name)
{
    return name.FindFirstOf("*?") != npos || (TranslateFileName(name) + '\\').Find("\\..\\") != npos;
}

/// True for the cue "True" and a name that doesn't begin with a capital "A", and for the cue "False" and one
/// that does.
bool isTruthOfLetter(DString const &cue, DString const &shot)
{
    return cue %= DString(DString(letters).Find(shot[0]) != 0);
}

} // namespace

int Experiment::CreateShot(DString &name, DString const &comment, bool stamp)
{
    if (!ExperimentName) return -1;
    bool const force = name.StartsWith("*");
    if (force) name = name.Mid(1);
    DString const shot = name.BeforeFirst('\\', true);
    DString const file = name.AfterFirst('\\', false);
    int gnum = GuessPathFromShot(shot);
    bool const reused = gnum >= 0;
    if (reused) {
        if (!force && (!file || holdsDataFile(gnum, shot, file))) return ~gnum;
    } else {
        gnum = groupForNewShot(shot);
        CreateFolder(shotFolder(gnum, shot));
    }
    SetShot(shot, gnum);
    if (~comment) SetShotData("Comment", comment);
    if (stamp || !reused) SetShotData("Date", Now());
    return gnum;
}

/// Any file whose name ends like this counts.
bool Experiment::holdsDataFile(int gnum, DString const &shot, DString const &file) const
{
    DString pattern = AppendPathElts(shotFolder(gnum, shot), '*' + file + ".wvf");
    return FileExists(pattern);
}

/// The group of the first cue that fits; group 0 if none does or its path is no shot path.
int Experiment::groupForNewShot(DString const &shot) const
{
    for (int i = 0; i < GroupCues.Count(); ++i) {
        DString const &cue = GroupCues[i].Cue;
        bool const fits =
            cue == "*" || (cue == "#" && shot.IsNumeric()) || isTruthOfLetter(cue, shot) || shot.StartsWith(cue);
        if (fits) return isGroup(GroupCues[i].Group) ? GroupCues[i].Group : 0;
    }
    return 0;
}

bool Experiment::RenameShot(DString name)
{
    if (!ShotName || !isGroup(CurrentGroup)) return false;
    DString const target = shotFolder(CurrentGroup, name);
    if ((name /= ShotName) && hasShot(CurrentGroup, name)) {
        Message("Shot " + name + " already exists, rename aborted");
        return false;
    }
    bool const foreign = reachesOthers(ShotName) || reachesOthers(name);
    if (!foreign && RenameFolder(ShotFolder, target)) {
        ScalarCacheIni.SetFileName(ScalarCacheFile);
        ScalarCacheIni.RenameSection(cacheSection(), shotWord + name);
    }
    SetShot(name, CurrentGroup);
    return true;
}

bool Experiment::DeleteShot()
{
    if (!ShotName || !isGroup(CurrentGroup)) return false;
    if (!reachesOthers(ShotName)) DeleteFolder(ShotFolder);
    ScalarCacheIni.SetFileName(ScalarCacheFile);
    DIni cache(AppendPathElts(ShotPaths[CurrentGroup], valuesCacheFile));
    cache.DeleteSection(cacheSection());
    return true;
}

bool Experiment::IsValidName(DString const &name, bool set) const
{
    char const *const forbidden = set ? forbiddenIfSet : forbiddenIfNot;
    for (int i = 0; i < name.Len(); ++i) {
        if (name[i] != '\0' && std::strchr(forbidden, name[i])) return false;
    }
    return true;
}
