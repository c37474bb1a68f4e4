// The manual and the completions as shells and their readers meet them.

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace velmora {
namespace {

const std::filesystem::path folder = COMMAND_FILES;

/// What bash offers for the last of these words.
std::vector<std::string> offered(const std::string& words) {
    const std::string script = "source " + (folder / "velmora.bash").string() +
                               "; compopt() { :; }; COMP_WORDS=(" + words +
                               "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _velmora; "
                               "printf '%s\\n' \"${COMPREPLY[@]}\"";
    std::istringstream lines(
        support::runToEnd({"bash", "--norc", "-uec", script}, support::currentEnvironment()));
    std::vector<std::string> all;
    for (std::string line; std::getline(lines, line);) {
        all.push_back(line);
    }
    return all;
}

/// First words of the commands that the program itself explains.
std::set<std::string> explained() {
    const support::TemporaryFolder home("velmora-help");
    auto environment = support::currentEnvironment();
    environment["XDG_DATA_HOME"] = home.path();
    std::istringstream lines(support::runToEnd({VELMORA_PROGRAM, "--help"}, environment));
    std::set<std::string> words;
    bool isInCommands = false;
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(' ')) {
            isInCommands = line.starts_with("Commandes");
        } else if (isInCommands && line[2] != ' ') {
            words.insert(line.substr(2, line.find(' ', 2) - 2));
        }
    }
    return words;
}

TEST(CommandFiles, BashOffersExactlyTheCommandsThatTheHelpExplains) {
    const auto commands = offered("velmora ''");

    EXPECT_EQ(std::set(commands.begin(), commands.end()), explained());
}

TEST(CommandFiles, BashFollowsACommandsWords) {
    using testing::ElementsAre;
    EXPECT_THAT(offered("velmora prese"), ElementsAre("preset"));
    EXPECT_THAT(offered("velmora preset re"), ElementsAre("remove"));
    EXPECT_THAT(offered("velmora mute 1 ''"), ElementsAre("on", "off", "toggle"));
    EXPECT_THAT(offered("velmora --start volume ''"), ElementsAre("microphone", "headphones"));
    EXPECT_THAT(offered("velmora volume headphones mu"), ElementsAre("mute"));
    EXPECT_THAT(offered("velmora effects 1 lo"), ElementsAre("lowcut="));
    EXPECT_THAT(offered("velmora effects 1 noise=on lo"), ElementsAre("lowcut="));
    EXPECT_THAT(offered("velmora status --js"), ElementsAre("--json"));
}

TEST(CommandFiles, TheManualNamesEveryCommandThatTheHelpExplains) {
    for (const char* page : {"velmora.1.gz", "fr/velmora.1.gz"}) {
        const std::string manual =
            support::runToEnd({"gzip", "-dc", folder / page}, support::currentEnvironment());
        for (const std::string& command : explained()) {
            EXPECT_THAT(manual, testing::HasSubstr("\n\\fB" + command)) << page;
        }
    }
}

} // namespace
} // namespace velmora
