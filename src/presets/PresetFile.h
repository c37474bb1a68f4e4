// PresetFile.h: presets as a file that people carry from one machine to another.
#pragma once

#include "presets/Preset.h"

#include <cstddef>
#include <expected>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// Why a file's presets are not taken.
enum class PresetFileFault {
    unreadable, ///< another kind of file, or damaged
    newer,      ///< written by a later version, in a way that this one does not know
};

/// No file with presets comes near this. Bytes.
inline constexpr std::size_t largestPresetFile = 16 * 1024 * 1024;

/// JSON for people to read: the format's name, its version, and the presets as they are kept.
/// Errors: none when a number is not finite, because JSON has no form for it.
[[nodiscard]] std::optional<std::string> encodePresetFile(std::span<const Preset> presets);

/// The presets of a file that a conforming writer may have written, at least one. They have the ids
/// and names of the machine that wrote them.
/// Errors: nothing is taken of a file of which anything cannot be read.
[[nodiscard]] std::expected<std::vector<Preset>, PresetFileFault>
decodePresetFile(std::string_view text);

} // namespace velmora
