#include "app/SceneWindow.h"

#include "ui/Ui.h"
#include "ui/kit/WindowSystem.h"

#include <QEvent>
#include <QScreen>
#include <QTimer>
#include <algorithm>
#include <chrono>
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

/// A compositor that grants it has done so by then.
constexpr std::chrono::milliseconds activatedWithin{150};

/// A compositor refuses to raise a window without saying so, wherever nobody gave us its
/// permission: panels and terminals mostly have none to give. One that is shown anew comes to the
/// front.
void showAnewUnlessActivated(QQuickWindow& window) {
    QTimer::singleShot(activatedWithin, &window, [&window] {
        if (window.isVisible() && !window.isActive()) {
            window.hide();
            window.show();
        }
    });
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
        connect(window_.get(),
                &QQuickWindow::frameSwapped,
                this,
                &SceneWindow::drawn,
                Qt::ConnectionType(Qt::AutoConnection | Qt::SingleShotConnection));
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
    if (!token.isEmpty() && isOnWayland()) {
        // Where Qt looks, and takes it away, when a window asks to be activated.
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    }
    const bool wasVisible = window.isVisible();
    if (window.visibility() == QWindow::Minimized) {
        window.showNormal();
    } else {
        window.show();
    }
    window.raise();
    window.requestActivate();
    if (wasVisible && isOnWayland()) {
        showAnewUnlessActivated(window);
    }
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
