#include "engine/LimiterLamp.h"

#include "engine/EngineFixture.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

TEST(LimiterLamp, LightsAtATenthOfADecibelAndStaysForAThirdOfASecond) {
    LimiterLamp lamp;
    EXPECT_FALSE(lamp.tick(1.0F));
    EXPECT_FALSE(lamp.tick(0.99F));
    EXPECT_TRUE(lamp.tick(0.98F));
    EXPECT_TRUE(lamp.isLit());

    for (int tick = 1; tick < LimiterLamp::ticksAfter; ++tick) {
        EXPECT_FALSE(lamp.tick(1.0F));
    }
    EXPECT_TRUE(lamp.tick(1.0F));
    EXPECT_FALSE(lamp.isLit());
}

class LimiterLamps : public EngineFixture {};

TEST_F(LimiterLamps, AreEachOutputsOwn) {
    machine.sound.play(playerPid, constant(1.0F));
    engine.setHeadphoneVolume(0.5F);
    startWith({player});
    machine.advance(200ms);
    EXPECT_TRUE(engine.isStreamLimited());
    EXPECT_FALSE(engine.isHeadphonesLimited());

    engine.setStreamVolume(0.5F);
    machine.advance(1s);
    EXPECT_FALSE(engine.isStreamLimited());
}

TEST_F(LimiterLamps, GoOutWithTheMix) {
    machine.sound.play(playerPid, constant(1.0F));
    startWith({player});
    machine.advance(200ms);
    ASSERT_TRUE(engine.isStreamLimited());

    engine.stop();

    EXPECT_FALSE(engine.isStreamLimited());
}

} // namespace
} // namespace velmora
