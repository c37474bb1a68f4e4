#include "presets/RecallFixture.h"

#include <gmock/gmock.h>

#include <ranges>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// A preset of four applications, of which some are closed.
class PresetRecallLaunchTest : public RecallFixture {
protected:
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const auto& source : engine_.sources()) {
            names.push_back(source.name());
        }
        return names;
    }
};

TEST_F(PresetRecallLaunchTest, AClosedApplicationJoinsAtItsPlaceAfterOneAndAHalfSeconds) {
    machine_.startApplication(10, "A", "a");
    machine_.startApplication(12, "C", "c");
    install("B", "b", 11);

    apply({app("A", "a"), app("B", "b"), app("C", "c")}, chosen);
    EXPECT_THAT(names(), ElementsAre("A", "C"));
    EXPECT_THAT(machine_.applications.launched(), ElementsAre("/applications/b"));
    EXPECT_EQ(engine_.lastError(), std::nullopt);

    machine_.advance(1499ms);
    EXPECT_THAT(names(), ElementsAre("A", "C"));

    machine_.advance(1ms);
    EXPECT_THAT(names(), ElementsAre("A", "B", "C"));
}

TEST_F(PresetRecallLaunchTest, SaysWhichApplicationsAreComingUp) {
    install("A", "a", 10);
    install("B", "b", 11);
    int told = 0;
    const auto connection = recall_->openingChanged().connect([&] { ++told; });

    apply({app("A", "a"), app("B", "b")}, chosen);
    EXPECT_THAT(recall_->opening(), ElementsAre("A", "B"));
    EXPECT_GT(told, 0);

    machine_.advance(1500ms);
    EXPECT_THAT(recall_->opening(), IsEmpty());
}

TEST_F(PresetRecallLaunchTest, AnotherPresetAwaitsNothingOfTheOneBefore) {
    install("A", "a", 10);
    apply({app("A", "a")}, chosen);

    apply({}, chosen);

    EXPECT_THAT(recall_->opening(), IsEmpty());
}

TEST_F(PresetRecallLaunchTest, TheWaitBeginsWhenTheDesktopReportsBack) {
    install("B", "b", 11, 4s);

    apply({app("B", "b")}, chosen);
    machine_.advance(5499ms);
    EXPECT_THAT(names(), IsEmpty());

    machine_.advance(1ms);
    EXPECT_THAT(names(), ElementsAre("B"));
}

TEST_F(PresetRecallLaunchTest, ALaunchedApplicationGetsItsGainAndEffects) {
    install("B", "b", 11);
    auto source = app("B", "b", 0.5F);
    source.fx = FXParams{.comp = 2};

    apply({source}, chosen);
    machine_.advance(1500ms);

    const AudioSource joined = AppSource{11, "B", "b"};
    EXPECT_THAT(engine_.sources(), ElementsAre(joined));
    EXPECT_EQ(engine_.gain(joined), 0.5F);
    EXPECT_EQ(engine_.fx(joined), (FXParams{.comp = 2}));
    EXPECT_FALSE(engine_.isRunning());
}

TEST_F(PresetRecallLaunchTest, WithoutLaunchingAClosedApplicationIsMissing) {
    install("B", "b", 11);

    apply({app("B", "b")}, {.launchClosedApps = false, .quiet = false});
    machine_.advance(2s);

    EXPECT_THAT(names(), IsEmpty());
    EXPECT_THAT(machine_.applications.launched(), IsEmpty());
    EXPECT_EQ(engine_.lastError(), "Introuvable : B");
}

TEST_F(PresetRecallLaunchTest, AnApplicationThatTheDesktopDoesNotKnowIsMissing) {
    apply({app("B", "b")}, chosen);

    EXPECT_EQ(engine_.lastError(), "Introuvable : B");
    EXPECT_THAT(machine_.applications.launched(), IsEmpty());
}

TEST_F(PresetRecallLaunchTest, AnApplicationAddedByHandMeanwhileIsNotAddedAgain) {
    install("B", "b", 11);
    apply({app("B", "b", 0.5F)}, chosen);
    machine_.advance(1s);
    const AudioSource byHand = AppSource{11, "B", "b"};
    engine_.add(byHand);
    engine_.setGain(0.75F, byHand);

    machine_.advance(1s);

    EXPECT_THAT(engine_.sources(), ElementsAre(byHand));
    EXPECT_EQ(engine_.gain(byHand), 0.75F);
}

TEST_F(PresetRecallLaunchTest, OneAddedByHandUnderAnotherNameIsAnotherSource) {
    install("B", "b", 11);
    apply({app("B", "b")}, chosen);
    engine_.add(AppSource{11, "B (beta)", "b"});

    machine_.advance(2s);

    EXPECT_THAT(names(), ElementsAre("B", "B (beta)"));
}

TEST_F(PresetRecallLaunchTest, AnApplicationThatIsHeldTwiceIsAddedOnceWhenItRunsOnce) {
    install("B", "b", 11);

    apply({app("Left", "b"), app("Right", "b")}, chosen);
    machine_.advance(3s);

    EXPECT_THAT(names(), ElementsAre("Left"));
    EXPECT_EQ(engine_.lastError(), "Introuvable : Right");
}

