#include "platform/desktop/PaletteWatch.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPalette>
#include <utility>

namespace velmora {

namespace {

QGuiApplication* program() {
    return qobject_cast<QGuiApplication*>(QCoreApplication::instance());
}

} // namespace

PaletteWatch::PaletteWatch(std::function<void()> changed) : changed_(std::move(changed)) {
    if (auto* const application = program()) {
        application->installEventFilter(this);
    }
}

bool PaletteWatch::isDark() const {
    if (program() == nullptr) {
        return false;
    }
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::WindowText).lightness() >
           palette.color(QPalette::Window).lightness();
}

bool PaletteWatch::eventFilter(QObject* watched, QEvent* event) {
    if (watched == program() && event->type() == QEvent::ApplicationPaletteChange) {
        changed_();
    }
    return false;
}

} // namespace velmora
