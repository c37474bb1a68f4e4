#include "platform/simulated/Waveform.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace velmora {

Waveform sine(double frequencyHz, float level, double rateHz) {
    return [=](std::int64_t frame, std::size_t) {
        // The whole periods are taken off first, so that a late frame is as exact as an early one.
        const double periods = std::fmod(static_cast<double>(frame) * frequencyHz / rateHz, 1.0);
        return level * static_cast<float>(std::sin(2.0 * std::numbers::pi * periods));
    };
}

Waveform constant(float value) {
    return [=](std::int64_t, std::size_t) { return value; };
}

Waveform silence() {
    return constant(0.0F);
}

Waveform stereo(Waveform left, Waveform right) {
    return [left = std::move(left), right = std::move(right)](std::int64_t frame,
                                                              std::size_t channel) {
        if (channel > 1) {
            return 0.0F;
        }
        return channel == 0 ? left(frame, channel) : right(frame, channel);
    };
}

Waveform channelNumbers(float step) {
    return
        [=](std::int64_t, std::size_t channel) { return static_cast<float>(channel + 1) * step; };
}

Waveform withSample(Waveform base, std::int64_t frame, float value) {
    return [base = std::move(base), frame, value](std::int64_t at, std::size_t channel) {
        return at == frame ? value : base(at, channel);
    };
}

} // namespace velmora
