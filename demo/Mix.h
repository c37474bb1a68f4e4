// Mix.h: the real mixer, set up as the scene says.
#pragma once

#include "LevelView.h"
#include "Report.h"
#include "Scene.h"
#include "Stage.h"

#include "app/RealPlatform.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace velmora::demo {

/// Finds the stage's players through discovery, mixes them, and counts what the rings lost.
/// Threads: main; needs a QCoreApplication.
class Mix {
public:
    /// Errors: throws std::runtime_error when a player or the interface is not discovered.
    Mix(const Scene& scene, const Stage& stage);

    /// Errors: throws std::runtime_error with the engine's message.
    void start();
    /// Shows the levels until the time is over or the user quits; false in the latter case.
    /// `halfWay` is called once in the middle.
    bool run(double seconds, const std::function<void()>& halfWay);
    void stop() { engine_.stop(); }

    [[nodiscard]] const Platform& platform() const { return platform_; }
    [[nodiscard]] AudioEngine& engine() { return engine_; }

    /// The rings since start-up, and how much of it had happened by the end of start-up.
    [[nodiscard]] std::vector<RingUse> rings() const;
    /// What discovery said, one line per source.
    [[nodiscard]] std::vector<std::string> discovered() const;

private:
    void add(const SceneSource& wanted, const AudioSource& found);
    [[nodiscard]] std::optional<AudioSource> findApplication(std::int32_t pid);
    [[nodiscard]] std::optional<AudioSource> findInterface();

    RealPlatform machine_;
    Platform platform_ = machine_.platform();
    AudioEngine engine_{platform_};
    SourceManager discovery_{platform_};
    std::vector<SceneSource> scene_; // in the order of the engine's sources
    std::vector<SourceStatistics> settled_;
};

} // namespace velmora::demo
