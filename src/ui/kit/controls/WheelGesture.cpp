#include "ui/kit/controls/WheelGesture.h"

#include <QCoreApplication>
#include <QWheelEvent>
#include <utility>

namespace velmora {

namespace {

// A list that stops at its bounds does not accept the turn that carries it there (Qt 6.8.2 and
// 6.11.2; 6.4.2 accepts it), and the page around it would take the same turn once more.
bool isScrolling(const QQuickItem& item) {
    return item.inherits("QQuickFlickable") && item.property("moving").toBool();
}

} // namespace

WheelGesture::WheelGesture(QObject* parent) : QObject(parent) {
    QCoreApplication::instance()->installEventFilter(this);
}

// A window offers a turn to the items under the pointer, one after the other, until one accepts.
bool WheelGesture::eventFilter(QObject* watched, QEvent* event) {
    auto* const item =
        event->type() == QEvent::Wheel ? qobject_cast<QQuickItem*>(watched) : nullptr;
    if (item == nullptr) {
        return false;
    }
    const quint64 now = static_cast<QWheelEvent*>(event)->timestamp();
    if (now - std::exchange(lastTurn_, now) > pause) {
        owner_ = nullptr;
    }
    if (owner_ == nullptr) {
        watched->event(event);
        event->setAccepted(event->isAccepted() || isScrolling(*item));
        owner_ = event->isAccepted() ? item : nullptr;
        return true;
    }
    if (owner_ != item) {
        event->ignore();
        return true;
    }
    return false;
}

} // namespace velmora
