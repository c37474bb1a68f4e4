// settings_pictures: draws the settings window's tabs in both languages, one PNG file each, without
// a screen.
//
// settings_pictures <folder>       QT_SCALE_FACTOR chooses the pixels per point

#include "capture/DAWModeManager.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "operations/PushToTalk.h"
#include "operations/ShortcutKeys.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "settings/AppSettings.h"
#include "ui/Ui.h"
#include "ui/WindowPicture.h"
#include "ui/kit/Kit.h"
#include "ui/settings/SettingsModel.h"
#include "ui/support/ItemSearch.h"

#include <QApplication>
#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QUrl>
#include <iostream>
#include <memory>
#include <string>

namespace velmora {

namespace {

/// False when a picture could not be drawn.
bool draw(const QDir& folder, const WindowLook& look) {
    SimulatedPlatform machine;
    machine.addSpeakers();
    machine.addVirtualMic();
    machine.sound.addDevice({.uid = "interface", .name = "Interface", .outputs = {4}});
    AppSettings settings(machine.platform());
    AudioEngine mixer(machine.platform());
    SourceManager sources(machine.platform());
    DAWModeManager dawMode(machine.platform());
    PresetStore presets(machine.defaults);
    PresetRecall recall(machine.platform(), mixer);
    PushToTalk talk(mixer);
    ShortcutKeys keys({.platform = machine.platform(),
                       .engine = mixer,
                       .sources = sources,
                       .presets = presets,
                       .recall = recall,
                       .settings = settings,
                       .talk = talk});
    SettingsModel model({.platform = machine.platform(),
                         .engine = mixer,
                         .sources = sources,
                         .settings = settings,
                         .dawMode = dawMode,
                         .keys = keys,
                         .version = {.release = "1.0", .build = "1"}});
    model.refresh();
    model.setMonitoring("interface#3");
    model.setDawInterface("interface");
    model.setDawEnabled(true);
    settings.setAppearance(look.appearance);
    settings.setLanguage(look.language);
    machine.shortcuts.appear();
    keys.use(true); // in this language
    talk.setOn(true);

    QQmlEngine engine;
    installKit(engine, settings);
    installUi(engine);
    QQmlComponent component(&engine, QUrl("qrc:/qt/qml/Velmora/SettingsWindow.qml"));
    const std::unique_ptr<QObject> made(
        component.createWithInitialProperties({{"model", QVariant::fromValue(&model)}}));
    auto* const window = qobject_cast<QQuickWindow*>(made.get());
    if (window == nullptr) {
        std::cerr << component.errorString().toStdString();
        return false;
    }
    window->show();
    for (const char* tab : {"general", "audio", "shortcuts"}) {
        QMetaObject::invokeMethod(findItem(*window, QString(tab) + "TabButton"), "clicked");
        const QString file = folder.filePath(QString::fromStdString(
            std::string("settings-") + tab + "-" + look.appearance + "-" + look.language + ".png"));
        if (!saveWindowPicture(*window, settings, look, file)) {
            std::cerr << "Could not write " << file.toStdString() << ".\n";
            return false;
        }
        std::cout << file.toStdString() << '\n';
    }
    return true;
}

} // namespace

} // namespace velmora

int main(int argc, char** argv) {
    using namespace velmora;
    if (argc != 2) {
        std::cerr << "settings_pictures <folder>\n";
        return 2;
    }
    const QTemporaryDir runtimeFolder;
    qputenv("XDG_RUNTIME_DIR", runtimeFolder.path().toLocal8Bit());
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    const QApplication application(argc, argv);
    bool isWhole = true;
    for (const char* appearance : {"light", "dark"}) {
        for (const char* language : {"fr", "en"}) {
            isWhole = draw(QDir(argv[1]), {appearance, language}) && isWhole;
        }
    }
    return isWhole ? 0 : 1;
}
