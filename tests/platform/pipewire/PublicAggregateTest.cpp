// A public device made of an interface and the virtual microphone.

#include "BackendTest.h"

namespace velmora {
namespace {

using namespace support;

class PublicAggregate : public BackendTest {
protected:
    void TearDown() override {
        if (const auto left = find(uid)) {
            sinks().remove(*left);
        }
        BackendTest::TearDown();
    }

    static PublicSink describe(const std::string& interfaceUID) {
        return {.name = "Velmora DAW",
                .uid = uid,
                .masterUID = interfaceUID,
                .followerUID = microphone};
    }

    /// 0 when it was refused.
    static AudioObjectID make(PublicSinks& sinks, const std::string& interfaceUID) {
        const auto made = sinks.create(describe(interfaceUID));
        EXPECT_TRUE(made.has_value()) << "status " << made.error();
        return made.value_or(0);
    }

    PublicSinks& sinks() { return audio.sinks(); }

    static inline const std::string uid{dawSinkUID};
};

TEST_F(PublicAggregate, IsADeviceThatComesLast) {
    const AudioObjectID made = make(sinks(), interface4.name);

    EXPECT_EQ(devices().deviceUID(made), uid);
    EXPECT_EQ(devices().deviceName(made), "Velmora DAW");
    EXPECT_EQ(devices().transport(made), Transport::aggregate);
    EXPECT_EQ(devices().streamChannels(made, Scope::output), std::vector<std::uint32_t>{2});
    EXPECT_EQ(devices().devices().value_or(std::vector<AudioObjectID>{0}).back(), made);
}

TEST_F(PublicAggregate, PlaysIntoTheInterfaceAndTheMicrophone) {
    make(sinks(), interface4.name);
    const Feeder workstation(session(), uid, {1, 2}, {.hz = {440, 440}, .db = playedDb});

    const Recorder mic(session(), microphone, {1, 2});
    const Recorder atInterface(session(), interface4.name, {1, 2, 3});

    EXPECT_TRUE(mic.hears(0, 440, playedDb));
    EXPECT_TRUE(mic.hears(1, 440, playedDb));
    EXPECT_TRUE(atInterface.hears(0, 440, playedDb));
    EXPECT_TRUE(atInterface.hears(1, 440, playedDb));
    EXPECT_TRUE(atInterface.isSilentAt(2, 440));
}

TEST_F(PublicAggregate, OutlivesItsMakerAndIsFoundAndRemovedByALaterRun) {
    {
        QtMainQueue earlierQueue;
        PipeWireAudio earlier(earlierQueue);
        make(earlier.sinks(), interface4.name);
    }
    ASSERT_TRUE(waitUntil([&] { return find(uid).has_value(); }));
    EXPECT_TRUE(session().graph().linked(uid, microphone));
    EXPECT_FALSE(sinks().create(describe(interface4.name)).has_value()); // one at most

    EXPECT_EQ(sinks().remove(*find(uid)), statusOk);

    EXPECT_EQ(find(uid), std::nullopt);
}

TEST_F(PublicAggregate, ReplacesItselfAtOnce) {
    const AudioObjectID first = make(sinks(), interface4.name);

    EXPECT_EQ(sinks().remove(first), statusOk);
    const AudioObjectID second = make(sinks(), speakers.name);

    EXPECT_EQ(second, first); // stored settings still fit
    EXPECT_TRUE(waitUntil([&] { return session().graph().linked(uid, speakers.name); }));
    EXPECT_FALSE(session().graph().linked(uid, interface4.name));
}

TEST_F(PublicAggregate, RefusesAMemberThatIsNotThere) {
    EXPECT_FALSE(sinks().create(describe("nobody")).has_value());
    EXPECT_EQ(find(uid), std::nullopt);
}

TEST_F(PublicAggregate, NeverRemovesAnOrdinaryDevice) {
    const auto device = find(speakers.name);
    ASSERT_TRUE(device.has_value());

    EXPECT_NE(sinks().remove(*device), statusOk);

    EXPECT_EQ(find(speakers.name), device);
}

TEST_F(PublicAggregate, ComesBackWithTheDaemonUnlessItWasRemovedMeanwhile) {
    const AudioObjectID made = make(sinks(), interface4.name);

    session().killDaemon();
    ASSERT_TRUE(waitUntil([&] { return !devices().isAvailable(); }));
    session().startServices();
    EXPECT_TRUE(waitUntil([&] { return session().graph().linked(uid, interface4.name); }));

    session().killDaemon();
    ASSERT_TRUE(waitUntil([&] { return !devices().isAvailable(); }));
    sinks().remove(made);
    session().startServices();
    ASSERT_TRUE(waitUntil([&] { return devices().isAvailable(); }));
    EXPECT_EQ(find(uid), std::nullopt);
}

TEST_F(PublicAggregate, JoinsAMemberThatReturns) {
    const SessionDevice box{
        .name = "test.box", .description = "Stage Box", .mediaClass = "Audio/Sink"};
    session().add(box);
    ASSERT_TRUE(waitUntil([&] { return find(box.name).has_value(); }));
    make(sinks(), box.name);
    ASSERT_TRUE(waitUntil([&] { return session().graph().linked(uid, box.name); }));
    session().remove(box.name);

    session().add(box);

    EXPECT_TRUE(waitUntil([&] { return session().graph().linked(uid, box.name); }));
    session().remove(box.name);
}

/// The daemon leaves links paused then, and these outlive whoever made them.
TEST_F(PublicAggregate, PlaysOnToBothSidesOnceTheSessionManagerIsBack) {
    make(sinks(), interface4.name);
    for (int round = 0; round < 3; ++round) {
        session().killManager();
        ASSERT_TRUE(waitUntil([&] { return !devices().isAvailable(); }));
        session().startServices();
        ASSERT_TRUE(waitUntil([&] { return devices().isAvailable(); }));

        // New ones, for the links of others are paused as well.
        const Feeder workstation(session(), uid, {1, 2}, {.hz = {440, 440}, .db = playedDb});
        const Recorder atInterface(session(), interface4.name, {1, 2});
        for (const std::uint32_t side : {0U, 1U}) {
            EXPECT_TRUE(atInterface.hears(side, 440, playedDb)) << "round " << round;
        }
    }
}

TEST_F(PublicAggregate, MakesALinkAgainThatSomebodyRemoves) {
    make(sinks(), interface4.name);
    const auto links = [] {
        auto found = session().graph().links();
        std::erase_if(found, [](const GraphLink& link) {
            return link.from != uid || link.to != interface4.name;
        });
        return found;
    };
    ASSERT_EQ(links().size(), 2U);
    const std::uint32_t removed = links().front().id;

    runToEnd({"pw-cli", "destroy", std::to_string(removed)}, session().environment());

    EXPECT_TRUE(waitUntil([&] { return links().size() == 2; }));
    const Feeder workstation(session(), uid, {1, 2}, {.hz = {440, 440}, .db = playedDb});
    const Recorder atInterface(session(), interface4.name, {1, 2});
    EXPECT_TRUE(atInterface.hears(0, 440, playedDb));
    EXPECT_TRUE(atInterface.hears(1, 440, playedDb));
}

} // namespace
} // namespace velmora
