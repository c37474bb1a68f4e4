#include "capture/SourceCapture.h"

#include "capture/CaptureFixture.h"
#include "engine/VelmoraError.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <string>
#include <vector>

namespace velmora {
namespace {

using testing::Each;
using testing::ElementsAre;

class SourceCaptureTest : public CaptureFixture {
protected:
    AudioObjectID addInput(std::uint32_t channels, double rateHz = 48000.0) {
        const AudioObjectID device = machine.sound.addDevice(
            {.uid = "input", .name = "Input", .inputs = {channels}, .rateHz = rateHz});
        machine.sound.setInput(device, channelNumbers(0.125F));
        return device;
    }

    SourceCapture makeCapture(AudioSource source, bool muteDirect = false) {
        return {machine.platform(), std::move(source), boxes, muteDirect};
    }

    /// The first frame that a capture of the source delivers: left and right.
    std::vector<float> firstFrame(const AudioSource& source) {
        SourceCapture capture = makeCapture(source);
        capture.start();
        const auto block = captureOneBlock();
        return {block.at(0), block.at(1)};
    }

    /// The same of some channels of a device whose channel n carries n × 0.125.
    std::vector<float> pairOf(AudioObjectID device, std::int64_t first, std::int64_t count) {
        return firstFrame(DeviceChannelsSource{device, first, count, "Input"});
    }

