// How well texts, symbols and the mark of the keyboard stand out, in every look.

#include "ui/kit/Kit.h"
#include "ui/kit/theme/ThemeColors.h"
#include "ui/support/Readability.h"
#include "ui/window/WindowTest.h"

#include <functional>
#include <set>

namespace velmora {

namespace {

class Contrast : public WindowTest {
protected:
    void openEverythingMuted() {
        openEverything();
        scene.engine.setHeadphoneVolume(0);
        settle();
    }

    void inBothAppearances(const std::function<void()>& check) {
        for (const char* appearance : {"light", "dark"}) {
            settings.setAppearance(appearance);
            advance(std::chrono::milliseconds(400)); // switches glide to their colour
            check();
        }
    }
    void askForHighContrast() { machine.appearance.setLook({.isHighContrast = true}); }

    [[nodiscard]] ThemeColors& colors() { return *kitOf<ThemeColors>(engine.get()); }

    /// What is drawn in these is fixed: the faintest shade and the accent's own.
    const std::set<QString> fixedSymbols{"monitoringButton", "mute", "delete", "playing"};
};

TEST_F(Contrast, IsEnoughForEveryTextAndSymbol) {
    openEverythingMuted();
    inBothAppearances([this] {
        expectContrast(*window().contentItem(), isEnabledText, forTexts);
        expectContrast(*window().contentItem(), isSymbol, forSymbols, fixedSymbols);
    });
}

TEST_F(Contrast, IsEnoughInThePromptAndTheChooser) {
    scene.mixPodcast();
    open();
    Q_EMIT scene.model.savePromptRequested();
    settle();
    inBothAppearances([this] { expectContrast(find("sheetPanel"), isEnabledText, forTexts); });
    key(Qt::Key_Escape);
    scene.model.openExtraMenu()->activate(0);
    settle();
    inBothAppearances([this] {
        expectContrast(find("sheetPanel"), isEnabledText, forTexts);
        expectContrast(find("sheetPanel"), isSymbol, forSymbols);
    });
}

TEST_F(Contrast, IsEnoughInItsMenus) {
    scene.mixPodcast();
    open();
    click("addSource");
    auto& menu = *find("Web Browser").parentItem()->parentItem();
    inBothAppearances([&] {
        expectContrast(menu, isEnabledText, forTexts);
        expectContrast(menu, isSymbol, forSymbols, fixedSymbols);
    });
    askForHighContrast();
    inBothAppearances([&] { expectContrast(menu, isSymbol, forSymbols); });
}

TEST_F(Contrast, IsEnoughForWhatIsFixedAsWellWhereTheDesktopAsksForIt) {
    askForHighContrast();
    openEverythingMuted();
    inBothAppearances([this] {
        expectContrast(*window().contentItem(), isEnabledText, 7); // WCAG 2.1, 1.4.6
        expectContrast(*window().contentItem(), isSymbol, forSymbols);
        for (const QColor& back : {colors().paper(), colors().sand()}) {
            EXPECT_GE(contrast(over(colors().ink15(), back), back), forSymbols);
            EXPECT_GE(contrast(over(colors().ink40(), back), back), forTexts);
        }
    });
}

TEST_F(Contrast, FollowsTheDesktopWhileTheWindowIsOpen) {
    openEverythingMuted();
    const QColor before = colors().ink60();

    askForHighContrast();
    EXPECT_EQ(colors().ink60(), colors().ink());

    machine.appearance.setLook({});
    EXPECT_EQ(colors().ink60(), before);
}

TEST_F(Contrast, IsEnoughForTheMarkOfTheKeyboardAndForSwitches) {
    open();
    inBothAppearances([this] {
        for (const QColor& back : {colors().paper(), colors().sand()}) {
            EXPECT_GE(contrast(colors().ring(), back), forSymbols);
            EXPECT_GE(contrast(colors().alarm(), back), forTexts);
            EXPECT_GE(contrast(colors().ink(), back), forSymbols); // a switch's outline
        }
        EXPECT_GE(contrast(colors().sun(), colors().ocean()), forSymbols); // its knob, on
    });
}

/// A desktop on which nothing shall move for the sake of moving.
class Stillness : public WindowTest {};

TEST_F(Stillness, StopsTheWaveformAndTakesASwitchToItsPlaceAtOnce) {
    machine.appearance.setLook({.isStill = true});
    scene.mixPodcast();
    open();
    auto& knob = within(find("runningSwitch"), "knob");
    const double off = knob.x();

    scene.engine.start();
    settle();

    EXPECT_GT(knob.x(), off + 10);
    EXPECT_TRUE(find("waveform").property("still").toBool());
    machine.appearance.setLook({});
    EXPECT_FALSE(find("waveform").property("still").toBool());
}

TEST_F(Stillness, IsReachedByAStoppedMixWithinFiveSeconds) {
    scene.mixPodcast();
    open();
    advance(std::chrono::seconds(5));
    const QImage before = grab();

    advance(std::chrono::seconds(2));

    EXPECT_EQ(grab(), before);
}

} // namespace

} // namespace velmora
