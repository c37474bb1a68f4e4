#include "engine/OutputEngine.h"

#include "capture/DeviceQueries.h"
#include "capture/UnitSetup.h"
#include "engine/realtime/Limiter.h"
#include "engine/realtime/OutputMix.h"

#include <string>
#include <utility>
#include <vector>

namespace velmora {
namespace {

constexpr std::int32_t silent = -1;

/// "3-4". Counted without a sign, because a stored choice may name any number.
std::string pairText(std::int64_t firstChannel) {
    return std::to_string(firstChannel) + "-" +
           std::to_string(static_cast<std::uint64_t>(firstChannel) + 1);
}

/// Sends the pair to the target's channels; the first two need no map.
void routeChannels(OutputUnit& unit, const AudioDevices& devices, const OutputTarget& target) {
    const std::int64_t first = target.firstChannel;
    if (first <= 1) {
        return;
    }
    const std::int64_t channels = channelCount(devices, target.device, Scope::output);
    if (first >= channels) {
        throw VelmoraError::engine("Sorties " + pairText(first) + " indisponibles (" +
                                   std::to_string(channels) + " canaux)");
    }
    std::vector<std::int32_t> map(static_cast<std::size_t>(channels), silent);
    const auto right = static_cast<std::size_t>(first);
    map[right - 1] = 0;
    map[right] = 1;
    throwIfRefused(unit.setChannelMap(map),
                   "Routage vers les sorties " + pairText(first) + " refusé");
}

} // namespace

std::unique_ptr<OutputUnit> makeOutputEngine(AudioDevices& devices,
                                             AudioUnits& units,
                                             const OutputTarget& target,
                                             std::shared_ptr<RingSetBox> rings,
                                             std::shared_ptr<Limiter> limiter,
                                             std::shared_ptr<ParamBox> volume) {
    auto unit = unitOrThrow(units.makeOutput());
    throwIfRefused(unit->setDevice(target.device), "Impossible d'assigner la sortie");
    devices.requestBufferFrames(target.device, requestedBlockFrames);
    routeChannels(*unit, devices, target);
    limiter->setSampleRate(unit->sampleRate());
    auto mix = std::make_shared<OutputMix>(std::move(rings), std::move(limiter), std::move(volume));
    throwIfRefused(unit->start([mix](std::int64_t frames, std::span<float* const> channels) {
        mix->render(frames, channels);
    }),
                   "Démarrage de la sortie refusé");
    return unit;
}

} // namespace velmora
