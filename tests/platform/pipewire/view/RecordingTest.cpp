#include "platform/pipewire/view/Recording.h"

#include "GraphBuilder.h"

#include <gmock/gmock.h>

namespace velmora::pipewire {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class RecordingTest : public testing::Test {
protected:
    RecordingTest() { builder.addPorts(microphone, "out", {"FL", "FR"}); }

    Serial addClient(std::int32_t pid) {
        return builder.addClient({{"pipewire.sec.pid", std::to_string(pid)}});
    }
    Serial addRecorder(Serial client, Properties properties = {}) {
        const Serial node =
            builder.addNode("recorder", "Stream/Input/Audio", std::move(properties), client);
        builder.addPorts(node, "in", {"FL", "FR"});
        builder.graph.setRunning(node, true);
        return node;
    }
    /// Every process is the one that it says, and leads itself.
    std::map<Serial, Recorders> recorded() {
        directory.update(builder.graph);
        for (const auto& [client, claim] : ProcessDirectory::Claims(directory.unresolved())) {
            directory.resolve(
                client, claim, {.program = {.pid = claim.pid}, .leader = {.pid = claim.pid}});
        }
        directory.update(builder.graph);
        return recordedDevices(builder.graph, directory);
    }

    GraphBuilder builder;
    const Serial microphone = builder.addNode("mic", "Audio/Source/Virtual");
    ObjectIds ids;
    ProcessDirectory directory{ids, mixerPid};
};

TEST_F(RecordingTest, IsNobodysWhileNothingIsLinked) {
    addRecorder(addClient(4312));

    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(RecordingTest, NamesAnApplicationThatAlsoPlays) {
    builder.addStream(addClient(4312), {"FL", "FR"});
    builder.addLink(microphone, addRecorder(addClient(4312)));

    const auto found = recorded();

    const AudioObjectID process = directory.objectOf(4312);
    ASSERT_NE(process, 0U);
    EXPECT_THAT(found,
                ElementsAre(Pair(microphone, Recorders{.areAny = true, .processes = {process}})));
}

TEST_F(RecordingTest, NamesAnApplicationOnceForAllItsLinks) {
    const Serial client = addClient(4312);
    builder.addStream(client, {"FL", "FR"});
    const Serial recorder = addRecorder(client);
    builder.addLink(microphone, recorder);
    builder.addLink(microphone, recorder);
    builder.addLink(microphone, addRecorder(client));

    EXPECT_EQ(recorded().at(microphone).processes.size(), 1U);
}

TEST_F(RecordingTest, KnowsARecorderThatHasNeverPlayed) {
    builder.addLink(microphone, addRecorder(addClient(4312)));

    EXPECT_THAT(recorded(), ElementsAre(Pair(microphone, Recorders{.areAny = true})));
}

TEST_F(RecordingTest, CountsNoLevelMeter) {
    builder.addLink(microphone, addRecorder(addClient(4312), {{"stream.monitor", "true"}}));
    builder.addLink(microphone, addRecorder(addClient(4313), {{"resample.peaks", "true"}}));

    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(RecordingTest, CountsNobodyWhoPauses) {
    const Serial recorder = addRecorder(addClient(4312));
    builder.addLink(microphone, recorder);

    builder.graph.setRunning(recorder, false);

    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(RecordingTest, CountsNothingOfOurs) {
    builder.addLink(microphone, addRecorder(addClient(mixerPid)));

    EXPECT_THAT(recorded(), IsEmpty());
}

TEST_F(RecordingTest, TakesAMonitorOfASinkForNoRecording) {
    const Serial sink = builder.addSink("speakers", {"FL", "FR"});
    builder.addLink(sink, addRecorder(addClient(4312)));

    EXPECT_THAT(recorded(), IsEmpty());
}

} // namespace
} // namespace velmora::pipewire
