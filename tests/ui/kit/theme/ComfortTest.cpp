#include "ui/kit/theme/Comfort.h"

#include "ui/kit/Kit.h"
#include "ui/support/QmlTest.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace velmora {

namespace {

TEST(ComfortScale, IsTheTextsWithinItsBounds) {
    EXPECT_EQ(Comfort::windowScale(1.0, "wayland", 1), 1.0);
    EXPECT_EQ(Comfort::windowScale(1.25, "wayland", 1), 1.25);
    EXPECT_EQ(Comfort::windowScale(1.25, "wayland", 2), 1.25);
    EXPECT_EQ(Comfort::windowScale(1.5, "xcb", 1), 1.5);
    EXPECT_EQ(Comfort::windowScale(3.0, "wayland", 1), 1.5);
    EXPECT_EQ(Comfort::windowScale(0.8, "wayland", 1), 1.0);
}

TEST(ComfortScale, IsNotCountedTwiceWhereTheResolutionHasIt) {
    EXPECT_EQ(Comfort::windowScale(1.25, "xcb", 1.25), 1.0);
    EXPECT_EQ(Comfort::windowScale(1.23, "xcb", 1.2292), 1.0); // 118 dots an inch
    EXPECT_EQ(Comfort::windowScale(1.25, "xcb", 2.5), 1.0);
    EXPECT_EQ(Comfort::windowScale(1.25, "xcb", 1.1), 1.25);
}

class ComfortTest : public QmlTest {
protected:
    Comfort& comfort = *kitOf<Comfort>(engine.get());
};

TEST_F(ComfortTest, FollowsTheDesktopAndTellsWhatIsNewOnly) {
    const QSignalSpy told(&comfort, &Comfort::changed);

    machine.appearance.setLook({.textScale = 1.25});
    EXPECT_EQ(comfort.scale(), 1.25);
    EXPECT_FALSE(comfort.still());
    machine.appearance.setLook({.isDark = true, .textScale = 1.25});
    settings.setLanguage("en");
    EXPECT_EQ(told.count(), 1);
    machine.appearance.setLook({.isStill = true});

    EXPECT_EQ(comfort.scale(), 1.0);
    EXPECT_TRUE(comfort.still());
    EXPECT_EQ(told.count(), 2);
}

} // namespace

} // namespace velmora
