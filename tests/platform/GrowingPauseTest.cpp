#include "platform/GrowingPause.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;

TEST(GrowingPause, DoublesUntilItBeginsAnew) {
    GrowingPause pause(200ms);

    EXPECT_EQ(pause.next(), 200ms);
    EXPECT_EQ(pause.next(), 400ms);
    EXPECT_EQ(pause.next(), 800ms);

    pause.restart();

    EXPECT_EQ(pause.next(), 200ms);
}

TEST(GrowingPause, LeavesFewAttemptsForALongTime) {
    GrowingPause pause(200ms);
    int attempts = 0;

    for (auto waited = 0ms; waited < 24h; waited += pause.next()) {
        ++attempts;
    }

    EXPECT_LE(attempts, 20); // 200 ms × 2^19 = 29 h
}

TEST(GrowingPause, GrowsNoFurtherThanItMay) {
    GrowingPause pause(200ms, 700ms);

    EXPECT_EQ(pause.next(), 200ms);
    EXPECT_EQ(pause.upcoming(), 400ms);
    EXPECT_EQ(pause.next(), 400ms);
    EXPECT_EQ(pause.next(), 700ms);
    EXPECT_EQ(pause.next(), 700ms);
}

} // namespace
} // namespace velmora
