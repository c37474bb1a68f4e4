// Preset.h: a named setup of the mix, as it is kept.
#pragma once

#include "effects/FXParams.h"
#include "presets/Uuid.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// One source of a kept setup, under keys that outlive a launch: process and device ids do not.
struct PresetSource {
    enum class Kind { app, device, deviceChannels };

    Kind kind{};
    std::string name{};                     ///< display name when it was saved
    std::optional<std::string> bundleID{};  ///< app: identifier, or "pid." and the process id
    std::optional<std::string> deviceUID{}; ///< device, deviceChannels
    std::optional<std::int64_t> first{};    ///< deviceChannels: first channel, 1-based
    std::optional<std::int64_t> count{};    ///< deviceChannels
    float gain{1.0F};                       ///< linear
    std::optional<FXParams> fx{};           ///< none = effects off

    bool operator==(const PresetSource&) const = default;
};

/// A plain value; its identity is `id`.
struct Preset {
    Uuid id{};
    std::string name{};                  ///< given by the user, unique within the store
    std::vector<PresetSource> sources{}; ///< in mix order, the first is the primary one
    float headphoneVolume{1.0F};         ///< linear
    float streamVolume{1.0F};            ///< linear

    bool operator==(const Preset&) const = default;
};

} // namespace velmora
