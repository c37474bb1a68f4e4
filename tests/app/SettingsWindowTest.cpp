// The settings window, driven with mouse and keyboard.

#include "app/SettingsWindowFixture.h"
#include "ui/support/Spoken.h"

#include <algorithm>

namespace velmora {
namespace {

TEST_F(SettingsWindowTest, IsFourHundredAndTwentyPointsWideAndShowsTheGeneralTab) {
    EXPECT_EQ(window().width(), 420);
    EXPECT_EQ(window().title(), "Réglages Velmora");
    EXPECT_TRUE(isShown("generalTab"));
    EXPECT_FALSE(isShown("audioTab"));
    EXPECT_EQ(spokenRole(find("generalTabButton")), QAccessible::PageTab);
    EXPECT_TRUE(spokenState(find("generalTabButton")).selected);
}

TEST_F(SettingsWindowTest, ShowsAutoWithNoStoredAppearanceAndSetsAnother) {
    EXPECT_EQ(shown("appearanceMenu"), "Auto");

    pick("appearanceMenu", "Sombre");

    EXPECT_EQ(settings.appearance(), "dark");
    EXPECT_EQ(shown("appearanceMenu"), "Sombre");
    EXPECT_EQ(window().color(), QColor(0x0F, 0x25, 0x30));
}

TEST_F(SettingsWindowTest, AnotherLanguageRelabelsEverythingAtOnceButWhatIsTheSameInBoth) {
    pick("languageMenu", "English");

    EXPECT_EQ(window().title(), "Velmora Settings");
    EXPECT_EQ(spokenName(find("appearanceMenu")), "Appearance");
    EXPECT_EQ(spokenName(find("languageMenu")), "Language");
    EXPECT_EQ(spokenName(find("loginSwitch")), "Launch at login");
    EXPECT_EQ(spokenName(find("generalTabButton")), "General");
    EXPECT_EQ(spokenName(find("audioTabButton")), "Audio");
    EXPECT_EQ(spokenName(find("shortcutsTabButton")), "Shortcuts");
    EXPECT_EQ(spokenName(find("version")), "Version 1.2.0 (345)");
    EXPECT_EQ(shown("languageMenu"), "English");
    showAudio();
    EXPECT_EQ(spokenName(find("monitoringMenu")), "Monitoring");
    EXPECT_EQ(shown("monitoringMenu"), "Default output");
    EXPECT_EQ(spokenName(find("dawSwitch")), "Mode DAW");
    EXPECT_EQ(shown("dawInterfaceMenu"), "Choose…");
    EXPECT_EQ(find("effectsNote").property("text"), "On each source strip");
}

TEST_F(SettingsWindowTest, TheLoginSwitchShowsTheRealStateAndThePlatformsMessage) {
    click("loginSwitch");
    EXPECT_TRUE(machine.loginItem.isEnabled());
    EXPECT_TRUE(spokenState(find("loginSwitch")).checked);
    EXPECT_FALSE(isShown("loginError"));

    machine.loginItem.refuse("Read-only file system");
    click("loginSwitch");
    EXPECT_TRUE(spokenState(find("loginSwitch")).checked);
    EXPECT_EQ(spokenName(find("loginError")), "Read-only file system");

    machine.loginItem.allow();
    click("loginSwitch");
    EXPECT_FALSE(spokenState(find("loginSwitch")).checked);
    EXPECT_FALSE(isShown("loginError"));
}

TEST_F(SettingsWindowTest, PicksAMonitoringOutputByItsPairOfChannels) {
    showAudio();
    EXPECT_EQ(shown("monitoringMenu"), "Sortie par défaut");

    pick("monitoringMenu", "Interface — Sorties 3-4");
    EXPECT_EQ(mixer.monitoringSelection(), "usb#3");
    EXPECT_EQ(shown("monitoringMenu"), "Interface — Sorties 3-4");

    pick("monitoringMenu", "Sortie par défaut");
    EXPECT_EQ(mixer.monitoringSelection(), std::nullopt);
}

TEST_F(SettingsWindowTest, SwitchesDawModeAndChoosesItsInterface) {
    showAudio();

    click("dawSwitch");
    EXPECT_TRUE(dawMode.enabled());
    EXPECT_EQ(shown("dawInterfaceMenu"), "Speakers");

    pick("dawInterfaceMenu", "Interface");
    EXPECT_EQ(dawMode.interfaceUID(), "usb");
    EXPECT_EQ(machine.sound.createdSinks().back().masterUID, "usb");

    pick("dawInterfaceMenu", "Choisir…");
    EXPECT_EQ(dawMode.interfaceUID(), std::nullopt);
}

TEST_F(SettingsWindowTest, SaysUnderTheSwitchWhyThereIsNoDawDevice) {
    machine.sound.refuse(Operation::createSink, -19);
    showAudio();
    EXPECT_FALSE(isShown("dawError"));

    click("dawSwitch");

    EXPECT_EQ(spokenName(find("dawError")), "Création du device DAW refusée (err -19)");
}

TEST_F(SettingsWindowTest, KeepsItsHeightFromTabToTabAndGrowsForAMessage) {
    const int height = window().height();

    showAudio();
    EXPECT_EQ(window().height(), height);
    click("generalTabButton");
    machine.loginItem.refuse("Read-only file system");
    click("loginSwitch");

    EXPECT_GT(window().height(), height);
}

TEST_F(SettingsWindowTest, ScrollsWhatDoesNotFitAndHasALeastSize) {
    const int whole = window().height();
    EXPECT_LT(window().minimumHeight(), whole);
    EXPECT_GT(window().minimumHeight(), 100);
    window().resize(420, window().minimumHeight());
    settle();
    EXPECT_TRUE(isShown("scrollMark"));

    key(Qt::Key_Tab);
    find("loginSwitch").forceActiveFocus();
    settle();
    const QRectF place = find("loginSwitch").mapRectToScene(find("loginSwitch").boundingRect());
    EXPECT_TRUE(QRectF(0, 0, 420, window().height()).contains(place));

    machine.loginItem.refuse("Read-only file system");
    key(Qt::Key_Space);
    EXPECT_EQ(window().height(), window().minimumHeight());
}

TEST_F(SettingsWindowTest, ListsADeviceThatIsPluggedInWhileItIsOpenAlsoInAnOpenMenu) {
    showAudio();
    click("monitoringMenu");

    const AudioObjectID late =
        machine.sound.addDevice({.uid = "late", .name = "Late", .outputs = {2}});
    advance(std::chrono::milliseconds(100));
    EXPECT_TRUE(isShown("Late"));
    machine.sound.removeDevice(late);
    advance(std::chrono::milliseconds(100));
    EXPECT_FALSE(isShown("Late"));
    EXPECT_TRUE(isShown("Interface — Sorties 3-4"));
}

TEST_F(SettingsWindowTest, LooksForDevicesOnlyWhileItIsSeen) {
    window().hide();
    settle();
    machine.sound.addDevice({.uid = "late", .name = "Late", .outputs = {2}});
    advance(std::chrono::milliseconds(100));
    const auto offered = [&] {
        return std::ranges::any_of(model.monitoringOptions(), [](const QVariant& option) {
            return option.toMap().value("label") == "Late";
        });
    };
    EXPECT_FALSE(offered());
    window().show();
    settle();
    EXPECT_TRUE(offered());
}

// -- shortcuts on the whole desktop --

TEST_F(SettingsWindowTest, WithoutShortcutsOfTheDesktopOneLineSaysWhereKeysAreGiven) {
    showShortcuts();

    EXPECT_TRUE(isShown("shortcutsElsewhere"));
    EXPECT_FALSE(isShown("shortcutsSwitch"));
    EXPECT_FALSE(isShown("pushToTalkSwitch"));
    settings.setLanguage("en");
    EXPECT_TRUE(spokenName(find("shortcutsElsewhere")).startsWith("Any of Velmora's commands"));
}

TEST_F(SettingsWindowTest, ADesktopsShortcutsAreSwitchedOnAndShowTheirKeys) {
    const QString muting = QStringLiteral("Couper le micro virtuel — CTRL+LOGO+m");
    machine.shortcuts.appear();
    showShortcuts();
    EXPECT_FALSE(isShown("shortcutsElsewhere"));
    EXPECT_FALSE(isShown(muting));

    click("shortcutsSwitch");

    EXPECT_EQ(machine.shortcuts.state(), GlobalShortcuts::State::bound);
    EXPECT_TRUE(isShown(muting));
    click("shortcutsSwitch");
    EXPECT_EQ(machine.shortcuts.state(), GlobalShortcuts::State::unused);
    EXPECT_FALSE(isShown(muting));
}

TEST_F(SettingsWindowTest, RefusedShortcutsAreSwitchedOffAndSaySo) {
    machine.shortcuts.appear();
    machine.shortcuts.refuse();
    showShortcuts();

    click("shortcutsSwitch");

    EXPECT_FALSE(spokenState(find("shortcutsSwitch")).checked);
    EXPECT_EQ(find("shortcutsError").property("text"), "Les raccourcis ont été refusés.");
    settings.setLanguage("en");
    EXPECT_EQ(find("shortcutsError").property("text"), "The shortcuts were refused.");
}

TEST_F(SettingsWindowTest, PushToTalkCanBeSwitchedOnWithAKeyAndAlwaysOff) {
    machine.shortcuts.appear();
    showShortcuts();
    EXPECT_FALSE(isShown("pushToTalkSwitch"));
    click("shortcutsSwitch");

    click("pushToTalkSwitch");
    EXPECT_TRUE(mixer.isMicrophoneClosed());

    machine.shortcuts.vanish();
    settle();
    EXPECT_TRUE(isShown("shortcutsElsewhere"));
    click("pushToTalkSwitch");
    EXPECT_FALSE(mixer.isMicrophoneClosed());
    EXPECT_FALSE(isShown("pushToTalkSwitch"));
}

TEST_F(SettingsWindowTest, WorksWithTheKeyboardAlone) {
    key(Qt::Key_Tab);
    EXPECT_TRUE(find("generalTabButton").hasActiveFocus());
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    settle();
    EXPECT_TRUE(isShown("audioTab"));
    key(Qt::Key_Tab);
    EXPECT_TRUE(find("shortcutsTabButton").hasActiveFocus());
    key(Qt::Key_Tab);
    EXPECT_TRUE(find("monitoringMenu").hasActiveFocus());
    key(Qt::Key_Tab);
    EXPECT_TRUE(find("dawInterfaceMenu").hasActiveFocus());
    key(Qt::Key_Tab);
    key(Qt::Key_Space);
    EXPECT_TRUE(dawMode.enabled());
}

TEST_F(SettingsWindowTest, ReadsTheDevicesAgainWhenATabIsShown) {
    machine.sound.addDevice({.uid = "late", .name = "Late", .outputs = {2}});

    showAudio();

    pick("monitoringMenu", "Late");
    EXPECT_EQ(mixer.monitoringSelection(), "late#1");
}

} // namespace
} // namespace velmora
