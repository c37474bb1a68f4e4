#include "platform/desktop/DesktopAppearance.h"

#include "platform/desktop/PaletteWatch.h"
#include "platform/desktop/PortalSettings.h"

#include <cmath>
#include <utility>

namespace velmora {

namespace {

constexpr uint prefersDark = 1;
constexpr uint prefersLight = 2;
constexpr uint prefersMore = 1; // contrast, or stillness

std::optional<bool> schemeIn(const QVariant& value) {
    switch (value.toUInt()) {
    case prefersDark:
        return true;
    case prefersLight:
        return false;
    default:
        return std::nullopt;
    }
}

double scaleIn(const QVariant& value) {
    const double scale = value.toDouble();
    return std::isfinite(scale) && scale > 0 ? scale : 1.0;
}

} // namespace

DesktopAppearance::DesktopAppearance(const std::string& busAddress)
    : palette_(std::make_unique<PaletteWatch>([this] { update(); })) {
    // What no desktop-neutral name exists for is asked for by the name that portals carry.
    const auto every = QStringLiteral("org.freedesktop.appearance");
    const auto interface = QStringLiteral("org.gnome.desktop.interface");
    const auto access = QStringLiteral("org.gnome.desktop.a11y.interface");
    const auto into = [this](auto Said::*place, auto read) {
        return [this, place, read](const QVariant& value) {
            said_.*place = read(value);
            update();
        };
    };
    const auto isMore = [](const QVariant& value) { return value.toUInt() == prefersMore; };
    const auto isTrue = [](const QVariant& value) { return value.toBool(); };
    portal_ = std::make_unique<PortalSettings>(
        QString::fromStdString(busAddress),
        std::vector<PortalSettings::Setting>{
            {every, "color-scheme", into(&Said::isDark, schemeIn)},
            {every, "contrast", into(&Said::wantsContrast, isMore)},
            {access, "high-contrast", into(&Said::hasContrastTheme, isTrue)},
            {every, "reduced-motion", into(&Said::wantsStillness, isMore)},
            {interface, "enable-animations", into(&Said::hasAnimations, isTrue)},
            {interface, "text-scaling-factor", into(&Said::textScale, scaleIn)},
        });
    update();
}

DesktopAppearance::~DesktopAppearance() = default;

void DesktopAppearance::onChange(std::function<void()> listener) {
    listeners_.push_back(std::move(listener));
}

void DesktopAppearance::update() {
    const Look now{.isDark = said_.isDark.value_or(palette_->isDark()),
                   .isHighContrast = said_.wantsContrast || said_.hasContrastTheme,
                   .isStill = said_.wantsStillness || !said_.hasAnimations,
                   .textScale = said_.textScale};
    if (std::exchange(look_, now) == now) {
        return;
    }
    // A listener may add another, which is told from the next time on.
    const auto listeners = listeners_;
    for (const auto& listener : listeners) {
        listener();
    }
}

} // namespace velmora
