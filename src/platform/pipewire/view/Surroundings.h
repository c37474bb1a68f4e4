// Surroundings.h: all that a mix depends on, to be compared with what was told last.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/pipewire/view/Devices.h"

#include <cstdint>
#include <vector>

namespace velmora::pipewire {

struct Surroundings {
    bool isAvailable{};
    // Empty while the service does not answer.
    std::vector<Device> devices{};
    std::vector<AudioObjectID> processes{};
    double rateHz{};
    std::uint32_t deaths{}; ///< of nodes of ours, so far

    bool operator==(const Surroundings&) const = default;
};

} // namespace velmora::pipewire
