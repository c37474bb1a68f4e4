#include "ui/settings/SettingsModel.h"

#include "capture/DAWModeManager.h"
#include "ui/support/ModelFixture.h"

#include <gmock/gmock.h>
#include <string>
#include <utility>
#include <vector>

namespace velmora {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::Key;
using testing::Not;
using testing::Pair;
using testing::SizeIs;

using Options = std::vector<std::pair<std::string, std::string>>;

Options plain(const QVariantList& options) {
    Options result;
    for (const QVariant& option : options) {
        const QVariantMap fields = option.toMap();
        result.emplace_back(fields["tag"].toString().toStdString(),
                            fields["label"].toString().toStdString());
    }
    return result;
}

class SettingsModelTest : public ModelFixture {
protected:
    AudioObjectID addInterface(const std::string& uid, std::uint32_t channels) {
        const AudioObjectID added =
            machine.sound.addDevice({.uid = uid, .name = "Interface", .outputs = {channels}});
        model.refresh();
        return added;
    }

    /// How often `signal` is told while `change` happens.
    template <typename Change>
    int told(void (SettingsModel::*signal)(), Change change) {
        int count = 0;
        const auto connection = QObject::connect(&model, signal, &model, [&count] { ++count; });
        change();
        QObject::disconnect(connection);
        return count;
    }

