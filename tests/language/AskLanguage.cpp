/// Answers questions about a shot, for run_language.py: AskLanguage EXPERIMENT SHOT < QUESTIONS
///
/// A question is a line of fields with tabs between them, the kind first. The answer is a line: what came of it, a tab,
/// and the messages that the library sent meanwhile. Numbers are answered with nine digits, which single precision
/// never exceeds.

#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "VodrelCore.h"
#include "interfaces/VodrelC.h"

namespace {

using Fields = std::vector<std::string>;

class Listener : public DNotify {
public:
    void Notify(int code, int, DString const &text) override
    {
        if (code == 2 || code == 7) heard += text.c_str();
    }
    std::string heard;
};

DString field(Fields const &fields, std::size_t i)
{
    return i < fields.size() ? DString(fields[i].c_str()) : DString();
}

float number(Fields const &fields, std::size_t i)
{
    float value = 0;
    field(fields, i).ToFloat(value);
    return value;
}

std::string print(float value)
{
    char text[40];
    std::snprintf(text, sizeof text, "%.9g", static_cast<double>(value));
    return text;
}

std::string formula(Fields const &fields)
{
    return print(Expt.GetScalarData(field(fields, 1), nullptr));
}

std::string text(Fields const &fields)
{
    return Expt.GetExpandedString(field(fields, 1), true).c_str();
}

std::string label(Fields const &fields)
{
    return Expt.GetExpandedLabel(field(fields, 1)).c_str();
}

std::string dataName(Fields const &fields)
{
    return Expt.GetDataFileName(field(fields, 1)).c_str();
}

std::string braces(Fields const &fields)
{
    std::string answer(200, '\0');
    int length = static_cast<int>(answer.size());
    GetScalarDataSafeC(field(fields, 1).c_str(), &length, &answer[0]);
    return answer.substr(0, static_cast<std::size_t>(length));
}

std::string pair(Fields const &fields)
{
    Waveform values;
    Waveform positions;
    bool const areRead = values.Read(Expt.GetDataFileName(field(fields, 1)), -1) &&
                         positions.Read(Expt.GetDataFileName(field(fields, 2)), -1);
    return areRead ? print(values.GetXYTraceParam(field(fields, 3), positions)) : "a trace that can't be read";
}

/// A number is stored, and a formula asked after it.
std::string store(Fields const &fields)
{
    Expt.SetScalarData(field(fields, 1), number(fields, 2));
    return print(Expt.GetScalarData(field(fields, 3), nullptr));
}

/// A trace in memory: its name, start, step and samples.
std::string keep(Fields const &fields)
{
    void *const object = Expt.InitDataPtr(field(fields, 1), DataWaveform);
    if (!object) return "no trace in memory";
    Waveform &trace = *static_cast<Waveform *>(object);
    trace.startTime = number(fields, 2);
    trace.timeStep = number(fields, 3);
    for (std::size_t i = 4; i < fields.size(); ++i) trace.Add(number(fields, i));
    trace.Scale();
    return "kept";
}

struct Kind {
    char const *name;
    std::string (*answer)(Fields const &);
};

Kind const kinds[] = {
    {"formula", formula}, {"text", text}, {"label", label}, {"data name", dataName},
    {"braces", braces},   {"pair", pair}, {"store", store}, {"keep", keep},
};

std::string answer(Fields const &fields)
{
    for (Kind const &kind : kinds) {
        if (!fields.empty() && fields[0] == kind.name) return kind.answer(fields);
    }
    return "an unknown kind of question";
}

Fields split(std::string const &line)
{
    Fields fields;
    std::istringstream stream(line);
    for (std::string part; std::getline(stream, part, '\t');) fields.push_back(part);
    return fields;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) return 2;
    Listener listener;
    CoreInit("");
    SetNotify(&listener);
    Expt.SetExperimentFolder(argv[1]);
    if (!Expt.SetShot(argv[2], -1)) return 1;
    for (std::string line; std::getline(std::cin, line);) {
        listener.heard.clear();
        std::string const told = answer(split(line));
        std::cout << told << '\t' << listener.heard << '\n';
    }
    SetNotify(nullptr);
    return 0;
}
