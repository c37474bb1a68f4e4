#include "operations/EffectWords.h"

#include "engine/Sentence.h"
#include "operations/Numbers.h"
#include "settings/AppSettings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <optional>

namespace velmora {

namespace {

constexpr std::array<std::string_view, 3> cutOffs{"off", "75", "150"}; // Hz
constexpr std::array<std::string_view, 4> strengths{"off", "1", "2", "3"};
constexpr std::array<std::string_view, 3> rooms{"studio", "plate", "hall"};
constexpr std::array<std::string_view, 2> switches{"off", "on"};
constexpr double percent = 100.0;
constexpr double highestManualDb = 12.0;

template <std::size_t count>
std::string stepText(const std::array<std::string_view, count>& steps, std::int64_t value) {
    const auto last = static_cast<std::int64_t>(count) - 1;
    return std::string(steps[static_cast<std::size_t>(std::clamp<std::int64_t>(value, 0, last))]);
}

template <std::size_t count>
std::optional<std::int64_t> stepFrom(const std::array<std::string_view, count>& steps,
                                     std::string_view word) {
    const auto found = std::ranges::find(steps, word);
    return found == steps.end() ? std::nullopt
                                : std::optional<std::int64_t>(std::distance(steps.begin(), found));
}

template <std::size_t count>
bool setStep(std::int64_t& field,
             const std::array<std::string_view, count>& steps,
             std::string_view word) {
    const auto step = stepFrom(steps, word);
    field = step.value_or(field);
    return step.has_value();
}

bool setSwitch(bool& field, std::string_view word) {
    const auto step = stepFrom(switches, word);
    field = step ? *step == 1 : field;
    return step.has_value();
}

/// @param scale  how many of the word's units are 1 of the field's
bool setAmount(
    float& field, std::string_view word, double lowest, double highest, double scale = 1.0) {
    const auto number = numberFrom(word);
    if (!number || !(*number >= lowest && *number <= highest)) {
        return false;
    }
    field = static_cast<float>(*number / scale);
    return true;
}

bool setLevel(FXParams& fx, std::string_view word) {
    if (word == "auto") {
        fx.autoGain = true;
        return true;
    }
    if (!setAmount(fx.manualDB, word, -highestManualDb, highestManualDb)) {
        return false;
    }
    fx.autoGain = false;
    return true;
}

struct Effect {
    EffectWord word;
    std::string (*text)(const FXParams& fx);
    bool (*set)(FXParams& fx, std::string_view value);
};

using Fx = FXParams;
using Word = std::string_view;

// In the order of the effects' panel.
const std::array effects{
    Effect{{"lowcut", "off, 75, 150"},
           [](const Fx& fx) { return stepText(cutOffs, fx.lowcut); },
           [](Fx& fx, Word word) { return setStep(fx.lowcut, cutOffs, word); }},
    Effect{{"tone", "-100 ... 100"},
           [](const Fx& fx) { return numberText(static_cast<double>(fx.tilt) * percent, 0); },
           [](Fx& fx, Word word) { return setAmount(fx.tilt, word, -100, 100, percent); }},
    Effect{{"compressor", "off, 1, 2, 3"},
           [](const Fx& fx) { return stepText(strengths, fx.comp); },
           [](Fx& fx, Word word) { return setStep(fx.comp, strengths, word); }},
    Effect{{"reverb", "0 ... 100"},
           [](const Fx& fx) { return numberText(static_cast<double>(fx.reverbMix) * percent, 0); },
           [](Fx& fx, Word word) { return setAmount(fx.reverbMix, word, 0, 100, percent); }},
    Effect{{"room", "studio, plate, hall"},
           [](const Fx& fx) { return stepText(rooms, fx.reverbChar); },
           [](Fx& fx, Word word) { return setStep(fx.reverbChar, rooms, word); }},
    Effect{{"level", "auto, -12 ... 12"},
           [](const Fx& fx) {
               return fx.autoGain ? "auto" : numberText(static_cast<double>(fx.manualDB), 1);
           },
           [](Fx& fx, Word word) { return setLevel(fx, word); }},
    Effect{{"plosives", "off, on"},
           [](const Fx& fx) { return stepText(switches, fx.plosive ? 1 : 0); },
           [](Fx& fx, Word word) { return setSwitch(fx.plosive, word); }},
    Effect{{"noise", "off, on"},
           [](const Fx& fx) { return stepText(switches, fx.denoise ? 1 : 0); },
           [](Fx& fx, Word word) { return setSwitch(fx.denoise, word); }},
};

Refusal refused(std::string sentence) {
    return {Refusal::Kind::refused, std::move(sentence)};
}

} // namespace

std::span<const EffectWord> effectWords() {
    static const auto words = [] {
        std::vector<EffectWord> all;
        std::ranges::transform(effects, std::back_inserter(all), &Effect::word);
        return all;
    }();
    return words;
}

std::vector<std::pair<std::string, std::string>> effectValues(const FXParams& params) {
    std::vector<std::pair<std::string, std::string>> values;
    for (const Effect& effect : effects) {
        values.emplace_back(effect.word.name, effect.text(params));
    }
    return values;
}

Answer<FXParams> withEffect(FXParams params,
                            std::string_view name,
                            std::string_view value,
                            const AppSettings& settings) {
    const auto* const effect =
        std::ranges::find(effects, name, [](const Effect& one) { return one.word.name; });
    if (effect == effects.end()) {
        std::string names;
        for (const EffectWord& word : effectWords()) {
            names += (names.empty() ? "" : ", ") + std::string(word.name);
        }
        return std::unexpected(
            refused(filled(settings.t("Aucun effet ne s'appelle « {name} ». Il y a : {names}."),
                           {{"{name}", name}, {"{names}", names}})));
    }
    if (!effect->set(params, value)) {
        return std::unexpected(refused(
            filled(settings.t("« {value} » n'est pas une valeur de {name}, qui prend : {values}."),
                   {{"{value}", value}, {"{name}", name}, {"{values}", effect->word.values}})));
    }
    return params;
}

} // namespace velmora
