#include "ui/control/EffectTexts.h"

#include "effects/FXParams.h"
#include "ui/support/ModelFixture.h"

namespace velmora {
namespace {

FXParams with(auto FXParams::*field, auto value) {
    FXParams fx;
    fx.*field = value;
    return fx;
}

TEST(EffectTexts, LowCutNamesItsCutOffFrequency) {
    EXPECT_EQ(lowcutSummary(with(&FXParams::lowcut, 0)), "Off");
    EXPECT_EQ(lowcutSummary(with(&FXParams::lowcut, 1)), "75 Hz");
    EXPECT_EQ(lowcutSummary(with(&FXParams::lowcut, 2)), "150 Hz");
}

TEST(EffectTexts, AStepReadsAsItIsOffered) {
    for (int step = 0; step < lowcutSteps().size(); ++step) {
        EXPECT_EQ(lowcutSummary(with(&FXParams::lowcut, step)), lowcutSteps()[step]);
    }
    for (int step = 0; step < compSteps().size(); ++step) {
        EXPECT_EQ(compSummary(with(&FXParams::comp, step)), compSteps()[step]);
    }
    for (int step = 0; step < reverbCharacters().size(); ++step) {
        FXParams fx = with(&FXParams::reverbMix, 0.5F);
        fx.reverbChar = step;
        EXPECT_EQ(reverbSummary(fx), reverbCharacters()[step] + " 50 %");
    }
    EXPECT_EQ(compNames().size(), compSteps().size());
}

TEST(EffectTexts, AStepOutOfRangeReadsAsTheOneThatIsHeard) {
    EXPECT_EQ(lowcutSummary(with(&FXParams::lowcut, 7)), "150 Hz");
    EXPECT_EQ(lowcutSummary(with(&FXParams::lowcut, -1)), "Off");
    EXPECT_EQ(compSummary(with(&FXParams::comp, 9)), "●●●");
    EXPECT_EQ(compSummary(with(&FXParams::comp, -9)), "Off");
    FXParams fx = with(&FXParams::reverbMix, 0.5F);
    fx.reverbChar = -1;
    EXPECT_EQ(reverbSummary(fx), "Studio 50 %");
    fx.reverbChar = 5;
    EXPECT_EQ(reverbSummary(fx), "Hall 50 %");
}

TEST(EffectTexts, TiltIsSignedPercentWithATypographicMinus) {
    EXPECT_EQ(tiltSummary(with(&FXParams::tilt, 0.4F)), "+40 %");
    EXPECT_EQ(tiltSummary(with(&FXParams::tilt, -0.35F)), QStringLiteral("\u221235 %"));
    EXPECT_EQ(tiltSummary(with(&FXParams::tilt, 1.0F)), "+100 %");
}

TEST(EffectTexts, TiltBelowOnePercentIsAnEmDash) {
    EXPECT_EQ(tiltSummary(with(&FXParams::tilt, 0.004F)), QStringLiteral("\u2014"));
    EXPECT_EQ(tiltSummary(with(&FXParams::tilt, -0.009F)), QStringLiteral("\u2014"));
    EXPECT_EQ(tiltSummary(with(&FXParams::tilt, 0.01F)), "+1 %");
}

TEST(EffectTexts, AHalfPercentIsRoundedToTheEvenNeighbour) {
    EXPECT_EQ(tiltSummary(with(&FXParams::tilt, 0.125F)), "+12 %");
    EXPECT_EQ(tiltSummary(with(&FXParams::tilt, 0.375F)), "+38 %");
    EXPECT_EQ(reverbText(with(&FXParams::reverbMix, 0.625F)), "62 %");
}

TEST(EffectTexts, CompressionShowsItsStrengthAsDots) {
    EXPECT_EQ(compSummary(with(&FXParams::comp, 0)), "Off");
    EXPECT_EQ(compSummary(with(&FXParams::comp, 1)), "●");
    EXPECT_EQ(compSummary(with(&FXParams::comp, 2)), "●●");
    EXPECT_EQ(compSummary(with(&FXParams::comp, 3)), "●●●");
}

TEST(EffectTexts, ReverbNamesItsCharacterAndAmount) {
    FXParams fx = with(&FXParams::reverbMix, 0.25F);
    fx.reverbChar = 1;
    EXPECT_EQ(reverbSummary(fx), "Plate 25 %");
    EXPECT_EQ(reverbText(fx), "25 %");
}

TEST(EffectTexts, ReverbBelowHalfAPercentIsOffWhateverItsCharacter) {
    FXParams fx = with(&FXParams::reverbMix, 0.004F);
    fx.reverbChar = 2;
    EXPECT_EQ(reverbSummary(fx), "Off");
    EXPECT_EQ(reverbText(fx), "Off");
    fx.reverbMix = 0.006F;
    EXPECT_EQ(reverbSummary(fx), "Hall 1 %");
}

TEST(EffectTexts, GainIsAutomaticOrInDecibels) {
    EXPECT_EQ(gainSummary(FXParams{}), "Auto");
    FXParams fx = with(&FXParams::autoGain, false);
    fx.manualDB = 3.6F;
    EXPECT_EQ(gainSummary(fx), "+4 dB");
}

TEST(EffectTexts, DecibelsAreWholeAndSigned) {
    EXPECT_EQ(dbLabel(0.4F), "0 dB");
    EXPECT_EQ(dbLabel(-0.49F), "0 dB");
    EXPECT_EQ(dbLabel(-6.0F), QStringLiteral("\u22126 dB"));
    EXPECT_EQ(dbLabel(3.6F), "+4 dB");
    EXPECT_EQ(dbLabel(-12.0F), QStringLiteral("\u221212 dB"));
}

} // namespace
} // namespace velmora
