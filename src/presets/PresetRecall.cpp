#include "presets/PresetRecall.h"

#include "capture/DeviceQueries.h"
#include "capture/LastingKey.h"
#include "engine/AudioEngine.h"
#include "engine/Problem.h"
#include "platform/AudioDevices.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace velmora {

namespace {

std::string keyOf(const PresetSource& source) {
    if (source.kind == PresetSource::Kind::app) {
        return appKey(source.bundleID.value_or(""));
    }
    if (!source.deviceUID) {
        return {};
    }
    if (source.kind == PresetSource::Kind::device) {
        return deviceKey(*source.deviceUID);
    }
    return source.first && source.count
               ? deviceKey(*source.deviceUID, ChannelRange{*source.first, *source.count})
               : std::string();
}

Problem notFound(const PresetSource& source) {
    return {.kind = Problem::Kind::notFound, .subject = source.name, .key = keyOf(source)};
}

bool isRepeated(const Preset& preset, const PresetSource& source) {
    return std::ranges::count_if(preset.sources, [&](const PresetSource& other) {
               return other.kind == source.kind && other.bundleID == source.bundleID;
           }) > 1;
}

bool isTaken(std::int32_t pid, const std::vector<AudioSource>& taken) {
    return std::ranges::any_of(taken, [pid](const AudioSource& source) {
        return source.app() != nullptr && source.app()->pid == pid;
    });
}

} // namespace

PresetRecall::PresetRecall(const Platform& platform, AudioEngine& engine)
    : platform_(platform), engine_(engine), launcher_(platform),
      engineConnection_(engine.changed().connect([this] { onEngineChange(); })),
      deviceConnection_(platform.devices.changed().connect([this] { addLateDevices(); })) {
}

void PresetRecall::apply(const Preset& preset, RecallOptions options) {
    // What an earlier preset still waits for does not belong into this setup.
    launcher_.forgetPending();
    late_.reset();
    opening_.clear();
    openingChanged_.emit();
    auto resolution = resolve(preset, options.launchClosedApps);
    const auto& [resolved, indices, missing, toLaunch] = resolution;
    const bool isWanted = engine_.isRunning() || pausedForLaunch_;
    // From the first change on, the engine's observers may touch the list that `preset` lives in.
    const auto headphoneVolume = preset.headphoneVolume;
    const auto streamVolume = preset.streamVolume;

    if (isWanted && resolved.empty()) {
        // A start without sources would leave the previous setup in the mix, and until then it
        // would be heard at this one's volumes.
        engine_.stop();
    }
    std::vector<AudioSource> sources;
    std::ranges::transform(resolved, std::back_inserter(sources), &Resolved::source);
    engine_.replaceSources(std::move(sources));
    for (const auto& entry : resolved) {
        install(entry);
    }
    engine_.setHeadphoneVolume(headphoneVolume);
    engine_.setStreamVolume(streamVolume);

    if (!options.quiet) {
        std::vector<Problem> problems;
        for (const auto& [source, index] : missing) {
            problems.push_back(notFound(source));
        }
        engine_.dismissProblems();
        engine_.tell(ProblemOrigin::recall, std::move(problems));
    }
    pausedForLaunch_ = isWanted && resolved.empty() && !toLaunch.empty();
    if (isWanted && !resolved.empty()) {
        engine_.start();
    }
    for (const auto& entry : toLaunch) {
        launch(entry);
    }
    if (options.awaitDevices) {
        awaitDevices(std::move(resolution));
    }
}

PresetRecall::Resolution PresetRecall::resolve(const Preset& preset, bool launchClosedApps) const {
    Resolution resolution;
    Taken taken;
    for (std::size_t index = 0; index < preset.sources.size(); ++index) {
        const auto& source = preset.sources[index];
        if (const auto found = find(source, taken)) {
            taken.push_back(*found);
            resolution.resolved.push_back({*found, source.gain, source.fx.value_or(FXParams{})});
            resolution.indices.push_back(index);
        } else if (const auto application = launchClosedApps ? closed(source) : std::nullopt) {
            resolution.toLaunch.push_back(
                {source, index, *application, isRepeated(preset, source)});
        } else {
            resolution.missing.push_back({source, index});
        }
    }
    return resolution;
}

std::optional<AudioSource> PresetRecall::find(const PresetSource& source,
                                              const Taken& taken) const {
    return source.kind == PresetSource::Kind::app ? findApp(source, taken) : findDevice(source);
}

