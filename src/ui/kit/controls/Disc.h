// Disc.h: a round shape with an outline.
#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace velmora {

/// A circle that is round at any size: without a graphics card, a Rectangle of an odd size with
/// rounded corners is drawn as a rounded square.
///
/// Threads: main; `paint` on the thread that renders, while the main thread waits.
class Disc : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QColor color MEMBER color_ NOTIFY changed)
    Q_PROPERTY(QColor outlineColor MEMBER outlineColor_ NOTIFY changed)
    Q_PROPERTY(double outlineWidth MEMBER outlineWidth_ NOTIFY changed)

public:
    explicit Disc(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QColor color_;
    QColor outlineColor_;
    double outlineWidth_ = 2.0; // points, inside the circle
};

} // namespace velmora
