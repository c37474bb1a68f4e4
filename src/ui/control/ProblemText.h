// ProblemText.h: everything that is wrong now, as lines for the user.
#pragma once

#include <span>
#include <string>

namespace velmora {

class AppSettings;
class AudioEngine;
struct StoreProblem;

/// Threads: main.
class ProblemText {
public:
    void setAudioReachable(bool reachable) { audioReachable_ = reachable; }

    /// In the user's language: the engine's last error, the settings file, the audio service. Empty
    /// when all is well.
    [[nodiscard]] std::string text(const AudioEngine& engine,
                                   std::span<const StoreProblem> storeProblems,
                                   const AppSettings& settings) const;

private:
    bool audioReachable_ = true;
};

} // namespace velmora
