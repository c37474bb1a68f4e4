// PrivateBus.h: a D-Bus of the test's own, on which nothing starts by itself.
#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"
#include "support/Wait.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace velmora {

class PrivateBus {
public:
    PrivateBus() {
        if (!support::waitUntil([this] { return std::filesystem::exists(socket()); })) {
            throw std::runtime_error("dbus-daemon does not start");
        }
    }

    [[nodiscard]] std::string address() const { return "unix:path=" + socket().string(); }

private:
    [[nodiscard]] std::filesystem::path socket() const { return folder_.path() / "bus"; }

    support::Command command() const {
        const std::string configuration = folder_.path() / "bus.conf";
        std::ofstream(configuration) << "<busconfig><type>session</type><listen>" << address()
                                     << "</listen><policy context=\"default\">"
                                        "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                                        "<allow eavesdrop=\"true\"/><allow own=\"*\"/>"
                                        "</policy></busconfig>";
        support::Command command;
        command.arguments = {"dbus-daemon", "--nofork", "--config-file=" + configuration};
        command.output = "/dev/null"; // says that it may not have as many files open as it wants
        return command;
    }

    support::TemporaryFolder folder_{"velmora-bus"};
    support::ChildProcess daemon_{command()};
};

} // namespace velmora
