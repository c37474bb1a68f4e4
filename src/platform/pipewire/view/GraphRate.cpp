#include "platform/pipewire/view/GraphRate.h"

#include <utility>

namespace velmora::pipewire {

void GraphRate::configure(double hz) {
    const bool isNews = std::exchange(configured_, hz) != hz;
    if (isNews && measured_ == 0) {
        hz_ = hz;
    }
}

void GraphRate::measure(std::uint32_t hz) {
    const bool isSteady = std::exchange(measured_, hz) == hz;
    if (isSteady && hz != 0) {
        hz_ = hz;
    }
}

void GraphRate::stopMeasuring() {
    measured_ = 0;
}

} // namespace velmora::pipewire
