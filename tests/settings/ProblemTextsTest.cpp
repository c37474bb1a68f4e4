// Sentences about problems, looked up in the program's own texts.

#include "engine/Problem.h"

#include "platform/DefaultsStore.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "settings/AppSettings.h"

#include <gtest/gtest.h>

#include <array>
#include <set>

namespace velmora {
namespace {

class ProblemTexts : public testing::Test {
protected:
    [[nodiscard]] std::string text(const Problem& problem) const {
        return sentence(problem, [this](std::string_view french) { return settings.t(french); });
    }

    SimulatedPlatform machine;
    AppSettings settings{machine.platform()};
};

TEST_F(ProblemTexts, KeepStatusAndPathInEnglish) {
    settings.setLanguage("en");

    EXPECT_EQ(
        text(problemOf(
            {.kind = StoreProblem::Kind::unwritable, .file = "/ro/velmora.db", .status = -30})),
        "Could not write the settings to /ro/velmora.db (err -30). "
        "Changes will be lost when Velmora quits.");
    EXPECT_EQ(text({.kind = Problem::Kind::outputNotStarted, .status = -5}),
              "The output could not be started (err -5)");
    EXPECT_EQ(text({.kind = Problem::Kind::noDriver}), "Velmora driver not found");
}

TEST_F(ProblemTexts, StayFrenchWhereThereIsNoOtherSentence) {
    settings.setLanguage("en");

    EXPECT_EQ(text({.kind = Problem::Kind::noSource}), "Choisir d'abord une source");
    EXPECT_EQ(text({.kind = Problem::Kind::notFound, .subject = "Micro"}), "Introuvable : Micro");
}

TEST_F(ProblemTexts, TellTheTroublesOfAStoreApartInBothLanguages) {
    constexpr std::array kinds{StoreProblem::Kind::damaged,
                               StoreProblem::Kind::newer,
                               StoreProblem::Kind::keptApart,
                               StoreProblem::Kind::gone,
                               StoreProblem::Kind::copyTaken,
                               StoreProblem::Kind::copyOffered,
                               StoreProblem::Kind::unwritable,
                               StoreProblem::Kind::full,
                               StoreProblem::Kind::inUse};
    std::set<std::string> sentences;
    for (const auto* const language : {"fr", "en"}) {
        settings.setLanguage(language);
        for (const auto kind : kinds) {
            sentences.insert(text(problemOf({.kind = kind, .file = "/f"})));
        }
    }

    EXPECT_EQ(sentences.size(), 2 * kinds.size());
    for (const auto& sentence : sentences) {
        EXPECT_NE(sentence.find("/f"), std::string::npos) << sentence;
        EXPECT_EQ(sentence.find('{'), std::string::npos) << sentence;
    }
}

} // namespace
} // namespace velmora
