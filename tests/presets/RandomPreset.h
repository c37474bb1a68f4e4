// RandomPreset.h: presets of random content for property tests.
#pragma once

#include "presets/Preset.h"

#include <random>
#include <string>

namespace velmora {

using Random = std::mt19937;

/// Of any finite value and magnitude, signed zeros and subnormals included.
[[nodiscard]] float randomFloat(Random& random);
[[nodiscard]] FXParams randomFX(Random& random);
/// Valid UTF-8 of up to `longest` characters, from every length of encoding, controls and quotes
/// included.
[[nodiscard]] std::string randomText(Random& random, int longest);
/// Any kind, with any subset of the optional fields.
[[nodiscard]] PresetSource randomSource(Random& random);
[[nodiscard]] Preset randomPreset(Random& random);

} // namespace velmora
