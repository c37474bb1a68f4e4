// However loud the sources and whatever is edited: neither output passes its limiter's ceiling.

#include "MixerTest.h"

#include <cmath>
#include <random>

namespace velmora {
namespace {

using namespace support;

constexpr float ceiling = 0.8912509F; // linear, -1 dBFS

class Level : public MixerTest {
protected:
    Level() { engine.setMonitoringSelection(interface4.name + "#3"); }

    static float loudestIn(const Recorder& recorder) {
        float peak = 0.0F;
        for (const float sample : recorder.all().samples) {
            peak = std::isfinite(sample) ? std::max(peak, std::abs(sample)) : INFINITY;
        }
        return peak;
    }

    int upTo(int last) { return std::uniform_int_distribution<int>(0, last)(lot_); }

    void changeSomething(const AudioSource& source) {
        const FXParams loud{.tilt = 1.0F, .comp = 3, .reverbMix = 1.0F};
        const FXParams lifted{.autoGain = false, .manualDB = 12.0F, .plosive = true};
        switch (upTo(6)) {
        case 0:
            return engine.start();
        case 1:
            engine.stop();
            return engine.start();
        case 2:
            return engine.setFxBypassed(!engine.fxBypassed());
        case 3:
            return setGainDb(upTo(1) == 0 ? 6 : -6, source);
        case 4:
            return engine.setFX(upTo(1) == 0 ? loud : lifted, source);
        case 5:
            return engine.setFX({}, source);
        default:
            return engine.setDirectMuted(!engine.isDirectMuted(source), source);
        }
    }

    Recorder mic{session(), microphone, {1, 2}};
    Recorder headphones{session(), interface4.name, {3, 4}}; // the pair that we monitor on

private:
    std::mt19937 lot_{7};
};

TEST_F(Level, NoStartStopOrEditPassesTheCeilingByATenthOfADecibel) {
    const ToneApp first(session());
    const ToneApp second(session());
    first.play("music", leftHz, rightHz, 0);
    second.play("voice", otherLeftHz, otherRightHz, 0);
    const AudioSource sources[] = {playing(first.pid()), playing(second.pid())};
    mix({sources[0], sources[1]});
    EXPECT_TRUE(mic.waitForFreshSound());

    for (int change = 0; change < 40; ++change) {
        const std::size_t heardSoFar = mic.frames();
        changeSomething(sources[upTo(1)]);
        EXPECT_TRUE(waitUntil([&] { return mic.frames() >= heardSoFar + 4800; }));
    }

    const auto loudest = static_cast<float>(ceiling * fromDb(0.1));
    for (const Recorder* output : {&mic, &headphones}) {
        EXPECT_LE(loudestIn(*output), loudest);
        EXPECT_GT(loudestIn(*output), 0.99F * ceiling); // it did need limiting
    }
}

} // namespace
} // namespace velmora
