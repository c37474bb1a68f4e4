// Pointer.h: the mouse of a window under test.
#pragma once

#include <QEvent>
#include <QPointF>
#include <QPointer>
#include <QWindow>
#include <Qt>
#include <QtGlobal>

class QQuickItem;

namespace velmora {

/// Sends mouse events with its own time stamps, so that a test decides what is a double click.
/// Positions are in the item's own coordinates; the item may lie in a pop-up of the window.
///
/// Threads: main. A button still held is released when the pointer ends.
class Pointer {
public:
    explicit Pointer(QWindow& window) : window_(&window) {}
    Pointer(const Pointer&) = delete;
    Pointer& operator=(const Pointer&) = delete;
    ~Pointer();

    void press(const QQuickItem& item, QPointF at, Qt::KeyboardModifiers modifiers = {});
    void moveTo(const QQuickItem& item, QPointF at, Qt::KeyboardModifiers modifiers = {});
    void release(Qt::KeyboardModifiers modifiers = {});
    /// The second press of a double click; the first click has been made. Stays pressed.
    void pressAgain(Qt::KeyboardModifiers modifiers = {});

    void click(const QQuickItem& item, QPointF at, Qt::KeyboardModifiers modifiers = {});
    void doubleClick(const QQuickItem& item, QPointF at);
    /// Clicks the middle of the item.
    void click(const QQuickItem& item);
    /// Turns the wheel; one notch is 120 eighths of a degree.
    void wheel(const QQuickItem& item, QPoint eighths, Qt::KeyboardModifiers modifiers = {});
    /// The same where the desktop scrolls "naturally": what is told is turned round.
    void wheelInverted(const QQuickItem& item, QPoint eighths);
    /// Lets more time pass than a double click may take.
    void pause();

private:
    void send(QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers modifiers);
    void
    turn(const QQuickItem& item, QPoint eighths, Qt::KeyboardModifiers modifiers, bool inverted);

    void enter(const QQuickItem& item, QPointF at);

    QPointer<QWindow> window_; // where it is now
    QPointF at_;               // in that window
    Qt::MouseButtons held_;
    quint64 timeStamp_ = 1000; // ms
};

} // namespace velmora
