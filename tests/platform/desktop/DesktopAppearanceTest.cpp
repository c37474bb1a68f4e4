#include "platform/desktop/DesktopAppearance.h"

#include "platform/desktop/FakePortal.h"
#include "platform/desktop/PrivateBus.h"
#include "platform/qt/QtEventLoop.h"

#include <gtest/gtest.h>
#include <vector>

namespace velmora {
namespace {

class DesktopAppearanceTest : public testing::Test {
protected:
    QtEventLoop loop;
    PrivateBus bus;
};

TEST_F(DesktopAppearanceTest, IsLightUntilThePortalHasAnswered) {
    const FakePortal portal(bus.address(), prefersDark);
    const DesktopAppearance appearance(bus.address());

    EXPECT_FALSE(appearance.isDark());

    EXPECT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
}

TEST_F(DesktopAppearanceTest, FollowsEveryChangeAndTellsIt) {
    FakePortal portal(bus.address(), prefersDark);
    DesktopAppearance appearance(bus.address());
    std::vector<bool> told;
    appearance.onChange([&] { told.push_back(appearance.isDark()); });
    ASSERT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));

    portal.change(prefersLight);
    ASSERT_TRUE(loop.runUntil([&] { return !appearance.isDark(); }));
    portal.change(prefersDark);
    ASSERT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
    portal.change(noPreference);
    ASSERT_TRUE(loop.runUntil([&] { return !appearance.isDark(); }));

    EXPECT_EQ(told, (std::vector{true, false, true, false}));
}

TEST_F(DesktopAppearanceTest, IgnoresOtherSettingsAndRepetitions) {
    FakePortal portal(bus.address(), prefersDark);
    DesktopAppearance appearance(bus.address());
    ASSERT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
    int told = 0;
    appearance.onChange([&] { ++told; });

    portal.change(prefersLight, "contrast");
    portal.change(prefersDark);
    portal.change(prefersLight); // messages keep their order: with this one, the others have come

    ASSERT_TRUE(loop.runUntil([&] { return !appearance.isDark(); }));
    EXPECT_EQ(told, 1);
}

TEST_F(DesktopAppearanceTest, AsksAPortalThatAppearsLater) {
    const DesktopAppearance appearance(bus.address());
    const FakePortal portal(bus.address(), prefersDark);

    EXPECT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
}

TEST(DesktopAppearance, IsLightWithoutABus) {
    QtEventLoop loop;
    const DesktopAppearance appearance("unix:path=/nowhere/bus");

    EXPECT_FALSE(appearance.isDark());
}

} // namespace
} // namespace velmora
