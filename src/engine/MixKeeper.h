// MixKeeper.h: makes a mix what it is wanted to be, and keeps it so.
#pragma once

#include "engine/Audience.h"
#include "engine/AudioSource.h"
#include "engine/BlockKeeper.h"
#include "engine/LimiterLamp.h"
#include "engine/MeterBank.h"
#include "engine/MixOutput.h"
#include "engine/Problem.h"
#include "engine/RunningMix.h"
#include "platform/GrowingPause.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "platform/Signal.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace velmora {

/// Compares what is wanted with what is there, in one place, and makes the difference smaller, one
/// step at a time. Everything that can change either side asks for a step: an edit, a default
/// output that changed (after some quiet), the service lost or back, a device, an application or
/// something of ours gone or come, and a retry whose pauses grow until something new is seen.
/// Nothing else repairs anything.
///
/// Where a monitoring device is chosen, no step moves the second copy to another one: it plays
/// there or nowhere. Only what the user does (`begin`, `moveMonitor`) falls back to the default
/// output, and that output is then kept to.
///
/// Threads: main. Errors: none; what is wrong is told by `problems()`.
class MixKeeper {
public:
    /// `settings` and `audience` outlive this object; the audience hears of changes first.
    MixKeeper(const Platform& platform, const MixSettings& settings, const Audience& audience);
    ~MixKeeper();
    MixKeeper(const MixKeeper&) = delete;
    MixKeeper& operator=(const MixKeeper&) = delete;

    /// Told after a change of what is published below that none of the operations made.
    [[nodiscard]] Signal& changed() { return changed_; }
    /// The same where nothing but the levels has moved.
    [[nodiscard]] Signal& levelsMoved() { return levelsMoved_; }
    /// Told 30 times a second while there is a mix.
    [[nodiscard]] Signal& ticked() { return ticked_; }

    // -- what is so now --

    /// The mix is wanted and works, or is waited for.
    [[nodiscard]] bool isOn() const { return isOn_; }
    [[nodiscard]] const std::vector<Problem>& problems() const { return problems_; }
    /// Whether the audio service is told to be away: also for a moment after it came back, while
    /// devices and applications follow one by one.
    [[nodiscard]] bool isServiceAway() const;
    [[nodiscard]] const MeterBank& meters() const { return meters_; }
    [[nodiscard]] bool isStreamLimited() const { return streamLamp_.isLit(); }
    [[nodiscard]] bool isMonitorLimited() const { return monitorLamp_.isLit(); }
    [[nodiscard]] const BlockKeeper& blocks() const { return blocks_; }
    /// Null while there is none.
    [[nodiscard]] RunningMix* mix() const { return mix_.get(); }

    // -- what the user asks for --

    /// Everything anew, of this list; an empty one is a problem and changes nothing else. With
    /// nothing that works, the mix is off afterwards, unless the service is away or it was waited
    /// for before: then it is waited for.
    void begin(std::vector<AudioSource> sources);
    /// The same for a mix that is on when it is not the user who asks: it stays on, and monitoring
    /// falls back to nothing new.
    void beginAgain(std::vector<AudioSource> sources);
    void end();
    /// What the last `begin` reported has been read; while the mix is on, it stays as it is.
    void dismissProblems();
    /// The choice of the monitoring output was made anew.
    void moveMonitor();
    /// The source's mute was set anew. A refusal is not told now: the next step tries again.
    void setMuteDirect(const AudioSource& source, bool muted);

private:
    /// What observers are told about.
    struct Published {
        bool isOn{};
        bool isServiceAway{};
        std::vector<Problem> problems;
        MeterBank meters;
        bool isStreamLimited{};
        bool isMonitorLimited{};
        BlockStatus blocks;

        bool operator==(const Published&) const = default;
    };
    [[nodiscard]] Published published() const;
    template <typename Work>
    void react(Work work);

    void onChange();
    void onDefaultOutputChange();
    void anew(std::vector<AudioSource> sources);
    [[nodiscard]] bool diedYoung() const;
    void step();
    void build();
    void tick();
    [[nodiscard]] bool isHeard() const;
    void followMonitor();
    void followLevels();
    void drop();
    void settle();
    void retryLater();
    [[nodiscard]] bool hasWorkingSource() const;
    [[nodiscard]] std::optional<OutputTarget> wantedMonitor();
    void allowFallback();
    [[nodiscard]] bool mayHealUnseen(const Problem& problem) const;

    Platform platform_;
    const MixSettings& settings_;
    const Audience& audience_;
    Signal changed_;
    Signal levelsMoved_;
    Signal ticked_;

    bool isOn_ = false;
    std::vector<AudioSource> sources_; ///< as of the last `begin`
    std::vector<Problem> problems_;
    MeterBank meters_;
    LimiterLamp streamLamp_;
    LimiterLamp monitorLamp_;
    BlockKeeper blocks_;
    std::unique_ptr<RunningMix> mix_;

    /// Where the second copy may play although another device is chosen: the user saw to it.
    std::optional<OutputTarget> fallback_;
    std::optional<Problem> monitorProblem_; ///< never told
    bool wasAway_ = false;                  ///< when the last step looked
    GrowingPause pause_;                    ///< before the next retry
    std::int64_t ticks_ = 0;                ///< of the meters since the mix was built

    std::unique_ptr<MainQueue::Timer> meterTimer_;
    std::unique_ptr<MainQueue::Timer> restart_; ///< after a change of the default output
    std::unique_ptr<MainQueue::Timer> retry_;
    std::unique_ptr<MainQueue::Timer> settling_; ///< runs while what follows a service is awaited
    Signal::Connection deviceConnection_;
    Signal::Connection defaultOutputConnection_;
};

} // namespace velmora
