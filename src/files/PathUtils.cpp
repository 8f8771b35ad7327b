#include "files/PathUtils.h"

#include <string>

#include "platform/Platform.h"

namespace {

char const separator = '\\';
char const *const networkPrefix = "\\\\";

/// File times count 100 ns since 1601; ours are seconds since 1970.
long long const ticksTo1970 = 0x19DB1DED53E8000LL;
long long const ticksPerSecond = 10000000;

long long secondsOf(long long ticks)
{
    return (ticks - ticksTo1970) / ticksPerSecond;
}

DString fromPlatform(std::string const &text)
{
    return DString(text.c_str());
}

/// The first match of a path, with all that is known of it. False for none.
bool firstMatch(DString const &path, Platform::Entry &entry)
{
    return Platform::Search(path.c_str(), Platform::Detail::Full).Next(entry);
}

/// Puts a match in the place of the last element.
void replaceName(DString &path, Platform::Entry const &entry)
{
    path = AppendPathElts(DString(path).BeforeLast(separator, false), fromPlatform(entry.name));
}

bool isHidden(Platform::Entry const &entry)
{
    return entry.name.empty() || entry.name[0] == '.';
}

void addNames(DString const &pattern, DStringArray &names, bool clear, bool folders)
{
    Platform::Search search(pattern.c_str(), Platform::Detail::Names);
    if (clear) names.Clear(); // only now: the pattern may be one of the names
    for (Platform::Entry entry; search.Next(entry);) {
        if (entry.isFolder == folders && !isHidden(entry)) names.Add(fromPlatform(entry.name));
    }
}

} // namespace

// ---- Path text ----

DString AppendPathElts(DString const &a, DString const &b)
{
    if (!a || !b) return a + b;
    return a + separator + b;
}

DString AppendPathElts(DString const &a, DString const &b, DString const &c)
{
    return AppendPathElts(AppendPathElts(a, b), c);
}

DString AppendPathElts(DString const &a, DString const &b, DString const &c, DString const &d)
{
    return AppendPathElts(AppendPathElts(a, b, c), d);
}

DString AppendPathElts(DString const &a, DString const &b, DString const &c, DString const &d, DString const &e)
{
    return AppendPathElts(AppendPathElts(a, b, c, d), e);
}

void SplitPathElts(DString const &path, DString &folder, DString &name)
{
    DString whole(path); // the results may be the argument
    folder = whole.BeforeLast(separator, false);
    name = whole.AfterLast(separator, true);
}

DString TranslateFileName(DString const &name)
{
    return DString(name).Replace("/", "\\", true);
}

bool IsFullQual(DString const &path)
{
    return path.StartsWith(networkPrefix) || (path.Len() > 1 && path[1] == ':');
}

// ---- Existence ----

/// A search that found nothing is made once more: a file that a network hides for a moment would be taken for missing,
/// and made anew.
bool FileExists(DString &path)
{
    for (int attempt = 0; attempt < 2; ++attempt) {
        Platform::Search search(path.c_str(), Platform::Detail::Names);
        Platform::Entry entry;
        if (!search.Next(entry)) continue;
        if (entry.isFolder && (!search.Next(entry) || entry.isFolder)) return false;
        replaceName(path, entry);
        return true;
    }
    return false;
}

bool FolderExists(DString &path)
{
    Platform::Search search(path.c_str(), Platform::Detail::Names);
    Platform::Entry entry;
    if (!search.Next(entry)) return false;
    if (!entry.isFolder && !search.Next(entry)) return false;
    replaceName(path, entry);
    return entry.isFolder;
}

long long FileDate(DString const &name)
{
    Platform::Entry entry;
    return firstMatch(name, entry) ? secondsOf(entry.modified) : 0;
}

int GetFileLen(DString const &name)
{
    Platform::Entry entry;
    return firstMatch(name, entry) ? static_cast<int>(static_cast<unsigned int>(entry.size)) : 0;
}

// ---- Listing ----

bool GetFiles(DString const &pattern, DStringArray &names, bool clear)
{
    addNames(pattern, names, clear, false);
    names.Sort(nullptr);
    return true;
}

bool GetFolders(DString const &pattern, DStringArray &names, bool clear)
{
    addNames(pattern, names, clear, true);
    return true;
}

bool GetFilesDates(DString const &pattern, DStringArray &names, DArray<long long, 0> &created,
                   DArray<long long, 0> &modified)
{
    Platform::Search search(pattern.c_str(), Platform::Detail::Full);
    names.Clear();
    created.Clear();
    modified.Clear();
    for (Platform::Entry entry; search.Next(entry);) {
        if (entry.isFolder || isHidden(entry)) continue;
        names.Add(fromPlatform(entry.name));
        created.Add(secondsOf(entry.created));
        modified.Add(secondsOf(entry.modified));
    }
    return true;
}

// ---- Making, copying, deleting, renaming ----

bool CreateFolder(DString const &path)
{
    DString existing(path);
    if (FolderExists(existing)) return true;
    if (path.Len() > 0 && path[path.Len() - 1] == separator) return false;
    DStringArray const pieces(path, "\\", -1);
    if (pieces.Count() < 2) return false;
    DString folder(pieces[0]);
    for (int i = 1; i < pieces.Count(); ++i) {
        folder << separator << pieces[i];
        Platform::MakeFolder(folder.c_str());
    }
    return true;
}

bool CopyFileD(DString const &from, DString const &to)
{
    if (from.Find('*') != npos) return Platform::CopyMatching(from.c_str(), to.c_str(), false);
    CreateFolder(DString(to).BeforeLast(separator, false));
    return Platform::CopyOneFile(from.c_str(), to.c_str());
}

bool CopyFolder(DString const &from, DString const &to)
{
    CreateFolder(to);
    return ~from && Platform::CopyMatching((from + "\\*").c_str(), to.c_str(), true);
}

bool DeleteFileD(DString const &name)
{
    return !Platform::DeleteMatching(name.c_str());
}

bool DeleteFolder(DString const &name)
{
    return !Platform::DeleteMatching(name.c_str());
}

bool RenameFile(DString const &from, DString const &to)
{
    return Platform::Rename(from.c_str(), to.c_str());
}

bool RenameFolder(DString const &from, DString const &to)
{
    return Platform::Rename(from.c_str(), to.c_str());
}

// ---- Folders, machine, time ----

DString GetCurrentDirectoryD()
{
    return fromPlatform(Platform::CurrentDirectory());
}

bool SetCurrentDirectoryD(DString const &path)
{
    return Platform::SetCurrentDirectory(path.c_str());
}

void SetComputerNameD()
{
    ComputerName = fromPlatform(Platform::ComputerName());
}

DString GetComputerNameD()
{
    return ComputerName;
}

DString GetLocalSettingsPath()
{
    return fromPlatform(Platform::UserDataFolder()) + "\\Vodrel";
}

DString GetVodrelPath()
{
    return VodrelPath;
}

DString GetUserPath()
{
    return UserPath;
}

DString GetWorkingPath()
{
    return WorkingPath;
}

double Timer()
{
    return static_cast<double>(Platform::Counter()) / static_cast<double>(Platform::CounterFrequency());
}

void DSleep(int milliseconds)
{
    Platform::SleepFor(milliseconds);
}
