#include "platform/desktop/ApplicationIndex.h"

#include "platform/desktop/DesktopEntries.h"
#include "platform/desktop/ProgramName.h"
#include "platform/desktop/SandboxNames.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <tuple>

namespace velmora {

namespace {

// Process trees are finite; processes that come and go while they are read need not look so.
constexpr int deepestAncestor = 64;

// A desktop moves a process into its own group a moment after starting it.
constexpr double settledSeconds = 10;

std::string idOf(const DesktopEntry* entry) {
    return entry == nullptr ? std::string{} : entry->id;
}

/// Whether `child` was typed into a terminal that `parent` does not live in.
bool crossesTerminal(const ProcessStat& child, const ProcessStat& parent) {
    return child.terminal != 0 && child.terminal != parent.terminal;
}

} // namespace

const DesktopEntry* ApplicationIndex::entryOf(std::int32_t pid) {
    ++question_;
    const auto process = processes_.stat(pid);
    return process ? entries_.find(entryIdOf(*process, 0)) : nullptr;
}

std::string ApplicationIndex::entryIdOf(const ProcessStat& process, int depth) {
    const auto known = known_.find(process.pid);
    if (known != known_.end() && known->second.startTicks == process.startTicks &&
        known->second.name == process.name && known->second.generation == entries_.generation() &&
        (known->second.isSettled || known->second.question == question_)) {
        return known->second.entryId;
    }
    bool isFinal = false;
    std::string entryId = identify(process, depth, isFinal);
    known_.insert_or_assign(
        process.pid,
        Known{.startTicks = process.startTicks,
              .name = process.name,
              .generation = entries_.generation(),
              .question = question_,
              .isSettled = isFinal || processes_.ageSeconds(process) > settledSeconds,
              .entryId = entryId});
    return entryId;
}

std::string ApplicationIndex::identify(const ProcessStat& process, int depth, bool& isFinal) {
    isFinal = true;
    if (const auto* entry = bySandbox(process)) {
        return entry->id;
    }
    const LaunchMark mark = launchMarkOf(process.pid);
    if (const auto* entry = byLauncher(process, mark)) {
        return entry->id;
    }
    // What follows may still be overruled: a process carries its mark once it runs its program, and
    // the desktop may have yet to make its group.
    isFinal = false;
    if (const auto* entry = byControlGroup(process, mark)) {
        return entry->id;
    }
    if (const auto* entry = byProgram(process)) {
        return entry->id;
    }
    if (const auto* entry = byVanishedLauncher(process, mark)) {
        return entry->id;
    }
    return idOf(byParent(process, depth));
}

const DesktopEntry* ApplicationIndex::bySandbox(const ProcessStat& process) const {
    return entries_.find(flatpakApplication(processes_.flatpakInfo(process.pid)));
}

/// A group is inherited as well: what was launched inside it belongs to the mark of that launch.
const DesktopEntry* ApplicationIndex::byControlGroup(const ProcessStat& process,
                                                     const LaunchMark& mark) const {
    // The group of a terminal holds all that is started in it.
    if (process.terminal != 0) {
        return nullptr;
    }
    const std::string group = processes_.controlGroups(process.pid);
    for (const auto& id : desktopIdsOfControlGroup(group)) {
        const auto* entry = entries_.find(id);
        if (entry != nullptr && !entry->isTerminal) {
            const auto* const marked = markedEntry(mark);
            const bool isMarkNearer =
                marked != nullptr && marked != entry && isMarkedInside(group, process, mark);
            return isMarkNearer ? marked : entry;
        }
    }
    return nullptr;
}

/// Whether the launch that left the mark happened inside the group. A mark that came into it with
/// its first process says nothing: sessions hand their own to whatever they start.
bool ApplicationIndex::isMarkedInside(const std::string& group,
                                      const ProcessStat& process,
                                      const LaunchMark& mark) const {
    if (isLauncherAlive(process, mark)) {
        return processes_.controlGroups(mark.pid) == group;
    }
    return std::ranges::any_of(processes_.pids(), [&](std::int32_t pid) {
        const auto other = processes_.stat(pid);
        return other && other->startTicks < process.startTicks &&
               processes_.controlGroups(pid) == group && launchMarkOf(pid) != mark;
    });
}

ApplicationIndex::LaunchMark ApplicationIndex::launchMarkOf(std::int32_t pid) const {
    LaunchMark mark;
    const auto variables = processes_.environment(pid);
    for (const std::string_view variable : variables) {
        constexpr std::string_view file = "GIO_LAUNCHED_DESKTOP_FILE=";
        constexpr std::string_view number = "GIO_LAUNCHED_DESKTOP_FILE_PID=";
        if (variable.starts_with(file)) {
            mark.file = variable.substr(file.size());
        } else if (variable.starts_with(number)) {
            const auto digits = variable.substr(number.size());
            std::from_chars(digits.data(), digits.data() + digits.size(), mark.pid);
        }
    }
    return mark;
}

const DesktopEntry* ApplicationIndex::byLauncher(const ProcessStat& process,
                                                 const LaunchMark& mark) const {
    return mark.pid == process.pid && !mark.file.empty() ? entries_.findFile(mark.file) : nullptr;
}

const DesktopEntry* ApplicationIndex::byProgram(const ProcessStat& process) const {
    const auto programs =
        programsOfProcess(processes_.executable(process.pid), processes_.commandLine(process.pid));
    for (const std::string& program : programs) {
        if (const auto* entry = entries_.findProgram(program)) {
            return entry;
        }
    }
    for (const std::string& program : programs) {
        if (const auto* entry = entries_.findWindowClass(program)) {
            return entry;
        }
    }
    return nullptr;
}

/// A wrapper that has ended leaves its variables with what it started.
const DesktopEntry* ApplicationIndex::byVanishedLauncher(const ProcessStat& process,
                                                         const LaunchMark& mark) const {
    // The descendants of a launcher that lives are found through their parents.
    return process.terminal != 0 || isLauncherAlive(process, mark) ? nullptr : markedEntry(mark);
}

bool ApplicationIndex::isLauncherAlive(const ProcessStat& process, const LaunchMark& mark) const {
    const auto launched = processes_.stat(mark.pid);
    return launched && launched->startTicks <= process.startTicks;
}

/// Null for a terminal's: it launches nothing that is itself.
const DesktopEntry* ApplicationIndex::markedEntry(const LaunchMark& mark) const {
    const auto* entry = mark.file.empty() ? nullptr : entries_.findFile(mark.file);
    return entry != nullptr && !entry->isTerminal ? entry : nullptr;
}

/// A helper process belongs to the application that started it. A program started from a terminal
/// or by the desktop's own shell is no helper.
const DesktopEntry* ApplicationIndex::byParent(const ProcessStat& process, int depth) {
    if (depth >= deepestAncestor || process.parent <= 1) {
        return nullptr;
    }
    const auto parent = processes_.stat(process.parent);
    if (!parent || crossesTerminal(process, *parent)) {
        return nullptr;
    }
    const auto* entry = entries_.find(entryIdOf(*parent, depth + 1));
    return entry != nullptr && entry->isVisible && !entry->isTerminal ? entry : nullptr;
}

bool ApplicationIndex::isShellProcess(std::int32_t pid) const {
    return isShell(fileName(processes_.executable(pid)));
}

bool ApplicationIndex::isSameApplication(const ProcessStat& child, const ProcessStat& parent) {
    const std::string entryId = entryIdOf(child, 0);
    if (entryId != entryIdOf(parent, 0)) {
        return false;
    }
    if (!entryId.empty()) {
        return true;
    }
    // An interpreter's file says nothing about what it runs.
    const std::string program = processes_.executable(child.pid);
    return !program.empty() && !isInterpreter(fileName(program)) &&
           program == processes_.executable(parent.pid);
}

std::int32_t ApplicationIndex::leader(std::int32_t pid) {
    ++question_;
    return leaderOf(pid);
}

std::int32_t ApplicationIndex::leaderOf(std::int32_t pid) {
    std::int32_t leader = pid;
    auto process = processes_.stat(pid);
    for (int depth = 0; process && process->parent > 1 && depth < deepestAncestor; ++depth) {
        auto parent = processes_.stat(process->parent);
        if (!parent || !isSameApplication(*process, *parent)) {
            break;
        }
        if (!isShellProcess(parent->pid)) {
            leader = parent->pid;
        }
        process = std::move(parent);
    }
    return leader;
}

std::vector<std::int32_t> ApplicationIndex::leadersOf(std::string_view entryId) {
    ++question_;
    using Started = std::pair<std::uint64_t, std::int32_t>; // ticks and process id
    std::set<Started> programs;
    std::set<Started> shells;
    auto pids = processes_.pids();
    std::ranges::sort(pids);
    std::erase_if(
        known_, [&](const auto& known) { return !std::ranges::binary_search(pids, known.first); });
    for (const std::int32_t pid : pids) {
        const auto process = processes_.stat(pid);
        if (!process || entryId.empty() || entryIdOf(*process, 0) != entryId) {
            continue;
        }
        const auto leading = processes_.stat(leaderOf(pid)).value_or(*process);
        (isShellProcess(leading.pid) ? shells : programs).emplace(leading.startTicks, leading.pid);
    }
    std::vector<std::int32_t> leaders;
    for (const auto& [ticks, pid] : programs.empty() ? shells : programs) {
        leaders.push_back(pid);
    }
    return leaders;
}

} // namespace velmora
