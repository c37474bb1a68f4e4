#include "engine/SourceCondition.h"

#include "engine/EngineFixture.h"

namespace velmora {
namespace {

using namespace std::chrono_literals;

class SourceConditionTest : public EngineFixture {
protected:
    SourceCondition conditionOf(const AudioSource& source) {
        return velmora::conditionOf(machine.platform(), engine, source);
    }
    std::optional<AudioSource> successorOf(const AudioSource& source) {
        return velmora::successorOf(machine.platform(), engine, source);
    }
    void quitPlayer() {
        machine.quitApplication(playerPid);
        machine.advance(100ms);
    }
    /// The player, started again.
    void startAgain(std::int32_t pid) { machine.startApplication(pid, "Player", "org.player"); }
};

TEST_F(SourceConditionTest, IsFineWhileTheSourceIsCapturedOrTheMixIsOff) {
    engine.replaceSources({player, wholeInput});
    EXPECT_EQ(conditionOf(player), SourceCondition::fine);

    engine.start();

    EXPECT_EQ(conditionOf(player), SourceCondition::fine);
    EXPECT_EQ(conditionOf(wholeInput), SourceCondition::fine);
}

TEST_F(SourceConditionTest, IsGoneWithTheApplication) {
    startWith({player, browser});

    quitPlayer();

    EXPECT_EQ(conditionOf(player), SourceCondition::gone);
    EXPECT_EQ(conditionOf(browser), SourceCondition::fine);
    engine.stop();
    EXPECT_EQ(conditionOf(player), SourceCondition::gone);
}

TEST_F(SourceConditionTest, IsGoneWhereTheNumberIsAnothers) {
    engine.add(player);
    quitPlayer();

    machine.startApplication(playerPid, "Stranger", "org.stranger");

    EXPECT_EQ(conditionOf(player), SourceCondition::gone);
}

TEST_F(SourceConditionTest, IsGoneAndBackWithTheDevice) {
    startWith({browser, wholeInput});
    machine.sound.removeDevice(interface4);
    machine.advance(100ms);
    EXPECT_EQ(conditionOf(wholeInput), SourceCondition::gone);

    machine.sound.addDevice({.uid = "interface", .name = "Interface", .inputs = {4}});
    machine.advance(100ms);

    EXPECT_EQ(conditionOf(wholeInput), SourceCondition::fine);
}

TEST_F(SourceConditionTest, IsAwaitedUntilTheApplicationPlays) {
    startAgain(6000);
    const AudioSource silent = AppSource{6000, "Player", "org.player"};
    startWith({browser, silent});
    EXPECT_EQ(conditionOf(silent), SourceCondition::awaited);

    machine.sound.play(6000, constant(0.25F));
    machine.advance(100ms);

    EXPECT_EQ(conditionOf(silent), SourceCondition::fine);
}

TEST_F(SourceConditionTest, IsFailedWhereTheCaptureIsRefused) {
    machine.sound.refuse(Operation::startInput);
    startWith({browser, wholeInput});

    EXPECT_EQ(conditionOf(wholeInput), SourceCondition::failed);
}

TEST_F(SourceConditionTest, IsFineWhileTheServiceIsAway) {
    startWith({player});
    machine.sound.loseService();
    machine.mainQueue.advance(0ms);

    EXPECT_EQ(conditionOf(player), SourceCondition::fine);
}

TEST_F(SourceConditionTest, ASuccessorIsAnotherInstanceThatIsNotInTheMix) {
    engine.add(player);
    EXPECT_EQ(successorOf(player), std::nullopt);
    quitPlayer();
    EXPECT_EQ(successorOf(player), std::nullopt);

    startAgain(6000);
    const AudioSource again = AppSource{6000, "Player", "org.player"};
    EXPECT_EQ(successorOf(player), again);

    engine.add(again);
    EXPECT_EQ(successorOf(player), std::nullopt);
}

TEST_F(SourceConditionTest, ASuccessorRatherHasPlayed) {
    engine.add(player);
    quitPlayer();
    startAgain(6000);
    startAgain(6001);
    machine.sound.play(6001, constant(0.25F));

    EXPECT_EQ(successorOf(player), AudioSource(AppSource{6001, "Player", "org.player"}));
}

TEST_F(SourceConditionTest, AnApplicationThatTheDesktopDoesNotKnowIsKnownByItsName) {
    const AudioSource tool = AppSource{7000, "tool", "pid.7000"};
    for (const std::int32_t pid : {7001, 7002}) {
        machine.startApplication(pid, pid == 7001 ? "other" : "tool", "", /*regular=*/false);
        machine.sound.play(pid, constant(0.25F));
    }

    EXPECT_EQ(successorOf(tool), AudioSource(AppSource{7002, "tool", "pid.7002"}));
}

TEST_F(SourceConditionTest, WhatDoesNotRunCanBeOpened) {
    machine.applications.install(
        {.bundleID = "org.player", .name = "Player", .location = "/apps/org.player.desktop"});
    EXPECT_EQ(closedApplication(machine.platform(), player), std::nullopt);

    quitPlayer();

    EXPECT_TRUE(closedApplication(machine.platform(), player).has_value());
    EXPECT_EQ(closedApplication(machine.platform(), browser), std::nullopt);
    EXPECT_EQ(closedApplication(machine.platform(), wholeInput), std::nullopt);
}

TEST_F(SourceConditionTest, ASuccessorTakesThePlaceAndAllThatIsKept) {
    engine.replaceSources({browser, player, wholeInput});
    engine.setGain(0.5F, player);
    engine.setFX({.lowcut = 2}, player);
    engine.setDirectMuted(true, player);
    machine.defaults.set(gainBeforeMuteKey(player.id()), 0.25);
    engine.start();
    quitPlayer();
    startAgain(6000);
    machine.sound.play(6000, constant(0.25F));
    const AudioSource again = AppSource{6000, "Player", "org.player"};

    engine.replace(player, again);

    EXPECT_EQ(engine.sources(), (std::vector<AudioSource>{browser, again, wholeInput}));
    EXPECT_EQ(engine.gain(again), 0.5F);
    EXPECT_EQ(engine.fx(again), FXParams{.lowcut = 2});
    EXPECT_TRUE(engine.isDirectMuted(again));
    EXPECT_EQ(machine.defaults.read<double>(gainBeforeMuteKey(again.id())), 0.25);
    EXPECT_TRUE(engine.isCaptured(again));
    machine.advance(100ms);
    EXPECT_EQ(AudioEngine(machine.platform()).gain(again), 0.5F) << "it is kept";
}

TEST_F(SourceConditionTest, NothingTakesThePlaceOfWhatIsNotInTheMix) {
    engine.replaceSources({browser});

    engine.replace(player, wholeInput);

    EXPECT_EQ(engine.sources(), std::vector<AudioSource>{browser});
}

} // namespace
} // namespace velmora
