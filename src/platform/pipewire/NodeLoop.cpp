#include "platform/pipewire/NodeLoop.h"

#include <cerrno>
#include <new>

namespace velmora::pipewire {

NodeLoop::~NodeLoop() {
    loop_.stop();
    context_.reset();
}

StatusOr<std::shared_ptr<NodeLoop>> NodeLoop::open() {
    try {
        std::shared_ptr<NodeLoop> made(new NodeLoop);
        if (const Status status = made->start(); status != statusOk) {
            return std::unexpected(status);
        }
        return made;
    } catch (const std::bad_alloc&) {
        return std::unexpected(-ENOMEM);
    }
}

Status NodeLoop::start() {
    context_ = makeRealtimeContext(loop_.get());
    if (!context_) {
        return -(errno == 0 ? EIO : errno);
    }
    return loop_.start() ? statusOk : -EAGAIN;
}

CoreHandle NodeLoop::connect() const {
    return CoreHandle(pw_context_connect(context_.get(), nullptr, 0));
}

StatusOr<std::shared_ptr<NodeLoop>> NodeLoops::take() {
    if (auto loop = latest_.lock()) {
        return loop;
    }
    auto opened = NodeLoop::open();
    if (opened) {
        latest_ = *opened;
    }
    return opened;
}

} // namespace velmora::pipewire
