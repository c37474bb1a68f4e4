#include "support/NestedCompositor.h"

#include "support/SessionFiles.h"
#include "support/Wait.h"

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <unistd.h>

namespace velmora::support {
namespace {

constexpr std::string_view westonConfiguration = R"([core]
idle-time=0
[input-method]
path=
[shell]
background-image=
panel-position=none
locking=false
animation=none
startup-animation=none
close-animation=none
focus-animation=none
background-color=0xff)";

std::string points(int pixels, int scale) {
    return std::to_string(pixels / scale);
}

std::string swayConfiguration(int scale) {
    const std::string active(NestedCompositor::activeTitle);
    return "xwayland disable\n"
           "focus_on_window_activation smart\n"
           "output * resolution " +
           points(NestedCompositor::width, 1) + "x" + points(NestedCompositor::height, 1) +
           " scale " + std::to_string(scale) +
           "\n" // of its own it draws grey or, since 1.10, nothing: black, as before it came up
           "output * background " +
           std::string(NestedCompositor::ground) +
           " solid_color\n"
           // Border, ground, text, indicator and border of children.
           "client.focused " +
           active + " " + active + " #ffffff " + active + " " + active + "\n";
}

/// Others cannot have the keyboard.
bool isVisible(const std::string& window, const Environment& environment) {
    return runToEnd({"xwininfo", "-id", window}, environment).find("IsViewable") !=
           std::string::npos;
}

std::string textOf(const std::filesystem::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

} // namespace

NestedCompositor::NestedCompositor(Kind kind, int scale)
    : kind_(kind), display_({.screen = points(width, 1) + "x" + points(height, 1) + "x24",
                             .windowManager = false}) {
    auto environment = currentEnvironment();
    display_.enter(environment);
    environment["XDG_RUNTIME_DIR"] = folder_.path();
    environment["WLR_BACKENDS"] = "x11";
    environment["WLR_RENDERER"] = "pixman";
    writeFile(folder_.path() / "weston.ini",
              std::string(westonConfiguration) + std::string(ground.substr(1)) + "\n");
    writeFile(folder_.path() / "sway.conf", swayConfiguration(scale));
    const auto log = folder_.path() / "log";
    server_.emplace(
        Command{.arguments = command(scale), .environment = environment, .output = log});
    const auto isUp = [&] { return std::filesystem::exists(socket()); };
    if (!waitUntil([&] { return isUp() || !server_->isRunning(); }) || !isUp()) {
        throw std::runtime_error("the compositor did not come up:\n" + textOf(log));
    }
    takeKeyboard();
}

std::filesystem::path NestedCompositor::socket() const {
    return folder_.path() / "wayland-1"; // the first name that both take
}

std::vector<std::string> NestedCompositor::command(int scale) const {
    if (kind_ == Kind::weston) {
        return {"weston",
                "--backend=x11-backend.so",
                "--use-pixman",
                "--width=" + points(width, scale),
                "--height=" + points(height, scale),
                "--scale=" + std::to_string(scale),
                "--socket=" + socket().filename().string(),
                "--config=" + (folder_.path() / "weston.ini").string()};
    }
    std::vector<std::string> result = {"sway", "-c", folder_.path() / "sway.conf"};
    if (getuid() == 0) { // which it refuses to run as
        const std::vector<std::string> asUser = {
            "bwrap", "--dev-bind", "/", "/", "--unshare-user", "--uid", "1000", "--gid", "1000"};
        result.insert(result.begin(), asUser.begin(), asUser.end());
    }
    return result;
}

/// Without a window manager nobody gives it to the compositor's window.
void NestedCompositor::takeKeyboard() const {
    auto environment = currentEnvironment();
    display_.enter(environment);
    const bool isTaken = waitUntil([&] {
        std::istringstream windows(runToEnd({"xwininfo", "-root", "-children"}, environment));
        for (std::string word; windows >> word;) {
            if (word == "child:" && windows >> word) { // its window, which may lack a title
                if (!isVisible(word, environment)) {
                    return false;
                }
                runToEnd({"xdotool", "windowfocus", "--sync", word}, environment);
                return true;
            }
        }
        return false;
    });
    if (!isTaken) {
        throw std::runtime_error("the compositor shows nothing");
    }
}

void NestedCompositor::enter(Environment& environment) const {
    environment.erase("DISPLAY");
    environment["WAYLAND_DISPLAY"] = socket();
    environment["XDG_SESSION_TYPE"] = "wayland";
    environment["XDG_CURRENT_DESKTOP"] = kind_ == Kind::sway ? "sway" : "weston";
}

} // namespace velmora::support
