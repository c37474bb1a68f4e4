// VelmoraApp.h: the program: what lives as long as it does, its windows and its tray item.
#pragma once

#include "app/DesktopFileChooser.h"
#include "app/RendererChoice.h"
#include "app/SceneWindow.h"
#include "app/TrayItem.h"
#include "operations/Mixer.h"
#include "platform/MainQueue.h"
#include "platform/Platform.h"
#include "ui/control/ControlWindowModel.h"
#include "ui/settings/SettingsModel.h"

#include <QObject>
#include <QQmlEngine>
#include <QString>
#include <memory>

namespace velmora {

/// Everything starts from the tray item. Started by hand on a desktop without a tray, the control
/// window opens by itself, and closing it never leaves the program running unseen: it ends a mixer
/// at rest and minimises a running one. Started with the session, no window opens by itself,
/// however late the panel is: a second launch shows it.
///
/// Threads: main; needs a QApplication.
class VelmoraApp : public QObject {
    Q_OBJECT

public:
    enum class Start { byHand, hidden };
    /// How the event loop ends when the windows could not be drawn: the next start draws them
    /// another way.
    static constexpr int toBeStartedAgain = 75;

    VelmoraApp(const Platform& platform, const ProgramVersion& version, Start start);

    /// Brings back the last setup and, started by hand, looks for a tray. To be called once.
    void start();

    /// For those who work it without its windows.
    [[nodiscard]] MixerParts parts() { return mixer_.parts(); }

    /// Shows the control window. @param token  see SceneWindow::open
    void open(const QString& token = {});
    void openSettings();
    /// Ends the program's event loop.
    void quit();

private:
    void listen();
    /// Decides, before the first window, who draws them all.
    void chooseRenderer();
    [[nodiscard]] bool mayClose(const SceneWindow& closing);

    Platform platform_;
    Start start_;

    Mixer mixer_;
    DesktopFileChooser files_{mixer_.parts().settings};
    ControlWindowModel controlModel_;
    SettingsModel settingsModel_;
    QQmlEngine qml_;
    RendererChoice renderer_;
    bool isRendererChosen_ = false;
    SceneWindow controlWindow_;
    SceneWindow settingsWindow_;
    TrayItem tray_;
    std::unique_ptr<MainQueue::Timer> trayGrace_;
};

} // namespace velmora
