// UnitTarget.h: the device that an output or input unit was pointed at.
#pragma once

#include "platform/AudioDevices.h"
#include "platform/Status.h"
#include "platform/pipewire/Session.h"

#include <cstdint>
#include <optional>
#include <string>

namespace velmora::pipewire {

struct UnitTarget {
    AudioObjectID id{};
    std::string uid;
    std::uint32_t channels{}; ///< in the unit's direction, never 0
    std::uint32_t blockFrames{usualBlockFrames};
    double rateHz{};
    std::uint32_t epoch{}; ///< of the connection
};

/// Errors: the status when the device is not there or has no channels in this direction.
[[nodiscard]] StatusOr<UnitTarget> findTarget(Session& session, AudioObjectID id, Scope scope);

/// False once the connection is lost on which the unit was pointed at its device.
[[nodiscard]] bool isOfThisConnection(Session& session, const std::optional<UnitTarget>& target);

/// Looks again, because the device may have gone since the unit was pointed at it.
[[nodiscard]] Status
checkTarget(Session& session, const std::optional<UnitTarget>& target, Scope scope);

} // namespace velmora::pipewire
