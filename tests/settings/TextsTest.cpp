#include "settings/Texts.h"

#include <gtest/gtest.h>

#include <array>
#include <set>
#include <string_view>

namespace velmora {
namespace {

// Kept apart from the table itself, so that changing a fixed text takes two deliberate edits.
constexpr std::array<std::array<std::string_view, 2>, 38> sheet{{
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
    {"Sources, balances et volumes seront rappelés d'un clic. Un nom déjà utilisé met à jour ce "
     "preset.",
     "Sources, balances and volumes will be recalled in one click. An existing name updates that "
     "preset."},
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
    {"Effets par source (EQ, comp., reverb)", "Per-source effects (EQ, comp, reverb)"},
}};

TEST(Texts, TheFixedTableHoldsExactlyThesePairsInThisOrder) {
    const auto texts = fixedTexts();

    ASSERT_EQ(texts.size(), sheet.size());
    for (std::size_t row = 0; row < sheet.size(); ++row) {
        EXPECT_EQ(texts[row].french, sheet[row][0]);
        EXPECT_EQ(texts[row].english, sheet[row][1]);
    }
}

TEST(Texts, NoFrenchTextIsInTwoLists) {
    std::set<std::string_view> known;

    for (const auto list : {fixedTexts(), addedTexts(), commandTexts()}) {
        for (const auto& pair : list) {
            EXPECT_TRUE(known.insert(pair.french).second) << pair.french;
        }
    }
}

TEST(Texts, EveryTextOfOursSaysSomethingInBothLanguages) {
    for (const auto list : {addedTexts(), commandTexts()}) {
        ASSERT_FALSE(list.empty());
        for (const auto& pair : list) {
            EXPECT_FALSE(pair.french.empty());
            EXPECT_FALSE(pair.english.empty()) << pair.french;
        }
    }
}

TEST(Texts, AllListsFormOneTable) {
    const TextTable table{fixedTexts(), addedTexts(), commandTexts()};

    EXPECT_EQ(table.english("Supprimer"), "Delete");
    EXPECT_EQ(table.english("Service audio injoignable"), "Audio service not reachable");
}

} // namespace
} // namespace velmora
