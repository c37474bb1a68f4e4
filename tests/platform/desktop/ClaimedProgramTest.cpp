#include "platform/desktop/DesktopApplications.h"
#include "platform/desktop/FakeDesktop.h"
#include "platform/simulated/SimulatedMainQueue.h"

#include <gtest/gtest.h>

namespace velmora {
namespace {

// Which process a program is that the sound service knows by its own word only.
class ClaimedProgram : public testing::Test {
protected:
    DesktopApplications applications() {
        return {queue,
                {.procRoot = desktop.proc(),
                 .dataFolders = {desktop.data()},
                 .nameOf = [](std::int32_t) { return "As it says"; },
                 .bundleIDOf = [this](std::int32_t) { return bundleID; }}};
    }
    ProgramIdentity identityOf(const ProgramClaim& claim) {
        return applications().identify({claim}).front();
    }

    FakeDesktop desktop;
    SimulatedMainQueue queue;
    std::string bundleID;
};

TEST_F(ClaimedProgram, IsTheProcessThatTheKernelVouchesFor) {
    EXPECT_EQ(identityOf({.pid = 4312, .isVouchedFor = true, .program = "player"}),
              (ProgramIdentity{.pid = 4312}));
}

TEST_F(ClaimedProgram, IsTheOneThatHasTheNumberInItsOwnNamespace) {
    desktop.addProcess({.pid = 2, .name = "kthreadd"});
    desktop.addProcess({.pid = 500, .name = "bwrap", .innerPid = 1});
    desktop.addProcess({.pid = 501, .name = "player", .innerPid = 2});

    EXPECT_EQ(identityOf({.pid = 2, .program = "player"}), (ProgramIdentity{.pid = 501}));
}

TEST_F(ClaimedProgram, IsNotAnUnrelatedProcessOfItsNumber) {
    desktop.addProcess({.pid = 77, .name = "editor"});

    EXPECT_EQ(identityOf({.pid = 77, .program = "player"}), ProgramIdentity{});
}

TEST_F(ClaimedProgram, IsToldFromAnotherOfItsNumberByTheProgramsName) {
    desktop.addProcess({.pid = 501, .name = "player", .innerPid = 2});
    desktop.addProcess({.pid = 601, .name = "radio", .innerPid = 2});

    EXPECT_EQ(identityOf({.pid = 2, .program = "radio"}), (ProgramIdentity{.pid = 601}));
}

TEST_F(ClaimedProgram, IsKnownByTheNameThatItWasCalledAs) {
    desktop.addProcess({.pid = 501,
                        .name = "worker",
                        .executable = "/opt/loader",
                        .arguments = {"/opt/player", "--quiet"}});
    desktop.addProcess({.pid = 601, .name = "a-very-long-pro", .executable = "/opt/loader"});

    EXPECT_EQ(identityOf({.pid = 501, .program = "player"}), (ProgramIdentity{.pid = 501}));
    EXPECT_EQ(identityOf({.pid = 601, .program = "a-very-long-program"}),
              (ProgramIdentity{.pid = 601}));
}

TEST_F(ClaimedProgram, IsToldFromAnotherByTheSandboxsOwnFile) {
    desktop.addProcess({.pid = 501,
                        .name = "player",
                        .flatpakInfo = "[Application]\nname=org.example.One\n",
                        .innerPid = 2});
    desktop.addProcess({.pid = 601,
                        .name = "player",
                        .flatpakInfo = "[Application]\nname=org.example.Two\n",
                        .innerPid = 2});
    desktop.addProcess({.pid = 701, .name = "player", .innerPid = 2});

    EXPECT_EQ(identityOf({.pid = 2, .program = "player", .sandbox = "org.example.Two"}),
              (ProgramIdentity{.pid = 601}));
    EXPECT_EQ(identityOf({.pid = 2, .program = "player"}), (ProgramIdentity{.pid = 701}));
}

TEST_F(ClaimedProgram, IsStillTheApplicationThatItsSandboxWasMadeFor) {
    EXPECT_EQ(identityOf({.pid = 2, .program = "player", .sandbox = "org.example.Two"}),
              (ProgramIdentity{.bundleID = "org.example.Two"}));
}

TEST_F(ClaimedProgram, CannotBeToldFromItsTwinButIsTheSameApplication) {
    desktop.addEntry("org.example.Player");
    desktop.addProcess({.pid = 501, .name = "player", .innerPid = 2});
    desktop.addProcess({.pid = 601, .name = "player", .innerPid = 2});

    EXPECT_EQ(identityOf({.pid = 2, .program = "player"}),
              (ProgramIdentity{.bundleID = "org.example.Player"}));
}

TEST_F(ClaimedProgram, IsNoApplicationWhenItCouldBeTwo) {
    desktop.addEntry("org.example.Player");
    const auto file = desktop.addEntry("org.example.Other", "Exec=/bin/true\n");
    desktop.addProcess({.pid = 501, .name = "player", .innerPid = 2});
    desktop.addProcess({.pid = 601,
                        .name = "player",
                        .environment = {{"GIO_LAUNCHED_DESKTOP_FILE", file},
                                        {"GIO_LAUNCHED_DESKTOP_FILE_PID", "601"}},
                        .innerPid = 2});

    EXPECT_EQ(identityOf({.pid = 2, .program = "player"}), ProgramIdentity{});
}

TEST_F(ClaimedProgram, OfTwoProcessesOfOneInstanceIsThatInstance) {
    desktop.addEntry("org.example.Player");
    desktop.addProcess({.pid = 500, .name = "player"});
    desktop.addProcess({.pid = 501, .parent = 500, .name = "player", .innerPid = 2});
    desktop.addProcess({.pid = 502, .parent = 500, .name = "player", .innerPid = 2});

    EXPECT_EQ(identityOf({.pid = 2, .program = "player"}), (ProgramIdentity{.pid = 501}));
}

TEST_F(ClaimedProgram, OnAnotherMachineIsNoProcessOfThisOne) {
    desktop.write(desktop.proc() / "sys/kernel/hostname", "desk\n");
    desktop.addProcess({.pid = 501, .name = "player", .machine = "0a1b"});
    desktop.addProcess({.pid = 502, .name = "player"});

    EXPECT_EQ(identityOf({.pid = 501, .program = "player", .machine = "2c3d", .host = "desk"}),
              ProgramIdentity{});
    EXPECT_EQ(identityOf({.pid = 501, .program = "player", .machine = "0a1b", .host = "old-name"}),
              (ProgramIdentity{.pid = 501}));
    EXPECT_EQ(identityOf({.pid = 502, .program = "player", .host = "laptop"}), ProgramIdentity{});
}

TEST_F(ClaimedProgram, IsNotTakenByItsNumberAlone) {
    desktop.addProcess({.pid = 501, .name = "player"});

    EXPECT_EQ(identityOf({.pid = 501}), ProgramIdentity{});
    EXPECT_EQ(identityOf({}), ProgramIdentity{});
}

TEST_F(ClaimedProgram, ThatCannotBeToldIsListedAsItSays) {
    EXPECT_EQ(applications().byPid(firstStandIn),
              (RunningApplication{
                  .pid = firstStandIn, .name = "As it says", .bundleID = "", .regular = false}));
}

TEST_F(ClaimedProgram, ThatCannotBeToldHasTheNameOfTheApplicationThatItIs) {
    desktop.addEntry("org.example.Player", "Name=Player\n");
    bundleID = "org.example.Player";

    EXPECT_EQ(applications().byPid(firstStandIn),
              (RunningApplication{.pid = firstStandIn,
                                  .name = "Player",
                                  .bundleID = "org.example.Player",
                                  .regular = true}));
}

} // namespace
} // namespace velmora
