#include "platform/simulated/SimulatedApplications.h"

#include <algorithm>
#include <utility>

namespace velmora {

SimulatedApplications::SimulatedApplications(MainQueue& mainQueue) : mainQueue_(mainQueue) {
}

void SimulatedApplications::run(const RunningApplication& application) {
    running_.push_back(application);
    births_[application.pid] = ++lastBirth_;
}

void SimulatedApplications::addHelper(std::int32_t pid, std::int32_t helper) {
    leaderOfHelper_[helper] = pid;
}

void SimulatedApplications::quit(std::int32_t pid) {
    std::erase_if(running_, [&](const RunningApplication& item) { return item.pid == pid; });
    births_.erase(pid);
    std::erase_if(leaderOfHelper_, [&](const auto& item) { return item.second == pid; });
}

void SimulatedApplications::install(const InstalledApplication& application) {
    installed_.push_back(application);
}

void SimulatedApplications::setIcon(const std::string& bundleID, const std::string& icon) {
    icons_[bundleID] = icon;
}

void SimulatedApplications::planLaunch(const std::string& location, const LaunchPlan& plan) {
    plans_[location] = plan;
}

std::optional<RunningApplication> SimulatedApplications::byPid(std::int32_t pid) const {
    const auto helper = leaderOfHelper_.find(pid);
    const std::int32_t leader = helper == leaderOfHelper_.end() ? pid : helper->second;
    const auto found = std::ranges::find(running_, leader, &RunningApplication::pid);
    return found == running_.end() ? std::nullopt : std::optional(*found);
}

std::optional<std::uint64_t> SimulatedApplications::birth(std::int32_t pid) const {
    const auto found = births_.find(pid);
    return found == births_.end() ? std::nullopt : std::optional(found->second);
}

std::vector<RunningApplication> SimulatedApplications::byBundleID(std::string_view bundleID) const {
    std::vector<RunningApplication> instances;
    std::ranges::copy_if(running_, std::back_inserter(instances), [&](const auto& item) {
        return item.bundleID == bundleID;
    });
    return instances;
}

std::optional<InstalledApplication>
SimulatedApplications::installed(std::string_view bundleID) const {
    const auto found = std::ranges::find(installed_, bundleID, &InstalledApplication::bundleID);
    return found == installed_.end() ? std::nullopt : std::optional(*found);
}

std::vector<InstalledApplication> SimulatedApplications::allInstalled() const {
    return installed_;
}

std::optional<std::string> SimulatedApplications::icon(std::string_view bundleID) const {
    const auto found = icons_.find(bundleID);
    return found == icons_.end() ? std::nullopt : std::optional(found->second);
}

LaunchPlan SimulatedApplications::planFor(const std::string& location) {
    if (const auto plan = plans_.find(location); plan != plans_.end()) {
        return plan->second;
    }
    const auto found = std::ranges::find(installed_, location, &InstalledApplication::location);
    if (found == installed_.end()) {
        return {};
    }
    return {
        .result = RunningApplication{
            .pid = nextPid_++, .name = found->name, .bundleID = found->bundleID, .regular = true}};
}

void SimulatedApplications::launch(const std::string& location, LaunchCompletion completion) {
    launched_.push_back(location);
    const LaunchPlan plan = planFor(location);
    pending_.push_back(mainQueue_.after(
        plan.delay, [this, result = plan.result, completion = std::move(completion)] {
            if (result) {
                run(*result);
            }
            completion(result);
        }));
}

} // namespace velmora
