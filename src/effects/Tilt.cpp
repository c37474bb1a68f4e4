#include "effects/Tilt.h"

#include <cmath>

namespace velmora {
namespace {

constexpr float leastTilt = 0.01F;
constexpr double gainDbAtFullTilt = 4.5;
constexpr double lowHz = 250.0;
constexpr double highHz = 3500.0;
constexpr LaneMask lowShelf{-1, -1, 0, 0};
constexpr LaneMask highShelf{0, 0, -1, -1};

} // namespace

void Tilt::retune(float tilt, double sampleRate) {
    isOn_ = std::abs(tilt) > leastTilt;
    if (isOn_) {
        const double gainDb = static_cast<double>(tilt) * gainDbAtFullTilt;
        shelves_.retune(0, Biquad::lowShelf(lowHz, -gainDb, sampleRate));
        shelves_.retune(1, Biquad::highShelf(highHz, gainDb, sampleRate));
    }
}

/// Both shelves work at once, the high shelf one frame behind: it takes what the low shelf gave
/// for the frame before. At its ends the block is closed, so that none of this shows outside.
template <Check check>
void Tilt::run(std::span<float> samples) noexcept {
    BiquadLanes shelves = shelves_;
    Lanes y = shelves.processOnly<check>(lowShelf, loadFrame(samples.data()));
    const std::size_t last = samples.size() - 2;
    for (std::size_t i = 0; i < last; i += 2) {
        y = shelves.process<check>(lowerOfBoth(loadFrame(&samples[i + 2]), y));
        storeFrame(&samples[i], upperTwice(y));
    }
    y = shelves.processOnly<check>(highShelf, lowerOfBoth(zeroLanes, y));
    storeFrame(&samples[last], upperTwice(y));
    shelves_ = shelves;
}

void Tilt::process(std::span<float> samples, Check check) noexcept {
    if (samples.size() < 2) {
        return;
    }
    check == Check::everyFrame ? run<Check::everyFrame>(samples) : run<Check::atTheEnd>(samples);
}

} // namespace velmora
