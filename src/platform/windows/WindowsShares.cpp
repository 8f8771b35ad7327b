// The computer's shares and mapped drives. Where network names and drive letters lead is the system's own affair.

#include <string>
#include <vector>

#include "platform/windows/WindowsServices.h"

#include <winnetwk.h>

#include "platform/Platform.h"

namespace Platform {

static char const *const shareTable = "SYSTEM\\CurrentControlSet\\Services\\LanmanServer\\Shares";

/// What tests have put in the place of the tables. Made when first written to.
static std::vector<Share> *sharesInPlace = nullptr;
static std::string mappedNames['Z' - 'A' + 1];

static int indexOf(char letter)
{
    if (letter >= 'a' && letter <= 'z') return letter - 'a';
    return letter >= 'A' && letter <= 'Z' ? letter - 'A' : -1;
}

void SetShares(std::vector<Share> const &shares)
{
    ClearShares();
    sharesInPlace = new std::vector<Share>(shares);
}

void ClearShares()
{
    delete sharesInPlace;
    sharesInPlace = nullptr;
}

/// The values of the table from the first on, until one can't be had.
bool Shares(std::vector<Share> &shares)
{
    if (sharesInPlace) {
        shares = *sharesInPlace;
        return true;
    }
    HKEY table;
    if (RegOpenKeyA(HKEY_LOCAL_MACHINE, shareTable, &table) != ERROR_SUCCESS) return false;
    shares.clear();
    for (unsigned long i = 0;; i++) {
        char name[500];
        unsigned char value[1000];
        unsigned long nameSize = sizeof name, valueSize = sizeof value;
        if (RegEnumValueA(table, i, name, &nameSize, nullptr, nullptr, value, &valueSize) != ERROR_SUCCESS) break;
        shares.push_back({std::string(name, nameSize), std::string(value, value + valueSize)});
    }
    RegCloseKey(table);
    return true;
}

static bool mappedDrive(char letter, std::string &networkName)
{
    int const index = indexOf(letter);
    if (index < 0) return false;
    if (!mappedNames[index].empty()) {
        networkName = mappedNames[index];
        return true;
    }
    char const drive[] = {letter, ':', '\0'};
    char name[520] = "";
    unsigned long size = sizeof name;
    if (WNetGetConnectionA(drive, name, &size) != NO_ERROR) return false;
    networkName = name;
    return true;
}

bool NetworkPrefix(char const *path, std::string &networkName, int &length)
{
    if (!path || !path[0] || path[1] != ':' || !mappedDrive(path[0], networkName)) return false;
    length = 2;
    return true;
}

void SetDrive(char letter, std::string const &, std::string const &networkName)
{
    int const index = indexOf(letter);
    if (index >= 0) mappedNames[index] = networkName;
}

void SetNetworkShare(std::string const &, std::string const &, std::string const &) {}

void SetMappedFolders(std::vector<Mapping> const &, std::vector<Mapping> const &) {}

void SetMountTable(char const *) {}

void SetUserShareFolder(char const *) {}

} // namespace Platform
