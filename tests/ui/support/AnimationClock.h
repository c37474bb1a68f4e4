// AnimationClock.h: the time of QML's animations and timers, turned by a test.
#pragma once

#include <QAnimationDriver>
#include <QVariantAnimation>
#include <chrono>

namespace velmora {

/// While one exists, every QML animation, Timer and FrameAnimation stands still until `advance`.
///
/// Threads: main; one at a time.
class AnimationClock : public QAnimationDriver {
public:
    AnimationClock();
    ~AnimationClock() override;

    /// Turns the time in frames of at most 16 ms, as a screen would.
    void advanceBy(std::chrono::milliseconds duration);

    [[nodiscard]] qint64 elapsed() const override { return now_.count(); }

private:
    std::chrono::milliseconds now_{};
    QVariantAnimation heartbeat_; // while only timers run, Qt would use the real clock
};

} // namespace velmora
