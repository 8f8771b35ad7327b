/// The services that the logic needs of an operating system, in plain C++ types. Everything above
/// this header is plain C++17; only the folders `posix/` and `windows/`, of which a build takes one,
/// include system headers.
///
/// A path here is a path of the system: backslashes, a drive letter or `\\server\share` in front, or
/// relative to the current directory. Case is ignored in every element: the exact name wins, otherwise the
/// first in sorted order that differs by case alone. A new file or folder is made under the name as given, in the
/// folder that was found. The entries `.` and `..` are never matches. Nothing here throws but std::bad_alloc, and a
/// null path is an empty one, which names nothing. A path that names nothing costs no time and makes nothing.
#pragma once

#include <cstddef>
#include <cstdio>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

namespace Platform {

// ---- Directory search -------------------------------------------------------------------------

/// One match of a search. Times count 100 ns since 1601-01-01 UTC.
struct Entry {
    std::string name; ///< the bare name as stored
    bool isFolder = false;
    long long size = 0;
    long long created = 0;
    long long modified = 0;
};

/// What a search is to find out of each match. Names alone cost no look at the single file where
/// the folder's listing already says what is a folder.
enum class Detail { Names, Full };

/// Iterates the entries that match a path whose last element may hold `*` and `?`, sorted without
/// regard to case. A trailing backslash, a bare drive or share and an empty path match nothing. A name
/// without wildcards that is spelled as on the disk costs one look at the file and no listing, unless the disk
/// itself ignores case.
class Search {
public:
    Search(char const *pattern, Detail detail);
    ~Search();
    Search(Search const &) = delete;
    Search &operator=(Search const &) = delete;

