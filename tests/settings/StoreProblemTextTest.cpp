#include "settings/StoreProblemText.h"

#include "platform/DefaultsStore.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "settings/AppSettings.h"

#include <gtest/gtest.h>

#include <array>
#include <set>

namespace velmora {
namespace {

constexpr std::array kinds{StoreProblem::Kind::damaged,
                           StoreProblem::Kind::newer,
                           StoreProblem::Kind::unwritable,
                           StoreProblem::Kind::full};

class StoreProblemTextTest : public testing::Test {
protected:
    SimulatedPlatform platform_;
    AppSettings settings_{platform_.platform()};
};

TEST_F(StoreProblemTextTest, SaysWhereADamagedFileWent) {
    const StoreProblem problem{.kind = StoreProblem::Kind::damaged,
                               .file = "/home/ada/velmora.db",
                               .setAside = "/home/ada/velmora.damaged-2025-03-01.db"};

    EXPECT_EQ(storeProblemText(problem, settings_),
              "Le fichier des réglages /home/ada/velmora.db était endommagé. Il a été mis de côté "
              "sous /home/ada/velmora.damaged-2025-03-01.db et un nouveau fichier a été commencé.");
}

TEST_F(StoreProblemTextTest, SaysWhyNothingCanBeWritten) {
    settings_.setLanguage("en");
    const StoreProblem problem{
        .kind = StoreProblem::Kind::unwritable, .file = "/ro/velmora.db", .status = -30};

    EXPECT_EQ(storeProblemText(problem, settings_),
              "Could not write the settings to /ro/velmora.db (err -30). "
              "Changes will be lost when Velmora quits.");
}

TEST_F(StoreProblemTextTest, TellsTheFourProblemsApartInBothLanguages) {
    std::set<std::string> sentences;
    for (const auto* const language : {"fr", "en"}) {
        settings_.setLanguage(language);
        for (const auto kind : kinds) {
            sentences.insert(storeProblemText({.kind = kind, .file = "/f"}, settings_));
        }
    }

    EXPECT_EQ(sentences.size(), 8U);
    for (const auto& sentence : sentences) {
        EXPECT_NE(sentence.find("/f"), std::string::npos) << sentence;
        EXPECT_EQ(sentence.find('{'), std::string::npos) << sentence;
    }
}

TEST_F(StoreProblemTextTest, APathThatLooksLikeAPlaceholderIsShownAsItIs) {
    settings_.setLanguage("en");
    const StoreProblem problem{
        .kind = StoreProblem::Kind::damaged, .file = "/{copy}/a", .setAside = "/{file}/b"};

    EXPECT_EQ(storeProblemText(problem, settings_),
              "The settings file /{copy}/a was damaged. It was set aside as /{file}/b "
              "and a new file was started.");
}

} // namespace
} // namespace velmora
