#include "engine/MixOutput.h"

#include "engine/VelmoraError.h"
#include "engine/realtime/Limiter.h"
#include "engine/realtime/ParamBox.h"
#include "engine/realtime/RingSetBox.h"
#include "engine/realtime/TalkGate.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <array>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::Each;

class OutputEngine : public testing::Test {
protected:
    std::unique_ptr<OutputUnit> make(AudioObjectID device, std::int64_t firstChannel) {
        return makeOutputEngine(
            machine.devices, machine.units, {device, firstChannel}, rings, limiter, volume, gate);
    }

    AudioObjectID addOutput(std::uint32_t channels, double rateHz = 48000.0) {
        return machine.sound.addDevice(
            {.uid = "output", .name = "Output", .outputs = {channels}, .rateHz = rateHz});
    }

    std::string failure(AudioObjectID device, std::int64_t firstChannel) {
        try {
            const auto unit = make(device, firstChannel);
        } catch (const VelmoraError& error) {
            EXPECT_EQ(error.which(), VelmoraError::Case::engine);
            EXPECT_EQ(machine.sound.census(), SimulatedSound::Census{});
            return error.errorDescription();
        }
        return "nothing was thrown";
    }

    /// Plays one block of 0.5 left and 0.25 right and tells what each channel was heard to play.
    std::vector<float> heardOn(AudioObjectID device, std::int64_t firstChannel) {
        const auto unit = make(device, firstChannel);
        for (int frame = 0; frame < 128; ++frame) {
            const std::array pair{0.5F, 0.25F};
            ring->write(pair.data(), 2);
        }
        machine.sound.forgetHeard();
        machine.advanceCycles(1);
        std::vector<float> channels;
        for (std::size_t channel = 1;; ++channel) {
            const auto heard = machine.sound.heard(device, channel);
            if (heard.empty()) {
                return channels;
            }
            EXPECT_THAT(heard, Each(heard.front()));
            channels.push_back(heard.front());
        }
    }

    SimulatedPlatform machine;
    std::shared_ptr<RingBuffer> ring = std::make_shared<RingBuffer>(4096);
    std::shared_ptr<RingSetBox> rings = [this] {
        auto box = std::make_shared<RingSetBox>();
        box->set({ring});
        return box;
    }();
    std::shared_ptr<Limiter> limiter = std::make_shared<Limiter>();
    std::shared_ptr<ParamBox> volume = std::make_shared<ParamBox>(1.0F);
    std::shared_ptr<TalkGate> gate = std::make_shared<TalkGate>();
};

TEST_F(OutputEngine, PlaysOnTheFirstTwoChannelsByDefault) {
    const AudioObjectID device = addOutput(4);
    for (const std::int64_t first : {1, 0, -7}) {
        EXPECT_EQ(heardOn(device, first), (std::vector{0.5F, 0.25F, 0.0F, 0.0F})) << first;
    }
}

TEST_F(OutputEngine, PlaysOnTheChosenPairAndNowhereElse) {
    const AudioObjectID device = addOutput(4);

    EXPECT_EQ(heardOn(device, 3), (std::vector{0.0F, 0.0F, 0.5F, 0.25F}));
    EXPECT_EQ(heardOn(device, 2), (std::vector{0.0F, 0.5F, 0.25F, 0.0F}));
}

TEST_F(OutputEngine, NamesAPairThatTheDeviceDoesNotHave) {
    EXPECT_EQ(failure(addOutput(3), 3), "Sorties 3-4 indisponibles (3 canaux)");
    EXPECT_EQ(failure(addOutput(4), 5), "Sorties 5-6 indisponibles (4 canaux)");
    EXPECT_EQ(failure(addOutput(4), 9223372036854775807),
              "Sorties 9223372036854775807-9223372036854775808 indisponibles (4 canaux)");
}

TEST_F(OutputEngine, CountsNoChannelsWhenTheyCannotBeRead) {
    const AudioObjectID device = addOutput(4);
    machine.sound.refuse(Operation::streamChannels);

    EXPECT_EQ(failure(device, 3), "Sorties 3-4 indisponibles (0 canaux)");
}

TEST_F(OutputEngine, TellsARefusalWithItsStatus) {
    const AudioObjectID device = addOutput(4);
    const auto refusal = [&](Operation operation) {
        machine.sound.refuse(operation, -10879);
        std::string message = failure(device, 3);
        machine.sound.allow(operation);
        return message;
    };

    EXPECT_EQ(refusal(Operation::makeOutput), "Unité audio indisponible");
    EXPECT_EQ(refusal(Operation::setOutputDevice), "Impossible d'assigner la sortie (err -10879)");
    EXPECT_EQ(refusal(Operation::setChannelMap),
              "Routage vers les sorties 3-4 refusé (err -10879)");
    EXPECT_EQ(refusal(Operation::startOutput), "Démarrage de la sortie refusé (err -10879)");
}

TEST_F(OutputEngine, NeedsNoChannelMapForTheFirstPair) {
    const AudioObjectID device = addOutput(4);
    machine.sound.refuse(Operation::setChannelMap);

    EXPECT_EQ(heardOn(device, 1).front(), 0.5F);
}

TEST_F(OutputEngine, AsksForSmallBlocksAndTakesARefusal) {
    const AudioObjectID device = addOutput(2);
    {
        const auto unit = make(device, 1);
        EXPECT_EQ(machine.sound.requestedBufferFrames(device), 128U);
    }
    machine.sound.refuse(Operation::requestBufferFrames);

    EXPECT_EQ(heardOn(device, 1).front(), 0.5F);
}

TEST_F(OutputEngine, MakesTheLimitersReleaseForTheDevicesRate) {
    // exp(-1 / (rate × 0.08)): 80 ms to fall to 1/e.
    for (const double rateHz : {48000.0, 44100.0, 192000.0}) {
        const auto unit = make(addOutput(2, rateHz), 1);
        EXPECT_FLOAT_EQ(limiter->releaseCoeff, static_cast<float>(std::exp(-1 / (rateHz * 0.08))));
    }
    const auto unit = make(addOutput(2), 1);
    EXPECT_EQ(limiter->releaseCoeff, 0.99973965F);
}

TEST_F(OutputEngine, StopsWhenTheUnitIsDropped) {
    const AudioObjectID device = addOutput(2);
    {
        const auto unit = make(device, 1);
        EXPECT_EQ(machine.sound.census().runningUnits, 1U);
    }
    EXPECT_EQ(machine.sound.census(), SimulatedSound::Census{});
}

} // namespace
} // namespace velmora
