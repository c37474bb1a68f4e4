#include "effects/ScalarChain.h"

#include <cmath>

namespace velmora {
namespace {

constexpr double twoPi = 6.283185307179586;

float larger(float a, float b) {
    if (b > a) {
        return b;
    }
    return a;
}

void heal(float& state, float healthy) {
    if (!std::isfinite(state)) {
        state = healthy;
    }
}

void approach(float& state, float target, float coefficient, float healthy) {
    state = state + (target - state) * coefficient;
    heal(state, healthy);
}

} // namespace

void ScalarChain::Section::set(
    double nb0, double nb1, double nb2, double na0, double na1, double na2) {
    b0 = static_cast<float>(nb0 / na0);
    b1 = static_cast<float>(nb1 / na0);
    b2 = static_cast<float>(nb2 / na0);
    a1 = static_cast<float>(na1 / na0);
    a2 = static_cast<float>(na2 / na0);
}

void ScalarChain::Section::setHighPass(double freq, double rate) {
    const double w = twoPi * freq / rate;
    const double c = std::cos(w);
    const double alpha = std::sin(w) / 1.414;
    set((1 + c) / 2, -(1 + c), (1 + c) / 2, 1 + alpha, -2 * c, 1 - alpha);
}

void ScalarChain::Section::setLowPass(double freq, double rate) {
    const double w = twoPi * freq / rate;
    const double c = std::cos(w);
    const double alpha = std::sin(w) / 1.414;
    set((1 - c) / 2, 1 - c, (1 - c) / 2, 1 + alpha, -2 * c, 1 - alpha);
}

void ScalarChain::Section::setLowShelf(double freq, double gainDb, double rate) {
    const double w = twoPi * freq / rate;
    const double c = std::cos(w);
    const double A = std::pow(10.0, gainDb / 40);
    const double k = 2 * std::sqrt(A) * (std::sin(w) / 2 * 1.4142135623730951);
    set(A * ((A + 1) - (A - 1) * c + k),
        2 * A * ((A - 1) - (A + 1) * c),
        A * ((A + 1) - (A - 1) * c - k),
        (A + 1) + (A - 1) * c + k,
        -2 * ((A - 1) + (A + 1) * c),
        (A + 1) + (A - 1) * c - k);
}

void ScalarChain::Section::setHighShelf(double freq, double gainDb, double rate) {
    const double w = twoPi * freq / rate;
    const double c = std::cos(w);
    const double A = std::pow(10.0, gainDb / 40);
    const double k = 2 * std::sqrt(A) * (std::sin(w) / 2 * 1.4142135623730951);
    set(A * ((A + 1) + (A - 1) * c + k),
        -2 * A * ((A - 1) + (A + 1) * c),
        A * ((A + 1) + (A - 1) * c - k),
        (A + 1) - (A - 1) * c + k,
        2 * ((A - 1) - (A + 1) * c),
        (A + 1) - (A - 1) * c - k);
}

void ScalarChain::Section::clear() {
    x1 = x2 = y1 = y2 = 0;
}

float ScalarChain::Section::run(float x) {
    float y = b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
    x2 = x1;
    x1 = x;
    y2 = y1;
    if (!std::isfinite(y)) {
        y = 0;
    }
    y1 = y;
    return y;
}

void ScalarChain::Room::build(double rate, int offset) {
    constexpr std::array<int, 6> base{1116, 1188, 1277, 1356, 556, 441};
    const double scale = rate / 44100.0;
    for (std::size_t k = 0; k < base.size(); ++k) {
        const auto length = static_cast<long>(scale * (base[k] + offset));
        lines[k].assign(static_cast<std::size_t>(length < 8 ? 8 : length), 0.0F);
    }
    at.fill(0);
    stores.fill(0);
}

void ScalarChain::Room::clear() {
    for (auto& line : lines) {
        line.assign(line.size(), 0.0F);
    }
    stores.fill(0);
}

float ScalarChain::Room::run(float x, float feedback, float damp) {
    if (lines[0].empty()) {
        return 0;
    }
    float sum = 0;
    for (std::size_t k = 0; k < 4; ++k) {
        const float out = lines[k][at[k]];
        stores[k] = (1 - damp) * out + damp * stores[k];
        heal(stores[k], 0);
        lines[k][at[k]] = x + feedback * stores[k];
        heal(lines[k][at[k]], 0);
        at[k] = (at[k] + 1) % lines[k].size();
        sum = sum + out;
    }
    float a = sum * 0.25F;
    for (std::size_t k = 4; k < 6; ++k) {
        const float b = lines[k][at[k]];
        lines[k][at[k]] = a + b * 0.5F;
        heal(lines[k][at[k]], 0);
        at[k] = (at[k] + 1) % lines[k].size();
        a = b - a;
    }
    return a;
}

void ScalarChain::setParams(const FXParams& params) {
    pending_ = params;
    dirty_ = true;
}

void ScalarChain::setSampleRate(double hz) {
    pendingRate_ = hz;
    dirty_ = true;
}

void ScalarChain::setBypass(bool isBypassed) {
    pendingBypass_ = isBypassed;
    dirty_ = true;
}

float ScalarChain::coefficient(double seconds) const {
    return 1 - std::exp(static_cast<float>(-1 / (rate_ * seconds)));
}

void ScalarChain::refresh() {
    if (!dirty_) {
        return;
    }
    dirty_ = false;
    const bool oldBypass = bypass_;
    const double oldRate = rate_;
    bypass_ = pendingBypass_;
    rate_ = pendingRate_;
    highPassOn_ = pending_.lowcut >= 1;
    if (highPassOn_) {
        const double corner = pending_.lowcut == 1 ? 75 : 150;
        highPassL_.setHighPass(corner, rate_);
        highPassR_.setHighPass(corner, rate_);
    }
    tiltOn_ = std::fabs(pending_.tilt) > 0.01F;
    if (tiltOn_) {
        const double g = static_cast<double>(pending_.tilt) * 4.5;
        lowShelfL_.setLowShelf(250, -g, rate_);
        lowShelfR_.setLowShelf(250, -g, rate_);
        highShelfL_.setHighShelf(3500, g, rate_);
        highShelfR_.setHighShelf(3500, g, rate_);
    }
    if (pending_.comp < 1) {
        compSlope_ = 0;
        compMakeup_ = 1;
    } else if (pending_.comp == 1) {
        compThreshold_ = ::exp10f(-18.0F / 20.0F);
        compSlope_ = 1 - 1 / 2.0F;
        compMakeup_ = ::exp10f(3.0F / 20.0F);
    } else if (pending_.comp == 2) {
        compThreshold_ = ::exp10f(-24.0F / 20.0F);
        compSlope_ = 1 - 1 / 3.0F;
        compMakeup_ = ::exp10f(6.0F / 20.0F);
    } else {
        compThreshold_ = ::exp10f(-30.0F / 20.0F);
        compSlope_ = 1 - 1 / 4.0F;
        compMakeup_ = ::exp10f(9.0F / 20.0F);
    }
    compAttack_ = coefficient(0.005);
    compRelease_ = coefficient(0.15);
    meanSquareCoefficient_ = coefficient(0.4);
    levelSlew_ = coefficient(1.5);
    if (pending_.plosive) {
        plosiveL_.setLowPass(120, rate_);
        plosiveR_.setLowPass(120, rate_);
        plosiveAttack_ = coefficient(0.002);
        plosiveRelease_ = coefficient(0.12);
    }
    if (pending_.denoise) {
        lowBandL_.setLowPass(400, rate_);
        lowBandR_.setLowPass(400, rate_);
        highBandL_.setHighPass(3000, rate_);
        highBandR_.setHighPass(3000, rate_);
        bandAttack_ = coefficient(0.004);
        bandRelease_ = coefficient(0.12);
        bandFloorRise_ = coefficient(4.0);
    }
    reverbOn_ = pending_.reverbMix > 0.005F;
    if (reverbOn_) {
        constexpr std::array<float, 3> feedbacks{0.75F, 0.84F, 0.92F};
        constexpr std::array<float, 3> damps{0.45F, 0.25F, 0.5F};
        const std::size_t character =
            pending_.reverbChar <= 0 ? 0 : (pending_.reverbChar == 1 ? 1 : 2);
        feedback_ = feedbacks[character];
        damp_ = damps[character];
        wet_ = (pending_.reverbMix < 1 ? pending_.reverbMix : 1.0F) * 0.6F;
        if (!roomsBuilt_ || rate_ != oldRate) {
            roomL_.build(rate_, 0);
            roomR_.build(rate_, 23);
            roomsBuilt_ = true;
        }
    }
    if (rate_ != oldRate || (oldBypass && !bypass_) ||
        (params_.isNeutral() && !pending_.isNeutral())) {
        reset();
    }
    params_ = pending_;
}

void ScalarChain::reset() {
    for (Section* section : {&highPassL_,
                             &highPassR_,
                             &lowShelfL_,
                             &lowShelfR_,
                             &highShelfL_,
                             &highShelfR_,
                             &plosiveL_,
                             &plosiveR_,
                             &lowBandL_,
                             &lowBandR_,
                             &highBandL_,
                             &highBandR_}) {
        section->clear();
    }
    plosiveLow_ = plosiveBroad_ = 0;
    plosiveGain_ = 1;
    bandEnv_ = {0, 0, 0};
    bandFloor_ = {0.001F, 0.001F, 0.001F};
    bandGain_ = {1, 1, 1};
    compEnv_ = 0;
    meanSquare_ = 0;
    levelGain_ = 1;
    if (roomsBuilt_) {
        roomL_.clear();
        roomR_.clear();
    }
}

void ScalarChain::process(float* interleaved, std::int64_t count) {
    refresh();
    if (bypass_ || params_.isNeutral() || count < 2) {
        return;
    }
    for (std::int64_t i = 0; i < count / 2; ++i) {
        float left = interleaved[2 * i];
        float right = interleaved[2 * i + 1];
        if (highPassOn_) {
            left = highPassL_.run(left);
            right = highPassR_.run(right);
        }
        if (params_.plosive) {
            runPlosiveGuard(left, right);
        }
        if (tiltOn_) {
            left = highShelfL_.run(lowShelfL_.run(left));
            right = highShelfR_.run(lowShelfR_.run(right));
        }
        if (params_.denoise) {
            runNoiseReduction(left, right);
        }
        if (compSlope_ > 0) {
            runCompressor(left, right);
        }
        runLevel(left, right);
        if (reverbOn_) {
            left = left + roomL_.run(left, feedback_, damp_) * wet_;
            right = right + roomR_.run(right, feedback_, damp_) * wet_;
        }
        interleaved[2 * i] = std::isfinite(left) ? left : 0;
        interleaved[2 * i + 1] = std::isfinite(right) ? right : 0;
    }
}

void ScalarChain::runPlosiveGuard(float& left, float& right) {
    const float lowL = plosiveL_.run(left);
    const float lowR = plosiveR_.run(right);
    const float low = larger(std::fabs(lowL), std::fabs(lowR));
    const float broad = larger(std::fabs(left), std::fabs(right));
    approach(plosiveLow_, low, low > plosiveLow_ ? plosiveAttack_ : plosiveRelease_, 0);
    approach(plosiveBroad_, broad, 0.0015F, 0);
    float target = 1;
    if (plosiveBroad_ * 1.1F < plosiveLow_ && plosiveLow_ > 0.03F) {
        target = 0.25F;
    }
    approach(plosiveGain_, target, target < plosiveGain_ ? plosiveAttack_ : plosiveRelease_, 1);
    left = (left - lowL) + lowL * plosiveGain_;
    right = (right - lowR) + lowR * plosiveGain_;
}

void ScalarChain::runNoiseReduction(float& left, float& right) {
    const float lowL = lowBandL_.run(left);
    const float lowR = lowBandR_.run(right);
    const float highL = highBandL_.run(left);
    const float highR = highBandR_.run(right);
    const float midL = left - lowL - highL;
    const float midR = right - lowR - highR;
    const std::array<float, 3> levels{larger(std::fabs(lowL), std::fabs(lowR)),
                                      larger(std::fabs(midL), std::fabs(midR)),
                                      larger(std::fabs(highL), std::fabs(highR))};
    for (std::size_t b = 0; b < 3; ++b) {
        approach(bandEnv_[b], levels[b], levels[b] > bandEnv_[b] ? bandAttack_ : bandRelease_, 0);
        if (bandFloor_[b] <= bandEnv_[b]) {
            approach(bandFloor_[b], bandEnv_[b], bandFloorRise_, 0.001F);
        } else {
            bandFloor_[b] = larger(bandEnv_[b], 0.00001F);
        }
        float reference = bandFloor_[b] * 2.5F;
        if (reference <= 0.0001F) {
            reference = 0.0001F;
        }
        const float r = bandEnv_[b] / reference;
        const float target = r >= 1 ? 1 : larger(r * r, 0.12F);
        approach(bandGain_[b], target, bandGain_[b] < target ? bandAttack_ : bandRelease_, 1);
    }
    left = lowL * bandGain_[0] + midL * bandGain_[1] + highL * bandGain_[2];
    right = lowR * bandGain_[0] + midR * bandGain_[1] + highR * bandGain_[2];
}

void ScalarChain::runCompressor(float& left, float& right) {
    const float peak = larger(std::fabs(left), std::fabs(right));
    approach(compEnv_, peak, peak > compEnv_ ? compAttack_ : compRelease_, 0);
    float g = compMakeup_;
    if (compEnv_ > compThreshold_) {
        const float over = 20 * std::log10(compEnv_ / compThreshold_);
        g = g * ::exp10f(-(compSlope_ * over) / 20);
    }
    left = left * g;
    right = right * g;
}

void ScalarChain::runLevel(float& left, float& right) {
    approach(meanSquare_, (left * left + right * right) * 0.5F, meanSquareCoefficient_, 0);
    if (params_.autoGain) {
        const float rms = std::sqrt(larger(meanSquare_, 0));
        if (rms > 0.0035F) {
            float wanted = 0.1259F / rms;
            wanted = wanted < 0.25F ? 0.25F : wanted;
            wanted = wanted > 8 ? 8 : wanted;
            approach(levelGain_, wanted, levelSlew_, 1);
        }
    } else {
        approach(levelGain_, ::exp10f(params_.manualDB / 20), 0.0005F, 1);
    }
    left = left * levelGain_;
    right = right * levelGain_;
}

} // namespace velmora
