#include "platform/qt/PeriodicDeadline.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using Moment = PeriodicDeadline::Clock::time_point;

TEST(PeriodicDeadline, WaitsOnePeriodAfterAPunctualTick) {
    PeriodicDeadline deadline(20ms, Moment{});

    EXPECT_EQ(deadline.advance(Moment{20ms}), 20ms);
    EXPECT_EQ(deadline.advance(Moment{40ms}), 20ms);
}

TEST(PeriodicDeadline, WaitsLessAfterALateTick) {
    PeriodicDeadline deadline(20ms, Moment{});

    EXPECT_EQ(deadline.advance(Moment{27ms}), 13ms);
}

TEST(PeriodicDeadline, SkipsEveryDeadlineThatIsPast) {
    PeriodicDeadline deadline(20ms, Moment{});

    // 40, 60 and 80 ms have gone by.
    EXPECT_EQ(deadline.advance(Moment{95ms}), 5ms);
    EXPECT_EQ(deadline.advance(Moment{100ms}), 20ms);
}

TEST(PeriodicDeadline, DoesNotCountADeadlineTwiceAfterAnEarlyTick) {
    PeriodicDeadline deadline(20ms, Moment{});

    EXPECT_EQ(deadline.advance(Moment{19ms}), 21ms);
}

TEST(PeriodicDeadline, KeepsThirtyTicksASecondOnAverage) {
    constexpr auto period = std::chrono::nanoseconds{1s} / 30; // 33.333333 ms
    PeriodicDeadline deadline(period, Moment{});
    Moment now{34ms};

    for (int tick = 1; tick < 300; ++tick) {
        now += deadline.advance(now);
    }

    // The 300th tick: rounded up to the timer's millisecond once, not 300 times.
    EXPECT_EQ(now, Moment{10'000ms});
}

} // namespace
} // namespace velmora
