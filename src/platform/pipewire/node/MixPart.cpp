#include "platform/pipewire/node/MixPart.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <new>
#include <utility>

namespace velmora::pipewire {

MixPart::MixPart(std::shared_ptr<MixNode> node, Kind kind, Handler& handler)
    : handler_(handler), kind_(kind), node_(std::move(node)) {
}

MixPart::~MixPart() {
    const Loop::Lock lock(node_->loop_);
    node_->dismiss(*this);
}

StatusOr<std::unique_ptr<MixPart>>
MixPart::open(std::shared_ptr<MixNode> node, const Setup& setup, Handler& handler) {
    try {
        std::unique_ptr<MixPart> part(new MixPart(std::move(node), setup.kind, handler));
        if (const Status status = part->takePorts(setup.ports); status != statusOk) {
            return std::unexpected(status);
        }
        return part;
    } catch (const std::bad_alloc&) {
        return std::unexpected(-ENOMEM);
    }
}

Status MixPart::takePorts(std::size_t count) {
    const auto direction =
        kind_ == Kind::capture ? NodePorts::Direction::input : NodePorts::Direction::output;
    ports_.reserve(count);
    const Loop::Lock lock(node_->loop_);
    while (ports_.size() < count) {
        const NodePorts::Port* const port = node_->takePort(direction);
        if (port == nullptr) {
            return -ENOMEM;
        }
        ports_.push_back(port);
    }
    node_->enlist(*this);
    return statusOk;
}

PartPorts MixPart::ports() const {
    PartPorts ports{.node = node_->name(), .names = {}};
    std::ranges::transform(ports_, std::back_inserter(ports.names), &NodePorts::Port::name);
    return ports;
}

float* MixPart::buffer(std::size_t index, std::uint32_t frames) const noexcept {
    return static_cast<float*>(pw_filter_get_dsp_buffer(ports_[index]->handle, frames));
}

} // namespace velmora::pipewire
