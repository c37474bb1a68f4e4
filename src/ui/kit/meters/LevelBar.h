// LevelBar.h: the drawn part of a small level meter.
#pragma once

#include "ui/kit/meters/MovingItem.h"

#include <QColor>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// A capsule that fills with green, yellow, orange and red from −60 dBFS to 0 dBFS. A new level is
/// reached linearly in 0.08 s.
///
/// Its base is named in full because Qt's tools take the name as it is written.
///
/// Threads: main.
class LevelBar : public velmora::MovingItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)
    Q_PROPERTY(double level READ level WRITE setLevel NOTIFY levelChanged)
    Q_PROPERTY(QColor trackColor READ trackColor WRITE setTrackColor NOTIFY trackColorChanged)
    Q_PROPERTY(double fill READ fill NOTIFY fillChanged)

public:
    explicit LevelBar(QQuickItem* parent = nullptr);

    /// Off, the bar is empty whatever the level.
    [[nodiscard]] bool isActive() const { return active_; }
    void setActive(bool active);
    /// Linear peak, 0 … 1 and above.
    [[nodiscard]] double level() const { return level_; }
    void setLevel(double level);
    [[nodiscard]] QColor trackColor() const { return trackColor_; }
    void setTrackColor(const QColor& color);
    /// The filled length that is shown now, in points.
    [[nodiscard]] double fill() const { return fill_; }

Q_SIGNALS:
    void activeChanged();
    void levelChanged();
    void trackColorChanged();
    void fillChanged();

protected:
    void draw(QPainter& painter, const QRectF& place, double scale) override;
    void tick() override;

private:
    void aim();
    void showFill(double fill);

    bool active_ = true;
    double level_ = 0.0;
    QColor trackColor_;
    double fill_ = 0.0;   // points
    double target_ = 0.0; // points
    double stride_ = 0.0; // points a tick
};

} // namespace velmora
