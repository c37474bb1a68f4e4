// Manual and completions, against the table and against the help.

#include "operations/CommandHelp.h"
#include "operations/CommandTable.h"
#include "operations/Completions.h"
#include "operations/EffectWords.h"
#include "operations/Lookups.h"
#include "operations/ManualPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace velmora {
namespace {

using testing::HasSubstr;
using testing::Not;

/// As a reader sees it.
std::string plain(const std::string& roff) {
    std::string text;
    for (std::size_t at = 0; at < roff.size(); ++at) {
        if (roff.compare(at, 2, "\\f") == 0) {
            at += 2;
        } else if (roff.compare(at, 2, "\\-") == 0) {
            text += '-';
            ++at;
        } else {
            text += roff[at];
        }
    }
    return text;
}

TEST(CommandTexts, TheManualSaysOfEveryCommandWhatTheHelpSays) {
    for (const auto& [lookup, name] :
         {std::pair<Lookup, const char*>{english, "English"}, {french, "French"}}) {
        SCOPED_TRACE(name);
        const std::string manual = plain(manualPage(lookup, "1.2"));
        const std::string help = helpText(lookup);
        for (const CommandInfo& command : commandTable()) {
            const std::string entry = usageOf(command) + "\n" + lookup(command.summary) + "\n";
            EXPECT_THAT(manual, HasSubstr(".TP\n" + entry));
            EXPECT_THAT(manual, HasSubstr(std::string(command.json)));
            EXPECT_THAT(help, HasSubstr(usageOf(command)));
            EXPECT_THAT(help, HasSubstr(lookup(command.summary)));
        }
        for (const OptionInfo& option : optionTable()) {
            EXPECT_THAT(manual, HasSubstr(std::string(option.name) + "\n"));
        }
    }
}

TEST(CommandTexts, NoLineOfTheManualIsTakenForARequest) {
    std::istringstream lines(manualPage(french, "1.2"));
    for (std::string line; std::getline(lines, line);) {
        EXPECT_FALSE(line.starts_with('\'')) << line;
        if (line.starts_with('.')) {
            EXPECT_THAT(line, testing::ContainsRegex("^\\.(TH|SH|TP|B|br)( |$)"));
        }
    }
}

TEST(CommandTexts, EveryShellKnowsEveryWord) {
    for (const std::string& text : {bashCompletion(), zshCompletion(), fishCompletion()}) {
        for (const CommandInfo& command : commandTable()) {
            std::istringstream words{std::string(command.name)};
            for (std::string word; words >> word;) {
                EXPECT_THAT(text, testing::ContainsRegex("[ '(]" + word + "[ ':]"));
            }
        }
        for (const EffectWord& effect : effectWords()) {
            EXPECT_THAT(text, HasSubstr(std::string(effect.name) + "="));
        }
        for (const OptionInfo& option : optionTable()) {
            EXPECT_THAT(text, HasSubstr(std::string(option.name.substr(2))));
        }
        EXPECT_THAT(text, HasSubstr("on off toggle"));
        EXPECT_THAT(text, HasSubstr("microphone headphones"));
        EXPECT_THAT(text, Not(HasSubstr("SOURCE")));
    }
}

} // namespace
} // namespace velmora
