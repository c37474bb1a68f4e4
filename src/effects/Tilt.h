// Tilt.h: makes a source brighter or darker.
#pragma once

#include "effects/BiquadPair.h"

#include <span>

namespace velmora {

/// A low shelf at 250 Hz and a high shelf at 3500 Hz that move in opposite directions.
///
/// Threads: audio only.
class Tilt {
public:
    /// @param tilt  -1 … +1 for -4.5 … +4.5 dB of the highs; off up to a magnitude of 0.01
    void retune(float tilt, double sampleRate);
    void reset() noexcept;
    [[nodiscard]] bool isOn() const noexcept { return isOn_; }
    /// Shape: interleaved stereo, in place. Real-time: yes.
    void process(std::span<float> samples) noexcept;

private:
    BiquadPair lowShelf_;
    BiquadPair highShelf_;
    bool isOn_{false};
};

} // namespace velmora
