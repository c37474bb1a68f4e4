// RunningMix.h: the parts of a mix that is there.
#pragma once

#include "engine/AudioSource.h"
#include "engine/MixOutput.h"
#include "engine/Problem.h"
#include "engine/SourceStatistics.h"
#include "platform/Platform.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace velmora {

class EngineSettings;
class SourceCapture;

/// How the sources of a mix are to sound: read whenever one joins.
struct MixSettings {
    EngineSettings& kept;
    bool fxBypassed{};
    bool isMicrophoneClosed{};
    /// The source's process has ended and its number is another's, which is not to be heard.
    std::function<bool(const AudioSource& source)> isAnothers{};
};

/// The two outputs, and a capture for each source that works. Is built, changed piece by piece and
/// thrown away; what is wanted of it is not known here.
///
/// Threads: main.
class RunningMix {
public:
    /// Opens the stream output on the virtual microphone, where it plays silence for now. The
    /// default output is kept as the one that taps are opened for. `settings` outlives this object.
    /// Errors: throws VelmoraError; nothing is left running.
    RunningMix(const Platform& platform, const MixSettings& settings);
    /// Captures stop first, and their rings are taken from the outputs before these stop.
    ~RunningMix();
    RunningMix(const RunningMix&) = delete;
    RunningMix& operator=(const RunningMix&) = delete;

    /// False as soon as any part of it is dead.
    [[nodiscard]] bool isAlive() const;
    /// False when it was made for a sample rate, or for a microphone, that is not there any more.
    [[nodiscard]] bool isUpToDate() const;

    /// The default output for which taps were opened; none while there was none.
    [[nodiscard]] const std::optional<AudioObjectID>& defaultOutput() const {
        return defaultOutput_;
    }
    /// A first default output, where there was none.
    void takeDefaultOutput();

    [[nodiscard]] const std::optional<OutputTarget>& monitorTarget() const {
        return monitor_.target();
    }
    /// Plays the second copy there, or nowhere; the stream is not touched.
    /// Errors: what was refused; the monitoring output is closed then.
    std::optional<Problem> moveMonitor(const std::optional<OutputTarget>& target);

    /// Starts a capture for each source of the list that has none, anew where the device has other
    /// channels now, and ends those whose source is not in it. A source may be in the list twice.
    /// Returns what is wrong with those that failed.
    std::vector<Problem> takeSources(const std::vector<AudioSource>& sources);
    /// Only the second half of it.
    void dropAllBut(const std::vector<AudioSource>& sources);
    /// Starts the source's captures anew, those of all its entries: one alone would go on silencing
    /// the application. Returns false when one failed; that is no capture any more.
    bool setMuteDirect(const AudioSource& source, bool muted);

    /// In the order of the list.
    [[nodiscard]] const std::vector<std::unique_ptr<SourceCapture>>& captures() const {
        return captures_;
    }
    /// The first one whose source has the same id; null when there is none.
    [[nodiscard]] SourceCapture* captureOf(const AudioSource& source) const;

    [[nodiscard]] float streamLimiterGain() const { return stream_.limiterGain(); }
    [[nodiscard]] float monitorLimiterGain() const { return monitor_.limiterGain(); }

    void setStreamVolume(float volume) { stream_.setVolume(volume); }
    void setHeadphoneVolume(float volume) { monitor_.setVolume(volume); }
    /// The bypass was set anew.
    void followBypass();
    /// The microphone was closed or opened.
    void followMicrophone();

    [[nodiscard]] std::vector<SourceStatistics> statistics() const;
    void restartBacklogRanges();

private:
    void startCapture(SourceCapture& capture) const;
    [[nodiscard]] std::unique_ptr<SourceCapture> makeCapture(const AudioSource& source) const;
    void publishRings();

    Platform platform_;
    const MixSettings& settings_;
    std::optional<AudioObjectID> defaultOutput_;
    MixOutput stream_;
    MixOutput monitor_;
    double rateHz_ = 0.0; ///< as blocks came when the stream was opened
    std::vector<std::unique_ptr<SourceCapture>> captures_;
};

} // namespace velmora
