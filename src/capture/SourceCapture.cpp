#include "capture/SourceCapture.h"

#include "capture/ProcessTap.h"
#include "capture/UnitSetup.h"
#include "effects/EffectsChain.h"
#include "engine/realtime/RingBuffer.h"

#include <algorithm>
#include <utility>

namespace velmora {

ChannelPair channelPair(std::int64_t first, std::int64_t count, std::int64_t available) {
    if (first < 1 || first > available) {
        throw VelmoraError(
            {.kind = Problem::Kind::channelMissing, .first = first, .channels = available});
    }
    const auto left = static_cast<std::size_t>(first - 1);
    const std::int64_t used = std::min(available - first + 1, count);
    return {.left = left, .right = used >= 2 ? left + 1 : left};
}

SourceCapture::SourceCapture(const Platform& platform,
                             AudioSource source,
                             CaptureBoxes boxes,
                             bool muteDirect)
    : platform_(platform), source_(std::move(source)), boxes_(std::move(boxes)),
      muteDirect_(muteDirect) {
}

SourceCapture::~SourceCapture() {
    stop();
}

void SourceCapture::start() {
    stop();
    if (const AppSource* app = source_.app()) {
        startApp(app->pid);
    } else if (const DeviceSource* device = source_.device()) {
        startPhysicalInput(device->id, 1, 2);
    } else if (const DeviceChannelsSource* channels = source_.deviceChannels()) {
        startPhysicalInput(channels->id, channels->first, channels->count);
    }
}

void SourceCapture::startApp(std::int32_t pid) {
    auto tap = std::make_unique<ProcessTap>(platform_, boxes_, muteDirect_);
    tap->start(pid);
    tap_ = std::move(tap);
}

void SourceCapture::startPhysicalInput(AudioObjectID device,
                                       std::int64_t first,
                                       std::int64_t count) {
    auto input = unitOrThrow(platform_.units.makeInput());
    throwIfRefused(input->setDevice(device), {.kind = Problem::Kind::inputNotAssigned});
    const ChannelPair pair = channelPair(first, count, input->channelCount());
    platform_.devices.requestBufferFrames(device, requestedBlockFrames);
    if (const double rateHz = input->sampleRate(); rateHz > 0.0) {
        boxes_.fx->setSampleRate(rateHz);
    }
    auto receiver = std::make_shared<InputReceiver>(boxes_, pair);
    throwIfRefused(
        input->start([receiver](std::int64_t frames, std::span<const float* const> channels) {
            receiver->receive(frames, channels);
        }),
        {.kind = Problem::Kind::inputNotStarted});
    input_ = std::move(input);
}

bool SourceCapture::isAlive() const {
    return (tap_ && tap_->isAlive()) || (input_ && input_->isAlive());
}

void SourceCapture::stop() {
    tap_.reset();
    input_.reset();
    boxes_.streamRing->clear();
    boxes_.monitorRing->clear();
}

} // namespace velmora
