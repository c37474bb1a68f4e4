// The settings window for every eye and hand.

#include "app/SettingsWindowFixture.h"
#include "ui/support/ItemSearch.h"
#include "ui/support/Readability.h"
#include "ui/support/Spoken.h"

#include <functional>
#include <set>

namespace velmora {
namespace {

constexpr auto tabs = {"generalTabButton", "audioTabButton", "shortcutsTabButton"};

class SettingsComfort : public SettingsWindowTest {
protected:
    /// With everything to read that the tabs may hold.
    SettingsComfort() {
        machine.loginItem.refuse("Read-only file system");
        click("loginSwitch");
        machine.sound.refuse(Operation::createSink, -19);
        machine.shortcuts.appear();
        showAudio();
        click("dawSwitch");
        showShortcuts();
        click("shortcutsSwitch");
        machine.startApplication(4711, "Player", "org.player");
        machine.sound.play(4711, constant(0.25F));
        mixer.add(AppSource{4711, "Player", "org.player"});
        mixer.start();
        advance(std::chrono::seconds(1));
    }

    void onEveryTab(const std::function<void()>& check) {
        for (const char* tab : tabs) {
            SCOPED_TRACE(tab);
            click(tab);
            check();
        }
    }
    void inBothAppearances(const std::function<void()>& check) {
        for (const char* appearance : {"light", "dark"}) {
            SCOPED_TRACE(appearance);
            settings.setAppearance(appearance);
            advance(std::chrono::milliseconds(400)); // switches glide to their colour
            check();
        }
    }
    [[nodiscard]] QQuickItem& page() { return *window().contentItem(); }
    /// What is chosen from.
    [[nodiscard]] QQuickItem& menuWith(const QString& label) {
        return *find(label).window()->contentItem();
    }
    void tap(QQuickItem& item) {
        QmlTest::tap(item);
        advance(std::chrono::milliseconds(300));
    }
};

TEST_F(SettingsComfort, ShowsEveryMessageThatItCanHave) {
    click("generalTabButton");
    EXPECT_TRUE(isShown("loginError"));
    showAudio();
    EXPECT_TRUE(isShown("dawError"));
    EXPECT_TRUE(isShown("blocksNote"));
    showShortcuts();
    EXPECT_TRUE(isShown("shortcut"));
    EXPECT_TRUE(isShown("pushToTalkSwitch"));
}

TEST_F(SettingsComfort, TextsAndSymbolsStandOut) {
    onEveryTab([this] {
        inBothAppearances([this] {
            expectContrast(page(), isEnabledText, forTexts);
            expectContrast(page(), isSymbol, forSymbols);
        });
    });
}

TEST_F(SettingsComfort, TextsAndSymbolsStandOutInItsMenus) {
    click("generalTabButton");
    click("languageMenu");
    inBothAppearances([this] {
        expectContrast(menuWith("English"), isEnabledText, forTexts);
        expectContrast(menuWith("English"), isSymbol, forSymbols);
    });
}

TEST_F(SettingsComfort, StandsOutMoreWhereTheDesktopAsksForIt) {
    machine.appearance.setLook({.isHighContrast = true});
    onEveryTab(
        [this] { inBothAppearances([this] { expectContrast(page(), isSymbol, forSymbols); }); });
}

TEST_F(SettingsComfort, OffersTargetsOfTwentyFourPointsAtLeast) {
    onEveryTab([this] { expectTargets(page()); });
    showAudio();
    click("monitoringMenu");
    for (QQuickItem* row : visibleItems(menuWith("Interface — Sorties 3-4"), [](QQuickItem& item) {
             return spokenRole(item) == QAccessible::MenuItem;
         })) {
        EXPECT_GE(row->height(), 24) << spokenName(*row).toStdString();
    }
}

TEST_F(SettingsComfort, IsSetByFingersAlone) {
    tap(find("generalTabButton"));
    tap(find("appearanceMenu"));
    tap(find("Sombre"));
    EXPECT_EQ(settings.appearance(), "dark");
    tap(find("audioTabButton"));
    tap(find("monitoringMenu"));
    tap(find("Interface — Sorties 3-4"));
    EXPECT_EQ(mixer.monitoringSelection(), "usb#3");
    tap(find("shortcutsTabButton"));
    tap(find("pushToTalkSwitch"));
    EXPECT_TRUE(mixer.isMicrophoneClosed());
}

TEST_F(SettingsComfort, CutsNoTextInEitherLanguageNorEnlarged) {
    for (const double scale : {1.0, 1.5}) {
        machine.appearance.setLook({.textScale = scale});
        for (const char* language : {"fr", "en"}) {
            settings.setLanguage(language);
            SCOPED_TRACE(language);
            onEveryTab([this] {
                for (QQuickItem* text : visibleItems(page(), isEnabledText)) {
                    const auto words = text->property("text").toString().toStdString();
                    EXPECT_FALSE(text->property("truncated").toBool()) << words;
                    EXPECT_GE(text->width() + 0.5, text->property("contentWidth").toDouble())
                        << words;
                }
            });
        }
    }
}

TEST_F(SettingsComfort, DrawsNoCornerByAPieceThatStepsIt) {
    onEveryTab([this] {
        EXPECT_TRUE(visibleItems(page(), [](QQuickItem& item) {
                        return item.inherits("QQuickRectangle") &&
                               item.property("radius").toDouble() > 0;
                    }).empty());
    });
}

} // namespace
} // namespace velmora
