#include "settings/Texts.h"

#include <array>

namespace velmora {

namespace {

constexpr auto textsOfWindows = std::to_array<TextPair>({
    {"Choisir une source", "Choose a source"},
    {"Ajouter une source", "Add a source"},
    {"Réglages…", "Settings…"},
    {"Quitter Velmora", "Quit Velmora"},
    {"Ouvrir Velmora", "Open Velmora"},
    {"Choisir une application…", "Choose an application…"},
    {"Applications ouvertes", "Open applications"},
    {"Entrées physiques", "Physical inputs"},
    {"Entrées virtuelles", "Virtual inputs"},
    {"Enregistrer le setup actuel…", "Save current setup…"},
    {"Enregistrer le setup actuel", "Save current setup"},
    {"Sources, balances et volumes seront rappelés d'un clic. "
     "Un nom déjà utilisé met à jour ce preset.",
     "Sources, balances and volumes will be recalled in one click. "
     "An existing name updates that preset."},
    {"Nom du preset", "Preset name"},
    {"Enregistrer", "Save"},
    {"Annuler", "Cancel"},
    {"Supprimer", "Delete"},
    {"Impossible de lancer", "Could not launch"},
    {"Entrées", "Inputs"},
    {"Entrée", "Input"},
    {"Sorties", "Outputs"},
    {"Sortie par défaut", "Default output"},
    {"Lancer à l'ouverture de session", "Launch at login"},
    {"Apparence", "Appearance"},
    {"Clair", "Light"},
    {"Sombre", "Dark"},
    {"Langue", "Language"},
    {"Réglages Velmora", "Velmora Settings"},
    {"Sur chaque tranche source", "On each source strip"},
    {"Choisir…", "Choose…"},
    {"Driver Velmora introuvable", "Velmora driver not found"},
    {"Général", "General"},
    {"Coupe-bas", "Low cut"},
    {"Tonalité", "Tone"},
    {"Rétablir", "Reset"},
    {"Réverbération", "Reverb"},
    {"Anti-plosives", "Plosive guard"},
    {"Réduction de bruit", "Noise reduction"},
    // Deliberate: the French abbreviation keeps its point, the English one has none.
    {"Effets par source (EQ, comp., reverb)", "Per-source effects (EQ, comp, reverb)"},
});

} // namespace

std::span<const TextPair> fixedTexts() {
    return textsOfWindows;
}

} // namespace velmora
