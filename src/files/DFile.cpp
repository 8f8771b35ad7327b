#include "files/DFile.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "files/PathUtils.h"
#include "platform/Platform.h"

namespace {

enum ModeBit { ReadBit = 1, WriteBit = 2, BinaryBit = 4 };

/// No more than this goes to one call of a stream.
int const largestPiece = 60000000;

/// Of `CopyLargeFile`: the buffer, and what is moved at a time.
std::size_t const copyBuffer = 0x100100;
int const copyPiece = 0x100000;

/// Lengths above this are compared with what the file holds before memory is taken for them.
int const trustedLength = 0x7FFF;

std::size_t bytes(int n)
{
    return static_cast<std::size_t>(n);
}

void writeText(std::FILE *stream, DString const &text)
{
    if (text.Len() > 0) std::fwrite(text.c_str(), 1, bytes(text.Len()), stream);
}

/// Writes texts with a separator between them and none behind the last.
void writeJoined(std::FILE *stream, DString const *texts, int count, DString const &separator)
{
    for (int i = 0; i < count; ++i) {
        if (i > 0) writeText(stream, separator);
        writeText(stream, texts[i]);
    }
}

void copyStream(std::FILE *from, std::FILE *to, int length)
{
    void *const buffer = std::malloc(copyBuffer);
    if (!buffer) return;
    while (length > 0) {
        int const piece = length < copyPiece ? length : copyPiece;
        std::size_t const got = std::fread(buffer, 1, bytes(piece), from);
        if (got == 0) break;
        std::fwrite(buffer, 1, got, to);
        length -= static_cast<int>(got);
    }
    std::free(buffer);
}

} // namespace

DFile::~DFile()
{
    Close();
}

bool DFile::open(DString const &name, char const *mode)
{
    Close();
    stream = Platform::OpenFile(name.c_str(), mode);
    return stream != nullptr;
}

bool DFile::Open(DString name, int mode)
{
    char const *access = nullptr;
    if (mode & ReadBit) access = mode & WriteBit ? "r+" : "r";
    else if (mode & WriteBit) access = "w";
    if (!access) {
        Close();
        return false;
    }
    DString const text = mode & BinaryBit ? DString(access) + 'b' : DString(access);
    return open(name, text.c_str()); // a stream begins at the start of its file
}

void DFile::Close()
{
    if (!stream) return;
    Platform::CloseFile(stream);
    stream = nullptr;
}

bool DFile::IsEOF() const
{
    return stream && std::feof(stream);
}

bool DFile::IsGood() const
{
    return stream && !std::feof(stream) && !std::ferror(stream);
}

void DFile::SeekAbs(long long pos)
{
    if (stream) Platform::SeekFile(stream, pos, SEEK_SET);
}

void DFile::SeekRel(long long delta)
{
    if (stream) Platform::SeekFile(stream, delta, SEEK_CUR);
}

long long DFile::Tell() const
{
    return stream ? Platform::TellFile(stream) : -1;
}

long long DFile::Remaining() const
{
    return stream ? Platform::RemainingBytes(stream) : 0;
}

void DFile::BRead(void *target, int size)
{
    if (!stream || !target) return;
    auto *const out = static_cast<char *>(target);
    for (int done = 0; done < size;) {
        int const piece = size - done < largestPiece ? size - done : largestPiece;
        if (std::fread(out + done, 1, bytes(piece), stream) < bytes(piece)) return;
        done += piece;
    }
}

void DFile::BWrite(void const *source, int size)
{
    if (!stream || !source) return;
    auto const *const from = static_cast<char const *>(source);
    for (int done = 0; done < size;) {
        int const piece = size - done < largestPiece ? size - done : largestPiece;
        std::fwrite(from + done, 1, bytes(piece), stream);
        done += piece;
    }
}

void DFile::DSWrite(DString const &s, int prefixWidth)
{
    std::int32_t const length = s.Len();
    auto const low = static_cast<std::uint16_t>(length);
    if (prefixWidth == 2) BWrite(&low, sizeof low);
    if (prefixWidth == 4) BWrite(&length, sizeof length);
    BWrite(s.c_str(), length);
}

