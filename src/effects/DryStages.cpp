#include "effects/DryStages.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace velmora {
namespace {

constexpr std::size_t blockSamples = 2 * blockFrames; // 1 KiB to keep and to repeat

} // namespace

void DryStages::retune(const FXParams& params, double sampleRate) {
    lowCut_.retune(params, sampleRate);
    plosiveGuard_.retune(params, sampleRate);
    tilt_.retune(params, sampleRate);
    noiseReduction_.retune(params, sampleRate);
    compressor_.retune(params, sampleRate);
    levelStage_.retune(params, sampleRate);
}

void DryStages::reset() noexcept {
    lowCut_.reset();
    plosiveGuard_.reset();
    tilt_.reset();
    noiseReduction_.reset();
    compressor_.reset();
    levelStage_.reset();
}

void DryStages::process(std::span<float> samples) noexcept {
    const std::size_t whole = samples.size() / quadSamples * quadSamples;
    for (std::size_t at = 0; at < whole; at += blockSamples) {
        tryBlock(samples.subspan(at, std::min(blockSamples, whole - at)));
    }
    runChecked(samples.subspan(whole));
}

void DryStages::tryBlock(std::span<float> samples) noexcept {
    static_assert(std::is_trivially_copyable_v<DryStages>);
    const DryStages before = *this;
    std::array<float, blockSamples> input;
    std::ranges::copy(samples, input.begin());
    runUnchecked(samples);
    if (!areFinite()) {
        *this = before;
        std::copy_n(input.begin(), samples.size(), samples.begin());
        runChecked(samples);
    }
}

void DryStages::runUnchecked(std::span<float> samples) noexcept {
    runFirstWave(samples);
    if (compressor_.isOn()) {
        compressor_.findGains(0, samples.size() / 2);
        runSecondWave(samples);
    }
}

/// Everything up to the compressor's envelope; without a compressor, simply everything. Flat, so
/// that the steps of a turn lie side by side in one loop.
[[gnu::flatten]] void DryStages::runFirstWave(std::span<float> samples) noexcept {
    Wave wave(samples);
    Compressor::EnvelopeStep envelope(compressor_);
    const std::size_t lowCutLag = wave.lagOf(lowCut_);
    const std::size_t plosiveGuardLag = wave.lagOf(plosiveGuard_);
    const std::size_t tiltLag = wave.lagOf(tilt_);
    const std::size_t noiseReductionLag = wave.lagOf(noiseReduction_);
    const std::size_t envelopeLag = wave.lagOf(envelope, compressor_.isOn());
    const std::size_t levelStageLag = wave.lagOf(levelStage_, !compressor_.isOn());
    for (std::size_t turn = 0; turn < wave.turns(); ++turn) {
        wave.run(levelStage_, turn, levelStageLag);
        wave.run(envelope, turn, envelopeLag);
        wave.run(noiseReduction_, turn, noiseReductionLag);
        wave.run(tilt_, turn, tiltLag);
        wave.run(plosiveGuard_, turn, plosiveGuardLag);
        wave.run(lowCut_, turn, lowCutLag);
    }
}

/// What comes after the compressor has found its gains.
[[gnu::flatten]] void DryStages::runSecondWave(std::span<float> samples) noexcept {
    Wave wave(samples);
    Compressor::GainStep gain(compressor_);
    const std::size_t gainLag = wave.lagOf(gain, true);
    const std::size_t levelStageLag = wave.lagOf(levelStage_, true);
    for (std::size_t turn = 0; turn < wave.turns(); ++turn) {
        wave.run(levelStage_, turn, levelStageLag);
        wave.run(gain, turn, gainLag);
    }
}

void DryStages::runChecked(std::span<float> samples) noexcept {
    const auto runIfOn = [&](auto& stage) {
        if (stage.isOn()) {
            processEveryFrame(stage, samples);
        }
    };
    runIfOn(lowCut_);
    runIfOn(plosiveGuard_);
    runIfOn(tilt_);
    runIfOn(noiseReduction_);
    runIfOn(compressor_);
    processEveryFrame(levelStage_, samples);
}

bool DryStages::areFinite() const noexcept {
    return lowCut_.isFinite() && plosiveGuard_.isFinite() && tilt_.isFinite() &&
           noiseReduction_.isFinite() && compressor_.isFinite() && levelStage_.isFinite();
}

} // namespace velmora
