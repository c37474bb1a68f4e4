#include "ui/control/ControlWindowFixture.h"

#include <QSignalSpy>

namespace velmora {
namespace {

using namespace std::chrono_literals;

const QString saveTitle = QStringLiteral("Enregistrer le setup actuel…");

class ControlWindowPresets : public ControlWindowFixture {
protected:
    bool isChecked(const QString& title) {
        const GumMenuModel& menu = *model.openPresetsMenu();
        return menu.data(menu.index(rowOf(menu, title)), GumMenuModel::CheckedRole).toBool();
    }

    QSignalSpy names{&model, &ControlWindowModel::activePresetNameChanged};
};

TEST_F(ControlWindowPresets, TheMenuOffersSavingAndThenEveryPreset) {
    model.savePreset("Podcast");
    model.savePreset("Stream");
    EXPECT_EQ(titles(*model.openPresetsMenu()),
              (std::vector<QString>{saveTitle, "Podcast", "Stream"}));
    EXPECT_FALSE(isChecked("Podcast"));
    EXPECT_TRUE(isChecked("Stream"));
}

TEST_F(ControlWindowPresets, SavingKeepsTheSetupAndNamesItInTheCaption) {
    engine.add(player);
    engine.setGain(0.5F, player);
    EXPECT_EQ(model.activePresetName(), "");
    model.savePreset("Podcast");
    EXPECT_EQ(model.activePresetName(), "Podcast");
    EXPECT_EQ(names.count(), 1);
    ASSERT_EQ(presets.presets().size(), 1U);
    EXPECT_EQ(presets.presets()[0].sources[0].gain, 0.5F);
}

TEST_F(ControlWindowPresets, TheSaveItemAsksForAName) {
    QSignalSpy asked(&model, &ControlWindowModel::savePromptRequested);
    EXPECT_EQ(model.beginSavePreset(), "");
    model.savePreset("Podcast");
    choose(*model.openPresetsMenu(), saveTitle);
    EXPECT_EQ(asked.count(), 1);
    EXPECT_EQ(model.beginSavePreset(), "Podcast");
}

TEST_F(ControlWindowPresets, ANameOfBlanksIsIgnored) {
    model.savePreset("");
    model.savePreset("  \t ");
    EXPECT_TRUE(presets.presets().empty());
}

TEST_F(ControlWindowPresets, BlanksAroundANameGo) {
    model.savePreset(" \t My show \t");
    EXPECT_EQ(presets.presets()[0].name, "My show");
}

TEST_F(ControlWindowPresets, OnlySpacesAndTabsAreBlanks) {
    const auto noBreakSpace = QStringLiteral("\u00A0");
    model.savePreset(noBreakSpace);
    EXPECT_EQ(presets.presets().at(0).name, noBreakSpace.toStdString());
}

TEST_F(ControlWindowPresets, ALongNameSurvives) {
    const QString name = QStringLiteral("é").repeated(300);
    model.savePreset(name);
    const PresetStore later(machine.defaults);
    EXPECT_EQ(QString::fromStdString(later.presets().at(0).name), name);
    EXPECT_EQ(model.activePresetName(), name);
}

TEST_F(ControlWindowPresets, SavingUnderANameInUseUpdatesThatPreset) {
    model.savePreset("Podcast");
    engine.setHeadphoneVolume(0.25F);
    model.savePreset("Podcast");
    ASSERT_EQ(presets.presets().size(), 1U);
    EXPECT_EQ(presets.presets()[0].headphoneVolume, 0.25F);
}

TEST_F(ControlWindowPresets, ChoosingAPresetAppliesItAndMakesItActive) {
    engine.add(player);
    engine.setGain(0.5F, player);
    model.savePreset("Quiet");
    engine.setGain(1.0F, player);
    engine.add(browser);
    model.savePreset("Loud");

    choose(*model.openPresetsMenu(), "Quiet");

    EXPECT_EQ(engine.sources(), std::vector{player});
    EXPECT_EQ(engine.gain(player), 0.5F);
    EXPECT_EQ(model.activePresetName(), "Quiet");
    EXPECT_TRUE(isChecked("Quiet"));
    EXPECT_FALSE(isChecked("Loud"));
    EXPECT_EQ(PresetStore(machine.defaults).active()->name, "Quiet");
}

TEST_F(ControlWindowPresets, ChoosingTheCurrentPresetAppliesItAgain) {
    engine.setHeadphoneVolume(0.25F);
    model.savePreset("Podcast");
    engine.setHeadphoneVolume(1.0F);
    choose(*model.openPresetsMenu(), "Podcast");
    EXPECT_EQ(engine.headphoneVolume(), 0.25F);
    EXPECT_EQ(model.activePresetName(), "Podcast");
}

TEST_F(ControlWindowPresets, ChoosingAPresetOpensItsApplications) {
    machine.applications.install(
        {.bundleID = "org.player", .name = "Player", .location = "/applications/org.player"});
    engine.add(player);
    model.savePreset("Podcast");
    machine.quitApplication(4711);
    choose(*model.openPresetsMenu(), "Podcast");
    EXPECT_TRUE(engine.sources().empty());
    EXPECT_EQ(model.activePresetName(), "Podcast");
    machine.advance(2s);
    ASSERT_EQ(engine.sources().size(), 1U);
    EXPECT_EQ(engine.sources()[0].name(), "Player");
}

TEST_F(ControlWindowPresets, ChoosingAPresetTellsWhatIsMissing) {
    engine.add(player);
    model.savePreset("Podcast");
    machine.quitApplication(4711);
    choose(*model.openPresetsMenu(), "Podcast");
    EXPECT_EQ(model.problemText(), "Introuvable : Player");
}

TEST_F(ControlWindowPresets, ADeletedPresetLeavesTheOpenMenu) {
    model.savePreset("Podcast");
    model.savePreset("Stream");
    GumMenuModel& menu = *model.openPresetsMenu();
    QSignalSpy dismissed(&menu, &GumMenuModel::dismissed);

    menu.deleteRow(rowOf(menu, "Podcast"));

    EXPECT_EQ(titles(menu), (std::vector<QString>{saveTitle, "Stream"}));
    EXPECT_EQ(dismissed.count(), 0);
    EXPECT_EQ(model.activePresetName(), "Stream");
}

TEST_F(ControlWindowPresets, DeletingTheActivePresetLeavesNone) {
    model.savePreset("Podcast");
    GumMenuModel& menu = *model.openPresetsMenu();
    menu.deleteRow(rowOf(menu, "Podcast"));
    EXPECT_EQ(model.activePresetName(), "");
    EXPECT_EQ(machine.defaults.get("activePresetID"), std::nullopt);
}

TEST_F(ControlWindowPresets, TheCaptionFollowsARestoredPreset) {
    model.savePreset("Podcast");
    PresetStore later(machine.defaults);
    const ControlWindowModel laterModel(
        {machine.platform(), engine, sources, later, recall, settings, talk});
    EXPECT_EQ(laterModel.activePresetName(), "Podcast");
}

TEST_F(ControlWindowPresets, TheSaveItemCannotBeDeleted) {
    const GumMenuModel& menu = *model.openPresetsMenu();
    EXPECT_FALSE(menu.data(menu.index(0), GumMenuModel::DeletableRole).toBool());
}

} // namespace
} // namespace velmora
