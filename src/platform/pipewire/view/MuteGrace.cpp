#include "platform/pipewire/view/MuteGrace.h"

#include "platform/pipewire/view/Earliest.h"

namespace velmora::pipewire {

MuteGrace::Processes MuteGrace::follow(const Processes& wanted, Clock::time_point now) {
    for (const AudioObjectID process : wanted) {
        until_[process].reset();
    }
    for (auto& [process, until] : until_) {
        if (!wanted.contains(process)) {
            until = until.value_or(now + lasts);
        }
    }
    std::erase_if(until_, [now](const auto& one) { return one.second && *one.second <= now; });
    Processes silent;
    for (const auto& [process, until] : until_) {
        silent.insert(process);
    }
    return silent;
}

std::optional<MuteGrace::Clock::time_point> MuteGrace::due() const {
    std::optional<Clock::time_point> first;
    for (const auto& [process, until] : until_) {
        first = earliest(first, until);
    }
    return first;
}

} // namespace velmora::pipewire
