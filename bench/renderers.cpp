// velmora_bench_renderers: what drawing the window of a running mix costs with one of Qt's
// renderers, how soon it is there and how much memory the process then holds. The machine behind it
// is simulated: nothing else is measured.
//
// QT_QUICK_BACKEND=software velmora_bench_renderers [<seconds> [<picture.png>]]
// QSG_RHI_BACKEND=opengl velmora_bench_renderers [<seconds> [<picture.png>]]
//
// Visible and hidden take turns, so that what else the machine does meets both alike; of each the
// cheapest turn counts, and the window's cost is what all threads need more while it is visible.

#include "ui/Ui.h"
#include "ui/kit/Kit.h"
#include "ui/window/WindowScene.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QImage>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iostream>
#include <limits>
#include <unistd.h>

namespace velmora::bench {
namespace {

constexpr std::chrono::milliseconds meterPeriod{33};
constexpr int rounds = 3;

double processSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

long residentMebibytes() {
    std::ifstream file("/proc/self/statm");
    long pages = 0;
    file >> pages >> pages;
    return pages * sysconf(_SC_PAGESIZE) / (1 << 20);
}

void runFor(double seconds) {
    QEventLoop loop;
    QTimer::singleShot(static_cast<int>(1000 * seconds), &loop, &QEventLoop::quit);
    loop.exec();
}

/// Share of a core.
double cost(double seconds) {
    runFor(1); // what the change set off is over
    QElapsedTimer clock;
    clock.start();
    const double before = processSeconds();
    runFor(seconds);
    return (processSeconds() - before) / (static_cast<double>(clock.elapsed()) / 1000);
}

int measure(double seconds, const char* picture) {
    QElapsedTimer sinceStart;
    sinceStart.start();
    SimulatedPlatform machine;
    AppSettings settings(machine.platform());
    WindowScene scene(machine, settings);
    QQmlEngine qml;
    installKit(qml, settings);
    installUi(qml);
    auto made = makeWindow(qml, QUrl("qrc:/qt/qml/Velmora/ControlWindow.qml"), scene.model);
    if (!made) {
        std::cerr << made.error();
        return 1;
    }
    QQuickWindow& window = **made;
    double frames = 0;
    QObject::connect(&window, &QQuickWindow::frameSwapped, &window, [&] {
        if (++frames == 1) {
            std::printf("first picture after %lld ms, %ld MiB resident\n",
                        static_cast<long long>(sinceStart.elapsed()),
                        residentMebibytes());
        }
    });
    scene.mixPodcast();
    // Levels that never rest.
    for (const pid_t pid : {4711, 4712}) {
        machine.sound.play(pid, [](std::int64_t frame, std::size_t) {
            const double swell = 0.5 + 0.5 * std::sin(static_cast<double>(frame) * 1e-4);
            return static_cast<float>(swell * std::sin(static_cast<double>(frame) * 0.05));
        });
    }
    scene.engine.start();
    QTimer ticks;
    QObject::connect(&ticks, &QTimer::timeout, &ticks, [&] { machine.advance(meterPeriod); });
    ticks.start(meterPeriod);
    window.show();
    runFor(1);
    if (picture != nullptr) {
        return window.grabWindow().save(picture) ? 0 : 1;
    }
    double visible = std::numeric_limits<double>::infinity();
    double hidden = visible;
    for (int round = 0; round < rounds; ++round) {
        window.show();
        frames = 1;
        visible = std::min(visible, cost(seconds));
        window.hide();
        hidden = std::min(hidden, cost(seconds));
    }
    std::printf("visible %.2f %%, hidden %.2f %%: the window costs %.2f %% of a core\n"
                "%ld MiB resident\n",
                100 * visible,
                100 * hidden,
                100 * (visible - hidden),
                residentMebibytes());
    return 0;
}

} // namespace
} // namespace velmora::bench

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    return velmora::bench::measure(argc > 1 ? std::atof(argv[1]) : 5, argc > 2 ? argv[2] : nullptr);
}
