/// What exists before any experiment is opened: the installation, per-user and working folders, and the
/// per-user settings in "Vodrel.ini". Nothing here reports an error: what can't be made leaves the rest as far as it
/// got.
#pragma once

#include "files/DIni.h"
#include "foundation/DStringArray.h"

extern VODREL_API DIni VoIni;             ///< "Vodrel.ini" in the per-user folder
extern VODREL_API DStringArray SheetData; ///< for the host's use; the library doesn't touch it
extern VODREL_API bool Silent;            ///< set before `CoreInit`: leave the disk alone
extern VODREL_API bool PublicWrite;       ///< the setting "PublicWriteAccess"

/// True once a stand-alone client has started the library through a flat function; inside a host it stays false. Never
/// cleared.
extern bool ExternalInit;

/// Starts the core, and may be called again: clears notifiers and `Logging`, takes the time and the
/// machine's name, sets the paths. `path` is the installation folder, empty for the program's own.
VODREL_API void CoreInit(DString const &path);

/// A fully qualified path is kept as it stands, another is joined to the current directory.
VODREL_API void SetVodrelPath(DString const &path);

/// Sets the per-user folder and all that hangs on it. "Vodrel.ini" is left at section "Preferences". Except on Windows
/// its sections "Drives" (`D:=/mnt/data`) and "Shares" (`\\server\share=/mnt/share`) say where drive letters and
/// network names lead, in place of what they said at the last opening. With `Silent` set all that stays as it was.
VODREL_API void SetUserPath();

/// Named default paths in section "DefaultPaths", which both leave as the current one.
VODREL_API DString GetDefaultPath(DString const &key);
VODREL_API void SetDefaultPath(DString const &key, DString const &value);
