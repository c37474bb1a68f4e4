#include "engine/AudioSource.h"

#include <gtest/gtest.h>
#include <string>

namespace velmora {
namespace {

const AudioSource wholeDevice = DeviceSource{73, "Interface"};
const AudioSource firstPair = DeviceChannelsSource{73, 1, 2, "Interface 1-2"};

TEST(AudioSource, IdentifiesAnApplicationByBundleAndProcess) {
    EXPECT_EQ(AudioSource(AppSource{4711, "Player", "org.player"}).id(), "app-org.player-4711");
}

TEST(AudioSource, IdentifiesADeviceByItsNumber) {
    EXPECT_EQ(wholeDevice.id(), "dev-73");
    EXPECT_EQ(AudioSource(DeviceSource{4294967295U, ""}).id(), "dev-4294967295");
}

TEST(AudioSource, IdentifiesARangeOfChannelsApartFromItsDevice) {
    EXPECT_EQ(firstPair.id(), "dev-73-c1x2");
    EXPECT_EQ(AudioSource(DeviceChannelsSource{73, 2, 1, ""}).id(), "dev-73-c2x1");
}

TEST(AudioSource, IsAnotherOneInAnotherProcess) {
    const AudioSource first = AppSource{1, "Player", "org.player"};
    const AudioSource second = AppSource{2, "Player", "org.player"};

    EXPECT_NE(first, second);
    EXPECT_NE(first.id(), second.id());
}

TEST(AudioSource, IsUnequalUnderAnotherNameThoughTheIdIsTheSame) {
    const AudioSource renamed = DeviceSource{73, "Other name"};

    EXPECT_NE(wholeDevice, renamed);
    EXPECT_EQ(wholeDevice.id(), renamed.id());
}

TEST(AudioSource, IsEqualWhenEveryFieldIs) {
    const AudioSource copy = firstPair;

    EXPECT_EQ(copy, firstPair);
    EXPECT_EQ(std::hash<AudioSource>{}(copy), std::hash<AudioSource>{}(firstPair));
}

TEST(AudioSource, FeedsTheNameIntoItsHash) {
    const std::hash<AudioSource> hash;

    EXPECT_NE(hash(wholeDevice), hash(DeviceSource{73, "Other name"}));
    EXPECT_NE(hash(wholeDevice), hash(firstPair));
}

TEST(AudioSource, TellsItsNameAndCase) {
    EXPECT_EQ(firstPair.name(), "Interface 1-2");
    EXPECT_NE(firstPair.deviceChannels(), nullptr);
    EXPECT_EQ(firstPair.device(), nullptr);
    EXPECT_EQ(firstPair.app(), nullptr);
}

} // namespace
} // namespace velmora
