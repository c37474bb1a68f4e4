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
constexpr DynamicColor shadowLayer{deep.withOpacity(0.035), deep.withOpacity(0.14)};
constexpr DynamicColor veilOver{deep.withOpacity(0.28), deep.withOpacity(0.6)};
constexpr DynamicColor activeOnPaper{Theme::ocean, Theme::lagoon};

} // namespace

ThemeColors::ThemeColors(AppSettings& settings, QObject* parent)
    : QObject(parent), settings_(settings), scheme_(settings.colorScheme()),
      connection_(settings.changed().connect([this] { follow(); })) {
}

ThemeColors* ThemeColors::create(QQmlEngine* engine, QJSEngine*) {
    return kitOf<ThemeColors>(engine);
}

QColor ThemeColors::ink() const {
    return shown(Theme::ink.in(scheme_));
}

QColor ThemeColors::ink60() const {
    return shown(Theme::ink60.in(scheme_));
}

QColor ThemeColors::ink40() const {
    return shown(Theme::ink40.in(scheme_));
}

QColor ThemeColors::ink15() const {
    return shown(Theme::ink15.in(scheme_));
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

QColor ThemeColors::active() const {
    return shown(activeOnPaper.in(scheme_));
}

QColor ThemeColors::shadow() const {
    return shown(shadowLayer.in(scheme_));
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
    return shown(Theme::palm);
}

void ThemeColors::follow() {
    const ColorScheme scheme = settings_.colorScheme();
    if (scheme == scheme_) {
        return;
    }
    scheme_ = scheme;
    Q_EMIT changed();
}

} // namespace velmora
