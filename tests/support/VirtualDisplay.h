// VirtualDisplay.h: an X11 screen without a monitor, with a window manager.
#pragma once

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

#include <optional>
#include <string>

namespace velmora::support {

/// A free display of its own. Without a window manager a window is drawn but never active, so one
/// comes with it.
///
/// Threads: the one that made it, which must be one that lasts (see ChildProcess).
class VirtualDisplay {
public:
    struct Setup {
        std::string screen = "1280x1024x24"; ///< width x height x depth
        bool windowManager = true;
    };

    /// Returns when windows can be shown and are managed.
    /// Errors: throws std::runtime_error when the display does not come up.
    explicit VirtualDisplay(const Setup& setup);
    VirtualDisplay() : VirtualDisplay(Setup{}) {}

    /// Such as ":99".
    [[nodiscard]] const std::string& name() const { return name_; }
    /// Makes it the display of this process and of what it starts from now on. Call it before Qt
    /// is there.
    void enter() const;
    /// The same for one program that is started later.
    void enter(Environment& environment) const;

private:
    void waitForManager() const;

    TemporaryFolder folder_{"velmora-display"};
    std::string name_;
    std::optional<ChildProcess> server_;
    std::optional<ChildProcess> manager_;
};

} // namespace velmora::support
