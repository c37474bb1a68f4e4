// ObjectIds.h: hands out the numbers under which the mixer knows devices, processes and taps.
#pragma once

#include "platform/AudioDevices.h"

#include <map>
#include <set>
#include <string>
#include <string_view>

namespace velmora::pipewire {

/// FNV-1a over the bytes, 32 bits wide.
[[nodiscard]] AudioObjectID hashName(std::string_view name) noexcept;

/// Numbers that are never 0 and never given twice.
///
/// A device's number comes from its name alone, so that the settings stored under it still fit
/// after a restart; only when two names meet in one number, the later device takes the next free
/// one. Everything else lives no longer than this program and is counted.
class ObjectIds {
public:
    using Hash = AudioObjectID (*)(std::string_view) noexcept;

    explicit ObjectIds(Hash hash = hashName) : hash_(hash) {}

    [[nodiscard]] AudioObjectID ofDevice(const std::string& uid);
    [[nodiscard]] AudioObjectID next();

private:
    Hash hash_;
    std::map<std::string, AudioObjectID> devices_;
    std::set<AudioObjectID> taken_; // by devices
    AudioObjectID last_ = 0;        // counted
};

} // namespace velmora::pipewire
