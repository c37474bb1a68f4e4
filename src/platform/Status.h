// Status.h: the number with which the audio layer answers a request that it can refuse.
#pragma once

#include <cstdint>
#include <expected>

namespace velmora {

/// 0 = success; anything else is the platform's own code (a negative errno on PipeWire).
using Status = std::int32_t;

inline constexpr Status statusOk = 0;

/// The result of a request: a value, or the status of the refusal.
template <typename T>
using StatusOr = std::expected<T, Status>;

} // namespace velmora