TEST_F(PresetRecallLaunchTest, AnApplicationThatIsHeldTwiceIsTwoInstancesOnceBothAreUp) {
    install("B", "b", 11); // both launches report the instance that came up last
    machine_.mainQueue.post([&] { machine_.startApplication(10, "B", "b"); });

    apply({app("Left", "b"), app("Right", "b")}, chosen);
    machine_.advance(3s);

    EXPECT_THAT(names(), ElementsAre("Left", "Right"));
    EXPECT_EQ(engine_.sources()[0].app()->pid, 11);
    EXPECT_EQ(engine_.sources()[1].app()->pid, 10);
    EXPECT_EQ(engine_.lastError(), std::nullopt);
}

TEST_F(PresetRecallLaunchTest, TwoLaunchesMayCompleteInReverseOrder) {
    machine_.startApplication(11, "B", "b");
    install("A", "a", 10, 3s);
    install("C", "c", 12, 1s);

    apply({app("A", "a"), app("B", "b"), app("C", "c")}, chosen);
    EXPECT_THAT(names(), ElementsAre("B"));

    machine_.advance(2500ms);
    EXPECT_THAT(names(), ElementsAre("B", "C"));

    machine_.advance(2s);
    EXPECT_THAT(names(), ElementsAre("A", "B", "C"));
}

TEST_F(PresetRecallLaunchTest, APlaceBeyondTheListIsItsEnd) {
    install("C", "c", 12);
    install("D", "d", 13, 1s);

    apply({device("A", "gone"), device("B", "gone"), app("C", "c"), app("D", "d")}, chosen);
    machine_.advance(1500ms);
    EXPECT_THAT(names(), ElementsAre("C"));

    machine_.advance(1s);
    EXPECT_THAT(names(), ElementsAre("C", "D"));
}

TEST_F(PresetRecallLaunchTest, AFailedLaunchIsToldAfterTheWait) {
    installWithPlan("B", "b", {.result = std::nullopt});

    apply({app("Lecteur", "b")}, chosen);
    machine_.advance(1499ms);
    EXPECT_EQ(engine_.lastError(), std::nullopt);
    machine_.advance(1ms);
    EXPECT_EQ(engine_.lastError(), "Impossible de lancer Lecteur");

    machine_.startApplication(11, "B", "b");
    engine_.add(AppSource{11, "Lecteur", "b"}); // the user opened it himself
    EXPECT_EQ(engine_.lastError(), std::nullopt);
}

TEST_F(PresetRecallLaunchTest, AFailedLaunchStaysToldWhileAnotherApplicationJoins) {
    installWithPlan("B", "b", {.result = std::nullopt});
    install("C", "c", 12, 2s);

    apply({app("B", "b"), app("C", "c"), device("Micro", "gone")}, chosen);
    machine_.advance(4s);

    EXPECT_THAT(names(), ElementsAre("C"));
    EXPECT_EQ(engine_.lastError(), "Introuvable : Micro\nImpossible de lancer B");
    apply({app("C", "c")}, chosen);
    EXPECT_EQ(engine_.lastError(), std::nullopt) << "the next recall";
}

TEST_F(PresetRecallLaunchTest, AStarterThatHandedOverIsFoundUnderItsNewProcess) {
    install("B", "b", 11);
    apply({app("B", "b")}, chosen);
    machine_.advance(1s);
    machine_.quitApplication(11);
    machine_.startApplication(35, "B", "b");

    machine_.advance(500ms);

    EXPECT_THAT(engine_.sources(), ElementsAre(AudioSource(AppSource{35, "B", "b"})));
}

TEST_F(PresetRecallLaunchTest, AnApplicationThatQuitDuringTheWaitCouldNotBeLaunched) {
    install("B", "b", 11);
    apply({app("B", "b")}, chosen);
    machine_.advance(1s);
    machine_.quitApplication(11);

    machine_.advance(500ms);

    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(engine_.lastError(), "Impossible de lancer B");
}

TEST_F(PresetRecallLaunchTest, ALaunchedApplicationKeepsTheIdentifierThatFindsItAgain) {
    installWithPlan(
        "B", "b", {.result = RunningApplication{.pid = 11, .name = "B", .bundleID = ""}});

    apply({app("B", "b")}, chosen);
    machine_.advance(1500ms);

    EXPECT_THAT(engine_.sources(), ElementsAre(AudioSource(AppSource{11, "B", "b"})));
}

TEST_F(PresetRecallLaunchTest, ADestroyedRecallForgetsWhatIsComingUp) {
    install("B", "b", 11, 1s);
    install("C", "c", 12);
    apply({app("B", "b"), app("C", "c")}, chosen);
    machine_.advance(500ms); // C is in its wait, B not even up

    destroyRecall();
    machine_.advance(3s);

    EXPECT_THAT(names(), IsEmpty());
    EXPECT_EQ(engine_.lastError(), std::nullopt);
}

TEST_F(PresetRecallLaunchTest, ALaterRecallDropsAnApplicationInItsWait) {
    install("B", "b", 11);
    apply({app("B", "b")}, chosen);
    machine_.advance(1s); // it is up, and settles

    apply({}, chosen);
    machine_.advance(10s);

    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(PresetRecallLaunchTest, ALaterRecallDropsWhatAnEarlierOneStillWaitsFor) {
    machine_.startApplication(10, "A", "a");
    install("B", "b", 11);
    apply({app("B", "b")}, chosen);

    apply({app("A", "a")}, chosen);
    machine_.advance(1500ms);

    EXPECT_THAT(names(), ElementsAre("A"));
}

} // namespace
} // namespace velmora
