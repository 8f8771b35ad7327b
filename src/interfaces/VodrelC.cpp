#include "interfaces/VodrelC.h"

#include <cstring>

#include "core/Log.h"
#include "core/StartUp.h"
#include "data/Waveform.h"
#include "experiment/Experiment.h"
#include "files/PathUtils.h"
#include "platform/Platform.h"

namespace {

char const *const loggingSuffix = "$L";
char const *const shotWord = "Shot";

/// The text-out rule: what fits into `*len` characters, without a NUL, and `*len` tells how many there are.
void deliver(DString text, int *len, char *buf)
{
    if (!len) return;
    if (text.Len() > *len) text.Truncate(*len);
    *len = text.Len();
    if (buf && text.Len() > 0) std::memcpy(buf, text.c_str(), static_cast<std::size_t>(text.Len()));
}

DString fromHost(char const *hostName)
{
    return DString(Platform::SystemPath(hostName).c_str());
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

/// Writes a scaled waveform. A name that leads nowhere is dropped, as a failed write is.
void store(Waveform &wave, char const *name)
{
    wave.Scale();
    DString const file = Expt.GetDataFileName(name);
    if (~file) wave.Write(file);
}

/// Reads `n` samples; the object stays empty if there is no such file.
void load(Waveform &wave, char const *name, int n)
{
    DString const file = Expt.GetDataFileName(name);
    if (~file) wave.Read(file, n);
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
    if (!out) return;
    for (int i = 0; i < n; ++i) out[i] = i < wave.npnts() ? wave[i] : 0.0f;
}

VODREL_API void GetWaveformInfoC(char const *name, int *n, float *start, float *step)
{
    Waveform wave;
    load(wave, name, 0);
    if (start) *start = wave.Start();
    if (step) *step = wave.timeStep;
    if (n) *n = wave.fileCount;
}

VODREL_API void SetWaveformC(char const *name, int n, float start, float step, float const *data)
{
    Waveform wave(n);
    wave.timeStep = step;
    wave.startTime = start;
    if (data) std::memcpy(wave.Data(), data, sizeof(float) * static_cast<std::size_t>(wave.npnts()));
    else wave.Zero();
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
