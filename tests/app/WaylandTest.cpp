// The program on real Wayland desktops: its window, its menus, and how it comes to the front.

#include "app/FakePanel.h"
#include "app/WaylandRig.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <string>

namespace velmora {
namespace {

using namespace support;
using Kind = NestedCompositor::Kind;

constexpr double windowWidth = 400; // points
constexpr double menuHeight = 380;  // points, at most
// Middles of buttons, from the window's upper left.
constexpr QPointF effects(335, 173);
constexpr QPointF presets(150, -135); // from its lower left
constexpr QPointF sourcePicker(200, 117);

/// Each desktop at each scale.
class WaylandProgram : public WaylandRig, public testing::WithParamInterface<std::string> {
protected:
    void showWindowAndMenu(const Desktop& desktop, const std::string& pictures) {
        const ChildProcess program = launch();
        ASSERT_TRUE(drawsItsWindowSoon());
        const QRect window = content();
        // In a picture what points, and its shadow, is to be in the window.
        pointAt(window.topLeft() + QPoint(16, 16));
        const QImage closed = stillPicture();
        EXPECT_EQ(window.width(), windowWidth * desktop.pixels());
        EXPECT_TRUE(screen.adjusted(1, 1, -1, -1).contains(window));
        keepPicture(pictures + "-window");

        click(presets);
        ASSERT_TRUE(waitUntil([&] { return !window.contains(difference(closed, picture())); }));
        const QRect menu = difference(closed, stillPicture());
        keepPicture(pictures + "-menu");
        if (desktop.kind == Kind::sway) { // the other lets it hang below the screen
            EXPECT_GE(menu.height(), menuHeight * desktop.pixels());
        }

        key("Escape");
        EXPECT_TRUE(waitUntil([&] { return window.contains(difference(closed, picture())); }));
    }
};

TEST_P(WaylandProgram, ShowsItsWindowWholeAndAMenuThatLeavesIt) {
    const std::map<std::string, Desktop> desktops = {
        {"weston", {Kind::weston}},
        {"westonTwice", {Kind::weston, 2}},
        {"westonByHalf", {Kind::weston, 1, "1.5"}},
        {"sway", {Kind::sway}},
        {"swayTwice", {Kind::sway, 2}},
        {"swayByHalf", {Kind::sway, 1, "1.5"}},
    };
    const Desktop& desktop = desktops.at(GetParam());
    begin(desktop);
    keepPresets(20);
    showWindowAndMenu(desktop, GetParam());

    ASSERT_TRUE(waitUntil([&] { return content().isEmpty(); }));
    keepLook("dark", "en");
    showWindowAndMenu(desktop, GetParam() + "-dark-en");
}

INSTANTIATE_TEST_SUITE_P(
    ,
    WaylandProgram,
    testing::Values("weston", "westonTwice", "westonByHalf", "sway", "swayTwice", "swayByHalf"),
    [](const auto& name) { return name.param; });

/// One that lets nobody raise a window.
class WestonProgram : public WaylandRig {};

TEST_F(WestonProgram, TheTraysMenuAndItsItemBringACoveredWindowToTheFront) {
    const FakePanel panel(busAddress());
    begin({Kind::weston});
    const ChildProcess program = launch();
    ASSERT_TRUE(waitUntil([&] { return panel.hasItem(); }));
    panel.click();
    ASSERT_TRUE(drawsItsWindowSoon());

    for (const bool byMenu : {true, false}) {
        const ChildProcess other(
            {.arguments = {"weston-eventdemo", "--no-border", "-w1280", "-h1024"},
             .environment = environment(),
             .output = home.path() / "other"});
        ASSERT_TRUE(waitUntil([&] { return content().isEmpty(); }));
        byMenu ? panel.choose("Ouvrir Velmora") : panel.click();
        EXPECT_TRUE(drawsItsWindowSoon()) << (byMenu ? "menu" : "item");
    }
}

/// One that moves pop-ups onto the screen and gives the keyboard to whom a token is given.
class SwayProgram : public WaylandRig {
protected:
    /// Its title bar has the colour of the window with the keyboard.
    [[nodiscard]] bool isActive() const {
        constexpr int withinTitleBar = 5; // pixels
        const QRect window = content();
        const QPoint place(window.center().x(), window.top() - withinTitleBar);
        return !window.isEmpty() &&
               picture().pixelColor(place).name().toStdString() == NestedCompositor::activeTitle;
    }
};

TEST_F(SwayProgram, AMenuThatUnfoldsNearTheLowerEdgeStaysOnTheScreen) {
    begin({Kind::sway});
    const ChildProcess program = launch();
    ASSERT_TRUE(drawsItsWindowSoon());
    moveWindow({60, screen.bottom() - content().bottom() + 100});
    const QImage closed = stillPicture();
    click(sourcePicker);
    ASSERT_TRUE(waitUntil([&] { return closed != picture(); }));
    const QRect folded = difference(closed, stillPicture());
    keepPicture("sway-folded");

    key("End");
    key("Right");
    ASSERT_TRUE(waitUntil([&] { return difference(closed, picture()) != folded; }));
    const QRect unfolded = difference(closed, stillPicture());
    keepPicture("sway-unfolded");

    EXPECT_GE(unfolded.height(), folded.height() + 3 * 28);
    key("Escape");
    EXPECT_TRUE(waitUntil([&] { return difference(closed, picture()).height() < 100; }));
}

TEST_F(SwayProgram, AMenuThatFitsAboveItsButtonOnlyLeavesThatInSight) {
    begin({Kind::sway});
    keepPresets(20);
    const ChildProcess program = launch();
    ASSERT_TRUE(drawsItsWindowSoon());
    moveWindow({60, screen.bottom() - content().bottom() - 20});
    const QImage closed = stillPicture();
    const QRect window = content();

    click(presets);
    ASSERT_TRUE(waitUntil([&] { return closed != picture(); }));
    const QImage open = stillPicture();
    keepPicture("sway-above");

    EXPECT_LT(difference(closed, open).top(), window.bottom() + presets.y() - menuHeight);
    const QRect caption(window.left() + 30, window.bottom() + int(presets.y()) - 8, 120, 18);
    int most = 0; // shades of grey; a button under the pointer is a little darker
    for (int y = caption.top(); y < caption.bottom(); ++y) {
        for (int x = caption.left(); x < caption.right(); ++x) {
            most = std::max(most, std::abs(qGray(closed.pixel(x, y)) - qGray(open.pixel(x, y))));
        }
    }
    EXPECT_LT(most, 100);
}

TEST_F(SwayProgram, ItsWindowGrowsWithItsContentAndKeepsItsFooterOnTheScreen) {
    begin({Kind::sway, 1, "1.5"});
    keepActivePreset();
    const ChildProcess program = launch();
    ASSERT_TRUE(drawsItsWindowSoon());
    stillPicture();
    const QRect before = content();

    click(effects);
    ASSERT_TRUE(waitUntil([&] { return content().height() > before.height(); }));
    stillPicture();
    keepPicture("sway-grown");

    EXPECT_LT(content().bottom(), screen.bottom());
}

TEST_F(SwayProgram, ASecondLaunchBringsTheFirstWindowToTheFront) {
    begin({Kind::sway});
    const ChildProcess program = launch();
    ASSERT_TRUE(waitUntil([&] { return isActive(); }));
    const ChildProcess other({.arguments = {"weston-flower"}, .environment = environment()});
    ASSERT_TRUE(waitUntil([&] { return !isActive(); }));

    const ChildProcess second = launch();

    EXPECT_TRUE(waitUntil([&] { return isActive(); }));
}

TEST_F(SwayProgram, TheTraysMenuAndItsItemBringTheWindowToTheFront) {
    const FakePanel panel(busAddress());
    begin({Kind::sway});
    const ChildProcess program = launch();
    ASSERT_TRUE(waitUntil([&] { return panel.hasItem(); }));
    panel.click();
    ASSERT_TRUE(waitUntil([&] { return isActive(); }));

    for (const bool byMenu : {true, false}) {
        const ChildProcess other({.arguments = {"weston-flower"}, .environment = environment()});
        ASSERT_TRUE(waitUntil([&] { return !isActive(); }));
        byMenu ? panel.choose("Ouvrir Velmora") : panel.click();
        EXPECT_TRUE(waitUntil([&] { return isActive(); })) << (byMenu ? "menu" : "item");
    }
}

TEST_F(SwayProgram, TheTokenOfASecondLaunchIsGivenToTheCompositor) {
    begin({Kind::sway});
    auto heard = environment();
    heard["WAYLAND_DEBUG"] = "1"; // the first tells what it says to the compositor
    const ChildProcess program = launch(heard);
    ASSERT_TRUE(drawsItsWindowSoon());
    const auto said = [&](const std::string& words) {
        std::ifstream file(home.path() / "output");
        const std::string all{std::istreambuf_iterator<char>(file), {}};
        return all.find(words) != std::string::npos;
    };

    for (const std::string name : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"}) {
        auto launched = environment();
        launched[name] = "token-in-" + name;
        const ChildProcess second = launch(launched);
        EXPECT_TRUE(waitUntil([&] { return said("activate(\"token-in-" + name); })) << name;
    }
}

} // namespace
} // namespace velmora
