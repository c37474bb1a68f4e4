#include "capture/ProcessTap.h"

#include "capture/CaptureFixture.h"
#include "engine/VelmoraError.h"

#include <gmock/gmock.h>
#include <limits>
#include <string>
#include <vector>

namespace velmora {
namespace {

using testing::Each;
using testing::ElementsAre;

class ProcessTapTest : public CaptureFixture {
protected:
    ProcessTap makeTap(bool muteDirect = false) { return {machine.platform(), boxes, muteDirect}; }

    /// The factor by which a capture is louder than the bare mixdown of the application.
    float factorWithOutputChannels(std::uint32_t channels) {
        machine.sound.setMixdownDivided(false);
        machine.sound.setDefaultOutput(machine.sound.addDevice(
            {.uid = "surround", .name = "Surround", .outputs = {channels}}));
        machine.sound.play(player, constant(0.125F));
        ProcessTap tap = makeTap();
        tap.start(player);
        return captureOneBlock().front() / 0.125F;
    }
};

TEST_F(ProcessTapTest, NeedsAnApplicationThatHasPlayed) {
    ProcessTap tap = makeTap();

    EXPECT_EQ(
        messageOf([&] { tap.start(player); }),
        "Cette app n'a pas encore de son — lance une lecture dedans, puis re-sélectionne-la.");
    EXPECT_EQ(machine.sound.census(), nothingLeft);

    machine.sound.play(player, constant(0.5F));
    tap.start(player);
    EXPECT_THAT(captureOneBlock(), Each(0.5F));
}

TEST_F(ProcessTapTest, TakesAProcessObjectOfZeroForNone) {
    machine.sound.play(player, constant(0.5F));
    machine.sound.refuse(Operation::processForPid);
    ProcessTap tap = makeTap();

    EXPECT_THAT(messageOf([&] { tap.start(player); }), testing::StartsWith("Cette app"));
}

TEST_F(ProcessTapTest, WritesTheSameSamplesToBothRings) {
    machine.sound.play(player, stereo(sine(440, 0.5F), sine(1000, 0.25F)));
    ProcessTap tap = makeTap();
    tap.start(player);

    machine.advanceCycles(3);

    const auto stream = drain(*boxes.streamRing);
    EXPECT_EQ(stream.size(), 3 * blockFloats);
    EXPECT_EQ(stream[2], sine(440, 0.5F)(1, 0));
    EXPECT_EQ(stream[3], sine(1000, 0.25F)(1, 1));
    EXPECT_EQ(drain(*boxes.monitorRing), stream);
}

TEST_F(ProcessTapTest, IsAtUnityWhateverTheDefaultOutput) {
    machine.sound.setDefaultOutput(
        machine.sound.addDevice({.uid = "surround", .name = "Surround", .outputs = {8}}));
    machine.sound.play(player, constant(0.5F));
    ProcessTap tap = makeTap();

    tap.start(player);

    EXPECT_THAT(captureOneBlock(), Each(0.5F));
}

TEST_F(ProcessTapTest, MakesUpForTheChannelsOfTheDefaultOutput) {
    EXPECT_EQ(factorWithOutputChannels(2), 1.0F);
    EXPECT_EQ(factorWithOutputChannels(8), 4.0F);
    EXPECT_EQ(factorWithOutputChannels(5), 2.5F);
    EXPECT_EQ(factorWithOutputChannels(1), 1.0F);
}

TEST_F(ProcessTapTest, KeepsItsFactorWhileItRuns) {
    machine.sound.setMixdownDivided(false);
    machine.sound.play(player, constant(0.125F));
    ProcessTap tap = makeTap();
    tap.start(player);

    machine.sound.setDefaultOutput(
        machine.sound.addDevice({.uid = "surround", .name = "Surround", .outputs = {8}}));

    EXPECT_THAT(captureOneBlock(), Each(0.125F));
    tap.start(player);
    EXPECT_THAT(captureOneBlock(), Each(0.5F));
}

TEST_F(ProcessTapTest, CountsEveryStreamOfTheDefaultOutput) {
    EXPECT_EQ(ProcessTap::defaultOutputChannelCount(machine.devices), 2U);
    machine.sound.setDefaultOutput(
        machine.sound.addDevice({.uid = "eight", .name = "Eight", .outputs = {2, 4, 2}}));
    EXPECT_EQ(ProcessTap::defaultOutputChannelCount(machine.devices), 8U);
}

TEST_F(ProcessTapTest, CountsTwoChannelsWhenItCannotTell) {
    const AudioObjectID eight =
        machine.sound.addDevice({.uid = "eight", .name = "Eight", .outputs = {8}});
    machine.sound.setDefaultOutput(eight);

    machine.sound.refuse(Operation::streamChannels);
    EXPECT_EQ(ProcessTap::defaultOutputChannelCount(machine.devices), 2U);
    machine.sound.allow(Operation::streamChannels);

    machine.sound.refuse(Operation::defaultOutputDevice);
    EXPECT_EQ(ProcessTap::defaultOutputChannelCount(machine.devices), 2U);
    machine.sound.allow(Operation::defaultOutputDevice);

    machine.sound.setDefaultOutput(0);
    EXPECT_EQ(ProcessTap::defaultOutputChannelCount(machine.devices), 2U);
}

TEST_F(ProcessTapTest, ReadsTheGainInEveryBlock) {
    machine.sound.play(player, constant(0.5F));
    ProcessTap tap = makeTap();
    tap.start(player);
    EXPECT_THAT(captureOneBlock(), Each(0.5F));

    boxes.gain->set(3.0F);

    EXPECT_THAT(captureOneBlock(), Each(1.5F));
}

TEST_F(ProcessTapTest, AppliesTheGainBeforeTheEffects) {
    FXParams params;
    params.comp = 3;
    params.lowcut = 1;
    boxes.fx->setParams(params);
    boxes.gain->set(4.0F);
    const Waveform signal = sine(440, 0.2F);
    machine.sound.play(player, signal);
    ProcessTap tap = makeTap();
    tap.start(player);
    EffectsChain expected(params);
    expected.setSampleRate(48000);

    for (int block = 0; block < 20; ++block) {
        const auto wanted = processedBlock(expected, signal, 4.0F);
        ASSERT_EQ(captureOneBlock(), wanted) << block;
    }
}

TEST_F(ProcessTapTest, HandsTheTapsRateToTheEffects) {
    FXParams params;
    params.lowcut = 2;
    boxes.fx->setParams(params);
    machine.sound.setRate(96000);
    const Waveform signal = sine(100, 0.5F);
    machine.sound.play(player, signal);
    ProcessTap tap = makeTap();
    tap.start(player);
    EffectsChain expected(params);
    expected.setSampleRate(96000);

    const auto wanted = processedBlock(expected, signal, 1.0F);

    EXPECT_EQ(captureOneBlock(), wanted);
}

TEST_F(ProcessTapTest, LeavesTheEffectsTheirRateWhenTheTapsCannotBeRead) {
    FXParams params;
    params.lowcut = 2;
    boxes.fx->setParams(params);
    machine.sound.setRate(96000);
    machine.sound.refuse(Operation::tapRate);
    const Waveform signal = sine(100, 0.5F);
    machine.sound.play(player, signal);
    ProcessTap tap = makeTap();
    tap.start(player);
    EffectsChain expected(params); // at 48 kHz

    const auto wanted = processedBlock(expected, signal, 1.0F);

    EXPECT_EQ(captureOneBlock(), wanted);
}

TEST_F(ProcessTapTest, ZeroesSamplesThatAreNotFinite) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    const float largest = std::numeric_limits<float>::max();
    Waveform signal = constant(0.25F);
    signal = withSample(signal, 10, infinity);
    signal = withSample(signal, 20, -infinity);
    signal = withSample(signal, 30, notANumber);
    signal = withSample(signal, 40, largest);
    machine.sound.play(player, signal);
    ProcessTap tap = makeTap();
    tap.start(player);

