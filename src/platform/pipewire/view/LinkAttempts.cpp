#include "platform/pipewire/view/LinkAttempts.h"

#include <array>

namespace velmora::pipewire {
namespace {

using namespace std::chrono_literals;

/// Before the second, third, ... request. The first ones serve ports that are just being made, the
/// last ones a session manager that is busy.
constexpr auto pauses =
    std::to_array<std::chrono::milliseconds>({20ms, 80ms, 300ms, 1000ms, 3000ms, 10000ms});
constexpr auto lasting = 5s;

} // namespace

std::optional<LinkAttempts::Clock::time_point> LinkAttempts::next() const {
    if (count_ == 0) {
        return Clock::time_point{};
    }
    return count_ > pauses.size() ? std::nullopt : std::optional(last_ + pauses[count_ - 1]);
}

void LinkAttempts::made(Clock::time_point now) {
    ++count_;
    last_ = now;
}

void LinkAttempts::lasts(Clock::time_point now) {
    if (now - last_ >= lasting) {
        count_ = 0;
    }
}

} // namespace velmora::pipewire
