// SimulatedAudioUnits.h: output and input units of the simulated machine.
#pragma once

#include "platform/AudioUnits.h"
#include "platform/simulated/SimulatedSound.h"

#include <memory>

namespace velmora {

class SimulatedAudioUnits : public AudioUnits {
public:
    explicit SimulatedAudioUnits(SimulatedSound& sound);

    [[nodiscard]] std::unique_ptr<OutputUnit> makeOutput() override;
    [[nodiscard]] std::unique_ptr<InputUnit> makeInput() override;
    void askForBlocksOf(std::uint32_t leastFrames) override;
    [[nodiscard]] BlockReport blocks() const override;

private:
    std::shared_ptr<SoundGraph> graph_;
};

} // namespace velmora
