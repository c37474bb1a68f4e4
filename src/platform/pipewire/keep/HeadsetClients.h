// HeadsetClients.h: has headsets turn their microphones on.
#pragma once

#include "platform/pipewire/daemon/Connection.h"
#include "platform/pipewire/daemon/Handles.h"
#include "platform/pipewire/view/Graph.h"
#include "platform/pipewire/view/Routes.h"

#include <functional>
#include <map>
#include <string>

namespace velmora::pipewire {

/// A Bluetooth headset plays in full quality or has a microphone, not both. The session manager
/// (WirePlumber 0.5) turns the microphone on while a client of the class that records is linked to
/// it. Our node has no class, so a client that nobody listens to records beside it.
///
/// Threads: any, with the control loop's lock.
class HeadsetClients {
public:
    /// @param newName  gives a `node.name` that was never used before
    HeadsetClients(Connection& connection, const Graph& graph, std::function<std::string()> newName)
        : connection_(connection), graph_(graph), newName_(std::move(newName)) {}

    /// To be called after every change of the graph: there is a client for each Bluetooth
    /// microphone that `routes` record, and no other.
    void follow(const Routes& routes);
    /// To be called before the connection closes.
    void clear() { clients_.clear(); }

private:
    Connection& connection_;
    const Graph& graph_;
    std::function<std::string()> newName_;
    std::map<Serial, ProxyHandle> clients_; // by the microphone's node
};

} // namespace velmora::pipewire
