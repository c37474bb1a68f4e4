#include "effects/NoiseReduction.h"

namespace velmora {
namespace {

constexpr double lowHz = 400.0;
constexpr double highHz = 3000.0;
constexpr double attackSeconds = 0.004;
constexpr double releaseSeconds = 0.12;
constexpr double floorRiseSeconds = 4.0;
constexpr float lowestFloor = 0.00001F;
constexpr float openingRatio = 2.5F; // about 8 dB above the floor
constexpr float lowestReference = 0.0001F;
constexpr float lowestGain = 0.12F; // about -18.4 dB

/// The larger magnitude of left and right in each band. `split` holds low left, low right, high
/// left and high right, `mid` the two of mid in its lower lanes.
Lanes louderChannel(Lanes split, Lanes mid) noexcept {
    const Lanes splits = absolute(split);
    const Lanes mids = absolute(mid);
    return maxFirst(__builtin_shufflevector(splits, mids, 0, 4, 2, 4),
                    __builtin_shufflevector(splits, mids, 1, 5, 3, 5));
}

} // namespace

void NoiseReduction::retune(bool isOn, double sampleRate) {
    isOn_ = isOn;
    if (isOn_) {
        split_.retune(0, Biquad::lowPass(lowHz, sampleRate));
        split_.retune(1, Biquad::highPass(highHz, sampleRate));
        attack_ = allLanes(followCoefficient(sampleRate, attackSeconds));
        release_ = allLanes(followCoefficient(sampleRate, releaseSeconds));
        floorRise_ = allLanes(followCoefficient(sampleRate, floorRiseSeconds));
    }
}

void NoiseReduction::reset() noexcept {
    split_.clearHistory();
    bands_ = {};
}

bool NoiseReduction::isFinite() const noexcept {
    return split_.isFinite() && allFinite(bands_.envelope) && allFinite(bands_.floor) &&
           allFinite(bands_.gain);
}

template <Check check>
void NoiseReduction::follow(Bands& bands, Lanes level) const noexcept {
    const Lanes rising = select(level > bands.envelope, attack_, release_);
    bands.envelope = velmora::follow<check>(bands.envelope, level, rising, zeroLanes);

    const Lanes risen =
        velmora::follow<check>(bands.floor, bands.envelope, floorRise_, allLanes(initialFloor));
    const Lanes fallen = maxFirst(bands.envelope, allLanes(lowestFloor));
    bands.floor = select(bands.floor <= bands.envelope, risen, fallen);

    const Lanes reference = maxFirst(allLanes(lowestReference), bands.floor * openingRatio);
    const Lanes ratio = bands.envelope / reference;
    const Lanes one = allLanes(1.0F);
    // Also 1 wherever the ratio is 1 or more.
    const Lanes target = minFirst(one, maxFirst(ratio * ratio, allLanes(lowestGain)));
    const Lanes opening = select(bands.gain < target, attack_, release_);
    bands.gain = velmora::follow<check>(bands.gain, target, opening, one);
}

template <Check check>
void NoiseReduction::run(std::span<float> samples) noexcept {
    BiquadLanes split = split_;
    Bands bands = bands_;
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        const Lanes frame = loadFrame(&samples[i]);
        const Lanes x = lowerOfBoth(frame, frame);
        const Lanes low = split.process<check>(x);
        const Lanes high = upperTwice(low);
        const Lanes mid = x - low - high;
        follow<check>(bands, louderChannel(low, mid));
        const Lanes gain = bands.gain;
        const Lanes y = low * __builtin_shufflevector(gain, gain, 0, 0, 0, 0) +
                        mid * __builtin_shufflevector(gain, gain, 1, 1, 1, 1) +
                        high * __builtin_shufflevector(gain, gain, 2, 2, 2, 2);
        storeFrame(&samples[i], y);
    }
    split_ = split;
    bands_ = bands;
}

void NoiseReduction::process(std::span<float> samples, Check check) noexcept {
    check == Check::everyFrame ? run<Check::everyFrame>(samples) : run<Check::atTheEnd>(samples);
}

} // namespace velmora
