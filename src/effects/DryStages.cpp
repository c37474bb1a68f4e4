#include "effects/DryStages.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace velmora {
namespace {

constexpr std::size_t triedSamples = 256; // at a time; 1 KiB to keep and to repeat

} // namespace

void DryStages::retune(const FXParams& params, double sampleRate) {
    lowCut_.retune(params.lowcut, sampleRate);
    plosiveGuard_.retune(params.plosive, sampleRate);
    tilt_.retune(params.tilt, sampleRate);
    noiseReduction_.retune(params.denoise, sampleRate);
    compressor_.retune(params.comp, sampleRate);
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
    for (std::size_t at = 0; at < samples.size(); at += triedSamples) {
        tryBlock(samples.subspan(at, std::min(triedSamples, samples.size() - at)));
    }
}

void DryStages::tryBlock(std::span<float> samples) noexcept {
    static_assert(std::is_trivially_copyable_v<DryStages>);
    const DryStages before = *this;
    std::array<float, triedSamples> input;
    std::ranges::copy(samples, input.begin());
    run(samples, Check::atTheEnd);
    if (!areFinite()) {
        *this = before;
        std::copy_n(input.begin(), samples.size(), samples.begin());
        run(samples, Check::everyFrame);
    }
}

void DryStages::run(std::span<float> samples, Check check) noexcept {
    const auto runIfOn = [=](auto& stage) {
        if (stage.isOn()) {
            stage.process(samples, check);
        }
    };
    runIfOn(lowCut_);
    runIfOn(plosiveGuard_);
    runIfOn(tilt_);
    runIfOn(noiseReduction_);
    runIfOn(compressor_);
    levelStage_.process(samples, check);
}

bool DryStages::areFinite() const noexcept {
    return lowCut_.isFinite() && plosiveGuard_.isFinite() && tilt_.isFinite() &&
           noiseReduction_.isFinite() && compressor_.isFinite() && levelStage_.isFinite();
}

} // namespace velmora
