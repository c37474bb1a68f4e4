#include "platform/qt/QtMainQueue.h"

#include "platform/contract/MainQueueContract.h"
#include "platform/qt/QtEventLoop.h"

#include <QThread>

namespace velmora {

class QtQueueRig {
public:
    MainQueue& queue() { return *queue_; }
    bool runUntil(const std::function<bool()>& condition) { return loop_.runUntil(condition); }
    void destroyQueue() { queue_.reset(); }

private:
    QtEventLoop loop_;
    std::unique_ptr<QtMainQueue> queue_ = std::make_unique<QtMainQueue>();
};

INSTANTIATE_TYPED_TEST_SUITE_P(Qt, MainQueueContract, QtQueueRig);

namespace {

TEST(QtMainQueue, RunsEverythingOnTheMainThread) {
    QtQueueRig rig;
    QThread* const mainThread = QThread::currentThread();
    QThread* ranOn = nullptr;

    std::thread([&] { rig.queue().post([&] { ranOn = QThread::currentThread(); }); }).join();

    EXPECT_TRUE(rig.runUntil([&] { return ranOn != nullptr; }));
    EXPECT_EQ(ranOn, mainThread);
}

TEST(QtMainQueue, DropsWorkThatIsStillWaitingWhenItIsDestroyed) {
    QtQueueRig rig;
    const auto held = std::make_shared<int>();
    rig.queue().post([held] { FAIL(); });

    rig.destroyQueue();
    QCoreApplication::processEvents();

    EXPECT_EQ(held.use_count(), 1);
}

} // namespace
} // namespace velmora
