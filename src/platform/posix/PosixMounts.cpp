// A row of the mount table is source, folder, type and more, between blanks; blanks in a text are written as octal
// numbers. Of a network folder the source is `//server/share`, with the folder below the share that was mounted, if it
// wasn't all of it. A user share is a text of lines `key=value`; older ones don't say their own name, which then is
// that of the file.

#include "platform/posix/PosixMounts.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <unistd.h>

#include "platform/Wildcards.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/PosixPaths.h"

namespace Platform::Posix {

// ---- Text -------------------------------------------------------------------------------------------

std::vector<std::string> SplitElements(std::string_view path)
{
    std::vector<std::string> elements;
    for (std::size_t at = 0; at < path.size();) {
        std::size_t const end = std::min(path.find_first_of("\\/", at), path.size());
        std::string_view const element = path.substr(at, end - at);
        if (!element.empty() && element != ".") elements.emplace_back(element);
        at = end + 1;
    }
    return elements;
}

std::string WithSlash(std::string folder)
{
    while (!folder.empty() && folder.back() == '/') folder.pop_back();
    return folder + '/';
}

/// The bytes of a small file, as far as they can be read.
static std::string readtext(std::string const &native)
{
    std::string text;
    Descriptor const file(open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    std::size_t const most = std::size_t(1) << 22;
    char piece[4096];
    while (file && text.size() < most) {
        ssize_t const n = read(file.Get(), piece, sizeof piece);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        text.append(piece, static_cast<std::size_t>(n));
    }
    return text;
}

/// The text up to the next separator, which is taken away with it.
static std::string_view taketo(char separator, std::string_view &rest)
{
    std::size_t const end = std::min(rest.find(separator), rest.size());
    std::string_view const part = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return part;
}

// ---- Mounted folders ----------------------------------------------------------------------------------

static bool isoctal(char c)
{
    return c >= '0' && c <= '7';
}

static std::string withoutescapes(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); i++) {
        bool const escape = text[i] == '\\' && i + 3 < text.size() && text[i + 1] <= '3' && isoctal(text[i + 1]) &&
                            isoctal(text[i + 2]) && isoctal(text[i + 3]);
        plain += escape ? static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + text[i + 3] - '0')
                        : text[i];
        if (escape) i += 3;
    }
    return plain;
}

/// The network name that a source tells, none if the type isn't that of a Windows network.
static std::vector<std::string> networkname(std::string const &source, std::string_view type)
{
    bool const isNetwork = (type == "cifs" || type == "smb3") && source.compare(0, 2, "//") == 0;
    std::vector<std::string> name;
    if (isNetwork) name = SplitElements(source);
    if (name.size() < 2) name.clear();
    return name;
}

std::vector<NetworkRow> ReadMounts(std::string const &table)
{
    std::vector<NetworkRow> rows;
    std::string const text = readtext(table);
    for (std::string_view rest = text; !rest.empty();) {
        std::string_view line = taketo('\n', rest);
        std::string const source = withoutescapes(taketo(' ', line));
        std::string const folder = withoutescapes(taketo(' ', line));
        if (folder.empty() || folder[0] != '/') continue;
        NetworkRow const row = {networkname(source, taketo(' ', line)), WithSlash(folder)};
        auto const covered = [&row](NetworkRow const &other) { return other.folder == row.folder; };
        rows.erase(std::remove_if(rows.begin(), rows.end(), covered), rows.end());
        rows.push_back(row);
    }
    return rows;
}

// ---- User shares ----------------------------------------------------------------------------------------

/// False if the text isn't that of a share.
static bool parseusershare(std::string_view text, std::string const &fileName, Share &share)
{
    if (text.compare(0, 9, "#VERSION ") != 0) return false;
    share.name = fileName;
    std::string folder;
    while (!text.empty()) {
        std::string_view value = taketo('\n', text);
        if (!value.empty() && value.back() == '\r') value.remove_suffix(1);
        std::string_view const key = taketo('=', value);
        if (key == "path") folder = value;
        if (key == "sharename" && !value.empty()) share.name = value;
    }
    if (folder.empty() || folder[0] != '/') return false;
    for (std::string const &entry : {std::string("CSCFlags=0"), "Path=" + SystemPath(folder.c_str()),
                                     std::string("Permissions=0"), "ShareName=" + share.name, std::string("Type=0")})
        share.value.append(entry).push_back('\0');
    return true;
}

bool ReadUserShares(std::string const &folder, std::vector<Share> &shares)
{
    struct Closer {
        void operator()(DIR *stream) const { closedir(stream); }
    };
    std::unique_ptr<DIR, Closer> const stream(opendir(folder.c_str()));
    if (!stream) return false;
    while (dirent const *const entry = readdir(stream.get())) {
        std::string const file = entry->d_name;
        Share share;
        // Files that are still being written have names that no share can have.
        if (file[0] == '.' || file[0] == ':') continue;
        if (parseusershare(readtext(Join(folder, file)), file, share)) shares.push_back(share);
    }
    std::sort(shares.begin(), shares.end(), [](Share const &a, Share const &b) { return SortsBefore(a.name, b.name); });
    return true;
}

} // namespace Platform::Posix
