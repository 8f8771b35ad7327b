// Streams of the C runtime, whose text mode translates the ends of lines.

#include <cstdio>
#include <io.h>
#include <string>

#include "platform/Platform.h"
#include "platform/Replacements.h"
#include "platform/windows/WindowsPaths.h"

namespace Platform {

using namespace Windows;

static bool isMode(char const *mode)
{
    std::string letters;
    for (char const *c = mode; c && *c; c++)
        if (*c != 'b') letters += *c;
    for (char const *known : {"r", "r+", "w", "w+", "a", "a+"})
        if (letters == known) return true;
    return false;
}

/// Not a device or a pipe, whose names are names of files everywhere.
static bool isOnDisk(std::FILE *file)
{
    return GetFileType(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file)))) == FILE_TYPE_DISK;
}

std::FILE *OpenFile(char const *path, char const *mode)
{
    if (!Allowed("OpenFile") || !isMode(mode) || !IsFileName(path)) return nullptr;
    if (IsFolder(GetFileAttributesA(path))) return nullptr;
    std::FILE *const file = std::fopen(path, mode);
    if (!file || isOnDisk(file)) return file;
    std::fclose(file);
    return nullptr;
}

void CloseFile(std::FILE *file)
{
    if (file) std::fclose(file);
}

bool SeekFile(std::FILE *file, long long offset, int origin)
{
    if (!file || _fseeki64(file, offset, origin) != 0) return false;
    // Not every runtime takes the sign of the end back.
    if (std::feof(file) && !std::ferror(file)) std::clearerr(file);
    return true;
}

long long TellFile(std::FILE *file)
{
    return file ? _ftelli64(file) : -1;
}

long long RemainingBytes(std::FILE *file)
{
    if (!file) return 0;
    long long const size = _filelengthi64(_fileno(file));
    long long const position = _ftelli64(file);
    return position < 0 || size < position ? 0 : size - position;
}

} // namespace Platform
