// AudioEngine.h: the live mix: its sources, their settings, and the two outputs.
#pragma once

#include "effects/FXParams.h"
#include "engine/AudioSource.h"
#include "engine/Binding.h"
#include "engine/EngineSettings.h"
#include "engine/MeterBank.h"
#include "engine/MixOutput.h"
#include "engine/SourceStatistics.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "platform/Signal.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class SourceCapture;

/// Mixes the sources into the virtual microphone and, as a second copy, into the monitoring output.
///
/// An edit has three effects at once: the published value changes, a running capture or output
/// takes it up at its next block, and it is kept in the defaults store. Settings are keyed by
/// `AudioSource::id()`; membership in the list is equality of source values.
///
/// A mix that is on when the audio service goes stays on: `lastError()` says so meanwhile, and the
/// mix is built anew, piece by piece, as the service, devices and applications come back. A start
/// while the service is away waits for it in the same way. `stop()` ends the waiting.
///
/// Threads: main only. Real-time: no.
/// Errors: operations never throw; a failed start is told by `lastError()`.
class AudioEngine {
public:
    /// What `lastError()` says while the audio service is away.
    static constexpr const char* serviceAway = "Service audio injoignable";

    /// Loads what was kept; does not start.
    explicit AudioEngine(const Platform& platform);
    /// Stops a running mix.
    ~AudioEngine();
    AudioEngine(const AudioEngine&) = delete;
    AudioEngine& operator=(const AudioEngine&) = delete;

    /// Told after any value below has changed, once per operation, when the operation is complete:
    /// an observer may call back into the engine.
    [[nodiscard]] Signal& changed() { return changed_; }

    // -- published values --

    /// The mix is on, also while it waits for the audio service.
    [[nodiscard]] bool isRunning() const { return status_.isRunning; }
    /// 0 ... 1, the loudest source.
    [[nodiscard]] float level() const { return meters_.level(); }
    /// By source id, 0 ... 1.
    [[nodiscard]] const std::map<std::string, float>& sourceLevels() const {
        return meters_.sourceLevels();
    }
    [[nodiscard]] const std::vector<AudioSource>& sources() const { return sources_; }
    [[nodiscard]] const std::optional<std::string>& lastError() const { return status_.lastError; }
    void setLastError(std::optional<std::string> message);

    /// Every source's effects off. Not kept.
    [[nodiscard]] bool fxBypassed() const { return fxBypassed_; }
    void setFxBypassed(bool bypassed);

    /// Linear, 1.0 = unity, not bounded here.
    [[nodiscard]] float headphoneVolume() const { return settings_.headphoneVolume(); }
    void setHeadphoneVolume(float volume);
    [[nodiscard]] float streamVolume() const { return settings_.streamVolume(); }
    void setStreamVolume(float volume);

    /// None = the system's default output; otherwise a device UID, optionally followed by "#" and
    /// the 1-based first channel of the pair.
    [[nodiscard]] const std::optional<std::string>& monitoringSelection() const {
        return settings_.monitoringSelection();
    }
    /// While running, rebuilds the monitoring output and nothing else.
    void setMonitoringSelection(std::optional<std::string> selection);

    // -- settings of one source --

    /// Linear, 1.0 when nothing is kept. Stored as given; bounding it is the caller's business.
    [[nodiscard]] float gain(const AudioSource& source) const;
    void setGain(float gain, const AudioSource& source);
    [[nodiscard]] Binding<float> gainBinding(const AudioSource& source);

    /// Whether an application is silenced on its own output while it is captured.
    [[nodiscard]] bool isDirectMuted(const AudioSource& source) const;
    void setDirectMuted(bool muted, const AudioSource& source);
    [[nodiscard]] Binding<bool> muteDirectBinding(const AudioSource& source);

    [[nodiscard]] FXParams fx(const AudioSource& source) const;
    void setFX(const FXParams& params, const AudioSource& source);
    [[nodiscard]] Binding<FXParams> fxBinding(const AudioSource& source);

