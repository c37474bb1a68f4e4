// LaunchRig.h: a desktop whose applications can really be launched.
#pragma once

#include "platform/desktop/DesktopApplications.h"
#include "platform/desktop/FakeDesktop.h"
#include "platform/qt/QtEventLoop.h"
#include "platform/qt/QtMainQueue.h"

#include <csignal>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <unistd.h>

namespace velmora {

/// The real /proc, and desktop entries and programs in a folder of the test's own.
class LaunchRig {
public:
    LaunchRig() : applications_(queue_, {.dataFolders = {desktop.data()}}) {}
    ~LaunchRig() {
        for (const std::string& id : ids_) {
            for (const auto& instance : applications_.byBundleID(id)) {
                quit(instance.pid);
            }
        }
    }
    LaunchRig(const LaunchRig&) = delete;
    LaunchRig& operator=(const LaunchRig&) = delete;

    DesktopApplications& applications() { return applications_; }
    bool runUntil(const std::function<bool()>& condition) { return loop_.runUntil(condition); }

    // Programs are named after this process: other tests may use the same desktop meanwhile.

    /// The path of a new program that stays until it is ended.
    std::string addPlayer(const std::string& name = "player") {
        const fs::path program = desktop.program(name + suffix_);
        fs::create_directories(program.parent_path());
        fs::copy_file(VELMORA_IDLE_PLAYER, program);
        return program;
    }

    /// The path of a new shell script.
    std::string addScript(const std::string& lines) {
        const std::string name = "start" + suffix_;
        desktop.addProgram(name, "#!/bin/sh\n" + lines + "\n");
        return desktop.program(name);
    }

    void addEntry(const std::string& id, const std::string& lines) {
        desktop.addEntry(id, lines);
        ids_.insert(id);
    }

    void install(const std::string& id, const std::string& name) {
        addEntry(id, "Name=" + name + "\nIcon=icon-" + id + "\nExec=" + addPlayer(id) + " %U\n");
    }

    void installFailing(const std::string& id) { addEntry(id, "Exec=/bin/false\n"); }

    void quit(std::int32_t pid) {
        ::kill(pid, SIGKILL);
        EXPECT_TRUE(runUntil([&] { return !applications_.byPid(pid).has_value(); }));
    }

    FakeDesktop desktop;

private:
    const std::string suffix_ = "-" + std::to_string(getpid());
    QtEventLoop loop_;
    QtMainQueue queue_;
    std::set<std::string> ids_;
    DesktopApplications applications_;
};

} // namespace velmora
