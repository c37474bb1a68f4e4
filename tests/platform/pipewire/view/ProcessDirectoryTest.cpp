#include "platform/pipewire/view/ProcessDirectory.h"

#include "GraphBuilder.h"

#include <gmock/gmock.h>

namespace velmora::pipewire {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;

class ProcessDirectoryTest : public testing::Test {
protected:
    Serial addClient(std::int32_t pid) {
        return builder.addClient({{"pipewire.sec.pid", std::to_string(pid)}});
    }
    void update() { directory.update(builder.graph); }
    Serial addPulseClient(const std::string& name) {
        return builder.addClient({{"client.api", "pipewire-pulse"},
                                  {"application.name", name},
                                  {"application.process.id", "2"}});
    }
    void answer(Serial client, const ProcessDirectory::Owner& owner) {
        directory.resolve(client, builder.graph.clients().at(client).claim, owner);
    }
    /// Every process is the one that it says, and leads itself, unless resolved otherwise before.
    void resolveAll() {
        update();
        for (const auto& [client, claim] : ProcessDirectory::Claims(directory.unresolved())) {
            answer(client,
                   {.program = {.pid = claim.pid}, .leader = {.pid = claim.pid, .start = started}});
        }
        update();
    }
    std::vector<Serial> streamsOf(std::int32_t leader) {
        return directory.streams(directory.objectOf(leader));
    }

