// UnitSetup.h: what opening an output and opening an input have in common.
#pragma once

#include "engine/VelmoraError.h"
#include "platform/Status.h"

#include <cstdint>
#include <utility>

namespace velmora {

/// What every device is asked for, to keep the latency low. A wish: it may keep its own size.
inline constexpr std::uint32_t requestedBlockFrames = 128;

/// A refusal becomes an error: what was refused, with the status.
inline void throwIfRefused(Status status, Problem problem) {
    if (status != statusOk) {
        problem.status = status;
        throw VelmoraError(std::move(problem));
    }
}

/// A null unit means that the platform has none to give.
template <typename UnitPointer>
[[nodiscard]] UnitPointer unitOrThrow(UnitPointer unit) {
    if (!unit) {
        throw VelmoraError({.kind = Problem::Kind::noUnit});
    }
    return unit;
}

} // namespace velmora
