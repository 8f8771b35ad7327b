/// Reads example.* in a folder and writes again.*, and writes rich.*: one file of each kind, for walk_formats.py.

#include <cstdio>
#include <string>

#include "VodrelCore.h"

namespace {

std::string folder;

DString path(char const *name)
{
    std::string system = "Z:" + folder + "/" + name;
    for (char &c : system) {
        if (c == '/') c = '\\';
    }
    return DString(system.c_str());
}

bool rewriteAll()
{
    Waveform wave;
    Matrix matrix;
    ParticleGroup particles;
    Geometry geometry;
    return wave.Read(path("example"), -1) && wave.Write(path("again")) && matrix.Read(path("example"), -1, 0) &&
           matrix.Write(path("again")) && particles.Read(path("example"), -1, 0) && particles.Write(path("again")) &&
           geometry.Read(path("example")) && geometry.Write(path("again"));
}

bool writeWaveform()
{
    Waveform wave(3);
    float const samples[] = {0.5f, -1.5f, 2.5f};
    wave.Replace(samples, 0, 3);
    wave.SetCalAttOff(3.0f, 1.0f, 0.0f);
    wave.Replace(samples, 0, 3);
    wave.startTime = 1.0f;
    wave.scopeDelay = 0.5f;
    wave.scopeDelay2 = 0.25f;
    wave.timeShift = 8.0f;
    wave.t5 = 5.0f;
    wave.units = "kA";
    wave.note = "two\r\nlines";
    wave.lockState = 2;
    wave.Scale();
    return wave.Write(path("rich"));
}

bool writeMatrix()
{
    Matrix matrix(2, 3, 4);
    matrix.SetStep(1, 0.5f, 10.0f);
    matrix.SetStep(2, 1.0f, 0.0f);
    DArray<float, 0> axis(4);
    for (int i = 0; i < 4; ++i) axis[i] = static_cast<float>(1 << i);
    matrix.SetAllCoords(3, axis);
    for (int i = 0; i < matrix.Count(); ++i) matrix[i] = static_cast<float>(i);
    matrix.units = "T";
    matrix.t1 = 1.0f;
    matrix.t5 = 5.0f;
    matrix.Scale();
    return matrix.Write(path("rich"));
}

/// Two rows and then one more, appended.
bool writeParticles()
{
    ParticleGroup group;
    group.SetGeometry(1);
    group.Size(2);
    for (int i = 0; i < group.Count(); ++i) group[i] = static_cast<float>(i);
    group.header1 = 11.0f;
    group.header2 = 12.0f;
    group.note = "beam";
    group.Scale();
    if (!group.Write(path("rich"))) return false;
    group.Size(1);
    for (int i = 0; i < group.Count(); ++i) group[i] = static_cast<float>(16 + i);
    group.Scale();
    return group.Append(path("rich"));
}

bool writeGeometry()
{
    Geometry geometry;
    geometry.AddBlank(2);
    geometry[0].name = "ball";
    geometry[0].type = 1;
    geometry[0].params.Add(1.0f);
    geometry[1].type = 10;
    for (float value : {0.0f, 0.0f, 0.0f, 3.0f, 4.0f, 5.0f}) geometry[1].params.Add(value);
    for (float &coordinate : geometry[1].position) coordinate = 1.0f;
    geometry.units = "mm";
    geometry.Scale();
    return geometry.Write(path("rich"));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) return 2;
    folder = argv[1];
    bool const done = rewriteAll() && writeWaveform() && writeMatrix() && writeParticles() && writeGeometry();
    if (!done) std::puts("a file could not be read or written");
    return done ? 0 : 1;
}
