#include "platform/pipewire/view/CardPlace.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

CardPlace place(const std::string& profile,
                const std::string& pcm = "",
                const std::string& direction = "Audio/Sink",
                const std::string& card = "card") {
    return cardPlace(
        {{"device.profile.name", profile}, {"alsa.device", pcm}, {"media.class", direction}}, card);
}

TEST(CardPlace, IsTheSameWhateverTheProfileSaysOfChannels) {
    EXPECT_TRUE(isSamePlace(place("analog-stereo"), place("analog-surround-40")));
    EXPECT_TRUE(isSamePlace(place("analog-stereo"), place("analog-4-channel-input")));
    EXPECT_TRUE(isSamePlace(place("hdmi-stereo-extra1"), place("hdmi-surround71-extra1")));
    EXPECT_TRUE(isSamePlace(place("iec958-stereo"), place("iec958-ac3-surround-51")));
    EXPECT_TRUE(
        isSamePlace(place("HiFi: Headphones: sink"), place("Voice Call: Headphones: sink")));
}

TEST(CardPlace, IsAnotherForAnotherKindOfSocket) {
    EXPECT_FALSE(isSamePlace(place("analog-stereo"), place("hdmi-stereo")));
    EXPECT_FALSE(isSamePlace(place("analog-stereo"), place("iec958-stereo")));
    EXPECT_FALSE(isSamePlace(place("HiFi: Headphones: sink"), place("HiFi: HDMI1: sink")));
    EXPECT_FALSE(isSamePlace(place("HiFi: Headphones: sink"), place("HiFi: Speaker: sink")));
}

TEST(CardPlace, IsAnotherForAnotherSocketOfTheKind) {
    EXPECT_FALSE(isSamePlace(place("hdmi-stereo"), place("hdmi-stereo-extra1")));
    EXPECT_FALSE(isSamePlace(place("HiFi: hw:PCH,3: sink"), place("HiFi: hw:PCH,7: sink")));
    EXPECT_FALSE(isSamePlace(place("analog-stereo-a-output"), place("analog-stereo-b-output")));
}

TEST(CardPlace, IsAnotherOnAnotherCardAndInTheOtherDirection) {
    EXPECT_FALSE(isSamePlace(place("analog-stereo"), place("analog-stereo", "", "Audio/Source")));
    EXPECT_FALSE(
        isSamePlace(place("analog-stereo"), place("analog-stereo", "", "Audio/Sink", "other")));
}

TEST(CardPlace, IsComparedByThePcmWhereAProfileDoesNotSayItsKind) {
    EXPECT_TRUE(isSamePlace(place("analog-stereo", "0"), place("pro-output-0", "0")));
    EXPECT_FALSE(isSamePlace(place("analog-stereo", "0"), place("pro-output-3", "3")));
    EXPECT_TRUE(isSamePlace(place("stereo-fallback", "0"), place("multichannel-output", "0")));
    EXPECT_FALSE(isSamePlace(place("analog-stereo", "0"), place("hdmi-stereo", "0")));
    EXPECT_FALSE(isSamePlace(place("pro-output-0"), place("pro-output-0"))) << "nothing is known";
}

} // namespace
} // namespace velmora::pipewire
