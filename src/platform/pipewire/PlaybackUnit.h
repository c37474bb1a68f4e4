// PlaybackUnit.h: OutputUnit on PipeWire.
#pragma once

#include "platform/AudioUnits.h"
#include "platform/pipewire/PlaybackPart.h"
#include "platform/pipewire/RouteHold.h"
#include "platform/pipewire/UnitTarget.h"

#include <memory>
#include <optional>
#include <vector>

namespace velmora::pipewire {

class PlaybackUnit final : public OutputUnit {
public:
    explicit PlaybackUnit(Session& session) : session_(session) {}
    ~PlaybackUnit() override { PlaybackUnit::stop(); }
    PlaybackUnit(const PlaybackUnit&) = delete;
    PlaybackUnit& operator=(const PlaybackUnit&) = delete;

    Status setDevice(AudioObjectID device) override;
    Status setChannelMap(std::span<const std::int32_t> map) override;
    [[nodiscard]] double sampleRate() const override { return target_ ? session_.rateHz() : 0.0; }
    Status start(RenderCallback render) override;
    void stop() noexcept override;
    [[nodiscard]] bool isAlive() const override;

private:
    Session& session_;
    std::optional<UnitTarget> target_;
    std::vector<std::int32_t> map_;
    std::unique_ptr<PlaybackPart> part_;
    std::optional<RouteHold> route_; // present while started, as the part
};

} // namespace velmora::pipewire
