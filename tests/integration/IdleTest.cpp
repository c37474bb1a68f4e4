// A stopped mix costs next to nothing, and one that was started often no more than one started
// once.

#include "MixerTest.h"

#include "support/ProcessFigures.h"

#include <chrono>
#include <thread>
#include <unistd.h>

#include <QCoreApplication>
#include <QEvent>

namespace velmora {
namespace {

using namespace support;
using namespace std::chrono_literals;

class Idle : public ListeningMixerTest {
protected:
    /// True once sound has come through both sources to both outputs.
    bool isMixing() const {
        return std::ranges::all_of(engine.statistics(), [](const SourceStatistics& source) {
            return source.stream.backlogMax > 0 && source.monitor.backlogMax > 0;
        });
    }

    ToneApp app{session()};
};

TEST_F(Idle, AStoppedMixSleepsButTwiceASecond) {
#if defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "the sanitizer has a thread of its own that wakes up ten times a second";
#endif
    app.play("music", leftHz, rightHz, playedDb);
    const ChildProcess mixer =
        session().start({VELMORA_COMMANDED_MIXER, std::to_string(playing(app.pid()).app()->pid)},
                        "commanded-mixer",
                        /*takesLines=*/true);
    const auto sleepsWithin = [&](std::chrono::seconds duration) {
        const std::int64_t before = sleeps(mixer.pid());
        std::this_thread::sleep_for(duration);
        return sleeps(mixer.pid()) - before;
    };
    mixer.send("start");
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
    EXPECT_GT(sleepsWithin(1s), 100); // one callback every 2.7 ms at the least: it does count

    mixer.send("stop");
    EXPECT_TRUE(mic.isSilentAt(0, leftHz));
    EXPECT_TRUE(waitUntil([&] { return sleepsWithin(1s) <= 2; })); // what stopping set off is over

    EXPECT_LE(sleepsWithin(5s), 10);
}

TEST_F(Idle, TwoHundredStartsLeaveLessThanOneMebibyteAndNoDescriptor) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer's own memory would be counted";
#endif
    app.play("music", leftHz, rightHz, playedDb);
    engine.setMonitoringSelection(interface4.name + "#3");
    engine.replaceSources({playing(app.pid()), input(interface4.description, 1, 2)});
    const auto startAndStop = [&](int times) {
        for (int round = 0; round < times; ++round) {
            engine.start();
            EXPECT_TRUE(engine.isRunning()) << engine.lastError().value_or("no message");
            betweenLooks();
            // Some are stopped on their way. libpipewire 1.4 keeps some kB of each of these, 0.3
            // none.
            if (round % 10 != 0) {
                EXPECT_TRUE(waitUntil([&] { return isMixing(); }));
            }
            engine.stop();
            betweenLooks();
            // What an event loop that was entered with exec() does by itself.
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        returnFreedMemory();
    };
    startAndStop(20); // heap, thread stacks and the client library take their final shape
    const std::int64_t memory = residentBytes(getpid());
    const std::int64_t descriptors = openDescriptors(getpid());

    startAndStop(200);

    EXPECT_LT(residentBytes(getpid()) - memory, 1024 * 1024);
    EXPECT_TRUE(waitUntil([&] { return openDescriptors(getpid()) <= descriptors; }))
        << openDescriptors(getpid()) << " instead of " << descriptors;
    engine.start();
    EXPECT_TRUE(mic.hears(0, leftHz, playedDb));
}

} // namespace
} // namespace velmora
