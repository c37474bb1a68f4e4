// What is told of the node that carries the mix, and of what a mix depends on.

#include "ControlTest.h"

#include <gtest/gtest.h>
#include <thread>

namespace velmora {
namespace {

using namespace support;

class OwnNode : public ControlTest {};

TEST_F(OwnNode, ThatSomebodyRemovesIsDeadOnceThatIsTold) {
    const CalledPart part(backend, speakers.name);
    ASSERT_TRUE(waitUntil([&] { return part.calls() > 0 && !ownNode().empty(); }));
    EXPECT_TRUE(part.isAlive());
    watched = &part;

    session().remove(ownNode());

    EXPECT_TRUE(waitUntil([&] { return changedSinceDeath > 0; }));
    EXPECT_FALSE(part.isAlive());
    EXPECT_EQ(changedSinceDeath, 1);
    EXPECT_EQ(defaultOutputChanged, 0);
    watched = nullptr;
}

TEST_F(OwnNode, IsMadeAtOnceWhereOneWasRemoved) {
    const CalledPart before(backend, speakers.name);
    ASSERT_TRUE(waitUntil([&] { return before.calls() > 0 && !ownNode().empty(); }));
    const std::string removed = ownNode();
    session().remove(removed);
    ASSERT_TRUE(waitUntil([&] { return !before.isAlive(); }));

    const CalledPart after(backend, speakers.name);

    EXPECT_TRUE(after.isAlive());
    EXPECT_TRUE(waitUntil([&] { return after.calls() > 0; }));
    EXPECT_NE(ownNode(), removed);
    EXPECT_FALSE(before.isAlive());
}

TEST_F(OwnNode, IsDeadWithItsDaemon) {
    const CalledPart part(backend, speakers.name);
    ASSERT_TRUE(waitUntil([&] { return part.calls() > 0; }));
    watched = &part;

    session().killDaemon();

    EXPECT_TRUE(waitUntil([&] { return changedSinceDeath > 0; }));
    EXPECT_FALSE(part.isAlive());
    session().startServices();
    ASSERT_TRUE(waitUntil([&] { return backend.isAvailable(); }));
    EXPECT_FALSE(part.isAlive());
    watched = nullptr;
}

TEST_F(OwnNode, OutlivesTheSessionManager) {
    const CalledPart part(backend, speakers.name);
    ASSERT_TRUE(waitUntil([&] { return part.calls() > 0; }));

    session().killManager();
    ASSERT_TRUE(waitUntil([&] { return !backend.isAvailable(); }));
    session().startServices();
    ASSERT_TRUE(waitUntil([&] { return backend.isAvailable(); }));

    EXPECT_TRUE(part.isAlive());
    const int calls = part.calls();
    EXPECT_TRUE(waitUntil([&] { return part.calls() > calls; }));
}

TEST_F(OwnNode, ThatWeCloseOurselvesIsNotToldAsAChange) {
    { const CalledPart first(backend, speakers.name); }
    settle();
    const int before = changed;

    for (int round = 0; round < 20; ++round) {
        const CalledPart part(backend, speakers.name);
        EXPECT_TRUE(waitUntil([&] { return part.calls() > 0; }));
    }

    EXPECT_TRUE(waitUntil([] { return ownNode().empty(); }));
    EXPECT_EQ(changed, before);
    EXPECT_EQ(defaultOutputChanged, 0);
}

TEST_F(OwnNode, DevicesThatComeAndGoAreTold) {
    const SessionDevice headset{
        .name = "test.headset", .description = "Headset", .mediaClass = "Audio/Sink"};
    session().add(headset);
    EXPECT_TRUE(waitUntil([&] { return changed > 0; }));
    settle();
    const int before = changed;

    session().remove(headset.name);

    EXPECT_TRUE(waitUntil([&] { return changed > before; }));
    EXPECT_EQ(defaultOutputChanged, 0);
}

TEST_F(OwnNode, ApplicationsThatComeAndGoAreTold) {
    settle();
    const int before = changed;
    ToneApp app(session());
    app.play("music", 440, 440, -20);
    EXPECT_TRUE(waitUntil([&] { return changed > before; }));
    settle();
    const int playing = changed;

    app.end();

    EXPECT_TRUE(waitUntil([&] { return changed > playing; }));
}

TEST_F(OwnNode, HasNoMorePortsAfterAThousandParts) {
    const CalledPart keepsTheNode(backend, speakers.name);
    const auto links = [this] {
        return backend.read(
            [](pipewire::SessionState& state, bool) { return state.graph.links().size(); });
    };
    ASSERT_TRUE(waitUntil([&] { return links() >= 2; }));
    const std::size_t before = links();

    const auto waitForLinks = [&links](std::size_t count) {
        while (links() != count) {
            std::this_thread::yield();
        }
    };
    for (int round = 0; round < 1000; ++round) {
        {
            const CalledPart part(backend, interface4.name);
            waitForLinks(before + 2);
        }
        waitForLinks(before);
    }

    const AudioGraph graph = session().graph();
    EXPECT_LT(graph.node(ownNode())->outputPorts, 100) << "a few sets, not a thousand";
}

} // namespace
} // namespace velmora