    DAWModeManager dawMode{machine.platform()};
    SettingsModel model{{.platform = machine.platform(),
                         .engine = engine,
                         .sources = sources,
                         .settings = settings,
                         .dawMode = dawMode,
                         .keys = keys,
                         .version = {.release = "1.2.0", .build = "345"}}};
};

// -- appearance and language --

TEST_F(SettingsModelTest, ShowsAutoWhenNoAppearanceIsKept) {
    EXPECT_EQ(model.appearance(), "auto");
    EXPECT_EQ(plain(model.appearanceOptions()),
              (Options{{"auto", "Auto"}, {"light", "Clair"}, {"dark", "Sombre"}}));
}

TEST_F(SettingsModelTest, ShowsAutoForAKeptAppearanceThatIsNoneOfTheThreeAndKeepsIt) {
    machine.defaults.set("appearance", std::string("sepia"));
    AppSettings kept(machine.platform());
    const SettingsModel shown({machine.platform(), engine, sources, kept, dawMode, keys, {}});

    EXPECT_EQ(shown.appearance(), "auto");
    EXPECT_EQ(machine.defaults.read<std::string>("appearance"), "sepia");
}

TEST_F(SettingsModelTest, PickingAnAppearanceSetsIt) {
    EXPECT_EQ(told(&SettingsModel::settingsChanged, [&] { model.setAppearance("dark"); }), 1);

    EXPECT_EQ(settings.appearance(), "dark");
    EXPECT_EQ(model.appearance(), "dark");
}

TEST_F(SettingsModelTest, OffersBothLanguagesByTheirOwnNames) {
    const Options names{{"fr", "Français"}, {"en", "English"}};
    EXPECT_EQ(model.language(), "fr");
    EXPECT_EQ(plain(SettingsModel::languageOptions()), names);

    model.setLanguage("en");

    EXPECT_EQ(settings.language(), "en");
    EXPECT_EQ(model.language(), "en");
    EXPECT_EQ(plain(SettingsModel::languageOptions()), names);
}

TEST_F(SettingsModelTest, AnotherLanguageRelabelsTheOptionsAtOnce) {
    addInterface("usb", 4);

    EXPECT_EQ(told(&SettingsModel::devicesChanged, [&] { model.setLanguage("en"); }), 1);

    EXPECT_EQ(plain(model.appearanceOptions()),
              (Options{{"auto", "Auto"}, {"light", "Light"}, {"dark", "Dark"}}));
    EXPECT_THAT(plain(model.monitoringOptions()),
                ElementsAre(Pair("", "Default output"),
                            Pair("speakers#1", "Speakers"),
                            Pair("usb#1", "Interface — Outputs 1-2"),
                            Pair("usb#3", "Interface — Outputs 3-4")));
    EXPECT_THAT(plain(model.dawInterfaceOptions()), Contains(Pair("", "Choose…")));
}

// -- how sound comes --

TEST_F(SettingsModelTest, ShowsTheBlocksAndWhatIsMissedOfThemInOneLine) {
    EXPECT_EQ(model.blocks(), "");
    machine.sound.play(4711, constant(0.25F));
    engine.add(player);
    engine.start();
    machine.advance(std::chrono::seconds(1));
    EXPECT_EQ(model.blocks(), "Blocs de 128 échantillons, 0 manqués en une minute");

    machine.sound.standStill(2);
    const int tellings =
        told(&SettingsModel::blocksChanged, [&] { machine.advance(std::chrono::seconds(1)); });
    EXPECT_GT(tellings, 0);
    EXPECT_EQ(model.blocks(), "Blocs de 256 échantillons, 2 manqués en une minute");

    settings.setLanguage("en");
    EXPECT_EQ(model.blocks(), "Blocks of 256 samples, 2 missed in a minute");
    engine.stop();
    EXPECT_EQ(model.blocks(), "");
}

// -- launch at login --

TEST_F(SettingsModelTest, ShowsWhetherTheLoginItemIsEnabledWhenItIsMade) {
    EXPECT_FALSE(model.launchAtLogin());
    machine.loginItem.setEnabled(true);

    const SettingsModel later({machine.platform(), engine, sources, settings, dawMode, keys, {}});

    EXPECT_TRUE(later.launchAtLogin());
    EXPECT_EQ(later.loginError(), "");
}

TEST_F(SettingsModelTest, SwitchesTheLoginItemOnAndOff) {
    model.setLaunchAtLogin(true);
    EXPECT_TRUE(machine.loginItem.isEnabled());
    EXPECT_TRUE(model.launchAtLogin());

    model.setLaunchAtLogin(false);
    EXPECT_FALSE(machine.loginItem.isEnabled());
    EXPECT_FALSE(model.launchAtLogin());
}

TEST_F(SettingsModelTest, ARefusedLoginItemShowsThePlatformsMessageAndTheRealState) {
    machine.loginItem.refuse("Read-only file system");

    EXPECT_EQ(told(&SettingsModel::loginChanged, [&] { model.setLaunchAtLogin(true); }), 1);
    EXPECT_EQ(model.loginError(), "Read-only file system");
    EXPECT_FALSE(model.launchAtLogin());

    machine.loginItem.allow();
    model.setLaunchAtLogin(true);
    EXPECT_EQ(model.loginError(), "");
    EXPECT_TRUE(model.launchAtLogin());
}

TEST_F(SettingsModelTest, ALoginItemThatCannotBeRemovedStaysOn) {
    model.setLaunchAtLogin(true);
    machine.loginItem.refuse("Permission denied");

    model.setLaunchAtLogin(false);

    EXPECT_EQ(model.loginError(), "Permission denied");
    EXPECT_TRUE(model.launchAtLogin());
}

TEST_F(SettingsModelTest, AfterARequestItShowsWhatSomebodyElseLeftOnDisk) {
    machine.loginItem.setEnabled(true);
    machine.loginItem.refuse("Permission denied");

    model.setLaunchAtLogin(false);

    EXPECT_TRUE(model.launchAtLogin());
}

TEST_F(SettingsModelTest, ReadsTheLoginItemAgainWhenTheWindowComesIntoView) {
    machine.loginItem.setEnabled(true);
    EXPECT_FALSE(model.launchAtLogin());

    EXPECT_EQ(told(&SettingsModel::loginChanged, [&] { model.refresh(); }), 1);
    EXPECT_TRUE(model.launchAtLogin());
    EXPECT_EQ(told(&SettingsModel::loginChanged, [&] { model.refresh(); }), 0);
}

// -- version --

TEST_F(SettingsModelTest, ShowsReleaseAndBuildWithADashForWhatIsMissing) {
    EXPECT_EQ(model.version(), "1.2.0 (345)");
    EXPECT_EQ(versionText({.release = "1.2.0", .build = {}}), "1.2.0 (—)");
    EXPECT_EQ(versionText({.release = {}, .build = "345"}), "— (345)");
    EXPECT_EQ(versionText({}), "— (—)");
    EXPECT_EQ(versionText({.release = "%2", .build = "%1"}), "%2 (%1)");
}

// -- monitoring --

TEST_F(SettingsModelTest, OffersTheDefaultOutputAloneUntilDevicesAreRead) {
    EXPECT_THAT(plain(model.monitoringOptions()), ElementsAre(Pair("", "Sortie par défaut")));
    EXPECT_THAT(plain(model.dawInterfaceOptions()), ElementsAre(Pair("", "Choisir…")));
}

TEST_F(SettingsModelTest, OffersOneEntryForADeviceOfOneOrTwoChannels) {
    machine.sound.addDevice({.uid = "mono", .name = "Mono", .outputs = {1}});

    model.refresh();

    EXPECT_THAT(plain(model.monitoringOptions()),
                ElementsAre(Pair("", "Sortie par défaut"),
                            Pair("speakers#1", "Speakers"),
                            Pair("mono#1", "Mono")));
}

TEST_F(SettingsModelTest, OffersOneEntryForEachPairOfChannels) {
    addInterface("usb", 6);

    EXPECT_THAT(plain(model.monitoringOptions()),
                AllOf(SizeIs(5),
                      Contains(Pair("usb#1", "Interface — Sorties 1-2")),
                      Contains(Pair("usb#3", "Interface — Sorties 3-4")),
                      Contains(Pair("usb#5", "Interface — Sorties 5-6"))));
}

TEST_F(SettingsModelTest, LeavesOutALastChannelWithoutAPartner) {
    addInterface("usb", 3);

    EXPECT_THAT(plain(model.monitoringOptions()),
                AllOf(SizeIs(3), Contains(Pair("usb#1", "Interface — Sorties 1-2"))));
}

TEST_F(SettingsModelTest, EndsAtTheThirtySecondChannel) {
    addInterface("large", 64);

    const Options options = plain(model.monitoringOptions());

    EXPECT_THAT(options, SizeIs(2 + 16));
    EXPECT_EQ(options.back(),
              (std::pair<std::string, std::string>{"large#31", "Interface — Sorties 31-32"}));
}

TEST_F(SettingsModelTest, NeverOffersVirtualDevicesOrAggregates) {
    dawMode.setEnabled(true); // the aggregate of DAW mode
    ASSERT_NE(dawMode.aggregateID(), 0U);
    machine.sound.addDevice(
        {.uid = "null", .name = "Null", .outputs = {2}, .transport = Transport::virtualDevice});
    machine.sound.addDevice(
        {.uid = "both", .name = "Both", .outputs = {4}, .transport = Transport::aggregate});

    model.refresh();

    EXPECT_THAT(plain(model.monitoringOptions()),
                ElementsAre(Pair("", "Sortie par défaut"), Pair("speakers#1", "Speakers")));
    EXPECT_THAT(plain(model.dawInterfaceOptions()),
                ElementsAre(Pair("", "Choisir…"), Pair("speakers", "Speakers")));
}

TEST_F(SettingsModelTest, OffersADeviceWhoseTransportIsUnknownButNoneWithoutUID) {
    addInterface("usb", 2);
    machine.sound.refuse(Operation::transport);
    machine.sound.refuse(Operation::deviceUID, -1, speakers);

    model.refresh();

    EXPECT_THAT(plain(model.monitoringOptions()),
                AllOf(Contains(Key("usb#1")), Not(Contains(Key("speakers#1")))));
}

TEST_F(SettingsModelTest, PickingAnOutputSelectsItAndTheDefaultOneClearsTheSelection) {
    addInterface("usb", 4);
    EXPECT_EQ(model.monitoring(), "");

    EXPECT_EQ(told(&SettingsModel::monitoringChanged, [&] { model.setMonitoring("usb#3"); }), 1);
    EXPECT_EQ(engine.monitoringSelection(), "usb#3");
    EXPECT_EQ(model.monitoring(), "usb#3");

    model.setMonitoring("");
    EXPECT_EQ(engine.monitoringSelection(), std::nullopt);
    EXPECT_EQ(model.monitoring(), "");
}

TEST_F(SettingsModelTest, ASelectionWithoutAChannelIsTheFirstPair) {
    addInterface("usb", 4);

    engine.setMonitoringSelection("usb");

    EXPECT_EQ(model.monitoring(), "usb#1");
}

TEST_F(SettingsModelTest, AnOutputThatDisappearsVanishesAndItsSelectionIsKept) {
    const AudioObjectID usb = addInterface("usb", 4);
    model.setMonitoring("usb#3");

    machine.sound.removeDevice(usb);
    model.refresh();

    EXPECT_THAT(plain(model.monitoringOptions()), Not(Contains(Key("usb#3"))));
    EXPECT_EQ(model.monitoring(), "");
    EXPECT_EQ(engine.monitoringSelection(), "usb#3");
}

TEST_F(SettingsModelTest, ARunningMetersTicksChangeNothingHere) {
    machine.sound.play(4711, constant(0.5F));
    engine.replaceSources({player});
    engine.start();
    ASSERT_TRUE(engine.isRunning());

    EXPECT_EQ(
        told(&SettingsModel::monitoringChanged, [&] { machine.advance(std::chrono::seconds(1)); }),
        0);
}

// -- DAW mode --

TEST_F(SettingsModelTest, SwitchesDawModeAndShowsTheInterfaceThatItChose) {
    model.refresh();

    EXPECT_EQ(told(&SettingsModel::dawChanged, [&] { model.setDawEnabled(true); }), 1);
    EXPECT_TRUE(model.dawEnabled());
    EXPECT_EQ(model.dawInterface(), "speakers");
    EXPECT_NE(dawMode.aggregateID(), 0U);

    model.setDawEnabled(false);
    EXPECT_FALSE(model.dawEnabled());
    EXPECT_EQ(dawMode.aggregateID(), 0U);
}

TEST_F(SettingsModelTest, PickingAnInterfaceKeepsItAndRebuildsTheDeviceAtOnce) {
    addInterface("usb", 4);
    model.setDawEnabled(true);

    model.setDawInterface("usb");

    EXPECT_EQ(model.dawInterface(), "usb");
    EXPECT_EQ(machine.defaults.read<std::string>("dawMode.interfaceUID"), "usb");
    EXPECT_EQ(machine.sound.createdSinks().back().masterUID, "usb");
    EXPECT_EQ(machine.sound.census().sinks, 1U);
}

TEST_F(SettingsModelTest, PickingTheInvitationClearsTheInterface) {
    model.refresh();
    model.setDawEnabled(true);

    model.setDawInterface("");

    EXPECT_EQ(dawMode.interfaceUID(), std::nullopt);
    EXPECT_EQ(model.dawInterface(), "");
    EXPECT_EQ(machine.sound.census().sinks, 0U);
}

TEST_F(SettingsModelTest, ShowsWhyThereIsNoDawDeviceInTheUsersLanguageWhileTheModeIsOn) {
    machine.sound.removeDevice(mic);

    model.setDawEnabled(true);
    EXPECT_EQ(model.dawError(), "Driver Velmora introuvable");
    EXPECT_GE(told(&SettingsModel::dawChanged, [&] { model.setLanguage("en"); }), 1);
    EXPECT_EQ(model.dawError(), "Velmora driver not found");

    model.setDawEnabled(false);
    EXPECT_EQ(model.dawError(), "");
}

} // namespace
} // namespace velmora
