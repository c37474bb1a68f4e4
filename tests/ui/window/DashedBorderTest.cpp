#include "ui/support/QmlTest.h"

namespace velmora {

namespace {

class DashedBorderItem : public QmlTest {};

TEST_F(DashedBorderItem, DrawsDashesAlongItsEdgeAndNothingInside) {
    auto& item = show("Rectangle { color: \"white\"; width: 200; height: 40;"
                      " DashedBorder { anchors.fill: parent; radius: 12; color: \"black\" } }");
    const QImage picture = grab();
    const double scale = picture.devicePixelRatio();
    int changes = 0;
    bool dark = false;
    for (int x = int(20 * scale); x < int(180 * scale); ++x) {
        const bool here = picture.pixelColor(x, int(0.5 * scale)).red() < 128;
        changes += here != dark ? 1 : 0;
        dark = here;
    }
    // 160 points in dashes and gaps of 8.7 points together
    EXPECT_GE(changes, 32);
    EXPECT_LE(changes, 40);
    EXPECT_EQ(colorAt(item, {100, 20}), QColor(Qt::white));
}

TEST_F(DashedBorderItem, TakesANewColourAtOnce) {
    auto& item =
        show("Rectangle { color: \"white\"; width: 200; height: 40; property alias dashes: border;"
             " DashedBorder { id: border; anchors.fill: parent; radius: 0; color: \"black\" } }");
    const QPointF firstDash(2, 0.5);
    EXPECT_LT(colorAt(item, firstDash).red(), 128);
    item.property("dashes").value<QObject*>()->setProperty("color", QColor(Qt::red));
    EXPECT_GT(colorAt(item, firstDash).red(), 128);
    EXPECT_LT(colorAt(item, firstDash).green(), 128);
}

} // namespace

} // namespace velmora
