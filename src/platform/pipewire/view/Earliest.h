// Earliest.h: the first of two moments, either of which may be missing.
#pragma once

#include <algorithm>
#include <optional>

namespace velmora::pipewire {

template <typename TimePoint>
[[nodiscard]] std::optional<TimePoint> earliest(std::optional<TimePoint> one,
                                                std::optional<TimePoint> other) {
    return one && other ? std::min(one, other) : (one ? one : other);
}

} // namespace velmora::pipewire
