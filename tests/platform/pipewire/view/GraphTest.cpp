#include "platform/pipewire/view/Graph.h"

#include "GraphBuilder.h"

#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

ProgramClaim claimOf(const Properties& properties) {
    GraphBuilder builder;
    const Serial client = builder.addClient(properties);
    return builder.graph.clients().at(client).claim;
}

TEST(Graph, KeepsTwoObjectsApartThatHadTheSameId) {
    Graph graph;
    graph.addNode(65, {{"object.serial", "100"}, {"node.name", "old"}});
    graph.remove(65);
    graph.addNode(65, {{"object.serial", "101"}, {"node.name", "new"}});

    EXPECT_EQ(graph.node(100), nullptr);
    ASSERT_NE(graph.node(101), nullptr);
    EXPECT_EQ(graph.node(101)->name, "new");
}

TEST(Graph, GivesAPortToTheNodeThatHasTheIdNow) {
    Graph graph;
    graph.addNode(65, {{"object.serial", "100"}});
    graph.remove(65);
    graph.addNode(65, {{"object.serial", "101"}});

    graph.addPort(66, {{"object.serial", "102"}, {"node.id", "65"}});

    EXPECT_EQ(graph.node(101)->ports.size(), 1U);
}

TEST(Graph, ForgetsAPortThatWasRemoved) {
    GraphBuilder builder;
    const Serial node = builder.addSink("sink", {"FL"});
    const Serial port = builder.graph.node(node)->ports.front().serial;

    builder.graph.remove(GraphBuilder::id(port));

    EXPECT_EQ(builder.graph.node(node)->ports.size(), 1U); // the monitor stays
}

TEST(Graph, BelievesTheKernelAboutAnOrdinaryClientsProcess) {
    EXPECT_EQ(claimOf({{"application.process.id", "2"}, {"pipewire.sec.pid", "4312"}}),
              (ProgramClaim{.pid = 4312, .isVouchedFor = true}));
    EXPECT_EQ(claimOf({{"application.process.id", "4312"}}),
              (ProgramClaim{.pid = 4312, .isVouchedFor = false}));
    EXPECT_EQ(claimOf({}), ProgramClaim{});
}

TEST(Graph, TakesDownWhatAPulseClientSaysOfItself) {
    EXPECT_EQ(claimOf({{"client.api", "pipewire-pulse"},
                       {"application.process.id", "2"},
                       {"application.process.binary", "player"},
                       {"application.process.host", "desk"},
                       {"application.process.machine-id", "0a1b"},
                       {"pipewire.access.portal.app_id", "org.example.Player"},
                       {"pipewire.sec.pid", "900"}}),
              (ProgramClaim{.pid = 2,
                            .isVouchedFor = false,
                            .program = "player",
                            .machine = "0a1b",
                            .host = "desk",
                            .sandbox = "org.example.Player"}));
    EXPECT_EQ(claimOf({{"client.api", "pipewire-pulse"}, {"pipewire.sec.pid", "900"}}),
              ProgramClaim{});
}

TEST(Graph, RemembersStreamsAsTheSessionManagerOfTheMomentDoes) {
    GraphBuilder built;
    const Serial stream = built.addNode(
        "player", "Stream/Output/Audio", {{"media.role", "Music"}, {"media.name", "song"}});
    EXPECT_EQ(built.graph.node(stream)->routeKey.value, "Music");

    built.addClient({{"wireplumber.daemon", "true"}, {"application.version", "0.5.18"}});
    EXPECT_EQ(built.graph.node(stream)->routeKey.value, "song");
    const Serial later = built.addNode(
        "player", "Stream/Output/Audio", {{"media.role", "Music"}, {"media.name", "next"}});
    EXPECT_EQ(built.graph.node(later)->routeKey.value, "next");

    built.addClient({{"application.version", "0.5.8"}}); // another program
    EXPECT_EQ(built.graph.node(stream)->routeKey.value, "song");
    built.addClient({{"wireplumber.daemon", "true"}, {"application.version", "0.5.8"}});
    EXPECT_EQ(built.graph.node(stream)->routeKey.value, "Music");
}

