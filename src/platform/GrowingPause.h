// GrowingPause.h: how long to wait before something is tried once more.
#pragma once

#include <algorithm>
#include <chrono>

namespace velmora {

/// Twice as long each time, so that what cannot succeed costs less and less.
class GrowingPause {
public:
    using Length = std::chrono::milliseconds;

    explicit GrowingPause(Length first, Length longest = Length::max() / 2)
        : first_(first), longest_(longest), next_(first) {}

    [[nodiscard]] Length next() {
        const Length pause = next_;
        next_ = std::min(2 * next_, longest_);
        return pause;
    }
    /// What `next` will give.
    [[nodiscard]] Length upcoming() const { return next_; }
    /// It has succeeded, or there is reason to hope: begins anew.
    void restart() { next_ = first_; }

private:
    Length first_;
    Length longest_;
    Length next_;
};

} // namespace velmora
