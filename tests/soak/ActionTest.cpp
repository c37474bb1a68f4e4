#include "soak/Action.h"

#include "soak/Devices.h"

#include <gtest/gtest.h>

namespace velmora::soak {
namespace {

using Kind = Action::Kind;

std::string wordOf(int player, pid_t pid) {
    return Player{.number = player, .pid = pid, .streams = {}}.word();
}

/// A player that plays, in a mix that is on.
World mixWith(int player, pid_t pid) {
    World world(3);
    follow(world, {.kind = Kind::open, .number = player, .pid = pid});
    follow(world, {.kind = Kind::play, .number = player, .stream = 1});
    follow(world, {.kind = Kind::add, .word = world.players.front().word()});
    follow(world, {.kind = Kind::start});
    return world;
}

TEST(Action, NamesAPlayersRunAsTheMixerDoes) {
    const Player player{.number = 3, .pid = 77, .streams = {}};

    EXPECT_EQ(player.word(), "app-" + player.application() + "-77");
    EXPECT_EQ(Player::applicationOf(player.word()), player.application());
    EXPECT_EQ(Player::applicationOf(guitar), guitar);
}

TEST(Action, StartsAMixOfWhatWorks) {
    const World world = mixWith(1, 77);

    EXPECT_EQ(world.isRunning, true);
    EXPECT_EQ(world.sources, std::vector<std::string>{wordOf(1, 77)});
}

TEST(Action, LeavesItOpenWhetherAMixOfNothingThatWorksIsOn) {
    World world = mixWith(1, 77);
    follow(world, {.kind = Kind::add, .word = guitar});
    follow(world, {.kind = Kind::close, .number = 1});
    EXPECT_EQ(world.isRunning, true) << "an end stops nothing";
    follow(world, {.kind = Kind::unplug, .word = guitar});

    follow(world, {.kind = Kind::remove, .word = guitar});

    EXPECT_EQ(world.isRunning, std::nullopt);
}

TEST(Action, EndsAMixThatIsEmptied) {
    World world = mixWith(1, 77);

    follow(world, {.kind = Kind::remove, .word = wordOf(1, 77)});

    EXPECT_EQ(world.isRunning, false);
}

TEST(Action, KeepsTheLevelFromBeforeAMute) {
    World world(2);
    follow(world, {.kind = Kind::gain, .word = guitar, .db = -4});
    follow(world, {.kind = Kind::mute, .word = guitar, .on = true});
    follow(world, {.kind = Kind::mute, .word = guitar, .on = true});
    EXPECT_TRUE(world.strip(guitar).level.isMuted);

    follow(world, {.kind = Kind::mute, .word = guitar, .on = false});

    EXPECT_FALSE(world.strip(guitar).level.isMuted);
    EXPECT_EQ(world.strip(guitar).level.db, -4);
}

TEST(Action, RecallsThePresetsAppInstanceThatRunsNow) {
    World world = mixWith(1, 77);
    follow(world, {.kind = Kind::gain, .word = wordOf(1, 77), .db = -6});
    follow(world, {.kind = Kind::savePreset, .word = "Evening"});
    follow(world, {.kind = Kind::close, .number = 1});
    follow(world, {.kind = Kind::open, .number = 1, .pid = 88});
    follow(world, {.kind = Kind::play, .number = 1, .stream = 1});

    follow(world, {.kind = Kind::applyPreset, .word = "Evening"});

    EXPECT_EQ(world.sources, std::vector<std::string>{wordOf(1, 88)});
    EXPECT_EQ(world.strip(wordOf(1, 88)).level.db, -6);
    EXPECT_EQ(world.activePreset, "Evening");
}

TEST(Action, FindsADeviceThatWasAwayWhenAPresetWasSavedByNothing) {
    World world = mixWith(1, 77);
    follow(world, {.kind = Kind::add, .word = guitar});
    follow(world, {.kind = Kind::unplug, .word = guitar});
    follow(world, {.kind = Kind::savePreset, .word = "Evening"});
    follow(world, {.kind = Kind::plug, .word = guitar});

    follow(world, {.kind = Kind::applyPreset, .word = "Evening"});

    EXPECT_EQ(world.sources, std::vector<std::string>{wordOf(1, 77)});
    EXPECT_EQ(world.presets.front().entries.size(), 2U) << "it is kept all the same";
}

TEST(Action, ReplacesAPresetOfTheSameName) {
    World world = mixWith(1, 77);
    follow(world, {.kind = Kind::savePreset, .word = "Evening"});
    follow(world, {.kind = Kind::add, .word = guitar});

    follow(world, {.kind = Kind::savePreset, .word = "Evening"});

    ASSERT_EQ(world.presets.size(), 1U);
    EXPECT_EQ(world.presets.front().entries.size(), 2U);
}

TEST(Action, LosesWhatLivesInTheDaemonWithIt) {
    World world = mixWith(1, 77);
    follow(world, {.kind = Kind::plug, .word = headset.name});

    follow(world, {.kind = Kind::killDaemon});

    EXPECT_FALSE(world.isUp());
    EXPECT_FALSE(world.hasHeadset);
    EXPECT_EQ(world.isRunning, true) << "it waits for the daemon";
}

TEST(Action, LosesTheDevicesWithTheSessionManager) {
    World world = mixWith(1, 77);
    follow(world, {.kind = Kind::plug, .word = headset.name});
    follow(world, {.kind = Kind::unplug, .word = support::interface4.name});

    follow(world, {.kind = Kind::killManager});
    follow(world, {.kind = Kind::restore});

    EXPECT_TRUE(world.isUp());
    EXPECT_FALSE(world.hasHeadset);
    EXPECT_TRUE(world.hasInterface) << "the next one brings it back";
    EXPECT_TRUE(world.hasGuitar);
}

TEST(Action, IsSureOfTheMonitorAgainOnceItsDeviceIsBack) {
    World world = mixWith(1, 77);
    follow(world, {.kind = Kind::unplug, .word = support::interface4.name});
    EXPECT_TRUE(world.isMonitorSure) << "nothing falls back by itself";
    follow(world, {.kind = Kind::add, .word = guitar});
    EXPECT_FALSE(world.isMonitorSure);

    follow(world, {.kind = Kind::plug, .word = support::interface4.name});

    EXPECT_TRUE(world.isMonitorSure);
}

} // namespace
} // namespace velmora::soak
