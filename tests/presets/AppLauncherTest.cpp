#include "presets/AppLauncher.h"

#include "platform/simulated/SimulatedPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class AppLauncherTest : public testing::Test {
protected:
    AppLauncherTest() { machine_.applications.install(player_); }

    void launch() {
        launcher_->launch(player_,
                          [this](const auto& running) { completions_.push_back(running); });
    }
    [[nodiscard]] std::size_t timersLeft() const { return machine_.mainQueue.timerCount(); }

    const InstalledApplication player_{
        .bundleID = "org.example.player", .name = "Player", .location = "/applications/player"};
    SimulatedPlatform machine_;
    std::optional<AppLauncher> launcher_{std::in_place, machine_.platform()};
    std::vector<std::optional<RunningApplication>> completions_;
};

TEST_F(AppLauncherTest, CompletesOnceWithTheRunningApplication) {
    launch();
    machine_.advance(1499ms);
    EXPECT_THAT(completions_, IsEmpty());

    machine_.advance(1ms);
    ASSERT_THAT(completions_, SizeIs(1));
    EXPECT_EQ(completions_[0]->bundleID, "org.example.player");

    machine_.advance(10s);
    EXPECT_THAT(completions_, SizeIs(1));
    EXPECT_EQ(timersLeft(), 0U);
}

TEST_F(AppLauncherTest, TheProcessCountsBeforeTheIdentifier) {
    machine_.startApplication(5, "Player", "org.example.player");
    machine_.applications.planLaunch(
        player_.location,
        {.result =
             RunningApplication{.pid = 6, .name = "Player", .bundleID = "org.example.player"}});

    launch();
    machine_.advance(1500ms);

    ASSERT_THAT(completions_, SizeIs(1));
    EXPECT_EQ(completions_[0]->pid, 6);
}

TEST_F(AppLauncherTest, AHelperIsCountedWithTheApplicationThatLeadsIt) {
    machine_.startApplication(5, "Player", "org.example.player");
    machine_.applications.planLaunch(
        player_.location,
        {.result = RunningApplication{.pid = 6, .name = "starter", .bundleID = ""}});
    launch();
    machine_.advance(1s);
    machine_.applications.quit(6);
    machine_.applications.addHelper(5, 6);

    machine_.advance(1s);

    ASSERT_THAT(completions_, SizeIs(1));
    EXPECT_EQ(completions_[0]->pid, 5);
}

TEST_F(AppLauncherTest, ACompletionMayLaunchAgain) {
    launcher_->launch(player_, [this](const auto&) { launch(); });

    machine_.advance(3s);

    EXPECT_THAT(completions_, SizeIs(1));
}

TEST_F(AppLauncherTest, ACompletionMayDestroyTheLauncher) {
    launch();
    launcher_->launch(player_, [this](const auto&) { launcher_.reset(); });
    launch();

    machine_.advance(3s);

    EXPECT_THAT(completions_, SizeIs(1));
}

TEST_F(AppLauncherTest, ADestroyedLauncherCompletesNothing) {
    launch();
    machine_.advance(1s);

    launcher_.reset();
    machine_.advance(3s);

    EXPECT_THAT(completions_, IsEmpty());
    EXPECT_EQ(timersLeft(), 0U);
}

} // namespace
} // namespace velmora
