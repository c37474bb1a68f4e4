#include "platform/pipewire/MixPart.h"

#include "platform/pipewire/Routes.h"

#include <cerrno>
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
        if (const Status status = part->addPorts(setup); status != statusOk) {
            return std::unexpected(status);
        }
        return part;
    } catch (const std::bad_alloc&) {
        return std::unexpected(-ENOMEM);
    }
}

Status MixPart::addPorts(const Setup& setup) {
    const auto direction = kind_ == Kind::capture ? PW_DIRECTION_INPUT : PW_DIRECTION_OUTPUT;
    ports_.reserve(setup.ports.size());
    const Loop::Lock lock(node_->loop_);
    for (const std::string& name : setup.ports) {
        void* const port = node_->addPort(own::port(setup.name, name), direction);
        if (port == nullptr) {
            return -ENOMEM;
        }
        ports_.push_back(port);
    }
    node_->enlist(*this);
    return statusOk;
}

float* MixPart::buffer(std::size_t index, std::uint32_t frames) const noexcept {
    return static_cast<float*>(pw_filter_get_dsp_buffer(ports_[index], frames));
}

} // namespace velmora::pipewire
