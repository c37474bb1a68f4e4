#include "engine/EngineFixture.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::Key;
using testing::Not;
using testing::SizeIs;

class KeptApplicationsTest : public EngineFixture {
protected:
    void keepSomethingOf(const AudioSource& source) {
        engine.setGain(0.5F, source);
        engine.setDirectMuted(true, source);
        engine.setFX(manualGain(-6), source);
    }
    static void expectNothingKept(const AudioEngine& of, const AudioSource& source) {
        EXPECT_EQ(of.storedGain(source), std::nullopt);
        EXPECT_EQ(of.storedFX(source), std::nullopt);
        EXPECT_FALSE(of.isDirectMuted(source));
    }
    static void expectAllKept(const AudioEngine& of, const AudioSource& source) {
        EXPECT_EQ(of.storedGain(source), 0.5F);
        EXPECT_EQ(of.storedFX(source), manualGain(-6));
        EXPECT_TRUE(of.isDirectMuted(source));
    }
    /// Another program that was given the number of the player.
    void startStranger() {
        machine.quitApplication(playerPid);
        machine.startApplication(playerPid, "Player", "org.player");
        machine.sound.play(playerPid, constant(0.5F));
    }
    std::unique_ptr<AudioEngine> relaunched() {
        auto next = std::make_unique<AudioEngine>(machine.platform());
        machine.advance({});
        return next;
    }
    template <typename Map>
    Map stored(const std::string& key) {
        return machine.defaults.read<Map>(key).value_or(Map{});
    }
};

TEST_F(KeptApplicationsTest, AreForgottenWhenTheyHaveEnded) {
    keepSomethingOf(player);
    keepSomethingOf(browser);
    machine.defaults.set(gainBeforeMuteKey(player.id()), 0.75);

    machine.quitApplication(playerPid);
    machine.advance({});

    expectNothingKept(engine, player);
    expectAllKept(engine, browser);
    EXPECT_THAT(stored<NumberMap>("sourceGains"), ElementsAre(Key(browser.id())));
    EXPECT_THAT(stored<BooleanMap>("sourceMuteDirect"), ElementsAre(Key(browser.id())));
    EXPECT_THAT(stored<NumberMap>("sourceBirths"), ElementsAre(Key(browser.id())));
    EXPECT_EQ(machine.defaults.get(gainBeforeMuteKey(player.id())), std::nullopt);
}

TEST_F(KeptApplicationsTest, AreForgottenAtTheNextLaunch) {
    keepSomethingOf(player);
    keepSomethingOf(wholeInput);
    machine.applications.quit(playerPid); // nobody was there to see it

    const auto next = relaunched();

    expectNothingKept(*next, player);
    expectAllKept(*next, wholeInput);
}

TEST_F(KeptApplicationsTest, AreKeptOverALaunchWhileTheyRun) {
    keepSomethingOf(player);

    expectAllKept(*relaunched(), player);
}

TEST_F(KeptApplicationsTest, LeaveNothingToAStrangerWithTheirNumber) {
    keepSomethingOf(player);
    machine.applications.quit(playerPid);
    machine.applications.run(
        {.pid = playerPid, .name = "Player", .bundleID = "org.player", .regular = true});

    AudioEngine next{machine.platform()};
    next.add(player);

    expectNothingKept(next, player);
}

TEST_F(KeptApplicationsTest, OfAnEarlierVersionAreKeptWhileTheSameApplicationHasTheNumber) {
    machine.defaults.set("sourceGains",
                         NumberMap{{player.id(), 0.5},
                                   {"app-org.other-4712", 0.5},
                                   {"app-pid.9-9", 0.5},
                                   {wholeInput.id(), 0.5}});

    const auto next = relaunched();

    EXPECT_THAT(stored<NumberMap>("sourceGains"),
                testing::UnorderedElementsAre(Key(player.id()), Key(wholeInput.id())));
    EXPECT_THAT(stored<NumberMap>("sourceBirths"), ElementsAre(Key(player.id())));
}

TEST_F(KeptApplicationsTest, InTheListKeepTheirSettingsAfterTheirEnd) {
    engine.add(player);
    keepSomethingOf(player);

    machine.quitApplication(playerPid);
    machine.advance({});

    expectAllKept(engine, player);
}

TEST_F(KeptApplicationsTest, InTheListAreNeverAStranger) {
    startWith({player, wholeInput});
    startStranger();
    engine.restart();
    machine.advance(std::chrono::seconds(1));

    EXPECT_EQ(nextInMic(), 0.0625F);
    EXPECT_THAT(engine.problems(), SizeIs(1));

    engine.setDirectMuted(true, player); // of the one that has ended
    engine.restart();
    EXPECT_EQ(nextInMic(), 0.0625F);
}

TEST_F(KeptApplicationsTest, InTheListAreTheStrangerOnceTheUserChoosesIt) {
    startWith({player, wholeInput});
    engine.setGain(0.5F, player);
    startStranger();
    engine.restart();

    engine.add(player);

    EXPECT_EQ(engine.gain(player), 1.0F);
    EXPECT_EQ(nextInMic(), 0.5F + 0.0625F);
    EXPECT_THAT(engine.problems(), SizeIs(0));
}

TEST_F(KeptApplicationsTest, StayFewInALongYear) {
    engine.setGain(0.5F, wholeInput);
    for (std::int32_t pid = 10'000; pid < 11'000; ++pid) {
        machine.startApplication(pid, "Player", "org.player");
        machine.sound.play(pid, constant(0.125F));
        keepSomethingOf(AppSource{pid, "Player", "org.player"});
        machine.quitApplication(pid);
        machine.advance({});
    }

    EXPECT_THAT(stored<NumberMap>("sourceGains"), ElementsAre(Key(wholeInput.id())));
    EXPECT_THAT(stored<BooleanMap>("sourceMuteDirect"), SizeIs(0));
    EXPECT_THAT(stored<NumberMap>("sourceBirths"), SizeIs(0));
}

TEST_F(KeptApplicationsTest, WithUnreadableBirthsAreAsOfAnEarlierVersion) {
    engine.setGain(0.5F, player);
    machine.defaults.set("sourceBirths", NumberMap{{player.id(), -1.0}});

    EXPECT_EQ(relaunched()->gain(player), 0.5F);
}

} // namespace
} // namespace velmora
