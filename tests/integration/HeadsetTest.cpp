// The microphone of a Bluetooth headset, which is off until a client of the right class records.

#include "MixerTest.h"

namespace velmora {
namespace {

using namespace support;

class HeadsetMicrophone : public MixerTest {
protected:
    HeadsetMicrophone() {
        runToEnd({"pw-cli",
                  "create-node",
                  "adapter",
                  "{ factory.name = support.null-audio-sink node.name = bluez_input.test "
                  "node.description = \"Headset\" media.class = Audio/Source/Virtual "
                  "audio.position = [ MONO ] device.api = bluez5 priority.session = 1 "
                  "object.linger = true }"},
                 session().environment());
    }
    ~HeadsetMicrophone() override {
        engine.stop();
        session().remove("bluez_input.test");
    }

    /// How many recording clients are linked to it.
    static std::size_t recorders() {
        const AudioGraph graph = session().graph();
        return static_cast<std::size_t>(
            std::ranges::count_if(graph.nodes(), [&](const GraphNode& node) {
                return node.mediaClass == "Stream/Input/Audio" &&
                       graph.linked("bluez_input.test", node.name);
            }));
    }
};

TEST_F(HeadsetMicrophone, HasARecordingClientWhileItIsInTheMix) {
    const AudioSource headset = input("Headset", 1, 1);
    EXPECT_EQ(recorders(), 0U);

    mix({headset});
    EXPECT_TRUE(waitUntil([] { return recorders() == 1; }));

    engine.stop();
    EXPECT_TRUE(waitUntil([] { return recorders() == 0; }));
}

TEST_F(HeadsetMicrophone, HasNoneForAnotherInput) {
    mix({input(interface4.description, 1, 2)});

    EXPECT_EQ(recorders(), 0U);
}

} // namespace
} // namespace velmora
