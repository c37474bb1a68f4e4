#include "ui/control/ProblemText.h"

#include "engine/AudioEngine.h"
#include "settings/AppSettings.h"
#include "settings/ErrorText.h"
#include "settings/StoreProblemText.h"

#include <algorithm>

namespace velmora {

void ProblemText::add(const StoreProblem& problem) {
    const auto tellsTheSame = [&](const StoreProblem& told) {
        return told.kind == problem.kind && told.file == problem.file &&
               told.setAside == problem.setAside && told.status == problem.status;
    };
    if (std::ranges::none_of(storeProblems_, tellsTheSame)) {
        storeProblems_.push_back(problem);
    }
}

std::string ProblemText::text(const AudioEngine& engine, const AppSettings& settings) const {
    std::string lines;
    const auto add = [&lines](const std::string& line) {
        lines += (lines.empty() ? "" : "\n") + line;
    };
    if (engine.lastError()) {
        add(errorText(*engine.lastError(), settings));
    }
    for (const StoreProblem& problem : storeProblems_) {
        add(storeProblemText(problem, settings));
    }
    if (!audioReachable_ && engine.lastError() != AudioEngine::serviceAway) {
        add(settings.t(AudioEngine::serviceAway));
    }
    return lines;
}

} // namespace velmora
