// ClaimedProcesses.h: finds the process behind what a program says of itself.
#pragma once

#include "platform/ProgramClaim.h"
#include "platform/desktop/ProcFiles.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace velmora {

/// The processes that run at the time of its construction, by the number that each has in its own
/// namespace: two sandboxes easily give out the same one, and outside it is somebody else's.
///
/// Threads: one owner.
class ClaimedProcesses {
public:
    explicit ClaimedProcesses(const ProcFiles& processes);

    /// Every process that could have said so: one is certain, several cannot be told apart.
    [[nodiscard]] std::vector<std::int32_t> behind(const ProgramClaim& claim) const;

private:
    [[nodiscard]] bool isOnSameMachine(std::int32_t pid, const ProgramClaim& claim) const;
    [[nodiscard]] bool isSameProgram(std::int32_t pid, const std::string& program) const;
    [[nodiscard]] std::string sandboxOf(std::int32_t pid) const;

    const ProcFiles& processes_;
    std::multimap<std::int32_t, std::int32_t> byInnerPid_;
    std::string host_;
};

} // namespace velmora
