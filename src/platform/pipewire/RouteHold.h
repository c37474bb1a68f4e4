// RouteHold.h: keeps one part of the mix connected.
#pragma once

#include "platform/pipewire/Session.h"

#include <string>
#include <string_view>
#include <utility>

namespace velmora::pipewire {

/// A route that is in force as long as this object lives. Threads: main.
class RouteHold {
public:
    /// @param kind  begins the part's name, for people who look at the graph
    RouteHold(Session& session, std::string_view kind, Route route) : session_(session) {
        session_.change([&](SessionState& state) {
            name_ = state.newPartName(kind);
            state.routes[name_] = std::move(route);
        });
    }
    ~RouteHold() {
        session_.change([this](SessionState& state) { state.routes.erase(name_); });
    }
    RouteHold(const RouteHold&) = delete;
    RouteHold& operator=(const RouteHold&) = delete;

    /// The name that the part is to have.
    [[nodiscard]] const std::string& partName() const { return name_; }

private:
    Session& session_;
    std::string name_;
};

} // namespace velmora::pipewire
