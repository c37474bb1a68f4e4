// Steps.h: takes sound through stages, several quads under way at once.
#pragma once

#include "effects/vector/Check.h"
#include "effects/vector/Quad.h"

#include <algorithm>
#include <limits>
#include <span>
#include <utility>

namespace velmora {

/// Where one step of a stage works.
struct QuadPlace {
    float* samples;     // a quad, in place
    std::size_t frames; // of them that are sound, 1 … 4
    std::size_t index;  // of the quad in its block
};

/// The longest stretch of sound that goes through the steps at once.
inline constexpr std::size_t blockFrames = 128;

/// A stage keeps what one of its steps leaves for a later one in as many slots.
inline constexpr std::size_t quadSlots = 4;

/// Some of a stage's steps, one after the other.
struct StepRange {
    std::size_t begin, end;

    [[nodiscard]] constexpr std::size_t count() const noexcept { return end - begin; }
};

/// A step that feeds back waits for itself on every frame, and a processor's list of waiting
/// instructions is too short to reach the next stage meanwhile. So the steps run one quad apart, in
/// waves: in each turn the last step goes first, on the quad that the one before it left a turn
/// ago. Thus nothing in a turn waits for anything else in it.
class Wave {
public:
    /// @param samples  interleaved stereo of whole quads, in place
    explicit Wave(std::span<float> samples)
        : samples_(samples.data()), quads_(samples.size() / quadSamples) {}

    /// Gives a stage's steps their places behind those before them, or none.
    [[nodiscard]] std::size_t lagOf(std::size_t steps, bool areIncluded) noexcept {
        return areIncluded ? std::exchange(lags_, lags_ + steps) : never;
    }

    [[nodiscard]] std::size_t turns() const noexcept { return quads_ + lags_; }

    /// One turn of a stage's steps; within a turn, the stages go from last to first.
    template <StepRange range, typename Stage>
    void run(Stage& stage, std::size_t turn, std::size_t lag) const noexcept {
        runSteps<range>(stage, turn - lag, std::make_index_sequence<range.count()>());
    }

private:
    // Far above any number of turns, and still so after a turn has been added.
    static constexpr std::size_t never = std::numeric_limits<std::size_t>::max() / 2;

    template <StepRange range, typename Stage, std::size_t... behind>
    void runSteps(Stage& stage, std::size_t first, std::index_sequence<behind...>) const noexcept {
        (runStep<range.end - 1 - behind>(stage, first - (range.count() - 1 - behind)), ...);
    }
    template <std::size_t step, typename Stage>
    void runStep(Stage& stage, std::size_t quad) const noexcept {
        if (quad < quads_) { // the number wraps far above while it is not the step's turn yet
            stage.template run<Check::atTheEnd, step>(
                {samples_ + quad * quadSamples, quadFrames, quad});
        }
    }

    float* samples_;
    std::size_t quads_;
    std::size_t lags_{0};
};

/// All steps on each quad before the next quad, with every frame checked. For any number of frames.
template <typename Stage>
void processEveryFrame(Stage& stage, std::span<float> samples) noexcept {
    const auto runAll = [&]<std::size_t... steps>(const QuadPlace& place,
                                                  std::index_sequence<steps...>) {
        (stage.template run<Check::everyFrame, steps>(place), ...);
    };
    constexpr auto steps = std::make_index_sequence<Stage::steps>();
    const std::size_t whole = samples.size() / quadSamples * quadSamples;
    for (std::size_t at = 0; at < whole; at += quadSamples) {
        runAll({&samples[at], quadFrames, 0}, steps);
    }
    const auto rest = samples.subspan(whole);
    if (rest.size() >= 2) {
        std::array<float, quadSamples> quad{};
        std::ranges::copy(rest, quad.begin());
        runAll({quad.data(), rest.size() / 2, 0}, steps);
        std::copy_n(quad.begin(), rest.size() / 2 * 2, rest.begin());
    }
}

} // namespace velmora
