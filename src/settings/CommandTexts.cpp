#include "settings/Texts.h"

#include <array>

namespace velmora {

namespace {

// {name} and the like stand for what the commands put in.
constexpr auto textsOfCommands = std::to_array<TextPair>({
    // What the commands do
    {"montrer ce qui est réglé maintenant", "show what is set now"},
    {"mettre le mixage en marche", "start the mix"},
    {"arrêter le mixage", "stop the mix"},
    {"mettre le mixage en marche ou l'arrêter", "start the mix, or stop it"},
    {"montrer les sources du mixage", "show the sources of the mix"},
    {"montrer les sources qui peuvent être ajoutées", "show the sources that can be added"},
    {"ajouter une source que montre « available »", "add a source that “available” shows"},
    {"retirer une source", "remove a source"},
    {"régler le niveau d'une source, de -60 à 6 dB", "set a source's level, from -60 to 6 dB"},
    {"couper une source dans le mixage", "mute a source in the mix"},
    {"taire une application sur les enceintes", "silence an application on the speakers"},
    {"montrer ou régler les effets d'une source", "show or set a source's effects"},
    {"contourner tous les effets", "bypass all effects"},
    {"régler le micro virtuel ou le casque, de -60 à 6 dB",
     "set the virtual microphone or the headphones, from -60 to 6 dB"},
    {"fermer le micro tant qu'aucune touche n'est tenue",
     "close the microphone unless a key is held"},
    {"montrer ou choisir la sortie d'écoute", "show or choose the monitoring output"},
    {"montrer les presets", "show the presets"},
    {"rappeler un preset", "recall a preset"},
    {"rappeler le preset suivant", "recall the next preset"},
    {"garder le setup actuel", "save the current setup"},
    {"supprimer un preset", "delete a preset"},
    {"écrire tous les presets, ou un seul, dans un fichier",
     "write all presets, or one, to a file"},
    {"ajouter les presets d'un fichier", "add the presets of a file"},
    {"montrer les niveaux de cet instant", "show the levels of this moment"},
    {"écrire une ligne par changement, jusqu'à l'interruption",
     "print a line for every change, until interrupted"},
    {"montrer des noms, un par ligne, comme une commande les prend",
     "show names, a line each, as a command takes them"},
    {"fermer Velmora", "quit Velmora"},

    // The options
    {"avec une commande qui montre quelque chose : du JSON", "with a command that shows: as JSON"},
    {"avec une commande : ouvrir d'abord Velmora, caché",
     "with a command: open Velmora first, hidden"},
    {"ouvrir Velmora sans sa fenêtre", "open Velmora without its window"},
    {"mixer sans écran, aux ordres des commandes", "mix without a display, worked by the commands"},
    {"montrer cette aide", "show this help"},
    {"montrer la version", "show the version"},

    // The help around them
    {"Table de mixage en direct.", "Live audio mixer."},
    {"Commandes, adressées au Velmora qui est ouvert :", "Commands, to the Velmora that is open:"},
    {"Options :", "Options:"},
    {"Effets et leurs valeurs :", "Effects and their values:"},
    {"Une source, une sortie ou un preset se nomme par son numéro, son nom (le début suffit) ou "
     "son identifiant.",
     "A source, an output or a preset is named by its number, its name (the beginning is enough) "
     "or its id."},
    {"Une commande finit par 0 si c'est fait, 1 si c'est refusé, 2 si elle est mal écrite.",
     "A command ends with 0 when it is done, 1 when it is refused, 2 when it is misused."},

    // The manual's own words
    {"NOM", "NAME"},
    {"table de mixage en direct", "live audio mixer"},
    {"COMMANDES", "COMMANDS"},
    {"EFFETS", "EFFECTS"},
    {"CODE DE RETOUR", "EXIT STATUS"},

    // What they print
    {"muet sur les enceintes", "silent on the speakers"},
    {"Effets contournés", "Effects bypassed"},
    {"Effets entendus", "Effects heard"},
    {"fermé par « appuyer pour parler »", "closed by push to talk"},
    {"Écoute", "Monitoring"},
    {"joue maintenant", "playing now"},

    // Why they refuse
    {"« {name} » est introuvable. « velmora {command} » montre ce qu'il y a.",
     "There is no “{name}”. “velmora {command}” shows what there is."},
    {"« {name} » peut en désigner plusieurs. « velmora {command} » donne leurs numéros.",
     "“{name}” may be one of several. “velmora {command}” gives their numbers."},
    {"Un niveau va de {lowest} à {highest} dB ; -inf est le silence.",
     "A level goes from {lowest} to {highest} dB; -inf is silence."},
    {"« {name} » n'est pas une application : seule une application joue sur les enceintes.",
     "“{name}” is no application: only an application plays on the speakers."},
    {"Aucun effet ne s'appelle « {name} ». Il y a : {names}.",
     "No effect is called “{name}”. There are: {names}."},
    {"« {value} » n'est pas une valeur de {name}, qui prend : {values}.",
     "“{value}” is no value of {name}, which takes: {values}."},
    {"Il n'y a pas encore de preset. « velmora preset save NOM » garde le setup actuel.",
     "There is no preset yet. “velmora preset save NAME” saves the current setup."},
    {"« {name} » ne peut pas être écrit.", "“{name}” cannot be written."},
    {"« {name} » ne peut pas être lu.", "“{name}” cannot be read."},
    {"« {name} » vient d'une version plus récente de Velmora.",
     "“{name}” comes from a newer version of Velmora."},
    {"« {name} » n'est pas un fichier de presets Velmora, ou est endommagé.",
     "“{name}” is no file of Velmora presets, or is damaged."},
    {"Aucune touche ne pourrait ouvrir le micro : les raccourcis s'activent dans les réglages de "
     "Velmora, là où le bureau en a.",
     "No key could open the microphone: shortcuts are switched on in Velmora's settings, where the "
     "desktop has them."},
    {"Un preset a besoin d'un nom.", "A preset needs a name."},
    {"L'option « {name} » est inconnue. « velmora --help » les montre.",
     "“{name}” is no option. “velmora --help” shows them."},
    {"La commande « {name} » est inconnue. « velmora --help » les montre.",
     "“{name}” is no command. “velmora --help” shows them."},
    {"Usage : velmora {name}", "Usage: velmora {name}"},
    {"« velmora {name} » ne montre rien en JSON.", "“velmora {name}” shows nothing as JSON."},
    {"« {name} » devrait s'écrire NOM=VALEUR.", "“{name}” should read NAME=VALUE."},
    {"« {name} » n'est ni « microphone » ni « headphones ».",
     "“{name}” is neither “microphone” nor “headphones”."},
    {"« {name} » n'est ni « on » ni « off » ni « toggle ».",
     "“{name}” is neither “on” nor “off” nor “toggle”."},
    {"« {name} » n'est ni « sources » ni « available » ni « devices » ni « presets ».",
     "“{name}” is neither “sources” nor “available” nor “devices” nor “presets”."},
    {"« {name} » n'est pas un nombre de décibels.", "“{name}” is no number of decibels."},

    // Where there is nobody to ask, or no display
    {"Velmora n'est pas ouvert. Avec --start, la commande l'ouvre d'abord, caché.",
     "Velmora is not open. With --start, the command opens it first, hidden."},
    {"Velmora ne répond pas.", "Velmora does not answer."},
    {"Velmora s'est fermé.", "Velmora has quit."},
    {"Le bus de la session est injoignable : aucun Velmora ne peut être commandé.",
     "The session's bus cannot be reached: no Velmora can be commanded."},
    {"Impossible d'ouvrir Velmora.", "Velmora could not be opened."},
    {"Aucun écran n'est joignable. « velmora --headless » mixe sans fenêtres.",
     "No display can be reached. “velmora --headless” mixes without windows."},
});

} // namespace

std::span<const TextPair> commandTexts() {
    return textsOfCommands;
}

} // namespace velmora
