// AudioUnitsContract.h: the output and input units of every audio layer.
#pragma once

#include "platform/contract/AudioContract.h"
#include "platform/contract/BlockCollector.h"

#include <atomic>

namespace velmora {

template <typename Rig>
class AudioUnitsContract : public AudioContract<Rig> {
protected:
    std::unique_ptr<OutputUnit> outputOn(AudioObjectID device) {
        auto unit = this->rig.units().makeOutput();
        EXPECT_EQ(unit->setDevice(device), statusOk);
        return unit;
    }

    static ReceiveCallback nothing() {
        return [](std::int64_t, std::span<const float* const>) {};
    }
};

TYPED_TEST_SUITE_P(AudioUnitsContract);

TYPED_TEST_P(AudioUnitsContract, PlaysAPairIntoADevicesFirstTwoChannels) {
    const AudioObjectID device = this->make(this->interface4);
    auto unit = this->rig.units().makeOutput();
    ASSERT_NE(unit, nullptr);
    EXPECT_EQ(unit->sampleRate(), 0.0);
    ASSERT_EQ(unit->setDevice(device), statusOk);
    EXPECT_EQ(unit->sampleRate(), this->rateHz);

    ASSERT_EQ(unit->start(this->tones(440, 1000, -20)), statusOk);

    const std::string& uid = this->interface4.uid;
    ASSERT_TRUE(this->rig.wait([&] { return this->heardDb(uid, 1, 440) > -30; }));
    EXPECT_TRUE(this->hears(uid, 1, 440, -20));
    EXPECT_TRUE(this->hears(uid, 2, 1000, -20));
    EXPECT_LT(this->heardDb(uid, 1, 1000), this->silentDb);
    EXPECT_LT(this->heardDb(uid, 3, 440), this->silentDb);
}

TYPED_TEST_P(AudioUnitsContract, PlaysIntoTheChannelsOfItsMap) {
    const AudioObjectID device = this->make(this->interface4);
    auto unit = this->rig.units().makeOutput();
    ASSERT_EQ(unit->setDevice(device), statusOk);
    ASSERT_EQ(unit->setChannelMap(std::vector<std::int32_t>{-1, -1, 0, 1}), statusOk);

    ASSERT_EQ(unit->start(this->tones(440, 1000, -20)), statusOk);

    const std::string& uid = this->interface4.uid;
    ASSERT_TRUE(this->rig.wait([&] { return this->heardDb(uid, 3, 440) > -30; }));
    EXPECT_TRUE(this->hears(uid, 3, 440, -20));
    EXPECT_TRUE(this->hears(uid, 4, 1000, -20));
    EXPECT_LT(this->heardDb(uid, 1, 440), this->silentDb);
    EXPECT_LT(this->heardDb(uid, 2, 1000), this->silentDb);
}

TYPED_TEST_P(AudioUnitsContract, CallsAnOutputNoMoreOnceItStopped) {
    const AudioObjectID device = this->make(this->speakers);
    auto unit = this->rig.units().makeOutput();
    ASSERT_EQ(unit->setDevice(device), statusOk);
    const auto calls = std::make_shared<std::atomic<int>>(0);
    ASSERT_EQ(unit->start([calls](std::int64_t frames, std::span<float* const> output) {
        for (float* channel : output) {
            std::fill_n(channel, frames, 0.0F);
        }
        ++*calls;
    }),
              statusOk);
    ASSERT_TRUE(this->rig.wait([&] { return *calls > 10; }));

    unit->stop();

    const int atStop = *calls;
    this->rig.listen(this->speakers.uid, 1, this->listenedFrames);
    EXPECT_EQ(*calls, atStop);
}

TYPED_TEST_P(AudioUnitsContract, RecordsEveryChannelOfADevice) {
    const AudioObjectID device = this->make(this->interface4);
    this->rig.feed(this->interface4.uid, 3, 700, -12);
    auto unit = this->rig.units().makeInput();
    ASSERT_NE(unit, nullptr);
    EXPECT_EQ(unit->channelCount(), 0U);
    ASSERT_EQ(unit->setDevice(device), statusOk);
    EXPECT_EQ(unit->channelCount(), 4U);
    EXPECT_EQ(unit->sampleRate(), this->rateHz);
    const auto fed = std::make_shared<BlockCollector>(this->settledFrames);
    const auto quiet = std::make_shared<BlockCollector>(this->settledFrames);

    ASSERT_EQ(unit->start([=](std::int64_t frames, std::span<const float* const> channels) {
        const auto size = static_cast<std::size_t>(frames);
        if (channels.size() == 4) {
            fed->add({channels[2], size});
            quiet->add({channels[1], size});
        }
    }),
              statusOk);

    ASSERT_TRUE(this->rig.wait([&] { return fed->isFull(); }));
    EXPECT_NEAR(support::toneDb(fed->latest(this->listenedFrames), 700), -12, this->tolerance);
    EXPECT_LT(support::toneDb(quiet->latest(this->listenedFrames), 700), this->silentDb);

    unit->stop();
    const std::size_t atStop = fed->blocks();
    this->rig.listen(this->interface4.uid, 1, this->listenedFrames);
    EXPECT_EQ(fed->blocks(), atStop);
}

TYPED_TEST_P(AudioUnitsContract, RecordsOnlyTheChannelsThatAreUsed) {
    const AudioObjectID device = this->make(this->interface4);
    this->rig.feed(this->interface4.uid, 3, 700, -12);
    auto unit = this->rig.units().makeInput();
    EXPECT_NE(unit->setChannels(0, 1), statusOk) << "of no device";
    ASSERT_EQ(unit->setDevice(device), statusOk);
    EXPECT_NE(unit->setChannels(3, 2), statusOk);
    EXPECT_NE(unit->setChannels(4, 1), statusOk);
    EXPECT_NE(unit->setChannels(0, 0), statusOk);
    ASSERT_EQ(unit->setChannels(2, 2), statusOk);
    EXPECT_EQ(unit->channelCount(), 4U);
    const auto fed = std::make_shared<BlockCollector>(this->settledFrames);

    ASSERT_EQ(unit->start([=](std::int64_t frames, std::span<const float* const> channels) {
        if (channels.size() == 2) {
            fed->add({channels[0], static_cast<std::size_t>(frames)});
        }
    }),
              statusOk);

    ASSERT_TRUE(this->rig.wait([&] { return fed->isFull(); }));
    EXPECT_NEAR(support::toneDb(fed->latest(this->listenedFrames), 700), -12, this->tolerance);
    EXPECT_NE(unit->setChannels(0, 1), statusOk) << "while it runs";
}

TYPED_TEST_P(AudioUnitsContract, RefusesAnOutputWhoseDeviceIsGone) {
    const AudioObjectID device = this->make(this->speakers);
    auto unit = this->rig.units().makeOutput();
    ASSERT_EQ(unit->setDevice(device), statusOk);
    this->rig.removeDevice(this->speakers.uid);
    ASSERT_TRUE(this->rig.wait([&] { return !this->find(this->speakers.uid); }));

    EXPECT_NE(unit->start(this->tones(440, 440, -20)), statusOk);
}

TYPED_TEST_P(AudioUnitsContract, RefusesADeviceThatItDoesNotKnow) {
    EXPECT_NE(this->rig.units().makeOutput()->setDevice(TestFixture::noSuchObject), statusOk);
    EXPECT_NE(this->rig.units().makeInput()->setDevice(TestFixture::noSuchObject), statusOk);
}

TYPED_TEST_P(AudioUnitsContract, RefusesAnOutputsStepsBeforeItHasADevice) {
    auto unit = this->rig.units().makeOutput();

    EXPECT_NE(unit->setChannelMap(std::vector<std::int32_t>{0, 1}), statusOk);
    EXPECT_NE(unit->start(this->tones(440, 440, -20)), statusOk);
    EXPECT_EQ(unit->sampleRate(), 0.0);
    EXPECT_TRUE(unit->isAlive());
}

TYPED_TEST_P(AudioUnitsContract, RefusesAnInputsStartBeforeItHasADevice) {
    auto unit = this->rig.units().makeInput();

    EXPECT_NE(unit->start(this->nothing()), statusOk);
    EXPECT_EQ(unit->channelCount(), 0U);
    EXPECT_EQ(unit->sampleRate(), 0.0);
}

TYPED_TEST_P(AudioUnitsContract, RefusesAnotherSetUpWhileAnOutputRuns) {
    const AudioObjectID device = this->make(this->interface4);
    auto unit = this->outputOn(device);
    ASSERT_EQ(unit->start(this->tones(440, 440, -20)), statusOk);

    EXPECT_NE(unit->setDevice(device), statusOk);
    EXPECT_NE(unit->setChannelMap(std::vector<std::int32_t>{-1, -1, 0, 1}), statusOk);
    EXPECT_NE(unit->start(this->tones(1000, 1000, -20)), statusOk);

    EXPECT_TRUE(this->hears(this->interface4.uid, 1, 440, -20));
}

TYPED_TEST_P(AudioUnitsContract, RefusesAnotherSetUpWhileAnInputRuns) {
    const AudioObjectID device = this->make(this->interface4);
    auto unit = this->rig.units().makeInput();
    ASSERT_EQ(unit->setDevice(device), statusOk);
    ASSERT_EQ(unit->start(this->nothing()), statusOk);

    EXPECT_NE(unit->setDevice(device), statusOk);
    EXPECT_NE(unit->start(this->nothing()), statusOk);
}

TYPED_TEST_P(AudioUnitsContract, PlaysAgainAfterAStop) {
    auto unit = this->outputOn(this->make(this->speakers));
    ASSERT_EQ(unit->start(this->tones(440, 440, -20)), statusOk);
    unit->stop();

    ASSERT_EQ(unit->start(this->tones(1000, 1000, -20)), statusOk);

    EXPECT_TRUE(this->hears(this->speakers.uid, 1, 1000, -20));
}

TYPED_TEST_P(AudioUnitsContract, RefusesAMapThatIsNotTheDevices) {
    auto unit = this->outputOn(this->make(this->interface4));

    for (const std::vector<std::int32_t>& map :
         {std::vector<std::int32_t>{0, 1}, {0, 1, -1, -1, -1}, {0, 2, -1, -1}, {0, -2, -1, -1}}) {
        EXPECT_EQ(unit->setChannelMap(map), TestFixture::invalidArgument);
    }
}

TYPED_TEST_P(AudioUnitsContract, RefusesAnEmptyCallback) {
    const AudioObjectID device = this->make(this->interface4);
    auto output = this->outputOn(device);
    auto input = this->rig.units().makeInput();
    ASSERT_EQ(input->setDevice(device), statusOk);

    EXPECT_EQ(output->start(nullptr), TestFixture::invalidArgument);
    EXPECT_EQ(input->start(nullptr), TestFixture::invalidArgument);
}

TYPED_TEST_P(AudioUnitsContract, PlaysOnToADeviceThatComesBack) {
    auto unit = this->outputOn(this->make(this->speakers));
    ASSERT_EQ(unit->start(this->tones(440, 440, -20)), statusOk);

    this->remove(this->speakers);
    EXPECT_TRUE(unit->isAlive());
    this->make(this->speakers);

    EXPECT_TRUE(this->hears(this->speakers.uid, 1, 440, -20));
    EXPECT_TRUE(unit->isAlive());
}

TYPED_TEST_P(AudioUnitsContract, AreDeadForGoodOnceTheServiceWent) {
    const AudioObjectID device = this->make(this->interface4);
    auto output = this->outputOn(device);
    auto input = this->rig.units().makeInput();
    ASSERT_EQ(input->setDevice(device), statusOk);
    ASSERT_EQ(output->start(this->tones(440, 440, -20)), statusOk);
    ASSERT_EQ(input->start(this->nothing()), statusOk);
    EXPECT_TRUE(output->isAlive());
    EXPECT_TRUE(input->isAlive());

    this->loseService();
    EXPECT_TRUE(this->rig.wait([&] { return !output->isAlive() && !input->isAlive(); }));
    this->returnService();
    this->make(this->interface4);

    EXPECT_FALSE(output->isAlive());
    EXPECT_FALSE(input->isAlive());
    output->stop();
    EXPECT_NE(output->start(this->tones(440, 440, -20)), statusOk);
    EXPECT_FALSE(output->isAlive());
    auto next = this->outputOn(device);
    EXPECT_EQ(next->start(this->tones(440, 440, -20)), statusOk);
    EXPECT_TRUE(next->isAlive());
}

TYPED_TEST_P(AudioUnitsContract, AsksForBlocksOfAtLeastSoManyFrames) {
    const AudioObjectID device = this->make(this->interface4);
    AudioUnits& units = this->rig.units();
    EXPECT_EQ(units.blocks().frames, 0U);
    EXPECT_EQ(units.blocks().isRealTime, std::nullopt);
    auto unit = this->outputOn(device);
    ASSERT_EQ(unit->start(this->tones(440, 1000, -20)), statusOk);
    const auto haveFrames = [&](std::uint32_t frames) {
        return this->rig.wait([&] { return units.blocks().frames == frames; });
    };
    EXPECT_TRUE(haveFrames(128));

    units.askForBlocksOf(1024);
    EXPECT_TRUE(haveFrames(1024));
    units.askForBlocksOf(0);
    EXPECT_TRUE(haveFrames(128));

    EXPECT_NE(units.blocks().isRealTime, std::nullopt);
    unit.reset();
    EXPECT_TRUE(haveFrames(0));
}

TYPED_TEST_P(AudioUnitsContract, AsksForThemOnceAUnitStarts) {
    const AudioObjectID device = this->make(this->interface4);
    this->rig.units().askForBlocksOf(512);
    auto unit = this->outputOn(device);

    ASSERT_EQ(unit->start(this->tones(440, 1000, -20)), statusOk);

    EXPECT_TRUE(this->rig.wait([&] { return this->rig.units().blocks().frames == 512; }));
}

REGISTER_TYPED_TEST_SUITE_P(AudioUnitsContract,
                            AsksForBlocksOfAtLeastSoManyFrames,
                            AsksForThemOnceAUnitStarts,
                            PlaysAPairIntoADevicesFirstTwoChannels,
                            PlaysIntoTheChannelsOfItsMap,
                            CallsAnOutputNoMoreOnceItStopped,
                            RecordsEveryChannelOfADevice,
                            RecordsOnlyTheChannelsThatAreUsed,
                            RefusesAnOutputWhoseDeviceIsGone,
                            RefusesADeviceThatItDoesNotKnow,
                            RefusesAnOutputsStepsBeforeItHasADevice,
                            RefusesAnInputsStartBeforeItHasADevice,
                            RefusesAnotherSetUpWhileAnOutputRuns,
                            RefusesAnotherSetUpWhileAnInputRuns,
                            PlaysAgainAfterAStop,
                            RefusesAMapThatIsNotTheDevices,
                            RefusesAnEmptyCallback,
                            PlaysOnToADeviceThatComesBack,
                            AreDeadForGoodOnceTheServiceWent);

} // namespace velmora
