/// The machines and places that a user's settings name: the keys of sections "Nodes", "Paths" and "Servers" of
/// "Vodrel.ini". The values behind the "=" are not used. No call changes the current section of the settings.
#pragma once

#include "foundation/DStringArray.h"

/// The nodes, this machine if there are none, repeated from the start until there are `n`, with no upper limit; a
/// smaller `n` cuts nothing, and one below 1 means each once. Lines with a blank name are left out, and if no other is
/// there the list is empty; blanks around a name stay. The list also goes to "MPIHosts.txt" in the per-user folder, one
/// name a line, and replaces what was there.
VODREL_API void GetNodes(DStringArray &list, int n);

/// The paths, blank names too.
VODREL_API void GetPaths(DStringArray &list);

/// The servers but this machine, and without blank names. A name with a blank beside it is not this machine's.
VODREL_API void GetServers(DStringArray &list);