    AudioSource app() const { return AppSource{player, "Player", "org.player"}; }
};

TEST_F(SourceCaptureTest, ReadsTheFirstTwoChannelsOfAWholeDevice) {
    EXPECT_THAT(firstFrame(DeviceSource{addInput(4), "Input"}), ElementsAre(0.125F, 0.25F));
}

TEST_F(SourceCaptureTest, ReadsAMonoDeviceIntoBothSides) {
    EXPECT_THAT(firstFrame(DeviceSource{addInput(1), "Input"}), ElementsAre(0.125F, 0.125F));
}

TEST_F(SourceCaptureTest, ReadsTheChosenChannels) {
    const AudioObjectID device = addInput(4);

    EXPECT_THAT(pairOf(device, 3, 2), ElementsAre(0.375F, 0.5F));
    EXPECT_THAT(pairOf(device, 4, 2), ElementsAre(0.5F, 0.5F));
    EXPECT_THAT(pairOf(device, 2, 1), ElementsAre(0.25F, 0.25F));
    EXPECT_THAT(pairOf(device, 1, 4), ElementsAre(0.125F, 0.25F));
    EXPECT_THAT(pairOf(device, 2, 0), ElementsAre(0.25F, 0.25F));
}

TEST_F(SourceCaptureTest, ReadsOneChannelOfAStereoDeviceIntoBothSides) {
    EXPECT_THAT(pairOf(addInput(2), 1, 1), ElementsAre(0.125F, 0.125F));
}

TEST_F(SourceCaptureTest, NamesAChannelThatTheDeviceDoesNotHave) {
    const AudioObjectID device = addInput(4);

    EXPECT_EQ(messageOf([&] { pairOf(device, 5, 2); }), "Canal 5 indisponible (4 canaux)");
    EXPECT_EQ(messageOf([&] { pairOf(device, 0, 2); }), "Canal 0 indisponible (4 canaux)");
    EXPECT_EQ(messageOf([&] { pairOf(device, -3, 2); }), "Canal -3 indisponible (4 canaux)");
    EXPECT_EQ(machine.sound.census(), nothingLeft);
}

TEST_F(SourceCaptureTest, DropsFramesBeyond4096InOneBlock) {
    machine.sound.setBlockFrames(5000);
    SourceCapture capture = makeCapture(DeviceSource{addInput(2), "Input"});
    capture.start();

    machine.advanceCycles(1);

    EXPECT_EQ(boxes.streamRing->availableToRead(), 2 * 4096);
    EXPECT_EQ(boxes.monitorRing->availableToRead(), 2 * 4096);
}

TEST_F(SourceCaptureTest, HasEmptyRingsAfterItStopped) {
    SourceCapture capture = makeCapture(DeviceSource{addInput(2), "Input"});
    capture.start();
    machine.advanceCycles(2);
    ASSERT_EQ(boxes.streamRing->availableToRead(), 512);

    capture.stop();
    machine.advanceCycles(2);

    EXPECT_EQ(boxes.streamRing->availableToRead(), 0);
    EXPECT_EQ(boxes.monitorRing->availableToRead(), 0);
    EXPECT_EQ(machine.sound.census(), nothingLeft);
}

TEST_F(SourceCaptureTest, PlaysNothingStaleAfterARestart) {
    const AudioObjectID device = addInput(2);
    machine.sound.setInput(device, constant(0.5F));
    SourceCapture capture = makeCapture(DeviceSource{device, "Input"});
    capture.start();
    machine.advanceCycles(4);
    machine.sound.setInput(device, constant(0.25F));

    capture.start();
    machine.advanceCycles(1);

    EXPECT_EQ(drain(*boxes.streamRing), std::vector<float>(blockFloats, 0.25F));
}

TEST_F(SourceCaptureTest, GivesAnInputItsGainEffectsAndMeter) {
    FXParams params;
    params.tilt = 0.5F;
    boxes.fx->setParams(params);
    boxes.gain->set(0.5F);
    const AudioObjectID device = addInput(2, 44100);
    const Waveform signal = sine(440, 0.5F);
    machine.sound.setInput(device, signal);
    SourceCapture capture = makeCapture(DeviceSource{device, "Input"});
    capture.start();
    EffectsChain expected(params);
    expected.setSampleRate(44100);
    const auto wanted = processedBlock(expected, signal, 0.5F);

    const auto captured = captureOneBlock();

    EXPECT_EQ(captured, wanted);
    EXPECT_EQ(drain(*boxes.monitorRing), wanted);
    float peak = 0.0F;
    for (const float sample : wanted) {
        peak = std::max(peak, std::abs(sample));
    }
    EXPECT_EQ(boxes.meter->take(), peak);
}

TEST_F(SourceCaptureTest, LeavesBadSamplesOfAnInputAsTheyAre) {
    const AudioObjectID device = addInput(2);
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    machine.sound.setInput(device, withSample(constant(0.25F), 10, notANumber));
    SourceCapture capture = makeCapture(DeviceSource{device, "Input"});
    capture.start();

    const auto block = captureOneBlock();

    EXPECT_TRUE(std::isnan(block[20]));
    EXPECT_EQ(block[22], 0.25F);
    EXPECT_EQ(boxes.meter->take(), 0.25F);
}

TEST_F(SourceCaptureTest, AsksForSmallBlocksButTakesWhatComes) {
    const AudioObjectID device = addInput(2);
    SourceCapture capture = makeCapture(DeviceSource{device, "Input"});
    capture.start();
    EXPECT_EQ(machine.sound.requestedBufferFrames(device), 128U);

    machine.sound.refuse(Operation::requestBufferFrames);
    machine.sound.setBlockFrames(1024);
    capture.start();

    EXPECT_EQ(captureOneBlock().size(), 2048U);
}

TEST_F(SourceCaptureTest, TellsARefusalByTheAudioUnit) {
    const AudioSource source = DeviceSource{addInput(2), "Input"};
    const auto refusal = [&](Operation operation) {
        machine.sound.refuse(operation, -10851);
        const std::string message = messageOf([&] { firstFrame(source); });
        machine.sound.allow(operation);
        EXPECT_EQ(machine.sound.census(), nothingLeft);
        return message;
    };

    EXPECT_EQ(refusal(Operation::makeInput), "Unité audio indisponible");
    EXPECT_EQ(refusal(Operation::setInputDevice), "Impossible d'assigner l'entrée (err -10851)");
    EXPECT_EQ(refusal(Operation::startInput), "Démarrage de l'entrée refusé (err -10851)");
}

TEST_F(SourceCaptureTest, TellsThatADeviceVanished) {
    const AudioObjectID device = addInput(2);
    machine.sound.removeDevice(device);

    EXPECT_EQ(messageOf([&] {
                  firstFrame(DeviceSource{device, "Input"});
              }),
              "Impossible d'assigner l'entrée (err -2)");
}

TEST_F(SourceCaptureTest, SurvivesADeviceThatVanishesWhileItRuns) {
    const AudioObjectID device = addInput(2);
    SourceCapture capture = makeCapture(DeviceSource{device, "Input"});
    capture.start();

    machine.sound.removeDevice(device);

    EXPECT_TRUE(captureOneBlock().empty());
    capture.stop();
    EXPECT_EQ(machine.sound.census(), nothingLeft);
}

TEST_F(SourceCaptureTest, CapturesAnApplicationAndRaisesItsMeter) {
    machine.sound.play(player, withSample(constant(0.25F), 130, -0.75F));
    boxes.gain->set(0.5F);
    SourceCapture capture = makeCapture(app());
    capture.start();

    machine.advanceCycles(3);

    EXPECT_EQ(boxes.meter->take(), 0.375F);
    EXPECT_EQ(drain(*boxes.streamRing).size(), 3 * blockFloats);
    EXPECT_EQ(drain(*boxes.monitorRing).size(), 3 * blockFloats);
}

TEST_F(SourceCaptureTest, PassesOnTheErrorOfATap) {
    machine.sound.play(player, constant(0.5F));
    machine.sound.refuse(Operation::openTapStart, 560947818);
    SourceCapture capture = makeCapture(app());

    EXPECT_EQ(messageOf([&] { capture.start(); }),
              "Démarrage du device agrégé refusé (err 560947818)");
    EXPECT_EQ(machine.sound.census(), nothingLeft);
}

TEST_F(SourceCaptureTest, TakesUpTheMuteWithTheNextStart) {
    machine.sound.play(player, constant(0.5F));
    SourceCapture capture = makeCapture(app(), false);
    capture.start();
    machine.advanceCycles(1);
    EXPECT_THAT(machine.sound.heard(speakers, 1), Each(0.5F));

    capture.setMuteDirect(true);
    capture.start();
    machine.sound.forgetHeard();
    machine.advanceCycles(1);

    EXPECT_THAT(machine.sound.heard(speakers, 1), Each(0.0F));
}

TEST_F(SourceCaptureTest, MayBeStoppedWhenNothingRuns) {
    SourceCapture capture = makeCapture(app());

    capture.stop();
    capture.stop();

    EXPECT_EQ(machine.sound.census(), nothingLeft);
}

class InputReceiverTest : public CaptureFixture {
protected:
    InputReceiver receiver{boxes, {.left = 2, .right = 3}};
    const std::vector<float> one = std::vector<float>(4, 0.1F);
    const std::vector<float> two = std::vector<float>(4, 0.2F);
};

TEST_F(InputReceiverTest, ReadsTheLastBufferForAChannelBeyondIt) {
    const std::vector<const float*> channels{one.data(), two.data()};

    receiver.receive(4, channels);

    EXPECT_EQ(drain(*boxes.streamRing), std::vector<float>(8, 0.2F));
}

TEST_F(InputReceiverTest, SkipsABlockWithoutBuffersDataOrFrames) {
    const std::vector<const float*> channels{one.data(), two.data()};
    const std::vector<const float*> withoutData{one.data(), nullptr};

    receiver.receive(4, {});
    receiver.receive(4, withoutData);
    receiver.receive(0, channels);
    receiver.receive(-4, channels);

    EXPECT_EQ(boxes.streamRing->availableToRead(), 0);
    EXPECT_EQ(boxes.meter->take(), 0.0F);
}

TEST_F(InputReceiverTest, SkipsABlockWithoutDataOnEitherChannelOfThePair) {
    const std::vector<const float*> withoutLeft{one.data(), two.data(), nullptr, one.data()};
    const std::vector<const float*> withoutRight{one.data(), two.data(), one.data(), nullptr};

    receiver.receive(4, withoutLeft);
    receiver.receive(4, withoutRight);

    EXPECT_EQ(boxes.streamRing->availableToRead(), 0);
}

} // namespace
} // namespace velmora