void DFile::DSRead(DString &s, bool shortPrefix)
{
    std::int16_t shortLength = 0;
    std::int32_t length = 0;
    if (shortPrefix) {
        BRead(&shortLength, sizeof shortLength);
        length = shortLength;
    } else {
        BRead(&length, sizeof length);
    }
    if (length < 1 || !stream) return;
    if (length > trustedLength && length > Remaining()) length = static_cast<std::int32_t>(Remaining());
    char *const buffer = s.GetBuffer(length);
    std::size_t const got = std::fread(buffer, 1, bytes(length), stream);
    std::memset(buffer + got, 0, bytes(length) - got);
}

void DFile::ARead(DString const &format, void *target)
{
    if (!stream || !target || !IsScanFormat(format.c_str())) return;
    Platform::ScanValue(stream, format.c_str(), target);
}

void DFile::ReadLine(DString &line, int maxLength)
{
    if (!stream) return;
    line = DString();
    if (maxLength < 2) return;
    char *const buffer = line.GetBuffer(maxLength);
    if (!std::fgets(buffer, maxLength - 1, stream)) { // which counts the NUL
        line = DString();
        return;
    }
    line.Truncate(dStrlen(buffer));
    for (char end : {'\n', '\r'}) {
        if (line.Len() > 0 && line[line.Len() - 1] == end) line.TruncateBy(1);
    }
}

void DFile::ReadLineArray(DStringArray &fields, int maxLength, char const *delim)
{
    if (!stream) return;
    DString line;
    ReadLine(line, maxLength);
    fields.Split(line, delim, -1);
}

// ---- Whole files ----

DString DFile::GetText(DString const &name)
{
    DString text;
    DFile file;
    int const length = GetFileLen(name);
    if (length == 0 || !file.open(name, "rb")) return text;
    char *const buffer = text.GetBuffer(length);
    std::size_t const wanted = bytes(text.Len());
    std::size_t const got = std::fread(buffer, 1, wanted, file.stream);
    std::memset(buffer + got, 0, wanted - got);
    return text;
}

void DFile::GetLines(DString const &name, DStringArray &lines)
{
    lines.Split(GetText(name), LDelim, -1);
}

void DFile::GetArray(DString const &name, DStringArray &table, char const *delim)
{
    table.Split2D(GetText(name), delim, -1);
}

void DFile::GetStringTable(DString const &name, DArray<DStringArray, 1> &table, char const *delim)
{
    DStringArray(GetText(name), LDelim, -1).MakeTable(table, delim, -1);
}

bool DFile::MakeFile(DString const &name)
{
    return DFile().open(name, "a+b");
}

bool DFile::WriteText(DString const &name, DString text)
{
    DFile file;
    if (!file.open(name, "wb")) return false;
    writeText(file.stream, text);
    return true;
}

bool DFile::WriteLine(DString const &name, DString const &line)
{
    DFile file;
    if (!file.open(name, "a+b")) return false;
    writeText(file.stream, line);
    writeText(file.stream, LDelim);
    return true;
}

bool DFile::WriteLines(DString const &name, DStringArray const &lines)
{
    DFile file;
    if (!file.open(name, "wb")) return false;
    writeJoined(file.stream, lines.Data(), lines.Count(), LDelim);
    return true;
}

bool DFile::WriteArray(DString const &name, DStringArray const &table, char const *delim)
{
    DFile file;
    if (!file.open(name, "wb")) return false;
    int const fields = table.RCount();
    for (int line = 0; line < table.CCount(); ++line) {
        if (line > 0) writeText(file.stream, LDelim);
        int const first = line * fields;
        int const present = table.Count() - first < fields ? table.Count() - first : fields;
        writeJoined(file.stream, table.Data() + first, present, delim);
    }
    return true;
}

bool DFile::CopyLargeFile(DString const &from, DString const &to)
{
    DFile source;
    DFile target;
    if (Platform::IsSameFile(from.c_str(), to.c_str())) return true; // opening the target would empty it
    if (source.Open(from, ReadBit | BinaryBit) && target.Open(to, WriteBit | BinaryBit)) {
        copyStream(source.stream, target.stream, GetFileLen(from));
    }
    return true;
}
