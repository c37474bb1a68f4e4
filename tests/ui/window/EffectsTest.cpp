#include "ui/window/WindowTest.h"

namespace velmora {

namespace {

class Effects : public WindowTest {
protected:
    /// One of a row's segments, by its place.
    QQuickItem& segment(const QString& row, const QString& label) {
        return within(find(row), label);
    }
    void set(const FXParams& params) {
        scene.engine.setFX(params, scene.browser);
        settle();
    }
};

TEST_F(Effects, AtMostOneRowIsOpen) {
    openWithEffects();
    click("lowcutTitle");
    EXPECT_TRUE(isShown("150 Hz"));
    click("reverbTitle");
    EXPECT_TRUE(isShown("reverbMix"));
    EXPECT_FALSE(isShown("150 Hz"));
    click("reverbTitle");
    EXPECT_FALSE(isShown("reverbMix"));
}

TEST_F(Effects, ARowSaysHowItIsSetAndWhetherItIsOpen) {
    openWithEffects();
    set({.lowcut = 2});
    EXPECT_EQ(spokenDescription(find("lowcutTitle")), "150 Hz");
    EXPECT_TRUE(spokenState(find("lowcutTitle")).checkable);
    EXPECT_FALSE(isChecked("lowcutTitle"));
    click("lowcutTitle");
    EXPECT_TRUE(isChecked("lowcutTitle"));
    EXPECT_FALSE(isChecked("tiltTitle"));
}

TEST_F(Effects, TheLowCutsSegmentsWriteItsSteps) {
    openWithEffects();
    click("lowcutTitle");
    for (const auto& [label, step] : {std::pair{"75 Hz", 1}, {"150 Hz", 2}, {"Off", 0}}) {
        pointer().click(segment("lowcutRow", label));
        EXPECT_EQ(fx().lowcut, step);
        EXPECT_EQ(textOf("lowcutSummary"), label);
    }
}

TEST_F(Effects, ASteppedValueOutOfRangeShowsTheStepThatPlays) {
    openWithEffects();
    set({.lowcut = 9});
    EXPECT_EQ(textOf("lowcutSummary"), "150 Hz");
    set({.lowcut = -1});
    EXPECT_EQ(textOf("lowcutSummary"), "Off");
}

TEST_F(Effects, TheCompressorsSegmentsWriteItsStrength) {
    openWithEffects();
    click("compTitle");
    const QStringList labels{"Off", QString::fromUtf8("Légère"), "Moyenne", "Forte"};
    for (int strength = 3; strength >= 0; --strength) {
        pointer().click(segment("compRow", labels.at(strength)));
        EXPECT_EQ(fx().comp, strength);
    }
}

TEST_F(Effects, TheToneReadsInPercentWithATypographicMinus) {
    openWithEffects();
    set({.tilt = -0.35F});
    EXPECT_EQ(textOf("tiltSummary"), QString::fromUtf8("−35 %"));
    set({.tilt = 0.4F});
    EXPECT_EQ(textOf("tiltSummary"), "+40 %");
    set({.tilt = 0.004F});
    EXPECT_EQ(textOf("tiltSummary"), QString::fromUtf8("—"));
}

TEST_F(Effects, TheToneSliderRunsFromMinusOneToOneAndRestsInTheMiddle) {
    openWithEffects();
    click("tiltTitle");
    auto& slider = find("tiltSlider");
    drag(slider, 0);
    EXPECT_EQ(fx().tilt, -1.0F);
    drag(slider, 1);
    EXPECT_EQ(fx().tilt, 1.0F);
    drag(slider, 0.515); // 3 % of the half range, inside the detent of 4 %
    EXPECT_EQ(fx().tilt, 0.0F);
}

TEST_F(Effects, AFaintReverbReadsOffAndItsCharacterStaysSelectable) {
    openWithEffects();
    set({.reverbMix = 0.004F});
    click("reverbTitle");
    EXPECT_EQ(textOf("reverbSummary"), "Off");
    EXPECT_EQ(textOf("reverbText"), "Off");
    pointer().click(segment("reverbRow", "Hall"));
    EXPECT_EQ(fx().reverbChar, 2);
}

TEST_F(Effects, TheReverbsFaderWritesItsMix) {
    openWithEffects();
    click("reverbTitle");
    drag(find("reverbMix"), 1);
    EXPECT_EQ(fx().reverbMix, 1.0F);
    EXPECT_EQ(textOf("reverbSummary"), "Studio 100 %");
    EXPECT_EQ(textOf("reverbText"), "100 %");
}

TEST_F(Effects, ADoubleClickTakesTheReverbAway) {
    openWithEffects();
    set({.reverbMix = 0.5F});
    click("reverbTitle");
    auto& mix = find("reverbMix");
    pointer().doubleClick(mix, {60, mix.height() / 2});
    EXPECT_EQ(fx().reverbMix, 0.0F);
}

TEST_F(Effects, TheSwitchesTurnTheirEffectsOn) {
    openWithEffects();
    click("Anti-plosives");
    EXPECT_TRUE(fx().plosive);
    click(QString::fromUtf8("Réduction de bruit"));
    EXPECT_TRUE(fx().denoise);
    click("Anti-plosives");
    EXPECT_FALSE(fx().plosive);
}

TEST_F(Effects, TheManualGainIsThereWhileAutoIsOff) {
    openWithEffects();
    EXPECT_EQ(textOf("gainSummary"), "Auto");
    click("gainTitle");
    EXPECT_FALSE(isShown("manualGain"));
    click("Gain automatique");
    EXPECT_FALSE(fx().autoGain);
    drag(find("manualGain"), 1);
    EXPECT_EQ(fx().manualDB, 12.0F);
}

TEST_F(Effects, TheGainReadsInWholeDecibels) {
    openWithEffects();
    for (const auto& [db, text] : {std::pair{0.4F, "0 dB"}, {-6.0F, "−6 dB"}, {3.6F, "+4 dB"}}) {
        set({.autoGain = false, .manualDB = db});
        EXPECT_EQ(textOf("gainSummary"), QString::fromUtf8(text));
    }
}

TEST_F(Effects, ResetIsThereWhileSomethingIsNotNeutral) {
    openWithEffects();
    EXPECT_FALSE(isShown("resetEffects"));
    set({.lowcut = 1, .comp = 2, .reverbMix = 0.5F, .denoise = true});
    click("resetEffects");
    EXPECT_TRUE(fx().isNeutral());
    EXPECT_FALSE(isShown("resetEffects"));
}

TEST_F(Effects, ChoosingOffAsTheLastEffectTakesResetAway) {
    openWithEffects();
    set({.lowcut = 2});
    click("lowcutTitle");
    EXPECT_TRUE(isShown("resetEffects"));
    pointer().click(segment("lowcutRow", "Off"));
    EXPECT_FALSE(isShown("resetEffects"));
}

TEST_F(Effects, TitlesFollowTheLanguageAndValuesDoNot) {
    openWithEffects();
    EXPECT_TRUE(isShown("Coupe-bas"));
    settings.setLanguage("en");
    for (const char* title :
         {"Low cut", "Tone", "Compression", "Reverb", "Plosive guard", "Noise reduction", "Gain"}) {
        EXPECT_TRUE(isShown(title)) << title;
    }
    EXPECT_EQ(textOf("gainSummary"), "Auto");
    EXPECT_EQ(textOf("lowcutSummary"), "Off");
}

TEST_F(Effects, RowsAreWorkedByKeyboard) {
    openWithEffects();
    tabTo("Coupe-bas");
    key(Qt::Key_Return);
    EXPECT_TRUE(isShown("150 Hz"));
    key(Qt::Key_Tab);
    key(Qt::Key_Right);
    EXPECT_EQ(fx().lowcut, 1);
}

} // namespace

} // namespace velmora
