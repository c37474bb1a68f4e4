#include "engine/MixOutput.h"

#include "engine/OutputEngine.h"
#include "engine/realtime/Limiter.h"
#include "engine/realtime/ParamBox.h"
#include "engine/realtime/RingSetBox.h"

#include <utility>

namespace velmora {

MixOutput::MixOutput(float volume)
    : rings_(std::make_shared<RingSetBox>()), limiter_(std::make_shared<Limiter>()),
      volume_(std::make_shared<ParamBox>(volume)) {
}

MixOutput::~MixOutput() = default;

void MixOutput::open(AudioDevices& devices, AudioUnits& units, const OutputTarget& target) {
    unit_ = makeOutputEngine(devices, units, target, rings_, limiter_, volume_);
    target_ = target;
}

void MixOutput::close() {
    unit_.reset();
    target_.reset();
    // The render thread is gone: nobody else touches the gain now.
    limiter_->gain = 1.0F;
}

void MixOutput::setVolume(float volume) {
    volume_->set(volume);
}

void MixOutput::setRings(std::vector<std::shared_ptr<RingBuffer>> rings) {
    rings_->set(std::move(rings));
}

} // namespace velmora
