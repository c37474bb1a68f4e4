// MixerJson.h: what a program reads of the mixer.
#pragma once

#include "operations/MixerControl.h"
#include "operations/MixerState.h"

#include <map>
#include <span>
#include <string>

namespace velmora {

// One JSON document on one line, without a line break. Members may be added later, none goes or
// changes its kind. A byte that is not UTF-8 becomes U+FFFD; the level of silence is null.

/// {"running", "bypassed", "microphone": {"db", "muted"}, "headphones": the same, "monitor",
/// "preset" (null = none), "sources", "problems"}
[[nodiscard]] std::string stateJson(const MixerState& state);

/// An array of {"number", "id", "name", "kind", "db", "muted", "silenced", "effects"}
[[nodiscard]] std::string sourcesJson(const MixerState& state);

/// An object: the effects' names and values, as the command takes them
[[nodiscard]] std::string effectsJson(const FXParams& effects);

/// An array of {"number", "id", "name", "kind", "playing"}
[[nodiscard]] std::string availableJson(std::span<const OfferedSource> offered);

/// An array of {"number", "id", "name", "chosen"}
[[nodiscard]] std::string monitorsJson(std::span<const MonitorOffer> offers);

/// An array of {"number", "name", "active"}
[[nodiscard]] std::string presetsJson(const MixerState& state);

/// An array of texts
[[nodiscard]] std::string namesJson(std::span<const std::string> names);

/// {"level", "sources": {id: level}}. @param levels  linear peaks by source id
[[nodiscard]] std::string levelsJson(float level, const std::map<std::string, float>& levels);

} // namespace velmora
