#include "settings/AppSettings.h"

#include "platform/DefaultsStore.h"
#include "platform/MainQueue.h"
#include "settings/Texts.h"

#include <utility>

namespace velmora {

namespace {

constexpr std::string_view appearanceKey = "appearance";
constexpr std::string_view languageKey = "language";

std::optional<ColorScheme> schemeForcedBy(std::string_view appearance) {
    if (appearance == "light") {
        return ColorScheme::light;
    }
    if (appearance == "dark") {
        return ColorScheme::dark;
    }
    return std::nullopt;
}

} // namespace

AppSettings::AppSettings(const Platform& platform)
    : platform_(platform),
      appearance_(platform.defaults.read<std::string>(appearanceKey).value_or("auto")),
      language_(platform.defaults.read<std::string>(languageKey).value_or("fr")) {
    const std::weak_ptr<AppSettings*> weak = self_;
    platform_.mainQueue.post([weak] {
        if (const auto self = weak.lock()) {
            (*self)->applyAppearance();
        }
    });
    platform_.appearance.onChange([weak] {
        if (const auto self = weak.lock()) {
            (*self)->changed_.emit();
        }
    });
}

void AppSettings::setAppearance(std::string value) {
    appearance_ = std::move(value);
    platform_.defaults.set(appearanceKey, appearance_);
    applyAppearance();
}

void AppSettings::setLanguage(std::string value) {
    language_ = std::move(value);
    platform_.defaults.set(languageKey, language_);
    changed_.emit();
}

ColorScheme AppSettings::colorScheme() const {
    return forcedScheme_.value_or(platform_.appearance.isDark() ? ColorScheme::dark
                                                                : ColorScheme::light);
}

void AppSettings::applyAppearance() {
    forcedScheme_ = schemeForcedBy(appearance_);
    changed_.emit();
}

Appearance::Look AppSettings::desktopLook() const {
    return platform_.appearance.look();
}

std::string AppSettings::t(std::string_view french) const {
    return std::string(language_ == "en" ? inEnglish(french) : french);
}

std::array<Choice, 3> AppSettings::appearanceChoices() const {
    return {Choice{"auto", "Auto"}, Choice{"light", t("Clair")}, Choice{"dark", t("Sombre")}};
}

std::array<Choice, 2> AppSettings::languageChoices() {
    return {Choice{"fr", "Français"}, Choice{"en", "English"}};
}

} // namespace velmora
