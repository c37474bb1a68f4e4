#include "settings/AppSettings.h"

#include "platform/simulated/SimulatedPlatform.h"
#include "settings/Theme.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

namespace velmora {
namespace {

using namespace std::chrono_literals;

class AppSettingsTest : public testing::Test {
protected:
    void keep(std::string_view key, std::string value) {
        platform_.defaults.set(key, std::move(value));
    }
    [[nodiscard]] std::optional<std::string> kept(std::string_view key) const {
        return platform_.defaults.read<std::string>(key);
    }
    void runMainQueue() { platform_.mainQueue.advance(0ns); }

    SimulatedPlatform platform_;
};

TEST_F(AppSettingsTest, StartsInFrenchWithTheDesktopsAppearance) {
    const AppSettings settings(platform_.platform());

    EXPECT_EQ(settings.language(), "fr");
    EXPECT_EQ(settings.appearance(), "auto");
    EXPECT_EQ(settings.t("Supprimer"), "Supprimer");
    EXPECT_EQ(settings.colorScheme(), ColorScheme::light);
    EXPECT_EQ(kept("language"), std::nullopt);
    EXPECT_EQ(kept("appearance"), std::nullopt);
}

TEST_F(AppSettingsTest, TakesUpWhatWasKept) {
    keep("language", "en");
    keep("appearance", "dark");

    const AppSettings settings(platform_.platform());

    EXPECT_EQ(settings.language(), "en");
    EXPECT_EQ(settings.appearance(), "dark");
    EXPECT_EQ(settings.t("Supprimer"), "Delete");
}

TEST_F(AppSettingsTest, AValueThatIsNotAStringCountsAsAbsent) {
    platform_.defaults.set("language", 1.0);
    platform_.defaults.set("appearance", true);

    const AppSettings settings(platform_.platform());

    EXPECT_EQ(settings.language(), "fr");
    EXPECT_EQ(settings.appearance(), "auto");
}

TEST_F(AppSettingsTest, OnlyTheExactValueEnSelectsEnglish) {
    for (const std::string language : {"EN", "en-GB", "en ", "de", ""}) {
        keep("language", language);

        const AppSettings settings(platform_.platform());

        EXPECT_EQ(settings.t("Supprimer"), "Supprimer") << language;
        EXPECT_EQ(settings.language(), language);
        EXPECT_EQ(kept("language"), language);
    }
}

TEST_F(AppSettingsTest, TheEllipsisIsOneCharacter) {
    AppSettings settings(platform_.platform());
    settings.setLanguage("en");

    EXPECT_EQ(settings.t("Réglages…"), "Settings…");
    EXPECT_EQ(settings.t("Réglages..."), "Réglages...");
}

TEST_F(AppSettingsTest, ATextWithoutAnEntryComesBackUnchanged) {
    AppSettings settings(platform_.platform());
    settings.setLanguage("en");

    EXPECT_EQ(settings.t("Volume"), "Volume");
    EXPECT_EQ(settings.t(""), "");
}

TEST_F(AppSettingsTest, AnAddedTextIsLookedUpAfterTheFixedOnes) {
    AppSettings settings(platform_.platform());
    EXPECT_EQ(settings.t("Service audio injoignable"), "Service audio injoignable");

    settings.setLanguage("en");

    EXPECT_EQ(settings.t("Service audio injoignable"), "Audio service not reachable");
}

TEST_F(AppSettingsTest, SwitchingTheLanguageTellsObserversAndIsKept) {
    AppSettings settings(platform_.platform());
    std::string label = settings.t("Annuler");
    const auto view = settings.changed().connect([&] { label = settings.t("Annuler"); });

    settings.setLanguage("en");
    EXPECT_EQ(label, "Cancel");
    EXPECT_EQ(kept("language"), "en");

    settings.setLanguage("fr");
    EXPECT_EQ(label, "Annuler");
    EXPECT_EQ(kept("language"), "fr");
}

TEST_F(AppSettingsTest, SwitchingTheAppearanceChangesTheApplicationAtOnce) {
    AppSettings settings(platform_.platform());
    auto drawn = ColorScheme::light;
    const auto view = settings.changed().connect([&] { drawn = settings.colorScheme(); });

    settings.setAppearance("dark");
    EXPECT_EQ(drawn, ColorScheme::dark);
    EXPECT_EQ(kept("appearance"), "dark");

    settings.setAppearance("auto");
    EXPECT_EQ(drawn, ColorScheme::light);
    EXPECT_EQ(kept("appearance"), "auto");
}

TEST_F(AppSettingsTest, AutoFollowsTheDesktopLive) {
    AppSettings settings(platform_.platform());
    auto drawn = ColorScheme::light;
    const auto view = settings.changed().connect([&] { drawn = settings.colorScheme(); });

    platform_.appearance.setDark(true);
    EXPECT_EQ(drawn, ColorScheme::dark);

    platform_.appearance.setDark(false);
    EXPECT_EQ(drawn, ColorScheme::light);
}

TEST_F(AppSettingsTest, AForcedAppearanceIgnoresTheDesktop) {
    AppSettings settings(platform_.platform());

    settings.setAppearance("light");
    platform_.appearance.setDark(true);
    EXPECT_EQ(settings.colorScheme(), ColorScheme::light);

    settings.setAppearance("dark");
    platform_.appearance.setDark(false);
    EXPECT_EQ(settings.colorScheme(), ColorScheme::dark);
}

TEST_F(AppSettingsTest, AnUnknownAppearanceActsAsAutoAndStaysKept) {
    keep("appearance", "sepia");
    platform_.appearance.setDark(true);

    const AppSettings settings(platform_.platform());
    runMainQueue();

    EXPECT_EQ(settings.appearance(), "sepia");
    EXPECT_EQ(settings.colorScheme(), ColorScheme::dark);
    EXPECT_EQ(kept("appearance"), "sepia");
}

TEST_F(AppSettingsTest, AppliesTheKeptAppearanceOnceTheMainQueueRuns) {
    keep("appearance", "dark");
    AppSettings settings(platform_.platform());
    int told = 0;
    const auto view = settings.changed().connect([&] { ++told; });
    EXPECT_EQ(settings.colorScheme(), ColorScheme::light);

    runMainQueue();
    EXPECT_EQ(settings.colorScheme(), ColorScheme::dark);
    EXPECT_EQ(told, 1);

    runMainQueue();
    EXPECT_EQ(told, 1);
}

TEST_F(AppSettingsTest, NothingHappensAfterItIsGone) {
    auto settings = std::make_unique<AppSettings>(platform_.platform());
    int told = 0;
    const auto view = settings->changed().connect([&] { ++told; });

    settings.reset();
    runMainQueue();
    platform_.appearance.setDark(true);

    EXPECT_EQ(told, 0);
}

TEST_F(AppSettingsTest, APanelOfItsOwnSchemeDrawsItsOwnColours) {
    AppSettings settings(platform_.platform());
    settings.setAppearance("light");

    EXPECT_EQ(Theme::sand.in(settings.colorScheme()), colorFromHex(0xF6ECD6));
    EXPECT_EQ(Theme::sand.in(ColorScheme::dark), colorFromHex(0x0F2530));
}

TEST_F(AppSettingsTest, OffersThreeAppearancesOfWhichAutoIsNotTranslated) {
    AppSettings settings(platform_.platform());
    EXPECT_EQ(
        settings.appearanceChoices(),
        (std::array{Choice{"auto", "Auto"}, Choice{"light", "Clair"}, Choice{"dark", "Sombre"}}));

    settings.setLanguage("en");

    EXPECT_EQ(
        settings.appearanceChoices(),
        (std::array{Choice{"auto", "Auto"}, Choice{"light", "Light"}, Choice{"dark", "Dark"}}));
}

TEST_F(AppSettingsTest, OffersTwoLanguagesUnderTheirOwnNames) {
    EXPECT_EQ(AppSettings::languageChoices(),
              (std::array{Choice{"fr", "Français"}, Choice{"en", "English"}}));
}

TEST_F(AppSettingsTest, AChoiceThatCannotBeWrittenStillCounts) {
    platform_.defaults.refuseWrites({.kind = StoreProblem::Kind::full, .status = -28});
    AppSettings settings(platform_.platform());

    settings.setLanguage("en");

    EXPECT_EQ(settings.t("Langue"), "Language");
}

} // namespace
} // namespace velmora
