/// Copies of shots, and the place where they go.

#include "experiment/Experiment.h"

#include "experiment/FolderNames.h"
#include "files/PathUtils.h"

namespace {

char const *const backupSection = "Backup";
char const *const backupKey = "Path";
char const *const backupFolder = "Backup";
char const *const usualBackupPath = "..\\Backup";
char const *const redirectionFile = "BackupLocation.ini";
char const *const redirectionKey = "BackupLocation";
char const *const stampSection = "LastRun";

/// `Replace` regards case, paths don't.
DString replaceFolded(DString const &text, DString const &find, DString const &put)
{
    if (!find) return text;
    DString result;
    int at = 0;
    for (unsigned int found = text.FindI(find); found != npos; found = text.FindI(find, at)) {
        result << DString(text, at, static_cast<int>(found) - at) << put;
        at = static_cast<int>(found) + find.Len();
    }
    if (at < text.Len()) result << DString(text, at, npos);
    return result;
}

/// A backup must never go over another because a look has failed.
bool isTaken(DString folder)
{
    return FolderExists(folder) || FolderExists(folder);
}

/// The name itself if it is free, otherwise with the first number that is.
DString freeFolder(DString const &base)
{
    DString folder = base;
    for (int i = 1; isTaken(folder); ++i) folder = base + '_' + DString(i);
    return folder;
}

} // namespace

/// Without an experiment there are no settings to look into, and none are made.
DString Experiment::backupSetting() const
{
    if (!ExperimentName) return usualBackupPath;
    DIni ini(settingsFile());
    ini.SetSection(backupSection);
    return ini.GetKeyValue(backupKey, usualBackupPath);
}

DString Experiment::GetBackupPath()
{
    DString path = FullPath(backupSetting());
    if (!FolderExists(path)) CreateFolder(path);
    DString file = AppendPathElts(path, redirectionFile);
    if (!FileExists(file)) return path;
    DIni location(file);
    location.SetSection("General");
    return location.GetKeyValue(redirectionKey, path.c_str());
}

void Experiment::SetBackupPath(DString path)
{
    if (!ExperimentName) return;
    DString parent;
    DString last;
    SplitPathElts(path, parent, last);
    if (last.Len() == ExperimentName.Len() && (last %= ExperimentName)) path = parent;
    DIni ini(settingsFile());
    ini.SetSection(backupSection);
    ini.SetKeyValue(backupKey, RelativePath(path));
}

DString Experiment::GetBackupShotFolder(DString folder)
{
    if (!folder) folder = ShotFolder;
    DString const backupPath = GetBackupPath();
    if (folder.StartsWith(ExperimentPath)) return freeFolder(replaceFolded(folder, ExperimentPath, backupPath));
    return freeFolder(AppendPathElts(ExperimentPath, backupFolder, ExperimentName, shotsFolder, shotWord + ShotName));
}

void Experiment::BackupShot()
{
    if (~ShotFolder) CopyFolder(ShotFolder, GetBackupShotFolder(DString()));
}

void Experiment::StampConfigFile(DIni &ini)
{
    ini.HoldWrite(true);
    ini.DeleteSection(stampSection);
    ini.SetSection(stampSection);
    ini.SetKeyValue("Shot", ShotName);
    ini.SetKeyValue("ShotPath", GetCurPath());
    ini.SetKeyValue("Started", Now());
    ini.HoldWrite(false);
}
