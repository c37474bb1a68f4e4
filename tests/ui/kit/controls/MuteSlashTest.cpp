#include "ui/support/QmlTest.h"

namespace velmora {

namespace {

TEST_F(QmlTest, AMuteSlashRunsFromCornerToCorner) {
    QQuickItem& slash = show("MuteSlash { x: 20; y: 20; width: 40; height: 20 }");
    const auto hasInk = [&](QPointF at) { return colorAt(slash, at) != QColor(Qt::white); };

    EXPECT_TRUE(hasInk({2, 19}));
    EXPECT_TRUE(hasInk({20, 10}));
    EXPECT_TRUE(hasInk({38, 1}));
    EXPECT_FALSE(hasInk({10, 5}));
    EXPECT_FALSE(hasInk({30, 15}));
}

} // namespace

} // namespace velmora
