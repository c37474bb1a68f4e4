#include "engine/BlockKeeper.h"

#include <utility>

namespace velmora {
namespace {

using namespace std::chrono_literals;

/// Who leaves may come back, and each change may cost somebody a block.
constexpr BlockSize::Time unheardFor = 5s;

} // namespace

void BlockKeeper::begin() {
    const BlockReport report = units_.blocks();
    missedBefore_ = report.missed;
    status_.frames = report.frames;
    size_.settle();
    ask();
}

void BlockKeeper::end() {
    missed_.fill(0);
    sinceSecond_ = {};
    status_ = {.lacksRights = status_.lacksRights};
}

void BlockKeeper::setHeard(bool isHeard) {
    if (std::exchange(isHeard_, isHeard) != isHeard) {
        unheard_ = {};
        ask();
    }
}

void BlockKeeper::look(BlockSize::Time passed) {
    const BlockReport report = units_.blocks();
    const std::uint64_t missed = report.missed - std::exchange(missedBefore_, report.missed);
    keepMissed(static_cast<std::uint32_t>(missed), passed);
    followRights(report.isRealTime);
    if (report.frames != std::exchange(status_.frames, report.frames)) {
        size_.settle();
    }
    if (!isHeard_) {
        unheard_ += passed;
    }
    if (unheard_ < unheardFor) {
        size_.see(missed, passed);
    }
    ask();
}

void BlockKeeper::ask() {
    const std::uint32_t wanted = unheard_ < unheardFor ? size_.frames() : BlockSize::largest;
    if (std::exchange(asked_, wanted) != wanted) {
        units_.askForBlocksOf(wanted);
        size_.settle();
    }
}

void BlockKeeper::followRights(const std::optional<bool>& isRealTime) {
    const bool lacksRights = isRealTime ? !*isRealTime : status_.lacksRights;
    if (lacksRights && !std::exchange(status_.lacksRights, lacksRights)) {
        size_.beginAtLargest();
    }
    status_.lacksRights = lacksRights;
}

void BlockKeeper::keepMissed(std::uint32_t missed, BlockSize::Time passed) {
    missed_[second_] += missed;
    status_.missedLastMinute += missed;
    sinceSecond_ += passed;
    if (sinceSecond_ >= 1s) {
        sinceSecond_ -= 1s;
        second_ = (second_ + 1) % missed_.size();
        status_.missedLastMinute -= std::exchange(missed_[second_], 0);
    }
}

} // namespace velmora
