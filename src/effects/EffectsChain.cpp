#include "effects/EffectsChain.h"

#include "effects/SampleMath.h"

#include <algorithm>

namespace velmora {
namespace {

constexpr double highestSampleRate = 12'288'000.0; // Hz, 64 times the highest rate of a device

} // namespace

EffectsChain::EffectsChain(const FXParams& params, Instructions instructions)
    : wanted_{.params = params}, reverb_(instructions) {
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
    stages_.retune(next.params, next.sampleRate);
    reverb_.retune(next.params, next.sampleRate);
    if (rateChanged || leavesBypass || leavesNeutral) {
        stages_.reset();
        reverb_.reset();
    }
    inForce_ = next;
}

void EffectsChain::run(std::span<float> samples) noexcept {
    stages_.process(samples);
    if (reverb_.isOn()) {
        reverb_.process(samples);
    }
    for (float& sample : samples) {
        sample = finiteOr(sample, 0.0F);
    }
}

} // namespace velmora
