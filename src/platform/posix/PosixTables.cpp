// What has been set by hand and by the settings stands in one table, a row for each letter and network name. What
// the host knows of the network is read when a question first needs it, and again after the settings have been opened:
// reading it for each question would cost more than most of what the paths are for.

#include "platform/posix/PosixTables.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "platform/Wildcards.h"

namespace Platform {

using namespace Posix;

namespace {

struct Drive {
    char letter; ///< a capital
    std::string folder;
    std::string networkName;
    bool fromSettings = false;
};

/// What the host knows of the network.
struct HostNetwork {
    std::vector<NetworkRow> mounts;
    std::vector<Share> shares;
    bool hasShares = false;
};

struct Tables {
    std::vector<Drive> drives;
    std::vector<NetworkRow> network;
    std::vector<Share> shares;
    bool hasShares = false;
    std::unique_ptr<HostNetwork> host; ///< once it was needed
};

} // namespace

// Made when first needed, so that loading the library runs nothing, and freed behind the library's last global
// object, which may still need its drive when it goes.
static Tables *tables = nullptr;

__attribute__((destructor)) static void forgettables()
{
    delete tables;
    tables = nullptr;
}

static Tables &needtables()
{
    if (!tables) tables = new Tables;
    return *tables;
}

// ---- What the host knows ----------------------------------------------------------------------------

static char const *mountTableInPlace = nullptr;
static char const *userSharesInPlace = nullptr;

static void forgethost()
{
    if (tables) tables->host.reset();
}

void SetMountTable(char const *file)
{
    mountTableInPlace = file;
    forgethost();
}

void SetUserShareFolder(char const *folder)
{
    userSharesInPlace = folder;
    forgethost();
}

static HostNetwork const &hostnetwork()
{
    std::unique_ptr<HostNetwork> &host = needtables().host;
    if (host) return *host;
    std::unique_ptr<HostNetwork> read(new HostNetwork);
    read->mounts = ReadMounts(mountTableInPlace ? mountTableInPlace : "/proc/self/mounts");
    read->hasShares = ReadUserShares(userSharesInPlace ? userSharesInPlace : "/var/lib/samba/usershares", read->shares);
    host = std::move(read);
    return *host;
}

std::vector<NetworkRow> const &Posix::MountedRows()
{
    return hostnetwork().mounts;
}

std::vector<NetworkRow> const &Posix::GivenNetworkRows()
{
    return needtables().network;
}

// ---- Drives -----------------------------------------------------------------------------------------

static bool isletter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

static char capital(char c)
{
    return static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
}

static Drive const *findrow(char letter)
{
    if (tables)
        for (Drive const &drive : tables->drives)
            if (drive.letter == capital(letter)) return &drive;
    return nullptr;
}

static void putdrive(Drive const &row)
{
    std::vector<Drive> &drives = needtables().drives;
    auto const same = [&row](Drive const &drive) { return drive.letter == row.letter; };
    drives.erase(std::remove_if(drives.begin(), drives.end(), same), drives.end());
    if (!row.folder.empty()) drives.push_back(row);
}

void SetDrive(char letter, std::string const &folder, std::string const &networkName)
{
    if (isletter(letter)) putdrive({capital(letter), folder.empty() ? folder : WithSlash(folder), networkName});
}

bool Posix::DriveFolder(char letter, std::string &folder)
{
    Drive const *const drive = findrow(letter);
    if (!drive && capital(letter) != 'Z' && capital(letter) != 'C') return false;
    folder = drive ? drive->folder : "/";
    return true;
}

std::string Posix::DriveNetworkName(char letter)
{
    Drive const *const drive = findrow(letter);
    return drive ? drive->networkName : std::string();
}

// ---- Network names --------------------------------------------------------------------------------------

static bool samefolded(std::vector<std::string> const &a, std::vector<std::string> const &b)
{
    auto const same = [](std::string const &x, std::string const &y) { return SameFolded(x, y); };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
}

static void putnetworkrow(NetworkRow const &row)
{
    std::vector<NetworkRow> &rows = needtables().network;
    auto const same = [&row](NetworkRow const &other) { return samefolded(other.name, row.name); };
    rows.erase(std::remove_if(rows.begin(), rows.end(), same), rows.end());
    if (!row.folder.empty()) rows.push_back(row);
}

void SetNetworkShare(std::string const &server, std::string const &share, std::string const &folder)
{
    putnetworkrow({{server, share}, folder.empty() ? folder : WithSlash(folder)});
}

/// The row with the longest name that begins `name`, the first of several; null for none.
static NetworkRow const *longestrow(std::vector<NetworkRow> const &rows, std::vector<std::string> const &name)
{
    NetworkRow const *best = nullptr;
    for (NetworkRow const &row : rows) {
        std::size_t const n = row.name.size();
        if (n < 2 || n > name.size() || (best && best->name.size() >= n)) continue;
        auto const same = [](std::string const &x, std::string const &y) { return SameFolded(x, y); };
        if (std::equal(row.name.begin(), row.name.end(), name.begin(), same)) best = &row;
    }
    return best;
}

bool Posix::NetworkFolder(std::string_view server, std::string_view share, std::vector<std::string> const &elements,
                          std::size_t &used, std::string &folder)
{
    std::vector<std::string> name = {std::string(server), std::string(share)};
    name.insert(name.end(), elements.begin(), elements.end());
    NetworkRow const *const set = longestrow(GivenNetworkRows(), name);
    NetworkRow const *const mounted = longestrow(MountedRows(), name);
    NetworkRow const *const best = set && (!mounted || set->name.size() >= mounted->name.size()) ? set : mounted;
    if (!best) return false;
    used = best->name.size() - 2;
    folder = best->folder;
    return true;
}

// ---- What the settings say --------------------------------------------------------------------------------

template <class Row>
static void removefromsettings(std::vector<Row> &rows)
{
    auto const old = [](Row const &row) { return row.fromSettings; };
    rows.erase(std::remove_if(rows.begin(), rows.end(), old), rows.end());
}

/// The native folder, ending in a slash, that a setting names: natively, or as a path that begins at the root. Empty
/// for anything else: a path on another letter would mean something else with each order of the lines.
static std::string hostfolder(std::string const &setting)
{
    bool const hasLetter = setting.size() >= 2 && capital(setting[0]) == 'Z' && setting[1] == ':';
    std::string text = hasLetter ? setting.substr(2) : setting;
    if (!hasLetter && !text.empty() && text[0] == '/') return WithSlash(text);
    bool const isNetwork = text.compare(0, 2, "\\\\") == 0;
    if (text.empty() || isNetwork || (text[0] != '\\' && text[0] != '/')) return std::string();
    std::replace(text.begin(), text.end(), '\\', '/');
    return WithSlash(text);
}

/// The root bears a letter of its own, by which the system names its own folders; so no setting gives it away.
static bool canmap(std::string const &drive)
{
    return drive.size() == 2 && isletter(drive[0]) && drive[1] == ':' && capital(drive[0]) != 'Z';
}

/// Whether the settings have a row for this name already.
static bool isfromsettings(std::vector<std::string> const &name)
{
    for (NetworkRow const &row : GivenNetworkRows())
        if (row.fromSettings && samefolded(row.name, name)) return true;
    return false;
}

void SetMappedFolders(std::vector<Mapping> const &drives, std::vector<Mapping> const &shares)
{
    if (tables) {
        removefromsettings(tables->drives);
        removefromsettings(tables->network);
    }
    forgethost();
    for (Mapping const &row : drives) {
        Drive const drive = {row.name.empty() ? '\0' : capital(row.name[0]), hostfolder(row.folder), "", true};
        Drive const *const old = findrow(drive.letter);
        bool const isFirst = !old || !old->fromSettings;
        if (canmap(row.name) && !drive.folder.empty() && isFirst) putdrive(drive);
    }
    for (Mapping const &row : shares) {
        NetworkRow const share = {SplitElements(row.name), hostfolder(row.folder), true};
        bool const isNetworkName = row.name.compare(0, 2, "\\\\") == 0 && share.name.size() >= 2;
        if (isNetworkName && !share.folder.empty() && !isfromsettings(share.name)) putnetworkrow(share);
    }
}

// ---- This computer's shares -----------------------------------------------------------------------------

void SetShares(std::vector<Share> const &shares)
{
    needtables().shares = shares;
    tables->hasShares = true;
}

void ClearShares()
{
    if (!tables) return;
    tables->shares.clear();
    tables->hasShares = false;
}

/// Those that have been set, else the host's; null if there is no table.
static std::vector<Share> const *ownshares()
{
    if (tables && tables->hasShares) return &tables->shares;
    HostNetwork const &host = hostnetwork();
    return host.hasShares ? &host.shares : nullptr;
}

bool Shares(std::vector<Share> &shares)
{
    std::vector<Share> const *const own = ownshares();
    if (own) shares = *own;
    return own != nullptr;
}

/// The text of one entry of a share's value, empty if there is no such entry.
static std::string valueentry(std::string const &value, std::string const &key)
{
    for (std::size_t at = 0; at < value.size();) {
        std::size_t const end = std::min(value.find('\0', at), value.size());
        if (value.compare(at, key.size() + 1, key + '=') == 0)
            return value.substr(at + key.size() + 1, end - at - key.size() - 1);
        at = end + 1;
    }
    return std::string();
}

bool Posix::OwnShareFolder(std::string_view server, std::string_view share, std::string &path)
{
    if (!SameFolded(server, ComputerName())) return false;
    std::vector<Share> const *const shares = ownshares();
    if (!shares) return false;
    for (Share const &own : *shares) {
        if (!SameFolded(own.name, share)) continue;
        path = valueentry(own.value, "Path");
        return !path.empty();
    }
    return false;
}

} // namespace Platform
