// LastingKey.h: how a source is known across launches, when its numbers have changed.
#pragma once

#include "engine/AudioSource.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace velmora {

class AudioDevices;

/// Which channels of a device.
struct ChannelRange {
    std::int64_t first{}; ///< 1-based
    std::int64_t count{};
};

/// Empty for an application without an identifier: it is known by nothing.
[[nodiscard]] std::string appKey(std::string_view bundleID);
[[nodiscard]] std::string deviceKey(std::string_view uid,
                                    std::optional<ChannelRange> range = std::nullopt);

/// Of a source as it is now; empty when its device cannot be read. Threads: main.
[[nodiscard]] std::string lastingKey(const AudioDevices& devices, const AudioSource& source);

} // namespace velmora
