#include "engine/EngineFixture.h"

#include <cmath>
#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::Pair;

class Meters : public EngineFixture {
protected:
    /// Turns the clock to right after the next tick of the meters.
    void tick() {
        constexpr std::chrono::nanoseconds period = 1'000'000'000ns / 30;
        const auto due = startedAt + ++ticks * period;
        machine.advance(due - machine.now());
    }

    void start(const std::vector<AudioSource>& sources) {
        startedAt = machine.now();
        startWith(sources);
    }

    std::chrono::nanoseconds startedAt{};
    int ticks = 0;
};

TEST_F(Meters, RiseAtOnceAndFallByAFactorPerTick) {
    machine.sound.play(playerPid, constant(1.0F));
    start({player});
    tick();
    EXPECT_EQ(engine.level(), 1.0F);

    machine.sound.pause(playerPid);
    tick(); // the last loud blocks of the old period are in this one

    ASSERT_EQ(engine.level(), 0.78F);
    tick();
    EXPECT_FLOAT_EQ(engine.level(), 0.6084F);
    for (int number = 3; number <= 30; ++number) {
        tick();
        ASSERT_NEAR(engine.level(), std::pow(0.78, number), 1e-5) << number;
        ASSERT_GT(engine.level(), 0.0005F);
    }
    tick();
    EXPECT_EQ(engine.level(), 0.0F);
}

TEST_F(Meters, ShowEverySourceAndTheLoudestOfThem) {
    start({player, browser});

    tick();

    EXPECT_THAT(
        engine.sourceLevels(),
        ElementsAre(Pair("app-org.browser-4712", 0.125F), Pair("app-org.player-4711", 0.25F)));
    EXPECT_EQ(engine.level(), 0.25F);
}

TEST_F(Meters, StopAtOne) {
    machine.sound.play(playerPid, constant(7.0F));
    start({player});

    tick();

    EXPECT_EQ(engine.level(), 1.0F);
}

TEST_F(Meters, ShowNothingBelowTheirFloor) {
    machine.sound.play(playerPid, constant(0.0004F));
    start({player});

    tick();

    EXPECT_EQ(engine.level(), 0.0F);
    EXPECT_THAT(engine.sourceLevels(), ElementsAre(Pair("app-org.player-4711", 0.0F)));
}

TEST_F(Meters, TickThirtyTimesASecond) {
    machine.sound.play(playerPid, sine(0.5, 0.9F)); // a new peak in every tick
    start({player});
    int told = 0;
    const auto connection = engine.changed().connect([&] { ++told; });

    machine.advance(500ms);

    EXPECT_EQ(told, 15);
}

TEST_F(Meters, TellNothingWhileTheyStandStill) {
    start({player});
    tick();
    int told = 0;
    const auto connection = engine.changed().connect([&] { ++told; });

    machine.advance(1s);

    EXPECT_EQ(told, 0);
    EXPECT_EQ(engine.level(), 0.25F);
}

TEST_F(Meters, TellThatASilentSourceHasOne) {
    machine.sound.play(playerPid, silence());
    start({player});
    int told = 0;
    const auto connection = engine.changed().connect([&] { ++told; });

    tick();

    EXPECT_EQ(told, 1);
    EXPECT_THAT(engine.sourceLevels(), ElementsAre(Pair("app-org.player-4711", 0.0F)));
}

TEST_F(Meters, SeeTheSignalAfterGainAndEffects) {
    engine.setGain(2.0F, player);
    start({player});

    tick();

    EXPECT_EQ(engine.level(), 0.5F);
}

} // namespace
} // namespace velmora
