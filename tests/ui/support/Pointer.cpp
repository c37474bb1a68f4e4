#include "ui/support/Pointer.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QQuickItem>
#include <QQuickWindow>
#include <QStyleHints>
#include <QWheelEvent>

namespace velmora {

namespace {

constexpr quint64 betweenEvents = 10; // ms

QPointF middleOf(const QQuickItem& item) {
    return {item.width() / 2, item.height() / 2};
}

} // namespace

Pointer::~Pointer() {
    if (held_ != Qt::NoButton) {
        release();
    }
}

void Pointer::press(const QQuickItem& item, QPointF at, Qt::KeyboardModifiers modifiers) {
    moveTo(item, at, modifiers);
    held_ = Qt::LeftButton;
    send(QEvent::MouseButtonPress, Qt::LeftButton, modifiers);
}

void Pointer::moveTo(const QQuickItem& item, QPointF at, Qt::KeyboardModifiers modifiers) {
    enter(item, at);
    send(QEvent::MouseMove, Qt::NoButton, modifiers);
}

void Pointer::release(Qt::KeyboardModifiers modifiers) {
    held_ = Qt::NoButton;
    send(QEvent::MouseButtonRelease, Qt::LeftButton, modifiers);
}

void Pointer::pressAgain(Qt::KeyboardModifiers modifiers) {
    held_ = Qt::LeftButton;
    send(QEvent::MouseButtonPress, Qt::LeftButton, modifiers);
    send(QEvent::MouseButtonDblClick, Qt::LeftButton, modifiers);
}

void Pointer::click(const QQuickItem& item, QPointF at, Qt::KeyboardModifiers modifiers) {
    press(item, at, modifiers);
    release(modifiers);
}

void Pointer::doubleClick(const QQuickItem& item, QPointF at) {
    click(item, at);
    pressAgain();
    release();
}

void Pointer::click(const QQuickItem& item) {
    click(item, middleOf(item));
    pause();
}

void Pointer::wheel(const QQuickItem& item, QPoint eighths, Qt::KeyboardModifiers modifiers) {
    turn(item, eighths, modifiers, false);
}

void Pointer::wheelInverted(const QQuickItem& item, QPoint eighths) {
    turn(item, eighths, {}, true);
}

void Pointer::pause() {
    timeStamp_ += 2 * quint64(QGuiApplication::styleHints()->mouseDoubleClickInterval());
}

void Pointer::enter(const QQuickItem& item, QPointF at) {
    if (item.window() != nullptr) {
        window_ = item.window();
    }
    at_ = item.mapToScene(at);
}

void Pointer::send(QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    if (window_ == nullptr) {
        return; // it has closed under the pointer
    }
    QMouseEvent event(type, at_, window_->mapToGlobal(at_), button, held_, modifiers);
    event.setTimestamp(timeStamp_ += betweenEvents);
    QCoreApplication::sendEvent(window_, &event);
}

void Pointer::turn(const QQuickItem& item,
                   QPoint eighths,
                   Qt::KeyboardModifiers modifiers,
                   bool inverted) {
    enter(item, middleOf(item));
    QWheelEvent event(at_,
                      window_->mapToGlobal(at_),
                      QPoint(),
                      eighths,
                      held_,
                      modifiers,
                      Qt::NoScrollPhase,
                      inverted);
    event.setTimestamp(timeStamp_ += betweenEvents);
    QCoreApplication::sendEvent(window_, &event);
}

} // namespace velmora
