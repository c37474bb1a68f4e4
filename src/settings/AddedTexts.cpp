#include "settings/Texts.h"

#include <array>

namespace velmora {

namespace {

// {file}, {copy} and {status} stand for what `sentence` puts in, {name} for what the bar of undoing
// does.
constexpr auto texts = std::to_array<TextPair>({
    // The settings file
    {"Le fichier des réglages {file} était endommagé. Il a été mis de côté sous {copy} "
     "et ce qui pouvait encore en être lu est dans un nouveau fichier.",
     "The settings file {file} was damaged. It was set aside as {copy} "
     "and what could still be read of it is in a new file."},
    {"Le fichier des réglages {file} vient d'une version plus récente de Velmora. "
     "Il reste intact ; rien ne sera enregistré cette fois.",
     "The settings file {file} comes from a newer version of Velmora. "
     "It is left untouched; nothing will be saved this time."},
    {"Les réglages de {file} ne sont pas ceux que Velmora a lus au démarrage. Ils sont "
     "restés intacts ; ce qui a été changé depuis est gardé à côté. Relance Velmora "
     "pour les retrouver.",
     "The settings in {file} are not those that Velmora read when it started. They were left "
     "untouched; what was changed since is kept beside them. Restart Velmora to get them back."},
    {"Impossible d'écrire les réglages dans {file} (err {status}). "
     "Les changements seront perdus à la fermeture de Velmora.",
     "Could not write the settings to {file} (err {status}). "
     "Changes will be lost when Velmora quits."},
    {"Plus de place pour les réglages dans {file} (err {status}). "
     "Les changements seront enregistrés quand de la place sera libérée.",
     "No space left for the settings in {file} (err {status}). "
     "Changes will be saved once space is freed."},
    {"Velmora est ouvert ailleurs avec les mêmes réglages ({file}). Ils sont lus ; rien "
     "ne sera enregistré tant que l'autre est ouvert.",
     "Velmora is open elsewhere with the same settings ({file}). They are read; nothing "
     "will be saved while the other one is open."},

    // The audio service
    {"Service audio injoignable", "Audio service not reachable"},

    // Starting the program
    {"Velmora est déjà ouvert.", "Velmora is already open."},

    // Refusals by the audio service
    {"Démarrage de la sortie refusé", "The output could not be started"},
    {"Démarrage de l'entrée refusé", "The input could not be started"},

    // The source menus and the choice of an application
    {"Appareil entier", "Whole device"},
    {"Rechercher", "Search"},
    {"Aucune application trouvée", "No application found"},

    // What can be undone
    {"« {name} » retiré", "“{name}” removed"},
    {"Preset « {name} » supprimé", "Preset “{name}” deleted"},
    {"Preset « {name} » remplacé", "Preset “{name}” replaced"},
    {"Défaire", "Undo"},

    // The control window, as a screen reader calls its parts
    {"Couper le son", "Mute"},
    {"Couper la sortie directe", "Mute direct output"},
    {"Effets", "Effects"},
    {"Retirer", "Remove"},
    {"Masquer", "Dismiss"},

    // The mix and its outputs
    {"En marche", "Running"},
    {"Arrêté", "Stopped"},
    {"Casque", "Headphones"},
    {"Micro virtuel", "Virtual microphone"},
});

} // namespace

std::span<const TextPair> addedTexts() {
    return texts;
}

} // namespace velmora
