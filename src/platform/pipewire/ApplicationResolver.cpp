#include "platform/pipewire/ApplicationResolver.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <ranges>

namespace velmora::pipewire {

std::int32_t ApplicationResolver::leader(std::int32_t pid) const {
    const std::int32_t answer = knowledge_.leaderOf ? knowledge_.leaderOf(pid) : pid;
    return answer > 0 ? answer : pid;
}

std::vector<ProgramIdentity>
ApplicationResolver::identify(const std::vector<ProgramClaim>& claims) const {
    if (knowledge_.identify) {
        return knowledge_.identify(claims);
    }
    std::vector<ProgramIdentity> programs;
    std::ranges::transform(claims, std::back_inserter(programs), [](const ProgramClaim& claim) {
        return ProgramIdentity{.pid = claim.pid};
    });
    return programs;
}

void ApplicationResolver::resolve(const ProcessDirectory::Claims& claims) {
    if (claims.empty()) {
        return;
    }
    // Asked for without the session's lock: the answer may take a walk through /proc.
    std::vector<ProgramClaim> asked;
    std::ranges::copy(claims | std::views::values, std::back_inserter(asked));
    std::map<Serial, ProcessDirectory::Owner> owners;
    auto client = claims.begin();
    for (ProgramIdentity& program : identify(asked)) {
        ProcessDirectory::Owner& owner = owners[client->first];
        if (program.pid != 0) {
            const std::int32_t leading = leader(program.pid);
            owner.leader = {.pid = leading,
                            .start = knowledge_.startOf ? knowledge_.startOf(leading) : 0};
        }
        owner.program = std::move(program);
        ++client;
    }
    session_.change([&](SessionState& state) {
        for (const auto& [answered, owner] : owners) {
            state.processes.resolve(answered, claims.at(answered), owner);
        }
        state.processes.update(state.graph);
    });
}

void ApplicationResolver::resolveAll() {
    resolve(session_.read([](SessionState& state, bool) {
        state.processes.update(state.graph);
        return state.processes.unresolved();
    }));
}

} // namespace velmora::pipewire
