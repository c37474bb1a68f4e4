// FakeDesktop.h: a folder that looks like /proc, and one with desktop entries.
#pragma once

#include "support/TemporaryFolder.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace velmora {

namespace fs = std::filesystem;

/// One process as a test describes it.
struct FakeProcess {
    std::int32_t pid{};
    std::int32_t parent = 1;
    std::string name = "program";
    std::string executable{}; ///< empty = /usr/bin/<name>
    std::vector<std::string> arguments{};
    std::map<std::string, std::string> environment{};
    std::string group = "session-2.scope";
    std::int32_t terminal = 0;
    std::uint64_t startTicks = 100;
    std::string flatpakInfo{};
    std::int32_t innerPid = 0; ///< in a namespace of its own; 0 = in none
    std::string machine{};
};

class FakeDesktop {
public:
    FakeDesktop() {
        fs::create_directories(proc());
        write(proc() / "uptime", "100000.00 1.0\n"); // everything has been running for long
        addProgram("player");
    }

    [[nodiscard]] fs::path proc() const { return folder_.path() / "proc"; }
    [[nodiscard]] fs::path data() const { return folder_.path() / "data"; }
    [[nodiscard]] fs::path systemData() const { return folder_.path() / "system"; }
    [[nodiscard]] fs::path program(const std::string& name) const {
        return folder_.path() / "bin" / name;
    }

    /// An executable file, so that an entry may name it.
    void addProgram(const std::string& name, const std::string& content = "#!/bin/sh\n") {
        write(program(name), content);
        fs::permissions(program(name), fs::perms::owner_all);
    }

    /// An entry that starts the program "player" unless `lines` say otherwise.
    fs::path addEntry(const std::string& id, const std::string& lines = {}) {
        return addEntryIn(data(), id, lines);
    }
    fs::path
    addEntryIn(const fs::path& dataFolder, const std::string& id, const std::string& lines = {}) {
        const fs::path file = dataFolder / "applications" / (id + ".desktop");
        std::string content = "[Desktop Entry]\nType=Application\n" + lines;
        if (lines.find("Name=") == std::string::npos) {
            content += "Name=" + id + "\n";
        }
        if (lines.find("Exec=") == std::string::npos) {
            content += "Exec=" + program("player").string() + "\n";
        }
        write(file, content);
        return file;
    }

    void addProcess(const FakeProcess& process) {
        const fs::path folder = proc() / std::to_string(process.pid);
        fs::remove_all(folder);
        const std::string executable =
            process.executable.empty() ? "/usr/bin/" + process.name : process.executable;
        // state, then fields 4 to 22: parent, group, session, terminal, …, start time
        write(folder / "stat",
              std::to_string(process.pid) + " (" + process.name + ") S " +
                  std::to_string(process.parent) + " 0 0 " + std::to_string(process.terminal) +
                  " 0 0 0 0 0 0 0 0 0 0 0 0 0 0 " + std::to_string(process.startTicks) + " 0\n");
        write(folder / "cgroup", "0::/user.slice/app.slice/" + process.group + "\n");
        std::string arguments;
        for (const std::string& argument :
             process.arguments.empty() ? std::vector{executable} : process.arguments) {
            arguments += argument + '\0';
        }
        write(folder / "cmdline", arguments);
        std::string environment;
        for (const auto& [variable, value] : process.environment) {
            environment += variable + "=" + value + '\0';
        }
        write(folder / "environ", environment);
        fs::create_symlink(executable, folder / "exe");
        std::string numbers = std::to_string(process.pid);
        if (process.innerPid != 0) {
            numbers += "\t" + std::to_string(process.innerPid);
        }
        write(folder / "status",
              "Name:\t" + process.name + "\nNSpid:\t" + numbers + "\nThreads:\t1\n");
        if (!process.machine.empty()) {
            write(folder / "root" / "etc" / "machine-id", process.machine + "\n");
        }
        if (!process.flatpakInfo.empty()) {
            write(folder / "root" / ".flatpak-info", process.flatpakInfo);
        }
    }
    void removeProcess(std::int32_t pid) { fs::remove_all(proc() / std::to_string(pid)); }

    static void write(const fs::path& path, const std::string& content) {
        fs::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << content;
    }

private:
    support::TemporaryFolder folder_{"velmora-desktop"};
};

} // namespace velmora
