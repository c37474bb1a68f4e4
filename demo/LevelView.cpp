#include "LevelView.h"

#include "MixerScreen.h"
#include "engine/AudioEngine.h"

#include <cmath>
#include <iostream>

namespace velmora::demo {
namespace {

MixerView viewOf(const AudioEngine& engine, int secondsLeft) {
    MixerView view{.title = "Velmora demonstration",
                   .state = std::to_string(secondsLeft) + " s left",
                   .strips = {},
                   .notices = {},
                   .footer = {}};
    for (const AudioSource& source : engine.sources()) {
        const auto level = engine.sourceLevels().find(source.id());
        view.strips.push_back({.name = source.name(),
                               .level = level == engine.sourceLevels().end() ? 0 : level->second,
                               .gain = engine.gain(source),
                               .directMuted = engine.isDirectMuted(source),
                               .hasEffects = !engine.fx(source).isNeutral(),
                               .selected = false});
    }
    if (engine.lastError()) {
        view.notices.push_back(*engine.lastError());
    }
    return view;
}

} // namespace

void LevelView::show(double secondsLeft) {
    constexpr int narrowBar = 12; // cells
    const int second = static_cast<int>(std::ceil(secondsLeft));
    const MixerView view = viewOf(engine_, second);
    if (terminal_.isInteractive()) {
        terminal_.draw(drawMixer(view, terminal_.columns(), /*colour=*/true));
    } else if (second != lastSecond_) {
        std::cout << fitted(view.state, narrowBar);
        for (const StripView& strip : view.strips) {
            std::cout << strip.name << " |" << levelBar(strip.level.value_or(0), narrowBar)
                      << "|  ";
        }
        std::cout << std::endl;
    }
    lastSecond_ = second;
}

} // namespace velmora::demo
