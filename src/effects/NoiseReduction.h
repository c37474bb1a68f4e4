// NoiseReduction.h: lowers steady noise between words.
#pragma once

#include "effects/BiquadLanes.h"

#include <span>

namespace velmora {

/// A downward expander in three bands (split at 400 and 3000 Hz), each following its own noise
/// floor. Full gain from 2.5 times the floor on, a square law below it, down to -18.4 dB.
///
/// Threads: audio only.
class NoiseReduction {
public:
    /// @param isOn  off keeps filters and coefficients as they are
    void retune(bool isOn, double sampleRate);
    void reset() noexcept;
    [[nodiscard]] bool isOn() const noexcept { return isOn_; }
    /// Shape: interleaved stereo, in place. Real-time: yes.
    void process(std::span<float> samples, Check check = Check::everyFrame) noexcept;
    [[nodiscard]] bool isFinite() const noexcept;

private:
    static constexpr float initialFloor = 0.001F; // linear, -60 dBFS

    /// Lanes: low, mid, high; the last one repeats mid.
    struct Bands {
        Lanes envelope{};
        Lanes floor{initialFloor, initialFloor, initialFloor, initialFloor};
        Lanes gain{1, 1, 1, 1};
    };

    template <Check check>
    void follow(Bands& bands, Lanes level) const noexcept;
    template <Check check>
    void run(std::span<float> samples) noexcept;

    BiquadLanes split_; // the low-pass is the lower pair, the high-pass the upper one
    Bands bands_;
    Lanes attack_{};
    Lanes release_{};
    Lanes floorRise_{};
    bool isOn_{false};
};

} // namespace velmora
