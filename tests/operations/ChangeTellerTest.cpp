#include "operations/ChangeTeller.h"

#include "operations/MixerText.h"
#include "operations/OperationsFixture.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class ChangeTellerTest : public OperationsFixture {
protected:
    ChangeTellerTest() {
        machine.advance(1s); // what the settings do when the program starts
    }
    std::vector<std::string> told() {
        machine.advance(1s);
        return std::exchange(lines, {});
    }

    std::vector<std::string> lines;
    int times = 0;
    ChangeTeller teller{parts, [this](const MixerState& before, const MixerState& after) {
                            ++times;
                            const auto more = changeLines(before, after, settings);
                            lines.insert(lines.end(), more.begin(), more.end());
                        }};
};

TEST_F(ChangeTellerTest, TellsALineForEverythingThatChanges) {
    command("add Player");
    EXPECT_THAT(told(), ElementsAre("+ Player  0.0 dB"));
    command("gain Player -6");
    command("effects Player lowcut=75");
    command("silence Player on");
    EXPECT_THAT(told(), ElementsAre("Player  -6.0 dB, silent on the speakers, lowcut=75"));
    command("on");
    command("bypass on");
    command("volume microphone -3");
    command("volume headphones mute");
    EXPECT_THAT(
        told(),
        ElementsAre(
            "Running", "Effects bypassed", "Virtual microphone  -3.0 dB", "Headphones  -inf dB"));
    command("monitor interface#1");
    command("preset save Evening");
    EXPECT_THAT(told(), ElementsAre("Monitoring  interface#1", "Preset  Evening"));
    command("remove Player");
    EXPECT_THAT(told(), ElementsAre("Stopped", "- Player"));
}

TEST_F(ChangeTellerTest, TellsProblemsAsTheyCome) {
    command("on");

    EXPECT_THAT(told(), ElementsAre("! " + settings.t("Choisir d'abord une source")));
}

TEST_F(ChangeTellerTest, TellsNothingWhileOnlyLevelsMove) {
    engine.replaceSources({player});
    command("on");
    told();
    times = 0;

    machine.sound.play(playerPid, constant(0.5F));
    machine.advance(5s);

    EXPECT_EQ(times, 0);
}

TEST_F(ChangeTellerTest, GathersAFadersMovement) {
    engine.replaceSources({player});
    told();
    times = 0;

    for (int step = 0; step < 1000; ++step) {
        engine.setGain(static_cast<float>(step) / 1000.0F, player);
    }
    EXPECT_THAT(told(), ElementsAre("Player  0.0 dB"));
    EXPECT_EQ(times, 1);
}

TEST_F(ChangeTellerTest, TellsNothingOfWhatWasTakenBackMeanwhile) {
    command("bypass on");
    command("bypass off");

    EXPECT_THAT(told(), IsEmpty());
    EXPECT_EQ(times, 0);
}

TEST_F(ChangeTellerTest, AnotherLanguageIsAChangeOfSentences) {
    engine.tell(ProblemOrigin::launch, {{.kind = Problem::Kind::notLaunched, .subject = "Radio"}});
    EXPECT_THAT(told(), ElementsAre("! Could not launch Radio"));

    settings.setLanguage("fr");

    EXPECT_THAT(told(), ElementsAre("! Impossible de lancer Radio"));
}

} // namespace
} // namespace velmora
