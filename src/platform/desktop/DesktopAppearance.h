// DesktopAppearance.h: how programs shall look, as the desktop portal says.
#pragma once

#include "platform/Appearance.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

class PaletteWatch;
class PortalSettings;

/// Follows the settings of the desktop portal: colour scheme, contrast, animations, size of texts.
/// Asks without waiting: nothing special until the answers come, and where there is no bus or no
/// portal. A desktop that prefers neither light nor dark, or does not say, is as dark as the
/// colours that it gives to this program's windows.
///
/// Threads: main; needs a QCoreApplication and its running event loop.
class DesktopAppearance final : public Appearance {
public:
    /// @param busAddress  the bus that the portal is on; empty = the session's
    explicit DesktopAppearance(const std::string& busAddress = {});
    ~DesktopAppearance() override;
    DesktopAppearance(const DesktopAppearance&) = delete;
    DesktopAppearance& operator=(const DesktopAppearance&) = delete;

    [[nodiscard]] Look look() const override { return look_; }
    void onChange(std::function<void()> listener) override;

private:
    /// As the desktop has said last.
    struct Said {
        std::optional<bool> isDark; // none = no preference
        bool wantsContrast = false;
        bool hasContrastTheme = false;
        bool wantsStillness = false;
        bool hasAnimations = true;
        double textScale = 1.0;
    };

    void update();

    Said said_;
    Look look_;
    std::vector<std::function<void()>> listeners_;
    std::unique_ptr<PaletteWatch> palette_;
    std::unique_ptr<PortalSettings> portal_;
};

} // namespace velmora
