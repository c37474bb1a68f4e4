// RouteHold.h: keeps one of our nodes connected.
#pragma once

#include "platform/pipewire/Session.h"

#include <string>
#include <string_view>
#include <utility>

namespace velmora::pipewire {

/// A route that is in force as long as this object lives. Threads: main.
class RouteHold {
public:
    /// @param kind  part of the node's name, for people who look at the graph
    RouteHold(Session& session, std::string_view kind, Route route) : session_(session) {
        session_.change([&](SessionState& state) {
            name_ = state.newNodeName(kind);
            state.routes[name_] = std::move(route);
        });
    }
    ~RouteHold() {
        session_.change([this](SessionState& state) { state.routes.erase(name_); });
    }
    RouteHold(const RouteHold&) = delete;
    RouteHold& operator=(const RouteHold&) = delete;

    /// The `node.name` that the node is to have.
    [[nodiscard]] const std::string& nodeName() const { return name_; }

private:
    Session& session_;
    std::string name_;
};

} // namespace velmora::pipewire
