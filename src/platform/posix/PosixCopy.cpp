// One file is copied into a new file beside the target, which then takes the target's name in a single step of the file
// system. So whoever looks at the target sees the old file or the new one, never a part, and a full disk leaves the
// old one as it was.

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/Platform.h"
#include "platform/Replacements.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/PosixPaths.h"
#include "platform/posix/PosixTrees.h"

namespace Platform {

using namespace Posix;

// ---- Bytes ------------------------------------------------------------------------------------------------

static bool writeall(int to, char const *bytes, size_t size)
{
    while (size > 0) {
        ssize_t const n = write(to, bytes, size);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        bytes += n;
        size -= static_cast<size_t>(n);
    }
    return true;
}

/// Copies from where both files stand to the end of the first.
static bool copyread(int from, int to)
{
    size_t const size = size_t(1) << 20;
    std::unique_ptr<char[]> const buffer(new char[size]);
    for (;;) {
        ssize_t const n = read(from, buffer.get(), size);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return n == 0;
        if (!writeall(to, buffer.get(), static_cast<size_t>(n))) return false;
    }
}

/// Lets the file system copy, which on some costs next to nothing, and does by hand what it didn't: all of it
/// between some file systems, and files whose size the system doesn't know.
static bool copybytes(int from, int to)
{
    size_t const piece = size_t(1) << 30;
    ssize_t n;
    do n = copy_file_range(from, nullptr, to, nullptr, piece, 0);
    while (n > 0 || (n < 0 && errno == EINTR));
    return copyread(from, to);
}

// ---- One file -----------------------------------------------------------------------------------------------

namespace {

/// A new file beside a target. Goes away with the object unless it has taken the target's name.
class Replacement {
public:
    explicit Replacement(std::string const &replaced)
        : target(replaced), name(Join(FolderOf(replaced), ".vodrel-copy-XXXXXX")),
          file(mkostemp(name.data(), O_CLOEXEC))
    {
        made = static_cast<bool>(file);
    }
    ~Replacement()
    {
        if (made) unlink(name.c_str());
    }

    bool Fill(int from, struct stat const &info)
    {
        if (!made || !copybytes(from, file.Get())) return false;
        // A file system without permissions or times of its own keeps the copy nevertheless.
        timespec const times[] = {info.st_atim, info.st_mtim};
        static_cast<void>(fchmod(file.Get(), info.st_mode & 0777) == 0);
        static_cast<void>(futimens(file.Get(), times) == 0);
        return file.Close();
    }

    bool TakeName()
    {
        if (rename(name.c_str(), target.c_str()) != 0) return false;
        made = false;
        return true;
    }

private:
    std::string const &target;
    std::string name;
    Descriptor file;
    bool made = false;
};

} // namespace

/// The name at the end of a chain of links, so that a link at the target stays and leads to the copy.
static std::string linkend(std::string native)
{
    int const maxLinks = 40;
    for (int i = 0; i < maxLinks; i++) {
        char target[4096];
        ssize_t const n = readlink(native.c_str(), target, sizeof target);
        if (n <= 0 || n == static_cast<ssize_t>(sizeof target)) break;
        std::string const text(target, static_cast<size_t>(n));
        native = text[0] == '/' ? text : Join(FolderOf(native), text);
    }
    return native;
}

bool Posix::CopyNative(std::string const &from, std::string const &to)
{
    Descriptor const source(open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat info, old;
    if (!source || fstat(source.Get(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
    std::string const target = linkend(to);
    if (lstat(target.c_str(), &old) == 0) {
        if (IsSame(old, info) || !S_ISREG(old.st_mode)) return false;
    }
    Replacement replacement(target);
    return replacement.Fill(source.Get(), info) && replacement.TakeName();
}

bool CopyOneFile(char const *from, char const *to)
{
    PathName fromName, toName;
    FoundName source, target;
    return Allowed("CopyOneFile") && ParseFileName(from, fromName) && ParseFileName(to, toName) &&
           FindName(fromName, source) && source.exists && FindName(toName, target) &&
           CopyNative(source.native, target.native);
}

} // namespace Platform
