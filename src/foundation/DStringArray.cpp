#include "foundation/DStringArray.h"

#include <cstring>
#include <new>

namespace {

/// Lines that are looked at to find how many fields a table has.
int const linesForWidth = 100;

char const *textOf(void const *element)
{
    char const *const text = static_cast<DString const *>(element)->c_str();
    return text ? text : DEmptyString;
}

int compareStrings(void const *a, void const *b)
{
    return CompareFolded(textOf(a), textOf(b));
}

int widestOf(DStringArray const &lines, char const *delim)
{
    int widest = 0;
    for (int i = 0; i < lines.Count() && i < linesForWidth; ++i) {
        int const pieces = DStringArray(lines[i], delim, -1).Count();
        if (pieces > widest) widest = pieces;
    }
    return widest;
}

} // namespace

DStringArray::DStringArray(DString const &text, char const *delim, int minCount)
{
    split(text, delim, minCount);
}

DStringArray::DStringArray(DStringArray &&other) : DArray<DString, 1>(other) {}

DStringArray::~DStringArray() = default;

DStringArray &DStringArray::operator=(DStringArray &&other)
{
    DArray<DString, 1>::operator=(other);
    return *this;
}

void DStringArray::Add(DString const &s)
{
    Insert(&s, INT_MAX, 1);
}

DStringArray &DStringArray::operator<<(DString const &s)
{
    Add(s);
    return *this;
}

void DStringArray::Append(DStringArray const &other)
{
    Insert(other.Data(), INT_MAX, other.Count());
}

int DStringArray::Index(DString const &s) const
{
    for (int i = 0; i < Count(); ++i) {
        if ((*this)[i] %= s) return i;
    }
    return -1;
}

DString DStringArray::Join(DString const &sep) const
{
    if (Count() == 0) return DString("", 0);
    DString result((*this)[0]);
    for (int i = 1; i < Count(); ++i) result << sep << (*this)[i];
    return result;
}

void DStringArray::JoinInto(char const *buffer) const
{
    char *out = const_cast<char *>(buffer);
    long long room = dStrlen(buffer);
    for (int i = 0; i < Count(); ++i) {
        DString const &line = (*this)[i];
        if (static_cast<long long>(line.Len()) + LenLD > room) return;
        if (line.Len() > 0) std::memcpy(out, line.c_str(), static_cast<std::size_t>(line.Len()));
        std::memcpy(out + line.Len(), LDelim, static_cast<std::size_t>(LenLD));
        out += line.Len() + LenLD;
        room -= line.Len() + LenLD;
    }
}

void DStringArray::Sort(int (*compare)(void const *, void const *))
{
    DArray<DString, 1>::Sort(compare ? compare : compareStrings);
}

void DStringArray::Split(DString const &text, char const *delim, int minCount)
{
    DStringArray pieces(text, delim, minCount); // text and delimiter may be our own elements
    SwapData(pieces);
}

void DStringArray::Split2D(DString const &text, char const *delim, int cols)
{
    DStringArray const lines(text, LDelim, -1);
    Split1Dto2D(lines, delim, cols);
}

void DStringArray::Split1Dto2D(DStringArray const &lines, char const *delim, int cols)
{
    if (cols < 0) cols = widestOf(lines, delim);
    DStringArray table(cols, lines.Count()); // lines and delimiter may be our own elements
    for (int line = 0; line < lines.Count(); ++line) {
        DStringArray const pieces(lines[line], delim, cols);
        for (int field = 0; field < cols; ++field) table(field, line) = pieces[field];
    }
    SwapData(table);
}

void DStringArray::MakeTable(DArray<DStringArray, 1> &out, char const *delim, int minCount) const
{
    DArray<DStringArray, 1> table(Count()); // we may be an element of `out`
    for (int i = 0; i < Count(); ++i) table[i].split((*this)[i], delim, minCount);
    out.SwapData(table);
}

void DStringArray::split(DString const &text, char const *delim, int minCount)
{
    if (minCount > 0) Reserve(minCount);
    if (!text && minCount < 1) return;
    if (delim == LDelim) {
        splitAt(text, "\n");
        for (int i = 0; i < Count(); ++i) {
            DString &line = (*this)[i];
            if (line.Len() > 0 && line[line.Len() - 1] == '\r') line.TruncateBy(1);
        }
    } else if (delim && std::strcmp(delim, " ") == 0) {
        splitAtSpaces(text);
    } else {
        splitAt(text, delim);
    }
    if (minCount > Count()) ReSize(minCount);
}

void DStringArray::splitAtSpaces(DString const &text)
{
    int const length = text.Len();
    auto const skip = [&](int i) {
        while (i < length && text[i] == ' ') ++i;
        return i;
    };
    int at = skip(0);
    for (unsigned int end = text.Find(' ', at); end != npos; end = text.Find(' ', at)) {
        addSlice(text, at, static_cast<int>(end));
        at = skip(static_cast<int>(end));
    }
    if (at < length) Add(DString(text, at, npos));
}

void DStringArray::splitAt(DString const &text, char const *delim)
{
    int const step = dStrlen(delim);
    int at = 0;
    // An empty delimiter is found nowhere.
    for (unsigned int end = step > 0 ? text.Find(delim, 0) : npos; end != npos; end = text.Find(delim, at)) {
        if (end == 0) AddBlank(1);
        else addSlice(text, at, static_cast<int>(end));
        at = static_cast<int>(end) + step;
    }
    if (at < text.Len()) Add(DString(text, at, npos));
}

/// Constructs the piece in its place. Only the count grows, not the shape: see `Count()` in the header.
void DStringArray::addSlice(DString const &text, int start, int end)
{
    ::new (rawplace()) DString(text, start, end - start);
    countplace();
}
