#include "effects/EffectsChain.h"

#include "effects/SampleMath.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr double highestSampleRate = 12'288'000.0; // Hz, 64 times the highest rate of a device

} // namespace

EffectsChain::EffectsChain(const FXParams& params) : wanted_{.params = params} {
    mailbox_.post(wanted_);
}

void EffectsChain::setParams(const FXParams& params) {
    const std::scoped_lock guard(control_);
    wanted_.params = params;
    mailbox_.post(wanted_);
}

void EffectsChain::setSampleRate(double hz) {
    if (!(hz > 0.0 && hz <= highestSampleRate)) {
        return;
    }
    const std::scoped_lock guard(control_);
    reverb_.reserveFor(hz);
    wanted_.sampleRate = hz;
    mailbox_.post(wanted_);
}

void EffectsChain::setBypass(bool isBypassed) {
    const std::scoped_lock guard(control_);
    wanted_.isBypassed = isBypassed;
    mailbox_.post(wanted_);
}

void EffectsChain::process(float* interleaved, std::int64_t count) noexcept {
    if (const Settings* next = mailbox_.take()) {
        takeOver(*next);
    }
    if (inForce_.isBypassed || inForce_.params.isNeutral() || count < 2) {
        return;
    }
    run({interleaved, static_cast<std::size_t>(count / 2 * 2)});
}

void EffectsChain::takeOver(const Settings& next) {
    const bool rateChanged = next.sampleRate != inForce_.sampleRate;
    const bool leavesBypass = inForce_.isBypassed && !next.isBypassed;
    const bool leavesNeutral = inForce_.params.isNeutral() && !next.params.isNeutral();
    lowCut_.retune(next.params.lowcut, next.sampleRate);
    tilt_.retune(next.params.tilt, next.sampleRate);
    compressor_.retune(next.params.comp, next.sampleRate);
    levelStage_.retune(next.params, next.sampleRate);
    plosiveGuard_.retune(next.params.plosive, next.sampleRate);
    noiseReduction_.retune(next.params.denoise, next.sampleRate);
    reverb_.retune(next.params, next.sampleRate, rateChanged);
    if (rateChanged || leavesBypass || leavesNeutral) {
        reset();
    }
    inForce_ = next;
}

void EffectsChain::reset() {
    lowCut_.reset();
    plosiveGuard_.reset();
    tilt_.reset();
    noiseReduction_.reset();
    compressor_.reset();
    levelStage_.reset();
    reverb_.reset();
}

/// Each stage runs over the whole block before the next one starts: nothing feeds back from a
/// later stage, so this gives the same samples as going frame by frame.
void EffectsChain::run(std::span<float> samples) noexcept {
    const auto runIfOn = [samples](auto& stage) {
        if (stage.isOn()) {
            stage.process(samples);
        }
    };
    runIfOn(lowCut_);
    runIfOn(plosiveGuard_);
    runIfOn(tilt_);
    runIfOn(noiseReduction_);
    runIfOn(compressor_);
    levelStage_.process(samples);
    runIfOn(reverb_);
    for (float& sample : samples) {
        sample = finiteOr(sample, 0.0F);
    }
}

} // namespace velmora
