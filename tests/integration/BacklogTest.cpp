// What the rings lose, and how far they run behind.

#include "MixerTest.h"

#include "support/ToneAnalysis.h"

#include <ostream>
#include <vector>

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace support;

/// What happened to a ring over a stretch of time. Backlogs in floats.
struct RingChange {
    std::int64_t underruns{};
    std::int64_t trims{};
    std::int64_t backlogMin{};
    std::int64_t backlogMax{};

    bool operator==(const RingChange&) const = default;
};

void PrintTo(const RingChange& change, std::ostream* out) {
    *out << change.underruns << " underruns, " << change.trims << " trims, backlog "
         << change.backlogMin << " to " << change.backlogMax;
}

/// Two applications and an input, all with monitoring, at a block size of their own.
class Backlog : public ListeningMixerTest {
protected:
    Backlog() { engine.setMonitoringSelection(interface4.name + "#3"); }
    ~Backlog() override { session().forceQuantum(0); }

    void mixEverythingAt(std::uint32_t quantum) {
        session().forceQuantum(quantum);
        app.play("music", leftHz, rightHz, playedDb);
        mix({playing(app.pid()), playing(pulse.pid()), input(interface4.description, 1, 2)});
        EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
        EXPECT_TRUE(mic.hears(0, otherLeftHz, playedDb));
        EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));
    }

    /// Lets the mix go on for so many seconds of sound.
    void listen(double seconds) const {
        EXPECT_TRUE(
            mic.waitForMore(static_cast<std::size_t>(seconds * 48000), std::chrono::seconds(60)));
    }

    /// Both rings of every source.
    std::vector<RingChange> changesOver(double seconds) {
        const auto before = engine.statistics();
        engine.restartBacklogRanges();
        listen(seconds);
        const auto after = engine.statistics();
        std::vector<RingChange> changes;
        for (std::size_t i = 0; i < after.size(); ++i) {
            for (const auto ring : {&SourceStatistics::stream, &SourceStatistics::monitor}) {
                const RingStatistics& now = after[i].*ring;
                changes.push_back({.underruns = now.underruns - (before[i].*ring).underruns,
                                   .trims = now.trims - (before[i].*ring).trims,
                                   .backlogMin = now.backlogMin,
                                   .backlogMax = now.backlogMax});
            }
        }
        return changes;
    }

    ToneApp app{session()};
    PulsePlayer pulse{session(), {.hz = {otherLeftHz, otherRightHz}, .db = playedDb}};
    Feeder feeder{
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb}};
};

TEST_F(Backlog, AtBlocksOf1024FramesNothingIsLostAndTheBacklogIsOneBlock) {
    constexpr RingChange nothingLost{.backlogMin = 2048, .backlogMax = 2048}; // two floats a frame
    mixEverythingAt(1024);
    listen(1);

    EXPECT_THAT(changesOver(4), testing::ElementsAreArray(std::vector(6, nothingLost)));
}

TEST_F(Backlog, AtBlocksOf128FramesTheMixIsNeverInterrupted) {
    mixEverythingAt(128);
    listen(1);
    const std::size_t from = mic.frames();

    listen(4);

    EXPECT_EQ(countBreaks(mic.all().channel(0, from), leftHz), 0);
    EXPECT_EQ(countBreaks(mic.all().channel(0, from), inputLeftHz), 0);
}

} // namespace
} // namespace velmora
