#include "operations/CommandHelp.h"

#include "operations/CommandTable.h"
#include "operations/EffectWords.h"

#include <algorithm>
#include <vector>

namespace velmora {

namespace {

struct Row {
    std::string left;
    std::string right;
};

/// Two columns; a long left side gets a line of its own. Left sides are ASCII.
std::string columns(const std::vector<Row>& rows) {
    constexpr std::size_t widest = 30;
    std::string text;
    for (const Row& row : rows) {
        text += "  " + row.left;
        text += row.left.size() > widest ? "\n" + std::string(widest + 4, ' ')
                                         : std::string(widest + 2 - row.left.size(), ' ');
        text += row.right + "\n";
    }
    return text;
}

} // namespace

std::string helpText(const Lookup& lookup) {
    std::vector<Row> commands;
    for (const CommandInfo& command : commandTable()) {
        commands.push_back({usageOf(command), lookup(command.summary)});
    }
    std::vector<Row> options;
    for (const OptionInfo& option : optionTable()) {
        options.push_back({std::string(option.name), lookup(option.summary)});
    }
    std::vector<Row> effects;
    for (const EffectWord& effect : effectWords()) {
        effects.push_back({std::string(effect.name), std::string(effect.values)});
    }
    return lookup("Table de mixage en direct.") + "\n\n" + "  velmora [--hidden|--headless]\n" +
           "  velmora [--start] COMMAND [--json]\n\n" +
           lookup("Commandes, adressées au Velmora qui est ouvert :") + "\n" + columns(commands) +
           "\n" + lookup("Options :") + "\n" + columns(options) + "\n" +
           lookup("Effets et leurs valeurs :") + "\n" + columns(effects) + "\n" +
           lookup("Une source, une sortie ou un preset se nomme par son numéro, son nom (le début "
                  "suffit) ou son identifiant.") +
           "\n" +
           lookup("Une commande finit par 0 si c'est fait, 1 si c'est refusé, 2 si elle est mal "
                  "écrite.") +
           "\n";
}

} // namespace velmora
