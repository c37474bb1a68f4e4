// NoiseReduction.h: lowers steady noise between words.
#pragma once

#include "effects/FXParams.h"
#include "effects/vector/BiquadLanes.h"
#include "effects/vector/Followers.h"
#include "effects/vector/Steps.h"

#include <array>

namespace velmora {

/// A downward expander in three bands (split at 400 and 3000 Hz), each following its own noise
/// floor. Full gain from 2.5 times the floor on, a square law below it, down to -18.4 dB.
///
/// Threads: audio only.
class NoiseReduction {
public:
    /// Off keeps filters and coefficients as they are.
    void retune(const FXParams& params, double sampleRate);
    void reset() noexcept;
    [[nodiscard]] bool isOn() const noexcept { return isOn_; }
    [[nodiscard]] bool isFinite() const noexcept;

    static constexpr std::size_t steps = 4;
    template <Check check, std::size_t step>
    void run(const QuadPlace& place) noexcept;

private:
    static constexpr float initialFloor = 0.001F; // linear, -60 dBFS
    static constexpr float lowestFloor = 0.00001F;
    static constexpr float openingRatio = 2.5F; // about 8 dB above the floor
    static constexpr float lowestReference = 0.0001F;
    static constexpr float lowestGain = 0.12F; // about -18.4 dB

    /// One frame, left and right twice over.
    struct Bands {
        Lanes lowAndHigh; // low left, low right, high left, high right
        Lanes mid;
    };

    template <Check check>
    [[nodiscard]] Bands split(Lanes frame) noexcept;
    [[nodiscard]] static Lanes louderChannel(const Bands& bands) noexcept;
    template <Check check>
    [[nodiscard]] Lanes targetGain(Lanes envelope) noexcept;
    [[nodiscard]] static Lanes mixed(const Bands& bands, Lanes gain) noexcept;

    template <Check check>
    void splitQuad(const QuadPlace& place) noexcept;
    template <Check check>
    void followLevels(std::size_t frames) noexcept;
    template <Check check>
    void followFloors(std::size_t frames) noexcept;
    template <Check check>
    void mixQuad(const QuadPlace& place) noexcept;

    BiquadLanes split_; // the low-pass is the lower pair, the high-pass the upper one
    // Lanes: low, mid, high; the last one repeats mid.
    Lanes envelope_{};
    Lanes floor_{initialFloor, initialFloor, initialFloor, initialFloor};
    Lanes gain_{1, 1, 1, 1};
    Lanes attack_{};
    Lanes release_{};
    Lanes floorRise_{};
    bool isOn_{false};

    // from step to step, frame by frame
    std::array<std::array<Bands, quadFrames>, quadSlots> bands_{};
    std::array<Lanes, quadFrames> levels_{};
    std::array<Lanes, quadFrames> envelopes_{};
    std::array<Lanes, quadFrames> targets_{};
};

template <Check check, std::size_t step>
void NoiseReduction::run(const QuadPlace& place) noexcept {
    if constexpr (step == 0) {
        splitQuad<check>(place);
    } else if constexpr (step == 1) {
        followLevels<check>(place.frames);
    } else if constexpr (step == 2) {
        followFloors<check>(place.frames);
    } else {
        mixQuad<check>(place);
    }
}

template <Check check>
NoiseReduction::Bands NoiseReduction::split(Lanes frame) noexcept {
    const Lanes lowAndHigh = split_.process<check>(frame);
    return {lowAndHigh, frame - lowAndHigh - upperTwice(lowAndHigh)};
}

/// The larger magnitude of left and right in each band.
inline Lanes NoiseReduction::louderChannel(const Bands& bands) noexcept {
    const Lanes splits = absolute(bands.lowAndHigh);
    const Lanes mids = absolute(bands.mid);
    return maxFirst(__builtin_shufflevector(splits, mids, 0, 4, 2, 4),
                    __builtin_shufflevector(splits, mids, 1, 5, 3, 5));
}

template <Check check>
void NoiseReduction::splitQuad(const QuadPlace& place) noexcept {
    const Quad x = loadQuad(place.samples);
    const std::array<Lanes, quadFrames> twice{lowerOfBoth(x.early, x.early),
                                              upperTwice(x.early),
                                              lowerOfBoth(x.late, x.late),
                                              upperTwice(x.late)};
    auto& bands = bands_[place.index % quadSlots];
    for (std::size_t i = 0; i < place.frames; ++i) {
        bands[i] = split<check>(twice[i]);
        levels_[i] = louderChannel(bands[i]);
    }
}

template <Check check>
void NoiseReduction::followLevels(std::size_t frames) noexcept {
    for (std::size_t i = 0; i < frames; ++i) {
        envelope_ = followFastUp<check>(envelope_, levels_[i], attack_, release_, zeroLanes);
        envelopes_[i] = envelope_;
    }
}

/// Moves the floor and says what gain the envelope deserves above it.
template <Check check>
Lanes NoiseReduction::targetGain(Lanes envelope) noexcept {
    const Lanes risen = follow<check>(floor_, envelope, floorRise_, allLanes(initialFloor));
    const Lanes fallen = maxFirst(envelope, allLanes(lowestFloor));
    floor_ = select(floor_ <= envelope, risen, fallen);

    const Lanes reference = maxFirst(allLanes(lowestReference), floor_ * openingRatio);
    const Lanes ratio = envelope / reference;
    // Also 1 wherever the ratio is 1 or more.
    return minFirst(allLanes(1.0F), maxFirst(ratio * ratio, allLanes(lowestGain)));
}

template <Check check>
void NoiseReduction::followFloors(std::size_t frames) noexcept {
    for (std::size_t i = 0; i < frames; ++i) {
        targets_[i] = targetGain<check>(envelopes_[i]);
    }
}

/// The sum of the bands, in the two lower lanes.
inline Lanes NoiseReduction::mixed(const Bands& bands, Lanes gain) noexcept {
    return bands.lowAndHigh * __builtin_shufflevector(gain, gain, 0, 0, 0, 0) +
           bands.mid * __builtin_shufflevector(gain, gain, 1, 1, 1, 1) +
           upperTwice(bands.lowAndHigh) * __builtin_shufflevector(gain, gain, 2, 2, 2, 2);
}

template <Check check>
void NoiseReduction::mixQuad(const QuadPlace& place) noexcept {
    const auto& bands = bands_[place.index % quadSlots];
    std::array<Lanes, quadFrames> y{};
    for (std::size_t i = 0; i < place.frames; ++i) {
        gain_ = followFastUp<check>(gain_, targets_[i], attack_, release_, allLanes(1.0F));
        y[i] = mixed(bands[i], gain_);
    }
    storeQuad(place.samples, {lowerOfBoth(y[0], y[1]), lowerOfBoth(y[2], y[3])});
}

} // namespace velmora
