// However a mix is started, stopped and edited, no output gets louder than its limiter allows.
#include "engine/EngineFixture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>

namespace velmora {
namespace {

constexpr float ceiling = 0.8912509F;              // linear, -1 dBFS
const float loudest = ceiling * exp10f(0.1F / 20); // a tenth of a decibel more
constexpr float faderTop = 1.9952623F;             // linear, +6 dB

/// White noise of full scale, the same in every run; channels differ.
Waveform noise() {
    return [](std::int64_t frame, std::size_t channel) {
        // SplitMix64's mixing step, on a counter: each frame can be asked for by itself.
        std::uint64_t bits =
            (2 * static_cast<std::uint64_t>(frame) + channel) * 0x9E3779B97F4A7C15U;
        bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9U;
        bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EBU;
        return static_cast<float>(bits >> 40) / 8388608.0F - 1.0F; // 24 bits over 2^23
    };
}

Waveform square(std::int64_t halfPeriodFrames) {
    return [=](std::int64_t frame, std::size_t) {
        return frame / halfPeriodFrames % 2 == 0 ? 1.0F : -1.0F;
    };
}

/// Everything that a user can reach, drawn by lot, on sources of full scale. The monitoring output
/// plays on the interface, where no application does.
class LevelSafety : public EngineFixture, public testing::WithParamInterface<std::uint32_t> {
protected:
    LevelSafety() {
        machine.sound.play(playerPid, square(50));
        machine.sound.play(browserPid, noise());
        machine.sound.setInput(interface4, sine(110, 1.0F));
        engine.setMonitoringSelection("interface#3");
    }

    int upTo(int last) { return std::uniform_int_distribution<int>(0, last)(lot_); }
    bool coin() { return upTo(1) == 1; }
    /// In steps, so that both ends of the range come up.
    float between(float least, float most) {
        return least + (most - least) * static_cast<float>(upTo(4)) / 4.0F;
    }
    const AudioSource& anySource() { return all_[static_cast<std::size_t>(upTo(2))]; }

    FXParams anyEffects() {
        return {.lowcut = upTo(2),
                .tilt = between(-1.0F, 1.0F),
                .comp = upTo(3),
                .autoGain = coin(),
                .manualDB = between(-12.0F, 12.0F),
                .reverbChar = upTo(2),
                .reverbMix = between(0.0F, 1.0F),
                .plosive = coin(),
                .denoise = coin()};
    }

    void changeSomething() {
        switch (upTo(11)) {
        case 0:
            return engine.start();
        case 1:
            return engine.stop();
        case 2:
            return engine.setFxBypassed(!engine.fxBypassed());
        case 3:
            return engine.setGain(between(0.0F, faderTop), anySource());
        case 4:
            return engine.setStreamVolume(between(0.0F, faderTop));
        case 5:
            return engine.setHeadphoneVolume(between(0.0F, faderTop));
        case 6:
            return engine.remove(anySource());
        case 7:
            return engine.add(anySource());
        case 8:
            return engine.setMonitoringSelection(coin() ? "interface#3" : "interface#1");
        case 9:
            return engine.setDirectMuted(coin(), anySource());
        default:
            return engine.setFX(coin() ? FXParams{} : anyEffects(), anySource());
        }
    }

    /// Over everything heard on the channels that carry nothing but our outputs.
    float loudestHeard() {
        float peak = 0.0F;
        for (const auto& [device, channel] : {std::pair{mic, 1U},
                                              {mic, 2U},
                                              {interface4, 1U},
                                              {interface4, 2U},
                                              {interface4, 3U},
                                              {interface4, 4U}}) {
            for (const float sample : machine.sound.heard(device, channel)) {
                peak = std::isfinite(sample) ? std::max(peak, std::abs(sample)) : INFINITY;
            }
        }
        return peak;
    }

private:
    std::mt19937 lot_{GetParam()};
    const std::array<AudioSource, 3> all_ = {player, browser, wholeInput};
};

TEST_P(LevelSafety, NoChangePutsASampleMoreThanATenthOfADecibelAboveTheCeiling) {
    startWith({player, browser, wholeInput});

    for (int change = 0; change < 200; ++change) {
        machine.advanceCycles(1 + upTo(20));
        changeSomething();
        if (!engine.isRunning() && coin()) {
            engine.start();
        }
    }

    const float peak = loudestHeard();
    EXPECT_LE(peak, loudest);
    EXPECT_GT(peak, 0.99F * ceiling); // loud enough to have needed the limiter
}

INSTANTIATE_TEST_SUITE_P(Seeds, LevelSafety, testing::Range(1U, 13U), [](const auto& seed) {
    return "Seed" + std::to_string(seed.param);
});

} // namespace
} // namespace velmora
