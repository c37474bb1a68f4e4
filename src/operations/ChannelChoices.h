// ChannelChoices.h: channels of an input device as sources, and what they are called.
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

/// The source's name, its range in the user's words. Threads: main.
[[nodiscard]] std::string shownName(const AudioSource& source, const AppSettings& settings);

} // namespace velmora
