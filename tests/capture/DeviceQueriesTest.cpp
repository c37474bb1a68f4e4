#include "capture/DeviceQueries.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DeviceQueries : public testing::Test {
protected:
    AudioObjectID addDuplex(const std::string& name, Transport transport = Transport::other) {
        return machine.sound.addDevice({.uid = "uid of " + name,
                                        .name = name,
                                        .outputs = {2, 2},
                                        .inputs = {2, 6},
                                        .transport = transport});
    }

    static std::vector<std::string> names(const std::vector<AudioSource>& sources) {
        std::vector<std::string> result;
        for (const AudioSource& source : sources) {
            result.push_back(source.name());
        }
        return result;
    }

    SimulatedPlatform machine;
    const AudioDevices& devices = machine.devices;
};

TEST_F(DeviceQueries, ListsADeviceOfBothDirectionsInBothLists) {
    const AudioObjectID id = addDuplex("Interface");

    const AudioSource source = DeviceSource{id, "Interface"};
    EXPECT_THAT(listInputDevices(devices), ElementsAre(source));
    EXPECT_THAT(listOutputDevices(devices), ElementsAre(source));
    EXPECT_THAT(listInputDeviceInfos(devices),
                ElementsAre(InputDeviceInfo{id, "Interface", 8, false}));
    EXPECT_THAT(listOutputDeviceInfos(devices),
                ElementsAre(InputDeviceInfo{id, "Interface", 4, false}));
}

TEST_F(DeviceQueries, ListsADeviceOnlyWhereItHasStreams) {
    machine.sound.addDevice({.uid = "mic", .name = "Mic", .inputs = {1}});
    machine.sound.addDevice({.uid = "speakers", .name = "Speakers", .outputs = {2}});

    EXPECT_THAT(names(listInputDevices(devices)), ElementsAre("Mic"));
    EXPECT_THAT(names(listOutputDevices(devices)), ElementsAre("Speakers"));
}

TEST_F(DeviceQueries, KeepsTheSystemsOrder) {
    addDuplex("Zoom");
    addDuplex("Apollo");

    EXPECT_THAT(names(listInputDevices(devices)), ElementsAre("Zoom", "Apollo"));
}

TEST_F(DeviceQueries, MarksVirtualAndAggregateInputsButNoOutput) {
    addDuplex("Loop", Transport::virtualDevice);
    addDuplex("Group", Transport::aggregate);

    for (const InputDeviceInfo& info : listInputDeviceInfos(devices)) {
        EXPECT_TRUE(info.isVirtual) << info.name;
    }
    for (const InputDeviceInfo& info : listOutputDeviceInfos(devices)) {
        EXPECT_FALSE(info.isVirtual) << info.name;
    }
}

TEST_F(DeviceQueries, HidesVirtualMicrophonesAndLoopbacks) {
    for (const char* name : {"Velmora Microphone",
                             "BlackHole 2ch",
                             "my VELMORA",
                             "blackHOLE",
                             "CADefaultDeviceAggregate-1234-0"}) {
        addDuplex(name);
    }
    addDuplex("My CADefaultDeviceAggregate");
    addDuplex("cadefaultdeviceaggregate");

    EXPECT_THAT(names(listInputDevices(devices)),
                ElementsAre("My CADefaultDeviceAggregate", "cadefaultdeviceaggregate"));
    EXPECT_EQ(names(listOutputDevices(devices)), names(listInputDevices(devices)));
}

TEST_F(DeviceQueries, LeavesOutWhatCannotBeRead) {
    const AudioObjectID nameless = addDuplex("Nameless");
    const AudioObjectID vague = addDuplex("Vague");
    const AudioObjectID odd = addDuplex("Odd", Transport::virtualDevice);
    machine.sound.refuse(Operation::deviceName, -1, nameless);
    machine.sound.refuse(Operation::streamChannels, -1, vague);
    machine.sound.refuse(Operation::transport, -1, odd);

    EXPECT_THAT(listInputDeviceInfos(devices), ElementsAre(InputDeviceInfo{odd, "Odd", 8, false}));
}

TEST_F(DeviceQueries, FindsNothingWithoutAnAudioService) {
    addDuplex("Velmora Microphone");
    machine.sound.refuse(Operation::devices);

    EXPECT_THAT(allDeviceIDs(devices), IsEmpty());
    EXPECT_THAT(listInputDevices(devices), IsEmpty());
    EXPECT_EQ(findVirtualMicDevice(devices), std::nullopt);
    EXPECT_EQ(findDevice(devices, "uid of Velmora Microphone"), std::nullopt);
}

TEST_F(DeviceQueries, FindsTheVirtualMicrophoneByItsNameAlone) {
    EXPECT_EQ(findVirtualMicDevice(devices), std::nullopt);
    const AudioObjectID sixteen = addDuplex("BlackHole 16ch");
    addDuplex("BlackHole 2ch");
    EXPECT_EQ(findVirtualMicDevice(devices), sixteen);

    const AudioObjectID own = addDuplex("Velmora Microphone");

    EXPECT_EQ(findVirtualMicDevice(devices), own);
    machine.sound.refuse(Operation::deviceName, -1, own);
    EXPECT_EQ(findVirtualMicDevice(devices), sixteen);
}

TEST_F(DeviceQueries, FindsADeviceByItsExactUID) {
    const AudioObjectID unreadable = addDuplex("First");
    machine.sound.refuse(Operation::deviceUID, -1, unreadable);
    const AudioObjectID id = addDuplex("Second");

    EXPECT_EQ(findDevice(devices, "uid of Second"), id);
    EXPECT_EQ(findDevice(devices, "uid of second"), std::nullopt);
    EXPECT_EQ(findDevice(devices, "uid of First"), std::nullopt);
    EXPECT_EQ(findDevice(devices, ""), std::nullopt);
}

TEST_F(DeviceQueries, FindsADeviceUnderItsNewId) {
    const AudioObjectID before =
        machine.sound.addDevice({.uid = "usb", .name = "Mic", .inputs = {1}, .id = 73});
    machine.sound.removeDevice(before);
    machine.sound.addDevice({.uid = "usb", .name = "Mic", .inputs = {1}, .id = 74});

    EXPECT_EQ(findDevice(devices, "usb"), 74U);
    EXPECT_EQ(deviceName(devices, 73), std::nullopt);
    EXPECT_EQ(deviceUID(devices, 74), "usb");
}

TEST_F(DeviceQueries, CountsTheChannelsOfAllStreams) {
    const AudioObjectID id = addDuplex("Interface");

    EXPECT_EQ(channelCount(devices, id, Scope::input), 8);
    EXPECT_EQ(channelCount(devices, id, Scope::output), 4);
    EXPECT_EQ(channelCount(devices, 99, Scope::output), 0);
    machine.sound.refuse(Operation::streamChannels);
    EXPECT_EQ(channelCount(devices, id, Scope::output), 0);
}

} // namespace
} // namespace velmora
