#include "ui/control/ApplicationOpener.h"

#include "ui/support/ModelFixture.h"

#include <optional>
#include <vector>

namespace velmora {
namespace {

using namespace std::chrono_literals;

class ApplicationOpenerTest : public ModelFixture {
protected:
    ApplicationOpenerTest() { machine.applications.install(radio); }

    void open() {
        opener->open(radio, [this](const AudioSource& source) { found.push_back(source); });
    }
    void planLaunch(const LaunchPlan& plan) {
        machine.applications.planLaunch(radio.location, plan);
    }

    const InstalledApplication radio{
        .bundleID = "org.radio", .name = "Radio", .location = "/applications/org.radio"};
    const RunningApplication fresh{
        .pid = 5000, .name = "Radio 2.1", .bundleID = "org.radio", .regular = true};
    std::vector<AudioSource> found;
    std::optional<ApplicationOpener> opener{std::in_place, machine.platform(), engine, sources};
};

TEST_F(ApplicationOpenerTest, TakesTheFirstRunningInstance) {
    machine.startApplication(5001, "Radio", "org.radio");
    machine.startApplication(5002, "Radio", "org.radio");
    open();
    EXPECT_EQ(found, std::vector<AudioSource>{(AppSource{5001, "Radio", "org.radio"})});
    EXPECT_TRUE(machine.applications.launched().empty());
}

TEST_F(ApplicationOpenerTest, OpensAnApplicationAndFindsItWhenItHasSettled) {
    planLaunch({.result = fresh, .delay = 700ms});
    open();
    EXPECT_EQ(machine.applications.launched(), std::vector{radio.location});

    machine.advance(700ms + 1499ms);
    EXPECT_TRUE(found.empty());
    machine.advance(1ms);
    EXPECT_EQ(found, std::vector<AudioSource>{(AppSource{5000, "Radio", "org.radio"})});
    EXPECT_EQ(engine.lastError(), std::nullopt);
}

TEST_F(ApplicationOpenerTest, TellsWhatCouldNotBeOpened) {
    planLaunch({.result = std::nullopt});
    open();
    machine.advance(2s);
    EXPECT_TRUE(found.empty());
    EXPECT_EQ(engine.lastError(), "Impossible de lancer Radio");
}

TEST_F(ApplicationOpenerTest, TellsItUntilTheApplicationJoins) {
    planLaunch({.result = std::nullopt});
    open();
    open();
    machine.advance(2s);
    EXPECT_EQ(engine.problems().size(), 1U) << "once, however often";

    engine.add(browser);
    EXPECT_EQ(engine.problems().size(), 1U);
    engine.add(AppSource{5001, "Radio", "org.radio"});
    EXPECT_TRUE(engine.problems().empty());
}

TEST_F(ApplicationOpenerTest, AnApplicationThatEndedAtOnceCouldNotBeOpened) {
    planLaunch({.result = fresh});
    open();
    machine.advance(1s);
    machine.applications.quit(fresh.pid);
    machine.advance(1s);
    EXPECT_TRUE(found.empty());
    EXPECT_EQ(engine.lastError(), "Impossible de lancer Radio");
}

TEST_F(ApplicationOpenerTest, RefreshesTheSourcesWhetherItCameUpOrNot) {
    for (const auto& result : {std::optional(fresh), std::optional<RunningApplication>()}) {
        planLaunch({.result = result});
        open();
        machine.sound.addDevice({.uid = result ? "one" : "two", .name = "Headset", .inputs = {1}});
        const auto before = sources.inputDevices().size();
        machine.advance(2s);
        EXPECT_EQ(sources.inputDevices().size(), before + 1);
        machine.applications.quit(fresh.pid);
    }
}

TEST_F(ApplicationOpenerTest, NothingHappensOnceItIsGone) {
    planLaunch({.result = fresh});
    open();
    opener.reset();
    machine.advance(2s);
    EXPECT_TRUE(found.empty());
}

} // namespace
} // namespace velmora
