#include "operations/Completions.h"

#include "operations/CommandTable.h"
#include "operations/EffectWords.h"
#include "settings/Texts.h"

#include <algorithm>
#include <ranges>
#include <string_view>
#include <vector>

namespace velmora {

namespace {

using Words = std::vector<std::string>;

Words split(std::string_view text, char at) {
    Words parts;
    for (const auto part : std::views::split(text, at)) {
        parts.emplace_back(part.begin(), part.end());
    }
    return parts;
}

/// What may be written as it stands; names in capitals stand for something else.
Words wordsOf(std::string argument) {
    std::erase_if(argument, [](char byte) { return byte == '[' || byte == ']'; });
    Words words;
    for (std::string& word : split(argument, '|')) {
        if (!word.empty() &&
            std::ranges::all_of(word, [](char byte) { return byte >= 'a' && byte <= 'z'; })) {
            words.push_back(std::move(word));
        } else if (word == "NAME=VALUE") {
            for (const EffectWord& effect : effectWords()) {
                words.push_back(std::string(effect.name) + "=");
            }
        }
    }
    return words;
}

/// What may follow `place` words, the first of which are `first` and, where a command has two,
/// `second`.
struct Step {
    std::string first;
    std::string second{};
    std::size_t place{};
    bool isAnyFurther{}; ///< and in every later place
    Words words{};
    std::string list{}; ///< names that the running program knows; see the command "names"
    bool isFile{};
};

/// The list that an argument's word is one of.
std::string listOf(const CommandInfo& command, std::string argument) {
    std::erase_if(argument, [](char byte) { return byte == '[' || byte == ']'; });
    if (argument == "SOURCE") {
        return command.name == "add" ? "available" : "sources";
    }
    if (argument == "DEVICE") {
        return "devices";
    }
    return argument == "NAME" ? "presets" : "";
}

std::vector<Step> steps() {
    std::vector<Step> all;
    for (const CommandInfo& command : commandTable()) {
        const Words name = split(command.name, ' ');
        const std::string second = name.size() > 1 ? name[1] : "";
        if (!second.empty()) {
            auto shared = std::ranges::find_if(
                all, [&](const Step& step) { return step.first == name[0] && step.place == 1; });
            if (shared == all.end()) {
                shared = all.insert(shared, {.first = name[0], .place = 1});
            }
            shared->words.push_back(second);
        }
        std::size_t place = name.size();
        for (const std::string& argument : split(command.arguments, ' ')) {
            Step step{.first = name[0],
                      .second = second,
                      .place = place++,
                      .isAnyFurther = argument.find('=') != argument.npos,
                      .words = wordsOf(argument),
                      .list = listOf(command, argument),
                      .isFile = argument == "FILE"};
            if (!step.words.empty() || !step.list.empty() || step.isFile) {
                all.push_back(std::move(step));
            }
        }
    }
    return all;
}

Words firstWords() {
    Words words;
    for (const CommandInfo& command : commandTable()) {
        const std::string first = split(command.name, ' ').front();
        if (words.empty() || words.back() != first) {
            words.push_back(first);
        }
    }
    return words;
}

std::string joined(const Words& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}

std::string optionWords() {
    Words words;
    for (const OptionInfo& option : optionTable()) {
        words.emplace_back(option.name);
    }
    return joined(words);
}

/// Between single quotes, in any of the three shells.
std::string inQuotes(std::string_view text) {
    std::string result = "'";
    for (const char byte : text) {
        result += byte == '\'' ? std::string("'\\''") : std::string(1, byte);
    }
    return result + "'";
}

/// The one summary of a word that begins several commands is the first one's.
std::string summaryOf(const std::string& first) {
    for (const CommandInfo& command : commandTable()) {
        if (split(command.name, ' ').front() == first) {
            return std::string(inEnglish(command.summary));
        }
    }
    return {};
}

/// The first two words and the number of words, as a pattern of bash and zsh.
std::string patternOf(const Step& step) {
    const std::string place = std::to_string(step.place);
    return step.first + ":" + (step.second.empty() ? "*" : step.second) + ":" +
           (step.isAnyFurther ? "[" + place + "-9]*" : place);
}

/// Asks the mixer that runs. Silent when there is none, and soon done when it does not answer.
std::string namesCommand(const Step& step) {
    return "timeout 1 velmora names " + step.list + " 2>/dev/null";
}

} // namespace

std::string bashCompletion() {
    std::string cases;
    for (const Step& step : steps()) {
        if (step.isFile) {
            continue; // offered where nothing else is
        }
        cases += "    " + patternOf(step) + ")";
        cases += step.words.empty() ? "" : " choices='" + joined(step.words) + "'";
        cases += step.list.empty() ? "" : " names=$(" + namesCommand(step) + " || :)";
        cases += " ;;\n";
    }
    // Names are other programs' words: nothing of them may reach what the shell expands. Between
    // quotes that the user has opened, those that could are not offered.
    return "# Completes the words of velmora.\n"
           "_velmora() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} word typed choices= names=\n"
           "    local words=()\n"
           "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
           "        [[ $word == --* ]] || words+=(\"$word\")\n"
           "    done\n"
           "    case ${words[0]-}:${words[1]-}:${#words[@]} in\n"
           "    :*:0) choices='" +
           joined(firstWords()) + "' ;;\n" + cases +
           "    esac\n"
           "    [[ $current == -* ]] && choices='" +
           optionWords() +
           "' names=\n"
           "    COMPREPLY=($(compgen -W \"$choices\" -- \"$current\")) || :\n"
           "    [[ ${COMPREPLY[0]-} == *= ]] && compopt -o nospace\n"
           "    typed=${current#[\\\"\\']}\n"
           "    [[ $typed == \"$current\" ]] && typed=${typed//\\\\/}\n"
           "    while IFS= read -r word; do\n"
           "        [[ $word && ${word,,} == \"${typed,,}\"* ]] || continue\n"
           "        if [[ $current != [\\\"\\']* ]]; then\n"
           "            printf -v word %q \"$word\"\n"
           "            word=${word//:/\\\\:}\n"
           "            word=${word//=/\\\\=}\n"
           "        elif [[ $word == *[\\\"\\'\\\\\\$\\`\\!]* ]]; then\n"
           "            continue\n"
           "        fi\n"
           "        COMPREPLY+=(\"$word\")\n"
           "    done <<<\"$names\"\n"
           "    return 0\n"
           "}\n"
           "complete -o default -F _velmora velmora\n";
}

std::string zshCompletion() {
    std::string descriptions;
    for (const std::string& word : firstWords()) {
        descriptions += "    " + inQuotes(word + ":" + summaryOf(word)) + "\n";
    }
    std::string cases;
    for (const Step& step : steps()) {
        cases += "    " + patternOf(step) + ")";
        if (!step.words.empty()) {
            cases += " compadd -- " + joined(step.words);
        } else if (step.isFile) {
            cases += " _files";
        } else {
            cases += " names=(${(f)\"$(" + namesCommand(step) +
                     ")\"}); compadd -M 'm:{[:lower:]}={[:upper:]}' -a names";
        }
        cases += " ;;\n";
    }
    return "#compdef velmora\n"
           "local -a before first names\n"
           "before=(${${words[2,CURRENT-1]}:#--*})\n"
           "first=(\n" +
           descriptions +
           ")\n"
           "if [[ $PREFIX == -* ]]; then\n"
           "    compadd -- " +
           optionWords() +
           "\n"
           "    return\n"
           "fi\n"
           "case ${before[1]-}:${before[2]-}:${#before} in\n"
           "    :*:0) _describe command first ;;\n" +
           cases + "esac\n";
}

std::string fishCompletion() {
    std::string text = "# Whether so many words were written, these first.\n"
                       "function __velmora_at\n"
                       "    set -l words (commandline -opc | string match -v -- '--*')[2..-1]\n"
                       "    test (count $words) $argv[1] $argv[2]; or return\n"
                       "    set -l first $argv[3..-1]\n"
                       "    set -l number (count $first)\n"
                       "    test $number -eq 0; or test \"$words[1..$number]\" = \"$first\"\n"
                       "end\n"
                       "complete -c velmora -f\n";
    const auto at = [](const std::string& comparison, const std::string& place, Words first) {
        std::erase(first, "");
        return "complete -c velmora -n '__velmora_at " + comparison + " " + place +
               (first.empty() ? "" : " ") + joined(first) + "' ";
    };
    for (const std::string& word : firstWords()) {
        text += at("-eq", "0", {}) + "-a " + word + " -d " + inQuotes(summaryOf(word)) + "\n";
    }
    for (const Step& step : steps()) {
        const std::string here = at(step.isAnyFurther ? "-ge" : "-eq",
                                    std::to_string(step.place),
                                    {step.first, step.second});
        text += step.words.empty() ? "" : here + "-a " + inQuotes(joined(step.words)) + "\n";
        text +=
            step.list.empty() ? "" : here + "-a " + inQuotes("(" + namesCommand(step) + ")") + "\n";
        text += step.isFile ? here + "-F\n" : "";
    }
    for (const OptionInfo& option : optionTable()) {
        text += "complete -c velmora -l " + std::string(option.name.substr(2)) + " -d " +
                inQuotes(inEnglish(option.summary)) + "\n";
    }
    return text;
}

} // namespace velmora
