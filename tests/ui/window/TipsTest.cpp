#include "ui/window/WindowTest.h"

#include <map>

namespace velmora {

namespace {

using namespace std::chrono_literals;

class WindowTips : public WindowTest {
protected:
    void pointAt(const QString& name) {
        QQuickItem& item = find(name);
        pointer().moveTo(item, {item.width() / 2, item.height() / 2});
    }
    [[nodiscard]] QString tipAfter(std::chrono::milliseconds pause) {
        advance(pause);
        return isShown("tip") ? textOf("tipText") : QString();
    }
    [[nodiscard]] static bool isWordless(QQuickItem& item) {
        return visibleItems(item,
                            [](QQuickItem& inside) {
                                return inside.inherits("QQuickText") &&
                                       !inside.property("text").toString().isEmpty();
                            })
            .empty();
    }
    /// The tip of each control that can be pressed or dragged and shows no word.
    [[nodiscard]] std::map<QQuickItem*, QString> tips() {
        std::map<QQuickItem*, QString> found;
        for (QQuickItem* item : visibleItems(window(), [](QQuickItem& item) {
                 return item.property("tip").isValid() && item.activeFocusOnTab() &&
                        isWordless(item);
             })) {
            found[item] = item->property("tip").toString();
        }
        return found;
    }
};

TEST_F(WindowTips, ComeAfterAPauseAndGoWithThePointer) {
    openWithBrowser();
    pointAt("monitoringButton");
    EXPECT_EQ(tipAfter(600ms), "");
    EXPECT_EQ(
        tipAfter(150ms),
        QString::fromUtf8("Couper l'application chez toi seulement (le mix l'entend toujours)"));
    pointAt("sourceName");
    EXPECT_EQ(tipAfter(2s), "");
}

TEST_F(WindowTips, TellWhatTheSpeakerAndTheIconMuteInBothLanguages) {
    openWithBrowser();
    settings.setLanguage("en");
    pointAt("monitoringButton");
    EXPECT_EQ(tipAfter(1s), "Silence the application in your room only (the mix still hears it)");
    pointAt("muteButton");
    EXPECT_EQ(tipAfter(1s), "Mute in the mix");
    scene.engine.setGain(0, scene.browser);
    pointAt("sourceName");
    pointAt("muteButton");
    EXPECT_EQ(tipAfter(1s), "Unmute in the mix");
}

TEST_F(WindowTips, ComeWithTheKeyboardToo) {
    openWithBrowser();
    tabTo(QString::fromUtf8("Retirer — Web Browser"));
    EXPECT_EQ(tipAfter(750ms), "Retirer du mix");
    key(Qt::Key_Tab);
    EXPECT_NE(tipAfter(100ms), "Retirer du mix");
}

TEST_F(WindowTips, GoWhenTheControlIsUsedAndStayAwayUntilItIsLeft) {
    openWithBrowser();
    pointAt("muteButton");
    EXPECT_NE(tipAfter(1s), "");
    click("muteButton");
    EXPECT_EQ(tipAfter(2s), "");
}

TEST_F(WindowTips, GoByThemselves) {
    openWithBrowser();
    pointAt("muteButton");
    EXPECT_NE(tipAfter(1s), "");
    EXPECT_EQ(tipAfter(9s), "");
}

TEST_F(WindowTips, StayInsideTheWindow) {
    scene.mixPodcast();
    open();
    click("effectsButton");
    for (const auto& [control, tip] : tips()) {
        pointer().moveTo(*control, {control->width() / 2, control->height() / 2});
        advance(1s);
        ASSERT_TRUE(isShown("tip")) << tip.toStdString();
        QQuickItem& bubble = find("tip");
        EXPECT_TRUE(QRectF({}, QSizeF(window().size()))
                        .contains(bubble.mapRectToScene(bubble.boundingRect())))
            << tip.toStdString();
    }
}

TEST_F(WindowTips, AreOnEveryControlWithoutAWordAndTranslated) {
    scene.mixPodcast();
    open();
    click("effectsButton");
    click("tiltTitle");
    const auto french = tips();
    EXPECT_GT(french.size(), 10U);
    settings.setLanguage("en");
    const auto english = tips();
    for (const auto& [control, tip] : french) {
        EXPECT_NE(tip, "") << spokenName(*control).toStdString();
        EXPECT_NE(english.at(control), tip);
    }
}

TEST_F(WindowTips, SayANameThatDoesNotFitInWhole) {
    const std::string name = "A browser with a name that is much too long for any window of ours";
    machine.startApplication(6001, name, "org.long");
    scene.engine.add(AppSource{6001, name, "org.long"});
    open();
    pointAt("sourcePicker");
    EXPECT_EQ(tipAfter(1s), QString::fromStdString(name));
}

} // namespace

} // namespace velmora
