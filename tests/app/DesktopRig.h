// DesktopRig.h: the program on a desktop of the test's own: display, D-Bus and sound.
#pragma once

#include "app/FakePanel.h"
#include "platform/sqlite/SqliteDefaultsStore.h"
#include "presets/PresetStore.h"
#include "support/ClientPrograms.h"
#include "support/SessionTest.h"
#include "support/TemporaryFolder.h"
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

/// Every test launches the program itself, with settings of its own. The display and the audio
/// session serve a whole suite.
class DesktopRig : public support::SessionTest {
protected:
    static void SetUpTestSuite() {
        display_ = std::make_unique<support::VirtualDisplay>();
        SessionTest::SetUpTestSuite();
    }
    static void TearDownTestSuite() {
        SessionTest::TearDownTestSuite();
        display_.reset();
    }

    [[nodiscard]] support::Environment environment() const {
        auto result = session().environment();
        result["LC_ALL"] = "C.UTF-8"; // titles have letters that are not ASCII
        display_->enter(result);
        result["HOME"] = home.path();
        result["XDG_DATA_HOME"] = home.path() / "data";
        result["XDG_CONFIG_HOME"] = home.path() / "config";
        result["QT_QPA_PLATFORM"] = "xcb";
        result["QT_QUICK_BACKEND"] = "software";
        return result;
    }
    [[nodiscard]] std::string busAddress() const {
        return session().environment().at("DBUS_SESSION_BUS_ADDRESS");
    }
    [[nodiscard]] support::ChildProcess launch(const support::Environment& environment) const {
        return support::ChildProcess({.arguments = {VELMORA_PROGRAM},
                                      .environment = environment,
                                      .output = home.path() / "output"});
    }
    [[nodiscard]] support::ChildProcess launch() const { return launch(environment()); }
    /// As the session does it at login.
    [[nodiscard]] support::ChildProcess launchHidden() const {
        return support::ChildProcess({.arguments = {VELMORA_PROGRAM, "--hidden"},
                                      .environment = environment(),
                                      .output = home.path() / "output"});
    }

    /// What an earlier launch kept.
    [[nodiscard]] SqliteDefaultsStore settings() const {
        return SqliteDefaultsStore(home.path() / "data" / "velmora" / "settings.sqlite");
    }
    void keepActivePreset() const {
        auto store = settings();
        PresetStore(store).save({.id = Uuid::random(),
                                 .name = "Evening",
                                 .sources = {{.kind = PresetSource::Kind::deviceChannels,
                                              .name = "First pair",
                                              .deviceUID = support::interface4.name,
                                              .first = 1,
                                              .count = 2,
                                              .gain = 1.0F}}});
    }

    // -- the display --

    /// Runs xdotool; empty where it finds nothing.
    std::string xdotool(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "xdotool");
        try {
            return support::runToEnd(arguments, environment());
        } catch (const std::runtime_error&) {
            return {};
        }
    }
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

    support::TemporaryFolder home{"velmora-home"};

private:
    static inline std::unique_ptr<support::VirtualDisplay> display_;
};

} // namespace velmora
