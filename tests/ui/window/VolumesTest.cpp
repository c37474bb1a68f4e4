#include "ui/window/WindowTest.h"

namespace velmora {

namespace {

class Volumes : public WindowTest {};

TEST_F(Volumes, EachFaderSetsItsOutput) {
    open();
    drag(trackOf(within(find("headphones"), "volumeFader")), 0);
    drag(trackOf(within(find("stream"), "volumeFader")), 1);
    EXPECT_EQ(scene.engine.headphoneVolume(), 0.0F);
    EXPECT_NEAR(decibels(scene.engine.streamVolume()), 6.0, 1e-4);
}

TEST_F(Volumes, MutingStoresTheVolumeAndUnmutingRestoresIt) {
    open();
    scene.engine.setHeadphoneVolume(0.5F);
    auto& mute = within(find("headphones"), "mute");
    pointer().click(mute);
    EXPECT_EQ(scene.engine.headphoneVolume(), 0.0F);
    EXPECT_EQ(machine.defaults.read<double>("headphoneVolume.premute"), 0.5);
    pointer().click(mute);
    EXPECT_EQ(scene.engine.headphoneVolume(), 0.5F);
}

TEST_F(Volumes, TheStreamHasItsOwnMemory) {
    open();
    scene.engine.setStreamVolume(0.25F);
    pointer().click(within(find("stream"), "mute"));
    EXPECT_EQ(machine.defaults.read<double>("streamVolume.premute"), 0.25);
}

TEST_F(Volumes, UnmutingWhatWasDraggedToSilenceGivesUnity) {
    open();
    drag(trackOf(within(find("stream"), "volumeFader")), 0);
    pointer().click(within(find("stream"), "mute"));
    EXPECT_EQ(scene.engine.streamVolume(), 1.0F);
}

TEST_F(Volumes, AMutedOutputsSymbolIsFainter) {
    open();
    const auto alpha = [this] {
        return within(find("stream"), "mute").property("color").value<QColor>().alphaF();
    };
    EXPECT_NEAR(alpha(), 0.6, 0.01);
    scene.engine.setStreamVolume(0.001F);
    EXPECT_NEAR(alpha(), 0.25, 0.01);
}

TEST_F(Volumes, TheMicrophonesRowSaysWhetherPushToTalkHasClosedIt) {
    const QString closed = QStringLiteral("Fermé : tiens la touche pour parler");
    const QString open = QStringLiteral("Ouvert tant que la touche est tenue");
    this->open();
    const double height = find("stream").height();
    EXPECT_FALSE(isShown(closed) || isShown(open));

    scene.talk.setOn(true);
    settle();
    EXPECT_TRUE(isShown(closed));
    EXPECT_NE(findItem(find("stream"), closed), nullptr);
    const double withNote = find("stream").height();
    EXPECT_GT(withNote, height);
    scene.talk.hold(true);
    settle();
    EXPECT_TRUE(isShown(open));
    EXPECT_EQ(find("stream").height(), withNote);
    scene.talk.setOn(false);
    settle();
    EXPECT_EQ(find("stream").height(), height);
}

TEST_F(Volumes, AMutedOutputSaysSo) {
    open();
    const auto isMuted = [this](const char* output) {
        const auto state = spokenState(within(find(output), "mute"));
        EXPECT_TRUE(state.checkable);
        return state.checked != 0;
    };
    EXPECT_FALSE(isMuted("stream"));
    scene.engine.setStreamVolume(0.0F);
    EXPECT_TRUE(isMuted("stream"));
    EXPECT_FALSE(isMuted("headphones"));
}

} // namespace

} // namespace velmora
