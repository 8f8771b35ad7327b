#include "interfaces/VodrelC.h"

#include <algorithm>
#include <climits>
#include <cstring>

#include "core/Log.h"
#include "core/Nodes.h"
#include "core/StartUp.h"
#include "data/Matrix.h"
#include "data/ParticleGroup.h"
#include "experiment/Experiment.h"
#include "experiment/FolderNames.h"
#include "files/PathUtils.h"
#include "interfaces/HostData.h"

namespace {

char const *const loggingSuffix = "$L";

/// The text-out rule: what fits into `*len` characters, without a NUL, and `*len` tells how many there are.
void deliver(DString text, int *len, char *buf)
{
    if (!len) return;
    if (text.Len() > *len) text.Truncate(*len);
    *len = text.Len();
    if (buf && text.Len() > 0) std::memcpy(buf, text.c_str(), static_cast<std::size_t>(text.Len()));
}

struct CodeText {
    int code;
    DString (*text)();
};

CodeText const codeTexts[] = {
    {0, [] { return GetVodrelPath(); }},
    {1, [] { return Expt.GetShotName(); }},
    {2, [] { return Expt.GetShotFolder(); }},
    {3, [] { return Expt.GetExperimentFolder(); }},
    {4, [] { return GetLocalSettingsPath(); }},
    {5, [] { return AppendPathElts(GetLocalSettingsPath(), "MPIHosts.txt"); }},
    {6, [] { return Expt.GetExperimentName(); }},
    {99, [] { return DString("Test string from Vodrel"); }},
};

DString textOfCode(int code)
{
    for (CodeText const &row : codeTexts) {
        if (row.code == code) return row.text();
    }
    return DString();
}

/// "*" and the name of the shot in whose folder the program runs.
DString shotOfCurrentDirectory()
{
    DString parent;
    DString name;
    SplitPathElts(GetCurrentDirectoryD(), parent, name);
    if (name.StartsWith(shotWord)) name = name.Mid(dStrlen(shotWord));
    return '*' + name;
}

/// A host that started the library itself hears of a change of the current shot.
void tellHost(DString const &shot)
{
    if (!ExternalInit && QNot) QNot->ShotChanged(shot, -1, 0, false);
}

int const anyRoom = 60;              ///< for an answer, from which on a text is more than a formula
int const rectangularFromZero = -77; ///< a start of GetPGroupC

/// What stands between braces is a formula. Behind the first, the next begins at a closing brace, not at an opening
/// one: callers have come to rely on what that makes of their texts.
DString withValues(DString const &text)
{
    DString out;
    int from = 0;
    for (unsigned int open = text.Find('{'); open != npos; open = text.Find('}', from)) {
        int const at = static_cast<int>(open);
        unsigned int const found = text.Find('}', at + 1);
        int const close = found == npos ? text.Len() : static_cast<int>(found);
        DString const formula(text, at + 1, close - at - 1);
        float const value = Expt.GetScalarData(formula, nullptr);
        if (!IsVF(value)) return "Error evaluating scalar expression " + formula;
        out << DString(text, from, at - from) << value;
        from = close + 1;
    }
    return out << DString(text, from, npos);
}

struct Axis {
    int n;
    float start;
    float step;
};

/// A matrix of the host's values; 0 where he gives none.
Matrix matrixOf(Axis const (&axes)[3], float const *data)
{
    Matrix matrix(1, 1, 1);
    matrix.Size(axes[0].n, axes[1].n, axes[2].n);
    bool isGiven = data != nullptr;
    for (int d = 1; d <= 3; ++d) {
        Axis const &axis = axes[d - 1];
        matrix.SetStep(d, axis.step, axis.start);
        isGiven = isGiven && matrix.GetSize(d) == axis.n;
    }
    if (isGiven) std::copy_n(data, matrix.Count(), matrix.Data());
    else matrix.Zero();
    return matrix;
}

/// Whether an array can hold so many values.
bool fitsArray(Axis const (&axes)[3])
{
    long long product = 1;
    for (Axis const &axis : axes) {
        product *= axis.n > 1 ? axis.n : 1;
        if (product > INT_MAX) return false;
    }
    return true;
}

/// The host's particles, none for a count that no array holds.
ParticleGroup particlesOf(int count, int geometry, float header2, float header1, float const *data)
{
    ParticleGroup particles(0);
    particles.SetGeometry(geometry); // while there are none: the rows are in this geometry already
    particles.header2 = header2;
    particles.header1 = header1;
    if (count <= 0 || count > INT_MAX / ParticleGroup::nParticleCols) return particles;
    particles.Size(count);
    if (data) std::copy_n(data, particles.Count(), particles.Data());
    else std::fill_n(particles.Data(), particles.Count(), 0.0f);
    return particles;
}

template <typename Value>
void tell(Value *target, Value value)
{
    if (target) *target = value;
}

} // namespace

