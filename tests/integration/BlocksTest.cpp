// Blocks that follow who listens, on a real session.

#include "MixerTest.h"

#include "support/ToneAnalysis.h"

#include <chrono>
#include <sched.h>
#include <thread>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;

/// Without it the mix begins with long blocks, whoever listens.
bool isPriorityToBeHad() {
    bool isGiven = false;
    std::thread([&] {
        const sched_param least{.sched_priority = 1};
        isGiven = sched_setscheduler(0, SCHED_FIFO, &least) == 0;
    }).join();
    return isGiven;
}

class Blocks : public MixerTest {
protected:
    Blocks() {
        engine.setHeadphoneVolume(0);
        app.play("music", leftHz, rightHz, playedDb);
        mix({playing(app.pid())});
    }

    void SetUp() override {
        if (!isPriorityToBeHad()) {
            GTEST_SKIP() << "this machine gives no thread a real-time priority";
        }
    }

    [[nodiscard]] bool areLong() const {
        return waitUntil([&] { return engine.blocks().frames == 1024; });
    }
    /// Not always of 128 frames: a machine that misses one gets longer ones, as it should.
    [[nodiscard]] bool areShort() const {
        return waitUntil([&] { return engine.blocks().frames < 1024; });
    }

    ToneApp app{session()};
};

TEST_F(Blocks, AreLongWhileNobodyListensAndShortForWhoCallsUp) {
    ASSERT_TRUE(areLong());

    const PulseRecorder call(session(), microphone);

    EXPECT_TRUE(areShort());
    EXPECT_TRUE(call.hears(0, leftHz, playedDb));
}

TEST_F(Blocks, ChangeWithoutAGapInTheFirstSecondOfWhoListens) {
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(areLong());
        const Recorder recorder(session(), microphone, {1});
        ASSERT_TRUE(recorder.waitForMore(48000, 60s));
        const auto heard = recorder.all().channel(0);
        const auto begin = std::ranges::find_if(heard, [](float one) { return one != 0.0F; });
        EXPECT_EQ(countBreaks({begin, heard.end()}, leftHz), 0);
        EXPECT_TRUE(areShort());
    }
}

} // namespace
} // namespace velmora
