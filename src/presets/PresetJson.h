// PresetJson.h: presets as JSON text.
#pragma once

#include "presets/Preset.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// A JSON array with one object per preset. An optional field without a value is left out; an
/// invalid byte in a text becomes U+FFFD.
/// Errors: none when a number is not finite, because JSON has no form for it.
[[nodiscard]] std::optional<std::string> encodePresets(std::span<const Preset> presets);

/// Reads what any conforming writer may have written: unknown keys are passed over, an optional
/// field may be missing or null.
/// Errors: none when the text is not valid JSON in UTF-8, nests deeper than 512 levels, lacks a
/// required key, or holds a value of the wrong type, an unknown kind or a number out of range. One
/// bad preset makes the whole list unreadable.
[[nodiscard]] std::optional<std::vector<Preset>> decodePresets(std::string_view json);

} // namespace velmora
