// What is told of the node that carries the mix, and of what a mix depends on.

#include "platform/pipewire/PlaybackPart.h"
#include "platform/pipewire/RouteHold.h"
#include "platform/pipewire/Session.h"
#include "support/ClientPrograms.h"
#include "support/SessionTest.h"
#include "support/Wait.h"

#include <atomic>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <thread>

namespace velmora {
namespace {

using namespace support;

class PipeWireLibrary {
public:
    PipeWireLibrary() { pw_init(nullptr, nullptr); }
    ~PipeWireLibrary() { pw_deinit(); }
    PipeWireLibrary(const PipeWireLibrary&) = delete;
    PipeWireLibrary& operator=(const PipeWireLibrary&) = delete;
};

/// An output of the mix, and how often it was called.
class CalledPart {
public:
    CalledPart(pipewire::Session& backend, const std::string& device) {
        auto opened = backend.openPart<pipewire::PlaybackPart>(
            pipewire::usualBlockFrames,
            48000,
            [calls = calls_](std::int64_t, std::span<float* const>) { ++*calls; });
        EXPECT_TRUE(opened.has_value());
        part_ = *std::move(opened);
        route_.emplace(
            backend, part_->part(), pipewire::PlaybackRoute{.deviceUID = device, .map = {0, 1}});
    }

    [[nodiscard]] bool isAlive() const { return part_->isAlive(); }
    [[nodiscard]] int calls() const { return *calls_; }

private:
    std::shared_ptr<std::atomic<int>> calls_ = std::make_shared<std::atomic<int>>(0);
    std::unique_ptr<pipewire::PlaybackPart> part_;
    std::optional<pipewire::RouteHold> route_;
};

class OwnNode : public SessionTest {
protected:
    OwnNode() { backend.waitForListing(patience); }

    void TearDown() override {
        session().startServices(); // what a failed test left dead
        SessionTest::TearDown();
    }

    static std::string ownNode() {
        const AudioGraph graph = session().graph();
        for (const GraphNode& node : graph.nodes()) {
            if (node.name.starts_with("velmora.mix.")) {
                return node.name;
            }
        }
        return {};
    }
    /// Nothing more is told for a while.
    void settle() {
        int seen = -1;
        EXPECT_TRUE(
            waitUntil([&] { return std::exchange(seen, changed.load()) == changed.load(); }));
    }

    PipeWireLibrary library;
    std::atomic<int> changed = 0;
    std::atomic<int> defaultOutputChanged = 0;
    std::atomic<const CalledPart*> watched = nullptr;
    std::atomic<int> changedSinceDeath = 0;
    pipewire::Session backend{{.unknownApplications =
                                   [this](const auto& pids) {
                                       backend.change([&](pipewire::SessionState& state) {
                                           for (const std::int32_t pid : pids) {
                                               state.processes.resolve(pid, {.pid = pid});
                                           }
                                       });
                                   },
                               .availabilityChanged = [](bool) {},
                               .defaultOutputChanged = [this] { ++defaultOutputChanged; },
                               .changed =
                                   [this] {
                                       ++changed;
                                       const CalledPart* const part = watched;
                                       changedSinceDeath += part != nullptr && !part->isAlive();
                                   }}};
};

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
    EXPECT_LE(graph.node(ownNode())->outputPorts, 9) << "three sets of three";
}

} // namespace
} // namespace velmora
