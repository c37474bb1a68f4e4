#include "ui/kit/theme/ThemeColors.h"

#include "settings/AppSettings.h"
#include "settings/Theme.h"
#include "ui/kit/Kit.h"

namespace velmora {

namespace {

QColor shown(const Color& color) {
    return QColor::fromRgbF(static_cast<float>(color.red),
                            static_cast<float>(color.green),
                            static_cast<float>(color.blue),
                            static_cast<float>(color.alpha));
}

/// A very deep sea: what shadows and veils are made of.
constexpr Color deep{0.02, 0.08, 0.1};
constexpr DynamicColor shadowWhereItBegins{deep.withOpacity(0.3), deep.withOpacity(0.8)};
constexpr DynamicColor veilOver{deep.withOpacity(0.28), deep.withOpacity(0.6)};
/// Relatives of ocean, lagoon and coral that can be read where those cannot.
constexpr Color deepOcean = colorFromHex(0x07545E);
constexpr Color paleLagoon = colorFromHex(0x1FB0BC);
constexpr Color foam = colorFromHex(0x55D3DC);
constexpr DynamicColor activeOnPaper{Theme::ocean, paleLagoon};
constexpr DynamicColor activeInHighContrast{deepOcean, foam};
constexpr DynamicColor focusRing{Theme::ocean, Theme::lagoon};
constexpr DynamicColor alarming{colorFromHex(0xB83A26), Theme::coral};
constexpr DynamicColor alarmingInHighContrast{colorFromHex(0x8A2413), colorFromHex(0xFFB0A4)};
constexpr DynamicColor palmInHighContrast{colorFromHex(0x1A6B45), colorFromHex(0x4CC79A)};

constexpr double softOpacity = 0.75;
constexpr double faintestOpacity = 0.25;
constexpr double grooveOpacity = 0.15;

} // namespace

ThemeColors::ThemeColors(AppSettings& settings, QObject* parent)
    : QObject(parent), settings_(settings), scheme_(settings.colorScheme()),
      isHighContrast_(settings.desktopLook().isHighContrast),
      connection_(settings.changed().connect([this] { follow(); })) {
}

ThemeColors* ThemeColors::create(QQmlEngine* engine, QJSEngine*) {
    return kitOf<ThemeColors>(engine);
}

QColor ThemeColors::ink() const {
    return shown(Theme::ink.in(scheme_));
}

QColor ThemeColors::ink60() const {
    return inkAt(Theme::ink60.light.alpha, 1);
}

QColor ThemeColors::ink40() const {
    return inkAt(Theme::ink40.light.alpha, 0.8);
}

QColor ThemeColors::ink15() const {
    return inkAt(Theme::ink15.light.alpha, 0.6);
}

QColor ThemeColors::paper() const {
    return shown(Theme::paper.in(scheme_));
}

QColor ThemeColors::sand() const {
    return shown(Theme::sand.in(scheme_));
}

QColor ThemeColors::shore() const {
    return shown(Theme::shore.in(scheme_));
}

QColor ThemeColors::soft() const {
    return inkAt(softOpacity, 1);
}

QColor ThemeColors::faintest() const {
    return inkAt(faintestOpacity, 0.8);
}

QColor ThemeColors::groove() const {
    return inkAt(grooveOpacity, grooveOpacity);
}

QColor ThemeColors::meterGroove() const {
    // The meter's bright colours stand out from what is dark only.
    return dark() ? groove() : inkAt(grooveOpacity, 1);
}

QColor ThemeColors::active() const {
    return shown((isHighContrast_ ? activeInHighContrast : activeOnPaper).in(scheme_));
}

QColor ThemeColors::silenced() const {
    return isHighContrast_ ? active() : ocean();
}

QColor ThemeColors::alarm() const {
    return shown((isHighContrast_ ? alarmingInHighContrast : alarming).in(scheme_));
}

QColor ThemeColors::ring() const {
    return isHighContrast_ ? ink() : shown(focusRing.in(scheme_));
}

QColor ThemeColors::shadow() const {
    return shown(shadowWhereItBegins.in(scheme_));
}

QColor ThemeColors::veil() const {
    return shown(veilOver.in(scheme_));
}

QColor ThemeColors::onOcean() const {
    return shown(Theme::paper.light);
}

QColor ThemeColors::accentLeading() const {
    return shown(accentGradient.leading);
}

QColor ThemeColors::accentTrailing() const {
    return shown(accentGradient.trailing);
}

QColor ThemeColors::ocean() const {
    return shown(Theme::ocean);
}

QColor ThemeColors::lagoon() const {
    return shown(Theme::lagoon);
}

QColor ThemeColors::coral() const {
    return shown(Theme::coral);
}

QColor ThemeColors::sun() const {
    return shown(Theme::sun);
}

QColor ThemeColors::palm() const {
    return shown(isHighContrast_ ? palmInHighContrast.in(scheme_) : Theme::palm);
}

void ThemeColors::follow() {
    const ColorScheme scheme = settings_.colorScheme();
    const bool isHighContrast = settings_.desktopLook().isHighContrast;
    if (scheme == scheme_ && isHighContrast == isHighContrast_) {
        return;
    }
    scheme_ = scheme;
    isHighContrast_ = isHighContrast;
    Q_EMIT changed();
}

QColor ThemeColors::inkAt(double opacity, double inHighContrast) const {
    return shown(Theme::ink.in(scheme_).withOpacity(isHighContrast_ ? inHighContrast : opacity));
}

} // namespace velmora
