#include "platform/desktop/LaunchWatch.h"

#include "platform/desktop/ApplicationIndex.h"
#include "platform/desktop/ProcFiles.h"

#include <algorithm>
#include <utility>

namespace velmora {

LaunchWatch::LaunchWatch(MainQueue& mainQueue,
                         ApplicationIndex& index,
                         const ProcFiles& processes,
                         Launch launch,
                         Outcome outcome)
    : index_(index), processes_(processes), launch_(std::move(launch)),
      outcome_(std::move(outcome)), timer_(mainQueue.every(lookEvery, [this] { look(); })) {
}

void LaunchWatch::look() {
    watched_ += lookEvery;
    const bool isGone = !processes_.stat(launch_.pid);
    if (const auto now = candidate(isGone); now != candidate_) {
        candidate_ = now;
        candidateSince_ = watched_;
    }
    if (candidate_) {
        goneSince_.reset();
        if (watched_ - candidateSince_ >= staysFor) {
            finish(candidate_);
        } else if (watched_ >= longest) {
            finish(std::nullopt); // comes up and goes down again and again
        }
        return;
    }
    if (isGone && !goneSince_) {
        goneSince_ = watched_;
    }
    if (isGone && watched_ - *goneSince_ >= afterTheEnd) {
        finish(std::nullopt);
    } else if (!isGone && watched_ >= longest) {
        // What still runs is a script that is the application itself.
        finish(index_.leader(launch_.pid));
    }
}

/// A new instance, or the one that already ran when the new one has handed over to it and ended.
std::optional<std::int32_t> LaunchWatch::candidate(bool isGone) const {
    if (launch_.entryId.empty()) {
        return isGone ? std::nullopt : std::optional(launch_.pid); // nothing to find it again by
    }
    std::optional<std::int32_t> handedOver;
    const auto leaders = index_.leadersOf(launch_.entryId);
    for (auto leader = leaders.rbegin(); leader != leaders.rend(); ++leader) {
        const bool isEarlier = std::ranges::find(launch_.earlier, *leader) != launch_.earlier.end();
        if (!isEarlier && !index_.isShellProcess(*leader)) {
            return *leader;
        }
        if (isEarlier && isGone && !handedOver) {
            handedOver = *leader;
        }
    }
    return handedOver;
}

void LaunchWatch::finish(std::optional<std::int32_t> leader) {
    timer_.reset();
    // The outcome may destroy this object.
    const auto outcome = std::move(outcome_);
    outcome(leader);
}

} // namespace velmora
