#include "platform/desktop/DesktopApplications.h"

#include "platform/desktop/ApplicationIndex.h"
#include "platform/desktop/ClaimedProcesses.h"
#include "platform/desktop/DesktopEntries.h"
#include "platform/desktop/Gio.h"
#include "platform/desktop/LaunchWatch.h"

#include <algorithm>
#include <cstdlib>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>

namespace velmora {

namespace fs = std::filesystem;

namespace {

InstalledApplication describe(const DesktopEntry& entry) {
    return {.bundleID = entry.id, .name = entry.name, .location = entry.path};
}

/// The kernel cuts a process's name; its file or first argument may show the rest.
std::string fullName(const ProcessStat& process, const ProcFiles& processes) {
    constexpr std::size_t cutAt = 15;
    if (process.name.size() < cutAt) {
        return process.name;
    }
    auto candidates = processes.commandLine(process.pid);
    candidates.resize(std::min<std::size_t>(candidates.size(), 2)); // the program, or its script
    candidates.push_back(processes.executable(process.pid));
    for (const fs::path candidate : candidates) {
        const std::string name = candidate.filename();
        if (name.starts_with(process.name)) {
            return name;
        }
    }
    return process.name;
}

/// In the new process: leaves our terminal, whose interrupt and end are not for applications, and
/// our limit of open files, which may be raised: programs that use select() rely on the usual one.
void leaveUs(gpointer) {
    constexpr rlim_t usualFiles = 1024;
    ::setsid();
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur > usualFiles) {
        limit.rlim_cur = usualFiles;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

/// The entry, always as a program to run. Starting one over D-Bus would tell no process id; GIO
/// does so wherever it can (2.74, g_desktop_app_info_launch_uris_internal), but not for an entry
/// that has no file of its own.
AppInfo programEntry(const std::string& location) {
    AppInfo info(g_desktop_app_info_new_from_filename(location.c_str()));
    if (info && g_desktop_app_info_get_boolean(info.get(), "DBusActivatable") != FALSE) {
        const KeyFile content(g_key_file_new());
        g_key_file_load_from_file(content.get(), location.c_str(), G_KEY_FILE_NONE, nullptr);
        info.reset(g_desktop_app_info_new_from_keyfile(content.get()));
    }
    return info;
}

/// Starts what the entry names.
std::optional<std::int32_t> start(const std::string& location) {
    const AppInfo info = programEntry(location);
    std::optional<std::int32_t> started;
    if (!info) {
        return started;
    }
    // By this variable the application is found again.
    const LaunchContext context(g_app_launch_context_new());
    g_app_launch_context_setenv(context.get(), "GIO_LAUNCHED_DESKTOP_FILE", location.c_str());
    int flags = G_SPAWN_SEARCH_PATH;
    if (::isatty(STDOUT_FILENO) != 0) {
        flags |= G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL; // the mixer draws there
    }
    g_desktop_app_info_launch_uris_as_manager(
        info.get(),
        nullptr,
        context.get(),
        static_cast<GSpawnFlags>(flags),
        leaveUs,
        nullptr,
        [](GDesktopAppInfo*, GPid pid, gpointer result) {
            *static_cast<std::optional<std::int32_t>*>(result) = pid;
        },
        &started,
        nullptr);
    return started;
}

/// FNV-1a over the bytes, cut to what a floating-point number holds exactly.
std::uint64_t birthNumber(std::string_view text) {
    constexpr std::uint64_t offsetBasis = 14695981039346656037U;
    constexpr std::uint64_t prime = 1099511628211U;
    constexpr unsigned kept = 53; // bits
    std::uint64_t hash = offsetBasis;
    for (const char byte : text) {
        hash = (hash ^ static_cast<unsigned char>(byte)) * prime;
    }
    return (hash ^ (hash >> kept)) & ((std::uint64_t{1} << kept) - 1);
}

void addFolders(std::vector<fs::path>& folders, const char* list, const char* otherwise) {
    std::string_view rest = list != nullptr && *list != '\0' ? list : otherwise;
    while (!rest.empty()) {
        const auto end = rest.find(':');
        // Relative folders there are to be ignored (XDG Base Directory, version 0.8).
        if (const fs::path folder = rest.substr(0, end); folder.is_absolute()) {
            folders.push_back(folder);
        }
        rest = end == std::string_view::npos ? std::string_view{} : rest.substr(end + 1);
    }
}

} // namespace

std::vector<fs::path> DesktopApplications::xdgDataFolders() {
    // NOLINTBEGIN(concurrency-mt-unsafe): nothing here changes the environment
    const char* home = std::getenv("HOME");
    const char* own = std::getenv("XDG_DATA_HOME");
    const char* shared = std::getenv("XDG_DATA_DIRS");
    // NOLINTEND(concurrency-mt-unsafe)
    const std::string ownOtherwise = std::string(home != nullptr ? home : "") + "/.local/share";
    std::vector<fs::path> folders;
    addFolders(folders, own, ownOtherwise.c_str());
    addFolders(folders, shared, "/usr/local/share:/usr/share");
    return folders;
}

DesktopApplications::DesktopApplications(MainQueue& mainQueue, const Options& options)
    : mainQueue_(mainQueue), processes_(options.procRoot), nameOf_(options.nameOf),
      bundleIDOf_(options.bundleIDOf),
      entries_(std::make_unique<DesktopEntries>(options.dataFolders)),
      index_(std::make_unique<ApplicationIndex>(processes_, *entries_)) {
}

DesktopApplications::~DesktopApplications() = default;

std::int32_t DesktopApplications::ownPid() const {
    return ::getpid();
}

std::int32_t DesktopApplications::leader(std::int32_t pid) const {
    entries_->refresh();
    return index_->leader(pid);
}

std::optional<RunningApplication> DesktopApplications::byPid(std::int32_t pid) const {
    if (pid >= firstStandIn) {
        return standIn(pid);
    }
    const auto leading = processes_.stat(leader(pid));
    return leading ? std::optional(describe(*leading)) : std::nullopt;
}

std::optional<RunningApplication> DesktopApplications::standIn(std::int32_t number) const {
    entries_->refresh();
    if (const auto* entry = entries_->find(bundleIDOf_ ? bundleIDOf_(number) : "")) {
        return RunningApplication{
            .pid = number, .name = entry->name, .bundleID = entry->id, .regular = entry->isVisible};
    }
    const std::string name = nameOf_ ? nameOf_(number) : "";
    return name.empty() ? std::nullopt
                        : std::optional(RunningApplication{
                              .pid = number, .name = name, .bundleID = {}, .regular = false});
}

std::vector<ProgramIdentity>
DesktopApplications::identify(const std::vector<ProgramClaim>& claims) const {
    entries_->refresh();
    std::optional<ClaimedProcesses> processes; // a walk through /proc, if need be
    std::vector<ProgramIdentity> programs;
    for (const ProgramClaim& claim : claims) {
        if (claim.isVouchedFor) {
            programs.push_back({.pid = claim.pid});
            continue;
        }
        if (!processes) {
            processes.emplace(processes_);
        }
        programs.push_back(identityAmong(processes->behind(claim), claim));
    }
    return programs;
}

ProgramIdentity DesktopApplications::identityAmong(const std::vector<std::int32_t>& processes,
                                                   const ProgramClaim& claim) const {
    const auto areOne = [&](const auto& property) {
        return std::ranges::all_of(processes, [&](std::int32_t pid) {
            return property(pid) == property(processes.front());
        });
    };
    if (processes.empty()) {
        return {.bundleID = claim.sandbox};
    }
    if (areOne([this](std::int32_t pid) { return index_->leader(pid); })) {
        return {.pid = processes.front()};
    }
    const auto entryOf = [this](std::int32_t pid) { return index_->entryOf(pid); };
    const auto* const entry = areOne(entryOf) ? entryOf(processes.front()) : nullptr;
    return {.bundleID = entry == nullptr ? claim.sandbox : entry->id};
}

RunningApplication DesktopApplications::describe(const ProcessStat& leading) const {
    if (const DesktopEntry* entry = index_->entryOf(leading.pid)) {
        return {.pid = leading.pid,
                .name = entry->name,
                .bundleID = entry->id,
                .regular = entry->isVisible};
    }
    std::string name = nameOf_ ? nameOf_(leading.pid) : "";
    return {.pid = leading.pid,
            .name = name.empty() ? fullName(leading, processes_) : std::move(name),
            .bundleID = {},
            .regular = false};
}

std::optional<std::uint64_t> DesktopApplications::birth(std::int32_t pid) const {
    // A stand-in is a connection to this very process.
    const bool isStandIn = pid >= firstStandIn;
    const auto process = processes_.stat(isStandIn ? ownPid() : pid);
    if (!process || (isStandIn && !standIn(pid))) {
        return std::nullopt;
    }
    return birthNumber(processes_.bootId() + " " + std::to_string(process->startTicks) +
                       (isStandIn ? " " + std::to_string(pid) : ""));
}

std::vector<RunningApplication> DesktopApplications::byBundleID(std::string_view bundleID) const {
    std::vector<RunningApplication> instances;
    entries_->refresh();
    if (entries_->find(bundleID) == nullptr) {
        return instances;
    }
    for (const std::int32_t leading : index_->leadersOf(bundleID)) {
        if (const auto process = processes_.stat(leading)) {
            instances.push_back(describe(*process));
        }
    }
    return instances;
}

std::optional<InstalledApplication>
DesktopApplications::installed(std::string_view bundleID) const {
    entries_->refresh();
    const DesktopEntry* entry = entries_->find(bundleID);
    return entry == nullptr ? std::nullopt : std::optional(velmora::describe(*entry));
}

std::vector<InstalledApplication> DesktopApplications::allInstalled() const {
    entries_->refresh();
    std::vector<InstalledApplication> applications;
    for (const auto& [id, entry] : entries_->all()) {
        if (entry.isOffered) {
            applications.push_back(velmora::describe(entry));
        }
    }
    return applications;
}

std::optional<std::string> DesktopApplications::icon(std::string_view bundleID) const {
    entries_->refresh();
    const DesktopEntry* entry = entries_->find(bundleID);
    return entry == nullptr || entry->icon.empty() ? std::nullopt : std::optional(entry->icon);
}

void DesktopApplications::launch(const std::string& location, LaunchCompletion completion) {
    entries_->refresh();
    const DesktopEntry* entry = entries_->findFile(location);
    const std::string entryId = entry == nullptr ? std::string{} : entry->id;
    const auto earlier = index_->leadersOf(entryId);
    const auto pid = start(location);
    if (!pid) {
        mainQueue_.post([completion = std::move(completion)] { completion(std::nullopt); });
        return;
    }
    const auto place = launches_.emplace(launches_.end());
    *place = std::make_unique<LaunchWatch>(
        mainQueue_,
        *index_,
        processes_,
        LaunchWatch::Launch{.entryId = entryId, .pid = *pid, .earlier = earlier},
        [this, place, completion = std::move(completion)](std::optional<std::int32_t> leader) {
            launches_.erase(place);
            completion(leader ? byPid(*leader) : std::nullopt);
        });
}

} // namespace velmora
