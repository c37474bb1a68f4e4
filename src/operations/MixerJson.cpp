#include "operations/MixerJson.h"

#include "operations/EffectWords.h"
#include "operations/MuteToggle.h"
#include "operations/Numbers.h"

#include <cmath>
#include <cstddef>
#include <nlohmann/json.hpp>

namespace velmora {

namespace {

using Json = nlohmann::ordered_json;

std::string text(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json level(float gain) {
    const double db = dbFromGain(gain);
    return std::isfinite(db) ? Json(db) : Json(nullptr);
}

Json fader(float gain) {
    return {{"db", level(gain)}, {"muted", isMutedGain(gain)}};
}

Json effects(const FXParams& params) {
    Json values = Json::object();
    for (const auto& [name, value] : effectValues(params)) {
        values[name] = value;
    }
    return values;
}

Json sources(const MixerState& state) {
    Json list = Json::array();
    for (const SourceState& source : state.sources) {
        list.push_back({{"number", list.size() + 1},
                        {"id", source.id},
                        {"name", source.name},
                        {"kind", source.kind},
                        {"db", level(source.gain)},
                        {"muted", isMutedGain(source.gain)},
                        {"silenced", source.isSilenced},
                        {"effects", effects(source.effects)}});
    }
    return list;
}

} // namespace

std::string stateJson(const MixerState& state) {
    Json microphone = fader(state.microphone);
    microphone["closed"] = state.isMicrophoneClosed;
    return text({{"running", state.isRunning},
                 {"bypassed", state.isBypassed},
                 {"blockFrames", state.blocks.frames},
                 {"missedBlocks", state.blocks.missedLastMinute},
                 {"microphone", microphone},
                 {"headphones", fader(state.headphones)},
                 {"monitor", state.monitor},
                 {"preset", state.preset ? Json(*state.preset) : Json(nullptr)},
                 {"sources", sources(state)},
                 {"problems", Json(state.problems)}});
}

std::string sourcesJson(const MixerState& state) {
    return text(sources(state));
}

std::string effectsJson(const FXParams& params) {
    return text(effects(params));
}

std::string availableJson(std::span<const OfferedSource> offered) {
    Json list = Json::array();
    for (const auto& [source, name, isPlaying] : offered) {
        list.push_back({{"number", list.size() + 1},
                        {"id", source.id()},
                        {"name", name},
                        {"kind", kindOf(source)},
                        {"playing", isPlaying}});
    }
    return text(list);
}

std::string monitorsJson(std::span<const MonitorOffer> offers) {
    Json list = Json::array();
    for (const MonitorOffer& offer : offers) {
        list.push_back({{"number", list.size() + 1},
                        {"id", offer.tag},
                        {"name", offer.name},
                        {"chosen", offer.isChosen}});
    }
    return text(list);
}

std::string presetsJson(const MixerState& state) {
    Json list = Json::array();
    for (const std::string& name : state.presets) {
        list.push_back(
            {{"number", list.size() + 1}, {"name", name}, {"active", name == state.preset}});
    }
    return text(list);
}

std::string namesJson(std::span<const std::string> names) {
    return text(Json(names));
}

std::string levelsJson(float level, const std::map<std::string, float>& levels) {
    return text({{"level", level}, {"sources", Json(levels)}});
}

} // namespace velmora
