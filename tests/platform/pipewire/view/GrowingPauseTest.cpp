#include "platform/pipewire/view/GrowingPause.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
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

} // namespace
} // namespace velmora::pipewire
