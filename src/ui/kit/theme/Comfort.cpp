#include "ui/kit/theme/Comfort.h"

#include "settings/AppSettings.h"
#include "ui/kit/Kit.h"

#include <QGuiApplication>
#include <algorithm>
#include <utility>

namespace velmora {

Comfort::Comfort(AppSettings& settings, QObject* parent)
    : QObject(parent), settings_(settings),
      connection_(settings.changed().connect([this] { follow(); })) {
    follow();
}

Comfort* Comfort::create(QQmlEngine* engine, QJSEngine*) {
    return kitOf<Comfort>(engine);
}

double Comfort::windowScale(double textScale, const QString& platform, double pixelsPerPoint) {
    constexpr double rounding = 0.01; // a resolution is a whole number
    const double wanted = std::clamp(textScale, 1.0, largest);
    const bool isInResolution = platform == "xcb" && pixelsPerPoint >= wanted - rounding;
    return isInResolution ? 1.0 : wanted;
}

void Comfort::follow() {
    const Appearance::Look look = settings_.desktopLook();
    const double scale =
        windowScale(look.textScale, QGuiApplication::platformName(), qGuiApp->devicePixelRatio());
    const bool scaleIsNew = std::exchange(scale_, scale) != scale;
    const bool stillIsNew = std::exchange(still_, look.isStill) != look.isStill;
    if (scaleIsNew || stillIsNew) {
        Q_EMIT changed();
    }
}

} // namespace velmora
