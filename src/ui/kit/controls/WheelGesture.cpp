#include "ui/kit/controls/WheelGesture.h"

#include <QCoreApplication>
#include <QWheelEvent>
#include <utility>

namespace velmora {

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
