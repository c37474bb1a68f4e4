// RetryPause.h: when to try again what was refused: soon, then ever more seldom.
#pragma once

#include "platform/GrowingPause.h"
#include "platform/MainQueue.h"

#include <chrono>
#include <memory>
#include <utility>

namespace velmora {

/// Threads: main.
class RetryPause {
public:
    /// @param queue  none: nothing is ever tried by itself
    explicit RetryPause(MainQueue* queue) : queue_(queue) {}

    /// Calls `work` after the pause, unless that is under way already.
    void begin(MainQueue::Work work) {
        if (queue_ == nullptr || timer_) {
            return;
        }
        timer_ = queue_->after(pause_.next(), [this, work = std::move(work)]() mutable {
            const auto ended = std::move(timer_); // keeps what runs here alive
            work();
        });
    }
    /// There is nothing to try any more.
    void end() {
        timer_.reset();
        pause_.restart();
    }
    [[nodiscard]] bool isUnderWay() const { return timer_ != nullptr; }
    /// Whether it has been tried for some seconds.
    [[nodiscard]] bool isLasting() const {
        return queue_ == nullptr || pause_.upcoming() >= lasting;
    }

private:
    static constexpr std::chrono::milliseconds shortest{100};
    static constexpr std::chrono::milliseconds lasting{3200}; // the pauses before add up to 3.1 s
    static constexpr std::chrono::milliseconds longest{10'000};

    MainQueue* queue_;
    GrowingPause pause_{shortest, longest};
    std::unique_ptr<MainQueue::Timer> timer_;
};

} // namespace velmora
