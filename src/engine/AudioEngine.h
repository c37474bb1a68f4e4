// AudioEngine.h: the live mix: its sources, their settings, and the two outputs.
#pragma once

#include "effects/FXParams.h"
#include "engine/Audience.h"
#include "engine/AudioSource.h"
#include "engine/Binding.h"
#include "engine/EngineSettings.h"
#include "engine/KeptApplications.h"
#include "engine/MixKeeper.h"
#include "engine/Problem.h"
#include "engine/SourceStatistics.h"
#include "platform/Platform.h"
#include "platform/Signal.h"

#include <cstddef>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// Who tells the engine what went wrong on the way to its list of sources.
enum class ProblemOrigin { recall, launch };

/// Mixes the sources into the virtual microphone and, as a second copy, into the monitoring output.
///
/// An edit has three effects at once: the published value changes, a running capture or output
/// takes it up at its next block, and it is kept in the defaults store. Settings are keyed by
/// `AudioSource::id()`; membership in the list is equality of source values. How a mix that is on
/// is kept whole is `MixKeeper`'s business. What is kept of an application that has ended is
/// forgotten, unless it is in the list.
///
/// Threads: main only. Real-time: no.
/// Errors: operations never throw; what is wrong is told by `problems()`.
class AudioEngine {
public:
    /// Loads what was kept; does not start.
    explicit AudioEngine(const Platform& platform);
    AudioEngine(const AudioEngine&) = delete;
    AudioEngine& operator=(const AudioEngine&) = delete;

    /// Told after any value below has changed, once per operation, when the operation is complete:
    /// an observer may call back into the engine.
    [[nodiscard]] Signal& changed() { return changed_; }
    /// The same, but for changes of the levels alone, which come 30 times a second.
    [[nodiscard]] Signal& changedBesidesLevels() { return changedBesidesLevels_; }

    // -- published values --

    /// The mix is on, also while it waits for the audio service, a device or an application.
    [[nodiscard]] bool isRunning() const { return keeper_.isOn(); }
    /// Also for a moment after the audio service came back, while devices and applications follow.
    [[nodiscard]] bool isServiceAway() const { return keeper_.isServiceAway(); }
    /// 0 ... 1, the loudest source.
    [[nodiscard]] float level() const { return keeper_.meters().level(); }
    /// By source id, 0 ... 1; a source that is not captured has none.
    [[nodiscard]] const std::map<std::string, float>& sourceLevels() const {
        return keeper_.meters().sourceLevels();
    }
    [[nodiscard]] const std::vector<AudioSource>& sources() const { return sources_; }
    [[nodiscard]] bool isCaptured(const AudioSource& source) const;
    /// The source's process has ended, and its number is another's.
    [[nodiscard]] bool isAnothers(const AudioSource& source) const {
        return kept_.isAnothers(source);
    }
    /// How sound comes while the mix runs.
    [[nodiscard]] const BlockStatus& blocks() const { return keeper_.blocks().status(); }

    /// What is wrong now: what a recall could not find, what could not be launched, what the mix
    /// lacks, and whether the audio service is away.
    [[nodiscard]] std::vector<Problem> problems() const;
    /// The same as sentences, one a line, in French; none when all is well.
    [[nodiscard]] std::optional<std::string> lastError() const;

    /// Replaces what was told under this origin. A problem with a key goes when a source of that
    /// key joins the list.
    void tell(ProblemOrigin origin, std::vector<Problem> problems);
    /// Adds to it.
    void tellMore(ProblemOrigin origin, const Problem& problem);
    /// The user has read what was told from outside, and why a start failed: it goes. What a mix
    /// that is on lacks stays.
    void dismissProblems();
    [[nodiscard]] bool canDismissProblems() const;

    /// Every source's effects off. Not kept.
    [[nodiscard]] bool fxBypassed() const { return mixSettings_.fxBypassed; }
    void setFxBypassed(bool bypassed);

    /// Nothing reaches the virtual microphone, whatever its volume; monitoring goes on. Closing and
    /// opening fade for a few milliseconds. Not kept.
    [[nodiscard]] bool isMicrophoneClosed() const { return mixSettings_.isMicrophoneClosed; }
    void setMicrophoneClosed(bool closed);

    /// The output's limiter takes something from it.
    [[nodiscard]] bool isHeadphonesLimited() const { return keeper_.isMonitorLimited(); }
    [[nodiscard]] bool isStreamLimited() const { return keeper_.isStreamLimited(); }

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

    /// Its changes are told by `changed`.
    [[nodiscard]] const Audience& audience() const { return audience_; }
    void restoreMicrophoneVolume() { audience_.restoreVolume(); }

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

    // -- the list: an edit while running rebuilds the whole mix, once --

    void add(const AudioSource& source);
    /// Removing the last source while running stops. Settings of the source are kept.
    void remove(const AudioSource& source);
    /// Puts `source` in the place of the first one. Deliberate: it is not looked for further down,
    /// so it can be in the list twice afterwards.
    void setPrimary(const AudioSource& source);

    /// `successor` takes the place of `source`, with all that is kept for that one. Nothing happens
    /// when `source` is not in the list.
    void replace(const AudioSource& source, const AudioSource& successor);

    /// These two change the list only; the caller starts when its whole recall is done.
    void replaceSources(std::vector<AudioSource> sources);
    /// At `index`, or at the end when the list is shorter.
    void insertSource(const AudioSource& source, std::size_t index);

    // -- running --

    /// Tears everything down and builds it anew.
    void start();
    void stop();
    /// As `start` for a mix that is on, when it is not the user who asks: it is never switched off
    /// by that, and monitoring stays where it may be.
    void restart();

    /// One entry per running source, in the order of the captures.
    [[nodiscard]] std::vector<SourceStatistics> statistics() const;
    /// Forgets the smallest and largest backlogs so far; the counters go on.
    void restartBacklogRanges();

private:
    struct Status {
        bool isRunning{};
        std::vector<Problem> problems;

        bool operator==(const Status&) const = default;
    };
    [[nodiscard]] Status status() const { return {isRunning(), problems()}; }
    /// @param isAnother  a source of the list is another process from now on
    void editList(std::vector<AudioSource> sources, bool isAnother = false);
    /// Ends what was told of sources that were not in the list before.
    void forgetJoined(const std::vector<AudioSource>& before);
    [[nodiscard]] std::vector<Problem>& told(ProblemOrigin origin);
    void notify() const;
    void notifyIf(bool somethingChanged) const;
    [[nodiscard]] SourceCapture* captureOf(const AudioSource& source) const;

    Platform platform_;
    EngineSettings settings_;
    Signal changed_;
    Signal changedBesidesLevels_;
    std::vector<AudioSource> sources_;
    KeptApplications kept_{platform_.applications, platform_.defaults, settings_};
    MixSettings mixSettings_{.kept = settings_, .isAnothers = [this](const AudioSource& source) {
                                 return kept_.isAnothers(source);
                             }};
    std::vector<Problem> recallProblems_;
    std::vector<Problem> launchProblems_;
    Audience audience_{platform_};
    MixKeeper keeper_;
    Signal::Connection ownConnection_;
    Signal::Connection tickConnection_;
    Signal::Connection keeperConnection_;
    Signal::Connection levelsConnection_;
    Signal::Connection audienceConnection_;
    Signal::Connection deviceConnection_;
    std::shared_ptr<AudioEngine*> self_ = std::make_shared<AudioEngine*>(this);
};

} // namespace velmora
