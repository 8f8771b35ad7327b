#include "core/StartUp.h"

#include <vector>

#include "core/Log.h"
#include "files/PathUtils.h"
#include "platform/Platform.h"

namespace {

struct Setting {
    char const *section;
    char const *key;
    char const *value;
};

/// What a fresh "Vodrel.ini" holds. The library only writes these; hosts read them.
Setting const freshSettings[] = {
    {"Startup", "Path", "*"}, {"Startup", "Experiment", "*"}, {"Startup", "Query", "*"},
    {"Startup", "Shot", "*"}, {"Startup", "Macro", "*"},      {"Preferences", "UseLocalSettings", "True"},
};

void writeFreshSettings()
{
    for (Setting const &setting : freshSettings) {
        VoIni.SetSection(setting.section);
        VoIni.SetKeyValue(setting.key, setting.value);
    }
}

/// The lines of a section of the settings, name and folder; blanks around these don't count.
std::vector<Platform::Mapping> mappings(char const *section)
{
    std::vector<Platform::Mapping> rows;
    DStringArray const lines = VoIni.GetFullSection(section);
    for (int i = 0; i < lines.Count(); ++i) {
        DString line(lines[i]);
        rows.push_back({line.BeforeFirst('=', false).Trim().c_str(), line.AfterFirst('=', false).Trim().c_str()});
    }
    return rows;
}

DString programFolder()
{
    return DString(Platform::ProgramFile().c_str()).BeforeLast('\\', false);
}

} // namespace

void CoreInit(DString const &path)
{
    SetNotify(nullptr);
    SetQNotify(nullptr);
    Logging = false;
    StartTime = Timer();
    SetComputerNameD();
    SetVodrelPath(path);
}

void SetVodrelPath(DString const &path)
{
    if (!path) VodrelPath = programFolder();
    else if (IsFullQual(path)) VodrelPath = path;
    else VodrelPath = AppendPathElts(GetCurrentDirectoryD(), path);
    SetUserPath();
}

void SetUserPath()
{
    UserPath = GetLocalSettingsPath();
    if (Silent) return;
    CreateFolder(UserPath);
    DString file = AppendPathElts(UserPath, "Vodrel.ini");
    bool const existed = FileExists(file);
    VoIni.SetFileName(file);
    bool const isFresh = !existed && VoIni.nSections() == 0;
    VoIni.SetSection("Startup");
    if (isFresh) writeFreshSettings();
    Platform::SetMappedFolders(mappings("Drives"), mappings("Shares"));
    VoIni.SetSection("Preferences");
    WorkingPath = VoIni.GetKeyValue("WorkingPath", UserPath.c_str());
    CreateFolder(WorkingPath);
    PublicWrite = VoIni.GetKeyBoolValue("PublicWriteAccess", false);
}

DString GetDefaultPath(DString const &key)
{
    return VoIni.GetSectionKeyValue("DefaultPaths", key, nullptr);
}

void SetDefaultPath(DString const &key, DString const &value)
{
    VoIni.SetSection("DefaultPaths");
    VoIni.SetKeyValue(key, value);
}
