// The tray item in panels that are installed on real desktops.

#include "app/DesktopRig.h"
#include "app/WaylandRig.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <optional>
#include <string>
#include <type_traits>

namespace velmora {
namespace {

using namespace support;
using testing::Optional;

constexpr int barHeight = 32; // pixels

/// An X11 desktop with the panel of Xfce.
class XfceDesktop : public DesktopRig {
protected:
    static constexpr const char* name = "xfce";

    XfceDesktop() {
        keepLook("light", "fr");
        const auto folder = home.path() / "config/xfce4/xfconf/xfce-perchannel-xml";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / "xfce4-panel.xml") << R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="length" type="uint" value="100"/>
      <property name="size" type="uint" value="32"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty">
    <property name="plugin-1" type="string" value="systray"/>
  </property>
</channel>
)";
        keeper_.emplace(Command{.arguments = {"sh", "-c", "exec /usr/lib/*/xfce4/xfconf/xfconfd"},
                                .environment = environment(),
                                .output = home.path() / "xfconf"});
    }
    [[nodiscard]] ChildProcess startPanel() const {
        return ChildProcess({.arguments = {"xfce4-panel", "--disable-wm-check"},
                             .environment = environment(),
                             .output = home.path() / "panel"});
    }

private:
    std::optional<ChildProcess> keeper_; // of the panel's settings
};

/// A Wayland desktop with the bar that many put on it.
class WaybarDesktop : public WaylandRig {
protected:
    static constexpr const char* name = "waybar";

    WaybarDesktop() {
        begin({NestedCompositor::Kind::sway});
        std::ofstream(home.path() / "bar")
            << R"({"height": 32, "modules-right": ["tray"], "tray": {"icon-size": 22}})";
        std::ofstream(home.path() / "bar.css") << "window { background: #2b303b; }\n";
    }
    [[nodiscard]] ChildProcess startPanel() const {
        return ChildProcess(
            {.arguments =
                 {"waybar", "--config", home.path() / "bar", "--style", home.path() / "bar.css"},
             .environment = environment(),
             .output = home.path() / "panel"});
    }
};

template <typename Desktop>
class PanelProgram : public Desktop {
protected:
    [[nodiscard]] QImage bar() const {
        return this->picture().copy(0, 0, NestedCompositor::width, barHeight);
    }
    /// The panel is there and, to begin with, empty.
    [[nodiscard]] QImage emptyBarSoon(const QImage& before) const {
        const QPoint middle = bar().rect().center();
        EXPECT_TRUE(waitUntil([&] { return bar().pixel(middle) != before.pixel(middle); }));
        return this->stillPicture().copy(0, 0, NestedCompositor::width, barHeight);
    }
    /// Where the item is, given the bar without it; empty when there is none.
    [[nodiscard]] QRect glyphSoon(const QImage& empty) const {
        EXPECT_TRUE(waitUntil([&] { return bar() != empty; }));
        this->stillPicture();
        return difference(empty, bar());
    }
    /// Of the item's most different pixel and what is below it; 255 between black and white.
    [[nodiscard]] int contrast(const QImage& empty) const {
        const QImage now = bar();
        int most = 0;
        for (int y = 0; y < barHeight; ++y) {
            for (int x = 0; x < now.width(); ++x) {
                most = std::max(most, std::abs(qGray(now.pixel(x, y)) - qGray(empty.pixel(x, y))));
            }
        }
        return most;
    }
};

using Desktops = testing::Types<XfceDesktop, WaybarDesktop>;
struct DesktopNames {
    template <typename Desktop>
    static std::string GetName(int) {
        return std::is_same_v<Desktop, XfceDesktop> ? "xfce" : "waybar";
    }
};
TYPED_TEST_SUITE(PanelProgram, Desktops, DesktopNames);

TYPED_TEST(PanelProgram, ShowsAGlyphWhoseClickOpensTheWindowAndWhoseMenuQuits) {
    const QImage ground = this->bar();
    const ChildProcess panel = this->startPanel();
    const QImage empty = this->emptyBarSoon(ground);
    ChildProcess program = this->launch();

    const QRect glyph = this->glyphSoon(empty);
    EXPECT_TRUE(this->content().isEmpty()) << "no window by itself";
    EXPECT_GT(this->contrast(empty), 100);
    this->clickAt(glyph.center());
    ASSERT_TRUE(this->drawsItsWindowSoon());
    const QImage opened = this->stillPicture();
    this->keepPicture(this->name + std::string("-item"));

    this->clickAt(glyph.center(), 3);
    ASSERT_TRUE(
        waitUntil([&] { return difference(opened, this->picture()).height() > barHeight; }));
    const QRect menu = difference(opened, this->stillPicture());
    this->keepPicture(this->name + std::string("-menu"));
    constexpr int lastEntry = 14; // pixels above the menu's lower edge
    this->clickAt({menu.center().x(), menu.bottom() - lastEntry});

    EXPECT_THAT(program.wait(patience), Optional(0));
}

TYPED_TEST(PanelProgram, AppearsInOneThatIsLateAndInOneThatIsRestarted) {
    const QImage ground = this->bar();
    std::optional<ChildProcess> panel = this->startPanel();
    const QImage empty = this->emptyBarSoon(ground);
    panel->end();
    ASSERT_TRUE(waitUntil([&] { return this->bar() == ground; }));
    ChildProcess program = this->launch();
    ASSERT_TRUE(this->drawsItsWindowSoon()) << "where there is no panel";

    for (int i = 0; i < 2; ++i) {
        panel.emplace(this->startPanel());
        ASSERT_TRUE(waitUntil([&] { return this->bar() != ground; }));
        EXPECT_FALSE(this->glyphSoon(empty).isEmpty());
        panel->end();
        ASSERT_TRUE(waitUntil([&] { return this->bar() == ground; }));
        EXPECT_TRUE(program.isRunning());
    }
    this->keepPicture(this->name + std::string("-gone"));
}

} // namespace
} // namespace velmora
