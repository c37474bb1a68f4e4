// NumberedWrites.h: an endless, known series of settings.
#pragma once

#include "platform/DefaultsStore.h"

#include <array>
#include <cstdint>
#include <string>
#include <utility>

namespace velmora {

/// The keys that the series goes round: a dragged fader, a gain map, a text and presets.
inline constexpr std::array numberedKeys{"number", "map", "string", "bytes"};

/// What the write of this number sets, and under which key.
inline std::pair<std::string, DefaultsValue> numberedWrite(std::uint64_t number) {
    const std::string key = numberedKeys.at(number % numberedKeys.size());
    const auto value = static_cast<double>(number);
    if (key == "number") {
        return {key, value};
    }
    if (key == "map") {
        return {key, NumberMap{{"dev-1", value}, {"dev-2", value}}};
    }
    if (key == "string") {
        return {key, std::to_string(number)};
    }
    return {key, Bytes(1000 + number % 8000, static_cast<std::uint8_t>(number % 251))};
}

} // namespace velmora
