// The whole path of sound against a plain calculation: gains, effects, sum, volume, limiter.
#include "effects/ScalarChain.h"
#include "engine/EngineFixture.h"

#include <cmath>
#include <limits>

namespace velmora {
namespace {

/// What a listener should hear, worked out frame by frame from the sources' signals.
class ExpectedMix {
public:
    struct Source {
        Waveform signal;
        std::size_t firstChannel{}; // 0-based
        float gain{};
        FXParams fx;
    };

    /// Interleaved stereo of the machine's first `frames` frames.
    static std::vector<float>
    of(const std::vector<Source>& sources, float volume, std::int64_t frames) {
        std::vector<float> mix(static_cast<std::size_t>(2 * frames));
        for (const Source& source : sources) {
            const std::vector<float> one = captured(source, frames);
            for (std::size_t index = 0; index < mix.size(); ++index) {
                mix[index] += one[index];
            }
        }
        for (float& sample : mix) {
            sample *= volume;
        }
        limit(mix);
        return mix;
    }

private:
    static std::vector<float> captured(const Source& source, std::int64_t frames) {
        std::vector<float> samples;
        for (std::int64_t frame = 0; frame < frames; ++frame) {
            samples.push_back(source.gain * source.signal(frame, source.firstChannel));
            samples.push_back(source.gain * source.signal(frame, source.firstChannel + 1));
        }
        ScalarChain chain(source.fx);
        chain.process(samples.data(), static_cast<std::int64_t>(samples.size()));
        return samples;
    }

    static void limit(std::vector<float>& samples) {
        const float ceiling = 0.8912509F;
        const float release = 0.99973965F;
        float gain = 1.0F;
        for (std::size_t index = 0; index < samples.size(); index += 2) {
            const float peak = std::max(std::abs(samples[index]), std::abs(samples[index + 1]));
            const float target = gain * peak > ceiling ? ceiling / peak : 1.0F;
            gain = gain > target ? target : target + release * (gain - target);
            samples[index] *= gain;
            samples[index + 1] *= gain;
        }
    }
};

class Mix : public EngineFixture {
protected:
    Mix() {
        playerFX.lowcut = 1;
        playerFX.tilt = 0.6F;
        browserFX.comp = 2;
        browserFX.reverbMix = 0.4F;
        browserFX.reverbChar = 1;
        inputFX.plosive = true;
        inputFX.denoise = true;
        inputFX.autoGain = false;
        inputFX.manualDB = -3.0F;
        machine.sound.play(playerPid, playerSignal);
        machine.sound.play(browserPid, browserSignal);
        machine.sound.setInput(interface4, inputSignal);
    }

    std::vector<float> heardInMic() {
        const auto left = machine.sound.heard(mic, 1);
        const auto right = machine.sound.heard(mic, 2);
        std::vector<float> interleaved;
        for (std::size_t frame = 0; frame < left.size(); ++frame) {
            interleaved.push_back(left[frame]);
            interleaved.push_back(right[frame]);
        }
        return interleaved;
    }

    const Waveform playerSignal = stereo(sine(440, 0.5F), sine(660, 0.4F));
    const Waveform browserSignal = stereo(sine(220, 0.7F), sine(3000, 0.2F));
    const Waveform inputSignal = [](std::int64_t frame, std::size_t channel) {
        return sine(100.0 * static_cast<double>(channel + 1), 0.6F)(frame, channel);
    };
    FXParams playerFX;
    FXParams browserFX;
    FXParams inputFX;
};

TEST_F(Mix, EqualsThePlainCalculationSampleBySample) {
    engine.setGain(0.8F, player);
    engine.setGain(1.5F, browser);
    engine.setGain(0.5F, thirdPair);
    engine.setFX(playerFX, player);
    engine.setFX(browserFX, browser);
    engine.setFX(inputFX, thirdPair);
    engine.setStreamVolume(1.25F);
    startWith({player, browser, thirdPair});

    machine.advanceFrames(48000);

    const std::vector<float> heard = heardInMic();
    const std::vector<float> expected = ExpectedMix::of({{playerSignal, 0, 0.8F, playerFX},
                                                         {browserSignal, 0, 1.5F, browserFX},
                                                         {inputSignal, 2, 0.5F, inputFX}},
                                                        1.25F,
                                                        48000);
    ASSERT_EQ(heard.size(), expected.size());
    for (std::size_t index = 0; index < heard.size(); ++index) {
        ASSERT_FLOAT_EQ(heard[index], expected[index]) << "sample " << index;
    }
}

TEST_F(Mix, IsTheSameForEveryBlockSize) {
    engine.setFX(browserFX, browser);
    startWith({player, browser});
    machine.sound.setBlockFrames(1000);

    machine.advanceFrames(24000);

    const std::vector<float> heard = heardInMic();
    const std::vector<float> expected = ExpectedMix::of(
        {{playerSignal, 0, 1.0F, {}}, {browserSignal, 0, 1.0F, browserFX}}, 1.0F, 24000);
    ASSERT_EQ(heard.size(), expected.size());
    for (std::size_t index = 0; index < heard.size(); ++index) {
        ASSERT_FLOAT_EQ(heard[index], expected[index]) << "sample " << index;
    }
}

TEST_F(Mix, StaysFiniteWhateverItsSourcesPlay) {
    const float infinity = std::numeric_limits<float>::infinity();
    Waveform bad = withSample(playerSignal, 1000, std::numeric_limits<float>::quiet_NaN());
    bad = withSample(bad, 3000, infinity);
    bad = withSample(bad, 5000, -infinity);
    machine.sound.play(playerPid, bad);
    machine.sound.setInput(interface4, bad);
    engine.setFX(playerFX, player);
    startWith({player, wholeInput});

    machine.advanceFrames(96000);

    const std::vector<float> heard = heardInMic();
    for (const float sample : heard) {
        ASSERT_TRUE(std::isfinite(sample));
        ASSERT_LT(std::abs(sample), 1.0F);
    }
    const auto [least, most] = std::minmax_element(heard.end() - 4800, heard.end());
    EXPECT_GT(*most - *least, 0.5F); // and the sound is back
}

} // namespace
} // namespace velmora
