/// Any bytes as a formula over a shot that has values, a trace, a matrix and particles, with and without a host's own
/// values.

#include <cstddef>
#include <cstdint>
#include <limits>

#include "FuzzExperiment.h"

namespace {

/// A host that knows "h", and a name that it gives no valid value.
bool lookUp(DString const &name, float &value)
{
    if (name == "bad") value = std::numeric_limits<float>::infinity();
    else if (name == "h") value = 0.5f;
    else return false;
    return true;
}

void ask(Experiment &experiment, DString const &formula, ScalarLookup lookup)
{
    // A trace in memory goes with the first formula that asks for it.
    if (!experiment.GetDataPtr("@V", DataWaveform))
        static_cast<Waveform *>(experiment.InitDataPtr("@V", DataWaveform))->Add(1);
    float const value = experiment.GetScalarData(formula, lookup);
    Require(IsVF(value) || value == -DFMax);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *bytes, std::size_t size)
{
    Experiment &experiment = FuzzExperiment::The().experiment;
    DString const formula = TextOf(bytes, size);
    ask(experiment, formula, nullptr);
    ask(experiment, formula, lookUp);
    return 0;
}
