#include "platform/pipewire/node/NodePorts.h"

#include <algorithm>

namespace velmora::pipewire {

const NodePorts::Port* NodePorts::take(Direction direction) {
    const auto found = std::ranges::find_if(entries_, [direction](const Entry& one) {
        return one.port.direction == direction && !one.isServing && one.isClear;
    });
    if (found == entries_.end()) {
        return nullptr;
    }
    found->isServing = true;
    found->isClear = false;
    return &found->port;
}

std::string NodePorts::nextName(Direction direction) const {
    const auto others = std::ranges::count(
        entries_, direction, [](const Entry& one) { return one.port.direction; });
    return (direction == Direction::input ? "input_" : "output_") + std::to_string(others + 1);
}

const NodePorts::Port& NodePorts::add(Direction direction, void* handle) {
    Port port{.name = nextName(direction), .direction = direction, .handle = handle};
    return entries_.emplace_back(std::move(port)).port;
}

void NodePorts::dismiss(const Port& port) {
    std::ranges::find(entries_, &port, [](const Entry& one) { return &one.port; })->isServing =
        false;
}

void NodePorts::clear(const std::string& name) {
    const auto found =
        std::ranges::find(entries_, name, [](const Entry& one) { return one.port.name; });
    if (found != entries_.end()) {
        found->isClear = true;
    }
}

} // namespace velmora::pipewire
