// ApplicationTapsContract.h: the applications that every audio layer hears, and its taps.
#pragma once

#include "platform/contract/AudioContract.h"
#include "platform/contract/BlockCollector.h"

#include <limits>

namespace velmora {

template <typename Rig>
class ApplicationTapsContract : public AudioContract<Rig> {
protected:
    using Mute = ApplicationTaps::Mute;

    /// A tap that keeps the beginning of what it hears.
    class Listener {
    public:
        Listener(ApplicationTaps& taps, AudioObjectID process, Mute mute, float divisor) {
            auto opened =
                taps.open(process, mute, divisor, [kept = collected](const TapBlock& block) {
                    if (block.data != nullptr) {
                        kept->add({block.data, static_cast<std::size_t>(block.samples)});
                    }
                });
            EXPECT_TRUE(opened.has_value());
            if (opened) {
                tap = *std::move(opened);
            }
        }

        [[nodiscard]] double latestDb(std::size_t side, double hz) const {
            return support::toneDb(
                sideOf(collected->latest(2 * AudioContract<Rig>::listenedFrames), side), hz);
        }
        [[nodiscard]] bool hearsBoth(double hz, double db) const {
            const auto isThere = [&](std::size_t side) {
                return std::abs(latestDb(side, hz) - db) < AudioContract<Rig>::tolerance;
            };
            return collected->isFull() && isThere(0) && isThere(1);
        }

        const std::shared_ptr<BlockCollector> collected =
            std::make_shared<BlockCollector>(2 * AudioContract<Rig>::settledFrames);
        std::unique_ptr<ApplicationTap> tap;
    };

