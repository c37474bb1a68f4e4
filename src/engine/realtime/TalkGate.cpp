#include "engine/realtime/TalkGate.h"

#include <algorithm>
#include <cmath>

namespace velmora {

void TalkGate::begin(double sampleRate) noexcept {
    length_ = std::max<std::int64_t>(1, std::llround(sampleRate * fadeSeconds));
    position_ = isOpen_.load(std::memory_order_relaxed) ? length_ : 0;
}

void TalkGate::process(std::int64_t frames, std::span<float* const> channels) noexcept {
    const bool isOpening = isOpen_.load(std::memory_order_relaxed);
    const std::int64_t end = isOpening ? length_ : 0;
    std::int64_t frame = 0;
    for (; frame < frames && position_ != end; ++frame) {
        fade(frame, channels, isOpening);
    }
    if (isOpening) {
        return;
    }
    for (float* const channel : channels) {
        if (channel != nullptr) {
            std::fill(channel + frame, channel + frames, 0.0F);
        }
    }
}

void TalkGate::fade(std::int64_t frame, std::span<float* const> channels, bool isOpening) noexcept {
    position_ += isOpening ? 1 : -1;
    const float x = static_cast<float>(position_) / static_cast<float>(length_);
    const float gain = x * x * (3.0F - 2.0F * x);
    for (float* const channel : channels) {
        if (channel != nullptr) {
            channel[frame] *= gain;
        }
    }
}

} // namespace velmora
