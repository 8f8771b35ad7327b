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
#include <cmath>
#include <cstddef>
#include <string>

#include "core/Log.h"
#include "data/Matrix.h"
#include "data/ParticleGroup.h"
#include "data/Waveform.h"

namespace {

// Bytes that the passes write into the text. One that comes from a caller and has no partner reaches to the end.
char const ArgOpenMark = '\xC9';  ///< opens the evaluated argument of a parameter
char const ArgCloseMark = '\xCA'; ///< closes it
char const NegOpenMark = '\xCB';  ///< opens a negative number in front of "^"
char const NegCloseMark = '\xCC'; ///< closes it

char const alternativeMark = '?';
char const *const fallbackMark = "::";
int const functionLength = 3;
int const codeLength = 2; ///< of a parameter, between its backslash and the argument

/// The failure inside the evaluator: negative infinity, on which powers are computed like on any number.
float undefinedResult()
{
    return DFMax * -2.0f;
}

float narrow(double value)
{
    return static_cast<float>(value);
}

struct Function {
    char const *name;
    float (*of)(float);
};

/// In double precision on the widened value, but for the arc tangent.
Function const functions[] = {
    {"sin", [](float x) { return narrow(std::sin(static_cast<double>(x))); }},
    {"cos", [](float x) { return narrow(std::cos(static_cast<double>(x))); }},
    {"tan", [](float x) { return narrow(std::tan(static_cast<double>(x))); }},
    {"log", [](float x) { return narrow(std::log(static_cast<double>(x))); }},
    {"exp", [](float x) { return narrow(std::exp(static_cast<double>(x))); }},
    {"atn", [](float x) { return std::atan(x); }},
    {"bol", [](float x) { return x; }}, // what isn't a number has become one before
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

bool isBooleanForm(Function const *function)
{
    return function && DString(function->name) == "bol";
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

/// What a pass from right to left has behind it, with its values put in. Kept from its end on, so that what is
/// replaced is always at the end of the block.
class Rewritten {
public:
    void PutFront(char c) { reversed += c; }
    void PutFront(DString const &text)
    {
        for (int i = text.Len() - 1; i >= 0; --i) reversed += text[i];
    }

    /// Takes all away up to the first `closing`, and that as well; false, with nothing changed, if there is none.
    bool TakeUpTo(char closing, DString &inner)
    {
        std::size_t const at = reversed.rfind(closing);
        if (at == std::string::npos) return false;
        inner = textFrom(at + 1);
        reversed.resize(at);
        return true;
    }

    bool IsEmpty() const { return reversed.empty(); }
    bool StartsWith(char c) const { return !reversed.empty() && reversed.back() == c; }
    DString Text() const { return textFrom(0); }

private:
    DString textFrom(std::size_t at) const
    {
        DString text;
        int const n = static_cast<int>(reversed.size() - at);
        if (n > 0)
            std::reverse_copy(reversed.begin() + static_cast<std::ptrdiff_t>(at), reversed.end(), text.GetBuffer(n));
        return text;
    }

    std::string reversed;
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
    if (!text) return undefinedResult();
    if (text.ToFloat(value)) return value;
    if (replacebrackets(text, lookup, value) || replaceparentheses(text, lookup, value)) return value;
    return parsealternative(text, lookup);
}

/// [name] becomes the value of the name; data\xx[input] becomes data\xx and the value of the input between the marks.
/// True if that decides the result of the whole text.
bool Experiment::replacebrackets(DString &text, ScalarLookup lookup, float &result)
{
    if (text.Find('[') == npos) return false;
    Rewritten behind;
    for (int at = text.Len() - 1; at >= 0; --at) {
        if (text[at] != '[') {
            behind.PutFront(text[at]);
            continue;
        }
        DString inner;
        result = undefinedResult();
        if (!behind.TakeUpTo(']', inner)) {
            Message("Expression cannot be evaluated because of unmatched bracket");
            return true;
        }
        if (at == 0 && behind.IsEmpty()) {
            result = ParseSingle(inner, lookup);
            return true;
        }
        if (opensArgument(text, at)) {
            behind.PutFront(ArgOpenMark + DString(ParseInput(inner, lookup)) + ArgCloseMark);
            continue;
        }
        float const value = ParseSingle(inner, lookup);
        if (!IsVF(value)) return true;
        behind.PutFront(DString(value));
    }
    text = behind.Text();
    return false;
}

/// (input) becomes its value, sin(input) the sine of it. A negative base of a power is marked, so that its sign stays
/// with it. True if there is no value.
bool Experiment::replaceparentheses(DString &text, ScalarLookup lookup, float &result)
{
    if (text.Find('(') == npos) return false;
    Rewritten behind;
    for (int at = text.Len() - 1; at >= 0; --at) {
        if (text[at] != '(') {
            behind.PutFront(text[at]);
            continue;
        }
        DString inner;
        result = undefinedResult();
        if (!behind.TakeUpTo(')', inner)) {
            Message("Expression cannot be evaluated because of unmatched parenthesis");
            return true;
        }
        Function const *const function = functionBefore(text, at);
        float value = ParseInput(inner, lookup);
        if (!IsVF(value)) {
            if (!isBooleanForm(function)) return true;
            value = istrue(inner) ? 1.0f : 0.0f;
        }
        if (function) {
            value = function->of(value);
            at -= functionLength;
        }
        bool const isNegativeBase = value < 0.0f && behind.StartsWith('^');
        DString const number(value);
        behind.PutFront(isNegativeBase ? NegOpenMark + number + NegCloseMark : number);
    }
    text = behind.Text();
    return false;
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
    if (!rest) return undefinedResult();
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
        switch (text[i]) {
        case ArgOpenMark:
            i = nextMark(text, i, ArgCloseMark);
            break;
        case NegOpenMark:
            i = nextMark(text, i, NegCloseMark);
            break;
        case ' ':
        case '*':
        case '/':
        case '^':
            if (text[i + 1] != ArgOpenMark && text[i + 1] != NegOpenMark) ++i;
            break;
        case 'E':
        case 'e':
            if (i > 0 && isOneOf(text[i - 1], NumberChars)) ++i;
            break;
        case '+':
            if (!addTerm(i)) return undefinedResult();
            isMinus = false;
            break;
        case '-':
            if (i > 0 && (text[i - 1] == '+' || text[i - 1] == '-')) break; // the sign of the term
            if (i == 0) start = 1;
            else if (!addTerm(i)) return undefinedResult();
            isMinus = true;
            break;
        default:
            break;
        }
    }
    return addTerm(text.Len()) ? sum : undefinedResult();
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
        switch (text[i]) {
        case ArgOpenMark:
            i = nextMark(text, i, ArgCloseMark);
            break;
        case NegOpenMark:
            i = nextMark(text, i, NegCloseMark);
            break;
        case '*':
        case '/':
            if (!addFactor(i)) return undefinedResult();
            isDivisor = text[i] == '/';
            break;
        default:
            break;
        }
    }
    return addFactor(text.Len()) ? product : undefinedResult();
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
        else if (text[i] == '^' && !addSingle(i)) return undefinedResult();
    }
    return addSingle(text.Len()) ? power : undefinedResult();
}

/// single = number | name | data name \ parameter
float Experiment::ParseSingle(DString text, ScalarLookup lookup)
{
    float value = 0.0f;
    if (text[0] == NegOpenMark && text.Len() > 0) text = slice(text, 1, text.Len() - 1);
    if (text.ToFloat(value)) return value;
    if (lookup && lookup(text, value)) return IsVF(value) ? value : undefinedResult();
    if (!ShotFolder) return undefinedResult();
    unsigned int const found = text.RFind('\\');
    if (found == npos) {
        DString const stored = GetShotData(text);
        return ~stored && stored.ToFloat(value) ? value : undefinedResult();
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
    if (!file) return undefinedResult();
    Matrix matrix(1, 1, 1);
    if (matrix.Read(file, 0, 0)) return matrix.GetMatrixParam(parameter);
    ParticleGroup particles(0);
    if (particles.Read(file, 0, 0)) return particles.GetPGroupParam(parameter);
    return undefinedResult();
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
