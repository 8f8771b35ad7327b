// The data and texts that the tree is made of.

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

#include "foundation/Numbers.h"
#include "systems/Tree.h"

// ---- Numbers

std::uint32_t Numbers::Next()
{
    state = state * 1664525u + 1013904223u;
    return state ^ state >> 15;
}

float Numbers::AnyBits()
{
    std::uint32_t const bits = Next();
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

float Numbers::AnyMagnitude()
{
    for (;;) {
        float const value = AnyBits();
        if (std::isfinite(value)) return value;
    }
}

double Numbers::AnyDouble()
{
    for (;;) {
        std::uint64_t const bits = static_cast<std::uint64_t>(Next()) << 32 | Next();
        double value;
        std::memcpy(&value, &bits, sizeof value);
        if (std::isfinite(value)) return value;
    }
}

float Numbers::Signal()
{
    return static_cast<float>(static_cast<int>(Next() >> 7) - (1 << 24)) / static_cast<float>(1 << 24);
}

// ---- Texts

DString AllBytes()
{
    DString text;
    for (int i = 1; i < 256; ++i) {
        if (i != '\n' && i != '\r') text << static_cast<char>(i);
    }
    return text;
}

DString Hex(float value)
{
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    char text[9];
    std::snprintf(text, sizeof text, "%08X", bits);
    return text;
}

DString Hex(double value)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    char text[17];
    std::snprintf(text, sizeof text, "%08X%08X", static_cast<unsigned int>(bits >> 32),
                  static_cast<unsigned int>(bits));
    return text;
}

DString Shown(DString const &text)
{
    DString shown;
    for (int i = 0; i < text.Len(); ++i) {
        char const c = text[i];
        if (c >= ' ' && c <= '~' && c != '%') {
            shown << c;
            continue;
        }
        char hex[4];
        std::snprintf(hex, sizeof hex, "%%%02X", static_cast<unsigned int>(static_cast<unsigned char>(c)));
        shown << hex;
    }
    return shown;
}

void PrintLine(DString const &text)
{
    std::fputs(Shown(text).c_str(), stdout);
    std::fputc('\n', stdout);
}

// ---- Data

/// Every field is set.
Waveform SomeWaveform(int samples, std::uint32_t kind)
{
    Numbers numbers(kind);
    Waveform wave(samples);
    float const scale = numbers.AnyMagnitude();
    for (int i = 0; i < samples; ++i) wave[i] = numbers.Signal() * (kind % 2 ? scale : 1.0f);
    wave.timeStep = 0.1f / static_cast<float>(1 + kind % 5);
    for (float *field : {&wave.timeShift, &wave.startTime, &wave.scopeDelay, &wave.scopeDelay2, &wave.t1, &wave.t2})
        *field = numbers.Signal();
    for (float *field : {&wave.t3, &wave.t4, &wave.t5, &wave.scopeValue, &wave.scopeValue2, &wave.scopeValue3})
        *field = numbers.AnyMagnitude();
    wave.units = "kV/\xB5s";
    wave.note = "first line\r\nsecond, number " + DString(static_cast<int>(kind)) + ": " + AllBytes();
    wave.Scale();
    wave.SetCalAttOff(2.5f, 0.3f, 0.125f);
    wave.Scale();
    return wave;
}

/// A few samples are bad, infinite or no number at all.
Waveform BadWaveform(std::uint32_t kind)
{
    Waveform wave = SomeWaveform(30, kind);
    wave[3] = -DFMax;
    wave[5] = std::numeric_limits<float>::infinity();
    wave[7] = std::numeric_limits<float>::quiet_NaN();
    wave.Scale();
    return wave;
}

