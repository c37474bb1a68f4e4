// SessionSinks.h: PublicSinks on PipeWire.
#pragma once

#include "platform/PublicSinks.h"
#include "platform/pipewire/Session.h"

namespace velmora::pipewire {

/// Threads: main.
class SessionSinks final : public PublicSinks {
public:
    explicit SessionSinks(Session& session) : session_(session) {}

    /// Returns shortly after the sink can be played to.
    [[nodiscard]] StatusOr<AudioObjectID> create(const PublicSink& sink) override;
    /// Returns shortly after the sink has gone.
    Status remove(AudioObjectID sink) override;

private:
    Session& session_;
};

} // namespace velmora::pipewire
