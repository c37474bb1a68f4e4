#include "ui/control/SourceMenu.h"

#include "ui/support/ModelFixture.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace velmora {
namespace {

using Kind = GumMenuItem::Kind;

std::vector<QString> titles(const std::vector<GumMenuItem>& items) {
    std::vector<QString> result;
    std::ranges::transform(items, std::back_inserter(result), &GumMenuItem::title);
    return result;
}

class SourceMenuTest : public ModelFixture {
protected:
    std::vector<GumMenuItem> items() {
        sources.refresh();
        return sourceMenuItems(sources,
                               machine.platform(),
                               settings,
                               {.browse = [this] { browsed = true; },
                                .choose = [this](const AudioSource& s) { chosen = s; },
                                .isChosen = [this](const AudioSource& s) { return s == marked; }});
    }
    GumMenuItem item(const QString& title) {
        const auto all = items();
        const auto found = std::ranges::find(all, title, &GumMenuItem::title);
        return found == all.end() ? GumMenuItem{} : *found;
    }
    AudioObjectID plugIn(const std::string& name,
                         std::uint32_t channels,
                         Transport transport = Transport::other) {
        return machine.sound.addDevice(
            {.uid = name, .name = name, .inputs = {channels}, .transport = transport});
    }

    bool browsed = false;
    std::optional<AudioSource> chosen;
    std::optional<AudioSource> marked;
};

TEST_F(SourceMenuTest, SectionsComeInTheirOrder) {
    machine.sound.play(4711, constant(0.5F));
    machine.sound.play(4712, constant(0.0F));
    plugIn("Headset", 1);
    plugIn("Loopback", 1, Transport::virtualDevice);

    EXPECT_EQ(titles(items()),
              (std::vector<QString>{"Choisir une application…",
                                    "Applications ouvertes",
                                    "Browser",
                                    "Player",
                                    "Entrées physiques",
                                    "Headset",
                                    "Entrées virtuelles",
                                    "Loopback"}));
}

TEST_F(SourceMenuTest, CaptionsAreHeadersInTheUsersLanguage) {
    settings.setLanguage("en");
    const auto all = items();
    EXPECT_EQ(
        titles(all),
        (std::vector<QString>{
            "Choose an application…", "Open applications", "Physical inputs", "Virtual inputs"}));
    EXPECT_EQ(all[0].kind, Kind::action);
    EXPECT_EQ(all[1].kind, Kind::header);
    EXPECT_EQ(all[2].kind, Kind::header);
    EXPECT_EQ(all[3].kind, Kind::header);
}

TEST_F(SourceMenuTest, TheFirstItemLooksForAnApplication) {
    items().front().action();
    EXPECT_TRUE(browsed);
}

TEST_F(SourceMenuTest, AnApplicationCarriesItsIconAndIsMarkedWhileItPlays) {
    machine.sound.play(4711, constant(0.5F));
    machine.sound.play(4712, constant(0.5F));
    machine.sound.pause(4712);

    const GumMenuItem playing = item("Player");
    EXPECT_TRUE(playing.playing);
    EXPECT_EQ(playing.icon, "image://application/player%20icon");
    const GumMenuItem silent = item("Browser");
    EXPECT_FALSE(silent.playing);
    EXPECT_EQ(silent.icon, "");
    EXPECT_EQ(silent.symbol, "");
}

TEST_F(SourceMenuTest, ChoosingAnApplicationGivesItsProcess) {
    machine.sound.play(4711, constant(0.5F));
    item("Player").action();
    EXPECT_EQ(chosen, player);
}

TEST_F(SourceMenuTest, AMonoDeviceIsChosenAtOnce) {
    const auto id = plugIn("Headset", 1);
    const GumMenuItem headset = item("Headset");
    EXPECT_TRUE(headset.children.empty());
    EXPECT_EQ(headset.symbol, "mic");
    headset.action();
    EXPECT_EQ(chosen, AudioSource(DeviceSource{id, "Headset"}));
}

TEST_F(SourceMenuTest, ADeviceWithoutChannelsIsChosenAtOnce) {
    plugIn("Silent", 0);
    EXPECT_TRUE(item("Silent").children.empty());
}

TEST_F(SourceMenuTest, AVirtualDeviceHasItsOwnSymbol) {
    plugIn("Loopback", 1, Transport::virtualDevice);
    plugIn("Bundle", 1, Transport::aggregate);
    EXPECT_EQ(item("Loopback").symbol, "waveform");
    EXPECT_EQ(item("Bundle").symbol, "waveform");
}

TEST_F(SourceMenuTest, AMultichannelDeviceUnfoldsIntoPairsThenChannels) {
    plugIn("Interface", 5);
    const GumMenuItem interface = item("Interface");
    EXPECT_FALSE(interface.action);
    EXPECT_EQ(titles(interface.children),
              (std::vector<QString>{"Appareil entier",
                                    "Entrées 1-2",
                                    "Entrées 3-4",
                                    "Entrée 1",
                                    "Entrée 2",
                                    "Entrée 3",
                                    "Entrée 4",
                                    "Entrée 5"}));
}

TEST_F(SourceMenuTest, AStereoDeviceUnfoldsIntoItsChannels) {
    plugIn("Stereo", 2);
    EXPECT_EQ(titles(item("Stereo").children),
              (std::vector<QString>{"Appareil entier", "Entrée 1", "Entrée 2"}));
}

TEST_F(SourceMenuTest, AStereoDeviceIsChosenAtOnceToo) {
    const auto id = plugIn("Stereo", 2);
    item("Stereo").action();
    EXPECT_EQ(chosen, AudioSource(DeviceSource{id, "Stereo"}));
}

TEST_F(SourceMenuTest, EveryChannelRangeCanBeCaptured) {
    const auto id = plugIn("Interface", 4);
    std::vector<AudioSource> ranges;
    for (const GumMenuItem& child : item("Interface").children) {
        child.action();
        ranges.push_back(*chosen);
    }
    EXPECT_EQ(ranges,
              (std::vector<AudioSource>{
                  DeviceSource{id, "Interface"},
                  DeviceChannelsSource{id, 1, 2, "Interface — Entrées 1-2"},
                  DeviceChannelsSource{id, 3, 2, "Interface — Entrées 3-4"},
                  DeviceChannelsSource{id, 1, 1, "Interface — Entrée 1"},
                  DeviceChannelsSource{id, 2, 1, "Interface — Entrée 2"},
                  DeviceChannelsSource{id, 3, 1, "Interface — Entrée 3"},
                  DeviceChannelsSource{id, 4, 1, "Interface — Entrée 4"},
              }));
}

TEST_F(SourceMenuTest, ChannelRangesAreNamedInTheUsersLanguage) {
    plugIn("Interface", 4);
    settings.setLanguage("en");
    const auto children = item("Interface").children;
    EXPECT_EQ(children[0].title, "Whole device");
    EXPECT_EQ(children[1].title, "Inputs 1-2");
    EXPECT_EQ(children[3].title, "Input 1");
}

TEST_F(SourceMenuTest, AChannelRangeIsTheSameSourceInEveryLanguage) {
    const auto id = plugIn("Interface", 4);
    settings.setLanguage("en");
    item("Interface").children[2].action();
    EXPECT_EQ(chosen, AudioSource(DeviceChannelsSource{id, 3, 2, "Interface — Entrées 3-4"}));
}

TEST_F(SourceMenuTest, MarksWhatIsChosenNowAndTheDeviceAroundIt) {
    machine.sound.play(4711, constant(0.5F));
    const auto id = plugIn("Interface", 4);
    marked = player;
    EXPECT_TRUE(item("Player").checked);
    EXPECT_FALSE(item("Interface").checked);

    marked = DeviceChannelsSource{id, 3, 2, "Interface — Entrées 3-4"};
    EXPECT_FALSE(item("Player").checked);
    const GumMenuItem interface = item("Interface");
    EXPECT_TRUE(interface.checked);
    EXPECT_EQ(std::ranges::count(interface.children, true, &GumMenuItem::checked), 1);
    EXPECT_TRUE(interface.children[2].checked);
}

TEST_F(SourceMenuTest, TheVirtualMicrophoneIsNotOffered) {
    machine.sound.addDevice({.uid = "mic", .name = "Velmora Microphone", .inputs = {2}});
    EXPECT_EQ(item("Velmora Microphone").title, "");
}

} // namespace
} // namespace velmora
