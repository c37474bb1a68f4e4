// Captures and outputs on one node, added and removed while it runs.

#include "BackendTest.h"

#include "support/ProcessFigures.h"

#include <thread>
#include <unistd.h>

namespace velmora {
namespace {

using namespace support;

class MixParts : public BackendTest {
protected:
    static GraphNode ownNode() {
        const AudioGraph graph = session().graph();
        const auto found = std::ranges::find_if(graph.nodes(), [](const GraphNode& node) {
            return node.name.starts_with("velmora.mix.");
        });
        return found == graph.nodes().end() ? GraphNode{} : *found;
    }
    static std::ptrdiff_t ownNodes() {
        const AudioGraph graph = session().graph();
        return std::ranges::count_if(graph.nodes(), [](const GraphNode& node) {
            return node.name.starts_with("velmora.mix.");
        });
    }
    /// One more input and output of the interface, until both have been called.
    void useInterface() {
        const auto device = find(interface4.name).value_or(0);
        const auto received = std::make_shared<std::atomic<int>>(0);
        const auto rendered = std::make_shared<std::atomic<int>>(0);
        const auto input = audio.units().makeInput();
        const auto output = audio.units().makeOutput();
        EXPECT_EQ(input->setDevice(device), statusOk);
        EXPECT_EQ(output->setDevice(device), statusOk);
        EXPECT_EQ(
            input->start([received](std::int64_t, std::span<const float* const>) { ++*received; }),
            statusOk);
        EXPECT_EQ(output->start([rendered](std::int64_t, std::span<float* const>) { ++*rendered; }),
                  statusOk);
        EXPECT_TRUE(waitUntil([&] { return *received > 2 && *rendered > 2; }));
    }
};

TEST_F(MixParts, ComeAndGoWithoutABreakInWhatAnotherOnePlays) {
    useInterface(); // from here on nothing is made for the first time
    const Recorder recorder(session(), speakers.name, {1});
    const std::int64_t descriptors = openDescriptors(getpid());
    const auto output = play(speakers.name);
    ASSERT_TRUE(recorder.hears(0, 440, playedDb));
    const std::size_t from = recorder.frames();

    for (int round = 0; round < 50; ++round) {
        useInterface();
    }

    EXPECT_TRUE(recorder.waitForFreshSound());
    EXPECT_EQ(countBreaks(recorder.all().channel(0, from), 440), 0);
    output->stop();
    EXPECT_TRUE(waitUntil([&] { return openDescriptors(getpid()) <= descriptors; }));
}

TEST_F(MixParts, ThatAllStopAndStartAgainAreNoChangeOfTheDefaultOutput) {
    int told = 0;
    const auto connection = devices().defaultOutputChanged().connect([&told] { ++told; });

    for (int round = 0; round < 20; ++round) {
        const auto output = play(speakers.name);
        EXPECT_TRUE(waitUntil([&] { return ownNodes() == 1; }));
        output->stop();
        const auto next = play(speakers.name);
        EXPECT_TRUE(waitUntil([&] { return ownNodes() == 1; }));
    }

    EXPECT_EQ(told, 0);
}

TEST_F(MixParts, AreOneNodeInTheGraph) {
    const auto toSpeakers = play(speakers.name);
    const auto toInterface = play(interface4.name);
    EXPECT_TRUE(waitUntil([&] { return ownNodes() == 1; }));

    const Recorder recorder(session(), interface4.name, {1});
    toSpeakers->stop();
    EXPECT_TRUE(recorder.hears(0, 440, playedDb));
    EXPECT_EQ(ownNodes(), 1);
    toInterface->stop();

    EXPECT_TRUE(waitUntil([&] { return ownNodes() == 0; }));
}

TEST_F(MixParts, LeaveNoPortAndNoDescriptorBehind) {
    const auto output = play(speakers.name);
    const Recorder recorder(session(), speakers.name, {1});
    ASSERT_TRUE(recorder.hears(0, 440, playedDb));
    const auto comeAndGo = [this](int rounds) {
        for (int round = 0; round < rounds; ++round) {
            useInterface();
        }
    };
    comeAndGo(10); // the next one may come before the ports of the one before can serve again
    const GraphNode before = ownNode();
    const std::int64_t descriptors = openDescriptors(getpid());

    comeAndGo(50);

    const GraphNode after = ownNode();
    EXPECT_EQ(after.serial, before.serial);
    EXPECT_LE(after.inputPorts, 20) << "a few sets of four, not sixty";
    EXPECT_LE(after.outputPorts, 18) << "and of three";
    EXPECT_TRUE(waitUntil([&] { return openDescriptors(getpid()) <= descriptors; }));
}

/// The ports of one are those of the other before.
TEST_F(MixParts, DoNotPlayToWhereAPartBeforeThemPlayed) {
    const Recorder atSpeakers(session(), speakers.name, {1});
    const Recorder atInterface(session(), interface4.name, {1});
    const auto keepsTheNode = audio.units().makeInput();
    ASSERT_EQ(keepsTheNode->setDevice(find(interface4.name).value_or(0)), statusOk);
    ASSERT_EQ(keepsTheNode->start([](std::int64_t, std::span<const float* const>) {}), statusOk);

    const auto playFor = [&](const std::string& device, double hz) {
        const auto isLinked = [&] { return session().graph().linked(ownNode().name, device); };
        const auto output = play(device, hz);
        EXPECT_TRUE(waitUntil(isLinked));
        output->stop();
        EXPECT_TRUE(waitUntil([&] { return !isLinked(); }));
    };
    // Far apart: a tone that begins or ends is heard a little at its neighbours' pitch, too.
    constexpr double high = 15'000;
    for (int round = 0; round < 20; ++round) {
        playFor(speakers.name, 440);
        playFor(interface4.name, high);
    }

    EXPECT_TRUE(atSpeakers.waitForFreshSound());
    EXPECT_TRUE(atInterface.waitForFreshSound());
    EXPECT_LT(ownNode().outputPorts, 60) << "most have served both";
    EXPECT_LT(toneDb(atSpeakers.all().channel(0), high), silentDb);
    EXPECT_LT(toneDb(atInterface.all().channel(0), 440), silentDb);
}

/// Each turn of the mute opens the tap anew, with the ports that the one before had.
TEST_F(MixParts, HearBothStreamsOfAnApplicationThatIsSilencedTimeAndAgain) {
    using Mute = ApplicationTaps::Mute;
    const auto keepsTheNode = audio.units().makeInput();
    ASSERT_EQ(keepsTheNode->setDevice(find(interface4.name).value_or(0)), statusOk);
    ASSERT_EQ(keepsTheNode->start([](std::int64_t, std::span<const float* const>) {}), statusOk);
    const ToneApp app(session());
    app.play("music", 440, 440, playedDb);
    app.play("voice", 1000, 1000, playedDb);
    const AudioObjectID process = processOf(app.pid());

    for (int round = 0; round < 20; ++round) {
        const Mute mute = round % 2 == 0 ? Mute::whileTapped : Mute::no;
        constexpr std::size_t longEnough = 480000; // 10 s
        const HeardTap tap(taps(), process, mute, longEnough);
        ASSERT_TRUE(waitUntil([&] {
            return std::abs(tap.db(0, 440) - playedDb) < tolerance &&
                   std::abs(tap.db(1, 1000) - playedDb) < tolerance;
        })) << "in round "
            << round << ": " << tap.db(0, 440) << " and " << tap.db(1, 1000) << " dB";
    }

    EXPECT_LT(ownNode().inputPorts, 60) << "most have served again";
}

TEST_F(MixParts, LeaveASilencedApplicationSilentHoweverLongTheNextTapTakes) {
    const ToneApp app(session());
    app.play("music", 440, 440, playedDb);
    const AudioObjectID process = processOf(app.pid());
    HeardTap tap(taps(), process, ApplicationTaps::Mute::whileTapped);
    const Recorder atSpeakers(session(), speakers.name, {1});
    ASSERT_TRUE(atSpeakers.isSilentAt(0, 440));
    ASSERT_TRUE(atSpeakers.waitForFreshSound());
    const std::size_t from = atSpeakers.frames();

    tap.release();
    std::this_thread::sleep_for(std::chrono::milliseconds(600)); // as a crowded machine may take
    const HeardTap next(taps(), process, ApplicationTaps::Mute::whileTapped);
    ASSERT_TRUE(atSpeakers.waitForFreshSound());

    const auto heard = atSpeakers.all().channel(0, from);
    EXPECT_LT(std::abs(*std::ranges::max_element(heard)), fromDb(playedDb - 40));
}

} // namespace
} // namespace velmora
