#include "Options.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace velmora::demo {
namespace {

Options parse(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    return parseOptions(arguments);
}

TEST(DemoOptions, HaveDefaults) {
    const Options options = parse({});

    EXPECT_EQ(options.seconds, 20);
    EXPECT_EQ(options.quantum, 0U);
    EXPECT_EQ(options.results, "build/demo");
}

TEST(DemoOptions, TakeEachValue) {
    const Options options = parse({"--seconds", "60", "--quantum", "128", "--results", "/tmp/r"});

    EXPECT_EQ(options.seconds, 60);
    EXPECT_EQ(options.quantum, 128U);
    EXPECT_EQ(options.results, "/tmp/r");
}

TEST(DemoOptions, RefuseWhatTheyCannotDo) {
    EXPECT_THROW(parse({"--seconds", "3"}), std::invalid_argument);
    EXPECT_THROW(parse({"--seconds", "many"}), std::invalid_argument);
    EXPECT_THROW(parse({"--seconds", "20x"}), std::invalid_argument);
    EXPECT_THROW(parse({"--seconds"}), std::invalid_argument);
    EXPECT_THROW(parse({"--quantum", "2048"}), std::invalid_argument);
    EXPECT_THROW(parse({"--quantum", "-1"}), std::invalid_argument);
    EXPECT_THROW(parse({"--colour", "red"}), std::invalid_argument);
}

} // namespace
} // namespace velmora::demo
