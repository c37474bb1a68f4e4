// DesktopAppearance.h: light or dark, as the desktop portal says.
#pragma once

#include "platform/Appearance.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmora {

class PortalSettings;

/// Follows the colour scheme of org.freedesktop.portal.Settings. Asks without waiting: light until
/// the answer comes, and where there is no bus, no portal, or no preference.
///
/// Threads: main; needs a QCoreApplication and its running event loop.
class DesktopAppearance final : public Appearance {
public:
    /// @param busAddress  the bus that the portal is on; empty = the session's
    explicit DesktopAppearance(const std::string& busAddress = {});
    ~DesktopAppearance() override;
    DesktopAppearance(const DesktopAppearance&) = delete;
    DesktopAppearance& operator=(const DesktopAppearance&) = delete;

    [[nodiscard]] bool isDark() const override { return isDark_; }
    void onChange(std::function<void()> listener) override;

private:
    void setDark(bool isDark);

    bool isDark_ = false;
    std::vector<std::function<void()>> listeners_;
    std::unique_ptr<PortalSettings> portal_;
};

} // namespace velmora
