#include "effects/Reverb.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velmora {
namespace {

constexpr double reservedRate = 192000.0; // Hz
constexpr float leastMix = 0.005F;
constexpr float wetAtFullMix = 0.6F;

constexpr std::array<ReverbTone, 3> characters{{
    {0.75F, 0.45F}, // Studio
    {0.84F, 0.25F}, // Plate
    {0.92F, 0.5F},  // Hall
}};

constexpr std::size_t partFrames = 128; // at a time, from the stack
using Part = std::array<float, partFrames>;

} // namespace

Reverb::Reverb(Instructions instructions) : instructions_(instructions), spare_(reservedRate) {
    lines_.reserve(reservedRate);
}

void Reverb::retune(const FXParams& params, double sampleRate) {
    const bool rateChanged = std::exchange(sampleRate_, sampleRate) != sampleRate;
    isOn_ = params.reverbMix > leastMix;
    if (!isOn_) {
        return;
    }
    const auto index = std::clamp<std::int64_t>(params.reverbChar, 0, characters.size() - 1);
    tone_ = characters[static_cast<std::size_t>(index)];
    wet_ = std::min(params.reverbMix, 1.0F) * wetAtFullMix;
    if (!isConfigured_ || rateChanged) {
        if (ReverbLines* larger = spare_.take()) {
            std::swap(lines_, *larger);
        }
        lines_.configure(sampleRate);
        isConfigured_ = true;
    }
}

void Reverb::reset() {
    if (isConfigured_) {
        lines_.clear();
    }
}

void Reverb::process(std::span<float> samples) noexcept {
    for (std::size_t at = 0; at < samples.size(); at += 2 * partFrames) {
        addRoom(samples.subspan(at, std::min(2 * partFrames, samples.size() - at)));
    }
}

void Reverb::addRoom(std::span<float> samples) noexcept {
    const std::size_t frames = samples.size() / 2;
    Part left;
    Part right;
    for (std::size_t i = 0; i < frames; ++i) {
        left[i] = samples[2 * i];
        right[i] = samples[2 * i + 1];
    }
    lines_.process(
        std::span(left).first(frames), std::span(right).first(frames), tone_, instructions_);
    for (std::size_t i = 0; i < frames; ++i) {
        samples[2 * i] += left[i] * wet_;
        samples[2 * i + 1] += right[i] * wet_;
    }
}

} // namespace velmora
