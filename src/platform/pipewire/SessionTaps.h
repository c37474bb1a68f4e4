// SessionTaps.h: ApplicationTaps on PipeWire.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/pipewire/ApplicationResolver.h"
#include "platform/pipewire/Session.h"

namespace velmora::pipewire {

/// Threads: main. The taps it opens must not outlive the session.
class SessionTaps final : public ApplicationTaps {
public:
    SessionTaps(Session& session, ApplicationResolver& applications)
        : session_(session), applications_(applications) {}

    [[nodiscard]] std::optional<std::vector<AudioObjectID>> processObjects() const override;
    [[nodiscard]] std::optional<std::int32_t> processPid(AudioObjectID process) const override;
    [[nodiscard]] std::optional<bool> processIsRunningOutput(AudioObjectID process) const override;
    [[nodiscard]] std::optional<AudioObjectID> processForPid(std::int32_t pid) const override;

    [[nodiscard]] std::optional<ApplicationSound> sound(AudioObjectID process) const override;

    [[nodiscard]] std::optional<double> tapRate() const override;
    [[nodiscard]] std::expected<std::unique_ptr<ApplicationTap>, TapRefusal>
    open(AudioObjectID process, Mute mute, float divisor, TapCallback callback) override;

private:
    Session& session_;
    ApplicationResolver& applications_;
};

} // namespace velmora::pipewire
