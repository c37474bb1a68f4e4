#include "app/SceneWindow.h"

#include "ui/Ui.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <utility>

namespace velmora {
namespace {

void centre(QQuickWindow& window) {
    QRect place(QPoint{}, window.size());
    place.moveCenter(window.screen()->availableGeometry().center());
    window.setPosition(place.topLeft());
}

/// A window that grew below the screen's edge moves up, as far as there is room.
void keepOnScreen(QQuickWindow& window) {
    const QRect room = window.screen()->availableGeometry();
    const QRect frame = window.frameGeometry();
    const int top = std::max(room.top(), frame.top() - (frame.bottom() - room.bottom()));
    if (top < frame.top()) {
        window.setFramePosition({frame.left(), top});
    }
}

} // namespace

SceneWindow::SceneWindow(QQmlEngine& engine, QUrl file, QObject& model, MayClose mayClose)
    : engine_(engine), file_(std::move(file)), model_(model), mayClose_(std::move(mayClose)) {
}

SceneWindow::~SceneWindow() = default;

QQuickWindow& SceneWindow::make() {
    if (!window_) {
        auto made = makeWindow(engine_, file_, model_);
        if (!made) {
            qFatal("%s", made.error().c_str());
        }
        window_ = std::move(*made);
        window_->installEventFilter(this);
        centre(*window_);
        connect(window_.get(), &QQuickWindow::frameSwapped, this, &SceneWindow::drawn);
        connect(window_.get(),
                &QQuickWindow::sceneGraphError,
                this,
                [this](auto, const QString& reason) { Q_EMIT drawingFailed(reason); });
        connect(window_.get(),
                &QWindow::heightChanged,
                this,
                [this, before = window_->height()](int height) mutable {
                    if (height > std::exchange(before, height) && window_->isVisible()) {
                        keepOnScreen(*window_);
                    }
                });
    }
    return *window_;
}

void SceneWindow::open(const QString& token) {
    QQuickWindow& window = make();
    if (!token.isEmpty() && QGuiApplication::platformName().startsWith("wayland")) {
        // Where Qt looks, and takes it away, when a window asks to be activated.
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    }
    if (window.visibility() == QWindow::Minimized) {
        window.showNormal();
    } else {
        window.show();
    }
    window.raise();
    window.requestActivate();
}

void SceneWindow::minimize() {
    if (window_) {
        window_->showMinimized();
    }
}

bool SceneWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window_.get() && event->type() == QEvent::Close && !mayClose_()) {
        event->ignore();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace velmora
