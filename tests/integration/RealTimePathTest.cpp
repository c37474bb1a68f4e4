// The engine's real-time callbacks on the sound server's own threads: they must not allocate, free,
// call the system or take a lock that any thread can hold for long, whatever the user edits
// meanwhile.

#include "GuardedPlatform.h"
#include "MixerTest.h"
#include "RealTimeGuard.h"

#include "engine/realtime/PriorityMutex.h"

#include <mutex>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace velmora {
namespace {

using namespace support;

class RealTimePath : public MixerTest {
protected:
    RealTimePath() { guardedEngine.setMonitoringSelection(interface4.name + "#3"); }

    static bool waitForCallbacks(const Recording& recording) {
        return recording.waitForFreshSound() && recording.waitForFreshSound();
    }

    GuardedPlatform guarded{platform};
    AudioEngine guardedEngine{guarded.platform()};
};

/// What one callback on a thread of its own does.
template <typename Work>
RealTimeSightings seenDuring(Work work) {
    beginWatching();
    std::thread([&] {
        const RealTimeGuard guard;
        work();
    }).join();
    return endWatching();
}

// Seeing nothing means something only where each thing is seen.

TEST_F(RealTimePath, TheWatchSeesAnAllocationAndARelease) {
    const auto seen = seenDuring([] { delete new volatile int(1); });

    EXPECT_EQ(seen.callbacks, 1);
    EXPECT_GE(seen.allocations, 1);
    EXPECT_GE(seen.releases, 1);
}

TEST_F(RealTimePath, TheWatchSeesASystemCallAndLetsItHappen) {
    pid_t answer = 0;

    const auto seen = seenDuring([&] { answer = getppid(); });

    EXPECT_EQ(answer, getppid());
    if (!beginWatching()) {
        GTEST_SKIP() << "this kernel cannot report system calls";
    }
    EXPECT_EQ(seen.systemCalls, 1);
    EXPECT_EQ(seen.firstSystemCall, SYS_getppid);
    static_cast<void>(endWatching());
}

TEST_F(RealTimePath, TheWatchSeesALockThatHasToWait) {
    std::mutex mutex;
    std::unique_lock held(mutex);
    beginWatching();
    std::thread callback([&] {
        const RealTimeGuard guard;
        const std::scoped_lock waiting(mutex);
    });
    EXPECT_TRUE(waitUntil([] { return sightingsSoFar().contendedLocks == 1; }));

    held.unlock();

    callback.join();
    EXPECT_EQ(endWatching().contendedLocks, 1);
}

TEST_F(RealTimePath, TheWatchSeesALockWhoseHolderCanBeHeldUpByAnyThread) {
    std::mutex plain;
    PriorityMutex inheriting;

    EXPECT_EQ(seenDuring([&] { const std::scoped_lock held(plain); }).plainLocks, 1);
    EXPECT_EQ(seenDuring([&] { const std::scoped_lock held(inheriting); }).plainLocks, 0);
}

TEST_F(RealTimePath, NothingIsAllocatedFreedOrAskedOfTheSystem) {
    const Feeder feeder(
        session(), interface4.name, {1, 2}, {.hz = {inputLeftHz, inputRightHz}, .db = playedDb});
    const ToneApp app(session());
    app.play("music", leftHz, rightHz, playedDb);
    const PulsePlayer pulse(session(), {.hz = {otherLeftHz, otherRightHz}, .db = playedDb});
    const std::vector<AudioSource> sources{
        playing(app.pid()), playing(pulse.pid()), input(interface4.description, 1, 2)};
    const Recorder mic(session(), microphone, {1, 2});
    guardedEngine.setDirectMuted(true, sources.front());
    guardedEngine.replaceSources(sources);
    guardedEngine.start();
    ASSERT_TRUE(guardedEngine.isRunning()) << guardedEngine.lastError().value_or("");
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_TRUE(mic.hears(0, inputLeftHz, playedDb));

    const bool seesCalls = beginWatching();
    EXPECT_TRUE(waitForCallbacks(mic));
    for (const AudioSource& source : sources) {
        guardedEngine.setGain(0.5F, source);
        guardedEngine.setFX({.lowcut = 2,
                             .tilt = 0.5F,
                             .comp = 2,
                             .reverbChar = 2,
                             .reverbMix = 0.4F,
                             .plosive = true,
                             .denoise = true},
                            source);
    }
    EXPECT_TRUE(waitForCallbacks(mic));
    guardedEngine.setFxBypassed(true);
    guardedEngine.setStreamVolume(0.7F);
    guardedEngine.setHeadphoneVolume(0.3F);
    EXPECT_TRUE(waitForCallbacks(mic));
    guardedEngine.setFxBypassed(false);
    EXPECT_TRUE(waitForCallbacks(mic));
    const RealTimeSightings seen = endWatching();

    EXPECT_GT(seen.callbacks, 1000) << "five threads for two seconds";
    EXPECT_EQ(seen.allocations, 0);
    EXPECT_EQ(seen.releases, 0);
    EXPECT_EQ(seen.systemCalls, 0) << "the first was number " << seen.firstSystemCall;
    EXPECT_EQ(seen.plainLocks, 0);
    RecordProperty("contendedLocks", std::to_string(seen.contendedLocks));
    if (!seesCalls) {
        GTEST_SKIP() << "this kernel cannot report system calls; the rest was checked";
    }
}

} // namespace
} // namespace velmora
