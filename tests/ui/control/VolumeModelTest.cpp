#include "ui/control/VolumeModel.h"

#include "ui/support/ModelFixture.h"

#include <QSignalSpy>
#include <limits>

namespace velmora {
namespace {

using namespace std::chrono_literals;

class VolumeModelTest : public ModelFixture {
protected:
    VolumeModel headphones{VolumeModel::headphones(engine), engine, settings, machine.defaults};
    VolumeModel stream{VolumeModel::stream(engine, talk), engine, settings, machine.defaults};
    QSignalSpy changes{&headphones, &VolumeModel::valueChanged};
};

TEST_F(VolumeModelTest, EachOutputHasItsSymbolAndName) {
    EXPECT_EQ(headphones.symbol(), "headphones");
    EXPECT_EQ(headphones.name(), "Casque");
    EXPECT_EQ(stream.symbol(), "dot.radiowaves.left.and.right");
    EXPECT_EQ(stream.name(), "Micro virtuel");
}

TEST_F(VolumeModelTest, TheNameFollowsTheLanguage) {
    QSignalSpy names(&headphones, &VolumeModel::nameChanged);
    settings.setLanguage("en");
    EXPECT_EQ(headphones.name(), "Headphones");
    EXPECT_EQ(names.count(), 1);
}

TEST_F(VolumeModelTest, AnEditReachesItsOutputAloneAndIsToldOnce) {
    headphones.setValue(0.5);
    EXPECT_EQ(engine.headphoneVolume(), 0.5F);
    EXPECT_EQ(engine.streamVolume(), 1.0F);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(VolumeModelTest, TheStreamSaysWhetherPushToTalkHasClosedIt) {
    QSignalSpy told(&stream, &VolumeModel::noticeChanged);
    EXPECT_EQ(stream.notice(), "");

    talk.setOn(true);
    EXPECT_TRUE(stream.closed());
    EXPECT_EQ(stream.notice(), "Fermé : tiens la touche pour parler");
    EXPECT_FALSE(headphones.closed());
    EXPECT_EQ(headphones.notice(), "");
    talk.hold(true);
    EXPECT_FALSE(stream.closed());
    settings.setLanguage("en");
    EXPECT_EQ(stream.notice(), "Open as long as the key is held");
    talk.setOn(false);
    EXPECT_EQ(stream.notice(), "");
    EXPECT_FALSE(stream.muted());
    EXPECT_GE(told.count(), 4);
}

TEST_F(VolumeModelTest, FollowsAnEditMadeElsewhere) {
    engine.setHeadphoneVolume(0.25F);
    EXPECT_EQ(headphones.value(), 0.25);
    EXPECT_EQ(changes.count(), 1);
    engine.setStreamVolume(0.5F);
    EXPECT_EQ(stream.value(), 0.5);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(VolumeModelTest, WhatIsNoVolumeIsNotTaken) {
    headphones.setValue(-1.0);
    headphones.setValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(engine.headphoneVolume(), 1.0F);
}

TEST_F(VolumeModelTest, MutingKeepsTheVolumeBesideItsOwnKey) {
    engine.setHeadphoneVolume(0.5F);
    headphones.toggleMute();
    EXPECT_TRUE(headphones.muted());
    EXPECT_EQ(engine.headphoneVolume(), 0.0F);
    EXPECT_EQ(machine.defaults.read<double>("headphoneVolume.premute"), 0.5);
}

TEST_F(VolumeModelTest, UnmutingRestoresEachOutputsOwnVolume) {
    engine.setHeadphoneVolume(0.5F);
    engine.setStreamVolume(0.25F);
    headphones.toggleMute();
    stream.toggleMute();
    headphones.toggleMute();
    stream.toggleMute();
    EXPECT_EQ(engine.headphoneVolume(), 0.5F);
    EXPECT_EQ(engine.streamVolume(), 0.25F);
}

TEST_F(VolumeModelTest, UnmutingAfterDraggingToSilenceGivesUnity) {
    headphones.setValue(0.0);
    headphones.toggleMute();
    EXPECT_EQ(headphones.value(), 1.0);
}

class MicrophoneRow : public VolumeModelTest {
protected:
    void somebodySets(const DeviceVolume& volume) {
        machine.sound.setVolume(mic, volume);
        machine.mainQueue.advance(0ms);
    }
    void mixUnrecorded() {
        machine.sound.play(4711, constant(0.25F));
        engine.add(player);
        engine.start();
        machine.advance(3s);
    }

    QSignalSpy notices{&stream, &VolumeModel::noticeChanged};
};

TEST_F(MicrophoneRow, SaysThatSomebodyTurnedItDownAndOffersTheWayBack) {
    somebodySets({.linear = 0.125F});
    EXPECT_EQ(stream.notice(), "Baissé à 50 % dans un autre mélangeur");
    EXPECT_EQ(stream.remedy(), "Remettre à 100 %");
    EXPECT_EQ(notices.count(), 1);
    EXPECT_EQ(headphones.notice(), "");

    settings.setLanguage("en");
    EXPECT_EQ(stream.notice(), "Turned down to 50% in another mixer");

    stream.applyRemedy();
    machine.mainQueue.advance(0ms);
    EXPECT_EQ(stream.notice(), "");
    EXPECT_EQ(stream.remedy(), "");
}

TEST_F(MicrophoneRow, SaysThatSomebodyMutedIt) {
    somebodySets({.linear = 0.5F, .isMuted = true});
    EXPECT_EQ(stream.notice(), "Coupé dans un autre mélangeur");

    stream.applyRemedy();
    machine.mainQueue.advance(0ms);
    EXPECT_EQ(machine.devices.recordingVolume(mic), DeviceVolume{});
}

TEST_F(MicrophoneRow, SaysThatNobodyListensUntilSomebodyDoes) {
    mixUnrecorded();
    EXPECT_EQ(stream.notice(), "Aucun programme n'écoute le micro");
    EXPECT_EQ(stream.remedy(), "");
    EXPECT_EQ(headphones.notice(), "");

    machine.sound.record(5000, mic);
    machine.mainQueue.advance(0ms);
    EXPECT_EQ(stream.notice(), "");
}

TEST_F(VolumeModelTest, ShowsThatItsLimiterWorks) {
    QSignalSpy lamps(&stream, &VolumeModel::limitedChanged);
    machine.sound.play(4711, constant(1.0F));
    engine.setHeadphoneVolume(0.5F);
    engine.add(player);
    engine.start();
    machine.advance(200ms);
    EXPECT_TRUE(stream.limited());
    EXPECT_FALSE(headphones.limited());
    EXPECT_EQ(lamps.count(), 1);
}

} // namespace
} // namespace velmora
