#include "operations/ProblemText.h"

#include "engine/AudioEngine.h"
#include "platform/DefaultsStore.h"
#include "settings/AppSettings.h"

#include <algorithm>
#include <iterator>

namespace velmora {
std::string problemText(const AudioEngine& engine,
                        std::span<const StoreProblem> storeProblems,
                        const AppSettings& settings,
                        std::span<const Problem> presetProblems) {
    auto problems = engine.problems();
    std::ranges::transform(storeProblems, std::back_inserter(problems), problemOf);
    problems.insert(problems.end(), presetProblems.begin(), presetProblems.end());
    return sentences(problems, [&](std::string_view french) { return settings.t(french); });
}

} // namespace velmora
