#include "ui/kit/meters/LevelBar.h"

#include "ui/kit/controls/Scales.h"
#include "ui/kit/meters/FrameClock.h"

#include <QLinearGradient>
#include <QPainter>
#include <algorithm>
#include <chrono>
#include <cmath>

namespace velmora {

namespace {

using namespace std::chrono_literals;

constexpr auto glide = 80ms;
constexpr double ticksOfGlide = double(glide.count()) / double(FrameClock::period.count());

const QLinearGradient& colours() {
    static const QLinearGradient gradient = [] {
        QLinearGradient made(0, 0, Scales::meterLength, 0);
        constexpr QRgb green = 0xFF34B25A;
        constexpr QRgb yellow = 0xFFF5C93B;
        constexpr QRgb orange = 0xFFF28C28;
        constexpr QRgb red = 0xFFE5484D;
        made.setStops({{0, green}, {0.6, green}, {0.78, yellow}, {0.9, orange}, {1, red}});
        return made;
    }();
    return gradient;
}

} // namespace

LevelBar::LevelBar(QQuickItem* parent) : MovingItem(parent) {
    setImplicitSize(Scales::meterLength, 6);
}

void LevelBar::setActive(bool active) {
    if (active_ == active) {
        return;
    }
    active_ = active;
    Q_EMIT activeChanged();
    aim();
}

void LevelBar::setLevel(double level) {
    if (level_ == level) {
        return;
    }
    level_ = level;
    Q_EMIT levelChanged();
    aim();
}

void LevelBar::setTrackColor(const QColor& color) {
    if (trackColor_ == color) {
        return;
    }
    trackColor_ = color;
    Q_EMIT trackColorChanged();
    update();
}

void LevelBar::draw(QPainter& painter, const QRectF& place, double) {
    painter.translate(place.topLeft());
    painter.scale(place.width() / width(), place.height() / height());
    const auto capsule = [&](double length) {
        const double radius = std::min(length, height()) / 2;
        painter.drawRoundedRect(QRectF(0, 0, length, height()), radius, radius);
    };
    painter.setPen(Qt::NoPen);
    painter.setBrush(trackColor_);
    capsule(width());
    painter.setBrush(colours());
    capsule(fill_);
}

void LevelBar::tick() {
    const double left = target_ - fill_;
    showFill(std::abs(left) <= std::abs(stride_) ? target_ : fill_ + stride_);
    setMoving(fill_ != target_);
}

void LevelBar::aim() {
    target_ = active_ ? Scales::meterFill(level_) : 0.0;
    stride_ = (target_ - fill_) / ticksOfGlide;
    if (!isVisible()) {
        showFill(target_);
    }
    setMoving(fill_ != target_);
}

void LevelBar::showFill(double fill) {
    if (fill_ == fill) {
        return;
    }
    fill_ = fill;
    Q_EMIT fillChanged();
    update();
}

} // namespace velmora
