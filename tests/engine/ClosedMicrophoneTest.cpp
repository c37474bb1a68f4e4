// The microphone closed and opened while the mix runs, and before it does.
#include "engine/EngineFixture.h"

#include <algorithm>
#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::Each;
using testing::ElementsAreArray;

class ClosedMicrophone : public EngineFixture {
protected:
    static constexpr int fadeFrames = 384; // 8 ms at 48 kHz

    /// What a channel plays during the next cycles.
    std::vector<float> heard(AudioObjectID device, int cycles) {
        machine.sound.forgetHeard();
        machine.advanceCycles(cycles);
        return machine.sound.heard(device, 1);
    }
    /// The player's level along a fade, over ten blocks.
    static std::vector<float> faded(bool isOpening) {
        std::vector<float> expected;
        for (int frame = 0; frame < 1280; ++frame) {
            const int moved = std::min(fadeFrames, frame + 1);
            const float x = static_cast<float>(isOpening ? moved : fadeFrames - moved) /
                            static_cast<float>(fadeFrames);
            expected.push_back(0.25F * (x * x * (3.0F - 2.0F * x)));
        }
        return expected;
    }
};

TEST_F(ClosedMicrophone, FadesOutExactlyAndBackInWhileMonitoringGoesOn) {
    startWith({player});
    machine.advanceCycles(5);

    engine.setMicrophoneClosed(true);
    EXPECT_THAT(heard(mic, 10), ElementsAreArray(faded(false)));
    EXPECT_EQ(nextMonitored(), 0.25F);
    engine.setMicrophoneClosed(false);
    EXPECT_THAT(heard(mic, 10), ElementsAreArray(faded(true)));
}

TEST_F(ClosedMicrophone, IsClosedFromTheFirstSampleOfAMixThatStarts) {
    engine.setMicrophoneClosed(true);

    startWith({player});

    EXPECT_THAT(heard(mic, 20), Each(0.0F));
    EXPECT_EQ(nextMonitored(), 0.25F);
}

TEST_F(ClosedMicrophone, StaysClosedThroughEditsAndANewStart) {
    startWith({player});
    engine.setMicrophoneClosed(true);
    machine.advanceCycles(10);

    engine.setStreamVolume(2.0F);
    engine.add(browser);
    EXPECT_THAT(heard(mic, 20), Each(0.0F));
    engine.start();
    EXPECT_THAT(heard(mic, 20), Each(0.0F));
    machine.sound.setRate(96000);
    EXPECT_THAT(heard(mic, 40), Each(0.0F));
}

TEST_F(ClosedMicrophone, IsNeverKept) {
    engine.setMicrophoneClosed(true);
    engine.setStreamVolume(0.5F);

    EXPECT_EQ(engine.streamVolume(), 0.5F);
    EXPECT_FALSE(AudioEngine(machine.platform()).isMicrophoneClosed());
}

TEST_F(ClosedMicrophone, IsToldOnce) {
    int told = 0;
    const auto connection = engine.changed().connect([&] { ++told; });

    engine.setMicrophoneClosed(true);
    engine.setMicrophoneClosed(true);
    EXPECT_EQ(told, 1);
    engine.setMicrophoneClosed(false);
    EXPECT_EQ(told, 2);
}

} // namespace
} // namespace velmora
