// MuteGrace.h: how long an application stays silent once nobody asks for it any more.
#pragma once

#include "platform/AudioDevices.h"

#include <chrono>
#include <map>
#include <optional>
#include <set>

namespace velmora::pipewire {

/// A mix that is built anew closes its taps and opens them again. Whoever was silenced must not be
/// heard in between, so each is kept silent for a moment longer.
/// Threads: one at a time.
class MuteGrace {
public:
    using Clock = std::chrono::steady_clock;
    using Processes = std::set<AudioObjectID>;

    /// From when the main thread is free again: what it builds in one go has been built by then
    /// (see `Session::endMuteSoon`). Whoever switches the mute off waits so long to hear it, and
    /// should within half a second.
    static constexpr std::chrono::milliseconds lasts{150};

    /// To be called after every change of `wanted`: who is to be silent now.
    [[nodiscard]] Processes follow(const Processes& wanted, Clock::time_point now);
    /// When to come again; none while everyone is silent who was asked for, and nobody else.
    [[nodiscard]] std::optional<Clock::time_point> due() const;
    /// Nobody is silent any more.
    void clear() { until_.clear(); }

private:
    std::map<AudioObjectID, std::optional<Clock::time_point>> until_; // none = wanted
};

} // namespace velmora::pipewire
