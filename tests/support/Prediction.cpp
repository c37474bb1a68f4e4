#include "support/Prediction.h"

#include "effects/EffectsChain.h"

#include <cstdint>

namespace velmora::support {

std::vector<double>
predictedDb(const Tone& tone, double gainDb, const FXParams& fx, double seconds) {
    constexpr double measuredSeconds = 0.5;
    // The gain comes before the effects.
    Sound sound = makeTone({.hz = tone.hz, .db = tone.db + gainDb}, seconds);
    EffectsChain chain(fx);
    chain.process(sound.samples.data(), static_cast<std::int64_t>(sound.samples.size()));

    const auto measured = static_cast<std::size_t>(measuredSeconds * sound.rateHz);
    std::vector<double> levels;
    for (std::uint32_t channel = 0; channel < sound.channels; ++channel) {
        const auto end = sound.channel(channel, sound.frames() - measured);
        levels.push_back(toneDb(end, tone.hz[channel]));
    }
    return levels;
}

} // namespace velmora::support
