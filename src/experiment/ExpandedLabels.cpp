/// References to values and formulas in a label: `GetExpandedString` with numbers and formats.

#include "experiment/Experiment.h"

#include "experiment/FolderNames.h"

namespace {

char const *const opening = "![";
char const formatMark = '%';

/// The position of the bracket that closes one that stands before `at`; -1 for none.
int closingBracket(DString const &text, int at)
{
    int depth = 1;
    for (int i = at; i < text.Len(); ++i) {
        if (text[i] == '[') ++depth;
        if (text[i] == ']' && --depth == 0) return i;
    }
    return -1;
}

} // namespace

DString Experiment::GetExpandedLabel(DString const &text)
{
    DString label;
    int at = 0;
    for (unsigned int open = text.Find(opening); open != npos; open = text.Find(opening, at)) {
        int const begin = static_cast<int>(open) + dStrlen(opening);
        int const close = closingBracket(text, begin);
        if (close < 0) return text;
        label << DString(text, at, static_cast<int>(open) - at);
        appendreference(label, DString(text, begin, close - begin));
        at = close + 1;
    }
    if (at < text.Len()) label << DString(text, at, npos);
    return label;
}

/// A text value as it stands; a number, or what a formula gives, in the format that the reference may end in.
void Experiment::appendreference(DString &label, DString const &reference)
{
    DString const key = DString(reference).BeforeFirst(formatMark, true);
    DString const value = GetShotData(key);
    if ((~value && !value.IsNumeric()) || (key %= shotWord)) {
        label << value;
        return;
    }
    float const number = ParseInput(key, nullptr);
    if (!IsVF(number)) label << "(undefined)";
    else if (key.Len() == reference.Len()) label << number;
    else label.AddFormatted(number, DString(reference, key.Len(), npos).c_str());
}
