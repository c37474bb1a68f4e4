// Blocks that follow who listens, on a real session.

#include "MixerTest.h"

#include "support/ToneAnalysis.h"

#include <chrono>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;

class Blocks : public MixerTest {
protected:
    Blocks() {
        engine.setHeadphoneVolume(0);
        app.play("music", leftHz, rightHz, playedDb);
        mix({playing(app.pid())});
    }

    [[nodiscard]] bool areOf(std::uint32_t frames) const {
        return waitUntil([&] { return engine.blocks().frames == frames; });
    }

    ToneApp app{session()};
};

TEST_F(Blocks, AreLongWhileNobodyListensAndShortForWhoCallsUp) {
    ASSERT_TRUE(areOf(1024));

    const PulseRecorder call(session(), microphone);

    EXPECT_TRUE(areOf(128));
    EXPECT_TRUE(call.hears(0, leftHz, playedDb));
}

TEST_F(Blocks, ChangeWithoutAGapInTheFirstSecondOfWhoListens) {
    for (int round = 0; round < 5; ++round) {
        ASSERT_TRUE(areOf(1024));
        const Recorder recorder(session(), microphone, {1});
        ASSERT_TRUE(recorder.waitForMore(48000, 60s));
        const auto heard = recorder.all().channel(0);
        const auto begin = std::ranges::find_if(heard, [](float one) { return one != 0.0F; });
        EXPECT_EQ(countBreaks({begin, heard.end()}, leftHz), 0);
        EXPECT_TRUE(areOf(128));
    }
}

} // namespace
} // namespace velmora
