#include "operations/ProblemText.h"

#include "engine/AudioEngine.h"
#include "platform/DefaultsStore.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

#include <algorithm>
#include <iterator>

namespace velmora {

std::vector<Problem> presetProblems(const PresetStore& presets) {
    std::vector<Problem> problems;
    const SetAsidePresets& setAside = presets.setAside();
    if (setAside.isNews() && setAside.hasUnreadable()) {
        problems.push_back({.kind = Problem::Kind::presetsUnreadable});
    }
    if (setAside.isNews() && !setAside.readable().empty()) {
        problems.push_back({.kind = Problem::Kind::presetsReadable});
    }
    return problems;
}

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
