// LoginItem.h: whether the desktop starts this program when the user logs in.
#pragma once

#include <expected>
#include <string>

namespace velmora {

/// Threads: main.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    /// What the next login would do. Read anew each time, because others may change it.
    [[nodiscard]] virtual bool isEnabled() const = 0;

    /// Success, or the platform's own message, made for the user.
    using Outcome = std::expected<void, std::string>;

    /// Whatever the outcome, `isEnabled` tells the state afterwards.
    virtual Outcome registerItem() = 0;
    /// Unregistering what is not registered succeeds.
    virtual Outcome unregisterItem() = 0;
};

} // namespace velmora
