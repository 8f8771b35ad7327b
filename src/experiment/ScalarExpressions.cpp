/// Formulas over the numbers of a shot.
///
/// There are no tokens and no tree: the text is the only state. Two passes go over it from right to left and replace
/// each bracket, then each parenthesis, by its value in decimal, so that the innermost and rightmost comes first and
/// nothing nests while it is evaluated. What remains is flat. It is cut at its lowest operators and handed down, one
/// function for each level of precedence:
///
///     input  = number | condition ? input ? input | input :: input | sum
///     sum    = [-] term { (+ | -) term }
///     term   = factor { (* | /) factor }
///     factor = single { ^ single }                                  from the left
///     single = number | name | data name \ parameter
///
/// The last operand of "?" and "::" is the rest of the text, so their chains are loops. A text of any length and depth
/// takes a time in proportion to its length, but for what its names cost, and no more stack than a short one.

#include "experiment/Experiment.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstddef>
#include <limits>
#include <new>
#include <string>

#include "core/Log.h"
#include "data/Matrix.h"
#include "data/ParticleGroup.h"
#include "data/Waveform.h"
#include "experiment/FolderNames.h"
#include "platform/Platform.h"

namespace {

// Bytes that the passes write into the text. One that comes from a caller and has no partner reaches to the end.
char const ArgOpenMark = '\xC9';  ///< opens the evaluated argument of a parameter
char const ArgCloseMark = '\xCA'; ///< closes it
char const NegOpenMark = '\xCB';  ///< opens a negative number in front of "^"
char const NegCloseMark = '\xCC'; ///< closes it

char const alternativeMark = '?';

int const functionLength = 3;
int const codeLength = 2; ///< of a parameter, between its backslash and the argument

/// The failure inside the evaluator, the overflow of -2 * DFMax: powers are computed on it like on any number.
float const UndefinedResult = -std::numeric_limits<float>::infinity();

float narrow(double value)
{
    return static_cast<float>(value);
}

struct Function {
    char const *name;
    float (*of)(float);
    bool takesTexts = false; ///< what isn't a number counts as 1 if it is "True", else as 0
};

/// In double precision on the widened value, rounded. The arc tangent too: in single precision the C libraries differ
/// in its last place from system to system, and this is everywhere the nearest number.
Function const functions[] = {
    {"sin", [](float x) { return narrow(Platform::Sin(static_cast<double>(x))); }},
    {"cos", [](float x) { return narrow(Platform::Cos(static_cast<double>(x))); }},
    {"tan", [](float x) { return narrow(std::tan(static_cast<double>(x))); }},
    {"log", [](float x) { return narrow(std::log(static_cast<double>(x))); }},
    {"exp", [](float x) { return narrow(std::exp(static_cast<double>(x))); }},
    {"atn", [](float x) { return narrow(std::atan(static_cast<double>(x))); }},
    {"bol", [](float x) { return x; }, true},
};

/// The function whose name ends right before a position.
Function const *functionBefore(DString const &text, int at)
{
    if (at < functionLength) return nullptr;
    for (Function const &function : functions) {
        if (CompareFolded(text.c_str() + at - functionLength, function.name, functionLength) == 0) return &function;
    }
    return nullptr;
}

bool isOneOf(char c, DString const &set)
{
    return set.Find(c) != npos;
}

DString slice(DString const &text, int start, int end)
{
    return DString(text, start, end - start);
}

/// True for the bracket of a parameter's argument: a backslash and two letters stand in front.
bool opensArgument(DString const &text, int at)
{
    int const backslash = at - codeLength - 1;
    return backslash >= 0 && text[backslash] == '\\' && !isOneOf(text[at - 1], OperatorChars);
}

/// The position of the next `mark`, the end of the text if there is none.
int nextMark(DString const &text, int at, char mark)
{
    unsigned int const found = text.Find(mark, at);
    return found == npos ? text.Len() : static_cast<int>(found);
}

struct Marks {
    char open;
    char close;
};

/// What stands between such marks belongs together, whatever signs it holds.
Marks const marks[] = {{ArgOpenMark, ArgCloseMark}, {NegOpenMark, NegCloseMark}};

bool isOpenMark(char c)
{
    return c == marks[0].open || c == marks[1].open;
}

/// From an opening mark to the one that closes it; any other position stays.
int passMarked(DString const &text, int at)
{
    for (Marks const &pair : marks) {
        if (text[at] == pair.open) return nextMark(text, at, pair.close);
    }
    return at;
}

// ---- Signs: what a character means in a sum -----------------------------------------------------------------------

enum class Meaning { None, JoinsNext, ExponentMark, Plus, Minus };

struct Sign {
    char character;
    Meaning meaning;
};

Sign const signsOfSum[] = {
    {' ', Meaning::JoinsNext},    {'*', Meaning::JoinsNext},    {'/', Meaning::JoinsNext}, {'^', Meaning::JoinsNext},
    {'E', Meaning::ExponentMark}, {'e', Meaning::ExponentMark}, {'+', Meaning::Plus},      {'-', Meaning::Minus},
};

Meaning meaningInSum(char c)
{
    for (Sign const &sign : signsOfSum) {
        if (sign.character == c) return sign.meaning;
    }
    return Meaning::None;
}

bool isSign(char c)
{
    return c == '+' || c == '-';
}

// ---- Passes
// -----------------------------------------------------------------------------------------------------------

/// A pass over a text from right to left, which stops at each opening character and takes what it holds out. What is
/// put in then stands in its place. The part that is done is kept from its end on, so that what changes is always at
/// the end of the block.
class Pass {
public:
    Pass(DString const &given, char opening, char closing) : text(given), open(opening), close(closing), at(text.Len())
    {
    }

