// LowCut.h: removes rumble.
#pragma once

#include "effects/FXParams.h"
#include "effects/vector/Steps.h"
#include "effects/vector/StereoSection.h"

namespace velmora {

/// A high-pass at 75 or 150 Hz.
///
/// Threads: audio only.
class LowCut {
public:
    /// Off keeps the filter as it is.
    void retune(const FXParams& params, double sampleRate);
    void reset() noexcept { highPass_.clearHistory(); }
    [[nodiscard]] bool isOn() const noexcept { return isOn_; }
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
