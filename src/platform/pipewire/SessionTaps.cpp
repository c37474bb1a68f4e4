#include "platform/pipewire/SessionTaps.h"

#include "platform/pipewire/Tap.h"

#include <algorithm>
#include <utility>

namespace velmora::pipewire {

std::optional<std::vector<AudioObjectID>> SessionTaps::processObjects() const {
    applications_.resolveAll();
    return session_.read([](SessionState& state, bool isAvailable) {
        return isAvailable ? std::optional(state.processes.objects()) : std::nullopt;
    });
}

std::optional<std::int32_t> SessionTaps::processPid(AudioObjectID process) const {
    const std::int32_t pid = session_.read(
        [process](SessionState& state, bool) { return state.processes.pid(process); });
    return pid == 0 ? std::nullopt : std::optional(pid);
}

std::optional<bool> SessionTaps::processIsRunningOutput(AudioObjectID process) const {
    return session_.read([process](SessionState& state, bool) -> std::optional<bool> {
        if (state.processes.pid(process) == 0) {
            return std::nullopt;
        }
        return std::ranges::any_of(state.processes.streams(process), [&](Serial stream) {
            const Node* const node = state.graph.node(stream);
            return node != nullptr && node->isRunning;
        });
    });
}

std::optional<AudioObjectID> SessionTaps::processForPid(std::int32_t pid) const {
    applications_.resolveAll();
    const std::int32_t leader = applications_.leader(pid);
    const AudioObjectID object = session_.read([leader](SessionState& state, bool isAvailable) {
        return isAvailable ? state.processes.objectOf(leader) : 0;
    });
    return object == 0 ? std::nullopt : std::optional(object);
}

std::optional<ApplicationSound> SessionTaps::sound(AudioObjectID process) const {
    return session_.read(
        [process](SessionState& state, bool isAvailable) -> std::optional<ApplicationSound> {
            if (!isAvailable || state.processes.pid(process) == 0) {
                return std::nullopt;
            }
            return state.sound(process);
        });
}

std::optional<double> SessionTaps::tapRate() const {
    return session_.read([](SessionState& state, bool isAvailable) {
        return isAvailable ? std::optional(state.rate.hz()) : std::nullopt;
    });
}

std::expected<std::unique_ptr<ApplicationTap>, TapRefusal>
SessionTaps::open(AudioObjectID process, Mute mute, float divisor, TapCallback callback) {
    return Tap::open(session_, process, mute, divisor, std::move(callback));
}

} // namespace velmora::pipewire