    /// Goes on to the next opening character. False at the beginning of the text, and at one that isn't closed.
    bool Next()
    {
        while (--at >= 0) {
            if (text[at] == open) return takeInner();
            done += text[at];
        }
        return false;
    }

    int At() const { return at; }
    DString const &Inner() const { return inner; }
    bool IsWholeText() const { return at == 0 && done.empty(); }
    bool IsBefore(char c) const { return !done.empty() && done.back() == c; }

    void Put(DString const &value)
    {
        for (int i = value.Len() - 1; i >= 0; --i) done += value[i];
    }
    /// Drops characters in front.
    void Drop(int n) { at -= n; }

    /// The rewritten text; false, with a message, if the pass ended at something that isn't closed.
    bool Finish(DString &rewritten, char const *what) const
    {
        if (at >= 0) {
            Message(DString("Expression cannot be evaluated because of unmatched ") + what);
            return false;
        }
        rewritten = doneFrom(0);
        return true;
    }

private:
    bool takeInner()
    {
        std::size_t const end = done.rfind(close);
        if (end == std::string::npos) return false;
        inner = doneFrom(end + 1);
        done.resize(end);
        return true;
    }

    DString doneFrom(std::size_t begin) const
    {
        std::size_t const n = done.size() - begin;
        if (n > INT_MAX) throw std::bad_alloc();
        DString copy;
        if (n > 0)
            std::reverse_copy(done.end() - static_cast<std::ptrdiff_t>(n), done.end(),
                              copy.GetBuffer(static_cast<int>(n)));
        return copy;
    }

    DString const text;
    char const open;
    char const close;
    int at;
    DString inner;
    std::string done;
};

} // namespace

float Experiment::GetScalarData(DString expr, ScalarLookup lookup)
{
    float const value = ParseInput(GetExpandedString(expr, true), lookup);
    return IsVF(value) ? value : -DFMax;
}

/// input = number | condition ? input ? input | input :: input | sum
float Experiment::ParseInput(DString text, ScalarLookup lookup)
{
    float value = 0.0f;
    if (!text) return UndefinedResult;
    if (text.ToFloat(value)) return value;
    if (replacebrackets(text, lookup, value) || replaceparentheses(text, lookup, value)) return value;
    return parsealternative(text, lookup);
}

/// [name] becomes the value of the name; data\xx[input] becomes data\xx and the value of the input between the marks.
/// True if that decides the result of the whole text.
bool Experiment::replacebrackets(DString &text, ScalarLookup lookup, float &result)
{
    result = UndefinedResult;
    if (text.Find('[') == npos) return false;
    Pass pass(text, '[', ']');
    while (pass.Next()) {
        if (pass.IsWholeText()) {
            result = ParseSingle(pass.Inner(), lookup);
            return true;
        }
        if (opensArgument(text, pass.At())) {
            pass.Put(ArgOpenMark + DString(ParseInput(pass.Inner(), lookup)) + ArgCloseMark);
            continue;
        }
        float const value = ParseSingle(pass.Inner(), lookup);
        if (!IsVF(value)) return true;
        pass.Put(value);
    }
    return !pass.Finish(text, "bracket");
}

