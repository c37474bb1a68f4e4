// UnitSetup.h: what opening an output and opening an input have in common.
#pragma once

#include "engine/VelmoraError.h"
#include "platform/Status.h"

#include <cstdint>
#include <string_view>

namespace velmora {

/// What every device is asked for, to keep the latency low. A wish: it may keep its own size.
inline constexpr std::uint32_t requestedBlockFrames = 128;

/// A refusal becomes an error of the engine: the sentence and the status.
inline void throwIfRefused(Status status, std::string_view sentence) {
    if (status != statusOk) {
        throw VelmoraError::engine(withStatus(sentence, status));
    }
}

/// A null unit means that the platform has none to give.
template <typename UnitPointer>
[[nodiscard]] UnitPointer unitOrThrow(UnitPointer unit) {
    if (!unit) {
        throw VelmoraError::engine("Unité audio indisponible");
    }
    return unit;
}

} // namespace velmora
