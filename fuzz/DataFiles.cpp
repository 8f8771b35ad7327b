/// Any bytes as a data file of each kind: whatever they say, they are read, asked everything, and written again. The
/// first byte chooses the kind and how much of the file is wanted.

#include <cstddef>
#include <cstdint>

#include "FuzzFile.h"
#include "VodrelCore.h"

namespace {

void askWaveform(DString const &file, int count)
{
    Waveform wave;
    wave.Read(file, count);
    Waveform other(wave);
    for (char const *code :
         {"tm", "19", "av", "in", "ri", "pi", "sd", "wa", "fh", "t%[50]", "b%[50]", "vt[1]", "lt[1]"}) {
        wave.GetTraceParam(code);
        wave.GetXYTraceParam(code, other);
    }
    wave.PointAtTime(0.5f);
    wave.Scale();
    wave.SetCalAttOff(2.0f, 0.0f, 1.0f);
    wave.Align(100, wave.Start() - wave.timeStep, wave.timeStep / 3);
    wave.Write(file);
}

void askMatrix(DString const &file, int count)
{
    Matrix matrix;
    matrix.Read(file, count, count / 2);
    for (char const *code : {"rc", "r1", "re", "cc", "c1", "ce", "lc", "l1", "le"}) matrix.GetMatrixParam(code);
    for (int d = 0; d <= 4; ++d) {
        matrix.GetPartialCoords(d, 0.0f, 1.0f);
        matrix.PointAtCoord(d, 1.0f);
        matrix.SwapCoords(d, d + 1);
        matrix.SetStep(d, 0.0f, 0.0f);
        matrix.SetCoord(d, 1, 2.0f);
    }
    matrix.Scale();
    Matrix const copy(matrix);
    matrix.Collapse();
    matrix.Write(file);
}

void askParticles(DString const &file, int count)
{
    ParticleGroup group;
    group.Read(file, count, 1);
    group.Scale();
    group.SetGeometry(group.Geometry() == 0 ? 1 : 0);
    group.CleanUp();
    group.Append(file);
    group.Read(file, -1, 0);
}

void askGeometry(DString const &file)
{
    Geometry geometry;
    geometry.Read(file);
    geometry.Scale();
    geometry.DeleteObject(1);
    geometry.Write(file);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *bytes, std::size_t size)
{
    char const *const extensions[] = {".wvf", ".dmt", ".dpt", ".dgm"};
    if (size == 0) return 0;
    int const kind = bytes[0] & 3;
    int const count = (bytes[0] >> 2) - 1;
    FuzzFile const file(extensions[kind], bytes + 1, size - 1);
    if (kind == 0) askWaveform(file.Name(), count);
    if (kind == 1) askMatrix(file.Name(), count);
    if (kind == 2) askParticles(file.Name(), count);
    if (kind == 3) askGeometry(file.Name());
    return 0;
}
