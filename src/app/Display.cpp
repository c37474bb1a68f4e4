#include "app/Display.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

namespace velmora {
namespace {

std::string variable(const char* name) {
    const char* const value = std::getenv(name); // NOLINT(concurrency-mt-unsafe): nobody sets it
    return value == nullptr ? "" : value;
}

bool hasX11() {
    if (variable("DISPLAY").empty()) {
        return false;
    }
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const bool isThere = xcb_connection_has_error(connection) == 0;
    xcb_disconnect(connection);
    return isThere;
}

/// Source: Wayland client library, wl_display_connect: the name is a path, or a socket in the
/// user's runtime folder; without one, "wayland-0".
bool hasWayland() {
    if (!variable("WAYLAND_SOCKET").empty()) {
        return true;
    }
    const std::string name = variable("WAYLAND_DISPLAY");
    const auto path =
        std::filesystem::path(variable("XDG_RUNTIME_DIR")) / (name.empty() ? "wayland-0" : name);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.native().size() >= sizeof address.sun_path) {
        return false;
    }
    path.native().copy(address.sun_path, sizeof address.sun_path - 1);
    const int socketFile = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const bool isThere =
        connect(socketFile, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    close(socketFile);
    return isThere;
}

} // namespace

bool hasDisplay() {
    const std::string platforms = variable("QT_QPA_PLATFORM");
    const bool namesX11 = platforms.find("xcb") != platforms.npos;
    const bool namesWayland = platforms.find("wayland") != platforms.npos;
    if (!platforms.empty() && !namesX11 && !namesWayland) {
        return true;
    }
    return ((platforms.empty() || namesX11) && hasX11()) ||
           ((platforms.empty() || namesWayland) && hasWayland());
}

} // namespace velmora
