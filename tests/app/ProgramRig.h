// ProgramRig.h: the program on a desktop of the test's own, whatever that is.
#pragma once

#include "app/ScreenPicture.h"
#include "platform/sqlite/SqliteDefaultsStore.h"
#include "presets/PresetStore.h"
#include "support/SessionTest.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDisplay.h"
#include "support/Wait.h"

#include <chrono>
#include <filesystem>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora {

/// Every test launches the program itself, with settings of its own. The audio session serves a
/// whole suite.
class ProgramRig : public support::SessionTest {
protected:
    /// What the desktop gives to the programs that it starts.
    [[nodiscard]] virtual support::Environment environment() const {
        auto result = session().environment();
        result["LC_ALL"] = "C.UTF-8";
        result["HOME"] = home.path();
        result["XDG_DATA_HOME"] = home.path() / "data";
        result["XDG_CONFIG_HOME"] = home.path() / "config";
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
    void keepPresets(int count) const {
        auto store = settings();
        PresetStore presets(store);
        for (int i = 1; i <= count; ++i) {
            presets.save({.id = Uuid::random(), .name = "Evening " + std::to_string(i)});
        }
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

    // -- its commands --

    std::string command(std::vector<std::string> words) const {
        words.insert(words.begin(), VELMORA_PROGRAM);
        return support::runToEnd(words, environment());
    }
    /// The id of the source that the process plays, once it can be added.
    [[nodiscard]] std::string playing(pid_t pid) const {
        const std::regex id("\"([^\"]*-" + std::to_string(pid) + ")\"");
        std::smatch found;
        std::string offered;
        EXPECT_TRUE(support::waitUntil([&] {
            offered = command({"available", "--json"});
            return std::regex_search(offered, found, id);
        })) << offered;
        return found.empty() ? "" : found[1].str();
    }

    // -- its screen, in pixels --

    [[nodiscard]] virtual const support::VirtualDisplay& display() const = 0;

    [[nodiscard]] QImage picture() const { return screenPicture(display().name()); }
    /// Keeps it for people to judge.
    void keepPicture(const std::string& name) const {
        std::filesystem::create_directories(VELMORA_DESKTOP_PICTURES);
        EXPECT_TRUE(
            picture().save(QString::fromStdString(VELMORA_DESKTOP_PICTURES "/" + name + ".png")));
    }
    /// Returns once nothing has moved for a while, longer than a busy machine takes to draw.
    QImage stillPicture() const {
        constexpr std::chrono::milliseconds still{300};
        QImage last;
        auto since = std::chrono::steady_clock::now();
        EXPECT_TRUE(support::waitUntil([&] {
            const auto now = std::chrono::steady_clock::now();
            if (const QImage seen = picture(); seen != last) {
                last = seen;
                since = now;
            }
            return now - since >= still;
        }));
        return last;
    }
    /// What the program draws of the only window that is shown, without its title bar. The window
    /// is light, unless a test says that it is dark.
    [[nodiscard]] QRect content() const { return areaOf(picture(), ground_); }
    [[nodiscard]] bool drawsItsWindowSoon() const {
        return support::waitUntil([&] { return !content().isEmpty(); });
    }

    // -- its pointer and keyboard --

    /// Runs xdotool; empty where it finds nothing.
    std::string xdotool(std::vector<std::string> arguments) const {
        auto own = support::currentEnvironment();
        own["LC_ALL"] = "C.UTF-8"; // titles have letters that are not ASCII
        display().enter(own);
        arguments.insert(arguments.begin(), "xdotool");
        try {
            return support::runToEnd(arguments, own);
        } catch (const std::runtime_error&) {
            return {};
        }
    }
    void pointAt(const QPoint& pixel) const {
        xdotool({"mousemove", std::to_string(pixel.x()), std::to_string(pixel.y())});
    }
    void clickAt(const QPoint& pixel, int button = 1) const {
        pointAt(pixel);
        xdotool({"click", std::to_string(button)});
    }

    void keepLook(const std::string& appearance, const std::string& language) {
        auto store = settings();
        store.set("appearance", appearance);
        store.set("language", language);
        ground_ = appearance == "dark" ? QColor(0x0F, 0x25, 0x30) : QColor(0xF6, 0xEC, 0xD6);
    }

    support::TemporaryFolder home{"velmora-home"};

private:
    QColor ground_{0xF6, 0xEC, 0xD6}; // the windows', and nothing else's
};

} // namespace velmora
