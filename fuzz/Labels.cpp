/// Any bytes as a label or text with references to values and formulas of a shot.

#include <cstddef>
#include <cstdint>

#include "FuzzExperiment.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const *bytes, std::size_t size)
{
    Experiment &experiment = FuzzExperiment::The().experiment;
    DString const text = TextOf(bytes, size);
    DString const label = experiment.GetExpandedLabel(text);
    if (text.Find("![") == npos) Require(label == text);
    experiment.GetExpandedString(text, true);
    experiment.GetExpandedString(text, false);
    return 0;
}
