#include "ui/control/EffectsModel.h"

#include "ui/support/ModelFixture.h"

#include <QSignalSpy>
#include <limits>

namespace velmora {
namespace {

class EffectsModelTest : public ModelFixture {
protected:
    EffectsModel model{engine, player};
    QSignalSpy changes{&model, &EffectsModel::changed};
};

TEST_F(EffectsModelTest, AnEditReachesTheEngineAndIsToldOnce) {
    model.setLowcut(2);

    EXPECT_EQ(engine.fx(player).lowcut, 2);
    EXPECT_EQ(model.lowcutSummary(), "150 Hz");
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(EffectsModelTest, EveryFieldIsWrittenWithoutTouchingTheOthers) {
    model.setLowcut(1);
    model.setTilt(-0.5);
    model.setComp(3);
    model.setReverbChar(2);
    model.setReverbMix(0.25);
    model.setPlosive(true);
    model.setDenoise(true);
    model.setAutoGain(false);
    model.setManualDB(-6.0);

    const FXParams expected{.lowcut = 1,
                            .tilt = -0.5F,
                            .comp = 3,
                            .autoGain = false,
                            .manualDB = -6.0F,
                            .reverbChar = 2,
                            .reverbMix = 0.25F,
                            .plosive = true,
                            .denoise = true};
    EXPECT_EQ(engine.fx(player), expected);
    EXPECT_TRUE(engine.fx(browser).isNeutral());
}

TEST_F(EffectsModelTest, WritingWhatIsThereTellsNothing) {
    model.setTilt(0.5);
    model.setTilt(0.5);
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(EffectsModelTest, AmountsStayWithinTheirRange) {
    model.setTilt(-3.0);
    EXPECT_EQ(model.tilt(), -1.0);
    model.setReverbMix(1.5);
    EXPECT_EQ(model.reverbMix(), 1.0);
    model.setManualDB(40.0);
    EXPECT_EQ(model.manualDB(), 12.0);
}

TEST_F(EffectsModelTest, WhatIsNoNumberIsNotTaken) {
    model.setTilt(std::numeric_limits<double>::quiet_NaN());
    model.setReverbMix(std::numeric_limits<double>::infinity());
    EXPECT_TRUE(engine.fx(player).isNeutral());
}

TEST_F(EffectsModelTest, FollowsAnEditMadeElsewhere) {
    engine.setFX({.tilt = 0.4F}, player);
    EXPECT_EQ(model.tiltSummary(), "+40 %");
    EXPECT_EQ(changes.count(), 1);
}

TEST_F(EffectsModelTest, IgnoresAnotherSourcesEffects) {
    engine.setFX({.tilt = 0.4F}, browser);
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(EffectsModelTest, AStepOutOfRangeShowsTheOneThatIsHeard) {
    engine.setFX({.lowcut = 7, .comp = 9, .reverbChar = -1}, player);
    EXPECT_EQ(model.lowcut(), 2);
    EXPECT_EQ(model.comp(), 3);
    EXPECT_EQ(model.reverbChar(), 0);
}

TEST_F(EffectsModelTest, TheLastEffectSwitchedOffLeavesNothingToReset) {
    QSignalSpy neutral(&model, &EffectsModel::neutralChanged);
    model.setLowcut(1);
    EXPECT_FALSE(model.neutral());
    model.setLowcut(0);
    EXPECT_TRUE(model.neutral());
    EXPECT_EQ(neutral.count(), 2);
}

TEST_F(EffectsModelTest, AFaintTiltCanBeResetThoughItReadsAsNone) {
    model.setTilt(0.005);
    EXPECT_EQ(model.tiltSummary(), QStringLiteral("\u2014"));
    EXPECT_FALSE(model.neutral());
}

TEST_F(EffectsModelTest, ResetPutsEveryFieldBack) {
    engine.setFX({.lowcut = 1, .autoGain = false, .denoise = true}, player);
    model.reset();
    EXPECT_TRUE(engine.fx(player).isNeutral());
    EXPECT_EQ(model.gainSummary(), "Auto");
}

TEST_F(EffectsModelTest, TheCharacterCanBeChosenWhileTheReverbIsOff) {
    model.setReverbMix(0.004);
    model.setReverbChar(2);
    EXPECT_EQ(model.reverbChar(), 2);
    EXPECT_EQ(model.reverbSummary(), "Off");
    EXPECT_EQ(model.reverbText(), "Off");
}

TEST_F(EffectsModelTest, OneRowIsOpenAtATime) {
    EXPECT_EQ(model.expanded(), "");
    model.toggle("tilt");
    model.toggle("comp");
    EXPECT_EQ(model.expanded(), "comp");
    model.toggle("comp");
    EXPECT_EQ(model.expanded(), "");
}

} // namespace
} // namespace velmora