    /// The next match, false when there is none.
    bool Next(Entry &entry);

private:
    struct State;
    std::unique_ptr<State> state;
};

// ---- Files ------------------------------------------------------------------------------------

/// `fopen` on a path of the system, in the modes "r", "r+", "w", "a+" with or without "b". Only
/// regular files open: a folder, a pipe or a device gives null, at once. A name with a wildcard gives null.
std::FILE *OpenFile(char const *path, char const *mode);
void CloseFile(std::FILE *file);

/// `fseek` and `ftell` with 64-bit offsets.
bool SeekFile(std::FILE *file, long long offset, int origin);
long long TellFile(std::FILE *file);

/// The number of bytes between the position and the end of an open file, 0 if it can't be told.
long long RemainingBytes(std::FILE *file);

// ---- Operations on files and trees --------------------------------------------------------------

/// Makes one folder; its parent must exist. False if the name exists in any case.
bool MakeFolder(char const *path);

/// Copies one file with its modification time, over an existing one. The old target stays whole until
/// the copy is complete. False, and nothing changed, if either is a folder or both are one file.
bool CopyOneFile(char const *from, char const *to);

/// Copies everything that matches `pattern` into the folder `to`, which is made if it is missing,
/// over what is there: files, and with `wholeTrees` folders too, each as a whole tree. Links to files arrive
/// as files, links to folders as folders, unless they lead back into what is being copied. True if there was
/// something to look at and all of it was copied; a wildcard that matches nothing in an existing folder is no failure.
bool CopyMatching(char const *pattern, char const *to, bool wholeTrees);

/// Deletes everything that matches `pattern`, folders with all they hold, for good. A link is deleted
/// itself, never what it points at. False if something couldn't be deleted or a name without wildcards isn't there.
bool DeleteMatching(char const *pattern);

/// Renames a file or folder. A change of case alone works; an existing other target, of either kind, fails.
bool Rename(char const *from, char const *to);

/// True if both names exist and are one file.
bool IsSameFile(char const *a, char const *b);

// ---- Folders and names of the machine -------------------------------------------------------------

std::string CurrentDirectory();
bool SetCurrentDirectory(char const *path);
std::string UserDataFolder(); ///< the per-user folder for application data
std::string ProgramFile();    ///< the running program
std::string ComputerName();

/// The system's form of a folder that a foreign client names as its host does: an absolute native
/// name becomes a fully qualified path, everything else stays.
std::string SystemPath(char const *hostName);

// ---- Shares and mapped drives ---------------------------------------------------------------------

/// One of this computer's shares: its name, and its value as the table of shares holds it, entries
/// of the form key, `=`, text, each ended by a NUL, the local folder under "Path".
struct Share {
    std::string name;
    std::string value;
};

/// The computer's shares in the order of its table. False if there is no table.
bool Shares(std::vector<Share> &shares);

/// The network name of the longest beginning of a local path that is a mapped drive or lies on a mounted network
/// folder: the first `length` characters of the path are what `networkName` names, the rest of the path belongs behind
/// it. False, and nothing changed, for a path that isn't on the network. On Windows that beginning is always a drive
/// letter with its colon. On Linux it ends with the letter or with an element; links aren't followed.
bool NetworkPrefix(char const *path, std::string &networkName, int &length);

// On Windows the system itself knows where drive letters and network names lead. On Linux they lead, in this order,
// where they have been set to lead, below; to a network folder that is mounted; and if the name is this computer's own,
// to the folder that it shares. Of several names that begin a path the longest counts. Z: and C: are the root if they
// haven't been set. What is mounted and shared is read when it is first needed, and anew after `SetMappedFolders`.

/// A name and the folder of the host that it is to lead to.
struct Mapping {
    std::string name;   ///< "D:", or `\\server\share`, also with a folder of the share behind
    std::string folder; ///< its absolute native name, or that as a path of the system that begins with Z:
};

/// Makes drive letters and network names lead where a user's settings say, in place of what the last call said. Of two
/// rows for one name the first counts. What isn't a name, or a folder, of these forms is left out, and Z: too, which is
/// always the root. On Windows nothing happens.
void SetMappedFolders(std::vector<Mapping> const &drives, std::vector<Mapping> const &shares);

// The same by hand, for tests.

/// Gives the computer a table of shares, or takes it away, so that the host's own counts.
void SetShares(std::vector<Share> const &shares);
void ClearShares();

/// Makes `\\server\share` lead to a folder of the host, given by its native name. An empty folder removes the row. On
/// Windows nothing happens.
void SetNetworkShare(std::string const &server, std::string const &share, std::string const &folder);

/// Makes a drive letter lead to a folder of the host; `networkName`, if any, is the network name of the drive. An empty
/// folder removes the row. On Windows only the network name counts.
void SetDrive(char letter, std::string const &folder, std::string const &networkName = std::string());

/// A file in place of the table of what the host has mounted, and a folder in place of that of Samba's user shares;
/// both by their native names. The pointers are kept, null ends it. On Windows nothing happens.
void SetMountTable(char const *file);
void SetUserShareFolder(char const *folder);

// ---- Clock ----------------------------------------------------------------------------------------

long long UnixTime();         ///< seconds since 1970, UTC
long long Counter();          ///< of the high-resolution clock
long long CounterFrequency(); ///< its counts per second
void SleepFor(int milliseconds);

/// Local calendar time, false for a time that the calendar doesn't reach.
bool LocalTime(long long time, std::tm &out);

/// The inverse, -1 for what isn't a time. Fields out of range carry over.
long long TimeFromLocal(std::tm &local);

/// A clock in place of the host's; a null member leaves that service to the host. The pointer is kept, null ends it.
struct Clock {
    long long (*unixTime)() = nullptr;
    long long (*counter)() = nullptr;
    long long (*counterFrequency)() = nullptr;
    void (*sleepFor)(int milliseconds) = nullptr;
};
void SetClock(Clock const *clock);

/// A folder in place of the user's own, for tests. The pointer is kept, null ends it.
void SetUserDataFolder(char const *folder);

// ---- Numbers of the C locale ----------------------------------------------------------------------

/// `snprintf`, `strtod` and `fscanf` of one value, as in the C locale. The formats are checked by the caller.
int PrintNumber(char *target, std::size_t size, char const *format, double value);
double ParseNumber(char const *text, char const **end);
int ScanValue(std::FILE *file, char const *format, void *target);

// ---- Elementary functions ------------------------------------------------------------------------

/// Right to the last places for any argument, which not every compiler's own library is.
double Sin(double radians);
double Cos(double radians);

// ---- Modules --------------------------------------------------------------------------------------

char const *ModuleExtension(); ///< with its dot
void *LoadModule(char const *path);
void *ModuleSymbol(void *module, char const *name);
void FreeModule(void *module);

// ---- Faults ---------------------------------------------------------------------------------------

/// Asked before each operation on the disk, by the name of the service, when set; false makes it fail
/// as if the disk had. For tests.
void SetFaultHook(bool (*allow)(char const *operation));

} // namespace Platform
