#include "support/VirtualDisplay.h"

#include "support/Wait.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

namespace velmora::support {

namespace {

/// What the server writes when it is ready: the number that it took, in a line of its own.
std::string numberIn(const std::filesystem::path& file) {
    std::ifstream in(file);
    std::string line;
    std::getline(in, line);
    return in.eof() ? std::string() : line;
}

} // namespace

VirtualDisplay::VirtualDisplay(const Setup& setup) {
    const auto number = folder_.path() / "number";
    // The number goes to the server's standard output; what it has to complain about elsewhere.
    server_.emplace(
        Command{.arguments = {"sh",
                              "-c",
                              "exec Xvfb -displayfd 1 -noreset -nolisten tcp -screen 0 " +
                                  setup.screen + " 2>" + (folder_.path() / "server.log").string()},
                .output = number});
    const bool isUp = waitUntil([&] { return !numberIn(number).empty() || !server_->isRunning(); });
    const std::string taken = numberIn(number);
    if (!isUp || taken.empty()) {
        throw std::runtime_error("the virtual display did not come up");
    }
    name_ = ":" + taken;
    if (setup.windowManager) {
        auto environment = currentEnvironment();
        enter(environment);
        manager_.emplace(Command{.arguments = {"openbox", "--sm-disable"},
                                 .environment = environment,
                                 .output = folder_.path() / "manager.log"});
        waitForManager();
    }
}

void VirtualDisplay::enter() const {
    setenv("DISPLAY", name_.c_str(), 1);
    unsetenv("WAYLAND_DISPLAY");
}

void VirtualDisplay::enter(Environment& environment) const {
    environment["DISPLAY"] = name_;
    environment.erase("WAYLAND_DISPLAY");
}

void VirtualDisplay::waitForManager() const {
    auto environment = currentEnvironment();
    enter(environment);
    const bool isManaged = waitUntil([&] {
        return runToEnd({"xprop", "-root", "_NET_SUPPORTING_WM_CHECK"}, environment)
                   .find("window id") != std::string::npos;
    });
    if (!isManaged) {
        throw std::runtime_error("the window manager of the virtual display did not come up");
    }
}

} // namespace velmora::support
