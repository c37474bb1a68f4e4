#include "ui/control/ProblemText.h"

#include "engine/AudioEngine.h"
#include "platform/DefaultsStore.h"
#include "settings/AppSettings.h"
#include "settings/ErrorText.h"
#include "settings/StoreProblemText.h"

namespace velmora {

std::string ProblemText::text(const AudioEngine& engine,
                              std::span<const StoreProblem> storeProblems,
                              const AppSettings& settings) const {
    std::string lines;
    const auto add = [&lines](const std::string& line) {
        lines += (lines.empty() ? "" : "\n") + line;
    };
    if (engine.lastError()) {
        add(errorText(*engine.lastError(), settings));
    }
    for (const StoreProblem& problem : storeProblems) {
        add(storeProblemText(problem, settings));
    }
    if (!audioReachable_ && engine.lastError() != AudioEngine::serviceAway) {
        add(settings.t(AudioEngine::serviceAway));
    }
    return lines;
}

} // namespace velmora
