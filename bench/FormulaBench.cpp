/// Formulas over a shot: how long one takes from its text to its value, with all that it reads from the disk.

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Beside.h"

namespace {

std::string const shot = "Formulas/Shots/ShotA001";

/// The shot as it comes from an experiment: a dozen values, of which ours is in the middle.
std::string valuesText()
{
    std::string text = "[Fields]\r\n";
    for (int i = 0; i < 12; ++i) {
        if (i == 6) text += "ChargeVoltage=12.5\r\n";
        text += "Quantity" + std::to_string(i) + "=12.5 kV\r\n";
    }
    return text;
}

struct Trace {
    std::string name;
    int nSamples;

    std::string File() const { return shot + '/' + name; }
    void Make() const;
};

/// Rises all the way, so that half of the maximum is crossed in the middle.
void Trace::Make() const
{
    Waveform wave(nSamples);
    for (int i = 0; i < nSamples; ++i) wave[i] = static_cast<float>(i);
    wave.Scale();
    Beside::Require(wave.Write(Beside::Path(File())));
}

Trace const small{"Small", 10000};
Trace const large{"Large", 10000000};

Experiment experiment;

void prepare()
{
    for (char const *folder : {"Formulas", "Formulas/Shots", "Formulas/Shots/ShotA001"}) Beside::MakeFolder(folder);
    Beside::MakeFile("Formulas/Formulas.ini", "[General]\r\n");
    Beside::MakeFile(shot + "/Scalars.ini", valuesText());
    small.Make();
    large.Make();
    experiment.SetExperimentFolder(Beside::Path("Formulas"));
    Beside::Require(experiment.SetShot("A001", 0));
}

// ---- The bare operations ----

/// What arithmetic alone takes: the numbers are read, and the operators are known.
void computeBare()
{
    char const *text = "2+3*4";
    benchmark::DoNotOptimize(text);
    float number[3];
    for (float &value : number) {
        char *end = nullptr;
        value = std::strtof(text, &end);
        text = end + 1;
    }
    Beside::Require(number[0] + number[1] * number[2] == 14.0f);
}

/// The file is opened, read and closed, and the line found.
void readScalarBare()
{
    static std::string const name = Beside::Native(shot + "/Scalars.ini");
    char text[1024];
    std::FILE *const file = std::fopen(name.c_str(), "rb");
    std::size_t const size = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    text[size] = '\0';
    char const *const line = std::strstr(text, "\nChargeVoltage=");
    Beside::Require(line && std::strtof(std::strchr(line, '=') + 1, nullptr) == 12.5f);
}

// ---- Rows ----

Beside::Work asking(std::string const &formula, float value)
{
    return Beside::Work([expr = DString(formula.c_str()), value] {
        Beside::Require(experiment.GetScalarData(expr, nullptr) == value);
    });
}

void declareTrace(Trace const &trace, std::string const &samples, double atMost)
{
    using namespace Beside;
    std::string const file = trace.File() + ".wvf";
    Work const reading(
        [file, size = sizeof(float) * static_cast<std::size_t>(trace.nSamples)] { ReadBare(file.c_str(), size); });
    float const last = static_cast<float>(trace.nSamples - 1);
    std::string const beside = " of " + samples + " samples, beside fread";
    Measure("W\\mx" + beside, "formula", atMost, asking(trace.name + "\\mx", last), reading);
    Measure("W\\t%[50]" + beside, "formula", atMost, asking(trace.name + "\\t%[50]", last / 2), reading);
}

void declare()
{
    using namespace Beside;
    Measure("2+3*4, beside strtof of its numbers", "formula", Unbounded, asking("2+3*4", 14), Work(computeBare));
    Measure("ChargeVoltage, beside reading the shot's file", "formula", Unbounded, asking("ChargeVoltage", 12.5f),
            Work(readScalarBare));
    declareTrace(small, "10,000", 3);
    declareTrace(large, "10 million", Speed(0.9));
}

} // namespace

int main(int argc, char **argv)
{
    return Beside::Run(argc, argv, "Formulas", prepare, declare);
}
