// Numbers as text and back, dates, and what functions give, each with many arguments.

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <limits>

#include "experiment/Experiment.h"
#include "platform/Platform.h"
#include "systems/Tree.h"

namespace {

int const nArguments = 5000;

/// Arguments such as users have, then those of any magnitude.
float argument(Numbers &numbers, int i)
{
    float const ranges[] = {1.0f, 10.0f, 100.0f, 1000.0f, 1e5f};
    int const n = sizeof ranges / sizeof ranges[0];
    return i % (n + 1) < n ? numbers.Signal() * ranges[i % (n + 1)] : numbers.AnyMagnitude();
}

void evaluate(DString const &formula)
{
    PrintLine(formula + " = " + Hex(Expt.GetScalarData(formula, nullptr)));
}

void functions()
{
    for (char const *function : {"sin", "cos", "tan", "log", "exp", "atn"}) {
        Numbers numbers(11);
        for (int i = 0; i < nArguments; ++i) evaluate(function + ('(' + DString(argument(numbers, i)) + ')'));
    }
}

void powers()
{
    Numbers numbers(12);
    for (int i = 0; i < nArguments; ++i) {
        float const base = std::fabs(argument(numbers, i));
        float const exponent = i % 3 == 0 ? std::floor(numbers.Signal() * 10.0f) : numbers.Signal() * 8.0f;
        evaluate(DString(base) + "^(" + DString(exponent) + ')');
        evaluate("(-" + DString(base) + ")^(" + DString(exponent) + ')');
    }
}

/// The tick sizes of axes, by logarithm and power.
void ticks()
{
    Numbers numbers(13);
    for (int i = 0; i < nArguments; ++i) {
        Waveform wave(1);
        wave[0] = argument(numbers, i);
        wave.Scale();
        PrintLine("tick of " + Hex(wave[0]) + " = " + Hex(wave.scaleUnit));
    }
    for (int exponent = -45; exponent < 39; ++exponent) {
        Waveform wave(1);
        wave[0] = std::strtof(("1e" + DString(exponent)).c_str(), nullptr);
        wave.Scale();
        PrintLine("tick of " + Hex(wave[0]) + " = " + Hex(wave.scaleUnit));
    }
}

/// Radius and angle, and back.
void turns()
{
    Numbers numbers(14);
    ParticleGroup group(nArguments);
    for (int i = 0; i < group.Count(); ++i) group[i] = argument(numbers, i);
    for (int geometry : {1, 0, 1}) {
        group.SetGeometry(geometry);
        for (int i = 0; i < group.nParticles(); ++i) {
            float const *const row = group.PData()[i].column;
            PrintLine("row " + Hex(row[0]) + ' ' + Hex(row[1]) + ' ' + Hex(row[3]) + ' ' + Hex(row[4]));
        }
    }
}

void prints()
{
    Numbers numbers(15);
    float const limit = std::numeric_limits<float>::infinity();
    float const none = std::numeric_limits<float>::quiet_NaN();
    for (float value :
         {0.0f, -0.0f, 1.0f, 0.5f, 2.5f, 9.5f, 99999.5f, 1e10f, 1e-5f, 1e-45f, limit, -limit, none, -none}) {
        PrintLine("float " + Hex(value) + " as " + DString(value) + " and " + DString(static_cast<double>(value)));
    }
    for (int i = 0; i < nArguments; ++i) {
        float const value = i % 2 ? argument(numbers, i) : numbers.AnyBits();
        double const wide = numbers.AnyDouble();
        PrintLine(Hex(value) + " as " + DString(value) + ", " + Hex(wide) + " as " + DString(wide));
    }
}

void printFormats()
{
    float const limit = std::numeric_limits<float>::infinity();
    float const none = std::numeric_limits<float>::quiet_NaN();
    for (char const *format :
         {"%e",  "%E",  "%f",  "%F",      "%g",       "%G",      "%a",    "%A",    "%.0e",  "%.0f",  "%.0g", "%#.0f",
          "%#g", "%+g", "% g", "%012.4g", "%-12.4gx", "%5.2f%%", "%.3lf", "%.12g", "%.17g", "%.20f", "%x",   "%300f"}) {
        Numbers again(16);
        for (float value : {0.0f, -0.0f, 0.5f, 1.5f, 2.5f, 0.125f, 1e10f, 1e-10f, 1e30f, limit, -limit, none, -none})
            PrintLine(DString(format) + ' ' + Format(value, format) + ' ' + Format(static_cast<double>(value), format));
        for (int i = 0; i < 200; ++i) {
            float const value = argument(again, i);
            PrintLine(DString(format) + ' ' + Format(value, format) + ' ' + Format(again.AnyDouble(), format));
        }
    }
}

void readNumber(DString const &text)
{
    float single = 0;
    double wide = 0;
    bool const isSingle = text.ToFloat(single);
    bool const isWide = text.ToDouble(wide);
    PrintLine(text + " is " + DString(isSingle) + ' ' + Hex(single) + ' ' + DString(isWide) + ' ' + Hex(wide));
}

void reads()
{
    for (char const *text : {"0",
                             "-0",
                             "1e400",
                             "-1e400",
                             "1e-400",
                             "inf",
                             "-Infinity",
                             "infinit",
                             "nan",
                             "-nan",
                             "NaN(12)",
                             "nan(0x7)",
                             "nan(",
                             "0x1F",
                             "0x1.8p3",
                             "-0x.8p-1",
                             "0x",
                             "0x1p-1074",
                             "0x1p-1075",
                             "0x1p1024",
                             "1e",
                             "1e+",
                             ".5",
                             "5.",
                             ".",
                             "+7",
                             "--7",
                             " 7",
                             "\t7",
                             "7 ",
                             "1d5",
                             "1,5",
                             "1e5e",
                             "9007199254740993",
                             "2.2250738585072011e-308",
                             "4.9406564584124654e-324",
                             "2.4703282292062328e-324",
                             "1.00000005960464477540",
                             "3.4028236e38",
                             "1.1754943e-38"})
        readNumber(text);
    Numbers numbers(17);
    for (int i = 0; i < nArguments; ++i) {
        readNumber(Format(numbers.AnyDouble(), "%.11g"));
        readNumber(DString(static_cast<int>(numbers.Next())) + '.' + DString(numbers.Next()) + 'e' +
                   DString(static_cast<int>(numbers.Next() % 700) - 350));
    }
}

void date(long long time)
{
    DString const text(time);
    long long back = 0;
    bool const isDate = text.ToDate(back);
    PrintLine(text + ' ' + DString(isDate) + ' ' + Hex(static_cast<double>(back - time)));
}

/// Some systems know the rules of summer time of each year, some those of the present alone.
bool hasSummerTime()
{
    std::tm july = {};
    return Platform::LocalTime(1593604800, july) && july.tm_isdst > 0;
}

void dates()
{
    Numbers numbers(18);
    long long const begin = 1199145600; // 2008
    for (int i = 0; i < nArguments; ++i) date(begin + numbers.Next() % (28 * 365 * 86400u));
    for (int i = 0; i < 2 * 24 * 366; ++i) PrintLine(DString(1704067200 + i * 1800LL)); // every half hour of 2024
    for (int i = 0; !hasSummerTime() && i < nArguments; ++i)
        date(static_cast<long long>(numbers.Next()) * (i % 4 == 3 ? 40 : 1) * (i % 2 ? -1 : 1));
}

void readDate(char const *text)
{
    long long time = -7;
    bool const isDate = DString(text).ToDate(time);
    PrintLine(DString(text) + " is " + DString(isDate) + ' ' + Hex(static_cast<double>(time)));
}

void readDates()
{
    for (char const *text : {"6/11/2024 8:13:20 pm", "12/31/2030 23:59:59 PM", "2/30/2024 1:02:03", "13/32/2024",
                             "31-12-2024 5", "text", ""})
        readDate(text);
    if (hasSummerTime()) return;
    for (char const *text : {"1/1/1970", "01/01/1969 00:00:00", "6/10/24 8:13:20 am", "0/0/0", "-1/-1/-1",
                             "1/1/9999 99:99:99", "1/1/1 0:0:0"})
        readDate(text);
}

} // namespace

void ListResults()
{
    functions();
    powers();
    ticks();
    turns();
    prints();
    printFormats();
    reads();
    dates();
    readDates();
}
