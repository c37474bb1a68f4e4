// The virtual microphone of a session that has none.

#include "BackendTest.h"

namespace velmora {
namespace {

using namespace support;

class VirtualMicrophone : public testing::Test {
protected:
    static void SetUpTestSuite() {
        session = std::make_unique<PrivateSession>(
            PrivateSession::Setup{.devices = {speakers}, .virtualMicrophone = false});
        session->enter();
    }
    static void TearDownTestSuite() { session.reset(); }

    static std::ptrdiff_t count() {
        const AudioGraph graph = session->graph();
        return std::ranges::count(graph.nodes(), microphone, &GraphNode::name);
    }

    static inline std::unique_ptr<PrivateSession> session;
    QtMainQueue queue;
};

TEST_F(VirtualMicrophone, IsMadeOnceCanBePlayedToAndStays) {
    {
        PipeWireAudio first(queue);
        ASSERT_EQ(first.ensureVirtualMicrophone(), statusOk);
        EXPECT_EQ(first.ensureVirtualMicrophone(), statusOk);
        const auto devices = first.devices().devices().value_or(std::vector<AudioObjectID>{});
        ASSERT_FALSE(devices.empty());
        const AudioObjectID made = devices.back();
        EXPECT_EQ(first.devices().deviceName(made), "Velmora Microphone");
        EXPECT_EQ(first.devices().streamChannels(made, Scope::output),
                  std::vector<std::uint32_t>{2});
        EXPECT_EQ(first.devices().streamChannels(made, Scope::input),
                  std::vector<std::uint32_t>{2});
        EXPECT_EQ(first.devices().transport(made), Transport::virtualDevice);
    }
    EXPECT_EQ(count(), 1);

    PipeWireAudio second(queue);
    EXPECT_EQ(second.ensureVirtualMicrophone(), statusOk);

    EXPECT_EQ(count(), 1);
}

TEST_F(VirtualMicrophone, IsThereAgainBeforeTheReturnOfTheDaemonIsTold) {
    PipeWireAudio audio(queue);
    ASSERT_EQ(audio.ensureVirtualMicrophone(), statusOk);
    std::optional<std::ptrdiff_t> thereWhenTold;
    const auto connection =
        audio.devices().defaultOutputChanged().connect([&] { thereWhenTold = count(); });

    session->killDaemon();
    ASSERT_TRUE(waitUntil([&] { return !audio.devices().isAvailable(); }));
    session->startServices();

    EXPECT_TRUE(waitUntil([&] { return thereWhenTold.has_value(); }));
    EXPECT_EQ(thereWhenTold, 1);
}

} // namespace
} // namespace velmora
