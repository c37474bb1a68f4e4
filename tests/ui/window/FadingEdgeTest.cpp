#include "ui/support/QmlTest.h"

#include <cmath>
#include <vector>

namespace velmora {

namespace {

class FadingEdgeItem : public QmlTest {
protected:
    FadingEdgeItem()
        : root(show("Rectangle { color: \"white\"; width: 120; height: 120; property alias edge: e;"
                    " FadingEdge { id: e; x: 20; y: 20; width: 80; height: 80;"
                    "  color: \"#80000000\"; reach: 10; radius: 12 } }")) {}

    /// How bright each pixel is on the way from the rectangle's edge to the left, in steps of 255.
    std::vector<int> outwards() {
        const QImage picture = grab();
        const double scale = picture.devicePixelRatio();
        std::vector<int> levels;
        for (int x = int(30 * scale) - 1; x >= int(20 * scale); --x) {
            levels.push_back(qGray(picture.pixel(x, int(60 * scale))));
        }
        return levels;
    }

    QQuickItem& root;
};

TEST_F(FadingEdgeItem, IsDarkestAtItsRectangleAndFadesWithoutSteps) {
    const std::vector<int> levels = outwards();
    EXPECT_NEAR(levels.front(), 127, 20);
    for (std::size_t i = 1; i < levels.size(); ++i) {
        EXPECT_GE(levels[i], levels[i - 1]) << i;
        if (i < levels.size() / 2) {
            EXPECT_GT(levels[i], levels[i - 1]) << "a band at " << i;
        }
    }
    EXPECT_GE(levels.back(), 253);
}

TEST_F(FadingEdgeItem, IsAsDarkRoundItsCornersAsBesideThem) {
    // Five points from the corner's arc, on its diagonal.
    const double across = 30 + 12 - (12 + 5) / std::sqrt(2.0);
    const int there = colorAt(root, {across, across}).red();
    EXPECT_GT(there, colorAt(root, {30 - 4, 60}).red());
    EXPECT_LT(there, colorAt(root, {30 - 7, 60}).red());
}

TEST_F(FadingEdgeItem, LeavesItsMiddleAlone) {
    EXPECT_EQ(colorAt(root, {60, 60}), QColor(Qt::white));
}

TEST_F(FadingEdgeItem, TakesANewColourAtOnce) {
    const QPointF beside(29, 60);
    const QColor before = colorAt(root, beside);
    root.property("edge").value<QObject*>()->setProperty("color", QColor(255, 0, 0, 128));
    EXPECT_GT(colorAt(root, beside).red(), before.red());
}

} // namespace

} // namespace velmora
