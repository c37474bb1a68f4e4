// NoiseReduction.h: lowers steady noise between words.
#pragma once

#include "effects/BiquadPair.h"

#include <array>
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
    void process(std::span<float> samples) noexcept;

private:
    static constexpr float initialFloor = 0.001F; // linear, -60 dBFS

    struct Band {
        float envelope{0};
        float floor{initialFloor};
        float gain{1};
    };
    void follow(Band& band, float level) noexcept;

    BiquadPair lowPass_;
    BiquadPair highPass_;
    std::array<Band, 3> bands_; // low, mid, high
    float attack_{0};
    float release_{0};
    float floorRise_{0};
    bool isOn_{false};
};

} // namespace velmora
