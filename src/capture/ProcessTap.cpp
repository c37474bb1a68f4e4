#include "capture/ProcessTap.h"

#include "effects/EffectsChain.h"
#include "engine/VelmoraError.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <numeric>
#include <span>
#include <utility>

namespace velmora {
namespace {

constexpr std::uint32_t stereo = 2;

/// Infinite and not-a-number samples become 0. Written on the bits, so that the loop vectorises.
float finiteOrZero(float sample) noexcept {
    constexpr std::uint32_t signBit = 0x8000'0000U;
    constexpr auto largestFinite = std::bit_cast<std::uint32_t>(std::numeric_limits<float>::max());
    const std::uint32_t magnitude = std::bit_cast<std::uint32_t>(sample) & ~signBit;
    return magnitude > largestFinite ? 0.0F : sample;
}

void clean(std::span<float> samples) noexcept {
    for (float& sample : samples) {
        sample = finiteOrZero(sample);
    }
}

Problem::Kind kindOf(TapRefusal::Step step) {
    switch (step) {
    case TapRefusal::Step::tap:
        return Problem::Kind::tapRefused;
    case TapRefusal::Step::device:
        return Problem::Kind::tapDeviceRefused;
    case TapRefusal::Step::callback:
        return Problem::Kind::tapCallbackRefused;
    case TapRefusal::Step::start:
        return Problem::Kind::tapNotStarted;
    }
    std::unreachable();
}

} // namespace

ProcessTap::ProcessTap(const Platform& platform, CaptureBoxes boxes, bool muteDirect)
    : platform_(platform), boxes_(std::move(boxes)), muteDirect_(muteDirect) {
}

ProcessTap::~ProcessTap() {
    stop();
}

void ProcessTap::start(std::int32_t pid) {
    stop();
    const AudioObjectID process = platform_.taps.processForPid(pid).value_or(0);
    if (process == 0) {
        throw VelmoraError({.kind = Problem::Kind::noSoundYet});
    }
    // An exact half: five channels give 2.5.
    const std::uint32_t channels = defaultOutputChannelCount(platform_.devices);
    const float compensation = std::max(static_cast<float>(channels) / 2.0F, 1.0F);
    handOverRate();
    using Mute = ApplicationTaps::Mute;
    auto tap = platform_.taps.open(
        process,
        muteDirect_ ? Mute::whileTapped : Mute::no,
        compensation,
        [this, compensation](const TapBlock& block) { capture(block, compensation); });
    if (!tap) {
        throw VelmoraError({.kind = kindOf(tap.error().step), .status = tap.error().status});
    }
    tap_ = *std::move(tap);
}

/// The first block may come before `open` has returned.
void ProcessTap::handOverRate() {
    const double rateHz = platform_.taps.tapRate().value_or(0.0);
    if (rateHz > 0.0) {
        boxes_.fx->setSampleRate(rateHz);
    }
}

void ProcessTap::capture(const TapBlock& block, float compensation) const noexcept {
    if (block.data == nullptr) {
        return;
    }
    const std::span samples(block.data, static_cast<std::size_t>(block.samples));
    clean(samples);
    boxes_.deliver(samples, compensation);
}

void ProcessTap::stop() noexcept {
    tap_.reset();
}

std::uint32_t ProcessTap::defaultOutputChannelCount(const AudioDevices& devices) {
    const AudioObjectID device = devices.defaultOutputDevice().value_or(0);
    if (device == 0) {
        return stereo;
    }
    const auto streams = devices.streamChannels(device, Scope::output);
    return streams ? std::max(std::accumulate(streams->begin(), streams->end(), 0U), stereo)
                   : stereo;
}

} // namespace velmora
