// How often a mix looks for what it lacks, and when it stops looking.

#include "engine/KeptWholeFixture.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

using Retry = KeptWholeFixture;

TEST_F(Retry, LooksForNothingThatOnlyNewsCanMend) {
    const AudioSource beyond = DeviceChannelsSource{interface4, 9, 2, "Beyond"};
    engine.setMonitoringSelection("interface#4"); // its last channel: no pair
    startWith({player, silentApplication(), beyond});
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U) << "the meters'";

    machine.quitApplication(browserPid); // news, but not for these
    machine.advance(aWhile);

    EXPECT_EQ(machine.mainQueue.timerCount(), 1U);
    EXPECT_EQ(nextInMic(), 0.25F);
}

TEST_F(Retry, TriesARefusedSourceEverMoreSeldom) {
    machine.advance(10ms); // all that was there at the beginning has been told
    machine.sound.refuse(Operation::startInput);
    startWith({player, wholeInput});
    const auto attemptsWithin = [&](std::chrono::milliseconds time) {
        const auto before = machine.sound.refusalsGiven(Operation::startInput);
        machine.advance(time);
        return machine.sound.refusalsGiven(Operation::startInput) - before;
    };

    EXPECT_EQ(attemptsWithin(200ms), 1U);
    EXPECT_EQ(attemptsWithin(400ms), 1U);
    EXPECT_EQ(attemptsWithin(800ms), 1U);
    EXPECT_EQ(attemptsWithin(1600ms), 1U);
    EXPECT_EQ(attemptsWithin(3200ms), 1U);
    EXPECT_EQ(attemptsWithin(60s), 12U);

    machine.quitApplication(browserPid); // something new is seen
    EXPECT_EQ(attemptsWithin(10ms), 1U);
    EXPECT_EQ(attemptsWithin(200ms), 1U);
    EXPECT_EQ(attemptsWithin(400ms), 1U);

    machine.sound.allow(Operation::startInput);
    machine.advance(800ms);
    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U);
}

TEST_F(Retry, TriesSoonAgainAfterTheUsersStart) {
    machine.advance(10ms);
    machine.sound.refuse(Operation::startInput);
    startWith({player, wholeInput});
    machine.advance(60s);

    engine.start();
    const auto before = machine.sound.refusalsGiven(Operation::startInput);
    machine.advance(200ms);

    EXPECT_EQ(machine.sound.refusalsGiven(Operation::startInput), before + 1);
}

TEST_F(Retry, TriesNothingAgainWhenNewsHaveMendedIt) {
    machine.advance(10ms);
    machine.sound.refuse(Operation::startInput);
    startWith({player, wholeInput});
    machine.sound.allow(Operation::startInput);

    machine.quitApplication(browserPid);
    machine.advance(1ms);

    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U) << "the meters'";
}

TEST_F(Retry, TriesADeviceThatIsThereButWasRefusedAgain) {
    machine.advance(10ms);
    machine.sound.refuse(Operation::setInputDevice);
    startWith({player, wholeInput});
    machine.sound.allow(Operation::setInputDevice);

    machine.advance(200ms);

    EXPECT_EQ(nextInMic(), 0.25F + 0.0625F);
}

TEST_F(Retry, WaitsForADeviceThatIsGoneWithoutTryingIt) {
    unplugInterface();
    machine.advance(10ms);

    startWith({player, wholeInput});

    EXPECT_EQ(machine.mainQueue.timerCount(), 1U) << "the meters'";
}

TEST_F(Retry, TriesARefusedMonitoringOutputNoMoreWhenItIsGone) {
    engine.setMonitoringSelection("interface");
    machine.sound.refuse(Operation::startOutput, -5, interface4);
    startWith({player});
    machine.advance(10ms);
    ASSERT_EQ(machine.mainQueue.timerCount(), 2U);

    unplugInterface();
    machine.advance(aWhile);

    EXPECT_EQ(machine.mainQueue.timerCount(), 1U);
}

TEST_F(Retry, LeavesAMonitoringOutputThatPlaysAlone) {
    startWith({player});
    machine.advance(10ms);
    machine.sound.refuse(Operation::startOutput, -5, speakers);

    machine.quitApplication(browserPid);
    machine.advance(aWhile);

    EXPECT_EQ(machine.sound.refusalsGiven(Operation::startOutput), 0U);
    EXPECT_EQ(next(speakers, 1), 0.25F + 0.25F);
}

TEST_F(Retry, TriesARefusedMonitoringOutputAgainWithoutAWord) {
    machine.sound.refuse(Operation::startOutput, -5, speakers);
    startWith({player});
    EXPECT_EQ(nextMonitored(), 0.0F);
    EXPECT_EQ(engine.lastError(), std::nullopt);

    machine.sound.allow(Operation::startOutput, speakers);
    machine.advance(200ms);

    EXPECT_EQ(nextMonitored(), 0.25F);
    EXPECT_EQ(machine.mainQueue.timerCount(), 1U);
}

TEST_F(Retry, TriesAMuteThatWasRefusedAgain) {
    startWith({player});
    machine.advance(100ms);
    ASSERT_EQ(engine.level(), 0.25F);
    machine.sound.refuse(Operation::openTap);
    engine.setDirectMuted(true, player);
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(engine.level(), 0.0F);
    EXPECT_THAT(engine.sourceLevels(), IsEmpty());

    machine.sound.allow(Operation::openTap);
    machine.advance(200ms);

    EXPECT_EQ(nextInMic(), 0.25F);
}

} // namespace
} // namespace velmora
