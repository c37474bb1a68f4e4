// Every text that a user can see, against the tables.

#include "settings/SourceTexts.h"
#include "settings/Texts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <regex>
#include <set>
#include <string>
#include <string_view>

namespace velmora {
namespace {

/// What tells French words from others, and from names of things in the code.
bool looksFrench(const std::string& text) {
    static const std::regex signs("é|è|ê|à|â|ç|ù|û|î|ô|œ|É|À|«|[dln]'");
    return std::regex_search(text, signs);
}

// Deliberately in French for everybody.
const std::set<std::string, std::less<>> inFrenchOnly{
    "Choisir d'abord une source",
    "Micro virtuel introuvable — réinstalle Velmora (le driver a peut-être été supprimé).",
    "Unité audio indisponible",
    "Impossible d'assigner la sortie",
    "Sorties {pair} indisponibles ({channels} canaux)",
    "Routage vers les sorties {pair} refusé",
    "Impossible d'assigner l'entrée",
    "Canal {first} indisponible ({channels} canaux)",
    "Cette app n'a pas encore de son — lance une lecture dedans, puis re-sélectionne-la.",
    "Création du tap refusée",
    " (err {status}) — vérifier la permission d'enregistrement audio système",
    "Création du device agrégé refusée",
    "IOProc refusé",
    "Démarrage du device agrégé refusé",
    "Création du device DAW refusée",
    "Introuvable",
    "Français",
};
const std::set<std::string, std::less<>> sameInBoth{"Compression", "Gain"};

class TextsInSources : public testing::Test {
protected:
    static bool hasEnglish(const std::string& french) { return inEnglish(french) != french; }
    static bool isTheSame(std::string_view text) {
        return sameInBoth.contains(text) ||
               std::ranges::any_of(std::array{fixedTexts(), addedTexts(), commandTexts()},
                                   [&](const auto list) {
                                       return std::ranges::count(list, text, &TextPair::french) > 0;
                                   });
    }

    const SourceTexts texts = textsBelow(VELMORA_SOURCE_FOLDER);
};

TEST_F(TextsInSources, AreAllInBothLanguagesButTheFewThatAreMeantToBeFrench) {
    EXPECT_GT(texts.lookedUp.size(), 100U);
    for (const std::string& text : texts.all) {
        const bool isShown = looksFrench(text) || texts.lookedUp.contains(text);
        if (isShown && !text.empty() && !inFrenchOnly.contains(text)) {
            EXPECT_TRUE(hasEnglish(text) || isTheSame(text)) << '"' << text << '"';
        }
    }
}

TEST_F(TextsInSources, KeepNoExceptionThatIsNoneAnyMore) {
    for (const std::string& text : inFrenchOnly) {
        EXPECT_TRUE(texts.all.contains(text)) << text;
        EXPECT_FALSE(hasEnglish(text)) << text;
    }
}

TEST_F(TextsInSources, UseEveryTextOfTheTables) {
    for (const auto list : {addedTexts(), commandTexts()}) {
        for (const TextPair& pair : list) {
            EXPECT_TRUE(texts.all.contains(std::string(pair.french))) << pair.french;
        }
    }
}

} // namespace
} // namespace velmora
