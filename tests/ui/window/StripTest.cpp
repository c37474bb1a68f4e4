#include "ui/window/WindowTest.h"

namespace velmora {

namespace {

class Strip : public WindowTest {
protected:
    QQuickItem& fader() { return trackOf(find("gainFader")); }

    std::string preMuteKey() const { return "sourceGain.premute." + scene.browser.id(); }

    /// How much is drawn on a button: the sum of what differs from its corner, without the stroke
    /// from its left foot to its right head that marks what is muted.
    double inkBesideTheDiagonal(QQuickItem& button) {
        const QImage picture = grab();
        const double scale = picture.devicePixelRatio();
        const QRect place = QRectF(button.mapToScene({}) * scale, button.size() * scale).toRect();
        const QColor ground = picture.pixelColor(place.topLeft());
        double ink = 0;
        for (int y = 0; y < place.height(); ++y) {
            for (int x = 0; x < place.width(); ++x) {
                if (std::abs(x + y - place.width()) < 4 * scale) {
                    continue;
                }
                const QColor here = picture.pixelColor(place.topLeft() + QPoint(x, y));
                ink += std::abs(here.lightness() - ground.lightness());
            }
        }
        return ink;
    }
};

TEST_F(Strip, TheFadersLeftEndIsSilenceAndItsRightEndSixDecibels) {
    openWithBrowser();
    drag(fader(), 0);
    EXPECT_EQ(gain(), 0.0F);
    drag(fader(), 1);
    EXPECT_NEAR(decibels(gain()), 6.0, 1e-4);
}

TEST_F(Strip, ADoubleClickOnTheFaderResetsToUnityAndIgnoresTheRestOfTheGesture) {
    openWithBrowser();
    auto& track = fader();
    const QPointF spot(40, track.height() / 2);
    pointer().click(track, spot);
    pointer().pressAgain();
    pointer().moveTo(track, {120, track.height() / 2});
    pointer().release();
    EXPECT_EQ(gain(), 1.0F);
}

TEST_F(Strip, DraggingWithAltOrControlResets) {
    for (const auto modifier : {Qt::AltModifier, Qt::ControlModifier}) {
        openWithBrowser();
        scene.engine.setGain(0.25F, scene.browser);
        pointer().press(fader(), {40, 8}, modifier);
        pointer().moveTo(fader(), {80, 8}, modifier);
        pointer().release(modifier);
        EXPECT_EQ(gain(), 1.0F);
        scene.engine.remove(scene.browser);
    }
}

TEST_F(Strip, ADoubleClickOnTheReadOutResetsToUnity) {
    openWithBrowser();
    scene.engine.setGain(0.25F, scene.browser);
    auto& readOut = find("readOut");
    pointer().doubleClick(readOut, {20, 10});
    settle();
    EXPECT_EQ(gain(), 1.0F);
}

TEST_F(Strip, ANotchOfTheWheelIsOneDecibelAndWithShiftATenth) {
    openWithBrowser();
    pointer().wheel(fader(), {0, 120});
    EXPECT_NEAR(decibels(gain()), 1.0, 1e-4);
    pointer().wheel(fader(), {0, -120}, Qt::ShiftModifier);
    EXPECT_NEAR(decibels(gain()), 0.9, 1e-4);
}

TEST_F(Strip, AnArrowKeyIsOneDecibelAndWithShiftATenth) {
    openWithBrowser();
    fader().forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Left);
    EXPECT_NEAR(decibels(gain()), -1.0, 1e-4);
    key(Qt::Key_Right, Qt::ShiftModifier);
    EXPECT_NEAR(decibels(gain()), -0.9, 1e-4);
}

TEST_F(Strip, MutingStoresTheGainAndUnmutingRestoresIt) {
    openWithBrowser();
    scene.engine.setGain(0.5F, scene.browser);
    click("muteButton");
    EXPECT_EQ(gain(), 0.0F);
    EXPECT_EQ(machine.defaults.read<double>(preMuteKey()), 0.5);
    EXPECT_TRUE(isChecked("muteButton"));
    click("muteButton");
    EXPECT_EQ(gain(), 0.5F);
    EXPECT_FALSE(isChecked("muteButton"));
}

TEST_F(Strip, UnmutingRestoresWhatAnEarlierRunStored) {
    machine.defaults.set(preMuteKey(), 0.25);
    openWithBrowser();
    scene.engine.setGain(0.0F, scene.browser);
    click("muteButton");
    EXPECT_EQ(gain(), 0.25F);
}

TEST_F(Strip, UnmutingWhatWasDraggedToSilenceGivesUnity) {
    openWithBrowser();
    drag(fader(), 0);
    click("muteButton");
    EXPECT_EQ(gain(), 1.0F);
}

TEST_F(Strip, AStoredGainOfSilenceIsNotRestored) {
    machine.defaults.set(preMuteKey(), 0.001);
    openWithBrowser();
    drag(fader(), 0);
    click("muteButton");
    EXPECT_EQ(gain(), 1.0F);
}

TEST_F(Strip, AMutedStripLooksMuted) {
    machine.applications.setIcon("org.player", "any");
    scene.engine.add(scene.player);
    scene.engine.add(scene.browser);
    scene.engine.add(scene.interfaceInputs);
    open();
    for (int row = 0; row < 3; ++row) {
        auto& strip = find("strip" + QString::number(row));
        auto& button = within(strip, "muteButton");
        auto& bar = within(strip, "levelBar");
        const double loud = inkBesideTheDiagonal(button);
        EXPECT_EQ(findItem(strip, "muteSlash"), nullptr);
        EXPECT_EQ(bar.opacity(), 1.0);

        scene.engine.setGain(0.0F, scene.engine.sources()[std::size_t(row)]);
        const double muted = inkBesideTheDiagonal(button);
        EXPECT_GT(muted, 0.0) << row;
        EXPECT_LT(muted, 0.5 * loud) << row;
        EXPECT_NE(findItem(strip, "muteSlash"), nullptr);
        EXPECT_FALSE(bar.property("active").toBool());
        EXPECT_EQ(bar.opacity(), 0.5);
    }
}

TEST_F(Strip, AMutedStripShowsNoLevel) {
    openWithBrowser();
    scene.engine.start();
    advance(std::chrono::milliseconds(400));
    EXPECT_GT(find("levelBar").property("fill").toDouble(), 10);
    scene.engine.setGain(0.0005F, scene.browser);
    advance(std::chrono::milliseconds(400));
    EXPECT_EQ(find("levelBar").property("fill").toDouble(), 0);
}

TEST_F(Strip, TheMonitoringButtonSilencesTheApplicationsOwnOutput) {
    openWithBrowser();
    const auto& button = find("monitoringButton");
    EXPECT_EQ(button.property("symbol"), "speaker.wave.2");
    click("monitoringButton");
    EXPECT_TRUE(scene.engine.isDirectMuted(scene.browser));
    EXPECT_EQ(button.property("symbol"), "speaker.slash.fill");
    EXPECT_EQ(button.property("color").value<QColor>(), QColor(14, 127, 140));
    click("monitoringButton");
    EXPECT_FALSE(scene.engine.isDirectMuted(scene.browser));
}

TEST_F(Strip, ADeviceHasNoMonitoringButton) {
    scene.engine.add(scene.interfaceInputs);
    open();
    EXPECT_FALSE(isShown("monitoringButton"));
    EXPECT_TRUE(isShown("removeButton"));
}

TEST_F(Strip, TheEffectsButtonIsMarkedWhileAnyEffectIsOn) {
    openWithBrowser();
    const QVariant plain = find("effectsButton").property("color");
    scene.engine.setFX({.plosive = true}, scene.browser);
    EXPECT_NE(find("effectsButton").property("color"), plain);
    scene.engine.setFX({}, scene.browser);
    EXPECT_EQ(find("effectsButton").property("color"), plain);
}

TEST_F(Strip, TheEffectsButtonSaysWhetherAnyEffectIsOnAndThePanelOpen) {
    openWithBrowser();
    auto& button = find("effectsButton");
    EXPECT_EQ(spokenDescription(button), QString::fromUtf8("Arrêté"));
    EXPECT_FALSE(isChecked("effectsButton"));
    scene.engine.setFX({.plosive = true}, scene.browser);
    EXPECT_EQ(spokenDescription(button), "En marche");
    click("effectsButton");
    EXPECT_TRUE(isChecked("effectsButton"));
    settings.setLanguage("en");
    EXPECT_EQ(spokenDescription(button), "Running");
}

TEST_F(Strip, AChannelRangeIsNamedInTheUsersLanguage) {
    scene.engine.add(scene.interfaceInputs);
    open();
    EXPECT_EQ(find("sourceName").property("text"), QString::fromUtf8("Interface — Entrées 3-4"));
    settings.setLanguage("en");
    EXPECT_EQ(find("sourceName").property("text"), QString::fromUtf8("Interface — Inputs 3-4"));
    EXPECT_EQ(scene.engine.sources().front(), scene.interfaceInputs);
}

TEST_F(Strip, TheMonitoringButtonSaysWhetherItIsOn) {
    openWithBrowser();
    EXPECT_TRUE(spokenState(find("monitoringButton")).checkable);
    EXPECT_FALSE(isChecked("monitoringButton"));
    click("monitoringButton");
    EXPECT_TRUE(isChecked("monitoringButton"));
}

TEST_F(Strip, TheEffectsButtonUnfoldsThePanelAndTheWindowGrows) {
    openWithBrowser();
    const int before = window().height();
    click("effectsButton");
    EXPECT_TRUE(isShown("effectsPanel"));
    EXPECT_GT(window().height(), before);
    click("effectsButton");
    EXPECT_FALSE(isShown("effectsPanel"));
    EXPECT_EQ(window().height(), before);
}

TEST_F(Strip, RemovingTakesTheSourceOutAndTheFocusGoesOnAtTheNext) {
    scene.engine.add(scene.player);
    openWithBrowser();
    find("removeButton").forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    ASSERT_EQ(scene.engine.sources().size(), 1U);
    EXPECT_EQ(scene.engine.sources().front(), scene.browser);
    EXPECT_EQ(focused(), "Couper le son — Web Browser");
    find("removeButton").forceActiveFocus(Qt::TabFocusReason);
    key(Qt::Key_Return);
    EXPECT_EQ(focused(), "Ajouter une source");
}

TEST_F(Strip, RemovingOneOfSeveralPassesTheFocusToTheOneThatTakesItsPlace) {
    scene.mixMany(4);
    open();
    const auto removeByKey = [this](const char* name) {
        find(QString::fromUtf8("Retirer — ") + name).forceActiveFocus(Qt::TabFocusReason);
        key(Qt::Key_Return);
    };
    removeByKey("Instrument 2");
    EXPECT_EQ(focused(), QString::fromUtf8("Couper le son — Instrument 3"));
    removeByKey("Instrument 4");
    EXPECT_EQ(focused(), QString::fromUtf8("Couper le son — Instrument 3"));
}

TEST_F(Strip, RemovingByMouseElsewhereLeavesTheFocusWhereItIs) {
    scene.mixMany(3);
    open();
    tabTo("Preset");
    scene.engine.remove(scene.engine.sources().front());
    settle();
    EXPECT_EQ(focused(), "Preset");
}

TEST_F(Strip, AChangeOfGainOrANewSourceMakesNoStripAnew) {
    openWithBrowser();
    const QQuickItem* const before = &find("strip0");
    scene.engine.setGain(0.3F, scene.browser);
    scene.engine.add(scene.player);
    EXPECT_EQ(&find("strip0"), before);
    EXPECT_EQ(textOf("readOut"), QString::fromUtf8("−10 dB"));
}

TEST_F(Strip, TheLevelBarFollowsTheSource) {
    openWithBrowser();
    EXPECT_EQ(find("levelBar").property("level").toDouble(), 0.0);
    scene.engine.start();
    advance(std::chrono::milliseconds(200));
    EXPECT_GT(find("levelBar").property("level").toDouble(), 0.3);
}

TEST_F(Strip, AnEndlessNameEndsInAnEllipsis) {
    scene.engine.add(AppSource{4711, std::string(300, 'W'), "org.browser"});
    open();
    EXPECT_TRUE(find("sourceName").property("truncated").toBool());
    EXPECT_GT(find("effectsButton").x(), -1);
    EXPECT_EQ(window().width(), 400);
}

} // namespace

} // namespace velmora
