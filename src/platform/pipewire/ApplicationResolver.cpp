#include "platform/pipewire/ApplicationResolver.h"

#include <map>

namespace velmora::pipewire {

std::int32_t ApplicationResolver::leader(std::int32_t pid) const {
    const std::int32_t answer = leaderOf_ ? leaderOf_(pid) : pid;
    return answer > 0 ? answer : pid;
}

void ApplicationResolver::resolve(const std::set<std::int32_t>& pids) {
    // Asked for without the session's lock: the answer may take a walk through /proc.
    std::map<std::int32_t, ProcessDirectory::Leader> leaders;
    for (const std::int32_t pid : pids) {
        const std::int32_t leading = leader(pid);
        leaders[pid] = {.pid = leading, .start = startOf_ ? startOf_(leading) : 0};
    }
    if (leaders.empty()) {
        return;
    }
    session_.change([&](SessionState& state) {
        for (const auto& [pid, leading] : leaders) {
            state.processes.resolve(pid, leading);
        }
        state.processes.update(state.graph);
    });
}

void ApplicationResolver::resolveAll() {
    resolve(session_.read([](SessionState& state, bool) {
        state.processes.update(state.graph);
        return state.processes.unresolvedPids();
    }));
}

} // namespace velmora::pipewire
