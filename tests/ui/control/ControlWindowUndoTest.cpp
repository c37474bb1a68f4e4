// Edits in the control window that are taken back.

#include "ui/control/ControlWindowFixture.h"
#include "ui/control/SourceStripModel.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

class ControlWindowUndo : public ControlWindowFixture {
protected:
    void removeStrip(int row) {
        model.strips()->strip(row)->remove();
        settle();
    }
    void deletePreset(const QString& name) {
        GumMenuModel& menu = *model.openPresetsMenu();
        menu.deleteRow(rowOf(menu, name));
    }
    [[nodiscard]] QString offered() { return model.undo()->text(); }
    void undo() { model.undo()->undo(); }

    const AudioSource recorder = AppSource{4713, "Recorder", "org.recorder"};
};

TEST_F(ControlWindowUndo, ARemovedSourceReturnsToItsPlaceWithItsSettings) {
    for (const auto& source : {player, browser, recorder}) {
        engine.add(source);
    }
    engine.setGain(0.25F, browser);
    removeStrip(1);
    ASSERT_EQ(engine.sources(), (std::vector{player, recorder}));
    EXPECT_EQ(offered(), QString::fromUtf8("« Browser » retiré"));

    undo();

    EXPECT_EQ(engine.sources(), (std::vector{player, browser, recorder}));
    EXPECT_EQ(engine.gain(browser), 0.25F);
    EXPECT_FALSE(model.undo()->offered());
}

TEST_F(ControlWindowUndo, ASourceThatWasThereTwiceReturnsToBothPlaces) {
    engine.add(player);
    engine.add(browser);
    engine.setPrimary(browser);
    engine.add(player);
    const auto before = engine.sources();
    ASSERT_EQ(before, (std::vector{browser, browser, player}));
    removeStrip(0);

    undo();

    EXPECT_EQ(engine.sources(), before);
}

TEST_F(ControlWindowUndo, ASourceThatReturnsIsHeardInARunningMix) {
    machine.sound.play(4711, sine(440, 0.5F));
    machine.sound.play(4712, sine(440, 0.5F));
    engine.add(player);
    engine.add(browser);
    engine.start();
    removeStrip(1);
    undo();

    machine.advance(200ms);

    EXPECT_TRUE(engine.isRunning());
    EXPECT_GT(engine.sourceLevels().at(browser.id()), 0.1F);
}

TEST_F(ControlWindowUndo, TheLastSourceSwitchesTheMixOnAgain) {
    machine.sound.play(4711, sine(440, 0.5F));
    engine.add(player);
    engine.start();
    ASSERT_TRUE(engine.isRunning());
    removeStrip(0);
    ASSERT_FALSE(engine.isRunning());

    undo();

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.sources(), std::vector{player});
}

TEST_F(ControlWindowUndo, TheLastSourceThatCouldBeHeardSwitchesTheMixOnAgain) {
    machine.sound.play(4711, sine(440, 0.5F));
    engine.add(player);
    engine.add(browser);
    engine.start();
    removeStrip(0);
    ASSERT_FALSE(engine.isRunning());

    undo();

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(engine.sources(), (std::vector{player, browser}));
}

TEST_F(ControlWindowUndo, AMixAtRestStaysAtRest) {
    engine.add(player);
    removeStrip(0);

    undo();

    EXPECT_FALSE(engine.isRunning());
}

TEST_F(ControlWindowUndo, AMixThatWasFilledAnewIsNotSwitchedOn) {
    machine.sound.play(4711, sine(440, 0.5F));
    engine.add(player);
    engine.start();
    removeStrip(0);
    engine.add(browser);

    undo();

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.sources(), (std::vector{player, browser}));
}

TEST_F(ControlWindowUndo, ASourceThatWasAddedAgainByHandIsNotOfferedAnyMore) {
    engine.add(player);
    removeStrip(0);
    engine.add(player);

    EXPECT_FALSE(model.undo()->offered());
}

TEST_F(ControlWindowUndo, ARecallEndsWhatWasRemovedBeforeButNotADeletedPreset) {
    engine.add(player);
    model.savePreset("Podcast");
    model.savePreset("Stream");
    deletePreset("Stream");
    removeStrip(0);

    choose(*model.openPresetsMenu(), "Podcast");

    EXPECT_EQ(offered(), QString::fromUtf8("Preset « Stream » supprimé"));
}

TEST_F(ControlWindowUndo, ADeletedPresetReturns) {
    model.savePreset("Podcast");
    const auto before = presets.presets();
    deletePreset("Podcast");
    EXPECT_EQ(offered(), QString::fromUtf8("Preset « Podcast » supprimé"));

    undo();

    EXPECT_EQ(presets.presets(), before);
    EXPECT_EQ(model.activePresetName(), "Podcast");
    EXPECT_EQ(PresetStore(machine.defaults).presets(), before);
}

TEST_F(ControlWindowUndo, APresetThatWasSavedOverReturns) {
    engine.add(player);
    model.savePreset("Podcast");
    EXPECT_FALSE(model.undo()->offered()); // nothing was lost
    const auto before = presets.presets();
    engine.setHeadphoneVolume(0.25F);
    model.savePreset("Podcast");
    EXPECT_EQ(offered(), QString::fromUtf8("Preset « Podcast » remplacé"));

    undo();

    EXPECT_EQ(presets.presets(), before);
    EXPECT_EQ(engine.headphoneVolume(), 0.25F); // what is heard stays
}

TEST_F(ControlWindowUndo, SeveralEditsAreTakenBackInTurn) {
    engine.add(player);
    engine.add(browser);
    model.savePreset("Podcast");
    removeStrip(0);
    removeStrip(0);
    deletePreset("Podcast");
    for (int edit = 0; edit < 3; ++edit) {
        undo();
    }

    EXPECT_EQ(engine.sources(), (std::vector{player, browser}));
    EXPECT_EQ(presets.presets().size(), 1U);
    EXPECT_FALSE(model.undo()->offered());
}

} // namespace
} // namespace velmora
