// Round corners and outlines, pixel by pixel, whatever the size of a point is.

#include "ui/window/WindowTest.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace velmora {

namespace {

bool isInside(const QRectF& shape, double radius, QPointF at) {
    const double dx =
        std::max({shape.left() + radius - at.x(), at.x() - shape.right() + radius, 0.0});
    const double dy =
        std::max({shape.top() + radius - at.y(), at.y() - shape.bottom() + radius, 0.0});
    return shape.contains(at) && std::hypot(dx, dy) <= radius;
}

/// A shape with an outline inside its bounds, in pixels.
struct Ring {
    QRectF bounds;
    double radius = 0;
    double line = 0;

    /// How much of a pixel the outline covers, by many places in it.
    [[nodiscard]] double covers(QPoint pixel) const {
        constexpr int places = 16; // in each direction
        const QRectF hole = bounds.adjusted(line, line, -line, -line);
        int covered = 0;
        for (int row = 0; row < places; ++row) {
            for (int column = 0; column < places; ++column) {
                const QPointF at = pixel + QPointF(column + 0.5, row + 0.5) / places;
                covered +=
                    isInside(bounds, radius, at) && !isInside(hole, radius - line, at) ? 1 : 0;
            }
        }
        return double(covered) / (places * places);
    }
};

class RoundedItem : public QmlTest {
protected:
    /// Draws a black outline where `place` says, in points, that are `scale` times as large as the
    /// window's.
    QImage outline(const QRectF& place, double radius, double width, double scale) {
        show(QStringLiteral("Rectangle { width: 400; height: 300; Item { scale: %1;"
                            " transformOrigin: Item.TopLeft; Rounded { x: %2; y: %3; width: %4;"
                            " height: %5; radius: %6; outlineWidth: %7; outlineColor: \"black\" }"
                            " } }")
                 .arg(scale)
                 .arg(place.x())
                 .arg(place.y())
                 .arg(place.width())
                 .arg(place.height())
                 .arg(radius)
                 .arg(width)
                 .toUtf8());
        return grab();
    }

    /// The largest difference between a pixel and what the shape covers of it.
    static double fault(const QImage& picture, const Ring& ring) {
        double worst = 0;
        const QRect around = ring.bounds.toRect().adjusted(-2, -2, 2, 2);
        for (int y = around.top(); y <= around.bottom(); ++y) {
            for (int x = around.left(); x <= around.right(); ++x) {
                const double drawn = 1 - picture.pixelColor(x, y).lightnessF();
                worst = std::max(worst, std::abs(drawn - ring.covers({x, y})));
            }
        }
        return worst;
    }

