#include "capture/SourceCapture.h"

#include "capture/DeviceQueries.h"
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
    } else if (const auto range = inputRange()) {
        startPhysicalInput(*range);
    }
}

std::optional<InputRange> SourceCapture::inputRange() const {
    if (const DeviceSource* device = source_.device()) {
        return InputRange{.device = device->id};
    }
    if (const DeviceChannelsSource* channels = source_.deviceChannels()) {
        return InputRange{
            .device = channels->id, .first = channels->first, .count = channels->count};
    }
    return std::nullopt;
}

void SourceCapture::startApp(std::int32_t pid) {
    auto tap = std::make_unique<ProcessTap>(platform_, boxes_, muteDirect_);
    tap->start(pid);
    tap_ = std::move(tap);
}

void SourceCapture::startPhysicalInput(const InputRange& range) {
    auto input = unitOrThrow(platform_.units.makeInput());
    throwIfRefused(input->setDevice(range.device), {.kind = Problem::Kind::inputNotAssigned});
    const ChannelPair pair = channelPair(range.first, range.count, input->channelCount());
    const std::size_t used = pair.right - pair.left + 1;
    throwIfRefused(
        input->setChannels(static_cast<std::uint32_t>(pair.left), static_cast<std::uint32_t>(used)),
        {.kind = Problem::Kind::inputNotAssigned});
    platform_.devices.requestBufferFrames(range.device, requestedBlockFrames);
    if (const double rateHz = input->sampleRate(); rateHz > 0.0) {
        boxes_.fx->setSampleRate(rateHz);
    }
    auto receiver = std::make_shared<InputReceiver>(
        boxes_, ChannelPair{.left = 0, .right = pair.right - pair.left});
    throwIfRefused(
        input->start([receiver](std::int64_t frames, std::span<const float* const> channels) {
            receiver->receive(frames, channels);
        }),
        {.kind = Problem::Kind::inputNotStarted});
    input_ = std::move(input);
    heard_ = pair;
}

bool SourceCapture::isAlive() const {
    return (tap_ && tap_->isAlive()) || (input_ && input_->isAlive());
}

bool SourceCapture::isUpToDate() const {
    const auto range = inputRange();
    if (!input_ || !range) {
        return true;
    }
    const std::int64_t available = channelCount(platform_.devices, range->device, Scope::input);
    if (available == 0) {
        return true; // it is going, or coming
    }
    return range->first <= available &&
           channelPair(range->first, range->count, available) == heard_;
}

void SourceCapture::stop() {
    tap_.reset();
    input_.reset();
    boxes_.streamRing->clear();
    boxes_.monitorRing->clear();
}

} // namespace velmora
