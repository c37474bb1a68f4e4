// VirtualMicrophone.h: the device that other programs record the mix from.
#pragma once

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/Handles.h"
#include "platform/pipewire/view/Graph.h"

namespace velmora::pipewire {

/// True when a device with the virtual microphone's word in its name can be played to. The device
/// of DAW mode has that word too and does not count.
[[nodiscard]] bool hasVirtualMicrophone(const Graph& graph);

/// Sees to it that there is one, once that is wanted. It is a true source, not a sink's monitor,
/// and outlives this program.
/// Threads: any, with the control loop's lock.
class VirtualMicrophone {
public:
    VirtualMicrophone(Connection& connection, const Graph& graph)
        : connection_(connection), graph_(graph) {}

    void want() { isWanted_ = true; }
    /// It is wanted and cannot be played to yet.
    [[nodiscard]] bool isMissing() const { return isWanted_ && !hasVirtualMicrophone(graph_); }
    /// To be called after every change of the graph.
    void follow();
    /// The session manager has gone: where there was one, its successor gets a new one, see
    /// `Session::passLosses`.
    void renew();
    /// To be called before the connection closes.
    void clear();

private:
    Connection& connection_;
    const Graph& graph_;
    bool isWanted_ = false;
    ProxyHandle made_;
    bool isSeen_ = false;
};

} // namespace velmora::pipewire
