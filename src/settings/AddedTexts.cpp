#include "settings/Texts.h"

#include <array>

namespace velmora {

namespace {

// {file}, {copy} and {status} stand for what `StoreProblemText` inserts.
constexpr auto texts = std::to_array<TextPair>({
    // The settings file
    {"Le fichier des réglages {file} était endommagé. Il a été mis de côté sous {copy} "
     "et un nouveau fichier a été commencé.",
     "The settings file {file} was damaged. It was set aside as {copy} "
     "and a new file was started."},
    {"Le fichier des réglages {file} vient d'une version plus récente de Velmora. "
     "Il reste intact ; rien ne sera enregistré cette fois.",
     "The settings file {file} comes from a newer version of Velmora. "
     "It is left untouched; nothing will be saved this time."},
    {"Impossible d'écrire les réglages dans {file} (err {status}). "
     "Les changements seront perdus à la fermeture de Velmora.",
     "Could not write the settings to {file} (err {status}). "
     "Changes will be lost when Velmora quits."},
    {"Plus de place pour les réglages dans {file} (err {status}). "
     "Les changements seront enregistrés quand de la place sera libérée.",
     "No space left for the settings in {file} (err {status}). "
     "Changes will be saved once space is freed."},

    // The audio service
    {"Service audio injoignable", "Audio service not reachable"},

    // Starting the program
    {"Velmora est déjà ouvert.", "Velmora is already open."},
    {"Cette vue a besoin d'un terminal.", "This view needs a terminal."},

    // Refusals by the audio service, shown by `errorText`
    {"Démarrage de la sortie refusé", "The output could not be started"},
    {"Démarrage de l'entrée refusé", "The input could not be started"},

    // The mixer in a terminal
    {"En marche", "Running"},
    {"Arrêté", "Stopped"},
    {"Casque", "Headphones"},
    {"Micro virtuel", "Virtual microphone"},
    {"espace marche/arrêt · ↑↓ choisir · ←→ gain · a ajouter · x retirer",
     "space start/stop · ↑↓ choose · ←→ gain · a add · x remove"},
    {"e effets · b sans effets · m muet direct · o monitoring · p presets · l langue · q quitter",
     "e effects · b bypass · m mute direct · o monitoring · p presets · l language · q quit"},
});

} // namespace

std::span<const TextPair> addedTexts() {
    return texts;
}

} // namespace velmora
