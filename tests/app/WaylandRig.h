// WaylandRig.h: the program on a Wayland desktop, looked at and worked from outside.
#pragma once

#include "app/ProgramRig.h"
#include "support/NestedCompositor.h"
#include "support/Wait.h"

#include <optional>
#include <string>

namespace velmora {

/// A Wayland desktop tells nobody where windows are: they are found by what is drawn. Every test
/// begins a desktop of its own.
///
/// Units: points are the windows' own, pixels the screen's.
class WaylandRig : public ProgramRig {
protected:
    struct Desktop {
        support::NestedCompositor::Kind kind{};
        int scale = 1;           ///< the compositor's: pixels a point
        std::string factor = {}; ///< QT_SCALE_FACTOR, when set

        [[nodiscard]] double pixels() const {
            return scale * (factor.empty() ? 1 : std::stod(factor));
        }
    };

    WaylandRig() { keepLook("light", "fr"); }

    void begin(const Desktop& desktop) {
        desktop_ = desktop;
        compositor_.emplace(desktop.kind, desktop.scale);
        ASSERT_TRUE(support::waitUntil([&] {
            return picture().pixelColor(screen.bottomRight()).name().toStdString() ==
                   support::NestedCompositor::ground;
        }));
        // Weston may begin with its pointer in this corner, wherever the display's is, and adds
        // ways to that.
        pointAt(screen.topLeft());
    }

    [[nodiscard]] support::Environment environment() const override {
        auto result = ProgramRig::environment();
        compositor_->enter(result);
        if (!desktop_.factor.empty()) {
            result["QT_SCALE_FACTOR"] = desktop_.factor;
        }
        return result;
    }

    [[nodiscard]] const support::VirtualDisplay& display() const override {
        return compositor_->display();
    }

    static constexpr QRect screen{
        0, 0, support::NestedCompositor::width, support::NestedCompositor::height}; // pixels

    /// @param x, y  points of the window; below 0: from its lower edge
    void click(double x, double y) const {
        const QRect window = content();
        const double top = y < 0 ? window.bottom() + 1 : window.top();
        clickAt({window.left() + static_cast<int>(x * desktop_.pixels()),
                 static_cast<int>(top + y * desktop_.pixels())});
    }
    void click(const QPointF& place) const { click(place.x(), place.y()); }
    void key(const std::string& name) const { xdotool({"key", name}); }
    /// By its title bar.
    void moveWindow(const QPoint& by) const {
        constexpr int middleOfTitleBar = 12; // points above the content
        const QRect window = content();
        const QPoint grip(window.left() + window.width() / 3,
                          window.top() - middleOfTitleBar * desktop_.scale);
        pointAt(grip);
        xdotool({"mousedown", "1"});
        pointAt(grip + by / 2); // a drag begins with a small way
        pointAt(grip + by);
        xdotool({"mouseup", "1"});
        EXPECT_TRUE(
            support::waitUntil([&] { return content().topLeft() == window.topLeft() + by; }));
    }

private:
    Desktop desktop_;
    std::optional<support::NestedCompositor> compositor_;
};

} // namespace velmora