VODREL_API void InitializeVodrelC(char const *path)
{
    DString folder(path);
    bool const wantsLogging = folder.EndsWith(loggingSuffix);
    if (wantsLogging) folder.TruncateBy(dStrlen(loggingSuffix));
    folder = fromHost(folder.c_str());
    if (folder %= GetVodrelPath()) {
        Log("InitializeVodrelC called again");
        return;
    }
    CoreInit(folder);
    SetNotify(&CNotifier);
    ClearLog();
    Logging = wantsLogging; // only now: the start cleared it
    ExternalInit = true;
    Log("InitializeVodrelC called from external code at " + Now());
}

VODREL_API void NotifyC(int code, int arg, char const *text)
{
    Notify(code, arg, text);
}

VODREL_API void CSleep(int milliseconds)
{
    DSleep(milliseconds);
}

VODREL_API void GetStringC(int code, int *len, char *buf)
{
    deliver(textOfCode(code), len, buf);
}

VODREL_API int TestFuncC(void)
{
    return 316;
}

VODREL_API void SetExperimentC(char const *folder)
{
    if (ExternalInit) Expt.SetExperimentFolder(fromHost(folder));
}

VODREL_API int CreateShotC(char const *name)
{
    DString shot(name);
    if (shot == "*") shot = shotOfCurrentDirectory();
    if (Expt.CreateShot(shot, "", true) < 0) {
        Message(DString("Error creating shot ") + name + " (most likely it already exists and name did not have *)" +
                " expt is " + Expt.GetExperimentPath());
        return 0;
    }
    tellHost(shot);
    return 1;
}

VODREL_API int SetShotC(char const *name)
{
    if (!Expt.SetShot(name, -1)) {
        Message("Error setting shot (most likely it does not exist)");
        return 0;
    }
    if (!ExternalInit && QNot) Log("here"); // the line is part of what hosts see
    tellHost(name);
    return 1;
}

VODREL_API void GetStringDataC(char const *name, int *len, char *buf)
{
    deliver(Expt.GetShotData(name), len, buf);
}

VODREL_API void SetStringDataC(char const *name, char const *value)
{
    Expt.SetShotData(name, value);
}

VODREL_API void GetWaveformC(char const *name, int n, float start, float step, float *out)
{
    Waveform wave;
    load(wave, name, -1);
    wave.Align(n, start, step);
    copySamples(wave, n, out);
}

VODREL_API void GetWaveformInfoC(char const *name, int *n, float *start, float *step)
{
    Waveform wave;
    load(wave, name, 0);
    tell(start, wave.Start());
    tell(step, wave.timeStep);
    tell(n, wave.fileCount);
}

VODREL_API void SetWaveformC(char const *name, int n, float start, float step, float const *data)
{
    Waveform wave = waveformOf(n, start, step, data);
    store(wave, name);
}

