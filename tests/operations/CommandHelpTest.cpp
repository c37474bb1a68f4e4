#include "operations/CommandHelp.h"

#include "operations/CommandTable.h"
#include "operations/EffectWords.h"
#include "operations/Lookups.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora {
namespace {

using testing::HasSubstr;
using testing::Not;

TEST(CommandHelp, NamesEveryCommandOptionAndEffectWithWhatItDoes) {
    const std::string help = helpText(english);

    for (const CommandInfo& command : commandTable()) {
        EXPECT_THAT(help, HasSubstr("\n  " + usageOf(command)));
        EXPECT_THAT(help, HasSubstr(english(command.summary)));
    }
    for (const OptionInfo& option : optionTable()) {
        EXPECT_THAT(help, HasSubstr("\n  " + std::string(option.name)));
        EXPECT_THAT(help, HasSubstr(english(option.summary)));
    }
    for (const EffectWord& effect : effectWords()) {
        EXPECT_THAT(help, HasSubstr(std::string(effect.values)));
    }
}

TEST(CommandHelp, EverySummaryIsThereInEnglish) {
    for (const CommandInfo& command : commandTable()) {
        EXPECT_NE(english(command.summary), command.summary);
    }
    for (const OptionInfo& option : optionTable()) {
        EXPECT_NE(english(option.summary), option.summary);
    }
    EXPECT_THAT(helpText(english), Not(HasSubstr("«")));
}

} // namespace
} // namespace velmora
