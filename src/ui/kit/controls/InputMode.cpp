#include "ui/kit/controls/InputMode.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointingDevice>
#include <utility>

namespace velmora {

namespace {

bool movesAbout(int key) {
    switch (key) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        return true;
    default:
        return false;
    }
}

} // namespace

InputMode::InputMode(QObject* parent) : QObject(parent) {
    QCoreApplication::instance()->installEventFilter(this);
}

bool InputMode::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress) {
        setKeyboard(false);
        const auto* const device = static_cast<QMouseEvent*>(event)->pointingDevice();
        setTouch(device != nullptr && device->type() == QInputDevice::DeviceType::TouchScreen);
    } else if (event->type() == QEvent::TouchBegin) {
        setKeyboard(false);
        setTouch(true);
    } else if (event->type() == QEvent::KeyPress &&
               movesAbout(static_cast<QKeyEvent*>(event)->key())) {
        setKeyboard(true);
    }
    return false;
}

void InputMode::setTouch(bool touch) {
    if (std::exchange(touch_, touch) != touch) {
        Q_EMIT touchChanged();
    }
}

void InputMode::setKeyboard(bool keyboard) {
    if (keyboard_ == keyboard) {
        return;
    }
    keyboard_ = keyboard;
    Q_EMIT keyboardChanged();
}

} // namespace velmora
