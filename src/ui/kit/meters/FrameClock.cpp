#include "ui/kit/meters/FrameClock.h"

#include <QEvent>
#include <QQuickWindow>

namespace velmora {

FrameClock& FrameClock::of(QQuickWindow& window) {
    auto* clock = window.findChild<FrameClock*>(QString(), Qt::FindDirectChildrenOnly);
    return clock != nullptr ? *clock : *new FrameClock(window);
}

FrameClock::FrameClock(QQuickWindow& window)
    : QObject(&window), window_(window), pause_(int(period.count())) {
    pause_.setLoopCount(-1);
    connect(&pause_, &QPauseAnimation::currentLoopChanged, this, &FrameClock::ticked);
    window.installEventFilter(this);
    connect(&window, &QWindow::visibilityChanged, this, &FrameClock::update);
}

bool FrameClock::isTicking() const {
    return pause_.state() == QAbstractAnimation::Running;
}

void FrameClock::connectNotify(const QMetaMethod&) {
    ++followers_;
    update();
}

void FrameClock::disconnectNotify(const QMetaMethod&) {
    --followers_;
    update();
}

bool FrameClock::eventFilter(QObject* watched, QEvent* event) {
    const bool handled = QObject::eventFilter(watched, event);
    if (event->type() == QEvent::Expose) {
        update();
    }
    return handled;
}

void FrameClock::update() {
    // A window that the user closes stays exposed until it is gone, and then tells nobody.
    const bool isOnScreen =
        window_.isVisible() && window_.isExposed() && window_.visibility() != QWindow::Minimized;
    const bool wanted = followers_ > 0 && isOnScreen;
    if (wanted != isTicking()) {
        wanted ? pause_.start() : pause_.stop();
    }
}

} // namespace velmora
