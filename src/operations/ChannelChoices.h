// ChannelChoices.h: the pairs and single channels of an input device that can be a source.
#pragma once

#include "engine/AudioSource.h"

#include <string>
#include <vector>

namespace velmora {

class AppSettings;
struct InputDeviceInfo;

struct ChannelChoice {
    AudioSource source; ///< `DeviceChannelsSource`; its name says which device it is
    std::string label;  ///< the channels alone, in the user's language
};

/// Every pair of a device of more than two channels, then every channel; none of a mono device.
/// Threads: main.
[[nodiscard]] std::vector<ChannelChoice> channelChoices(const InputDeviceInfo& device,
                                                        const AppSettings& settings);

} // namespace velmora
