#include "engine/BlockSize.h"

#include <algorithm>

namespace velmora {

void BlockSize::see(std::uint64_t missedBlocks, Time passed) {
    if (settling_ > Time::zero()) {
        settling_ -= passed;
        return;
    }
    if (missedBlocks > 0) {
        calm_ = {};
        grow();
        return;
    }
    calm_ += passed;
    if (isTry_ && calm_ >= provenAfter) {
        isTry_ = false;
        hasTried_ = false;
        waits_.restart();
        wait_ = shortestWait;
    }
    if (calm_ >= wait_) {
        shrink();
    }
}

void BlockSize::beginAtLargest() {
    frames_ = largest;
    isTry_ = false;
    calm_ = {};
}

void BlockSize::grow() {
    if (frames_ == largest) {
        return;
    }
    if (hasTried_) {
        wait_ = waits_.next();
    }
    frames_ *= 2;
    isTry_ = false;
    settle();
}

void BlockSize::shrink() {
    if (frames_ == smallest) {
        return;
    }
    frames_ /= 2;
    isTry_ = true;
    hasTried_ = true;
    calm_ = {};
    // The next step down, should this one hold, need not wait as long as this one had to.
    wait_ = std::max(shortestWait, wait_ / 8);
    settle();
}

} // namespace velmora
