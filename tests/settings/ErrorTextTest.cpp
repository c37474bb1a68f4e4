#include "settings/ErrorText.h"

#include "platform/simulated/SimulatedPlatform.h"
#include "settings/AppSettings.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

class ErrorTextTest : public testing::Test {
protected:
    ErrorTextTest() { settings.setLanguage("en"); }

    SimulatedPlatform machine;
    AppSettings settings{machine.platform()};
};

TEST_F(ErrorTextTest, TranslatesTheSentenceAndKeepsNameAndStatus) {
    EXPECT_EQ(errorText("Démarrage de la sortie refusé (err -5)", settings),
              "The output could not be started (err -5)");
    EXPECT_EQ(errorText("Studio : live : Démarrage de l'entrée refusé (err -5)", settings),
              "Studio : live : The input could not be started (err -5)");
}

TEST_F(ErrorTextTest, LeavesSentencesWithoutATranslation) {
    const std::string text = "Introuvable : Micro\nChoisir d'abord une source";

    EXPECT_EQ(errorText(text, settings), text);
}

TEST_F(ErrorTextTest, TranslatesLineByLine) {
    EXPECT_EQ(errorText("A : IOProc refusé (err 3)\nB : Démarrage de l'entrée refusé (err 4)\n",
                        settings),
              "A : IOProc refusé (err 3)\nB : The input could not be started (err 4)\n");
}

TEST_F(ErrorTextTest, IsTheErrorItselfInFrench) {
    settings.setLanguage("fr");

    EXPECT_EQ(errorText("Démarrage de la sortie refusé (err -5)", settings),
              "Démarrage de la sortie refusé (err -5)");
    EXPECT_EQ(errorText("", settings), "");
}

} // namespace
} // namespace velmora
