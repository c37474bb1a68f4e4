// velmora_bench_window_cost: what the visible window of a running mix costs, next to the mix
// itself: four applications with every effect on, on a private audio session and a virtual display.
//
// velmora_bench_window_cost [<seconds per window> [<rounds>]]
//
// The window is drawn by the main thread, and the sound is made by the others. Visible, hidden and
// minimised take turns, so that what else the machine does meets all alike; of each the cheapest
// turn counts. The window's cost is what the main thread needs more than while it is hidden.

#include "MixWindow.h"

#include "app/RealPlatform.h"
#include "engine/AudioEngine.h"
#include "support/ClientPrograms.h"
#include "support/SessionDevices.h"
#include "support/VirtualDisplay.h"
#include "support/Wait.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <iostream>
#include <limits>
#include <list>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora::bench {
namespace {

using namespace support;

constexpr int sourceCount = 4;
constexpr FXParams everything{.lowcut = 2,
                              .tilt = 0.4F,
                              .comp = 2,
                              .autoGain = true,
                              .reverbChar = 1,
                              .reverbMix = 0.3F,
                              .plosive = true,
                              .denoise = true};

double secondsOf(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

/// Shares of a core, and frames drawn each second.
struct Use {
    double main = std::numeric_limits<double>::infinity();
    double others = std::numeric_limits<double>::infinity();
    double frames = 0;
};

class WindowCost {
public:
    WindowCost(double seconds, std::uint32_t quantum) : seconds_(seconds) {
        session_.enter();
        session_.forceQuantum(quantum);
        machine_.emplace(session_.folder() / "settings.db");
        engine_.emplace(machine_->platform());
        std::vector<AudioSource> sources;
        for (int at = 0; at < sourceCount; ++at) {
            apps_.emplace_back(session_).play("tone", 300 + 100 * at, 350 + 100 * at, -20);
            sources.push_back(AppSource{.pid = apps_.back().pid(),
                                        .name = "tone " + std::to_string(at + 1),
                                        .bundleID = "pid." + std::to_string(apps_.back().pid())});
            engine_->setFX(everything, sources.back());
        }
        engine_->replaceSources(sources);
        const bool plays = waitUntil([&] {
            engine_->start();
            return engine_->isRunning() && !engine_->lastError();
        });
        if (!plays) {
            throw std::runtime_error("the mix does not start: " +
                                     engine_->lastError().value_or("no message"));
        }
        window_.emplace(machine_->platform(), *engine_);
        QObject::connect(&window_->window(),
                         &QQuickWindow::frameSwapped,
                         &window_->window(),
                         [this] { ++frames_; });
    }

    void compare(int rounds) {
        QQuickWindow& window = window_->window();
        for (int round = 0; round < rounds; ++round) {
            window.showNormal();
            measure(visible_);
            window.showMinimized();
            measure(minimised_);
            window.hide();
            measure(hidden_);
        }
    }

    void print() const {
        const auto row = [](const char* what, const Use& use) {
            std::printf("| %s | %.2f %% | %.2f %% | %.1f |\n",
                        what,
                        100 * use.main,
                        100 * use.others,
                        use.frames);
        };
        std::puts("| Window | main thread | other threads | frames each second |");
        std::puts("|---|---|---|---|");
        row("visible", visible_);
        row("minimised", minimised_);
        row("hidden", hidden_);
        const double window = visible_.main - hidden_.main;
        const double mix = hidden_.main + hidden_.others;
        std::printf("\nThe visible window: %.2f %% of a core; the mix of %d sources: %.2f %%; "
                    "ratio %.2f\n",
                    100 * window,
                    sourceCount,
                    100 * mix,
                    window / mix);
    }

private:
    static void runFor(double seconds) {
        QEventLoop loop;
        QTimer::singleShot(static_cast<int>(1000 * seconds), &loop, &QEventLoop::quit);
        loop.exec();
    }

    void measure(Use& use) {
        runFor(1); // what the change set off is over
        frames_ = 0;
        QElapsedTimer clock;
        clock.start();
        const double mainBefore = secondsOf(CLOCK_THREAD_CPUTIME_ID);
        const double allBefore = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
        runFor(seconds_);
        const double passed = static_cast<double>(clock.elapsed()) / 1000;
        const double main = secondsOf(CLOCK_THREAD_CPUTIME_ID) - mainBefore;
        const double all = secondsOf(CLOCK_PROCESS_CPUTIME_ID) - allBefore;
        use.main = std::min(use.main, main / passed);
        use.others = std::min(use.others, (all - main) / passed);
        use.frames = std::max(use.frames, frames_ / passed);
    }

    double seconds_;
    PrivateSession session_{{.devices = {speakers}}};
    std::list<ToneApp> apps_;
    std::optional<RealPlatform> machine_; // once the session is this process's
    std::optional<AudioEngine> engine_;
    std::optional<demo::MixWindow> window_;
    int frames_ = 0;
    Use visible_;
    Use minimised_;
    Use hidden_;
};

} // namespace
} // namespace velmora::bench

int main(int argc, char** argv) {
    using namespace velmora;
    try {
        const double seconds = argc > 1 ? std::atof(argv[1]) : 5;
        const int rounds = argc > 2 ? std::atoi(argv[2]) : 5;
        const support::VirtualDisplay display;
        display.enter();
        qputenv("QT_QUICK_BACKEND", "software");
        const QApplication application(argc, argv);
        support::betweenLooks = [] { QApplication::processEvents(); };
        for (const std::uint32_t quantum : {128U, 1024U}) {
            std::printf("\nBlocks of %u frames\n\n", quantum);
            bench::WindowCost cost(seconds, quantum);
            cost.compare(rounds);
            cost.print();
        }
    } catch (const std::exception& error) {
        std::cerr << "velmora_bench_window_cost: " << error.what() << '\n';
        return 1;
    }
    return 0;
}
