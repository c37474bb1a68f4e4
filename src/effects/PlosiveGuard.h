// PlosiveGuard.h: softens the thump of a spoken p or b.
#pragma once

#include "effects/BiquadLanes.h"

#include <span>

namespace velmora {

/// Turns down what lies below 120 Hz, by up to 12 dB, while it outruns the slow average of the
/// whole signal by more than 10 % and is above about -30 dBFS.
///
/// Threads: audio only.
class PlosiveGuard {
public:
    /// @param isOn  off keeps filter and coefficients as they are
    void retune(bool isOn, double sampleRate);
    void reset() noexcept;
    [[nodiscard]] bool isOn() const noexcept { return isOn_; }
    /// Shape: interleaved stereo, in place. Real-time: yes.
    void process(std::span<float> samples, Check check = Check::everyFrame) noexcept;
    [[nodiscard]] bool isFinite() const noexcept;

private:
    template <Check check>
    void run(std::span<float> samples) noexcept;

    struct State {
        BiquadLanes lowPass; // the lower pair
        Lanes envelopes{};   // lane 0 the low band, lane 1 the whole signal
        Lanes gain{1, 1, 1, 1};
    };
    State state_;
    Lanes attack_{};
    Lanes release_{};
    bool isOn_{false};
};

} // namespace velmora
