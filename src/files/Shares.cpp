/// Local form <-> network form of a path, by the computer's table of shares and by what is mapped or mounted.
///
/// The table gives each share's value as entries of the form key, `=`, text, each ended by a NUL. The NULs are
/// replaced by a mark first, so that the value is one text; the local folder then stands between the first `=`
/// behind "Path" and the next mark.

#include "files/PathUtils.h"

#include <string>
#include <vector>

#include "platform/Platform.h"

namespace {

using ShareTable = std::vector<Platform::Share>;

char const separator = '\\';
char const *const networkPrefix = "\\\\";
char const entryEnd = '\xC8';

/// Where the text of an entry may end at the earliest, counted from the start of its key.
int const pathKeyLength = 5;

bool ParseSharePath(Platform::Share const &share, DString &folder)
{
    std::string value(share.value);
    for (char &c : value) {
        if (c == '\0') c = entryEnd;
    }
    DString text(value.c_str());
    unsigned int const key = text.Find("Path");
    if (key == npos) return false;
    int const begin = static_cast<int>(key);
    unsigned int const end = text.Find(entryEnd, begin + pathKeyLength);
    unsigned int const equals = text.Find('=', begin);
    if (end == npos || equals == npos || equals > end) return false;
    folder = text.Mid(static_cast<int>(equals) + 1, static_cast<int>(end - equals) - 1);
    return true;
}

bool endsInSeparator(DString const &path)
{
    return path.Len() > 0 && path[path.Len() - 1] == separator;
}

Platform::Share const *shareThatBegins(DString const &rest, ShareTable const &shares)
{
    for (Platform::Share const &share : shares) {
        DString const name(share.name.c_str());
        if (rest.StartsWith(name) && rest[name.Len()] == separator) return &share;
    }
    return nullptr;
}

/// The share whose local folder is the longest prefix of `name`; `length` is that of the folder, without a
/// backslash at its end. Null if there is none, or if one of the shares has no readable folder.
Platform::Share const *shareAbove(DString const &name, ShareTable const &shares, int &length)
{
    Platform::Share const *best = nullptr;
    length = 0;
    for (Platform::Share const &share : shares) {
        DString folder;
        if (!ParseSharePath(share, folder)) return nullptr;
        if (!name.StartsWith(folder) || folder.Len() <= length) continue;
        best = &share;
        length = folder.Len() - (endsInSeparator(folder) ? 1 : 0);
    }
    return length > 0 ? best : nullptr;
}

} // namespace

DString GetLocalFileName(DString const &name)
{
    DString const own = networkPrefix + ComputerName;
    if (!name.StartsWith(networkPrefix) || !name.StartsWith(own)) return name;
    DString rest = DString(name).Mid(own.Len() + 1) + separator;
    ShareTable shares;
    if (!Platform::Shares(shares)) return rest;
    Platform::Share const *const share = shareThatBegins(rest, shares);
    if (!share) return rest;
    rest.TruncateBy(1);
    DString const tail = rest.Mid(dStrlen(share->name.c_str()));
    DString folder;
    if (!ParseSharePath(*share, folder)) return rest;
    if (tail.Len() > 0 && tail[0] == separator && endsInSeparator(folder)) folder.TruncateBy(1);
    return folder + tail;
}

DString GetUNCFileName(DString const &name)
{
    if (name.StartsWith(networkPrefix)) return name;
    std::string network;
    int begin = 0;
    if (Platform::NetworkPrefix(name.c_str(), network, begin)) return network.c_str() + DString(name).Mid(begin);
    ShareTable shares;
    if (!Platform::Shares(shares)) return name;
    int length = 0;
    Platform::Share const *const share = shareAbove(name, shares, length);
    if (!share) return name;
    return networkPrefix + ComputerName + separator + share->name.c_str() + DString(name).Mid(length);
}
