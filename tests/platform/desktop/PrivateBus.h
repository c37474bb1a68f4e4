// PrivateBus.h: a D-Bus of the test's own, on which nothing starts by itself.
#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"
#include "support/Wait.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace velmora {

class PrivateBus {
public:
    PrivateBus() {
        if (!support::waitUntil([this] { return isListening(); })) {
            throw std::runtime_error("dbus-daemon does not start");
        }
    }

    [[nodiscard]] std::string address() const { return "unix:path=" + socket().string(); }

private:
    [[nodiscard]] std::filesystem::path socket() const { return folder_.path() / "bus"; }

    /// The socket lies there a moment before anybody listens on it.
    [[nodiscard]] bool isListening() const {
        sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
        socket().string().copy(address.sun_path, sizeof address.sun_path - 1);
        const int handle = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const bool listens =
            ::connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
        ::close(handle);
        return listens;
    }

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
