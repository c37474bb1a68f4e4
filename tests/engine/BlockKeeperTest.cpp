// What the mix asks for, and tells, of the blocks in which its sound comes.

#include "engine/EngineFixture.h"

#include <chrono>

namespace velmora {
namespace {

using namespace std::chrono_literals;

class Blocks : public EngineFixture {
protected:
    /// The machine stands still for so many blocks.
    void miss(std::int64_t blocks) {
        machine.sound.standStill(blocks);
        machine.advanceCycles(blocks);
    }
    /// Blocks are missed as long as they are short.
    void bearLoad(std::chrono::milliseconds duration) {
        for (auto at = 0ms; at < duration; at += 50ms) {
            if (machine.sound.blockFrames() < 1024) {
                miss(1);
            }
            machine.advance(50ms);
        }
    }
};

TEST_F(Blocks, AreOfNoLengthWhileNoMixRuns) {
    EXPECT_EQ(engine.blocks(), BlockStatus{});
    startWith({player});
    machine.advance(1s);
    EXPECT_EQ(engine.blocks(), (BlockStatus{.frames = 128}));

    engine.stop();

    EXPECT_EQ(engine.blocks(), BlockStatus{});
}

TEST_F(Blocks, AreLongerHalfASecondAfterOneWasMissed) {
    startWith({player});
    machine.advance(1s);
    miss(1);

    machine.advance(500ms);

    EXPECT_EQ(machine.sound.blockFrames(), 256);
    EXPECT_EQ(engine.blocks(), (BlockStatus{.frames = 256, .missedLastMinute = 1}));
}

TEST_F(Blocks, ThatAreMissedWhileAMixIsBuiltSayNothing) {
    startWith({player});
    miss(3);

    machine.advance(1s);

    EXPECT_EQ(machine.sound.blockFrames(), 128);
    EXPECT_EQ(engine.blocks(), (BlockStatus{.frames = 128, .missedLastMinute = 3}));
}

TEST_F(Blocks, AreCountedAsMissedForAMinute) {
    startWith({player});
    machine.advance(1s);
    miss(2);
    machine.advance(30s);
    miss(1);
    machine.advance(1s);
    EXPECT_EQ(engine.blocks().missedLastMinute, 3U);

    machine.advance(30s);
    EXPECT_EQ(engine.blocks().missedLastMinute, 1U);

    machine.advance(30s);
    EXPECT_EQ(engine.blocks().missedLastMinute, 0U);
}

TEST_F(Blocks, StayLongWhenTheMixIsBuiltAnew) {
    startWith({player});
    machine.advance(1s);
    bearLoad(5s);
    ASSERT_EQ(machine.sound.blockFrames(), 1024);

    startWith({player, thirdPair});
    machine.advance(1s);

    EXPECT_EQ(machine.sound.blockFrames(), 1024);
}

TEST_F(Blocks, GrowAndShrinkWithoutABacklogThatOutlivesTheChange) {
    startWith({player, thirdPair});
    machine.advance(1s);
    bearLoad(5s);
    ASSERT_EQ(machine.sound.blockFrames(), 1024);
    engine.restartBacklogRanges();
    machine.advance(1s);
    for (const SourceStatistics& source : engine.statistics()) {
        EXPECT_EQ(source.stream.backlogMax, 2 * 1024) << source.source.name();
    }

    machine.advance(4min);

    ASSERT_EQ(machine.sound.blockFrames(), 128);
    engine.restartBacklogRanges();
    machine.advance(1s);
    for (const SourceStatistics& source : engine.statistics()) {
        EXPECT_EQ(source.stream.backlogMax, 2 * 128) << source.source.name();
    }
}

TEST_F(Blocks, TellObserversWhatHasChanged) {
    machine.sound.record(browserPid, mic); // that nobody listens would be told too
    startWith({player});
    machine.advance(1s);
    int told = 0;
    const auto connection = engine.changed().connect([&] { ++told; });
    machine.advance(10s);
    EXPECT_EQ(told, 0);

    miss(1);
    machine.advance(1s);

    EXPECT_GT(told, 0);
}

TEST_F(Blocks, AreLongWhileNobodyListens) {
    engine.setHeadphoneVolume(0);
    machine.sound.measure(browserPid, mic);
    startWith({player});
    machine.advance(3s);
    EXPECT_EQ(machine.sound.blockFrames(), 128);

    machine.advance(3s);

    EXPECT_EQ(machine.sound.blockFrames(), 1024);
}

TEST_F(Blocks, AreShortAtOnceForWhoBeginsToRecordTheMicrophone) {
    engine.setHeadphoneVolume(0);
    startWith({player});
    machine.advance(6s);
    ASSERT_EQ(machine.sound.blockFrames(), 1024);

    machine.sound.record(browserPid, mic);
    machine.advance(1ms);

    EXPECT_EQ(machine.sound.blockFrames(), 128);
}

TEST_F(Blocks, AreShortForWhoListensToTheMonitoringOutput) {
    engine.setHeadphoneVolume(0);
    startWith({player});
    machine.advance(6s);
    ASSERT_EQ(machine.sound.blockFrames(), 1024);

    engine.setHeadphoneVolume(0.5F);
    machine.advance(300ms);

    EXPECT_EQ(machine.sound.blockFrames(), 128);
}

TEST_F(Blocks, AreLongWhereMonitoringHasNoDevice) {
    startWith({player});
    machine.sound.setDefaultOutput(0);
    machine.sound.removeDevice(speakers);

    machine.advance(7s);

    EXPECT_EQ(machine.sound.blockFrames(), 1024);
}

TEST_F(Blocks, StayShortForAWhileAfterTheLastListenerHasGone) {
    engine.setHeadphoneVolume(0);
    machine.sound.record(browserPid, mic);
    startWith({player});
    machine.advance(10s);
    machine.sound.stopRecording(browserPid);
    machine.advance(4s);
    machine.sound.record(browserPid, mic);
    machine.advance(4s);

    EXPECT_EQ(machine.sound.blockFrames(), 128);
}

TEST_F(Blocks, BearNoGrudgeForWhatWasMissedWhileNobodyListened) {
    engine.setHeadphoneVolume(0);
    startWith({player});
    machine.advance(7s);
    miss(3);
    machine.advance(1s);

    machine.sound.record(browserPid, mic);
    machine.advance(1s);

    EXPECT_EQ(machine.sound.blockFrames(), 128);
}

TEST_F(Blocks, BeginLongWhereTheMachineGivesNoPriority) {
    machine.sound.setRealTime(false);
    startWith({player});
    machine.advance(1s);
    EXPECT_EQ(machine.sound.blockFrames(), 1024);

    machine.advance(62s);
    EXPECT_EQ(machine.sound.blockFrames(), 512);
}

} // namespace
} // namespace velmora
