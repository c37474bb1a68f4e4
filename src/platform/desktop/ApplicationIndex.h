// ApplicationIndex.h: which application a process belongs to, and which process leads it.
#pragma once

#include "platform/desktop/ProcFiles.h"

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class DesktopEntries;
struct DesktopEntry;

/// Answers from what is remembered of a process while it is the same process, runs the same
/// program, and the entries are the same.
///
/// Threads: one owner.
class ApplicationIndex {
public:
    ApplicationIndex(const ProcFiles& processes, DesktopEntries& entries)
        : processes_(processes), entries_(entries) {}

    /// The desktop entry that the process belongs to; null when there is none.
    [[nodiscard]] const DesktopEntry* entryOf(std::int32_t pid);

    /// The topmost ancestor of the same application. Same means: of the same desktop entry, or,
    /// without one, of the same program file. A shell does not lead, unless it is asked for.
    [[nodiscard]] std::int32_t leader(std::int32_t pid);

    /// The leaders of every running instance, in the order in which they were started. A shell
    /// counts when nothing but shells runs.
    [[nodiscard]] std::vector<std::int32_t> leadersOf(std::string_view entryId);

    [[nodiscard]] bool isShellProcess(std::int32_t pid) const;

private:
    /// Variables that GIO gives to what it launches, and that every child inherits.
    struct LaunchMark {
        std::string file; // of the desktop entry; empty = none
        std::int32_t pid{};

        bool operator==(const LaunchMark&) const = default;
    };

    /// What is remembered of one process.
    struct Known {
        std::uint64_t startTicks{};
        std::string name; // changes when the process runs another program
        std::uint64_t generation{};
        std::uint64_t question{}; // asked last
        bool isSettled{};         // holds for later questions as well
        std::string entryId;      // empty = none
    };

    [[nodiscard]] std::int32_t leaderOf(std::int32_t pid);
    [[nodiscard]] std::string entryIdOf(const ProcessStat& process, int depth);
    [[nodiscard]] std::string identify(const ProcessStat& process, int depth, bool& isFinal);
    [[nodiscard]] LaunchMark launchMarkOf(std::int32_t pid) const;
    [[nodiscard]] const DesktopEntry* bySandbox(const ProcessStat& process) const;
    [[nodiscard]] const DesktopEntry* byControlGroup(const ProcessStat& process,
                                                     const LaunchMark& mark) const;
    [[nodiscard]] bool isMarkedInside(const std::string& group,
                                      const ProcessStat& process,
                                      const LaunchMark& mark) const;
    [[nodiscard]] const DesktopEntry* byLauncher(const ProcessStat& process,
                                                 const LaunchMark& mark) const;
    [[nodiscard]] const DesktopEntry* byProgram(const ProcessStat& process) const;
    [[nodiscard]] const DesktopEntry* byVanishedLauncher(const ProcessStat& process,
                                                         const LaunchMark& mark) const;
    [[nodiscard]] bool isLauncherAlive(const ProcessStat& process, const LaunchMark& mark) const;
    [[nodiscard]] const DesktopEntry* markedEntry(const LaunchMark& mark) const;
    [[nodiscard]] const DesktopEntry* byParent(const ProcessStat& process, int depth);
    [[nodiscard]] bool isSameApplication(const ProcessStat& child, const ProcessStat& parent);

    const ProcFiles& processes_;
    DesktopEntries& entries_;
    std::map<std::int32_t, Known> known_;
    std::uint64_t question_ = 0; // number of the public call that is being answered
};

} // namespace velmora
