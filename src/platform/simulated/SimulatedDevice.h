// SimulatedDevice.h: one audio device of the simulated machine.
#pragma once

#include "platform/AudioDevices.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// What a device is, as a test describes it:
/// `sound.addDevice({.uid = "speakers", .name = "Speakers", .outputs = {2}})`.
struct SimulatedDevice {
    std::string uid;
    std::string name;
    std::vector<std::uint32_t> outputs{}; ///< channel count of each output stream
    std::vector<std::uint32_t> inputs{};  ///< channel count of each input stream
    bool isBluetooth{};
    Transport transport{Transport::other};
    double rateHz{48000.0};
    /// Given, the device comes up under this id; otherwise under one that its UID determines, so
    /// that it keeps its id when it is plugged in again.
    std::optional<AudioObjectID> id{};
};

} // namespace velmora
