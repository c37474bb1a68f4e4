// ProblemText.h: everything that is wrong now, as lines for the user.
#pragma once

#include "platform/DefaultsStore.h"

#include <string>
#include <vector>

namespace velmora {

class AppSettings;
class AudioEngine;

/// Threads: main.
class ProblemText {
public:
    /// Told again, a problem is still one line.
    void add(const StoreProblem& problem);
    void setAudioReachable(bool reachable) { audioReachable_ = reachable; }

    /// In the user's language: the engine's last error, the settings file, the audio service. Empty
    /// when all is well.
    [[nodiscard]] std::string text(const AudioEngine& engine, const AppSettings& settings) const;

private:
    std::vector<StoreProblem> storeProblems_;
    bool audioReachable_ = true;
};

} // namespace velmora
