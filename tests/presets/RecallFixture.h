// RecallFixture.h: an engine, the user's settings and a recall on a simulated machine.
#pragma once

#include "engine/AudioEngine.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "presets/PresetRecall.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace velmora {

class RecallFixture : public testing::Test {
protected:
    static constexpr RecallOptions restored{.launchClosedApps = false, .quiet = true};
    static constexpr RecallOptions chosen{.launchClosedApps = true, .quiet = false};

    const Problem earlierTrouble{.kind = Problem::Kind::notLaunched, .subject = "Radio"};

    [[nodiscard]] static PresetSource
    app(const std::string& name, const std::string& bundleID, float gain = 1.0F) {
        return {.kind = PresetSource::Kind::app, .name = name, .bundleID = bundleID, .gain = gain};
    }
    [[nodiscard]] static PresetSource device(const std::string& name, const std::string& uid) {
        return {.kind = PresetSource::Kind::device, .name = name, .deviceUID = uid};
    }
    [[nodiscard]] static PresetSource channels(const std::string& name, const std::string& uid) {
        return {.kind = PresetSource::Kind::deviceChannels,
                .name = name,
                .deviceUID = uid,
                .first = 3,
                .count = 2};
    }

    AudioObjectID plugIn(const std::string& uid, std::optional<AudioObjectID> id = std::nullopt) {
        return machine_.sound.addDevice({.uid = uid, .name = uid, .inputs = {4}, .id = id});
    }
    /// Known to the desktop, not running; a launch comes up as `pid` after `delay`.
    void install(const std::string& name,
                 const std::string& bundleID,
                 std::int32_t pid,
                 std::chrono::milliseconds delay = std::chrono::milliseconds{0}) {
        installWithPlan(name,
                        bundleID,
                        {.result =
                             RunningApplication{
                                 .pid = pid, .name = name, .bundleID = bundleID, .regular = true},
                         .delay = delay});
    }
    void
    installWithPlan(const std::string& name, const std::string& bundleID, const LaunchPlan& plan) {
        const auto location = "/applications/" + bundleID;
        machine_.applications.install({.bundleID = bundleID, .name = name, .location = location});
        machine_.applications.planLaunch(location, plan);
    }

    void apply(const std::vector<PresetSource>& sources, RecallOptions options) {
        recall_->apply({.id = Uuid::random(), .name = "setup", .sources = sources}, options);
    }
    void destroyRecall() { recall_.reset(); }

    SimulatedPlatform machine_;
    AudioEngine engine_{machine_.platform()};
    std::optional<PresetRecall> recall_{std::in_place, machine_.platform(), engine_};
};

} // namespace velmora
