// CommandRig.h: the program on a machine without a display, worked by commands.
#pragma once

#include "platform/sqlite/SqliteDefaultsStore.h"
#include "support/ClientPrograms.h"
#include "support/SessionTest.h"
#include "support/TemporaryFolder.h"
#include "support/Wait.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// Every test has settings of its own, in English; the audio session serves a whole suite.
class CommandRig : public support::SessionTest {
protected:
    /// What a program said and how it ended.
    struct Said {
        int status = -1;
        std::string output;
        std::string error;
    };

    CommandRig() { settings().set("language", std::string("en")); }

    [[nodiscard]] support::Environment environment() const {
        auto result = session().environment();
        for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
            result.erase(display);
        }
        result["LC_ALL"] = "C.UTF-8";
        result["HOME"] = home.path();
        result["XDG_DATA_HOME"] = home.path() / "data";
        result["XDG_CONFIG_HOME"] = home.path() / "config";
        return result;
    }
    [[nodiscard]] SqliteDefaultsStore settings() const {
        return SqliteDefaultsStore(home.path() / "data" / "velmora" / "settings.sqlite");
    }

    /// Away from the speakers, so that these carry nothing but the application itself. The devices
    /// of a session are virtual, and no such device is offered.
    void monitorOnTheInterface() const {
        settings().set("monitoringSelection", support::interface4.name + "#3");
    }

    [[nodiscard]] static std::string textOf(const std::filesystem::path& path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// Starts a program whose two outputs go to files beside `name`.
    [[nodiscard]] support::ChildProcess start(std::vector<std::string> commandLine,
                                              const std::string& name) const {
        commandLine.insert(commandLine.begin(), {"sh", "-c", "exec \"$0\" \"$@\" 2>\"$ERRORS\""});
        auto own = environment();
        own["ERRORS"] = home.path() / (name + ".error");
        std::filesystem::remove(home.path() / (name + ".output")); // it would be continued
        return support::ChildProcess({.arguments = commandLine,
                                      .environment = own,
                                      .output = home.path() / (name + ".output")});
    }
    [[nodiscard]] Said run(const std::vector<std::string>& commandLine) const {
        support::ChildProcess program = start(commandLine, "command");
        const auto status = program.wait(support::patience);
        return {status.value_or(-1),
                textOf(home.path() / "command.output"),
                textOf(home.path() / "command.error")};
    }
    /// The program with these words.
    [[nodiscard]] Said velmora(std::vector<std::string> words) const {
        words.insert(words.begin(), VELMORA_PROGRAM);
        return run(words);
    }
    void command(const std::vector<std::string>& words) const {
        const Said said = velmora(words);
        EXPECT_EQ(said.status, 0) << words.front() << ": " << said.error;
        EXPECT_EQ(said.error, "");
    }
    [[nodiscard]] nlohmann::json json(std::vector<std::string> words) const {
        words.emplace_back("--json");
        const Said said = velmora(words);
        EXPECT_EQ(said.status, 0) << said.error << said.output;
        return nlohmann::json::parse(said.output, nullptr, false);
    }

    /// Returns once it answers commands.
    [[nodiscard]] support::ChildProcess headless() const {
        support::ChildProcess mixer = start({VELMORA_PROGRAM, "--headless"}, "mixer");
        EXPECT_TRUE(support::waitUntil([&] { return velmora({"status"}).status == 0; }))
            << textOf(home.path() / "mixer.error");
        return mixer;
    }
    /// The id of the source that the process plays, once it can be added.
    [[nodiscard]] std::string playing(pid_t pid) const {
        std::string id;
        EXPECT_TRUE(support::waitUntil([&] {
            for (const auto& offered : json({"available"})) {
                const std::string candidate = offered["id"];
                if (candidate.ends_with("-" + std::to_string(pid)) && offered["playing"] == true) {
                    id = candidate;
                }
            }
            return !id.empty();
        })) << velmora({"available"}).output;
        return id;
    }

    support::TemporaryFolder home{"velmora-home"};
};

} // namespace velmora
