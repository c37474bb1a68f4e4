// RunningPart.h: the part of the mix that a started unit or an open tap is.
#pragma once

#include "platform/Status.h"
#include "platform/pipewire/Session.h"
#include "platform/pipewire/node/MixPart.h"

#include <cstdint>
#include <memory>
#include <utility>

namespace velmora::pipewire {

/// A part that is kept connected while it is open.
/// Threads: main.
template <typename Part>
class RunningPart {
public:
    explicit RunningPart(Session& session) : session_(session) {}
    ~RunningPart() { stop(); }
    RunningPart(const RunningPart&) = delete;
    RunningPart& operator=(const RunningPart&) = delete;

    /// Only while it does not run, and not once it has died. `arguments` go to `Part::open`.
    /// Errors: the status; nothing is left open.
    template <typename... Arguments>
    Status start(const Session::Wish& wish, const Route& route, Arguments&&... arguments) {
        if (hasDied_) {
            return -ENODEV;
        }
        auto part = session_.openPart<Part>(wish, std::forward<Arguments>(arguments)...);
        if (!part) {
            return part.error();
        }
        part_ = *std::move(part);
        route_ = session_.addRoute({.ports = part_->part().ports(), .route = route});
        return statusOk;
    }

    /// When this returns, the callback is not running and will not run again.
    void stop() noexcept {
        if (part_) {
            hasDied_ = hasDied_ || !part_->part().isAlive();
            session_.endRoute(route_, part_->part().node());
            part_.reset();
        }
    }

    [[nodiscard]] bool isRunning() const { return part_ != nullptr; }
    /// False once its node died while it ran; it stays so.
    [[nodiscard]] bool isAlive() const { return !hasDied_ && (!part_ || part_->part().isAlive()); }

private:
    Session& session_;
    RouteId route_{};
    std::unique_ptr<Part> part_;
    bool hasDied_ = false;
};

} // namespace velmora::pipewire
