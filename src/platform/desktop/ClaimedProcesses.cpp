#include "platform/desktop/ClaimedProcesses.h"

#include "platform/desktop/ProgramName.h"
#include "platform/desktop/SandboxNames.h"

#include <algorithm>
#include <ranges>
#include <string_view>

namespace velmora {

ClaimedProcesses::ClaimedProcesses(const ProcFiles& processes)
    : processes_(processes), host_(processes.hostName()) {
    for (const std::int32_t pid : processes.pids()) {
        byInnerPid_.emplace(processes.innerPid(pid), pid);
    }
}

std::vector<std::int32_t> ClaimedProcesses::behind(const ProgramClaim& claim) const {
    std::vector<std::int32_t> found;
    if (claim.program.empty() && claim.machine.empty() && claim.host.empty()) {
        return found; // a number alone is somebody's on every machine
    }
    const auto [first, last] = byInnerPid_.equal_range(claim.pid);
    for (const std::int32_t pid : std::ranges::subrange(first, last) | std::views::values) {
        if (processes_.stat(pid) && isOnSameMachine(pid, claim) &&
            isSameProgram(pid, claim.program) &&
            (claim.sandbox.empty() || sandboxOf(pid) == claim.sandbox)) {
            found.push_back(pid);
        }
    }
    // The service looks at the sandbox of whoever connects, and would have told of one.
    const auto isFree = [this](std::int32_t pid) { return sandboxOf(pid).empty(); };
    if (claim.sandbox.empty() && std::ranges::any_of(found, isFree)) {
        std::erase_if(found, [&](std::int32_t pid) { return !isFree(pid); });
    }
    return found;
}

/// A machine without an id is known by its name.
bool ClaimedProcesses::isOnSameMachine(std::int32_t pid, const ProgramClaim& claim) const {
    const std::string machine = processes_.machineId(pid);
    if (!machine.empty() && !claim.machine.empty()) {
        return machine == claim.machine;
    }
    return host_.empty() || claim.host.empty() || host_ == claim.host;
}

bool ClaimedProcesses::isSameProgram(std::int32_t pid, const std::string& program) const {
    constexpr std::size_t cutAt = 15; // the kernel cuts a process's name
    if (program.empty() || fileName(processes_.executable(pid)) == program) {
        return true;
    }
    const auto words = processes_.commandLine(pid);
    if (!words.empty() && fileName(words.front()) == program) {
        return true;
    }
    const auto stat = processes_.stat(pid);
    return stat && stat->name == std::string_view(program).substr(0, cutAt);
}

std::string ClaimedProcesses::sandboxOf(std::int32_t pid) const {
    return flatpakApplication(processes_.flatpakInfo(pid));
}

} // namespace velmora
