// MainQueueContract.h: what every MainQueue does, whoever turns its time.
#pragma once

#include "platform/MainQueue.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace velmora {

/// A rig has `queue()`; `runUntil(condition)`, which lets time pass until the condition holds and
/// gives up after long enough; and `destroyQueue()`.
template <typename Rig>
class MainQueueContract : public testing::Test {
protected:
    using Timer = std::unique_ptr<MainQueue::Timer>;

    MainQueue& queue() { return rig.queue(); }

    void runUntil(const std::function<bool()>& condition) {
        EXPECT_TRUE(rig.runUntil(condition)) << "what was waited for did not come";
    }

    /// Lets everything happen that is due within `time`.
    void pass(std::chrono::milliseconds time) {
        bool passed = false;
        const Timer end = queue().after(time, [&] { passed = true; });
        runUntil([&] { return passed; });
    }

    /// Lets everything run that was posted before.
    void runPosted() {
        bool ran = false;
        queue().post([&] { ran = true; });
        runUntil([&] { return ran; });
    }

    Rig rig;
};

TYPED_TEST_SUITE_P(MainQueueContract);

TYPED_TEST_P(MainQueueContract, RunsPostedWorkInTheOrderOfTheCalls) {
    std::string order;
    this->queue().post([&] { order += 'a'; });
    this->queue().post([&] { order += 'b'; });
    this->queue().post([&] { order += 'c'; });

    this->runPosted();

    EXPECT_EQ(order, "abc");
}

TYPED_TEST_P(MainQueueContract, NeverRunsWorkInsideTheCallThatPostsIt) {
    bool ran = false;
    this->queue().post([&] { ran = true; });
    EXPECT_FALSE(ran);

    std::string order;
    this->queue().post([&] {
        this->queue().post([&] { order += "inner"; });
        order += "outer ";
    });
    this->runUntil([&] { return order == "outer inner"; });
}

TYPED_TEST_P(MainQueueContract, TakesWorkThatCanOnlyBeMoved) {
    int seen = 0;
    this->queue().post([&, number = std::make_unique<int>(7)] { seen = *number; });

    this->runPosted();

    EXPECT_EQ(seen, 7);
}

TYPED_TEST_P(MainQueueContract, TakesWorkFromAnyThread) {
    constexpr int perThread = 1000;
    std::vector<int> fromFirst;
    std::vector<int> fromSecond;
    const auto postAll = [&](std::vector<int>& list) {
        for (int number = 0; number < perThread; ++number) {
            this->queue().post([&list, number] { list.push_back(number); });
        }
    };

    std::thread first([&] { postAll(fromFirst); });
    std::thread second([&] { postAll(fromSecond); });
    first.join();
    second.join();
    this->runPosted();

    ASSERT_EQ(fromFirst.size(), std::size_t{perThread});
    EXPECT_TRUE(std::ranges::is_sorted(fromFirst));
    ASSERT_EQ(fromSecond.size(), std::size_t{perThread});
    EXPECT_TRUE(std::ranges::is_sorted(fromSecond));
}

TYPED_TEST_P(MainQueueContract, RunsDelayedWorkOnceAndInOrderOfTime) {
    using namespace std::chrono_literals;
    std::string order;
    const auto later = this->queue().after(60ms, [&] { order += "later"; });
    const auto sooner = this->queue().after(10ms, [&] { order += "sooner "; });
    EXPECT_EQ(order, "");

    this->pass(120ms);

    EXPECT_EQ(order, "sooner later");
}

TYPED_TEST_P(MainQueueContract, NeverRunsWorkWithoutADelayInsideTheCall) {
    bool ran = false;
    const auto timer = this->queue().after(std::chrono::milliseconds{0}, [&] { ran = true; });
    EXPECT_FALSE(ran);

    this->runUntil([&] { return ran; });
}

TYPED_TEST_P(MainQueueContract, CancelsDelayedWorkWithItsTimer) {
    using namespace std::chrono_literals;
    bool ran = false;
    auto timer = this->queue().after(10ms, [&] { ran = true; });

    timer.reset();

    this->pass(40ms);
    EXPECT_FALSE(ran);
}

TYPED_TEST_P(MainQueueContract, ReleasesCancelledWorkAtOnce) {
    const auto held = std::make_shared<int>();
    auto timer = this->queue().after(std::chrono::milliseconds{10}, [held] {});
    EXPECT_EQ(held.use_count(), 2);

    timer.reset();

    EXPECT_EQ(held.use_count(), 1);
}

TYPED_TEST_P(MainQueueContract, AllowsWorkToCancelItself) {
    using namespace std::chrono_literals;
    typename TestFixture::Timer timer;
    int runs = 0;
    std::string seen;
    timer = this->queue().every(5ms, [&, text = std::string("still here")] {
        ++runs;
        timer.reset();
        seen = text;
    });

    this->pass(50ms);

    EXPECT_EQ(runs, 1);
    EXPECT_EQ(seen, "still here");
}

TYPED_TEST_P(MainQueueContract, AllowsWorkToReplaceItsOwnTimer) {
    using namespace std::chrono_literals;
    typename TestFixture::Timer timer;
    std::string order;
    timer = this->queue().after(5ms, [&] {
        order += "first ";
        timer = this->queue().after(5ms, [&] { order += "second"; });
    });

    this->runUntil([&] { return order == "first second"; });
}

TYPED_TEST_P(MainQueueContract, RepeatsUntilTheTimerIsDestroyed) {
    using namespace std::chrono_literals;
    int runs = 0;
    auto timer = this->queue().every(5ms, [&] { ++runs; });
    EXPECT_EQ(runs, 0);
    this->runUntil([&] { return runs == 3; });

    timer.reset();

    this->pass(30ms);
    EXPECT_EQ(runs, 3);
}

TYPED_TEST_P(MainQueueContract, CancelsAnotherTimerThatIsDueAtTheSameMoment) {
    using namespace std::chrono_literals;
    typename TestFixture::Timer first;
    typename TestFixture::Timer second;
    int runs = 0;
    first = this->queue().after(10ms, [&] {
        ++runs;
        second.reset();
    });
    second = this->queue().after(10ms, [&] {
        ++runs;
        first.reset();
    });

    this->pass(40ms);

    EXPECT_EQ(runs, 1);
}

TYPED_TEST_P(MainQueueContract, MayBeDestroyedBeforeItsTimers) {
    bool ran = false;
    auto once = this->queue().after(std::chrono::milliseconds{1}, [&] { ran = true; });
    auto repeating = this->queue().every(std::chrono::milliseconds{1}, [&] { ran = true; });

    this->rig.destroyQueue();
    once.reset();
    repeating.reset();

    EXPECT_FALSE(ran);
}

REGISTER_TYPED_TEST_SUITE_P(MainQueueContract,
                            RunsPostedWorkInTheOrderOfTheCalls,
                            NeverRunsWorkInsideTheCallThatPostsIt,
                            TakesWorkThatCanOnlyBeMoved,
                            TakesWorkFromAnyThread,
                            RunsDelayedWorkOnceAndInOrderOfTime,
                            NeverRunsWorkWithoutADelayInsideTheCall,
                            CancelsDelayedWorkWithItsTimer,
                            ReleasesCancelledWorkAtOnce,
                            AllowsWorkToCancelItself,
                            AllowsWorkToReplaceItsOwnTimer,
                            RepeatsUntilTheTimerIsDestroyed,
                            CancelsAnotherTimerThatIsDueAtTheSameMoment,
                            MayBeDestroyedBeforeItsTimers);

} // namespace velmora
