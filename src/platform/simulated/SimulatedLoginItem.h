// SimulatedLoginItem.h: a login item in memory.
#pragma once

#include "platform/LoginItem.h"

#include <optional>
#include <string>
#include <utility>

namespace velmora {

/// Threads: main.
class SimulatedLoginItem : public LoginItem {
public:
    [[nodiscard]] bool isEnabled() const override { return enabled_; }
    Outcome registerItem() override { return change(true); }
    Outcome unregisterItem() override { return change(false); }

    // -- as a test arranges it --

    /// Somebody else changes it.
    void setEnabled(bool enabled) { enabled_ = enabled; }
    /// From now on both requests fail with this message.
    void refuse(std::string message) { refusal_ = std::move(message); }
    void allow() { refusal_.reset(); }

private:
    Outcome change(bool enabled) {
        if (refusal_) {
            return std::unexpected(*refusal_);
        }
        enabled_ = enabled;
        return {};
    }

    bool enabled_ = false;
    std::optional<std::string> refusal_;
};

} // namespace velmora
