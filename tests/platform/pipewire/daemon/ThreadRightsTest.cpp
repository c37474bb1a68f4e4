#include "platform/pipewire/daemon/ThreadRights.h"

#include "platform/pipewire/PipeWireAudio.h"
#include "platform/pipewire/daemon/WithoutPriorities.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtMainQueue.h"
#include "support/ThreadWaits.h"

#include <gtest/gtest.h>
#include <optional>
#include <sched.h>
#include <sys/resource.h>
#include <thread>
#include <utility>

namespace velmora::pipewire {
namespace {

/// What a thread of its own became.
struct Outcome {
    bool isGranted = false;
    std::optional<bool> isRealTime;
    int niceLevel = 0;
    bool startsOrdinaryThreads = false;
};

Outcome goFirstInAThread() {
    Outcome outcome;
    std::thread([&outcome] {
        outcome.isGranted = goFirst(currentThread());
        outcome.isRealTime = isRealTime(currentThread());
        outcome.niceLevel = getpriority(PRIO_PROCESS, 0);
        std::thread([&outcome] {
            outcome.startsOrdinaryThreads =
                isRealTime(currentThread()) == false && getpriority(PRIO_PROCESS, 0) >= 0;
        }).join();
    }).join();
    return outcome;
}

TEST(ThreadRights, GoBeforeOrdinaryThreadsWhereTheKernelAllowsIt) {
    const Outcome outcome = goFirstInAThread();

    if (!outcome.isGranted) {
        GTEST_SKIP() << "this user may not";
    }
    EXPECT_TRUE(outcome.isRealTime == true || outcome.niceLevel == firstNiceLevel);
    EXPECT_TRUE(outcome.startsOrdinaryThreads);
}

TEST(ThreadRights, StayAsTheyAreWhereItDoesNot) {
    const WithoutPriorities none;

    const Outcome outcome = goFirstInAThread();

    EXPECT_FALSE(outcome.isGranted);
    EXPECT_EQ(outcome.isRealTime, false);
    EXPECT_EQ(outcome.niceLevel, getpriority(PRIO_PROCESS, 0));
}

TEST(ThreadRights, AreAskedForTheControlThreadWhereTheKernelRefuses) {
    const WithoutPriorities none;
    QtEventLoop events;
    QtMainQueue queue;
    std::int32_t raised = 0;
    int toLevel = 0;
    PipeWireAudio::Options options;
    options.raiseThread = [&](std::int32_t thread, int niceLevel) {
        raised = thread;
        toLevel = niceLevel;
    };

    const PipeWireAudio audio(queue, std::move(options));

    ASSERT_TRUE(events.runUntil([&] { return raised != 0; }));
    EXPECT_EQ(raised, support::threadNamed("velmora-control"));
    EXPECT_EQ(toLevel, firstNiceLevel);
}

} // namespace
} // namespace velmora::pipewire
