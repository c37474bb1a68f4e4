#include "operations/MuteToggle.h"

#include "engine/AudioSource.h"
#include "engine/EngineSettings.h"
#include "platform/DefaultsStore.h"

#include <cmath>

namespace velmora {

bool isGain(float gain) {
    return std::isfinite(gain) && gain >= 0.0F;
}

bool isMutedGain(float gain) {
    constexpr float loudestSilence = 0.001F; // linear, −60 dB
    return !(gain > loudestSilence);
}

float toggledGain(DefaultsStore& defaults, const std::string& key, float gain) {
    if (!isMutedGain(gain)) {
        defaults.set(key, static_cast<double>(gain));
        return 0.0F;
    }
    const auto kept = static_cast<float>(defaults.read<double>(key).value_or(0.0));
    return isGain(kept) && !isMutedGain(kept) ? kept : 1.0F;
}

std::string premuteKey(const AudioSource& source) {
    return gainBeforeMuteKey(source.id());
}

} // namespace velmora
