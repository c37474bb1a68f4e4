// velmora_live_mixer: mixes applications with every effect on, until it is ended.
//
// velmora_live_mixer <monitoring selection> <process id>...
// Tells "running" on stdout when the mix is up, and answers each line on stdin by how many reads of
// its rings found too little and how many dropped something, "<underruns> <trims>".

#include "app/RealPlatform.h"
#include "engine/AudioEngine.h"
#include "support/TemporaryFolder.h"
#include "support/Wait.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>

namespace {

using namespace velmora;

constexpr FXParams everything{.lowcut = 2,
                              .tilt = 0.5F,
                              .comp = 3,
                              .autoGain = true,
                              .manualDB = 0.0F,
                              .reverbChar = 1,
                              .reverbMix = 0.5F,
                              .plosive = true,
                              .denoise = true};

void tellLosses(const AudioEngine& engine) {
    RingStatistics sum;
    for (const SourceStatistics& source : engine.statistics()) {
        sum.underruns += source.stream.underruns + source.monitor.underruns;
        sum.trims += source.stream.trims + source.monitor.trims;
    }
    std::cout << sum.underruns << ' ' << sum.trims << std::endl;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const support::TemporaryFolder folder("velmora-live-mixer");
    RealPlatform machine(folder.path() / "settings.db");
    const Platform platform = machine.platform();
    AudioEngine engine(platform);
    engine.setMonitoringSelection(argc > 1 ? argv[1] : "");
    for (int at = 2; at < argc; ++at) {
        const AppSource app{.pid = std::atoi(argv[at]),
                            .name = argv[at],
                            .bundleID = "pid." + std::string(argv[at])};
        const bool isThere = support::waitUntil([&] {
            QCoreApplication::processEvents();
            return platform.taps.processForPid(app.pid).has_value();
        });
        if (!isThere) {
            std::cerr << "velmora_live_mixer: process " << app.pid << " plays nothing\n";
            return 1;
        }
        engine.setFX(everything, app);
        engine.add(app);
    }
    engine.start();
    if (!engine.isRunning() || engine.lastError()) {
        std::cerr << "velmora_live_mixer: " << engine.lastError().value_or("not running") << '\n';
        return 1;
    }
    std::cout << "running" << std::endl;

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        std::string line;
        if (std::getline(std::cin, line)) {
            tellLosses(engine);
        } else {
            QCoreApplication::quit();
        }
    });
    return QCoreApplication::exec();
}
