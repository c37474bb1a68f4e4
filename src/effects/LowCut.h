// LowCut.h: removes rumble.
#pragma once

#include "effects/BiquadLanes.h"

#include <cstdint>
#include <span>

namespace velmora {

/// A high-pass at 75 or 150 Hz.
///
/// Threads: audio only.
class LowCut {
public:
    /// @param step  0 and below = off, 1 = 75 Hz, 2 and above = 150 Hz; off keeps the filter as is
    void retune(std::int64_t step, double sampleRate);
    void reset() noexcept { highPass_.clearHistory(); }
    [[nodiscard]] bool isOn() const noexcept { return isOn_; }
    /// Shape: interleaved stereo, in place. Real-time: yes.
    void process(std::span<float> samples, Check check = Check::everyFrame) noexcept;
    [[nodiscard]] bool isFinite() const noexcept { return highPass_.isFinite(); }

private:
    template <Check check>
    void run(std::span<float> samples) noexcept;

    BiquadLanes highPass_; // the lower pair
    bool isOn_{false};
};

} // namespace velmora
