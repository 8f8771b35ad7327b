#include "platform/posix/PosixTables.h"

#include <algorithm>
#include <cstddef>
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
};

struct NetworkShare {
    std::string server;
    std::string share;
    std::string folder;
};

struct Tables {
    std::vector<Drive> drives;
    std::vector<NetworkShare> network;
    std::vector<Share> shares;
    bool hasShares = false;
};

} // namespace

// Made when first written to, so that loading the library runs nothing, and freed behind the library's last
// global object, which may still need its drive when it goes.
static Tables *tables = nullptr;

__attribute__((destructor)) static void forgettables()
{
    delete tables;
    tables = nullptr;
}

static Tables &written()
{
    if (!tables) tables = new Tables;
    return *tables;
}

static bool isletter(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

static char capital(char c)
{
    return static_cast<char>(c >= 'a' && c <= 'z' ? c - 'a' + 'A' : c);
}

static std::string withslash(std::string folder)
{
    while (!folder.empty() && folder.back() == '/') folder.pop_back();
    return folder + '/';
}

// ---- Drives -----------------------------------------------------------------------------------------

static Drive const *findrow(char letter)
{
    if (tables)
        for (Drive const &drive : tables->drives)
            if (drive.letter == capital(letter)) return &drive;
    return nullptr;
}

void SetDrive(char letter, std::string const &folder, std::string const &networkName)
{
    if (!isletter(letter)) return;
    std::vector<Drive> &drives = written().drives;
    for (std::size_t i = drives.size(); i-- > 0;)
        if (drives[i].letter == capital(letter)) drives.erase(drives.begin() + static_cast<std::ptrdiff_t>(i));
    if (!folder.empty()) drives.push_back({capital(letter), withslash(folder), networkName});
}

bool MappedDrive(char letter, std::string &networkName)
{
    Drive const *const drive = findrow(letter);
    if (!drive || drive->networkName.empty()) return false;
    networkName = drive->networkName;
    return true;
}

bool Posix::DriveFolder(char letter, std::string &folder)
{
    Drive const *const drive = findrow(letter);
    if (!drive && capital(letter) != 'Z' && capital(letter) != 'C') return false;
    folder = drive ? drive->folder : "/";
    return true;
}

// ---- Network names --------------------------------------------------------------------------------------

void SetNetworkShare(std::string const &server, std::string const &share, std::string const &folder)
{
    std::vector<NetworkShare> &rows = written().network;
    for (std::size_t i = rows.size(); i-- > 0;)
        if (SameFolded(rows[i].server, server) && SameFolded(rows[i].share, share))
            rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(i));
    if (!folder.empty()) rows.push_back({server, share, withslash(folder)});
}

bool Posix::NetworkFolder(std::string_view server, std::string_view share, std::string &folder)
{
    if (!tables) return false;
    for (NetworkShare const &row : tables->network) {
        if (!SameFolded(row.server, server) || !SameFolded(row.share, share)) continue;
        folder = row.folder;
        return true;
    }
    return false;
}

// ---- This computer's shares -----------------------------------------------------------------------------

void SetShares(std::vector<Share> const &shares)
{
    written().shares = shares;
    tables->hasShares = true;
}

void ClearShares()
{
    if (!tables) return;
    tables->shares.clear();
    tables->hasShares = false;
}

bool Shares(std::vector<Share> &shares)
{
    if (!tables || !tables->hasShares) return false;
    shares = tables->shares;
    return true;
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
    if (!tables || !tables->hasShares || !SameFolded(server, ComputerName())) return false;
    for (Share const &own : tables->shares) {
        if (!SameFolded(own.name, share)) continue;
        path = valueentry(own.value, "Path");
        return !path.empty();
    }
    return false;
}

} // namespace Platform
