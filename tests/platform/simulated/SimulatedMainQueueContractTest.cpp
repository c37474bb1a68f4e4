#include "platform/contract/MainQueueContract.h"
#include "platform/simulated/SimulatedMainQueue.h"

namespace velmora {

class SimulatedQueueRig {
public:
    MainQueue& queue() { return *queue_; }
    bool runUntil(const std::function<bool()>& condition) {
        constexpr int mostSteps = 10000;
        for (int step = 0; step < mostSteps && !condition(); ++step) {
            queue_->advance(std::chrono::milliseconds{1});
        }
        return condition();
    }
    void destroyQueue() { queue_.reset(); }

private:
    std::unique_ptr<SimulatedMainQueue> queue_ = std::make_unique<SimulatedMainQueue>();
};

INSTANTIATE_TYPED_TEST_SUITE_P(Simulated, MainQueueContract, SimulatedQueueRig);

} // namespace velmora
