#include "operations/MixerState.h"

#include "engine/AudioEngine.h"
#include "operations/ChannelChoices.h"
#include "operations/ProblemText.h"
#include "platform/DefaultsStore.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"

#include <sstream>

namespace velmora {

namespace {

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace

std::string_view kindOf(const AudioSource& source) {
    if (source.app() != nullptr) {
        return "application";
    }
    return source.device() != nullptr ? "device" : "channels";
}

MixerState stateOf(const MixerParts& parts) {
    const AudioEngine& engine = parts.engine;
    MixerState state{.isRunning = engine.isRunning(),
                     .isBypassed = engine.fxBypassed(),
                     .blocks = engine.blocks(),
                     .microphone = engine.streamVolume(),
                     .isMicrophoneClosed = engine.isMicrophoneClosed(),
                     .headphones = engine.headphoneVolume(),
                     .monitor = engine.monitoringSelection().value_or(""),
                     .problems = linesOf(problemText(engine,
                                                     parts.platform.defaults.problems(),
                                                     parts.settings,
                                                     presetProblems(parts.presets)))};
    if (const auto* const active = parts.presets.active()) {
        state.preset = active->name;
    }
    for (const Preset& preset : parts.presets.presets()) {
        state.presets.push_back(preset.name);
    }
    for (const AudioSource& source : engine.sources()) {
        state.sources.push_back({.id = source.id(),
                                 .name = shownName(source, parts.settings),
                                 .kind = kindOf(source),
                                 .gain = engine.gain(source),
                                 .isSilenced = engine.isDirectMuted(source),
                                 .effects = engine.fx(source)});
    }
    return state;
}

} // namespace velmora
