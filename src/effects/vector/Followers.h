// Followers.h: one-pole followers, of one float or of four at a time.
#pragma once

#include "effects/SampleMath.h"
#include "effects/vector/Check.h"
#include "effects/vector/Lanes.h"

namespace velmora {

/// One step towards `target`; a state that would leave the finite numbers returns to `reset`.
///
/// `Value` is float or Lanes. Formula: x += (t - x) * a
template <Check check, typename Value>
[[nodiscard]] Value follow(Value state, Value target, Value coefficient, Value reset) noexcept {
    const Value next = state + (target - state) * coefficient;
    return check == Check::everyFrame ? finiteOr(next, reset) : next;
}

/// The same, `fast` upwards and `slow` downwards: of both steps the larger one is right either way.
template <Check check, typename Value>
[[nodiscard]] Value
followFastUp(Value state, Value target, Value fast, Value slow, Value reset) noexcept {
    const Value distance = target - state;
    const Value next = state + maxFirst(distance * slow, distance * fast);
    return check == Check::everyFrame ? finiteOr(next, reset) : next;
}

/// `fast` downwards and `slow` upwards.
template <Check check, typename Value>
[[nodiscard]] Value
followFastDown(Value state, Value target, Value fast, Value slow, Value reset) noexcept {
    const Value distance = target - state;
    const Value next = state + minFirst(distance * slow, distance * fast);
    return check == Check::everyFrame ? finiteOr(next, reset) : next;
}

} // namespace velmora
