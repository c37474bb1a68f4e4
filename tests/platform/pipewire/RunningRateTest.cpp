// The rate that the graph runs at, whatever its settings name.

#include "ControlTest.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using namespace support;

class RunningRate : public ControlTest {
protected:
    RunningRate() { set("clock.allowed-rates", "[ 44100 48000 96000 ]"); }

    void TearDown() override {
        set("clock.force-rate", "0");
        ControlTest::TearDown();
    }

    static void set(const std::string& key, const std::string& value) {
        runToEnd({"pw-metadata", "-n", "settings", "0", key, value}, session().environment());
    }
    double rate() {
        return backend.read([](pipewire::SessionState& state, bool) { return state.rate.hz(); });
    }
};

TEST_F(RunningRate, IsKnownWhereAProgramHasChosenItAmongThoseAllowed) {
    const TargetedPlayer player(
        session(), speakers.name, makeTone({.hz = {440, 440}}, 60, /*rateHz=*/96000));
    ASSERT_TRUE(waitUntil([] {
        const AudioGraph graph = session().graph();
        return graph.linked("pw-play", speakers.name);
    }));
    EXPECT_EQ(rate(), 48000) << "as the settings say";

    const CalledPart part(backend, speakers.name);

    EXPECT_TRUE(waitUntil([&] { return rate() == 96000; }));
}

TEST_F(RunningRate, IsToldWhenItChangesWhileAMixRuns) {
    const CalledPart part(backend, speakers.name);
    ASSERT_TRUE(waitUntil([&] { return part.calls() > 0; }));
    settle();
    const int before = changed;

    set("clock.force-rate", "96000");

    EXPECT_TRUE(waitUntil([&] { return rate() == 96000; }));
    EXPECT_TRUE(waitUntil([&] { return changed > before; }));
    EXPECT_EQ(changed, before + 1);
    EXPECT_TRUE(part.isAlive());
}

} // namespace
} // namespace velmora
