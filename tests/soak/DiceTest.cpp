#include "soak/Dice.h"

#include <gtest/gtest.h>
#include <set>
#include <string>
#include <vector>

namespace velmora::soak {
namespace {

using Kind = Action::Kind;

constexpr int last = static_cast<int>(Kind::restore);

/// What is drawn in a session in which everything is done at once.
std::vector<Action> drawn(std::uint64_t seed, const Faults& faults, bool hasWindow, int count) {
    Dice dice(seed, faults, hasWindow);
    World world(4);
    std::vector<Action> actions;
    while (static_cast<int>(actions.size()) < count) {
        Action action = dice.next(world);
        if (action.kind == Kind::open) {
            action.pid = static_cast<pid_t>(100 + actions.size());
        }
        follow(world, action);
        world.isRunning = world.isRunning.value_or(true);
        actions.push_back(action);
    }
    return actions;
}

std::set<Kind> kindsOf(const std::vector<Action>& actions) {
    std::set<Kind> kinds;
    for (const Action& action : actions) {
        kinds.insert(action.kind);
    }
    return kinds;
}

TEST(Dice, DrawsTheSameFromTheSameSeed) {
    const auto lines = [](std::uint64_t seed) {
        std::vector<std::string> all;
        for (const Action& action : drawn(seed, Faults::all(), true, 500)) {
            all.push_back(describe(action));
        }
        return all;
    };

    EXPECT_EQ(lines(7), lines(7));
    EXPECT_NE(lines(7), lines(8));
}

TEST(Dice, DrawsEverythingThatThereIs) {
    const auto kinds = kindsOf(drawn(1, Faults::all(), true, 10'000));

    for (int kind = 0; kind <= last; ++kind) {
        EXPECT_TRUE(kinds.contains(static_cast<Kind>(kind))) << nameOf(static_cast<Kind>(kind));
    }
}

TEST(Dice, DrawsNoFaultThatIsNotWanted) {
    const auto kinds = kindsOf(drawn(1, {}, false, 10'000));

    for (const Kind fault : {Kind::close,
                             Kind::hush,
                             Kind::reconnect,
                             Kind::move,
                             Kind::blocks,
                             Kind::plug,
                             Kind::unplug,
                             Kind::killDaemon,
                             Kind::killManager,
                             Kind::restartPulse,
                             Kind::restore,
                             Kind::language,
                             Kind::daw}) {
        EXPECT_FALSE(kinds.contains(fault)) << nameOf(fault);
    }
}

TEST(Dice, NeverAddsTheBystander) {
    const World world(4);
    for (const Action& action : drawn(1, Faults::all(), false, 10'000)) {
        if (action.kind == Kind::add) {
            EXPECT_NE(Player::applicationOf(action.word), world.players.back().application());
        }
    }
}

TEST(Dice, SavesNoDeviceWhileTheServicesAreAway) {
    World world(4);
    follow(world, {.kind = Kind::add, .word = guitar});
    follow(world, {.kind = Kind::killDaemon});
    Dice dice(1, Faults::all(), true);

    for (int count = 0; count < 1000; ++count) {
        EXPECT_NE(dice.next(world).kind, Kind::savePreset);
    }
}

TEST(Dice, KnowsTheFaultsByName) {
    const auto faults = Faults::named("daemon,blocks");

    ASSERT_TRUE(faults.has_value());
    EXPECT_TRUE(faults->daemon && faults->blocks);
    EXPECT_FALSE(faults->manager || faults->applications || faults->devices || faults->pulse);
    EXPECT_TRUE(Faults::named("all")->pulse);
    EXPECT_FALSE(Faults::named("none")->applications);
    EXPECT_EQ(Faults::named("daemon,weather"), std::nullopt);
}

} // namespace
} // namespace velmora::soak
