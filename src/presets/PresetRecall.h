// PresetRecall.h: turns a preset back into a live setup.
#pragma once

#include "engine/AudioSource.h"
#include "platform/Platform.h"
#include "presets/AppLauncher.h"
#include "presets/Preset.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class AppSettings;
class AudioEngine;

struct RecallOptions {
    bool launchClosedApps{}; ///< open applications that do not run, and add them when they are up
    bool quiet{};            ///< leave the engine's last error alone instead of listing the missing
};

/// Looks up a preset's keys among what runs and is connected now, and puts the result into the
/// engine.
///
/// Threads: main. Errors: never throws; what could not be done is told by the engine's last error.
/// Destroying the object forgets the applications that are still coming up.
class PresetRecall {
public:
    /// All three outlive this object.
    PresetRecall(const Platform& platform, AudioEngine& engine, const AppSettings& settings);
    PresetRecall(const PresetRecall&) = delete;
    PresetRecall& operator=(const PresetRecall&) = delete;

    /// Replaces the engine's setup by what the preset holds and exists now. A running engine is
    /// started again, or stopped while nothing of the preset exists; a stopped one stays stopped.
    /// Launched applications join later, each on its own, at their place in the preset, unless
    /// another preset is applied first.
    void apply(const Preset& preset, RecallOptions options);

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
    };
    struct Resolution {
        std::vector<Resolved> resolved; ///< in preset order
        std::vector<std::string> missing;
        std::vector<ToLaunch> toLaunch;
    };

    [[nodiscard]] Resolution resolve(const Preset& preset, bool launchClosedApps) const;
    [[nodiscard]] std::optional<AudioSource> find(const PresetSource& source) const;
    [[nodiscard]] std::optional<AudioSource> findApp(const PresetSource& source) const;
    [[nodiscard]] std::optional<AudioSource> findDevice(const PresetSource& source) const;
    [[nodiscard]] std::optional<InstalledApplication> installed(const PresetSource& source) const;
    void install(const Resolved& entry);
    void launch(const ToLaunch& entry);
    void addLaunched(const ToLaunch& entry, const std::optional<RunningApplication>& running);

    Platform platform_;
    AudioEngine& engine_;
    const AppSettings& settings_;
    AppLauncher launcher_;
    /// The mix was stopped because every source of the preset is still coming up.
    bool pausedForLaunch_ = false;
};

} // namespace velmora
