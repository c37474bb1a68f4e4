#include "engine/realtime/OutputMix.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace velmora {
namespace {

float finiteOrZero(float sample) noexcept {
    return std::abs(sample) <= std::numeric_limits<float>::max() ? sample : 0.0F;
}

/// Left for the first channel, right for every further one.
void writeChannels(std::span<const float> mixed,
                   std::span<float* const> channels,
                   std::int64_t firstFrame) noexcept {
    for (std::size_t c = 0; c < channels.size(); ++c) {
        if (channels[c] == nullptr) {
            continue;
        }
        float* const channel = channels[c] + firstFrame;
        const float* const side = mixed.data() + (c == 0 ? 0 : 1);
        for (std::size_t k = 0; k < mixed.size() / 2; ++k) {
            channel[k] = side[2 * k];
        }
    }
}

} // namespace

OutputMix::OutputMix(std::shared_ptr<RingSetBox> rings,
                     std::shared_ptr<Limiter> limiter,
                     std::shared_ptr<ParamBox> volume)
    : rings_(std::move(rings)), limiter_(std::move(limiter)), volume_(std::move(volume)),
      mixed_(2 * largestPart), ring_(2 * largestPart) {
}

void OutputMix::render(std::int64_t frames, std::span<float* const> channels) noexcept {
    const auto rings = rings_->get();
    const float volume = volume_->get();
    std::int64_t done = 0;
    do { // once even for no frames: reading bounds each ring's backlog
        const std::int64_t part = std::clamp<std::int64_t>(frames - done, 0, largestPart);
        const std::span<float> mixed(mixed_.data(), static_cast<std::size_t>(2 * part));
        mix(*rings, mixed);
        applyVolume(volume, mixed);
        limiter_->process(mixed);
        writeChannels(mixed, channels, done);
        done += part;
    } while (done < frames);
}

void OutputMix::mix(const RingSetBox::Rings& rings, std::span<float> mixed) noexcept {
    std::ranges::fill(mixed, 0.0F);
    for (const auto& ring : rings) {
        ring->read(ring_.data(), static_cast<std::int64_t>(mixed.size()));
        for (std::size_t i = 0; i < mixed.size(); ++i) {
            mixed[i] += finiteOrZero(ring_[i]);
        }
    }
}

void OutputMix::applyVolume(float volume, std::span<float> mixed) noexcept {
    if (volume != 1.0F) {
        for (float& sample : mixed) {
            sample *= volume;
        }
    }
    for (float& sample : mixed) {
        sample = finiteOrZero(sample);
    }
}

} // namespace velmora
