// InputMode.h: whether the person at the window uses the keyboard or the mouse.
#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// A focus ring helps whoever moves by keys and is in the way of whoever points: controls show it
/// only while this says keyboard.
///
/// Threads: main.
class InputMode : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(bool keyboard READ isKeyboard NOTIFY keyboardChanged)

public:
    explicit InputMode(QObject* parent = nullptr);

    /// The last thing used to get about was a key (Tab, arrows and their like), not the mouse.
    [[nodiscard]] bool isKeyboard() const { return keyboard_; }

Q_SIGNALS:
    void keyboardChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setKeyboard(bool keyboard);

    bool keyboard_ = false;
};

} // namespace velmora
