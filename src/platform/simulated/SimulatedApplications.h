// SimulatedApplications.h: applications that run and that are installed, in memory.
#pragma once

#include "platform/Applications.h"
#include "platform/MainQueue.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora {

/// What opening an application leads to.
struct LaunchPlan {
    std::optional<RunningApplication> result; ///< none = it could not be started
    std::chrono::milliseconds delay{0};       ///< until the completion
};

/// Threads: main.
class SimulatedApplications : public Applications {
public:
    static constexpr std::int32_t ownProcess = 1;

    explicit SimulatedApplications(MainQueue& mainQueue);

    // -- as a test arranges it --

    void run(const RunningApplication& application);
    void addHelper(std::int32_t pid, std::int32_t helper);
    void quit(std::int32_t pid);
    void install(const InstalledApplication& application);
    void setIcon(const std::string& bundleID, const std::string& icon);
    /// Without a plan, an installed application comes up at once under a new process id and
    /// anything else cannot be started.
    void planLaunch(const std::string& location, const LaunchPlan& plan);
    /// Every location that was asked to be launched, in order.
    [[nodiscard]] const std::vector<std::string>& launched() const { return launched_; }

    // -- as the interface has it --

    [[nodiscard]] std::int32_t ownPid() const override { return ownProcess; }
    [[nodiscard]] std::optional<RunningApplication> byPid(std::int32_t pid) const override;
    [[nodiscard]] std::optional<std::uint64_t> birth(std::int32_t pid) const override;
    [[nodiscard]] std::vector<RunningApplication>
    byBundleID(std::string_view bundleID) const override;
    [[nodiscard]] std::optional<InstalledApplication>
    installed(std::string_view bundleID) const override;
    [[nodiscard]] std::vector<InstalledApplication> allInstalled() const override;
    [[nodiscard]] std::optional<std::string> icon(std::string_view bundleID) const override;
    void launch(const std::string& location, LaunchCompletion completion) override;

private:
    [[nodiscard]] LaunchPlan planFor(const std::string& location);

    MainQueue& mainQueue_;
    std::vector<RunningApplication> running_;
    std::map<std::int32_t, std::uint64_t> births_;
    std::uint64_t lastBirth_ = 0;
    std::map<std::int32_t, std::int32_t> leaderOfHelper_;
    std::vector<InstalledApplication> installed_;
    std::map<std::string, std::string, std::less<>> icons_;
    std::map<std::string, LaunchPlan> plans_;
    std::vector<std::string> launched_;
    std::vector<std::unique_ptr<MainQueue::Timer>> pending_;
    std::int32_t nextPid_ = 9001; // clear of the ids that tests choose
};

} // namespace velmora
