// InputDeviceInfo.h: one audio device in one direction.
#pragma once

#include "platform/AudioDevices.h"

#include <cstdint>
#include <string>

namespace velmora {

/// A plain value; serves for inputs and outputs alike.
struct InputDeviceInfo {
    AudioObjectID deviceID{};
    std::string name;
    std::int64_t channels{}; ///< in the listed direction; 0 when unknown
    bool isVirtual{};        ///< an input that is virtual or an aggregate; false for every output

    bool operator==(const InputDeviceInfo&) const = default;
};

} // namespace velmora
