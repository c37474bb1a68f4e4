// The blocks in which the graph runs, as our node sees them.

#include "BackendTest.h"

#include <thread>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;

class RunningBlocks : public BackendTest {
protected:
    [[nodiscard]] BlockReport blocks() { return audio.units().blocks(); }
};

TEST_F(RunningBlocks, AreMissedByWhoIsLongerLateThanTheClockWaits) {
    auto unit = audio.units().makeOutput();
    ASSERT_EQ(unit->setDevice(find(speakers.name).value_or(0)), statusOk);
    ASSERT_EQ(unit->start([calls = 0](std::int64_t, std::span<float* const>) mutable {
        if (++calls % 100 == 0) {
            std::this_thread::sleep_for(350ms);
        }
    }),
              statusOk);

    EXPECT_TRUE(waitUntil([&] { return blocks().missed > 0; }));
    const std::uint64_t missed = blocks().missed;
    unit.reset();

    EXPECT_GE(blocks().missed, missed) << "they stay counted";
}

TEST_F(RunningBlocks, AreNotMissedWhenTheirLengthChanges) {
    const auto unit = play(speakers.name);
    const Recorder recorder(session(), speakers.name, {1});
    ASSERT_TRUE(recorder.hears(0, 440, playedDb));
    const std::uint64_t before = blocks().missed;

    for (int round = 0; round < 5; ++round) {
        for (const std::uint32_t frames : {1024U, 128U}) {
            audio.units().askForBlocksOf(frames);
            EXPECT_TRUE(waitUntil([&] { return blocks().frames == frames; }));
            EXPECT_TRUE(recorder.waitForFreshSound());
        }
    }

    EXPECT_EQ(blocks().missed, before);
}

} // namespace
} // namespace velmora
