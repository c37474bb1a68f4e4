// Presets that are carried in files, driven with mouse and keyboard.

#include "presets/PresetSnapshot.h"
#include "ui/window/WindowTest.h"

#include <QFile>
#include <QTemporaryDir>

namespace velmora {

namespace {

class PresetFilesWindow : public WindowTest {
protected:
    void keep(const std::string& name) {
        scene.presets.save(snapshotPreset(scene.engine, machine.devices, name));
    }
    [[nodiscard]] QString path(const QString& name) const { return folder_.filePath(name); }

private:
    const QTemporaryDir folder_;
};

TEST_F(PresetFilesWindow, GoOutAndComeInByMouse) {
    openWithBrowser();
    keep("Podcast");
    click("presetFiles");
    click("Exporter");
    click("Tous les presets…");
    ASSERT_EQ(scene.files.asked, QStringList{"save: Exporter: Presets Velmora.json"});
    EXPECT_FALSE(isShown("Exporter"));
    scene.files.choose(path("all.json"));

    click("presetFiles");
    click("Importer des presets…");
    scene.files.choose(path("all.json"));
    settle();

    EXPECT_EQ(textOf("undoText"), QString::fromUtf8("Presets importés : Podcast (2)"));
    click("presetPicker");
    EXPECT_TRUE(isShown("Podcast (2)"));
}

TEST_F(PresetFilesWindow, GoOutByKeyboard) {
    openWithBrowser();
    keep("Podcast");
    tabTo("Importer et exporter des presets");
    key(Qt::Key_Return);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Right);
    key(Qt::Key_Down);
    key(Qt::Key_Down);
    key(Qt::Key_Return);
    EXPECT_EQ(scene.files.asked, QStringList{"save: Exporter: Podcast.json"});
    EXPECT_EQ(focused(), "Importer et exporter des presets");
}

TEST_F(PresetFilesWindow, ARefusedFileIsToldInTheCardThatCanBePutAway) {
    open();
    QFile foreign(path("foreign.json"));
    ASSERT_TRUE(foreign.open(QIODevice::WriteOnly));
    foreign.close();
    click("presetFiles");
    click("Importer des presets…");
    scene.files.choose(foreign.fileName());
    settle();
    EXPECT_TRUE(textOf("problemText").startsWith("foreign.json n'est pas"));
    click("dismissProblems");
    EXPECT_FALSE(isShown("problemText"));
}

} // namespace

} // namespace velmora
