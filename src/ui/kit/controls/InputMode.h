// InputMode.h: what the person at the window uses: keyboard, mouse or fingers.
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// A focus ring helps whoever moves by keys and is in the way of whoever points: controls show it
/// only while this says keyboard. Fingers hover over nothing: what comes with the pointer otherwise
/// is there all the time while this says touch.
///
/// Threads: main.
class InputMode : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool keyboard READ isKeyboard NOTIFY keyboardChanged)
    Q_PROPERTY(bool touch READ isTouch NOTIFY touchChanged)

public:
    explicit InputMode(QObject* parent = nullptr);

    /// The last thing used to get about was a key (Tab, arrows and their like), not the mouse.
    [[nodiscard]] bool isKeyboard() const { return keyboard_; }
    /// The last thing used to point was a finger.
    [[nodiscard]] bool isTouch() const { return touch_; }

Q_SIGNALS:
    void keyboardChanged();
    void touchChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setKeyboard(bool keyboard);
    void setTouch(bool touch);

    bool keyboard_ = false;
    bool touch_ = false;
};

} // namespace velmora
