// Tap.h: hears one application as a part of the mix, and silences it meanwhile if so wished.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/pipewire/RouteHold.h"
#include "platform/pipewire/Session.h"
#include "platform/pipewire/TapPart.h"

#include <expected>
#include <memory>
#include <optional>

namespace velmora::pipewire {

/// Threads: main; the callback runs on the node's real-time thread.
class Tap final : public ApplicationTap {
public:
    /// Errors: as `ApplicationTaps::open`.
    [[nodiscard]] static std::expected<std::unique_ptr<Tap>, TapRefusal>
    open(Session& session, AudioObjectID process, ApplicationTaps::Mute mute, TapCallback callback);
    ~Tap() override;
    Tap(const Tap&) = delete;
    Tap& operator=(const Tap&) = delete;

    [[nodiscard]] bool isAlive() const override;

private:
    struct Setup {
        AudioObjectID id{}; ///< names the mute
        float scale{1.0F};  ///< linear, of the mixdown
        double rateHz{};
    };
    Tap(Session& session, const Setup& setup) : session_(session), setup_(setup) {}
    [[nodiscard]] static std::expected<Setup, TapRefusal>
    setUp(SessionState& state, AudioObjectID process, ApplicationTaps::Mute mute, bool hasCallback);
    Status start(AudioObjectID process, TapCallback callback);

    Session& session_;
    Setup setup_;
    std::optional<RouteHold> route_;
    std::unique_ptr<TapPart> part_;
};

} // namespace velmora::pipewire
