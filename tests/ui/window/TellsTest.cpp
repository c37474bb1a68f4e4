// What the window says by itself of the mix, its sources and who hears them.

#include "ui/window/WindowTest.h"

namespace velmora {

namespace {

using namespace std::chrono_literals;

class Tells : public WindowTest {
protected:
    void startWithBrowser() {
        openWithBrowser();
        scene.engine.start();
        advance(200ms);
    }
    [[nodiscard]] QQuickItem& stream() { return find("stream"); }
    [[nodiscard]] QString streamNotice() {
        return within(stream(), "volumeNoticeText").property("text").toString();
    }
};

TEST_F(Tells, AnApplicationThatHearsItselfCanBeTakenOutAtItsStrip) {
    startWithBrowser();
    EXPECT_FALSE(isShown("sourceNotice"));
    const int before = window().height();

    machine.sound.record(4711, machine.devices.devices()->at(1));
    advance(100ms);

    EXPECT_EQ(textOf("sourceNoticeText"), "S'entend dans le micro");
    EXPECT_GT(window().height(), before);
    EXPECT_EQ(spokenName(find("sourceNoticeRemedy")), "Retirer du mix — Web Browser");
    settings.setLanguage("en");
    EXPECT_EQ(textOf("sourceNoticeText"), "Hears itself in the microphone");
    click("sourceNoticeRemedy");
    EXPECT_TRUE(scene.engine.sources().empty());
}

TEST_F(Tells, ThatNobodyRecordsTheMicrophoneUntilSomebodyDoes) {
    startWithBrowser();
    EXPECT_FALSE(isShown("volumeNotice"));

    advance(3s);
    EXPECT_EQ(streamNotice(), "Aucun programme n'écoute le micro");
    EXPECT_EQ(findItem(find("headphones"), "volumeNotice"), nullptr);

    machine.sound.record(5000, machine.devices.devices()->at(1));
    advance(100ms);
    EXPECT_FALSE(isShown("volumeNotice"));
}

TEST_F(Tells, WhatSomebodyMadeOfTheMicrophoneAndTheWayBack) {
    open();
    const AudioObjectID mic = machine.devices.devices()->at(1);
    machine.sound.setVolume(mic, {.linear = 0.125F});
    advance(100ms);
    EXPECT_EQ(streamNotice(), QString::fromUtf8("Baissé à 50 % dans un autre mélangeur"));

    click("volumeNoticeRemedy");
    advance(100ms);

    EXPECT_EQ(machine.devices.recordingVolume(mic), DeviceVolume{});
    EXPECT_FALSE(isShown("volumeNotice"));
}

TEST_F(Tells, AnApplicationThatHasEndedIsTakenBackInOneClick) {
    scene.engine.add(scene.player);
    openWithBrowser();
    scene.engine.setGain(0.5F, scene.browser);
    machine.quitApplication(4711);
    advance(100ms);
    EXPECT_EQ(textOf("sourceNoticeText"), QString::fromUtf8("Cette app s'est fermée."));
    EXPECT_FALSE(isShown("sourceNoticeRemedy"));

    machine.startApplication(6000, "Web Browser", "org.browser");
    machine.sound.play(6000, sine(440, 0.5F));
    advance(100ms);
    click("sourceNoticeRemedy");

    const AudioSource again = AppSource{6000, "Web Browser", "org.browser"};
    EXPECT_EQ(scene.engine.sources().back(), again);
    EXPECT_EQ(scene.engine.gain(again), 0.5F);
    EXPECT_FALSE(isShown("sourceNotice"));
}

TEST_F(Tells, WhichApplicationIsComingUp) {
    open();
    click("addSource");
    click(QString::fromUtf8("Choisir une application…"));
    EXPECT_FALSE(isShown("openingText"));
    click("confirmChoice");
    EXPECT_EQ(textOf("openingText"), QString::fromUtf8("Ouverture de Video Call…"));
    advance(2s);
    EXPECT_FALSE(isShown("openingText"));
}

TEST_F(Tells, TheEffectsOfAllSourcesAreSwitchedAndSeen) {
    openWithBrowser();
    EXPECT_FALSE(isShown("allEffects"));
    scene.engine.setFX({.plosive = true}, scene.browser);
    settle();
    ASSERT_TRUE(isShown("allEffects"));
    EXPECT_FALSE(isShown("bypassSlash"));

    click("Effets de toutes les sources");

    EXPECT_TRUE(scene.engine.fxBypassed());
    EXPECT_TRUE(isShown("bypassSlash"));
    EXPECT_EQ(spokenDescription(find("effectsButton")), QString::fromUtf8("Contournés"));
    click("Effets de toutes les sources");
    EXPECT_FALSE(scene.engine.fxBypassed());
    EXPECT_FALSE(isShown("bypassSlash"));
}

TEST_F(Tells, ThatAnOutputsLimiterWorks) {
    machine.sound.play(4711, constant(1.0F));
    scene.engine.setHeadphoneVolume(0.5F);
    startWithBrowser();
    EXPECT_NE(findItem(stream(), "limiterLamp"), nullptr);
    EXPECT_EQ(findItem(find("headphones"), "limiterLamp"), nullptr);

    scene.engine.setStreamVolume(0.5F);
    advance(1s);
    EXPECT_EQ(findItem(stream(), "limiterLamp"), nullptr);
}

TEST_F(Tells, TheMenuOfPresetFilesStaysInsideTheWindow) {
    open();
    window().setPosition(100, 100);
    settle();
    click("presetFiles");
    const auto menus = visibleItems(
        window(), [](QQuickItem& item) { return spokenRole(item) == QAccessible::PopupMenu; });
    ASSERT_EQ(menus.size(), 1U);
    const QPointF end = menus.front()->mapToGlobal(QPointF(menus.front()->width(), 0));
    EXPECT_LE(end.x(), window().geometry().right() + 1);
}

TEST_F(Tells, AStereoDeviceIsChosenInOneClickAndUnfoldsByItsChevron) {
    machine.sound.addDevice({.uid = "stereo", .name = "Stereo Mic", .inputs = {2}});
    open();
    click("addSource");
    pointer().click(within(find("Stereo Mic"), "unfold"));
    settle();
    EXPECT_TRUE(isShown(QString::fromUtf8("Entrée 2")));
    click("Stereo Mic");
    ASSERT_EQ(scene.engine.sources().size(), 1U);
    EXPECT_EQ(scene.engine.sources().front().name(), "Stereo Mic");
}

} // namespace

} // namespace velmora