/// The first axis is uniform, the second explicit, a third uniform.
Matrix SomeMatrix(int n1, int n2, int n3, std::uint32_t kind)
{
    Numbers numbers(kind);
    Matrix matrix(n1, n2, n3);
    for (int i = 0; i < matrix.Count(); ++i) matrix[i] = numbers.AnyMagnitude();
    matrix.SetStep(1, 0.1f, numbers.Signal());
    DArray<float, 0> coords;
    for (int i = 0; i < n2; ++i) coords.Add(static_cast<float>(i) + numbers.Signal() / 4.0f);
    matrix.SetAllCoords(2, coords);
    if (n3 > 1) matrix.SetStep(3, 1.0f / 3.0f, numbers.Signal());
    for (float *field : {&matrix.t1, &matrix.t2, &matrix.t3, &matrix.t4, &matrix.t5}) *field = numbers.AnyMagnitude();
    matrix.units = "T";
    matrix.note = AllBytes();
    matrix.Scale();
    matrix.SetCalibration(0.7f);
    return matrix;
}

ParticleGroup SomeParticles(int rows, std::uint32_t kind)
{
    Numbers numbers(kind);
    ParticleGroup group(rows);
    for (int i = 0; i < rows; ++i) {
        for (float &value : group.PData()[i].column) value = numbers.Signal() * 100.0f;
    }
    for (float *field : {&group.header1, &group.header2, &group.t1, &group.t2, &group.t3, &group.t4, &group.t5})
        *field = numbers.AnyMagnitude();
    group.units = "cm";
    group.note = "particles " + AllBytes();
    group.Scale();
    return group;
}

/// An object of each type, and one of none.
Geometry SomeGeometry(std::uint32_t kind)
{
    Numbers numbers(kind);
    Geometry geometry;
    geometry.AddBlank(13);
    for (int i = 0; i < geometry.nObjects(); ++i) {
        Object &object = geometry[i];
        object.name = "Object " + DString(i) + AllBytes();
        object.type = i;
        for (float &coordinate : object.position) coordinate = numbers.Signal() * 10.0f;
        for (int k = 0; k < 2 * i; ++k) object.params.Add(numbers.Signal());
        for (float *field : {&object.startAngle, &object.endAngle, &object.attr1, &object.attr6})
            *field = numbers.AnyMagnitude();
        for (int *field : {&object.style1, &object.style2, &object.style3, &object.attr2, &object.attr3, &object.attr4,
                           &object.attr5, &object.attr7})
            *field = static_cast<int>(numbers.Next());
    }
    geometry.units = "cm";
    geometry.note = AllBytes();
    geometry.Scale();
    return geometry;
}

// ---- Formulas and labels

char const *const formulas[] = {
    "Voltage*1000",
    "Voltage^2*0.5/Small",
    "(1/3)*Voltage-Small::7",
    "sin(Voltage)+cos(Voltage)*tan(Voltage)",
    "exp(log(Voltage))^1.5",
    "atn(Small*1e6)",
    "bol(Ready)?Voltage?Small",
    "Missing::Voltage",
    "Missing*2",
    "[two words]*3-[two words]^3",
    "W\\mx",
    "W\\mn",
    "W\\in",
    "W\\fh",
    "W\\19",
    "W\\28",
    "W\\sd",
    "W\\wa",
    "W\\ri",
    "W\\pi",
    "W\\vt[0.3]",
    "W\\tv[0.1]",
    "W\\t%[50]",
    "W\\b%[50]",
    "W\\su",
    "A002\\W\\mx-W\\mx",
    ">\\W\\st",
    "R001\\W\\av",
    "M\\mx",
    "M\\re",
    "C\\lc",
    "P\\np",
    "P\\t1",
    "Quiet\\sd",
    "Bad\\mx",
    "Bad\\in",
    "Nowhere\\mx",
};
int const nFormulas = sizeof formulas / sizeof formulas[0];

char const *const labels[] = {
    "Shot ![Shot] of ![Voltage%.3f] V, ![Voltage%.2e] V, ![Voltage%g] V",
    "peak ![W\\mx%.6g], width ![W\\fh], half at ![W\\t%[50]]",
    "![Comment] and ![Missing], ![Mode], ![two words%08.2f]",
    "![1/3] ![1e-10*1] ![1e10*1] ![1e-5*1%g] ![Voltage*1e20%.4e] ![Voltage*1e-20%.4e]",
    "![unbalanced",
};
int const nLabels = sizeof labels / sizeof labels[0];
