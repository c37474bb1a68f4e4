#include "engine/MixOutput.h"

#include "capture/DeviceQueries.h"
#include "capture/UnitSetup.h"
#include "engine/realtime/Limiter.h"
#include "engine/realtime/OutputMix.h"
#include "engine/realtime/ParamBox.h"
#include "engine/realtime/RingSetBox.h"
#include "engine/realtime/TalkGate.h"

#include <span>
#include <utility>

namespace velmora {
namespace {

constexpr std::int32_t silent = -1;

/// Sends the pair to the target's channels; the first two need no map.
void routeChannels(OutputUnit& unit, const AudioDevices& devices, const OutputTarget& target) {
    const std::int64_t first = target.firstChannel;
    if (first <= 1) {
        return;
    }
    const std::int64_t channels = channelCount(devices, target.device, Scope::output);
    if (first >= channels) {
        throw VelmoraError(
            {.kind = Problem::Kind::pairMissing, .first = first, .channels = channels});
    }
    std::vector<std::int32_t> map(static_cast<std::size_t>(channels), silent);
    const auto right = static_cast<std::size_t>(first);
    map[right - 1] = 0;
    map[right] = 1;
    throwIfRefused(unit.setChannelMap(map), {.kind = Problem::Kind::pairNotRouted, .first = first});
}

} // namespace

std::unique_ptr<OutputUnit> makeOutputEngine(AudioDevices& devices,
                                             AudioUnits& units,
                                             const OutputTarget& target,
                                             std::shared_ptr<RingSetBox> rings,
                                             std::shared_ptr<Limiter> limiter,
                                             std::shared_ptr<ParamBox> volume,
                                             std::shared_ptr<TalkGate> gate) {
    auto unit = unitOrThrow(units.makeOutput());
    throwIfRefused(unit->setDevice(target.device), {.kind = Problem::Kind::outputNotAssigned});
    devices.requestBufferFrames(target.device, requestedBlockFrames);
    routeChannels(*unit, devices, target);
    limiter->setSampleRate(unit->sampleRate());
    gate->begin(unit->sampleRate());
    auto mix = std::make_shared<OutputMix>(std::move(rings), std::move(limiter), std::move(volume));
    throwIfRefused(unit->start([mix, gate](std::int64_t frames, std::span<float* const> channels) {
        mix->render(frames, channels);
        gate->process(frames, channels);
    }),
                   {.kind = Problem::Kind::outputNotStarted});
    return unit;
}

MixOutput::MixOutput(float volume)
    : rings_(std::make_shared<RingSetBox>()), limiter_(std::make_shared<Limiter>()),
      volume_(std::make_shared<ParamBox>(volume)), gate_(std::make_shared<TalkGate>()) {
}

MixOutput::~MixOutput() = default;

void MixOutput::open(AudioDevices& devices, AudioUnits& units, const OutputTarget& target) {
    close();
    unit_ = makeOutputEngine(devices, units, target, rings_, limiter_, volume_, gate_);
    target_ = target;
}

void MixOutput::close() {
    unit_.reset();
    target_.reset();
    // The render thread is gone: nobody else touches the gain now.
    limiter_->gain = 1.0F;
}

bool MixOutput::isAlive() const {
    return !unit_ || unit_->isAlive();
}

double MixOutput::sampleRate() const {
    return unit_ ? unit_->sampleRate() : 0.0;
}

float MixOutput::limiterGain() const {
    return limiter_->latestGain();
}

void MixOutput::setVolume(float volume) {
    volume_->set(volume);
}

void MixOutput::setOpen(bool open) {
    gate_->setOpen(open);
}

void MixOutput::setRings(std::vector<std::shared_ptr<RingBuffer>> rings) {
    rings_->set(std::move(rings));
}

} // namespace velmora
