// SettingsWindowFixture.h: the real settings window on a simulated machine.
#pragma once

#include "capture/DAWModeManager.h"
#include "capture/SourceManager.h"
#include "engine/AudioEngine.h"
#include "operations/PushToTalk.h"
#include "operations/ShortcutKeys.h"
#include "presets/PresetRecall.h"
#include "presets/PresetStore.h"
#include "ui/Ui.h"
#include "ui/settings/SettingsModel.h"
#include "ui/support/QmlTest.h"

#include <QUrl>
#include <chrono>

namespace velmora {

/// Threads: main.
class SettingsWindowTest : public QmlTest {
protected:
    SettingsWindowTest() {
        machine.addSpeakers();
        machine.addVirtualMic();
        machine.sound.addDevice({.uid = "usb", .name = "Interface", .outputs = {4}});
        installUi(*engine);
        model.refresh();
        showWindow(QUrl("qrc:/qt/qml/Velmora/SettingsWindow.qml"),
                   {{"model", QVariant::fromValue(&model)}});
    }
    /// The window goes before the model that it shows.
    ~SettingsWindowTest() override { show("Item {}"); }

    void click(const QString& name) {
        pointer().click(find(name));
        settle();
        advance(std::chrono::milliseconds(300));
    }
    /// Opens a chooser and takes the entry of this label.
    void pick(const QString& menu, const QString& label) {
        click(menu);
        click(label);
    }
    void showAudio() { click("audioTabButton"); }
    void showShortcuts() { click("shortcutsTabButton"); }
    QString shown(const QString& chooser) { return find(chooser).property("label").toString(); }

    AudioEngine mixer{machine.platform()};
    SourceManager sources{machine.platform()};
    DAWModeManager dawMode{machine.platform()};
    PresetStore presets{machine.defaults};
    PresetRecall recall{machine.platform(), mixer};
    PushToTalk talk{mixer};
    ShortcutKeys keys{{.platform = machine.platform(),
                       .engine = mixer,
                       .sources = sources,
                       .presets = presets,
                       .recall = recall,
                       .settings = settings,
                       .talk = talk}};
    SettingsModel model{{.platform = machine.platform(),
                         .engine = mixer,
                         .sources = sources,
                         .settings = settings,
                         .dawMode = dawMode,
                         .keys = keys,
                         .version = {.release = "1.2.0", .build = "345"}}};
};

} // namespace velmora
