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

/// After so many words, the first of which is `first`, `words` may follow.
struct Step {
    std::string first;
    std::string place; ///< the number, as a pattern
    Words words;
};

std::vector<Step> steps() {
    std::vector<Step> all;
    for (const CommandInfo& command : commandTable()) {
        const Words name = split(command.name, ' ');
        if (name.size() > 1) {
            if (all.empty() || all.back().first != name[0]) {
                all.push_back({name[0], "1", {}});
            }
            all.back().words.push_back(name[1]);
            continue;
        }
        std::size_t place = 0;
        for (const std::string& argument : split(command.arguments, ' ')) {
            ++place;
            if (Words words = wordsOf(argument); !words.empty()) {
                const bool isAnyFurther = command.arguments.ends_with("...]");
                all.push_back(
                    {name[0],
                     isAnyFurther ? "[" + std::to_string(place) + "-9]*" : std::to_string(place),
                     std::move(words)});
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

/// "mute:2) <action> ;;" for each step, in the syntax that bash and zsh share.
std::string cases(const std::string& before, const std::string& after) {
    std::string text;
    for (const Step& step : steps()) {
        text += "    " + step.first + ":" + step.place + ") " + before + joined(step.words) +
                after + " ;;\n";
    }
    return text;
}

} // namespace

std::string bashCompletion() {
    return "# Completes the words of velmora.\n"
           "_velmora() {\n"
           "    local current=${COMP_WORDS[COMP_CWORD]} word choices=\n"
           "    local words=()\n"
           "    for word in \"${COMP_WORDS[@]:1:COMP_CWORD-1}\"; do\n"
           "        [[ $word == --* ]] || words+=(\"$word\")\n"
           "    done\n"
           "    case ${words[0]-}:${#words[@]} in\n"
           "    :0) choices='" +
           joined(firstWords()) + "' ;;\n" + cases("choices='", "'") +
           "    esac\n"
           "    [[ $current == -* ]] && choices='" +
           optionWords() +
           "'\n"
           "    COMPREPLY=($(compgen -W \"$choices\" -- \"$current\"))\n"
           "    [[ ${COMPREPLY[0]-} == *= ]] && compopt -o nospace\n"
           "    return 0\n"
           "}\n"
           "complete -o default -F _velmora velmora\n";
}

std::string zshCompletion() {
    std::string descriptions;
    for (const std::string& word : firstWords()) {
        descriptions += "    " + inQuotes(word + ":" + summaryOf(word)) + "\n";
    }
    return "#compdef velmora\n"
           "local -a before first\n"
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
           "case ${before[1]-}:${#before} in\n"
           "    :0) _describe command first ;;\n" +
           cases("compadd -- ", "") + "esac\n";
}

std::string fishCompletion() {
    std::string text = "complete -c velmora -f\n";
    for (const std::string& word : firstWords()) {
        text += "complete -c velmora -n __fish_use_subcommand -a " + word + " -d " +
                inQuotes(summaryOf(word)) + "\n";
    }
    for (const Step& step : steps()) {
        text += "complete -c velmora -n '__fish_seen_subcommand_from " + step.first + "' -a " +
                inQuotes(joined(step.words)) + "\n";
    }
    for (const OptionInfo& option : optionTable()) {
        text += "complete -c velmora -l " + std::string(option.name.substr(2)) + " -d " +
                inQuotes(inEnglish(option.summary)) + "\n";
    }
    return text;
}

} // namespace velmora
