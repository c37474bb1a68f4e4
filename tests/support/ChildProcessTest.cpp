#include "support/ChildProcess.h"

#include "support/TemporaryFolder.h"
#include "support/Wait.h"

#include <csignal>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <stdexcept>
#include <string>
#include <utility>

namespace velmora::support {
namespace {

std::string textOf(const std::filesystem::path& file) {
    std::ifstream in(file);
    return {std::istreambuf_iterator<char>(in), {}};
}

TEST(ChildProcess, TellsItsExitStatus) {
    ChildProcess child({.arguments = {"sh", "-c", "exit 3"}});

    EXPECT_EQ(child.wait(patience), 3);
    EXPECT_FALSE(child.isRunning());
}

TEST(ChildProcess, EndsWith127WhenThereIsNoSuchProgram) {
    ChildProcess child({.arguments = {"/nonexistent/program"}});

    EXPECT_EQ(child.wait(patience), 127);
}

TEST(ChildProcess, TellsTheSignalThatEndedIt) {
    ChildProcess child({.arguments = {"sleep", "100"}});

    child.kill();

    EXPECT_EQ(child.wait(patience), 128 + SIGKILL);
}

TEST(ChildProcess, ReceivesLinesAndWritesToItsFile) {
    const TemporaryFolder folder("velmora-child");
    ChildProcess child({.arguments = {"sh", "-c", "read word; echo got $word; cat"},
                        .output = folder.path() / "out",
                        .takesLines = true});

    child.send("one");
    child.closeInput();

    EXPECT_EQ(child.wait(patience), 0);
    EXPECT_EQ(textOf(folder.path() / "out"), "got one\n");
}

TEST(ChildProcess, SurvivesSendingToAChildThatHasEnded) {
    ChildProcess child({.arguments = {"true"}, .takesLines = true});
    EXPECT_EQ(child.wait(patience), 0);

    child.send("anyone there?");
}

TEST(ChildProcess, EndsWithItsOwner) {
    pid_t pid = 0;
    {
        const ChildProcess child({.arguments = {"sleep", "100"}});
        pid = child.pid();
        EXPECT_EQ(kill(pid, 0), 0);
    }
    EXPECT_NE(kill(pid, 0), 0);
}

TEST(ChildProcess, MovesToItsNewOwner) {
    ChildProcess first({.arguments = {"sleep", "100"}});
    const pid_t pid = first.pid();

    ChildProcess second = std::move(first);

    EXPECT_EQ(second.pid(), pid);
    EXPECT_TRUE(second.isRunning());
}

TEST(RunToEnd, GivesTheOutputOrThrowsItWhenTheProgramFails) {
    EXPECT_EQ(runToEnd({"echo", "fine"}, currentEnvironment()), "fine\n");
    try {
        runToEnd({"sh", "-c", "echo trouble; exit 1"}, currentEnvironment());
        FAIL() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("trouble"), std::string::npos);
    }
}

} // namespace
} // namespace velmora::support
