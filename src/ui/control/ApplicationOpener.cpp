#include "ui/control/ApplicationOpener.h"

#include "capture/LastingKey.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"

namespace velmora {

namespace {

AudioSource sourceOf(const InstalledApplication& application, const RunningApplication& running) {
    return AppSource{running.pid, application.name, application.bundleID};
}

} // namespace

ApplicationOpener::ApplicationOpener(const Platform& platform,
                                     AudioEngine& engine,
                                     SourceManager& sources)
    : platform_(platform), engine_(engine), sources_(sources), launcher_(platform) {
}

void ApplicationOpener::open(const InstalledApplication& application, const Found& found) {
    const auto instances = platform_.applications.byBundleID(application.bundleID);
    if (!instances.empty()) {
        found(sourceOf(application, instances.front()));
        return;
    }
    launcher_.launch(application,
                     [this, application, found](const std::optional<RunningApplication>& running) {
                         opened(application, running, found);
                     });
}

void ApplicationOpener::opened(const InstalledApplication& application,
                               const std::optional<RunningApplication>& running,
                               const Found& found) {
    if (running) {
        found(sourceOf(application, *running));
    } else {
        engine_.tellMore(ProblemOrigin::launch,
                         {.kind = Problem::Kind::notLaunched,
                          .subject = application.name,
                          .key = appKey(application.bundleID)});
    }
    sources_.refresh();
}

} // namespace velmora
