#include "presets/PresetRecall.h"

#include "capture/DeviceQueries.h"
#include "engine/AudioEngine.h"
#include "settings/AppSettings.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velmora {

namespace {

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const auto& name : names) {
        text += (text.empty() ? "" : ", ") + name;
    }
    return text;
}

} // namespace

PresetRecall::PresetRecall(const Platform& platform,
                           AudioEngine& engine,
                           const AppSettings& settings)
    : platform_(platform), engine_(engine), settings_(settings), launcher_(platform) {
}

void PresetRecall::apply(const Preset& preset, RecallOptions options) {
    // What an earlier preset still waits for does not belong into this setup.
    launcher_.forgetPending();
    const auto [resolved, missing, toLaunch] = resolve(preset, options.launchClosedApps);
    // From the first change on, the engine's observers may touch the list that `preset` lives in.
    const auto headphoneVolume = preset.headphoneVolume;
    const auto streamVolume = preset.streamVolume;

    std::vector<AudioSource> sources;
    std::ranges::transform(resolved, std::back_inserter(sources), &Resolved::source);
    engine_.replaceSources(std::move(sources));
    for (const auto& entry : resolved) {
        install(entry);
    }
    engine_.setHeadphoneVolume(headphoneVolume);
    engine_.setStreamVolume(streamVolume);

    const auto notice =
        missing.empty() ? std::nullopt : std::optional("Introuvable : " + joined(missing));
    if (!options.quiet) {
        engine_.setLastError(notice);
    }
    pausedForLaunch_ = engine_.isRunning() && resolved.empty() && !toLaunch.empty();
    if (engine_.isRunning() && resolved.empty()) {
        // A start without sources would leave the previous setup in the mix.
        engine_.stop();
    } else if (engine_.isRunning()) {
        engine_.start();
    }
    if (!options.quiet && notice && engine_.lastError() != notice) {
        // The restart has cleared it; what the restart itself reports comes below.
        const auto report = engine_.lastError();
        engine_.setLastError(report ? *notice + "\n" + *report : *notice);
    }
    for (const auto& entry : toLaunch) {
        launch(entry);
    }
}

PresetRecall::Resolution PresetRecall::resolve(const Preset& preset, bool launchClosedApps) const {
    Resolution resolution;
    for (std::size_t index = 0; index < preset.sources.size(); ++index) {
        const auto& source = preset.sources[index];
        if (const auto found = find(source)) {
            resolution.resolved.push_back({*found, source.gain, source.fx.value_or(FXParams{})});
        } else if (const auto application = launchClosedApps ? installed(source) : std::nullopt) {
            resolution.toLaunch.push_back({source, index, *application});
        } else {
            resolution.missing.push_back(source.name);
        }
    }
    return resolution;
}

std::optional<AudioSource> PresetRecall::find(const PresetSource& source) const {
    return source.kind == PresetSource::Kind::app ? findApp(source) : findDevice(source);
}

std::optional<AudioSource> PresetRecall::findApp(const PresetSource& source) const {
    // An empty identifier names no application, least of all every one that has none.
    if (source.bundleID.value_or("").empty()) {
        return std::nullopt;
    }
    const auto instances = platform_.applications.byBundleID(*source.bundleID);
    if (instances.empty()) {
        return std::nullopt;
    }
    return AppSource{instances.front().pid, source.name, *source.bundleID};
}

std::optional<AudioSource> PresetRecall::findDevice(const PresetSource& source) const {
    const auto wantsChannels = source.kind == PresetSource::Kind::deviceChannels;
    if (!source.deviceUID || (wantsChannels && (!source.first || !source.count))) {
        return std::nullopt;
    }
    const auto device = velmora::findDevice(platform_.devices, *source.deviceUID);
    if (!device) {
        return std::nullopt;
    }
    if (wantsChannels) {
        return DeviceChannelsSource{*device, *source.first, *source.count, source.name};
    }
    return DeviceSource{*device, source.name};
}

std::optional<InstalledApplication> PresetRecall::installed(const PresetSource& source) const {
    if (source.kind != PresetSource::Kind::app || !source.bundleID) {
        return std::nullopt;
    }
    return platform_.applications.installed(*source.bundleID);
}

void PresetRecall::install(const Resolved& entry) {
    engine_.setGain(entry.gain, entry.source);
    engine_.setFX(entry.fx, entry.source);
}

void PresetRecall::launch(const ToLaunch& entry) {
    launcher_.launch(entry.application,
                     [this, entry](const std::optional<RunningApplication>& running) {
                         addLaunched(entry, running);
                     });
}

void PresetRecall::addLaunched(const ToLaunch& entry,
                               const std::optional<RunningApplication>& running) {
    if (!running) {
        engine_.setLastError(settings_.t("Impossible de lancer") + " " + entry.source.name);
        return;
    }
    const AudioSource source =
        AppSource{running->pid, entry.source.name, entry.source.bundleID.value_or("")};
    if (std::ranges::find(engine_.sources(), source) != engine_.sources().end()) {
        return;
    }
    engine_.insertSource(source, entry.index);
    install({source, entry.source.gain, entry.source.fx.value_or(FXParams{})});
    const bool resumes = std::exchange(pausedForLaunch_, false);
    if (resumes || engine_.isRunning()) {
        engine_.start();
    }
}

} // namespace velmora
