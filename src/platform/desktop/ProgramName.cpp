#include "platform/desktop/ProgramName.h"

#include <algorithm>
#include <array>
#include <glib.h>
#include <span>

namespace velmora {

namespace {

using namespace std::string_view_literals;

constexpr std::array shells{"sh"sv,
                            "bash"sv,
                            "dash"sv,
                            "ash"sv,
                            "zsh"sv,
                            "ksh"sv,
                            "mksh"sv,
                            "fish"sv,
                            "csh"sv,
                            "tcsh"sv,
                            "busybox"sv};

// Their names may carry a version: python3.11, perl5.36, lua5.4.
constexpr std::array languages{"python"sv,
                               "perl"sv,
                               "ruby"sv,
                               "node"sv,
                               "gjs"sv,
                               "java"sv,
                               "mono"sv,
                               "lua"sv,
                               "guile"sv,
                               "wine"sv};

// Start other programs by a name of their own kind.
constexpr std::array runners{"flatpak"sv,
                             "snap"sv,
                             "gtk-launch"sv,
                             "xdg-open"sv,
                             "gio"sv,
                             "pkexec"sv,
                             "sudo"sv,
                             "bwrap"sv,
                             "dbus-launch"sv};

bool isVersioned(std::string_view program, std::string_view name) {
    return program.starts_with(name) &&
           program.find_first_not_of("0123456789.", name.size()) == std::string_view::npos;
}

/// The first word that is not an option.
std::string_view scriptAmong(std::span<const std::string> words) {
    const auto script =
        std::ranges::find_if(words, [](const auto& word) { return !word.starts_with('-'); });
    return script == words.end() ? std::string_view{} : fileName(*script);
}

/// "env", its options and its assignments say nothing about the program behind them.
std::span<const std::string> withoutEnv(std::span<const std::string> words) {
    if (words.empty() || fileName(words.front()) != "env") {
        return words;
    }
    do {
        words = words.subspan(1);
    } while (!words.empty() &&
             (words.front().starts_with('-') || words.front().find('=') != std::string::npos));
    return words;
}

} // namespace

std::string_view fileName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

bool isShell(std::string_view program) {
    return std::ranges::find(shells, program) != shells.end();
}

bool isInterpreter(std::string_view program) {
    return isShell(program) || std::ranges::any_of(languages, [&](std::string_view language) {
               return isVersioned(program, language);
           });
}

std::vector<std::string> splitExec(const std::string& exec) {
    int count = 0;
    char** words = nullptr;
    if (g_shell_parse_argv(exec.c_str(), &count, &words, nullptr) == FALSE) {
        return {};
    }
    std::vector<std::string> result(words, words + count);
    g_strfreev(words);
    return result;
}

std::string programOfExec(const std::string& exec) {
    const auto allWords = splitExec(exec);
    const auto words = withoutEnv(allWords);
    if (words.empty()) {
        return {};
    }
    const std::string_view program = fileName(words.front());
    if (std::ranges::find(runners, program) != runners.end()) {
        return {};
    }
    if (!isInterpreter(program)) {
        return std::string(program);
    }
    const auto arguments = words.subspan(1);
    if (std::ranges::find(arguments, "-c") != arguments.end()) {
        return {};
    }
    return std::string(scriptAmong(arguments));
}

std::vector<std::string> programsOfProcess(const std::string& executable,
                                           const std::vector<std::string>& arguments) {
    std::vector<std::string> programs;
    const auto add = [&](std::string_view program) {
        if (!program.empty() && std::ranges::find(programs, program) == programs.end()) {
            programs.emplace_back(program);
        }
    };
    const std::string_view file = fileName(executable);
    if (isInterpreter(file)) {
        add(scriptAmong(std::span(arguments).subspan(arguments.empty() ? 0 : 1)));
        return programs;
    }
    add(file);
    if (!arguments.empty()) {
        add(fileName(arguments.front()));
    }
    return programs;
}

} // namespace velmora
