#include "operations/Commands.h"

#include "engine/AudioEngine.h"
#include "engine/Sentence.h"
#include "operations/MixerJson.h"
#include "operations/MixerState.h"
#include "operations/MixerText.h"
#include "operations/Numbers.h"
#include "settings/AppSettings.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace velmora {

namespace {

constexpr std::string_view jsonOption = "--json";

std::string asLine(std::string json) {
    return json + '\n';
}

CommandReply replyOf(const Refusal& refusal) {
    return {.status = refusal.kind == Refusal::Kind::refused ? 1 : 2, .error = refusal.sentence};
}

} // namespace

Commands::Commands(const MixerParts& parts, std::function<void()> quit)
    : parts_(parts), control_(parts), quit_(std::move(quit)) {
}

Refusal Commands::misused(std::string_view french, std::string_view name) const {
    return {Refusal::Kind::misused, filled(parts_.settings.t(french), {{"{name}", name}})};
}

CommandReply Commands::run(std::span<const std::string> words) {
    std::vector<std::string> rest(words.begin(), words.end());
    const bool asJson = std::erase(rest, jsonOption) > 0;
    const auto option =
        std::ranges::find_if(rest, [](const std::string& word) { return word.starts_with("--"); });
    if (option != rest.end()) {
        return replyOf(
            misused("L'option « {name} » est inconnue. « velmora --help » les montre.", *option));
    }
    const CommandInfo* const command = commandOf(rest);
    if (command == nullptr) {
        return replyOf(
            misused("La commande « {name} » est inconnue. « velmora --help » les montre.",
                    rest.empty() ? "" : rest.front()));
    }
    rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(nameWords(*command)));
    if (rest.size() < command->least || rest.size() > command->most) {
        return replyOf(misused("Usage : velmora {name}", usageOf(*command)));
    }
    const bool prints = !command->json.empty();
    if (asJson && !prints) {
        return replyOf(misused("« velmora {name} » ne montre rien en JSON.", command->name));
    }
    const Printed printed = carryOut(command->name, rest, asJson);
    return printed ? CommandReply{.output = *printed} : replyOf(printed.error());
}

Commands::Printed Commands::carryOut(std::string_view name, Words words, bool asJson) {
    if (auto printed = shown(name, words, asJson)) {
        return *std::move(printed);
    }
    const Answer<> answer = done(name, words);
    return answer ? Printed() : std::unexpected(answer.error());
}

std::optional<Commands::Printed> Commands::shown(std::string_view name, Words words, bool asJson) {
    const MixerState state = stateOf(parts_);
    const AppSettings& settings = parts_.settings;
    if (name == "status") {
        return asJson ? asLine(stateJson(state)) : stateText(state, settings);
    }
    if (name == "sources") {
        return asJson ? asLine(sourcesJson(state)) : sourcesText(state, settings);
    }
    if (name == "available") {
        const auto offered = control_.available();
        return asJson ? asLine(availableJson(offered)) : availableText(offered, settings);
    }
    if (name == "preset list") {
        return asJson ? asLine(presetsJson(state)) : presetsText(state);
    }
    if (name == "levels") {
        const auto& levels = parts_.engine.sourceLevels();
        return asJson ? asLine(levelsJson(parts_.engine.level(), levels))
                      : levelsText(state, levels);
    }
    if (name == "monitor" && words.empty()) {
        const auto offers = control_.monitors();
        return asJson ? asLine(monitorsJson(offers)) : monitorsText(offers);
    }
    if (name == "effects") {
        return effects(words, asJson);
    }
    if (name == "names") {
        return then(control_.names(words[0]), [&](const std::vector<std::string>& list) -> Printed {
            return asJson ? asLine(namesJson(list)) : namesText(list);
        });
    }
    return std::nullopt;
}

