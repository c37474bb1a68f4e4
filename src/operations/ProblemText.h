// ProblemText.h: everything that is wrong now, as lines for the user.
#pragma once

#include "engine/Problem.h"

#include <span>
#include <string>

namespace velmora {

class AppSettings;
class AudioEngine;
struct StoreProblem;

/// In the user's language: what the engine lacks, then the settings file, then the presets. Empty
/// when all is well.
///
/// Threads: main.
[[nodiscard]] std::string problemText(const AudioEngine& engine,
                                      std::span<const StoreProblem> storeProblems,
                                      const AppSettings& settings,
                                      std::span<const Problem> presetProblems = {});

} // namespace velmora
