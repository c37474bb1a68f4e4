#include "app/VelmoraApp.h"

#include "ui/Ui.h"
#include "ui/kit/Kit.h"

#include <QCoreApplication>
#include <QUrl>
#include <chrono>

namespace velmora {
namespace {

/// A panel that stands has answered by then, and whoever waits for a window has not yet wondered.
constexpr std::chrono::milliseconds trayExpectedWithin{200};

} // namespace

VelmoraApp::VelmoraApp(const Platform& platform, const ProgramVersion& version, Start start)
    : platform_(platform), start_(start), engine_(platform), sources_(platform),
      presetStore_(platform.defaults), settings_(platform), dawMode_(platform),
      recall_(platform, engine_), controlModel_({.platform = platform,
                                                 .engine = engine_,
                                                 .sources = sources_,
                                                 .presets = presetStore_,
                                                 .recall = recall_,
                                                 .settings = settings_,
                                                 .files = &files_}),
      settingsModel_({.platform = platform,
                      .engine = engine_,
                      .sources = sources_,
                      .settings = settings_,
                      .dawMode = dawMode_,
                      .version = version}),
      controlWindow_(qml_,
                     QUrl("qrc:/qt/qml/Velmora/ControlWindow.qml"),
                     controlModel_,
                     [this] { return mayClose(controlWindow_); }),
      settingsWindow_(qml_,
                      QUrl("qrc:/qt/qml/Velmora/SettingsWindow.qml"),
                      settingsModel_,
                      [this] { return mayClose(settingsWindow_); }),
      tray_(platform,
            engine_,
            settings_,
            start == Start::hidden ? TrayHost::Desktop::isStarting : TrayHost::Desktop::stands) {
    installKit(qml_, settings_);
    installUi(qml_);
    listen();
}

void VelmoraApp::listen() {
    connect(
        &controlModel_, &ControlWindowModel::settingsRequested, this, &VelmoraApp::openSettings);
    connect(&controlModel_, &ControlWindowModel::quitRequested, this, &VelmoraApp::quit);
    connect(&tray_, &TrayItem::openRequested, this, [this] { open(); });
    connect(&tray_, &TrayItem::settingsRequested, this, &VelmoraApp::openSettings);
    connect(&tray_, &TrayItem::quitRequested, this, &VelmoraApp::quit);
}

void VelmoraApp::start() {
    presetStore_.restoreActive(recall_);
    if (start_ == Start::hidden) {
        return;
    }
    trayGrace_ = platform_.mainQueue.after(trayExpectedWithin, [this] {
        if (!tray_.isReachable() && !settingsWindow_.isVisible()) {
            open();
        }
    });
}

MixerParts VelmoraApp::parts() {
    return {.platform = platform_,
            .engine = engine_,
            .sources = sources_,
            .presets = presetStore_,
            .recall = recall_,
            .settings = settings_};
}

void VelmoraApp::open(const QString& token) {
    controlWindow_.open(token);
}

void VelmoraApp::openSettings() {
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
    if (!engine_.isRunning()) {
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
