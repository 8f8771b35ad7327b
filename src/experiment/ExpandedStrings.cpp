/// References to values of the current shot, in text.

#include "experiment/Experiment.h"

/// There is no nesting, and what comes from a value isn't expanded again.
DString Experiment::GetExpandedString(DString const &text, bool marked)
{
    char const *const opening = marked ? "![" : "[";
    DString result;
    int at = 0;
    for (unsigned int open = text.Find(opening); open != npos; open = text.Find(opening, at)) {
        int const keyStart = static_cast<int>(open) + dStrlen(opening);
        result << DString(text, at, static_cast<int>(open) - at);
        if (!marked && result.EndsWith("!")) result.TruncateBy(1);
        unsigned int const close = text.Find(']', keyStart);
        int const keyEnd = close == npos ? text.Len() : static_cast<int>(close);
        DString const value = GetShotData(DString(text, keyStart, keyEnd - keyStart));
        if (!value) return DString();
        result << value;
        at = keyEnd + 1;
    }
    if (at < text.Len()) result << DString(text, at, npos);
    return result;
}
