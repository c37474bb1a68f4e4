// ProblemText.h: everything that is wrong now, as lines for the user.
#pragma once

#include <span>
#include <string>

namespace velmora {

class AppSettings;
class AudioEngine;
struct StoreProblem;

/// In the user's language: what the engine lacks, then the settings file. Empty when all is well.
///
/// Threads: main.
[[nodiscard]] std::string problemText(const AudioEngine& engine,
                                      std::span<const StoreProblem> storeProblems,
                                      const AppSettings& settings);

} // namespace velmora
