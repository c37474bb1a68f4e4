#include "engine/Problem.h"

#include "engine/VelmoraError.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

using Kind = Problem::Kind;

std::string english(std::string_view french) {
    if (french == "Démarrage de l'entrée refusé") {
        return "The input could not be started";
    }
    if (french == "Impossible de lancer") {
        return "Could not launch";
    }
    return french == "Casque" ? "Headphones" : std::string(french);
}

TEST(ProblemTest, IsOneSentenceWithItsNumbers) {
    EXPECT_EQ(frenchSentence({.kind = Kind::outputNotAssigned, .status = -10851}),
              "Impossible d'assigner la sortie (err -10851)");
    EXPECT_EQ(frenchSentence({.kind = Kind::pairMissing, .first = 3, .channels = 3}),
              "Sorties 3-4 indisponibles (3 canaux)");
    EXPECT_EQ(frenchSentence({.kind = Kind::pairNotRouted, .status = 7, .first = 5}),
              "Routage vers les sorties 5-6 refusé (err 7)");
    EXPECT_EQ(frenchSentence({.kind = Kind::channelMissing, .first = 5, .channels = 4}),
              "Canal 5 indisponible (4 canaux)");
    EXPECT_EQ(frenchSentence({.kind = Kind::tapRefused, .status = -1}),
              "Création du tap refusée (err -1) — vérifier la permission d'enregistrement audio "
              "système");
}

TEST(ProblemTest, CountsAPairWithoutASign) {
    EXPECT_EQ(frenchSentence({.kind = Kind::pairMissing,
                              .first = std::numeric_limits<std::int64_t>::max(),
                              .channels = 2}),
              "Sorties 9223372036854775807-9223372036854775808 indisponibles (2 canaux)");
}

TEST(ProblemTest, NamesTheSourceBeforeTheSentence) {
    EXPECT_EQ(frenchSentence({.kind = Kind::tapDeviceRefused, .subject = "Radio", .status = 3}),
              "Radio : Création du device agrégé refusée (err 3)");
    EXPECT_EQ(frenchSentence({.kind = Kind::noUnit, .subject = "Table"}),
              "Table : Unité audio indisponible");
}

TEST(ProblemTest, TranslatesItsSentenceButNeverItsSubject) {
    EXPECT_EQ(sentence({.kind = Kind::inputNotStarted, .subject = "Casque", .status = -5}, english),
              "Casque : The input could not be started (err -5)");
    EXPECT_EQ(sentence({.kind = Kind::notLaunched, .subject = "Casque"}, english),
              "Could not launch Casque");
    EXPECT_EQ(sentence({.kind = Kind::notFound, .subject = "Casque"}, english),
              "Introuvable : Casque");
}

TEST(ProblemTest, LeavesNamesThatLookLikeItsOwnTextAsTheyAre) {
    EXPECT_EQ(sentence({.kind = Kind::inputNotStarted,
                        .subject = "{status} : Démarrage de l'entrée refusé (err 1)",
                        .status = 2},
                       english),
              "{status} : Démarrage de l'entrée refusé (err 1) : The input could not be started "
              "(err 2)");
    EXPECT_EQ(frenchSentence({.kind = Kind::storeDamaged, .subject = "{copy}", .detail = "{file}"}),
              "Le fichier des réglages {copy} était endommagé. Il a été mis de côté sous {file} et "
              "ce qui pouvait encore en être lu est dans un nouveau fichier.");
}

TEST(ProblemTest, ListsWhatIsMissingInOneLine) {
    const std::vector<Problem> problems{{.kind = Kind::notFound, .subject = "Micro"},
                                        {.kind = Kind::notFound, .subject = "Clavier"},
                                        {.kind = Kind::notLaunched, .subject = "Radio"},
                                        {.kind = Kind::noSoundYet, .subject = "Jeu"},
                                        {.kind = Kind::notFound, .subject = "Table"}};

    EXPECT_EQ(sentences(problems, english),
              "Introuvable : Micro, Clavier\nCould not launch Radio\n"
              "Jeu : Cette app n'a pas encore de son — lance une lecture dedans, puis "
              "re-sélectionne-la.\nIntrouvable : Table");
    EXPECT_EQ(sentences({}, english), "");
}

TEST(ProblemTest, SpeaksInTheWordsOfAnErrorThatIsNoneOfOurs) {
    EXPECT_EQ(frenchSentence(problemOf(std::runtime_error("out of {status}"))), "out of {status}");
    EXPECT_EQ(problemOf(VelmoraError::noVirtualMic()).kind, Kind::noVirtualMic);
}

TEST(ProblemTest, TellsTheCaseOfTheErrorThatCarriesIt) {
    EXPECT_EQ(VelmoraError({.kind = Kind::noSoundYet}).which(), VelmoraError::Case::tap);
    EXPECT_EQ(VelmoraError({.kind = Kind::tapNotStarted}).which(), VelmoraError::Case::tap);
    EXPECT_EQ(VelmoraError({.kind = Kind::pairMissing}).which(), VelmoraError::Case::engine);
    EXPECT_EQ(VelmoraError({.kind = Kind::noVirtualMic}).which(), VelmoraError::Case::noVirtualMic);
}

} // namespace
} // namespace velmora
