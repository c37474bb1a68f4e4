// Tilt.h: makes a source brighter or darker.
#pragma once

#include "effects/FXParams.h"
#include "effects/vector/Steps.h"
#include "effects/vector/StereoSection.h"

namespace velmora {

/// A low shelf at 250 Hz and a high shelf at 3500 Hz that move in opposite directions.
///
/// Threads: audio only.
class Tilt {
public:
    /// A tilt of -1 … +1 makes -4.5 … +4.5 dB of the highs. Off keeps the filters as they are.
    void retune(const FXParams& params, double sampleRate);
    void reset() noexcept;
    [[nodiscard]] bool isOn() const noexcept { return isOn_; }
    [[nodiscard]] bool isFinite() const noexcept {
        return lowShelf_.isFinite() && highShelf_.isFinite();
    }

    static constexpr std::size_t steps = 2;
    template <Check check, std::size_t step>
    void run(const QuadPlace& place) noexcept {
        StereoSection& shelf = step == 0 ? lowShelf_ : highShelf_;
        storeQuad(place.samples, shelf.process<check>(loadQuad(place.samples), place.frames));
    }

private:
    StereoSection lowShelf_;
    StereoSection highShelf_;
    bool isOn_{false};
};

} // namespace velmora
