// AudioDevicesContract.h: the devices of every audio layer, and how it tells its changes.
#pragma once

#include "platform/contract/AudioContract.h"

#include <atomic>

namespace velmora {

template <typename Rig>
class AudioDevicesContract : public AudioContract<Rig> {
protected:
    /// Counts in `told` from now on.
    Signal::Connection count(Signal& signal) {
        return signal.connect([this] { ++told; });
    }

    int told = 0;
};

TYPED_TEST_SUITE_P(AudioDevicesContract);

TYPED_TEST_P(AudioDevicesContract, DescribesADeviceInBothDirections) {
    const AudioObjectID device = this->make(this->interface4);

    EXPECT_NE(device, 0U);
    EXPECT_EQ(this->devices().deviceName(device), this->interface4.name);
    EXPECT_EQ(this->channels(device, Scope::output), 4U);
    EXPECT_EQ(this->channels(device, Scope::input), 4U);
    EXPECT_EQ(this->devices().nominalRate(device), this->rateHz);
}

TYPED_TEST_P(AudioDevicesContract, GivesAnOutputNoInputStreams) {
    const AudioObjectID device = this->make(this->speakers);

    EXPECT_EQ(this->devices().streamChannels(device, Scope::input), std::vector<std::uint32_t>{});
    EXPECT_EQ(this->channels(device, Scope::output), 2U);
}

TYPED_TEST_P(AudioDevicesContract, KnowsNothingOfADeviceThatIsGone) {
    const AudioObjectID device = this->make(this->speakers);

    this->rig.removeDevice(this->speakers.uid);

    ASSERT_TRUE(this->rig.wait([&] { return !this->find(this->speakers.uid); }));
    EXPECT_EQ(this->devices().deviceName(device), std::nullopt);
    EXPECT_EQ(this->devices().deviceUID(device), std::nullopt);
    EXPECT_EQ(this->devices().streamChannels(device, Scope::output), std::nullopt);
    EXPECT_EQ(this->devices().transport(device), std::nullopt);
    EXPECT_EQ(this->devices().nominalRate(device), std::nullopt);
}

TYPED_TEST_P(AudioDevicesContract, GivesADeviceItsOldIdWhenItComesBack) {
    const AudioObjectID before = this->make(this->interface4);
    this->rig.removeDevice(this->interface4.uid);
    ASSERT_TRUE(this->rig.wait([&] { return !this->find(this->interface4.uid); }));

    EXPECT_EQ(this->make(this->interface4), before);
}

TYPED_TEST_P(AudioDevicesContract, ListsDevicesInTheOrderInWhichTheyCame) {
    const AudioObjectID first = this->make(this->interface4);
    const AudioObjectID second = this->make(this->speakers);

    const auto ids = this->devices().devices().value_or(std::vector<AudioObjectID>{});

    EXPECT_LT(std::ranges::find(ids, first), std::ranges::find(ids, second));
}

TYPED_TEST_P(AudioDevicesContract, TellsADefaultOutputChangeOnTheMainQueue) {
    this->makeDefaultSpeakers();
    const AudioObjectID other = this->make(this->interface4);
    const auto connection = this->count(this->devices().defaultOutputChanged());

    this->rig.makeDefault(this->interface4.uid);

    EXPECT_EQ(this->told, 0) << "told outside the main queue";
    EXPECT_TRUE(this->rig.wait([&] { return this->told > 0; }));
    EXPECT_EQ(this->devices().defaultOutputDevice(), other);
}

TYPED_TEST_P(AudioDevicesContract, TellsThatADeviceCameOrWent) {
    const auto connection = this->count(this->devices().changed());

    this->make(this->speakers);
    EXPECT_TRUE(this->rig.wait([&] { return this->told > 0; }));

    this->told = 0;
    this->remove(this->speakers);
    EXPECT_TRUE(this->rig.wait([&] { return this->told > 0; }));
}

TYPED_TEST_P(AudioDevicesContract, TellsThatAnApplicationBeganToPlay) {
    this->makeDefaultSpeakers();
    bool wasThereWhenTold = false;
    std::int32_t pid = 0;
    const auto connection = this->devices().changed().connect([&] {
        wasThereWhenTold = wasThereWhenTold || this->rig.taps().processForPid(pid).value_or(0) != 0;
    });

    pid = this->rig.playTone("player", 440, -20);

    EXPECT_TRUE(this->rig.wait([&] { return wasThereWhenTold; }));
}

TYPED_TEST_P(AudioDevicesContract, KnowsWhoRecordsFromADevice) {
    this->makeDefaultSpeakers();
    const AudioObjectID device = this->make(this->recordable);
    const std::int32_t pid = this->rig.playTone("player", 440, -20);
    const AudioObjectID process = this->processOf(pid);
    EXPECT_EQ(this->devices().recorders(device), Recorders{});
    std::optional<Recorders> known;
    const auto connection =
        this->devices().changed().connect([&] { known = this->devices().recorders(device); });

    this->rig.record(pid, this->recordable.uid);
    const Recorders one{.areAny = true, .processes = {process}};
    EXPECT_TRUE(this->rig.wait([&] { return known == one; }));

    this->rig.stopRecording(pid);
    EXPECT_TRUE(this->rig.wait([&] { return known == Recorders{}; }));
}

TYPED_TEST_P(AudioDevicesContract, CountsNoLevelMeterAmongThoseWhoRecord) {
    this->makeDefaultSpeakers();
    const AudioObjectID device = this->make(this->recordable);
    const std::int32_t meter = this->rig.playTone("meter", 440, -20);
    const std::int32_t recorder = this->rig.playTone("recorder", 550, -20);
    const AudioObjectID process = this->processOf(recorder);

    this->rig.measure(meter, this->recordable.uid);
    this->rig.record(recorder, this->recordable.uid);

    ASSERT_TRUE(this->rig.wait(
        [&] { return this->devices().recorders(device).value_or(Recorders{}).areAny; }));
    const Recorders one{.areAny = true, .processes = {process}};
    EXPECT_TRUE(this->rig.wait([&] { return this->devices().recorders(device) == one; }));
    this->rig.stopRecording(recorder);
    EXPECT_TRUE(this->rig.wait([&] { return this->devices().recorders(device) == Recorders{}; }));
}

TYPED_TEST_P(AudioDevicesContract, CountsNotItselfAmongThoseWhoRecord) {
    this->makeDefaultSpeakers();
    const AudioObjectID device = this->make(this->recordable);
    const auto unit = this->rig.units().makeInput();
    std::atomic<std::size_t> heard = 0; // frames
    ASSERT_EQ(unit->setDevice(device), statusOk);
    ASSERT_EQ(unit->start([&](std::int64_t frames, std::span<const float* const>) {
        heard += static_cast<std::size_t>(frames);
    }),
              statusOk);

    ASSERT_TRUE(this->rig.wait([&] { return heard > TestFixture::settledFrames; }));
    EXPECT_EQ(this->devices().recorders(device), Recorders{});
    unit->stop();
}

TYPED_TEST_P(AudioDevicesContract, TellsWhatSomebodyMadeOfAVirtualSource) {
    const AudioObjectID device = this->make(this->recordable);
    EXPECT_TRUE(
        this->rig.wait([&] { return this->devices().recordingVolume(device) == DeviceVolume{}; }));
    const auto unit = this->rig.units().makeInput(); // PipeWire 1.4 turns only what runs
    ASSERT_EQ(unit->setDevice(device), statusOk);
    ASSERT_EQ(unit->start([](std::int64_t, std::span<const float* const>) {}), statusOk);
    std::optional<DeviceVolume> known;
    const auto connection =
        this->devices().changed().connect([&] { known = this->devices().recordingVolume(device); });

    this->rig.turnTo(this->recordable.uid, {.linear = 0.125F, .isMuted = true});
    EXPECT_TRUE(this->rig.wait(
        [&] { return known && known->isMuted && std::abs(known->linear - 0.125F) < 0.001F; }));

    EXPECT_EQ(this->devices().setRecordingVolume(device, {}), statusOk);
    EXPECT_TRUE(this->rig.wait([&] { return known == DeviceVolume{}; }));
}

TYPED_TEST_P(AudioDevicesContract, GivesOnlyVirtualSourcesAVolume) {
    const AudioObjectID device = this->make(this->speakers);

    EXPECT_EQ(this->devices().recordingVolume(device), std::nullopt);
    EXPECT_NE(this->devices().setRecordingVolume(device, {}), statusOk);
    EXPECT_NE(this->devices().setRecordingVolume(TestFixture::noSuchObject, {}), statusOk);
}

TYPED_TEST_P(AudioDevicesContract, TellsThatTheServiceWentAndThatItIsBack) {
    this->makeDefaultSpeakers();
    std::vector<bool> known;
    const auto connection =
        this->devices().changed().connect([&] { known.push_back(this->devices().isAvailable()); });

    this->loseService();
    EXPECT_TRUE(this->rig.wait([&] { return !known.empty() && !known.back(); }));
    EXPECT_EQ(this->devices().devices(), std::nullopt);

    this->returnService();
    EXPECT_TRUE(this->rig.wait([&] { return known.back(); }));
}

TYPED_TEST_P(AudioDevicesContract, TellsTheDefaultOutputOnceTheServiceIsBack) {
    const AudioObjectID device = this->makeDefaultSpeakers();
    const auto connection = this->count(this->devices().defaultOutputChanged());

    this->loseService();
    this->told = 0;
    this->returnService();
    this->make(this->speakers);
    this->rig.makeDefault(this->speakers.uid);

    EXPECT_TRUE(this->rig.wait(
        [&] { return this->told > 0 && this->devices().defaultOutputDevice() == device; }));
}

TYPED_TEST_P(AudioDevicesContract, KnowsNothingOfWhatIsNotThere) {
    constexpr AudioObjectID unknown = TestFixture::noSuchObject;

    EXPECT_EQ(this->devices().deviceName(unknown), std::nullopt);
    EXPECT_EQ(this->devices().recorders(unknown), std::nullopt);
    EXPECT_NE(this->devices().requestBufferFrames(unknown, 128), statusOk);
}

TYPED_TEST_P(AudioDevicesContract, PlaysAPublicSinkIntoBothOfItsMembersUntilItIsRemoved) {
    this->make(this->interface4);
    this->make(this->speakers);
    const PublicSink both{.name = "Both",
                          .uid = "contract.both",
                          .masterUID = this->interface4.uid,
                          .followerUID = this->speakers.uid};
    const auto sink = this->rig.sinks().create(both);
    ASSERT_TRUE(sink.has_value());
    ASSERT_TRUE(this->rig.wait([&] { return this->find("contract.both") == *sink; }));
    EXPECT_NE(this->devices().transport(*sink), Transport::other) << "it has no plug";
    EXPECT_FALSE(this->rig.sinks().create(both).has_value()) << "one at most";

    auto unit = this->rig.units().makeOutput();
    ASSERT_EQ(unit->setDevice(*sink), statusOk);
    ASSERT_EQ(unit->start(this->tones(440, 1000, -20)), statusOk);
    EXPECT_TRUE(this->hears(this->interface4.uid, 1, 440, -20));
    EXPECT_TRUE(this->hears(this->speakers.uid, 2, 1000, -20));
    unit->stop();

    EXPECT_EQ(this->rig.sinks().remove(*sink), statusOk);
    EXPECT_TRUE(this->rig.wait([&] { return !this->find("contract.both"); }));
    EXPECT_NE(this->rig.sinks().remove(*sink), statusOk);
}

TYPED_TEST_P(AudioDevicesContract, RefusesAPublicSinkWithoutItsMembers) {
    this->make(this->speakers);

    EXPECT_FALSE(this->rig.sinks()
                     .create({.name = "Both",
                              .uid = "contract.both",
                              .masterUID = "contract.nobody",
                              .followerUID = this->speakers.uid})
                     .has_value());
    EXPECT_NE(this->rig.sinks().remove(TestFixture::noSuchObject), statusOk);
}

REGISTER_TYPED_TEST_SUITE_P(AudioDevicesContract,
                            DescribesADeviceInBothDirections,
                            GivesAnOutputNoInputStreams,
                            KnowsNothingOfADeviceThatIsGone,
                            GivesADeviceItsOldIdWhenItComesBack,
                            ListsDevicesInTheOrderInWhichTheyCame,
                            TellsADefaultOutputChangeOnTheMainQueue,
                            TellsThatADeviceCameOrWent,
                            TellsThatAnApplicationBeganToPlay,
                            KnowsWhoRecordsFromADevice,
                            CountsNoLevelMeterAmongThoseWhoRecord,
                            CountsNotItselfAmongThoseWhoRecord,
                            TellsWhatSomebodyMadeOfAVirtualSource,
                            GivesOnlyVirtualSourcesAVolume,
                            TellsThatTheServiceWentAndThatItIsBack,
                            TellsTheDefaultOutputOnceTheServiceIsBack,
                            KnowsNothingOfWhatIsNotThere,
                            PlaysAPublicSinkIntoBothOfItsMembersUntilItIsRemoved,
                            RefusesAPublicSinkWithoutItsMembers);

} // namespace velmora
