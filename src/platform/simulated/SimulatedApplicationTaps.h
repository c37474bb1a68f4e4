// SimulatedApplicationTaps.h: the simulated machine's playing applications, and taps of them.
#pragma once

#include "platform/ApplicationTaps.h"
#include "platform/simulated/SimulatedSound.h"

#include <memory>

namespace velmora {

class SimulatedApplicationTaps : public ApplicationTaps {
public:
    explicit SimulatedApplicationTaps(SimulatedSound& sound);

    [[nodiscard]] std::optional<std::vector<AudioObjectID>> processObjects() const override;
    [[nodiscard]] std::optional<std::int32_t> processPid(AudioObjectID process) const override;
    [[nodiscard]] std::optional<bool> processIsRunningOutput(AudioObjectID process) const override;
    [[nodiscard]] std::optional<AudioObjectID> processForPid(std::int32_t pid) const override;

    [[nodiscard]] std::optional<ApplicationSound> sound(AudioObjectID process) const override;

    [[nodiscard]] std::optional<double> tapRate() const override;
    [[nodiscard]] std::expected<std::unique_ptr<ApplicationTap>, TapRefusal>
    open(AudioObjectID process, Mute mute, float divisor, TapCallback callback) override;

private:
    std::shared_ptr<SoundGraph> graph_;
};

} // namespace velmora
