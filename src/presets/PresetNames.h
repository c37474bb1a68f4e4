// PresetNames.h: names that are still free.
#pragma once

#include "presets/Preset.h"

#include <span>
#include <string>
#include <string_view>

namespace velmora {

/// `wanted` when none of the presets has exactly this name, else "Name (2)", "Name (3)" and so on;
/// a number that `wanted` ends with counts on.
[[nodiscard]] std::string freePresetName(std::span<const Preset> presets, std::string_view wanted);

} // namespace velmora
