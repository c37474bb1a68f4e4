// SimulatedMainQueue.h: a main queue whose time stands still until a test turns it.
#pragma once

#include "platform/MainQueue.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

namespace velmora {

/// Threads: `post` any; the rest main.
class SimulatedMainQueue : public MainQueue {
public:
    using Time = std::chrono::nanoseconds; ///< since the simulation began

    SimulatedMainQueue();
    ~SimulatedMainQueue() override;

    void post(Work work) override;
    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Work work) override;
    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::nanoseconds period, Work work) override;

    [[nodiscard]] Time now() const { return now_; }
    /// When the next timer is due.
    [[nodiscard]] std::optional<Time> nextDue() const;
    /// Runs what was posted and every timer that falls due up to `time`, in order of time.
    void runUntil(Time time);
    /// The same, `duration` on from now.
    void advance(std::chrono::nanoseconds duration) { runUntil(now_ + duration); }
    /// How many timers could still fire.
    [[nodiscard]] std::size_t timerCount() const;

private:
    struct Entry;
    class Handle;

    void runPosted();
    [[nodiscard]] std::unique_ptr<Timer> add(Time due, Time period, Work work);
    [[nodiscard]] std::shared_ptr<Entry> earliest() const;

    Time now_{};
    std::mutex mutex_;
    std::vector<Work> posted_; // guarded by mutex_
    mutable std::vector<std::weak_ptr<Entry>> timers_;
};

} // namespace velmora
