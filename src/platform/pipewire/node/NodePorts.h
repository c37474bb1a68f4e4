// NodePorts.h: the ports of our node, and which of them can serve a part.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace velmora::pipewire {

/// Ports stay as long as their node: libpipewire (0.3.65) frees a port that is removed while the
/// real-time thread may still walk past it. So the port of a part that has gone serves another one
/// of its direction, once nothing of the old part's can be linked to it any more.
///
/// Threads: one at a time.
class NodePorts {
public:
    enum class Direction { input, output };
    struct Port {
        std::string name; ///< `port.name`; says nothing of the part, which is not the port's last
        Direction direction{};
        void* handle{}; ///< of whoever makes the ports
    };

    /// Takes a free port; null when there is none.
    [[nodiscard]] const Port* take(Direction direction);
    /// The name for one more port.
    [[nodiscard]] std::string nextName(Direction direction) const;
    /// Adds a port under its next name, and takes it.
    const Port& add(Direction direction, void* handle);

    // A taken port is free again after both of these, in any order.
    /// Its part is not called any more.
    void dismiss(const Port& port);
    /// No link to or from it is left.
    void clear(const std::string& name);

private:
    struct Entry {
        Port port;
        bool isServing = true;
        bool isClear = false;
    };
    std::deque<Entry> entries_; // does not move them
};

} // namespace velmora::pipewire
