#include "ui/kit/meters/WaveformView.h"

#include "settings/Theme.h"
#include "ui/kit/meters/FrameClock.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>
#include <vector>

namespace velmora {

namespace {

constexpr double thickness = 1.75;    // points
constexpr double fade = 0.12;         // of the width, at each end
constexpr double longestUnrest = 4.5; // seconds, after what runs has stopped

/// Opacity at a place, 0 … 1 along the view: the lines fade out at both ends.
double opacityAt(double x) {
    return std::clamp(std::min(x, 1 - x) / fade, 0.0, 1.0);
}

/// Lays a colour over one pixel. @param opacity  0 … 1
void blend(QRgb& pixel, const Color& color, double opacity) {
    const auto channel = [&](double above, int below) {
        return int(std::lround(255 * opacity * above + (1 - opacity) * below));
    };
    pixel = qRgba(channel(color.red, qRed(pixel)),
                  channel(color.green, qGreen(pixel)),
                  channel(color.blue, qBlue(pixel)),
                  channel(1, qAlpha(pixel)));
}

/// Draws a line whose middle is at `middles[column]`, in pixels, by how much of each pixel of a
/// column it covers: a stroke of QPainter looks the same and costs several times as much.
void drawLine(QImage& picture,
              const std::vector<double>& middles,
              double width,
              const Color& color) {
    const std::size_t last = middles.size() - 1;
    for (std::size_t column = 0; column <= last; ++column) {
        const std::size_t before = column == 0 ? 0 : column - 1;
        const std::size_t after = std::min(column + 1, last);
        const double slope = (middles[after] - middles[before]) / double(after - before);
        const double half = width / 2 * std::hypot(1.0, slope);
        const double top = middles[column] - half;
        const double bottom = middles[column] + half;
        const double opacity = opacityAt((double(column) + 0.5) / double(middles.size()));
        const int end = std::min(int(std::ceil(bottom)), picture.height());
        for (int row = std::max(int(top), 0); row < end; ++row) {
            const double covered = std::min(row + 1.0, bottom) - std::max(double(row), top);
            auto* pixels = reinterpret_cast<QRgb*>(picture.scanLine(row));
            blend(pixels[column], color, opacity * covered);
        }
    }
}

} // namespace

WaveformView::WaveformView(QQuickItem* parent) : MovingItem(parent) {
    setImplicitHeight(28);
    setMoving(true);
}

void WaveformView::draw(QPainter& painter, const QRectF& place, double scale) {
    QImage picture(place.size().toSize(), QImage::Format_ARGB32_Premultiplied);
    if (picture.width() < 2) {
        return;
    }
    picture.fill(Qt::transparent);
    const double middle = place.height() / 2;
    const double amplitude = middle - thickness * scale;
    if (shape_.places() != std::size_t(picture.width())) {
        shape_.setPlaces(std::size_t(picture.width()));
    }
    for (const std::size_t line : {1U, 0U}) {
        std::vector<double> middles = shape_.heights(line, seconds_);
        for (double& height : middles) {
            height = middle - amplitude * height;
        }
        drawLine(picture, middles, thickness * scale, line == 0 ? Theme::ocean : Theme::lagoon);
    }
    painter.drawImage(place.topLeft(), picture);
}

void WaveformView::tick() {
    seconds_ += std::chrono::duration<double>(FrameClock::period).count();
    update();
    if (!running_) {
        restless_ += std::chrono::duration<double>(FrameClock::period).count();
        decide();
    }
}

void WaveformView::setRunning(bool running) {
    if (std::exchange(running_, running) != running) {
        restless_ = 0.0;
        decide();
        Q_EMIT runningChanged();
    }
}

void WaveformView::setStill(bool still) {
    if (std::exchange(still_, still) != still) {
        decide();
        Q_EMIT stillChanged();
    }
}

void WaveformView::decide() {
    setMoving(!still_ && (running_ || restless_ < longestUnrest));
}

} // namespace velmora
