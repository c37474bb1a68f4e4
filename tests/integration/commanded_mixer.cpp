// velmora_commanded_mixer: mixes one application, and starts and stops as its input says.
//
// velmora_commanded_mixer <process id>
// Lines on stdin: start, stop, backlogs. It ends with its input. The last one is answered on stdout
// by the frames that each ring has in store, one "backlog <frames>" a ring.

#include "app/RealPlatform.h"
#include "engine/AudioEngine.h"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <unistd.h>

namespace {

void tellBacklogs(const velmora::AudioEngine& engine) {
    for (const auto& source : engine.statistics()) {
        for (const auto& ring : {source.stream, source.monitor}) {
            std::printf("backlog %d\n", static_cast<int>(ring.backlog / 2));
        }
    }
    std::fflush(stdout);
}

} // namespace

int main(int argc, char** argv) {
    using namespace velmora;
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: velmora_commanded_mixer <process id>\n", stderr);
        return 2;
    }
    RealPlatform machine;
    AudioEngine engine(machine.platform());
    engine.setMonitoringSelection("demo.interface#3");
    engine.add(
        AppSource{.pid = std::atoi(argv[1]), .name = "application", .bundleID = "application"});

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        std::string line;
        if (!std::getline(std::cin, line)) {
            QCoreApplication::quit();
        } else if (line == "start") {
            engine.start();
        } else if (line == "stop") {
            engine.stop();
        } else if (line == "backlogs") {
            tellBacklogs(engine);
        }
        if (const auto error = engine.lastError()) {
            std::fprintf(stderr, "%s\n", error->c_str());
        }
    });
    return QCoreApplication::exec();
}
