// MixerText.h: what a person reads of the mixer on a terminal.
#pragma once

#include "operations/MixerControl.h"
#include "operations/MixerState.h"

#include <map>
#include <span>
#include <string>
#include <vector>

namespace velmora {

class AppSettings;

// In the user's language, whole lines, each with its line break. Numbers are written as commands
// take them.

[[nodiscard]] std::string stateText(const MixerState& state, const AppSettings& settings);
[[nodiscard]] std::string sourcesText(const MixerState& state, const AppSettings& settings);
[[nodiscard]] std::string effectsText(const FXParams& effects);
[[nodiscard]] std::string availableText(std::span<const OfferedSource> offered,
                                        const AppSettings& settings);
[[nodiscard]] std::string monitorsText(std::span<const MonitorOffer> offers);
[[nodiscard]] std::string presetsText(const MixerState& state);
/// A line each.
[[nodiscard]] std::string namesText(std::span<const std::string> names);
/// @param levels  linear peaks by source id
[[nodiscard]] std::string levelsText(const MixerState& state,
                                     const std::map<std::string, float>& levels);

/// How sound comes, as one line without line break; empty while the mix is stopped.
[[nodiscard]] std::string blocksText(const BlockStatus& blocks, const AppSettings& settings);

/// A line, without line break, for everything that differs.
[[nodiscard]] std::vector<std::string>
changeLines(const MixerState& before, const MixerState& after, const AppSettings& settings);

} // namespace velmora
