#include "platform/desktop/ProgramName.h"

#include <gmock/gmock.h>

namespace velmora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(ProgramName, SplitsACommandLineAtBlanks) {
    EXPECT_THAT(splitExec("/usr/bin/player  --new %U"),
                ElementsAre("/usr/bin/player", "--new", "%U"));
    EXPECT_THAT(splitExec("  "), IsEmpty());
}

TEST(ProgramName, KeepsQuotedWordsTogether) {
    EXPECT_THAT(splitExec(R"("/opt/My Player/run" "say \"hi\"" "")"),
                ElementsAre("/opt/My Player/run", R"(say "hi")", ""));
}

TEST(ProgramName, SplitsNothingWhoseQuotesDoNotMatch) {
    EXPECT_THAT(splitExec("\"/opt/My Player/run %U"), IsEmpty());
    EXPECT_EQ(programOfExec("/opt/Ada's Player/run"), "");
}

TEST(ProgramName, OfAnEntryIsItsFileName) {
    EXPECT_EQ(programOfExec("/usr/bin/player %U"), "player");
    EXPECT_EQ(programOfExec("\"/opt/My Player/run\" %F"), "run");
    EXPECT_EQ(programOfExec(""), "");
}

TEST(ProgramName, LooksBehindEnv) {
    EXPECT_EQ(programOfExec("env LANG=C GDK_BACKEND=x11 /usr/bin/player"), "player");
    EXPECT_EQ(programOfExec("/usr/bin/env -i player"), "player");
    EXPECT_EQ(programOfExec("env"), "");
}

TEST(ProgramName, OfAnInterpreterIsItsScript) {
    EXPECT_EQ(programOfExec("python3 /opt/player/main.py %U"), "main.py");
    EXPECT_EQ(programOfExec("/usr/bin/python3.11 -O /opt/player/main.py"), "main.py");
    EXPECT_EQ(programOfExec("/bin/sh /opt/player/start"), "start");
    EXPECT_EQ(programOfExec("python3"), "");
}

TEST(ProgramName, IsUnknownForACommandInsideAShellOrASharedRunner) {
    EXPECT_EQ(programOfExec("sh -c \"player --quiet\""), "");
    EXPECT_EQ(programOfExec("/usr/bin/flatpak run org.example.Player"), "");
}

TEST(ProgramName, OfAProcessIsItsFileThenWhatItWasCalledAs) {
    EXPECT_THAT(programsOfProcess("/usr/lib/browser/browser-bin", {"/usr/bin/browser", "--x"}),
                ElementsAre("browser-bin", "browser"));
    EXPECT_THAT(programsOfProcess("/usr/bin/player", {"player"}), ElementsAre("player"));
    EXPECT_THAT(programsOfProcess("", {}), IsEmpty());
}

TEST(ProgramName, OfAnInterpretersProcessIsItsScriptAlone) {
    EXPECT_THAT(programsOfProcess("/usr/bin/python3.11", {"python3", "-O", "/opt/p/main.py"}),
                ElementsAre("main.py"));
    EXPECT_THAT(programsOfProcess("/usr/bin/bash", {"bash"}), IsEmpty());
    EXPECT_THAT(programsOfProcess("/usr/bin/bash", {}), IsEmpty());
}

TEST(ProgramName, TellsShellsFromProgramsThatBeginLikeOne) {
    EXPECT_TRUE(isShell("bash"));
    EXPECT_FALSE(isShell("shotwell"));
    EXPECT_TRUE(isInterpreter("python3.11"));
    EXPECT_TRUE(isInterpreter("perl"));
    EXPECT_FALSE(isInterpreter("pythonista"));
    EXPECT_FALSE(isInterpreter("javaplayer"));
}

} // namespace
} // namespace velmora
