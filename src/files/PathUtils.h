/// Paths, folders and file listing. A path has backslashes and no trailing one; it is local, with a
/// drive letter, or a network name that begins with two backslashes. Nothing here takes a forward slash for a
/// separator.
///
/// None of these fails loudly: listings of a missing folder are empty, conversions hand back what they have.
#pragma once

#include "foundation/DArray.h"
#include "foundation/DString.h"
#include "foundation/DStringArray.h"

// ---- Path text ----

/// Joins with a backslash if both are non-empty. A backslash already there isn't looked at, so it doubles.
VODREL_API DString AppendPathElts(DString const &a, DString const &b);
VODREL_API DString AppendPathElts(DString const &a, DString const &b, DString const &c);
VODREL_API DString AppendPathElts(DString const &a, DString const &b, DString const &c, DString const &d);
VODREL_API DString AppendPathElts(DString const &a, DString const &b, DString const &c, DString const &d,
                                  DString const &e);

/// Cuts at the last backslash; without one all of `path` is the name.
VODREL_API void SplitPathElts(DString const &path, DString &folder, DString &name);

/// Slashes to backslashes.
VODREL_API DString TranslateFileName(DString const &name);

/// True for two leading backslashes or a colon as second character.
VODREL_API bool IsFullQual(DString const &path);

/// The network form of a local path: of a mapped drive or a mounted folder, else through the share of this computer
/// with the longest local folder; `name` itself if there is none. The folder is compared as a plain prefix.
VODREL_API DString GetUNCFileName(DString const &name);

/// The local form of a network name on this computer. A name that doesn't begin like one comes back unchanged; a share
/// that isn't known gives the name relative to the shares, with a backslash at its end, and one without a readable
/// folder the same without it. The computer's name is compared as a plain prefix.
VODREL_API DString GetLocalFileName(DString const &name);

// ---- Existence ----

/// True for an existing file; corrects the last element to the spelling on the disk. With a
/// wildcard there, one of the first two matches must be a file, and replaces the pattern. A path without a folder but
/// for a single backslash or a drive loses these.
VODREL_API bool FileExists(DString &path);

/// The same for a folder, but where the first match isn't one, a second match replaces the pattern even if the
/// answer is false. A drive root or a trailing backslash is no existing folder.
VODREL_API bool FolderExists(DString &path);

/// Last write of the first match, seconds since 1970 UTC; 0 for none.
VODREL_API long long FileDate(DString const &name);

/// The low 32 bits of the size of the first match; 0 for none.
VODREL_API int GetFileLen(DString const &name);

// ---- Listing: a path with a pattern in its last element. Names that begin with a dot are invisible. Always true. ----

/// Adds bare file names and sorts the whole list apart from case; `clear` empties it first.
VODREL_API bool GetFiles(DString const &pattern, DStringArray &names, bool clear);

/// Adds bare folder names, in the order of the platform.
VODREL_API bool GetFolders(DString const &pattern, DStringArray &names, bool clear);

/// Replaces all three lists: names, creation and last-write times in seconds since 1970 UTC.
VODREL_API bool GetFilesDates(DString const &pattern, DStringArray &names, DArray<long long, 0> &created,
                              DArray<long long, 0> &modified);

// ---- Making, copying, deleting, renaming ----

/// Makes a folder with its parents, but for the first element of a relative path, which must be there. False for a
/// trailing backslash or a path without any; otherwise true, whatever came of it.
VODREL_API bool CreateFolder(DString const &path);

/// Copies a file over an existing one, making the target's folder; with a `*` in `from`, all matching
/// files into the folder `to`. True on success.
VODREL_API bool CopyFileD(DString const &from, DString const &to);

/// Copies all that a folder holds, trees included, into `to`. True on success.
VODREL_API bool CopyFolder(DString const &from, DString const &to);

/// Both delete for good and answer true on FAILURE, false on success. Callers read them that way.
VODREL_API bool DeleteFileD(DString const &name);
VODREL_API bool DeleteFolder(DString const &name);

/// True on success. Onto an existing other file or folder they fail.
VODREL_API bool RenameFile(DString const &from, DString const &to);
VODREL_API bool RenameFolder(DString const &from, DString const &to);

// ---- Folders, machine, time ----

VODREL_API DString GetCurrentDirectoryD();
VODREL_API bool SetCurrentDirectoryD(DString const &path);
VODREL_API void SetComputerNameD();
VODREL_API DString GetComputerNameD();
/// The user's folder for application data, with "Vodrel" behind it.
VODREL_API DString GetLocalSettingsPath();
VODREL_API DString GetVodrelPath();  ///< the installation folder
VODREL_API DString GetUserPath();    ///< the per-user settings folder
VODREL_API DString GetWorkingPath(); ///< the working folder
/// Seconds of the high-resolution clock.
VODREL_API double Timer();
VODREL_API void DSleep(int milliseconds);

// The globals behind the getters. Set at start-up only.
extern DString VodrelPath;
extern DString UserPath;
extern DString WorkingPath;
extern DString ComputerName;
