// DesktopApplications.h: the desktop's applications, from /proc and the desktop entries.
#pragma once

#include "platform/Applications.h"
#include "platform/MainQueue.h"
#include "platform/ProgramClaim.h"
#include "platform/desktop/ProcFiles.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

class ApplicationIndex;
class DesktopEntries;
class LaunchWatch;

/// Threads: main, as `Applications`. Reads a few small files per process; what a process is, is
/// remembered until it ends, runs another program, or the desktop entries change.
class DesktopApplications final : public Applications {
public:
    struct Options {
        std::filesystem::path procRoot = "/proc";
        /// Each may hold a folder "applications"; the first that has an entry wins.
        std::vector<std::filesystem::path> dataFolders = xdgDataFolders();
        /// What a leading process without a desktop entry, or a stand-in, calls itself; empty when
        /// nobody knows, and the process's own name serves.
        std::function<std::string(std::int32_t pid)> nameOf{};
        /// The desktop entry that `identify` has told of a stand-in; empty when it told none.
        std::function<std::string(std::int32_t pid)> bundleIDOf{};
    };

    explicit DesktopApplications(MainQueue& mainQueue)
        : DesktopApplications(mainQueue, Options{}) {}
    DesktopApplications(MainQueue& mainQueue, const Options& options);
    ~DesktopApplications() override; ///< completions of launches under way are never called
    DesktopApplications(const DesktopApplications&) = delete;
    DesktopApplications& operator=(const DesktopApplications&) = delete;

    /// $XDG_DATA_HOME and $XDG_DATA_DIRS, with their defaults.
    [[nodiscard]] static std::vector<std::filesystem::path> xdgDataFolders();

    /// The process that leads the application of `pid`: its topmost ancestor of the same
    /// application, so that a browser's audio helper leads to the browser. A terminal or a shell
    /// never leads what was started in it. `pid` itself when it leads, or does not run.
    [[nodiscard]] std::int32_t leader(std::int32_t pid) const;

    /// Which process each of these programs is. Certain, or not told: then it may still be known
    /// which application it is.
    [[nodiscard]] std::vector<ProgramIdentity>
    identify(const std::vector<ProgramClaim>& claims) const;

    [[nodiscard]] std::int32_t ownPid() const override;
    [[nodiscard]] std::optional<RunningApplication> byPid(std::int32_t pid) const override;
    [[nodiscard]] std::optional<std::uint64_t> birth(std::int32_t pid) const override;
    [[nodiscard]] std::vector<RunningApplication>
    byBundleID(std::string_view bundleID) const override;
    [[nodiscard]] std::optional<InstalledApplication>
    installed(std::string_view bundleID) const override;
    [[nodiscard]] std::vector<InstalledApplication> allInstalled() const override;
    [[nodiscard]] std::optional<std::string> icon(std::string_view bundleID) const override;

    /// A wrapper is not the application that it starts: the completion brings the one that came up
    /// and stayed, found again by its entry. An application that ends at once did not come up.
    void launch(const std::string& location, LaunchCompletion completion) override;

private:
    [[nodiscard]] RunningApplication describe(const ProcessStat& leading) const;
    [[nodiscard]] std::optional<RunningApplication> standIn(std::int32_t number) const;
    [[nodiscard]] ProgramIdentity identityAmong(const std::vector<std::int32_t>& processes,
                                                const ProgramClaim& claim) const;

    MainQueue& mainQueue_;
    ProcFiles processes_;
    std::function<std::string(std::int32_t pid)> nameOf_;
    std::function<std::string(std::int32_t pid)> bundleIDOf_;
    std::unique_ptr<DesktopEntries> entries_;
    std::unique_ptr<ApplicationIndex> index_;
    std::list<std::unique_ptr<LaunchWatch>> launches_;
};

} // namespace velmora
