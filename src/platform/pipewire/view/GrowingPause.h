// GrowingPause.h: how long to wait before something is tried once more.
#pragma once

#include <chrono>

namespace velmora::pipewire {

/// Twice as long each time, so that what cannot succeed costs less and less.
class GrowingPause {
public:
    explicit GrowingPause(std::chrono::milliseconds first) : first_(first), next_(first) {}

    [[nodiscard]] std::chrono::milliseconds next() {
        const auto pause = next_;
        next_ *= 2;
        return pause;
    }
    /// It has succeeded, or there is reason to hope: begins anew.
    void restart() { next_ = first_; }

private:
    std::chrono::milliseconds first_;
    std::chrono::milliseconds next_;
};

} // namespace velmora::pipewire
