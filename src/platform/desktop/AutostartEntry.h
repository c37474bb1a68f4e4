// AutostartEntry.h: the desktop entry that starts this program at login.
#pragma once

#include "platform/LoginItem.h"

#include <filesystem>
#include <string>

namespace velmora {

/// One file in the user's autostart folder: written to register, removed to unregister. It starts
/// the program without a window.
///
/// It counts as enabled when a desktop would run it: it is there and can be read, names a program
/// that exists, and neither `Hidden` nor `X-GNOME-Autostart-enabled` switches it off.
///
/// Threads: main. Errors: GLib's message in the user's language; the old file is then still there,
/// whole.
class AutostartEntry final : public LoginItem {
public:
    /// $XDG_CONFIG_HOME/autostart, with its default.
    [[nodiscard]] static std::filesystem::path userFolder();
    /// What users start the running program by, or itself where that is not installed. Asked at the
    /// start: a running program may be replaced by an update.
    [[nodiscard]] static std::filesystem::path ownProgram();

    explicit AutostartEntry(std::filesystem::path folder = userFolder(),
                            std::filesystem::path program = ownProgram());

    [[nodiscard]] bool isEnabled() const override;
    Outcome registerItem() override;
    Outcome unregisterItem() override;

    [[nodiscard]] const std::filesystem::path& file() const { return file_; }

private:
    std::filesystem::path file_;
    std::filesystem::path program_;
};

} // namespace velmora
