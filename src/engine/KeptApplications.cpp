#include "engine/KeptApplications.h"

#include "engine/EngineSettings.h"
#include "platform/Applications.h"
#include "platform/DefaultsStore.h"

#include <charconv>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace velmora {
namespace {

constexpr std::string_view birthsKey = "sourceBirths";
constexpr std::string_view applicationPrefix = "app-";
constexpr double largestBirth = 9007199254740992.0; // 2^53

/// 0 when the id does not end in a number.
std::int32_t pidOf(std::string_view id) {
    const std::string_view digits = id.substr(id.rfind('-') + 1);
    std::int32_t pid = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), pid);
    return pid;
}

std::string idOf(const RunningApplication& application) {
    const AppSource source{.pid = application.pid,
                           .name = application.name,
                           .bundleID = application.bundleID.empty()
                                           ? "pid." + std::to_string(application.pid)
                                           : application.bundleID};
    return AudioSource(source).id();
}

} // namespace

KeptApplications::KeptApplications(const Applications& applications,
                                   DefaultsStore& store,
                                   EngineSettings& settings)
    : applications_(applications), store_(store), settings_(settings),
      stored_(store.read<NumberMap>(birthsKey).value_or(NumberMap{})) {
    for (const auto& [id, birth] : stored_) {
        if (birth >= 0 && birth < largestBirth) {
            births_[id] = static_cast<std::uint64_t>(birth);
        }
    }
    for (const std::string& id : settings.ids()) {
        if (id.starts_with(applicationPrefix) && !births_.contains(id)) {
            untied_.insert(id);
        }
    }
}

bool KeptApplications::meet(const AudioSource& source) {
    const auto* const app = source.app();
    const auto birth = app == nullptr ? std::nullopt : applications_.birth(app->pid);
    if (!birth) {
        return false;
    }
    const std::string id = source.id();
    const auto [tie, isNew] = births_.emplace(id, *birth);
    if (isNew || tie->second == *birth) {
        return false;
    }
    tie->second = *birth;
    settings_.forget({id});
    storeTies();
    return true;
}

bool KeptApplications::isAnothers(const AudioSource& source) const {
    const auto tie = source.app() == nullptr ? births_.end() : births_.find(source.id());
    if (tie == births_.end()) {
        return false;
    }
    const auto birth = applications_.birth(source.app()->pid);
    return birth && *birth != tie->second;
}

void KeptApplications::keepTie(const AudioSource& source) {
    const auto* const app = source.app();
    if (app == nullptr || stored_.contains(source.id())) {
        return;
    }
    if (const auto birth = applications_.birth(app->pid)) {
        births_.emplace(source.id(), *birth);
    }
    storeTies();
}

void KeptApplications::storeTies() {
    NumberMap ties;
    for (const std::string& id : settings_.ids()) {
        if (const auto tie = births_.find(id); tie != births_.end()) {
            ties[id] = static_cast<double>(tie->second);
        }
    }
    if (ties != stored_) {
        stored_ = ties;
        store_.set(birthsKey, std::move(ties));
    }
}

/// What an application without a process was given in this run stays until the next one.
bool KeptApplications::hasEnded(const std::string& id) const {
    const auto tie = births_.find(id);
    return tie == births_.end() ? untied_.contains(id)
                                : applications_.birth(pidOf(id)) != tie->second;
}

/// Nobody has noted which process it was kept for; at least it has to be the same application.
void KeptApplications::tieFromEarlierRun() {
    std::erase_if(untied_, [this](const std::string& id) {
        const auto birth = applications_.birth(pidOf(id));
        const bool isSame = birth && isSameApplication(id);
        if (isSame) {
            births_.emplace(id, *birth);
        }
        return isSame;
    });
}

bool KeptApplications::isSameApplication(const std::string& id) const {
    const auto application = applications_.byPid(pidOf(id));
    return application && idOf(*application) == id;
}

void KeptApplications::forgetEnded(const std::vector<AudioSource>& inUse) {
    std::set<std::string> used;
    for (const AudioSource& source : inUse) {
        used.insert(source.id());
    }
    tieFromEarlierRun();
    const std::set<std::string> kept = settings_.ids();
    std::set<std::string> ended;
    for (const std::string& id : kept) {
        if (!used.contains(id) && hasEnded(id)) {
            ended.insert(id);
        }
    }
    settings_.forget(ended);
    std::erase_if(births_, [&](const auto& one) {
        return !used.contains(one.first) &&
               (!kept.contains(one.first) || ended.contains(one.first));
    });
    untied_.clear();
    storeTies();
}

} // namespace velmora
