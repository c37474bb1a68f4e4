// Prediction.h: what a source's gain and effects make of a tone, computed without the mixer.
#pragma once

#include "effects/FXParams.h"
#include "support/ToneAnalysis.h"

#include <vector>

namespace velmora::support {

/// The level of each channel's tone, in dB, after it has gone through a source with this gain and
/// these effects for `seconds`.
[[nodiscard]] std::vector<double>
predictedDb(const Tone& tone, double gainDb, const FXParams& fx, double seconds);

} // namespace velmora::support
