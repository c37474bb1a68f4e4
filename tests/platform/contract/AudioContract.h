// AudioContract.h: what every audio layer does: AudioHardware and AudioUnits on one machine.
#pragma once

#include "platform/AudioHardware.h"
#include "platform/AudioUnits.h"
#include "platform/contract/BlockCollector.h"
#include "support/ToneAnalysis.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <numbers>
#include <numeric>
#include <optional>
#include <string>
#include <vector>

namespace velmora {

/// A device that a rig brings up for a test.
struct ContractDevice {
    std::string uid;
    std::string name;
    std::uint32_t outputs{};
    std::uint32_t inputs{};
};

/// A rig is a machine that runs at 48 kHz and has
/// - `hardware()` and `units()`;
/// - `makeDevice(ContractDevice)`, `removeDevice(uid)`, `makeDefault(uid)` (the default output);
/// - `playTone(name, hz, db)`: starts an application that plays a sine on both channels of the
///   default output; returns its process id;
/// - `feed(uid, channel, hz, db)`: from now on the device's input channel (1-based) carries a sine,
///   and its other channels are silent;
/// - `listen(uid, channel, frames)`: what the device's output channel (1-based) plays from now on;
/// - `wait(condition)`: lets time pass and runs the main queue until the condition holds; false
///   when it gave up.
template <typename Rig>
class AudioContract : public testing::Test {
protected:
    static constexpr std::size_t listenedFrames = 12000; // a quarter of a second
    static constexpr std::size_t settledFrames = 48000;  // routes are in place by then
    static constexpr double tolerance = 0.2;             // dB
    static constexpr double silentDb = -80.0;
    static constexpr double rateHz = 48000.0;
    static constexpr AudioObjectID noSuchObject = 0xFFFF'FFF0U;

    const ContractDevice speakers{.uid = "contract.speakers", .name = "Speakers", .outputs = 2};
    const ContractDevice interface4{
        .uid = "contract.interface", .name = "Interface", .outputs = 4, .inputs = 4};

    AudioHardware& hardware() { return rig.hardware(); }

    std::optional<AudioObjectID> find(const std::string& uid) {
        for (const AudioObjectID device :
             hardware().devices().value_or(std::vector<AudioObjectID>{})) {
            if (hardware().deviceUID(device) == uid) {
                return device;
            }
        }
        return std::nullopt;
    }

    AudioObjectID make(const ContractDevice& device) {
        rig.makeDevice(device);
        EXPECT_TRUE(rig.wait([&] { return find(device.uid).has_value(); })) << device.uid;
        return find(device.uid).value_or(0);
    }

    AudioObjectID makeDefaultSpeakers() {
        const AudioObjectID device = make(speakers);
        rig.makeDefault(speakers.uid);
        EXPECT_TRUE(rig.wait([&] { return hardware().defaultOutputDevice() == device; }));
        return device;
    }

    std::uint32_t channels(AudioObjectID device, Scope scope) {
        const auto streams = hardware().streamChannels(device, scope);
        return streams ? std::accumulate(streams->begin(), streams->end(), 0U) : 0;
    }

    double heardDb(const std::string& uid, std::size_t channel, double hz) {
        return support::toneDb(rig.listen(uid, channel, listenedFrames), hz);
    }

    /// Listens until the tone has that level: a machine under load loses a block now and then.
    bool hears(const std::string& uid, std::size_t channel, double hz, double db) {
        return rig.wait([&] { return std::abs(heardDb(uid, channel, hz) - db) < tolerance; });
    }

    /// The process object of an application that has begun to play.
    AudioObjectID processOf(std::int32_t pid) {
        EXPECT_TRUE(rig.wait([&] { return hardware().processForPid(pid).value_or(0) != 0; }));
        return hardware().processForPid(pid).value_or(0);
    }

    /// Plays a different sine on either side.
    static RenderCallback tones(double leftHz, double rightHz, double db) {
        return [=, frame = std::int64_t{0}](std::int64_t frames,
                                            std::span<float* const> output) mutable {
            for (std::int64_t index = 0; index < frames; ++index, ++frame) {
                const auto at = static_cast<double>(frame) / rateHz;
                const double level = support::fromDb(db);
                output[0][index] =
                    static_cast<float>(level * std::sin(2 * std::numbers::pi * leftHz * at));
                output[1][index] =
                    static_cast<float>(level * std::sin(2 * std::numbers::pi * rightHz * at));
            }
        };
    }

