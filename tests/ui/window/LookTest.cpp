#include "ui/window/WindowTest.h"

#include <functional>
#include <string>

namespace velmora {

namespace {

/// The window in each language and appearance, with much to read.
class Look : public WindowTest {
protected:
    void expectNothingCut(const std::string& where) {
        for (QQuickItem* text : visibleItems(*window().contentItem(), isText)) {
            const auto words = text->property("text").toString().toStdString();
            EXPECT_FALSE(text->property("truncated").toBool()) << words << " in " << where;
            EXPECT_GE(text->width() + 0.5, text->property("contentWidth").toDouble())
                << words << " in " << where;
            EXPECT_GE(text->height() + 0.5, text->property("contentHeight").toDouble())
                << words << " in " << where;
        }
    }

    void inEveryLook(const std::function<void(const std::string&)>& check) {
        for (const char* language : {"fr", "en"}) {
            for (const char* appearance : {"light", "dark"}) {
                settings.setLanguage(language);
                settings.setAppearance(appearance);
                advance(std::chrono::milliseconds(400)); // switches glide to their colour
                check(std::string(language) + ", " + appearance);
            }
        }
    }
};

TEST_F(Look, CutsNoText) {
    openEverything();
    inEveryLook([this](const std::string& where) { expectNothingCut(where); });
}

TEST_F(Look, CutsNoTextOfThePrompt) {
    scene.mixPodcast();
    open();
    Q_EMIT scene.model.savePromptRequested();
    settle();
    inEveryLook([this](const std::string& where) { expectNothingCut(where); });
}

TEST_F(Look, CutsNoTextOfTheChooser) {
    open();
    scene.model.openExtraMenu()->activate(0);
    settle();
    inEveryLook([this](const std::string& where) { expectNothingCut(where); });
}

TEST_F(Look, FollowsTheLanguageAtOnce) {
    openEverything();
    EXPECT_TRUE(isShown("Quitter Velmora"));
    settings.setLanguage("en");
    EXPECT_TRUE(isShown("Quit Velmora"));
    EXPECT_TRUE(isShown(QString::fromUtf8("Settings…")));
    EXPECT_TRUE(isShown("Add a source"));
    EXPECT_TRUE(isShown("Reset"));
}

TEST_F(Look, ChangesItsAppearanceWhole) {
    const auto picture = [this](const char* first, const char* then) {
        settings.setAppearance(first);
        open();
        settings.setAppearance(then);
        advance(std::chrono::milliseconds(400)); // switches glide to their colour
        return grab();
    };
    scene.mixPodcast();
    EXPECT_EQ(picture("light", "dark"), picture("dark", "dark"));
    EXPECT_EQ(picture("dark", "light"), picture("light", "light"));
}

TEST_F(Look, ShowsWhatAMessageSaysAndReadsNothingIntoIt) {
    const QString message = "<b>Loop</b> <img src=x> &amp; co.";
    scene.engine.tell(ProblemOrigin::recall, {inWords(message.toStdString())});
    open();
    EXPECT_EQ(find("problemText").property("length").toInt(), int(message.size()));
    EXPECT_EQ(spokenName(find("problemCard")), message);
}

TEST_F(Look, GivesEveryControlARoleAndAName) {
    openEverything();
    inEveryLook([this](const std::string& where) {
        const auto controls = visibleItems(
            *window().contentItem(), [](QQuickItem& item) { return item.activeFocusOnTab(); });
        EXPECT_GT(controls.size(), 25U);
        for (QQuickItem* control : controls) {
            EXPECT_FALSE(spokenName(*control).isEmpty()) << where;
            EXPECT_NE(spokenRole(*control), QAccessible::NoRole) << where;
        }
    });
}

TEST_F(Look, TellsAScreenReaderWhatIsWhat) {
    openWithBrowser();
    auto& gain = trackOf(find("gainFader"));
    EXPECT_EQ(spokenRole(gain), QAccessible::Slider);
    EXPECT_EQ(spokenName(gain), QString::fromUtf8("Gain — Web Browser"));
    EXPECT_TRUE(speakValue(gain, -12));
    EXPECT_NEAR(decibels(this->gain()), -12, 1e-4);
    settings.setLanguage("en");
    EXPECT_EQ(spokenName(find("muteButton")), QString::fromUtf8("Mute — Web Browser"));
    EXPECT_EQ(spokenName(find("removeButton")), QString::fromUtf8("Remove — Web Browser"));
    EXPECT_EQ(spokenRole(find("runningSwitch")), QAccessible::CheckBox);
}

TEST_F(Look, OffersTargetsOfAtLeastTwentyFourPoints) {
    openEverything();
    for (QQuickItem* control : visibleItems(
             *window().contentItem(), [](QQuickItem& item) { return item.activeFocusOnTab(); })) {
        EXPECT_GE(control->width(), 24) << spokenName(*control).toStdString();
        EXPECT_GE(control->height(), 24) << spokenName(*control).toStdString();
    }
}

TEST_F(Look, TheKeyboardReachesEveryControlInTheOrderOfReading) {
    openWithBrowser();
    QStringList order;
    for (int presses = 0; presses < 40; ++presses) {
        key(Qt::Key_Tab);
        if (order.contains(focused())) {
            break;
        }
        order.append(focused());
    }
    EXPECT_EQ(order.join('|').toStdString(),
              "En marche|Choisir une source|Couper le son — Web Browser|Effets — Web Browser"
              "|Couper la sortie directe — Web Browser|Retirer — Web Browser"
              "|Gain — Web Browser|Ajouter une source|Couper le son — Casque|Casque"
              "|Couper le son — Micro virtuel|Micro virtuel|Preset"
              "|Importer et exporter des presets|Réglages…|Quitter Velmora");
}

} // namespace

} // namespace velmora