Answer<> Commands::done(std::string_view name, Words words) {
    if (name == "on" || name == "off" || name == "toggle") {
        return control_.switchMix(name == "toggle" ? Switch::toggle
                                  : name == "on"   ? Switch::on
                                                   : Switch::off);
    }
    if (name == "add") {
        return control_.add(words[0]);
    }
    if (name == "remove") {
        return control_.remove(words[0]);
    }
    if (name == "gain") {
        return then(db(words[1]), [&](double level) { return control_.setGain(words[0], level); });
    }
    if (name == "mute") {
        return then(switchWord(words, 1),
                    [&](Switch wanted) { return control_.mute(words[0], wanted); });
    }
    if (name == "silence") {
        return then(switchWord(words, 1),
                    [&](Switch wanted) { return control_.silence(words[0], wanted); });
    }
    if (name == "bypass") {
        return then(switchWord(words, 0), [&](Switch wanted) {
            control_.bypass(wanted);
            return Answer<>();
        });
    }
    if (name == "push-to-talk") {
        return then(switchWord(words, 0),
                    [&](Switch wanted) { return control_.pushToTalk(wanted); });
    }
    if (name == "volume") {
        return volume(words);
    }
    if (name == "monitor") {
        return control_.setMonitor(words[0]);
    }
    if (name == "preset apply") {
        return control_.applyPreset(words[0]);
    }
    if (name == "preset next") {
        return control_.applyNextPreset();
    }
    if (name == "preset save") {
        return control_.savePreset(words[0]);
    }
    if (name == "preset remove") {
        return control_.removePreset(words[0]);
    }
    if (name == "preset export") {
        return control_.exportPresets(words[0],
                                      words.size() > 1 ? std::optional(words[1]) : std::nullopt);
    }
    if (name == "preset import") {
        return control_.importPresets(words[0]);
    }
    if (name == "quit") {
        quit_();
    }
    return {}; // "watch" is told by `ChangeTeller`
}

Commands::Printed Commands::effects(Words words, bool asJson) {
    const Words changes = words.subspan(1);
    Answer<> changed;
    if (changes.size() == 1 && changes[0] == "reset") {
        changed = control_.resetEffects(words[0]);
    } else if (!changes.empty()) {
        std::vector<std::pair<std::string, std::string>> wanted;
        for (const std::string& change : changes) {
            const auto equals = change.find('=');
            if (equals == change.npos) {
                return std::unexpected(misused("« {name} » devrait s'écrire NOM=VALEUR.", change));
            }
            wanted.emplace_back(change.substr(0, equals), change.substr(equals + 1));
        }
        changed = control_.setEffects(words[0], wanted);
    }
    if (!changed) {
        return std::unexpected(changed.error());
    }
    if (!changes.empty() && !asJson) {
        return std::string();
    }
    return then(control_.source(words[0]), [&](const AudioSource& source) -> Printed {
        const FXParams params = parts_.engine.fx(source);
        return asJson ? asLine(effectsJson(params)) : effectsText(params);
    });
}

Answer<> Commands::volume(Words words) {
    const auto fader = control_.fader(words[0]);
    if (!fader) {
        return std::unexpected(fader.error());
    }
    if (words[1] == "mute" || words[1] == "unmute" || words[1] == "toggle") {
        control_.mute(*fader,
                      words[1] == "toggle" ? Switch::toggle
                      : words[1] == "mute" ? Switch::on
                                           : Switch::off);
        return {};
    }
    return then(db(words[1]), [&](double level) { return control_.setGain(*fader, level); });
}

Answer<Switch> Commands::switchWord(Words words, std::size_t index) const {
    if (words.size() <= index || words[index] == "toggle") {
        return Switch::toggle;
    }
    if (words[index] != "on" && words[index] != "off") {
        return std::unexpected(
            misused("« {name} » n'est ni « on » ni « off » ni « toggle ».", words[index]));
    }
    return words[index] == "on" ? Switch::on : Switch::off;
}

Answer<double> Commands::db(const std::string& word) const {
    if (const auto number = numberFrom(word)) {
        return *number;
    }
    return std::unexpected(misused("« {name} » n'est pas un nombre de décibels.", word));
}

} // namespace velmora
