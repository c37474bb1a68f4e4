#include "presets/RandomPreset.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

namespace velmora {

namespace {

template <typename T>
T between(Random& random, T lowest, T highest) {
    return std::uniform_int_distribution<T>(lowest, highest)(random);
}

bool coin(Random& random) {
    return between(random, 0, 1) == 1;
}

std::int64_t randomInteger(Random& random) {
    return coin(random) ? between<std::int64_t>(random, -3, 64)
                        : between(random,
                                  std::numeric_limits<std::int64_t>::min(),
                                  std::numeric_limits<std::int64_t>::max());
}

char32_t randomCharacter(Random& random) {
    constexpr char32_t surrogates = 0xD800;
    switch (between(random, 0, 3)) {
    case 0:
        return between<std::uint32_t>(random, 0x00, 0x7F);
    case 1:
        return between<std::uint32_t>(random, 0x80, 0x7FF);
    case 2:
        return between<std::uint32_t>(random, 0x800, surrogates - 1);
    default:
        return between<std::uint32_t>(random, 0x10000, 0x10FFFF);
    }
}

void appendUtf8(std::string& text, char32_t character) {
    const auto tail = [character](int shift) {
        return static_cast<char>(0x80U | ((character >> shift) & 0x3FU));
    };
    if (character < 0x80) {
        text += static_cast<char>(character);
    } else if (character < 0x800) {
        text += {static_cast<char>(0xC0U | (character >> 6U)), tail(0)};
    } else if (character < 0x10000) {
        text += {static_cast<char>(0xE0U | (character >> 12U)), tail(6), tail(0)};
    } else {
        text += {static_cast<char>(0xF0U | (character >> 18U)), tail(12), tail(6), tail(0)};
    }
}

template <typename T>
std::optional<T> sometimes(Random& random, T value) {
    return coin(random) ? std::optional(std::move(value)) : std::nullopt;
}

} // namespace

float randomFloat(Random& random) {
    const auto value = std::bit_cast<float>(between<std::uint32_t>(random, 0, UINT32_MAX));
    return std::isfinite(value) ? value : 1.0F;
}

FXParams randomFX(Random& random) {
    return {.lowcut = randomInteger(random),
            .tilt = randomFloat(random),
            .comp = randomInteger(random),
            .autoGain = coin(random),
            .manualDB = randomFloat(random),
            .reverbChar = randomInteger(random),
            .reverbMix = randomFloat(random),
            .plosive = coin(random),
            .denoise = coin(random)};
}

std::string randomText(Random& random, int longest) {
    std::string text;
    for (int left = between(random, 0, longest); left > 0; --left) {
        appendUtf8(text, randomCharacter(random));
    }
    return text;
}

PresetSource randomSource(Random& random) {
    return {.kind = static_cast<PresetSource::Kind>(between(random, 0, 2)),
            .name = randomText(random, 300),
            .bundleID = sometimes(random, randomText(random, 40)),
            .deviceUID = sometimes(random, randomText(random, 40)),
            .first = sometimes(random, randomInteger(random)),
            .count = sometimes(random, randomInteger(random)),
            .gain = randomFloat(random),
            .fx = sometimes(random, randomFX(random))};
}

Preset randomPreset(Random& random) {
    Preset preset{.id = Uuid::random(),
                  .name = randomText(random, 300),
                  .headphoneVolume = randomFloat(random),
                  .streamVolume = randomFloat(random)};
    for (int left = between(random, 0, 8); left > 0; --left) {
        preset.sources.push_back(randomSource(random));
    }
    return preset;
}

} // namespace velmora
