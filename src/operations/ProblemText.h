// ProblemText.h: everything that is wrong now, as lines for the user.
#pragma once

#include "engine/Problem.h"

#include <span>
#include <string>
#include <vector>

namespace velmora {

class AppSettings;
class AudioEngine;
class PresetStore;
struct StoreProblem;

/// In the user's language: what the engine lacks, then the settings file, then the presets. Empty
/// when all is well.
///
/// Threads: main.
[[nodiscard]] std::string problemText(const AudioEngine& engine,
                                      std::span<const StoreProblem> storeProblems,
                                      const AppSettings& settings,
                                      std::span<const Problem> presetProblems = {});

/// Presets that were set aside, as long as the user has not put that away.
[[nodiscard]] std::vector<Problem> presetProblems(const PresetStore& presets);

} // namespace velmora
