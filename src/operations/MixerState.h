// MixerState.h: what is so now, as one value to show or to compare.
#pragma once

#include "effects/FXParams.h"
#include "engine/BlockStatus.h"
#include "operations/MixerParts.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class AudioSource;

struct SourceState {
    std::string id;
    std::string name;
    std::string_view kind{}; ///< see `kindOf`
    float gain{};            ///< linear
    bool isSilenced{};       ///< an application on its own output
    FXParams effects;

    bool operator==(const SourceState&) const = default;
};

struct MixerState {
    bool isRunning{};
    bool isBypassed{};
    BlockStatus blocks{};
    float microphone{};        ///< linear
    bool isMicrophoneClosed{}; ///< by push to talk
    float headphones{};        ///< linear
    std::string monitor{}; ///< see `AudioEngine::monitoringSelection`; empty = the default output
    std::optional<std::string> preset{}; ///< the active one's name
    std::vector<std::string> presets{};
    std::vector<SourceState> sources{};
    std::vector<std::string> problems{}; ///< sentences in the user's language

    bool operator==(const MixerState&) const = default;
};

/// "application", "device" or "channels"
[[nodiscard]] std::string_view kindOf(const AudioSource& source);

/// Levels are no part of it: they change all the time. Threads: main.
[[nodiscard]] MixerState stateOf(const MixerParts& parts);

} // namespace velmora
