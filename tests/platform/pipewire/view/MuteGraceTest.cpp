#include "platform/pipewire/view/MuteGrace.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;
using Processes = MuteGrace::Processes;

constexpr AudioObjectID player = 7;
constexpr AudioObjectID caller = 8;
const MuteGrace::Clock::time_point begin{};

TEST(MuteGrace, KeepsSilentWhoeverIsAskedForWithoutEnd) {
    MuteGrace grace;

    EXPECT_EQ(grace.follow({player, caller}, begin), (Processes{player, caller}));
    EXPECT_EQ(grace.follow({player, caller}, begin + 1h), (Processes{player, caller}));
    EXPECT_EQ(grace.due(), std::nullopt);
}

TEST(MuteGrace, KeepsAMomentLongerWhoeverIsNotAskedForAnyMore) {
    MuteGrace grace;
    static_cast<void>(grace.follow({player, caller}, begin));

    EXPECT_EQ(grace.follow({caller}, begin + 1s), (Processes{player, caller}));
    EXPECT_EQ(grace.due(), begin + 1s + MuteGrace::lasts);
    EXPECT_EQ(grace.follow({caller}, begin + 1s + MuteGrace::lasts - 1ms),
              (Processes{player, caller}));
    EXPECT_EQ(grace.follow({caller}, begin + 1s + MuteGrace::lasts), Processes{caller});
    EXPECT_EQ(grace.due(), std::nullopt);
}

TEST(MuteGrace, NeverLetsGoOfWhoeverIsAskedForAgainInTime) {
    MuteGrace grace;
    static_cast<void>(grace.follow({player}, begin));
    static_cast<void>(grace.follow({}, begin + 100ms));

    EXPECT_EQ(grace.follow({player}, begin + 200ms), Processes{player});
    EXPECT_EQ(grace.due(), std::nullopt);
    EXPECT_EQ(grace.follow({}, begin + 10s), Processes{player}) << "the moment begins anew";
}

TEST(MuteGrace, ForgetsEverybodyAtOnceWhenTold) {
    MuteGrace grace;
    static_cast<void>(grace.follow({player}, begin));

    grace.clear();

    EXPECT_TRUE(grace.follow({}, begin).empty());
}

} // namespace
} // namespace velmora::pipewire
