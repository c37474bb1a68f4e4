// TakeOver.h: keeps what was last shown, and tells when it no longer holds.
#pragma once

#include <utility>

namespace velmora {

/// Makes `now` the shown value; true when it differs from the one before.
template <typename T>
[[nodiscard]] bool takeOver(T& shown, T now) {
    if (shown == now) {
        return false;
    }
    shown = std::move(now);
    return true;
}

} // namespace velmora
