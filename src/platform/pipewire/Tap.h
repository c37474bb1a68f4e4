// Tap.h: hears one application as a part of the mix, and silences it meanwhile if so wished.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/pipewire/RunningPart.h"
#include "platform/pipewire/Session.h"
#include "platform/pipewire/node/TapPart.h"

#include <expected>
#include <memory>

namespace velmora::pipewire {

/// Threads: main; the callback runs on the node's real-time thread. Real-time: no.
class Tap final : public ApplicationTap {
public:
    /// Errors: as `ApplicationTaps::open`.
    [[nodiscard]] static std::expected<std::unique_ptr<Tap>, TapRefusal>
    open(Session& session,
         AudioObjectID process,
         ApplicationTaps::Mute mute,
         float divisor,
         TapCallback callback);
    ~Tap() override;
    Tap(const Tap&) = delete;
    Tap& operator=(const Tap&) = delete;

    [[nodiscard]] bool isAlive() const override { return part_.isAlive(); }

private:
    struct Setup {
        AudioObjectID mute{};
        Session::Wish wish;
    };
    Tap(Session& session, AudioObjectID mute) : session_(session), mute_(mute), part_(session) {}
    [[nodiscard]] static std::expected<Setup, TapRefusal>
    setUp(SessionState& state, AudioObjectID process, ApplicationTaps::Mute mute, bool hasCallback);

    Session& session_;
    AudioObjectID mute_; // names it; there need not be one
    RunningPart<TapPart> part_;
};

} // namespace velmora::pipewire