    GraphBuilder builder;
    std::uint64_t started = 1; // when every process started
    ObjectIds ids;
    ProcessDirectory directory{ids, mixerPid};
};

TEST_F(ProcessDirectoryTest, HasNoObjectForAClientThatNeverPlayed) {
    addClient(4312);

    resolveAll();

    EXPECT_THAT(directory.objects(), IsEmpty());
    EXPECT_EQ(directory.objectOf(4312), 0U);
}

TEST_F(ProcessDirectoryTest, HasAnObjectOnceAnOutputStreamAppears) {
    const Serial stream = builder.addStream(addClient(4312), {"FL", "FR"});

    resolveAll();

    EXPECT_THAT(directory.objects(), ElementsAre(directory.objectOf(4312)));
    EXPECT_EQ(directory.pid(directory.objectOf(4312)), 4312);
    EXPECT_THAT(streamsOf(4312), ElementsAre(stream));
}

TEST_F(ProcessDirectoryTest, AsksWhichApplicationAProcessBelongsTo) {
    const Serial client = addClient(4312);
    builder.addStream(client, {"FL", "FR"});
    update();

    EXPECT_THAT(directory.unresolved(),
                ElementsAre(Pair(client, ProgramClaim{.pid = 4312, .isVouchedFor = true})));
    EXPECT_THAT(directory.objects(), IsEmpty());
}

TEST_F(ProcessDirectoryTest, AsksAgainWhenAClientSaysSomethingElseOfItself) {
    const Serial client = builder.addClient({{"pipewire.sec.pid", "900"}});
    builder.addStream(client, {"FL", "FR"});
    resolveAll();
    ASSERT_EQ(directory.objects().size(), 1U);

    builder.graph.describeClient(
        client, {{"client.api", "pipewire-pulse"}, {"application.process.id", "4312"}});
    update();
    directory.resolve(client,
                      {.pid = 900, .isVouchedFor = true},
                      {.program = {.pid = 900}, .leader = {.pid = 900}}); // comes too late
    update();

    EXPECT_THAT(directory.objects(), IsEmpty());
    resolveAll();
    EXPECT_THAT(directory.objects(), ElementsAre(directory.objectOf(4312)));
}

TEST_F(ProcessDirectoryTest, ListsClientsThatCannotBeToldEachByItself) {
    const Serial one = addPulseClient("Radio");
    const Serial two = addPulseClient("Radio");
    const Serial ofOne = builder.addStream(one, {"FL", "FR"});
    const Serial ofTwo = builder.addStream(two, {"FL", "FR"});
    update();
    answer(one, {.program = {.bundleID = "org.example.Radio"}});
    answer(two, {});
    update();

    EXPECT_THAT(directory.objects(), SizeIs(2));
    EXPECT_THAT(streamsOf(firstStandIn), ElementsAre(ofOne));
    EXPECT_THAT(streamsOf(firstStandIn + 1), ElementsAre(ofTwo));
    EXPECT_EQ(directory.name(firstStandIn), "Radio");
    EXPECT_EQ(directory.bundleID(firstStandIn), "org.example.Radio");
    EXPECT_EQ(directory.bundleID(firstStandIn + 1), "");
}

TEST_F(ProcessDirectoryTest, NamesAStandInAsItsProgramOrItsStreamWhenItSaysNothing) {
    const Serial bare = builder.addClient({});
    const Serial program = builder.addClient({{"application.process.binary", "player"}});
    builder.addStream(bare, {"FL"});
    builder.addStream(program, {"FL"});

    resolveAll();

    EXPECT_EQ(directory.name(firstStandIn), "stream");
    EXPECT_EQ(directory.name(firstStandIn + 1), "player");
}

TEST_F(ProcessDirectoryTest, KeepsTheConnectionsOfOneProcessTogether) {
    const Serial first = addClient(500);
    const Serial early = builder.addStream(first, {"FL", "FR"});
    update();
    answer(first, {.program = {.pid = 500}, .leader = {.pid = 400}});
    const Serial second = addClient(500);
    const Serial late = builder.addStream(second, {"FL", "FR"});
    update();
    answer(second, {.program = {.pid = 500}, .leader = {.pid = 500}}); // 400 has ended meanwhile
    update();

    EXPECT_THAT(streamsOf(400), ElementsAre(early, late));
}

TEST_F(ProcessDirectoryTest, CountsHelperProcessesWithTheirApplication) {
    const Serial first = addClient(500);
    const Serial second = addClient(501);
    const Serial one = builder.addStream(first, {"FL", "FR"});
    const Serial two = builder.addStream(second, {"FL", "FR"});
    update();
    answer(first, {.program = {.pid = 500}, .leader = {.pid = 400}});
    answer(second, {.program = {.pid = 501}, .leader = {.pid = 400}});
    update();

    EXPECT_EQ(directory.objects().size(), 1U);
    EXPECT_THAT(streamsOf(400), ElementsAre(one, two));
}

TEST_F(ProcessDirectoryTest, KeepsTheObjectWhileAClientOfTheApplicationIsThere) {
    const Serial client = addClient(4312);
    const Serial stream = builder.addStream(client, {"FL", "FR"});
    resolveAll();
    const AudioObjectID object = directory.objectOf(4312);

    builder.graph.remove(GraphBuilder::id(stream));
    update();

    EXPECT_EQ(directory.objectOf(4312), object);
    EXPECT_THAT(directory.streams(object), IsEmpty());

    builder.graph.remove(GraphBuilder::id(client));
    update();

    EXPECT_THAT(directory.objects(), IsEmpty());
}

/// A process that plays, leaves, and has connected and played again.
class ReturningProcess : public ProcessDirectoryTest {
protected:
    ReturningProcess() {
        const Serial client = addClient(4312);
        builder.addStream(client, {"FL", "FR"});
        resolveAll();
        before = directory.objectOf(4312);
        builder.graph.remove(GraphBuilder::id(client));
        update();
    }
    void comeBack() {
        builder.addStream(addClient(4312), {"FL", "FR"});
        update();
        EXPECT_THAT(directory.unresolved(), SizeIs(1));
        resolveAll();
    }

