#include "operations/RightsNotice.h"

#include "OperationsFixture.h"

#include <chrono>
#include <gmock/gmock.h>

namespace velmora {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

class RightsNotices : public OperationsFixture {
protected:
    void runMix() {
        engine.add(player);
        engine.start();
        machine.advance(1s);
    }

    const Problem noRights{.kind = Problem::Kind::noRealTimeRights};
    RightsNotice notice{engine, machine.defaults};
};

TEST_F(RightsNotices, SayThatTheMixHasNoPriority) {
    machine.sound.setRealTime(false);
    EXPECT_THAT(engine.problems(), IsEmpty());

    runMix();

    EXPECT_THAT(engine.problems(), ElementsAre(noRights));
    EXPECT_TRUE(engine.canDismissProblems());
}

TEST_F(RightsNotices, SayNothingWhereItHasIt) {
    runMix();

    EXPECT_THAT(engine.problems(), IsEmpty());
}

TEST_F(RightsNotices, AreReadOnce) {
    machine.sound.setRealTime(false);
    runMix();
    engine.dismissProblems();
    engine.stop();
    runMix();
    EXPECT_THAT(engine.problems(), IsEmpty());

    AudioEngine later(machine.platform());
    const RightsNotice atItsStart(later, machine.defaults);
    later.add(browser);
    later.start();
    machine.advance(1s);

    EXPECT_THAT(later.problems(), IsEmpty());
}

} // namespace
} // namespace velmora