VODREL_API void SetWaveformXYC(char const *name, int n, float const *xy)
{
    if (n <= 1 || !xy) return;
    Waveform wave(n);
    std::size_t const last = static_cast<std::size_t>(n) - 1;
    wave.startTime = xy[0];
    wave.timeStep = (xy[2 * last] - xy[0]) / static_cast<float>(n - 1);
    for (std::size_t i = 0; i <= last; ++i) wave[static_cast<int>(i)] = xy[2 * i + 1];
    store(wave, name);
}

VODREL_API void GetMatrixC(char const *name, int n1, float, float, int n2, float, float, int n3, float, float,
                           float *out)
{
    Matrix matrix(1, 1, 1);
    matrix.Zero();
    load(matrix, name, -1, 0);
    bool const fits = n1 == matrix.GetSize(1) && n2 == matrix.GetSize(2) && n3 == matrix.GetSize(3);
    if (fits && out) std::copy_n(matrix.Data(), matrix.Count(), out);
}

VODREL_API void GetMatrixInfoC(char const *name, int *n1, float *start1, float *step1, int *n2, float *start2,
                               float *step2, int *n3, float *start3, float *step3)
{
    Matrix matrix(1, 1, 1);
    load(matrix, name, 0, 0);
    struct {
        int *n;
        float *start;
        float *step;
    } const axes[] = {{n1, start1, step1}, {n2, start2, step2}, {n3, start3, step3}};
    for (int d = 1; d <= 3; ++d) {
        tell(axes[d - 1].n, matrix.GetOrigSize(d));
        tell(axes[d - 1].start, matrix.GetCoord(d, 0));
        tell(axes[d - 1].step, matrix.GetStep(d));
    }
}

VODREL_API void SetMatrixC(char const *name, int n1, float start1, float step1, int n2, float start2, float step2,
                           int n3, float start3, float step3, float const *data)
{
    Axis const axes[] = {{n1, start1, step1}, {n2, start2, step2}, {n3, start3, step3}};
    if (!fitsArray(axes)) return;
    Matrix matrix = matrixOf(axes, data);
    store(matrix, name);
}

VODREL_API void GetPGroupC(char const *name, int *count, int first, float *out)
{
    if (!count) return;
    int const room = *count;
    bool const fromZero = first == rectangularFromZero;
    ParticleGroup particles(0);
    load(particles, name, room, fromZero ? 0 : first);
    if (fromZero) particles.SetGeometry(0);
    int n = particles.nParticles();
    if (room >= 0 && n > room) n = room; // a start below 0 asks for more
    if (out) std::copy_n(particles.PData(), n, reinterpret_cast<PGParticle *>(out));
    *count = n;
}

VODREL_API void GetPGroupInfoC(char const *name, int *nOrig, int *geometry, float *header2, float *header1)
{
    ParticleGroup particles(0);
    load(particles, name, 0, 0);
    tell(nOrig, particles.nOrigParticles());
    tell(geometry, particles.Geometry());
    tell(header2, particles.header2);
    tell(header1, particles.header1);
}

VODREL_API void SetPGroupC(char const *name, int count, int geometry, float header2, float header1, float const *data)
{
    ParticleGroup particles = particlesOf(count, geometry, header2, header1, data);
    store(particles, name);
}

VODREL_API void AppendPGroupC(char const *name, int count, int geometry, float header2, float header1,
                              float const *data)
{
    ParticleGroup particles = particlesOf(count, geometry, header2, header1, data);
    particles.Scale();
    DString const file = Expt.GetDataFileName(name);
    if (~file) particles.Append(file);
}

VODREL_API float GetScalarDataC(char const *name)
{
    return Expt.GetScalarData(name, nullptr);
}

VODREL_API void GetScalarDataSafeC(char const *expr, int *len, char *buf)
{
    if (!len) return;
    deliver(*len < anyRoom ? DString(Expt.GetScalarData(expr, nullptr)) : withValues(expr), len, buf);
}

VODREL_API void SetScalarDataC(char const *name, float value)
{
    Expt.SetScalarData(name, value);
}

VODREL_API int GetNodesC(int n)
{
    DStringArray nodes;
    GetNodes(nodes, n);
    return n;
}
