// velmora_bench_live_blocks: what a busy machine loses of a mix whose blocks adapt, and of straight
// links at blocks that do not.
//
// velmora_bench_live_blocks [seconds to adapt] [seconds to count]
// One application on a private session whose clock waits for nobody, beside 0, 2, 4 and 8 loops
// that want a processor each. Counted are the interruptions of its tone at the other end.

#include "app/RealPlatform.h"
#include "engine/AudioEngine.h"
#include "support/ClientPrograms.h"
#include "support/PrivateSession.h"
#include "support/SessionDevices.h"
#include "support/TemporaryFolder.h"
#include "support/ToneAnalysis.h"
#include "support/Wait.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <tuple>
#include <vector>

#include <QCoreApplication>

namespace {

using namespace velmora;
using namespace velmora::support;

constexpr double hz = 997;
constexpr double db = -20;
constexpr std::uint32_t straightFrames = 128;

struct Times {
    std::chrono::seconds adapting{15};
    std::chrono::seconds counting{10};
};

void pass(std::chrono::seconds duration) {
    std::ignore = waitUntil([] { return false; }, duration);
}

/// Interruptions of the tone over the time, once things have settled.
std::size_t interruptions(const PrivateSession& session, const std::string& node, Times times) {
    const Recorder recorder(session, node, {1});
    pass(times.adapting);
    const std::size_t from = recorder.frames();
    pass(times.counting);
    const auto heard = recorder.all().channel(0, from);
    return static_cast<std::size_t>(countBreaks(heard, hz));
}

class BusyLoops {
public:
    BusyLoops(const PrivateSession& session, int count) {
        for (int at = 0; at < count; ++at) {
            loops_.push_back(session.start({"/bin/sh", "-c", "while :; do :; done"}, "busy-loop"));
        }
    }

private:
    std::vector<ChildProcess> loops_;
};

struct Mixed {
    std::size_t interruptions{};
    BlockStatus blocks;
};

Mixed mixed(const PrivateSession& session, pid_t app, Times times) {
    const TemporaryFolder folder("velmora-live-blocks");
    RealPlatform machine(folder.path() / "settings.db");
    const Platform platform = machine.platform();
    AudioEngine engine(platform);
    const AppSource source{.pid = app, .name = "tone", .bundleID = "tone"};
    std::ignore = waitUntil([&] { return platform.taps.processForPid(app).has_value(); });
    engine.add(source);
    engine.start();
    const std::size_t lost = interruptions(session, microphone, times);
    return {.interruptions = lost, .blocks = engine.blocks()};
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    betweenLooks = [] { QCoreApplication::processEvents(); };
    Times times;
    if (argc > 1) {
        times.adapting = std::chrono::seconds(std::atoi(argv[1]));
    }
    if (argc > 2) {
        times.counting = std::chrono::seconds(std::atoi(argv[2]));
    }
    PrivateSession session({.devices = {speakers}});
    session.enter();
    const ToneApp app(session);
    app.play("music", hz, hz, db);
    std::puts("| Busy loops | straight links, 128 frames | mix | its blocks at the end |");
    std::puts("|---|---|---|---|");
    for (const int count : {0, 2, 4, 8}) {
        const BusyLoops loops(session, count);
        session.forceQuantum(straightFrames);
        const std::size_t straight = interruptions(session, speakers.name, times);
        session.forceQuantum(0);
        const Mixed mix = mixed(session, app.pid(), times);
        std::printf("| %d | %zu | %zu | %u frames |\n",
                    count,
                    straight,
                    mix.interruptions,
                    mix.blocks.frames);
        std::fflush(stdout);
    }
    return 0;
}
