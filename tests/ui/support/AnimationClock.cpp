#include "ui/support/AnimationClock.h"

#include <QCoreApplication>
#include <algorithm>

namespace velmora {

AnimationClock::AnimationClock() {
    install();
    heartbeat_.setDuration(1000);
    heartbeat_.setLoopCount(-1);
    heartbeat_.start();
}

AnimationClock::~AnimationClock() {
    heartbeat_.stop();
    uninstall();
}

void AnimationClock::advanceBy(std::chrono::milliseconds duration) {
    using namespace std::chrono_literals;
    const auto end = now_ + duration;
    // An animation that was just asked for begins with the next round of events.
    QCoreApplication::processEvents();
    while (now_ < end) {
        now_ += std::min<std::chrono::milliseconds>(16ms, end - now_);
        advanceAnimation();
        QCoreApplication::processEvents();
    }
}

} // namespace velmora
