#include "capture/DeviceQueries.h"
#include "platform/simulated/SimulatedPlatform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AudioAppList : public testing::Test {
protected:
    /// Starts an application and, when `playing`, its sound; otherwise it has played before.
    void start(std::int32_t pid, const std::string& name, bool playing, bool regular = true) {
        machine.startApplication(pid, name, "org." + name, regular);
        const AudioObjectID process = machine.sound.addProcess(pid);
        if (playing) {
            machine.sound.playProcess(process, constant(0.5F));
        }
    }

    AudioApps list() { return listAudioApps(machine.taps, machine.applications); }

    std::vector<std::string> names() {
        std::vector<std::string> result;
        for (const AudioSource& source : list().apps) {
            result.push_back(source.name());
        }
        return result;
    }

    SimulatedPlatform machine;
};

TEST_F(AudioAppList, DescribesAnApplication) {
    start(4312, "Player", true);

    const AudioApps apps = list();

    EXPECT_THAT(apps.apps, ElementsAre(AudioSource(AppSource{4312, "Player", "org.Player"})));
    EXPECT_THAT(apps.playingPIDs, ElementsAre(4312));
}

TEST_F(AudioAppList, PutsPlayingApplicationsFirstThenSortsByName) {
    start(1001, "Browser", false);
    start(1002, "Zither", true);
    start(1003, "anthem", false);
    start(1004, "Musician", true);

    EXPECT_THAT(names(), ElementsAre("Musician", "Zither", "anthem", "Browser"));
    EXPECT_THAT(list().playingPIDs, ElementsAre(1002, 1004));
}

TEST_F(AudioAppList, KeepsTheOrderOfDiscoveryBetweenEqualNames) {
    start(1001, "alpha", true);
    start(1002, "Alpha", true);
    start(1003, "ALPHA", true);

    EXPECT_THAT(names(), ElementsAre("alpha", "Alpha", "ALPHA"));
}

TEST_F(AudioAppList, ListsAProcessOnceAndLetsItsFirstObjectDecide) {
    start(1001, "Browser", false);
    machine.sound.playProcess(machine.sound.addProcess(1001), constant(0.5F));

    EXPECT_THAT(names(), ElementsAre("Browser"));
    EXPECT_THAT(list().playingPIDs, IsEmpty());
}

TEST_F(AudioAppList, LetsTheFirstObjectDecideEvenToLeaveAnApplicationOut) {
    start(1001, "agent", false, false);
    machine.sound.playProcess(machine.sound.addProcess(1001), constant(0.5F));

    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(AudioAppList, LeavesOutABackgroundProgramWhileItIsSilent) {
    start(1001, "agent", true, false);
    start(1002, "Browser", false);
    EXPECT_THAT(names(), ElementsAre("agent", "Browser"));

    machine.sound.pause(1001);

    EXPECT_THAT(names(), ElementsAre("Browser"));
}

TEST_F(AudioAppList, TakesAnUnreadableRunningFlagForSilence) {
    start(1001, "agent", true, false);
    start(1002, "Browser", true);
    machine.sound.refuse(Operation::processIsRunningOutput);

    EXPECT_THAT(names(), ElementsAre("Browser"));
    EXPECT_THAT(list().playingPIDs, IsEmpty());
}

TEST_F(AudioAppList, NamesAnApplicationWithoutIdentifierByItsProcess) {
    machine.applications.run({.pid = 4312, .name = "script", .bundleID = "", .regular = true});
    machine.sound.play(4312, constant(0.5F));

    EXPECT_THAT(list().apps, ElementsAre(AudioSource(AppSource{4312, "script", "pid.4312"})));
}

TEST_F(AudioAppList, LeavesOutOurselvesStrangersAndTheNameless) {
    machine.sound.play(machine.applications.ownPid(), constant(0.5F));
    machine.startApplication(machine.applications.ownPid(), "Velmora", "app.velmora");
    machine.sound.play(777, constant(0.5F)); // no application has this process
    start(778, "", true);

    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(AudioAppList, LeavesOutAProcessWhoseIdCannotBeRead) {
    start(1001, "Browser", true);
    start(1002, "Player", true);
    machine.sound.refuse(Operation::processPid, -1, *machine.taps.processForPid(1001));

    EXPECT_THAT(names(), ElementsAre("Player"));
}

TEST_F(AudioAppList, IsEmptyWithoutAnAudioService) {
    start(1001, "Browser", true);
    machine.sound.refuse(Operation::processObjects);

    EXPECT_THAT(names(), IsEmpty());
    EXPECT_THAT(list().playingPIDs, IsEmpty());
}

TEST_F(AudioAppList, DoesNotKnowAnApplicationThatNeverPlayed) {
    machine.startApplication(1001, "Editor", "org.editor");

    EXPECT_THAT(names(), IsEmpty());
}

TEST_F(AudioAppList, TakesNamesOfAnyLength) {
    const std::string longName(300, 'x');
    start(1001, longName, true);

    EXPECT_THAT(names(), ElementsAre(longName));
}

} // namespace
} // namespace velmora