    const auto block = captureOneBlock();

    EXPECT_EQ(block[2 * 9], 0.25F);
    EXPECT_EQ(block[2 * 10], 0.0F);
    EXPECT_EQ(block[2 * 20 + 1], 0.0F);
    EXPECT_EQ(block[2 * 30], 0.0F);
    EXPECT_EQ(block[2 * 40], largest);
    EXPECT_EQ(boxes.meter->take(), largest);
}

TEST_F(ProcessTapTest, RaisesItsMeterWithEveryBlock) {
    machine.sound.play(player, withSample(constant(0.25F), 130, -0.75F));
    ProcessTap tap = makeTap();
    tap.start(player);

    for (const float peak : {0.25F, 0.75F, 0.25F}) {
        machine.advanceCycles(1);
        EXPECT_EQ(boxes.meter->take(), peak);
    }
}

TEST_F(ProcessTapTest, LetsItsMeterBeForAnEmptyBlock) {
    machine.sound.play(player, constant(0.5F));
    machine.sound.setTapBlocks(TapBlocks::empty);
    ProcessTap tap = makeTap();
    tap.start(player);

    EXPECT_TRUE(captureOneBlock().empty());
    EXPECT_EQ(boxes.meter->take(), 0.0F);
}

TEST_F(ProcessTapTest, LetsTheEffectsTakeUpTheirSettingsInAnEmptyBlock) {
    const FXParams lowCut{.lowcut = 2, .autoGain = false};
    boxes.fx->setParams(lowCut);
    machine.sound.play(player, constant(0.5F));
    ProcessTap tap = makeTap();
    tap.start(player);
    machine.advanceCycles(100);
    ASSERT_LT(captureOneBlock().front(), 0.01F); // no constant passes

    machine.sound.setTapBlocks(TapBlocks::empty);
    boxes.fx->setParams({});
    machine.advanceCycles(1);
    machine.sound.setTapBlocks(TapBlocks::filled);
    boxes.fx->setParams(lowCut);

    EXPECT_GT(captureOneBlock().front(), 0.4F); // the filter has begun afresh
}

TEST_F(ProcessTapTest, SkipsABlockWithoutData) {
    machine.sound.play(player, constant(0.5F));
    machine.sound.setTapBlocks(TapBlocks::null);
    ProcessTap tap = makeTap();
    tap.start(player);

    EXPECT_TRUE(captureOneBlock().empty());
    EXPECT_EQ(boxes.meter->take(), 0.0F);
}

TEST_F(ProcessTapTest, SilencesAMutedApplicationUntilItStops) {
    machine.sound.play(player, constant(0.5F));
    ProcessTap tap = makeTap(true);

    tap.start(player);
    machine.advanceCycles(1);
    tap.stop();
    machine.advanceCycles(1);

    const auto heard = machine.sound.heard(speakers, 1);
    EXPECT_THAT(std::vector<float>(heard.begin(), heard.begin() + 128), Each(0.0F));
    EXPECT_THAT(std::vector<float>(heard.begin() + 128, heard.end()), Each(0.5F));
    EXPECT_THAT(drain(*boxes.streamRing), Each(0.5F));
}

TEST_F(ProcessTapTest, LeavesAnUnmutedApplicationOnItsOutput) {
    machine.sound.play(player, constant(0.5F));
    ProcessTap tap = makeTap(false);

    tap.start(player);
    machine.advanceCycles(1);

    EXPECT_THAT(machine.sound.heard(speakers, 1), Each(0.5F));
}

TEST_F(ProcessTapTest, GoesOnWithSilenceWhenTheApplicationPausesOrLeaves) {
    machine.sound.play(player, constant(0.5F));
    ProcessTap tap = makeTap();
    tap.start(player);

    machine.sound.pause(player);
    EXPECT_THAT(captureOneBlock(), Each(0.0F));
    machine.sound.play(player, constant(0.25F));
    EXPECT_THAT(captureOneBlock(), Each(0.25F));
    machine.quitApplication(player);
    EXPECT_THAT(captureOneBlock(), Each(0.0F));
}

TEST_F(ProcessTapTest, OpensOneTapAsItIsTold) {
    const AudioObjectID process = machine.sound.play(player, constant(0.5F));
    ProcessTap muting = makeTap(true);
    ProcessTap listening = makeTap(false);

    muting.start(player);
    listening.start(player);

    using Mute = ApplicationTaps::Mute;
    EXPECT_THAT(machine.sound.openedTaps(),
                ElementsAre(TapRequest{process, Mute::whileTapped}, TapRequest{process, Mute::no}));
}

TEST_F(ProcessTapTest, IsAliveFromItsStartUntilItsTapDies) {
    machine.sound.play(player, constant(0.5F));
    ProcessTap tap = makeTap();
    EXPECT_FALSE(tap.isAlive());
    tap.start(player);
    EXPECT_TRUE(tap.isAlive());

    machine.sound.removeOurNode();

    EXPECT_FALSE(tap.isAlive());
    EXPECT_TRUE(captureOneBlock().empty());
    tap.start(player);
    EXPECT_TRUE(tap.isAlive());
    tap.stop();
    EXPECT_FALSE(tap.isAlive());
}

TEST_F(ProcessTapTest, ReplacesItselfWhenItIsStartedAgain) {
    machine.sound.play(player, constant(0.5F));
    ProcessTap tap = makeTap();
    tap.start(player);
    tap.start(player);

    EXPECT_EQ(captureOneBlock().size(), blockFloats);
    EXPECT_EQ(machine.sound.census().taps, 1U);
}

TEST_F(ProcessTapTest, LeavesNothingOpenWhenItCannotBeStartedAgain) {
    machine.sound.play(player, constant(0.5F));
    ProcessTap tap = makeTap();
    tap.start(player);
    machine.sound.refuse(Operation::openTap);

    EXPECT_THROW(tap.start(player), VelmoraError);

    EXPECT_EQ(machine.sound.census(), nothingLeft);
}

TEST_F(ProcessTapTest, MayBeStoppedTwice) {
    machine.sound.play(player, constant(0.5F));
    ProcessTap tap = makeTap();
    tap.start(player);

    tap.stop();
    tap.stop();

    EXPECT_EQ(machine.sound.census(), nothingLeft);
    EXPECT_TRUE(captureOneBlock().empty());
}

TEST_F(ProcessTapTest, ReleasesEverythingWhenItIsDestroyed) {
    machine.sound.play(player, constant(0.5F));
    {
        ProcessTap tap = makeTap();
        tap.start(player);
    }
    EXPECT_EQ(machine.sound.census(), nothingLeft);
}

struct RefusedStep {
    std::string step;
    Operation operation;
    std::string message;
};

class ProcessTapRefusal : public ProcessTapTest, public testing::WithParamInterface<RefusedStep> {};

TEST_P(ProcessTapRefusal, IsToldWithItsStatusAndLeavesNothing) {
    machine.sound.play(player, constant(0.5F));
    machine.sound.refuse(GetParam().operation, -66748);
    {
        ProcessTap tap = makeTap(true);
        EXPECT_EQ(messageOf([&] { tap.start(player); }), GetParam().message);
        tap.stop();
        tap.stop();
    }
    EXPECT_EQ(machine.sound.census(), nothingLeft);
    machine.advanceCycles(1);
    EXPECT_THAT(machine.sound.heard(speakers, 1), Each(0.5F));
}

TEST_P(ProcessTapRefusal, IsOverAtTheNextStart) {
    machine.sound.play(player, constant(0.5F));
    machine.sound.refuse(GetParam().operation);
    ProcessTap tap = makeTap();
    EXPECT_THROW(tap.start(player), VelmoraError);
    machine.sound.allow(GetParam().operation);

    tap.start(player);

    EXPECT_THAT(captureOneBlock(), Each(0.5F));
}

INSTANTIATE_TEST_SUITE_P(
    EachStep,
    ProcessTapRefusal,
    testing::Values(
        RefusedStep{"Tap",
                    Operation::openTap,
                    "Création du tap refusée (err -66748) — vérifier la permission "
                    "d'enregistrement audio système"},
        RefusedStep{"Aggregate",
                    Operation::openTapDevice,
                    "Création du device agrégé refusée (err -66748)"},
        RefusedStep{"Callback", Operation::openTapCallback, "IOProc refusé (err -66748)"},
        RefusedStep{
            "Start", Operation::openTapStart, "Démarrage du device agrégé refusé (err -66748)"}),
    [](const auto& tested) { return tested.param.step; });

} // namespace
} // namespace velmora
