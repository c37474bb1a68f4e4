#include "platform/simulated/SimulatedMainQueue.h"

#include <algorithm>
#include <utility>

namespace velmora {

struct SimulatedMainQueue::Entry {
    Time due{};
    Time period{}; ///< 0 = fires once
    Work work;
};

/// What the caller keeps. The entry outlives it while the entry's work is running.
class SimulatedMainQueue::Handle : public MainQueue::Timer {
public:
    explicit Handle(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
    ~Handle() override = default; // the queue holds the entry weakly: this cancels
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

private:
    std::shared_ptr<Entry> entry_;
};

SimulatedMainQueue::SimulatedMainQueue() = default;

SimulatedMainQueue::~SimulatedMainQueue() = default;

void SimulatedMainQueue::post(Work work) {
    const std::scoped_lock guard(mutex_);
    posted_.push_back(std::move(work));
}

std::unique_ptr<MainQueue::Timer> SimulatedMainQueue::after(std::chrono::milliseconds delay,
                                                            Work work) {
    return add(now_ + delay, Time{0}, std::move(work));
}

std::unique_ptr<MainQueue::Timer> SimulatedMainQueue::every(std::chrono::nanoseconds period,
                                                            Work work) {
    return add(now_ + period, period, std::move(work));
}

std::unique_ptr<MainQueue::Timer> SimulatedMainQueue::add(Time due, Time period, Work work) {
    auto entry = std::make_shared<Entry>(Entry{due, period, std::move(work)});
    timers_.push_back(entry);
    return std::make_unique<Handle>(std::move(entry));
}

std::shared_ptr<SimulatedMainQueue::Entry> SimulatedMainQueue::earliest() const {
    std::erase_if(timers_, [](const auto& timer) { return timer.expired(); });
    std::shared_ptr<Entry> first;
    for (const auto& timer : timers_) {
        auto entry = timer.lock();
        if (!first || entry->due < first->due) {
            first = std::move(entry);
        }
    }
    return first;
}

std::optional<SimulatedMainQueue::Time> SimulatedMainQueue::nextDue() const {
    const auto entry = earliest();
    return entry ? std::optional(entry->due) : std::nullopt;
}

std::size_t SimulatedMainQueue::timerCount() const {
    return earliest() ? timers_.size() : 0;
}

void SimulatedMainQueue::runPosted() {
    while (true) {
        std::vector<Work> batch;
        {
            const std::scoped_lock guard(mutex_);
            batch.swap(posted_);
        }
        if (batch.empty()) {
            return;
        }
        for (Work& work : batch) {
            work();
        }
    }
}

void SimulatedMainQueue::runUntil(Time time) {
    runPosted();
    while (const auto entry = earliest()) {
        if (entry->due > time) {
            break;
        }
        now_ = entry->due;
        if (entry->period == Time{0}) {
            std::erase_if(timers_, [&](const auto& timer) { return timer.lock() == entry; });
        } else {
            entry->due += entry->period;
        }
        entry->work();
        runPosted();
    }
    now_ = std::max(now_, time);
}

} // namespace velmora
