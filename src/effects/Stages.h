// Stages.h: takes sound through a list of stages, each to be switched on and off.
#pragma once

#include "effects/FXParams.h"
#include "effects/vector/Steps.h"

#include <algorithm>
#include <array>
#include <concepts>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>

namespace velmora {

/// One effect: a plain value whose sound is made in steps, each on a quad that the step before it
/// has left. `run` is a template over the check and the step.
template <typename T>
concept Stage = std::is_trivially_copyable_v<T> &&
    requires(T stage, const T& constant, const FXParams& params, double sampleRate) {
    stage.retune(params, sampleRate); // also when the stage is off
    stage.reset();
    { constant.isOn() } -> std::same_as<bool>;
    { constant.isFinite() } -> std::same_as<bool>;
    { T::steps } -> std::convertible_to<std::size_t>;
};

/// A stage may have one step that `runBlock(frames)` does for a whole block at once; otherwise this
/// is the number behind its last one.
template <Stage T>
inline constexpr std::size_t blockStepOf = T::steps;
template <Stage T>
requires requires {
    T::blockStep;
}
inline constexpr std::size_t blockStepOf<T> = T::blockStep;

/// Stages in the order in which the sound goes through them; one that is off freezes. A plain
/// value, small enough to be kept while a block is tried.
///
/// Threads: audio only.
template <Stage... Each>
class Stages : Each... {
public:
    void retune(const FXParams& params, double sampleRate) {
        (Each::retune(params, sampleRate), ...);
    }
    void reset() noexcept { (Each::reset(), ...); }

    /// Nothing feeds back from a later stage, so that each may run ahead of the next one: this
    /// gives the same samples as going frame by frame. Shape: interleaved stereo, in place.
    /// Real-time: yes.
    void process(std::span<float> samples) noexcept;

private:
    static constexpr std::size_t blockSamples = 2 * blockFrames; // 1 KiB to keep and to repeat
    static constexpr auto numbers = std::index_sequence_for<Each...>();
    template <std::size_t number>
    using At = std::tuple_element_t<number, std::tuple<Each...>>;

    void tryBlock(std::span<float> samples) noexcept;
    void runChecked(std::span<float> samples) noexcept;

    // A wave takes a block through what follows the first `done` stages; the last of these has
    // still to do what comes after its block step.
    template <std::size_t done>
    void runBehind(std::span<float> samples) noexcept;
    template <std::size_t done>
    void runWave(std::span<float> samples) noexcept;
    template <std::size_t done, std::size_t... number>
    [[nodiscard]] auto lagsIn(Wave& wave, std::index_sequence<number...>) const noexcept;
    template <std::size_t done, std::size_t number>
    [[nodiscard]] static constexpr StepRange stepsInWave() noexcept;
    template <std::size_t number>
    [[nodiscard]] bool goOnFrom(std::span<float> samples) noexcept;
};

template <Stage... Each>
void Stages<Each...>::process(std::span<float> samples) noexcept {
    const std::size_t whole = samples.size() / quadSamples * quadSamples;
    for (std::size_t at = 0; at < whole; at += blockSamples) {
        tryBlock(samples.subspan(at, std::min(blockSamples, whole - at)));
    }
    runChecked(samples.subspan(whole));
}

template <Stage... Each>
void Stages<Each...>::tryBlock(std::span<float> samples) noexcept {
    static_assert(std::is_trivially_copyable_v<Stages>);
    const Stages before = *this;
    std::array<float, blockSamples> input;
    std::ranges::copy(samples, input.begin());
    runBehind<0>(samples);
    if (!(Each::isFinite() && ...)) {
        *this = before;
        std::copy_n(input.begin(), samples.size(), samples.begin());
        runChecked(samples);
    }
}

template <Stage... Each>
void Stages<Each...>::runChecked(std::span<float> samples) noexcept {
    const auto runIfOn = [samples](auto& stage) {
        if (stage.isOn()) {
            processEveryFrame(stage, samples);
        }
    };
    (runIfOn(static_cast<Each&>(*this)), ...);
}

/// One wave up to the first block step, that step, and what comes after it.
template <Stage... Each>
template <std::size_t done>
void Stages<Each...>::runBehind(std::span<float> samples) noexcept {
    runWave<done>(samples);
    [&]<std::size_t... number>(std::index_sequence<number...>) {
        (void)((number >= done && goOnFrom<number>(samples)) || ...);
    }
    (numbers);
}

template <Stage... Each>
template <std::size_t number>
bool Stages<Each...>::goOnFrom(std::span<float> samples) noexcept {
    if constexpr (blockStepOf<At<number>> < At<number>::steps) {
        if (At<number>::isOn()) {
            At<number>::runBlock(samples.size() / 2);
            runBehind<number + 1>(samples);
            return true;
        }
    }
    return false;
}

/// Flat, so that the steps of a turn lie side by side in one loop.
template <Stage... Each>
template <std::size_t done>
[[gnu::flatten]] void Stages<Each...>::runWave(std::span<float> samples) noexcept {
    Wave wave(samples);
    const auto lags = lagsIn<done>(wave, numbers);
    const auto runTurn = [&]<std::size_t... behind>(std::size_t turn,
                                                    std::index_sequence<behind...>) {
        constexpr std::size_t last = sizeof...(Each) - 1;
        (wave.run<stepsInWave<done, last - behind>()>(
             static_cast<At<last - behind>&>(*this), turn, lags[last - behind]),
         ...);
    };
    for (std::size_t turn = 0; turn < wave.turns(); ++turn) {
        runTurn(turn, numbers);
    }
}

template <Stage... Each>
template <std::size_t done, std::size_t... number>
auto Stages<Each...>::lagsIn(Wave& wave, std::index_sequence<number...>) const noexcept {
    bool isInterrupted = false;
    const auto lagOf = [&](StepRange range, bool isOn, bool isLast) {
        const std::size_t lag = wave.lagOf(range.count(), isOn && !isInterrupted);
        isInterrupted = isInterrupted || (isOn && isLast);
        return lag;
    };
    return std::array{lagOf(stepsInWave<done, number>(),
                            At<number>::isOn(),
                            number >= done && blockStepOf<At<number>> < At<number>::steps)...};
}

template <Stage... Each>
template <std::size_t done, std::size_t number>
constexpr StepRange Stages<Each...>::stepsInWave() noexcept {
    if (number + 1 < done) {
        return {0, 0};
    }
    if (number + 1 == done) {
        return {blockStepOf<At<number>> + 1, At<number>::steps};
    }
    return {0, blockStepOf<At<number>>};
}

} // namespace velmora
