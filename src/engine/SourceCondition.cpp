#include "engine/SourceCondition.h"

#include "capture/DeviceQueries.h"
#include "engine/AudioEngine.h"
#include "platform/ApplicationTaps.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace velmora {
namespace {

constexpr std::string_view namelessPrefix = "pid.";

bool isInMix(const AudioEngine& engine, std::int32_t pid) {
    return std::ranges::any_of(engine.sources(), [pid](const AudioSource& source) {
        return source.app() != nullptr && source.app()->pid == pid;
    });
}

bool hasPlayed(const Platform& platform, std::int32_t pid) {
    return platform.taps.processForPid(pid).value_or(0) != 0;
}

bool isGone(const Platform& platform, const AudioEngine& engine, const AudioSource& source) {
    const auto* const app = source.app();
    if (app == nullptr) {
        return !isDeviceThere(platform.devices, source);
    }
    return engine.isAnothers(source) || !platform.applications.birth(app->pid);
}

std::vector<AudioSource> instancesOf(const Platform& platform, const AppSource& app) {
    std::vector<AudioSource> instances;
    if (!app.bundleID.starts_with(namelessPrefix)) {
        for (const RunningApplication& one : platform.applications.byBundleID(app.bundleID)) {
            instances.push_back(AppSource{one.pid, app.name, app.bundleID});
        }
        return instances;
    }
    for (const AudioSource& one : listAudioApps(platform.taps, platform.applications).apps) {
        if (one.name() == app.name && one.app()->bundleID.starts_with(namelessPrefix)) {
            instances.push_back(one);
        }
    }
    return instances;
}

} // namespace

SourceCondition
conditionOf(const Platform& platform, const AudioEngine& engine, const AudioSource& source) {
    if (engine.isServiceAway()) {
        return SourceCondition::fine;
    }
    if (isGone(platform, engine, source)) {
        return SourceCondition::gone;
    }
    if (!engine.isRunning() || engine.isCaptured(source)) {
        return SourceCondition::fine;
    }
    const bool isSilentApp = source.app() != nullptr && !hasPlayed(platform, source.app()->pid);
    return isSilentApp ? SourceCondition::awaited : SourceCondition::failed;
}

std::optional<AudioSource>
successorOf(const Platform& platform, const AudioEngine& engine, const AudioSource& source) {
    if (source.app() == nullptr) {
        return std::nullopt;
    }
    auto instances = instancesOf(platform, *source.app());
    std::erase_if(instances,
                  [&](const AudioSource& one) { return isInMix(engine, one.app()->pid); });
    const auto played = std::ranges::find_if(
        instances, [&](const AudioSource& one) { return hasPlayed(platform, one.app()->pid); });
    if (played != instances.end()) {
        return *played;
    }
    return instances.empty() ? std::nullopt : std::optional(instances.front());
}

std::optional<InstalledApplication> closedApplication(const Platform& platform,
                                                      const AudioSource& source) {
    const auto* const app = source.app();
    const Applications& applications = platform.applications;
    const bool isClosed = app != nullptr && applications.byBundleID(app->bundleID).empty();
    return isClosed ? applications.installed(app->bundleID) : std::nullopt;
}

} // namespace velmora
