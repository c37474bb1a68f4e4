#include "effects/PlosiveGuard.h"

namespace velmora {
namespace {

constexpr double cornerHz = 120.0;
constexpr double attackSeconds = 0.002;
constexpr double releaseSeconds = 0.12;
constexpr float broadCoefficient = 0.0015F; // per frame, deliberately at any sample rate
constexpr float outrun = 1.1F;
constexpr float lowFloor = 0.03F;   // linear, about -30 dBFS
constexpr float duckedGain = 0.25F; // -12 dB

/// The larger magnitude of left and right: of the low band in lane 0, of the signal in lane 1.
Lanes louderChannel(Lanes low, Lanes signal) noexcept {
    const Lanes lows = absolute(low);
    const Lanes signals = absolute(signal);
    return maxFirst(__builtin_shufflevector(lows, signals, 0, 4, 0, 4),
                    __builtin_shufflevector(lows, signals, 1, 5, 1, 5));
}

} // namespace

void PlosiveGuard::retune(bool isOn, double sampleRate) {
    isOn_ = isOn;
    if (isOn_) {
        state_.lowPass.retune(0, Biquad::lowPass(cornerHz, sampleRate));
        attack_ = allLanes(followCoefficient(sampleRate, attackSeconds));
        release_ = allLanes(followCoefficient(sampleRate, releaseSeconds));
    }
}

void PlosiveGuard::reset() noexcept {
    state_.lowPass.clearHistory();
    state_.envelopes = zeroLanes;
    state_.gain = allLanes(1.0F);
}

bool PlosiveGuard::isFinite() const noexcept {
    return state_.lowPass.isFinite() && allFinite(state_.envelopes) && allFinite(state_.gain);
}

template <Check check>
void PlosiveGuard::run(std::span<float> samples) noexcept {
    const Lanes rise{attack_[0], broadCoefficient};
    const Lanes fall{release_[0], broadCoefficient};
    State state = state_;
    for (std::size_t i = 0; i + 1 < samples.size(); i += 2) {
        const Lanes x = loadFrame(&samples[i]);
        const Lanes low = state.lowPass.process<check>(x);
        const Lanes level = louderChannel(low, x);
        const Lanes speed = select(level > state.envelopes, rise, fall);
        state.envelopes = follow<check>(state.envelopes, level, speed, zeroLanes);
        const float lowLevel = state.envelopes[0];
        const bool bursts = state.envelopes[1] * outrun < lowLevel && lowLevel > lowFloor;
        const Lanes target = allLanes(bursts ? duckedGain : 1.0F);
        const Lanes glide = select(target < state.gain, attack_, release_);
        state.gain = follow<check>(state.gain, target, glide, allLanes(1.0F));
        storeFrame(&samples[i], (x - low) + low * state.gain);
    }
    state_ = state;
}

void PlosiveGuard::process(std::span<float> samples, Check check) noexcept {
    check == Check::everyFrame ? run<Check::everyFrame>(samples) : run<Check::atTheEnd>(samples);
}

} // namespace velmora
