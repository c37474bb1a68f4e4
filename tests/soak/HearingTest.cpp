#include "soak/Hearing.h"

#include "soak/Action.h"
#include "soak/Devices.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace velmora::soak {
namespace {

using Kind = Action::Kind;

/// A player and the guitar in a mix that is on; the other player is a bystander.
class SoakHearing : public testing::Test {
protected:
    SoakHearing() {
        for (const int player : {1, 2}) {
            follow(world, {.kind = Kind::open, .number = player, .pid = 70 + player});
            follow(world, {.kind = Kind::play, .number = player, .stream = 1});
        }
        follow(world, {.kind = Kind::add, .word = word});
        follow(world, {.kind = Kind::add, .word = guitar});
        follow(world, {.kind = Kind::start});
    }

    [[nodiscard]] Expected at(Ear ear, double tone) const {
        const auto all = expectedIn(world);
        const auto found = std::ranges::find_if(
            all, [&](const Expected& one) { return one.ear == ear && one.hz == tone; });
        EXPECT_NE(found, all.end());
        return found == all.end() ? Expected{} : *found;
    }

    World world{2};
    const std::string word = Player{.number = 1, .pid = 71, .streams = {}}.word();
    const double hz = toneOf(1, 1);
};

TEST_F(SoakHearing, EveryToneIsApartFromTheOthersAndFromWhatTwoOfThemWouldMake) {
    std::vector<double> all{guitarTone()};
    for (int player = 1; player <= 4; ++player) {
        all.push_back(toneOf(player, 1));
        all.push_back(toneOf(player, 2));
    }
    constexpr double told = 4 * 4; // Hz, by a Hann window of a quarter of a second
    for (const double a : all) {
        for (const double b : all) {
            for (const double c : all) {
                if (a != b && c != a) {
                    EXPECT_GT(std::abs(2 * a - b - c), b == c ? 0 : told)
                        << a << ' ' << b << ' ' << c;
                    EXPECT_GT(std::abs(a - c), told);
                }
            }
        }
    }
}

TEST_F(SoakHearing, AddsUpLevelsOnTheWayToEachEar) {
    follow(world, {.kind = Kind::gain, .word = word, .db = -3});
    follow(world, {.kind = Kind::volume, .word = "microphone", .db = -2});
    follow(world, {.kind = Kind::volume, .word = "headphones", .db = -7});

    EXPECT_EQ(at(Ear::microphone, hz).db, playedDb - 5);
    EXPECT_EQ(at(Ear::phones, hz).db, playedDb - 10);
    EXPECT_EQ(at(Ear::outputs, hz).db, playedDb);
    EXPECT_EQ(at(Ear::microphone, guitarTone()).db, playedDb - 2);
    EXPECT_EQ(at(Ear::outputs, guitarTone()).db, std::nullopt);
}

TEST_F(SoakHearing, ExpectsNothingOfTheBystanderInTheMix) {
    EXPECT_EQ(at(Ear::microphone, toneOf(2, 1)).db, std::nullopt);
    EXPECT_TRUE(at(Ear::microphone, toneOf(2, 1)).isSure);
    EXPECT_EQ(at(Ear::outputs, toneOf(2, 1)).db, playedDb);
}

TEST_F(SoakHearing, ExpectsNothingOfWhatIsMutedSilencedOrStopped) {
    follow(world, {.kind = Kind::silence, .word = word, .on = true});
    EXPECT_EQ(at(Ear::outputs, hz).db, std::nullopt);
    EXPECT_EQ(at(Ear::microphone, hz).db, playedDb);

    follow(world, {.kind = Kind::mute, .word = word, .on = true});
    EXPECT_EQ(at(Ear::microphone, hz).db, std::nullopt);

    follow(world, {.kind = Kind::stop});
    EXPECT_EQ(at(Ear::microphone, guitarTone()).db, std::nullopt);
    EXPECT_EQ(at(Ear::outputs, hz).db, playedDb) << "silenced in the running mix only";
}

TEST_F(SoakHearing, KnowsWhatLinearEffectsMakeOfATone) {
    FXParams fx{.autoGain = false, .manualDB = 6};
    follow(world, {.kind = Kind::effects, .word = word, .fx = fx});
    EXPECT_NEAR(*at(Ear::microphone, hz).db, playedDb + 6, 0.1);

    fx.comp = 2;
    follow(world, {.kind = Kind::effects, .word = word, .fx = fx});
    EXPECT_FALSE(at(Ear::microphone, hz).isSure);

    follow(world, {.kind = Kind::bypass, .on = true});
    EXPECT_TRUE(at(Ear::microphone, hz).isSure);
    EXPECT_EQ(at(Ear::microphone, hz).db, playedDb);
}

TEST_F(SoakHearing, IsNotSureWhereTheSecondCopyPlaysAfterAFallback) {
    follow(world, {.kind = Kind::unplug, .word = support::interface4.name});
    follow(world, {.kind = Kind::remove, .word = guitar});

    EXPECT_FALSE(at(Ear::outputs, hz).isSure);
    EXPECT_TRUE(at(Ear::outputs, toneOf(2, 1)).isSure);
    EXPECT_TRUE(at(Ear::microphone, hz).isSure);
}

} // namespace
} // namespace velmora::soak
