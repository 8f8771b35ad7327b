// A stream is the C library's, over a descriptor that has been looked at, with a buffer of our own: the library
// would take one as large as the file system suggests, which on a network share may be a megabyte for a header of a
// hundred bytes. So opening a file, reading its beginning and closing it takes one call each to open, look, read and
// close, and one that asks the kernel for the descriptor's mode. Pieces as large as the buffer or larger move
// straight between the file and the caller's memory.

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <stdio_ext.h>
#include <string>
#include <sys/stat.h>
#include <utility>

#include "platform/Platform.h"
#include "platform/Replacements.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/PosixPaths.h"

namespace Platform {

using namespace Posix;

static_assert(sizeof(off_t) == 8, "files of more than 2 GiB need 64-bit offsets");

// ---- Buffers -------------------------------------------------------------------------------------------------

namespace {

/// The buffer of an open stream, which doesn't tell what it was given. A stream that is still open when the process
/// ends is written from its buffer then, so a buffer goes with its stream only.
struct Buffer {
    std::FILE *stream = nullptr;
    Buffer *next = nullptr;
    char bytes[8192];
};

} // namespace

static Buffer *buffersInUse = nullptr;

static void givebuffer(std::FILE *stream, std::unique_ptr<Buffer> buffer)
{
    std::setvbuf(stream, buffer->bytes, _IOFBF, sizeof buffer->bytes);
    buffer->stream = stream;
    buffer->next = buffersInUse;
    buffersInUse = buffer.release();
}

static std::unique_ptr<Buffer> takebuffer(std::FILE *stream)
{
    Buffer **link = &buffersInUse;
    while (*link && (*link)->stream != stream) link = &(*link)->next;
    std::unique_ptr<Buffer> found(*link);
    if (found) *link = found->next;
    return found;
}

// ---- Opening -----------------------------------------------------------------------------------------------

namespace {

struct Mode {
    int flags = 0;              ///< of `open`, without those that make a file
    int making = 0;             ///< those that make a missing file
    char const *name = nullptr; ///< of the stream
};

} // namespace

/// False for what isn't a mode. A `b` says nothing here.
static bool parsemode(char const *text, Mode &mode)
{
    std::string letters;
    for (char const *c = text; c && *c; c++)
        if (*c != 'b') letters += *c;
    static struct Row {
        char const *name;
        int flags;
        int making;
    } const rows[] = {
        {"r", O_RDONLY, 0},
        {"r+", O_RDWR, 0},
        {"w", O_WRONLY | O_TRUNC, O_CREAT},
        {"w+", O_RDWR | O_TRUNC, O_CREAT},
        {"a", O_WRONLY | O_APPEND, O_CREAT},
        {"a+", O_RDWR | O_APPEND, O_CREAT},
    };
    for (Row const &row : rows) {
        if (letters != row.name) continue;
        mode = {row.flags, row.making, row.name};
        return true;
    }
    return false;
}

/// Opens without waiting, as a pipe without a partner would make us wait for ever. A file that another
/// program holds a lease on refuses to be opened like that, so a regular file gets a second attempt.
static Descriptor opennative(std::string const &native, int flags)
{
    int const always = O_CLOEXEC | O_NOCTTY;
    Descriptor file(open(native.c_str(), flags | always | O_NONBLOCK, 0666));
    struct stat info;
    if (!file && errno == EWOULDBLOCK && stat(native.c_str(), &info) == 0 && S_ISREG(info.st_mode))
        file = Descriptor(open(native.c_str(), flags | always, 0666));
    return file;
}

static Descriptor openbyname(PathName const &name, Mode const &mode)
{
    std::string const native = name.Native();
    Descriptor file = opennative(native, mode.flags);
    if (file || (errno != ENOENT && errno != ENOTDIR)) return file;
    FoundName found;
    if (!FindName(name, found) || (!found.exists && !mode.making)) return file;
    return opennative(found.native, mode.flags | mode.making);
}

std::FILE *OpenFile(char const *path, char const *modeText)
{
    PathName name;
    Mode mode;
    if (!Allowed("OpenFile") || !parsemode(modeText, mode) || !ParseFileName(path, name)) return nullptr;
    std::unique_ptr<Buffer> buffer(new Buffer);
    Descriptor file = openbyname(name, mode);
    struct stat info;
    if (!file || fstat(file.Get(), &info) != 0 || !S_ISREG(info.st_mode)) return nullptr;
    std::FILE *const stream = fdopen(file.Get(), mode.name);
    if (!stream) return nullptr;
    file.Release();
    givebuffer(stream, std::move(buffer));
    return stream;
}

void CloseFile(std::FILE *file)
{
    if (!file) return;
    std::unique_ptr<Buffer> const buffer = takebuffer(file);
    std::fclose(file);
}

// ---- Positions ----------------------------------------------------------------------------------------------

/// Steps forward by reading. False if the file ended before, and the rest is still to go.
static bool readover(std::FILE *file, long long &count)
{
    char passed[512];
    while (count > 0) {
        std::size_t const piece = static_cast<std::size_t>(std::min<long long>(count, sizeof passed));
        std::size_t const n = std::fread(passed, 1, piece, file);
        count -= static_cast<long long>(n);
        if (n < piece) return false;
    }
    return true;
}

/// The first seek in a stream throws its buffer away, which then has to come from the disk again. Loaders step over
/// texts of a few bytes; such a step is read over where the stream can do nothing but read.
bool SeekFile(std::FILE *file, long long offset, int origin)
{
    if (!file) return false;
    long long const longestStep = 4096;
    bool const isStep = origin == SEEK_CUR && offset > 0 && offset <= longestStep && !__fwritable(file);
    if (isStep && readover(file, offset)) return true;
    return fseeko(file, offset, origin) == 0;
}

long long TellFile(std::FILE *file)
{
    return file ? ftello(file) : -1;
}

long long RemainingBytes(std::FILE *file)
{
    struct stat info;
    if (!file || fstat(fileno(file), &info) != 0) return 0;
    long long const position = ftello(file);
    return position < 0 || info.st_size < position ? 0 : info.st_size - position;
}

} // namespace Platform
