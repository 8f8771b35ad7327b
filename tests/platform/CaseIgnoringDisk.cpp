// The services below stand in front of those of the C library, which the dynamic linker finds behind them.

#include "CaseIgnoringDisk.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <strings.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace {

std::string diskFolder; ///< empty while there is no such disk
CaseIgnoringDisk::Kind diskKind = CaseIgnoringDisk::Kind::All;
Looks looks;

constexpr unsigned diskMinor = 4242;

template <class Function>
Function Behind(char const *name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool OnDisk(std::string const &native)
{
    return !diskFolder.empty() && native.compare(0, diskFolder.size(), diskFolder) == 0 &&
           (native.size() == diskFolder.size() || native[diskFolder.size()] == '/');
}

/// The entry of a folder that differs by case alone, the name itself if there is none.
std::string Stored(std::string const &folder, std::string const &name)
{
    std::string found = name;
    DIR *const entries = opendir(folder.c_str());
    while (dirent const *const entry = entries ? readdir(entries) : nullptr)
        if (strcasecmp(entry->d_name, name.c_str()) == 0) found = entry->d_name;
    if (entries) closedir(entries);
    return found;
}

/// The name as the disk has it; what isn't there stays as it was given.
std::string Resolved(char const *path)
{
    std::string const native = path;
    if (!OnDisk(native)) return native;
    std::string resolved = diskFolder;
    for (std::size_t at = diskFolder.size(); at < native.size();) {
        std::size_t const begin = native.find_first_not_of('/', at);
        if (begin == std::string::npos) break;
        std::size_t const end = std::min(native.find('/', begin), native.size());
        resolved += '/' + Stored(resolved, native.substr(begin, end - begin));
        at = end;
    }
    if (native.back() == '/') resolved += '/';
    return resolved;
}

/// A whole disk has a number of its own.
bool HasOwnNumber(std::string const &native)
{
    return diskKind == CaseIgnoringDisk::Kind::All && OnDisk(native);
}

std::string NameOf(int descriptor)
{
    char text[4096];
    ssize_t const n = readlink(("/proc/self/fd/" + std::to_string(descriptor)).c_str(), text, sizeof text);
    return n > 0 ? std::string(text, static_cast<std::size_t>(n)) : std::string();
}

} // namespace

CaseIgnoringDisk::CaseIgnoringDisk(std::string const &folder, Kind kind)
{
    diskFolder = folder;
    diskKind = kind;
}

CaseIgnoringDisk::~CaseIgnoringDisk()
{
    diskFolder.clear();
}

Looks TakeLooks()
{
    Looks const taken = looks;
    looks = Looks();
    return taken;
}

// ---- The services --------------------------------------------------------------------------------------------

extern "C" {

int stat(char const *path, struct stat *info) noexcept
{
    looks.names++;
    int const result = Behind<int (*)(char const *, struct stat *)>("stat")(Resolved(path).c_str(), info);
    if (result == 0 && HasOwnNumber(path)) info->st_dev = makedev(0, diskMinor);
    return result;
}

int lstat(char const *path, struct stat *info) noexcept
{
    looks.names++;
    int const result = Behind<int (*)(char const *, struct stat *)>("lstat")(Resolved(path).c_str(), info);
    if (result == 0 && HasOwnNumber(path)) info->st_dev = makedev(0, diskMinor);
    return result;
}

int fstat(int descriptor, struct stat *info) noexcept
{
    int const result = Behind<int (*)(int, struct stat *)>("fstat")(descriptor, info);
    if (result == 0 && !diskFolder.empty() && HasOwnNumber(NameOf(descriptor))) info->st_dev = makedev(0, diskMinor);
    return result;
}

int statx(int folder, char const *path, int flags, unsigned mask, struct statx *info) noexcept
{
    looks.names++;
    auto const behind = Behind<int (*)(int, char const *, int, unsigned, struct statx *)>("statx");
    int const result = behind(folder, Resolved(path).c_str(), flags, mask, info);
    if (result == 0 && HasOwnNumber(path)) {
        info->stx_dev_major = 0;
        info->stx_dev_minor = diskMinor;
    }
    return result;
}

int statfs(char const *path, struct statfs *info) noexcept
{
    looks.names++;
    int const result = Behind<int (*)(char const *, struct statfs *)>("statfs")(Resolved(path).c_str(), info);
    if (result == 0 && HasOwnNumber(path)) info->f_type = static_cast<decltype(info->f_type)>(0xFF534D42);
    return result;
}

int fstatfs(int descriptor, struct statfs *info) noexcept
{
    int const result = Behind<int (*)(int, struct statfs *)>("fstatfs")(descriptor, info);
    if (result == 0 && !diskFolder.empty() && HasOwnNumber(NameOf(descriptor)))
        info->f_type = static_cast<decltype(info->f_type)>(0xFF534D42);
    return result;
}

int open(char const *path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    mode_t const mode = flags & O_CREAT ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
    va_end(arguments);
    if (flags & O_DIRECTORY) looks.listings++;
    return Behind<int (*)(char const *, int, ...)>("open")(Resolved(path).c_str(), flags, mode);
}

int mkdir(char const *path, mode_t mode) noexcept
{
    return Behind<int (*)(char const *, mode_t)>("mkdir")(Resolved(path).c_str(), mode);
}

/// Of case alone: the two are one name, which has nothing to be done. Else onto what is there, which keeps its name.
int rename(char const *from, char const *to) noexcept
{
    std::string const source = Resolved(from), target = Resolved(to);
    if (OnDisk(source) && source == target) return 0;
    return Behind<int (*)(char const *, char const *)>("rename")(source.c_str(), target.c_str());
}

int renameat2(int fromFolder, char const *from, int toFolder, char const *to, unsigned flags) noexcept
{
    auto const behind = Behind<int (*)(int, char const *, int, char const *, unsigned)>("renameat2");
    return behind(fromFolder, Resolved(from).c_str(), toFolder, Resolved(to).c_str(), flags);
}

int mkostemp(char *name, int flags)
{
    std::string resolved = Resolved(name);
    int const descriptor = Behind<int (*)(char *, int)>("mkostemp")(resolved.data(), flags);
    std::size_t const letters = 6;
    resolved.copy(name + std::strlen(name) - letters, letters, resolved.size() - letters);
    return descriptor;
}

int unlink(char const *path) noexcept
{
    return Behind<int (*)(char const *)>("unlink")(Resolved(path).c_str());
}

ssize_t readlink(char const *path, char *text, size_t size) noexcept
{
    return Behind<ssize_t (*)(char const *, char *, size_t)>("readlink")(Resolved(path).c_str(), text, size);
}

char *realpath(char const *path, char *text) noexcept
{
    return Behind<char *(*)(char const *, char *)>("realpath")(Resolved(path).c_str(), text);
}

} // extern "C"