    /// A tap on one process with its private device, as a capture of an application makes them.
    struct Tap {
        AudioHardware& hardware;
        AudioObjectID tap{};
        AudioObjectID aggregate{};
        IOProcID proc{};
        std::shared_ptr<BlockCollector> collected =
            std::make_shared<BlockCollector>(2 * settledFrames);

        Tap(AudioHardware& machine, AudioObjectID process, MuteBehavior mute) : hardware(machine) {
            tap = hardware.createTap({.process = process, .uuid = "contract-tap", .mute = mute})
                      .value_or(0);
            AggregateDescription description;
            description.name = "Velmora Tap";
            description.uid = "contract-tap-device";
            description.isPrivate = true;
            description.tapAutoStart = true;
            description.taps = {"contract-tap"};
            aggregate = hardware.createAggregate(description).value_or(0);
            proc = hardware
                       .createIOProc(aggregate,
                                     [kept = collected](std::span<IOBuffer> buffers) {
                                         for (const IOBuffer& buffer : buffers) {
                                             const auto size =
                                                 static_cast<std::size_t>(buffer.samples);
                                             if (buffer.data != nullptr) {
                                                 kept->add({buffer.data, size});
                                             }
                                         }
                                     })
                       .value_or(0);
        }
        Tap(const Tap&) = delete;
        Tap& operator=(const Tap&) = delete;
        ~Tap() { release(); }

        Status start() const { return hardware.startDevice(aggregate, proc); }
        Status stop() const { return hardware.stopDevice(aggregate, proc); }
        void release() {
            if (tap != 0) {
                stop();
                EXPECT_EQ(hardware.destroyIOProc(aggregate, proc), statusOk);
                EXPECT_EQ(hardware.destroyAggregate(aggregate), statusOk);
                EXPECT_EQ(hardware.destroyTap(tap), statusOk);
                tap = 0;
            }
        }
        double latestDb(std::size_t side, double hz) const {
            return support::toneDb(sideOf(collected->latest(2 * listenedFrames), side), hz);
        }
        bool hearsBoth(double hz, double db, double tolerance) const {
            return collected->isFull() && std::abs(latestDb(0, hz) - db) < tolerance &&
                   std::abs(latestDb(1, hz) - db) < tolerance;
        }
    };

