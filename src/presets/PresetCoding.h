// PresetCoding.h: one preset as a part of a larger JSON document, for this folder's own files.
#pragma once

#include "presets/Preset.h"

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

namespace velmora {

// Errors: each throws a std::exception for what cannot be coded; see PresetJson.h for what that is.

/// The fields stand in the order of the types.
[[nodiscard]] nlohmann::ordered_json presetToJson(const Preset& preset);
[[nodiscard]] Preset presetFromJson(const nlohmann::json& object);

/// Text that nests deeper than 512 levels is refused.
[[nodiscard]] nlohmann::json parsedPresetText(std::string_view text);
/// @param indent  spaces for each level; -1 = everything in one line
[[nodiscard]] std::string presetText(const nlohmann::ordered_json& json, int indent);

} // namespace velmora
