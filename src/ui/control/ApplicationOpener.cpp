#include "ui/control/ApplicationOpener.h"

#include "capture/LastingKey.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"

#include <algorithm>

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

void ApplicationOpener::open(const InstalledApplication& application,
                             const Found& found,
                             const Failed& failed) {
    const auto instances = platform_.applications.byBundleID(application.bundleID);
    if (!instances.empty()) {
        found(sourceOf(application, instances.front()));
        return;
    }
    opening_.push_back(application.name);
    changed_.emit();
    launcher_.launch(
        application,
        [this, application, found, failed](const std::optional<RunningApplication>& running) {
            opened(application, running, found, failed);
        });
}

void ApplicationOpener::opened(const InstalledApplication& application,
                               const std::optional<RunningApplication>& running,
                               const Found& found,
                               const Failed& failed) {
    opening_.erase(std::ranges::find(opening_, application.name));
    if (running) {
        found(sourceOf(application, *running));
    } else {
        engine_.tellMore(ProblemOrigin::launch,
                         {.kind = Problem::Kind::notLaunched,
                          .subject = application.name,
                          .key = appKey(application.bundleID)});
        failed();
    }
    changed_.emit();
    sources_.refresh();
}

} // namespace velmora
