/// The current shot and its values, in two stores: "Scalars.ini" of the shot, which is read, and a copy in the
/// group's "ScalarCache.ini", which is only written.

#include "experiment/Experiment.h"

#include "core/Log.h"
#include "experiment/FolderNames.h"
#include "files/PathUtils.h"

namespace {

char const *const valueSection = "Fields";

} // namespace

DString Experiment::shotFolder(int gnum, DString const &shot) const
{
    return AppendPathElts(ShotPaths[gnum], shotWord + shot);
}

bool Experiment::hasShot(int gnum, DString const &shot) const
{
    DString folder = shotFolder(gnum, shot);
    return FolderExists(folder);
}

DString Experiment::cacheSection() const
{
    return shotWord + ShotName;
}

bool Experiment::SetShot(DString shot, int gnum)
{
    if (!ExperimentName) {
        CurrentGroup = -1;
        ShotFolder = ExperimentFolder;
        LogProgress("experiment name not defined");
        return false;
    }
    if (shot.StartsWith("*")) shot = shot.Mid(1);
    if (gnum < 0) gnum = GuessPathFromShot(shot);
    if (ShotName == shot && gnum == CurrentGroup) return true;
    if (!isGroup(gnum)) {
        LogProgress("gnum is " + DString(gnum));
        return false;
    }
    ShotName = shot;
    CurrentGroup = gnum;
    ShotFolder = shotFolder(gnum, shot);
    LogProgress("setting ini's in SetShot");
    if (PauseIO) {
        ScalarCacheIni.HoldWrite(false); // the stores still have the files of the shot before
        ScalarsIni.HoldWrite(false);
        PauseIO = false;
    }
    ScalarCacheFile = AppendPathElts(ShotPaths[gnum], valuesCacheFile);
    ScalarsFile = AppendPathElts(ShotFolder, valuesFile);
    LogProgress("Finished setting shot");
    return true;
}

void Experiment::SetTempShot(DString const &shot, int gnum)
{
    SavedShotName = ShotName;
    SavedGroup = CurrentGroup;
    SetShot(shot, gnum);
}

void Experiment::ResetShot()
{
    SetShot(SavedShotName, SavedGroup);
}

DString Experiment::GetShotData(DString const &key)
{
    if (!ShotFolder) return DString();
    if (key %= shotWord) return ShotName;
    if (!PauseIO) {
        ScalarsIni.SetFileName(ScalarsFile);
        ScalarsIni.SetSection(valueSection);
    }
    unsigned int const mark = key.Find(fallbackMark);
    if (mark == npos) return ScalarsIni.GetKeyValue(key);
    int const at = static_cast<int>(mark);
    DString const value = ScalarsIni.GetKeyValue(DString(key, 0, at));
    if (~value) return value;
    return ScalarsIni.GetKeyValue(DString(key, at + dStrlen(fallbackMark), npos));
}

void Experiment::SetShotData(DString const &key, DString const &value)
{
    if (!ShotFolder || !key) return;
    if ((key %= "Comment") && (value %= ShotName)) {
        MsgBox("Attempt to write shot name to comment, in base");
        return;
    }
    if (!PauseIO) loadStores();
    if (!value) {
        ScalarCacheIni.DeleteKey(cacheSection().c_str(), key);
        ScalarsIni.DeleteKey(valueSection, key);
    } else {
        ScalarCacheIni.SetKeyValue(key, value);
        ScalarsIni.SetKeyValue(key, value);
    }
}

void Experiment::loadStores()
{
    ScalarsIni.SetFileName(ScalarsFile);
    ScalarsIni.SetSection(valueSection);
    ScalarCacheIni.SetFileName(ScalarCacheFile);
    ScalarCacheIni.SetSection(cacheSection());
}

void Experiment::SetShotCacheData()
{
    ScalarsIni.SetFileName(ScalarsFile);
    DStringArray const values = ScalarsIni.GetFullSection(valueSection);
    ScalarCacheIni.SetFileName(ScalarCacheFile);
    ScalarCacheIni.SetFullSection(cacheSection(), values);
}

int Experiment::GetShotGNumFromFileName(DString const &name, DString &shot)
{
    shot = DString(name).BeforeLast('\\', false);
    if (~shot) return GuessPathFromShot(shot);
    shot = ShotName;
    return CurrentGroup;
}

int Experiment::GuessPathFromShot(DString const &shot) const
{
    if (isGroup(CurrentGroup) && hasShot(CurrentGroup, shot)) return CurrentGroup;
    for (int gnum = 0; gnum < ShotPaths.Count(); ++gnum) {
        if (gnum != CurrentGroup && hasShot(gnum, shot)) return gnum;
    }
    return -1;
}

DString Experiment::GetOffsetShotName(int offset) const
{
    int number = 0;
    unsigned int const begin = ShotName.EndNumber(number);
    if (offset == 0 || begin == npos) return ShotName;
    int const at = static_cast<int>(begin);
    DString const format = "%.0" + DString(ShotName.Len() - at) + 'i';
    auto const stepped = static_cast<int>(static_cast<unsigned int>(number) + static_cast<unsigned int>(offset));
    return DString(ShotName, 0, at) + Format(stepped, format.c_str());
}

void Experiment::SetPauseIO(bool pause)
{
    if (pause == PauseIO) return;
    PauseIO = pause;
    ScalarsIni.HoldWrite(pause);
    ScalarCacheIni.HoldWrite(pause);
    if (pause) loadStores(); // which ends the hold wherever there is a file
}
