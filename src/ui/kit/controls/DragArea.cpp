#include "ui/kit/controls/DragArea.h"

#include "ui/kit/controls/Scales.h"

#include <QGuiApplication>
#include <QStyleHints>

namespace velmora {

namespace {

constexpr double eighthsPerNotch = 120.0; // of a degree

} // namespace

DragArea::DragArea(QQuickItem* parent) : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
    setAcceptHoverEvents(true);
    // A list that scrolls must not take a drag over.
    setKeepMouseGrab(true);
    setKeepTouchGrab(true);
}

void DragArea::mousePressEvent(QMouseEvent* event) {
    doubleClick_ = isSecondClick(*event);
    // A third press begins anew.
    lastPress_ = doubleClick_ ? 0 : event->timestamp();
    lastPlace_ = event->scenePosition();
    pressed_ = true;
    Q_EMIT pressedChanged();
    drag(*event);
}

void DragArea::mouseMoveEvent(QMouseEvent* event) {
    // Once a finger has left, Qt tells where the mouse is, wherever that may be.
    if (pressed_) {
        drag(*event);
    }
}

void DragArea::mouseReleaseEvent(QMouseEvent*) {
    end();
}

// The window announces it after the press; the desktop's measure may be wider than ours.
void DragArea::mouseDoubleClickEvent(QMouseEvent* event) {
    doubleClick_ = true;
    drag(*event);
}

void DragArea::mouseUngrabEvent() {
    end();
}

void DragArea::wheelEvent(QWheelEvent* event) {
    // Alt, and on some desktops Shift, turns the wheel's movement sideways.
    const QPoint turned = event->angleDelta();
    const int eighths = turned.y() != 0 ? turned.y() : turned.x();
    const bool isMeant = hasFocus_ || event->modifiers() != Qt::NoModifier;
    if (eighths == 0 || (!isMeant && isInListThatScrolls())) {
        event->ignore();
        return;
    }
    const double direction = event->inverted() ? -1.0 : 1.0;
    Q_EMIT wheeled(direction * eighths / eighthsPerNotch,
                   event->modifiers().testFlag(Qt::ShiftModifier));
}

void DragArea::hoverEnterEvent(QHoverEvent*) {
    setHovered(true);
}

void DragArea::hoverLeaveEvent(QHoverEvent*) {
    setHovered(false);
}

bool DragArea::isSecondClick(const QMouseEvent& event) const {
    const QStyleHints& hints = *QGuiApplication::styleHints();
    return lastPress_ != 0 &&
           event.timestamp() - lastPress_ <= quint64(hints.mouseDoubleClickInterval()) &&
           (event.scenePosition() - lastPlace_).manhattanLength() <=
               hints.mouseDoubleClickDistance();
}

bool DragArea::isInListThatScrolls() const {
    for (const QQuickItem* list = parentItem(); list != nullptr; list = list->parentItem()) {
        if (list->inherits("QQuickFlickable") && list->property("interactive").toBool() &&
            list->property("contentHeight").toDouble() > list->height()) {
            return true;
        }
    }
    return false;
}

void DragArea::drag(const QMouseEvent& event) {
    if (didResetInThisGesture_) {
        return;
    }
    constexpr auto resetKeys = Qt::AltModifier | Qt::ControlModifier;
    if (doubleClick_ || event.modifiers() & resetKeys) {
        didResetInThisGesture_ = true;
        Q_EMIT reset();
        return;
    }
    Q_EMIT dragged(Scales::trackPosition(event.position().x(), width(), thumbSize_));
}

void DragArea::end() {
    if (!pressed_) {
        return;
    }
    pressed_ = false;
    doubleClick_ = false;
    didResetInThisGesture_ = false;
    Q_EMIT pressedChanged();
    Q_EMIT ended();
}

void DragArea::setHovered(bool hovered) {
    if (hovered_ == hovered) {
        return;
    }
    hovered_ = hovered;
    Q_EMIT hoveredChanged();
}

} // namespace velmora
