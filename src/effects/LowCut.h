// LowCut.h: removes rumble.
#pragma once

#include "effects/vector/Steps.h"
#include "effects/vector/StereoSection.h"

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
    void process(std::span<float> samples) noexcept;
    [[nodiscard]] bool isFinite() const noexcept { return highPass_.isFinite(); }

    static constexpr std::size_t steps = 1;
    template <Check check, std::size_t step>
    void run(const QuadPlace& place) noexcept {
        storeQuad(place.samples, highPass_.process<check>(loadQuad(place.samples), place.frames));
    }

private:
    StereoSection highPass_;
    bool isOn_{false};
};

} // namespace velmora
