// velmora_muting_mixer: mixes one application, muted on its own output, until it is ended.
//
// velmora_muting_mixer <process id>

#include "app/RealPlatform.h"
#include "engine/AudioEngine.h"

#include <cstdio>
#include <cstdlib>

#include <QCoreApplication>

int main(int argc, char** argv) {
    using namespace velmora;
    QCoreApplication application(argc, argv);
    if (argc != 2) {
        std::fputs("usage: velmora_muting_mixer <process id>\n", stderr);
        return 2;
    }
    RealPlatform machine;
    AudioEngine engine(machine.platform());
    const AudioSource source =
        AppSource{.pid = std::atoi(argv[1]), .name = "application", .bundleID = "application"};
    engine.setMonitoringSelection("demo.interface#3");
    engine.setDirectMuted(true, source);
    engine.add(source);
    engine.start();
    if (!engine.isRunning()) {
        std::fprintf(stderr, "%s\n", engine.lastError().value_or("no message").c_str());
        return 1;
    }
    return QCoreApplication::exec();
}
