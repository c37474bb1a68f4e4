#include "platform/pipewire/node/NodePorts.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

using enum NodePorts::Direction;

TEST(NodePorts, AreNumberedWithinTheirDirection) {
    NodePorts ports;

    EXPECT_EQ(ports.add(input, nullptr).name, "input_1");
    EXPECT_EQ(ports.add(output, nullptr).name, "output_1");
    EXPECT_EQ(ports.nextName(input), "input_2");
    EXPECT_EQ(ports.add(input, nullptr).name, "input_2");
}

TEST(NodePorts, ServeNobodyElseWhileTheirPartIsCalled) {
    NodePorts ports;
    const auto& port = ports.add(input, nullptr);

    EXPECT_EQ(ports.take(input), nullptr);
    ports.clear(port.name);
    EXPECT_EQ(ports.take(input), nullptr);
}

TEST(NodePorts, ServeNobodyElseWhileTheyMayBeLinked) {
    NodePorts ports;
    const auto& port = ports.add(input, nullptr);
    ports.clear(port.name);
    ports.dismiss(port);
    ASSERT_EQ(ports.take(input), &port);

    ports.dismiss(port);

    EXPECT_EQ(ports.take(input), nullptr) << "cleared for the part before";
}

TEST(NodePorts, ServeAgainInTheirDirectionOnly) {
    NodePorts ports;
    int handle = 0;
    const auto& port = ports.add(output, &handle);
    ports.dismiss(port);
    ports.clear(port.name);

    EXPECT_EQ(ports.take(input), nullptr);
    EXPECT_EQ(ports.take(output), &port);
    EXPECT_EQ(port.handle, &handle);
    EXPECT_EQ(ports.take(output), nullptr);
}

} // namespace
} // namespace velmora::pipewire
