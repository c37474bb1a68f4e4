#include "ui/control/VolumeModel.h"

#include "ui/support/ModelFixture.h"

#include <QSignalSpy>
#include <limits>

namespace velmora {
namespace {

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
    QSignalSpy told(&stream, &VolumeModel::talkChanged);
    EXPECT_EQ(stream.talkNote(), "");

    talk.setOn(true);
    EXPECT_TRUE(stream.closed());
    EXPECT_EQ(stream.talkNote(), "Fermé : tiens la touche pour parler");
    EXPECT_FALSE(headphones.closed());
    EXPECT_EQ(headphones.talkNote(), "");
    talk.hold(true);
    EXPECT_FALSE(stream.closed());
    settings.setLanguage("en");
    EXPECT_EQ(stream.talkNote(), "Open as long as the key is held");
    talk.setOn(false);
    EXPECT_EQ(stream.talkNote(), "");
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

} // namespace
} // namespace velmora
