// The manual and the completions as shells and their readers meet them.

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace velmora {
namespace {

const std::filesystem::path folder = COMMAND_FILES;

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream lines(text);
    std::vector<std::string> all;
    for (std::string line; std::getline(lines, line);) {
        all.push_back(line);
    }
    return all;
}

/// A machine on which the program knows these names, or does not run.
class Machine {
public:
    /// @param says  what "velmora names" does, in the shell's words; names its list $2
    explicit Machine(const std::string& says = "echo nobody >&2; exit 1") {
        const std::filesystem::path program = folder_.path() / "velmora";
        std::ofstream(program) << "#!/bin/sh\n" << says << '\n';
        std::filesystem::permissions(program, std::filesystem::perms::owner_all);
        environment_["PATH"] = folder_.path().string() + ":" + environment_["PATH"];
        environment_["HOME"] = folder_.path();
    }

    /// What each shell offers for the last of these words.
    [[nodiscard]] std::vector<std::string> bash(const std::string& words) const {
        return run({"bash",
                    "--norc",
                    "-uec",
                    "source " + (folder / "velmora.bash").string() +
                        "; compopt() { :; }; COMP_WORDS=(" + words +
                        "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); _velmora; "
                        "[[ ! -v COMPREPLY ]] || printf '%s\\n' \"${COMPREPLY[@]}\""});
    }
    [[nodiscard]] std::vector<std::string> fish(const std::string& line) const {
        return run({"fish",
                    "--no-config",
                    "-c",
                    "source " + (folder / "velmora.fish").string() + "; complete -C '" + line +
                        "' | string replace -r '\\t.*' ''; true"});
    }
    /// Before it looks at what is already written of the word.
    [[nodiscard]] std::vector<std::string> zsh(const std::string& words) const {
        return run(
            {"zsh",
             "-fc",
             "words=(" + words +
                 "); CURRENT=$#words; PREFIX=$words[-1]; "
                 "compadd() { [[ $1 == -M ]] && print -l -- $names || print -l -- ${@:2}; }; "
                 "_describe() { print -l -- ${first%%:*}; }; _files() { print files; }; "
                 "source " +
                 (folder / "_velmora").string()});
    }

private:
    [[nodiscard]] std::vector<std::string> run(const std::vector<std::string>& arguments) const {
        return linesOf(support::runToEnd(arguments, environment_));
    }

    support::TemporaryFolder folder_{"velmora-machine"};
    support::Environment environment_ = support::currentEnvironment();
};

std::vector<std::string> offered(const std::string& words) {
    return Machine().bash(words);
}

constexpr auto someNames = R"(
case $2 in
sources) printf '%s\n' 'Web Browser' 'Webcam "1"' '$(touch hurt)' 'a:b=c' ;;
available) echo Player ;;
devices) echo 'Default output' ;;
presets) echo Evening ;;
esac)";

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

TEST(CommandFiles, BashOffersWhatTheRunningProgramKnowsAsWholeWords) {
    using testing::ElementsAre;
    const Machine machine(someNames);

    EXPECT_THAT(machine.bash("velmora gain web"),
                ElementsAre(R"(Web\ Browser)", R"(Webcam\ \"1\")"));
    EXPECT_THAT(machine.bash(R"(velmora gain '"Web B')"), ElementsAre("Web Browser"));
    EXPECT_THAT(machine.bash(R"(velmora gain 'Web\ B')"), ElementsAre(R"(Web\ Browser)"));
    EXPECT_THAT(machine.bash(R"(velmora gain '$')"), ElementsAre(R"(\$\(touch\ hurt\))"));
    EXPECT_THAT(machine.bash(R"(velmora gain '"$')"), testing::IsEmpty());
    EXPECT_THAT(machine.bash(R"(velmora gain '"Webcam')"), testing::IsEmpty());
    EXPECT_THAT(machine.bash("velmora gain a"), ElementsAre(R"(a\:b\=c)"));
    EXPECT_THAT(machine.bash("velmora add ''"), ElementsAre("Player"));
    EXPECT_THAT(machine.bash("velmora monitor ''"), ElementsAre(R"(Default\ output)"));
    EXPECT_THAT(machine.bash("velmora preset apply ''"), ElementsAre("Evening"));
    EXPECT_THAT(machine.bash("velmora preset export file ''"), ElementsAre("Evening"));
}

TEST(CommandFiles, FishOffersTheSameInTheSamePlaces) {
    using testing::ElementsAre;
    const Machine machine(someNames);
    const auto commands = machine.fish("velmora ");

    EXPECT_EQ(std::set(commands.begin(), commands.end()), explained());
    EXPECT_THAT(machine.fish("velmora gain Web"), ElementsAre("Web Browser", R"(Webcam "1")"));
    EXPECT_THAT(machine.fish("velmora mute 1 "), ElementsAre("off", "on", "toggle"));
    EXPECT_THAT(machine.fish("velmora preset re"), ElementsAre("remove"));
    EXPECT_THAT(machine.fish("velmora --start preset apply "), ElementsAre("Evening"));
    EXPECT_THAT(machine.fish("velmora effects 1 noise=on lo"), ElementsAre("lowcut="));
}

TEST(CommandFiles, ZshOffersTheSameInTheSamePlaces) {
    using testing::ElementsAre;
    const Machine machine(someNames);
    const auto commands = machine.zsh("velmora ''");

    EXPECT_EQ(std::set(commands.begin(), commands.end()), explained());
    EXPECT_THAT(machine.zsh("velmora gain ''"),
                ElementsAre("Web Browser", R"(Webcam "1")", "$(touch hurt)", "a:b=c"));
    EXPECT_THAT(machine.zsh("velmora mute 1 ''"), ElementsAre("on", "off", "toggle"));
    EXPECT_THAT(machine.zsh("velmora --start preset apply ''"), ElementsAre("Evening"));
    EXPECT_THAT(machine.zsh("velmora preset import ''"), ElementsAre("files"));
}

TEST(CommandFiles, WithoutARunningProgramNamesAreMissingInSilence) {
    const Machine machine;

    EXPECT_THAT(machine.bash("velmora gain ''"), testing::IsEmpty());
    EXPECT_THAT(machine.fish("velmora gain "), testing::IsEmpty());
    EXPECT_THAT(machine.zsh("velmora gain ''"), testing::ElementsAre(""));
}

TEST(CommandFiles, TheManualNamesEveryCommandThatTheHelpExplains) {
    for (const char* page : {"velmora.1.gz", "fr/velmora.1.gz"}) {
        const std::string manual = std::regex_replace(
            support::runToEnd({"gzip", "-dc", folder / page}, support::currentEnvironment()),
            std::regex(R"(\\-)"),
            "-");
        for (const std::string& command : explained()) {
            EXPECT_THAT(manual, testing::HasSubstr("\n\\fB" + command)) << page;
        }
    }
}

} // namespace
} // namespace velmora