    /// What is kept for the source, if anything. A neutral `FXParams` is never kept.
    [[nodiscard]] std::optional<float> storedGain(const AudioSource& source) const;
    [[nodiscard]] std::optional<FXParams> storedFX(const AudioSource& source) const;

    /// At least one source in the list has effects.
    [[nodiscard]] bool anyFXActive() const;

    // -- the list: an edit while running rebuilds the whole mix --

    void add(const AudioSource& source);
    /// Removing the last source while running stops. Settings of the source are kept.
    void remove(const AudioSource& source);
    /// Puts `source` in the place of the first one. Deliberate: it is not looked for further down,
    /// so it can be in the list twice afterwards.
    void setPrimary(const AudioSource& source);

    /// These two change the list only; the caller starts when its whole recall is done.
    void replaceSources(std::vector<AudioSource> sources);
    /// At `index`, or at the end when the list is shorter.
    void insertSource(const AudioSource& source, std::size_t index);

    // -- running --

    /// Tears everything down and builds it anew.
    void start();
    void stop();

    /// One entry per running source, in the order of the captures.
    [[nodiscard]] std::vector<SourceStatistics> statistics() const;
    /// Forgets the smallest and largest backlogs so far; the counters go on.
    void restartBacklogRanges();

private:
    struct Status {
        bool isRunning{};
        std::optional<std::string> lastError;

        bool operator==(const Status&) const = default;
    };

    /// What a start does about sources that fail while none works.
    enum class NoSource { endsTheMix, isWaitedFor };

    /// A mix that is on, but not whole.
    struct Recovery {
        bool hasOutputs{};
        /// The service was lost, and the default output was not told since. Until then devices
        /// come and go.
        bool awaitsDefaultOutput{};
        /// Where the monitoring output played: a chosen device is never replaced by another one.
        std::optional<OutputTarget> monitorBefore;
        std::optional<std::string> told; ///< the last message that came from here
        std::unique_ptr<MainQueue::Timer> retry;
    };

    void listenToDevices();
    void onDevicesChange();
    void onDefaultOutputChange();
    void scheduleRestart();
    void rebuild(NoSource noSource);
    void restartIfRunning();
    bool halt();
    void tellWhetherServiceIsAway(bool isAway);
    void awaitService();
    void awaitMissingSources();
    void beginRecovery(Recovery recovery);
    void endRecovery();
    void recoverAndTell();
    void recover();
    [[nodiscard]] std::optional<std::string> restoreMissing();
    void restoreMonitor();
    [[nodiscard]] bool isWhole() const;
    void openStream();
    void openMonitor();
    [[nodiscard]] std::optional<std::string> startMissingCaptures();
    [[nodiscard]] std::vector<AudioSource> missingSources() const;
    [[nodiscard]] std::unique_ptr<SourceCapture> makeCapture(const AudioSource& source) const;
    void publishRings();
    void startMeterTimer();
    void stopInternals();
    void restartMonitor();
    [[nodiscard]] std::optional<OutputTarget> monitoringTarget() const;
    void notifyIf(bool somethingChanged) const;
    [[nodiscard]] SourceCapture* captureOf(const AudioSource& source) const;

    Platform platform_;
    EngineSettings settings_;
    Signal changed_;
    Status status_;
    std::vector<AudioSource> sources_;
    bool fxBypassed_ = false;
    MeterBank meters_;

    MixOutput stream_;
    MixOutput monitor_;
    std::vector<std::unique_ptr<SourceCapture>> captures_;
    std::unique_ptr<MainQueue::Timer> meterTimer_;
    std::unique_ptr<MainQueue::Timer> restartTimer_;
    std::optional<Recovery> recovery_;
    bool isServiceAway_ = false; // as last told
    Signal::Connection devicesConnection_;
    Signal::Connection defaultOutputConnection_;
};

} // namespace velmora
