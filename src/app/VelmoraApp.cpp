#include "app/VelmoraApp.h"

#include "ui/Renderer.h"
#include "ui/Ui.h"
#include "ui/kit/Kit.h"
#include "ui/kit/theme/Comfort.h"

#include <QGuiApplication>
#include <QUrl>
#include <chrono>
#include <utility>

namespace velmora {
namespace {

/// A panel that stands has answered by then, and whoever waits for a window has not yet wondered.
constexpr std::chrono::milliseconds trayExpectedWithin{200};

} // namespace

VelmoraApp::VelmoraApp(const Platform& platform, const ProgramVersion& version, Start start)
    : platform_(platform), start_(start), mixer_(platform), controlModel_(parts(), &files_),
      settingsModel_({.platform = platform,
                      .engine = parts().engine,
                      .sources = parts().sources,
                      .settings = parts().settings,
                      .dawMode = mixer_.dawMode(),
                      .keys = mixer_.shortcutKeys(),
                      .version = version}),
      renderer_(platform.defaults), controlWindow_(qml_,
                                                   QUrl("qrc:/qt/qml/Velmora/ControlWindow.qml"),
                                                   controlModel_,
                                                   [this] { return mayClose(controlWindow_); }),
      settingsWindow_(qml_,
                      QUrl("qrc:/qt/qml/Velmora/SettingsWindow.qml"),
                      settingsModel_,
                      [this] { return mayClose(settingsWindow_); }),
      tray_(platform,
            parts().engine,
            parts().settings,
            start == Start::hidden ? TrayHost::Desktop::isStarting : TrayHost::Desktop::stands) {
    installKit(qml_, parts().settings);
    installUi(qml_);
    listen();
}

void VelmoraApp::listen() {
    for (const SceneWindow* const window : {&controlWindow_, &settingsWindow_}) {
        connect(window, &SceneWindow::drawn, this, [this] { renderer_.succeed(); });
        connect(window, &SceneWindow::drawingFailed, this, [this](const QString& reason) {
            if (!renderer_.isOnTrial()) {
                qFatal("%s", qPrintable(reason)); // as Qt does: nothing else can draw
            }
            qWarning("%s", qPrintable(reason));
            QCoreApplication::exit(toBeStartedAgain);
        });
    }
    connect(
        &controlModel_, &ControlWindowModel::settingsRequested, this, &VelmoraApp::openSettings);
    connect(&controlModel_, &ControlWindowModel::quitRequested, this, &VelmoraApp::quit);
    connect(&tray_, &TrayItem::openRequested, this, [this] { open(); });
    connect(&tray_, &TrayItem::settingsRequested, this, &VelmoraApp::openSettings);
    connect(&tray_, &TrayItem::quitRequested, this, &VelmoraApp::quit);
}

void VelmoraApp::start() {
    mixer_.start();
    if (start_ == Start::hidden) {
        return;
    }
    trayGrace_ = platform_.mainQueue.after(trayExpectedWithin, [this] {
        if (!tray_.isReachable() && !settingsWindow_.isVisible()) {
            open();
        }
    });
}

void VelmoraApp::chooseRenderer() {
    if (std::exchange(isRendererChosen_, true) || isRendererForced()) {
        return;
    }
    const double pixels = qApp->devicePixelRatio();
    const double points = Comfort::windowScale(
        parts().settings.desktopLook().textScale, QGuiApplication::platformName(), pixels);
    // Loading a driver takes a while, and a program that shows no window needs none.
    drawWindowsBy(hasGraphicsCard() ? renderer_.choose(graphicsName, pixels * points)
                                    : Renderer::processor);
}

void VelmoraApp::open(const QString& token) {
    chooseRenderer();
    controlWindow_.open(token);
}

void VelmoraApp::openSettings() {
    chooseRenderer();
    controlWindow_.make(); // the program's shortcuts are there
    settingsModel_.refresh();
    settingsWindow_.open();
}

void VelmoraApp::quit() {
    // Not QCoreApplication::quit(): it asks every window whether it may be closed.
    QCoreApplication::exit(0);
}

bool VelmoraApp::mayClose(const SceneWindow& closing) {
    const SceneWindow& other = &closing == &controlWindow_ ? settingsWindow_ : controlWindow_;
    if (tray_.isReachable() || other.isVisible()) {
        return true;
    }
    if (!parts().engine.isRunning()) {
        quit();
        return true;
    }
    if (&closing == &controlWindow_) {
        controlWindow_.minimize();
        return false;
    }
    controlWindow_.open();
    return true;
}

} // namespace velmora
