#include "capture/ProcessTap.h"

#include "capture/RandomUuid.h"
#include "effects/EffectsChain.h"
#include "engine/VelmoraError.h"
#include "engine/realtime/ParamBox.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <numeric>
#include <string_view>
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

/// The value of a request, or the refusal as an error for the user.
template <typename T>
T valueOrThrow(const StatusOr<T>& result, std::string_view sentence, std::string_view hint = {}) {
    if (!result) {
        throw VelmoraError::tap(withStatus(sentence, result.error()) + std::string(hint));
    }
    return *result;
}

} // namespace

ProcessTap::ProcessTap(AudioHardware& hardware,
                       CaptureChain chain,
                       bool muteDirect,
                       OnLevel onLevel)
    : hardware_(hardware), chain_(std::move(chain)), muteDirect_(muteDirect),
      onLevel_(std::move(onLevel)) {
}

ProcessTap::~ProcessTap() {
    stop();
}

void ProcessTap::start(std::int32_t pid) {
    stop();
    const AudioObjectID process = hardware_.processForPid(pid).value_or(0);
    if (process == 0) {
        throw VelmoraError::tap("Cette app n'a pas encore de son — lance une lecture dedans, puis "
                                "re-sélectionne-la.");
    }
    const std::string uuid = randomUuid();
    // Read before the tap exists: the tap's mixdown is made for the output as it is now.
    const std::uint32_t channels = defaultOutputChannelCount(hardware_);
    createTap(process, uuid);
    createAggregate(uuid);
    handOverRate();
    // An exact half: five channels give 2.5.
    startCallback(std::max(static_cast<float>(channels) / 2.0F, 1.0F));
}

void ProcessTap::createTap(AudioObjectID process, const std::string& uuid) {
    const TapDescription description{
        .process = process,
        .uuid = uuid,
        .isPrivate = true,
        .mute = muteDirect_ ? MuteBehavior::mutedWhenTapped : MuteBehavior::unmuted,
    };
    tapID_ = valueOrThrow(hardware_.createTap(description),
                          "Création du tap refusée",
                          " — vérifier la permission d'enregistrement audio système");
}

void ProcessTap::createAggregate(const std::string& tapUuid) {
    AggregateDescription description;
    description.name = "Velmora Tap";
    description.uid = randomUuid();
    description.isPrivate = true;
    description.tapAutoStart = true;
    description.taps = {tapUuid};
    aggregateID_ =
        valueOrThrow(hardware_.createAggregate(description), "Création du device agrégé refusée");
}

void ProcessTap::handOverRate() {
    const double rateHz = hardware_.nominalRate(aggregateID_).value_or(0.0);
    if (rateHz > 0.0) {
        chain_.fx->setSampleRate(rateHz);
    }
}

void ProcessTap::startCallback(float compensation) {
    ioProcID_ =
        valueOrThrow(hardware_.createIOProc(aggregateID_,
                                            [this, compensation](std::span<IOBuffer> buffers) {
                                                capture(buffers, compensation);
                                            }),
                     "IOProc refusé");
    if (const Status status = hardware_.startDevice(aggregateID_, *ioProcID_); status != statusOk) {
        throw VelmoraError::tap(withStatus("Démarrage du device agrégé refusé", status));
    }
}

void ProcessTap::capture(std::span<IOBuffer> buffers, float compensation) const noexcept {
    for (const IOBuffer& buffer : buffers) {
        if (buffer.data == nullptr) {
            continue;
        }
        // The gain comes before the effects: the compressor and the meter see the gained signal.
        cleanAndScale(buffer.data, buffer.samples, compensation * chain_.gain->get());
        onLevel_(chain_.deliver(buffer.data, buffer.samples));
    }
}

void ProcessTap::stop() noexcept {
    // Nothing useful can be done when a release is refused.
    if (ioProcID_ && aggregateID_ != 0) {
        hardware_.stopDevice(aggregateID_, *ioProcID_);
        hardware_.destroyIOProc(aggregateID_, *ioProcID_);
        ioProcID_.reset();
    }
    if (aggregateID_ != 0) {
        hardware_.destroyAggregate(std::exchange(aggregateID_, 0));
    }
    if (tapID_ != 0) {
        hardware_.destroyTap(std::exchange(tapID_, 0));
    }
}

std::uint32_t ProcessTap::defaultOutputChannelCount(const AudioHardware& hardware) {
    const AudioObjectID device = hardware.defaultOutputDevice().value_or(0);
    if (device == 0) {
        return stereo;
    }
    const auto streams = hardware.streamChannels(device, Scope::output);
    return streams ? std::max(std::accumulate(streams->begin(), streams->end(), 0U), stereo)
                   : stereo;
}

} // namespace velmora
