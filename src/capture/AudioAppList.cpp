#include "capture/DeviceQueries.h"
#include "capture/NameCompare.h"
#include "platform/ApplicationTaps.h"
#include "platform/Applications.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace velmora {
namespace {

struct FoundApp {
    AppSource app;
    bool playing{};
    CollationKey key;
};

AppSource sourceOf(std::int32_t pid, const RunningApplication& application) {
    return {.pid = pid,
            .name = application.name,
            .bundleID =
                application.bundleID.empty() ? "pid." + std::to_string(pid) : application.bundleID};
}

/// The application behind one process object, unless it is to be left out: our own, one listed
/// already (its first object has decided), one without a name, or a silent background program.
std::optional<FoundApp> appBehind(AudioObjectID process,
                                  const ApplicationTaps& taps,
                                  const Applications& applications,
                                  std::set<std::int32_t>& seen) {
    const auto pid = taps.processPid(process);
    if (!pid || *pid == applications.ownPid() || seen.contains(*pid)) {
        return std::nullopt;
    }
    const auto application = applications.byPid(*pid);
    if (!application || application->name.empty()) {
        return std::nullopt;
    }
    seen.insert(*pid);
    const bool playing = taps.processIsRunningOutput(process).value_or(false);
    if (!playing && !application->regular) {
        return std::nullopt;
    }
    return FoundApp{sourceOf(*pid, *application), playing, collationKey(application->name)};
}

bool comesBefore(const FoundApp& one, const FoundApp& other) {
    return std::forward_as_tuple(!one.playing, one.key) <
           std::forward_as_tuple(!other.playing, other.key);
}

} // namespace

AudioApps listAudioApps(const ApplicationTaps& taps, const Applications& applications) {
    std::vector<FoundApp> found;
    std::set<std::int32_t> seen;
    for (const AudioObjectID process :
         taps.processObjects().value_or(std::vector<AudioObjectID>{})) {
        if (auto app = appBehind(process, taps, applications, seen)) {
            found.push_back(std::move(*app));
        }
    }
    std::ranges::stable_sort(found, comesBefore);

    AudioApps result;
    for (FoundApp& item : found) {
        if (item.playing) {
            result.playingPIDs.insert(item.app.pid);
        }
        result.apps.emplace_back(std::move(item.app));
    }
    return result;
}

} // namespace velmora