TEST(Graph, ReadsTheDefaultSinksName) {
    GraphBuilder builder;
    EXPECT_EQ(builder.graph.defaultSinkName(), std::nullopt);

    builder.setDefaultSink("alsa_output.pci");

    EXPECT_EQ(builder.graph.defaultSinkName(), "alsa_output.pci");
}

TEST(Graph, ReadsANameWithEscapedCharacters) {
    GraphBuilder builder;

    builder.setDefaultSink(R"(a\"b\\c)");

    EXPECT_EQ(builder.graph.defaultSinkName(), R"(a"b\c)");
}

TEST(Graph, ReadsNoNameInAnythingElse) {
    GraphBuilder builder;
    for (const char* const text :
         {"", "speakers", "[]", "7", R"({"name":7})", R"({"other":"a"})"}) {
        builder.graph.addMetadata(35, "default");
        builder.graph.setMetadata(
            "default", 0, "default.audio.sink", MetadataValue{.type = "", .value = text});

        EXPECT_EQ(builder.graph.defaultSinkName(), std::nullopt) << text;
    }
}

TEST(Graph, ForgetsMetadataWithItsObject) {
    Graph graph;
    graph.addMetadata(35, "default");
    graph.setMetadata("default", 0, "key", MetadataValue{.type = "", .value = "value"});
    ASSERT_TRUE(graph.hasMetadata("default"));

    graph.remove(35);

    EXPECT_FALSE(graph.hasMetadata("default"));
    EXPECT_EQ(graph.metadata("default", 0, "key"), std::nullopt);
}

TEST(Graph, RemovesOneKeyOrAllOfASubject) {
    Graph graph;
    const MetadataValue value{.type = "Spa:Id", .value = "7"};
    graph.addMetadata(35, "default");
    graph.setMetadata("default", 65, "one", value);
    graph.setMetadata("default", 65, "two", value);

    graph.setMetadata("default", 65, "one", std::nullopt);
    EXPECT_EQ(graph.metadata("default", 65, "one"), std::nullopt);
    EXPECT_EQ(graph.metadata("default", 65, "two"), value);

    graph.setMetadata("default", 65, "", std::nullopt);
    EXPECT_EQ(graph.metadata("default", 65, "two"), std::nullopt);
}

TEST(Graph, ReplacesAllEntriesOfAMetadataObject) {
    Graph graph;
    const MetadataValue value{.type = "Spa:Id", .value = "7"};
    graph.addMetadata(35, "default");
    graph.setMetadata("default", 65, "old", value);

    graph.replaceMetadata("default", {{65, {{"new", value}}}});

    EXPECT_EQ(graph.metadata("default", 65, "old"), std::nullopt);
    EXPECT_EQ(graph.metadata("default", 65, "new"), value);
}

TEST(Graph, AReusedIdHasNothingOfTheOldNodesMetadata) {
    Graph graph;
    graph.addMetadata(35, "default");
    graph.addNode(65, {{"object.serial", "100"}});
    graph.setMetadata(
        "default", 65, "target.object", MetadataValue{.type = "Spa:Id", .value = "7"});

    graph.remove(65);
    graph.addNode(65, {{"object.serial", "101"}});

    EXPECT_EQ(graph.metadata("default", 65, "target.object"), std::nullopt);
}

TEST(Graph, PrefersAForcedRate) {
    const auto hz = [](const std::string& value) {
        return MetadataValue{.type = "", .value = value};
    };
    Graph graph;
    EXPECT_EQ(graph.configuredRate(), 48000.0);

    graph.addMetadata(30, "settings");
    graph.setMetadata("settings", 0, "clock.rate", hz("44100"));
    graph.setMetadata("settings", 0, "clock.force-rate", hz("0"));
    EXPECT_EQ(graph.configuredRate(), 44100.0);

    graph.setMetadata("settings", 0, "clock.force-rate", hz("96000"));
    EXPECT_EQ(graph.configuredRate(), 96000.0);
}

} // namespace
} // namespace velmora::pipewire
