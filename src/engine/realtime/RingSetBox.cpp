#include "engine/realtime/RingSetBox.h"

#include <mutex>
#include <utility>

namespace velmora {

void RingSetBox::set(std::vector<std::shared_ptr<RingBuffer>> rings) {
    auto list = std::make_shared<const Rings>(std::move(rings));
    {
        const std::scoped_lock guard(mutex_);
        rings_.swap(list);
    }
    retired_.push_back(std::move(list));
    // Nobody can copy a retired list, so that the last reference is this one for good.
    std::erase_if(retired_, [](const auto& retired) { return retired.use_count() == 1; });
}

std::shared_ptr<const RingSetBox::Rings> RingSetBox::get() const noexcept {
    const std::scoped_lock guard(mutex_);
    return rings_;
}

} // namespace velmora