/// (input) becomes its value, sin(input) the sine of it. A negative base of a power is marked, so that its sign stays
/// with it. True if there is no value.
bool Experiment::replaceparentheses(DString &text, ScalarLookup lookup, float &result)
{
    result = UndefinedResult;
    if (text.Find('(') == npos) return false;
    Pass pass(text, '(', ')');
    while (pass.Next()) {
        Function const *const function = functionBefore(text, pass.At());
        float value = ParseInput(pass.Inner(), lookup);
        if (!IsVF(value)) {
            if (!function || !function->takesTexts) return true;
            value = istrue(pass.Inner()) ? 1.0f : 0.0f;
        }
        if (function) {
            value = function->of(value);
            // C libraries differ in the sign of what is no number, and it would show in the text.
            if (std::isnan(value)) value = std::copysign(value, -1.0f);
            pass.Drop(functionLength);
        }
        bool const isNegativeBase = value < 0.0f && pass.IsBefore('^');
        pass.Put(isNegativeBase ? NegOpenMark + DString(value) + NegCloseMark : DString(value));
    }
    return !pass.Finish(text, "parenthesis");
}

/// condition ? input ? input, on a flat text. A condition above 0 takes the first.
float Experiment::parsealternative(DString const &text, ScalarLookup lookup)
{
    int start = 0;
    for (unsigned int mark = text.Find(alternativeMark); mark != npos; mark = text.Find(alternativeMark, start)) {
        int const end = static_cast<int>(mark);
        int const second = nextMark(text, end + 1, alternativeMark);
        DString const condition = slice(text, start, end);
        float const value = ParseInput(istrue(condition) ? DString("1") : condition, lookup);
        if (IsVF(value) && value > 0.0f) return parsefallback(slice(text, end + 1, second), lookup);
        start = second + 1;
    }
    return parsefallback(slice(text, start, text.Len()), lookup);
}

/// input :: input, on a flat text without alternatives.
float Experiment::parsefallback(DString const &text, ScalarLookup lookup)
{
    int start = 0;
    float value = 0.0f;
    for (unsigned int mark = text.Find(fallbackMark); mark != npos; mark = text.Find(fallbackMark, start)) {
        value = ParseInput(slice(text, start, static_cast<int>(mark)), lookup);
        if (IsVF(value)) return value;
        start = static_cast<int>(mark) + dStrlen(fallbackMark);
    }
    DString const rest = slice(text, start, text.Len());
    if (!rest) return UndefinedResult;
    return rest.ToFloat(value) ? value : ParseAddend(rest, lookup);
}

/// sum = [-] term { (+ | -) term }
///
/// The character behind a blank, "*", "/" or "^" is passed over, so that a sign there belongs to the number; a name
/// with a blank in front of a hyphen comes through whole for the same reason. So does the sign of an exponent.
float Experiment::ParseAddend(DString text, ScalarLookup lookup)
{
    float sum = 0.0f;
    bool isMinus = false;
    int start = 0;
    auto const addTerm = [&](int end) {
        float const term = ParseFactor(slice(text, start, end), lookup);
        sum = isMinus ? sum - term : sum + term;
        start = end + 1;
        return IsVF(term);
    };
    for (int i = 0; i < text.Len(); ++i) {
        i = passMarked(text, i);
        switch (meaningInSum(text[i])) {
        case Meaning::JoinsNext:
            if (!isOpenMark(text[i + 1])) ++i;
            break;
        case Meaning::ExponentMark:
            if (i > 0 && isOneOf(text[i - 1], NumberChars)) ++i;
            break;
        case Meaning::Plus:
            if (!addTerm(i)) return UndefinedResult;
            isMinus = false;
            break;
        case Meaning::Minus:
            if (i > 0 && isSign(text[i - 1])) break; // the sign of the term
            if (i == 0) start = 1;
            else if (!addTerm(i)) return UndefinedResult;
            isMinus = true;
            break;
        case Meaning::None:
            break;
        }
    }
    return addTerm(text.Len()) ? sum : UndefinedResult;
}

/// term = factor { (* | /) factor }
float Experiment::ParseFactor(DString text, ScalarLookup lookup)
{
    float product = 1.0f;
    bool isDivisor = false;
    int start = 0;
    auto const addFactor = [&](int end) {
        float const factor = ParsePower(slice(text, start, end), lookup);
        product = isDivisor ? product / factor : product * factor;
        start = end + 1;
        return IsVF(factor);
    };
    for (int i = 0; i < text.Len(); ++i) {
        i = passMarked(text, i);
        if (text[i] != '*' && text[i] != '/') continue;
        if (!addFactor(i)) return UndefinedResult;
        isDivisor = text[i] == '/';
    }
    return addFactor(text.Len()) ? product : UndefinedResult;
}

