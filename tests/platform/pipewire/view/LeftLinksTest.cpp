#include "platform/pipewire/view/LeftLinks.h"

#include "GraphBuilder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::pipewire {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A stream that a session manager has sent from the speakers to another sink.
class LeftLinks : public ::testing::Test {
protected:
    GraphBuilder builder;
    Serial manager = builder.addClient({});
    Serial user = builder.addClient({});
    Serial speakers = builder.addSink("speakers", {"FL", "FR"});
    Serial sink = builder.addSink("sink", {"FL", "FR"});
    Serial stream = builder.addStream(0, {"FL", "FR"});
    Serial other = builder.addStream(0, {"FL", "FR"});
};

TEST_F(LeftLinks, AreThoseThatTheManagerMadeBefore) {
    const Serial left = builder.addLink(stream, speakers, manager);
    const Serial right = builder.addLink(stream, speakers, manager);
    builder.addLink(other, speakers, manager);
    builder.addLink(stream, sink, manager);

    EXPECT_THAT(leftLinks(builder.graph, stream, sink), ElementsAre(left, right));
}

TEST_F(LeftLinks, AreNoneBeforeTheStreamHasArrived) {
    builder.addLink(stream, speakers, manager);
    builder.addLink(other, sink, manager);

    EXPECT_THAT(leftLinks(builder.graph, stream, sink), IsEmpty());
}

TEST_F(LeftLinks, AreNoneOfTheUsersOwn) {
    builder.addLink(stream, speakers, user);
    builder.addLink(stream, sink, manager);
    builder.addLink(stream, speakers, user);

    EXPECT_THAT(leftLinks(builder.graph, stream, sink), IsEmpty());
}

TEST_F(LeftLinks, AreNoneThatTheManagerMakesAfterwards) {
    builder.addLink(stream, sink, manager);
    builder.addLink(stream, speakers, manager);

    EXPECT_THAT(leftLinks(builder.graph, stream, sink), IsEmpty());
}

} // namespace
} // namespace velmora::pipewire
