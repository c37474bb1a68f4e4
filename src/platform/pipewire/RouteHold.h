// RouteHold.h: keeps one part of the mix connected.
#pragma once

#include "platform/pipewire/MixPart.h"
#include "platform/pipewire/Session.h"

#include <memory>
#include <utility>

namespace velmora::pipewire {

/// A route that is in force as long as this object lives; it goes before its part. Threads: main.
class RouteHold {
public:
    RouteHold(Session& session, const MixPart& part, Route route)
        : session_(session), node_(part.node()),
          id_(session.addRoute({.ports = part.ports(), .route = std::move(route)})) {}
    ~RouteHold() { session_.endRoute(id_, node_); }
    RouteHold(const RouteHold&) = delete;
    RouteHold& operator=(const RouteHold&) = delete;

private:
    Session& session_;
    std::weak_ptr<MixNode> node_;
    RouteId id_;
};

} // namespace velmora::pipewire
