// DragArea.h: the gestures of every slider.
#pragma once

#include <QPointF>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// Turns mouse, touch and wheel into what a slider does, over its whole area.
///
/// A drag begins with the touch. The second press of a double click, and any movement with Alt or
/// Control held (window managers take Alt for themselves), resets instead of moving: once, and
/// whatever else the same gesture does is ignored, so that a reset never also nudges the value.
///
/// The wheel is left to a list around it that can scroll, unless the slider has the focus or a
/// modifier key is held: scrolling never changes what it passes.
///
/// Threads: main.
class DragArea : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(double thumbSize MEMBER thumbSize_ NOTIFY thumbSizeChanged)
    Q_PROPERTY(bool hasFocus MEMBER hasFocus_ NOTIFY hasFocusChanged)
    Q_PROPERTY(bool pressed READ isPressed NOTIFY pressedChanged)
    Q_PROPERTY(bool hovered READ isHovered NOTIFY hoveredChanged)

public:
    explicit DragArea(QQuickItem* parent = nullptr);

    [[nodiscard]] bool isPressed() const { return pressed_; }
    [[nodiscard]] bool isHovered() const { return hovered_; }

Q_SIGNALS:
    void thumbSizeChanged();
    void hasFocusChanged();
    void pressedChanged();
    void hoveredChanged();
    /// The thumb is to stand here, 0 … 1.
    void dragged(double position);
    void reset();
    /// The gesture is over, by release or because something took the mouse away.
    void ended();
    /// The wheel turned by so many notches, forwards positive; `fine` with Shift.
    void wheeled(double notches, bool fine);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;
    void wheelEvent(QWheelEvent* event) override;
    void hoverEnterEvent(QHoverEvent* event) override;
    void hoverLeaveEvent(QHoverEvent* event) override;

private:
    [[nodiscard]] bool isSecondClick(const QMouseEvent& event) const;
    [[nodiscard]] bool isInListThatScrolls() const;
    void drag(const QMouseEvent& event);
    void end();
    void setHovered(bool hovered);

    double thumbSize_ = 16.0; // points
    bool hasFocus_ = false;   // the slider's, which is around this area
    bool pressed_ = false;
    bool hovered_ = false;
    bool doubleClick_ = false; // this gesture
    bool didResetInThisGesture_ = false;
    quint64 lastPress_ = 0; // ms; 0 = none that could become a double click
    QPointF lastPlace_;     // in the scene
};

} // namespace velmora
