#include "presets/PresetSnapshot.h"
#include "ui/window/WindowTest.h"

#include <QSignalSpy>

namespace velmora {

namespace {

class Presets : public WindowTest {
protected:
    void ask() {
        click("presetPicker");
        click(QString::fromUtf8("Enregistrer le setup actuel…"));
    }
    void nameIt(const QString& name) {
        key(Qt::Key_A, Qt::ControlModifier);
        key(Qt::Key_Backspace);
        type(name);
    }
    [[nodiscard]] std::vector<std::string> kept() const {
        std::vector<std::string> names;
        for (const Preset& preset : scene.presets.presets()) {
            names.push_back(preset.name);
        }
        return names;
    }
    void keep(const std::string& name) {
        scene.presets.save(snapshotPreset(scene.engine, machine.devices, name));
    }
};

TEST_F(Presets, AreSavedWithoutTheBlanksAroundTheirName) {
    openWithBrowser();
    ask();
    nameIt("  Talk  ");
    key(Qt::Key_Return);
    EXPECT_EQ(kept(), std::vector<std::string>{"Talk"});
    EXPECT_FALSE(isShown("presetName"));
    EXPECT_EQ(find("presetPicker").property("caption"), "Talk");
}

TEST_F(Presets, ANameOfOnlySpacesIsIgnored) {
    openWithBrowser();
    ask();
    nameIt("   ");
    click("confirmSave");
    EXPECT_TRUE(kept().empty());
}

TEST_F(Presets, CancellingSavesNothingAndReturnsTheFocus) {
    openWithBrowser();
    ask();
    nameIt("Talk");
    key(Qt::Key_Escape);
    EXPECT_TRUE(kept().empty());
    EXPECT_EQ(focused(), "Preset");
    ask();
    click("cancelSave");
    EXPECT_TRUE(kept().empty());
}

TEST_F(Presets, ThePromptBeginsWithTheActivePresetsName) {
    openWithBrowser();
    keep("Podcast");
    ask();
    auto& field = find("presetName");
    EXPECT_EQ(field.property("text"), "Podcast");
    EXPECT_EQ(field.size(), QSizeF(220, 24));
    EXPECT_TRUE(within(field, "input").hasActiveFocus());
    EXPECT_EQ(within(field, "input").property("selectedText"), "Podcast");
}

TEST_F(Presets, AnotherPromptWithTheSameNameUpdatesThePreset) {
    openWithBrowser();
    keep("Podcast");
    scene.engine.setGain(0.5F, scene.browser);
    ask();
    click("confirmSave");
    ASSERT_EQ(kept().size(), 1U);
}

TEST_F(Presets, ThePromptIsModal) {
    openWithBrowser();
    ask();
    click("runningSwitch");
    EXPECT_FALSE(scene.engine.isRunning());
    for (int presses = 0; presses < 10; ++presses) {
        key(Qt::Key_Tab);
        EXPECT_TRUE(find("savePrompt").isAncestorOf(window().activeFocusItem()));
    }
}

TEST_F(Presets, ChoosingTheCurrentOneAppliesItAgain) {
    openWithBrowser();
    keep("Podcast");
    scene.engine.setGain(0.25F, scene.browser);
    click("presetPicker");
    click("Podcast");
    EXPECT_EQ(gain(), 1.0F);
    EXPECT_EQ(scene.presets.active()->name, "Podcast");
}

TEST_F(Presets, ChoosingAnotherMakesItActive) {
    openWithBrowser();
    keep("First");
    keep("Second");
    click("presetPicker");
    click("First");
    EXPECT_EQ(scene.presets.active()->name, "First");
    EXPECT_EQ(find("presetPicker").property("caption"), "First");
}

TEST_F(Presets, TheirDeleteButtonRemovesThem) {
    openWithBrowser();
    keep("First");
    keep("Second");
    click("presetPicker");
    auto& row = find("First");
    pointer().moveTo(row, {40, 10});
    pointer().click(within(row, "delete"));
    settle();
    EXPECT_EQ(kept(), std::vector<std::string>{"Second"});
}

TEST_F(Presets, AreDeletedByKeyboardToo) {
    openWithBrowser();
    keep("First");
    keep("Second");
    click("presetPicker");
    key(Qt::Key_Home);
    key(Qt::Key_Down);
    key(Qt::Key_Delete);
    EXPECT_EQ(kept(), std::vector<std::string>{"Second"});
    EXPECT_FALSE(isShown("First"));
}

class Footer : public WindowTest {};

TEST_F(Footer, ItsRowsAskForTheSettingsAndForTheEnd) {
    open();
    QSignalSpy settingsAsked(&scene.model, &ControlWindowModel::settingsRequested);
    QSignalSpy quitAsked(&scene.model, &ControlWindowModel::quitRequested);
    click("settingsRow");
    click("quitRow");
    EXPECT_EQ(settingsAsked.count(), 1);
    EXPECT_EQ(quitAsked.count(), 1);
}

TEST_F(Footer, TheCommandKeyIsControlAndMeta) {
    open();
    QSignalSpy settingsAsked(&scene.model, &ControlWindowModel::settingsRequested);
    QSignalSpy quitAsked(&scene.model, &ControlWindowModel::quitRequested);
    for (const auto command : {Qt::ControlModifier, Qt::MetaModifier}) {
        QTest::keyClick(&window(), Qt::Key_Comma, command);
        QTest::keyClick(&window(), Qt::Key_Q, command);
    }
    EXPECT_EQ(settingsAsked.count(), 2);
    EXPECT_EQ(quitAsked.count(), 2);
}

TEST_F(Footer, ShowsTheShortcuts) {
    open();
    EXPECT_EQ(spokenDescription(find("settingsRow")), u"Touches : Contrôle virgule");
    EXPECT_EQ(spokenDescription(find("quitRow")), u"Touches : Contrôle Q");
}

} // namespace

} // namespace velmora
