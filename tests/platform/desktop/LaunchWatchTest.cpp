#include "platform/desktop/LaunchWatch.h"

#include "platform/desktop/ApplicationIndex.h"
#include "platform/desktop/DesktopEntries.h"
#include "platform/desktop/FakeDesktop.h"
#include "platform/simulated/SimulatedMainQueue.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;

// What came up after a launch, told from a fake /proc and a clock that the test turns.
class LaunchWatchTest : public testing::Test {
protected:
    static constexpr std::int32_t launchedPid = 10;

    LaunchWatchTest() { entries.refresh(); }

    void watch(std::vector<std::int32_t> earlier = {}) {
        watch_.emplace(queue,
                       index,
                       processes,
                       LaunchWatch::Launch{"org.example.Player", launchedPid, std::move(earlier)},
                       [this](std::optional<std::int32_t> leader) { outcomes.push_back(leader); });
    }

    FakeProcess shellScript() {
        return {.pid = launchedPid,
                .name = "start",
                .executable = "/usr/bin/dash",
                .environment = {{"GIO_LAUNCHED_DESKTOP_FILE", entryFile},
                                {"GIO_LAUNCHED_DESKTOP_FILE_PID", "10"}}};
    }

    FakeDesktop desktop;
    fs::path entryFile = desktop.addEntry("org.example.Player");
    DesktopEntries entries{{desktop.data()}};
    ProcFiles processes{desktop.proc()};
    ApplicationIndex index{processes, entries};
    SimulatedMainQueue queue;
    std::vector<std::optional<std::int32_t>> outcomes;

private:
    std::optional<LaunchWatch> watch_;
};

using Outcomes = std::vector<std::optional<std::int32_t>>;

TEST_F(LaunchWatchTest, GivesUpOnAProgramThatComesUpAndGoesDownAgainAndAgain) {
    desktop.addProcess(shellScript());
    watch();

    for (std::int32_t run = 0; run < 30 && outcomes.empty(); ++run) {
        desktop.addProcess({.pid = 20 + run, .name = "player"});
        queue.advance(400ms);
        desktop.removeProcess(20 + run);
    }

    EXPECT_EQ(outcomes, Outcomes{std::nullopt});
}

TEST_F(LaunchWatchTest, BringsAProgramThatStays) {
    desktop.addProcess({.pid = launchedPid, .name = "player"});
    watch();
    queue.advance(500ms);
    EXPECT_TRUE(outcomes.empty());

    queue.advance(100ms);

    EXPECT_EQ(outcomes, Outcomes{launchedPid});
}

TEST_F(LaunchWatchTest, BringsNothingWhenTheProgramEndsAtOnce) {
    watch();
    queue.advance(1000ms);
    EXPECT_TRUE(outcomes.empty());

    queue.advance(100ms);

    EXPECT_EQ(outcomes, Outcomes{std::nullopt});
}

TEST_F(LaunchWatchTest, BringsNothingWhenTheProgramEndsBeforeItHasStayed) {
    desktop.addProcess({.pid = launchedPid, .name = "player"});
    watch();
    queue.advance(300ms);
    desktop.removeProcess(launchedPid);

    queue.advance(2s);

    EXPECT_EQ(outcomes, Outcomes{std::nullopt});
}

TEST_F(LaunchWatchTest, BringsTheProgramThatAWaitingWrapperStarts) {
    desktop.addProcess(shellScript());
    watch();
    queue.advance(2s);
    desktop.addProcess({.pid = 11, .parent = launchedPid, .name = "player-bin"});

    queue.advance(600ms);

    EXPECT_EQ(outcomes, Outcomes{11});
}

TEST_F(LaunchWatchTest, BringsTheProgramThatAVanishedWrapperLeft) {
    desktop.addProcess(shellScript());
    watch();
    queue.advance(100ms);
    auto left = shellScript();
    left.pid = 12;
    left.name = "player-bin";
    left.executable = "/opt/player-bin";
    desktop.addProcess(left);
    desktop.removeProcess(launchedPid);

    queue.advance(600ms);

    EXPECT_EQ(outcomes, Outcomes{12});
}

TEST_F(LaunchWatchTest, WaitsAfreshAfterEachProgramThatEnds) {
    watch();
    queue.advance(800ms); // nothing there from 100 ms on
    desktop.addProcess({.pid = 12, .name = "player"});
    queue.advance(400ms);
    desktop.removeProcess(12); // missed from 1300 ms on
    queue.advance(1000ms);
    EXPECT_TRUE(outcomes.empty());
    desktop.addProcess({.pid = 13, .name = "player"});

    queue.advance(600ms);

    EXPECT_EQ(outcomes, Outcomes{13});
}

TEST_F(LaunchWatchTest, BringsTheInstanceThatTookOver) {
    desktop.addProcess({.pid = 5, .name = "player", .startTicks = 50});
    desktop.addProcess({.pid = launchedPid, .name = "player"});
    watch({5});
    queue.advance(200ms);
    desktop.removeProcess(launchedPid);

    queue.advance(700ms);

    EXPECT_EQ(outcomes, Outcomes{5});
}

TEST_F(LaunchWatchTest, BringsTheNewOneOfTwoInstances) {
    desktop.addProcess({.pid = 5, .name = "player", .startTicks = 50});
    desktop.addProcess({.pid = launchedPid, .name = "player"});
    watch({5});

    queue.advance(600ms);

    EXPECT_EQ(outcomes, Outcomes{launchedPid});
}

TEST_F(LaunchWatchTest, BringsAScriptThatIsTheApplicationItselfAfterALongWait) {
    desktop.addProcess(shellScript());
    watch();
    queue.advance(9900ms);
    EXPECT_TRUE(outcomes.empty());

    queue.advance(100ms);

    EXPECT_EQ(outcomes, Outcomes{launchedPid});
}

TEST_F(LaunchWatchTest, StopsLookingAfterTheOutcome) {
    desktop.addProcess({.pid = launchedPid, .name = "player"});
    watch();

    queue.advance(20s);

    EXPECT_EQ(outcomes.size(), 1U);
    EXPECT_EQ(queue.timerCount(), 0U);
}

} // namespace
} // namespace velmora
