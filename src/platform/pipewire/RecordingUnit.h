// RecordingUnit.h: InputUnit on PipeWire.
#pragma once

#include "platform/AudioUnits.h"
#include "platform/pipewire/RecordingPart.h"
#include "platform/pipewire/RouteHold.h"
#include "platform/pipewire/UnitTarget.h"

#include <memory>
#include <optional>

namespace velmora::pipewire {

class RecordingUnit final : public InputUnit {
public:
    explicit RecordingUnit(Session& session) : session_(session) {}
    ~RecordingUnit() override { RecordingUnit::stop(); }
    RecordingUnit(const RecordingUnit&) = delete;
    RecordingUnit& operator=(const RecordingUnit&) = delete;

    Status setDevice(AudioObjectID device) override;
    [[nodiscard]] std::uint32_t channelCount() const override {
        return target_ ? target_->channels : 0;
    }
    [[nodiscard]] double sampleRate() const override { return target_ ? session_.rateHz() : 0.0; }
    Status start(ReceiveCallback receive) override;
    void stop() noexcept override;
    [[nodiscard]] bool isAlive() const override;

private:
    Session& session_;
    std::optional<UnitTarget> target_;
    std::unique_ptr<RecordingPart> part_;
    std::optional<RouteHold> route_; // present while started, as the part
};

} // namespace velmora::pipewire