std::optional<AudioSource> PresetRecall::findApp(const PresetSource& source,
                                                 const Taken& taken) const {
    // An empty identifier names no application, least of all every one that has none.
    if (source.bundleID.value_or("").empty()) {
        return std::nullopt;
    }
    const auto instances = platform_.applications.byBundleID(*source.bundleID);
    const auto free = std::ranges::find_if(instances, [&](const RunningApplication& instance) {
        return !isTaken(instance.pid, taken);
    });
    if (free == instances.end()) {
        return std::nullopt;
    }
    return AppSource{free->pid, source.name, *source.bundleID};
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

std::optional<InstalledApplication> PresetRecall::closed(const PresetSource& source) const {
    if (source.kind != PresetSource::Kind::app || !source.bundleID ||
        !platform_.applications.byBundleID(*source.bundleID).empty()) {
        return std::nullopt;
    }
    return platform_.applications.installed(*source.bundleID);
}

void PresetRecall::install(const Resolved& entry) {
    engine_.setGain(entry.gain, entry.source);
    engine_.setFX(entry.fx, entry.source);
}

void PresetRecall::launch(const ToLaunch& entry) {
    opening_.push_back(entry.application.name);
    openingChanged_.emit();
    launcher_.launch(entry.application,
                     [this, entry](const std::optional<RunningApplication>& running) {
                         opening_.erase(std::ranges::find(opening_, entry.application.name));
                         openingChanged_.emit();
                         addLaunched(entry, running);
                     });
}

void PresetRecall::addLaunched(const ToLaunch& entry,
                               const std::optional<RunningApplication>& running) {
    if (!running) {
        engine_.tellMore(ProblemOrigin::launch,
                         {.kind = Problem::Kind::notLaunched,
                          .subject = entry.source.name,
                          .key = keyOf(entry.source)});
        return;
    }
    AudioSource source =
        AppSource{running->pid, entry.source.name, entry.source.bundleID.value_or("")};
    if (entry.isRepeated && isTaken(running->pid, engine_.sources())) {
        // An application that runs once hands over to itself.
        const auto other = findApp(entry.source, engine_.sources());
        if (!other) {
            engine_.tellMore(ProblemOrigin::recall, notFound(entry.source));
            return;
        }
        source = *other;
    } else if (std::ranges::find(engine_.sources(), source) != engine_.sources().end()) {
        return;
    }
    engine_.insertSource(source, entry.index);
    install({source, entry.source.gain, entry.source.fx.value_or(FXParams{})});
    if (engine_.isRunning()) {
        engine_.restart();
    } else if (pausedForLaunch_) {
        engine_.start();
    }
}

void PresetRecall::awaitDevices(Resolution resolution) {
    std::erase_if(resolution.missing, [](const Missing& entry) {
        return entry.source.kind == PresetSource::Kind::app;
    });
    if (!resolution.missing.empty()) {
        late_.emplace(Late{
            .missing = std::move(resolution.missing),
            .indices = std::move(resolution.indices),
            .list = engine_.sources(),
            .deadline = platform_.mainQueue.after(devicesExpectedWithin, [this] { late_.reset(); }),
        });
    }
}

void PresetRecall::addLateDevices() {
    for (std::size_t at = 0; late_ && at < late_->missing.size();) {
        const auto found = findDevice(late_->missing[at].source);
        if (!found) {
            ++at;
            continue;
        }
        const auto [source, index] = late_->missing[at];
        late_->missing.erase(late_->missing.begin() + static_cast<std::ptrdiff_t>(at));
        const auto place = std::ranges::lower_bound(late_->indices, index);
        const auto offset = place - late_->indices.begin();
        late_->indices.insert(place, index);
        late_->list.insert(late_->list.begin() + offset, *found);
        engine_.insertSource(*found, static_cast<std::size_t>(offset));
        install({*found, source.gain, source.fx.value_or(FXParams{})});
        engine_.restart();
    }
    if (late_ && late_->missing.empty()) {
        late_.reset();
    }
}

void PresetRecall::onEngineChange() {
    if (engine_.isRunning()) {
        pausedForLaunch_ = false; // from here on it is the user who switches
    }
    if (late_ && late_->list != engine_.sources()) {
        late_.reset();
    }
}

} // namespace velmora
