#include "operations/MixerText.h"

#include "engine/Sentence.h"
#include "operations/EffectWords.h"
#include "operations/MuteToggle.h"
#include "operations/Numbers.h"
#include "settings/AppSettings.h"

#include <algorithm>

namespace velmora {

namespace {

std::string numbered(std::size_t number, bool isMarked, const std::string& text) {
    return std::to_string(number) + (isMarked ? " * " : "   ") + text + '\n';
}

/// Those that are not neutral, as the command takes them.
std::string setEffects(const FXParams& params) {
    const auto neutral = effectValues({});
    std::string words;
    for (const auto& value : effectValues(params)) {
        if (std::ranges::find(neutral, value) == neutral.end()) {
            words += (words.empty() ? "" : " ") + value.first + "=" + value.second;
        }
    }
    return words;
}

std::string sourceLine(const SourceState& source, const AppSettings& settings) {
    std::string line = source.name + "  " + dbText(source.gain);
    if (source.isSilenced) {
        line += ", " + settings.t("muet sur les enceintes");
    }
    if (const std::string words = setEffects(source.effects); !words.empty()) {
        line += ", " + words;
    }
    return line;
}

std::string runningLine(const MixerState& state, const AppSettings& settings) {
    return settings.t(state.isRunning ? "En marche" : "Arrêté");
}

std::string bypassLine(const MixerState& state, const AppSettings& settings) {
    return settings.t(state.isBypassed ? "Effets contournés" : "Effets entendus");
}

std::string faderLine(const char* french, float gain, const AppSettings& settings) {
    return settings.t(french) + "  " + dbText(gain);
}

std::string microphoneLine(const MixerState& state, const AppSettings& settings) {
    return faderLine("Micro virtuel", state.microphone, settings) +
           (state.isMicrophoneClosed ? ", " + settings.t("fermé par « appuyer pour parler »") : "");
}

std::string monitorLine(const MixerState& state, const AppSettings& settings) {
    return settings.t("Écoute") + "  " +
           (state.monitor.empty() ? settings.t("Sortie par défaut") : state.monitor);
}

std::string presetLine(const MixerState& state) {
    return "Preset  " + state.preset.value_or("-");
}

} // namespace

std::string stateText(const MixerState& state, const AppSettings& settings) {
    std::string text = runningLine(state, settings) + '\n' + microphoneLine(state, settings) +
                       '\n' + faderLine("Casque", state.headphones, settings) + '\n' +
                       monitorLine(state, settings) + '\n' + presetLine(state) + '\n';
    if (const std::string blocks = blocksText(state.blocks, settings); !blocks.empty()) {
        text += blocks + '\n';
    }
    if (state.isBypassed) {
        text += bypassLine(state, settings) + '\n';
    }
    text += sourcesText(state, settings);
    for (const std::string& problem : state.problems) {
        text += "! " + problem + '\n';
    }
    return text;
}

std::string blocksText(const BlockStatus& blocks, const AppSettings& settings) {
    if (blocks.frames == 0) {
        return {};
    }
    return filled(settings.t("Blocs de {frames} échantillons, {missed} manqués en une minute"),
                  {{"{frames}", std::to_string(blocks.frames)},
                   {"{missed}", std::to_string(blocks.missedLastMinute)}});
}

std::string sourcesText(const MixerState& state, const AppSettings& settings) {
    std::string text;
    std::size_t number = 0;
    for (const SourceState& source : state.sources) {
        text += numbered(++number, false, sourceLine(source, settings));
    }
    return text;
}

std::string effectsText(const FXParams& effects) {
    std::string text;
    for (const auto& [name, value] : effectValues(effects)) {
        text.append(name).append("=").append(value).append("\n");
    }
    return text;
}

std::string availableText(std::span<const OfferedSource> offered, const AppSettings& settings) {
    std::string text;
    std::size_t number = 0;
    for (const auto& [source, name, isPlaying] : offered) {
        text += numbered(++number,
                         false,
                         name + "  " + source.id() +
                             (isPlaying ? ", " + settings.t("joue maintenant") : ""));
    }
    return text;
}

std::string monitorsText(std::span<const MonitorOffer> offers) {
    std::string text;
    std::size_t number = 0;
    for (const MonitorOffer& offer : offers) {
        text += numbered(
            ++number, offer.isChosen, offer.name + (offer.tag.empty() ? "" : "  " + offer.tag));
    }
    return text;
}

std::string presetsText(const MixerState& state) {
    std::string text;
    std::size_t number = 0;
    for (const std::string& name : state.presets) {
        text += numbered(++number, name == state.preset, name);
    }
    return text;
}

std::string namesText(std::span<const std::string> names) {
    std::string text;
    for (const std::string& name : names) {
        text += name + '\n';
    }
    return text;
}

std::string levelsText(const MixerState& state, const std::map<std::string, float>& levels) {
    std::string text;
    std::size_t number = 0;
    for (const SourceState& source : state.sources) {
        const auto level = levels.find(source.id);
        text += numbered(++number,
                         false,
                         source.name + "  " + dbText(level == levels.end() ? 0.0F : level->second));
    }
    return text;
}

std::vector<std::string>
changeLines(const MixerState& before, const MixerState& after, const AppSettings& settings) {
    std::vector<std::string> lines;
    const auto tell = [&lines](bool differs, const std::string& line) {
        if (differs) {
            lines.push_back(line);
        }
    };
    tell(before.isRunning != after.isRunning, runningLine(after, settings));
    tell(before.isBypassed != after.isBypassed, bypassLine(after, settings));
    tell(before.microphone != after.microphone ||
             before.isMicrophoneClosed != after.isMicrophoneClosed,
         microphoneLine(after, settings));
    tell(before.headphones != after.headphones, faderLine("Casque", after.headphones, settings));
    tell(before.monitor != after.monitor, monitorLine(after, settings));
    tell(before.preset != after.preset, presetLine(after));
    for (const SourceState& source : before.sources) {
        const bool isThere =
            std::ranges::find(after.sources, source.id, &SourceState::id) != after.sources.end();
        tell(!isThere, "- " + source.name);
    }
    for (const SourceState& source : after.sources) {
        const auto known = std::ranges::find(before.sources, source.id, &SourceState::id);
        const bool isNew = known == before.sources.end();
        tell(isNew || *known != source, (isNew ? "+ " : "") + sourceLine(source, settings));
    }
    for (const std::string& problem : after.problems) {
        tell(std::ranges::find(before.problems, problem) == before.problems.end(), "! " + problem);
    }
    return lines;
}

} // namespace velmora
