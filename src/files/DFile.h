/// The file handle of the system. Instances read and write binary data and lines on an open stream;
/// static operations read and write whole files. All binary formats are built from `BRead`, `BWrite`,
/// `DSRead` and `DSWrite`: values as they stand in memory, little-endian and IEEE 754, without padding, and strings
/// as a length and the characters, without a terminator.
#pragma once

#include <cstdio>

#include "foundation/DStringArray.h"

class VODREL_API DFile {
public:
    DFile() = default;
    /// Both objects then hold the same stream, and only one of them may close it.
    DFile(DFile const &other) = default;
    DFile &operator=(DFile const &other) = default;
    ~DFile();

    /// The mode is a sum of 1 for read, 2 for write, 4 for binary: 1, 5 read; 2, 6 create or empty; 3, 7 read and
    /// write an existing file; with neither 1 nor 2 it fails. An open stream is closed first, also if this open fails.
    /// Only regular files open.
    bool Open(DString name, int mode);
    void Close();
    bool IsOpen() const { return stream != nullptr; }
    /// True once a read has met the end of the file.
    bool IsEOF() const;

    /// True while the file is open and every read has found what it asked for.
    bool IsGood() const;

    // Positions in bytes, 64 bits. On a closed file they do nothing, and `Tell` answers -1.
    void SeekAbs(long long pos);
    void SeekRel(long long delta);
    long long Tell() const;
    /// The number of bytes from the position to the end of the file.
    long long Remaining() const;

    /// Move `size` bytes. Nothing happens if no file is open or `size` is below 1. Short counts aren't
    /// told: behind the end of the file the rest of `target` stays as it was.
    void BRead(void *target, int size);
    void BWrite(void const *source, int size);

    /// Writes a length prefix of 2 or 4 bytes (any other width: none) and the characters. The short prefix
    /// holds the low 16 bits of the length.
    void DSWrite(DString const &s, int prefixWidth);

    /// Reads a string with a 2-byte prefix if `shortPrefix`, else a 4-byte one. The argument says which of two,
    /// not a width: there is no form that takes a number. A length below 1 leaves `s` as it was, with its
    /// old content; the short prefix is signed, so a string of 32,768 characters or more that was written with it
    /// reads as such a length and its characters stay in the file. Characters that the file doesn't have are NULs;
    /// a long length is believed only as far as the file goes.
    void DSRead(DString &s, bool shortPrefix);
    void DSRead(DString &s, int) = delete;

    /// Scans in the format of `fscanf`, of which at most one conversion may store a value.
    void ARead(DString const &format, void *target);

    /// Reads a line of at most `maxLength` - 2 characters, without its line end and without a carriage return that it
    /// may end in; a longer line comes in pieces. At the end of the file `line` is empty, as it is for an empty line,
    /// and for a `maxLength` of 2 or less, which reads nothing.
    void ReadLine(DString &line, int maxLength);
    void ReadLineArray(DStringArray &fields, int maxLength, char const *delim);

    /// The whole content, line ends and all; empty for a missing file. Its length is the low 32 bits of the
    /// file's size; a size that reads as negative gives an empty text.
    static DString GetText(DString const &name);
    static void GetLines(DString const &name, DStringArray &lines);
    /// A table; the number of fields is the largest of the first 100 lines, and every line gets as many.
    static void GetArray(DString const &name, DStringArray &table, char const *delim);
    /// A ragged table, one list per line.
    static void GetStringTable(DString const &name, DArray<DStringArray, 1> &table, char const *delim);

    // These write in place and answer false if the file can't be opened.
    static bool WriteText(DString const &name, DString text);
    static bool WriteLine(DString const &name, DString const &line); ///< appends the line and CR LF
    /// CR LF between the lines and none behind the last.
    static bool WriteLines(DString const &name, DStringArray const &lines);
    /// One line per run, `delim` between its fields.
    static bool WriteArray(DString const &name, DStringArray const &table, char const *delim);

    /// Makes an empty file if there is none; one that is there keeps what it holds. False if it can't be opened.
    static bool MakeFile(DString const &name);

    /// Copies a file of less than 2 GiB. Answers true on all paths, a failed open included: callers
    /// can't learn of a failure.
    static bool CopyLargeFile(DString const &from, DString const &to);

private:
    bool open(DString const &name, char const *mode);

    std::FILE *stream = nullptr;
};
