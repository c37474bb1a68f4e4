#include "engine/Audience.h"

#include "engine/EngineFixture.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

constexpr std::int32_t callPid = 5000;

class AudienceTest : public EngineFixture {
protected:
    const Audience& audience = engine.audience();
};

TEST_F(AudienceTest, IsMissingOnceAMixHasSoundedUnrecordedForAWhile) {
    startWith({player});
    machine.advance(1s);
    EXPECT_FALSE(audience.isMissing()) << "it may be about to begin";

    int told = 0;
    const auto connection = engine.changed().connect([&] { told += audience.isMissing() ? 1 : 0; });
    machine.advance(2s);

    EXPECT_TRUE(audience.isMissing());
    EXPECT_GT(told, 0);
}

TEST_F(AudienceTest, IsThereAsSoonAsSomebodyRecords) {
    startWith({player});
    machine.advance(3s);
    ASSERT_TRUE(audience.isMissing());

    machine.sound.record(callPid, mic);
    machine.mainQueue.advance(0ms);

    EXPECT_FALSE(audience.isMissing());
    machine.advance(10s);
    EXPECT_FALSE(audience.isMissing());
}

TEST_F(AudienceTest, IsNoLevelMeter) {
    machine.sound.measure(callPid, mic);
    startWith({player});

    machine.advance(3s);

    EXPECT_TRUE(audience.isMissing());
}

TEST_F(AudienceTest, IsNotMissedByASilentMix) {
    machine.sound.pause(playerPid);
    startWith({player});

    machine.advance(10s);

    EXPECT_FALSE(audience.isMissing());
}

TEST_F(AudienceTest, IsNotMissedByAMixThatIsOff) {
    startWith({player});
    machine.advance(3s);
    ASSERT_TRUE(audience.isMissing());

    engine.stop();

    EXPECT_FALSE(audience.isMissing());
    machine.advance(10s);
    EXPECT_FALSE(audience.isMissing());
}

TEST_F(AudienceTest, IsMissedThroughAPauseAndNoLonger) {
    startWith({player});
    machine.advance(3s);

    machine.sound.pause(playerPid);
    machine.advance(4s);
    EXPECT_TRUE(audience.isMissing()) << "between two songs";

    machine.advance(4s);
    EXPECT_FALSE(audience.isMissing());
}

TEST_F(AudienceTest, IsNotMissedWhereNobodyKnows) {
    machine.sound.refuse(Operation::recorders);
    startWith({player});

    machine.advance(5s);

    EXPECT_FALSE(audience.isMissing());
}

TEST_F(AudienceTest, IncludesTheApplicationThatRecords) {
    EXPECT_FALSE(audience.includes(player));

    machine.sound.record(playerPid, mic);
    machine.mainQueue.advance(0ms);

    EXPECT_TRUE(audience.includes(player));
    EXPECT_FALSE(audience.includes(browser));
    EXPECT_FALSE(audience.includes(wholeInput));
    machine.sound.stopRecording(playerPid);
    machine.mainQueue.advance(0ms);
    EXPECT_FALSE(audience.includes(player));
}

TEST_F(AudienceTest, IncludesNobodyWhoRecordsSomethingElse) {
    machine.sound.record(playerPid, interface4);
    machine.mainQueue.advance(0ms);

    EXPECT_FALSE(audience.includes(player));
}

TEST_F(AudienceTest, TellsWhatSomebodyTookFromTheMicrophoneAndTheWayBack) {
    EXPECT_EQ(audience.reduction(), std::nullopt);
    int told = 0;
    const auto connection = engine.changed().connect([&] { ++told; });

    machine.sound.setVolume(mic, {.linear = 0.125F});
    machine.mainQueue.advance(0ms);
    EXPECT_EQ(audience.reduction(), (DeviceVolume{.linear = 0.125F}));
    EXPECT_EQ(told, 1);

    machine.sound.setVolume(mic, {.isMuted = true});
    machine.mainQueue.advance(0ms);
    EXPECT_EQ(audience.reduction(), (DeviceVolume{.isMuted = true}));

    engine.restoreMicrophoneVolume();
    machine.mainQueue.advance(0ms);
    EXPECT_EQ(audience.reduction(), std::nullopt);
    EXPECT_EQ(machine.devices.recordingVolume(mic), DeviceVolume{});
}

TEST_F(AudienceTest, TakesAMicrophoneThatWasTurnedUpAsItIs) {
    machine.sound.setVolume(mic, {.linear = 1.5F});
    machine.mainQueue.advance(0ms);

    EXPECT_EQ(audience.reduction(), std::nullopt);
}

} // namespace
} // namespace velmora
