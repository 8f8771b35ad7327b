#include "interfaces/VodrelIDL.h"

#include "core/Log.h"
#include "core/StartUp.h"
#include "interfaces/HostData.h"

namespace {

enum Status { Success = 0, Failure = -1 };

/// True for a call with so many texts followed by so many numbers and arrays. An empty text may come as null.
bool isCall(int argc, void *argv[], int nTexts, int nNumbers)
{
    if (argc != nTexts + nNumbers || !argv) return false;
    for (int i = nTexts; i < argc; ++i) {
        if (!argv[i]) return false;
    }
    return true;
}

char const *textOf(void *argument)
{
    return static_cast<char const *>(argument);
}

float &floatOf(void *argument)
{
    return *static_cast<float *>(argument);
}

int &intOf(void *argument)
{
    return *static_cast<int *>(argument);
}

int failure(DString const &text)
{
    Message(text);
    return Failure;
}

int missingWaveform(char const *name)
{
    return failure(DString("Error reading waveform info for ") + name + " (most likely it does not exist)");
}

} // namespace

/// Unlike InitializeVodrelC it starts the core at each call, has no suffix that asks for lines about progress, and
/// leaves `ExternalInit` alone.
VODREL_API int InitializeVodrelIDL(int argc, void *argv[])
{
    if (!isCall(argc, argv, 2, 0)) return Failure;
    CoreInit(fromHost(textOf(argv[0])));
    SetNotify(&IDLNotifier);
    ClearLog();
    Log("Initialized by IDL at " + Now());
    Expt.SetExperimentFolder(fromHost(textOf(argv[1])));
    return Success;
}

VODREL_API int CreateShotIDL(int argc, void *argv[])
{
    if (!isCall(argc, argv, 1, 0)) return Failure;
    DString shot(textOf(argv[0]));
    if (Expt.CreateShot(shot, "", true) >= 0) return Success;
    return failure("Error creating shot (most likely it already exists and name did not have *)");
}

VODREL_API int SetShotIDL(int argc, void *argv[])
{
    if (!isCall(argc, argv, 1, 0)) return Failure;
    if (Expt.SetShot(textOf(argv[0]), -1)) return Success;
    return failure("Error setting shot (most likely it does not exist)");
}

VODREL_API int GetScalarIDL(int argc, void *argv[])
{
    if (!isCall(argc, argv, 1, 1)) return Failure;
    floatOf(argv[1]) = Expt.GetScalarData(textOf(argv[0]), nullptr);
    return Success;
}

VODREL_API int SetScalarIDL(int argc, void *argv[])
{
    if (!isCall(argc, argv, 1, 1)) return Failure;
    Expt.SetScalarData(textOf(argv[0]), floatOf(argv[1]));
    return Success;
}

VODREL_API int GetWaveformIDL(int argc, void *argv[])
{
    if (!isCall(argc, argv, 1, 4)) return Failure;
    char const *const name = textOf(argv[0]);
    int const n = intOf(argv[3]);
    Waveform wave(0);
    load(wave, name, -1);
    if (wave.npnts() == 0) return missingWaveform(name);
    wave.Align(n, floatOf(argv[1]), floatOf(argv[2]));
    copySamples(wave, n, &floatOf(argv[4]));
    return Success;
}

VODREL_API int GetWaveformInfoIDL(int argc, void *argv[])
{
    if (!isCall(argc, argv, 1, 3)) return Failure;
    char const *const name = textOf(argv[0]);
    Waveform wave(0);
    load(wave, name, 0);
    floatOf(argv[1]) = wave.Start();
    floatOf(argv[2]) = wave.timeStep;
    intOf(argv[3]) = wave.fileCount;
    return wave.fileCount == 0 ? missingWaveform(name) : Success;
}

VODREL_API int SetWaveformIDL(int argc, void *argv[])
{
    if (!isCall(argc, argv, 1, 4)) return Failure;
    Waveform wave = waveformOf(intOf(argv[3]), floatOf(argv[1]), floatOf(argv[2]), &floatOf(argv[4]));
    store(wave, textOf(argv[0]));
    return Success;
}