    static constexpr double hardlySeen = 0.12;
};

TEST_F(RoundedItem, HasAnOutlineOfWholePixelsAndSmoothCorners) {
    const QRectF place(10.3, 7.7, 61, 41);
    for (const double scale : {1.0, 1.25, 1.5}) {
        for (const double width : {1.0, 2.0}) {
            const QImage picture = outline(place, 12, width, scale);
            const double pixels = scale * picture.devicePixelRatio();
            const QRectF wanted(place.topLeft() * pixels, place.size() * pixels);
            const Ring ring{
                .bounds = {QPointF(std::round(wanted.left()), std::round(wanted.top())),
                           QPointF(std::round(wanted.right()), std::round(wanted.bottom()))},
                .radius = 12 * pixels,
                .line = std::round(width * pixels)};
            EXPECT_LT(fault(picture, ring), hardlySeen) << width << " points at " << pixels;
        }
    }
}

TEST_F(RoundedItem, IsACircleWhereverItStands) {
    for (const double scale : {1.0, 1.25, 1.5}) {
        for (const double left : {10.1, 10.3, 10.7}) {
            const QImage picture = outline({left, 9.1, 13, 13}, 6.5, 2, scale);
            const double pixels = scale * picture.devicePixelRatio();
            const double side = std::round(13 * pixels);
            const Ring ring{
                .bounds = {std::round(left * pixels), std::round(9.1 * pixels), side, side},
                .radius = std::min(6.5 * pixels, side / 2),
                .line = std::round(2 * pixels)};
            EXPECT_LT(fault(picture, ring), hardlySeen) << left << " at " << pixels;
        }
    }
}

TEST_F(RoundedItem, GoesFromOneColourToAnother) {
    auto& item = show("Rounded { width: 100; height: 20; color: \"#000000\";"
                      " trailingColor: \"#ff0000\" }");
    EXPECT_LT(colorAt(item, {2, 10}).red(), 20);
    EXPECT_NEAR(colorAt(item, {50, 10}).red(), 128, 6);
    EXPECT_GT(colorAt(item, {98, 10}).red(), 235);
    item.setProperty("trailingColor", QColor(Qt::transparent));
    EXPECT_EQ(colorAt(item, {98, 10}), QColor(Qt::black));
}

TEST_F(RoundedItem, FadesWhole) {
    auto& item = show("Rounded { width: 100; height: 20; color: \"black\"; opacity: 0.5 }");
    EXPECT_NEAR(colorAt(item, {50, 10}).red(), 128, 2);
    item.setOpacity(0);
    EXPECT_EQ(colorAt(item, {50, 10}), QColor(Qt::white));
}

TEST_F(RoundedItem, IsCutWhereItsListEnds) {
    auto& list = show("Item { width: 60; height: 40; clip: true;"
                      " Rounded { x: 30; y: 10; width: 60; height: 20; color: \"black\" } }");
    EXPECT_EQ(colorAt(list, {58, 20}), QColor(Qt::black));
    EXPECT_EQ(colorAt(list, {62, 20}), QColor(Qt::white));
}

TEST_F(RoundedItem, IsNotSeenWhereItLiesBeyondItsList) {
    auto& place = show("Rectangle { width: 80; height: 80; color: \"white\";"
                       " Item { width: 80; height: 40; clip: true;"
                       "  Rounded { y: 50; width: 80; height: 20; color: \"black\" } } }");
    EXPECT_EQ(colorAt(place, {40, 60}), QColor(Qt::white));
}

TEST_F(RoundedItem, TakesWhateverChangesAtOnce) {
    auto& item =
        show("Rectangle { color: \"white\"; width: 40; height: 40; property alias shape: it;"
             " Rounded { id: it; anchors.fill: parent; color: \"green\"; radius: 2;"
             "  outlineColor: \"blue\"; outlineWidth: 2 } }");
    auto* const shape = item.property("shape").value<QObject*>();
    const auto differsAt = [&](const QPointF& place, const char* property, const QVariant& value) {
        const QColor before = colorAt(item, place);
        shape->setProperty(property, value);
        return colorAt(item, place) != before;
    };
    EXPECT_TRUE(differsAt({20, 20}, "color", QColor(Qt::black)));
    EXPECT_TRUE(differsAt({30, 20}, "trailingColor", QColor(Qt::red)));
    EXPECT_TRUE(differsAt({20, 0.5}, "outlineColor", QColor(Qt::yellow)));
    EXPECT_TRUE(differsAt({20, 3.5}, "outlineWidth", 4));
    EXPECT_TRUE(differsAt({2, 2}, "radius", 20));
}

/// The real windows.
class RoundCorners : public WindowTest {
protected:
    void expectOurOwn() {
        for (QQuickItem* item : visibleItems(*window().contentItem(), [](QQuickItem& one) {
                 return one.inherits("QQuickRectangle") && one.property("radius").toDouble() > 0;
             })) {
            ADD_FAILURE() << item->parentItem()->metaObject()->className() << " "
                          << item->objectName().toStdString();
        }
    }
};

TEST_F(RoundCorners, StandOnAGroundThatReachesTheWindowsLastPixel) {
    settings.setAppearance("light");
    open();
    const int whole = window().height();
    for (int height = whole - 4; height < whole; ++height) {
        window().resize(window().width(), height);
        settle();
        settings.setAppearance(height % 2 == 0 ? "dark" : "light");
        const QImage picture = grab();
        const QPoint last(picture.width() - 1, picture.height() - 1);
        EXPECT_EQ(picture.pixelColor(last), window().color()) << height;
    }
}

TEST_F(RoundCorners, AreNeverDrawnByAPieceThatStepsThem) {
    openEverything();
    expectOurOwn();
    click("addSource");
    expectOurOwn();
    key(Qt::Key_Escape);
    Q_EMIT scene.model.savePromptRequested();
    settle();
    expectOurOwn();
    key(Qt::Key_Escape);
    scene.model.openExtraMenu()->activate(0);
    settle();
    expectOurOwn();
}

} // namespace

} // namespace velmora
