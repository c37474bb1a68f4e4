// PresetRecall.h: turns a preset back into a live setup.
#pragma once

#include "engine/AudioSource.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "platform/Signal.h"
#include "presets/AppLauncher.h"
#include "presets/Preset.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class AudioEngine;

struct RecallOptions {
    bool launchClosedApps{}; ///< open applications that do not run, and add them when they are up
    bool quiet{};            ///< leave what the engine tells alone instead of listing the missing
    bool awaitDevices{};     ///< what is not connected yet joins when it comes, within a minute
};

/// Looks up a preset's keys among what runs and is connected now, and puts the result into the
/// engine.
///
/// Threads: main. Errors: never throws; what could not be done is told by the engine's problems.
/// Destroying the object forgets what is still coming up.
class PresetRecall {
public:
    /// How long a restored setup waits for its devices: at login they come one by one, long after
    /// the audio service answers.
    static constexpr std::chrono::seconds devicesExpectedWithin{60};

    /// Both outlive this object.
    PresetRecall(const Platform& platform, AudioEngine& engine);
    PresetRecall(const PresetRecall&) = delete;
    PresetRecall& operator=(const PresetRecall&) = delete;

    /// Replaces the engine's setup by what the preset holds and exists now. An application that it
    /// holds twice is looked for in two instances; the second one missing is never the first again.
    /// A running engine is started again, or stopped while nothing of the preset exists; a stopped
    /// one stays stopped. Launched applications join later, each on its own, at their place in the
    /// preset, unless another preset is applied first; awaited devices as well, but only while
    /// nobody has edited the list. A mix that the user switches meanwhile stays as he left it.
    void apply(const Preset& preset, RecallOptions options);

    /// The names of the applications that are coming up.
    [[nodiscard]] const std::vector<std::string>& opening() const { return opening_; }
    /// Told after a change of them.
    [[nodiscard]] Signal& openingChanged() { return openingChanged_; }

private:
    struct Resolved {
        AudioSource source;
        float gain{};
        FXParams fx;
    };
    struct ToLaunch {
        PresetSource source;
        std::size_t index{}; ///< in the preset
        InstalledApplication application;
        bool isRepeated{}; ///< the preset holds the application more than once
    };
    struct Missing {
        PresetSource source;
        std::size_t index{}; ///< in the preset
    };
    struct Resolution {
        std::vector<Resolved> resolved;   ///< in preset order
        std::vector<std::size_t> indices; ///< of `resolved`, in the preset
        std::vector<Missing> missing;
        std::vector<ToLaunch> toLaunch;
    };
    /// What a restored setup still waits for.
    struct Late {
        std::vector<Missing> missing;
        std::vector<std::size_t> indices; ///< of what is in the list, ascending
        std::vector<AudioSource> list;    ///< as this object left it
        std::unique_ptr<MainQueue::Timer> deadline;
    };

    [[nodiscard]] Resolution resolve(const Preset& preset, bool launchClosedApps) const;
    using Taken = std::vector<AudioSource>;
    [[nodiscard]] std::optional<AudioSource> find(const PresetSource& source,
                                                  const Taken& taken) const;
    /// The first running instance that is none of `taken`.
    [[nodiscard]] std::optional<AudioSource> findApp(const PresetSource& source,
                                                     const Taken& taken) const;
    [[nodiscard]] std::optional<AudioSource> findDevice(const PresetSource& source) const;
    /// What can be opened for a source of which nothing runs.
    [[nodiscard]] std::optional<InstalledApplication> closed(const PresetSource& source) const;
    void install(const Resolved& entry);
    void launch(const ToLaunch& entry);
    void addLaunched(const ToLaunch& entry, const std::optional<RunningApplication>& running);
    void awaitDevices(Resolution resolution);
    void addLateDevices();
    void onEngineChange();

    Platform platform_;
    AudioEngine& engine_;
    AppLauncher launcher_;
    std::vector<std::string> opening_;
    Signal openingChanged_;
    std::optional<Late> late_;
    /// The mix was stopped because every source of the preset is still coming up.
    bool pausedForLaunch_ = false;
    Signal::Connection engineConnection_;
    Signal::Connection deviceConnection_;
};

} // namespace velmora
