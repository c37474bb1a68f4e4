#include "operations/CommandTable.h"

#include <algorithm>
#include <array>
#include <limits>

namespace velmora {

namespace {

constexpr std::size_t any = std::numeric_limits<std::size_t>::max();
constexpr std::string_view switchWords = "SOURCE [on|off|toggle]";

constexpr auto commands = std::to_array<CommandInfo>({
    {"status",
     "",
     0,
     0,
     "montrer ce qui est réglé maintenant",
     "{running, bypassed, blockFrames, missedBlocks, microphone: {db, muted, closed}, "
     "headphones: {db, muted}, monitor, preset, sources, problems}"},
    {"on", "", 0, 0, "mettre le mixage en marche"},
    {"off", "", 0, 0, "arrêter le mixage"},
    {"toggle", "", 0, 0, "mettre le mixage en marche ou l'arrêter"},
    {"sources",
     "",
     0,
     0,
     "montrer les sources du mixage",
     "[{number, id, name, kind, db, muted, silenced, effects}]"},
    {"available",
     "",
     0,
     0,
     "montrer les sources qui peuvent être ajoutées",
     "[{number, id, name, kind, playing}]"},
    {"add", "SOURCE", 1, 1, "ajouter une source que montre « available »"},
    {"remove", "SOURCE", 1, 1, "retirer une source"},
    {"gain", "SOURCE DB", 2, 2, "régler le niveau d'une source, de -60 à 6 dB"},
    {"mute", switchWords, 1, 2, "couper une source dans le mixage"},
    {"silence", switchWords, 1, 2, "taire une application sur les enceintes"},
    {"effects",
     "SOURCE [reset|NAME=VALUE ...]",
     1,
     any,
     "montrer ou régler les effets d'une source",
     "{name: value}"},
    {"bypass", "[on|off|toggle]", 0, 1, "contourner tous les effets"},
    {"volume",
     "microphone|headphones DB|mute|unmute|toggle",
     2,
     2,
     "régler le micro virtuel ou le casque, de -60 à 6 dB"},
    {"push-to-talk", "[on|off|toggle]", 0, 1, "fermer le micro tant qu'aucune touche n'est tenue"},
    {"monitor",
     "[DEVICE]",
     0,
     1,
     "montrer ou choisir la sortie d'écoute",
     "[{number, id, name, chosen}]"},
    {"preset list", "", 0, 0, "montrer les presets", "[{number, name, active}]"},
    {"preset apply", "NAME", 1, 1, "rappeler un preset"},
    {"preset next", "", 0, 0, "rappeler le preset suivant"},
    {"preset save", "NAME", 1, 1, "garder le setup actuel"},
    {"preset remove", "NAME", 1, 1, "supprimer un preset"},
    {"preset export", "FILE [NAME]", 1, 2, "écrire tous les presets, ou un seul, dans un fichier"},
    {"preset import", "FILE", 1, 1, "ajouter les presets d'un fichier"},
    {"levels", "", 0, 0, "montrer les niveaux de cet instant", "{level, sources: {id: level}}"},
    {"watch",
     "",
     0,
     0,
     "écrire une ligne par changement, jusqu'à l'interruption",
     "what status prints, on a line per change"},
    {"names",
     "sources|available|devices|presets",
     1,
     1,
     "montrer des noms, un par ligne, comme une commande les prend",
     "[name]"},
    {"quit", "", 0, 0, "fermer Velmora"},
});

constexpr auto options = std::to_array<OptionInfo>({
    {"--json", "avec une commande qui montre quelque chose : du JSON"},
    {"--start", "avec une commande : ouvrir d'abord Velmora, caché"},
    {"--hidden", "ouvrir Velmora sans sa fenêtre"},
    {"--headless", "mixer sans écran, aux ordres des commandes"},
    {"--help", "montrer cette aide"},
    {"--version", "montrer la version"},
});

} // namespace

std::span<const CommandInfo> commandTable() {
    return commands;
}

std::string usageOf(const CommandInfo& command) {
    return std::string(command.name) + (command.arguments.empty() ? "" : " ") +
           std::string(command.arguments);
}

const CommandInfo* commandOf(std::span<const std::string> words) {
    const auto named = [&](const std::string& name) {
        const auto* const found = std::ranges::find(commands, name, &CommandInfo::name);
        return found == commands.end() ? nullptr : found;
    };
    const CommandInfo* found = words.size() > 1 ? named(words[0] + " " + words[1]) : nullptr;
    return found != nullptr || words.empty() ? found : named(words[0]);
}

std::size_t nameWords(const CommandInfo& command) {
    return 1 + static_cast<std::size_t>(std::ranges::count(command.name, ' '));
}

std::vector<std::string> withWholePaths(std::vector<std::string> words,
                                        const std::filesystem::path& folder) {
    const CommandInfo* const command = commandOf(words);
    if (command != nullptr && command->arguments.starts_with("FILE") &&
        words.size() > nameWords(*command)) {
        std::string& file = words[nameWords(*command)];
        file = folder / file;
    }
    return words;
}

std::span<const OptionInfo> optionTable() {
    return options;
}

} // namespace velmora
