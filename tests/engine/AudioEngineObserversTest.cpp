#include "engine/EngineFixture.h"

namespace velmora {
namespace {

class AudioEngineObservers : public EngineFixture {
protected:
    /// How many notifications `action` causes.
    template <typename Action>
    int notifications(Action action) {
        int told = 0;
        const auto connection = engine.changed().connect([&] { ++told; });
        action();
        return told;
    }

    const Problem missing{.kind = Problem::Kind::notFound, .subject = "Radio"};
};

TEST_F(AudioEngineObservers, TellsEveryChangeOnce) {
    EXPECT_EQ(notifications([&] { engine.setGain(0.5F, player); }), 1);
    EXPECT_EQ(notifications([&] { engine.setDirectMuted(true, player); }), 1);
    EXPECT_EQ(notifications([&] { engine.setFX(manualGain(1.0F), player); }), 1);
    EXPECT_EQ(notifications([&] { engine.setFxBypassed(true); }), 1);
    EXPECT_EQ(notifications([&] { engine.setStreamVolume(0.5F); }), 1);
    EXPECT_EQ(notifications([&] { engine.setHeadphoneVolume(0.5F); }), 1);
    EXPECT_EQ(notifications([&] { engine.setMonitoringSelection("headset"); }), 1);
    EXPECT_EQ(notifications([&] { engine.tell(ProblemOrigin::recall, {missing}); }), 1);
    EXPECT_EQ(notifications([&] { engine.tellMore(ProblemOrigin::launch, missing); }), 1);
    EXPECT_EQ(notifications([&] { engine.dismissProblems(); }), 1);
    EXPECT_EQ(notifications([&] { engine.add(player); }), 1);
    EXPECT_EQ(notifications([&] { engine.insertSource(browser, 0); }), 1);
    EXPECT_EQ(notifications([&] { engine.setPrimary(wholeInput); }), 1);
    EXPECT_EQ(notifications([&] { engine.start(); }), 1);
    EXPECT_EQ(notifications([&] { engine.remove(player); }), 1);
    EXPECT_EQ(notifications([&] { engine.replaceSources({player}); }), 1);
    EXPECT_EQ(notifications([&] { engine.stop(); }), 1);
}

TEST_F(AudioEngineObservers, TellsLevelsApartFromEverythingElse) {
    int besidesLevels = 0;
    const auto connection = engine.changedBesidesLevels().connect([&] { ++besidesLevels; });
    startWith({player});
    EXPECT_EQ(besidesLevels, 2);
    machine.advance(std::chrono::milliseconds(500));
    besidesLevels = 0;

    machine.sound.play(playerPid, constant(0.5F));
    EXPECT_GT(notifications([&] { machine.advance(std::chrono::seconds(1)); }), 0);
    EXPECT_EQ(besidesLevels, 0);
    EXPECT_EQ(notifications([&] { engine.setStreamVolume(0.5F); }), 1);
    EXPECT_EQ(besidesLevels, 1);
}

TEST_F(AudioEngineObservers, TellsTheFirstValueThatIsKeptAlsoWhenItIsTheDefault) {
    EXPECT_EQ(notifications([&] { engine.setGain(1.0F, player); }), 1);
    EXPECT_EQ(notifications([&] { engine.setDirectMuted(false, player); }), 1);
    EXPECT_EQ(notifications([&] {
                  engine.setGain(1.0F, player);
                  engine.setDirectMuted(false, player);
              }),
              0);
}

TEST_F(AudioEngineObservers, TellsTheSameProblemOnce) {
    engine.tellMore(ProblemOrigin::launch, missing);

    EXPECT_EQ(notifications([&] { engine.tellMore(ProblemOrigin::launch, missing); }), 0);
    EXPECT_EQ(engine.problems().size(), 1U);
}

TEST_F(AudioEngineObservers, TellsThatALaunchProblemWasDismissed) {
    engine.tellMore(ProblemOrigin::launch, missing);
    EXPECT_TRUE(engine.canDismissProblems());

    EXPECT_EQ(notifications([&] { engine.dismissProblems(); }), 1);
}

TEST_F(AudioEngineObservers, TellsThatARebuildFailedAlthoughTheListStayed) {
    engine.add(player);
    engine.start();
    ASSERT_TRUE(engine.isRunning());
    machine.sound.removeDevice(mic);

    EXPECT_EQ(notifications([&] { engine.remove(browser); }), 1);
    EXPECT_FALSE(engine.isRunning());
}

TEST_F(AudioEngineObservers, TellsNothingWhenNothingChanged) {
    engine.setGain(0.5F, player);
    engine.setFX(manualGain(1.0F), player);
    engine.add(player);

    EXPECT_EQ(notifications([&] {
                  engine.setGain(0.5F, player);
                  engine.setFX(manualGain(1.0F), player);
                  engine.setFxBypassed(false);
                  engine.setStreamVolume(1.0F);
                  engine.setHeadphoneVolume(1.0F);
                  engine.setMonitoringSelection(std::nullopt);
                  engine.tell(ProblemOrigin::recall, {});
                  engine.dismissProblems();
                  engine.add(player);
                  engine.remove(browser);
                  engine.setPrimary(player);
                  engine.replaceSources({player});
                  engine.stop();
              }),
              0);
}

TEST_F(AudioEngineObservers, LetsAnObserverStartAndStop) {
    engine.replaceSources({player});
    const auto connection = engine.changed().connect([&] { engine.start(); });

    engine.setGain(0.5F, player);

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.125F);
    engine.stop(); // the observer starts again
    EXPECT_TRUE(engine.isRunning());
}

TEST_F(AudioEngineObservers, LetsAnObserverRepeatAStartThatFails) {
    machine.sound.removeDevice(mic);
    engine.replaceSources({player});
    const auto connection = engine.changed().connect([&] { engine.start(); });

    engine.start();

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

} // namespace
} // namespace velmora
