#include "engine/EngineFixture.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AudioEngineSources : public EngineFixture {};

TEST_F(AudioEngineSources, AddsASourceOnce) {
    engine.add(player);
    engine.add(player);
    engine.add(browser);

    EXPECT_THAT(engine.sources(), ElementsAre(player, browser));
}

TEST_F(AudioEngineSources, TellsSourcesOfOneIdApartByTheirNames) {
    const AudioSource renamed = DeviceSource{interface4, "Renamed"};
    engine.add(wholeInput);
    engine.add(renamed);

    EXPECT_THAT(engine.sources(), ElementsAre(wholeInput, renamed));
}

TEST_F(AudioEngineSources, HearsASourceThatIsAddedWhileItRuns) {
    startWith({player});

    engine.add(browser);

    EXPECT_EQ(nextInMic(), 0.375F);
}

TEST_F(AudioEngineSources, RestartsNothingForASourceThatIsThereAlready) {
    startWith({player});

    engine.add(player);

    EXPECT_EQ(tapsMade(), 1U);
}

TEST_F(AudioEngineSources, RemovesEveryEntryOfASourceButKeepsItsSettings) {
    engine.setGain(0.5F, player);
    engine.replaceSources({player, browser, player});

    engine.remove(engine.sources().front());

    EXPECT_THAT(engine.sources(), ElementsAre(browser));
    EXPECT_EQ(engine.gain(player), 0.5F);
}

TEST_F(AudioEngineSources, GoesOnWithoutASourceThatIsRemoved) {
    startWith({player, browser});

    engine.remove(player);

    EXPECT_TRUE(engine.isRunning());
    EXPECT_EQ(nextInMic(), 0.125F);
}

TEST_F(AudioEngineSources, StopsWhenTheLastSourceIsRemoved) {
    startWith({player});
    machine.advance(std::chrono::milliseconds{100});

    engine.remove(player);

    EXPECT_FALSE(engine.isRunning());
    EXPECT_EQ(engine.level(), 0.0F);
    EXPECT_THAT(engine.sourceLevels(), IsEmpty());
    EXPECT_EQ(engine.lastError(), std::nullopt);
    EXPECT_EQ(machine.sound.census(), nothingRuns);
}

TEST_F(AudioEngineSources, PutsAPrimarySourceInThePlaceOfTheFirst) {
    engine.setPrimary(player);
    EXPECT_THAT(engine.sources(), ElementsAre(player));
    engine.add(browser);

    engine.setPrimary(wholeInput);

    EXPECT_THAT(engine.sources(), ElementsAre(wholeInput, browser));
}

TEST_F(AudioEngineSources, LeavesTwoEntriesOfASourceThatBecomesPrimary) {
    engine.replaceSources({player, browser});

    engine.setPrimary(browser);

    EXPECT_THAT(engine.sources(), ElementsAre(browser, browser));
}

TEST_F(AudioEngineSources, RestartsForANewPrimarySourceOnly) {
    startWith({player, browser});
    EXPECT_EQ(tapsMade(), 2U);

    engine.setPrimary(player);
    EXPECT_EQ(tapsMade(), 2U);
    engine.setPrimary(wholeInput);

    EXPECT_EQ(tapsMade(), 3U);
    EXPECT_EQ(nextInMic(), 0.0625F + 0.125F);
}

TEST_F(AudioEngineSources, ReplacesAndInsertsWithoutARestart) {
    startWith({player});

    engine.replaceSources({browser});
    engine.insertSource(player, 99);
    engine.insertSource(wholeInput, 0);

    EXPECT_THAT(engine.sources(), ElementsAre(wholeInput, browser, player));
    EXPECT_EQ(nextInMic(), 0.25F); // still the first mix
}

} // namespace
} // namespace velmora