    Listener listenTo(AudioObjectID process, Mute mute = Mute::no, float divisor = 1.0F) {
        return {this->rig.taps(), process, mute, divisor};
    }
    AudioObjectID player() { return this->processOf(this->rig.playTone("player", 440, -20)); }
};

TYPED_TEST_SUITE_P(ApplicationTapsContract);

TYPED_TEST_P(ApplicationTapsContract, HasAProcessObjectForAnApplicationThatPlays) {
    this->makeDefaultSpeakers();
    const std::int32_t pid = this->rig.playTone("player", 440, -20);

    const AudioObjectID process = this->processOf(pid);

    ASSERT_NE(process, 0U);
    const auto all = this->rig.taps().processObjects().value_or(std::vector<AudioObjectID>{});
    EXPECT_EQ(std::ranges::count(all, process), 1);
    EXPECT_EQ(this->rig.taps().processPid(process), pid);
    EXPECT_TRUE(
        this->rig.wait([&] { return this->rig.taps().processIsRunningOutput(process) == true; }));
}

TYPED_TEST_P(ApplicationTapsContract, HearsOneApplicationAndNoOther) {
    this->makeDefaultSpeakers();
    const AudioObjectID wanted = this->player();
    this->processOf(this->rig.playTone("other", 1000, -20));

    const auto listener = this->listenTo(wanted);

    ASSERT_TRUE(this->rig.wait([&] { return listener.hearsBoth(440, -20); }));
    EXPECT_TRUE(this->rig.wait([&] { return listener.latestDb(0, 1000) < this->silentDb; }));
    EXPECT_TRUE(this->hears(this->speakers.uid, 1, 440, -20));
    EXPECT_EQ(this->rig.taps().tapRate(), this->rateHz);
}

TYPED_TEST_P(ApplicationTapsContract, DividesTheMixdownAsItIsAskedTo) {
    this->makeDefaultSpeakers();

    const auto listener = this->listenTo(this->player(), ApplicationTaps::Mute::no, 4.0F);

    EXPECT_TRUE(this->rig.wait([&] { return listener.hearsBoth(440, -20 + support::toDb(0.25)); }));
}

TYPED_TEST_P(ApplicationTapsContract, SilencesAMutedApplicationWhileItIsTapped) {
    this->makeDefaultSpeakers();
    const AudioObjectID process = this->player();
    const std::string& uid = this->speakers.uid;
    ASSERT_TRUE(this->rig.wait([&] { return this->heardDb(uid, 1, 440) > -30; }));

    auto listener = this->listenTo(process, ApplicationTaps::Mute::whileTapped);

    EXPECT_TRUE(this->rig.wait([&] { return this->heardDb(uid, 1, 440) < this->silentDb; }));
    EXPECT_TRUE(this->rig.wait([&] { return listener.hearsBoth(440, -20); }));

    listener.tap.reset();

    EXPECT_TRUE(this->rig.wait([&] { return this->heardDb(uid, 1, 440) > -30; }));
    EXPECT_TRUE(this->hears(uid, 1, 440, -20));
}

TYPED_TEST_P(ApplicationTapsContract, CallsATapNoMoreOnceItIsDestroyed) {
    this->makeDefaultSpeakers();
    auto listener = this->listenTo(this->player());
    ASSERT_TRUE(this->rig.wait([&] { return listener.collected->blocks() > 10; }));

    listener.tap.reset();

    const std::size_t atEnd = listener.collected->blocks();
    this->rig.listen(this->speakers.uid, 1, this->listenedFrames);
    EXPECT_EQ(listener.collected->blocks(), atEnd);
}

TYPED_TEST_P(ApplicationTapsContract, ListsNoDeviceOfATap) {
    this->makeDefaultSpeakers();
    const AudioObjectID process = this->player();
    const auto before = this->listed();

    const auto listener = this->listenTo(process, ApplicationTaps::Mute::whileTapped);

    ASSERT_TRUE(this->rig.wait([&] { return listener.collected->blocks() > 10; }));
    EXPECT_EQ(this->listed(), before);
}

TYPED_TEST_P(ApplicationTapsContract, KnowsNothingOfWhatIsNotThere) {
    constexpr AudioObjectID unknown = TestFixture::noSuchObject;

    EXPECT_EQ(this->rig.taps().processPid(unknown), std::nullopt);
    EXPECT_EQ(this->rig.taps().processIsRunningOutput(unknown), std::nullopt);
    EXPECT_EQ(this->rig.taps().processForPid(-1).value_or(0), 0U);
}

TYPED_TEST_P(ApplicationTapsContract, TellsTheStepThatItRefuses) {
    this->makeDefaultSpeakers();
    const AudioObjectID process = this->player();
    using Step = TapRefusal::Step;
    constexpr auto no = ApplicationTaps::Mute::no;

    const auto nobody =
        this->rig.taps().open(TestFixture::noSuchObject, no, 1.0F, [](const TapBlock&) {});
    ASSERT_FALSE(nobody.has_value());
    EXPECT_EQ(nobody.error().step, Step::tap);
    EXPECT_NE(nobody.error().status, statusOk);

    const auto unheard = this->rig.taps().open(process, no, 1.0F, nullptr);
    ASSERT_FALSE(unheard.has_value());
    EXPECT_EQ(unheard.error(), (TapRefusal{Step::callback, TestFixture::invalidArgument}));

    for (const float divisor : {0.5F, 0.0F, std::numeric_limits<float>::quiet_NaN()}) {
        const auto louder = this->rig.taps().open(process, no, divisor, [](const TapBlock&) {});
        ASSERT_FALSE(louder.has_value());
        EXPECT_EQ(louder.error(), (TapRefusal{Step::tap, TestFixture::invalidArgument}));
    }
}

TYPED_TEST_P(ApplicationTapsContract, IsDeadForGoodOnceTheServiceWent) {
    this->makeDefaultSpeakers();
    const AudioObjectID process = this->player();
    auto listener = this->listenTo(process, ApplicationTaps::Mute::whileTapped);
    ASSERT_TRUE(this->rig.wait([&] { return listener.collected->blocks() > 10; }));
    EXPECT_TRUE(listener.tap->isAlive());

    this->loseService();
    EXPECT_TRUE(this->rig.wait([&] { return !listener.tap->isAlive(); }));
    EXPECT_EQ(this->rig.taps().processObjects(), std::nullopt);
    EXPECT_EQ(this->rig.taps().tapRate(), std::nullopt);
    const auto refused =
        this->rig.taps().open(process, ApplicationTaps::Mute::no, 1.0F, [](const TapBlock&) {});
    ASSERT_FALSE(refused.has_value());
    EXPECT_EQ(refused.error().step, TapRefusal::Step::tap);

    const std::size_t atLoss = listener.collected->blocks();
    this->returnService();
    this->makeDefaultSpeakers();
    const auto again = this->listenTo(this->player());
    ASSERT_TRUE(this->rig.wait([&] { return again.hearsBoth(440, -20); }));
    EXPECT_FALSE(listener.tap->isAlive());
    EXPECT_EQ(listener.collected->blocks(), atLoss);
    listener.tap.reset();
    EXPECT_TRUE(again.tap->isAlive());
}

REGISTER_TYPED_TEST_SUITE_P(ApplicationTapsContract,
                            HasAProcessObjectForAnApplicationThatPlays,
                            HearsOneApplicationAndNoOther,
                            DividesTheMixdownAsItIsAskedTo,
                            SilencesAMutedApplicationWhileItIsTapped,
                            CallsATapNoMoreOnceItIsDestroyed,
                            ListsNoDeviceOfATap,
                            KnowsNothingOfWhatIsNotThere,
                            TellsTheStepThatItRefuses,
                            IsDeadForGoodOnceTheServiceWent);

} // namespace velmora
