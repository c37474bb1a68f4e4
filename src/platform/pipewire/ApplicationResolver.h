// ApplicationResolver.h: tells the session which application a process belongs to.
#pragma once

#include "platform/pipewire/Session.h"

#include <cstdint>
#include <functional>
#include <set>
#include <utility>

namespace velmora::pipewire {

/// Threads: main, because that is where the answer may be asked for.
class ApplicationResolver {
public:
    using LeaderOf = std::function<std::int32_t(std::int32_t pid)>;
    using StartOf = std::function<std::uint64_t(std::int32_t pid)>;

    ApplicationResolver(Session& session, LeaderOf leaderOf, StartOf startOf)
        : session_(session), leaderOf_(std::move(leaderOf)), startOf_(std::move(startOf)) {}

    [[nodiscard]] std::int32_t leader(std::int32_t pid) const;
    void resolve(const std::set<std::int32_t>& pids);
    /// Answers everything that is open now.
    void resolveAll();

private:
    Session& session_;
    LeaderOf leaderOf_;
    StartOf startOf_;
};

} // namespace velmora::pipewire
