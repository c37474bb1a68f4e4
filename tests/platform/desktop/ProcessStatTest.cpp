#include "platform/desktop/ProcessStat.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

// As the kernel writes it: pid (name) state ppid pgrp session tty_nr … starttime (field 22) …
const std::string player = "4312 (player) S 4300 4312 4300 34816 4312 4194304 906 0 0 0 3 1 0 0 20 "
                           "0 3 0 123456 11534336 1312 18446744073709551615 1 1 0 0\n";

TEST(ProcessStat, TakesTheFieldsByTheirPlace) {
    const auto stat = parseProcessStat(player);

    ASSERT_TRUE(stat.has_value());
    EXPECT_EQ(stat->pid, 4312);
    EXPECT_EQ(stat->name, "player");
    EXPECT_EQ(stat->state, 'S');
    EXPECT_EQ(stat->parent, 4300);
    EXPECT_EQ(stat->terminal, 34816);
    EXPECT_EQ(stat->startTicks, 123456U);
}

TEST(ProcessStat, TakesANameThatLooksLikeTheNextFields) {
    std::string text = player;
    text.replace(text.find("player"), 6, "a) R 1 (b");

    const auto stat = parseProcessStat(text);

    ASSERT_TRUE(stat.has_value());
    EXPECT_EQ(stat->name, "a) R 1 (b");
    EXPECT_EQ(stat->parent, 4300);
}

TEST(ProcessStat, CountsADeadProcessAsNotRunning) {
    std::string zombie = player;
    zombie.replace(zombie.find(" S "), 3, " Z ");

    EXPECT_TRUE(parseProcessStat(player)->isRunning());
    EXPECT_FALSE(parseProcessStat(zombie)->isRunning());
}

TEST(ProcessStat, IsNothingWhenTheLineIsCutOffBeforeTheStartTime) {
    const std::string wholeUpToStart = player.substr(0, player.find(" 123456"));
    for (std::size_t length = 0; length <= wholeUpToStart.size(); ++length) {
        EXPECT_EQ(parseProcessStat(wholeUpToStart.substr(0, length)), std::nullopt) << length;
    }
}

TEST(ProcessStat, IsNothingWithoutNumbers) {
    EXPECT_EQ(parseProcessStat("x (player) S 1 1 1 0 1 1 1 1 1 1 1 1 1 1 1 1 1 1 9 "),
              std::nullopt);
    EXPECT_EQ(parseProcessStat("1 (player) S p 1 1 0 1 1 1 1 1 1 1 1 1 1 1 1 1 1 9 "),
              std::nullopt);
}

} // namespace
} // namespace velmora
