/// The list of strings, and the tool for taking text apart and putting it together: lines from a
/// file, fields from a line, tables from a file.
#pragma once

#include "foundation/DArray.h"
#include "foundation/DString.h"

/// As a table it has one run per line: `RCount()` fields in each of `CCount()` lines, and
/// `operator()(field, line)` reaches a cell.
///
/// Splitting has three modes. A delimiter of exactly one space takes runs of spaces as one and never
/// gives an empty piece. The very pointer `LDelim` splits into lines, at a line feed with or without a carriage
/// return. Anything else is matched exactly: a delimiter at the very beginning gives an empty first piece, one at
/// the very end no empty last piece. After a split only `Count()` is valid, not the shape, until
/// padding or `Split1Dto2D` has set it.
class VODREL_API DStringArray : public DArray<DString, 1> {
public:
    DStringArray() = default;
    explicit DStringArray(int n) : DArray<DString, 1>(n) {}
    DStringArray(int r, int c) : DArray<DString, 1>(r, c) {}
    DStringArray(DString const &text, char const *delim, int minCount);
    DStringArray(DStringArray const &other) = default;
    /// Copies as well: the strings are shared and `other` keeps them.
    DStringArray(DStringArray &&other);
    ~DStringArray() override;
    DStringArray &operator=(DStringArray const &other) = default;
    DStringArray &operator=(DStringArray &&other);

    /// Adds one string; nothing on a table, since only whole runs are added.
    void Add(DString const &s);
    /// Adds the `n` strings that stand one behind the other from `s` on.
    void Add(DString const &s, int n) { DArray<DString, 1>::Add(s, n); }
    DStringArray &operator<<(DString const &s);
    void Append(DStringArray const &other);

    /// The position of the first element that is equal apart from case, -1 (not `npos`) for none.
    int Index(DString const &s) const;

    DString Join(DString const &sep) const;

    /// Writes the lines, each with CR LF, into a buffer of the caller's, as far as they fit. The size
    /// isn't passed: the length of the text that the buffer holds is its size. No terminator is written.
    void JoinInto(char const *buffer) const;

    /// `qsort` with `compare`; null sorts apart from case.
    void Sort(int (*compare)(void const *, void const *));

    /// `minCount` is the least number of elements, the missing ones empty; it never limits the pieces.
    void Split(DString const &text, char const *delim, int minCount);

    /// Splits a text into lines and these into a table of `cols` fields; a negative `cols` takes the largest
    /// number of fields of the first 100 lines. Further fields are dropped, missing ones empty.
    void Split2D(DString const &text, char const *delim, int cols);
    void Split1Dto2D(DStringArray const &lines, char const *delim, int cols);

    /// Splits each element into a list of its own.
    void MakeTable(DArray<DStringArray, 1> &out, char const *delim, int minCount) const;

private:
    void split(DString const &text, char const *delim, int minCount);
    void splitAtSpaces(DString const &text);
    void splitAt(DString const &text, char const *delim);
    void addSlice(DString const &text, int start, int end);
};
