// DefaultOutputWatch.h: decides when a change of the default output is told.
#pragma once

#include <optional>
#include <string>

namespace velmora::pipewire {

/// Not told: that there is no default output just now. When the device comes back under its name,
/// or another one takes its place, that is told.
class DefaultOutputWatch {
public:
    /// Takes the present default output without telling it.
    void start(std::optional<std::string> uid) { known_ = std::move(uid); }

    /// The service was lost: whatever comes next is told, also the same device.
    void lose() { known_.reset(); }

    /// Returns true when `uid` is to be told as a change.
    bool update(const std::optional<std::string>& uid) {
        const bool isNews = uid && uid != known_;
        known_ = uid;
        return isNews;
    }

private:
    std::optional<std::string> known_;
};

} // namespace velmora::pipewire