    Rig rig;
};

TYPED_TEST_SUITE_P(AudioContract);

TYPED_TEST_P(AudioContract, DescribesADeviceInBothDirections) {
    const AudioObjectID device = this->make(this->interface4);

    EXPECT_NE(device, 0U);
    EXPECT_EQ(this->hardware().deviceName(device), this->interface4.name);
    EXPECT_EQ(this->channels(device, Scope::output), 4U);
    EXPECT_EQ(this->channels(device, Scope::input), 4U);
    EXPECT_EQ(this->hardware().nominalRate(device), this->rateHz);
}

TYPED_TEST_P(AudioContract, GivesAnOutputNoInputStreams) {
    const AudioObjectID device = this->make(this->speakers);

    EXPECT_EQ(this->hardware().streamChannels(device, Scope::input), std::vector<std::uint32_t>{});
    EXPECT_EQ(this->channels(device, Scope::output), 2U);
}

TYPED_TEST_P(AudioContract, KnowsNothingOfADeviceThatIsGone) {
    const AudioObjectID device = this->make(this->speakers);

    this->rig.removeDevice(this->speakers.uid);

    ASSERT_TRUE(this->rig.wait([&] { return !this->find(this->speakers.uid); }));
    EXPECT_EQ(this->hardware().deviceName(device), std::nullopt);
    EXPECT_EQ(this->hardware().deviceUID(device), std::nullopt);
    EXPECT_EQ(this->hardware().streamChannels(device, Scope::output), std::nullopt);
    EXPECT_EQ(this->hardware().transport(device), std::nullopt);
    EXPECT_EQ(this->hardware().nominalRate(device), std::nullopt);
}

TYPED_TEST_P(AudioContract, GivesADeviceItsOldIdWhenItComesBack) {
    const AudioObjectID before = this->make(this->interface4);
    this->rig.removeDevice(this->interface4.uid);
    ASSERT_TRUE(this->rig.wait([&] { return !this->find(this->interface4.uid); }));

    EXPECT_EQ(this->make(this->interface4), before);
}

TYPED_TEST_P(AudioContract, ListsDevicesInTheOrderInWhichTheyCame) {
    const AudioObjectID first = this->make(this->interface4);
    const AudioObjectID second = this->make(this->speakers);

    const auto ids = this->hardware().devices().value_or(std::vector<AudioObjectID>{});

    EXPECT_LT(std::ranges::find(ids, first), std::ranges::find(ids, second));
}

TYPED_TEST_P(AudioContract, TellsADefaultOutputChangeOnTheMainQueue) {
    this->makeDefaultSpeakers();
    const AudioObjectID other = this->make(this->interface4);
    const auto told = std::make_shared<std::atomic<int>>(0);
    this->hardware().onDefaultOutputChange([told] { ++*told; });

    this->rig.makeDefault(this->interface4.uid);

    EXPECT_EQ(*told, 0) << "told outside the main queue";
    EXPECT_TRUE(this->rig.wait([&] { return *told > 0; }));
    EXPECT_EQ(this->hardware().defaultOutputDevice(), other);
}

TYPED_TEST_P(AudioContract, PlaysAPairIntoADevicesFirstTwoChannels) {
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

TYPED_TEST_P(AudioContract, PlaysIntoTheChannelsOfItsMap) {
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

TYPED_TEST_P(AudioContract, CallsAnOutputNoMoreOnceItStopped) {
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

TYPED_TEST_P(AudioContract, RecordsEveryChannelOfADevice) {
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

TYPED_TEST_P(AudioContract, HasAProcessObjectForAnApplicationThatPlays) {
    this->makeDefaultSpeakers();
    const std::int32_t pid = this->rig.playTone("player", 440, -20);

    const AudioObjectID process = this->processOf(pid);

    ASSERT_NE(process, 0U);
    const auto all = this->hardware().processObjects().value_or(std::vector<AudioObjectID>{});
    EXPECT_EQ(std::ranges::count(all, process), 1);
    EXPECT_EQ(this->hardware().processPid(process), pid);
    EXPECT_TRUE(
        this->rig.wait([&] { return this->hardware().processIsRunningOutput(process) == true; }));
}

TYPED_TEST_P(AudioContract, TapsOneApplicationAndNoOther) {
    this->makeDefaultSpeakers();
    const std::int32_t pid = this->rig.playTone("wanted", 440, -20);
    this->processOf(this->rig.playTone("other", 1000, -20));

    const typename TestFixture::Tap tap(
        this->hardware(), this->processOf(pid), MuteBehavior::unmuted);
    ASSERT_EQ(tap.start(), statusOk);

    ASSERT_TRUE(this->rig.wait([&] { return tap.hearsBoth(440, -20, this->tolerance); }));
    EXPECT_TRUE(this->rig.wait([&] { return tap.latestDb(0, 1000) < this->silentDb; }));
    EXPECT_TRUE(this->hears(this->speakers.uid, 1, 440, -20));
}

TYPED_TEST_P(AudioContract, SilencesAMutedApplicationWhileItIsTapped) {
    this->makeDefaultSpeakers();
    const AudioObjectID process = this->processOf(this->rig.playTone("player", 440, -20));
    const std::string& uid = this->speakers.uid;
    ASSERT_TRUE(this->rig.wait([&] { return this->heardDb(uid, 1, 440) > -30; }));

    typename TestFixture::Tap tap(this->hardware(), process, MuteBehavior::mutedWhenTapped);
    ASSERT_EQ(tap.start(), statusOk);

    EXPECT_TRUE(this->rig.wait([&] { return this->heardDb(uid, 1, 440) < this->silentDb; }));
    EXPECT_TRUE(this->rig.wait([&] { return tap.hearsBoth(440, -20, this->tolerance); }));

    tap.release();

    EXPECT_TRUE(this->rig.wait([&] { return this->heardDb(uid, 1, 440) > -30; }));
    EXPECT_TRUE(this->hears(uid, 1, 440, -20));
}

TYPED_TEST_P(AudioContract, CallsATapNoMoreOnceItStopped) {
    this->makeDefaultSpeakers();
    const AudioObjectID process = this->processOf(this->rig.playTone("player", 440, -20));
    const typename TestFixture::Tap tap(this->hardware(), process, MuteBehavior::unmuted);
    ASSERT_EQ(tap.start(), statusOk);
    ASSERT_TRUE(this->rig.wait([&] { return tap.collected->blocks() > 10; }));

    EXPECT_EQ(tap.stop(), statusOk);

    const std::size_t atStop = tap.collected->blocks();
    this->rig.listen(this->speakers.uid, 1, this->listenedFrames);
    EXPECT_EQ(tap.collected->blocks(), atStop);
}

TYPED_TEST_P(AudioContract, NeverListsATapsDevice) {
    this->makeDefaultSpeakers();
    const AudioObjectID process = this->processOf(this->rig.playTone("player", 440, -20));

    const typename TestFixture::Tap tap(this->hardware(), process, MuteBehavior::unmuted);
    ASSERT_EQ(tap.start(), statusOk);

    ASSERT_TRUE(this->rig.wait([&] { return tap.collected->blocks() > 10; }));
    EXPECT_EQ(this->hardware().nominalRate(tap.aggregate), this->rateHz);
    for (const AudioObjectID device :
         this->hardware().devices().value_or(std::vector<AudioObjectID>{})) {
        EXPECT_NE(this->hardware().deviceName(device), "Velmora Tap");
    }
}

TYPED_TEST_P(AudioContract, RefusesWhatItDoesNotKnow) {
    constexpr AudioObjectID unknown = TestFixture::noSuchObject;
    AudioHardware& hardware = this->hardware();

    EXPECT_EQ(hardware.deviceName(unknown), std::nullopt);
    EXPECT_EQ(hardware.processPid(unknown), std::nullopt);
    EXPECT_EQ(hardware.processForPid(-1).value_or(0), 0U);
    EXPECT_FALSE(hardware.createTap({.process = unknown, .uuid = "nobody"}).has_value());
    EXPECT_FALSE(hardware.createIOProc(unknown, [](std::span<IOBuffer>) {}).has_value());
    EXPECT_NE(hardware.startDevice(unknown, 1), statusOk);
    EXPECT_NE(hardware.stopDevice(unknown, 1), statusOk);
    EXPECT_NE(hardware.destroyIOProc(unknown, 1), statusOk);
    EXPECT_NE(hardware.destroyAggregate(unknown), statusOk);
    EXPECT_NE(hardware.destroyTap(unknown), statusOk);
    EXPECT_NE(this->rig.units().makeOutput()->setDevice(unknown), statusOk);
    EXPECT_NE(this->rig.units().makeInput()->setDevice(unknown), statusOk);
}

TYPED_TEST_P(AudioContract, RefusesAnOutputWhoseDeviceIsGone) {
    const AudioObjectID device = this->make(this->speakers);
    auto unit = this->rig.units().makeOutput();
    ASSERT_EQ(unit->setDevice(device), statusOk);
    this->rig.removeDevice(this->speakers.uid);
    ASSERT_TRUE(this->rig.wait([&] { return !this->find(this->speakers.uid); }));

    EXPECT_NE(unit->start(this->tones(440, 440, -20)), statusOk);
}

REGISTER_TYPED_TEST_SUITE_P(AudioContract,
                            DescribesADeviceInBothDirections,
                            GivesAnOutputNoInputStreams,
                            KnowsNothingOfADeviceThatIsGone,
                            GivesADeviceItsOldIdWhenItComesBack,
                            ListsDevicesInTheOrderInWhichTheyCame,
                            TellsADefaultOutputChangeOnTheMainQueue,
                            PlaysAPairIntoADevicesFirstTwoChannels,
                            PlaysIntoTheChannelsOfItsMap,
                            CallsAnOutputNoMoreOnceItStopped,
                            RecordsEveryChannelOfADevice,
                            HasAProcessObjectForAnApplicationThatPlays,
                            TapsOneApplicationAndNoOther,
                            SilencesAMutedApplicationWhileItIsTapped,
                            CallsATapNoMoreOnceItStopped,
                            NeverListsATapsDevice,
                            RefusesWhatItDoesNotKnow,
                            RefusesAnOutputWhoseDeviceIsGone);

} // namespace velmora
