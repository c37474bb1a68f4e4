#include "Mix.h"

#include "app/QuitSignals.h"
#include "support/Wait.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <utility>

#include <QCoreApplication>

namespace velmora::demo {
namespace {

using support::waitUntil;

/// Linear, from dB, as the engine takes gains.
float linear(double db) {
    return static_cast<float>(support::fromDb(db));
}

template <typename Find>
AudioSource waitFor(const std::string& what, Find find) {
    std::optional<AudioSource> found;
    if (!waitUntil([&] { return (found = find()).has_value(); })) {
        throw std::runtime_error(what + " was not discovered");
    }
    return *found;
}

} // namespace

Mix::Mix(const Scene& scene, const Stage& stage) {
    add(scene.music, waitFor(scene.music.what, [&] { return findApplication(stage.music.pid()); }));
    add(scene.call, waitFor(scene.call.what, [&] { return findApplication(stage.call.pid()); }));
    add(scene.instrument, waitFor(scene.instrument.what, [&] { return findInterface(); }));
    engine_.setHeadphoneVolume(linear(scene.monitoringDb));
    engine_.setMonitoringSelection(support::interface4.name + "#3");
}

void Mix::add(const SceneSource& wanted, const AudioSource& found) {
    engine_.add(found);
    engine_.setGain(linear(wanted.gainDb), found);
    engine_.setFX(wanted.fx, found);
    engine_.setDirectMuted(wanted.directMuted, found);
    scene_.push_back(wanted);
}

std::optional<AudioSource> Mix::findApplication(std::int32_t pid) {
    discovery_.refresh();
    const auto& apps = discovery_.runningApps();
    const auto found = std::ranges::find_if(
        apps, [&](const AudioSource& source) { return source.app()->pid == pid; });
    const bool plays = discovery_.playingPIDs().contains(pid);
    return found != apps.end() && plays ? std::optional(*found) : std::nullopt;
}

std::optional<AudioSource> Mix::findInterface() {
    discovery_.refresh();
    const auto& infos = discovery_.inputDeviceInfos();
    const auto found =
        std::ranges::find(infos, support::interface4.description, &InputDeviceInfo::name);
    if (found == infos.end() || found->channels != 4) {
        return std::nullopt;
    }
    return DeviceChannelsSource{
        .id = found->deviceID, .first = 1, .count = 2, .name = found->name + " 1-2"};
}

void Mix::start() {
    engine_.start();
    if (!engine_.isRunning() || engine_.lastError()) {
        throw std::runtime_error("the mix did not start: " + engine_.lastError().value_or(""));
    }
}

bool Mix::run(double seconds, const std::function<void()>& halfWay) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds redrawPeriod{40};
    constexpr double startUpSeconds = 2;

    bool wantsToQuit = false;
    bool isHalfWay = false;
    const QuitSignals quitSignals([&] {
        wantsToQuit = true;
        QCoreApplication::quit();
    });
    LevelView view(engine_);
    const auto begin = Clock::now();
    const auto redraw = platform_.mainQueue.every(redrawPeriod, [&] {
        const double passed = std::chrono::duration<double>(Clock::now() - begin).count();
        if (settled_.empty() && passed > startUpSeconds) {
            settled_ = engine_.statistics();
            engine_.restartBacklogRanges();
        }
        view.show(seconds - passed);
        if (!isHalfWay && passed > seconds / 2) {
            isHalfWay = true;
            halfWay();
        }
        if (passed >= seconds) {
            QCoreApplication::quit();
        }
    });
    QCoreApplication::exec();
    return !wantsToQuit;
}

std::vector<RingUse> Mix::rings() const {
    std::vector<RingUse> uses;
    const auto now = engine_.statistics();
    for (std::size_t i = 0; i < std::min(now.size(), settled_.size()); ++i) {
        uses.push_back({.source = scene_[i].what,
                        .output = "microphone",
                        .atStart = settled_[i].stream,
                        .atEnd = now[i].stream});
        uses.push_back({.source = scene_[i].what,
                        .output = "monitoring",
                        .atStart = settled_[i].monitor,
                        .atEnd = now[i].monitor});
    }
    return uses;
}

std::vector<std::string> Mix::discovered() const {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < scene_.size(); ++i) {
        const AudioSource& source = engine_.sources()[i];
        lines.push_back(scene_[i].what + ": \"" + source.name() + "\", " + source.id());
    }
    return lines;
}

} // namespace velmora::demo
