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

    portal.change(colorScheme, prefersLight);
    ASSERT_TRUE(loop.runUntil([&] { return !appearance.isDark(); }));
    portal.change(colorScheme, prefersDark);
    ASSERT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
    portal.change(colorScheme, noPreference);
    ASSERT_TRUE(loop.runUntil([&] { return !appearance.isDark(); }));

    EXPECT_EQ(told, (std::vector{true, false, true, false}));
}

TEST_F(DesktopAppearanceTest, IgnoresOtherSettingsAndRepetitions) {
    FakePortal portal(bus.address(), prefersDark);
    DesktopAppearance appearance(bus.address());
    ASSERT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
    int told = 0;
    appearance.onChange([&] { ++told; });

    portal.change("accent-color", prefersLight);
    portal.change(colorScheme, prefersDark);
    portal.change(colorScheme,
                  prefersLight); // messages keep their order: with this one, the others have come

    ASSERT_TRUE(loop.runUntil([&] { return !appearance.isDark(); }));
    EXPECT_EQ(told, 1);
}

TEST_F(DesktopAppearanceTest, AsksAPortalThatAppearsLater) {
    const DesktopAppearance appearance(bus.address());
    const FakePortal portal(bus.address(), prefersDark);

    EXPECT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
}

TEST_F(DesktopAppearanceTest, ReadsWhatWasSetBeforeItCame) {
    FakePortal portal(bus.address(), noPreference);
    portal.change("contrast", 1U);
    portal.change("enable-animations", false, gnomeInterface);
    portal.change(textScale, 1.5, gnomeInterface);
    const DesktopAppearance appearance(bus.address());

    EXPECT_TRUE(loop.runUntil([&] {
        return appearance.look() ==
               Appearance::Look{.isHighContrast = true, .isStill = true, .textScale = 1.5};
    }));
}

TEST_F(DesktopAppearanceTest, EitherOfTwoSettingsAsksForContrastAndForStillness) {
    FakePortal portal(bus.address(), noPreference);
    const DesktopAppearance appearance(bus.address());
    const auto becomes = [&](bool isHighContrast, bool isStill) {
        return loop.runUntil([&, isHighContrast, isStill] {
            return appearance.look() ==
                   Appearance::Look{.isHighContrast = isHighContrast, .isStill = isStill};
        });
    };

    portal.change("high-contrast", true, gnomeAccess);
    EXPECT_TRUE(becomes(true, false));
    portal.change("contrast", 1U);
    portal.change("high-contrast", false, gnomeAccess);
    portal.change("reduced-motion", 1U);
    EXPECT_TRUE(becomes(true, true));
    portal.change("contrast", 0U);
    portal.change("enable-animations", false, gnomeInterface);
    portal.change("reduced-motion", 0U);
    portal.change(textScale, 0.0, gnomeInterface); // no size at all
    portal.change(colorScheme, prefersDark);
    EXPECT_TRUE(loop.runUntil([&] { return appearance.isDark(); }));
    EXPECT_EQ(appearance.look(), (Appearance::Look{.isDark = true, .isStill = true}));
}

TEST(DesktopAppearance, IsLightWithoutABus) {
    QtEventLoop loop;
    const DesktopAppearance appearance("unix:path=/nowhere/bus");

    EXPECT_FALSE(appearance.isDark());
}

} // namespace
} // namespace velmora
