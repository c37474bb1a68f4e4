// QtMainQueue.h: the main queue on Qt's event loop.
#pragma once

#include "platform/MainQueue.h"

#include <memory>

namespace velmora {

/// Runs everything in the thread that made this object, while its event loop runs. Timers may
/// outlive the queue; they never fire again.
///
/// Threads: as `MainQueue`; made and destroyed on the main thread, while the QCoreApplication lives
/// and once no other thread posts.
class QtMainQueue final : public MainQueue {
public:
    QtMainQueue();
    ~QtMainQueue() override;
    QtMainQueue(const QtMainQueue&) = delete;
    QtMainQueue& operator=(const QtMainQueue&) = delete;

    void post(Work work) override;
    [[nodiscard]] std::unique_ptr<Timer> after(std::chrono::milliseconds delay, Work work) override;
    /// Keeps the period on average, also one that is no whole number of milliseconds.
    [[nodiscard]] std::unique_ptr<Timer> every(std::chrono::nanoseconds period, Work work) override;

private:
    class Receiver;
    std::unique_ptr<Receiver> receiver_;
};

} // namespace velmora
