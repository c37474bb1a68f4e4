// IdleInputs.h: the input ports of our node that serve no part.
#pragma once

#include "platform/pipewire/node/NodePorts.h"

#include <cstddef>
#include <vector>

namespace velmora::pipewire {

/// A port is linked for a moment longer than its part is called. The one buffer in which
/// libpipewire (0.3.65) mixes several links has to be taken and given back all the same: once it is
/// left in the port, nothing is mixed there any more, and whoever the port serves next hears
/// nothing.
///
/// Threads: `makeRoom` any, on a copy that takes this one's place; the others real-time, and none
/// of them allocates.
class IdleInputs {
public:
    /// For one more port of the node.
    void makeRoom() { handles_.reserve(++ports_); }
    /// These serve no part from here on. Outputs among them count for nothing.
    void add(const std::vector<const NodePorts::Port*>& ports) noexcept;
    /// These serve one.
    void remove(const std::vector<const NodePorts::Port*>& ports) noexcept;
    /// To be called once a cycle.
    void drain() const noexcept;

private:
    std::vector<void*> handles_;
    std::size_t ports_ = 0; // of the node; a copy of the vector has no more room than it needs
};

} // namespace velmora::pipewire
