#include "platform/desktop/DesktopAppearance.h"

#include "platform/desktop/PortalSettings.h"

#include <utility>

namespace velmora {

DesktopAppearance::DesktopAppearance(const std::string& busAddress)
    : portal_(std::make_unique<PortalSettings>(QString::fromStdString(busAddress),
                                                  [this](bool isDark) { setDark(isDark); })) {
}

DesktopAppearance::~DesktopAppearance() = default;

void DesktopAppearance::onChange(std::function<void()> listener) {
    listeners_.push_back(std::move(listener));
}

void DesktopAppearance::setDark(bool isDark) {
    if (std::exchange(isDark_, isDark) == isDark) {
        return;
    }
    // A listener may add another, which is told from the next time on.
    const auto listeners = listeners_;
    for (const auto& listener : listeners) {
        listener();
    }
}

} // namespace velmora
