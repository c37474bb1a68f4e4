#include "platform/pipewire/view/CardNames.h"

#include "GraphBuilder.h"
#include "platform/pipewire/view/Devices.h"

#include <gmock/gmock.h>

namespace velmora::pipewire {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A card whose nodes come and go with its profiles.
class CardNamesTest : public testing::Test {
protected:
    GlobalId plug(const std::string& profile,
                  const std::string& pcm = "0",
                  const std::string& direction = "Audio/Sink") {
        const Serial node = builder.addNode(nameOf(profile),
                                            direction,
                                            {{"device.id", std::to_string(card)},
                                             {"device.profile.name", profile},
                                             {"alsa.device", pcm}});
        return GraphBuilder::id(node);
    }
    void unplug(GlobalId node) { builder.graph.remove(node); }

    static std::string nameOf(const std::string& profile) { return "alsa_output.pci." + profile; }
    /// As the mixer sees them after the next pass.
    std::vector<std::string> uids() {
        isKeptNew = names.follow(builder.graph);
        std::vector<std::string> all;
        for (const Device& device : listDevices(builder.graph)) {
            all.push_back(device.uid);
        }
        return all;
    }

    GraphBuilder builder;
    Serial card = builder.addCard("alsa_card.pci");
    CardNames names;
    bool isKeptNew = false;
};

TEST_F(CardNamesTest, ADeviceKeepsItsUidUnderAnotherProfile) {
    const GlobalId stereo = plug("analog-stereo");
    EXPECT_THAT(uids(), ElementsAre(nameOf("analog-stereo")));
    EXPECT_TRUE(isKeptNew);

    unplug(stereo);
    const GlobalId surround = plug("analog-surround-40");
    EXPECT_THAT(uids(), ElementsAre(nameOf("analog-stereo")));
    EXPECT_FALSE(isKeptNew);

    unplug(surround);
    plug("pro-output-0");
    EXPECT_THAT(uids(), ElementsAre(nameOf("analog-stereo")));
}

TEST_F(CardNamesTest, ADeviceKeepsItsUidInTheNextRun) {
    const GlobalId stereo = plug("analog-stereo");
    static_cast<void>(uids());
    unplug(stereo);
    plug("analog-surround-40");

    names = CardNames(names.kept());

    EXPECT_THAT(uids(), ElementsAre(nameOf("analog-stereo")));
}

TEST_F(CardNamesTest, TheDefaultOutputIsFoundUnderItsUid) {
    const GlobalId stereo = plug("analog-stereo");
    static_cast<void>(uids());
    unplug(stereo);
    plug("analog-surround-40");
    builder.setDefaultSink(nameOf("analog-surround-40"));
    static_cast<void>(uids());

    const auto device = defaultOutput(builder.graph);

    ASSERT_TRUE(device.has_value());
    EXPECT_EQ(device->uid, nameOf("analog-stereo"));
}

TEST_F(CardNamesTest, HeadphonesNeverBecomeTheScreen) {
    const GlobalId headphones = plug("HiFi: Headphones: sink");
    static_cast<void>(uids());
    unplug(headphones);

    plug("HiFi: HDMI1: sink");

    EXPECT_THAT(uids(), ElementsAre(nameOf("HiFi: HDMI1: sink")));
}

TEST_F(CardNamesTest, TheSameSocketsOfAnotherCardAreAnotherDevice) {
    const GlobalId first = plug("analog-stereo");
    static_cast<void>(uids());
    unplug(first);

    card = builder.addCard("alsa_card.usb");
    plug("analog-surround-40");

    EXPECT_THAT(uids(), ElementsAre(nameOf("analog-surround-40")));
}

TEST_F(CardNamesTest, RecordingIsNotPlaying) {
    const GlobalId output = plug("analog-stereo");
    static_cast<void>(uids());
    unplug(output);

    plug("analog-surround-40", "0", "Audio/Source");

    EXPECT_THAT(uids(), ElementsAre(nameOf("analog-surround-40")));
}

TEST_F(CardNamesTest, OfTwoThatItCouldBeNeitherIsIt) {
    const GlobalId stereo = plug("analog-stereo");
    static_cast<void>(uids());
    unplug(stereo);

    plug("analog-surround-40");
    plug("analog-surround-51");

    EXPECT_THAT(uids(), ElementsAre(nameOf("analog-surround-40"), nameOf("analog-surround-51")));
}

TEST_F(CardNamesTest, OneThatCouldBeEitherOfTwoIsNeither) {
    const GlobalId speaker = plug("HiFi: Speaker: sink");
    const GlobalId headphones = plug("HiFi: Headphones: sink");
    static_cast<void>(uids());
    unplug(speaker);
    unplug(headphones);

    plug("pro-output-0");

    EXPECT_THAT(uids(), ElementsAre(nameOf("pro-output-0")));
}

TEST_F(CardNamesTest, ADeviceThatIsThereItselfIsNobodyElse) {
    plug("analog-stereo");
    plug("analog-surround-40");
    EXPECT_THAT(uids(), ElementsAre(nameOf("analog-stereo"), nameOf("analog-surround-40")));
}

TEST_F(CardNamesTest, ADeviceThatComesBackTakesItsUidBack) {
    const GlobalId stereo = plug("analog-stereo");
    static_cast<void>(uids());
    unplug(stereo);
    plug("analog-surround-40");
    static_cast<void>(uids());

    plug("analog-stereo");

    EXPECT_THAT(uids(), ElementsAre(nameOf("analog-surround-40"), nameOf("analog-stereo")));
}

TEST_F(CardNamesTest, ADeviceIsNotListedBeforeItsUidIsKnown) {
    plug("analog-stereo");

    EXPECT_THAT(listDevices(builder.graph), IsEmpty());
}

TEST_F(CardNamesTest, WhatIsOnNoCardKeepsItsName) {
    builder.addSink("null", {"FL", "FR"});

    EXPECT_THAT(uids(), ElementsAre("null"));
    EXPECT_FALSE(isKeptNew);
}

TEST_F(CardNamesTest, AKeptTextThatIsNoneKnowsNothing) {
    for (const char* const text : {"", "{", "7", "[1,{\"uid\":2}]", "{\"uid\":\"a\"}"}) {
        EXPECT_EQ(CardNames(text).kept(), "[]") << text;
    }
}

TEST_F(CardNamesTest, AYearOfCardsIsNotKeptForEver) {
    const GlobalId stays = plug("analog-stereo");
    for (int at = 0; at < 300; ++at) {
        card = builder.addCard("alsa_card.usb-" + std::to_string(at));
        const GlobalId guest = plug("guest" + std::to_string(at));
        static_cast<void>(uids());
        unplug(guest);
    }

    names = CardNames(names.kept());

    EXPECT_LT(names.kept().size(), 60000U);
    unplug(stays);
    card = builder.addCard("alsa_card.pci");
    plug("analog-surround-40");
    EXPECT_THAT(uids(), ElementsAre(nameOf("analog-stereo"))) << "it was there all the time";
}

} // namespace
} // namespace velmora::pipewire
