#include "engine/realtime/LevelMeter.h"
#include "engine/realtime/ManagedAtomic.h"
#include "engine/realtime/ParamBox.h"
#include "engine/realtime/PriorityMutex.h"

#include <gtest/gtest.h>

#include <limits>
#include <mutex>
#include <thread>

namespace velmora {
namespace {

static_assert(std::atomic<float>::is_always_lock_free);
static_assert(std::atomic<std::int64_t>::is_always_lock_free);
static_assert(std::atomic<bool>::is_always_lock_free);

TEST(ManagedAtomic, StartsAtZeroAndKeepsWhatIsStored) {
    ManagedAtomic atomic;
    EXPECT_EQ(atomic.load(), 0);

    atomic.store(-5'000'000'000);

    EXPECT_EQ(atomic.load(), -5'000'000'000);
}

TEST(ParamBox, KeepsWhatIsSet) {
    ParamBox box(0.5F);
    EXPECT_EQ(box.get(), 0.5F);

    box.set(2.0F);

    EXPECT_EQ(box.get(), 2.0F);
}

TEST(LevelMeter, KeepsTheLargestPeakUntilItIsTaken) {
    LevelMeter meter;
    for (const float peak : {0.2F, 0.7F, 0.3F}) {
        meter.raise(peak);
    }

    EXPECT_EQ(meter.take(), 0.7F);
    EXPECT_EQ(meter.take(), 0.0F);
}

TEST(LevelMeter, IgnoresAPeakThatIsNotANumber) {
    LevelMeter meter;
    meter.raise(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(meter.take(), 0.0F);

    meter.raise(0.4F);
    meter.raise(std::numeric_limits<float>::quiet_NaN());

    EXPECT_EQ(meter.take(), 0.4F);
}

TEST(LevelMeter, LosesNoPeakBetweenTwoThreads) {
    constexpr int rounds = 100'000;
    LevelMeter meter;
    float largest = 0.0F;
    {
        const std::jthread capture([&] {
            for (int round = 1; round <= rounds; ++round) {
                meter.raise(static_cast<float>(round));
            }
        });
        for (int round = 0; round < rounds; ++round) {
            largest = std::max(largest, meter.take());
        }
    }

    EXPECT_EQ(std::max(largest, meter.take()), static_cast<float>(rounds));
}

TEST(PriorityMutex, LetsOneThreadInAtATime) {
    PriorityMutex mutex;
    int counter = 0;
    {
        const auto increment = [&] {
            for (int round = 0; round < 10'000; ++round) {
                const std::scoped_lock guard(mutex);
                ++counter;
            }
        };
        const std::jthread first(increment);
        const std::jthread second(increment);
    }

    EXPECT_EQ(counter, 20'000);
}

TEST(PriorityMutex, CanBeTried) {
    PriorityMutex mutex;
    ASSERT_TRUE(mutex.try_lock());

    bool second = true;
    std::jthread([&] { second = mutex.try_lock(); }).join();
    mutex.unlock();

    EXPECT_FALSE(second);
}

} // namespace
} // namespace velmora
