// SimulatedPublicSinks.h: the simulated machine's public sinks.
#pragma once

#include "platform/PublicSinks.h"
#include "platform/simulated/SimulatedSound.h"

#include <memory>

namespace velmora {

class SimulatedPublicSinks : public PublicSinks {
public:
    explicit SimulatedPublicSinks(SimulatedSound& sound);

    [[nodiscard]] StatusOr<AudioObjectID> create(const PublicSink& sink) override;
    Status remove(AudioObjectID sink) override;

private:
    std::shared_ptr<SoundGraph> graph_;
};

} // namespace velmora
