#include "platform/pipewire/node/IdleInputs.h"

#include <cstdint>

#include <pipewire/filter.h>

namespace velmora::pipewire {

void IdleInputs::add(const std::vector<const NodePorts::Port*>& ports) noexcept {
    remove(ports);
    for (const NodePorts::Port* const port : ports) {
        if (port->direction == NodePorts::Direction::input) {
            handles_.push_back(port->handle); // there is room for every port
        }
    }
}

void IdleInputs::remove(const std::vector<const NodePorts::Port*>& ports) noexcept {
    for (const NodePorts::Port* const port : ports) {
        std::erase(handles_, port->handle);
    }
}

void IdleInputs::drain() const noexcept {
    constexpr std::uint32_t frames = 0; // counts for outputs only
    for (void* const handle : handles_) {
        static_cast<void>(pw_filter_get_dsp_buffer(handle, frames));
    }
}

} // namespace velmora::pipewire
