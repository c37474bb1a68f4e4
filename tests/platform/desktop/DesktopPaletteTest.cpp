// The colours that a desktop gives to a program with windows.

#include "platform/desktop/DesktopAppearance.h"

#include "platform/desktop/FakePortal.h"
#include "platform/desktop/PrivateBus.h"

#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QPalette>
#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <memory>

namespace velmora {
namespace {

class DesktopPaletteTest : public testing::Test {
    static std::unique_ptr<QGuiApplication> makeProgram() {
        static int count = 1;
        static char name[] = "";
        static char* arguments[] = {name, nullptr};
        qputenv("QT_QPA_PLATFORM", "offscreen");
        return std::make_unique<QGuiApplication>(count, arguments);
    }
    std::unique_ptr<QGuiApplication> program_ = makeProgram();

protected:
    DesktopPaletteTest() { give(Qt::white, Qt::black); }

    static void give(const QColor& window, const QColor& text) {
        QPalette palette;
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        QGuiApplication::setPalette(palette);
        QCoreApplication::processEvents();
    }
    static bool runUntil(const std::function<bool()>& condition) {
        const QDeadlineTimer patience(std::chrono::seconds{20});
        while (!condition() && !patience.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
        }
        return condition();
    }

    PrivateBus bus;
};

TEST_F(DesktopPaletteTest, DecidesWhereThereIsNoPortal) {
    DesktopAppearance appearance(bus.address());
    int told = 0;
    appearance.onChange([&] { ++told; });
    EXPECT_FALSE(appearance.isDark());

    give(Qt::black, Qt::white);
    EXPECT_TRUE(appearance.isDark());
    give(QColor(240, 240, 240), Qt::darkBlue);
    EXPECT_FALSE(appearance.isDark());

    EXPECT_EQ(told, 2);
    give(Qt::black, Qt::white);
    EXPECT_TRUE(DesktopAppearance(bus.address()).isDark());
}

TEST_F(DesktopPaletteTest, GivesWayToWhatThePortalPrefersAndReturnsWhenItPrefersNothing) {
    give(Qt::black, Qt::white);
    FakePortal portal(bus.address(), prefersLight);
    const DesktopAppearance appearance(bus.address());
    ASSERT_TRUE(runUntil([&] { return !appearance.isDark(); }));

    portal.change(colorScheme, noPreference);

    EXPECT_TRUE(runUntil([&] { return appearance.isDark(); }));
}

} // namespace
} // namespace velmora
