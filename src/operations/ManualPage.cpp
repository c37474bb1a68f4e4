#include "operations/ManualPage.h"

#include "operations/CommandTable.h"
#include "operations/EffectWords.h"

namespace velmora {

namespace {

/// Text as roff reads it: a hyphen that can be copied, no escape, no request at a line's start.
std::string roff(std::string_view text) {
    std::string result;
    for (const char byte : text) {
        if (byte == '-') {
            result += "\\-";
        } else if (byte == '\\') {
            result += "\\e";
        } else {
            result += (byte == '.' || byte == '\'') && result.empty() ? std::string("\\&") + byte
                                                                      : std::string(1, byte);
        }
    }
    return result;
}

std::string section(std::string_view title) {
    return ".SH \"" + std::string(title) + "\"\n";
}

std::string entry(std::string_view words, std::string_view text) {
    return ".TP\n\\fB" + roff(words) + "\\fR\n" + roff(text) + "\n";
}

} // namespace

std::string manualPage(const Lookup& lookup, std::string_view version) {
    std::string page = ".TH VELMORA 1 \"\" \"Velmora " + roff(version) + "\" \"\"\n" +
                       section(lookup("NOM")) + "velmora \\- " +
                       roff(lookup("table de mixage en direct")) + "\n" + section("SYNOPSIS") +
                       ".B velmora\n[\\fB\\-\\-hidden\\fR|\\fB\\-\\-headless\\fR]\n.br\n" +
                       ".B velmora\n[\\fB\\-\\-start\\fR] \\fICOMMAND\\fR [\\fB\\-\\-json\\fR]\n" +
                       section("DESCRIPTION") +
                       roff(lookup("Une source, une sortie ou un preset se nomme par son numéro, "
                                   "son nom (le début suffit) ou son identifiant.")) +
                       "\n" + section(lookup("COMMANDES")) +
                       roff(lookup("Commandes, adressées au Velmora qui est ouvert :")) + "\n";
    for (const CommandInfo& command : commandTable()) {
        page += entry(usageOf(command), lookup(command.summary));
        if (!command.json.empty()) {
            page += ".br\nJSON: " + roff(command.json) + "\n";
        }
    }
    page += section("OPTIONS");
    for (const OptionInfo& option : optionTable()) {
        page += entry(option.name, lookup(option.summary));
    }
    page += section(lookup("EFFETS"));
    for (const EffectWord& effect : effectWords()) {
        page += entry(effect.name, effect.values);
    }
    return page + section(lookup("CODE DE RETOUR")) +
           roff(lookup("Une commande finit par 0 si c'est fait, 1 si c'est refusé, 2 si elle est "
                       "mal écrite.")) +
           "\n";
}

} // namespace velmora
