// DesktopRig.h: the program on an X11 desktop: display, D-Bus and sound.
#pragma once

#include "app/FakePanel.h"
#include "app/ProgramRig.h"
#include "support/ClientPrograms.h"
#include "support/VirtualDisplay.h"
#include "support/Wait.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace velmora {

/// The display serves a whole suite, as the audio session does.
class DesktopRig : public ProgramRig {
protected:
    static void SetUpTestSuite() {
        display_ = std::make_unique<support::VirtualDisplay>();
        SessionTest::SetUpTestSuite();
    }
    static void TearDownTestSuite() {
        SessionTest::TearDownTestSuite();
        display_.reset();
    }

    [[nodiscard]] support::Environment environment() const override {
        auto result = ProgramRig::environment();
        display_->enter(result);
        result["QT_QPA_PLATFORM"] = "xcb";
        return result;
    }

    // -- the display --

    [[nodiscard]] const support::VirtualDisplay& display() const override { return *display_; }

    /// The visible window of this title; empty when there is none.
    [[nodiscard]] std::string window(const std::string& title) const {
        std::istringstream found(xdotool({"search", "--onlyvisible", "--name", "^" + title + "$"}));
        std::string first;
        found >> first;
        return first;
    }
    [[nodiscard]] bool showsSoon(const std::string& title) const {
        return support::waitUntil([&] { return !window(title).empty(); });
    }
    [[nodiscard]] bool hidesSoon(const std::string& title) const {
        return support::waitUntil([&] { return window(title).empty(); });
    }
    /// As the title bar's button.
    void close(const std::string& title) const {
        support::runToEnd({"xdotool", "windowactivate", "--sync", window(title), "key", "alt+F4"},
                          environment());
    }
    void press(const std::string& title, const std::vector<std::string>& keys) const {
        xdotool({"windowactivate", "--sync", window(title)});
        for (const std::string& key : keys) {
            xdotool({"key", key});
        }
    }
    /// A window manager moves a new window to its place, and a slow machine lets one see it do so.
    void waitUntilStill(const std::string& title) const {
        constexpr int looks = 5;
        std::string place;
        int same = 0;
        EXPECT_TRUE(support::waitUntil([&] {
            const std::string now = xdotool({"getwindowgeometry", window(title)});
            same = now == place ? same + 1 : 0;
            place = now;
            return same == looks;
        }));
    }
    /// The running switch at the top of the control window.
    void toggleMix() const {
        waitUntilStill("Velmora");
        xdotool({"mousemove", "--window", window("Velmora"), "366", "34", "click", "1"});
    }

private:
    static inline std::unique_ptr<support::VirtualDisplay> display_;
};

} // namespace velmora