/// factor = single { ^ single }, from the left
///
/// The first base isn't tested: an unknown name to the power of 0 is 1.
float Experiment::ParsePower(DString text, ScalarLookup lookup)
{
    float power = 0.0f;
    bool hasBase = false;
    int start = 0;
    auto const addSingle = [&](int end) {
        float const single = ParseSingle(slice(text, start, end), lookup);
        start = end + 1;
        if (hasBase && !IsVF(single)) return false;
        power = hasBase ? narrow(std::pow(static_cast<double>(power), static_cast<double>(single))) : single;
        hasBase = true;
        return true;
    };
    for (int i = 0; i < text.Len(); ++i) {
        if (text[i] == ArgOpenMark) i = nextMark(text, i, ArgCloseMark);
        else if (text[i] == '^' && !addSingle(i)) return UndefinedResult;
    }
    return addSingle(text.Len()) ? power : UndefinedResult;
}

/// single = number | name | data name \ parameter
///
/// A number may stand between the marks of a negative one. The host is asked for a name before the shot is.
float Experiment::ParseSingle(DString text, ScalarLookup lookup)
{
    float value = 0.0f;
    if (text.Len() > 0 && text[0] == NegOpenMark) text = slice(text, 1, text.Len() - 1);
    if (text.ToFloat(value)) return value;
    if (lookup && lookup(text, value)) return IsVF(value) ? value : UndefinedResult;
    if (!ShotFolder) return UndefinedResult;
    unsigned int const found = text.RFind('\\');
    if (found == npos) {
        DString const stored = GetShotData(text);
        return ~stored && stored.ToFloat(value) ? value : UndefinedResult;
    }
    int const backslash = static_cast<int>(found);
    int const last = text.Len() - 1;
    if (text[last] == ArgCloseMark) { // the argument goes to the parameter in brackets
        text.SetChar(backslash + codeLength + 1, '[');
        text.SetChar(last, ']');
    }
    return parameterOf(slice(text, 0, backslash), slice(text, backslash + 1, text.Len()));
}

/// A parameter of a trace, else of a matrix, else of a particle group. Of the last two the header is read, and the
/// first slice.
float Experiment::parameterOf(DString const &dataName, DString const &parameter)
{
    DString const name = CleanDataFileName(dataName);
    if (void *data = GetDataPtr(name, DataWaveform)) {
        float const value = static_cast<Waveform *>(data)->GetTraceParam(parameter);
        ReleaseDataPtr("", DataWaveform, data);
        return value;
    }
    DString const file = GetDataFileName(name);
    if (!file) return UndefinedResult;
    Matrix matrix(1, 1, 1);
    if (matrix.Read(file, 0, 0)) return matrix.GetMatrixParam(parameter);
    ParticleGroup particles(0);
    if (particles.Read(file, 0, 0)) return particles.GetPGroupParam(parameter);
    return UndefinedResult;
}

namespace {

/// Of a trace with samples, or of a matrix with more than one value.
void setFreeParameter(DString const &file, int slot, float value)
{
    Waveform wave(0);
    if (wave.Read(file, -1) && wave.npnts() > 0) {
        if (float *const parameter = wave.Slot(slot)) {
            *parameter = value;
            wave.Write(file);
        }
        return;
    }
    Matrix matrix(1, 1, 1);
    if (!matrix.Read(file, -1, 0) || matrix.Count() < 2) return;
    if (float *const parameter = matrix.Slot(slot)) {
        *parameter = value;
        matrix.Write(file);
    }
}

} // namespace

void Experiment::SetScalarData(DString const &name, float value)
{
    if (!ShotFolder) return;
    unsigned int const found = name.Find('\\');
    if (found == npos) {
        SetShotData(name, value);
        return;
    }
    int const backslash = static_cast<int>(found);
    bool const isParameter = name.Len() == backslash + 3 && (name[backslash + 1] == 'T' || name[backslash + 1] == 't');
    int slot = 0;
    if (!isParameter || !DString(name, backslash + 2, 1).ToInt(slot)) return;
    DString const file = GetDataFileName(slice(name, 0, backslash));
    if (~file) setFreeParameter(file, slot, value);
}
