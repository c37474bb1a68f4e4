// ApplicationResolver.h: tells the session which application a client belongs to.
#pragma once

#include "platform/pipewire/Session.h"

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace velmora::pipewire {

/// Who can answer; whatever is empty takes a process as it says, by itself.
struct ApplicationKnowledge {
    std::function<std::vector<ProgramIdentity>(const std::vector<ProgramClaim>& claims)> identify;
    std::function<std::int32_t(std::int32_t pid)> leaderOf;
    std::function<std::uint64_t(std::int32_t pid)> startOf;
};

/// Threads: main, because that is where the answer may be asked for.
class ApplicationResolver {
public:
    ApplicationResolver(Session& session, ApplicationKnowledge knowledge)
        : session_(session), knowledge_(std::move(knowledge)) {}

    [[nodiscard]] std::int32_t leader(std::int32_t pid) const;
    void resolve(const ProcessDirectory::Claims& claims);
    /// Answers everything that is open now.
    void resolveAll();

private:
    [[nodiscard]] std::vector<ProgramIdentity>
    identify(const std::vector<ProgramClaim>& claims) const;

    Session& session_;
    ApplicationKnowledge knowledge_;
};

} // namespace velmora::pipewire
