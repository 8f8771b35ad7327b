#include "interfaces/HostData.h"

#include <algorithm>

#include "platform/Platform.h"

DString fromHost(char const *hostName)
{
    return DString(Platform::SystemPath(hostName).c_str());
}

Waveform waveformOf(int n, float start, float step, float const *data)
{
    Waveform wave(n);
    wave.timeStep = step;
    wave.startTime = start;
    if (data) std::copy_n(data, wave.npnts(), wave.Data());
    else wave.Zero();
    return wave;
}

void copySamples(Waveform const &wave, int n, float *out)
{
    if (!out) return;
    for (int i = 0; i < n; ++i) out[i] = i < wave.npnts() ? wave[i] : 0.0f;
}
