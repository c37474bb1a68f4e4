#include "app/EffectsMenu.h"

#include "engine/AudioEngine.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora {
namespace {

constexpr float tiltStep = 0.1F;
constexpr float gainStepDb = 1.0F;
constexpr float gainRangeDb = 12.0F;
constexpr float mixStep = 0.05F;

constexpr std::array<std::string_view, 3> lowCuts{"Off", "75 Hz", "150 Hz"};
constexpr std::array<std::string_view, 4> strengths{"Off", "●", "●●", "●●●"};
constexpr std::array<std::string_view, 3> characters{"Studio", "Plate", "Hall"};

template <std::size_t count>
std::size_t indexIn(const std::array<std::string_view, count>& names, std::int64_t value) {
    return static_cast<std::size_t>(
        std::clamp<std::int64_t>(value, 0, static_cast<std::int64_t>(names.size()) - 1));
}

template <std::size_t count>
std::string nameIn(const std::array<std::string_view, count>& names, std::int64_t value) {
    return std::string(names[indexIn(names, value)]);
}

template <std::size_t count>
std::int64_t
stepped(const std::array<std::string_view, count>& names, std::int64_t value, int direction) {
    return static_cast<std::int64_t>(
        indexIn(names, static_cast<std::int64_t>(indexIn(names, value)) + direction));
}

/// One step along a grid, so that repeated steps return to an exact 0.
float stepped(float value, float step, int direction, float lowest, float highest) {
    const float index = std::round(value / step) + static_cast<float>(direction);
    return std::clamp(index * step, lowest, highest);
}

std::string percent(float fraction) {
    return std::to_string(std::lround(fraction * 100.0F)) + " %";
}

std::string onOff(bool on) {
    return on ? "On" : "Off";
}

} // namespace

std::vector<MenuItem> effectsItems(AudioEngine& engine,
                                   const AudioSource& source,
                                   const std::function<std::string(std::string_view)>& t) {
    const FXParams fx = engine.fx(source);
    std::vector<MenuItem> items;
    const auto row = [&](std::string_view title, const std::string& value, auto change) {
        items.push_back({.text = t(title) + "  " + value,
                         .choose = {},
                         .adjust =
                             [&engine, source, change](int direction) {
                                 FXParams changed = engine.fx(source);
                                 change(changed, direction);
                                 engine.setFX(changed, source);
                             },
                         .remove = {}});
    };
    row("Coupe-bas", nameIn(lowCuts, fx.lowcut), [](FXParams& p, int by) {
        p.lowcut = stepped(lowCuts, p.lowcut, by);
    });
    row("Tonalité", percent(fx.tilt), [](FXParams& p, int by) {
        p.tilt = stepped(p.tilt, tiltStep, by, -1.0F, 1.0F);
    });
    row("Compression", nameIn(strengths, fx.comp), [](FXParams& p, int by) {
        p.comp = stepped(strengths, p.comp, by);
    });
    row("Réverbération", nameIn(characters, fx.reverbChar), [](FXParams& p, int by) {
        p.reverbChar = stepped(characters, p.reverbChar, by);
    });
    row("Réverbération", percent(fx.reverbMix), [](FXParams& p, int by) {
        p.reverbMix = stepped(p.reverbMix, mixStep, by, 0.0F, 1.0F);
    });
    row("Anti-plosives", onOff(fx.plosive), [](FXParams& p, int) { p.plosive = !p.plosive; });
    row("Réduction de bruit", onOff(fx.denoise), [](FXParams& p, int) { p.denoise = !p.denoise; });
    row("Gain",
        fx.autoGain ? "Auto" : std::to_string(std::lround(fx.manualDB)) + " dB",
        [](FXParams& p, int by) {
            // Auto lies below the lowest manual value, so that one key walks through all of it.
            if (p.autoGain) {
                p.autoGain = by <= 0;
                p.manualDB = by > 0 ? -gainRangeDb : 0.0F;
            } else if (by < 0 && p.manualDB <= -gainRangeDb) {
                p.autoGain = true;
                p.manualDB = 0.0F;
            } else {
                p.manualDB = stepped(p.manualDB, gainStepDb, by, -gainRangeDb, gainRangeDb);
            }
        });
    items.push_back({.text = t("Rétablir"),
                     .choose = [&engine, source] { engine.setFX(FXParams{}, source); },
                     .adjust = {},
                     .remove = {}});
    return items;
}

} // namespace velmora
