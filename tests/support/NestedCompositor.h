// NestedCompositor.h: a Wayland desktop that fills a virtual display.
#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"
#include "support/VirtualDisplay.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::support {

/// A real compositor, drawn by the processor. The display's pointer and keyboard are its seat, and
/// one pixel of the display is one of its screen's. Behind the windows there is nothing but the
/// ground, which it draws last of what it begins with.
///
/// Threads: the one that made it, which must be one that lasts (see ChildProcess).
class NestedCompositor {
public:
    enum class Kind {
        weston, ///< programs draw their own title bars; nobody can raise a window
        sway,   ///< draws title bars, puts windows in the middle; heeds activation tokens
    };
    static constexpr int width = 1280; // pixels
    static constexpr int height = 1024;
    static constexpr std::string_view ground = "#203040";
    /// Of sway's title bar above the window with the keyboard.
    static constexpr std::string_view activeTitle = "#c05020";

    /// Returns when programs can connect.
    /// @param scale  pixels for each of the desktop's points
    /// Errors: throws std::runtime_error with the compositor's messages when it does not come up.
    explicit NestedCompositor(Kind kind, int scale = 1);

    /// Makes it the desktop of one program that is started later.
    void enter(Environment& environment) const;
    /// Where its screen is looked at and worked.
    [[nodiscard]] const VirtualDisplay& display() const { return display_; }

private:
    [[nodiscard]] std::filesystem::path socket() const;
    [[nodiscard]] std::vector<std::string> command(int scale) const;
    void takeKeyboard() const;

    Kind kind_;
    TemporaryFolder folder_{"velmora-compositor"};
    VirtualDisplay display_;
    std::optional<ChildProcess> server_;
};

} // namespace velmora::support
