#include "capture/ProcessTap.h"

#include "effects/EffectsChain.h"
#include "engine/VelmoraError.h"
#include "engine/realtime/ParamBox.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <numeric>
#include <string>
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

void cleanAndScale(float* samples, std::int64_t count, float factor) noexcept {
    for (std::int64_t index = 0; index < count; ++index) {
        samples[index] = finiteOrZero(samples[index]) * factor;
    }
}

std::string sentenceOf(const TapRefusal& refusal) {
    using Step = TapRefusal::Step;
    switch (refusal.step) {
    case Step::tap:
        return withStatus("Création du tap refusée", refusal.status) +
               " — vérifier la permission d'enregistrement audio système";
    case Step::device:
        return withStatus("Création du device agrégé refusée", refusal.status);
    case Step::callback:
        return withStatus("IOProc refusé", refusal.status);
    case Step::start:
        break;
    }
    return withStatus("Démarrage du device agrégé refusé", refusal.status);
}

} // namespace

ProcessTap::ProcessTap(const Platform& platform,
                       CaptureChain chain,
                       bool muteDirect,
                       OnLevel onLevel)
    : platform_(platform), chain_(std::move(chain)), muteDirect_(muteDirect),
      onLevel_(std::move(onLevel)) {
}

ProcessTap::~ProcessTap() {
    stop();
}

void ProcessTap::start(std::int32_t pid) {
    stop();
    const AudioObjectID process = platform_.taps.processForPid(pid).value_or(0);
    if (process == 0) {
        throw VelmoraError::tap("Cette app n'a pas encore de son — lance une lecture dedans, puis "
                                "re-sélectionne-la.");
    }
    // Read before the tap exists: the tap's mixdown is made for the output as it is now. An exact
    // half: five channels give 2.5.
    const std::uint32_t channels = defaultOutputChannelCount(platform_.devices);
    const float compensation = std::max(static_cast<float>(channels) / 2.0F, 1.0F);
    handOverRate();
    using Mute = ApplicationTaps::Mute;
    auto tap = platform_.taps.open(
        process,
        muteDirect_ ? Mute::whileTapped : Mute::no,
        [this, compensation](const TapBlock& block) { capture(block, compensation); });
    if (!tap) {
        throw VelmoraError::tap(sentenceOf(tap.error()));
    }
    tap_ = *std::move(tap);
}

/// The first block may come before `open` has returned.
void ProcessTap::handOverRate() {
    const double rateHz = platform_.taps.tapRate().value_or(0.0);
    if (rateHz > 0.0) {
        chain_.fx->setSampleRate(rateHz);
    }
}

void ProcessTap::capture(const TapBlock& block, float compensation) const noexcept {
    if (block.data == nullptr) {
        return;
    }
    // The gain comes before the effects: the compressor and the meter see the gained signal.
    cleanAndScale(block.data, block.samples, compensation * chain_.gain->get());
    onLevel_(chain_.deliver(block.data, block.samples));
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
