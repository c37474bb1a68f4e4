// What the engine's callbacks may not do, and what they share with the main thread.
#include "engine/EngineFixture.h"
#include "support/CountedAllocations.h"

#include <atomic>
#include <thread>

namespace velmora {
namespace {

class EngineRealtime : public EngineFixture {
protected:
    EngineRealtime() {
        everything.lowcut = 2;
        everything.tilt = 0.5F;
        everything.comp = 3;
        everything.reverbMix = 0.5F;
        everything.plosive = true;
        everything.denoise = true;
    }

    FXParams everything;
};

TEST_F(EngineRealtime, UsesNoHeapInAnyCallback) {
    std::size_t before = 0;
    std::size_t heapCalls = 0;
    std::size_t callbacks = 0;
    machine.sound.watchCallbacks([&] { before = heapCallsOfThisThread(); },
                                 [&] {
                                     heapCalls += heapCallsOfThisThread() - before;
                                     ++callbacks;
                                 });
    engine.setFX(everything, player);
    startWith({player, browser, thirdPair});
    machine.advanceCycles(5);

    // What makes callbacks take something over: effects, gains, volumes, bypass, lists, sizes.
    engine.setFX(everything, thirdPair);
    engine.setGain(0.5F, browser);
    engine.setStreamVolume(0.7F);
    engine.setMicrophoneClosed(true);
    machine.advanceCycles(5);
    engine.setFxBypassed(true);
    machine.advanceCycles(5);
    engine.setFxBypassed(false);
    engine.remove(browser);
    machine.advanceCycles(5);
    machine.sound.setRate(96000);
    engine.start();
    machine.sound.setBlockFrames(largestBlockFrames);
    machine.advanceCycles(5);
    engine.setMonitoringSelection("interface#3");
    machine.advanceCycles(5);

    EXPECT_EQ(callbacks, 15U * 5U + 15U * 4U); // three sources and two outputs, then two
    EXPECT_EQ(heapCalls, 0U);
}

TEST_F(EngineRealtime, MayBeEditedWhileItPlays) {
    startWith({player, thirdPair});
    std::atomic<bool> finished{false};
    std::thread sound([&] {
        while (!finished) {
            machine.sound.runCycle();
        }
    });

    for (int edit = 0; edit < 200; ++edit) {
        const float value = static_cast<float>(edit % 8) / 8.0F;
        engine.setGain(value, player);
        engine.setStreamVolume(value);
        engine.setHeadphoneVolume(value);
        everything.tilt = value;
        engine.setFX(everything, edit % 2 == 0 ? player : thirdPair);
        engine.setFxBypassed(edit % 3 == 0);
        EXPECT_EQ(engine.statistics().size(), 2U);
        machine.mainQueue.advance(std::chrono::milliseconds{40}); // a tick of the meters
        if (edit % 20 == 0) {
            engine.setMonitoringSelection(edit % 40 == 0 ? "interface#3" : "interface");
            engine.setDirectMuted(edit % 40 == 0, player);
        }
        if (edit % 50 == 0) {
            engine.start();
        }
    }
    finished = true;
    sound.join();

    EXPECT_TRUE(engine.isRunning());
    engine.setFX({}, player);
    engine.setFX({}, thirdPair);
    engine.setGain(1.0F, player);
    engine.setStreamVolume(1.0F);
    engine.start();
    EXPECT_EQ(nextInMic(), 0.25F + 3 * 0.0625F);
}

} // namespace
} // namespace velmora