    AudioObjectID before{};
};

TEST_F(ReturningProcess, IsTheSameObjectAsBefore) {
    EXPECT_EQ(directory.pid(before), 0);
    EXPECT_THAT(directory.streams(before), IsEmpty());

    comeBack();

    EXPECT_EQ(directory.objectOf(4312), before);
    EXPECT_EQ(directory.streams(before).size(), 1U);
}

TEST_F(ReturningProcess, IsNoObjectBeforeItPlays) {
    addClient(4312);

    resolveAll();

    EXPECT_THAT(directory.objects(), IsEmpty());
}

TEST_F(ReturningProcess, IsAnotherObjectWhenItsNumberWasGivenToAnotherProcess) {
    started = 2;

    comeBack();

    EXPECT_NE(directory.objectOf(4312), before);
}

TEST_F(ReturningProcess, IsAnotherObjectWhenItsStartIsUnknown) {
    started = 0;

    comeBack();

    EXPECT_NE(directory.objectOf(4312), before);
}

TEST_F(ReturningProcess, IsForgottenAfterHundredsOfOthers) {
    for (std::int32_t pid = 10000; pid < 10300; ++pid) {
        const Serial client = addClient(pid);
        builder.addStream(client, {"FL", "FR"});
        resolveAll();
        builder.graph.remove(GraphBuilder::id(client));
        update();
    }

    comeBack();

    EXPECT_NE(directory.objectOf(4312), before);
}

TEST_F(ProcessDirectoryTest, NamesAnApplicationAsItNamesItself) {
    builder.addStream(
        builder.addClient({{"pipewire.sec.pid", "4312"}, {"application.name", "Radio"}}), {"FL"});
    builder.addStream(builder.addClient({{"pipewire.sec.pid", "4313"},
                                         {"application.name", "PipeWire ALSA [aplay]"}}),
                      {"FL"});

    resolveAll();

    EXPECT_EQ(directory.name(4312), "Radio");
    EXPECT_EQ(directory.name(4313), "aplay");
    EXPECT_EQ(directory.name(4314), "");
}

TEST_F(ProcessDirectoryTest, LeavesItselfOut) {
    builder.addStream(addClient(mixerPid), {"FL", "FR"});

    resolveAll();

    EXPECT_THAT(directory.objects(), IsEmpty());
}

TEST_F(ProcessDirectoryTest, ListsASandboxedProgramThatCountsItselfUnderOurNumber) {
    const Serial client = builder.addClient(
        {{"client.api", "pipewire-pulse"}, {"application.process.id", std::to_string(mixerPid)}});
    const Serial stream = builder.addStream(client, {"FL", "FR"});
    update();
    answer(client, {.program = {.pid = 500}, .leader = {.pid = 500}});

    update();

    EXPECT_THAT(streamsOf(500), ElementsAre(stream));
}

TEST_F(ProcessDirectoryTest, LeavesHelpersOfItselfOut) {
    const Serial helper = addClient(1001);
    builder.addStream(helper, {"FL", "FR"});
    update();
    answer(helper, {.program = {.pid = 1001}, .leader = {.pid = mixerPid}});

    update();

    EXPECT_THAT(directory.objects(), IsEmpty());
}

TEST_F(ProcessDirectoryTest, TakesAJackProgramWithOutputPortsForAnApplication) {
    const Serial recorder =
        builder.addNode("recorder", "", {{"client.api", "jack"}}, addClient(600));
    builder.addPorts(recorder, "in", {"in_1"});
    const Serial synth = builder.addNode("synth", "", {{"client.api", "jack"}}, addClient(601));
    builder.addPorts(synth, "out", {"out_1", "out_2"});

    resolveAll();

    EXPECT_EQ(directory.objectOf(600), 0U);
    EXPECT_THAT(streamsOf(601), ElementsAre(synth));
}

TEST_F(ProcessDirectoryTest, TakesAFilterThatOnlyPlaysForAnApplication) {
    const Serial synth = builder.addNode("synth", "", {}, addClient(601));
    builder.addPorts(synth, "out", {"out_1", "out_2"});
    const Serial equalizer = builder.addNode("equalizer", "", {}, addClient(602));
    builder.addPorts(equalizer, "in", {"in_1"});
    builder.addPorts(equalizer, "out", {"out_1"});
    const Serial loopback =
        builder.addNode("loopback", "", {{"node.link-group", "loop-1"}}, addClient(603));
    builder.addPorts(loopback, "out", {"out_1"});

    resolveAll();

    EXPECT_THAT(streamsOf(601), ElementsAre(synth));
    EXPECT_EQ(directory.objects().size(), 1U);
}

TEST_F(ProcessDirectoryTest, ListsApplicationsInTheOrderInWhichTheyFirstPlayed) {
    const Serial early = addClient(700);
    builder.addStream(addClient(701), {"FL", "FR"});
    resolveAll();

    builder.addStream(early, {"FL", "FR"});
    update();

    EXPECT_THAT(directory.objects(), ElementsAre(directory.objectOf(701), directory.objectOf(700)));
}

} // namespace
} // namespace velmora::pipewire
