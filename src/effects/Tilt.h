// Tilt.h: makes a source brighter or darker.
#pragma once

#include "effects/BiquadLanes.h"

#include <span>

namespace velmora {

/// A low shelf at 250 Hz and a high shelf at 3500 Hz that move in opposite directions.
///
/// Threads: audio only.
class Tilt {
public:
    /// @param tilt  -1 … +1 for -4.5 … +4.5 dB of the highs; off up to a magnitude of 0.01
    void retune(float tilt, double sampleRate);
    void reset() noexcept { shelves_.clearHistory(); }
    [[nodiscard]] bool isOn() const noexcept { return isOn_; }
    /// Shape: interleaved stereo, in place. Real-time: yes.
    void process(std::span<float> samples, Check check = Check::everyFrame) noexcept;
    [[nodiscard]] bool isFinite() const noexcept { return shelves_.isFinite(); }

private:
    template <Check check>
    void run(std::span<float> samples) noexcept;

    BiquadLanes shelves_; // the low shelf is the lower pair, the high shelf the upper one
    bool isOn_{false};
};

} // namespace velmora
