#include "platform/qt/QtMainQueue.h"

#include "platform/qt/PeriodicDeadline.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <utility>
#ifdef __SANITIZE_THREAD__
#include <sanitizer/tsan_interface.h>
#endif

namespace velmora {

namespace {

const auto postedEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

/// Qt hands an event from thread to thread under a lock of its own, which the thread sanitizer does
/// not see in a Qt built without it. These tell it.
/// Threads: the one that posts.
void markHandedOver([[maybe_unused]] QEvent* event) {
#ifdef __SANITIZE_THREAD__
    __tsan_release(event);
#endif
}
/// Threads: the one that receives.
void markReceived([[maybe_unused]] QEvent* event) {
#ifdef __SANITIZE_THREAD__
    __tsan_acquire(event);
#endif
}

/// Qt's own queued calls want functions that can be copied; `Work` can only be moved.
class PostedWork : public QEvent {
public:
    explicit PostedWork(MainQueue::Work work) : QEvent(postedEvent), work_(std::move(work)) {}
    void run() { work_(); }

private:
    MainQueue::Work work_;
};

/// One single-shot QTimer, started again by a repeating one. Cancelling deletes it later: it may be
/// running.
class ScheduledWork : public QTimer {
public:
    ScheduledWork(QObject* parent, MainQueue::Work work)
        : QTimer(parent), work_(std::make_shared<MainQueue::Work>(std::move(work))) {
        setSingleShot(true);
        setTimerType(Qt::PreciseTimer);
    }

    void repeat(std::chrono::nanoseconds period) {
        using Clock = PeriodicDeadline::Clock;
        connect(
            this, &QTimer::timeout, this, [this, deadline = PeriodicDeadline(period)]() mutable {
                start(deadline.advance(Clock::now()));
                run();
            });
        start(std::chrono::ceil<std::chrono::milliseconds>(period));
    }

    void runOnce(std::chrono::milliseconds delay) {
        connect(this, &QTimer::timeout, this, &ScheduledWork::run);
        start(std::max(delay, std::chrono::milliseconds{0}));
    }

    void cancel() {
        stop();
        work_.reset();
        deleteLater();
    }

private:
    void run() {
        const auto work = work_; // survives being cancelled by itself
        (*work)();
    }

    std::shared_ptr<MainQueue::Work> work_;
};

class QtTimer : public MainQueue::Timer {
public:
    explicit QtTimer(ScheduledWork* scheduled) : scheduled_(scheduled) {}
    ~QtTimer() override {
        if (scheduled_) {
            scheduled_->cancel();
        }
    }
    QtTimer(const QtTimer&) = delete;
    QtTimer& operator=(const QtTimer&) = delete;

private:
    QPointer<ScheduledWork> scheduled_; // null once the queue is gone
};

} // namespace

/// Where posted work arrives, and the parent of every timer.
class QtMainQueue::Receiver : public QObject {
public:
    bool event(QEvent* event) override {
        markReceived(event);
        if (event->type() != postedEvent) {
            return QObject::event(event);
        }
        static_cast<PostedWork*>(event)->run();
        return true;
    }
};

QtMainQueue::QtMainQueue() : receiver_(std::make_unique<Receiver>()) {
}

QtMainQueue::~QtMainQueue() = default;

void QtMainQueue::post(Work work) {
    auto* const event = new PostedWork(std::move(work));
    markHandedOver(event);
    QCoreApplication::postEvent(receiver_.get(), event);
}

std::unique_ptr<MainQueue::Timer> QtMainQueue::after(std::chrono::milliseconds delay, Work work) {
    auto* scheduled = new ScheduledWork(receiver_.get(), std::move(work));
    scheduled->runOnce(delay);
    return std::make_unique<QtTimer>(scheduled);
}

std::unique_ptr<MainQueue::Timer> QtMainQueue::every(std::chrono::nanoseconds period, Work work) {
    auto* scheduled = new ScheduledWork(receiver_.get(), std::move(work));
    scheduled->repeat(period);
    return std::make_unique<QtTimer>(scheduled);
}

} // namespace velmora
